// What a function library exports for expressions to call, and the macro that exports a function
// under its call name. The call $(lib.name)(a, b) loads the library file "$(lib" (or "$(lib.so")
// and looks up the entry "name)": both names are cut from the call's whole text at its first full
// stop. A complete library:
//
//     #include "grammar/ExpressionFunction.h"
//     VELLUM_EXPRESSION_FUNCTION(twice) {
//         if (arguments->size() != 1 || !(*arguments)[0].is(vellum::ValueType::Integer))
//             return nullptr;
//         return vellum::newResult(vellum::Value::integer(2 * (*arguments)[0].asInteger()));
//     }
//
// built as a shared library named "$(mylib.so" and linked with vellum-grammar.
#pragma once

#include "grammar/ExpressionEnvironment.h"
#include "grammar/Value.h"

namespace vellum {

extern "C" {
// A library function. In: the argument values in written order and the environment the
// expression is evaluated in (both owned by the caller, valid during the call). Out: a new value
// made with newResult(), which the caller then owns, or null for "nothing" (an operator, argument
// or condition that receives nothing raises exprException code 1). Must not throw.
typedef Value* (*ExpressionFunction)(const ValueList* arguments, const Environment* environment);
}

// Hands a value to the caller of a library function. The value is allocated by the shared
// grammar library, so the program that called the function can release it.
Value* newResult(Value value);

}  // namespace vellum

// The symbol name of the function called as $(lib.name): "name)". GCC writes the asm label into
// the assembly as it stands, so it has to be quoted there; clang quotes it by itself.
#if defined(__clang__)
#define VELLUM_EXPRESSION_SYMBOL(name) __asm__(#name ")")
#else
#define VELLUM_EXPRESSION_SYMBOL(name) __asm__("\"" #name ")\"")
#endif

// Defines the library function called as $(lib.name); the body sees `arguments` and
// `environment` and returns as ExpressionFunction says. `name` must be a valid C identifier. The
// body is an ordinary function; the entry "name)" is an alias of it, since a function whose own
// symbol is "name)" breaks GCC when it splits the function into parts named after the symbol.
#define VELLUM_EXPRESSION_FUNCTION(name)                                                      \
    extern "C" __attribute__((visibility("default"))) vellum::Value* vellumFunction_##name(   \
        const vellum::ValueList* arguments, const vellum::Environment* environment);          \
    extern "C" __attribute__((visibility("default"))) vellum::Value* vellumEntry_##name(      \
        const vellum::ValueList* arguments, const vellum::Environment* environment)           \
        VELLUM_EXPRESSION_SYMBOL(name) __attribute__((alias("vellumFunction_" #name)));       \
    vellum::Value* vellumFunction_##name([[maybe_unused]] const vellum::ValueList* arguments, \
                                         [[maybe_unused]] const vellum::Environment* environment)
