// The model reader: a file with every feature read back into the right structure, the edge
// cases of the format, and every error with its message and line.
#include <gtest/gtest.h>

#include <string>

#include "tests/support/TempFolder.h"
#include "tpx/TPXmodelReader.h"
#include "tpx/tests/TPXtestSupport.h"

namespace vellum {
namespace {

using test::near;
using test::TempFolder;

std::optional<TPXmodel> readText(const std::string& text, std::string& error) {
    return TPXmodelReader().readText(text, {}, error);
}

std::vector<const TPXnode*> childrenOf(const TPXnode& node) {
    std::vector<const TPXnode*> children;
    for (const TPXnode* child = node.firstChild(); child; child = child->nextSibling())
        children.push_back(child);
    return children;
}

std::vector<std::string> namesOf(const std::vector<const TPXnode*>& nodes) {
    std::vector<std::string> names;
    for (const TPXnode* node : nodes)
        names.push_back(node->name());
    return names;
}

const char* kEveryFeature = R"(3rd v1
* Materials come before the objects.
MATERIAL red { COLOR 1 0 0 }
material shiny {
    ambient 0.1 0.1 0.1
    diffuse 0.2 0.4 0.6
    specular 1 1 1
    emission 0 0 0.5
    shininess 32
}
MATERIAL brick { TEXTURE "brick.ppm" }
base {
    POSITION 1 2 3
    ORIENTATION 0 90 0
    SCALE 2 2 2
    PIVOT 0.5 0 0
    VERTICES 4
        0 0 0
        1 0 0
        1 1 0
        0 1 0
    FACES 2
        4 0 1 2 3 MATERIAL red
        3 0 3 2 CW MATERIAL red
}
top CHILD base {
    VERTICES 3
        0 0 1 NORMAL 0 0 1
        1 0 1
        0 1 1
    FACES 1
        3 0 1 2 MATERIAL shiny
}
side SIBLING base {
    vertices 3 0 0 0 1 0 0 0 1 0
    faces 3
        3 2 1 0 cw texture "brick.ppm"
        2 0 1 color 0 1 0
        1 2 MATERIAL brick
}
leaf CHILD base { VERTICES 0 FACES 0 }
)";

TEST(TPXmodelReader, ReadsEveryFeatureIntoTheRightStructure) {
    TempFolder folder;
    folder.write("brick.ppm", "P3\n1 1\n255\n200 80 40\n");
    const std::string file = folder.write("all.3rd", kEveryFeature);
    std::string error;
    const std::optional<TPXmodel> model = TPXmodelReader().read(file, error);
    ASSERT_TRUE(model) << error;
    EXPECT_EQ(model->totals.objects, 4u);
    EXPECT_EQ(model->totals.vertices, 10u);
    EXPECT_EQ(model->totals.faces, 6u);

    // SIBLING goes right after its object; CHILD objects follow in file order.
    const TPXnode& root = *model->root;
    EXPECT_EQ(root.kind(), TPXkind::ModelObject);
    EXPECT_EQ(root.geometry(), nullptr);
    ASSERT_EQ(namesOf(childrenOf(root)), (std::vector<std::string>{"base", "side"}));
    const TPXnode& base = *root.firstChild();
    const TPXnode& side = *base.nextSibling();
    ASSERT_EQ(namesOf(childrenOf(base)), (std::vector<std::string>{"top", "leaf"}));
    const TPXnode& top = *base.firstChild();

    for (const TPXnode* node : std::vector<const TPXnode*>{&base, &top, &side, top.nextSibling()}) {
        EXPECT_EQ(node->kind(), TPXkind::ModelObject);
        ASSERT_NE(node->geometry(), nullptr);
        EXPECT_EQ(node->geometry()->name(), node->name());
    }
    EXPECT_TRUE(near(base.placement().position, {1, 2, 3}));
    EXPECT_TRUE(near(base.placement().orientation.toAngles(), {0, 90, 0}, 1e-9));
    EXPECT_TRUE(near(base.placement().scale, {2, 2, 2}));
    EXPECT_TRUE(near(base.placement().pivot, {0.5, 0, 0}));
    EXPECT_TRUE(near(top.placement().scale, {1, 1, 1}));

    // Corners count from 0; CW turns a face round; computed normals face the viewer of a
    // counter-clockwise face; finish() has set the box.
    const TPXgeometry& g = *base.geometry();
    ASSERT_EQ(g.polygons().size(), 2u);
    EXPECT_EQ(g.polygons()[0].corners(), (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(g.polygons()[1].corners(), (std::vector<int>{2, 3, 0}));
    EXPECT_TRUE(near(g.polygons()[0].normal(), {0, 0, 1}));
    EXPECT_TRUE(near(g.polygons()[1].normal(), {0, 0, 1}));
    EXPECT_TRUE(near(g.boundingBox().max, {1, 1, 0}));

    // One explicit normal stops computed normals for the object, not for the next one.
    const TPXgeometry& t = *top.geometry();
    EXPECT_TRUE(near(t.vertices()[0].normal, {0, 0, 1}));
    EXPECT_TRUE(near(t.vertices()[1].normal, {0, 0, 0}));
    EXPECT_TRUE(near(t.polygons()[0].normal(), {0, 0, 0}));
    const TPXgeometry& s = *side.geometry();
    EXPECT_EQ(s.polygons()[0].corners(), (std::vector<int>{0, 1, 2}));
    EXPECT_TRUE(near(s.polygons()[0].normal(), {0, 0, 1}));
    // Faces of fewer than three corners get no normal.
    EXPECT_TRUE(near(s.polygons()[1].normal(), {0, 0, 0}));
    EXPECT_EQ(s.polygons()[2].size(), 1);

    // Named materials are shared and counted; a texture file is read once per model.
    ASSERT_EQ(model->materials.size(), 3u);
    const TPXnamedMaterial& red = model->materials[0];
    const TPXnamedMaterial& shiny = model->materials[1];
    const TPXnamedMaterial& brick = model->materials[2];
    EXPECT_EQ(red.uses, 2);
    EXPECT_EQ(shiny.uses, 1);
    EXPECT_EQ(brick.uses, 1);
    EXPECT_EQ(g.polygons()[0].material().get(), red.material.get());
    EXPECT_EQ(g.polygons()[1].material().get(), red.material.get());
    EXPECT_EQ(red.material->references(), 3);
    EXPECT_EQ(red.material->name(), "red");
    EXPECT_EQ(red.material->kind(), TPXmaterial::Kind::Plain);
    EXPECT_EQ(red.material->diffuse(), (TPXrgb{1, 0, 0}));
    EXPECT_EQ(shiny.material->kind(), TPXmaterial::Kind::Full);
    EXPECT_EQ(shiny.material->diffuse(), (TPXrgb{0.2, 0.4, 0.6}));
    EXPECT_EQ(shiny.material->emission(), (TPXrgb{0, 0, 0.5}));
    EXPECT_EQ(shiny.material->shininess(), 32);
    const TPXmaterial& textured = *s.polygons()[0].material();
    EXPECT_EQ(textured.kind(), TPXmaterial::Kind::Textured);
    ASSERT_NE(textured.texture(), nullptr);
    EXPECT_EQ(textured.texture(), brick.material->texture());
    EXPECT_EQ(textured.texture()->image().width(), 1);
    EXPECT_EQ(s.polygons()[1].material()->diffuse(), (TPXrgb{0, 1, 0}));
}

struct Accepted {
    const char* what;
    const char* text;
    std::size_t objects;
    std::size_t vertices;
    std::size_t faces;
};

TEST(TPXmodelReader, AcceptsBothSpellingsOfEveryKeywordAndLooseEnds) {
    const Accepted rows[] = {
        {"capital SHNININESS",
         "3rd v1 MATERIAL m { AMBIENT 0 0 0 DIFFUSE 0 0 0 SPECULAR 0 0 0 EMISSION 0 0 0 "
         "SHNININESS 5 } a { VERTICES 0 FACES 0 }",
         1, 0, 0},
        {"small shininess",
         "3rd v1 material m { ambient 0 0 0 diffuse 0 0 0 specular 0 0 0 emission 0 0 0 "
         "shininess 5 } a { vertices 0 faces 0 }",
         1, 0, 0},
        {"small placement keywords",
         "3rd v1 a { position 1 1 1 orientation 0 0 0 scale 1 1 1 pivot 0 0 0 vertices 1 0 0 0 "
         "normal 0 1 0 faces 1 1 0 color 1 1 1 } b child a { vertices 0 faces 0 } "
         "c sibling b { vertices 0 faces 0 }",
         3, 1, 1},
        {"comments anywhere between tokens",
         "3rd v1 * version\na { VERTICES * count\n 1 * vertex\n -1.5 0 2.25 FACES 0 }\n* end", 1, 1,
         0},
    };
    for (const Accepted& row : rows) {
        std::string error;
        const auto model = readText(row.text, error);
        ASSERT_TRUE(model) << row.what << ": " << error;
        EXPECT_EQ(model->totals.objects, row.objects) << row.what;
        EXPECT_EQ(model->totals.vertices, row.vertices) << row.what;
        EXPECT_EQ(model->totals.faces, row.faces) << row.what;
    }
}

struct Refused {
    const char* what;
    std::string text;
    const char* error;
};

// An object of four vertices with the faces given.
std::string square(const std::string& faces, int count = 1) {
    return "3rd v1\nsq {\nVERTICES 4 0 0 0 1 0 0 1 1 0 0 1 0\nFACES " + std::to_string(count) +
           "\n" + faces + "\n}\n";
}

// Objects o0 to oN on one line, each a child of the one before.
std::string nested(int n) {
    std::string text = "3rd v1 o0 { VERTICES 0 FACES 0 }";
    for (int i = 1; i <= n; ++i)
        text += " o" + std::to_string(i) + " CHILD o" + std::to_string(i - 1) +
                " { VERTICES 0 FACES 0 }";
    return text;
}

TEST(TPXmodelReader, RefusesTheWholeFileWithTheReasonAndLine) {
    const Refused rows[] = {
        {"capital SHININESS",
         "3rd v1\nMATERIAL m { AMBIENT 0 0 0 DIFFUSE 0 0 0 SPECULAR 0 0 0 EMISSION 0 0 0\n"
         "SHININESS 5 }\na { VERTICES 0 FACES 0 }",
         "line 3: syntax error in the definition of the material 'm'"},
        {"no corners", square("0 COLOR 1 0 0"), "line 5: a face needs at least one corner, not 0"},
        {"negative corner count", square("-2 0 1 COLOR 1 0 0"),
         "line 5: a face needs at least one corner, not -2"},
        {"more corners than announced", square("3 0 1 2 3 COLOR 1 0 0"),
         "line 5: the face announces 3 corners but lists more"},
        {"fewer corners than announced", square("4 0 1 2 COLOR 1 0 0"),
         "line 5: the face announces 4 corners but lists 3"},
        {"fewer corners before CW", square("4 0 1 2 CW COLOR 1 0 0"),
         "line 5: the face announces 4 corners but lists 3"},
        {"vertex index past the count", square("3 0 1 4 COLOR 1 0 0"),
         "line 5: the vertex index 4 is outside the object 'sq', whose vertices are numbered 0 to "
         "3"},
        {"negative vertex index", square("3 0 -1 2 COLOR 1 0 0"),
         "line 5: the vertex index -1 is outside the object 'sq', whose vertices are numbered 0 to "
         "3"},
        {"vertex index in an object without vertices",
         "3rd v1 a { VERTICES 0 FACES 1 1 0 COLOR 1 0 0 }",
         "line 1: the vertex index 0 is outside the object 'a', which has no vertices"},
        {"more faces than announced", square("3 0 1 2 COLOR 1 0 0 3 0 2 3 COLOR 1 0 0"),
         "line 5: the object 'sq' announces 1 face but lists more"},
        {"fewer faces than announced", square("3 0 1 2 COLOR 1 0 0", 2),
         "line 6: the object 'sq' announces 2 faces but lists 1"},
        {"more vertices than announced", "3rd v1\na {\nVERTICES 1 0 0 0 1 1 1 FACES 0 }",
         "line 3: the object 'a' announces 1 vertex but lists more"},
        {"fewer vertices than announced", "3rd v1\na {\nVERTICES 3 0 0 0 1 1 1\nFACES 0 }",
         "line 4: the object 'a' announces 3 vertices but lists 2"},
        {"a count of 2000000000 with one vertex", "3rd v1 a { VERTICES 2000000000 0 0 0 FACES 0 }",
         "line 1: the object 'a' announces 2000000000 vertices but lists 1"},
        {"a count beyond an int", "3rd v1 a { VERTICES 1000000000000 FACES 0 }",
         "line 1: '1000000000000' is out of range"},
        {"a fractional index", square("3 0 1.5 2 COLOR 1 0 0"),
         "line 5: '1.5' is not a whole number"},
        {"a negative vertex count", "3rd v1 a { VERTICES -1 FACES 0 }",
         "line 1: a vertex count cannot be negative"},
        {"a negative face count", "3rd v1 a { VERTICES 0 FACES -1 }",
         "line 1: a face count cannot be negative"},
        {"a normal of two numbers", "3rd v1 a { VERTICES 1 0 0 0 NORMAL 0 1\nFACES 0 }",
         "line 2: a NORMAL needs three numbers"},
        {"a face without material", square("3 0 1 2"),
         "line 6: a face must end with its material: COLOR R G B, TEXTURE \"FILE\" or MATERIAL "
         "NAME"},
        {"a face with a misspelt material", square("3 0 1 2 COLR 1 0 0"),
         "line 5: a face must end with its material: COLOR R G B, TEXTURE \"FILE\" or MATERIAL "
         "NAME"},
        {"a material used before its definition",
         "3rd v1\na { VERTICES 1 0 0 0 FACES 1 1 0 MATERIAL m }\nMATERIAL m { COLOR 1 0 0 }",
         "line 2: the material 'm' is not defined; materials are defined before the first object"},
        {"a material defined after the objects",
         "3rd v1\na { VERTICES 0 FACES 0 }\nMATERIAL m { COLOR 1 0 0 }\nb { VERTICES 0 FACES 0 }",
         "line 3: only objects may follow the first object; materials are defined before it"},
        {"an unfinished material definition",
         "3rd v1\nMATERIAL m { COLOR 1 0 0\na { VERTICES 0 FACES 0 }",
         "line 3: syntax error in the definition of the material 'm'"},
        {"CHILD naming a later object",
         "3rd v1\na CHILD b { VERTICES 0 FACES 0 }\nb { VERTICES 0 FACES 0 }",
         "line 2: no object 'b' is read before 'a'; CHILD and SIBLING name an object above them"},
        {"objects nested deeper than the tree may go", nested(1001),
         "line 1: the objects nest more than 1000 deep"},
        {"SIBLING naming itself", "3rd v1\na SIBLING a { VERTICES 0 FACES 0 }",
         "line 2: no object 'a' is read before 'a'; CHILD and SIBLING name an object above them"},
        {"a missing brace between objects",
         "3rd v1\na { VERTICES 0 FACES 0 }\nb { VERTICES 0 FACES 0\nc { VERTICES 0 FACES 0 }",
         "line 4: expected '}' to end the object 'b'"},
        {"a later object broken off",
         "3rd v1\na { VERTICES 0 FACES 0 }\nb { POSITION 1 2\nVERTICES 0 FACES 0 }",
         "line 4: syntax error in the object 'b'"},
        {"a later object cut short", "3rd v1\na { VERTICES 0 FACES 0 }\nb { VERTICES 2 0 0 0",
         "line 3: the text ends inside the object 'b'"},
        {"a missing texture", square("3 0 1 2 TEXTURE \"missing.ppm\""),
         "line 5: the texture file 'missing.ppm' does not exist"},
        {"a name that begins with a keyword", "3rd v1\nchildhood { VERTICES 0 FACES 0 }",
         "line 2: 'childhood' begins with the keyword 'child': expected 'MATERIAL' or a name"},
        {"another version", "3rd v2\na { VERTICES 0 FACES 0 }",
         "line 1: syntax error near '3rd v2': expected '3rd v1'"},
        {"no object", "3rd v1\nMATERIAL m { COLOR 1 0 0 }\n",
         "line 3: unexpected end of input: expected 'MATERIAL' or a name"},
    };
    for (const Refused& row : rows) {
        std::string error;
        EXPECT_FALSE(readText(row.text, error)) << row.what;
        EXPECT_EQ(error, row.error) << row.what;
    }
}

TEST(TPXmodelReader, ReadModelGivesTheRootOrTheReason) {
    TempFolder folder;
    const std::string file = folder.write("m.3rd", "3rd v1 a { VERTICES 0 FACES 0 }");
    std::string error;
    const std::unique_ptr<TPXnode> root = TPXreadModel(file, error);
    ASSERT_NE(root, nullptr) << error;
    EXPECT_EQ(namesOf(childrenOf(*root)), std::vector<std::string>{"a"});

    folder.write("bad.3rd", "3rd v1\na { VERTICES 1 }");
    folder.write("noise.ppm", "P3 1 1");
    folder.write("image.3rd",
                 "3rd v1\nMATERIAL m { TEXTURE \"noise.ppm\" } a { VERTICES 0 FACES 0 }");
    folder.write("folder.3rd", "3rd v1\nMATERIAL m { TEXTURE \".\" } a { VERTICES 0 FACES 0 }");
    const struct {
        std::string file;
        std::string error;
    } rows[] = {
        {"none.3rd", "DIR/none.3rd: cannot open the file"},
        {"", "DIR/: not a regular file"},
        {"bad.3rd", "DIR/bad.3rd:2: syntax error near '}': expected a number or 'FACES'"},
        // Texture names are taken from the model's folder.
        {"image.3rd",
         "DIR/image.3rd:2: cannot read the image 'DIR/noise.ppm' (a .ppm or .pgm file)"},
        {"folder.3rd", "DIR/folder.3rd:2: the texture file 'DIR/.' is not a regular file"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(TPXreadModel(folder.path() + "/" + row.file, error), nullptr) << row.file;
        for (std::size_t at; (at = error.find(folder.path())) != std::string::npos;)
            error.replace(at, folder.path().size(), "DIR");
        EXPECT_EQ(error, row.error) << row.file;
    }
}

}  // namespace
}  // namespace vellum
