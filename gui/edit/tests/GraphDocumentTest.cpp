// The graph editor's document: what each command leaves in the graph, its file state and its
// scene, what it refuses and the conditions the frame turns into message boxes.
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <memory>

#include "base/Console.h"
#include "base/Paths.h"
#include "graph/IntegerAttribute.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"
#include "gui/edit/GraphDocument.h"
#include "gui/view/ElementLook.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

std::vector<double> vectorOf(const GraphObject& element, const char* name) {
    const auto* value = dynamic_cast<const VectorAttribute*>(element.findAttribute(name));
    return value ? value->value() : std::vector<double>{};
}

struct Pair {
    GraphDocument document;
    DirectedGraphVertex* a = document.insertVertex("cube", TPXp3(0, 0, 0));
    DirectedGraphVertex* b = document.insertVertex("cone", TPXp3(2, 0, 0));
    DirectedGraphEdge* ab = document.connect(*a, *b);
};

TEST(GraphDocument, TracksModificationAcrossSaveUndoAndRedo) {
    test::TempFolder folder;
    ConsoleCapture quiet;
    Pair p;
    EXPECT_TRUE(p.document.modified());
    EXPECT_TRUE(p.document.fileName().empty());
    ASSERT_TRUE(p.document.save(folder.path("g.dg")));
    EXPECT_EQ(p.document.fileName(), folder.path("g.dg"));
    EXPECT_FALSE(p.document.modified());
    ASSERT_TRUE(p.document.undo());
    EXPECT_TRUE(p.document.modified()) << "undo after a save";
    ASSERT_TRUE(p.document.redo());
    EXPECT_FALSE(p.document.modified());
    ASSERT_TRUE(p.document.undo());
    p.document.insertVertex("sphere", TPXp3(5, 5, 5));
    EXPECT_FALSE(p.document.canRedo()) << "a new command drops the redo list";
    p.document.newGraph();
    EXPECT_FALSE(p.document.modified());
    EXPECT_FALSE(p.document.canUndo());
    EXPECT_EQ(p.document.graph().vertexCount(), 0u);
}

TEST(GraphDocument, AFailedLoadKeepsGraphNameHistoryAndGivesTheReport) {
    test::TempFolder folder;
    const std::string bad = folder.write("bad.dg", "directed graph { vertex 1 edge 1 -> 2 }");
    ConsoleCapture console;
    Pair p;
    ASSERT_TRUE(p.document.save(folder.path("good.dg")));
    p.document.remove(*p.ab);
    const EditResult result = p.document.load(bad);
    EXPECT_FALSE(result);
    EXPECT_NE(result.message.find("Vertex with number '2' not found!!!"), std::string::npos)
        << result.message;
    EXPECT_NE(result.message.find("contains errors near position"), std::string::npos);
    EXPECT_EQ(p.document.fileName(), folder.path("good.dg"));
    EXPECT_TRUE(p.document.modified());
    EXPECT_EQ(p.document.graph().edgeCount(), 0u);
    ASSERT_TRUE(p.document.undo()) << "the history survives";
    EXPECT_EQ(p.document.graph().edgeCount(), 1u);

    ASSERT_TRUE(p.document.load(folder.path("good.dg")));
    EXPECT_FALSE(p.document.modified());
    EXPECT_FALSE(p.document.canUndo());
    EXPECT_EQ(p.document.graph().vertexCount(), 2u);
    EXPECT_EQ(p.document.scene().vertexCount(), 2u);
}

TEST(GraphDocument, AGraphWithoutPositionsIsSetOutOnACircleUnmodified) {
    test::TempFolder folder;
    const std::string heap =
        folder.write("heap.dg", "directed graph { vertex 1 vertex 2 vertex 3 edge 1 -> 2 }");
    GraphDocument document;
    ASSERT_TRUE(document.load(heap));
    std::vector<std::vector<double>> places;
    for (const DirectedGraphVertex& vertex : document.graph().vertices())
        places.push_back(vectorOf(vertex, "position"));
    ASSERT_EQ(places.size(), 3u);
    EXPECT_NE(places[0], places[1]);
    EXPECT_NE(places[1], places[2]);
    EXPECT_FALSE(document.modified());
}

TEST(GraphDocument, RefusesWhatAGraphFileCannotCarry) {
    struct Row {
        const char* what;
        std::function<EditResult(GraphDocument&, GraphObject&)> command;
        const char* reason;  // a part of the reason; empty when the change is accepted
    };
    const Row rows[] = {
        {"label with a blank", [](auto& d, auto& e) { return d.setLabel(e, "two words"); },
         "label"},
        {"label that is a keyword", [](auto& d, auto& e) { return d.setLabel(e, "edge"); },
         "label"},
        {"quote in a string",
         [](auto& d, auto& e) {
             return d.setAttribute(e, std::make_unique<StringAttribute>("s", "say \"hi\""));
         },
         "string"},
        {"infinite real",
         [](auto& d, auto& e) {
             return d.setAttribute(
                 e, std::make_unique<RealAttribute>("r", std::numeric_limits<double>::infinity()));
         },
         "infinite"},
        {"empty vector",
         [](auto& d, auto& e) {
             return d.setAttribute(e,
                                   std::make_unique<VectorAttribute>("v", std::vector<double>{}));
         },
         "vector"},
        {"name that is no identifier",
         [](auto& d, auto& e) {
             return d.setAttribute(e, std::make_unique<IntegerAttribute>("1x", 1));
         },
         "name"},
        {"internal name",
         [](auto& d, auto& e) {
             return d.setAttribute(e, std::make_unique<IntegerAttribute>("__link__", 1));
         },
         "__"},
        {"removing what is not there",
         [](auto& d, auto& e) { return d.removeAttribute(e, "none"); }, "none"},
        {"a fine label", [](auto& d, auto& e) { return d.setLabel(e, "Place_1"); }, ""},
        {"a fine attribute",
         [](auto& d, auto& e) {
             return d.setAttribute(e, std::make_unique<RealAttribute>("r", 0.25));
         },
         ""},
    };
    for (const Row& row : rows) {
        Pair p;
        for (GraphObject* element :
             {static_cast<GraphObject*>(p.a), static_cast<GraphObject*>(p.ab)}) {
            const std::size_t steps = 3;
            const std::string before = element->label();
            const std::size_t attributes = element->attributeCount();
            const EditResult result = row.command(p.document, *element);
            SCOPED_TRACE(row.what);
            if (*row.reason == '\0') {
                EXPECT_TRUE(result) << result.message;
                ASSERT_TRUE(p.document.undo());
                EXPECT_EQ(element->label(), before);
                EXPECT_EQ(element->attributeCount(), attributes);
                continue;
            }
            EXPECT_FALSE(result);
            EXPECT_NE(result.message.find(row.reason), std::string::npos) << result.message;
            EXPECT_EQ(element->label(), before);
            EXPECT_EQ(element->attributeCount(), attributes);
            int undoable = 0;
            while (p.document.undo())
                ++undoable;
            EXPECT_EQ(undoable, static_cast<int>(steps)) << "a refusal is no undo step";
            ASSERT_TRUE(p.document.redo() && p.document.redo() && p.document.redo());
        }
    }
}

TEST(GraphDocument, SelectionConditionsCarryTheEditorsMessages) {
    Pair p;
    EditResult result;
    EXPECT_EQ(p.document.selectedVertex(result), nullptr);
    EXPECT_EQ(result.title, "Warning");
    EXPECT_EQ(result.message, "No vertex selected");

    p.document.select(p.document.scene().objectOf(*p.ab)->identity());
    EXPECT_EQ(p.document.elementOf(p.document.selected()), p.ab);
    EXPECT_EQ(p.document.selectedVertex(result), nullptr);
    EXPECT_EQ(result.title, "Alert");
    EXPECT_EQ(result.message, "Could not find the vertex in the graph!!!");

    p.document.select(p.document.scene().objectOf(*p.b)->identity());
    EXPECT_EQ(p.document.selectedVertex(result), p.b);
    EXPECT_TRUE(result);
    ASSERT_TRUE(p.document.remove(*p.b));
    EXPECT_EQ(p.document.selectedVertex(result), nullptr) << "the vertex has gone";
    EXPECT_EQ(result.message, "Could not find the vertex in the graph!!!");
}

TEST(GraphDocument, DeleteAndCopyKeepTheElementsUndoBringsBack) {
    Pair p;
    DirectedGraphEdge* ba = p.document.connect(*p.b, *p.a);
    p.a->setLabel("a");
    p.document.setAttribute(*p.a, std::make_unique<IntegerAttribute>("n", 4));
    ASSERT_TRUE(p.document.remove(*p.a));
    EXPECT_EQ(p.document.graph().vertexCount(), 1u);
    EXPECT_EQ(p.document.graph().edgeCount(), 0u) << "its edges went with it";
    EXPECT_EQ(p.document.scene().edgeCount(), 0u);
    ASSERT_TRUE(p.document.undo());
    EXPECT_EQ(&*p.document.graph().vertices().begin(), p.a) << "the same vertex, first again";
    EXPECT_EQ(&*p.document.graph().edges().begin(), p.ab);
    EXPECT_EQ(p.document.scene().objectOf(*ba)->source(), p.document.scene().objectOf(*p.b));

    DirectedGraphVertex* twin = p.document.copy(*p.a);
    ASSERT_TRUE(twin);
    EXPECT_EQ(twin->label(), "a");
    EXPECT_TRUE(twin->findAttribute("n"));
    EXPECT_EQ(vectorOf(*twin, look::position), (std::vector<double>{1, 0, 0}));
    EXPECT_EQ(twin->outDegree() + twin->inDegree(), 0u);
    const auto* link = dynamic_cast<const IntegerAttribute*>(twin->findAttribute(look::link));
    ASSERT_TRUE(link);
    EXPECT_EQ(p.document.elementOf(link->value()), twin) << "its own link, not the original's";
}

TEST(GraphDocument, AGestureFollowsAtOnceHonoursLocksAndIsOneStep) {
    Pair p;
    AxisLocks locks;
    locks.translation[TPXp3::X] = true;
    p.document.setLocks(locks);
    GraphEdgeObject* line = p.document.scene().objectOf(*p.ab);
    const TPXp3 middle = line->pointAt(0.5);
    ASSERT_TRUE(p.document.beginGesture(*p.a, Gesture::Move));
    for (double d : {1.0, 2.0, 3.0})
        p.document.updateGesture(TPXp3(d, d, -d));
    EXPECT_EQ(vectorOf(*p.a, look::position), (std::vector<double>{0, 3, -3}));
    EXPECT_EQ(p.document.scene().objectOf(*p.a)->placement().position.y(), 3);
    EXPECT_NE(line->pointAt(0.5).y(), middle.y()) << "the edge followed its end";
    p.document.commitGesture();
    ASSERT_TRUE(p.document.undo());
    EXPECT_EQ(vectorOf(*p.a, look::position), (std::vector<double>{0, 0, 0}));
    EXPECT_TRUE(p.document.undo()) << "one step for the whole gesture, then the edge";
    EXPECT_EQ(p.document.graph().edgeCount(), 0u);
    ASSERT_TRUE(p.document.redo() && p.document.redo());
    EXPECT_EQ(vectorOf(*p.a, look::position), (std::vector<double>{0, 3, -3}));

    locks = {};
    locks.rotation[TPXp3::Y] = true;
    p.document.setLocks(locks);
    ASSERT_TRUE(p.document.beginGesture(*p.b, Gesture::Rotate));
    p.document.updateGesture(TPXp3(30, 40, 50));
    EXPECT_EQ(vectorOf(*p.b, look::orientation), (std::vector<double>{30, 0, 50}));
    p.document.cancelGesture();
    EXPECT_EQ(vectorOf(*p.b, look::orientation), (std::vector<double>{0, 0, 0}));
    EXPECT_FALSE(p.document.canRedo());
    ASSERT_TRUE(p.document.undo());
    EXPECT_EQ(vectorOf(*p.a, look::position), (std::vector<double>{0, 0, 0}))
        << "a cancelled gesture left no step";
}

TEST(GraphDocument, ALayoutIsOneStepAndRedrawsAsItGoes) {
    test::ScopedEnvironment folder{"VellumLayout", pluginDirectory() + "/"};
    test::ScopedEnvironment settings{"VELLUM_FORCE3D", "mode=full, iterations=20"};
    Pair p;
    DirectedGraphVertex* c = p.document.insertVertex("sphere", TPXp3(0, 0, 0));
    p.document.connect(*p.b, *c);
    int redraws = 0;
    ASSERT_TRUE(p.document.layout(LayoutLibrary("force3d"), [&] {
        ++redraws;
        // The scene has followed the vertices by the time the canvas redraws.
        EXPECT_EQ(p.document.scene().objectOf(*c)->placement().position.x(),
                  vectorOf(*c, look::position).at(0));
    }));
    EXPECT_GT(redraws, 0);
    EXPECT_NE(vectorOf(*p.a, look::position), vectorOf(*c, look::position));
    ASSERT_TRUE(p.document.undo());
    EXPECT_EQ(vectorOf(*p.a, look::position), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(vectorOf(*c, look::position), (std::vector<double>{0, 0, 0}));
    EXPECT_EQ(p.document.scene().objectOf(*c)->placement().position.x(), 0);
    EXPECT_EQ(p.document.graph().vertexCount(), 3u) << "one step for the layout";
}

}  // namespace
}  // namespace vellum
