#include "gui/InterpreterFrame.h"

#include <wx/menu.h>
#include <wx/msgdlg.h>

#include <filesystem>

#include "base/Console.h"
#include "base/SearchPaths.h"
#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"
#include "gui/CpuPropertiesDialog.h"
#include "gui/InterpreterStepDialog.h"
#include "gui/LayoutDialog.h"
#include "gui/UnitChooserDialog.h"
#include "gui/WxColour.h"
#include "gui/view/ElementLook.h"
#include "koral/KoralException.h"
#include "koral/KoralUnit.h"
#include "koral/ModuleCache.h"

namespace vellum {
namespace {

std::string folderOf(const std::string& fileName) {
    return std::filesystem::path(fileName).parent_path().string();
}

}  // namespace

// The folder of a module file as the module and rule search path, where the user has set none,
// for as long as the object lives: the run may look for rules while it goes.
class InterpreterFrame::ModuleFolder {
  public:
    explicit ModuleFolder(const std::string& moduleFile) {
        std::string folder = folderOf(moduleFile);
        if (folder.empty())
            folder = ".";
        setModules_ = SearchPaths::instance().setDefault("koralModules", folder);
        setRules_ = SearchPaths::instance().setDefault("koralGraphRules", folder);
    }
    ~ModuleFolder() {
        if (setModules_)
            SearchPaths::instance().reset("koralModules");
        if (setRules_)
            SearchPaths::instance().reset("koralGraphRules");
    }
    ModuleFolder(const ModuleFolder&) = delete;
    ModuleFolder& operator=(const ModuleFolder&) = delete;

  private:
    bool setModules_ = false;
    bool setRules_ = false;
};

InterpreterFrame::InterpreterFrame(wxWindow* parent, std::unique_ptr<EditorPrompts> prompts)
    : wxFrame(parent, wxID_ANY, title, wxDefaultPosition, wxSize(800, 600)),
      m_prompts(prompts ? std::move(prompts) : std::make_unique<EditorPrompts>()),
      m_graph(std::make_unique<DirectedGraph>()),
      m_listener(*m_graph, m_sceneLock,
                 InterpreterListener::Hooks{
                     [this] { m_canvas->requestRepaint(); },
                     [this] { CallAfter([this] { showStepDialog(); }); },
                     [this](const std::string& file, long begin, long end) {
                         CallAfter([this, file, begin, end] { showSource(file, begin, end); });
                     },
                     [this](long number) { CallAfter([this, number] { recordPicture(number); }); },
                 }),
      m_watch(this) {
    buildMenus();
    CreateStatusBar(2);
    const int widths[] = {-1, -2};
    GetStatusBar()->SetStatusWidths(2, widths);
    m_canvas = new TPXCanvas(this);
    m_canvas->setLock(&m_sceneLock);
    showScene();
    bindEvents();
    setStatus(idleStatus);
    enableCommands();
    Show();
}

InterpreterFrame::~InterpreterFrame() {
    m_runEnded = nullptr;  // nobody is to hear of a run that the frame's end cuts short
    endRun();
    m_canvas->setScene(nullptr);
}

void InterpreterFrame::buildMenus() {
    auto* file = new wxMenu;
    file->Append(kLoadGraph, "&Load initial graph...");
    file->Append(kSaveGraph, "&Save acutal graph...");
    file->Append(kScreenshot, "Screens&hot...");
    file->Append(kRecord, "&Record run...");
    file->Append(kExit, "E&xit");

    auto* cpu = new wxMenu;
    cpu->Append(kStart, "&Start...");
    cpu->Append(kStep, "St&ep...");
    cpu->Append(kStop, "S&top...");
    cpu->Append(kProperties, "&Properties...");

    auto* layout = new wxMenu;
    layout->Append(kChooseLayout, "Choose l&ayout algorithm...");
    layout->Append(kConfigureLayout, "Configure l&ayout algorithm...");

    auto* options = new wxMenu;
    appendGroundItems(*options, kHideGround);
    options->Append(kBackground, "&Background color...");

    auto* bar = new wxMenuBar;
    bar->Append(file, "&File");
    bar->Append(cpu, "&CPU");
    bar->Append(layout, "&Layout");
    bar->Append(options, "&Options");
    SetMenuBar(bar);
}

void InterpreterFrame::bindEvents() {
    Bind(wxEVT_MENU, &InterpreterFrame::onCommand, this, kLoadGraph, kBackground);
    Bind(wxEVT_TIMER, &InterpreterFrame::onWatch, this, m_watch.GetId());
    Bind(wxEVT_CLOSE_WINDOW, &InterpreterFrame::onClose, this);
}

void InterpreterFrame::enableCommands() {
    wxMenuBar* bar = GetMenuBar();
    // The graph belongs to the run while one goes.
    bar->Enable(kLoadGraph, !m_runActive);
    bar->Enable(kSaveGraph, !m_runActive);
    bar->Enable(kRecord, !m_runActive);
    // The options and the layout are read by the worker while a run goes.
    bar->Enable(kProperties, !m_runActive);
    bar->Enable(kChooseLayout, !m_runActive);
    bar->Enable(kConfigureLayout, !m_runActive && m_layout != nullptr);
}

void InterpreterFrame::onCommand(wxCommandEvent& event) {
    if (runGroundItem(*m_canvas, event.GetId(), kHideGround))
        return;
    switch (event.GetId()) {
        case kLoadGraph:
            loadGraph();
            return;
        case kSaveGraph:
            saveGraph();
            return;
        case kScreenshot:
            screenshot();
            return;
        case kRecord:
            recordNextRun();
            return;
        case kExit:
            Close();
            return;
        case kStart:
            startUnit();
            return;
        case kStep:
            return step();
        case kStop:
            return stop();
        case kProperties:
            properties();
            return;
        case kChooseLayout:
            chooseLayout();
            return;
        case kConfigureLayout:
            configureLayout();
            return;
        case kBackground:
            return chooseBackground();
        default:
            return;
    }
}

wxString InterpreterFrame::status() const {
    return GetStatusBar()->GetStatusText(0);
}

wxString InterpreterFrame::figures() const {
    return GetStatusBar()->GetStatusText(1);
}

void InterpreterFrame::setStatus(const wxString& text) {
    GetStatusBar()->SetStatusText(text, 0);
}

void InterpreterFrame::showFigures() {
    if (m_runActive && m_canvas->cameraMoves() == m_cameraMovesAtStart)
        m_canvas->zoomToFit();
    const InterpreterListener::Figures f = m_listener.figures();
    const double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - m_runStart).count();
    const double rate = seconds > 0 ? static_cast<double>(f.steps) / seconds : 0.0;
    GetStatusBar()->SetStatusText(
        wxString::Format("%ld steps, %.1f steps/s, %zu vertices, %zu edges", f.steps, rate,
                         f.vertices, f.edges),
        1);
    m_lastFigures = std::chrono::steady_clock::now();
}

void InterpreterFrame::setSnooze(int snooze) {
    m_listener.setSnooze(snooze);
    if (snooze >= 0)
        m_listener.setSnoozeAfterGo(snooze);
}

void InterpreterFrame::showScene() {
    m_canvas->setScene(nullptr);
    m_listener.setScene(nullptr);
    m_scene = std::make_unique<GraphScene>(m_modelFolder);
    m_scene->build(*m_graph);
    m_listener.setScene(m_scene.get());
    m_canvas->setScene(m_scene->root());
}

bool InterpreterFrame::loadGraph(const std::string& fileName) {
    if (m_runActive)
        return false;
    const std::string name = m_prompts->fileNameOr(fileName, this, graphFilter, "dg", false);
    if (name.empty())
        return false;
    // The reader has written why a load failed to the console.
    std::unique_ptr<DirectedGraph> loaded = vellum::loadGraph(name);
    if (!loaded) {
        console() << "The interpreter kept its graph: '" << name << "' could not be loaded.\n";
        return false;
    }
    // The listener holds the graph by reference: the new one takes the old one's place.
    m_canvas->setScene(nullptr);
    m_listener.setScene(nullptr);
    m_scene.reset();
    m_graph->swap(*loaded);
    loaded.reset();
    setOutUnplaced(*m_graph);
    // Model files are found beside the graph file.
    m_modelFolder = folderOf(name);
    showScene();
    m_canvas->zoomToFit();
    return true;
}

bool InterpreterFrame::saveGraph(const std::string& fileName) {
    if (m_runActive)
        return false;
    const std::string name = m_prompts->fileNameOr(fileName, this, graphFilter, "dg", true);
    if (name.empty())
        return false;
    ConsoleCapture report(true);
    if (vellum::saveGraph(*m_graph, name))
        return true;
    m_prompts->message(this, wxString::FromUTF8(report.text()), "Alert", wxOK | wxICON_ERROR);
    return false;
}

bool InterpreterFrame::screenshot(const std::string& fileName) {
    return saveCanvasScreenshot(*this, *m_prompts, *m_canvas, fileName);
}

bool InterpreterFrame::recordNextRun(const std::string& folder) {
    if (m_runActive)
        return false;
    std::string name = folder;
    if (name.empty())
        name = m_prompts->folderName(this, "Folder for the pictures of the next run").utf8_string();
    if (name.empty())
        return false;
    std::string error;
    std::optional<StepPictureWriter> pictures = StepPictureWriter::open(name, error);
    if (!pictures) {
        m_prompts->message(this, wxString::FromUTF8(error), "Alert", wxOK | wxICON_ERROR);
        return false;
    }
    m_pictures = std::move(pictures);
    console() << "The next run is recorded in '" << name << "'.\n";
    return true;
}

void InterpreterFrame::recordPicture(long number) {
    if (m_pictures) {
        std::string error;
        if (m_pictures->write(static_cast<int>(number), m_canvas->screenshot(), error)) {
            ++m_picturesWritten;
        } else {
            // The run goes on unrecorded rather than stopping for a full disk.
            console() << "The recording stopped: " << error << "\n";
            m_listener.setRecording(false);
        }
    }
    m_listener.pictureTaken();
}

bool InterpreterFrame::startUnit() {
    const std::string file = m_prompts->fileName(this, moduleFilter, "mod", false).utf8_string();
    if (file.empty())
        return false;
    const koralModule* module = loadModule(file);
    if (module == nullptr)
        return false;
    UnitChooserDialog chooser(this, *module);
    if (m_prompts->showModal(chooser) != wxID_OK || chooser.unit() == nullptr)
        return false;
    return start(*chooser.unit());
}

bool InterpreterFrame::startUnit(const std::string& moduleFile, const std::string& unitName) {
    const koralModule* module = loadModule(moduleFile);
    if (module == nullptr)
        return false;
    const koralUnit* unit = module->findUnit(unitName);
    if (unit == nullptr) {
        m_prompts->message(this,
                           "The module '" + wxString::FromUTF8(moduleFile) + "' has no unit '" +
                               wxString::FromUTF8(unitName) + "'!",
                           "Alert", wxOK | wxICON_ERROR);
        return false;
    }
    return start(*unit);
}

const koralModule* InterpreterFrame::loadModule(const std::string& file) {
    // A run that goes keeps the search path it started with; this module's serves only to load
    // it then.
    std::unique_ptr<ModuleFolder> forLoading;
    if (m_runActive) {
        forLoading = std::make_unique<ModuleFolder>(file);
    } else {
        m_moduleFolder.reset();
        m_moduleFolder = std::make_unique<ModuleFolder>(file);
    }
    // The compiler has written what is wrong with the module to the console.
    const koralModule* module = ModuleCache::instance().loadFile(file);
    if (module == nullptr)
        m_prompts->message(this,
                           "Could not load the module '" + wxString::FromUTF8(file) +
                               "'!\nSee console output for more information!",
                           "Alert", wxOK | wxICON_ERROR);
    return module;
}

bool InterpreterFrame::start(const koralUnit& unit) {
    // A stopped run may still be ending; one that ended waits only for the watch to notice.
    if (m_runActive && (m_stopping || !m_cpu.running()))
        finishRun();
    if (!m_runActive) {
        m_listener.begin();
        m_picturesWritten = 0;
        m_listener.setRecording(m_pictures.has_value());
        if (m_pictures)
            recordPicture(0);  // the graph before the run
    }
    // While a run goes the interpreter refuses, and says so on the console.
    if (!m_cpu.start(&unit, m_graph.get(), &m_listener, false)) {
        if (m_pictures && !m_runActive) {
            console() << "Not recorded: nothing ran.\n";
            m_pictures.reset();
        }
        m_prompts->message(this, startFailure, "Alert", wxOK | wxICON_ERROR);
        return false;
    }
    m_runActive = true;
    m_stopping = false;
    m_runStart = std::chrono::steady_clock::now();
    m_cameraMovesAtStart = m_canvas->cameraMoves();
    setStatus(runningPrefix + wxString::FromUTF8(unit.name()));
    showFigures();
    enableCommands();
    m_watch.Start(watchMs);
    return true;
}

void InterpreterFrame::stop() {
    m_cpu.stop();
    m_listener.release();
    if (m_runActive)
        m_stopping = true;
    setStatus(idleStatus);
}

void InterpreterFrame::step() {
    m_listener.setSnooze(InterpreterListener::kStepMode);
}

void InterpreterFrame::showStepDialog() {
    if (!m_runActive || m_stopping || !m_listener.waitsForStep())
        return;
    InterpreterStepDialog dialog(this);
    switch (m_prompts->showModal(dialog)) {
        case InterpreterStepDialog::kStep:
            return m_listener.answer(InterpreterListener::StepAnswer::Step);
        case InterpreterStepDialog::kStop:
            stop();
            return m_listener.answer(InterpreterListener::StepAnswer::Stop);
        default:
            return m_listener.answer(InterpreterListener::StepAnswer::Go);
    }
}

void InterpreterFrame::onWatch(wxTimerEvent&) {
    if (m_runActive && !m_cpu.running())
        return finishRun();
    if (std::chrono::steady_clock::now() - m_lastFigures >= std::chrono::milliseconds(figuresMs))
        showFigures();
}

void InterpreterFrame::finishRun() {
    m_cpu.wait();
    m_watch.Stop();
    m_runActive = false;
    m_stopping = false;
    if (m_listener.sceneStale())
        showScene();
    else
        m_listener.catchUp();
    m_canvas->requestRepaint();
    showFigures();
    setStatus(idleStatus);
    enableCommands();
    if (m_pictures) {
        console() << "Recorded " << m_picturesWritten << " pictures in '" << m_pictures->folder()
                  << "'.\n";
        m_pictures.reset();
        m_listener.setRecording(false);
    }
    if (m_runEnded)
        m_runEnded(m_cpu.outcome() == koralCPU::Outcome::Normal);
}

void InterpreterFrame::endRun() {
    if (!m_runActive)
        return;
    stop();
    finishRun();
}

void InterpreterFrame::useSettings(UserSettings* settings) {
    m_settings = settings;
    if (!m_settings)
        return;
    if (const std::optional<wxSize> size = m_settings->windowSize(settingsName))
        SetSize(*size);
    // A kept layout that no longer loads is said on the console, and the frame has none.
    if (const std::string layout = m_settings->choice("interpreter/layout"); !layout.empty())
        useLayout(layout);
}

void InterpreterFrame::onClose(wxCloseEvent& event) {
    if (m_settings)
        m_settings->setWindowSize(settingsName, GetSize());
    // The worker goes before the windows and the graph it uses.
    m_runEnded = nullptr;
    endRun();
    event.Skip();
}

void InterpreterFrame::showSource(const std::string& file, long begin, long end) {
    if (file.empty()) {
        if (m_source)
            m_source->Hide();
        return;
    }
    if (!m_source)
        m_source = new SourceDisplay(this);
    m_source->show(file, begin, end);
}

bool InterpreterFrame::properties() {
    if (m_runActive)
        return false;
    CpuPropertiesDialog dialog(this, m_listener.options());
    if (m_prompts->showModal(dialog) != wxID_OK)
        return false;
    return setOptions(dialog.options());
}

bool InterpreterFrame::setOptions(const InterpreterOptions& options) {
    if (m_runActive)
        return false;
    m_listener.setOptions(options);
    return true;
}

bool InterpreterFrame::chooseLayout() {
    if (m_runActive)
        return false;
    LayoutDialog dialog(this);
    if (m_layout)
        dialog.choose(m_layout->name());
    if (m_prompts->showModal(dialog) != wxID_OK || !dialog.library())
        return false;
    m_layout = dialog.takeLibrary();
    m_listener.setLayout(m_layout.get());
    enableCommands();
    if (m_settings)
        m_settings->setChoice("interpreter/layout", m_layout->name());
    return true;
}

bool InterpreterFrame::useLayout(const std::string& name) {
    if (m_runActive)
        return false;
    std::unique_ptr<LayoutLibrary> chosen;
    if (!name.empty()) {
        try {
            chosen = std::make_unique<LayoutLibrary>(name);
        } catch (const koralException& error) {
            console() << error.what() << "\n";
            return false;
        }
    }
    m_listener.setLayout(nullptr);
    m_layout = std::move(chosen);
    m_listener.setLayout(m_layout.get());
    enableCommands();
    return true;
}

bool InterpreterFrame::configureLayout() {
    if (m_runActive || !m_layout)
        return false;
    try {
        m_layout->configure();
    } catch (const koralException& error) {
        m_prompts->message(this, wxString::FromUTF8(error.what()), "Alert", wxOK | wxICON_ERROR);
        return false;
    }
    return true;
}

void InterpreterFrame::chooseBackground() {
    chooseCanvasBackground(*this, *m_prompts, *m_canvas);
}

}  // namespace vellum
