// The desktop program: starts the toolkit, opens the main frame and runs until it is closed.
// Without a display it says so plainly instead of failing inside the toolkit.
#include "app/Startup.h"
#include "koral/BundledDefaults.h"

#include <wx/app.h>
#include <wx/init.h>
#include <wx/log.h>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace {

class VellumApp : public wxApp {
  public:
    void setOptions(vellum::StartupOptions options) { options_ = std::move(options); }
    int exitStatus() const { return exitStatus_; }

    bool OnInit() override {
        // The console keeps echoing to standard output: useful when started from a terminal,
        // where a run's READY line then shows its time.
        SetTopWindow(vellum::startUp(options_, [this](int status) { exitStatus_ = status; }));
        return true;
    }

  private:
    vellum::StartupOptions options_;
    int exitStatus_ = 0;
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
    std::string problem;
    const std::optional<vellum::StartupOptions> options =
        vellum::parseCommandLine(std::vector<std::string>(argv + 1, argv + argc), problem);
    if (!options) {
        std::fprintf(stderr, "vellum: %s\n%s", problem.c_str(), vellum::commandLineUsage());
        return 2;
    }
    if (options->help) {
        std::fputs(vellum::commandLineUsage(), stdout);
        return 0;
    }
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
    auto& app = static_cast<VellumApp&>(*wxTheApp);
    app.setOptions(*options);
    if (!app.CallOnInit())
        return 1;
    const int status = app.OnRun();
    app.OnExit();
    return status != 0 ? status : app.exitStatus();
}
