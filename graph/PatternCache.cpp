#include "graph/PatternCache.h"

namespace vellum {

PatternCondition* PatternCache::find(const std::string& name,
                                     const std::vector<RuleVariable>& variables,
                                     const PatternLoader& load, std::string& problem) {
    auto at = entries_.find(name);
    if (at == entries_.end()) {
        Entry entry;
        if (std::unique_ptr<DirectedGraphRule> rule = load(name, entry.problem)) {
            entry.pattern = PatternCondition::prepare(std::move(rule), variables, entry.problem);
            if (!entry.pattern)
                entry.problem = "the pattern '" + name + "' " + entry.problem;
        } else {
            entry.problem = "the pattern '" + name + "' " + entry.problem;
        }
        at = entries_.emplace(name, std::move(entry)).first;
    }
    problem = at->second.problem;
    return at->second.pattern.get();
}

}  // namespace vellum
