// The bundled examples, end to end: each README's `vellum-cli run` line is run by the real
// program (with the real graph class handler and graphstats), from the repository root and
// with the search variables unset, as a user would; then the graph it wrote is read back and
// its shape checked: counts by label, degrees, attributes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "graph/DirectedGraph.h"
#include "graph/GraphReader.h"
#include "graph/IntegerAttribute.h"
#include "graph/StringAttribute.h"
#include "tests/support/Program.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

namespace fs = std::filesystem;

using Words = std::vector<std::string>;

const fs::path kSource = VELLUM_SOURCE_DIR;

// The words from "run" on of every line of the README that starts "build/bin/vellum-cli run".
std::vector<Words> readmeRunLines(const std::string& example) {
    std::istringstream lines(test::TempFolder::read(kSource / "examples" / example / "README.md"));
    std::vector<Words> found;
    std::string line;
    while (std::getline(lines, line)) {
        std::istringstream words(line);
        std::string program;
        words >> program;
        if (program != "build/bin/vellum-cli")
            continue;
        Words arguments;
        for (std::string word; words >> word;)
            arguments.push_back(word);
        if (!arguments.empty() && arguments[0] == "run")
            found.push_back(arguments);
    }
    return found;
}

// Runs vellum-cli from the repository root with the search variables unset; standard output
// and standard error together in `out`.
test::ProgramResult runCli(const Words& arguments) {
    test::ProgramOptions options;
    options.workingDirectory = kSource.string();
    options.environment = {{"koralModules", std::nullopt}, {"koralGraphRules", std::nullopt}};
    options.errorIntoOutput = true;
    return test::runCli(arguments, options);
}

std::map<std::string, std::size_t> vertexLabels(const DirectedGraph& graph) {
    std::map<std::string, std::size_t> counts;
    for (const DirectedGraphVertex& vertex : graph.vertices())
        ++counts[vertex.label()];
    return counts;
}

std::map<std::string, std::size_t> edgeLabels(const DirectedGraph& graph) {
    std::map<std::string, std::size_t> counts;
    for (const DirectedGraphEdge& edge : graph.edges())
        ++counts[edge.label()];
    return counts;
}

int integerOf(const GraphObject& object, const std::string& name) {
    const auto* attribute = dynamic_cast<const IntegerAttribute*>(object.findAttribute(name));
    return attribute != nullptr ? attribute->value() : -1;
}

std::string stringOf(const GraphObject& object, const std::string& name) {
    const auto* attribute = dynamic_cast<const StringAttribute*>(object.findAttribute(name));
    return attribute != nullptr ? attribute->value() : "(none)";
}

// Runs one example the way its README says, with changes, and reads back what it wrote.
class ExampleTest : public ::testing::Test {
  protected:
    // The README's first run line (or the `index`th) with its -o pointed into a temporary
    // folder; `unit` and `graph` replace the line's own when not empty; `extra` is appended,
    // and "--seed 1" unless it names a seed. Fails the test unless the run exits with status 0.
    std::unique_ptr<DirectedGraph> run(const std::string& example, std::size_t index = 0,
                                       const std::string& unit = "", const std::string& graph = "",
                                       const Words& extra = {}) {
        const std::vector<Words> lines = readmeRunLines(example);
        if (lines.size() <= index || lines[index].size() < 4) {
            ADD_FAILURE() << "examples/" << example << "/README.md lacks run line " << index;
            return nullptr;
        }
        Words arguments = withOutput(lines[index], folder_.root() / "out.dg");
        if (!unit.empty())
            arguments[2] = unit;
        if (!graph.empty())
            arguments[3] = graph;
        arguments.insert(arguments.end(), extra.begin(), extra.end());
        if (std::find(extra.begin(), extra.end(), "--seed") == extra.end())
            arguments.insert(arguments.end(), {"--seed", "1"});
        const test::ProgramResult ran = runCli(arguments);
        console_ = ran.out;
        EXPECT_EQ(ran.status, 0) << console_;
        auto result = std::make_unique<DirectedGraph>();
        EXPECT_TRUE(loadGraph((folder_.root() / "out.dg").string(), *result)) << console_;
        return result;
    }

    // A ring of `processes` processes joined by next edges, as the mutex examples take it; the
    // file's path.
    std::string ring(int processes) {
        std::ofstream ring(folder_.root() / "ring.dg");
        ring << "directed graph {\n";
        for (int i = 1; i <= processes; ++i)
            ring << "vertex " << i << " { label process }\n";
        for (int i = 1; i <= processes; ++i)
            ring << "edge " << i << " -> " << i % processes + 1 << " { label next }\n";
        ring << "}\n";
        return (folder_.root() / "ring.dg").string();
    }

    static Words withOutput(Words arguments, const fs::path& output) {
        for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
            if (arguments[i] == "-o") {
                arguments[i + 1] = output.string();
                return arguments;
            }
        }
        arguments.push_back("-o");
        arguments.push_back(output.string());
        return arguments;
    }

    test::TempFolder folder_;
    std::string console_;
};

TEST_F(ExampleTest, EveryExampleHasAReadmeWithARunLineAndIsListed) {
    const std::string index = test::TempFolder::read(kSource / "examples" / "README.md");
    int examples = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(kSource / "examples")) {
        if (!entry.is_directory())
            continue;
        const std::string name = entry.path().filename().string();
        EXPECT_NE(index.find("(" + name + "/README.md)"), std::string::npos) << name;
        if (name == "models")
            continue;  // shapes for vertices, not a case to run
        ++examples;
        EXPECT_FALSE(readmeRunLines(name).empty()) << name;
    }
    EXPECT_GE(examples, 5);
}

// Generation k: (3^(k+1) + 3) / 2 vertices, 3^(k+1) edges of one label, 3^k small triangles
// (each a cycle of three edges; the holes are not cycles), corners of degree 2, others 4.
void expectSierpinski(const DirectedGraph& graph, int k) {
    std::size_t power = 1;
    for (int i = 0; i <= k; ++i)
        power *= 3;
    EXPECT_EQ(graph.vertexCount(), (power + 3) / 2) << "generation " << k;
    EXPECT_EQ(graph.edgeCount(k % 2 == 0 ? "t" : "n"), power) << "generation " << k;
    EXPECT_EQ(graph.edgeCount(), power);
    EXPECT_EQ(graph.vertexCount(""), graph.vertexCount());
    std::size_t corners = 0;
    std::size_t cycles = 0;
    for (const DirectedGraphVertex& v : graph.vertices()) {
        EXPECT_EQ(v.inDegree(), v.outDegree());
        corners += v.outDegree() == 1;
        EXPECT_TRUE(v.outDegree() == 1 || v.outDegree() == 2);
        for (const DirectedGraphEdge& first : v.outgoing()) {
            for (const DirectedGraphEdge& second : first.target()->outgoing())
                cycles += second.target()->findOutgoingTo(v) != nullptr;
        }
    }
    EXPECT_EQ(corners, 3u);
    EXPECT_EQ(cycles, power) << "each of the 3^k triangles counted from its three corners";
}

TEST_F(ExampleTest, SierpinskiMakesTheGenerationItsUnitNames) {
    const auto fourth = run("sierpinski");
    ASSERT_TRUE(fourth);
    EXPECT_EQ(fourth->vertexCount(), 123u);
    EXPECT_EQ(fourth->edgeCount(), 243u);
    expectSierpinski(*fourth, 4);
    for (int k : {1, 5}) {
        const auto graph = run("sierpinski", 0, "gen" + std::to_string(k));
        ASSERT_TRUE(graph);
        expectSierpinski(*graph, k);
    }
}

void expectServedRing(const DirectedGraph& graph, std::size_t processes) {
    using Counts = std::map<std::string, std::size_t>;
    EXPECT_EQ(vertexLabels(graph), (Counts{{"served", processes}, {"resource", 1}}));
    EXPECT_EQ(edgeLabels(graph), (Counts{{"next", processes}, {"token", 1}}));
    const DirectedGraphVertex* first = graph.vertices().front();
    const DirectedGraphEdge* token = graph.edgesWithLabel("token").front();
    ASSERT_NE(token, nullptr);
    EXPECT_EQ(token->source()->label(), "resource");
    EXPECT_EQ(token->target(), first) << "the token is back at the process it started at";
    // The ring is intact: from the first process, n steps along next lead back to it.
    const DirectedGraphVertex* at = first;
    for (std::size_t i = 0; i < processes; ++i) {
        const DirectedGraphEdge* next = nullptr;
        for (const DirectedGraphEdge& out : at->outgoing()) {
            if (out.label() == "next")
                next = &out;
        }
        ASSERT_NE(next, nullptr) << "step " << i;
        at = next->target();
    }
    EXPECT_EQ(at, first);
}

TEST_F(ExampleTest, MutexServesEveryProcessOnceAndTheTokenComesBack) {
    const auto five = run("mutex");
    ASSERT_TRUE(five);
    expectServedRing(*five, 5);

    const auto forty = run("mutex", 0, "", ring(40));
    ASSERT_TRUE(forty);
    expectServedRing(*forty, 40);
}

// The negative conditions stated as such leave what the labels that stand for them leave.
TEST_F(ExampleTest, MutexWithNegativeConditionsEndsAsTheLabelledOne) {
    for (const std::string& graph : {std::string(), ring(40)}) {
        const auto labelled = run("mutex", 0, "", graph);
        const auto negative = run("mutex-nac", 0, "", graph);
        ASSERT_TRUE(labelled && negative) << console_;
        EXPECT_EQ(vertexLabels(*negative), vertexLabels(*labelled)) << graph;
        EXPECT_EQ(edgeLabels(*negative), edgeLabels(*labelled)) << graph;
        expectServedRing(*negative, graph.empty() ? 5 : 40);
    }
}

TEST_F(ExampleTest, PetriNetEndsInTheSameDeadMarkingWhateverTheOrder) {
    const std::map<std::string, int> expected = {
        {"ore", 0}, {"metal", 0}, {"coal", 1}, {"steel", 3}};
    for (const char* seed : {"1", "2", "77"}) {
        const auto net = run("petri", 0, "", "", {"--seed", seed});
        ASSERT_TRUE(net);
        std::map<std::string, int> marking;
        for (const DirectedGraphVertex& place : net->verticesWithLabel("place"))
            marking[stringOf(place, "name")] = integerOf(place, "tokens");
        EXPECT_EQ(marking, expected) << "seed " << seed;
        EXPECT_EQ(net->vertexCount(), 6u);
        EXPECT_EQ(net->edgeCount("arc"), 5u);
        int weights = 0;
        for (const DirectedGraphEdge& arc : net->edges())
            weights += integerOf(arc, "weight");
        EXPECT_EQ(weights, 6) << "the arcs keep their weights";
    }
}

// Edges joining two vertices of one colour.
std::size_t monochrome(const DirectedGraph& graph) {
    std::size_t count = 0;
    for (const DirectedGraphEdge& edge : graph.edges())
        count += edge.source()->label() == edge.target()->label();
    return count;
}

TEST_F(ExampleTest, ColouringTellsBipartiteGraphsFromOddCycles) {
    const std::vector<Words> lines = readmeRunLines("colouring");
    ASSERT_EQ(lines.size(), 2u);
    const auto cube = run("colouring", 0, "", "", {"--seed", "3"});
    ASSERT_TRUE(cube);
    using Counts = std::map<std::string, std::size_t>;
    EXPECT_EQ(vertexLabels(*cube), (Counts{{"red", 6}, {"blue", 5}, {"bipartite", 1}}));
    EXPECT_EQ(monochrome(*cube), 0u);
    EXPECT_EQ(cube->vertices().front()->label(), "red");
    EXPECT_EQ(cube->verticesWithLabel("bipartite").front()->inDegree(), 0u);

    const auto pentagon = run("colouring", 1, "", "", {"--seed", "3"});
    ASSERT_TRUE(pentagon);
    EXPECT_EQ(pentagon->vertexCount("node"), 0u);
    EXPECT_EQ(pentagon->vertexCount("odd_cycle"), 1u);
    EXPECT_EQ(pentagon->vertexCount("bipartite"), 0u);
    EXPECT_EQ(pentagon->vertexCount("red") + pentagon->vertexCount("blue"), 6u);
    EXPECT_GE(monochrome(*pentagon), 1u);
}

TEST_F(ExampleTest, TreeUsesAnotherModuleAndReportsThroughGraphstats) {
    const auto tree = run("tree");
    ASSERT_TRUE(tree);
    EXPECT_NE(console_.find("RUNNING 'grow'...\n"
                            "graphstats: 31 vertices, 30 edges\n"
                            "  vertices 'bud': 16\n"
                            "  vertices 'node': 15\n"
                            "  edges 'left': 15\n"
                            "  edges 'right': 15\n"
                            "READY 'grow'..."),
              std::string::npos)
        << console_;
    for (const DirectedGraphVertex& bud : tree->verticesWithLabel("bud")) {
        EXPECT_EQ(integerOf(bud, "depth"), 4);
        EXPECT_EQ(bud.outDegree(), 0u);
        EXPECT_EQ(bud.inDegree(), 1u);
    }
    std::size_t roots = 0;
    for (const DirectedGraphVertex& node : tree->verticesWithLabel("node")) {
        ASSERT_EQ(node.outDegree(), 2u);
        EXPECT_NE(node.outgoing().begin()->label(), std::next(node.outgoing().begin())->label());
        roots += node.inDegree() == 0;
    }
    EXPECT_EQ(roots, 1u);
    EXPECT_EQ(tree->vertexCount("bud"), 16u);
}

}  // namespace
}  // namespace vellum
