#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "plugins/force3d/ForceSettings.h"
#include "plugins/force3d/LayoutGraph.h"
#include "plugins/force3d/Random.h"

namespace vellum::force3d {
namespace {

std::set<std::pair<int, int>> edgeSet(const LayoutGraph& graph) {
    std::set<std::pair<int, int>> edges;
    for (int v = 0; v < graph.size(); ++v) {
        for (const int* w = graph.neighboursBegin(v); w != graph.neighboursEnd(v); ++w)
            edges.emplace(v, *w);
    }
    return edges;
}

TEST(LayoutGraph, KeepsEachNeighbourOnceBothWaysAndNoLoops) {
    const LayoutGraph graph(4, {{0, 1}, {1, 0}, {0, 1}, {2, 2}, {2, 3}});
    EXPECT_EQ(edgeSet(graph), (std::set<std::pair<int, int>>{{0, 1}, {1, 0}, {2, 3}, {3, 2}}));
    EXPECT_EQ(graph.degree(2), 1);
}

// Each coarse vertex stands for a connected group of fine vertices: a matched pair, with or
// without leaves that joined it, or a single vertex.
bool connected(const std::vector<int>& group, const std::set<std::pair<int, int>>& edges) {
    std::set<int> reached = {group.front()};
    for (bool grew = true; grew;) {
        grew = false;
        for (int v : group) {
            for (int w : group) {
                if (!reached.count(v) && reached.count(w) && edges.count({v, w}))
                    grew = reached.insert(v).second;
            }
        }
    }
    return reached.size() == group.size();
}

TEST(LayoutGraph, CoarseningMergesNeighboursAndKeepsMassAndEdges) {
    Random random(3);
    std::vector<std::pair<int, int>> edges;
    for (int i = 0; i < 150; ++i) {
        edges.emplace_back(static_cast<int>(random.next() * 100),
                           static_cast<int>(random.next() * 100));
    }
    const LayoutGraph fine(100, edges);
    const auto fineEdges = edgeSet(fine);
    std::vector<int> parent;
    const LayoutGraph coarse = fine.coarsen(random, parent);

    ASSERT_EQ(parent.size(), 100u);
    EXPECT_LT(coarse.size(), fine.size());
    std::vector<std::vector<int>> members(static_cast<std::size_t>(coarse.size()));
    for (int v = 0; v < 100; ++v)
        members.at(static_cast<std::size_t>(parent[v])).push_back(v);
    double mass = 0.0;
    for (int c = 0; c < coarse.size(); ++c) {
        ASSERT_FALSE(members[c].empty());
        EXPECT_TRUE(connected(members[c], fineEdges)) << c;
        EXPECT_EQ(coarse.mass(c), static_cast<double>(members[c].size()));
        mass += coarse.mass(c);
    }
    EXPECT_EQ(mass, 100.0);
    std::set<std::pair<int, int>> images;
    for (const auto& [v, w] : fineEdges) {
        if (parent[v] != parent[w])
            images.emplace(parent[v], parent[w]);
    }
    EXPECT_EQ(edgeSet(coarse), images);
}

TEST(LayoutGraph, AStarShrinksToOneVertex) {
    std::vector<std::pair<int, int>> edges;
    for (int leaf = 1; leaf < 50; ++leaf)
        edges.emplace_back(0, leaf);
    Random random(5);
    std::vector<int> parent;
    EXPECT_EQ(LayoutGraph(50, edges).coarsen(random, parent).size(), 1);
}

TEST(ForceSettings, ReadsEntriesAndNamesTheFirstBadOne) {
    std::string problem;
    const auto settings =
        ForceSettings::parse(" length=3.5,iterations=7; mode=full\tseed=9 ", problem);
    ASSERT_TRUE(settings);
    EXPECT_EQ(settings->edgeLength, 3.5);
    EXPECT_EQ(settings->iterations, 7);
    EXPECT_EQ(settings->mode, LayoutMode::Full);
    EXPECT_EQ(settings->seed, 9u);
    // What the dialog writes back reads as the same settings, numbers in their usual spelling.
    const auto& schema = ForceSettings::schema();
    const auto values = schema.parse("iterations=1e3 length=0.50 theta=0", problem);
    ASSERT_TRUE(values);
    EXPECT_EQ(schema.describe(*values),
              "mode=auto length=0.5 iterations=1000 steps=30 theta=0 seed=1");
    EXPECT_EQ(schema.describe(*schema.parse(schema.describe(*values), problem)),
              schema.describe(*values));

    for (const char* bad :
         {"length", "length=", "length=0", "iterations=2.5", "steps=0", "mode=fast", "theta=-1",
          "colour=red", "seed=x", "length=nan", "seed=4000000001"}) {
        problem.clear();
        EXPECT_FALSE(ForceSettings::parse(std::string("theta=0.5 ") + bad, problem)) << bad;
        EXPECT_EQ(problem, bad);
    }
}

}  // namespace
}  // namespace vellum::force3d
