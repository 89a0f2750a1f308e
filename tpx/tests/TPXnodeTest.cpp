// The scene tree: linking, unlinking and relinking nodes, with or without their place kept.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "tpx/TPXnode.h"
#include "tpx/tests/TPXtestSupport.h"

namespace vellum {
namespace {

using test::near;

std::unique_ptr<TPXnode> node(const std::string& name, TPXkind kind = TPXkind::ModelObject) {
    return std::make_unique<TPXnode>(kind, name);
}

// The names of the children in order; also checks the links of every child and its subtree.
std::string children(const TPXnode& parent) {
    std::string names;
    const TPXnode* previous = nullptr;
    for (const TPXnode* child = parent.firstChild(); child; child = child->nextSibling()) {
        EXPECT_EQ(child->parent(), &parent) << child->name();
        EXPECT_EQ(child->previousSibling(), previous) << child->name();
        children(*child);
        names += (names.empty() ? "" : " ") + child->name();
        previous = child;
    }
    return names;
}

TPXplacement placement(TPXp3 position, TPXp3 angles, TPXp3 scale, TPXp3 pivot = {}) {
    return {position, TPXquaternion::fromAngles(angles), scale, pivot};
}

TEST(TPXnode, LinkingAndUnlinkingKeepTheChains) {
    TPXnode root(TPXkind::Widget, "__TPXwidget__");
    TPXnode* c = root.adopt(node("c"));
    TPXnode* a = root.adopt(node("a"));
    a->adoptSibling(node("b"));
    c->adoptSibling(node("d"));
    a->adopt(node("e"));
    EXPECT_EQ(children(root), "a b c d");

    std::unique_ptr<TPXnode> taken = root.firstChild()->nextSibling()->unlink();
    EXPECT_EQ(taken->name(), "b");
    EXPECT_EQ(taken->parent(), nullptr);
    EXPECT_EQ(taken->nextSibling(), nullptr);
    EXPECT_EQ(children(root), "a c d");
    EXPECT_EQ(root.firstChild()->unlink()->name(), "a");  // destroys a with e
    EXPECT_EQ(children(root), "c d");
    EXPECT_EQ(taken->unlink(), nullptr) << "an unlinked node stays with its holder";

    TPXnode* d = c->nextSibling();
    EXPECT_TRUE(d->relinkUnder(*c));
    EXPECT_EQ(children(root), "c");
    EXPECT_EQ(children(*c), "d");
    EXPECT_FALSE(c->relinkUnder(*d)) << "a node cannot go below itself";
    EXPECT_FALSE(c->relinkUnder(*c));
    EXPECT_EQ(children(*c), "d");
}

TEST(TPXnode, RelinkingKeepsTheRequestedPlacement) {
    const struct {
        TPXplacement node, oldParent, newParent;
    } rows[] = {
        {placement({1, 2, 3}, {0, 0, 0}, {1, 1, 1}), placement({5, 0, 0}, {0, 0, 0}, {1, 1, 1}),
         placement({0, -5, 0}, {0, 0, 0}, {1, 1, 1})},
        {placement({1, 0, 0}, {10, 20, 30}, {1, 2, 3}, {0.5, 0, 0}),
         placement({0, 1, 0}, {0, 90, 0}, {2, 2, 2}),
         placement({3, 0, 1}, {-45, 0, 60}, {0.5, 0.5, 0.5})},
        {placement({0, 0, 0}, {170, -30, 5}, {1, 1, 1}, {1, 1, 1}),
         placement({-2, 4, 1}, {0, 0, 90}, {3, 3, 3}, {0, 1, 0}),
         placement({0, 0, 0}, {0, 0, 0}, {1, 1, 1})},
    };
    for (const auto& row : rows) {
        for (TPXkeep keep : {TPXkeep::Local, TPXkeep::World}) {
            TPXnode scene(TPXkind::Widget, "scene");
            TPXnode* from = scene.adopt(node("from"));
            TPXnode* to = scene.adopt(node("to"));
            from->setPlacement(row.oldParent);
            to->setPlacement(row.newParent);
            TPXnode* moving = from->adopt(node("moving"));
            moving->setPlacement(row.node);
            const TPXmatrix world = moving->worldMatrix();
            const TPXmatrix local = moving->localMatrix();

            ASSERT_TRUE(moving->relinkUnder(*to, keep));
            EXPECT_EQ(moving->parent(), to);
            if (keep == TPXkeep::World) {
                EXPECT_TRUE(near(moving->worldMatrix(), world));
                EXPECT_TRUE(near(moving->placement().pivot, row.node.pivot));
            } else {
                EXPECT_TRUE(near(moving->localMatrix(), local));
            }
        }
    }
}

TEST(TPXnode, WorldPointIsTheWorldMatrixApplied) {
    auto root = node("root");
    root->setPlacement(placement({1, 2, 3}, {10, 20, 30}, {2, 2, 2}, {0.5, 0, 0}));
    TPXnode* middle = root->adopt(node("middle"));
    middle->setPlacement(placement({-1, 0, 4}, {0, 0, 0}, {1, 1, 1}));  // only moved
    TPXnode* leaf = middle->adopt(node("leaf"));
    leaf->setPlacement(placement({0, 1, 0}, {0, 90, 0}, {1, 3, 1}, {0, 0, 1}));
    for (const TPXnode* n : {root.get(), middle, leaf})
        for (const TPXp3& p : {TPXp3(), TPXp3(1, -2, 0.5)})
            EXPECT_TRUE(near(n->worldPoint(p), TPXtransformPoint(n->worldMatrix(), p)))
                << n->name();
}

TEST(TPXnode, KindOneAlwaysKeepsItsPlace) {
    TPXnode scene(TPXkind::Widget, "scene");
    TPXnode* from = scene.adopt(node("from"));
    TPXnode* to = scene.adopt(node("to"));
    from->setPlacement(placement({1, 2, 3}, {0, 45, 0}, {2, 2, 2}));
    to->setPlacement(placement({-1, 0, 4}, {30, 0, 0}, {1, 1, 1}));
    TPXnode* fixed = from->adopt(node("fixed", TPXkind::KeepsPlace));
    fixed->setPosition({1, 1, 1});
    const TPXmatrix world = fixed->worldMatrix();
    ASSERT_TRUE(fixed->relinkUnder(*to, TPXkeep::Local));
    EXPECT_TRUE(near(fixed->worldMatrix(), world));
    std::unique_ptr<TPXnode> alone = fixed->unlink(TPXkeep::Local);
    EXPECT_TRUE(near(alone->worldMatrix(), world));
}

TEST(TPXnode, ALongSiblingChainIsDestroyedWithoutDeepRecursion) {
    auto scene = node("scene");
    TPXnode* last = scene->adopt(node("0"));
    for (int i = 1; i < 300000; ++i)
        last = last->adoptSibling(node(std::to_string(i)));
    scene.reset();  // a recursive teardown would overflow the stack here
}

}  // namespace
}  // namespace vellum
