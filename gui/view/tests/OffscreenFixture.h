// Test support of the view part: an offscreen OpenGL context with a renderer for pixel tests,
// a scene built node by node, and colours read back from pictures. Without OpenGL the tests
// fail, unless VELLUM_ALLOW_NO_GL=1 says the machine is known to have none (they are skipped).
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <ostream>
#include <string>

#include "gui/view/TPXcamera.h"
#include "gui/view/TPXoffscreen.h"
#include "gui/view/TPXrenderer.h"
#include "tpx/TPXnode.h"
#include "tpx/TPXprimitives.h"

namespace vellum::test {

// A pixel of a picture, each channel 0..255.
struct Rgb {
    int r = 0;
    int g = 0;
    int b = 0;

    // Whether channel `c` (0 red, 1 green, 2 blue) is at least `floor` and more than twice
    // each of the other two: the pixel clearly has that hue.
    bool dominated(int c, int floor = 60) const {
        const int v[3] = {r, g, b};
        return v[c] >= floor && v[c] > 2 * v[(c + 1) % 3] && v[c] > 2 * v[(c + 2) % 3];
    }
    // The hue of the default vertex colour (0, 0.5, 1) under any light: blue strongest, green
    // between, hardly any red.
    bool azure(int floor = 40) const { return b >= floor && g < b && 4 * r < b && 4 * g > b; }
    bool dark(int ceiling = 12) const { return r <= ceiling && g <= ceiling && b <= ceiling; }
};

inline std::ostream& operator<<(std::ostream& out, const Rgb& p) {
    return out << "rgb(" << p.r << ", " << p.g << ", " << p.b << ")";
}

inline Rgb pixelAt(const TPXimage& image, int x, int y) {
    const std::size_t at = 3 * (static_cast<std::size_t>(y) * image.width() + x);
    const auto& p = image.pixels();
    return {p[at], p[at + 1], p[at + 2]};
}

// Top-level nodes added one after the other; the first owns the rest.
class TestScene {
  public:
    TPXnode& add(TPXref<TPXgeometry> geometry, const TPXp3& position, std::uint32_t identity = 0,
                 double scale = 1.0) {
        auto node = std::make_unique<TPXnode>(TPXkind::ModelObject, "object");
        node->setGeometry(std::move(geometry));
        node->setPosition(position);
        node->setScale(TPXp3(scale, scale, scale));
        node->setIdentity(identity);
        m_last =
            m_first ? m_last->adoptSibling(std::move(node)) : (m_first = std::move(node)).get();
        return *m_last;
    }
    const TPXnode* first() const { return m_first.get(); }

  private:
    std::unique_ptr<TPXnode> m_first;
    TPXnode* m_last = nullptr;
};

// A default-sized sphere of one plain colour.
inline TPXref<TPXgeometry> sphereOf(const TPXrgb& colour, double opacity = 1.0) {
    return TPXsphere(TPXdefaults::slices, TPXdefaults::stacks, TPXdefaults::radius,
                     TPXmaterial::plain(colour, opacity));
}

// The pictures' width and height in pixels; the centre is at (48, 48).
inline constexpr int kSize = 96;

class OffscreenTest : public ::testing::Test {
  protected:
    void SetUp() override {
        std::string error;
        gl = TPXoffscreen::create(kSize, kSize, error);
        if (gl)
            return;
        const char* allowed = std::getenv("VELLUM_ALLOW_NO_GL");
        if (allowed && std::string(allowed) == "1")
            GTEST_SKIP() << error;
        FAIL() << error << " (VELLUM_ALLOW_NO_GL=1 skips the OpenGL tests)";
    }

    TPXimage draw(const TPXnode* scene, const TPXcamera& camera, bool light = false) {
        renderer.drawFrame(scene, camera, kSize, kSize, light);
        return gl->read();
    }
    TPXimage draw(const TPXnode* scene, const std::string& camera) {
        return draw(scene, *TPXcamera::standard(camera));
    }

    std::unique_ptr<TPXoffscreen> gl;
    TPXrenderer renderer;
};

}  // namespace vellum::test
