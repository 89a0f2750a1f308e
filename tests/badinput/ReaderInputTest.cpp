// What the graph, rule and module readers do with input that is not a file of their format:
// overlong tokens and names, binary garbage, empty, missing and folder "files", a 100 MB file,
// edges and references to vertices that do not exist. Each must end in the reader's report and
// a failed load (or a load, where the input is in fact fine), never in a crash.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "BadInputSupport.h"
#include "grammar/TokenDefinitions.h"
#include "graph/GraphFormat.h"
#include "graph/GraphReader.h"
#include "graph/RuleReader.h"

namespace vellum {
namespace {

using test::endsWithReport;
using test::reportAt;

enum class Reader { Graph, Rule, Module };

struct Outcome {
    bool read;
    std::string console;
};

class ReaderInput : public test::ModuleFolderTest {
  protected:
    // Writes the text as NAME.dg, NAME.drl or NAME.mod and reads it with its reader.
    Outcome read(Reader reader, const std::string& text, const std::string& name = "input") {
        const std::string file = folder_.write(name + extension(reader), text);
        return readFile(reader, file);
    }
    Outcome readFile(Reader reader, const std::string& file) {
        if (reader == Reader::Module) {
            const test::Compiled compiled = compile(file);
            return {compiled.module != nullptr, compiled.console};
        }
        ConsoleCapture capture;
        DirectedGraph graph;
        const bool ok =
            reader == Reader::Graph ? loadGraph(file, graph) : loadRule(file) != nullptr;
        return {ok, capture.text()};
    }
    // The name a report gives the file: its path, or for a module its name.
    static std::string reportedName(Reader reader, const std::string& file) {
        return reader == Reader::Module ? std::filesystem::path(file).stem().string() : file;
    }
    static std::string kind(Reader reader) { return reader == Reader::Module ? "Module" : "File"; }
    static std::string extension(Reader reader) {
        switch (reader) {
            case Reader::Graph:
                return ".dg";
            case Reader::Rule:
                return ".drl";
            case Reader::Module:
                break;
        }
        return ".mod";
    }

  private:
    test::Compiled compile(const std::string& file) {
        ConsoleCapture capture;
        auto module = ModuleCompiler().compile(file, reportedName(Reader::Module, file));
        return {std::move(module), capture.text()};
    }
};

// Tokens of exactly `length` characters.
std::string identifier(std::size_t length) {
    return std::string(length, 'n');
}
std::string digits(std::size_t length) {
    return std::string(length, '7');
}
std::string quoted(std::size_t length) {
    return '"' + std::string(length - 2, 's') + '"';
}
std::string bracketed(std::size_t length) {
    return "[x" + std::string(length - 3, ' ') + "]";
}
std::string condition(std::size_t length) {
    return "(vertices >= 0" + std::string(length - 15, ' ') + ")";
}

std::string graphWith(const std::string& vertexBody) {
    return "directed graph g\n{\n\tvertex 1 { " + vertexBody + " }\n}\n";
}
std::string ruleWith(const std::string& name, const std::string& left, const std::string& right,
                     const std::string& extra = "") {
    return "directed graphrule " + name + "\n{\n\tleft-hand side { " + left +
           " }\n\tinterface { }\n\tright-hand side { " + right + " }\n" + extra + "}\n";
}

struct LongTokenRow {
    const char* what;
    Reader reader;
    std::string (*token)(std::size_t length);
    std::string (*text)(const std::string& token);
    // Numbers, strings and expressions of graph and rule files may be long (a real is written
    // in plain decimal); everything else keeps the engine's 127 characters.
    std::size_t longest = kMaxTokenText;
};

const LongTokenRow kLongTokenRows[] = {
    {"graph name", Reader::Graph, identifier,
     [](const std::string& t) { return "directed graph " + t + "\n{\n}\n"; }},
    {"vertex label", Reader::Graph, identifier,
     [](const std::string& t) { return graphWith("label " + t); }},
    {"attribute name", Reader::Graph, identifier,
     [](const std::string& t) { return graphWith("integer " + t + " = 1"); }},
    {"vertex number", Reader::Graph, digits,
     [](const std::string& t) { return "directed graph g\n{\n\tvertex " + t + "\n}\n"; },
     kMaxLiteralToken},
    {"string value", Reader::Graph, quoted,
     [](const std::string& t) { return graphWith("string s = " + t); }, kMaxLiteralToken},
    {"rule name", Reader::Rule, identifier,
     [](const std::string& t) { return ruleWith(t, "", ""); }},
    {"variable name", Reader::Rule, identifier,
     [](const std::string& t) { return ruleWith("r", "vertex 1 = " + t, ""); }},
    {"attribute expression", Reader::Rule, bracketed,
     [](const std::string& t) {
         return ruleWith("r", "vertex 1 = x", "vertex 2 { integer n = " + t + " }");
     },
     kMaxLiteralToken},
    {"application condition", Reader::Rule, bracketed,
     [](const std::string& t) {
         return ruleWith("r", "vertex 1 = x", "", "\tapplication condition = " + t + "\n");
     },
     kMaxLiteralToken},
    {"module name", Reader::Module, identifier,
     [](const std::string& t) { return test::moduleText(t, test::unitText("apply once noop")); }},
    {"unit name", Reader::Module, identifier,
     [](const std::string& t) {
         return test::moduleText("m", test::unitText("apply once noop", "", t));
     }},
    {"condition", Reader::Module, condition,
     [](const std::string& t) {
         return test::moduleText("m", test::unitText("apply once noop", t));
     }},
    {"applied rule or unit", Reader::Module, identifier,
     [](const std::string& t) { return test::moduleText("m", test::unitText("apply once " + t)); }},
    {"used module", Reader::Module, identifier,
     [](const std::string& t) {
         return test::moduleText("m", test::unitText("apply once noop"), "uses " + t + ";\n");
     }},
};

// 127 characters are the most a token may hold (64 KiB for numbers, strings and expressions of
// graph and rule files): such a file reads; one more and the reader reports the token's place.
TEST_F(ReaderInput, OverlongTokensAreRefusedWhereTheyStand) {
    for (const LongTokenRow& row : kLongTokenRows) {
        for (std::size_t length : {row.longest, row.longest + 1}) {
            const std::string token = row.token(length);
            // What the module rows name must exist when the name itself is fine.
            folder_.write(token + ".drl", test::kNoopRule);
            folder_.write(token + ".mod",
                          test::moduleText(token, test::unitText("apply once noop")));
            const std::string text = row.text(token);
            const Outcome outcome = read(row.reader, text);
            if (length == row.longest) {
                EXPECT_TRUE(outcome.read) << row.what << "\n" << outcome.console;
                continue;
            }
            EXPECT_FALSE(outcome.read) << row.what;
            const std::string file = folder_.path("input" + extension(row.reader));
            EXPECT_EQ(outcome.console, reportAt(kind(row.reader), reportedName(row.reader, file),
                                                text, static_cast<long>(text.find(token))))
                << row.what;
        }
    }
}

// Bytes no text of the formats holds, each reported where it stands.
TEST_F(ReaderInput, ControlBytesAndNonAsciiBytesEndTheReadingWhereTheyStand) {
    const struct {
        const char* what;
        std::string text;
        std::string at;  // where the reader stops: the first occurrence of this
    } rows[] = {
        {"NUL inside a label", graphWith(std::string("label a\0b", 9)), std::string("\0", 1)},
        {"byte 255 inside a label",
         graphWith("label a\xff"
                   "b"),
         "\xff"},
        {"invalid UTF-8 as a label", graphWith("label \xc3\x28"), "\xc3"},
        {"UTF-8 letter in a label", graphWith("label caf\xc3\xa9"), "\xc3"},
        // A comment ends at a byte of 128 or more; the token after it is looked for from the
        // comment's start, which is where the reader stops.
        {"UTF-8 letter in a comment", "% caf\xc3\xa9\n" + graphWith("label a"), "%"},
        {"control character", graphWith("label a \x01"), "\x01"},
    };
    for (const auto& row : rows) {
        const Outcome outcome = read(Reader::Graph, row.text);
        EXPECT_FALSE(outcome.read) << row.what;
        EXPECT_EQ(outcome.console, reportAt("File", folder_.path("input.dg"), row.text,
                                            static_cast<long>(row.text.find(row.at))))
            << row.what;
    }
}

TEST_F(ReaderInput, RandomBinaryGarbageFailsEveryReader) {
    std::mt19937 random(20240613);
    std::string allBytes;
    for (int b = 0; b < 256; ++b)
        allBytes.push_back(static_cast<char>(b));
    for (Reader reader : {Reader::Graph, Reader::Rule, Reader::Module}) {
        std::vector<std::string> texts = {allBytes};
        for (int i = 0; i < 20; ++i) {
            std::string garbage(static_cast<std::size_t>(1 + random() % 4096), '\0');
            for (char& c : garbage)
                c = static_cast<char>(random());
            texts.push_back(garbage);
        }
        for (const std::string& text : texts) {
            const Outcome outcome = read(reader, text);
            EXPECT_FALSE(outcome.read);
            const std::string file = folder_.path("input" + extension(reader));
            EXPECT_TRUE(
                endsWithReport(outcome.console, kind(reader), reportedName(reader, file), text));
        }
    }
}

// An empty file, a file that does not exist, a folder, a named pipe (which must not wait for a
// writer) and a device that never ends all read as an empty text.
TEST_F(ReaderInput, EmptyMissingFolderPipeAndDeviceFilesAreReportedAtPositionZero) {
    for (Reader reader : {Reader::Graph, Reader::Rule, Reader::Module}) {
        const std::string empty = folder_.write("empty" + extension(reader), "");
        const std::string missing = folder_.path("missing" + extension(reader));
        const std::string folder = folder_.path("folder" + extension(reader));
        std::filesystem::create_directory(folder);
        const std::string pipe = folder_.path("pipe" + extension(reader));
        ASSERT_EQ(::mkfifo(pipe.c_str(), 0644), 0);
        const std::string device = folder_.path("zero" + extension(reader));
        std::filesystem::create_symlink("/dev/zero", device);
        for (const std::string& file : {empty, missing, folder, pipe, device}) {
            const Outcome outcome = readFile(reader, file);
            EXPECT_FALSE(outcome.read) << file;
            EXPECT_EQ(outcome.console, reportAt(kind(reader), reportedName(reader, file), "", 0))
                << file;
        }
    }
}

// The bulk is blank lines (a long comment reads as well, more slowly under the sanitizers), so
// the file is read once from end to end without building a large graph; the error after it is
// reported at its exact place.
TEST_F(ReaderInput, AHundredMegabyteGraphFileIsReadUpToTheErrorAtItsEnd) {
    const std::string file = folder_.path("big.dg");
    const std::string head = "directed graph big\n{\n\tvertex 1 { label a }\n";
    const std::string tail = "\tvertex 2 { label b }\n\tedge 1 => 2\n}\n";
    std::string block;
    for (int i = 0; i < (1 << 17); ++i)
        block += "       \n";
    const long blocks = 100;
    {
        std::ofstream out(file, std::ios::binary);
        out << head;
        for (int i = 0; i < blocks; ++i)
            out << block;
        out << tail;
    }
    ASSERT_EQ(std::filesystem::file_size(file), head.size() + blocks * block.size() + tail.size());
    DirectedGraph graph;
    ConsoleCapture capture;
    EXPECT_FALSE(loadGraph(file, graph));
    const long error = static_cast<long>(tail.find("=>"));
    const long position = static_cast<long>(head.size()) + blocks * (1L << 20) + error;
    EXPECT_EQ(capture.text(), "File '" + file + "' contains errors near position " +
                                  std::to_string(position) + " in line 1\nDump '" +
                                  test::dumpOf(tail, error) + "' !!!\n");
}

// Vertex numbers are converted as the integer arithmetic computes: modulo 2 to the 32.
TEST_F(ReaderInput, VertexNumbersBeyond32BitsWrap) {
    const Outcome outcome =
        read(Reader::Graph, "directed graph g\n{\n\tvertex 4294967297\n\tedge 1 -> 1\n}\n");
    EXPECT_TRUE(outcome.read) << outcome.console;
    DirectedGraph graph;
    ASSERT_TRUE(loadGraph(folder_.path("input.dg"), graph));
    ASSERT_EQ(graph.edgeCount(), 1u);
    const DirectedGraphEdge& edge = *graph.edges().begin();
    EXPECT_EQ(edge.source(), edge.target());
}

TEST_F(ReaderInput, EdgesToVerticesThatDoNotExistFailTheReading) {
    const std::string graphText = "directed graph g\n{\n\tvertex 1\n\tedge 1 -> 2\n}\n";
    const std::string graphFile = folder_.write("edge.dg", graphText);
    DirectedGraph graph;
    graph.createVertex()->setLabel("kept");
    ConsoleCapture capture;
    EXPECT_FALSE(loadGraph(graphFile, graph));
    EXPECT_EQ(capture.text(),
              "Vertex with number '2' not found!!!\n" + reportAt("File", graphFile, graphText, -1));
    // The graph loaded into is left as it was.
    EXPECT_EQ(graph.vertexCount(), 1u);
    EXPECT_EQ(graph.vertexCount("kept"), 1u);

    const std::string ruleText = ruleWith("r", "vertex 1 edge 5 : 9 -> 1", "");
    const Outcome rule = read(Reader::Rule, ruleText);
    EXPECT_FALSE(rule.read);
    EXPECT_EQ(rule.console, "Vertex with number '9' not found!!!\n" +
                                reportAt("File", folder_.path("input.drl"), ruleText, -1));
}

TEST_F(ReaderInput, ReferencesToVerticesThatDoNotExistFailTheReading) {
    const struct {
        std::string left, right, message;
    } rows[] = {
        {"vertex 1", "vertex 2 @ 7",
         "Could not resolve the reference to vertex with the number '7' !!!\n"},
        {"vertex 1 @ 1", "", "You can't reference a node in the left hand side of the rule!!!\n"},
    };
    for (const auto& row : rows) {
        const std::string text = ruleWith("r", row.left, row.right);
        const Outcome outcome = read(Reader::Rule, text);
        EXPECT_FALSE(outcome.read) << row.message;
        EXPECT_EQ(outcome.console,
                  row.message + reportAt("File", folder_.path("input.drl"), text, -1));
    }
}

}  // namespace
}  // namespace vellum
