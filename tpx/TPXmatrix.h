// TPXmatrixT: a rows x columns matrix of the 3D scene library, kept column by column so that a
// 4 x 4 node transform goes to OpenGL (glLoadMatrixd, glMultMatrixd) as it is. Its checks are
// reported as failed assertions naming "include/matrix" and execution goes on: a dimension
// below 1 gives an empty matrix and a bad position a harmless spare element.
#pragma once

#include <cstddef>
#include <vector>

#include "base/Console.h"

namespace vellum {

template <typename T>
class TPXmatrixT {
  public:
    static constexpr const char* kSource = "include/matrix";
    // The lines the dimension checks report, the same as those of the graph model's matrix.
    static constexpr int kRowsLine = 43;
    static constexpr int kColumnsLine = 44;

    // x rows by y columns, all zero.
    TPXmatrixT(int x, int y) {
        const bool rowsOk = check(x > 0, "x > 0", kRowsLine);
        const bool columnsOk = check(y > 0, "y > 0", kColumnsLine);
        if (!rowsOk || !columnsOk)
            return;
        m_rows = x;
        m_columns = y;
        m_data.assign(static_cast<std::size_t>(x) * static_cast<std::size_t>(y), T{});
    }
    // The n x n identity.
    static TPXmatrixT identity(int n) {
        TPXmatrixT m(n, n);
        for (int i = 0; i < m.rows(); ++i)
            m(i, i) = T{1};
        return m;
    }

    int rows() const { return m_rows; }
    int columns() const { return m_columns; }
    // The elements column by column (what glLoadMatrixd reads for a 4 x 4 matrix).
    const T* data() const { return m_data.data(); }

    T& operator()(int row, int column) { return element(row, column); }
    const T& operator()(int row, int column) const { return element(row, column); }

    // The product this * b; mismatched dimensions are reported and give an empty result.
    TPXmatrixT operator*(const TPXmatrixT& b) const {
        if (!check(m_columns == b.m_rows, "m_columns == b.m_rows", __LINE__))
            return TPXmatrixT();
        TPXmatrixT product(m_rows, b.m_columns);
        for (int r = 0; r < m_rows; ++r)
            for (int c = 0; c < b.m_columns; ++c) {
                T sum{};
                for (int k = 0; k < m_columns; ++k)
                    sum += (*this)(r, k) * b(k, c);
                product(r, c) = sum;
            }
        return product;
    }

  private:
    TPXmatrixT() = default;

    T& element(int row, int column) const {
        const bool inside = row >= 0 && row < m_rows && column >= 0 && column < m_columns;
        if (!check(inside, "(x>=0) && (x<m_x) && (y>=0) && (y<m_y)", __LINE__)) {
            m_spare = T{};
            return m_spare;
        }
        return const_cast<T&>(m_data[static_cast<std::size_t>(column) * m_rows + row]);
    }
    static bool check(bool condition, const char* text, int line) {
        if (!condition)
            reportAssertion(text, kSource, line);
        return condition;
    }

    int m_rows = 0;
    int m_columns = 0;
    std::vector<T> m_data;  // m_rows * m_columns elements, column by column
    mutable T m_spare{};    // what a bad position yields; reset before each use
};

using TPXmatrix = TPXmatrixT<double>;

}  // namespace vellum
