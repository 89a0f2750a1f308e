// The patterns that one rule's expressions name (see PatternCondition), each read and prepared
// once, on first use, for that rule's variables, and kept with the rule's prepared form. How a
// name becomes a rule is the caller's business (the function library looks for a rule file along
// the rule search path), given as a loader. Used by one application of the rule at a time, as
// the rest of its prepared form is.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "graph/PatternCondition.h"

namespace vellum {

// Reads the rule of that name; null, with `problem` saying why in words that follow the name
// ("not found: ..."), when there is none.
using PatternLoader = std::function<std::unique_ptr<DirectedGraphRule>(const std::string& name,
                                                                       std::string& problem)>;

class PatternCache {
  public:
    // The pattern of that name for `variables`, loaded now unless it is known. Null, with
    // `problem` set, when it could not be loaded or cannot serve (PatternCondition::problemOf);
    // such an answer is kept too, so a broken pattern is read only once. The pattern stays
    // valid as long as the cache.
    PatternCondition* find(const std::string& name, const std::vector<RuleVariable>& variables,
                           const PatternLoader& load, std::string& problem);

  private:
    struct Entry {
        std::unique_ptr<PatternCondition> pattern;
        std::string problem;  // when pattern is null
    };
    std::map<std::string, Entry, std::less<>> entries_;
};

}  // namespace vellum
