#include <gtest/gtest.h>

#include <thread>

#include "KoralTestSupport.h"
#include "base/Console.h"
#include "koral/KoralMethodBinding.h"

namespace vellum {
namespace {

std::string bindingError(const std::string& identifier) {
    return test::libraryError([&] { KoralMethodBinding binding(identifier); });
}

TEST(KoralMethodBinding, RefusesWhatCannotBeBound) {
    const std::string noError = test::testPluginDirectory() + "/noerror";
    const struct {
        std::string identifier;
        std::string message;
    } rows[] = {
        {"graphstats", "Could not find the character '.'"},
        {"nolibrary.counts", "Could not load the library 'nolibrary' !!!"},
        {"graphstats.nothing",
         "Could not find the method 'nothing' in the library 'graphstats' !!!"},
        {"graphstats.", "Could not find the method '' in the library 'graphstats' !!!"},
        // The method exists, but a library without Error cannot be called.
        {noError + ".work",
         "Could not find the method 'Error' in the library '" + noError + "' !!!"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(bindingError(row.identifier), row.message) << row.identifier;
}

TEST(KoralMethodBinding, SplitsAtTheFirstDot) {
    // "counts.x" is the method name: the library does not have it.
    EXPECT_EQ(bindingError("graphstats.counts.x"),
              "Could not find the method 'counts.x' in the library 'graphstats' !!!");
    const KoralMethodBinding binding("graphstats.counts");
    EXPECT_EQ(binding.libraryName(), "graphstats");
    EXPECT_EQ(binding.methodName(), "counts");
}

TEST(KoralMethodBinding, CallsTheMethodAndAsksErrorAfterAFailure) {
    DirectedGraph graph;
    auto* a = graph.createVertex();
    auto* b = graph.createVertex();
    a->setLabel("A");
    graph.createVertex()->setLabel("A");
    graph.createEdge(a, b)->setLabel("e");
    graph.createEdge(b, a);

    ConsoleCapture capture;
    EXPECT_TRUE(KoralMethodBinding("graphstats.counts").call(graph, nullptr));
    EXPECT_EQ(capture.text(),
              "graphstats: 3 vertices, 2 edges\n"
              "  vertices '(none)': 1\n"
              "  vertices 'A': 2\n"
              "  edges '(none)': 1\n"
              "  edges 'e': 1\n");

    const KoralMethodBinding fail("graphstats.fail");
    EXPECT_FALSE(fail.call(graph, nullptr));
    EXPECT_EQ(fail.error(nullptr), "graphstats: method 'fail' failed on purpose");
}

TEST(KoralMethodBinding, EachThreadReadsTheErrorOfItsOwnCall) {
    // Two runs at once: one fails by design, the other finds a dangling edge.
    DirectedGraph broken;
    auto* a = broken.createVertex();
    broken.createEdge(a, broken.createVertex());
    ASSERT_TRUE(broken.removeVertexOnly(a));
    std::string failMessage;
    std::string checkMessage;
    std::thread first([&] {
        const KoralMethodBinding fail("graphstats.fail");
        DirectedGraph graph;
        for (int i = 0; i < 200; ++i)
            fail.call(graph, nullptr);
        failMessage = fail.error(nullptr);
    });
    std::thread second([&] {
        const KoralMethodBinding check("graphstats.check");
        for (int i = 0; i < 200; ++i)
            check.call(broken, nullptr);
        checkMessage = check.error(nullptr);
    });
    first.join();
    second.join();
    EXPECT_EQ(failMessage, "graphstats: method 'fail' failed on purpose");
    EXPECT_EQ(checkMessage, "graphstats: method 'check' failed: edge 1 dangles");
}

TEST(KoralMethodBinding, CheckFailsOnlyForADanglingEdge) {
    DirectedGraph graph;
    auto* a = graph.createVertex();
    auto* b = graph.createVertex();
    graph.createEdge(a, b);
    const KoralMethodBinding check("graphstats.check");
    EXPECT_TRUE(check.call(graph, nullptr));
    // A vertex taken out alone leaves its edge pointing outside the graph.
    ASSERT_TRUE(graph.removeVertexOnly(b));
    EXPECT_FALSE(check.call(graph, nullptr));
    EXPECT_EQ(check.error(nullptr), "graphstats: method 'check' failed: edge 1 dangles");
}

}  // namespace
}  // namespace vellum
