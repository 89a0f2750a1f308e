// Drives the desktop program's real frames in-process under an X display and checks what a user
// sees: titles, placement, menus, the console's lines, the logo; plus saving the console and
// console writes from other threads.
#include "app/Resources.h"
#include "app/Startup.h"
#include "base/Console.h"
#include "base/Paths.h"
#include "graph/StringAttribute.h"
#include "gui/GraphEditorFrame.h"
#include "tests/support/GuiToolkit.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <wx/app.h>
#include <wx/dcmemory.h>
#include <wx/image.h>
#include <wx/menu.h>

#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <thread>
#include <vector>

namespace vellum {
namespace {

namespace fs = std::filesystem;

const std::string kBanner =
    "Vellum v2 r5\n"
    "Copyright (c) 2026 the Vellum developers\n"
    "READY.\n";

std::vector<std::string> entriesOf(const fs::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    return names;
}

// Every entry below folder with the content of its files: what a failed save must not change.
std::map<std::string, std::string> snapshotOf(const fs::path& folder) {
    std::map<std::string, std::string> snapshot;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        snapshot[entry.path().string()] =
            entry.is_regular_file() ? test::TempFolder::read(entry.path()) : "/";
    return snapshot;
}

// A fresh folder, removed with everything in it (permissions restored first).
class ScratchFolder {
  public:
    ScratchFolder() {
        std::string pattern = (fs::temp_directory_path() / "vellum-app-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~ScratchFolder() {
        std::error_code ignored;
        fs::permissions(path_, fs::perms::owner_all, ignored);
        fs::remove_all(path_, ignored);
    }
    const fs::path& path() const { return path_; }

  private:
    fs::path path_;
};

// Lowers the file size limit for the process, so writes beyond it fail with EFBIG.
class FileSizeLimit {
  public:
    explicit FileSizeLimit(rlim_t bytes) : previousHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
        ::getrlimit(RLIMIT_FSIZE, &saved_);
        rlimit lowered = saved_;
        lowered.rlim_cur = bytes;
        ::setrlimit(RLIMIT_FSIZE, &lowered);
    }
    ~FileSizeLimit() {
        ::setrlimit(RLIMIT_FSIZE, &saved_);
        std::signal(SIGXFSZ, previousHandler_);
    }

  private:
    void (*previousHandler_)(int);
    rlimit saved_{};
};

struct ItemRow {
    const char* label;  // null for a separator
    int id;
    bool enabled;
};

struct MenuRow {
    const char* title;
    std::vector<ItemRow> items;
};

void expectMenus(const wxMenuBar* bar, const std::vector<MenuRow>& expected) {
    ASSERT_NE(bar, nullptr);
    ASSERT_EQ(bar->GetMenuCount(), expected.size());
    for (size_t m = 0; m < expected.size(); ++m) {
        EXPECT_EQ(bar->GetMenuLabel(m), expected[m].title);
        const wxMenu* menu = bar->GetMenu(m);
        ASSERT_EQ(menu->GetMenuItemCount(), expected[m].items.size()) << expected[m].title;
        for (size_t i = 0; i < expected[m].items.size(); ++i) {
            const ItemRow& row = expected[m].items[i];
            const wxMenuItem* item = menu->FindItemByPosition(i);
            SCOPED_TRACE(std::string(expected[m].title) + " item " + std::to_string(i));
            if (!row.label) {
                EXPECT_TRUE(item->IsSeparator());
                continue;
            }
            EXPECT_EQ(item->GetItemLabel(), row.label);
            EXPECT_EQ(item->GetId(), row.id);
            EXPECT_EQ(item->IsEnabled(), row.enabled);
        }
    }
}

class AppGuiTest : public test::ToolkitTest {
  protected:
    // What the program keeps for its user goes to a folder of the test's own.
    test::TempFolder configFolder_;
    test::ScopedEnvironment config_{"XDG_CONFIG_HOME", configFolder_.path()};
    void SetUp() override {
        ToolkitTest::SetUp();
        if (!runs())
            return;
        main_ = startUp();
        wxTheApp->Yield(true);
    }
    void TearDown() override {
        if (!main_)
            return;
        main_->Destroy();
        wxTheApp->ProcessIdle();
    }

    ConsoleFrame* consoleFrame() const { return main_->consoleFrame(); }
    std::string consoleText() const {
        return consoleFrame()->textControl()->GetValue().utf8_string();
    }
    static bool command(wxWindow* frame, int id) {
        wxCommandEvent event(wxEVT_MENU, id);
        return frame->ProcessWindowEvent(event);
    }
    // Saving must fail, say so, and leave the folder exactly as it was.
    void expectFailedSaveKeeps(const fs::path& folder, const fs::path& target) {
        const auto before = snapshotOf(folder);
        ASSERT_FALSE(before.empty());
        EXPECT_FALSE(consoleFrame()->saveContentTo(target.string()));
        EXPECT_EQ(snapshotOf(folder), before);
        EXPECT_NE(capture_.text().find("Cannot save the console to '" + target.string() + "'"),
                  std::string::npos)
            << capture_.text();
    }

    ConsoleCapture capture_;
    MainFrame* main_ = nullptr;
};

TEST(CommandLine, FormsAndMistakes) {
    struct Row {
        std::vector<std::string> arguments;
        std::string problem;  // empty: understood
    };
    const std::vector<Row> rows = {
        {{}, ""},
        {{"a.dg", "b.dg"}, ""},
        {{"m.mod", "u", "g.dg"}, ""},  // three files, not a run
        {{"--run", "m.mod", "u", "g.dg", "--snooze", "-1", "--layout", "sphere",
          "--quit-when-done"},
         ""},
        {{"--run", "m.mod", "u"}, "--run needs a module, a unit and a graph"},
        {{"--run", "m.mod", "u", "g.dg", "--snooze"}, "--snooze needs a value"},
        {{"--run", "m.mod", "u", "g.dg", "--snooze", "fast"},
         "--snooze needs milliseconds from 0 to 3600000 (or -1 for single steps), not 'fast'"},
        {{"--run", "m.mod", "u", "g.dg", "--snooze", "-2"},
         "--snooze needs milliseconds from 0 to 3600000 (or -1 for single steps), not '-2'"},
        {{"--run", "m.mod", "u", "g.dg", "--frames"}, "unknown option '--frames' after --run"},
        {{"a.dg", "--run"}, "unknown option '--run'"},
    };
    for (const Row& row : rows) {
        std::string problem;
        const auto options = parseCommandLine(row.arguments, problem);
        EXPECT_EQ(problem, row.problem);
        EXPECT_EQ(options.has_value(), row.problem.empty());
    }
    std::string problem;
    const auto run = parseCommandLine(rows[3].arguments, problem);
    ASSERT_TRUE(run && run->run);
    EXPECT_EQ(run->run->module, "m.mod");
    EXPECT_EQ(run->run->unit, "u");
    EXPECT_EQ(run->run->graph, "g.dg");
    EXPECT_EQ(run->run->snooze, -1);
    EXPECT_EQ(run->run->layout, "sphere");
    EXPECT_TRUE(run->run->quitWhenDone);
    EXPECT_EQ(parseCommandLine(rows[2].arguments, problem)->files.size(), 3u);
}

TEST_F(AppGuiTest, RunOptionRunsTheUnitInAnInterpreterAndQuitsWhenDone) {
    test::ScopedEnvironment classes{"koralGraphClasses", pluginDirectory()};
    test::ScopedEnvironment graphs{"DirectedGraphEXTGRAPH", "dg"};
    test::ScopedEnvironment rules{"DirectedGraphEXTRULE", "drl"};
    const std::string sierpinski = std::string(VELLUM_EXAMPLES_DIR) + "/sierpinski/";
    struct Row {
        const char* unit;
        int status;
        const char* console;
    };
    for (const Row& row :
         {Row{"gen2", 0, "READY 'gen2'..."}, Row{"nounit", 1, "Alert: The module '"}}) {
        SCOPED_TRACE(row.unit);
        StartupOptions options;
        options.run = RunRequest{
            sierpinski + "sierpinski.mod", row.unit, sierpinski + "triangle.dg", 0, "", true};
        int status = -1;
        InterpreterFrame* interpreter = nullptr;
        std::size_t vertices = 0;  // when the run ended: the frame closes right after
        MainFrame* frame = startUp(options, [&](int s) {
            status = s;
            vertices = interpreter ? interpreter->graph().vertexCount() : 0;
        });
        for (wxWindow* child : frame->GetChildren())
            if (auto* found = dynamic_cast<InterpreterFrame*>(child))
                interpreter = found;
        const size_t windows = wxTopLevelWindows.GetCount();
        for (int i = 0; i < 2000 && status < 0; ++i) {
            wxTheApp->Yield(true);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        EXPECT_EQ(status, row.status);
        EXPECT_EQ(vertices, row.status == 0 ? 15u : 0u);
        EXPECT_NE(capture_.text().find(row.console), std::string::npos) << capture_.text();
        // The program's main frame closes, and the interpreter with it.
        for (int i = 0; i < 100 && wxTopLevelWindows.GetCount() >= windows; ++i) {
            wxTheApp->Yield(true);
            wxTheApp->ProcessIdle();
        }
        EXPECT_LT(wxTopLevelWindows.GetCount(), windows);
    }
}

TEST_F(AppGuiTest, FramesHaveTheirTitlesPlacementAndIcon) {
    EXPECT_EQ(main_->GetTitle(), "Vellum v2 r5");
    EXPECT_EQ(main_->GetPosition(), wxPoint(5, 5));
    EXPECT_EQ(main_->GetClientSize(), wxSize(384, 256));
    EXPECT_TRUE(main_->IsShown());
    const wxIcon icon = main_->GetIcon();
    ASSERT_TRUE(icon.IsOk());
    EXPECT_EQ(icon.GetSize(), wxSize(32, 32));

    EXPECT_EQ(consoleFrame()->GetTitle(), "Vellum - Console");
    EXPECT_EQ(consoleFrame()->GetParent(), main_);
    EXPECT_TRUE(consoleFrame()->IsShown());
    EXPECT_TRUE(consoleFrame()->textControl()->IsMultiLine());
    EXPECT_FALSE(consoleFrame()->textControl()->IsEditable());
}

TEST_F(AppGuiTest, MenusHaveTheirLabelsIdsAndStates) {
    expectMenus(main_->GetMenuBar(), {{"&File",
                                       {{"&New graph...", 7, true},
                                        {"&New graphrule...", 8, true},
                                        {"&New Koral module...", 9, true},
                                        {"&New Koral interpreter...", 10, true},
                                        {"Recent &files", 11, true},
                                        {nullptr, 0, false},
                                        {"E&xit...", 1, true}}},
                                      {"&Vellum", {{"&About...", 6, true}}}});
    expectMenus(consoleFrame()->GetMenuBar(),
                {{"&Edit", {{"&Clear console...", 2, true}, {"&Save content...", 4, true}}}});
}

TEST_F(AppGuiTest, ConsoleShowsTheBannerAndClearEmptiesIt) {
    EXPECT_EQ(consoleText(), kBanner);
    EXPECT_EQ(capture_.text(), kBanner);

    EXPECT_TRUE(command(consoleFrame(), ConsoleFrame::kClearConsole));
    EXPECT_EQ(consoleText(), "");
    console() << "after " << 1.5 << "\n";
    EXPECT_EQ(consoleText(), "after 1.5\n");
}

TEST_F(AppGuiTest, AboutIsAcceptedAndExitClosesBothFrames) {
    const size_t windows = wxTopLevelWindows.GetCount();
    EXPECT_TRUE(command(main_, MainFrame::kAbout));
    EXPECT_EQ(wxTopLevelWindows.GetCount(), windows);

    EXPECT_TRUE(command(main_, MainFrame::kExit));
    wxTheApp->ProcessIdle();
    EXPECT_EQ(wxTopLevelWindows.Find(main_), nullptr);
    EXPECT_EQ(wxTopLevelWindows.GetCount(), 0u);
    main_ = nullptr;
    // The console frame's sink is gone with it: writing goes on without it.
    console() << "still logging\n";
    EXPECT_EQ(capture_.text(), kBanner + "still logging\n");
}

TEST_F(AppGuiTest, NewGraphAndGraphFilesOnTheCommandLineOpenEditors) {
    EXPECT_TRUE(command(main_, MainFrame::kNewGraph));
    auto* editor = dynamic_cast<GraphEditorFrame*>(main_->GetChildren().GetLast()->GetData());
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->GetTitle(), "3D Graph Editor - untitled");
    EXPECT_TRUE(editor->IsShown());

    test::TempFolder folder;
    const std::string graph = folder.path("two.dg");
    ASSERT_TRUE(editor->document().insertVertex("cube", {}));
    ASSERT_TRUE(editor->saveGraph(graph));
    ASSERT_TRUE(editor->exportGraph(folder.path("two.graphml")));
    main_->Destroy();
    wxTheApp->ProcessIdle();

    // A graph of another tool is imported into an editor of its own.
    main_ = startUp({graph, folder.path("two.graphml"), "notes.txt"});
    std::vector<GraphEditorFrame*> editors;
    for (wxWindow* child : main_->GetChildren())
        if (auto* opened = dynamic_cast<GraphEditorFrame*>(child))
            editors.push_back(opened);
    ASSERT_EQ(editors.size(), 2u);
    EXPECT_EQ(editors[0]->GetTitle(), "3D Graph Editor - " + graph);
    EXPECT_EQ(editors[1]->GetTitle(), "3D Graph Editor - untitled");
    for (GraphEditorFrame* opened : editors)
        EXPECT_EQ(opened->document().graph().vertexCount(), 1u);
    EXPECT_NE(capture_.text().find("Not opened: 'notes.txt' is no graph (.dg, .graphml, .gxl, "
                                   ".dot), rule (.drl), module (.mod) or model (.3rd) file."),
              std::string::npos);

    // A model is shown as the one vertex of a new graph.
    main_->Destroy();
    wxTheApp->ProcessIdle();
    const std::string model = std::string(VELLUM_EXAMPLES_DIR) + "/models/house.3rd";
    main_ = startUp({model});
    auto* viewer = dynamic_cast<GraphEditorFrame*>(main_->GetChildren().GetLast()->GetData());
    ASSERT_NE(viewer, nullptr);
    ASSERT_EQ(viewer->document().graph().vertexCount(), 1u);
    const auto* shape = dynamic_cast<const StringAttribute*>(
        viewer->document().graph().vertices().begin()->findAttribute("representation"));
    ASSERT_NE(shape, nullptr);
    EXPECT_EQ(std::filesystem::path(shape->value()).filename(), "house.3rd");
    EXPECT_EQ(capture_.text().find("gometry"), std::string::npos) << capture_.text();
}

TEST_F(AppGuiTest, RecentFilesAndEditorSizesAreKeptInTheUsersConfiguration) {
    const std::string settings = configFolder_.path("vellum/settings.conf");
    ASSERT_NE(main_->settings(), nullptr);
    EXPECT_EQ(main_->settings()->fileName(), settings);
    test::TempFolder folder;
    const std::string first = folder.write("first.dg", "directed graph { vertex 1 { } }\n");
    const std::string second = folder.write("second.dg", "directed graph { }\n");
    GraphEditorFrame* editor = main_->openGraphEditor(first);
    ASSERT_TRUE(editor->saveGraph(second));
    editor->SetSize(wxSize(700, 500));
    EXPECT_TRUE(editor->Close());
    wxTheApp->ProcessIdle();

    // Another run reads the same file: newest first, each file once.
    UserSettings again(settings);
    EXPECT_EQ(again.recentFiles("graphs"), (std::vector<std::string>{second, first}));
    EXPECT_EQ(again.recentFiles("all"), (std::vector<std::string>{second, first}));
    EXPECT_EQ(again.windowSize(GraphEditorFrame::settingsName), wxSize(700, 500));

    // The main frame's submenu lists them when the menu opens, and opens the one chosen in
    // an editor of the size last kept.
    wxMenuEvent open(wxEVT_MENU_OPEN);
    main_->ProcessWindowEvent(open);
    wxMenu* recent = main_->GetMenuBar()->FindItem(MainFrame::kRecentFiles)->GetSubMenu();
    ASSERT_EQ(recent->GetMenuItemCount(), 2u);
    EXPECT_EQ(recent->FindItemByPosition(0)->GetItemLabelText().utf8_string(),
              "1 second.dg   " + folder.path());
    EXPECT_TRUE(command(main_, MainFrame::kFirstRecent + 1));
    auto* reopened = dynamic_cast<GraphEditorFrame*>(main_->GetChildren().GetLast()->GetData());
    ASSERT_NE(reopened, nullptr);
    EXPECT_EQ(reopened->GetTitle(), "3D Graph Editor - " + first);
    EXPECT_EQ(reopened->GetSize(), wxSize(700, 500));

    // The rule editor keeps its own list.
    const std::string rule =
        folder.copy(std::string(VELLUM_EXAMPLES_DIR) + "/mutex/take.drl", "take.drl");
    RuleEditorFrame* ruleEditor = main_->openRuleEditor(rule);
    EXPECT_EQ(ruleEditor->GetTitle(), "3D Rule Editor - " + rule);
    EXPECT_EQ(again.recentFiles("rules"), (std::vector<std::string>{rule}));
    EXPECT_EQ(again.recentFiles("all").front(), rule);
    // The module editor's menus are fixed: its files reach the main frame's list.
    const std::string module =
        folder.copy(std::string(VELLUM_EXAMPLES_DIR) + "/mutex/mutex.mod", "mutex.mod");
    EXPECT_TRUE(main_->openModuleEditor(module)->saveModule());
    EXPECT_EQ(again.recentFiles("modules"), (std::vector<std::string>{module}));
    EXPECT_EQ(again.recentFiles("all").front(), module);

    // A new interpreter takes the layout last chosen, and its size.
    test::ScopedEnvironment layouts{"VellumLayout", pluginDirectory() + "/"};
    again.setChoice("interpreter/layout", "sphere");
    again.setWindowSize(InterpreterFrame::settingsName, wxSize(640, 480));
    InterpreterFrame* interpreter = main_->openInterpreter();
    ASSERT_NE(interpreter->layout(), nullptr) << capture_.text();
    EXPECT_EQ(interpreter->layout()->name(), "sphere");
    EXPECT_EQ(interpreter->GetSize(), wxSize(640, 480));

    // Deleted files drop out of the list; a damaged file gives defaults.
    std::filesystem::remove(second);
    EXPECT_EQ(again.recentFiles("graphs"), (std::vector<std::string>{first}));
    std::ofstream(settings) << "[Windows/graph editor]\nWidth=-5\nHeight=x\n[Recent\n";
    EXPECT_EQ(again.windowSize(GraphEditorFrame::settingsName), std::nullopt);
    EXPECT_TRUE(again.recentFiles("graphs").empty());
}

TEST_F(AppGuiTest, NewKoralModuleAndModuleFilesOnTheCommandLineOpenModuleEditors) {
    EXPECT_TRUE(command(main_, MainFrame::kNewKoralModule));
    auto* editor = dynamic_cast<ModuleEditorFrame*>(main_->GetChildren().GetLast()->GetData());
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->GetTitle(), "Koral Editor - untitled");
    main_->Destroy();
    wxTheApp->ProcessIdle();

    test::TempFolder folder;
    const std::string module = folder.write("m.mod", "module m graph class : DirectedGraph\n");
    main_ = startUp({module});
    editor = dynamic_cast<ModuleEditorFrame*>(main_->GetChildren().GetLast()->GetData());
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->GetTitle(), "Koral Editor - " + module);
    EXPECT_EQ(editor->text().GetText(), "module m graph class : DirectedGraph\n");
    EXPECT_FALSE(editor->modified());
}

TEST_F(AppGuiTest, NewGraphruleAndRuleFilesOnTheCommandLineOpenRuleEditors) {
    EXPECT_TRUE(command(main_, MainFrame::kNewGraphRule));
    auto* editor = dynamic_cast<RuleEditorFrame*>(main_->GetChildren().GetLast()->GetData());
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->GetTitle(), "3D Rule Editor - untitled");
    main_->Destroy();
    wxTheApp->ProcessIdle();

    const std::string rule = std::string(VELLUM_EXAMPLES_DIR) + "/mutex/take.drl";
    main_ = startUp({rule});
    editor = dynamic_cast<RuleEditorFrame*>(main_->GetChildren().GetLast()->GetData());
    ASSERT_NE(editor, nullptr);
    EXPECT_EQ(editor->GetTitle(), "3D Rule Editor - " + rule);
    EXPECT_EQ(editor->document().name(), "take");
}

// Answers every message box with `answer` and counts them.
class AnsweringPrompts : public EditorPrompts {
  public:
    explicit AnsweringPrompts(int answer, int& asked) : m_answer(answer), m_asked(asked) {}
    int message(wxWindow*, const wxString&, const wxString&, long) override {
        ++m_asked;
        return m_answer;
    }

  private:
    int m_answer;
    int& m_asked;
};

TEST_F(AppGuiTest, ExitAsksForEachModifiedEditorAndStaysOpenOnNo) {
    EXPECT_TRUE(command(main_, MainFrame::kNewGraph));
    auto* editor = dynamic_cast<GraphEditorFrame*>(main_->GetChildren().GetLast()->GetData());
    ASSERT_NE(editor, nullptr);
    ASSERT_TRUE(editor->document().insertVertex("sphere", {}));
    int asked = 0;
    editor->setPrompts(std::make_unique<AnsweringPrompts>(wxNO, asked));
    EXPECT_TRUE(command(main_, MainFrame::kExit));
    wxTheApp->ProcessIdle();
    EXPECT_EQ(asked, 1);
    ASSERT_NE(wxTopLevelWindows.Find(main_), nullptr) << "the edits were thrown away unasked";
    EXPECT_NE(wxTopLevelWindows.Find(editor), nullptr);

    editor->setPrompts(std::make_unique<AnsweringPrompts>(wxYES, asked));
    EXPECT_TRUE(command(main_, MainFrame::kExit));
    wxTheApp->ProcessIdle();
    EXPECT_EQ(asked, 2);
    EXPECT_EQ(wxTopLevelWindows.GetCount(), 0u);
    main_ = nullptr;
}

TEST_F(AppGuiTest, SaveWritesExactlyTheConsoleTextOverAnExistingFile) {
    ScratchFolder folder;
    const fs::path target = folder.path() / "log.txt";
    std::ofstream(target) << "an older log\n";
    ASSERT_TRUE(consoleFrame()->saveContentTo(target.string()));
    EXPECT_EQ(test::TempFolder::read(target), kBanner);
    EXPECT_EQ(entriesOf(folder.path()), std::vector<std::string>{"log.txt"});
}

TEST_F(AppGuiTest, FailedSaveInUnwritableFolderKeepsTheExistingFile) {
    ScratchFolder folder;
    const fs::path target = folder.path() / "log.txt";
    std::ofstream(target) << "precious\n";
    fs::permissions(folder.path(), fs::perms::owner_read | fs::perms::owner_exec);
    if (::access(folder.path().c_str(), W_OK) == 0)
        GTEST_SKIP() << "folder permissions do not bind this user (root)";
    expectFailedSaveKeeps(folder.path(), target);
}

TEST_F(AppGuiTest, SaveThatFailsWhileWritingKeepsTheExistingFile) {
    ScratchFolder folder;
    const fs::path target = folder.path() / "log.txt";
    std::ofstream(target) << "precious\n";
    FileSizeLimit limit(8);
    expectFailedSaveKeeps(folder.path(), target);
}

TEST_F(AppGuiTest, SaveOntoAFolderFailsAndKeepsIt) {
    ScratchFolder folder;
    const fs::path target = folder.path() / "taken";
    fs::create_directory(target);
    std::ofstream(target / "inside.txt") << "precious\n";
    expectFailedSaveKeeps(folder.path(), target);
}

TEST_F(AppGuiTest, LogoCanvasShowsTheLogoAtItsTopLeftCorner) {
    LogoCanvas* canvas = main_->logoCanvas();
    ASSERT_EQ(canvas->GetClientSize(), wxSize(384, 256));
    wxBitmap shot(canvas->GetClientSize(), 24);
    {
        wxMemoryDC dc(shot);
        dc.SetBackground(*wxBLACK_BRUSH);
        dc.Clear();
        canvas->paint(dc);
    }
    const wxImage image = shot.ConvertToImage();
    std::set<std::uint32_t> colours;
    const unsigned char* rgb = image.GetData();
    for (int i = 0; i < image.GetWidth() * image.GetHeight(); ++i, rgb += 3)
        colours.insert(rgb[0] << 16 | rgb[1] << 8 | rgb[2]);
    EXPECT_GT(colours.size(), 1u) << "the logo canvas is blank";

    const wxImage logo = Resources::bitmap("IDB_LOGO").ConvertToImage();
    ASSERT_EQ(logo.GetSize(), image.GetSize());
    EXPECT_TRUE(std::equal(logo.GetData(), logo.GetData() + 3 * 384 * 256, image.GetData()))
        << "the canvas does not show the logo pixel for pixel";
}

TEST_F(AppGuiTest, WritesFromAnotherThreadReachTheControlInOrderThroughTheGuiThread) {
    std::thread([] { console() << "from the worker " << 42 << "\n"; }).join();
    EXPECT_EQ(consoleText(), kBanner) << "the worker thread touched the control itself";
    console() << "from the GUI thread\n";
    EXPECT_EQ(consoleText(), kBanner + "from the worker 42\nfrom the GUI thread\n");

    std::thread([] {
        Console::instance().clear();
        console() << "after a clear\n";
    }).join();
    EXPECT_EQ(consoleText(), kBanner + "from the worker 42\nfrom the GUI thread\n");
    wxTheApp->ProcessPendingEvents();
    EXPECT_EQ(consoleText(), "after a clear\n");
}

}  // namespace
}  // namespace vellum
