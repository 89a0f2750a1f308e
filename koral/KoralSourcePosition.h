// Where a statement of a Koral module stands in its file: the record the interpreter hands to
// the frame with event 4000 at the start of each statement, so that a source display can show
// the statement being run. Made by the module compiler, owned by the statement it describes.
#pragma once

#include <string>

namespace vellum {

class koralModule;

struct koralSourcePosition {
    // The kind codes; the numbers are part of the frame interface.
    static constexpr int kApply = 4001;
    static constexpr int kRuleAlternative = 4002;
    static constexpr int kUnitAlternative = 4003;
    static constexpr int kUnit = 4004;
    static constexpr int kInitial = 4005;
    static constexpr int kTerminal = 4006;
    static constexpr int kCall = 4007;
    static constexpr int kIf = 4008;
    static constexpr int kWhile = 4009;

    // "APPLY", "UNIT", "INITIAL", "TERMINAL", "CALL", "IF", "WHILE", or the name of a rule or
    // unit alternative as written.
    std::string label;
    int code = 0;
    const koralModule* module = nullptr;  // whose file() the offsets refer to
    // The characters from the statement's first token up to the end of the last token read
    // when the record was made (the heading: "apply 3 times", "if (...)", a name).
    long begin = 0;
    long end = 0;
    // Of the first token, both counted from 1.
    int line = 0;
    int column = 0;
};

}  // namespace vellum
