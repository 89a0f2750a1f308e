// The auxiliary token rules every reader's token text ends with (the escape inside quoted texts
// and the character classes of names and numbers), and a compile-time join, so that each reader
// spells out only its own tokens yet still hands the engine one constant text.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace vellum {

inline constexpr char kCharacterClasses[] = R"TOKENS($INTERNAL : 1003 = "\\" "$CHAR$".
CHARS = LETTER {LETTER | DIGITS09 | "_"}.
DIGITS09 = "0-9".
DIGITS19 = "1-9".
LETTER = "a-z" | "A-Z".
)TOKENS";

// A text joined from string literals at compile time, ending in one '\0'.
template <std::size_t N>
struct JoinedText {
    std::array<char, N> chars{};
    constexpr const char* c_str() const { return chars.data(); }
    constexpr operator std::string_view() const { return {chars.data(), N - 1}; }
};

template <std::size_t... N>
constexpr JoinedText<(N + ...) - sizeof...(N) + 1> joinText(const char (&... parts)[N]) {
    JoinedText<(N + ...) - sizeof...(N) + 1> result;
    const char* texts[] = {parts...};
    const std::size_t lengths[] = {(N - 1)...};
    std::size_t at = 0;
    for (std::size_t i = 0; i < sizeof...(N); ++i) {
        for (std::size_t k = 0; k < lengths[i]; ++k)
            result.chars[at++] = texts[i][k];
    }
    return result;
}

}  // namespace vellum
