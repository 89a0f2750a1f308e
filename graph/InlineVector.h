// A vector of trivially copyable elements whose first N live inside the object itself. The
// lists that each rule application builds (the pairs of an occurrence, the objects a step
// touches) hold a handful of elements; kept inline, a run of millions of applications does not
// go to the allocator for them. Only what its users need of std::vector is here.
#pragma once

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstring>
#include <memory>
#include <type_traits>

namespace vellum {

template <typename T, std::size_t N>
class InlineVector {
    static_assert(std::is_trivially_copyable_v<T>, "elements are copied as bytes");
    static_assert(N > 0, "at least one element inline");

  public:
    using value_type = T;
    using size_type = std::size_t;
    using iterator = T*;
    using const_iterator = const T*;
    using reference = T&;
    using const_reference = const T&;

    InlineVector() = default;
    InlineVector(const InlineVector& other) { append(other.begin(), other.size()); }
    InlineVector(InlineVector&& other) noexcept { steal(other); }
    InlineVector& operator=(const InlineVector& other) {
        if (this != &other) {
            size_ = 0;
            append(other.begin(), other.size());
        }
        return *this;
    }
    InlineVector& operator=(InlineVector&& other) noexcept {
        if (this != &other) {
            heap_.reset();
            data_ = inline_;
            capacity_ = N;
            size_ = 0;
            steal(other);
        }
        return *this;
    }
    ~InlineVector() = default;

    iterator begin() { return data_; }
    iterator end() { return data_ + size_; }
    const_iterator begin() const { return data_; }
    const_iterator end() const { return data_ + size_; }
    T* data() { return data_; }
    const T* data() const { return data_; }
    std::size_t size() const { return size_; }
    std::size_t capacity() const { return capacity_; }
    bool empty() const { return size_ == 0; }
    T& operator[](std::size_t i) {
        assert(i < size_ && "index out of range");
        return data_[i];
    }
    const T& operator[](std::size_t i) const {
        assert(i < size_ && "index out of range");
        return data_[i];
    }
    T& back() { return data_[size_ - 1]; }
    const T& back() const { return data_[size_ - 1]; }

    void clear() { size_ = 0; }
    void reserve(std::size_t capacity) {
        if (capacity <= capacity_)
            return;
        auto grown = std::make_unique<T[]>(capacity);
        if (size_ != 0)
            std::memcpy(grown.get(), data_, size_ * sizeof(T));
        heap_ = std::move(grown);
        data_ = heap_.get();
        capacity_ = capacity;
    }
    void push_back(const T& value) {
        if (size_ == capacity_) {
            const T copy = value;  // `value` may be an element about to move
            reserve(capacity_ * 2);
            data_[size_++] = copy;
            return;
        }
        data_[size_++] = value;
    }
    // `count` copies of `value`, replacing the contents.
    void assign(std::size_t count, const T& value) {
        size_ = 0;
        reserve(count);
        std::fill_n(data_, count, value);
        size_ = count;
    }
    iterator erase(const_iterator at) { return erase(at, at + 1); }
    iterator erase(const_iterator first, const_iterator last) {
        const auto from = static_cast<std::size_t>(first - data_);
        const auto to = static_cast<std::size_t>(last - data_);
        assert(from <= to && to <= size_ && "erasing outside the elements");
        std::memmove(data_ + from, data_ + to, (size_ - to) * sizeof(T));
        size_ -= to - from;
        return data_ + from;
    }

  private:
    void append(const T* from, std::size_t count) {
        reserve(size_ + count);
        if (count != 0)
            std::memcpy(data_ + size_, from, count * sizeof(T));
        size_ += count;
    }
    // Takes the other's elements, leaving it empty and inline.
    void steal(InlineVector& other) {
        if (other.heap_) {
            heap_ = std::move(other.heap_);
            data_ = heap_.get();
            capacity_ = other.capacity_;
            size_ = other.size_;
        } else {
            append(other.data_, other.size_);
        }
        other.data_ = other.inline_;
        other.capacity_ = N;
        other.size_ = 0;
    }

    T inline_[N] = {};
    std::unique_ptr<T[]> heap_;  // null while the elements fit inline
    T* data_ = inline_;          // inline_ or heap_
    std::size_t size_ = 0;
    std::size_t capacity_ = N;
};

}  // namespace vellum
