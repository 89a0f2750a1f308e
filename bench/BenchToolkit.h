// The GUI benchmarks' toolkit: started the way the desktop program starts it and shut down at the
// end, and a helper that lets it handle what is pending.
#pragma once

#include <wx/app.h>
#include <wx/init.h>
#include <wx/log.h>

#include <chrono>
#include <thread>

#include "bench/BenchGraph.h"

namespace vellum::bench {

class Toolkit {
  public:
    Toolkit(int argc, char** argv) {
        wxApp::SetInstance(new App);
        m_entered = wxEntryStart(argc, argv);
        m_ready = m_entered && wxTheApp->CallOnInit();
        // The toolkit's complaints go to standard error rather than into boxes nobody answers.
        delete wxLog::SetActiveTarget(new wxLogStderr);
    }
    ~Toolkit() {
        if (m_entered)
            wxEntryCleanup();
    }
    Toolkit(const Toolkit&) = delete;
    Toolkit& operator=(const Toolkit&) = delete;
    bool ready() const { return m_ready; }

  private:
    class App : public wxApp {
      public:
        bool OnInit() override { return true; }
    };
    bool m_entered = false;
    bool m_ready = false;
};

// Lets the toolkit handle what is pending (paints, timers, resizes) for about `ms` milliseconds.
inline void settle(int ms = 50) {
    const Clock::time_point start = Clock::now();
    do {
        wxTheApp->Yield(true);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    } while (secondsSince(start) * 1000.0 < ms);
}

}  // namespace vellum::bench
