#include "koral/ModuleCompiler.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <string>
#include <utility>

#include "base/Console.h"
#include "grammar/ParseReport.h"
#include "grammar/SourceLines.h"
#include "koral/GraphClassHandlers.h"
#include "koral/KoralApply.h"
#include "koral/KoralCall.h"
#include "koral/KoralException.h"
#include "koral/KoralIf.h"
#include "koral/KoralWhile.h"
#include "koral/ModuleCache.h"
#include "koral/ModuleLanguage.h"
#include "koral/RuleCache.h"

namespace vellum {

namespace {

// The number before "times" as an integer: the digits before any fraction, saturated.
long long wholePart(const std::string& text) {
    const long long value = std::strtoll(text.c_str(), nullptr, 10);
    return std::clamp<long long>(value, INT_MIN, INT_MAX);
}

// The text between the parentheses of a condition token, as written: escapes such as "\)" are
// the condition language's, so the handler reads them.
std::string conditionText(const std::string& token) {
    return token.size() >= 2 ? token.substr(1, token.size() - 2) : token;
}

}  // namespace

bool ModuleLoadChain::contains(std::string_view moduleName) const {
    for (const ModuleLoadChain* link = this; link != nullptr; link = link->outer) {
        if (link->name == moduleName)
            return true;
    }
    return false;
}

ModuleCompiler::ModuleCompiler() {
    loadGrammar(kModuleGrammar, kModuleTokens);
}

ModuleCompiler::~ModuleCompiler() = default;

void ModuleCompiler::reset() {
    graphClass_.clear();
    unit_ = nullptr;
    current_ = nullptr;
    open_.clear();
    apply_ = nullptr;
    firstSeparator_ = false;
    initialCondition_ = false;
}

std::unique_ptr<koralModule> ModuleCompiler::compile(const std::string& file,
                                                     const std::string& name,
                                                     const ModuleLoadChain* outer) {
    reset();
    lines_ = std::make_unique<LineCursor>(file);
    chain_ = ModuleLoadChain{name, outer, outer != nullptr ? outer->depth + 1 : 1};
    module_ = std::make_unique<koralModule>(file);
    std::string excerpt;
    long position = 0;
    const bool ok = parseFile(file, kExcerptBefore, kExcerptAfter, excerpt, position);
    std::unique_ptr<koralModule> module = std::move(module_);
    lines_.reset();
    reset();
    if (ok) {
        module->markLoaded();
        return module;
    }
    if (position < 0)
        console() << "Module '" << name << "' contains errors!!!\n";
    else
        reportSyntaxError("Module", name, position, lineNumber(), excerpt);
    return nullptr;
}

int ModuleCompiler::onAction(int number) {
    switch (static_cast<ModuleAction>(number)) {
        case ModuleAction::ModuleName:
            return setModuleName();
        case ModuleAction::Uses:
            return useModule();
        case ModuleAction::Export:
            return addExport();
        case ModuleAction::UnitHeading:
            return startUnit();
        case ModuleAction::Call:
            return addCall();
        case ModuleAction::ApplyMode:
            return startApply();
        case ModuleAction::Alternative:
            return addAlternative();
        case ModuleAction::ConditionKind:
            return chooseCondition();
        case ModuleAction::UnitCondition:
            return setUnitCondition();
        case ModuleAction::GraphClass:
            return setGraphClass();
        case ModuleAction::IfCondition:
            return openIf();
        case ModuleAction::ThenEnd:
            return startElse();
        case ModuleAction::ElseEnd:
            return true;  // the else statements went straight into their list
        case ModuleAction::IfEnd:
            return closeStatement();
        case ModuleAction::WhileCondition:
            return openWhile();
        case ModuleAction::WhileEnd:
            return closeStatement();
        case ModuleAction::Separator:
            return setOrdering();
    }
    return unknownAction();
}

koralSourcePosition ModuleCompiler::record(std::string label, int code, std::size_t firstToken) {
    koralSourcePosition position;
    position.label = std::move(label);
    position.code = code;
    position.module = module_.get();
    position.begin = tokenSpan(firstToken).first;
    position.end = tokenSpan(0).second;
    const SourcePlace place = lines_->locate(position.begin);
    position.line = place.line;
    position.column = place.column;
    return position;
}

std::unique_ptr<KoralCondition> ModuleCompiler::compileCondition(const std::string& token) {
    const std::string text = conditionText(token);
    try {
        auto condition = GraphClassHandlers::instance().compileCondition(graphClass_, this, text);
        if (condition == nullptr) {
            console() << "Expression '" << text << "' contains errors!!!\n";
            diagnoseToken(Severity::Error, 0,
                          "the condition (" + text + ") does not compile for the graph class '" +
                              graphClass_ + "'");
        }
        return condition;
    } catch (const koralException& e) {
        console() << e.message() << "\n";
        diagnoseToken(Severity::Error, 0, plainMessage(e.message()));
        return nullptr;
    }
}

bool ModuleCompiler::setModuleName() {
    module_->setName(std::string(tokenText(0)));
    return true;
}

bool ModuleCompiler::setGraphClass() {
    graphClass_ = std::string(tokenText(0));
    module_->setGraphClass(graphClass_);
    if (GraphClassHandlers::instance().open(graphClass_))
        return true;
    diagnoseToken(Severity::Error, 0,
                  "Could not open the graph class handler for '" + graphClass_ + "'");
    return false;
}

bool ModuleCompiler::useModule() {
    const koralModule* used = ModuleCache::instance().load(std::string(tokenText(0)), &chain_);
    if (used == nullptr) {
        diagnoseToken(Severity::Error, 0,
                      "Module '" + std::string(tokenText(0)) + "' could not be loaded");
        return false;
    }
    module_->addUse(*used);
    return true;
}

bool ModuleCompiler::addExport() {
    module_->addExport(std::string(tokenText(0)));
    return true;
}

bool ModuleCompiler::startUnit() {
    auto unit = std::make_unique<koralUnit>(std::string(tokenText(0)), *module_,
                                            record("UNIT", koralSourcePosition::kUnit, 1));
    unit_ = &module_->addUnit(std::move(unit));
    current_ = &unit_->body();
    open_.clear();
    apply_ = nullptr;
    firstSeparator_ = false;
    initialCondition_ = false;
    return true;
}

bool ModuleCompiler::addCall() {
    try {
        current_->push_back(std::make_unique<koralCall>(
            std::string(tokenText(0)), record("CALL", koralSourcePosition::kCall, 1)));
    } catch (const koralException& e) {
        // The statement is left out and the module compiles on; the run would miss it.
        reportCaught(e);
        diagnoseToken(Severity::Error, 0, plainMessage(e.message()));
    }
    return true;
}

bool ModuleCompiler::startApply() {
    koralApply::Mode mode = koralApply::Mode::Once;
    long long count = 1;
    std::size_t applyToken = 1;
    switch (tokenCode(0)) {
        case kModuleOnceToken:
            break;
        case kModuleAlapToken:
            mode = koralApply::Mode::AsLongAsPossible;
            break;
        case kModuleTimesToken:
            count = wholePart(std::string(tokenText(1)));
            if (count < 2) {
                console() << "The number of times must be greater than one!\n";
                diagnoseToken(Severity::Error, 1, "The number of times must be greater than one");
                return false;
            }
            mode = koralApply::Mode::Times;
            applyToken = 2;
            break;
        default:
            return false;
    }
    auto apply = std::make_unique<koralApply>(
        mode, static_cast<int>(count), record("APPLY", koralSourcePosition::kApply, applyToken));
    apply_ = apply.get();
    current_->push_back(std::move(apply));
    firstSeparator_ = true;
    return true;
}

bool ModuleCompiler::addAlternative() {
    const std::string name(tokenText(0));
    if (const SharedRule* rule = RuleCache::instance().find(name, graphClass_)) {
        apply_->addRule(*rule, record(name, koralSourcePosition::kRuleAlternative, 0));
        return true;
    }
    const koralUnit* unit = module_->findUnit(name);
    if (unit == nullptr)
        unit = findUnit(name, graphClass_, &chain_);
    if (unit == nullptr) {
        console() << "Unit or rule '" << name << "' not found!!!\n";
        diagnoseToken(Severity::Error, 0, "Unit or rule '" + name + "' not found");
        return false;
    }
    apply_->addUnit(*unit, record(name, koralSourcePosition::kUnitAlternative, 0));
    return true;
}

bool ModuleCompiler::chooseCondition() {
    initialCondition_ = tokenCode(0) == kModuleInitialToken;
    return true;
}

bool ModuleCompiler::setUnitCondition() {
    std::unique_ptr<KoralCondition> condition = compileCondition(std::string(tokenText(0)));
    if (condition == nullptr)
        return false;
    if (initialCondition_) {
        unit_->setInitialCondition(std::move(condition),
                                   record("INITIAL", koralSourcePosition::kInitial, 1));
    } else {
        unit_->setTerminalCondition(std::move(condition),
                                    record("TERMINAL", koralSourcePosition::kTerminal, 1));
    }
    return true;
}

bool ModuleCompiler::mayOpenStatement() const {
    if (open_.size() < kMaxOpenStatements)
        return true;
    console() << "Statements nested too deeply!!!\n";
    diagnoseToken(Severity::Error, 1, "Statements nested too deeply");  // at the "if" or "while"
    return false;
}

bool ModuleCompiler::openIf() {
    if (!mayOpenStatement())
        return false;
    std::unique_ptr<KoralCondition> condition = compileCondition(std::string(tokenText(0)));
    if (condition == nullptr)
        return false;
    auto statement =
        std::make_unique<koralIf>(std::move(condition), record("IF", koralSourcePosition::kIf, 1));
    koralIf* opened = statement.get();
    current_->push_back(std::move(statement));
    open_.push_back(OpenStatement{opened, current_});
    current_ = &opened->thenStatements();
    return true;
}

bool ModuleCompiler::startElse() {
    koralIf* top = open_.empty() ? nullptr : open_.back().ifStatement;
    if (top == nullptr)
        return false;
    current_ = &top->elseStatements();
    return true;
}

bool ModuleCompiler::closeStatement() {
    if (open_.empty())
        return false;
    current_ = open_.back().enclosing;
    open_.pop_back();
    return true;
}

bool ModuleCompiler::openWhile() {
    if (!mayOpenStatement())
        return false;
    std::unique_ptr<KoralCondition> condition = compileCondition(std::string(tokenText(0)));
    if (condition == nullptr)
        return false;
    auto statement = std::make_unique<koralWhile>(std::move(condition),
                                                  record("WHILE", koralSourcePosition::kWhile, 1));
    koralWhile* opened = statement.get();
    current_->push_back(std::move(statement));
    open_.push_back(OpenStatement{nullptr, current_});
    current_ = &opened->body();
    return true;
}

bool ModuleCompiler::setOrdering() {
    const std::string separator(tokenText(0));
    const auto ordering = tokenCode(0) == kModuleSequenceToken ? koralApply::Ordering::Sequence
                                                               : koralApply::Ordering::Random;
    if (firstSeparator_) {
        apply_->setOrdering(ordering);
        firstSeparator_ = false;
        return true;
    }
    if (ordering == apply_->ordering())
        return true;
    console() << "Expected '" << separator << "' but got '" << separator << "'!!!\n";
    diagnoseToken(Severity::Error, 0, "'|' and '<' cannot be mixed in one apply statement");
    return false;
}

}  // namespace vellum
