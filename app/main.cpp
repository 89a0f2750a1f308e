// The desktop program: starts the toolkit, opens the main frame and runs until it is closed.
// Without a display it says so plainly instead of failing inside the toolkit.
#include "app/Startup.h"
#include "koral/BundledDefaults.h"

#include <wx/app.h>
#include <wx/init.h>
#include <wx/log.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

class VellumApp : public wxApp {
  public:
    bool OnInit() override {
        // The console keeps echoing to standard output: useful when started from a terminal.
        std::vector<std::string> files;
        for (int i = 1; i < argc; ++i)
            files.push_back(argv[i].utf8_string());
        SetTopWindow(vellum::startUp(files));
        return true;
    }
};

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value;
}

int noDisplay(const std::string& reason) {
    std::fprintf(stderr,
                 "vellum: no display found (%s); the desktop program needs one. Use vellum-cli "
                 "for headless work.\n",
                 reason.c_str());
    return 1;
}

// Ends the toolkit however the run ends.
struct ToolkitCleanup {
    ~ToolkitCleanup() { wxEntryCleanup(); }
};

}  // namespace

wxIMPLEMENT_APP_NO_MAIN(VellumApp);

int main(int argc, char** argv) {
    vellum::applyBundledDefaults();
    if (!isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY"))
        return noDisplay("DISPLAY is not set");
    bool started = false;
    {
        wxLogNull quiet;  // the toolkit's own complaint would only repeat ours
        started = wxEntryStart(argc, argv);
    }
    if (!started) {
        const char* display = std::getenv("DISPLAY");
        return noDisplay(std::string("cannot open display '") + (display ? display : "") + "'");
    }
    ToolkitCleanup cleanup;
    if (!wxTheApp->CallOnInit())
        return 1;
    const int status = wxTheApp->OnRun();
    wxTheApp->OnExit();
    return status;
}
