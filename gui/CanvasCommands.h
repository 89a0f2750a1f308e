// CanvasCommands: the commands every frame with a 3D canvas offers the same way (screenshot,
// ground mode, background colour), asking their questions through the frame's prompts.
#pragma once

#include <wx/menu.h>

#include <string>

#include "gui/EditorPrompts.h"
#include "gui/TPXCanvas.h"

namespace vellum {

// The file filter of screenshots.
inline constexpr const char* canvasPictureFilter = "Portable Pixmap file (*.ppm)";

// Writes the canvas's exact picture as a binary PPM to `fileName` (asked for when empty);
// false when the user cancels or the file cannot be written (then an "Alert" says so).
bool saveCanvasScreenshot(wxWindow& parent, EditorPrompts& prompts, TPXCanvas& canvas,
                          std::string fileName);
void setCanvasGround(TPXCanvas& canvas, TPXgroundMode mode);
// Appends the items of the four ground modes (hidden, wireframe, solid, transparent) to `menu`,
// with the ids from `firstId` on.
void appendGroundItems(wxMenu& menu, int firstId);
// Sets the ground mode of item `id` of those appendGroundItems() made from `firstId`; false when
// `id` is none of them.
bool runGroundItem(TPXCanvas& canvas, int id, int firstId);
// Asks for a background colour, starting at the current one.
void chooseCanvasBackground(wxWindow& parent, EditorPrompts& prompts, TPXCanvas& canvas);

}  // namespace vellum
