#include "plugins/DirectedGraph/ConditionCompiler.h"

#include <optional>
#include <sstream>
#include <vector>

#include "base/Console.h"
#include "graph/PreparedRule.h"
#include "graph/RuleReader.h"
#include "plugins/DirectedGraph/ConditionText.h"
#include "plugins/DirectedGraph/RuleFiles.h"

namespace vellum {
namespace {

class Compilation {
  public:
    explicit Compilation(const std::string& text) : text_(text) {}

    std::unique_ptr<GraphCondition> run();

  private:
    std::unique_ptr<Expression> build() const;
    bool plan(const std::string& name);
    const DirectedGraphRule* loadRuleNamed(const std::string& name);
    // "SUBJECT in condition 'TEXT'REST", one line.
    bool report(const std::string& subject, const std::string& rest = {}) const {
        console() << subject << " in condition '" << text_ << "'" << rest << "\n";
        return false;
    }

    const std::string& text_;
    std::vector<GraphCondition::Binding> plan_;
    std::vector<std::unique_ptr<DirectedGraphRule>> rules_;
};

std::unique_ptr<GraphCondition> Compilation::run() {
    std::unique_ptr<Expression> expression = build();
    if (!expression)
        return nullptr;
    for (const std::string& name : expression->variableNames()) {
        if (!plan(name))
            return nullptr;
    }
    return std::make_unique<GraphCondition>(text_, std::move(expression), std::move(plan_),
                                            std::move(rules_));
}

std::unique_ptr<Expression> Compilation::build() const {
    const std::optional<std::string> source = conditionExpressionText(text_);
    if (!source)
        return nullptr;
    auto expression = std::make_unique<Expression>();
    try {
        expression->setText(*source);
    } catch (const exprException& error) {
        if (error.code() == exprException::kLibraryNotLoaded && error.first() != nullptr) {
            std::ostringstream library;
            library << *error.first();
            report("Library '" + library.str() + "'", " could not be loaded");
        }
        return nullptr;
    }
    return expression;
}

bool Compilation::plan(const std::string& name) {
    std::optional<ConditionName> meaning = parseConditionName(name);
    if (!meaning)
        return report("Unknown name '" + name + "'");
    GraphCondition::Binding binding{name, std::move(*meaning), nullptr};
    if (binding.meaning.kind == ConditionNameKind::Applicable) {
        // The expression lists each name once, so each rule is loaded once.
        binding.rule = loadRuleNamed(binding.meaning.argument);
        if (binding.rule == nullptr)
            return false;
    }
    plan_.push_back(std::move(binding));
    return true;
}

const DirectedGraphRule* Compilation::loadRuleNamed(const std::string& name) {
    const std::string file = findRuleFile(name);
    if (file.empty()) {
        report("Rule '" + name + "'",
               " not found: no file '" + ruleFileName(name) + "' along koralGraphRules");
        return nullptr;
    }
    std::unique_ptr<DirectedGraphRule> rule = loadRule(file);
    if (!rule) {
        report("Rule '" + name + "'", " could not be read from '" + file + "'");
        return nullptr;
    }
    // Prepared now, so that evaluating starts searching at once.
    rule->prepared();
    rules_.push_back(std::move(rule));
    return rules_.back().get();
}

}  // namespace

std::unique_ptr<GraphCondition> compileCondition(const std::string& text) {
    return Compilation(text).run();
}

}  // namespace vellum
