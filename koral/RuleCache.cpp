#include "koral/RuleCache.h"

#include <algorithm>

#include "base/SearchPaths.h"
#include "koral/FileSearch.h"
#include "koral/GraphClassHandlers.h"
#include "koral/KoralException.h"

namespace vellum {

RuleCache& RuleCache::instance() {
    static RuleCache cache;
    return cache;
}

std::string RuleCache::fileName(const std::string& name, const std::string& graphClass) {
    std::string file = name;
    std::replace(file.begin(), file.end(), '.', '/');
    return file + "." + SearchPaths::instance().value(graphClass + "EXTRULE");
}

const SharedRule* RuleCache::find(const std::string& name, const std::string& graphClass) {
    const auto key = std::make_pair(name, graphClass);
    {
        std::lock_guard<std::mutex> lock(mutex_);
        const auto found = rules_.find(key);
        if (found != rules_.end())
            return found->second.get();
    }
    const std::string path = findFile(fileName(name, graphClass), "koralGraphRules");
    if (path.empty())
        return nullptr;
    std::unique_ptr<DirectedGraphRule> rule;
    try {
        rule.reset(GraphClassHandlers::instance().loadRuleEntry(graphClass)(path.c_str()));
    } catch (const koralException& e) {
        reportCaught(e);
        return nullptr;
    }
    if (rule == nullptr)
        return nullptr;
    auto loaded = std::make_unique<SharedRule>(name, std::move(rule));
    std::lock_guard<std::mutex> lock(mutex_);
    // Another thread may have loaded the same rule meanwhile: the first one stays.
    auto& slot = rules_[key];
    if (slot == nullptr) {
        slot = std::move(loaded);
        files_.push_back(path);
    }
    return slot.get();
}

void RuleCache::clear() {
    std::lock_guard<std::mutex> lock(mutex_);
    rules_.clear();
    files_.clear();
}

std::vector<std::string> RuleCache::files() {
    std::lock_guard<std::mutex> lock(mutex_);
    return files_;
}

const DirectedGraphRule* findRule(const std::string& name, const std::string& graphClass) {
    const SharedRule* rule = RuleCache::instance().find(name, graphClass);
    return rule != nullptr ? &rule->rule() : nullptr;
}

}  // namespace vellum
