#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>
#include "base/Console.h"

#include "graph/InlineVector.h"
#include "graph/Matrix.h"
#include "graph/ObjectPool.h"
#include "graph/Vector.h"

namespace vellum {
namespace {

const char* const kIndexFailure =
    "Assertion failed: (index>=0) && (index<m_size), file include/vector, line 275\n";

TEST(Vector, BadIndexIsReportedAndHarmless) {
    vellum::vector<int> v(3);
    v[0] = 1;
    v[2] = 3;
    ConsoleCapture capture;
    v[3] = 99;  // writes the spare element, not past the array
    v[-1] = 98;
    EXPECT_EQ(capture.text(), std::string(kIndexFailure) + kIndexFailure);
    EXPECT_EQ(v[0], 1);
    EXPECT_EQ(v[2], 3);
    capture.reset();
    const vellum::vector<int>& constant = v;
    EXPECT_EQ(constant[7], 0) << "the spare element is reset before use";
    EXPECT_EQ(capture.text(), kIndexFailure);
}

TEST(Vector, SizeChecks) {
    ConsoleCapture capture;
    vellum::vector<double> empty(0);
    EXPECT_EQ(empty.size(), 0);
    EXPECT_EQ(capture.text(), "Assertion failed: size > 0, file include/vector, line 52\n");
    capture.reset();
    vellum::vector<double> a(2), b(3);
    a[0] = 1;
    a[1] = 2;
    a += b;
    EXPECT_EQ(capture.text(),
              "Assertion failed: m_size == v.m_size, file include/vector, line 181\n");
    EXPECT_EQ(a[0], 1) << "left unchanged";
    vellum::vector<double> c(2);
    c[1] = 5;
    capture.reset();
    const vellum::vector<double> sum = a + c;
    EXPECT_EQ(sum[1], 7);
    EXPECT_TRUE(sum == sum);
    EXPECT_EQ(capture.text(), "");
}

TEST(Matrix, DimensionsAndPositionsAreChecked) {
    ConsoleCapture capture;
    vellum::matrix<int> bad(0, -1);
    EXPECT_EQ(capture.text(),
              "Assertion failed: x > 0, file include/matrix, line 43\n"
              "Assertion failed: y > 0, file include/matrix, line 44\n");
    EXPECT_EQ(bad.columns(), 0);
    capture.reset();
    vellum::matrix<int> m(3, 2);
    m(2, 1) = 7;
    m(3, 0) = 1;
    EXPECT_NE(capture.text().find("include/matrix"), std::string::npos);
    EXPECT_EQ(m(2, 1), 7);
    EXPECT_EQ(m(0, 0), 0);
    const vellum::matrix<int> copy = m;
    EXPECT_EQ(copy(2, 1), 7);
}

struct Probe {
    Probe(int number, int& counter) : value(number), destroyed(counter) {}
    ~Probe() { ++destroyed; }
    int value;
    int& destroyed;
};

TEST(ObjectPool, ReusesReleasedSlotsAndKeepsTheOthers) {
    ObjectPool pool(sizeof(Probe));
    int destroyed = 0;
    std::vector<Probe*> made;
    for (int i = 0; i < 1000; ++i)
        made.push_back(pool.make<Probe>(i, destroyed));
    EXPECT_EQ(pool.live(), 1000u);
    const std::size_t reserved = pool.reservedBytes();
    EXPECT_GE(reserved, 1000 * sizeof(Probe));
    EXPECT_LT(reserved, 2000 * 32) << "slabs grow by at most double";

    pool.destroy(made[500]);
    pool.destroy(made[10]);
    EXPECT_EQ(destroyed, 2);
    EXPECT_EQ(pool.live(), 998u);
    // Last released, first reused; no new slab for them.
    EXPECT_EQ(pool.make<Probe>(-1, destroyed), made[10]);
    EXPECT_EQ(pool.make<Probe>(-2, destroyed), made[500]);
    EXPECT_EQ(pool.reservedBytes(), reserved);
    for (int i : {0, 11, 499, 501, 999})
        EXPECT_EQ(made[static_cast<std::size_t>(i)]->value, i);
    for (Probe* probe : made)
        pool.destroy(probe);
    EXPECT_EQ(pool.live(), 0u);
}

TEST(ObjectPool, AFailedConstructionGivesItsSlotBack) {
    struct Refuses {
        Refuses() { throw std::runtime_error("refused"); }
    };
    ObjectPool pool(sizeof(Refuses));
    EXPECT_THROW(pool.make<Refuses>(), std::runtime_error);
    EXPECT_EQ(pool.live(), 0u);
}

// Copies and moves must work from both places the elements can be: inline and on the heap.
TEST(InlineVector, KeepsItsElementsInlineAndOnTheHeapThroughCopiesAndMoves) {
    using Small = InlineVector<int, 3>;
    auto contents = [](const Small& v) { return std::vector<int>(v.begin(), v.end()); };
    for (int count : {2, 3, 4, 9}) {
        Small v;
        for (int i = 0; i < count; ++i)
            v.push_back(i);
        v.push_back(v[0]);  // an element of the vector itself, when growing too
        std::vector<int> expected;
        for (int i = 0; i < count; ++i)
            expected.push_back(i);
        expected.push_back(0);
        ASSERT_EQ(contents(v), expected) << count;

        Small copy(v);
        Small assigned;
        assigned.push_back(42);
        assigned = v;
        Small moved(std::move(copy));
        Small moveAssigned;
        moveAssigned = std::move(assigned);
        EXPECT_EQ(contents(moved), expected) << count;
        EXPECT_EQ(contents(moveAssigned), expected) << count;
        EXPECT_TRUE(copy.empty());  // NOLINT(bugprone-use-after-move): moved-from is empty
        copy.push_back(7);
        EXPECT_EQ(contents(copy), std::vector<int>{7});
        EXPECT_EQ(contents(v), expected) << "the original is untouched";

        moved.erase(moved.begin() + 1, moved.begin() + 2);
        expected.erase(expected.begin() + 1);
        EXPECT_EQ(contents(moved), expected) << count;
    }
    Small filled;
    filled.assign(5, -1);
    EXPECT_EQ(contents(filled), std::vector<int>(5, -1));
    filled.clear();
    EXPECT_TRUE(filled.empty());
    EXPECT_GE(filled.capacity(), 5u) << "clearing keeps the storage";
}

}  // namespace
}  // namespace vellum
