// The module compiler: reads a .mod file with the grammar engine and builds the module inside the
// semantic actions, as the text goes by: units, statements with their source positions, the
// rules and units that apply statements name, and the conditions compiled by the graph class
// handler. Modules that the text uses are loaded through the module cache on the way.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "grammar/GrammarParser.h"
#include "koral/KoralCondition.h"
#include "koral/KoralModule.h"

namespace vellum {

class koralApply;
class koralIf;
class LineCursor;

// The modules being compiled on this thread, innermost first, so that a module that uses itself
// (directly or through others) is refused instead of being loaded without end.
struct ModuleLoadChain {
    std::string name;
    const ModuleLoadChain* outer = nullptr;
    int depth = 1;

    bool contains(std::string_view moduleName) const;
};

class ModuleCompiler : public GrammarParser {
  public:
    // If and while statements open at once. Deeper nesting fails the module with "Statements
    // nested too deeply!!!": running and destroying the tree recurse once per level, and the
    // machine stack must not run out on any input.
    static constexpr std::size_t kMaxOpenStatements = 256;

    ModuleCompiler();
    ~ModuleCompiler() override;

    // Compiles the file into a new module known as `name` (the name it is loaded by). Null when
    // the text has errors: the console then shows the failing action's message, if any, and
    // "Module 'NAME' contains errors near position P in line L" with the "Dump '...' !!!" line
    // for a syntax error, or "Module 'NAME' contains errors!!!" when an action failed. `outer`
    // is the chain of modules whose compilation asked for this one (null for none).
    std::unique_ptr<koralModule> compile(const std::string& file, const std::string& name,
                                         const ModuleLoadChain* outer = nullptr);

    // The module's graph class, once read; what gcGraphClassExpression's compiler argument is.
    const std::string& graphClass() const { return graphClass_; }

    int onAction(int number) override;

  private:
    // An if or while whose end has not been read yet, with the list it was appended to.
    struct OpenStatement {
        koralIf* ifStatement;  // null for a while
        StatementList* enclosing;
    };

    void reset();
    koralSourcePosition record(std::string label, int code, std::size_t firstToken);
    std::unique_ptr<KoralCondition> compileCondition(const std::string& token);

    bool setModuleName();
    bool setGraphClass();
    bool useModule();
    bool addExport();
    bool startUnit();
    bool addCall();
    bool startApply();
    bool addAlternative();
    bool chooseCondition();
    bool setUnitCondition();
    bool openIf();
    bool startElse();
    bool openWhile();
    bool closeStatement();
    bool setOrdering();
    bool mayOpenStatement() const;

    std::unique_ptr<LineCursor> lines_;
    ModuleLoadChain chain_;
    std::unique_ptr<koralModule> module_;
    std::string graphClass_;
    koralUnit* unit_ = nullptr;
    StatementList* current_ = nullptr;  // where the next statement goes
    std::vector<OpenStatement> open_;
    koralApply* apply_ = nullptr;    // the apply whose alternatives are being read
    bool firstSeparator_ = false;    // the current apply's first "|" or "<" is still to come
    bool initialCondition_ = false;  // the next unit condition is the initial one
};

}  // namespace vellum
