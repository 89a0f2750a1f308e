// Fuzz target: the input is cut at its first two zero bytes into a grammar text, a token text and
// an input text. Both texts are compiled and the input parsed from memory and from a file; the
// two parses must agree on the result and on every action called, and the file parse must report
// where it stopped consistently. Findings: crashes, sanitizer reports, hangs, disagreements.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "fuzz/FuzzSupport.h"
#include "grammar/GrammarParser.h"
#include "tests/support/TempFile.h"

namespace {

using vellum::fuzz::check;
using vellum::fuzz::ParseOutcome;

// Logs the actions and reads the latest tokens the way readers do; every action numbered 6
// modulo 7 aborts, so that aborting parses are covered too.
class FuzzParser : public vellum::GrammarParser {
  public:
    bool load(std::string_view grammar, std::string_view tokens) {
        return loadGrammar(grammar, tokens);
    }
    int onAction(int number) override {
        log_ += std::to_string(number) + " ";
        for (std::size_t k = 0; k < 4; ++k) {
            if (const vellum::TokenRecord* token = tokenAt(k))
                check(token->text.size() <= 127 || token->code == 0);
        }
        return number % 7 == 6 ? 0 : 1;
    }
    std::string takeLog() { return std::exchange(log_, ""); }

  private:
    std::string log_;
};

std::string_view cut(std::string_view& rest) {
    const std::size_t zero = rest.find('\0');
    const std::string_view part = rest.substr(0, zero);
    rest = zero == std::string_view::npos ? std::string_view() : rest.substr(zero + 1);
    return part;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    const std::string_view grammar = cut(rest);
    const std::string_view tokens = cut(rest);
    const std::string input(cut(rest));
    FuzzParser parser;
    if (!parser.load(grammar, tokens))
        return 0;
    vellum::test::TempFile file(input);
    if (file.path().empty())
        return 0;
    ParseOutcome fromFile;
    fromFile.ok = parser.parseFile(file.path(), 6, 16, fromFile.excerpt, fromFile.position);
    fromFile.actions = parser.takeLog();
    check(parser.tokenAt(0) == nullptr);
    check(parser.lineNumber() == 1);
    vellum::fuzz::checkReport(fromFile, input);
    const bool fileLimit = parser.limitReached();
    const bool fromString = parser.parseString(input);
    check(fromString == fromFile.ok);
    check(parser.takeLog() == fromFile.actions);
    check(parser.limitReached() == fileLimit);
    return 0;
}
