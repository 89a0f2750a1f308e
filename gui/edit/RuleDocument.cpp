#include "gui/edit/RuleDocument.h"

#include <algorithm>
#include <map>
#include <sstream>

#include "base/Console.h"
#include "graph/AttributeExpression.h"
#include "graph/ExpressionCheck.h"
#include "graph/GlobMatch.h"
#include "graph/RuleCheck.h"
#include "graph/RuleObjectData.h"
#include "graph/RuleReader.h"
#include "graph/RuleWriter.h"
#include "graph/StringAttribute.h"
#include "gui/view/ElementLook.h"

namespace vellum {
namespace {

const char* const kLookNames[] = {look::representation, look::position, look::orientation,
                                  look::scale};

bool isLookName(const std::string& name) {
    for (const char* look : kLookNames)
        if (name == look)
            return true;
    return false;
}

std::vector<std::string> ownLook(const GraphObject& element) {
    std::vector<std::string> names;
    const auto* own =
        dynamic_cast<const StringAttribute*>(element.findAttribute(RuleDocument::ownLookName));
    if (own == nullptr)
        return names;
    std::istringstream words(own->value());
    for (std::string word; words >> word;)
        names.push_back(word);
    return names;
}

void addOwnLook(GraphObject& element, const std::string& name) {
    std::vector<std::string> names = ownLook(element);
    for (const std::string& known : names)
        if (known == name)
            return;
    std::string text;
    for (const std::string& known : names)
        text += known + " ";
    element.setAttribute(std::make_unique<StringAttribute>(RuleDocument::ownLookName, text + name));
}

// Notes which look attributes a vertex read from a file has, before the editor adds the others.
void noteOwnLook(DirectedGraph& side) {
    for (DirectedGraphVertex& vertex : side.vertices())
        for (const char* name : kLookNames)
            if (vertex.findAttribute(name) != nullptr)
                addOwnLook(vertex, name);
}

// The label and the attributes that belong to the rule, from `from` to its copy `to`.
void copyForFile(const GraphObject& from, GraphObject& to) {
    to.setLabel(from.label());
    for (const Attribute& attribute : from.attributes())
        if (!isInternalName(attribute.name()) && !RuleDocument::isEditorLook(from, attribute))
            to.addAttribute(attribute.clone());
    if (from.extension())
        to.setExtension(from.extension()->clone());
}

// Copies `from` into `to`, element by element; `twin` maps each element to its copy.
void copySide(const DirectedGraph& from, DirectedGraph& to,
              std::unordered_map<const GraphObject*, GraphObject*>& twin) {
    for (const DirectedGraphVertex& vertex : from.vertices()) {
        DirectedGraphVertex* copy = to.createVertex();
        copyForFile(vertex, *copy);
        twin[&vertex] = copy;
    }
    for (const DirectedGraphEdge& edge : from.edges()) {
        auto* source = static_cast<DirectedGraphVertex*>(twin[edge.source()]);
        auto* target = static_cast<DirectedGraphVertex*>(twin[edge.target()]);
        DirectedGraphEdge* copy = to.createEdge(source, target);
        copyForFile(edge, *copy);
        twin[&edge] = copy;
    }
}

// Places the vertices without a place: the left-hand side round a circle, each right-hand
// vertex that stands for a left-hand one at its partner's place, the others further round.
void placeSides(DirectedGraphRule& rule) {
    DirectedGraph& left = rule.editLeftSide();
    DirectedGraph& right = rule.editRightSide();
    const std::size_t count = left.vertexCount() + right.vertexCount();
    std::size_t next = 0;
    for (DirectedGraphVertex& vertex : left.vertices())
        placeOnCircle(vertex, next++, count);
    for (DirectedGraphVertex& vertex : right.vertices()) {
        if (readPosition(vertex))
            continue;
        DirectedGraphVertex* partner = rule.interface().partnerOf(&vertex);
        if (partner == nullptr)
            partner = referenceOf(vertex);
        if (std::optional<TPXp3> at = partner ? readPosition(*partner) : std::nullopt)
            writePosition(vertex, *at);
        else
            placeOnCircle(vertex, next++, count);
    }
}

// Distinct colours for kept elements, none of them red or green, which tell deleted and created
// elements.
TPXrgb keptColour(int number) {
    static const TPXrgb palette[] = {{0.2, 0.5, 1},    {1, 0.85, 0.2}, {0.85, 0.4, 0.95},
                                     {0.3, 0.9, 0.95}, {1, 0.6, 0.15}, {0.6, 0.6, 1}};
    return palette[(number - 1) % 6];
}

}  // namespace

const TPXrgb RuleDocument::deletedColour{0.95, 0.2, 0.2};
const TPXrgb RuleDocument::createdColour{0.2, 0.85, 0.3};

// The interface before and after a command.
class RuleDocument::InterfaceChange : public EditHistory::Entry {
  public:
    InterfaceChange(RuleDocument& document, GraphMorphism before)
        : m_document(document), m_before(std::move(before)), m_after(document.m_interface) {}
    bool undo() override {
        m_document.m_interface = m_before;
        return true;
    }
    bool redo() override {
        m_document.m_interface = m_after;
        return true;
    }

  private:
    RuleDocument& m_document;
    GraphMorphism m_before, m_after;
};

// The name or the condition before and after a command.
class RuleDocument::TextChange : public EditHistory::Entry {
  public:
    TextChange(std::string& target, std::string after)
        : m_target(target), m_before(target), m_after(std::move(after)) {}
    bool undo() override {
        m_target = m_before;
        return true;
    }
    bool redo() override {
        m_target = m_after;
        return true;
    }

  private:
    std::string& m_target;
    std::string m_before, m_after;
};

RuleDocument::RuleDocument() {
    m_left.setDecorator([this](const GraphObject& e) { return decorationOf(RuleSide::Left, e); });
    m_right.setDecorator([this](const GraphObject& e) { return decorationOf(RuleSide::Right, e); });
}

RuleDocument::~RuleDocument() {
    m_history.clear();
}

void RuleDocument::newRule() {
    m_history.clear();
    m_interface.clear();
    DirectedGraph empty;
    m_left.adopt(empty);
    empty.clear();
    m_right.adopt(empty);
    m_name = untitledName;
    m_condition.clear();
    m_fileName.clear();
    refreshDecorations();
}

EditResult RuleDocument::load(const std::string& fileName) {
    ConsoleCapture report(true);
    std::unique_ptr<DirectedGraphRule> rule = loadRule(fileName);
    if (!rule)
        return EditResult::failure("Alert", report.text());
    m_history.clear();
    noteOwnLook(rule->editLeftSide());
    noteOwnLook(rule->editRightSide());
    placeSides(*rule);
    // The sides take the very elements the interface and the references point at.
    m_left.adopt(rule->editLeftSide());
    m_right.adopt(rule->editRightSide());
    m_interface = rule->interface();
    m_name = rule->name();
    m_condition = rule->condition();
    m_fileName = fileName;
    m_history.markSaved();
    refreshDecorations();
    return EditResult::success();
}

bool RuleDocument::isEditorLook(const GraphObject& element, const Attribute& attribute) {
    if (!isLookName(attribute.name()))
        return false;
    const std::vector<std::string> own = ownLook(element);
    return std::find(own.begin(), own.end(), attribute.name()) == own.end();
}

std::unique_ptr<DirectedGraphRule> RuleDocument::fileRule() const {
    auto rule = std::make_unique<DirectedGraphRule>();
    rule->setName(m_name);
    rule->setCondition(m_condition);
    std::unordered_map<const GraphObject*, GraphObject*> twin;
    copySide(leftGraph(), rule->editLeftSide(), twin);
    copySide(const_cast<GraphDocument&>(m_right).graph(), rule->editRightSide(), twin);
    for (DirectedGraphVertex& vertex : rule->editRightSide().vertices())
        if (DirectedGraphVertex* left = referenceOf(vertex))
            vellum::setReference(vertex, static_cast<DirectedGraphVertex*>(twin[left]));
    auto copyOf = [&twin](const auto* element) {
        using Element = std::remove_const_t<std::remove_pointer_t<decltype(element)>>;
        return element ? static_cast<Element*>(twin[element]) : nullptr;
    };
    GraphMorphism& interface = rule->editInterface();
    for (const VertexPair& pair : m_interface.vertexPairs())
        interface.addVertexPair(copyOf(pair.left), copyOf(pair.right));
    for (const EdgePair& pair : m_interface.edgePairs())
        interface.addEdgePair(copyOf(pair.left), copyOf(pair.right));
    return rule;
}

EditResult RuleDocument::save(const std::string& fileName) {
    const std::unique_ptr<DirectedGraphRule> rule = fileRule();
    if (std::string refusal = readerRefusal(*rule); !refusal.empty())
        return EditResult::failure("Alert", refusal);
    ConsoleCapture report(true);
    if (!saveRule(*rule, fileName))
        return EditResult::failure("Alert", report.text());
    if (!loadRule(fileName))
        return EditResult::failure(
            "Alert",
            "The file '" + fileName + "' was written but does not read back:\n" + report.text());
    m_fileName = fileName;
    m_history.markSaved();
    return EditResult::success();
}

void RuleDocument::recordText(std::string& target, std::string text) {
    if (target == text)
        return;
    auto change = std::make_unique<TextChange>(target, text);
    target = std::move(text);
    m_history.record(std::move(change));
}

EditResult RuleDocument::setName(const std::string& name) {
    if (std::string reason = m_spelling.name(name); !reason.empty())
        return EditResult::failure("Warning", reason);
    recordText(m_name, name);
    return EditResult::success();
}

EditResult RuleDocument::setCondition(const std::string& text) {
    if (!text.empty())
        if (std::string reason = expressionProblem(text); !reason.empty())
            return EditResult::failure("Warning", "The application condition " + reason);
    recordText(m_condition, text);
    return EditResult::success();
}

EditResult RuleDocument::setProperties(const std::string& name, const std::string& condition) {
    if (std::string reason = m_spelling.name(name); !reason.empty())
        return EditResult::failure("Warning", reason);
    if (!condition.empty())
        if (std::string reason = expressionProblem(condition); !reason.empty())
            return EditResult::failure("Warning", "The application condition " + reason);
    EditHistory::Group step(m_history);
    recordText(m_name, name);
    recordText(m_condition, condition);
    return EditResult::success();
}

std::string RuleDocument::expressionProblem(const std::string& text) const {
    if (std::string reason = m_spelling.expression(text); !reason.empty())
        return reason;
    return checkExpression(text, variables()).reason;
}

void RuleDocument::recordInterface(const GraphMorphism& before) {
    const auto same = [](const auto& a, const auto& b) {
        return a.size() == b.size() &&
               std::equal(a.begin(), a.end(), b.begin(),
                          [](auto& x, auto& y) { return x.left == y.left && x.right == y.right; });
    };
    if (same(before.vertexPairs(), m_interface.vertexPairs()) &&
        same(before.edgePairs(), m_interface.edgePairs()))
        return;
    m_history.record(std::make_unique<InterfaceChange>(*this, before));
}

bool RuleDocument::isOn(RuleSide side, const GraphObject& element) const {
    return const_cast<RuleDocument*>(this)->side(side).graph().contains(element);
}

DirectedGraphVertex* RuleDocument::keepOnRight(DirectedGraphVertex& left) {
    if (!isOn(RuleSide::Left, left))
        return nullptr;
    if (DirectedGraphVertex* partner = m_interface.imageOf(&left))
        return partner;
    EditHistory::Group step(m_history);
    const VertexLook look = readVertexLook(left);
    DirectedGraphVertex* right = m_right.insertVertex(look.representation, look.position);
    m_right.changeContents(*right, [&left](GraphObject& copy) {
        copy.setLabel(left.label());
        for (const Attribute& attribute : left.attributes())
            if (!isInternalName(attribute.name()) && !copy.findAttribute(attribute.name()))
                copy.addAttribute(attribute.clone());
    });
    const GraphMorphism before = m_interface;
    m_interface.addVertexPair(&left, right);
    recordInterface(before);
    refreshDecorations();
    return right;
}

DirectedGraphEdge* RuleDocument::keepOnRight(DirectedGraphEdge& left) {
    if (!isOn(RuleSide::Left, left))
        return nullptr;
    if (DirectedGraphEdge* partner = m_interface.imageOf(&left))
        return partner;
    EditHistory::Group step(m_history);
    DirectedGraphVertex* source = keepOnRight(*left.source());
    DirectedGraphVertex* target = keepOnRight(*left.target());
    DirectedGraphEdge* right = m_right.connect(*source, *target);
    if (right == nullptr)
        return nullptr;
    m_right.changeContents(*right, [&left](GraphObject& copy) {
        copy.setLabel(left.label());
        for (const Attribute& attribute : left.attributes())
            if (!isInternalName(attribute.name()))
                copy.addAttribute(attribute.clone());
    });
    const GraphMorphism before = m_interface;
    m_interface.addEdgePair(&left, right);
    recordInterface(before);
    refreshDecorations();
    return right;
}

bool RuleDocument::remove(RuleSide side, GraphObject& element) {
    if (!isOn(side, element))
        return false;
    EditHistory::Group step(m_history);
    const GraphMorphism before = m_interface;
    std::vector<const GraphObject*> gone{&element};
    if (element.kind() == GraphObjectKind::Vertex) {
        auto& vertex = static_cast<DirectedGraphVertex&>(element);
        for (const DirectedGraphEdge& edge : vertex.outgoing())
            gone.push_back(&edge);
        for (const DirectedGraphEdge& edge : vertex.incoming())
            gone.push_back(&edge);
    }
    const bool left = side == RuleSide::Left;
    auto named = [&](const GraphObject* object) {
        return std::find(gone.begin(), gone.end(), object) != gone.end();
    };
    auto& vertices = m_interface.vertexPairs();
    vertices.erase(
        std::remove_if(vertices.begin(), vertices.end(),
                       [&](const VertexPair& p) { return named(left ? p.left : p.right); }),
        vertices.end());
    auto& edges = m_interface.edgePairs();
    edges.erase(std::remove_if(edges.begin(), edges.end(),
                               [&](const EdgePair& p) { return named(left ? p.left : p.right); }),
                edges.end());
    recordInterface(before);
    if (left && element.kind() == GraphObjectKind::Vertex)
        for (DirectedGraphVertex& right : m_right.graph().vertices())
            if (referenceOf(right) == &element)
                m_right.changeContents(right,
                                       [](GraphObject& e) { vellum::setReference(e, nullptr); });
    const bool removed = side == RuleSide::Left ? m_left.remove(element) : m_right.remove(element);
    refreshDecorations();
    return removed;
}

EditResult RuleDocument::editElement(RuleSide side, GraphObject& element,
                                     const std::function<void(GraphObject&)>& edit) {
    if (!isOn(side, element))
        return EditResult::failure("Alert", "The element is not in the rule.");
    EditResult result = this->side(side).changeContents(element, edit);
    refreshDecorations();
    return result;
}

EditResult RuleDocument::setLabel(RuleSide side, GraphObject& element, const std::string& label) {
    if (!label.empty())
        if (std::string reason = m_spelling.label(label); !reason.empty())
            return EditResult::failure("Warning", reason);
    return editElement(side, element, [&label](GraphObject& e) { e.setLabel(label); });
}

EditResult RuleDocument::setVariable(RuleSide side, GraphObject& element, const std::string& name) {
    if (!name.empty())
        if (std::string reason = m_spelling.name(name); !reason.empty())
            return EditResult::failure("Warning", reason);
    return editElement(side, element, [&name](GraphObject& e) { vellum::setVariable(e, name); });
}

EditResult RuleDocument::setForcedReference(RuleSide side, DirectedGraphVertex& vertex,
                                            bool forced) {
    return editElement(side, vertex,
                       [forced](GraphObject& e) { vellum::setForcedReference(e, forced); });
}

EditResult RuleDocument::setReference(DirectedGraphVertex& right, DirectedGraphVertex* left) {
    if (left != nullptr && !isOn(RuleSide::Left, *left))
        return EditResult::failure("Alert", "The vertex referred to is not on the left-hand side.");
    return editElement(RuleSide::Right, right,
                       [left](GraphObject& e) { vellum::setReference(e, left); });
}

EditResult RuleDocument::setAttribute(RuleSide side, GraphObject& element,
                                      std::unique_ptr<Attribute> attribute,
                                      const std::optional<std::string>& expression) {
    if (!attribute)
        return EditResult::failure("Warning", "No attribute given.");
    const std::string name = attribute->name();
    if (isInternalName(name))
        return EditResult::failure("Warning", "The name '" + name +
                                                  "' is the system's own: names that begin "
                                                  "and end with \"__\" are not saved");
    if (std::string reason = m_spelling.attribute(*attribute); !reason.empty())
        return EditResult::failure("Warning", reason);
    if (expression) {
        if (attribute->type() == AttributeType::Vector)
            return EditResult::failure("Warning", "A vector attribute has no expression form.");
        if (std::string reason = m_spelling.expression(*expression); !reason.empty())
            return EditResult::failure("Warning", reason);
        setExpression(*attribute, *expression);
    }
    return editElement(side, element, [&](GraphObject& e) {
        if (isLookName(name))
            addOwnLook(e, name);
        e.setAttribute(std::move(attribute));
    });
}

EditResult RuleDocument::removeAttribute(RuleSide side, GraphObject& element,
                                         const std::string& name) {
    if (!element.findAttribute(name))
        return EditResult::failure("Warning", "There is no attribute '" + name + "'.");
    return editElement(side, element, [&name](GraphObject& e) { e.removeAttribute(name); });
}

bool RuleDocument::undo() {
    if (m_left.gestureActive() || m_right.gestureActive())
        return false;
    const bool undone = m_history.undo();
    refreshDecorations();
    return undone;
}

bool RuleDocument::redo() {
    if (m_left.gestureActive() || m_right.gestureActive())
        return false;
    const bool redone = m_history.redo();
    refreshDecorations();
    return redone;
}

GraphObject* RuleDocument::partnerOf(RuleSide side, const GraphObject& element) const {
    const bool vertex = element.kind() == GraphObjectKind::Vertex;
    if (side == RuleSide::Left) {
        if (!vertex)
            return m_interface.imageOf(static_cast<const DirectedGraphEdge*>(&element));
        auto* left = static_cast<const DirectedGraphVertex*>(&element);
        if (DirectedGraphVertex* image = m_interface.imageOf(left))
            return image;
        for (DirectedGraphVertex& right : const_cast<GraphDocument&>(m_right).graph().vertices())
            if (referenceOf(right) == left)
                return &right;
        return nullptr;
    }
    if (!vertex)
        return m_interface.partnerOf(static_cast<const DirectedGraphEdge*>(&element));
    auto* right = static_cast<const DirectedGraphVertex*>(&element);
    if (DirectedGraphVertex* partner = m_interface.partnerOf(right))
        return partner;
    return referenceOf(*right);
}

RuleRole RuleDocument::roleOf(RuleSide side, const GraphObject& element) const {
    if (partnerOf(side, element) != nullptr)
        return RuleRole::Kept;
    return side == RuleSide::Left ? RuleRole::Deleted : RuleRole::Created;
}

int RuleDocument::numberOf(const GraphObject& element) const {
    const auto found = m_numbers.find(&element);
    return found == m_numbers.end() ? 0 : found->second;
}

void RuleDocument::refreshDecorations() {
    m_numbers.clear();
    int next = 0;
    auto number = [&](const GraphObject* left, const GraphObject* right) {
        if (left == nullptr || right == nullptr || m_numbers.count(left) || m_numbers.count(right))
            return;
        m_numbers[left] = m_numbers[right] = ++next;
    };
    for (const VertexPair& pair : m_interface.vertexPairs())
        number(pair.left, pair.right);
    for (const DirectedGraphVertex& right : m_right.graph().vertices())
        number(referenceOf(right), &right);
    for (const EdgePair& pair : m_interface.edgePairs())
        number(pair.left, pair.right);
    m_left.refreshAll();
    m_right.refreshAll();
}

ElementDecoration RuleDocument::decorationOf(RuleSide side, const GraphObject& element) const {
    ElementDecoration decoration;
    if (const int number = numberOf(element); number > 0 && partnerOf(side, element)) {
        decoration.colour = keptColour(number);
        decoration.labelPrefix = "(" + std::to_string(number) + ") ";
        return decoration;
    }
    decoration.colour = side == RuleSide::Left ? deletedColour : createdColour;
    return decoration;
}

}  // namespace vellum
