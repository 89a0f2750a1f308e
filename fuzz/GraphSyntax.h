// Fuzz support: a reader that checks a graph file's syntax with the graph reader's own token
// definitions and grammar (graph/GraphFormat.h, a header that needs no library), the way the graph
// reader does (edge endpoints resolved by vertex number, the shared two-line error report) without
// building a graph. Lets the engine be fuzzed on the realistic format independently of the graph
// library.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "base/Console.h"
#include "grammar/GrammarParser.h"
#include "grammar/ParseReport.h"
#include "graph/GraphFormat.h"
#include "graph/ReaderMessages.h"

namespace vellum::fuzz {

class GraphSyntaxReader : public GrammarParser {
  public:
    GraphSyntaxReader() { loaded_ = loadGrammar(kGraphGrammar, kGraphTokens); }

    bool loaded() const { return loaded_; }
    // Every action number passed, in order, and the number of edges accepted.
    const std::vector<int>& actions() const { return actions_; }
    int edges() const { return edges_; }

    // Reads a file and reports a failure in the readers' two-line form.
    bool check(const std::string& fileName) {
        std::string excerpt;
        long position = 0;
        if (parseFile(fileName, kExcerptBefore, kExcerptAfter, excerpt, position))
            return true;
        reportSyntaxError("File", fileName, position, lineNumber(), excerpt);
        return false;
    }

    int onAction(int number) override {
        actions_.push_back(number);
        switch (static_cast<GraphAction>(number)) {
            case GraphAction::ClearGraph:
                numbers_.clear();
                edges_ = 0;
                return 1;
            case GraphAction::Vertex:
                numbers_.push_back(numberAt(0));
                return 1;
            case GraphAction::Boolean:
                return tokenCode(0) == kTrueToken || tokenCode(0) == kFalseToken ? 1 : 0;
            case GraphAction::Edge:
                return addEdge();
            case GraphAction::GraphName:
            case GraphAction::Integer:
            case GraphAction::Real:
            case GraphAction::String:
            case GraphAction::VectorStart:
            case GraphAction::VectorElement:
            case GraphAction::VectorEnd:
            case GraphAction::Label:
                return tokenAt(0) != nullptr ? 1 : 0;
        }
        return unknownAction();
    }

  private:
    // Decimal conversion that stops at the first non-digit, as vertex numbers are read.
    long numberAt(std::size_t k) const {
        return std::strtol(tokenAt(k)->text.c_str(), nullptr, 10);
    }

    bool known(long number) const {
        for (long n : numbers_) {
            if (n == number)
                return true;
        }
        return false;
    }

    int addEdge() {
        bool ok = true;
        for (long number : {numberAt(2), numberAt(0)}) {
            if (!known(number)) {
                console() << missingVertex(static_cast<std::int32_t>(number)) << "!!!\n";
                ok = false;
            }
        }
        if (ok)
            ++edges_;
        return ok ? 1 : 0;
    }

    bool loaded_ = false;
    std::vector<int> actions_;
    std::vector<long> numbers_;
    int edges_ = 0;
};

}  // namespace vellum::fuzz
