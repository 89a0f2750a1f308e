// Display lists belong to one OpenGL context, and a scene may be drawn in several (each canvas
// and the offscreen renderer have their own). TPXlistStore stands for one context's lists;
// TPXlists is what a resource (geometry, glyph, texture) holds: its lists in each context it has
// been drawn in. A resource destroyed while a context is not current hands its lists to that
// context's store, which deletes them the next time the context is current.
#pragma once

#include <GL/gl.h>

#include <array>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

namespace vellum {

class TPXlistStore {
  public:
    TPXlistStore() = default;
    TPXlistStore(const TPXlistStore&) = delete;
    TPXlistStore& operator=(const TPXlistStore&) = delete;

    // Any thread: queues `count` lists from `first` for deletion in this context.
    void discard(GLuint first, GLsizei count);
    // Queues a texture object for deletion in this context.
    void discardTexture(GLuint texture);
    // With this store's context current: deletes everything queued.
    void collect();
    // How many lists and textures are waiting to be deleted (for tests).
    std::size_t pending() const;

  private:
    mutable std::mutex m_mutex;
    std::vector<std::pair<GLuint, GLsizei>> m_lists;
    std::vector<GLuint> m_textures;
};

// The display lists of one resource in every context it was drawn in, `Slots` of them per
// context (for example one per draw style). A slot of 0 has not been compiled yet. With
// `Textures` set the slots hold texture objects instead of display lists.
template <std::size_t Slots, bool Textures = false>
class TPXlists {
  public:
    TPXlists() = default;
    TPXlists(const TPXlists&) = delete;
    TPXlists& operator=(const TPXlists&) = delete;
    ~TPXlists() { clear(); }

    GLuint get(const TPXlistStore& store, std::size_t slot) const {
        for (const Entry& entry : m_entries)
            if (entry.key == &store)
                return entry.lists[slot];
        return 0;
    }

    void set(const std::shared_ptr<TPXlistStore>& store, std::size_t slot, GLuint list) {
        for (Entry& entry : m_entries)
            if (entry.key == store.get()) {
                entry.lists[slot] = list;
                return;
            }
        Entry entry{store, store.get(), {}};
        entry.lists[slot] = list;
        m_entries.push_back(std::move(entry));
    }

    // Hands every list to its context's store; the resource changed or goes away.
    void clear() {
        for (Entry& entry : m_entries) {
            std::shared_ptr<TPXlistStore> store = entry.store.lock();
            for (GLuint list : entry.lists) {
                if (!store || list == 0)
                    continue;
                if (Textures)
                    store->discardTexture(list);
                else
                    store->discard(list, 1);
            }
        }
        m_entries.clear();
    }

  private:
    struct Entry {
        std::weak_ptr<TPXlistStore> store;
        const TPXlistStore* key;  // compared only, never followed: the store may be gone
        std::array<GLuint, Slots> lists;
    };
    std::vector<Entry> m_entries;
};

}  // namespace vellum
