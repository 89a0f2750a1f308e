// The toolkit of a GUI test program, started once before its first test the way the program's
// main starts it, and shared by every test file linked into the program.
#pragma once

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/init.h>
#include <wx/log.h>

#include <cstdlib>
#include <string>

namespace vellum::test {

class GuiToolkit : public ::testing::Environment {
  public:
    void SetUp() override {
        const char* display = std::getenv("DISPLAY");
        if (!display || !*display) {
            why_ = "DISPLAY is not set";
            return;
        }
        wxApp::SetInstance(new App);
        int argc = 1;
        char name[] = "gui_tests";
        char* argv[] = {name, nullptr};
        entered_ = wxEntryStart(argc, argv);
        ready_ = entered_ && wxTheApp->CallOnInit();
        if (!ready_)
            why_ = std::string("cannot open display '") + display + "'";
        // The toolkit's own complaints go to standard error, not into dialogs nobody answers.
        delete wxLog::SetActiveTarget(new wxLogStderr);
    }
    void TearDown() override {
        if (entered_)
            wxEntryCleanup();
    }
    bool ready() const { return ready_; }
    const std::string& why() const { return why_; }

    // For a test's SetUp: true when the toolkit runs; otherwise the test fails when
    // VELLUM_REQUIRE_DISPLAY=1 asks for a display (scripts/test), and is skipped else.
    bool requireReady() const {
        if (ready_)
            return true;
        const char* required = std::getenv("VELLUM_REQUIRE_DISPLAY");
        if (required != nullptr && std::string(required) == "1")
            ADD_FAILURE() << "no display (" << why_
                          << ") although VELLUM_REQUIRE_DISPLAY=1 asks for one";
        return false;
    }

  private:
    class App : public wxApp {
      public:
        bool OnInit() override { return true; }
    };
    bool entered_ = false;
    bool ready_ = false;
    std::string why_;
};

// The one toolkit of the test program, registered on first use.
inline GuiToolkit& guiToolkit() {
    static GuiToolkit* const toolkit =
        static_cast<GuiToolkit*>(::testing::AddGlobalTestEnvironment(new GuiToolkit));
    return *toolkit;
}

}  // namespace vellum::test
