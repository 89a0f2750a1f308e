// Fuzz target: arbitrary text built as an expression and, when it builds, evaluated against a
// few bindings of every type. Any failure must be an exprException with a code from 0 to 7.
#include <cstddef>
#include <cstdint>
#include <string>

#include "base/Console.h"
#include "fuzz/FuzzSupport.h"
#include "grammar/Expression.h"
#include "grammar/ExpressionEnvironment.h"
#include "grammar/ExpressionException.h"
#include "grammar/Value.h"

using vellum::fuzz::check;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    text = text.substr(0, text.find('\0'));
    vellum::ConsoleCapture capture;
    static const vellum::Environment environment = [] {
        vellum::Environment e;
        e.bind("i", vellum::Value::integer(-7));
        e.bind("x.count", vellum::Value::integer(2147483647));
        e.bind("r", vellum::Value::real(0.5));
        e.bind("b", vellum::Value::boolean(true));
        e.bind("s", vellum::Value::string("\"red\""));
        return e;
    }();
    try {
        vellum::Expression expression(text);
        (void)expression.evaluate(environment);
        (void)expression.evaluate(environment);  // the tree survives evaluation
    } catch (const vellum::exprException& e) {
        check(e.code() >= 0 && e.code() <= 7);
    }
    return 0;
}
