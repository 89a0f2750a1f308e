// Drawing a scene with OpenGL: the scene tree depth first, each node with the camera's view
// times its world matrix loaded, and the scene's fog and lights. The canvas and the offscreen
// renderer both draw through TPXdrawScene, so a picture on screen and in a file are the same.
// Every function here needs a current GL context.
#pragma once

#include <array>
#include <vector>

#include "tpx/TPXdrawContext.h"
#include "tpx/TPXflatBatch.h"
#include "tpx/TPXgeometry.h"
#include "tpx/TPXmaterial.h"
#include "tpx/TPXmatrix.h"
#include "tpx/TPXp3.h"
#include "tpx/TPXstandIns.h"
#include "tpx/TPXtext.h"

namespace vellum {

class TPXnode;

// The batches of one scene drawing (see TPXdrawScene); empty between drawings.
struct TPXbatches {
    TPXstandIns standIns;
    TPXflatBatch flat;
    TPXtextBatch texts;
};

// Draws the scene whose top-level nodes are `first` and its next siblings, with their subtrees,
// depth first. For each node: loads context.view * its world matrix; in a picking pass loads
// its identity (or its nearest ancestor's) as the selection name, and skips a node that has
// none; then calls drawSelf. Nodes whose drawnBounds lie outside context.clip are not drawn
// (their children still are). In the light picture sets context.nodePixels for each node and
// draws the stand-ins of small geometries together after the walk (TPXstandIns). Unlit lines
// and shapes (TPXflatBatch, not in a picking pass) and then texts (TPXtextBatch) are gathered
// and drawn together last.
// Leaves the model-view matrix changed. Chains of any length take no stack depth.
void TPXdrawScene(const TPXnode* first, TPXdrawContext& context);

// Whether the segment from `a` to `b` (world space) may show through `worldToClip` (projection
// times view, column by column): false only when both ends lie beyond one plane of the view.
bool TPXsegmentMayShow(const std::array<double, 16>& worldToClip, const TPXp3& a, const TPXp3& b);
// The same for a box in world space: false only when all its corners lie beyond one plane.
bool TPXboxMayShow(const std::array<double, 16>& worldToClip, const TPXboundingBox& box);

// The box in world space round the drawn bounds of every node of the scene (as above); empty
// when no node has any.
TPXboundingBox TPXsceneBounds(const TPXnode* first);

// How fog thickens with the distance from the viewer.
enum class TPXfogMode { Linear, Exponential, SquaredExponential };

struct TPXfog {
    TPXfogMode mode = TPXfogMode::Linear;
    TPXrgb colour;
    double start = 0.0;    // linear mode: where fog begins ...
    double end = 1.0;      // ... and where it hides everything
    double density = 1.0;  // the exponential modes
    // Enables GL_FOG with these settings.
    void apply() const;
};

// Switches fog off.
void TPXdisableFog();

// A light of the scene. Its position is taken through the model-view matrix current when it is
// set: the camera sets scene lights with its view loaded, so they stay put in the world, and
// lights that follow the viewer (a headlight) with the identity, so they move with the camera.
struct TPXlight {
    TPXp3 position{0, 0, 1};
    bool directional = true;     // position is a direction towards the light
    bool followsViewer = false;  // position in eye space rather than world space
    TPXrgb ambient{0, 0, 0};
    TPXrgb diffuse{1, 1, 1};
    TPXrgb specular{1, 1, 1};
    double constantAttenuation = 1.0;  // positional lights only
    double linearAttenuation = 0.0;
    double quadraticAttenuation = 0.0;

    // A white headlight from a little above and to the left of the viewer: every camera sees
    // the lit side of what it looks at.
    static TPXlight headlight();
    // Sets and enables GL_LIGHT0 + index through the current model-view matrix.
    void apply(int index) const;
};

// Sets the lights (as many as OpenGL has; at least 8) and switches the others off; lighting is
// on when there is at least one. Ends with the model-view matrix set to `view`.
void TPXsetLights(const std::vector<TPXlight>& lights, const TPXmatrix& view);

}  // namespace vellum
