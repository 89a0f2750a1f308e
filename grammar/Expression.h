// An expression of the language (attribute expressions and application conditions of rules):
// built once from its text, then evaluated any number of times against an environment of
// variable bindings. The object is a reader of the grammar engine whose actions build the tree on
// two stacks while the text is parsed; the grammar is compiled once per program, not per object.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "grammar/ExpressionBuilder.h"
#include "grammar/ExpressionCall.h"
#include "grammar/ExpressionEnvironment.h"
#include "grammar/ExpressionException.h"
#include "grammar/ExpressionNodes.h"
#include "grammar/GrammarParser.h"
#include "grammar/Value.h"

namespace vellum {

class Expression : public GrammarParser {
  public:
    Expression();
    // Builds `text` as setText() does.
    explicit Expression(const std::string& text);
    ~Expression() override;

    // Replaces the tree with the one built from `text`. Throws exprException code 0 when the text
    // is not a well-formed expression (text after a complete expression is ignored: "1 2" is 1)
    // and code 7 when a called library cannot be loaded; the object then holds no tree.
    void setText(const std::string& text);
    bool hasTree() const { return root_ != nullptr; }
    // The names of the variables the tree reads, each once, in the order of their first
    // appearance in the text; empty when there is no tree. Lets a caller bind just those.
    const std::vector<std::string>& variableNames() const { return variableNames_; }
    // The library calls of the tree in written order (a call before those in its arguments);
    // empty when there is no tree.
    std::vector<CallSite> calls() const;

    // The value of the tree in `environment`: a new value for the caller, or null when there is
    // no tree or the tree yields nothing (a library function returned nothing). Throws
    // exprException codes 1 to 5. The tree is not changed: evaluate as often as needed.
    std::unique_ptr<Value> evaluate(const Environment& environment) const;
    // The same in the object's own bindings.
    std::unique_ptr<Value> evaluate() const { return evaluate(bindings_); }
    // Builds `text`, evaluates it and drops the tree again.
    std::unique_ptr<Value> evaluateOnce(const std::string& text, const Environment& environment);

    // The object's own variable bindings.
    Environment& bindings() { return bindings_; }
    const Environment& bindings() const { return bindings_; }

  protected:
    int onAction(int number) override;

  private:
    int push(Operator op);
    int pushVariable();
    int pushNumber();
    int pushCall();
    int reduce();

    ExpressionBuilder builder_;
    NodePtr root_;
    std::vector<std::string> variableNames_;  // those of root_'s variable nodes
    Environment bindings_;
    // What a failed parse raises: the code, and the library's name for code 7.
    int failure_ = exprException::kMalformed;
    std::optional<Value> failureValue_;
};

}  // namespace vellum
