#include "grammar/GrammarParser.h"

#include <vector>

#include "grammar/SyntaxGraph.h"

namespace vellum {
namespace {

// The walk keeps its own stack of open nonterminals instead of recursing, so deep nesting in the
// input cannot overflow the machine stack. These bounds end a walk that a malformed grammar sends
// into a loop (left recursion, an optional part inside a repetition).
constexpr std::size_t kMaxNesting = 1u << 20;
constexpr long kMaxIdleSteps = 1L << 20;

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
                break;
            case GrammarNodeKind::Action:
                if (onAction(node.action) == 0)
                    return kAborted;
                break;
            case GrammarNodeKind::Token:
                result = scanner_->expectDefinition(node.token) != 0 ? kMatched : kNotMatched;
                break;
        }
        current = result == kMatched ? node.successor : node.alternative;
    }
}

bool GrammarParser::parseString(const char* text) {
    if (!cache_.attach(text))
        return false;
    scanner_->reset(&cache_);
    const int result = walk();
    cache_.close();
    scanner_->detach();
    return result == kMatched;
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
    if (!cache_.open(fileName))
        return false;
    scanner_->reset(&cache_);
    const int result = walk();
    if (result == kNotMatched) {
        position = cache_.tell();
        cache_.excerpt(position - before, position + after, excerpt);
    } else {
        position = -1;
    }
    cache_.close();
    scanner_->reset(nullptr);
    return result == kMatched;
}

}  // namespace vellum
