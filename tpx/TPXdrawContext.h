// TPXdrawContext: what drawing a scene needs to know besides the scene itself. The canvas and
// the offscreen renderer fill one per frame (or pick) and hand it down the scene tree; every
// node, geometry, material and font draws through it, so both surfaces share one drawing code.
#pragma once

#include <GL/gl.h>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

#include "tpx/TPXlists.h"
#include "tpx/TPXmatrix.h"
#include "tpx/TPXp3.h"

namespace vellum {

class TPXflatBatch;
struct TPXbatches;
class TPXstandIns;
class TPXtextBatch;

// How geometries are drawn: their polygons as closed outlines, as wireframe or filled.
enum class TPXdrawStyle : int { Outline = 1, Wireframe = 2, Solid = 3 };

struct TPXdrawContext {
    // The display lists and textures of the context being drawn in; never null while drawing.
    std::shared_ptr<TPXlistStore> lists;
    TPXdrawStyle style = TPXdrawStyle::Solid;
    // A selection pass: nodes load their identity as the selection name and draw no labels.
    bool picking = false;
    // The lighter picture drawn while the camera moves: fewer triangles for objects that cover
    // few pixels, no labels on small or distant elements. Never used for a still picture.
    bool light = false;
    // The camera's world-to-eye matrix; a node is drawn with view * its world matrix loaded.
    TPXmatrix view = TPXmatrix::identity(4);
    // The viewer in world space, so that labels can face it: its position and the directions of
    // the picture's right and up.
    TPXp3 viewerPosition;
    TPXp3 viewerRight{1, 0, 0};
    TPXp3 viewerUp{0, 1, 0};
    // Pixels covered by one world unit at distance 1 from the viewer (viewport height over the
    // height of the view at that distance); the light picture sizes objects with it.
    double pixelsPerUnit = 1.0;
    // The projection (eye to clip space) of the picture or pick region; when set, the scene
    // drawing skips nodes whose bounds lie wholly outside it.
    std::optional<TPXmatrix> clip;
    // clip * view, column by column, set by the scene drawing while clip is set: objects that
    // draw in world space (edges) test with it which of their parts can show.
    std::optional<std::array<double, 16>> worldToClip;
    // Set by the scene drawing for each node before it draws itself: about how many pixels its
    // geometry's box spans on screen, in the light picture only; negative when not known.
    double nodePixels = -1.0;
    // In the light picture, where small geometries put their stand-ins instead of drawing
    // (set by the scene drawing, which draws them all at the end); null otherwise.
    TPXstandIns* standIns = nullptr;
    // Where texts go while a scene is drawn, to be drawn together after its other objects (set
    // by the scene drawing); null: each text draws at once.
    TPXtextBatch* texts = nullptr;
    // Where unlit lines and shapes in world space go while a scene is drawn (edges and their
    // arrowheads), to be drawn together after its other objects; null in a picking pass, where
    // each object must draw under its own selection name.
    TPXflatBatch* flat = nullptr;
    // Where the scene drawing keeps its stand-ins, flat batch and texts (TPXdraw.h) from frame to
    // frame, so that their memory is not allocated anew for every frame; null: each drawing
    // uses its own. Set by whoever draws many frames (the renderer).
    TPXbatches* batches = nullptr;
    // Counts frames, so that things that move on their own (an edge's dashes) can step once
    // per frame.
    std::uint64_t frame = 0;
};

}  // namespace vellum
