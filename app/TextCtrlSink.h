// The console sink of the desktop program: shows the console's text in the console frame's text
// control. Any thread may write to the console, but only the GUI thread touches the control:
// text from other threads is kept here and handed to the GUI thread through the frame's event
// queue, so the control shows everything in the order it was written.
#pragma once

#include "base/Console.h"

#include <wx/event.h>
#include <wx/textctrl.h>

#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace vellum {

class TextCtrlSink : public ConsoleSink, public std::enable_shared_from_this<TextCtrlSink> {
  public:
    // `owner` is the frame that holds `control`; calls posted to it die with it.
    TextCtrlSink(wxTextCtrl* control, wxEvtHandler* owner);

    void append(std::string_view text) override;
    void clear() override;

    // From now on the sink drops everything; called by the owner before it goes away.
    void detach();

  private:
    // GUI thread: shows what other threads handed over.
    void flush();
    // Any thread, with mutex_ held: makes sure one flush is on its way.
    void scheduleFlush();

    std::mutex mutex_;
    wxTextCtrl* control_;        // null once detached
    wxEvtHandler* owner_;        // null once detached
    std::string pending_;        // text from other threads, not yet in the control
    bool clearPending_ = false;  // a clear from another thread comes before pending_
    bool flushScheduled_ = false;
};

}  // namespace vellum
