#include "grammar/GrammarParser.h"

#include <algorithm>
#include <cctype>
#include <vector>

#include "base/Console.h"
#include "grammar/ParseReport.h"
#include "grammar/SyntaxGraph.h"

namespace vellum {
namespace {

// The walk keeps its own stack of open nonterminals instead of recursing, so deep nesting in the
// input cannot overflow the machine stack. These bounds end a walk that a malformed grammar sends
// into a loop (left recursion, an optional part inside a repetition).
constexpr std::size_t kMaxNesting = 1u << 20;
constexpr long kMaxIdleSteps = 1L << 20;

// How much of the input a syntax error quotes, and how many expected terminals it lists.
constexpr long kQuotedCharacters = 16;
constexpr std::size_t kMaxExpected = 8;

bool isNameCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

// The texts a definition matches when it is a fixed text (a keyword or a sign), one for each
// spelling where alternatives give several ("CW" | "cw"); none otherwise.
std::vector<std::string> fixedTexts(const TokenDefinitions& tokens, int definition) {
    const std::vector<PatternNode>& nodes = tokens.nodes();
    std::vector<std::string> texts;
    int first = tokens.definitions()[static_cast<std::size_t>(definition)].pattern;
    for (; first >= 0 && texts.size() < nodes.size();
         first = nodes[static_cast<std::size_t>(first)].alternative) {
        std::string text;
        std::size_t steps = 0;
        for (int node = first; node >= 0; node = nodes[static_cast<std::size_t>(node)].successor) {
            const PatternNode& pattern = nodes[static_cast<std::size_t>(node)];
            // An empty literal ends an optional part or a repetition, which loops back.
            if (pattern.kind != PatternKind::Literal || pattern.text.empty() ||
                (node != first && pattern.alternative >= 0) || ++steps > nodes.size())
                return {};
            text += pattern.text;
        }
        texts.push_back(std::move(text));
    }
    return texts;
}

// A token as a syntax error names what it expected; nothing for a token the grammar could not
// resolve (a grammar may be loaded with token definitions that did not compile).
std::string describeToken(const TokenDefinitions* definitions, int definition) {
    if (definitions == nullptr || definition < 0)
        return {};
    const TokenDefinitions& tokens = *definitions;
    const std::vector<std::string> fixed = fixedTexts(tokens, definition);
    if (!fixed.empty())
        return "'" + fixed.front() + "'";
    const std::string& name = tokens.definitions()[static_cast<std::size_t>(definition)].name;
    if (name == "NUMBER")
        return "a number";
    if (name == "IDENTIFIER")
        return "a name";
    if (name == "LLSTRING" || name == "STRING")
        return "a string";
    if (name == "EXPRESSION")
        return "an expression in [ ]";
    if (name == "LXCONDITION")
        return "a condition in ( )";
    if (name == "DLL")
        return "a library call $(...)";
    return name;
}

}  // namespace

GrammarParser::GrammarParser() : scanner_(std::make_unique<TokenScanner>()) {}

GrammarParser::~GrammarParser() = default;

int GrammarParser::onAction(int) {
    return 1;
}

void GrammarParser::setScanner(std::unique_ptr<TokenScanner> scanner) {
    scanner_ = std::move(scanner);
    if (grammar_)
        scanner_->setDefinitions(grammar_->tokens());
}

bool GrammarParser::loadGrammar(std::string_view grammar, std::string_view tokens) {
    grammar_ = GrammarDefinition::compile(grammar, tokens);
    scanner_->setDefinitions(grammar_->tokens());
    return grammar_->ok();
}

void GrammarParser::skipBlanks() {
    while (syntax::isBlank(cache_.peek()))
        cache_.read();
}

bool GrammarParser::matchLiteral(const std::string& text) {
    const long start = cache_.tell();
    for (char expected : text) {
        if (cache_.atEnd() || cache_.read() != expected) {
            cache_.seek(start);
            return false;
        }
    }
    return true;
}

int GrammarParser::walk() {
    limitReached_ = false;
    if (!grammar_ || !grammar_->ok())
        return kNotMatched;
    const auto& nodes = grammar_->nodes();
    const auto& productions = grammar_->productions();
    std::vector<int> callers;  // the nonterminal nodes whose productions are being walked
    int result = kNotMatched;
    int current = productions[static_cast<std::size_t>(grammar_->start())].graph;
    long furthest = cache_.tell();
    long idle = 0;
    for (;;) {
        if (current < 0) {
            // A production's graph ended: its result goes to the nonterminal that called it.
            if (callers.empty())
                return result;
            const GrammarNode& caller = nodes[static_cast<std::size_t>(callers.back())];
            callers.pop_back();
            current = result == kMatched ? caller.successor : caller.alternative;
            continue;
        }
        skipBlanks();
        if (cache_.tell() > furthest) {
            furthest = cache_.tell();
            idle = 0;
        } else if (++idle > kMaxIdleSteps) {
            limitReached_ = true;
            return kNotMatched;
        }
        const GrammarNode& node = nodes[static_cast<std::size_t>(current)];
        switch (node.kind) {
            case GrammarNodeKind::Nonterminal:
                if (callers.size() >= kMaxNesting) {
                    limitReached_ = true;
                    return kNotMatched;
                }
                callers.push_back(current);
                current = productions[static_cast<std::size_t>(node.production)].graph;
                continue;
            case GrammarNodeKind::Literal:
                result = matchLiteral(node.text) ? kMatched : kNotMatched;
                if (result == kNotMatched)
                    noteExpected(current, cache_.tell());
                break;
            case GrammarNodeKind::Action:
                if (onAction(node.action) == 0)
                    return kAborted;
                break;
            case GrammarNodeKind::Token: {
                const long at = cache_.tell();
                result = scanner_->expectDefinition(node.token) != 0 ? kMatched : kNotMatched;
                if (result == kMatched)
                    noteAccepted();
                else
                    noteExpected(current, at);
                break;
            }
        }
        current = result == kMatched ? node.successor : node.alternative;
    }
}

void GrammarParser::noteAccepted() {
    const TokenRecord* token = scanner_->tokenAt(0);
    const long end = cache_.tell();
    const long begin = end - (token != nullptr ? static_cast<long>(token->text.size()) : 0);
    spans_[spanCount_ % spans_.size()] = {begin, end};
    ++spanCount_;
}

std::string_view GrammarParser::tokenText(std::size_t k) const {
    const TokenRecord* token = tokenAt(k);
    return token != nullptr ? std::string_view(token->text) : std::string_view();
}

int GrammarParser::tokenCode(std::size_t k) const {
    const TokenRecord* token = tokenAt(k);
    return token != nullptr ? token->code : -1;
}

int GrammarParser::unknownAction() {
    console() << "Unkown callback number !!!\n";
    return 0;
}

std::pair<long, long> GrammarParser::tokenSpan(std::size_t k) const {
    if (k >= spanCount_ || k >= spans_.size())
        return {0, 0};
    return spans_[(spanCount_ - 1 - k) % spans_.size()];
}

void GrammarParser::noteExpected(int node, long position) {
    if (position < expectedAt_)
        return;
    if (position > expectedAt_) {
        expected_.clear();
        expectedAt_ = position;
    }
    if (expected_.size() < 4 * kMaxExpected)
        expected_.push_back(node);
}

std::string GrammarParser::expectation() const {
    std::vector<std::string> names;
    for (int index : expected_) {
        const GrammarNode& node = grammar_->nodes()[static_cast<std::size_t>(index)];
        std::string name = node.kind == GrammarNodeKind::Literal
                               ? (node.text.empty() ? "" : "'" + node.text + "'")
                               : describeToken(grammar_->tokens().get(), node.token);
        if (name.empty() || names.size() == kMaxExpected)
            continue;
        bool known = false;
        for (const std::string& listed : names)
            known = known || listed == name;
        if (!known)
            names.push_back(std::move(name));
    }
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0)
            text += i + 1 == names.size() ? " or " : ", ";
        text += names[i];
    }
    return text;
}

std::string GrammarParser::keywordPrefix(long position) {
    // A keyword accepted just before, glued to the letters that follow ("vertexA").
    const TokenRecord* latest = tokenAt(0);
    if (latest != nullptr && tokenSpan(0).second == position && position > 0) {
        cache_.seek(position);
        if (isKeyword(latest->code, latest->text) && isNameCharacter(cache_.peek()))
            return gluedKeyword(latest->text);
    }
    cache_.seek(position);
    const int code = scanner_->nextToken();
    const std::string keyword = scanner_->text();
    if (code <= 0 || keyword.empty() || !isNameCharacter(keyword.back()) ||
        !isKeyword(code, keyword))
        return {};
    if (isNameCharacter(cache_.peek()))
        return gluedKeyword(keyword);
    // A keyword where a name was expected: the user chose a name the language reserves.
    return expectedAt_ == position && expectation().find("a name") != std::string::npos
               ? "'" + keyword + "' is a keyword, not a name"
               : std::string();
}

bool GrammarParser::isKeyword(int code, const std::string& text) const {
    const TokenDefinitions& tokens = *grammar_->tokens();
    for (std::size_t i = 0; i < tokens.definitions().size(); ++i) {
        if (tokens.definitions()[i].code == code) {
            const std::vector<std::string> fixed = fixedTexts(tokens, static_cast<int>(i));
            return std::find(fixed.begin(), fixed.end(), text) != fixed.end();
        }
    }
    return false;
}

std::string GrammarParser::gluedKeyword(const std::string& keyword) {
    std::string word = keyword;
    while (isNameCharacter(cache_.peek()) && word.size() < kMaxTokenText)
        word.push_back(cache_.read());
    return "'" + word + "' begins with the keyword '" + keyword + "'";
}

std::string GrammarParser::describeFailure(long position) {
    if (limitReached_)
        return "the text nests too deeply for the reader";
    std::string reason;
    if (position >= cache_.length()) {
        reason = "unexpected end of input";
    } else {
        reason = keywordPrefix(position);
        if (reason.empty()) {
            std::string near;
            cache_.excerpt(position, position + kQuotedCharacters, near);
            near = near.substr(0, near.find_first_of("\r\n"));
            reason = "syntax error near '" + escapeExcerpt(near) + "'";
        }
    }
    const std::string expected = expectedAt_ == position ? expectation() : std::string();
    return expected.empty() ? reason : reason + ": expected " + expected;
}

void GrammarParser::noteFailure(int result) {
    syntaxError_.clear();
    errorPosition_ = -1;
    if (result != kNotMatched || grammar_ == nullptr || !grammar_->ok())
        return;
    errorPosition_ = cache_.tell();
    syntaxError_ = describeFailure(errorPosition_);
    cache_.seek(errorPosition_);
}

void GrammarParser::diagnoseToken(Severity severity, std::size_t k, std::string message) const {
    diagnose(severity, fileName_, tokenSpan(k).first, std::move(message));
}

bool GrammarParser::parseString(const char* text) {
    fileName_.clear();
    if (!cache_.attach(text))
        return false;
    scanner_->reset(&cache_);
    spanCount_ = 0;
    expected_.clear();
    expectedAt_ = -1;
    const int result = walk();
    noteFailure(result);
    cache_.close();
    scanner_->detach();
    return result == kMatched;
}

void GrammarParser::noteReadElsewhere(const std::string& fileName) {
    fileName_ = fileName;
    syntaxError_.clear();
    errorPosition_ = -1;
    limitReached_ = false;
    spanCount_ = 0;
    expected_.clear();
    expectedAt_ = -1;
    cache_.close();
    scanner_->reset(nullptr);
}

bool GrammarParser::parseFile(const std::string& fileName) {
    std::string excerpt;
    long position = 0;
    return parseFile(fileName, 0, 0, excerpt, position);
}

bool GrammarParser::parseFile(const std::string& fileName, long before, long after,
                              std::string& excerpt, long& position) {
    excerpt.clear();
    position = 0;
    fileName_ = fileName;
    syntaxError_.clear();
    errorPosition_ = -1;
    if (!cache_.open(fileName))
        return false;
    scanner_->reset(&cache_);
    spanCount_ = 0;
    expected_.clear();
    expectedAt_ = -1;
    const Diagnostics* collector = Diagnostics::current();
    const std::size_t recorded = collector != nullptr ? collector->size() : 0;
    const int result = walk();
    noteFailure(result);
    if (result == kNotMatched) {
        position = cache_.tell();
        cache_.excerpt(position - before, position + after, excerpt);
        diagnose(Severity::Error, fileName, position, syntaxError_);
    } else {
        position = -1;
    }
    if (result == kAborted && collector != nullptr && collector->size() == recorded) {
        const TokenRecord* latest = tokenAt(0);
        diagnoseToken(
            Severity::Error, 0,
            "cannot read '" + (latest != nullptr ? latest->text : std::string()) + "' here");
    }
    cache_.close();
    scanner_->reset(nullptr);
    return result == kMatched;
}

}  // namespace vellum
