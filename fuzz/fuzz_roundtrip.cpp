// Fuzz target: the input bytes choose a graph and a rule built through the API (labels, names,
// variables, expressions and attributes of every type, with extreme reals, long strings and
// every printable character). Each is saved and read back: it must come back as it was (reals
// to the six digits of the format), or the save must be refused with its message, exactly when
// the builder put in something the format cannot carry.
#include <cstddef>
#include <cstdint>
#include <string>

#include "base/Console.h"
#include "fuzz/FuzzSupport.h"
#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"
#include "graph/RuleReader.h"
#include "graph/RuleWriter.h"
#include "tests/support/RoundTrip.h"
#include "tests/support/TempFile.h"

namespace {

using vellum::fuzz::check;
using vellum::test::FileKind;
using vellum::test::RandomBuilder;

// Choices from the input, one to four bytes each; zeros once it runs out.
class ByteDraw : public vellum::test::Draw {
  public:
    ByteDraw(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
    unsigned next(unsigned n) override {
        if (n <= 1)
            return 0;
        unsigned value = 0;
        for (unsigned range = 1; range < n && range != 0; range <<= 8)
            value = (value << 8) | (at_ < size_ ? data_[at_++] : 0u);
        return value % n;
    }

  private:
    const std::uint8_t* data_;
    std::size_t size_;
    std::size_t at_ = 0;
};

// A refusal is one line naming what was refused and why, then the usual failure line.
void checkRefusal(const std::string& console, const std::string& fileKind) {
    const std::size_t end = console.find('\n');
    check(end != std::string::npos);
    const std::string reason = console.substr(0, end);
    check(reason.find(": ") != std::string::npos);
    check(reason.size() > fileKind.size() &&
          reason.compare(reason.size() - fileKind.size(), fileKind.size(), fileKind) == 0);
    const std::string failure = "Could not write the file '";
    check(console.compare(end + 1, failure.size(), failure) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ByteDraw draw(data, size);
    vellum::ConsoleCapture capture;
    vellum::test::TempFile file("");
    if (file.path().empty())
        return 0;

    vellum::DirectedGraph graph;
    RandomBuilder graphs(draw, FileKind::Graph);
    graphs.fillGraph(graph);
    const bool graphSaved = vellum::saveGraph(graph, file.path());
    check(graphSaved == !graphs.unwritable());
    if (graphSaved) {
        vellum::DirectedGraph read;
        check(vellum::loadGraph(file.path(), read));
        check(vellum::test::graphDifference(graph, read).empty());
    } else {
        checkRefusal(capture.text(), " in a graph file");
    }

    capture.reset();
    RandomBuilder rules(draw, FileKind::Rule);
    const auto rule = rules.rule();
    const bool ruleSaved = vellum::saveRule(*rule, file.path());
    check(ruleSaved == !rules.unwritable());
    if (ruleSaved) {
        const auto read = vellum::loadRule(file.path());
        check(read != nullptr);
        check(vellum::test::ruleDifference(*rule, *read).empty());
    } else {
        checkRefusal(capture.text(), " in a rule file");
    }
    return 0;
}
