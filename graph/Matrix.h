// vellum::matrix: a two-dimensional array of x columns by y rows for the graph model and the
// matcher. Its checks are reported through the console as failed assertions naming the source
// "include/matrix" and execution goes on; a bad position yields a harmless spare element.
#pragma once

#include <cstddef>
#include <memory>

#include "base/Console.h"

namespace vellum {

template <typename T>
class matrix {
  public:
    static constexpr const char* kSource = "include/matrix";
    static constexpr int kColumnsLine = 43;
    static constexpr int kRowsLine = 44;
    static constexpr int kIndexLine = 97;

    // x columns by y rows, value-initialised. A dimension below 1 is reported and gives an
    // empty matrix.
    matrix(int x, int y) {
        const bool columnsOk = check(x > 0, "x > 0", kColumnsLine);
        const bool rowsOk = check(y > 0, "y > 0", kRowsLine);
        if (!columnsOk || !rowsOk)
            return;
        m_x = x;
        m_y = y;
        m_data = std::make_unique<T[]>(static_cast<std::size_t>(x) * static_cast<std::size_t>(y));
    }
    matrix(const matrix& other) : m_x(other.m_x), m_y(other.m_y) {
        const std::size_t count = other.count();
        if (count > 0)
            m_data = std::make_unique<T[]>(count);
        for (std::size_t i = 0; i < count; ++i)
            m_data[i] = other.m_data[i];
    }
    matrix& operator=(const matrix& other) {
        if (this != &other) {
            matrix copy(other);
            *this = std::move(copy);
        }
        return *this;
    }
    matrix(matrix&&) noexcept = default;
    matrix& operator=(matrix&&) noexcept = default;

    int columns() const { return m_x; }
    int rows() const { return m_y; }

    // The element in column `col` and row `row`; a position outside the matrix is reported
    // and yields the spare element.
    T& operator()(int col, int row) { return element(col, row); }
    const T& operator()(int col, int row) const { return element(col, row); }

  private:
    T& element(int col, int row) const {
        const bool inside = col >= 0 && col < m_x && row >= 0 && row < m_y;
        if (!check(inside, "(x>=0) && (x<m_x) && (y>=0) && (y<m_y)", kIndexLine)) {
            m_spare = T{};
            return m_spare;
        }
        return m_data[static_cast<std::size_t>(row) * static_cast<std::size_t>(m_x) +
                      static_cast<std::size_t>(col)];
    }
    static bool check(bool condition, const char* text, int line) {
        if (!condition)
            reportAssertion(text, kSource, line);
        return condition;
    }
    std::size_t count() const {
        return static_cast<std::size_t>(m_x) * static_cast<std::size_t>(m_y);
    }

    int m_x = 0;
    int m_y = 0;
    std::unique_ptr<T[]> m_data;  // m_x * m_y elements, row by row; null when empty
    mutable T m_spare{};          // what a bad position yields; reset before each use
};

}  // namespace vellum
