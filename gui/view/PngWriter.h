// PNG files of pictures (rule pictures, rendered scenes): 8-bit RGB rows, preceded by two text
// chunks that say what made them, "Title" ("graphrule") and "Source" (Vellum's name and version
// and a copyright line).
#pragma once

#include <string>

#include "tpx/TPXimage.h"

namespace vellum {

// Writes a colour image as a PNG file: colour type RGB, 8 bits per sample, no interlace, default
// compression and filter, the chunks "Title" and "Source" uncompressed and in that order, then
// the rows from the top. The file is replaced only once fully written, so a failure leaves the
// one that was there and nothing beside it. False when the image is no complete() colour image,
// the file cannot be written or libpng fails; says nothing (the caller reports).
bool writePng(const TPXimage& image, const std::string& fileName);

}  // namespace vellum
