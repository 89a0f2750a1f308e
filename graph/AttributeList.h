// The attributes of one vertex or edge, in insertion order, with unique names: adding a name
// that is already there is refused, so the first definition wins. Also offers the first/next
// iteration with its cursor inside the list, and plain range iteration.
#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <string_view>
#include <vector>

#include "graph/Attribute.h"

namespace vellum {

// Iteration over attributes as Attribute& (const or not, as T says).
template <typename T>
class AttributeRange {
  public:
    class iterator {
      public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Attribute;
        using difference_type = std::ptrdiff_t;
        using pointer = T*;
        using reference = T&;

        explicit iterator(const std::unique_ptr<Attribute>* at) : at_(at) {}
        T& operator*() const { return **at_; }
        T* operator->() const { return at_->get(); }
        iterator& operator++() {
            ++at_;
            return *this;
        }
        bool operator==(const iterator& other) const { return at_ == other.at_; }
        bool operator!=(const iterator& other) const { return at_ != other.at_; }

      private:
        const std::unique_ptr<Attribute>* at_;
    };

    AttributeRange() = default;
    AttributeRange(const std::unique_ptr<Attribute>* first, std::size_t count)
        : first_(first), count_(count) {}

    iterator begin() const { return iterator(first_); }
    iterator end() const { return iterator(first_ + count_); }
    std::size_t size() const { return count_; }
    bool empty() const { return count_ == 0; }

  private:
    const std::unique_ptr<Attribute>* first_ = nullptr;
    std::size_t count_ = 0;
};

class AttributeList {
  public:
    // Appends the attribute unless one of the same name (exact comparison) is already there;
    // false then, and the given attribute is destroyed.
    bool add(std::unique_ptr<Attribute> attribute);
    // Puts the attribute in the place of the one of the same name, which is destroyed, or
    // appends it when there is none. Invalidates pointers to the replaced attribute.
    void replace(std::unique_ptr<Attribute> attribute);
    // The first attribute of that name, or null.
    Attribute* find(std::string_view name) const;
    // Destroys the attribute of that name; false when there is none. Invalidates pointers to it.
    bool remove(std::string_view name);

    // first() starts the iteration, next() goes on; null at the end. Removing attributes in
    // between keeps the cursor on the attribute that would have come next.
    Attribute* first();
    Attribute* next();

    std::size_t size() const { return items_.size(); }
    bool empty() const { return items_.empty(); }
    AttributeRange<const Attribute> view() const { return {items_.data(), items_.size()}; }
    AttributeRange<Attribute> view() { return {items_.data(), items_.size()}; }

  private:
    std::vector<std::unique_ptr<Attribute>> items_;
    std::size_t cursor_ = 0;  // index of the attribute that next() returns
};

}  // namespace vellum
