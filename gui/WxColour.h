// Colours between the scene's 0..1 components and the toolkit's bytes.
#pragma once

#include <wx/colour.h>

#include <algorithm>

#include "tpx/TPXmaterial.h"

namespace vellum {

inline wxColour toWxColour(const TPXrgb& c) {
    auto byte = [](double v) {
        return static_cast<unsigned char>(std::clamp(v, 0.0, 1.0) * 255 + 0.5);
    };
    return wxColour(byte(c.r), byte(c.g), byte(c.b));
}

inline TPXrgb toRgb(const wxColour& c) {
    return {c.Red() / 255.0, c.Green() / 255.0, c.Blue() / 255.0};
}

}  // namespace vellum
