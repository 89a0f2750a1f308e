#include "graph/ObjectPool.h"

#include <algorithm>
#include <cassert>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#define VELLUM_POISON(address, size) ASAN_POISON_MEMORY_REGION(address, size)
#define VELLUM_UNPOISON(address, size) ASAN_UNPOISON_MEMORY_REGION(address, size)
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/asan_interface.h>
#define VELLUM_POISON(address, size) ASAN_POISON_MEMORY_REGION(address, size)
#define VELLUM_UNPOISON(address, size) ASAN_UNPOISON_MEMORY_REGION(address, size)
#endif
#endif
#ifndef VELLUM_POISON
#define VELLUM_POISON(address, size) ((void)(address), (void)(size))
#define VELLUM_UNPOISON(address, size) ((void)(address), (void)(size))
#endif

namespace vellum {
namespace {

// Small graphs (rule sides, patterns) stay small; large ones reach slabs of a few hundred
// kilobytes, whose waste at the end is a fraction of a percent.
constexpr std::size_t kFirstSlabSlots = 16;
constexpr std::size_t kLargestSlabSlots = 4096;

std::size_t roundToAlignment(std::size_t size) {
    constexpr std::size_t align = alignof(std::max_align_t);
    return (std::max(size, sizeof(void*)) + align - 1) / align * align;
}

}  // namespace

ObjectPool::ObjectPool(std::size_t slotSize)
    : slotSize_(roundToAlignment(slotSize)), nextSlabSlots_(kFirstSlabSlots) {}

ObjectPool::~ObjectPool() {
    // Slots left poisoned would be reported when the allocator reuses the memory.
    for (const Slab& slab : slabs_)
        VELLUM_UNPOISON(slab.bytes.get(), slab.size);
}

void ObjectPool::addSlab() {
    const std::size_t bytes = nextSlabSlots_ * slotSize_;
    slabs_.push_back({std::unique_ptr<std::byte[]>(new std::byte[bytes]), bytes});
    reserved_ += bytes;
    fresh_ = slabs_.back().bytes.get();
    end_ = fresh_ + bytes;
    VELLUM_POISON(fresh_, bytes);
    nextSlabSlots_ = std::min(nextSlabSlots_ * 2, kLargestSlabSlots);
}

void* ObjectPool::allocate(std::size_t size) {
    assert(size <= slotSize_ && "the object does not fit the pool's slots");
    (void)size;
    void* slot = nullptr;
    if (free_ != nullptr) {
        VELLUM_UNPOISON(free_, sizeof(FreeSlot));
        slot = free_;
        free_ = free_->next;
    } else {
        if (fresh_ == end_)
            addSlab();
        slot = fresh_;
        fresh_ += slotSize_;
    }
    VELLUM_UNPOISON(slot, slotSize_);
    ++live_;
    return slot;
}

void ObjectPool::release(void* slot) noexcept {
    auto* freed = static_cast<FreeSlot*>(slot);
    freed->next = free_;
    free_ = freed;
    --live_;
    VELLUM_POISON(slot, slotSize_);
}

}  // namespace vellum
