#include "koral/ModuleCache.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "base/Console.h"
#include "koral/FileSearch.h"
#include "koral/ModuleCompiler.h"
#include "koral/RuleCache.h"

namespace vellum {
namespace {

// Modules that use modules that use modules...: each level is a compiler on the stack.
constexpr int kMaxChainDepth = 64;

bool sameFile(const std::string& a, const std::string& b) {
    std::error_code error;
    return a == b || std::filesystem::equivalent(a, b, error);
}

bool isFile(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_regular_file(path, error);
}

}  // namespace

ModuleCache& ModuleCache::instance() {
    static ModuleCache cache;
    return cache;
}

std::string ModuleCache::fileName(const std::string& name) {
    std::string file = name;
    std::replace(file.begin(), file.end(), '.', '/');
    return file + ".mod";
}

const koralModule* ModuleCache::load(const std::string& name, const ModuleLoadChain* outer) {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        const auto found = modules_.find(name);
        if (found != modules_.end())
            return found->second.get();
    }
    const std::string file = findFile(fileName(name), "koralModules");
    if (file.empty())
        return nullptr;
    return compile(name, file, outer, false);
}

const koralModule* ModuleCache::loadFile(const std::string& file, const ModuleLoadChain* outer) {
    if (!isFile(file))
        return nullptr;
    const std::string name = std::filesystem::path(file).stem().string();
    {
        std::lock_guard<std::mutex> lock(mutex_);
        const auto found = modules_.find(name);
        if (found != modules_.end() && sameFile(found->second->file(), file))
            return found->second.get();
    }
    return compile(name, file, outer, true);
}

const koralModule* ModuleCache::compileFile(const std::string& file) {
    if (!isFile(file))
        return nullptr;
    return compile(std::filesystem::path(file).stem().string(), file, nullptr, true);
}

const koralModule* ModuleCache::compile(const std::string& name, const std::string& file,
                                        const ModuleLoadChain* outer, bool replace) {
    if (outer != nullptr && outer->contains(name)) {
        console() << "Circular use of module '" << name << "'!!!\n";
        return nullptr;
    }
    if (outer != nullptr && outer->depth >= kMaxChainDepth) {
        console() << "Modules used too deeply at module '" << name << "'!!!\n";
        return nullptr;
    }
    std::unique_ptr<koralModule> module = ModuleCompiler().compile(file, name, outer);
    if (module == nullptr)
        return nullptr;
    std::lock_guard<std::mutex> lock(mutex_);
    auto& slot = modules_[name];
    // Loaded by name: another thread may have been first, and its module stays.
    if (slot != nullptr && !replace)
        return slot.get();
    if (slot != nullptr)
        replaced_.push_back(std::move(slot));
    slot = std::move(module);
    return slot.get();
}

std::vector<std::string> ModuleCache::files() {
    std::lock_guard<std::mutex> lock(mutex_);
    std::vector<std::string> files;
    for (const auto& [name, module] : modules_)
        files.push_back(module->file());
    for (const auto& module : replaced_)
        files.push_back(module->file());
    return files;
}

void ModuleCache::clear() {
    std::lock_guard<std::mutex> lock(mutex_);
    modules_.clear();
    replaced_.clear();
}

const koralModule* loadModule(const std::string& name) {
    return ModuleCache::instance().load(name);
}

const koralUnit* findUnit(const std::string& qualifiedName, const std::string& graphClass,
                          const ModuleLoadChain* outer) {
    const std::size_t dot = qualifiedName.rfind('.');
    if (dot == std::string::npos || dot < 2)
        return nullptr;
    const koralModule* module = ModuleCache::instance().load(qualifiedName.substr(0, dot), outer);
    if (module == nullptr)
        return nullptr;
    if (!graphClass.empty() && graphClass != module->graphClass())
        return nullptr;
    return module->findUnit(std::string_view(qualifiedName).substr(dot + 1));
}

void clearKoralCaches() {
    ModuleCache::instance().clear();
    RuleCache::instance().clear();
}

}  // namespace vellum
