// TPXpicker: which object lies under a window point. It draws the scene once more in OpenGL's
// selection mode through a 4 x 4 pixel pick region round the point, each object under its
// identity as the selection name, and walks the hit records: the record whose minimum depth,
// read as a signed 32-bit number, is lowest and below 200000 wins, the earlier on a tie. The
// depth rule is kept as the system has always had it, depths of 2^31 and above (far half of
// the depth range) counting as negative. Only objects whose bounds meet the pick region are
// drawn, which gives the same hits as drawing everything, for a fraction of the cost.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "gui/view/TPXcamera.h"
#include "gui/view/TPXrenderer.h"

namespace vellum {

class TPXnode;

// One record of the selection buffer.
struct TPXhitRecord {
    std::uint32_t minDepth = 0;
    std::uint32_t maxDepth = 0;
    std::vector<std::uint32_t> names;

    bool operator==(const TPXhitRecord& o) const {
        return minDepth == o.minDepth && maxDepth == o.maxDepth && names == o.names;
    }
};

// The records of a selection buffer of `size` words that OpenGL reported `hits` records in; a
// negative count (the buffer overflowed) reads every record that fits whole.
std::vector<TPXhitRecord> TPXhitRecords(const std::uint32_t* buffer, std::size_t size, int hits);
// The name the walk chooses among those records: the winner's single name (the fourth word of
// its record); none when there are no records or none has a minimum depth below 200000 as a
// signed 32-bit value.
std::optional<std::uint32_t> TPXpickWinner(const std::vector<TPXhitRecord>& records);

class TPXpicker {
  public:
    static constexpr std::size_t bufferSize = 512;  // 32-bit words of the selection buffer
    static constexpr int regionSize = 4;            // pixels, each way
    // The selection name of everything without an identity.
    static constexpr std::uint32_t noName = 0xffffffffu;

    // With the renderer's context current and its viewport set as for the last frame: the
    // identity of the object under the window point (x, y), y counted from the top; none on
    // empty space. `cull` (the default) draws only objects whose bounds meet the pick region.
    // Clears the picture: draw a frame before reading it again.
    std::optional<std::uint32_t> pick(TPXrenderer& renderer, const TPXnode* scene,
                                      const TPXcamera& camera, int x, int y, bool cull = true);
    // The hit records of the last pick, in buffer order.
    const std::vector<TPXhitRecord>& records() const { return m_records; }

  private:
    std::array<std::uint32_t, bufferSize> m_buffer{};
    std::vector<TPXhitRecord> m_records;
};

}  // namespace vellum
