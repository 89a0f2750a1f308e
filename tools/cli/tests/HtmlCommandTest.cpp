// `vellum-cli html` through the real program: a bundled module becomes a page whose every
// picture is a PNG beside it that reads back, the files written are listed, and bad arguments
// are refused.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <string>

#include "tests/support/PngFile.h"
#include "tests/support/Program.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

const std::string kSierpinski = std::string(VELLUM_SOURCE_DIR) + "/examples/sierpinski/";

TEST(HtmlCommand, WritesThePageAndAReadablePictureOfEachRuleItNames) {
    test::TempFolder folder;
    const std::string page = folder.path("sierpinski.html");
    const test::ProgramResult run =
        test::runCli({"html", kSierpinski + "sierpinski.mod", "-o", page});
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out,
              folder.path("split_t.png") + "\n" + folder.path("split_n.png") + "\n" + page + "\n");
    std::ifstream in(page);
    const std::string html{std::istreambuf_iterator<char>(in), {}};
    EXPECT_NE(html.find("<B>as long as possible</B> <IMG SRC=\"split_t.png\" ALT=\"split_t\""),
              std::string::npos);
    const std::regex image("<IMG SRC=\"([^\"]+)\"");
    int images = 0;
    for (std::sregex_iterator i(html.begin(), html.end(), image), end; i != end; ++i, ++images) {
        test::PngContents png;
        EXPECT_TRUE(test::readPng(folder.path((*i)[1].str()), png)) << (*i)[1];
    }
    EXPECT_EQ(images, 2);
}

TEST(HtmlCommand, RefusesBadArguments) {
    test::TempFolder folder;
    struct Row {
        std::vector<std::string> arguments;
        int status;
        const char* message;
    } rows[] = {
        {{"html", kSierpinski + "sierpinski.mod"}, 2, "-o FILE is required"},
        {{"html", "-o", folder.path("x.html")}, 2, "expected one module file"},
        {{"html", folder.path("missing.mod"), "-o", folder.path("x.html")}, 1, "cannot open"},
        {{"html", kSierpinski + "sierpinski.mod", "-o", folder.path("no/such/x.html")},
         2,
         "folder"},
    };
    for (const Row& row : rows) {
        const test::ProgramResult run = test::runCli(row.arguments);
        EXPECT_EQ(run.status, row.status) << run.err;
        EXPECT_NE(run.err.find(row.message), std::string::npos) << run.err;
    }
}

}  // namespace
}  // namespace vellum
