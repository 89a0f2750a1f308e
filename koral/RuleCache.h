// The rules that modules apply, loaded once per program for each name and graph class and kept
// until the program ends (or a test clears them). A rule named R of graph class C is the file
// R + "." + the value of "CEXTRULE", with every "." of R making a subfolder, found along
// "koralGraphRules" and read by C's graph class handler (gcLoadGraphRule).
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "koral/SharedRule.h"

namespace vellum {

class RuleCache {
  public:
    // The process-wide cache.
    static RuleCache& instance();

    // The rule of that name and class, loaded now unless it is cached. Null when no file is
    // found or the handler returns no rule (the reader reports why); a handler without
    // gcLoadGraphRule is reported as caught ("caugh't: ...", "from class: koralLibrary") and
    // gives null too. The result stays valid until clear().
    const SharedRule* find(const std::string& name, const std::string& graphClass);

    // Drops every rule: every SharedRule handed out becomes invalid.
    void clear();

    // The files the rules were read from (for a tool that must not write over what it read).
    std::vector<std::string> files();

    // The file name searched for: "a.b" of class C gives "a/b." + value of "CEXTRULE".
    static std::string fileName(const std::string& name, const std::string& graphClass);

  private:
    std::mutex mutex_;  // guards the map; rules are loaded outside it
    std::map<std::pair<std::string, std::string>, std::unique_ptr<SharedRule>> rules_;
    std::vector<std::string> files_;  // of the rules in rules_
};

// The rule of that name and graph class (RuleCache::find), or null.
const DirectedGraphRule* findRule(const std::string& name, const std::string& graphClass);

}  // namespace vellum
