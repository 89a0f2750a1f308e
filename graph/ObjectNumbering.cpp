#include "graph/ObjectNumbering.h"

namespace vellum {
namespace {

std::size_t tableSizeFor(std::size_t expected) {
    std::size_t size = 16;
    while (size < expected * 2)  // load factor at most one half
        size *= 2;
    return size;
}

}  // namespace

ObjectNumbering::ObjectNumbering(std::size_t expected) : slots_(tableSizeFor(expected)) {}

std::size_t ObjectNumbering::home(const GraphObject* object) const {
    // Fibonacci hashing of the address; heap addresses differ mostly in their middle bits.
    const auto key = reinterpret_cast<std::uintptr_t>(object);
    return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15ull) >> 20) & (slots_.size() - 1);
}

std::size_t ObjectNumbering::slotOf(const GraphObject* object) const {
    const std::size_t mask = slots_.size() - 1;
    std::size_t at = home(object);
    while (slots_[at].object != nullptr && slots_[at].object != object)
        at = (at + 1) & mask;
    return at;
}

long ObjectNumbering::find(const GraphObject* object) const {
    if (slots_.empty())
        return 0;
    const Slot& slot = slots_[slotOf(object)];
    return slot.object == object ? slot.number : 0;
}

long ObjectNumbering::number(const GraphObject* object) {
    std::size_t at = slotOf(object);
    if (slots_[at].object == object)
        return slots_[at].number;
    if ((count_ + 1) * 2 > slots_.size()) {
        grow();
        at = slotOf(object);
    }
    slots_[at] = Slot{object, static_cast<long>(++count_)};
    return slots_[at].number;
}

void ObjectNumbering::grow() {
    std::vector<Slot> old(slots_.size() * 2);
    old.swap(slots_);
    for (const Slot& slot : old) {
        if (slot.object != nullptr)
            slots_[slotOf(slot.object)] = slot;
    }
}

}  // namespace vellum
