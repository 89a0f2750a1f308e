// `vellum-cli check` on 3D models through the real program: the totals line, or the reader's
// errors and warnings on standard error with their places. And the bundled models as the example
// graph shows them: each representation names a model that reads from the graph's folder.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>

#include "graph/DirectedGraph.h"
#include "graph/GraphReader.h"
#include "graph/StringAttribute.h"
#include "tests/support/Program.h"
#include "tests/support/TempFolder.h"
#include "tpx/TPXmodelReader.h"

namespace vellum {
namespace {

namespace fs = std::filesystem;

TEST(CheckModel, PrintsTheTotalsOrTheErrorsWithTheirPlaces) {
    test::TempFolder folder;
    folder.write("good.3rd",
                 "3rd v1\na { VERTICES 3 0 0 0 1 0 0 0 1 0 FACES 1 3 0 1 2 COLOR 1 0 0 }\n"
                 "b CHILD a { VERTICES 1 0 0 0 FACES 0 }\n");
    folder.write("bad.3rd", "3rd v1\na {\n\tVERTICES 1 0 0 0\n\tFACES 1 3 0 1 2 COLOR 1 0 0\n}\n");
    folder.write("twice.3rd", "3rd v1\na { VERTICES 0 FACES 0 }\na { VERTICES 0 FACES 0 }\n");
    const struct {
        const char* file;
        int status;
        int strictStatus;
        std::string out;
        std::string err;
    } rows[] = {
        {"good.3rd", 0, 0, "good.3rd: 2 objects, 4 vertices, 1 faces\n", ""},
        {"bad.3rd", 1, 1, "",
         "bad.3rd:4:14: error: the vertex index 1 is outside the object 'a', whose vertices are "
         "numbered 0 to 0\n\tFACES 1 3 0 1 2 COLOR 1 0 0\n\t            ^\n"},
        {"twice.3rd", 0, 1, "twice.3rd: 2 objects, 0 vertices, 0 faces\n",
         "twice.3rd:3:1: warning: the object name 'a' is used before; CHILD and SIBLING reach the "
         "first object\na { VERTICES 0 FACES 0 }\n^\n"},
    };
    test::ProgramOptions options;
    options.workingDirectory = folder.path();
    for (const auto& row : rows) {
        const test::ProgramResult result = test::runCli({"check", row.file}, options);
        EXPECT_EQ(result.status, row.status) << row.file;
        EXPECT_EQ(result.out, row.out) << row.file;
        EXPECT_EQ(result.err, row.err) << row.file;
        EXPECT_EQ(test::runCli({"check", "--strict", row.file}, options).status, row.strictStatus)
            << row.file;
    }
}

TEST(CheckModel, TheGalleryShowsEveryBundledModel) {
    const fs::path models = fs::path(VELLUM_SOURCE_DIR) / "examples" / "models";
    const auto graph = loadGraph((models / "gallery.dg").string());
    ASSERT_NE(graph, nullptr);
    std::set<std::string> shown;
    for (const DirectedGraphVertex& vertex : graph->vertices()) {
        const auto* name =
            dynamic_cast<const StringAttribute*>(vertex.findAttribute("representation"));
        if (name == nullptr)
            continue;
        std::string error;
        EXPECT_NE(TPXreadModel((models / name->value()).string(), error), nullptr) << error;
        shown.insert(name->value());
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(models)) {
        if (entry.path().extension() == ".3rd") {
            EXPECT_EQ(shown.count(entry.path().filename().string()), 1u) << entry.path();
        }
    }
}

}  // namespace
}  // namespace vellum
