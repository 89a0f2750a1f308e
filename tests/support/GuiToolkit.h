// The toolkit of a GUI test program, started once before its first test the way the program's
// main starts it, and shared by every test file linked into the program; and the fixture of a
// test that drives one real frame.
#pragma once

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/init.h>
#include <wx/log.h>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <thread>

namespace vellum::test {

// Waits up to two seconds until the local X server of `display` (":N") takes a connection. A
// virtual display shared by test programs started in parallel may turn one away for a moment,
// and the toolkit gives up at the first refusal. False for other displays or when none came.
inline bool waitForDisplay(const std::string& display) {
    if (display.size() < 2 || display[0] != ':')
        return true;  // not a local display number: leave it to the toolkit
    const std::string path = "/tmp/.X11-unix/X" + display.substr(1, display.find('.') - 1);
    for (int attempt = 0; attempt < 40; ++attempt) {
        const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
        const bool took =
            fd >= 0 && ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0;
        if (fd >= 0)
            ::close(fd);
        if (took)
            return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
}

class GuiToolkit : public ::testing::Environment {
  public:
    void SetUp() override {
        const char* display = std::getenv("DISPLAY");
        if (!display || !*display) {
            why_ = "DISPLAY is not set";
            return;
        }
        waitForDisplay(display);
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

// Registered before main, so that the toolkit starts before the program's first test.
inline GuiToolkit* const registeredToolkit = &guiToolkit();

// A test of a GUI test program that needs the toolkit: SetUp skips it without a display, or
// fails it where one is required (see requireReady).
class ToolkitTest : public ::testing::Test {
  protected:
    void SetUp() override {
        if (guiToolkit().requireReady())
            return;
        if (HasFailure())
            FAIL() << "the test cannot run without the toolkit";  // skips its body
        GTEST_SKIP() << "no display (" << guiToolkit().why()
                     << "): the GUI tests need one, e.g. under xvfb-run";
    }
    // In a derived SetUp after this one's: false when the test is not to go on.
    bool runs() const { return !IsSkipped() && !HasFailure(); }
    // Lets the toolkit handle what is pending, a few times over 50 ms.
    static void settle() {
        for (int i = 0; i < 5; ++i) {
            wxTheApp->Yield(true);
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
};

// A test that drives one real `Frame`, made as `Frame(nullptr, prompts)` with fresh `Prompts`
// that answer its questions; the frame is opened in SetUp (at `clientSize` unless that is the
// default) and destroyed in TearDown when the test left `frame_` set.
template <typename Frame, typename Prompts>
class FrameTest : public ToolkitTest {
  protected:
    explicit FrameTest(wxSize clientSize = wxDefaultSize) : clientSize_(clientSize) {}

    void SetUp() override {
        ToolkitTest::SetUp();
        if (!runs())
            return;
        auto prompts = std::make_unique<Prompts>();
        prompts_ = prompts.get();
        frame_ = new Frame(nullptr, std::move(prompts));
        if (clientSize_ != wxDefaultSize)
            frame_->SetClientSize(clientSize_);
        settle();
    }
    void TearDown() override {
        if (!guiToolkit().ready())
            return;  // nothing was opened; the toolkit is not running
        if (frame_)
            frame_->Destroy();
        wxTheApp->ProcessIdle();
    }

    // Runs menu command `id` as choosing it does.
    void command(int id) {
        wxCommandEvent event(wxEVT_MENU, id);
        event.SetEventObject(frame_);
        frame_->ProcessWindowEvent(event);
    }

    Frame* frame_ = nullptr;
    Prompts* prompts_ = nullptr;

  private:
    wxSize clientSize_;
};

}  // namespace vellum::test
