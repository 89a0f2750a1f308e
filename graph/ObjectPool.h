// Storage for the vertices and edges of one graph: slots of one size cut from slabs that grow
// geometrically and recycled through a free list. A graph of millions of elements then pays no
// allocator header per element and no call to malloc or free per creation and removal. The
// pool is shared between the graph and the elements it hands out for undo, so that it lives
// as long as the last of them.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace vellum {

class ObjectPool {
  public:
    explicit ObjectPool(std::size_t slotSize);
    ~ObjectPool();
    ObjectPool(const ObjectPool&) = delete;
    ObjectPool& operator=(const ObjectPool&) = delete;

    // Constructs a T in a free slot; T must fit the slot. Throws what T's constructor throws
    // (the slot then goes back) or std::bad_alloc.
    template <typename T, typename... Args>
    T* make(Args&&... args) {
        static_assert(alignof(T) <= alignof(std::max_align_t), "slots are aligned for any type");
        void* slot = allocate(sizeof(T));
        try {
            return new (slot) T(std::forward<Args>(args)...);
        } catch (...) {
            release(slot);
            throw;
        }
    }
    // Destroys an object that make() constructed here and frees its slot.
    template <typename T>
    void destroy(T* object) noexcept {
        object->~T();
        release(object);
    }

    // Slots handed out and not yet released.
    std::size_t live() const { return live_; }
    // Bytes taken from the allocator for slabs.
    std::size_t reservedBytes() const { return reserved_; }

  private:
    struct FreeSlot {
        FreeSlot* next;
    };
    struct Slab {
        std::unique_ptr<std::byte[]> bytes;
        std::size_t size;
    };

    void* allocate(std::size_t size);
    void release(void* slot) noexcept;
    void addSlab();

    std::size_t slotSize_;
    std::vector<Slab> slabs_;
    std::size_t nextSlabSlots_;
    std::byte* fresh_ = nullptr;  // the first never-used slot of the newest slab
    std::byte* end_ = nullptr;    // the end of the newest slab
    FreeSlot* free_ = nullptr;    // released slots, last released first
    std::size_t live_ = 0;
    std::size_t reserved_ = 0;
};

// Destroys an element handed out of its graph by returning it to the pool it came from.
template <typename T>
class PooledDelete {
  public:
    PooledDelete() = default;
    explicit PooledDelete(std::shared_ptr<ObjectPool> pool) : pool_(std::move(pool)) {}
    void operator()(T* object) const noexcept {
        if (pool_)
            pool_->destroy(object);
    }

  private:
    std::shared_ptr<ObjectPool> pool_;
};

}  // namespace vellum
