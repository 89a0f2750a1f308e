#include "gui/CanvasCommands.h"

#include <iterator>

#include "gui/WxColour.h"

namespace vellum {

bool saveCanvasScreenshot(wxWindow& parent, EditorPrompts& prompts, TPXCanvas& canvas,
                          std::string fileName) {
    fileName = prompts.fileNameOr(fileName, &parent, canvasPictureFilter, "ppm", true);
    if (fileName.empty())
        return false;
    if (canvas.screenshot().write(fileName))
        return true;
    prompts.message(&parent, "Could not write the picture '" + fileName + "'.", "Alert",
                    wxOK | wxICON_ERROR);
    return false;
}

void setCanvasGround(TPXCanvas& canvas, TPXgroundMode mode) {
    canvas.setGroundMode(mode);
    canvas.requestRepaint();
}

namespace {

// In menu order.
constexpr TPXgroundMode groundModes[] = {TPXgroundMode::Hidden, TPXgroundMode::Wireframe,
                                         TPXgroundMode::Solid, TPXgroundMode::Transparent};

}  // namespace

void appendGroundItems(wxMenu& menu, int firstId) {
    menu.Append(firstId, "&Hide ground...");
    menu.Append(firstId + 1, "&Wireframe ground...");
    menu.Append(firstId + 2, "&Solid ground...");
    menu.Append(firstId + 3, "&Transparent ground...");
}

bool runGroundItem(TPXCanvas& canvas, int id, int firstId) {
    const int index = id - firstId;
    if (index < 0 || index >= static_cast<int>(std::size(groundModes)))
        return false;
    setCanvasGround(canvas, groundModes[index]);
    return true;
}

void chooseCanvasBackground(wxWindow& parent, EditorPrompts& prompts, TPXCanvas& canvas) {
    if (const auto colour = prompts.colour(&parent, toWxColour(canvas.background()))) {
        canvas.setBackground(toRgb(*colour));
        canvas.requestRepaint();
    }
}

}  // namespace vellum
