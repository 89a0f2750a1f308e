// Shared by the fuzz targets: a check that turns a broken property into a finding, and the
// comparison of a parse from memory with the same parse from a file.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

namespace vellum::fuzz {

// A violated property crashes the target, so that libFuzzer keeps the input.
inline void check(bool condition) {
    if (!condition)
        __builtin_trap();
}

// What one parse left behind.
struct ParseOutcome {
    bool ok = false;
    long position = 0;
    std::string excerpt;
    std::string actions;
};

// The reporting parse of a file must stop where the text says: position -1 unless the walk ended
// not matched, and then an excerpt of 6 characters before to 16 after, clamped, up to a zero byte.
inline void checkReport(const ParseOutcome& outcome, std::string_view content) {
    if (outcome.position == -1) {
        check(outcome.excerpt.empty());
        return;
    }
    check(!outcome.ok);
    check(outcome.position >= 0 && outcome.position <= static_cast<long>(content.size()));
    const long from = outcome.position < 6 ? 0 : outcome.position - 6;
    const long to = std::min<long>(outcome.position + 16, static_cast<long>(content.size()));
    std::string_view expected =
        content.substr(static_cast<std::size_t>(from), static_cast<std::size_t>(to - from));
    expected = expected.substr(0, expected.find('\0'));
    check(outcome.excerpt == expected);
}

}  // namespace vellum::fuzz
