// What the writers write reads back: random graphs and rules built through the API come back
// from their files as they were, or the save is refused with a one-line reason and the old file
// stays. The refusals' exact texts for each kind of item, and the edges of the length bounds.
#include <gtest/gtest.h>

#include <random>

#include "base/Console.h"
#include "graph/AttributeExpression.h"
#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"
#include "graph/RuleObjectData.h"
#include "graph/RuleReader.h"
#include "graph/RuleWriter.h"
#include "tests/support/RoundTrip.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using test::FileKind;
using test::RandomBuilder;
using test::TempFolder;

class SeededDraw : public test::Draw {
  public:
    explicit SeededDraw(unsigned seed) : engine_(seed) {}
    unsigned next(unsigned n) override { return n <= 1 ? 0 : engine_() % n; }

  private:
    std::mt19937 engine_;
};

// Saves over an existing file: true when saved; a refusal must be one reason line ending in
// `where`, then the failure line, with the old file untouched.
template <typename Save>
bool saveOrRefuse(Save save, const TempFolder& folder, const std::string& where) {
    const std::string file = folder.write("out", "previous");
    ConsoleCapture capture;
    if (save(file))
        return true;
    const std::string text = capture.text();
    const std::size_t end = text.find('\n');
    EXPECT_NE(end, std::string::npos);
    const std::string reason = text.substr(0, end);
    EXPECT_TRUE(reason.size() > where.size() &&
                reason.compare(reason.size() - where.size(), where.size(), where) == 0)
        << reason;
    EXPECT_EQ(text.substr(end + 1), "Could not write the file '" + file + "' !!!\n");
    EXPECT_EQ(TempFolder::read(file), "previous");
    return false;
}

TEST(RoundTrip, RandomGraphsReadBackOrAreRefused) {
    TempFolder folder;
    SeededDraw draw(1);
    int saved = 0;
    for (int i = 0; i < 300; ++i) {
        DirectedGraph graph;
        RandomBuilder builder(draw, FileKind::Graph);
        builder.fillGraph(graph);
        const std::string file = folder.path("out");
        const bool ok = saveOrRefuse([&](const std::string& f) { return saveGraph(graph, f); },
                                     folder, " in a graph file");
        ASSERT_EQ(ok, !builder.unwritable()) << "graph " << i;
        if (!ok)
            continue;
        ++saved;
        const auto read = loadGraph(file);
        ASSERT_NE(read, nullptr) << "graph " << i;
        EXPECT_EQ(test::graphDifference(graph, *read), "") << "graph " << i;
    }
    EXPECT_GT(saved, 30);
    EXPECT_LT(saved, 270) << "refusals are tried too";
}

TEST(RoundTrip, RandomRulesReadBackOrAreRefused) {
    TempFolder folder;
    SeededDraw draw(2);
    int saved = 0;
    for (int i = 0; i < 300; ++i) {
        RandomBuilder builder(draw, FileKind::Rule);
        const auto rule = builder.rule();
        const std::string file = folder.path("out");
        const bool ok = saveOrRefuse([&](const std::string& f) { return saveRule(*rule, f); },
                                     folder, " in a rule file");
        ASSERT_EQ(ok, !builder.unwritable()) << "rule " << i;
        if (!ok)
            continue;
        ++saved;
        const auto read = loadRule(file);
        ASSERT_NE(read, nullptr) << "rule " << i;
        EXPECT_EQ(test::ruleDifference(*rule, *read), "") << "rule " << i;
    }
    EXPECT_GT(saved, 10);
    EXPECT_LT(saved, 270) << "refusals are tried too";
}

std::string refusalOf(const DirectedGraph& graph) {
    std::ostringstream out;
    GraphWriter writer(out);
    return writer.write(graph) ? "written" : writer.refusal();
}

TEST(RoundTrip, GraphRefusalsNameTheElementTheAttributeAndTheReason) {
    const double inf = std::numeric_limits<double>::infinity();
    const struct {
        const char* label;
        std::unique_ptr<Attribute> attribute;
        std::string refusal;
    } rows[] = {
        {"*", nullptr,
         "vertex 2, label '*': a label must be an identifier (a letter, then letters, digits or "
         "'_') in a graph file"},
        {"vertexA", nullptr,
         "vertex 2, label 'vertexA': a label cannot begin with the keyword 'vertex' in a graph "
         "file"},
        {"a", std::make_unique<StringAttribute>("s", "say \"hi"),
         "vertex 2 (label 'a'), attribute 's': a string cannot hold a double quote without a "
         "backslash before it in a graph file"},
        {"a", std::make_unique<StringAttribute>("s", "C:\\"),
         "vertex 2 (label 'a'), attribute 's': a string cannot end in an unpaired backslash in a "
         "graph file"},
        {"a", std::make_unique<StringAttribute>("s", "line\nbreak"),
         "vertex 2 (label 'a'), attribute 's': a string cannot hold the byte 0x0a in a graph "
         "file"},
        {"", std::make_unique<StringAttribute>("s", std::string(65535, 's')),
         "vertex 2, attribute 's': a string cannot be longer than 65534 characters in a graph "
         "file"},
        {"", std::make_unique<StringAttribute>("s", std::string(65534, 's')), "written"},
        {"", std::make_unique<RealAttribute>("r", -inf),
         "vertex 2, attribute 'r': a real cannot be infinite in a graph file"},
        {"", std::make_unique<VectorAttribute>("v", std::vector<double>{1, std::nan("")}),
         "vertex 2, attribute 'v': a real cannot be not-a-number (NaN) in a graph file"},
        {"", std::make_unique<VectorAttribute>("v", std::vector<double>{}),
         "vertex 2, attribute 'v': a vector cannot be empty in a graph file"},
        {"", std::make_unique<IntegerAttribute>("realm", 1),
         "vertex 2, attribute 'realm': a name cannot begin with the keyword 'real' in a graph "
         "file"},
        {"", std::make_unique<IntegerAttribute>("a\tb", 1),
         "vertex 2, attribute 'a\\x09b': a name must be an identifier (a letter, then letters, "
         "digits or '_') in a graph file"},
    };
    for (const auto& row : rows) {
        DirectedGraph graph;
        graph.createVertex();
        DirectedGraphVertex* vertex = graph.createVertex();
        vertex->setLabel(row.label);
        if (row.attribute != nullptr)
            vertex->addAttribute(row.attribute->clone());
        EXPECT_EQ(refusalOf(graph), row.refusal);
    }
    DirectedGraph graph;
    DirectedGraphVertex* a = graph.createVertex();
    DirectedGraphVertex* b = graph.createVertex();
    graph.createEdge(a, b)->setLabel("false");
    EXPECT_EQ(refusalOf(graph),
              "edge 1 -> 2, label 'false': a label cannot begin with the keyword 'false' in a "
              "graph file");

    // An edge whose source left the vertex list while the edge still pointed at it; the
    // detached vertex is named by the number it would have had.
    DirectedGraph detached;
    DirectedGraphVertex* kept = detached.createVertex();
    DirectedGraphVertex* gone = detached.createVertex();
    detached.createVertex();
    detached.createEdge(gone, kept);
    ASSERT_TRUE(detached.removeVertexOnly(gone));
    EXPECT_EQ(refusalOf(detached),
              "edge 3 -> 1: an edge must join two vertices of the graph in a graph file");
}

TEST(RoundTrip, RuleRefusalsNameTheSideTheElementAndTheReason) {
    const auto refusal = [](const DirectedGraphRule& rule) {
        std::ostringstream out;
        RuleWriter writer(out);
        return writer.write(rule) ? "written" : writer.refusal();
    };
    DirectedGraphRule rule;
    rule.setName("r");
    DirectedGraphVertex* x = rule.editLeftSide().createVertex();
    DirectedGraphVertex* y = rule.editRightSide().createVertex();
    x->setLabel("*");
    auto real = std::make_unique<RealAttribute>("r", 0.0);
    setExpression(*real, "x.n * 2.0");
    y->addAttribute(std::move(real));
    EXPECT_EQ(refusal(rule),
              "rule 'r', right-hand side, vertex 2, attribute 'r': an expression needs a "
              "variable on the left-hand side in a rule file");
    setVariable(*x, "x");
    rule.setCondition("x.s == \"\\]\"\n  && x.n > 1");  // an escaped bracket, a line break
    EXPECT_EQ(refusal(rule), "written");
    setVariable(*y, "y");
    EXPECT_EQ(refusal(rule),
              "rule 'r', right-hand side, vertex 2, variable 'y': a variable can only stand on "
              "the left-hand side in a rule file");
    setVariable(*y, "");
    rule.setCondition("x.a ] 1");
    EXPECT_EQ(refusal(rule),
              "rule 'r', application condition: an expression cannot hold a ']' without a "
              "backslash before it in a rule file");
    rule.setName("label");
    EXPECT_EQ(refusal(rule),
              "rule name 'label': a name cannot begin with the keyword 'label' in a rule file");
}

}  // namespace
}  // namespace vellum
