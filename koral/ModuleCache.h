// The modules loaded so far, one per name, compiled on first use and kept until the program ends
// (or a test clears them), and the look-ups built on them: a module by name, a unit by
// "module.unit". A module named "a.b" is the file "a/b.mod", found along "koralModules" (with
// the variable unset or empty, relative to the working folder).
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "koral/KoralModule.h"

namespace vellum {

struct ModuleLoadChain;

class ModuleCache {
  public:
    // The process-wide cache.
    static ModuleCache& instance();

    // The module of that name: the cached one, else compiled from its file now. Null when no
    // file is found (no message) or the text has errors (reported by the compiler). `outer` is
    // the chain of modules being compiled that asked for it; a module already in that chain is
    // refused with "Circular use of module 'NAME'!!!". The result stays valid until clear().
    const koralModule* load(const std::string& name, const ModuleLoadChain* outer = nullptr);

    // The module in that file, known by the file's name without folder and ".mod". The cached
    // module of that name is kept when it came from the same file; otherwise the file is
    // compiled and takes the name over (a module handed out before stays valid). Null when the
    // file does not exist or has errors.
    const koralModule* loadFile(const std::string& file, const ModuleLoadChain* outer = nullptr);

    // The module in that file compiled now, even when the cache holds it already (an editor
    // compiles its text again after changes); it takes the name over as loadFile() does. Null
    // when the file does not exist or has errors.
    const koralModule* compileFile(const std::string& file);

    // Drops every module: every module and unit handed out becomes invalid.
    void clear();

    // The files of the modules loaded, as they were found (for a tool that must not write over
    // what it read).
    std::vector<std::string> files();

    // "a.b" gives "a/b.mod".
    static std::string fileName(const std::string& name);

  private:
    const koralModule* compile(const std::string& name, const std::string& file,
                               const ModuleLoadChain* outer, bool replace);

    std::mutex mutex_;  // guards both containers; compiling happens outside it
    std::map<std::string, std::unique_ptr<koralModule>> modules_;
    std::vector<std::unique_ptr<koralModule>> replaced_;  // kept alive for earlier holders
};

// ModuleCache::load on the process-wide cache.
const koralModule* loadModule(const std::string& name);

// The unit "module.unit": split at the last "."; the module part must have at least two
// characters (a deliberate limit: "a.unit" and names without "." give null). Null too when the
// module is not found, when `graphClass` is not empty and differs from the module's, or when
// the module has no unit of that name.
const koralUnit* findUnit(const std::string& qualifiedName, const std::string& graphClass,
                          const ModuleLoadChain* outer = nullptr);

// Empties the module and the rule cache (for tests; nothing may be running).
void clearKoralCaches();

}  // namespace vellum
