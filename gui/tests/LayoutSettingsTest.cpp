// The bundled layouts' settings dialogs, which lyConfigure shows inside a running toolkit: OK
// takes the fields over for the layouts that follow, also once the library was unloaded and
// loaded again; Cancel changes nothing; a refused value keeps the dialog open and says why.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "base/Paths.h"
#include "graph/DirectedGraph.h"
#include "gui/tests/ModalDialogScript.h"
#include "koral/LayoutLibrary.h"
#include "koral/VertexPosition.h"
#include "tests/support/GuiToolkit.h"
#include "tests/support/ScopedEnvironment.h"

namespace vellum {
namespace {

using test::fieldText;
using test::press;
using test::setField;

double distance(const Position& a, const Position& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

class LayoutSettingsTest : public test::ToolkitTest {
  protected:
    // Loads the layout `name` afresh, calls its lyConfigure with `script` answering the dialog,
    // and unloads it again.
    static void configure(const std::string& name, std::function<void(wxDialog&)> script) {
        const test::ModalDialogScript answer(std::move(script));
        LayoutLibrary(name).configure();
        EXPECT_TRUE(answer.ran()) << name << " showed no dialog";
    }

    test::ScopedEnvironment folder_{"VellumLayout", pluginDirectory() + "/"};
    test::ScopedEnvironment sphere_{"VELLUM_SPHERE", std::nullopt};
    test::ScopedEnvironment force_{"VELLUM_FORCE3D", std::nullopt};
};

TEST_F(LayoutSettingsTest, SphereRadiusTakenOnOkOnlyAndKeptAcrossReloading) {
    struct Row {
        int button;
        const char* radius;
        double expected;  // the radius of a 3-vertex graph's sphere afterwards
    };
    const Row rows[] = {
        {wxID_OK, "7.5", 7.5},
        {wxID_CANCEL, "20", 7.5},
        {wxID_OK, " 3 ", 3.0},  // blanks around a number are no reason to refuse it
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.radius);
        configure("sphere", [&](wxDialog& dialog) {
            EXPECT_TRUE(setField(dialog, "radius", row.radius));
            EXPECT_TRUE(press(dialog, row.button));
        });
        DirectedGraph graph;
        for (int i = 0; i < 3; ++i)
            graph.createVertex();
        ASSERT_TRUE(LayoutLibrary("sphere").completeLayout(graph, nullptr));
        for (const auto& vertex : graph.vertices())
            EXPECT_NEAR(distance(*vertexPosition(vertex), {0, 0, 0}), row.expected, 1e-9);
    }
}

TEST_F(LayoutSettingsTest, Force3dRefusesBadValuesWithAReasonAndUsesWhatOkTookOver) {
    struct Refused {
        const char* field;
        const char* value;
        const char* reason;
    };
    const Refused refused[] = {
        {"iterations", "0", "Iterations per level must be a whole number from 1 to 100000."},
        {"iterations", "2.5", "Iterations per level must be a whole number from 1 to 100000."},
        {"length", "abc", "Edge length must be a number from 0.001 to 1000000."},
        {"theta", "-1", "Barnes-Hut theta (0: exact) must be a number from 0 to 10."},
        {"seed", "", "Seed must be a whole number from 0 to 4000000000."},
    };
    configure("force3d", [&](wxDialog& dialog) {
        EXPECT_EQ(fieldText(dialog, "reason"), "");
        for (const Refused& bad : refused) {
            const std::string before = fieldText(dialog, bad.field);
            EXPECT_TRUE(setField(dialog, bad.field, bad.value));
            EXPECT_TRUE(press(dialog, wxID_OK));
            EXPECT_TRUE(dialog.IsModal()) << bad.field << "=" << bad.value << " was taken";
            EXPECT_EQ(fieldText(dialog, "reason"), bad.reason);
            EXPECT_TRUE(dialog.FindWindowByName("reason")->IsShown());
            EXPECT_TRUE(setField(dialog, bad.field, before));
        }
        EXPECT_TRUE(setField(dialog, "mode", "full"));
        EXPECT_TRUE(setField(dialog, "length", "3"));
        EXPECT_TRUE(setField(dialog, "iterations", "40"));
        EXPECT_TRUE(press(dialog, wxID_OK));
    });

    // The next dialog shows what was taken over.
    configure("force3d", [](wxDialog& dialog) {
        const std::vector<std::string> shown = {
            fieldText(dialog, "mode"),       fieldText(dialog, "length"),
            fieldText(dialog, "iterations"), fieldText(dialog, "steps"),
            fieldText(dialog, "theta"),      fieldText(dialog, "seed")};
        EXPECT_EQ(shown, (std::vector<std::string>{"full", "3", "40", "30", "1.2", "1"}));
        EXPECT_TRUE(press(dialog, wxID_CANCEL));
    });

    // And the layout uses it: a long ring's median edge gets the edge length.
    DirectedGraph graph;
    std::vector<DirectedGraphVertex*> ring;
    for (int i = 0; i < 31; ++i)
        ring.push_back(graph.createVertex());
    for (int i = 0; i < 31; ++i)
        graph.createEdge(ring[i], ring[(i + 1) % 31]);
    ASSERT_TRUE(LayoutLibrary("force3d").completeLayout(graph, nullptr));
    std::vector<double> edges;
    for (const auto& edge : graph.edges())
        edges.push_back(distance(*vertexPosition(*edge.source()), *vertexPosition(*edge.target())));
    std::nth_element(edges.begin(), edges.begin() + 15, edges.end());
    EXPECT_NEAR(edges[15], 3.0, 1e-9);
}

}  // namespace
}  // namespace vellum
