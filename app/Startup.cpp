#include "app/Startup.h"

#include "base/Console.h"

namespace vellum {

namespace {

// A run that ends the program by itself has nobody to answer a box: its alerts go to the console,
// and a question gets the answer that changes nothing.
class ConsoleAlerts : public EditorPrompts {
  public:
    int message(wxWindow*, const wxString& text, const wxString& title, long style) override {
        console() << title.utf8_string() << ": " << text.utf8_string() << "\n";
        return (style & wxYES_NO) ? wxNO : wxOK;
    }
};

}  // namespace

MainFrame* startUp(const StartupOptions& options, std::function<void(int)> finished) {
    MainFrame* frame = startUp(options.files);
    if (!options.run)
        return frame;
    const RunRequest& run = *options.run;
    InterpreterFrame* interpreter =
        frame->openInterpreter(run.quitWhenDone ? std::make_unique<ConsoleAlerts>() : nullptr);
    auto end = [frame, finished, quit = run.quitWhenDone](int status) {
        if (!quit)
            return;
        if (finished)
            finished(status);
        // After the current event: the interpreter frame is still inside its own handler.
        frame->CallAfter([frame] { frame->Close(true); });
    };
    const bool ready = interpreter->loadGraph(run.graph) && interpreter->useLayout(run.layout);
    if (ready) {
        interpreter->setSnooze(run.snooze);
        interpreter->setRunEnded([end](bool normally) { end(normally ? 0 : 1); });
    }
    if (!ready || !interpreter->startUnit(run.module, run.unit)) {
        console() << "Not started: unit '" << run.unit << "' of '" << run.module << "' on '"
                  << run.graph << "'.\n";
        end(1);
    }
    return frame;
}

MainFrame* startUp(const std::vector<std::string>& files) {
    auto* frame = new MainFrame(kVersionLine, wxPoint(5, 5), wxSize(400, 300));
    console() << kVersionLine << "\n";
    console() << kCopyrightLine << "\n";
    console() << "READY.\n";
    frame->useSettings(std::make_unique<UserSettings>(UserSettings::defaultFileName()));
    for (const std::string& file : files)
        frame->openFile(file);
    return frame;
}

}  // namespace vellum
