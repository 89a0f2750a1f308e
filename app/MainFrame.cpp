#include "app/MainFrame.h"

#include "app/Resources.h"

#include "base/Console.h"

#include <wx/menu.h>

namespace vellum {

MainFrame::MainFrame(const wxString& title, const wxPoint& position, const wxSize& size)
    : wxFrame(nullptr, wxID_ANY, title, position, size) {
    SetIcon(Resources::icon("mondrian"));
    buildMenus();
    canvas_ = new LogoCanvas(this);
    SetClientSize(Resources::kLogoWidth, Resources::kLogoHeight);
    console_ = new ConsoleFrame(this);
    Show();
}

void MainFrame::buildMenus() {
    auto* file = new wxMenu;
    file->Append(kNewGraph, "&New graph...");
    file->Append(kNewGraphRule, "&New graphrule...");
    file->Append(kNewKoralModule, "&New Koral module...");
    file->Append(kNewKoralInterpreter, "&New Koral interpreter...");
    recentMenu_ = new wxMenu;
    file->Append(kRecentFiles, "Recent &files", recentMenu_);
    file->AppendSeparator();
    file->Append(kExit, "E&xit...");

    auto* vellum = new wxMenu;
    vellum->Append(kAbout, "&About...");

    auto* bar = new wxMenuBar;
    bar->Append(file, "&File");
    bar->Append(vellum, "&Vellum");
    SetMenuBar(bar);
    Bind(wxEVT_MENU, &MainFrame::onExit, this, kExit);
    Bind(wxEVT_MENU, &MainFrame::onAbout, this, kAbout);
    Bind(wxEVT_MENU, &MainFrame::onNewGraph, this, kNewGraph);
    Bind(wxEVT_MENU, &MainFrame::onNewInterpreter, this, kNewKoralInterpreter);
    Bind(wxEVT_MENU, &MainFrame::onNewRule, this, kNewGraphRule);
    Bind(wxEVT_MENU, &MainFrame::onNewModule, this, kNewKoralModule);
    Bind(wxEVT_CLOSE_WINDOW, &MainFrame::onClose, this);
    Bind(wxEVT_MENU_OPEN, &MainFrame::onMenuOpen, this);
    Bind(wxEVT_MENU, &MainFrame::onRecentFile, this, kFirstRecent,
         kFirstRecent + static_cast<int>(UserSettings::kRecentCount) - 1);
}

void MainFrame::useSettings(std::unique_ptr<UserSettings> settings) {
    settings_ = std::move(settings);
}

void MainFrame::onMenuOpen(wxMenuEvent& event) {
    event.Skip();
    fillRecentMenu(*recentMenu_,
                   settings_ ? settings_->recentFiles("all") : std::vector<std::string>{},
                   kFirstRecent);
}

void MainFrame::onRecentFile(wxCommandEvent& event) {
    const wxMenuItem* item = recentMenu_->FindItem(event.GetId());
    if (item != nullptr)
        openFile(item->GetHelp().utf8_string());
}

namespace {

bool endsWith(const std::string& name, const std::string& extension) {
    return name.size() > extension.size() &&
           name.compare(name.size() - extension.size(), extension.size(), extension) == 0;
}

}  // namespace

bool MainFrame::openFile(const std::string& file) {
    if (endsWith(file, ".dg"))
        openGraphEditor(file);
    else if (endsWith(file, ".drl"))
        openRuleEditor(file);
    else if (endsWith(file, ".mod"))
        openModuleEditor(file);
    else if (endsWith(file, ".graphml") || endsWith(file, ".gxl") || endsWith(file, ".dot") ||
             endsWith(file, ".gv"))
        openGraphEditor()->importGraph(file);
    else if (endsWith(file, ".3rd"))
        openGraphEditor()->showModel(file);
    else {
        console() << "Not opened: '" << file
                  << "' is no graph (.dg, .graphml, .gxl, .dot), rule (.drl), module (.mod) or "
                     "model (.3rd) file.\n";
        return false;
    }
    return true;
}

GraphEditorFrame* MainFrame::openGraphEditor(const std::string& fileName) {
    auto* editor = new GraphEditorFrame(this);
    editor->useSettings(settings_.get());
    if (!fileName.empty())
        editor->loadGraph(fileName);
    return editor;
}

RuleEditorFrame* MainFrame::openRuleEditor(const std::string& fileName) {
    auto* editor = new RuleEditorFrame(this);
    editor->useSettings(settings_.get());
    if (!fileName.empty())
        editor->loadRule(fileName);
    return editor;
}

ModuleEditorFrame* MainFrame::openModuleEditor(const std::string& fileName) {
    auto* editor = new ModuleEditorFrame(this);
    editor->useSettings(settings_.get());
    if (!fileName.empty())
        editor->loadModule(fileName);
    return editor;
}

InterpreterFrame* MainFrame::openInterpreter(std::unique_ptr<EditorPrompts> prompts) {
    auto* interpreter = new InterpreterFrame(this, std::move(prompts));
    interpreter->useSettings(settings_.get());
    return interpreter;
}

void MainFrame::onNewGraph(wxCommandEvent&) {
    openGraphEditor();
}

void MainFrame::onNewInterpreter(wxCommandEvent&) {
    openInterpreter();
}

void MainFrame::onNewRule(wxCommandEvent&) {
    openRuleEditor();
}

void MainFrame::onNewModule(wxCommandEvent&) {
    openModuleEditor();
}

void MainFrame::onExit(wxCommandEvent&) {
    Close();
}

namespace {

bool mayClose(wxWindow* child) {
    if (auto* editor = dynamic_cast<GraphEditorFrame*>(child))
        return editor->confirmDiscard();
    if (auto* editor = dynamic_cast<ModuleEditorFrame*>(child))
        return editor->confirmDiscard();
    if (auto* editor = dynamic_cast<RuleEditorFrame*>(child))
        return editor->confirmDiscard();
    return true;
}

}  // namespace

// The editors close with this frame, so each with unsaved changes asks first; one answered "no"
// keeps the program open.
void MainFrame::onClose(wxCloseEvent& event) {
    if (event.CanVeto())
        for (wxWindow* child : GetChildren())
            if (!mayClose(child)) {
                event.Veto();
                return;
            }
    event.Skip();
}

// Accepted and deliberately ignored: the program has no about box.
void MainFrame::onAbout(wxCommandEvent&) {}

}  // namespace vellum
