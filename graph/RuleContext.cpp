#include "graph/RuleContext.h"

#include "base/Console.h"
#include "graph/PreparedRule.h"

namespace vellum {

RuleContext::RuleContext(DirectedGraph& host, const PreparedRule& rule, const std::string& ruleName)
    : host_(host), rule_(rule), ruleName_(ruleName) {}

const std::vector<RuleVariable>& RuleContext::variables() const {
    return rule_.variables();
}

PatternCache& RuleContext::patterns() const {
    return rule_.patterns();
}

void RuleContext::bind(const GraphMorphism& occurrence) {
    const std::vector<RuleVariable>& variables = rule_.variables();
    bound_.assign(variables.size(), nullptr);
    for (std::size_t i = 0; i < variables.size(); ++i) {
        if (variables[i].vertex != nullptr)
            bound_[i] = occurrence.imageOf(variables[i].vertex);
        else if (variables[i].edge != nullptr)
            bound_[i] = occurrence.imageOf(variables[i].edge);
    }
}

int RuleContext::variableIndex(std::string_view name) const {
    const std::vector<RuleVariable>& variables = rule_.variables();
    for (std::size_t i = 0; i < variables.size(); ++i) {
        if (variables[i].name == name)
            return static_cast<int>(i);
    }
    return -1;
}

void RuleContext::report(const std::string& problem) const {
    if (reported_)
        return;
    reported_ = true;
    console() << "Rule '" << ruleName_ << "': " << problem << "\n";
}

}  // namespace vellum
