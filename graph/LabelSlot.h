// An element's label bucket and what it owns beyond its label, in one word. An element without
// attributes or client data (the bulk of a large graph) keeps a bare pointer to its bucket; the
// first attribute or extension moves the bucket pointer into an owned ObjectExtras. The word's
// low bit, free since both are aligned, tells the two apart. This saves two words per element
// over separate pointers, a fifth of an element's size.
#pragma once

#include <cstdint>
#include <memory>

#include "graph/AttributeList.h"
#include "graph/ObjectExtension.h"

namespace vellum {

struct LabelBucket;

struct ObjectExtras {
    LabelBucket* bucket;
    AttributeList attributes;
    std::unique_ptr<ObjectExtension> extension;
};

class LabelSlot {
  public:
    explicit LabelSlot(LabelBucket& bucket) : word_(reinterpret_cast<std::uintptr_t>(&bucket)) {}
    ~LabelSlot() { delete extras(); }
    LabelSlot(const LabelSlot&) = delete;
    LabelSlot& operator=(const LabelSlot&) = delete;

    // Never null.
    LabelBucket* bucket() const {
        if ((word_ & kOwnsExtras) == 0)
            return reinterpret_cast<LabelBucket*>(word_);
        return reinterpret_cast<const ObjectExtras*>(word_ - kOwnsExtras)->bucket;
    }
    void setBucket(LabelBucket& bucket) {
        if (ObjectExtras* owned = extras())
            owned->bucket = &bucket;
        else
            word_ = reinterpret_cast<std::uintptr_t>(&bucket);
    }

    // Null while the element has neither attributes nor an extension.
    ObjectExtras* extras() const {
        return (word_ & kOwnsExtras) != 0 ? reinterpret_cast<ObjectExtras*>(word_ & ~kOwnsExtras)
                                          : nullptr;
    }
    ObjectExtras& ensureExtras() {
        if (ObjectExtras* owned = extras())
            return *owned;
        auto* made = new ObjectExtras{bucket(), {}, nullptr};
        word_ = reinterpret_cast<std::uintptr_t>(made) | kOwnsExtras;
        return *made;
    }
    // Back to the bare bucket pointer once the extras hold nothing.
    void dropExtrasIfEmpty() {
        ObjectExtras* owned = extras();
        if (owned == nullptr || !owned->attributes.empty() || owned->extension)
            return;
        word_ = reinterpret_cast<std::uintptr_t>(owned->bucket);
        delete owned;
    }

  private:
    static constexpr std::uintptr_t kOwnsExtras = 1;
    std::uintptr_t word_;
};

}  // namespace vellum
