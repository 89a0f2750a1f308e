#include "gui/edit/GraphChange.h"

#include <algorithm>

#include "graph/AttributeExpression.h"
#include "graph/RuleObjectData.h"

namespace vellum {
namespace {

bool sameExpression(const Attribute& a, const Attribute& b) {
    const std::string* x = expressionOf(a);
    const std::string* y = expressionOf(b);
    return x == nullptr ? y == nullptr : y != nullptr && *x == *y;
}

bool sameRuleData(const ObjectExtension* a, const ObjectExtension* b) {
    const auto* x = dynamic_cast<const RuleObjectData*>(a);
    const auto* y = dynamic_cast<const RuleObjectData*>(b);
    const RuleObjectData none;
    const RuleObjectData& p = x ? *x : none;
    const RuleObjectData& q = y ? *y : none;
    return p.variable == q.variable && p.forcedReference == q.forcedReference &&
           p.reference == q.reference;
}

}  // namespace

ElementContents ElementContents::of(const GraphObject& element) {
    ElementContents contents;
    contents.label = element.label();
    for (const Attribute& attribute : element.attributes())
        contents.attributes.push_back(attribute.clone());
    if (element.extension())
        contents.extension = element.extension()->clone();
    return contents;
}

void ElementContents::applyTo(GraphObject& element) const {
    element.setLabel(label);
    std::vector<std::string> names;
    for (const Attribute& attribute : element.attributes())
        names.push_back(attribute.name());
    for (const std::string& name : names)
        element.removeAttribute(name);
    for (const auto& attribute : attributes)
        element.addAttribute(attribute->clone());
    element.setExtension(extension ? extension->clone() : nullptr);
}

bool ElementContents::operator==(const ElementContents& other) const {
    if (label != other.label || attributes.size() != other.attributes.size() ||
        !sameRuleData(extension.get(), other.extension.get()))
        return false;
    for (std::size_t i = 0; i < attributes.size(); ++i) {
        const Attribute& a = *attributes[i];
        const Attribute& b = *other.attributes[i];
        if (a.name() != b.name() || a.type() != b.type() || !a.equals(b) || !sameExpression(a, b))
            return false;
    }
    return true;
}

void TouchedElements::add(GraphObject& element) {
    if (m_seen.insert(&element).second)
        m_elements.push_back(&element);
}

SceneChanges TouchedElements::sceneChanges() const {
    SceneChanges changes;
    for (GraphObject* element : m_elements) {
        if (element->inGraph())
            changes.changed.push_back(element);
        else
            changes.removed.push_back(element->serial());
    }
    // Ends before their edges; serials follow graph order.
    std::sort(changes.changed.begin(), changes.changed.end(),
              [](const GraphObject* a, const GraphObject* b) {
                  const bool aVertex = a->kind() == GraphObjectKind::Vertex;
                  const bool bVertex = b->kind() == GraphObjectKind::Vertex;
                  if (aVertex != bVertex)
                      return aVertex;
                  return a->serial() < b->serial();
              });
    return changes;
}

struct GraphChange::Step {
    enum class Kind { Added, Taken, Contents };
    Kind kind;
    GraphObject* element;
    // The element while it is out of the graph (one of the two, by its kind).
    TakenVertex heldVertex;
    TakenEdge heldEdge;
    ElementContents before;
    ElementContents after;
};

GraphChange::GraphChange() = default;
GraphChange::~GraphChange() = default;
GraphChange::GraphChange(GraphChange&&) noexcept = default;
GraphChange& GraphChange::operator=(GraphChange&&) noexcept = default;

void GraphChange::added(GraphObject& element, TouchedElements& touched) {
    auto step = std::make_unique<Step>();
    step->kind = Step::Kind::Added;
    step->element = &element;
    m_steps.push_back(std::move(step));
    touched.add(element);
}

bool GraphChange::take(DirectedGraph& graph, GraphObject& element, TouchedElements& touched) {
    auto step = std::make_unique<Step>();
    step->kind = Step::Kind::Taken;
    step->element = &element;
    if (!putOut(graph, *step, touched))
        return false;
    m_steps.push_back(std::move(step));
    return true;
}

void GraphChange::contents(GraphObject& element, ElementContents before, TouchedElements& touched) {
    auto step = std::make_unique<Step>();
    step->kind = Step::Kind::Contents;
    step->element = &element;
    step->before = std::move(before);
    step->after = ElementContents::of(element);
    m_steps.push_back(std::move(step));
    touched.add(element);
}

bool GraphChange::undo(DirectedGraph& graph, TouchedElements& touched) {
    for (auto it = m_steps.rbegin(); it != m_steps.rend(); ++it) {
        Step& step = **it;
        switch (step.kind) {
            case Step::Kind::Added:
                if (!putOut(graph, step, touched))
                    return false;
                break;
            case Step::Kind::Taken:
                if (!putBack(graph, step, touched))
                    return false;
                break;
            case Step::Kind::Contents:
                step.before.applyTo(*step.element);
                touched.add(*step.element);
                break;
        }
    }
    return true;
}

bool GraphChange::redo(DirectedGraph& graph, TouchedElements& touched) {
    for (auto& owned : m_steps) {
        Step& step = *owned;
        switch (step.kind) {
            case Step::Kind::Added:
                if (!putBack(graph, step, touched))
                    return false;
                break;
            case Step::Kind::Taken:
                if (!putOut(graph, step, touched))
                    return false;
                break;
            case Step::Kind::Contents:
                step.after.applyTo(*step.element);
                touched.add(*step.element);
                break;
        }
    }
    return true;
}

bool GraphChange::putOut(DirectedGraph& graph, Step& step, TouchedElements& touched) {
    if (step.element->kind() == GraphObjectKind::Vertex)
        step.heldVertex = graph.takeVertex(static_cast<DirectedGraphVertex*>(step.element));
    else
        step.heldEdge = graph.takeEdge(static_cast<DirectedGraphEdge*>(step.element));
    if (!step.heldVertex && !step.heldEdge)
        return false;
    touched.add(*step.element);
    return true;
}

bool GraphChange::putBack(DirectedGraph& graph, Step& step, TouchedElements& touched) {
    const bool back = step.element->kind() == GraphObjectKind::Vertex
                          ? graph.restoreVertex(step.heldVertex) != nullptr
                          : graph.restoreEdge(step.heldEdge) != nullptr;
    if (back)
        touched.add(*step.element);
    return back;
}

}  // namespace vellum
