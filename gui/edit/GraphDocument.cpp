#include "gui/edit/GraphDocument.h"

#include <filesystem>
#include <utility>

#include "base/Console.h"
#include "graph/GlobMatch.h"
#include "graph/GraphReader.h"
#include "graph/GraphWriter.h"
#include "graph/StringAttribute.h"
#include "graph/VectorAttribute.h"
#include "graph/interchange/Interchange.h"
#include "gui/view/ElementLook.h"
#include "koral/KoralException.h"
#include "koral/KoralFrame.h"
#include "tpx/TPXquaternion.h"

namespace vellum {

namespace {

std::unique_ptr<Attribute> vector3(const char* name, const TPXp3& p) {
    return std::make_unique<VectorAttribute>(name, std::vector<double>{p.x(), p.y(), p.z()});
}

std::string folderOf(const std::string& fileName) {
    return std::filesystem::path(fileName).parent_path().string();
}

// The layout's progress reports: the scene follows the vertices, then the canvas redraws.
class LayoutNotifier : public KoralFrame {
  public:
    explicit LayoutNotifier(std::function<void()> progress) : m_progress(std::move(progress)) {}
    void notify(const FrameEvent&) override { m_progress(); }

  private:
    std::function<void()> m_progress;
};

}  // namespace

// One step of this document in the history: its change replayed on its graph, with the scene
// catching up.
class GraphDocument::Replay : public EditHistory::Entry {
  public:
    Replay(GraphDocument& document, GraphChange change)
        : m_document(document), m_change(std::move(change)) {}
    bool undo() override { return replay(false); }
    bool redo() override { return replay(true); }

  private:
    bool replay(bool forward) {
        TouchedElements touched;
        const bool replayed = forward ? m_change.redo(m_document.m_graph, touched)
                                      : m_change.undo(m_document.m_graph, touched);
        m_document.m_scene->update(touched.sceneChanges());
        return replayed;
    }

    GraphDocument& m_document;
    GraphChange m_change;
};

GraphDocument::GraphDocument() : GraphDocument(m_ownHistory) {}

GraphDocument::GraphDocument(EditHistory& history)
    : m_scene(std::make_unique<GraphScene>()), m_history(history) {
    m_scene->build(m_graph);
}

GraphDocument::~GraphDocument() {
    forgetHistory();
}

bool GraphDocument::modified() const {
    return m_history.modified();
}

void GraphDocument::forgetHistory() {
    m_gesture.reset();
    m_history.clear();
}

void GraphDocument::rebuildScene() {
    m_scene = std::make_unique<GraphScene>(folderOf(m_fileName));
    m_scene->setDecorator(m_decorator);
    m_scene->build(m_graph);
    m_selected = 0;
}

void GraphDocument::newGraph() {
    forgetHistory();
    m_graph.clear();
    m_fileName.clear();
    rebuildScene();
}

EditResult GraphDocument::load(const std::string& fileName) {
    ConsoleCapture report(true);
    std::unique_ptr<DirectedGraph> loaded = loadGraph(fileName);
    if (!loaded)
        return EditResult::failure("Alert", report.text());
    // The history's taken elements belong to the graph's label index: they go before it does.
    forgetHistory();
    m_graph.swap(*loaded);
    loaded.reset();
    m_fileName = fileName;
    // Shown as the picture commands show it; the positions reach the file only when saved.
    setOutUnplaced(m_graph);
    rebuildScene();
    return EditResult::success();
}

EditResult GraphDocument::importGraph(const std::string& fileName, bool rename, bool* renamable) {
    ConsoleCapture report(true);
    auto imported = std::make_unique<DirectedGraph>();
    ImportOptions options;
    options.rename = rename;
    if (!vellum::importGraph(fileName, *imported, options, renamable))
        return EditResult::failure("Alert", report.text());
    forgetHistory();
    m_graph.swap(*imported);
    imported.reset();
    // Saving asks for a graph file's name: the imported file is not written over.
    m_fileName.clear();
    setOutUnplaced(m_graph);
    rebuildScene();
    return EditResult::success();
}

EditResult GraphDocument::exportGraph(const std::string& fileName) const {
    ConsoleCapture report(true);
    if (!vellum::exportGraph(m_graph, fileName))
        return EditResult::failure("Alert", report.text());
    return EditResult::success();
}

EditResult GraphDocument::save(const std::string& fileName) {
    ConsoleCapture report(true);
    if (!saveGraph(m_graph, fileName))
        return EditResult::failure("Alert", report.text());
    if (!loadGraph(fileName))
        return EditResult::failure(
            "Alert",
            "The file '" + fileName + "' was written but does not read back:\n" + report.text());
    if (fileName != m_fileName) {
        m_fileName = fileName;
        // Model files are found beside the graph file.
        rebuildScene();
    }
    m_history.markSaved();
    return EditResult::success();
}

void GraphDocument::finish(GraphChange change, const TouchedElements& touched) {
    record(std::move(change));
    m_scene->update(touched.sceneChanges());
}

void GraphDocument::record(GraphChange change) {
    if (!change.empty())
        m_history.record(std::make_unique<Replay>(*this, std::move(change)));
}

void GraphDocument::setDecorator(GraphScene::Decorator decorator) {
    m_decorator = std::move(decorator);
    m_scene->setDecorator(m_decorator);
}

void GraphDocument::refreshAll() {
    TouchedElements touched;
    for (DirectedGraphVertex& vertex : m_graph.vertices())
        touched.add(vertex);
    for (DirectedGraphEdge& edge : m_graph.edges())
        touched.add(edge);
    m_scene->update(touched.sceneChanges());
}

void GraphDocument::adopt(DirectedGraph& graph) {
    forgetHistory();
    m_graph.swap(graph);
    m_fileName.clear();
    rebuildScene();
}

DirectedGraphVertex* GraphDocument::insertVertex(const std::string& representation,
                                                 const TPXp3& position) {
    DirectedGraphVertex* vertex = m_graph.createVertex();
    vertex->addAttribute(std::make_unique<StringAttribute>(look::representation, representation));
    vertex->addAttribute(vector3(look::position, position));
    GraphChange change;
    TouchedElements touched;
    change.added(*vertex, touched);
    finish(std::move(change), touched);
    return vertex;
}

DirectedGraphEdge* GraphDocument::connect(DirectedGraphVertex& source,
                                          DirectedGraphVertex& target) {
    DirectedGraphEdge* edge = m_graph.createEdge(&source, &target);
    if (!edge)
        return nullptr;
    GraphChange change;
    TouchedElements touched;
    change.added(*edge, touched);
    finish(std::move(change), touched);
    return edge;
}

bool GraphDocument::remove(GraphObject& element) {
    if (!isElement(element))
        return false;
    GraphChange change;
    TouchedElements touched;
    bool taken = true;
    if (element.kind() == GraphObjectKind::Vertex) {
        auto& vertex = static_cast<DirectedGraphVertex&>(element);
        std::vector<DirectedGraphEdge*> edges;
        for (DirectedGraphEdge& edge : vertex.incoming())
            edges.push_back(&edge);
        for (DirectedGraphEdge& edge : vertex.outgoing())
            if (!edge.isLoop())  // a loop is in both lists
                edges.push_back(&edge);
        for (DirectedGraphEdge* edge : edges)
            taken = taken && change.take(m_graph, *edge, touched);
    }
    taken = taken && change.take(m_graph, element, touched);
    if (!taken) {
        // A loop that a rule removed lingers at its vertex, which then cannot be taken.
        TouchedElements restored;
        change.undo(m_graph, restored);
        m_scene->update(restored.sceneChanges());
        return false;
    }
    finish(std::move(change), touched);
    return true;
}

DirectedGraphVertex* GraphDocument::copy(DirectedGraphVertex& vertex) {
    if (!isElement(vertex))
        return nullptr;
    DirectedGraphVertex* twin = m_graph.createVertex();
    twin->setLabel(vertex.label());
    for (const Attribute& attribute : vertex.attributes())
        if (!isInternalName(attribute.name()))
            twin->addAttribute(attribute.clone());
    const VertexLook look = readVertexLook(*twin);
    twin->setAttribute(vector3(look::position, look.position + TPXp3(copyOffset, 0, 0)));
    GraphChange change;
    TouchedElements touched;
    change.added(*twin, touched);
    finish(std::move(change), touched);
    return twin;
}

EditResult GraphDocument::changeContents(GraphObject& element,
                                         const std::function<void(GraphObject&)>& edit) {
    if (!isElement(element))
        return EditResult::failure("Alert", "The element is not in the graph.");
    ElementContents before = ElementContents::of(element);
    edit(element);
    GraphChange change;
    TouchedElements touched;
    if (!(ElementContents::of(element) == before))
        change.contents(element, std::move(before), touched);
    finish(std::move(change), touched);
    return EditResult::success();
}

EditResult GraphDocument::setLabel(GraphObject& element, const std::string& label) {
    if (!label.empty())
        if (std::string reason = m_spelling.label(label); !reason.empty())
            return EditResult::failure("Warning", reason);
    return changeContents(element, [&label](GraphObject& e) { e.setLabel(label); });
}

EditResult GraphDocument::setAttribute(GraphObject& element, std::unique_ptr<Attribute> attribute) {
    if (!attribute)
        return EditResult::failure("Warning", "No attribute given.");
    if (isInternalName(attribute->name()))
        return EditResult::failure("Warning", "The name '" + attribute->name() +
                                                  "' is the system's own: names that begin "
                                                  "and end with \"__\" are not saved");
    if (!GraphWriter::hasFileForm(attribute->type()))
        return EditResult::failure("Warning",
                                   "This type of attribute is not saved in a graph file");
    if (std::string reason = m_spelling.attribute(*attribute); !reason.empty())
        return EditResult::failure("Warning", reason);
    return changeContents(element,
                          [&attribute](GraphObject& e) { e.setAttribute(std::move(attribute)); });
}

EditResult GraphDocument::removeAttribute(GraphObject& element, const std::string& name) {
    if (!isElement(element))
        return EditResult::failure("Alert", "The element is not in the graph.");
    if (!element.findAttribute(name))
        return EditResult::failure("Warning", "There is no attribute '" + name + "'.");
    return changeContents(element, [&name](GraphObject& e) { e.removeAttribute(name); });
}

EditResult GraphDocument::setLook(DirectedGraphVertex& vertex, const std::string& representation,
                                  const std::optional<TPXrgb>& colour) {
    auto value = std::make_unique<StringAttribute>(look::representation, representation);
    if (std::string reason = m_spelling.attribute(*value); !reason.empty())
        return EditResult::failure("Warning", reason);
    return changeContents(vertex, [&](GraphObject& e) {
        e.setAttribute(std::move(value));
        if (colour)
            e.setAttribute(std::make_unique<VectorAttribute>(
                look::color, std::vector<double>{colour->r, colour->g, colour->b}));
    });
}

void GraphDocument::followPlacement(DirectedGraphVertex& vertex) {
    m_scene->followPlacement(vertex);
}

EditResult GraphDocument::layout(const LayoutLibrary& library, std::function<void()> redraw) {
    std::vector<std::pair<DirectedGraphVertex*, ElementContents>> before;
    before.reserve(m_graph.vertexCount());
    for (DirectedGraphVertex& vertex : m_graph.vertices())
        before.emplace_back(&vertex, ElementContents::of(vertex));
    LayoutNotifier notifier([this, &redraw] {
        for (DirectedGraphVertex& vertex : m_graph.vertices())
            followPlacement(vertex);
        if (redraw)
            redraw();
    });
    bool placed = false;
    std::string failure;
    try {
        library.configure();
        placed = library.completeLayout(m_graph, &notifier);
        if (!placed)
            failure = "The layout '" + library.name() + "' failed.";
    } catch (const koralException& e) {
        failure = e.message();
    }
    GraphChange change;
    TouchedElements touched;
    for (auto& [vertex, contents] : before) {
        if (!placed) {
            contents.applyTo(*vertex);
            touched.add(*vertex);
        } else if (!(ElementContents::of(*vertex) == contents)) {
            change.contents(*vertex, std::move(contents), touched);
        }
    }
    finish(std::move(change), touched);
    if (!placed)
        return EditResult::failure("Alert", failure);
    return EditResult::success();
}

bool GraphDocument::beginGesture(DirectedGraphVertex& vertex, Gesture gesture) {
    if (m_gesture || !isElement(vertex) || !m_scene->objectOf(vertex))
        return false;
    ElementContents before = ElementContents::of(vertex);
    const VertexLook look = readVertexLook(vertex);
    m_gesture = ActiveGesture{&vertex,       gesture,          std::move(before),
                              look.position, look.orientation, look.scale};
    return true;
}

void GraphDocument::updateGesture(const TPXp3& offset) {
    if (!m_gesture)
        return;
    ActiveGesture& g = *m_gesture;
    TPXp3 position = g.position, orientation = g.orientation, scale = g.scale;
    for (int axis = TPXp3::X; axis <= TPXp3::Z; ++axis) {
        switch (g.kind) {
            case Gesture::Move:
                if (!m_locks.translation[axis])
                    position[axis] += offset[axis];
                break;
            case Gesture::Rotate:
                if (!m_locks.rotation[axis])
                    orientation[axis] += offset[axis];
                break;
            case Gesture::Scale:
                scale[axis] *= offset[axis];
                break;
        }
    }
    writePlacement(*g.vertex, position, orientation, scale);
    followPlacement(*g.vertex);
}

void GraphDocument::commitGesture() {
    if (!m_gesture)
        return;
    ActiveGesture g = std::move(*m_gesture);
    m_gesture.reset();
    GraphChange change;
    TouchedElements touched;
    if (!(ElementContents::of(*g.vertex) == g.before))
        change.contents(*g.vertex, std::move(g.before), touched);
    // The scene followed while the gesture went on.
    record(std::move(change));
}

void GraphDocument::cancelGesture() {
    if (!m_gesture)
        return;
    m_gesture->before.applyTo(*m_gesture->vertex);
    followPlacement(*m_gesture->vertex);
    m_gesture.reset();
}

bool GraphDocument::undo() {
    if (m_gesture)
        return false;
    return m_history.undo();
}

bool GraphDocument::redo() {
    if (m_gesture)
        return false;
    return m_history.redo();
}

GraphObject* GraphDocument::elementOf(std::uint32_t identity) const {
    return identity == 0 ? nullptr : m_scene->elementOf(identity);
}

DirectedGraphVertex* GraphDocument::selectedVertex(EditResult& result) const {
    if (m_selected == 0) {
        result = EditResult::failure("Warning", editMessages::noVertexSelected);
        return nullptr;
    }
    GraphObject* element = elementOf(m_selected);
    if (!element || element->kind() != GraphObjectKind::Vertex || !m_graph.contains(*element)) {
        result = EditResult::failure("Alert", editMessages::vertexNotFound);
        return nullptr;
    }
    result = EditResult::success();
    return static_cast<DirectedGraphVertex*>(element);
}

}  // namespace vellum
