// Random editing sessions against two references: after every command, undo and redo the
// incrementally updated scene equals a fresh build of the same graph, and undoing everything
// (redoing everything) saves the very file there was before (after) the session.
#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/Console.h"
#include "graph/IntegerAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"
#include "gui/edit/GraphDocument.h"
#include "gui/view/SceneListing.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

const char* const startGraph = R"(directed graph
{
	vertex 1 { label a string representation = "cube" vector position = (1 0 0) }
	vertex 2 { label b vector color = (0 1 0) integer n = 3 }
	vertex 3
	edge 1 -> 2 { label e }
	edge 2 -> 1
	edge 1 -> 2
	edge 3 -> 3 { label l }
}
)";

// A copy of the graph, element by element, for a fresh scene that leaves the original's
// "__link__" attributes alone.
void copyGraph(const DirectedGraph& from, DirectedGraph& to) {
    std::unordered_map<const DirectedGraphVertex*, DirectedGraphVertex*> twin;
    auto copyContents = [](const GraphObject& a, GraphObject& b) {
        b.setLabel(a.label());
        for (const Attribute& attribute : a.attributes())
            b.addAttribute(attribute.clone());
    };
    for (const DirectedGraphVertex& v : from.vertices()) {
        twin[&v] = to.createVertex();
        copyContents(v, *twin[&v]);
    }
    for (const DirectedGraphEdge& e : from.edges())
        copyContents(e, *to.createEdge(twin[e.source()], twin[e.target()]));
}

// The scene as text: the listing, whether each element's "__link__" and object agree, and each
// group's children, which must be the elements' objects in graph order.
std::string describe(DirectedGraph& graph, const GraphScene& scene) {
    std::ostringstream out;
    writeSceneListing(out, graph, scene);
    std::vector<const TPXnode*> objects;
    auto linked = [&scene](const GraphObject& element, const TPXnode* object) {
        const auto* link = dynamic_cast<const IntegerAttribute*>(element.findAttribute("__link__"));
        return link && scene.elementOf(link->value()) == &element &&
               object->identity() == static_cast<std::uint32_t>(link->value());
    };
    for (const DirectedGraphVertex& v : graph.vertices())
        if (const TPXnode* object = scene.objectOf(v)) {
            out << "link " << linked(v, object) << "\n";
            objects.push_back(object);
        }
    for (const DirectedGraphEdge& e : graph.edges())
        if (const GraphEdgeObject* object = scene.objectOf(e)) {
            out << "link " << linked(e, object) << " ends "
                << (object->source() == scene.objectOf(*e.source()))
                << (object->target() == scene.objectOf(*e.target())) << " from "
                << object->pointAt(0).x() << " " << object->pointAt(0).y() << " "
                << object->pointAt(0).z() << "\n";
            objects.push_back(object);
        }
    std::size_t i = 0;
    for (const TPXnode* group = scene.root(); group; group = group->nextSibling())
        for (const TPXnode* child = group->firstChild(); child; child = child->nextSibling(), ++i) {
            const TPXplacement& p = child->placement();
            out << "child " << (i < objects.size() && objects[i] == child) << " scale "
                << p.scale.x() << " " << p.scale.y() << " " << p.scale.z() << "\n";
        }
    out << "objects " << objects.size() << " children " << i << "\n";
    return out.str();
}

std::string freshDescription(const DirectedGraph& graph) {
    DirectedGraph copy;
    copyGraph(graph, copy);
    GraphScene fresh;
    fresh.build(copy);
    return describe(copy, fresh);
}

std::string fileText(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

class Session {
  public:
    Session(GraphDocument& document, unsigned seed) : m_document(document), m_random(seed) {}

    // One random command, undo or redo; returns what it did, for the failure message.
    std::string step() {
        switch (pick(12)) {
            case 0:
                m_document.insertVertex(shapes[pick(4)], TPXp3(pick(5), pick(3), 0));
                return "insert";
            case 1:
                if (auto* a = vertex(); a)
                    m_document.connect(*a, *vertex());
                return "connect";
            case 2:
                if (GraphObject* element = pick(2) ? static_cast<GraphObject*>(vertex()) : edge())
                    m_document.remove(*element);
                return "remove";
            case 3:
                if (auto* v = vertex())
                    m_document.copy(*v);
                return "copy";
            case 4:
                if (GraphObject* element = pick(2) ? static_cast<GraphObject*>(vertex()) : edge())
                    m_document.setLabel(*element, labels[pick(3)]);
                return "label";
            case 5:
                if (GraphObject* element = pick(2) ? static_cast<GraphObject*>(vertex()) : edge()) {
                    if (pick(2))
                        m_document.setAttribute(*element, std::make_unique<IntegerAttribute>(
                                                              "n", static_cast<int>(pick(9))));
                    else
                        m_document.setAttribute(*element,
                                                std::make_unique<VectorAttribute>(
                                                    "color", std::vector<double>{1, 0, 1}));
                }
                return "attribute";
            case 6:
                if (GraphObject* element = pick(2) ? static_cast<GraphObject*>(vertex()) : edge())
                    m_document.removeAttribute(*element, pick(2) ? "n" : "position");
                return "remove attribute";
            case 7:
                if (auto* v = vertex())
                    m_document.setLook(*v, shapes[pick(4)], TPXrgb{0.5, 0.5, 0});
                return "look";
            case 8:
                return gesture();
            case 9:
            case 10:
                m_document.undo();
                return "undo";
            default:
                m_document.redo();
                return "redo";
        }
    }

  private:
    static constexpr const char* shapes[] = {"sphere", "cone", "cylinder", "cube"};
    static constexpr const char* labels[] = {"a", "b", ""};

    unsigned pick(unsigned n) { return m_random() % n; }
    DirectedGraphVertex* vertex() {
        DirectedGraph& graph = m_document.graph();
        if (graph.vertexCount() == 0)
            return nullptr;
        auto it = graph.vertices().begin();
        std::advance(it, pick(static_cast<unsigned>(graph.vertexCount())));
        return &*it;
    }
    DirectedGraphEdge* edge() {
        DirectedGraph& graph = m_document.graph();
        if (graph.edgeCount() == 0)
            return nullptr;
        auto it = graph.edges().begin();
        std::advance(it, pick(static_cast<unsigned>(graph.edgeCount())));
        return &*it;
    }
    std::string gesture() {
        DirectedGraphVertex* v = vertex();
        if (!v)
            return "no gesture";
        AxisLocks locks;
        locks.translation[pick(3)] = pick(2);
        locks.rotation[pick(3)] = pick(2);
        m_document.setLocks(locks);
        const auto kind = static_cast<Gesture>(pick(3));
        m_document.beginGesture(*v, kind);
        for (int i = 1; i <= 3; ++i)
            m_document.updateGesture(kind == Gesture::Scale ? TPXp3(1 + 0.5 * i, 1, 2)
                                                            : TPXp3(i, 2.0 * i, 10.0 * i));
        if (pick(4) == 0) {
            m_document.cancelGesture();
            return "cancelled gesture";
        }
        m_document.commitGesture();
        return "gesture";
    }

    GraphDocument& m_document;
    std::mt19937 m_random;
};

TEST(DocumentHistory, RandomSessionsKeepTheSceneAndUndoToTheSameFile) {
    test::TempFolder folder;
    const std::string start = folder.write("start.dg", startGraph);
    const std::string saved = folder.path("saved.dg");
    ConsoleCapture quiet;
    for (unsigned seed = 1; seed <= 40; ++seed) {
        GraphDocument document;
        ASSERT_TRUE(document.load(start)) << quiet.text();
        ASSERT_TRUE(document.save(saved)) << quiet.text();
        const std::string before = fileText(saved);
        Session session(document, seed);
        for (int n = 0; n < 40; ++n) {
            const std::string what = session.step();
            SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(n) + ": " +
                         what);
            ASSERT_EQ(describe(document.graph(), document.scene()),
                      freshDescription(document.graph()));
        }
        ASSERT_TRUE(document.save(saved)) << quiet.text();
        const std::string after = fileText(saved);
        int undone = 0;
        for (; document.undo(); ++undone) {
        }
        EXPECT_FALSE(document.canUndo());
        ASSERT_TRUE(document.save(saved));
        EXPECT_EQ(fileText(saved), before) << "seed " << seed;
        // Back to where the session stopped, short of the steps it had undone itself.
        for (int i = 0; i < undone; ++i)
            ASSERT_TRUE(document.redo());
        ASSERT_TRUE(document.save(saved));
        EXPECT_EQ(fileText(saved), after) << "seed " << seed;
        EXPECT_EQ(describe(document.graph(), document.scene()), freshDescription(document.graph()));
    }
}

}  // namespace
}  // namespace vellum
