// The interpreter frame's questions answered by a script: files from a queue, the unit chooser
// with a unit name, the step dialog through `onStep`, any other dialog through `onDialog`; every
// message box is noted.
#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "gui/EditorPrompts.h"
#include "gui/InterpreterStepDialog.h"
#include "gui/UnitChooserDialog.h"

namespace vellum::test {

class ScriptedPrompts : public EditorPrompts {
  public:
    int message(wxWindow*, const wxString& text, const wxString& title, long) override {
        messages.push_back(title.utf8_string() + ": " + text.utf8_string());
        return wxOK;
    }
    wxString fileName(wxWindow*, const wxString& filter, const wxString&, bool) override {
        filters.push_back(filter.utf8_string());
        if (files.empty())
            return {};
        const std::string name = files.front();
        files.pop_front();
        return wxString::FromUTF8(name);
    }
    int showModal(wxDialog& dialog) override {
        if (auto* chooser = dynamic_cast<UnitChooserDialog*>(&dialog)) {
            if (!chooser->choose(unit))
                return wxID_CANCEL;
            conditions = chooser->conditions().utf8_string();
            return wxID_OK;
        }
        if (dynamic_cast<InterpreterStepDialog*>(&dialog) && onStep)
            return onStep();
        return onDialog ? onDialog(dialog) : wxID_CANCEL;
    }

    std::vector<std::string> messages;
    std::deque<std::string> files;
    std::vector<std::string> filters;
    std::string unit;
    std::string conditions;  // shown by the unit chooser for `unit`
    std::function<int()> onStep;
    std::function<int(wxDialog&)> onDialog;  // any other dialog
};

}  // namespace vellum::test
