// Incremental scene updates against the reference, a fresh build: random rule steps on random
// graphs, two graphs kept in lockstep (the same seed, the same steps), one scene updated after
// every step and the other built anew; their listings and structure must agree.
#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "base/Console.h"
#include "graph/IntegerAttribute.h"
#include "graph/RuleApplication.h"
#include "graph/RuleReader.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"
#include "gui/view/ElementLook.h"
#include "gui/view/GraphScene.h"
#include "gui/view/SceneListing.h"
#include "tests/support/TempFolder.h"
#include "tpx/TPXtext.h"

namespace vellum {
namespace {

// Steps that delete, create, relabel and re-attribute, make parallel edges both ways and loops,
// and delete vertices whose other edges are left dangling.
const char* const ruleTexts[] = {
    "directed graphrule drop_edge { left-hand side { vertex 1 { label * } vertex 2 { label * }"
    " edge 3 : 1 -> 2 { label * } } interface { vertex 1 <-> 4 vertex 2 <-> 5 }"
    " right-hand side { vertex 4 { label * } vertex 5 { label * } } }",
    "directed graphrule drop_b { left-hand side { vertex 1 { label b } } interface { }"
    " right-hand side { } }",
    "directed graphrule grow { left-hand side { vertex 1 { label a } } interface { vertex 1 <-> 2 }"
    " right-hand side { vertex 2 { label a } vertex 3 { label b vector color = (0 1 0) }"
    " edge 4 : 2 -> 3 { label e } } }",
    "directed graphrule relabel { left-hand side { vertex 1 { label a } } interface"
    " { vertex 1 <-> 2 } right-hand side { vertex 2 { label b } } }",
    "directed graphrule reshape { left-hand side { vertex 1 { label b } } interface"
    " { vertex 1 <-> 2 } right-hand side { vertex 2 { label c string representation = \"cube\""
    " vector position = (1 2 3) } } }",
    "directed graphrule parallel { left-hand side { vertex 1 { label * } vertex 2 { label * }"
    " edge 3 : 1 -> 2 { label * } } interface { vertex 1 <-> 4 vertex 2 <-> 5 edge 3 <-> 6 }"
    " right-hand side { vertex 4 { label * } vertex 5 { label * } edge 6 : 4 -> 5 { label * }"
    " edge 7 : 5 -> 4 { label back } edge 8 : 4 -> 5 { } } }",
    "directed graphrule loop { left-hand side { vertex 1 { label c } } interface"
    " { vertex 1 <-> 2 } right-hand side { vertex 2 { label a } edge 3 : 2 -> 2 { label l } } }",
};

std::vector<std::unique_ptr<DirectedGraphRule>> readRules() {
    test::TempFolder folder;
    std::vector<std::unique_ptr<DirectedGraphRule>> rules;
    int n = 0;
    for (const char* text : ruleTexts) {
        auto rule = std::make_unique<DirectedGraphRule>();
        const std::string file = folder.write("r" + std::to_string(n++) + ".drl", text);
        ConsoleCapture capture;
        EXPECT_TRUE(RuleReader().read(file, *rule)) << text << capture.text();
        rules.push_back(std::move(rule));
    }
    return rules;
}

void randomGraph(DirectedGraph& graph, std::mt19937& random) {
    const char* labels[] = {"a", "b", "c", ""};
    std::vector<DirectedGraphVertex*> vertices;
    const int n = 2 + static_cast<int>(random() % 8);
    for (int i = 0; i < n; ++i) {
        DirectedGraphVertex* v = graph.createVertex();
        v->setLabel(labels[random() % 4]);
        if (random() % 3 == 0)
            v->addAttribute(std::make_unique<VectorAttribute>(
                "color", std::vector<double>{0.25 * (random() % 5), 1, 0}));
        if (random() % 4 == 0)
            v->addAttribute(std::make_unique<StringAttribute>("representation", "cone"));
        vertices.push_back(v);
    }
    const int m = static_cast<int>(random() % 12);
    for (int i = 0; i < m; ++i) {
        DirectedGraphEdge* e = graph.createEdge(vertices[random() % vertices.size()],
                                                vertices[random() % vertices.size()]);
        e->setLabel(labels[random() % 4]);
    }
}

// The scene as text: the listing, then per element whether its "__link__" names its object,
// and each group's children in order with their label children.
std::string describe(DirectedGraph& graph, const GraphScene& scene) {
    std::ostringstream out;
    writeSceneListing(out, graph, scene);
    std::vector<const TPXnode*> objects;
    for (const DirectedGraphVertex& v : graph.vertices())
        if (const TPXnode* object = scene.objectOf(v)) {
            const auto* link = dynamic_cast<const IntegerAttribute*>(v.findAttribute("__link__"));
            out << "link "
                << (link && scene.elementOf(link->value()) == &v &&
                    object->identity() == static_cast<std::uint32_t>(link->value()))
                << "\n";
            objects.push_back(object);
        }
    for (const DirectedGraphEdge& e : graph.edges())
        if (const GraphEdgeObject* object = scene.objectOf(e)) {
            const auto* link = dynamic_cast<const IntegerAttribute*>(e.findAttribute("__link__"));
            out << "link " << (link && scene.elementOf(link->value()) == &e) << "\n";
            out << "ends " << (object->source() == scene.objectOf(*e.source()))
                << (object->target() == scene.objectOf(*e.target())) << "\n";
            objects.push_back(object);
        }
    // The groups hold exactly the shown objects, in graph order.
    std::size_t i = 0;
    for (const TPXnode* group = scene.root(); group; group = group->nextSibling())
        for (const TPXnode* child = group->firstChild(); child; child = child->nextSibling(), ++i) {
            out << "child " << (i < objects.size() && objects[i] == child);
            for (const TPXnode* part = child->firstChild(); part; part = part->nextSibling())
                if (const auto* text = dynamic_cast<const TPXtext*>(part))
                    out << " '" << text->text() << "' at " << text->placement().position.y();
            out << "\n";
        }
    out << "objects " << objects.size() << " children " << i << "\n";
    return out.str();
}

TEST(SceneUpdate, RandomStepsGiveTheSceneOfAFreshBuild) {
    const auto rules = readRules();
    ConsoleCapture quiet;
    for (unsigned seed = 1; seed <= 60; ++seed) {
        std::mt19937 randomA(seed), randomB(seed), choices(seed * 7919);
        DirectedGraph updated, rebuilt;
        randomGraph(updated, randomA);
        randomGraph(rebuilt, randomB);
        GraphScene incremental;
        incremental.build(updated);
        StepRecorder recorder;
        const RuleCallback record = [&recorder](int event, DirectedGraph* host,
                                                const GraphMorphism* occurrence) {
            recorder.onEvent(event, host, occurrence);
        };
        for (int step = 0; step < 12; ++step) {
            const std::size_t rule = choices() % rules.size();
            const int mode = choices() % 3 == 0 ? kModeAllDisjoint : kModeFirst;
            const int resultA = applyRule(&updated, rules[rule].get(), mode, record);
            const int resultB = applyRule(&rebuilt, rules[rule].get(), mode);
            ASSERT_EQ(resultA, resultB);
            incremental.update(recorder.take());
            // The update placed new vertices among their neighbours; the twin gets the same
            // places (the graphs list their vertices alike), which a fresh build then shows.
            auto twin = rebuilt.vertices().begin();
            for (DirectedGraphVertex& vertex : updated.vertices()) {
                const Attribute* position = vertex.findAttribute(look::position);
                if (position && !twin->findAttribute(look::position))
                    twin->setAttribute(position->clone());
                ++twin;
            }
            GraphScene fresh;
            fresh.build(rebuilt);
            SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step) +
                         ", rule " + ruleTexts[rule]);
            ASSERT_EQ(describe(updated, incremental), describe(rebuilt, fresh));
        }
    }
}

}  // namespace
}  // namespace vellum
