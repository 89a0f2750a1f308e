// The numbers that a file gives to vertices and edges: 1, 2, 3, ... in the order they are
// numbered, unique within the file and the same from one save of an unchanged graph to the
// next. A flat hash table keeps the lookup cheap for graphs of millions of elements.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vellum {

class GraphObject;

class ObjectNumbering {
  public:
    // Room for `expected` objects without growing.
    explicit ObjectNumbering(std::size_t expected = 0);

    // The object's number, given the next free one when it has none yet.
    long number(const GraphObject* object);
    // The object's number, or 0 when it has none.
    long find(const GraphObject* object) const;
    std::size_t size() const { return count_; }
    // Asks for the memory that number(object) starts at, so that a caller walking many
    // objects can have it fetched while it writes others.
    void prefetch(const GraphObject* object) const { __builtin_prefetch(&slots_[home(object)]); }

  private:
    struct Slot {
        const GraphObject* object = nullptr;
        long number = 0;
    };

    std::size_t home(const GraphObject* object) const;
    std::size_t slotOf(const GraphObject* object) const;
    void grow();

    std::vector<Slot> slots_;  // open addressing, linear probing; a power of two in size
    std::size_t count_ = 0;
};

}  // namespace vellum
