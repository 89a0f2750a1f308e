#include "gui/CanvasCommands.h"

#include "gui/WxColour.h"

namespace vellum {

bool saveCanvasScreenshot(wxWindow& parent, EditorPrompts& prompts, TPXCanvas& canvas,
                          std::string fileName) {
    if (fileName.empty())
        fileName = prompts.fileName(&parent, canvasPictureFilter, "ppm", true).utf8_string();
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

void chooseCanvasBackground(wxWindow& parent, EditorPrompts& prompts, TPXCanvas& canvas) {
    if (const auto colour = prompts.colour(&parent, toWxColour(canvas.background()))) {
        canvas.setBackground(toRgb(*colour));
        canvas.requestRepaint();
    }
}

}  // namespace vellum
