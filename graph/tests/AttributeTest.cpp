#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <vector>

#include "graph/BooleanAttribute.h"
#include "graph/DirectedGraph.h"
#include "graph/GlobMatch.h"
#include "graph/IntegerAttribute.h"
#include "graph/NumberText.h"
#include "graph/RealAttribute.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"

namespace vellum {
namespace {

std::vector<std::string> names(const GraphObject& object) {
    std::vector<std::string> out;
    for (const Attribute& a : object.attributes())
        out.push_back(a.name());
    return out;
}

TEST(Attributes, FirstDefinitionWinsAndOrderIsKept) {
    DirectedGraph graph;
    DirectedGraphVertex* v = graph.createVertex();
    EXPECT_EQ(v->attributeCount(), 0u);
    EXPECT_EQ(v->firstAttribute(), nullptr);
    EXPECT_TRUE(v->addAttribute(std::make_unique<IntegerAttribute>("n", 1)));
    EXPECT_TRUE(v->addAttribute(std::make_unique<StringAttribute>("s", "x")));
    EXPECT_FALSE(v->addAttribute(std::make_unique<IntegerAttribute>("n", 2)));
    EXPECT_FALSE(v->addAttribute(std::make_unique<RealAttribute>("n", 2.5))) << "any type";
    EXPECT_TRUE(v->addAttribute(std::make_unique<IntegerAttribute>("N", 3))) << "case-sensitive";
    EXPECT_FALSE(v->addAttribute(nullptr));
    EXPECT_EQ(names(*v), (std::vector<std::string>{"n", "s", "N"}));
    auto* n = dynamic_cast<IntegerAttribute*>(v->findAttribute("n"));
    ASSERT_NE(n, nullptr);
    EXPECT_EQ(n->value(), 1);
    EXPECT_EQ(v->findAttribute("missing"), nullptr);
}

TEST(Attributes, RemovalAndCursorIteration) {
    DirectedGraph graph;
    DirectedGraphEdge* e = graph.createEdge(graph.createVertex(), graph.createVertex());
    for (const char* name : {"a", "b", "c"})
        e->addAttribute(std::make_unique<BooleanAttribute>(name, true));
    std::vector<std::string> seen;
    for (Attribute* a = e->firstAttribute(); a != nullptr; a = e->nextAttribute()) {
        seen.push_back(a->name());
        if (a->name() == "a") {
            EXPECT_TRUE(e->removeAttribute("a"));  // the cursor moves on to "b" all the same
        }
    }
    EXPECT_EQ(seen, (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_FALSE(e->removeAttribute("a"));
    EXPECT_TRUE(e->removeAttribute("c"));
    EXPECT_TRUE(e->removeAttribute("b"));
    EXPECT_EQ(e->attributeCount(), 0u);
    EXPECT_TRUE(e->attributes().empty());
    EXPECT_TRUE(e->addAttribute(std::make_unique<BooleanAttribute>("a", false)));
}

TEST(Attributes, EqualityComparesTypeAndValueNotName) {
    const IntegerAttribute one("x", 1);
    EXPECT_TRUE(one.equals(IntegerAttribute("other name", 1)));
    EXPECT_FALSE(one.equals(IntegerAttribute("x", 2)));
    EXPECT_FALSE(one.equals(RealAttribute("x", 1.0)));
    EXPECT_FALSE(one.equals(BooleanAttribute("x", true)));
    EXPECT_TRUE(StringAttribute("s", "a\\\"b").equals(StringAttribute("t", "a\\\"b")));
    EXPECT_FALSE(StringAttribute("s", "a").equals(StringAttribute("s", "A")));
    EXPECT_TRUE(VectorAttribute("v", {1, 2}).equals(VectorAttribute("v", {1, 2})));
    EXPECT_FALSE(VectorAttribute("v", {1, 2}).equals(VectorAttribute("v", {1, 2, 0})));
    EXPECT_TRUE(BooleanAttribute("b", false).equals(BooleanAttribute("c", false)));
}

struct Note : ObjectExtension {
    explicit Note(std::string t) : text(std::move(t)) {}
    std::unique_ptr<ObjectExtension> clone() const override { return std::make_unique<Note>(text); }
    std::string text;
};

TEST(Attributes, CloneIsDeepAndCarriesTheExtension) {
    VectorAttribute original("v", {1.5, -2});
    original.setExtension(std::make_unique<Note>("[x + 1]"));
    auto copy = original.clone();
    original.setValue({});
    original.setExtension(nullptr);
    EXPECT_EQ(copy->name(), "v");
    EXPECT_TRUE(copy->equals(VectorAttribute("w", {1.5, -2})));
    auto* note = dynamic_cast<Note*>(copy->extension());
    ASSERT_NE(note, nullptr);
    EXPECT_EQ(note->text, "[x + 1]");
}

TEST(NumberText, IntegerValueStopsAtTheFirstNonDigitAndWraps) {
    const struct {
        const char* text;
        std::int32_t value;
    } rows[] = {
        {"42", 42},
        {"-17", -17},
        {"3.6", 3},
        {"-0.5", 0},
        {"2147483647", INT_MAX},
        {"-2147483648", INT_MIN},
        {"2147483648", INT_MIN},
        {"4294967296", 0},
        {"", 0},
        {"-", 0},
        {"12abc", 12},
    };
    for (const auto& row : rows)
        EXPECT_EQ(integerValue(row.text), row.value) << row.text;
    // Forty digits: some value, without undefined behaviour (the sanitizer build checks).
    (void)integerValue("9999999999999999999999999999999999999999");
}

TEST(NumberText, RealValue) {
    EXPECT_EQ(realValue("0.0000125"), 0.0000125);
    EXPECT_EQ(realValue("-7"), -7.0);
    EXPECT_EQ(realValue("123456.789"), 123456.789);
    EXPECT_TRUE(std::isinf(realValue(std::string(400, '9'))));
}

TEST(GlobMatch, Table) {
    const struct {
        const char* pattern;
        const char* text;
        bool match;
    } rows[] = {
        {"__*__", "__ID__", true},
        {"__*__", "____", true},
        {"__*__", "___", false},
        {"__*__", "_ID__", false},
        {"__*__", "__ID_", false},
        {"__*__", "__a__b", false},
        {"__*__", "__a__b__", true},
        {"a?c", "abc", true},
        {"a?c", "ac", false},
        {"*", "", true},
        {"a*b*c", "aXbYbc", true},
        {"", "", true},
        {"", "x", false},
    };
    for (const auto& row : rows)
        EXPECT_EQ(globMatch(row.pattern, row.text), row.match) << row.pattern << " " << row.text;
}

}  // namespace
}  // namespace vellum
