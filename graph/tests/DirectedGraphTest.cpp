#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "graph/DirectedGraph.h"
#include "graph/IntegerAttribute.h"
#include "graph/RealAttribute.h"
#include "tests/support/GraphInvariants.h"

namespace vellum {
namespace {

using test::graphIsConsistent;

template <typename View>
auto pointers(const View& view) {
    std::vector<std::remove_reference_t<decltype(*view.begin())>*> out;
    for (auto& element : view)
        out.push_back(&element);
    return out;
}

struct Triangle {
    DirectedGraph graph;
    DirectedGraphVertex* a = graph.createVertex();
    DirectedGraphVertex* b = graph.createVertex();
    DirectedGraphVertex* c = graph.createVertex();
    DirectedGraphEdge* ab = graph.createEdge(a, b);
    DirectedGraphEdge* bc = graph.createEdge(b, c);
    DirectedGraphEdge* ca = graph.createEdge(c, a);
    DirectedGraphEdge* ac = graph.createEdge(a, c);
};

TEST(DirectedGraph, KeepsInsertionOrderInEveryList) {
    Triangle t;
    ASSERT_TRUE(graphIsConsistent(t.graph));
    using V = std::vector<DirectedGraphVertex*>;
    using E = std::vector<DirectedGraphEdge*>;
    EXPECT_EQ(pointers(t.graph.vertices()), (V{t.a, t.b, t.c}));
    EXPECT_EQ(pointers(t.graph.edges()), (E{t.ab, t.bc, t.ca, t.ac}));
    EXPECT_EQ(pointers(t.a->outgoing()), (E{t.ab, t.ac}));
    EXPECT_EQ(pointers(t.c->incoming()), (E{t.bc, t.ac}));
    EXPECT_EQ(t.a->className(), "DirectedGraphVertex");
    EXPECT_EQ(t.ab->className(), "DirectedGraphEdge");
    EXPECT_EQ(t.graph.className(), "DirectedGraph");
    EXPECT_TRUE(t.a->label().empty());
}

TEST(DirectedGraph, FindsOutgoingEdgesByTarget) {
    Triangle t;
    EXPECT_EQ(t.a->findOutgoingTo(*t.c), t.ac);
    EXPECT_EQ(t.a->findOutgoingTo(*t.a), nullptr);
    EXPECT_FALSE(t.a->hasSeveralOutgoingTo(*t.c));
    DirectedGraphEdge* second = t.graph.createEdge(t.a, t.c);
    EXPECT_TRUE(t.a->hasSeveralOutgoingTo(*t.c));
    EXPECT_EQ(t.a->findOutgoingTo(*t.c), t.ac) << "the first in list order";
    EXPECT_NE(second, t.ac);
}

TEST(DirectedGraph, LabelIndexFollowsEveryChange) {
    Triangle t;
    EXPECT_EQ(t.graph.vertexCount(""), 3u);
    t.b->setLabel("x");
    t.a->setLabel("x");
    t.ab->setLabel("x");
    ASSERT_TRUE(graphIsConsistent(t.graph));
    EXPECT_EQ(t.graph.vertexCount("x"), 2u);
    EXPECT_EQ(t.graph.edgeCount("x"), 1u);
    EXPECT_EQ(t.graph.vertexCount(""), 1u);
    using V = std::vector<DirectedGraphVertex*>;
    EXPECT_EQ(pointers(t.graph.verticesWithLabel("x")), (V{t.b, t.a})) << "order of labelling";
    t.b->setLabel("y");
    EXPECT_TRUE(graphIsConsistent(t.graph));
    EXPECT_EQ(t.graph.vertexCount("x"), 1u);
    ASSERT_TRUE(t.graph.removeVertex(t.a));
    EXPECT_TRUE(graphIsConsistent(t.graph));
    EXPECT_EQ(t.graph.vertexCount("x"), 0u);
    EXPECT_EQ(t.graph.edgeCount("x"), 0u) << "the edge went with its source";
    EXPECT_TRUE(t.graph.verticesWithLabel("x").empty());
    EXPECT_EQ(t.graph.vertexCount("never used"), 0u);
    EXPECT_EQ(t.graph.vertexCount("X"), 0u) << "labels are case-sensitive";
}

// Labels that go and come back, many at a time and one by one, as rewriting makes and
// deletes marked elements: the index must stay exact while emptied labels are kept and swept.
struct Mark : ObjectExtension {
    std::unique_ptr<ObjectExtension> clone() const override { return std::make_unique<Mark>(); }
};

TEST(DirectedGraph, ElementsKeepTheirLabelWhileAttributesAndExtensionsComeAndGo) {
    Triangle t;
    t.a->setLabel("p");
    ASSERT_TRUE(t.a->addAttribute(std::make_unique<IntegerAttribute>("n", 1)));
    EXPECT_FALSE(t.a->addAttribute(std::make_unique<IntegerAttribute>("n", 2)));
    EXPECT_FALSE(t.a->addAttribute(nullptr));
    t.a->setExtension(std::make_unique<Mark>());
    t.a->setLabel("q");
    EXPECT_EQ(t.a->label(), "q");
    EXPECT_EQ(pointers(t.graph.verticesWithLabel("q")), std::vector<DirectedGraphVertex*>{t.a});
    EXPECT_EQ(t.graph.vertexCount("p"), 0u);

    EXPECT_TRUE(t.a->removeAttribute("n"));
    EXPECT_NE(t.a->extension(), nullptr) << "the extension outlasts the last attribute";
    t.a->setExtension(nullptr);
    EXPECT_EQ(t.a->extension(), nullptr);
    EXPECT_EQ(t.a->attributeCount(), 0u);
    EXPECT_EQ(t.a->label(), "q");
    t.a->setLabel("");
    EXPECT_EQ(t.graph.vertexCount(""), 3u);

    // An edge made with a label is where one labelled after its making would be.
    DirectedGraphEdge* made = t.graph.createEdge(t.b, t.c, "q");
    EXPECT_EQ(made->label(), "q");
    EXPECT_EQ(pointers(t.graph.edgesWithLabel("q")), std::vector<DirectedGraphEdge*>{made});
    EXPECT_EQ(t.graph.createVertex("q")->label(), "q");
    EXPECT_TRUE(graphIsConsistent(t.graph));
}

TEST(DirectedGraph, ATakenElementMayOutliveItsGraph) {
    TakenVertex kept;
    {
        DirectedGraph graph;
        for (int i = 0; i < 100; ++i)
            graph.createVertex();
        DirectedGraphVertex* vertex = graph.createVertex();
        vertex->addAttribute(std::make_unique<IntegerAttribute>("n", 7));
        kept = graph.takeVertex(vertex);
    }
    ASSERT_TRUE(kept);
    const auto* number = dynamic_cast<const IntegerAttribute*>(kept->findAttribute("n"));
    ASSERT_NE(number, nullptr);
    EXPECT_EQ(number->value(), 7);
    kept.reset();
}

TEST(DirectedGraph, LabelIndexSurvivesLabelsThatComeAndGo) {
    Triangle t;
    std::mt19937 random(5);
    std::vector<DirectedGraphEdge*> marks;
    for (int round = 0; round < 400; ++round) {
        const std::string label = "m" + std::to_string(random() % 150);
        if (random() % 3 != 0 || marks.empty()) {
            marks.push_back(t.graph.createEdge(t.a, t.b));
            marks.back()->setLabel(label);
            t.c->setLabel(label);
        } else {
            const std::size_t i = random() % marks.size();
            ASSERT_TRUE(t.graph.removeEdge(marks[i]));
            marks.erase(marks.begin() + static_cast<std::ptrdiff_t>(i));
            t.c->setLabel("");
        }
        ASSERT_TRUE(graphIsConsistent(t.graph)) << "round " << round;
    }
    for (DirectedGraphEdge* mark : marks)
        ASSERT_TRUE(t.graph.removeEdge(mark));
    EXPECT_TRUE(graphIsConsistent(t.graph));
    EXPECT_EQ(t.graph.edgeCount(), 4u);
    for (int i = 0; i < 150; ++i)
        EXPECT_EQ(t.graph.edgeCount("m" + std::to_string(i)), 0u);
    t.ab->setLabel("m7");
    EXPECT_EQ(pointers(t.graph.edgesWithLabel("m7")), std::vector<DirectedGraphEdge*>{t.ab});
}

TEST(DirectedGraph, RemoveEdgeCleansBothEndpoints) {
    Triangle t;
    ASSERT_TRUE(t.graph.removeEdge(t.ab));
    EXPECT_TRUE(graphIsConsistent(t.graph));
    EXPECT_EQ(t.graph.edgeCount(), 3u);
    EXPECT_EQ(t.a->outDegree(), 1u);
    EXPECT_EQ(t.b->inDegree(), 0u);
}

TEST(DirectedGraph, RemovedSelfLoopLingersInTheIncomingList) {
    DirectedGraph graph;
    DirectedGraphVertex* v = graph.createVertex();
    DirectedGraphEdge* loop = graph.createEdge(v, v);
    loop->setLabel("loop");
    ASSERT_TRUE(graph.removeEdge(loop));
    EXPECT_TRUE(graphIsConsistent(graph));
    EXPECT_EQ(graph.edgeCount(), 0u);
    EXPECT_EQ(graph.edgeCount("loop"), 0u);
    EXPECT_EQ(v->outDegree(), 0u);
    ASSERT_EQ(v->inDegree(), 1u) << "only the outgoing list is cleaned";
    EXPECT_EQ(v->incoming().front(), loop);
    EXPECT_FALSE(loop->inGraph());
    EXPECT_EQ(loop->label(), "loop") << "the lingering entry stays readable";
    EXPECT_FALSE(graph.removeEdge(loop)) << "no longer an edge of the graph";
    EXPECT_FALSE(graph.removeVertex(v)) << "its incoming list names a non-edge";
    EXPECT_EQ(graph.vertexCount(), 1u);
    EXPECT_TRUE(graph.removeVertexOnly(v)) << "destroys the vertex with the lingering loop";
    EXPECT_EQ(graph.vertexCount(), 0u);
}

TEST(DirectedGraph, RemoveVertexTakesIncomingOutgoingAndLoopEdges) {
    Triangle t;
    DirectedGraphEdge* loop = t.graph.createEdge(t.a, t.a);
    (void)loop;
    ASSERT_TRUE(t.graph.removeVertex(t.a));
    EXPECT_TRUE(graphIsConsistent(t.graph));
    EXPECT_EQ(t.graph.vertexCount(), 2u);
    EXPECT_EQ(pointers(t.graph.edges()), std::vector<DirectedGraphEdge*>{t.bc});
    EXPECT_EQ(t.b->inDegree(), 0u);
    EXPECT_EQ(t.c->outDegree(), 0u);
    EXPECT_EQ(t.c->inDegree(), 1u);
    EXPECT_FALSE(t.graph.removeVertex(nullptr));
}

TEST(DirectedGraph, RemoveVertexOnlyLeavesEdgesUntouched) {
    Triangle t;
    DirectedGraphVertex* lone = t.graph.createVertex();
    ASSERT_TRUE(t.graph.removeVertexOnly(lone));
    EXPECT_TRUE(graphIsConsistent(t.graph));
    // With live edges left, the vertex leaves the graph but stays alive for them.
    ASSERT_TRUE(t.graph.removeVertexOnly(t.a));
    EXPECT_TRUE(graphIsConsistent(t.graph));
    EXPECT_EQ(t.graph.vertexCount(), 2u);
    EXPECT_EQ(t.graph.edgeCount(), 4u);
    EXPECT_EQ(t.ab->source(), t.a);
    EXPECT_FALSE(t.a->inGraph());
    EXPECT_FALSE(t.graph.removeVertexOnly(t.a));
    EXPECT_EQ(t.graph.createEdge(t.a, t.b), nullptr);
    // Clean-up after it: the edges whose endpoint left; the last one reclaims the vertex.
    for (DirectedGraphEdge* edge : {t.ab, t.ca, t.ac}) {
        ASSERT_TRUE(t.graph.removeEdge(edge));
        EXPECT_TRUE(graphIsConsistent(t.graph));
    }
    EXPECT_EQ(pointers(t.graph.edges()), std::vector<DirectedGraphEdge*>{t.bc});
}

TEST(DirectedGraph, RefusesElementsOfAnotherGraph) {
    Triangle t;
    DirectedGraph other;
    DirectedGraphVertex* stranger = other.createVertex();
    DirectedGraphEdge* strangeEdge = other.createEdge(stranger, stranger);
    EXPECT_EQ(t.graph.createEdge(t.a, stranger), nullptr);
    EXPECT_FALSE(t.graph.removeEdge(strangeEdge));
    EXPECT_FALSE(t.graph.removeVertex(stranger));
    EXPECT_FALSE(t.graph.removeVertexOnly(stranger));
    EXPECT_FALSE(t.graph.contains(*stranger));
    EXPECT_EQ(other.edgeCount(), 1u);
}

TEST(DirectedGraph, CursorIterationSurvivesRemovingTheCurrentElement) {
    Triangle t;
    std::vector<DirectedGraphEdge*> seen;
    for (DirectedGraphEdge* edge = t.graph.firstEdge(); edge != nullptr;
         edge = t.graph.nextEdge()) {
        seen.push_back(edge);
        if (edge == t.bc) {
            ASSERT_TRUE(t.graph.removeEdge(edge));
        }
    }
    EXPECT_EQ(seen, (std::vector<DirectedGraphEdge*>{t.ab, t.bc, t.ca, t.ac}));
    std::vector<DirectedGraphVertex*> vertices;
    for (DirectedGraphVertex* v = t.graph.firstVertex(); v != nullptr; v = t.graph.nextVertex())
        vertices.push_back(v);
    EXPECT_EQ(vertices, (std::vector<DirectedGraphVertex*>{t.a, t.b, t.c}));
}

TEST(DirectedGraph, FindVertexByAttributeTakesTheFirstEqualOne) {
    Triangle t;
    t.b->addAttribute(std::make_unique<IntegerAttribute>("n", 7));
    t.c->addAttribute(std::make_unique<IntegerAttribute>("n", 7));
    t.a->addAttribute(std::make_unique<RealAttribute>("n", 7.0));
    EXPECT_EQ(t.graph.findVertexByAttribute(IntegerAttribute("n", 7)), t.b);
    EXPECT_EQ(t.graph.findVertexByAttribute(RealAttribute("n", 7.0)), t.a);
    EXPECT_EQ(t.graph.findVertexByAttribute(IntegerAttribute("n", 8)), nullptr);
    EXPECT_EQ(t.graph.findVertexByAttribute(IntegerAttribute("m", 7)), nullptr);
}

TEST(DirectedGraph, ClearDestroysEverythingIncludingLingeringAndDetached) {
    Triangle t;
    DirectedGraphEdge* loop = t.graph.createEdge(t.b, t.b);
    ASSERT_TRUE(t.graph.removeEdge(loop));
    ASSERT_TRUE(t.graph.removeVertexOnly(t.c));
    t.a->setLabel("a");
    t.graph.clear();  // the sanitizer build reports anything left behind
    EXPECT_TRUE(graphIsConsistent(t.graph));
    EXPECT_EQ(t.graph.vertexCount(), 0u);
    EXPECT_EQ(t.graph.vertexCount("a"), 0u);
    DirectedGraphVertex* again = t.graph.createVertex();
    EXPECT_EQ(t.graph.vertexCount(""), 1u);
    EXPECT_EQ(t.graph.createEdge(again, again)->source(), again);
}

TEST(DirectedGraph, SwapHandsEveryElementAndItsIndexToTheOtherGraph) {
    Triangle t;
    t.a->setLabel("x");
    t.ab->setLabel("e");
    DirectedGraphEdge* loop = t.graph.createEdge(t.b, t.b);
    ASSERT_TRUE(t.graph.removeEdge(loop));  // lingers in b's incoming list
    DirectedGraphVertex* lone = t.graph.createVertex();
    lone->setLabel("lone");
    t.graph.createEdge(lone, t.c);
    ASSERT_TRUE(t.graph.removeVertexOnly(lone));  // detached while its edge lives
    DirectedGraph other;
    DirectedGraphVertex* stranger = other.createVertex();
    stranger->setLabel("x");

    t.graph.swap(other);
    for (const DirectedGraph* graph : {&t.graph, &other})
        EXPECT_TRUE(graphIsConsistent(*graph));
    EXPECT_EQ(pointers(other.vertices()), (std::vector<DirectedGraphVertex*>{t.a, t.b, t.c}));
    EXPECT_EQ(pointers(t.graph.vertices()), std::vector<DirectedGraphVertex*>{stranger});
    EXPECT_EQ(pointers(other.verticesWithLabel("x")), std::vector<DirectedGraphVertex*>{t.a});
    EXPECT_EQ(pointers(t.graph.verticesWithLabel("x")),
              std::vector<DirectedGraphVertex*>{stranger});
    EXPECT_EQ(pointers(other.edgesWithLabel("e")), std::vector<DirectedGraphEdge*>{t.ab});
    EXPECT_EQ(t.graph.edgeCount("e"), 0u);
    // Ownership went along: each graph accepts only its own elements now.
    EXPECT_TRUE(other.contains(*t.a));
    EXPECT_FALSE(t.graph.contains(*t.a));
    EXPECT_EQ(t.graph.createEdge(t.a, stranger), nullptr);
    ASSERT_NE(other.createEdge(t.c, t.a), nullptr);
    // Relabelling, new elements (ordered after the old ones) and removal keep both consistent.
    t.a->setLabel("y");
    EXPECT_EQ(other.vertexCount("y"), 1u);
    EXPECT_GT(other.createVertex()->serial(), t.c->serial());
    ASSERT_TRUE(other.removeVertex(t.c));  // with its last edge the detached vertex goes too
    EXPECT_TRUE(t.graph.removeVertex(stranger));
    for (const DirectedGraph* graph : {&t.graph, &other})
        EXPECT_TRUE(graphIsConsistent(*graph));

    other.swap(other);
    EXPECT_EQ(other.vertexCount(), 3u);
    EXPECT_TRUE(graphIsConsistent(other));
    // Both destructors run on swapped contents; the sanitizer build reports leaks or reuse.
}

// Random changes, checked against a plain model of the expected counts after every step.
TEST(DirectedGraph, TakenElementsComeBackInTheirPlaces) {
    Triangle t;
    DirectedGraphEdge* loop = t.graph.createEdge(t.b, t.b);
    t.b->setLabel("b");
    using V = std::vector<DirectedGraphVertex*>;
    using E = std::vector<DirectedGraphEdge*>;
    const E edges = pointers(t.graph.edges());

    EXPECT_EQ(t.graph.takeVertex(t.b), nullptr) << "a vertex with edges stays";
    std::vector<TakenEdge> taken;
    for (DirectedGraphEdge* edge : {t.ab, t.bc, loop})
        taken.push_back(t.graph.takeEdge(edge));
    TakenVertex b = t.graph.takeVertex(t.b);
    ASSERT_TRUE(b);
    ASSERT_TRUE(graphIsConsistent(t.graph));
    EXPECT_EQ(t.graph.vertexCount("b"), 0u);
    EXPECT_EQ(pointers(t.graph.edges()), (E{t.ca, t.ac}));
    EXPECT_EQ(t.graph.restoreEdge(taken[0]), nullptr) << "its source is not back yet";
    EXPECT_TRUE(taken[0]);

    ASSERT_EQ(t.graph.restoreVertex(b), t.b);
    for (auto it = taken.rbegin(); it != taken.rend(); ++it)
        ASSERT_TRUE(t.graph.restoreEdge(*it));
    ASSERT_TRUE(graphIsConsistent(t.graph));
    EXPECT_EQ(pointers(t.graph.vertices()), (V{t.a, t.b, t.c}));
    EXPECT_EQ(pointers(t.graph.edges()), edges);
    EXPECT_EQ(pointers(t.b->outgoing()), (E{t.bc, loop}));
    EXPECT_EQ(pointers(t.b->incoming()), (E{t.ab, loop}));
    EXPECT_EQ(pointers(t.graph.verticesWithLabel("b")), (V{t.b}));

    // Only what this graph took comes back, once.
    DirectedGraph other;
    TakenVertex stranger = other.takeVertex(other.createVertex());
    EXPECT_EQ(t.graph.restoreVertex(stranger), nullptr);
    TakenEdge takenLoop = t.graph.takeEdge(loop);
    EXPECT_EQ(takenLoop.get(), loop);
    EXPECT_EQ(t.graph.takeEdge(loop), nullptr) << "taken twice";
}

TEST(DirectedGraph, StaysConsistentUnderRandomChanges) {
    DirectedGraph graph;
    std::mt19937 random(12345);
    std::vector<DirectedGraphVertex*> vertices;
    std::vector<DirectedGraphEdge*> edges;
    const char* labels[] = {"", "a", "b"};
    for (int step = 0; step < 600; ++step) {
        const int choice = static_cast<int>(random() % 6);
        if (choice == 0 || vertices.size() < 2) {
            vertices.push_back(graph.createVertex());
        } else if (choice <= 2) {
            auto* s = vertices[random() % vertices.size()];
            auto* e = graph.createEdge(s, vertices[random() % vertices.size()]);
            e->setLabel(labels[random() % 3]);
            edges.push_back(e);
        } else if (choice == 3 && !edges.empty()) {
            const std::size_t at = random() % edges.size();
            ASSERT_TRUE(graph.removeEdge(edges[at]));
            edges.erase(edges.begin() + static_cast<long>(at));
        } else if (choice == 4) {
            vertices[random() % vertices.size()]->setLabel(labels[random() % 3]);
        } else if (choice == 5 && vertices.size() > 2) {
            const std::size_t at = random() % vertices.size();
            DirectedGraphVertex* v = vertices[at];
            bool lingering = false;
            for (const auto& e : v->incoming())
                lingering = lingering || !e.inGraph();
            // Edges touching it, as the lists said before.
            std::vector<DirectedGraphEdge*> kept;
            for (auto* e : edges) {
                if (e->source() != v && e->target() != v)
                    kept.push_back(e);
            }
            const bool removed = graph.removeVertex(v);
            if (!lingering) {
                ASSERT_TRUE(removed);
                edges = kept;
                vertices.erase(vertices.begin() + static_cast<long>(at));
            } else {
                ASSERT_FALSE(removed);
                // Some of its edges may have gone before the stop: re-read the edge list.
                edges = pointers(graph.edges());
            }
        }
        ASSERT_TRUE(graphIsConsistent(graph)) << "after step " << step;
        ASSERT_EQ(graph.vertexCount(), vertices.size());
        ASSERT_EQ(graph.edgeCount(), edges.size());
    }
}

// Edge counts by label stay right while a few vertices gain and lose many edges (crossing the
// size at which the label index starts and stops counting them), loops among them, with edges
// relabelled, taken out and put back, and a swap halfway (invariants compare every count).
TEST(DirectedGraph, CountsEdgesByLabelAtBusyVertices) {
    DirectedGraph graph;
    std::mt19937 random(77);
    std::vector<DirectedGraphVertex*> hubs;
    for (int i = 0; i < 3; ++i)
        hubs.push_back(graph.createVertex());
    std::vector<DirectedGraphEdge*> edges;
    std::vector<TakenEdge> taken;
    // More labels than a busy vertex lists before it drops those it no longer has.
    const std::vector<std::string> labels = {"", "a", "b", "c", "d", "e", "f", "g", "h", "i", "j"};
    auto any = [&](const auto& list) { return list[random() % list.size()]; };
    for (int step = 0; step < 1500; ++step) {
        // Grow for a while, then shrink, twice: counting starts and stops on the way.
        const bool growing = step % 750 < 400;
        const int choice = static_cast<int>(random() % 10);
        if (choice < (growing ? 6 : 2)) {
            // Made with its label, or made bare and labelled: the counts must not differ.
            DirectedGraphEdge* edge = nullptr;
            if (step % 2 == 0) {
                edge = graph.createEdge(any(hubs), any(hubs), any(labels));
            } else {
                edge = graph.createEdge(any(hubs), any(hubs));
                edge->setLabel(any(labels));
            }
            edges.push_back(edge);
        } else if (choice < 8 && !edges.empty()) {
            const std::size_t at = random() % edges.size();
            ASSERT_TRUE(graph.removeEdge(edges[at]));
            edges.erase(edges.begin() + static_cast<long>(at));
        } else if (choice == 8 && !edges.empty()) {
            any(edges)->setLabel(any(labels));
        } else if (!taken.empty()) {
            DirectedGraphEdge* back = graph.restoreEdge(taken.back());
            ASSERT_NE(back, nullptr);
            edges.push_back(back);
            taken.pop_back();
        } else if (!edges.empty()) {
            const std::size_t at = random() % edges.size();
            taken.push_back(graph.takeEdge(edges[at]));
            edges.erase(edges.begin() + static_cast<long>(at));
        }
        if (step == 900 && taken.empty()) {
            DirectedGraph other;
            other.swap(graph);
            ASSERT_TRUE(graphIsConsistent(other));
            graph.swap(other);
        }
        ASSERT_TRUE(graphIsConsistent(graph)) << "after step " << step;
    }
    EXPECT_EQ(graph.outgoingCount(*hubs[0], "no such label"), 0u);
}

}  // namespace
}  // namespace vellum
