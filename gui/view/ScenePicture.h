// Still pictures of scenes drawn offscreen, as vellum-cli writes them: a graph through one of
// the standard cameras fitted to the whole graph, a rule's two sides side by side, and writing
// a picture as PNG, PPM or PGM by the file's extension. Always the exact picture.
#pragma once

#include <optional>
#include <string>

#include "graph/DirectedGraph.h"
#include "graph/DirectedGraphRule.h"
#include "tpx/TPXimage.h"
#include "tpx/TPXmaterial.h"

namespace vellum {

struct PictureOptions {
    int width = 800;
    int height = 600;
    std::string camera = "perspective";
    TPXrgb background{0, 0, 0};
};

// The picture of `graph` (shown as a scene; relative model names are looked up in
// `modelFolder`; a graph in which no vertex has a position is set out on a circle); none, with the
// reason in `error`, when no OpenGL context can be had or the camera name is unknown.
std::optional<TPXimage> graphPicture(DirectedGraph& graph, const std::string& modelFolder,
                                     const PictureOptions& options, std::string& error);

// The rule's left-hand side (left half) and right-hand side (right half) in one picture of
// `width` x `height`, seen from the front. The two sides work on copies of the rule's graphs
// only in attributes the pictures need: vertices of an interface pair share a colour and a
// number, "(1) label", and vertices without a position are set out on a circle, partners at the
// same place on both sides.
std::optional<TPXimage> rulePicture(DirectedGraphRule& rule, int width, int height,
                                    std::string& error);

// Whether `fileName` ends in ".png", ".ppm" or ".pgm" (any case).
bool isPictureFile(const std::string& fileName);
// Writes the picture by the extension of `fileName`; a ".pgm" gets the grey of each pixel.
// False, with the reason in `error`, when it cannot be written.
bool writePicture(const TPXimage& picture, const std::string& fileName, std::string& error);

}  // namespace vellum
