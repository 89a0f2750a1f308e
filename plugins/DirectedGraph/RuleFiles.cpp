#include "plugins/DirectedGraph/RuleFiles.h"

#include <algorithm>

#include "base/SearchPaths.h"
#include "koral/FileSearch.h"

namespace vellum {

std::string ruleFileName(const std::string& ruleName) {
    std::string file = ruleName;
    std::replace(file.begin(), file.end(), '.', '/');
    return file + "." + SearchPaths::instance().value("DirectedGraphEXTRULE");
}

std::string findRuleFile(const std::string& ruleName) {
    return findFile(ruleFileName(ruleName), "koralGraphRules");
}

}  // namespace vellum
