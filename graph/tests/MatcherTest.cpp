#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "ReferenceMatcher.h"
#include "RuleFixtures.h"
#include "graph/Matcher.h"
#include "graph/PreparedRule.h"
#include "tests/support/GraphInvariants.h"

namespace vellum {
namespace {

using test::describe;
using test::graphFromText;
using test::patternRule;
using test::RandomGraphs;
using test::ReferenceMatcher;

std::vector<std::string> describeAll(const std::vector<GraphMorphism>& list,
                                     const DirectedGraph& host) {
    std::vector<std::string> lines;
    for (const GraphMorphism& occurrence : list)
        lines.push_back(describe(occurrence, host));
    return lines;
}

std::vector<std::string> occurrences(const std::string& leftBody, const std::string& hostText) {
    auto rule = patternRule(leftBody);
    auto host = graphFromText(hostText);
    return describeAll(rule->prepared().matcher().findAll(*host), *host);
}

// Injective, complete, edge-preserving and label-respecting.
::testing::AssertionResult isOccurrence(const GraphMorphism& m, const DirectedGraph& pattern,
                                        const DirectedGraph& host) {
    if (m.vertexPairs().size() != pattern.vertexCount() ||
        m.edgePairs().size() != pattern.edgeCount())
        return ::testing::AssertionFailure() << "not complete";
    for (const VertexPair& p : m.vertexPairs()) {
        int images = 0;
        for (const VertexPair& q : m.vertexPairs())
            images += q.right == p.right;
        if (images != 1 || !host.contains(*p.right))
            return ::testing::AssertionFailure() << "not injective";
        if (p.left->label() != "*" && p.left->label() != p.right->label())
            return ::testing::AssertionFailure() << "vertex label differs";
    }
    for (const EdgePair& p : m.edgePairs()) {
        if (!host.contains(*p.right) || p.right->source() != m.imageOf(p.left->source()) ||
            p.right->target() != m.imageOf(p.left->target()))
            return ::testing::AssertionFailure() << "edge not preserved";
        if (p.left->label() != "*" && p.left->label() != p.right->label())
            return ::testing::AssertionFailure() << "edge label differs";
    }
    return ::testing::AssertionSuccess();
}

TEST(Matcher, ListsOccurrencesInHostOrderOfTheLeftHandVertices) {
    EXPECT_EQ(occurrences("vertex 1 vertex 2", "directed graph { vertex 1 vertex 2 vertex 3 }"),
              (std::vector<std::string>{"1 2 |", "1 3 |", "2 1 |", "2 3 |", "3 1 |", "3 2 |"}));
    // The search starts at the rare label; the order is still that of the first vertex.
    EXPECT_EQ(occurrences("vertex 1 { label * } vertex 2 { label r } edge 3 : 1 -> 2",
                          "directed graph { vertex 1 { label r } vertex 2 vertex 3 { label r }"
                          " edge 2 -> 3 edge 2 -> 1 edge 1 -> 3 }"),
              (std::vector<std::string>{"1 3 | 3", "2 1 | 2", "2 3 | 1"}));
    EXPECT_EQ(occurrences("", "directed graph { vertex 1 }"), (std::vector<std::string>{"|"}));
}

TEST(Matcher, RespectsLabelsWildcardsLoopsAndDegrees) {
    const std::string host =
        "directed graph { vertex 1 { label a } vertex 2 { label A } vertex 3"
        " edge 1 -> 1 { label x } edge 3 -> 1 }";
    EXPECT_EQ(occurrences("vertex 1 { label * }", host),
              (std::vector<std::string>{"1 |", "2 |", "3 |"}));
    EXPECT_EQ(occurrences("vertex 1 { label a }", host), (std::vector<std::string>{"1 |"}));
    EXPECT_EQ(occurrences("vertex 1 edge 2 : 1 -> 1", host), (std::vector<std::string>{}));
    EXPECT_EQ(occurrences("vertex 1 { label * } edge 2 : 1 -> 1 { label * }", host),
              (std::vector<std::string>{"1 | 1"}));
    // Vertex 1 needs two incoming edges: host vertex 1 has two (its loop counts), but only one
    // other vertex has an edge to it.
    EXPECT_EQ(occurrences("vertex 1 { label * } vertex 2 { label * } vertex 3 { label * }"
                          " edge 4 : 2 -> 1 edge 5 : 3 -> 1",
                          host),
              (std::vector<std::string>{}));
    EXPECT_EQ(occurrences("vertex 1 { label * } vertex 2 edge 4 : 2 -> 1", host),
              (std::vector<std::string>{"1 3 | 2"}));
}

TEST(Matcher, PairsParallelEdgesFirstComeFirstServed) {
    // Degrees big enough for two parallel edges, but only one edge from 1 to 2.
    const std::string oneEdge =
        "directed graph { vertex 1 vertex 2 vertex 3 edge 1 -> 2 { label x } edge 1 -> 3"
        " edge 3 -> 2 }";
    const std::string twoEdges =
        "directed graph { vertex 1 vertex 2 edge 1 -> 2 { label y } edge 1 -> 2 { label x } }";
    // A single host edge serves both parallel left-hand edges.
    EXPECT_EQ(occurrences("vertex 1 vertex 2 edge 3 : 1 -> 2 { label * }"
                          " edge 4 : 1 -> 2 { label x }",
                          oneEdge),
              (std::vector<std::string>{"1 2 | 1 1"}));
    // Of two, each takes the first one still free, whatever its label: x meets y and fails,
    // although pairing the other way round would fit.
    EXPECT_EQ(occurrences("vertex 1 vertex 2 edge 3 : 1 -> 2 { label x }"
                          " edge 4 : 1 -> 2 { label * }",
                          twoEdges),
              (std::vector<std::string>{}));
    EXPECT_EQ(occurrences("vertex 1 vertex 2 edge 3 : 1 -> 2 { label * }"
                          " edge 4 : 1 -> 2 { label x }",
                          twoEdges),
              (std::vector<std::string>{"1 2 | 1 2"}));
    // Three left-hand edges, two host edges (the degrees would allow three): the third finds
    // none free.
    EXPECT_EQ(occurrences("vertex 1 vertex 2 edge 3 : 1 -> 2 { label * }"
                          " edge 4 : 1 -> 2 { label * } edge 5 : 1 -> 2 { label * }",
                          "directed graph { vertex 1 vertex 2 vertex 3 edge 1 -> 2 edge 1 -> 2"
                          " edge 1 -> 3 edge 3 -> 2 }"),
              (std::vector<std::string>{}));
}

// findAll() equals the reference search, object for object, and findFirst() yields one of its
// occurrences (exactly once among them); the number of occurrences.
std::size_t expectAgreement(DirectedGraph& pattern, DirectedGraph& host, int round) {
    const Matcher matcher(pattern);
    const std::vector<GraphMorphism> found = matcher.findAll(host);
    const std::vector<GraphMorphism> expected = ReferenceMatcher(pattern, host).run();
    EXPECT_EQ(describeAll(found, host), describeAll(expected, host)) << "round " << round;
    if (found.size() != expected.size())
        return 0;
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_TRUE(isOccurrence(found[i], pattern, host)) << "round " << round;
        // Same objects, not only the same positions.
        EXPECT_EQ(found[i].vertexPairs().size(), expected[i].vertexPairs().size());
        for (std::size_t p = 0; p < found[i].edgePairs().size(); ++p)
            EXPECT_EQ(found[i].edgePairs()[p].right, expected[i].edgePairs()[p].right);
    }
    GraphMorphism first;
    const bool any = matcher.findFirst(host, first, [](const GraphMorphism&) { return true; });
    EXPECT_EQ(any, !found.empty()) << "round " << round;
    if (any) {
        EXPECT_EQ(std::count_if(found.begin(), found.end(),
                                [&](const GraphMorphism& m) {
                                    return describe(m, host) == describe(first, host);
                                }),
                  1)
            << "round " << round;
    }
    return found.size();
}

TEST(Matcher, AgreesWithTheDefinitionOnRandomGraphs) {
    RandomGraphs random(20240611);
    std::size_t total = 0;
    for (int round = 0; round < 3000 && !::testing::Test::HasFailure(); ++round) {
        DirectedGraph pattern;
        DirectedGraph host;
        random.fill(pattern, 4, 5, {"a", "b", "*", ""}, {"x", "*", ""}, false);
        random.fill(host, 7, 16, {"a", "b", ""}, {"x", "y", ""}, true);
        total += expectAgreement(pattern, host, round);
    }
    EXPECT_GT(total, 1000u);  // the rounds did exercise the search
}

// Patterns of unlabelled vertices joined by a rare edge label start at the sources of those
// edges; a hub with many such edges must still be a candidate only once.
TEST(Matcher, AgreesWithTheDefinitionWhenAnEdgeLabelIsRarest) {
    RandomGraphs random(77);
    std::size_t total = 0;
    int anchored = 0;
    for (int round = 0; round < 1500 && !::testing::Test::HasFailure(); ++round) {
        DirectedGraph pattern;
        DirectedGraph host;
        random.fill(pattern, 3, 4, {"", "*"}, {"x", "x", "*", ""}, false);
        random.fill(host, 40, 60, {"", "", "", "a"}, {"", "", "y", "y", "x"}, true);
        if (host.vertexCount() > 20 && round % 3 == 0) {
            // More edges than a source's list is walked for (parallel ones included).
            DirectedGraphVertex* hub = host.vertices().front();
            auto target = host.vertices().begin();
            for (int i = 0; i < 18; ++i, ++target)
                host.createEdge(hub, &*target)->setLabel("x");
            host.createEdge(hub, &*host.vertices().begin())->setLabel("x");
        }
        const bool rare = host.edgeCount("x") < host.vertexCount("");
        const auto& edges = pattern.edges();
        anchored += rare && std::any_of(edges.begin(), edges.end(),
                                        [](const auto& e) { return e.label() == "x"; });
        total += expectAgreement(pattern, host, round);
    }
    EXPECT_GT(anchored, 200);
    EXPECT_GT(total, 1000u);
}

// The next search goes on after the vertex taken, the ones passed over coming last.
TEST(Matcher, FindFirstSkipsWhatTheCallerRejectsAndGoesOnFromThere) {
    auto rule = patternRule("vertex 1 { label a }");
    auto host = graphFromText(
        "directed graph { vertex 1 { label a } vertex 2 { label b } vertex 3 { label a }"
        " vertex 4 { label a } vertex 5 { label a } }");
    const Matcher& matcher = rule->prepared().matcher();
    GraphMorphism occurrence;
    int asked = 0;
    ASSERT_TRUE(
        matcher.findFirst(*host, occurrence, [&](const GraphMorphism&) { return ++asked == 2; }));
    EXPECT_EQ(describe(occurrence, *host), "3 |");
    EXPECT_TRUE(test::graphIsConsistent(*host));
    ASSERT_TRUE(matcher.findFirst(*host, occurrence, [](const GraphMorphism&) { return true; }));
    EXPECT_EQ(describe(occurrence, *host), "4 |");
    ASSERT_TRUE(matcher.findFirst(*host, occurrence, [](const GraphMorphism&) { return true; }));
    EXPECT_EQ(describe(occurrence, *host), "5 |");
    ASSERT_TRUE(matcher.findFirst(*host, occurrence, [](const GraphMorphism&) { return true; }));
    EXPECT_EQ(describe(occurrence, *host), "1 |");
    EXPECT_FALSE(matcher.findFirst(*host, occurrence, [](const GraphMorphism&) { return false; }));
    EXPECT_EQ(host->vertexCount("a"), 4u);
}

// The matcher remembers where the host keeps each label between searches; labels that appear,
// buckets swept away and a graph swapped in must all be seen.
TEST(Matcher, SeesTheHostsLabelsChangeBetweenSearches) {
    auto rule = patternRule("vertex 1 { label a } vertex 2 { label b } edge 3 : 1 -> 2");
    const Matcher& matcher = rule->prepared().matcher();
    DirectedGraph host;
    DirectedGraphVertex* a = host.createVertex("a");
    DirectedGraphVertex* c = host.createVertex("c");
    host.createEdge(a, c);
    EXPECT_TRUE(matcher.findAll(host).empty()) << "no vertex labelled b yet";
    c->setLabel("b");
    EXPECT_EQ(matcher.findAll(host).size(), 1u);

    // Enough labels come and go for idle buckets to be swept, "b"'s among them.
    c->setLabel("c");
    for (int i = 0; i < 300; ++i)
        ASSERT_TRUE(host.removeVertex(host.createVertex("t" + std::to_string(i))));
    EXPECT_TRUE(matcher.findAll(host).empty());
    c->setLabel("b");
    EXPECT_EQ(matcher.findAll(host).size(), 1u);

    auto other = graphFromText(
        "directed graph { vertex 1 { label a } vertex 2 { label b } vertex 3 { label a }"
        " edge 1 -> 2 edge 3 -> 2 }");
    host.swap(*other);
    EXPECT_EQ(describeAll(matcher.findAll(host), host),
              (std::vector<std::string>{"1 2 | 1", "3 2 | 2"}));
    EXPECT_EQ(matcher.findAll(*other).size(), 1u);
}

}  // namespace
}  // namespace vellum
