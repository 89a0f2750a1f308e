// vellum::vector: the counted array that the graph model and the matcher use. Its checks are
// reported through the console as failed assertions naming the source "include/vector" (the
// name the rest of the system knows it by) and execution goes on: a bad index yields a harmless
// spare element instead of touching memory outside the array.
#pragma once

#include <cstddef>
#include <memory>

#include "base/Console.h"

namespace vellum {

template <typename T>
class vector {
  public:
    // The lines that the assertion reports name.
    static constexpr const char* kSource = "include/vector";
    static constexpr int kSizeLine = 52;
    static constexpr int kSameSizeLine = 181;
    static constexpr int kIndexLine = 275;

    vector() = default;
    // `size` elements, value-initialised; a size below 1 is reported and gives an empty vector.
    explicit vector(int size) {
        if (!check(size > 0, "size > 0", kSizeLine))
            return;
        m_size = size;
        m_data = std::make_unique<T[]>(static_cast<std::size_t>(size));
    }
    vector(const vector& other) { assign(other); }
    vector& operator=(const vector& other) {
        if (this != &other)
            assign(other);
        return *this;
    }
    vector(vector&&) noexcept = default;
    vector& operator=(vector&&) noexcept = default;

    int size() const { return m_size; }

    // Element access; an index outside 0..size-1 is reported and yields the spare element.
    T& operator[](int index) { return element(index); }
    const T& operator[](int index) const { return element(index); }

    // Element-wise operations on vectors of the same size; another size is reported and
    // leaves this vector unchanged.
    vector& operator+=(const vector& v) {
        if (sameSize(v)) {
            for (int i = 0; i < m_size; ++i)
                m_data[static_cast<std::size_t>(i)] += v.m_data[static_cast<std::size_t>(i)];
        }
        return *this;
    }
    vector& operator-=(const vector& v) {
        if (sameSize(v)) {
            for (int i = 0; i < m_size; ++i)
                m_data[static_cast<std::size_t>(i)] -= v.m_data[static_cast<std::size_t>(i)];
        }
        return *this;
    }
    friend vector operator+(vector a, const vector& b) { return a += b; }
    friend vector operator-(vector a, const vector& b) { return a -= b; }
    // Equal sizes and equal elements; vectors of different sizes are reported and unequal.
    bool operator==(const vector& v) const {
        if (!sameSize(v))
            return false;
        for (int i = 0; i < m_size; ++i) {
            if (!(m_data[static_cast<std::size_t>(i)] == v.m_data[static_cast<std::size_t>(i)]))
                return false;
        }
        return true;
    }
    bool operator!=(const vector& v) const { return !(*this == v); }

  private:
    static bool check(bool condition, const char* text, int line) {
        if (!condition)
            reportAssertion(text, kSource, line);
        return condition;
    }
    T& element(int index) const {
        if (!check(index >= 0 && index < m_size, "(index>=0) && (index<m_size)", kIndexLine))
            return spare();
        return m_data[static_cast<std::size_t>(index)];
    }
    bool sameSize(const vector& v) const {
        return check(m_size == v.m_size, "m_size == v.m_size", kSameSizeLine);
    }
    T& spare() const {
        m_spare = T{};
        return m_spare;
    }
    void assign(const vector& other) {
        m_size = other.m_size;
        m_data.reset();
        if (m_size > 0)
            m_data = std::make_unique<T[]>(static_cast<std::size_t>(m_size));
        for (int i = 0; i < m_size; ++i)
            m_data[static_cast<std::size_t>(i)] = other.m_data[static_cast<std::size_t>(i)];
    }

    int m_size = 0;
    std::unique_ptr<T[]> m_data;  // m_size elements, null when m_size is 0
    mutable T m_spare{};          // what a bad index yields; reset before each use
};

}  // namespace vellum
