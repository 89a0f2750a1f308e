// The 3D canvas in a real frame under an X display: its screenshots through the standard
// cameras, picking, navigation by synthesised mouse events, zoom-to-fit, the VR notice, the
// ground's modes, the mark, and a canvas that cannot have its pixel format.
#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/frame.h>
#include <wx/menu.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <iterator>
#include <map>
#include <mutex>
#include <string>
#include <thread>

#include "gui/CanvasCommands.h"
#include "gui/TPXCanvas.h"
#include "gui/view/PngWriter.h"
#include "gui/view/tests/OffscreenFixture.h"
#include "tests/support/GuiToolkit.h"

namespace vellum {
namespace {

using test::pixelAt;
using test::Rgb;
using test::sphereOf;
using test::TestScene;

constexpr int kWidth = 160;
constexpr int kHeight = 120;
const TPXrgb kAzure{0, 0.5, 1};
const TPXrgb kRed{1, 0, 0};

// Shared with the other GUI tests of this program.

// Counts the paints that reached the scene, and notes a paint while `busy` was set.
class CountingNode : public TPXnode {
  public:
    CountingNode() : TPXnode(TPXkind::ModelObject, "counter") {}
    void drawSelf(TPXdrawContext&) const override {
        ++draws;
        drewWhileBusy = drewWhileBusy || (busy && *busy);
    }
    mutable int draws = 0;
    const std::atomic<bool>* busy = nullptr;
    mutable bool drewWhileBusy = false;
};

// Takes every left-button event, as an editor in a selection mode would.
class TakesLeftButton : public TPXCanvasMouseHandler {
  public:
    bool onCanvasMouse(TPXCanvas&, const wxMouseEvent& event) override {
        ++events;
        return event.LeftDown() || event.LeftUp() || event.LeftIsDown();
    }
    int events = 0;
};

class CanvasTest : public test::ToolkitTest {
  protected:
    void SetUp() override {
        ToolkitTest::SetUp();
        if (!runs())
            return;
        canvas_ = open({});
        ASSERT_TRUE(canvas_->hasContext());
        canvas_->setGroundMode(TPXgroundMode::Hidden);
    }
    void TearDown() override {
        if (!test::guiToolkit().ready())
            return;  // nothing was opened; the toolkit is not running
        if (frame_)
            frame_->Destroy();
        wxTheApp->ProcessIdle();
    }

    TPXCanvas* open(TPXCanvasSetup setup, wxSize size = {kWidth, kHeight}) {
        if (frame_)
            frame_->Destroy();
        frame_ = new wxFrame(nullptr, wxID_ANY, "canvas");
        auto* canvas = new TPXCanvas(frame_, std::move(setup));
        frame_->SetClientSize(size);
        frame_->Show();
        settle();
        return canvas;
    }
    // The screenshot, also written to /tmp for a look.
    TPXimage shot(const std::string& name) {
        TPXimage image = canvas_->screenshot();
        writePng(image, "/tmp/vellum-canvas-" + name + ".png");
        return image;
    }
    bool mouse(wxEventType type, int x, int y, bool left = false, bool shift = false) {
        wxMouseEvent event(type);
        event.SetPosition(wxPoint(x, y));
        event.m_leftDown = left;
        event.m_shiftDown = shift;
        event.SetEventObject(canvas_);
        return canvas_->GetEventHandler()->ProcessEvent(event);
    }
    void dragLeft(wxPoint from, wxPoint to, bool shift = false) {
        mouse(wxEVT_LEFT_DOWN, from.x, from.y, true, shift);
        mouse(wxEVT_MOTION, (from.x + to.x) / 2, (from.y + to.y) / 2, true, shift);
        mouse(wxEVT_MOTION, to.x, to.y, true, shift);
        mouse(wxEVT_LEFT_UP, to.x, to.y, false, shift);
    }
    static int countWhere(const TPXimage& image, int x0, int y0, int x1, int y1,
                          bool (*test)(const Rgb&)) {
        int n = 0;
        for (int y = y0; y < y1; ++y)
            for (int x = x0; x < x1; ++x)
                n += test(pixelAt(image, x, y)) ? 1 : 0;
        return n;
    }

    wxFrame* frame_ = nullptr;
    TPXCanvas* canvas_ = nullptr;
    TestScene scene_;
};

TEST_F(CanvasTest, ElevationViewsShowTheSphereAtTheCentreOverTheBackground) {
    scene_.add(sphereOf(kAzure), {0, 0, 0}, 1);
    canvas_->setScene(scene_.first());
    canvas_->setBackground({0.5, 0, 0});
    for (const char* view : {"front", "top", "left"}) {
        ASSERT_TRUE(canvas_->selectCamera(view));
        const TPXimage image = shot(view);
        ASSERT_EQ(image.width(), kWidth);
        ASSERT_EQ(image.height(), kHeight);
        EXPECT_TRUE(pixelAt(image, kWidth / 2, kHeight / 2).azure())
            << view << ": " << pixelAt(image, kWidth / 2, kHeight / 2);
        for (const auto& [x, y] : {std::pair{3, 3}, {kWidth - 4, kHeight - 4}, {30, kHeight / 2}})
            EXPECT_TRUE(pixelAt(image, x, y).dominated(0)) << view << " at " << x << "," << y;
    }
    EXPECT_FALSE(canvas_->selectCamera("side"));
}

TEST_F(CanvasTest, PickFindsNothingOnEmptySpaceAndTheNearerOfTwo) {
    scene_.add(sphereOf(kAzure), {0, 0, 0}, 1);
    scene_.add(sphereOf(kRed), {0, 0, 2}, 2);
    scene_.add(sphereOf(kAzure), {2, 0, 0}, 3);
    canvas_->setScene(scene_.first());
    ASSERT_TRUE(canvas_->selectCamera("front"));
    EXPECT_EQ(canvas_->pick(5, 5), std::nullopt);
    EXPECT_EQ(canvas_->pick(kWidth / 2, kHeight / 2), 2u);
    EXPECT_EQ(canvas_->pick(kWidth / 2 + 24, kHeight / 2), 3u);
    // Picking leaves the next picture as it was.
    EXPECT_TRUE(pixelAt(shot("after-pick"), kWidth / 2, kHeight / 2).dominated(0));
}

TEST_F(CanvasTest, DragOrbitsShiftDragPansWheelZoomsAndTheExactPictureReturns) {
    scene_.add(sphereOf(kAzure), {0, 0, 0}, 1);
    canvas_->setScene(scene_.first());
    ASSERT_EQ(canvas_->viewMode(), TPXviewMode::Perspective);
    const TPXcamera start = canvas_->camera();

    dragLeft({80, 60}, {120, 60});
    EXPECT_NEAR(canvas_->camera().angles().y(),
                start.angles().y() + 40 * CanvasNavigator::degreesPerPixel, 1e-9);
    EXPECT_NEAR(canvas_->camera().eye().length(), start.eye().length(), 1e-9)
        << "orbiting changed the distance to the centre";
    EXPECT_TRUE(canvas_->moving());

    const TPXp3 anglesBeforePan = canvas_->camera().angles();
    const TPXp3 eyeBeforePan = canvas_->camera().eye();
    dragLeft({80, 60}, {60, 60}, true);
    EXPECT_EQ(canvas_->camera().angles().y(), anglesBeforePan.y());
    EXPECT_GT((canvas_->camera().eye() - eyeBeforePan).length(), 0.1);

    const double before = canvas_->camera().eye().length();
    wxMouseEvent wheel(wxEVT_MOUSEWHEEL);
    wheel.SetPosition({kWidth / 2, kHeight / 2});
    wheel.m_wheelRotation = 120;
    wheel.m_wheelDelta = 120;
    canvas_->GetEventHandler()->ProcessEvent(wheel);
    EXPECT_LT(canvas_->camera().eye().length(), before);

    std::this_thread::sleep_for(std::chrono::milliseconds(TPXCanvas::stillAfterMs + 100));
    settle();
    EXPECT_FALSE(canvas_->moving()) << "the exact picture never came back";
}

TEST_F(CanvasTest, MouseHandlerTakesEventsBeforeNavigation) {
    TakesLeftButton handler;
    canvas_->setMouseHandler(&handler);
    const TPXp3 angles = canvas_->camera().angles();
    dragLeft({80, 60}, {120, 90});
    EXPECT_EQ(handler.events, 4);
    EXPECT_EQ(canvas_->camera().angles().y(), angles.y());
    canvas_->setMouseHandler(nullptr);
    dragLeft({80, 60}, {120, 90});
    EXPECT_NE(canvas_->camera().angles().y(), angles.y());
}

TEST_F(CanvasTest, ZoomToFitShowsEveryObject) {
    scene_.add(sphereOf(kRed), {-7, 0, 0}, 1);
    scene_.add(sphereOf(kAzure), {7, 0, 0}, 2);
    canvas_->setScene(scene_.first());
    ASSERT_TRUE(canvas_->selectCamera("front"));
    const auto red = [](const Rgb& p) { return p.dominated(0); };
    const auto azure = [](const Rgb& p) { return p.azure(); };
    const TPXimage before = shot("before-fit");
    EXPECT_LT(countWhere(before, 0, 0, kWidth, kHeight, red) +
                  countWhere(before, 0, 0, kWidth, kHeight, azure),
              20)
        << "the spheres were in view already";

    ASSERT_TRUE(canvas_->zoomToFit());
    const TPXimage after = shot("after-fit");
    EXPECT_GT(countWhere(after, 0, 0, kWidth / 2, kHeight, red), 4);
    EXPECT_GT(countWhere(after, kWidth / 2, 0, kWidth, kHeight, azure), 4);
    // The margin: nothing touches the picture's left and right edges.
    EXPECT_EQ(countWhere(after, 0, 0, 2, kHeight, red), 0);
    EXPECT_EQ(countWhere(after, kWidth - 2, 0, kWidth, kHeight, azure), 0);

    canvas_->setScene(nullptr);
    EXPECT_FALSE(canvas_->zoomToFit());
}

TEST_F(CanvasTest, ScreenshotShowsTheVrNoticeOnlyWhileTheInterfaceIsDisabled) {
    const auto bright = [](const Rgb& p) { return p.r > 160 && p.g > 160 && p.b > 160; };
    EXPECT_TRUE(canvas_->vrEnabled());
    EXPECT_EQ(countWhere(shot("vr-on"), 8, 8, 40, 24, bright), 0);
    canvas_->setVrEnabled(false);
    const TPXimage off = shot("vr-off");
    EXPECT_GT(countWhere(off, 10, 10, 30, 20, bright), 10);
    EXPECT_EQ(countWhere(off, 0, 40, kWidth, kHeight, bright), 0) << "notice beyond its line";
}

TEST_F(CanvasTest, GroundModesDifferInThePicture) {
    canvas_->setBackground({0, 0, 0.4});
    ASSERT_TRUE(canvas_->selectCamera("front"));
    // Seen from the front, the ground below the eye fills the lower part of the picture.
    const int x = kWidth / 2 + 3, y = kHeight - 10;
    const auto ground = [](const Rgb& p) { return p.g > 40; };
    // Each mode chosen through its item, as the frames' Options menus offer them.
    constexpr int firstItem = 100;
    wxMenu menu;
    appendGroundItems(menu, firstItem);
    struct Row {
        TPXgroundMode mode;
        const char* item;
        const char* name;
    };
    const Row rows[] = {{TPXgroundMode::Hidden, "&Hide ground...", "hidden"},
                        {TPXgroundMode::Wireframe, "&Wireframe ground...", "wireframe"},
                        {TPXgroundMode::Solid, "&Solid ground...", "solid"},
                        {TPXgroundMode::Transparent, "&Transparent ground...", "transparent"}};
    ASSERT_EQ(menu.GetMenuItemCount(), std::size(rows));
    std::map<TPXgroundMode, TPXimage> shots;
    for (int i = 0; i < static_cast<int>(std::size(rows)); ++i) {
        EXPECT_EQ(menu.FindItem(firstItem + i)->GetItemLabel(), rows[i].item);
        EXPECT_TRUE(runGroundItem(*canvas_, firstItem + i, firstItem));
        EXPECT_EQ(canvas_->helpers().groundMode(), rows[i].mode) << rows[i].item;
        shots[rows[i].mode] = shot(std::string("ground-") + rows[i].name);
    }
    // Other commands leave the ground alone.
    EXPECT_FALSE(runGroundItem(*canvas_, firstItem - 1, firstItem));
    EXPECT_FALSE(runGroundItem(*canvas_, firstItem + 4, firstItem));
    EXPECT_EQ(canvas_->helpers().groundMode(), TPXgroundMode::Transparent);
    const int lower = kHeight * 3 / 4;
    const int wire = countWhere(shots[TPXgroundMode::Wireframe], 0, lower, kWidth, kHeight, ground);
    const int solid = countWhere(shots[TPXgroundMode::Solid], 0, lower, kWidth, kHeight, ground);
    EXPECT_EQ(countWhere(shots[TPXgroundMode::Hidden], 0, lower, kWidth, kHeight, ground), 0);
    EXPECT_GT(wire, 20);
    EXPECT_LT(wire, solid / 2) << "the wireframe fills the ground";
    EXPECT_EQ(solid, kWidth * (kHeight - lower));

    // Half transparent: half the solid ground's colour and half the background's.
    const Rgb s = pixelAt(shots[TPXgroundMode::Solid], x, y);
    const Rgb t = pixelAt(shots[TPXgroundMode::Transparent], x, y);
    const Rgb b = pixelAt(shots[TPXgroundMode::Hidden], x, y);
    EXPECT_NEAR(t.r, (s.r + b.r) / 2.0, 3) << s << t << b;
    EXPECT_NEAR(t.g, (s.g + b.g) / 2.0, 3) << s << t << b;
    EXPECT_NEAR(t.b, (s.b + b.b) / 2.0, 3) << s << t << b;
}

TEST_F(CanvasTest, MarkSitsWhereTheRayMeetsThePickedObject) {
    scene_.add(sphereOf(kAzure), {1, 0, 0}, 4);
    canvas_->setScene(scene_.first());
    ASSERT_TRUE(canvas_->selectCamera("front"));
    const int x = kWidth / 2 + 14, y = kHeight / 2;  // on the sphere, a little off its middle
    ASSERT_EQ(canvas_->pick(x, y), 4u);
    EXPECT_FALSE(canvas_->markAt(99, x, y));
    EXPECT_EQ(canvas_->helpers().markPoint(), std::nullopt);
    ASSERT_TRUE(canvas_->markAt(4, x, y));
    const TPXp3 mark = *canvas_->helpers().markPoint();
    EXPECT_NEAR((mark - TPXp3(1, 0, 0)).length(), TPXdefaults::radius, 0.05)
        << "not on the surface";
    EXPECT_GT(mark.z(), 0.2) << "on the far side";
    const Rgb p = pixelAt(shot("mark"), x, y);
    EXPECT_TRUE(p.r > 150 && p.g > 120 && p.b < 80) << "no mark drawn: " << p;
    canvas_->clearMark();
    EXPECT_TRUE(pixelAt(shot("mark-cleared"), x, y).azure());
}

TEST_F(CanvasTest, RepaintAskedFromAnotherThreadPaintsOnTheGuiThread) {
    auto counter = std::make_unique<CountingNode>();
    canvas_->setScene(counter.get());
    settle();
    const int before = counter->draws;
    std::thread([this] {
        for (int i = 0; i < 5; ++i)
            canvas_->requestRepaint();
    }).join();
    EXPECT_EQ(counter->draws, before) << "painted on the worker thread";
    settle();
    EXPECT_GE(counter->draws, before + 1);
    canvas_->setScene(nullptr);
}

TEST_F(CanvasTest, PaintWaitsForTheWorkerThatHoldsTheLock) {
    std::mutex lock;
    canvas_->setLock(&lock);
    CountingNode counter;
    std::atomic<bool> busy{false};
    counter.busy = &busy;
    canvas_->setScene(&counter);
    std::thread worker([&] {
        std::lock_guard<std::mutex> hold(lock);
        busy = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        busy = false;
    });
    while (!busy)
        std::this_thread::yield();
    canvas_->paintNow();
    worker.join();
    EXPECT_GE(counter.draws, 1);
    EXPECT_FALSE(counter.drewWhileBusy) << "painted while the worker changed the scene";
    canvas_->setScene(nullptr);
    canvas_->setLock(nullptr);
}

TEST_F(CanvasTest, ZeroHeightCanvasDrawsWithoutDividingByZero) {
    scene_.add(sphereOf(kAzure), {0, 0, 0}, 1);
    canvas_->setScene(scene_.first());
    canvas_->SetSize(kWidth, 0);
    canvas_->paintNow();
    const TPXimage image = canvas_->screenshot();
    EXPECT_EQ(image.height(), 0);
    EXPECT_EQ(canvas_->pick(5, 0), std::nullopt);
    ASSERT_TRUE(canvas_->zoomToFit());
    EXPECT_TRUE(std::isfinite(canvas_->camera().eye().length()));
}

TEST_F(CanvasTest, PixelFormatFailuresAreReportedAndTheCanvasDrawsNothing) {
    struct Row {
        const char* what;
        TPXCanvasSetup setup;
        const char* message;
    };
    TPXCanvasSetup noFormat;
    noFormat.pixelFormat = wxGLAttributes();
    noFormat.pixelFormat.PlatformDefaults().RGBA().DoubleBuffer().Depth(64).EndList();
    TPXCanvasSetup noContext;
    noContext.contextAttributes.emplace();
    noContext.contextAttributes->PlatformDefaults().CoreProfile().OGLVersion(99, 0).EndList();
    Row rows[] = {{"64 depth bits", noFormat, "ChoosePixelFormat failed."},
                  {"OpenGL 99", noContext, "SetPixelFormat failed."}};
    for (Row& row : rows) {
        std::vector<std::string> reports;
        row.setup.report = [&reports](const wxString& message, const wxString& caption) {
            reports.push_back(caption.utf8_string() + ": " + message.utf8_string());
        };
        TPXCanvas* canvas = open(row.setup);
        EXPECT_EQ(reports, std::vector<std::string>{std::string("Error: ") + row.message})
            << row.what;
        EXPECT_FALSE(canvas->hasContext()) << row.what;
        canvas->paintNow();
        EXPECT_EQ(canvas->screenshot().width(), 0) << row.what;
        EXPECT_EQ(canvas->pick(5, 5), std::nullopt) << row.what;
    }
}

}  // namespace
}  // namespace vellum
