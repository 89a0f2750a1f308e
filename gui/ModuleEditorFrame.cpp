#include "gui/ModuleEditorFrame.h"

#include <wx/menu.h>
#include <wx/msgdlg.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

#include <stdlib.h>

#include "base/Console.h"
#include "base/ReplacingFile.h"
#include "base/SearchPaths.h"
#include "grammar/Diagnostics.h"
#include "gui/UnitChooserDialog.h"
#include "gui/view/ModuleHtmlExport.h"
#include "koral/KoralUnit.h"
#include "koral/ModuleCache.h"

namespace vellum {
namespace {

namespace fs = std::filesystem;

// The folder of a module's file as the module and rule search path, where the user has set
// none, for as long as the object lives.
class FolderSearch {
  public:
    explicit FolderSearch(const std::string& file) {
        std::string folder = fs::path(file).parent_path().string();
        if (folder.empty())
            folder = ".";
        setModules_ = SearchPaths::instance().setDefault("koralModules", folder);
        setRules_ = SearchPaths::instance().setDefault("koralGraphRules", folder);
    }
    ~FolderSearch() {
        if (setModules_)
            SearchPaths::instance().reset("koralModules");
        if (setRules_)
            SearchPaths::instance().reset("koralGraphRules");
    }
    FolderSearch(const FolderSearch&) = delete;
    FolderSearch& operator=(const FolderSearch&) = delete;

  private:
    bool setModules_ = false;
    bool setRules_ = false;
};

bool isModifierKey(int code) {
    switch (code) {
        case WXK_SHIFT:
        case WXK_CONTROL:
        case WXK_ALT:
        case WXK_WINDOWS_LEFT:
        case WXK_WINDOWS_RIGHT:
        case WXK_WINDOWS_MENU:
            return true;
        default:
            return false;
    }
}

// The key as the bindings name it. With Shift, the punctuation keys of the bindings count as
// what they type on a US keyboard, whichever of the two the toolkit reports.
KeyStroke strokeOf(const wxKeyEvent& event) {
    KeyStroke stroke;
    stroke.control = event.RawControlDown() || event.ControlDown();
    stroke.meta = event.MetaDown();
    stroke.alt = event.AltDown();
    stroke.shift = event.ShiftDown();
    const int code = event.GetKeyCode();
    switch (code) {
        case WXK_ESCAPE:
            stroke.key = KeyStroke::kEscape;
            return stroke;
        case WXK_END:
        case WXK_NUMPAD_END:
            stroke.key = KeyStroke::kEnd;
            return stroke;
        case WXK_HOME:
        case WXK_NUMPAD_HOME:
            stroke.key = KeyStroke::kHome;
            return stroke;
        case WXK_BACK:
            stroke.key = KeyStroke::kDelete;
            return stroke;
        default:
            break;
    }
    stroke.key = code >= 'A' && code <= 'Z' ? code - 'A' + 'a' : code;
    if (stroke.shift) {
        switch (stroke.key) {
            case ',':
                stroke.key = '<';
                break;
            case '.':
                stroke.key = '>';
                break;
            case '-':
                stroke.key = '_';
                break;
            case '=':
                stroke.key = '+';
                break;
            default:
                break;
        }
    }
    return stroke;
}

// The file's bytes; false when it is no regular file or cannot be read.
bool readBytes(const std::string& file, std::string& bytes) {
    std::error_code error;
    if (!fs::is_regular_file(file, error))
        return false;
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    if (!in.is_open() || in.bad())
        return false;
    bytes = text.str();
    return true;
}

}  // namespace

// A copy of an unsaved text for the compiler, which reads modules from files: in a folder of
// its own under the system's temporary folder, named like the module, removed with the editor.
class ModuleEditorFrame::ScratchCopy {
  public:
    ScratchCopy() {
        std::error_code error;
        std::string pattern = (fs::temp_directory_path(error) / "vellum-editor-XXXXXX").string();
        if (::mkdtemp(pattern.data()) != nullptr)
            folder_ = pattern;
    }
    ~ScratchCopy() {
        std::error_code error;
        if (!folder_.empty())
            fs::remove_all(folder_, error);
    }
    ScratchCopy(const ScratchCopy&) = delete;
    ScratchCopy& operator=(const ScratchCopy&) = delete;

    // Writes `bytes` as `name` + ".mod"; the path, empty when it could not be written.
    std::string write(const std::string& name, const std::string& bytes) {
        if (folder_.empty())
            return {};
        const std::string file = (folder_ / (name + ".mod")).string();
        std::ofstream out(file, std::ios::binary | std::ios::trunc);
        out << bytes;
        out.close();
        return out ? file : std::string();
    }

  private:
    fs::path folder_;
};

ModuleEditorFrame::ModuleEditorFrame(wxWindow* parent, std::unique_ptr<EditorPrompts> prompts)
    : wxFrame(parent, wxID_ANY, wxString(titlePrefix) + "untitled", wxDefaultPosition,
              wxSize(760, 600)),
      m_prompts(prompts ? std::move(prompts) : std::make_unique<EditorPrompts>()) {
    SetName(applicationName);
    buildMenus();
    m_text = new wxStyledTextCtrl(this, wxID_ANY);
    setUpText();
    m_highlighter.scan(m_text->GetCharacterPointer());
    m_makeInterpreter = [this] { return new InterpreterFrame(GetParent()); };
    Bind(wxEVT_MENU, &ModuleEditorFrame::onCommand, this, kNewModule, kRunUnit);
    Bind(wxEVT_CLOSE_WINDOW, &ModuleEditorFrame::onClose, this);
    m_text->Bind(wxEVT_KEY_DOWN, &ModuleEditorFrame::onKeyDown, this);
    m_text->Bind(wxEVT_STC_MODIFIED, &ModuleEditorFrame::onModified, this);
    m_text->Bind(wxEVT_STC_STYLENEEDED, &ModuleEditorFrame::onStyleNeeded, this);
    Show();
    m_text->SetFocus();
}

ModuleEditorFrame::~ModuleEditorFrame() = default;

void ModuleEditorFrame::buildMenus() {
    auto* file = new wxMenu;
    file->Append(kNewModule, "&New module...");
    file->Append(kLoadModule, "&Load module...");
    file->Append(kSaveModule, "&Save module...");
    file->Append(kSaveHtml, "&Save as HTML...");
    file->Append(kHighlight, "&Highlight...");
    file->Append(kExit, "E&xit");

    auto* compiler = new wxMenu;
    compiler->Append(kCompile, "&Compile module...");
    compiler->Append(kRunUnit, "&Run unit...");

    auto* bar = new wxMenuBar;
    bar->Append(file, "&File");
    bar->Append(compiler, "&Compiler");
    SetMenuBar(bar);
}

void ModuleEditorFrame::setUpText() {
    wxFont font(wxFontInfo(10).Family(wxFONTFAMILY_TELETYPE));
    m_text->StyleSetFont(wxSTC_STYLE_DEFAULT, font);
    m_text->StyleClearAll();
    const auto style = [this](HighlightCategory category) {
        return static_cast<int>(category) + 1;
    };
    m_text->StyleSetForeground(style(HighlightCategory::Comment), wxColour(0, 128, 0));
    m_text->StyleSetItalic(style(HighlightCategory::Comment), true);
    m_text->StyleSetForeground(style(HighlightCategory::Condition), wxColour(128, 128, 128));
    m_text->StyleSetBold(style(HighlightCategory::Condition), true);
    m_text->StyleSetForeground(style(HighlightCategory::Number), wxColour(160, 0, 0));
    m_text->StyleSetBold(style(HighlightCategory::Keyword), true);
    // The highlighting is the frame's own: Scintilla asks the container for styles.
    m_text->SetLexer(wxSTC_LEX_CONTAINER);
    m_text->SetModEventMask(wxSTC_MOD_INSERTTEXT | wxSTC_MOD_DELETETEXT);
    m_text->SetMarginType(0, wxSTC_MARGIN_NUMBER);
    m_text->SetMarginWidth(0, m_text->TextWidth(wxSTC_STYLE_LINENUMBER, "_99999"));
    m_text->SetMarginWidth(1, 0);
    m_text->MarkerDefine(kErrorMarker, wxSTC_MARK_BACKGROUND, wxNullColour,
                         wxColour(255, 200, 200));
    m_text->SetTabWidth(3);
    m_text->SetUseTabs(true);
}

void ModuleEditorFrame::updateTitle() {
    SetTitle(wxString(titlePrefix) +
             (m_file.empty() ? wxString("untitled") : wxString::FromUTF8(m_file)));
}

void ModuleEditorFrame::onCommand(wxCommandEvent& event) {
    switch (event.GetId()) {
        case kNewModule:
            newModule();
            return;
        case kLoadModule:
            loadModule();
            return;
        case kSaveModule:
            saveModule();
            return;
        case kSaveHtml:
            saveHtml();
            return;
        case kHighlight:
            return highlightAll();
        case kExit:
            Close();
            return;
        case kCompile:
            compile();
            return;
        case kRunUnit:
            runUnit();
            return;
        default:
            return;
    }
}

void ModuleEditorFrame::onKeyDown(wxKeyEvent& event) {
    if (isModifierKey(event.GetKeyCode())) {
        event.Skip();
        return;
    }
    const KeySequences::Outcome outcome = m_keys.press(strokeOf(event));
    switch (outcome.kind) {
        case KeySequences::Outcome::Kind::Action:
            return perform(outcome.action);
        case KeySequences::Outcome::Kind::Pending:
            return;
        case KeySequences::Outcome::Kind::Unbound:
            event.Skip();
            return;
    }
}

void ModuleEditorFrame::perform(EditorAction action) {
    wxStyledTextCtrl& t = *m_text;
    switch (action) {
        case EditorAction::EndOfLine:
            return t.LineEnd();
        case EditorAction::BeginningOfLine:
            return t.Home();
        case EditorAction::PreviousLine:
            return t.LineUp();
        case EditorAction::NextLine:
            return t.LineDown();
        case EditorAction::DeletePreviousCharacter:
            return t.DeleteBack();
        case EditorAction::DeleteNextCharacter:
            return t.Clear();
        case EditorAction::ForwardCharacter:
            return t.CharRight();
        case EditorAction::BackwardCharacter:
            return t.CharLeft();
        case EditorAction::ForwardWord:
            return t.WordRightEnd();
        case EditorAction::BackwardWord:
            return t.WordLeft();
        case EditorAction::KillWord:
            return t.DelWordRightEnd();
        case EditorAction::BackwardKillWord:
            return t.DelWordLeft();
        case EditorAction::BeginningOfFile:
            return t.DocumentStart();
        case EditorAction::EndOfFile:
            return t.DocumentEnd();
        case EditorAction::NextPage:
            return t.PageDown();
        case EditorAction::PreviousPage:
            return t.PageUp();
        case EditorAction::DeleteToEndOfLine:
            // At the end of a line the line feed goes, so that repeated kills join lines.
            if (t.GetCurrentPos() == t.GetLineEndPosition(t.GetCurrentLine()))
                return t.Clear();
            return t.DelLineRight();
        case EditorAction::PasteClipboard:
            return t.Paste();
        case EditorAction::Undo:
            return t.Undo();
        case EditorAction::Redo:
            return t.Redo();
        case EditorAction::CutClipboard:
            return t.Cut();
        case EditorAction::CopyClipboard:
            return t.Copy();
    }
}

void ModuleEditorFrame::onModified(wxStyledTextEvent& event) {
    const int type = event.GetModificationType();
    const long length = event.GetLength();
    const bool inserted = (type & wxSTC_MOD_INSERTTEXT) != 0;
    if (!inserted && (type & wxSTC_MOD_DELETETEXT) == 0)
        return;
    restyle(m_highlighter.edit(m_text->GetCharacterPointer(), event.GetPosition(),
                               inserted ? 0 : length, inserted ? length : 0));
}

void ModuleEditorFrame::onStyleNeeded(wxStyledTextEvent& event) {
    // Everything is styled as it changes; this only moves Scintilla's mark of what is styled.
    restyle({m_text->GetEndStyled(), event.GetPosition()});
}

void ModuleEditorFrame::restyle(ModuleHighlighter::Range range) {
    std::string styles = m_highlighter.styles(range);
    if (styles.empty())
        return;
    m_text->StartStyling(range.from);
    m_text->SetStyleBytes(static_cast<int>(styles.size()), styles.data());
}

void ModuleEditorFrame::highlightAll() {
    m_highlighter.scan(m_text->GetCharacterPointer());
    restyle({0, m_text->GetLength()});
}

void ModuleEditorFrame::setText(const std::string& bytes) {
    m_text->SetTextRaw(bytes.c_str());
    m_text->EmptyUndoBuffer();
    m_text->SetSavePoint();
    m_text->MarkerDeleteAll(kErrorMarker);
    m_text->GotoPos(0);
    highlightAll();
}

bool ModuleEditorFrame::confirmDiscard() {
    if (!modified())
        return true;
    return m_prompts->message(this, quitQuestion, "Warning", wxYES_NO | wxICON_WARNING) == wxYES;
}

bool ModuleEditorFrame::newModule() {
    if (!confirmDiscard())
        return false;
    m_file.clear();
    setText({});
    updateTitle();
    return true;
}

bool ModuleEditorFrame::loadModule(const std::string& fileName) {
    if (!confirmDiscard())
        return false;
    const std::string file =
        fileName.empty() ? m_prompts->fileName(this, moduleFilter, "mod", false).utf8_string()
                         : fileName;
    if (file.empty())
        return false;
    std::string bytes;
    if (!readBytes(file, bytes)) {
        console() << "Could not read the module file '" << file << "'!!!\n";
        return false;
    }
    m_file = file;
    setText(bytes);
    updateTitle();
    if (m_settings)
        m_settings->addRecentFile("modules", file);
    return true;
}

bool ModuleEditorFrame::saveModule(const std::string& fileName) {
    std::string file = fileName.empty() ? m_file : fileName;
    if (file.empty())
        file = m_prompts->fileName(this, moduleFilter, "mod", true).utf8_string();
    if (file.empty())
        return false;
    ReplacingFile out(file);
    if (out.open()) {
        const wxCharBuffer bytes = m_text->GetTextRaw();
        out.stream().write(bytes.data(), static_cast<std::streamsize>(bytes.length()));
    }
    if (!out.commit()) {
        console() << "Could not write the module file '" << file << "': " << out.failure()
                  << "!!!\n";
        return false;
    }
    m_file = file;
    m_text->SetSavePoint();
    updateTitle();
    if (m_settings)
        m_settings->addRecentFile("modules", file);
    return true;
}

bool ModuleEditorFrame::saveHtml(const std::string& fileName) {
    const std::string file = fileName.empty()
                                 ? m_prompts->fileName(this, htmlFilter, "html", true).utf8_string()
                                 : fileName;
    if (file.empty())
        return false;
    const FolderSearch rules(m_file.empty() ? file : m_file);
    const wxCharBuffer bytes = m_text->GetTextRaw();
    const ModuleHtmlResult result =
        exportModuleHtml(std::string(bytes.data(), bytes.length()), file);
    if (!result.ok) {
        console() << "Could not write the page '" << file << "': " << result.error << "!!!\n";
        m_prompts->message(this, "Could not write '" + wxString::FromUTF8(file) + "'!", "Alert",
                           wxOK | wxICON_ERROR);
        return false;
    }
    m_prompts->message(this, exportDone, exportTitle, wxOK | wxICON_INFORMATION);
    return true;
}

std::string ModuleEditorFrame::fileToCompile() {
    if (!m_file.empty() && !modified())
        return m_file;
    if (!m_scratch)
        m_scratch = std::make_unique<ScratchCopy>();
    const std::string name = m_file.empty() ? "untitled" : fs::path(m_file).stem().string();
    const wxCharBuffer bytes = m_text->GetTextRaw();
    const std::string copy = m_scratch->write(name, std::string(bytes.data(), bytes.length()));
    if (copy.empty())
        console() << "Could not write a copy of the text for the compiler!!!\n";
    return copy;
}

const koralModule* ModuleEditorFrame::compile() {
    if (modified() &&
        m_prompts->message(this, saveQuestion, "Warning", wxYES_NO | wxICON_WARNING) == wxYES &&
        !saveModule())
        return nullptr;
    m_text->MarkerDeleteAll(kErrorMarker);
    const std::string file = fileToCompile();
    const koralModule* module = nullptr;
    Diagnostics diagnostics;
    {
        const FolderSearch search(m_file.empty() ? file : m_file);
        const DiagnosticsScope scope(diagnostics);
        module = file.empty() ? nullptr : ModuleCache::instance().compileFile(file);
    }
    if (module != nullptr)
        return module;
    m_prompts->message(this, compileFailure, "Alert", wxOK | wxICON_ERROR);
    // The first error in this text; one inside a used module is also reported at the `uses`.
    for (const Diagnostic& diagnostic : diagnostics.all())
        if (diagnostic.severity == Severity::Error && diagnostic.file == file) {
            showError(diagnostic.offset);
            break;
        }
    return nullptr;
}

void ModuleEditorFrame::showError(long offset) {
    const int position = static_cast<int>(std::min<long>(offset, m_text->GetLength()));
    m_text->GotoPos(position);
    m_text->MarkerAdd(m_text->LineFromPosition(position), kErrorMarker);
    m_text->SetFocus();
}

bool ModuleEditorFrame::runUnit() {
    const koralModule* module = compile();
    if (module == nullptr)
        return false;
    UnitChooserDialog chooser(this, *module);
    if (m_prompts->showModal(chooser) != wxID_OK || chooser.unit() == nullptr)
        return false;
    const std::string unit = chooser.unit()->name();
    if (!m_interpreter)
        m_interpreter = m_makeInterpreter();
    InterpreterFrame* frame = m_interpreter.get();
    frame->Raise();
    if (!frame->loadGraph())
        return false;
    return frame->startUnit(module->file(), unit);
}

void ModuleEditorFrame::useSettings(UserSettings* settings) {
    m_settings = settings;
    if (m_settings)
        if (const std::optional<wxSize> size = m_settings->windowSize(settingsName))
            SetSize(*size);
}

void ModuleEditorFrame::onClose(wxCloseEvent& event) {
    if (event.CanVeto() && !confirmDiscard()) {
        event.Veto();
        return;
    }
    if (m_settings)
        m_settings->setWindowSize(settingsName, GetSize());
    Destroy();
}

}  // namespace vellum
