// The module editor in a real frame under an X display: every key binding through synthesised
// key events (text and caret after each), the highlighting's styles as the text changes, the
// questions and the alert of compiling (the caret where the compiler stopped), running a unit
// in an interpreter frame, and the HTML export compared line by line, with the pictures of its
// rules in the folders their names give.
#include <gtest/gtest.h>

#include <chrono>
#include <deque>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "base/Console.h"
#include "base/Paths.h"
#include "gui/ModuleEditorFrame.h"
#include "gui/tests/ScriptedPrompts.h"
#include "gui/view/ModuleHtmlExport.h"
#include "koral/ModuleCache.h"
#include "tests/support/GuiToolkit.h"
#include "tests/support/PngFile.h"
#include "tests/support/ScopedEnvironment.h"
#include "tests/support/TempFolder.h"

namespace vellum {
namespace {

using Clock = std::chrono::steady_clock;

const std::string kExamples = VELLUM_EXAMPLES_DIR;

// Scripted prompts whose yes/no questions take their answers from a queue (no when it is empty).
class AnsweringPrompts : public test::ScriptedPrompts {
  public:
    int message(wxWindow* parent, const wxString& text, const wxString& title,
                long style) override {
        test::ScriptedPrompts::message(parent, text, title, style);
        if ((style & wxYES_NO) == 0)
            return wxOK;
        if (answers.empty())
            return wxNO;
        const int answer = answers.front();
        answers.pop_front();
        return answer;
    }
    std::deque<int> answers;
};

// The key event a keyboard gives for `stroke`: letters as upper-case key codes, the shifted
// punctuation of the bindings as the unshifted key with Shift, as a US keyboard reports them.
wxKeyEvent keyEvent(const KeyStroke& stroke) {
    wxKeyEvent event(wxEVT_KEY_DOWN);
    int code = stroke.key;
    switch (stroke.key) {
        case KeyStroke::kEscape:
            code = WXK_ESCAPE;
            break;
        case KeyStroke::kEnd:
            code = WXK_END;
            break;
        case KeyStroke::kHome:
            code = WXK_HOME;
            break;
        case KeyStroke::kDelete:
            code = WXK_BACK;
            break;
        case '<':
            code = ',';
            break;
        case '>':
            code = '.';
            break;
        case '_':
            code = '-';
            break;
        case '+':
            code = '=';
            break;
        default:
            if (code >= 'a' && code <= 'z')
                code = code - 'a' + 'A';
    }
    event.m_keyCode = code;
    event.m_uniChar = code;
    event.m_controlDown = stroke.control;
    event.m_metaDown = stroke.meta;
    event.m_altDown = stroke.alt;
    event.m_shiftDown = stroke.shift;
    return event;
}

class ModuleEditorTest : public test::FrameTest<ModuleEditorFrame, AnsweringPrompts> {
  protected:
    void SetUp() override {
        clearKoralCaches();
        FrameTest::SetUp();
    }
    void TearDown() override {
        if (frame_ != nullptr)
            frame_->text().SetSavePoint();  // nobody is asked about unsaved text
        if (InterpreterFrame* interpreter = interpreter_)
            interpreter->Destroy();
        FrameTest::TearDown();
        clearKoralCaches();
    }
    // Types the keys, e.g. "ESC;f" or "c:x;u c:e" (sequences separated by blanks).
    void press(const std::string& keys) {
        std::istringstream words(keys);
        std::string word;
        while (words >> word) {
            const std::vector<KeyStroke> strokes = parseKeys(word);
            ASSERT_FALSE(strokes.empty()) << word;
            for (const KeyStroke& stroke : strokes) {
                wxKeyEvent event = keyEvent(stroke);
                event.SetEventObject(&frame_->text());
                frame_->text().ProcessWindowEvent(event);
            }
        }
    }
    std::string text() { return frame_->text().GetText().utf8_string(); }
    std::string lastMessage() const {
        return prompts_->messages.empty() ? std::string() : prompts_->messages.back();
    }

    test::ScopedEnvironment classes_{"koralGraphClasses", pluginDirectory()};
    test::ScopedEnvironment graphs_{"DirectedGraphEXTGRAPH", "dg"};
    test::ScopedEnvironment rules_{"DirectedGraphEXTRULE", "drl"};
    ConsoleCapture console_;
    wxWeakRef<InterpreterFrame> interpreter_;
};

TEST_F(ModuleEditorTest, TitleAndMenus) {
    EXPECT_EQ(frame_->GetTitle(), "Koral Editor - untitled");
    EXPECT_EQ(frame_->GetName(), "Koral Editor v2");
    const std::vector<std::pair<const char*, std::vector<const char*>>> expected = {
        {"&File",
         {"&New module...", "&Load module...", "&Save module...", "&Save as HTML...",
          "&Highlight...", "E&xit"}},
        {"&Compiler", {"&Compile module...", "&Run unit..."}},
    };
    const wxMenuBar* bar = frame_->GetMenuBar();
    ASSERT_EQ(bar->GetMenuCount(), expected.size());
    for (std::size_t m = 0; m < expected.size(); ++m) {
        EXPECT_EQ(bar->GetMenuLabel(m), expected[m].first);
        const wxMenu* menu = bar->GetMenu(m);
        ASSERT_EQ(menu->GetMenuItemCount(), expected[m].second.size());
        for (std::size_t i = 0; i < expected[m].second.size(); ++i)
            EXPECT_EQ(menu->FindItemByPosition(i)->GetItemLabel(), expected[m].second[i]);
    }
}

TEST_F(ModuleEditorTest, EveryKeyBindingDoesItsAction) {
    const std::string start = "alpha beta gamma\nsecond line here\nthird";
    struct Row {
        const char* keys;
        int caret;
        int anchor;  // -1: no selection
        std::string text;
        int expectedCaret;
    };
    const std::string cutAlpha = " beta gamma\nsecond line here\nthird";
    const std::string twoAlphas = "alpha beta gammaalpha\nsecond line here\nthird";
    const Row rows[] = {
        {"c:e", 0, -1, start, 16},
        {"END", 0, -1, start, 16},
        {"c:a", 8, -1, start, 0},
        {"HOME", 8, -1, start, 0},
        {"c:p", 20, -1, start, 3},
        {"c:n", 3, -1, start, 20},
        {"c:h", 6, -1, "alphabeta gamma\nsecond line here\nthird", 5},
        {"c:d", 5, -1, "alphabeta gamma\nsecond line here\nthird", 5},
        {"c:f", 0, -1, start, 1},
        {"c:b", 1, -1, start, 0},
        {"m:f", 0, -1, start, 5},
        {"ESC;f", 0, -1, start, 5},
        {"m:b", 10, -1, start, 6},
        {"ESC;b", 10, -1, start, 6},
        {"m:d", 6, -1, "alpha  gamma\nsecond line here\nthird", 6},
        {"ESC;d", 6, -1, "alpha  gamma\nsecond line here\nthird", 6},
        {"m:DEL", 10, -1, "alpha  gamma\nsecond line here\nthird", 6},
        {"ESC;DEL", 10, -1, "alpha  gamma\nsecond line here\nthird", 6},
        {"m:s:<", 20, -1, start, 0},
        {"ESC;s:<", 20, -1, start, 0},
        {"m:s:>", 0, -1, start, 39},
        {"ESC;s:>", 0, -1, start, 39},
        {"c:v", 0, -1, start, 39},  // a page beyond a short text is its end,
        {"m:v", 34, -1, start, 0},
        {"ESC;v", 34, -1, start, 0},
        {"c:k", 6, -1, "alpha \nsecond line here\nthird", 6},
        {"c:k", 16, -1, "alpha beta gammasecond line here\nthird", 16},
        {"c:w", 5, 0, cutAlpha, 0},
        {"a:x", 5, 0, cutAlpha, 0},
        {"c:w c:e c:y", 5, 0, " beta gammaalpha\nsecond line here\nthird", 16},
        {"c:w c:e a:v", 5, 0, " beta gammaalpha\nsecond line here\nthird", 16},
        {"m:w c:e c:y", 5, 0, twoAlphas, 21},
        {"ESC;w c:e c:y", 5, 0, twoAlphas, 21},
        {"a:c c:e c:y", 5, 0, twoAlphas, 21},
        {"c:d c:s:_", 0, -1, start, 1},
        {"c:d a:z", 0, -1, start, 1},
        {"c:d c:x;u", 0, -1, start, 1},
        {"c:d c:s:_ c:s:+", 0, -1, "lpha beta gamma\nsecond line here\nthird", 0},
        // Alt acts as Meta where no Alt binding has the key.
        {"a:f", 0, -1, start, 5},
        {"a:s:>", 0, -1, start, 39},
        // A prefix followed by a key it does not bind is dropped; the key acts on its own.
        {"c:x c:e", 0, -1, start, 16},
        {"ESC c:e", 0, -1, start, 16},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string("keys '") + row.keys + "' at " + std::to_string(row.caret));
        wxStyledTextCtrl& control = frame_->text();
        control.SetText(start);
        control.EmptyUndoBuffer();
        control.SetSelection(row.anchor < 0 ? row.caret : row.anchor, row.caret);
        control.ChooseCaretX();  // as a click there would: lines keep this column
        press(row.keys);
        EXPECT_EQ(text(), row.text);
        EXPECT_EQ(control.GetCurrentPos(), row.expectedCaret);
    }
}

TEST_F(ModuleEditorTest, KeysOutsideTheTableKeepTheControlsBehaviour) {
    frame_->text().SetText("alpha beta\nsecond");
    frame_->text().GotoPos(0);
    KeyStroke shiftEnd;
    shiftEnd.key = KeyStroke::kEnd;
    shiftEnd.shift = true;
    wxKeyEvent event = keyEvent(shiftEnd);
    event.SetEventObject(&frame_->text());
    frame_->text().ProcessWindowEvent(event);
    EXPECT_EQ(frame_->text().GetSelectedText(), "alpha beta");
}

TEST_F(ModuleEditorTest, HighlightingStylesTheCategoriesAndFollowsEdits) {
    wxStyledTextCtrl& control = frame_->text();
    const std::string module = "% note\nmodule m\napply 2 times r (x)";
    control.SetText(module);
    const auto styleAt = [&](const std::string& piece) {
        return control.GetStyleAt(static_cast<int>(module.find(piece)));
    };
    struct Row {
        const char* piece;
        HighlightCategory category;
    } rows[] = {
        {"% note", HighlightCategory::Comment}, {"module", HighlightCategory::Keyword},
        {"m\n", HighlightCategory::Name},       {"2", HighlightCategory::Number},
        {"(x)", HighlightCategory::Condition},
    };
    for (const Row& row : rows)
        EXPECT_EQ(styleAt(row.piece), static_cast<int>(row.category) + 1) << row.piece;
    EXPECT_EQ(styleAt(" 2"), ModuleEditorFrame::kPlainStyle);

    const int comment = static_cast<int>(HighlightCategory::Comment) + 1;
    const int condition = static_cast<int>(HighlightCategory::Condition) + 1;
    EXPECT_EQ(control.StyleGetForeground(comment), wxColour(0, 128, 0));
    EXPECT_TRUE(control.StyleGetItalic(comment));
    EXPECT_EQ(control.StyleGetForeground(condition), wxColour(128, 128, 128));
    EXPECT_TRUE(control.StyleGetBold(condition));
    EXPECT_TRUE(control.StyleGetBold(static_cast<int>(HighlightCategory::Keyword) + 1));

    // A "%" typed before "module" makes the line a comment; deleting it makes it code again.
    const int line = static_cast<int>(module.find("module"));
    control.InsertText(line, "%");
    EXPECT_EQ(control.GetStyleAt(line + 4), comment);
    control.DeleteRange(line, 1);
    EXPECT_EQ(control.GetStyleAt(line + 4), static_cast<int>(HighlightCategory::Keyword) + 1);
}

TEST_F(ModuleEditorTest, CompileAsksToSaveAlertsAndPlacesTheCaretAtTheError) {
    test::TempFolder folder;
    folder.write("grow.drl",
                 "directed graphrule grow { left-hand side { vertex 1 { label a } } interface"
                 " { vertex 1 <-> 2 } right-hand side { vertex 2 { label a } vertex 3 { } } }");
    const std::string good =
        "module m graph class : DirectedGraph\nexports transformation unit go\nrealized by\n"
        "transformation unit go\ninitial :\nbody : apply once grow\nterminal :\nend\nend.\n";
    struct Row {
        std::string text;
        const char* errorAt;  // where the caret goes; null: compiles
    } rows[] = {
        {good, nullptr},
        {std::regex_replace(good, std::regex("once grow"), "once shrink"), "shrink"},
        {std::regex_replace(good, std::regex("\nend\nend"), "\nend\nendx"), "x"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.errorAt ? row.errorAt : "no error");
        frame_->text().SetSavePoint();
        ASSERT_TRUE(frame_->loadModule(folder.write("m.mod", "")));
        frame_->text().SetText(row.text);  // modified: compile asks first
        prompts_->messages.clear();
        prompts_->answers = {wxNO};
        command(ModuleEditorFrame::kCompile);
        ASSERT_FALSE(prompts_->messages.empty());
        EXPECT_EQ(prompts_->messages.front(),
                  "Warning: This file has been modified.\n\nDo you want to save?");
        if (row.errorAt == nullptr) {
            EXPECT_EQ(prompts_->messages.size(), 1u);
            continue;
        }
        EXPECT_EQ(lastMessage(),
                  "Alert: The module contains errors!\nSee console output for more information!");
        const int caret = static_cast<int>(row.text.rfind(row.errorAt));
        EXPECT_EQ(frame_->text().GetCurrentPos(), caret);
        const int line = frame_->text().LineFromPosition(caret);
        EXPECT_TRUE(frame_->text().MarkerGet(line) & (1 << ModuleEditorFrame::kErrorMarker));
        EXPECT_FALSE(frame_->text().MarkerGet(0) & (1 << ModuleEditorFrame::kErrorMarker));
    }
    // Saying yes saves before compiling.
    frame_->text().SetText(good);
    prompts_->answers = {wxYES};
    ASSERT_NE(frame_->compile(), nullptr);
    EXPECT_FALSE(frame_->modified());
    std::ifstream saved(folder.path("m.mod"));
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(saved), {}), good);

    // Leaving a modified text asks; no keeps the frame.
    frame_->text().AppendText("% more");
    prompts_->messages.clear();
    EXPECT_FALSE(frame_->Close());
    EXPECT_EQ(lastMessage(),
              "Warning: This file has been modified.\n\nAre you sure you want to quit?");
}

TEST_F(ModuleEditorTest, RunUnitStartsTheChosenUnitInAnInterpreterFrame) {
    ASSERT_TRUE(frame_->loadModule(kExamples + "/sierpinski/sierpinski.mod"));
    EXPECT_EQ(frame_->GetTitle(), "Koral Editor - " + kExamples + "/sierpinski/sierpinski.mod");
    const std::string triangle = kExamples + "/sierpinski/triangle.dg";
    test::ScriptedPrompts* interpreterPrompts = nullptr;
    frame_->setInterpreterMaker([&] {
        auto prompts = std::make_unique<test::ScriptedPrompts>();
        interpreterPrompts = prompts.get();
        interpreterPrompts->files.push_back(triangle);
        return new InterpreterFrame(nullptr, std::move(prompts));
    });
    const auto runAndWait = [&](const std::string& unit) {
        prompts_->unit = unit;
        if (interpreterPrompts != nullptr)
            interpreterPrompts->files.push_back(triangle);
        command(ModuleEditorFrame::kRunUnit);
        interpreter_ = frame_->interpreter();
        if (interpreter_ == nullptr)
            return std::size_t{0};
        const Clock::time_point until = Clock::now() + std::chrono::seconds(20);
        while (interpreter_->running() && Clock::now() < until) {
            wxTheApp->Yield(true);
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        EXPECT_FALSE(interpreter_->running());
        return interpreter_->graph().vertexCount();
    };
    EXPECT_EQ(runAndWait("gen2"), 15u);
    InterpreterFrame* first = frame_->interpreter();
    // The next run goes to the same frame, on the graph chosen there again.
    EXPECT_EQ(runAndWait("gen1"), 6u);
    EXPECT_EQ(frame_->interpreter(), first);
    EXPECT_EQ(interpreterPrompts->filters, std::vector<std::string>(2, "Graph file (*.dg)"));
}

// Lines of a text.
std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        result.push_back(line);
    return result;
}

TEST_F(ModuleEditorTest, SaveAsHtmlWritesThePageWithPicturesOfTheRules) {
    test::TempFolder folder;
    const char* rule =
        "directed graphrule %s { left-hand side { vertex 1 { label a } } interface"
        " { vertex 1 <-> 2 } right-hand side { vertex 2 { label a } vertex 3 { } } }";
    folder.write("grow.drl", std::regex_replace(rule, std::regex("%s"), "grow"));
    folder.write("lib/more/grow.drl", std::regex_replace(rule, std::regex("%s"), "grow"));
    const std::string module =
        "% rules and <tags>\n"
        "module page graph class : DirectedGraph\n"
        "realized by\n"
        "initial : (vertices > 0)\n"
        "body :\tapply 2 times grow < lib.more.grow; apply 2 times grow\n"
        "end.";
    ASSERT_TRUE(frame_->loadModule(folder.write("page.mod", module)));
    const std::string html = folder.path("out/page.html");
    std::filesystem::create_directories(folder.path("out"));
    prompts_->files.push_back(html);
    command(ModuleEditorFrame::kSaveHtml);
    EXPECT_EQ(lastMessage(), "MOD 2 HTML v1: HMTL export successfull!!!");
    EXPECT_EQ(prompts_->filters.back(), "Hypertext files (*.html)");

    std::ifstream in(html);
    const std::string page{std::istreambuf_iterator<char>(in), {}};
    const std::string grow =
        "<IMG SRC=\"grow.png\" ALT=\"grow\" NOSAVE HEIGHT=100 WIDTH=251 ALIGN=ABSCENTER>";
    const std::vector<std::string> expected = {
        "<HTML>",
        "<HEAD>",
        "<META NAME=\"AUTHOR\" CONTENT=\"The Vellum developers\">",
        "\t<META NAME=\"GENERATOR\" CONTENT=\"Vellum MOD2HTML v1\">",
        "\t<TITLE>Koral module '" + html + "'</TITLE>",
        "\t</HEAD>",
        "<BODY>",
        "<FONT FACE=\"Arial,Helvetica\">",
        "<I><FONT COLOR=\"#006600\">% rules and &lt;tags&gt;</FONT></I><BR>",
        "<B>module</B> <FONT COLOR=\"#0000FF\">page</FONT> <B>graph class</B> <B>:</B> "
        "<FONT COLOR=\"#0000FF\">DirectedGraph</FONT><BR>",
        "<B>realized by</B><BR>",
        "<B>initial</B> <B>:</B> <B><FONT COLOR=\"#666666\">(vertices &gt; 0)</FONT></B><BR>",
        "<B>body</B> <B>:</B>&nbsp;&nbsp;&nbsp;<B>apply</B> <FONT COLOR=\"#660000\">2</FONT> "
        "<B>times</B> " +
            grow +
            " <B>&lt;</B> <IMG SRC=\"lib/more/grow.png\" ALT=\"lib.more.grow\" NOSAVE "
            "HEIGHT=100 WIDTH=251 ALIGN=ABSCENTER><B>;</B> <B>apply</B> "
            "<FONT COLOR=\"#660000\">2</FONT> <B>times</B> " +
            grow + "<BR>",
        "<B>end</B><B>.</B>",
        "</FONT>",
        "</HTML>",
    };
    EXPECT_EQ(lines(page), expected);

    // Every picture the page shows is a PNG beside it, in the folders of its dotted name.
    const std::regex image("<IMG SRC=\"([^\"]+)\"");
    int images = 0;
    for (std::sregex_iterator i(page.begin(), page.end(), image), end; i != end; ++i, ++images) {
        test::PngContents png;
        EXPECT_TRUE(test::readPng(folder.path("out/" + (*i)[1].str()), png)) << (*i)[1];
        EXPECT_EQ(png.width, static_cast<png_uint_32>(kRulePictureWidth));
        EXPECT_EQ(png.height, static_cast<png_uint_32>(kRulePictureHeight));
    }
    EXPECT_EQ(images, 3);
}

}  // namespace
}  // namespace vellum
