// Test support: a reader that checks a graph file's syntax with the graph reader's own token
// definitions and grammar (graph/GraphFormat.h, a header that needs no library), the way the graph
// reader does (edge endpoints resolved by vertex number, the shared two-line error report) without
// building a graph. Lets the engine be tested and fuzzed on the realistic format before, and
// independently of, the graph library.
#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include "base/Console.h"
#include "grammar/GrammarParser.h"
#include "grammar/ParseReport.h"
#include "graph/GraphFormat.h"

namespace vellum::testing {

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
        switch (number) {
            case 0:
                numbers_.clear();
                edges_ = 0;
                return 1;
            case 2:
                numbers_.push_back(numberAt(0));
                return 1;
            case 3:
                return tokenAt(0)->code == 4 || tokenAt(0)->code == 5 ? 1 : 0;
            case 10:
                return addEdge();
            case 1:
            case 4:
            case 5:
            case 6:
            case 7:
            case 8:
            case 9:
            case 11:
                return tokenAt(0) != nullptr ? 1 : 0;
            default:
                console() << "Unkown callback number !!!\n";
                return 0;
        }
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
                console() << "Vertex with number '" << number << "' not found!!!\n";
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

}  // namespace vellum::testing
