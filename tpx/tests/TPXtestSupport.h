// Test helpers of the scene library: comparing points and matrices within a tolerance.
#pragma once

#include <gtest/gtest.h>

#include <cmath>

#include "tpx/TPXmatrix.h"
#include "tpx/TPXp3.h"

namespace vellum::test {

inline ::testing::AssertionResult near(const TPXp3& a, const TPXp3& b, double tolerance = 1e-9) {
    if ((a - b).length() <= tolerance)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << "(" << a.x() << ", " << a.y() << ", " << a.z() << ") differs from (" << b.x() << ", "
           << b.y() << ", " << b.z() << ")";
}

inline ::testing::AssertionResult near(const TPXmatrix& a, const TPXmatrix& b,
                                       double tolerance = 1e-9) {
    if (a.rows() != b.rows() || a.columns() != b.columns())
        return ::testing::AssertionFailure() << "the dimensions differ";
    for (int r = 0; r < a.rows(); ++r)
        for (int c = 0; c < a.columns(); ++c)
            if (std::abs(a(r, c) - b(r, c)) > tolerance)
                return ::testing::AssertionFailure() << "element (" << r << ", " << c << ") is "
                                                     << a(r, c) << ", not " << b(r, c);
    return ::testing::AssertionSuccess();
}

}  // namespace vellum::test
