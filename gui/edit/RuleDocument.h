// RuleDocument: the rule editor's document without any window: a rule's left-hand and
// right-hand sides (each a GraphDocument, so the graph editor's tools work on them), its
// interface, references, variables and expressions, its name and application condition, its
// file, and one undo history for all of it: a command that changes both sides and the
// interface is one step.
//
// The sides carry the editor's look (shape, place, orientation, size of each vertex) as the
// graph editor's attributes do; what the rule file gets is the rule without them, unless the
// file had them or the user set them as attributes (fileRule()).
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "graph/DirectedGraphRule.h"
#include "graph/FileSpelling.h"
#include "graph/VariableBinding.h"
#include "gui/edit/EditHistory.h"
#include "gui/edit/GraphDocument.h"

namespace vellum {

enum class RuleSide { Left, Right };

// What a rule does with an element: keeps it (an interface pair, or a reference between two
// vertices), deletes it (left only) or creates it (right only).
enum class RuleRole { Kept, Deleted, Created };

class RuleDocument {
  public:
    // The internal attribute that names the look attributes of a vertex that belong to the
    // rule (read from its file or set by the user), separated by blanks.
    static constexpr const char* ownLookName = "__look__";
    static constexpr const char* untitledName = "untitled";
    // How elements the rule deletes (left only) and creates (right only) are shown; kept ones
    // show a colour of their own and their number, the same on both sides.
    static const TPXrgb deletedColour;
    static const TPXrgb createdColour;

    RuleDocument();
    ~RuleDocument();
    RuleDocument(const RuleDocument&) = delete;
    RuleDocument& operator=(const RuleDocument&) = delete;

    GraphDocument& side(RuleSide side) { return side == RuleSide::Left ? m_left : m_right; }
    const GraphMorphism& interface() const { return m_interface; }
    const std::string& name() const { return m_name; }
    const std::string& condition() const { return m_condition; }
    const std::string& fileName() const { return m_fileName; }  // empty: untitled
    bool modified() const { return m_history.modified(); }

    // An empty rule named "untitled", unmodified, with no history.
    void newRule();
    // Reads the rule file; on failure everything stays as it was and the result carries the
    // reader's report.
    EditResult load(const std::string& fileName);
    // Checks the rule as the reader would (an "Alert" with the reader's message, nothing
    // written), writes it, replacing the file only when all was written, and reads it back.
    EditResult save(const std::string& fileName);
    // Whether `attribute` of `element` is one the editor added to draw the element (a shape or
    // place that is not the rule's): fileRule() leaves those out.
    static bool isEditorLook(const GraphObject& element, const Attribute& attribute);
    // A copy of the rule as its file holds it.
    std::unique_ptr<DirectedGraphRule> fileRule() const;

    // Commands, each one undo step; those with a result refuse with the reason.
    EditResult setName(const std::string& name);
    EditResult setCondition(const std::string& text);
    // Both as one step; neither when either is refused.
    EditResult setProperties(const std::string& name, const std::string& condition);
    // The right-hand partner of a left-hand vertex (edge, with its ends kept first), made as a
    // copy of its label and attributes, and the pair in the interface; the existing partner if
    // there is one. Null when the element is no left-hand element.
    DirectedGraphVertex* keepOnRight(DirectedGraphVertex& left);
    DirectedGraphEdge* keepOnRight(DirectedGraphEdge& left);
    // Deletes a vertex with its edges, or an edge, with the interface pairs and references
    // that name them.
    bool remove(RuleSide side, GraphObject& element);
    EditResult setLabel(RuleSide side, GraphObject& element, const std::string& label);
    // An empty name removes the variable.
    EditResult setVariable(RuleSide side, GraphObject& element, const std::string& name);
    EditResult setForcedReference(RuleSide side, DirectedGraphVertex& vertex, bool forced);
    // `right` stands for `left` (null: for nothing).
    EditResult setReference(DirectedGraphVertex& right, DirectedGraphVertex* left);
    // Adds or replaces an attribute; with an expression the attribute holds its type's default
    // value and the expression text.
    EditResult setAttribute(RuleSide side, GraphObject& element,
                            std::unique_ptr<Attribute> attribute,
                            const std::optional<std::string>& expression = {});
    EditResult removeAttribute(RuleSide side, GraphObject& element, const std::string& name);

    bool canUndo() const { return m_history.canUndo(); }
    bool canRedo() const { return m_history.canRedo(); }
    bool undo();
    bool redo();

    // The other side's element that `element` stands with; null when it has none.
    GraphObject* partnerOf(RuleSide side, const GraphObject& element) const;
    RuleRole roleOf(RuleSide side, const GraphObject& element) const;
    // The number an element kept by the rule shows on both sides; 0 for the others.
    int numberOf(const GraphObject& element) const;
    std::vector<RuleVariable> variables() const { return declaredVariables(leftGraph()); }
    // Why the expression text would not work in this rule ("does not compile: ..."), empty
    // when it would.
    std::string expressionProblem(const std::string& text) const;

  private:
    class InterfaceChange;
    class TextChange;

    const DirectedGraph& leftGraph() const { return const_cast<GraphDocument&>(m_left).graph(); }
    bool isOn(RuleSide side, const GraphObject& element) const;
    // Records the interface as it is now against `before`, when it changed.
    void recordInterface(const GraphMorphism& before);
    void recordText(std::string& target, std::string text);
    // Numbers the kept elements again and shows both sides with their roles.
    void refreshDecorations();
    ElementDecoration decorationOf(RuleSide side, const GraphObject& element) const;
    EditResult editElement(RuleSide side, GraphObject& element,
                           const std::function<void(GraphObject&)>& edit);

    // The history first: the sides' taken elements go before the sides do (the destructor
    // clears it before anything else goes).
    EditHistory m_history;
    GraphDocument m_left{m_history};
    GraphDocument m_right{m_history};
    GraphMorphism m_interface;
    std::string m_name = untitledName;
    std::string m_condition;
    std::string m_fileName;
    std::unordered_map<const GraphObject*, int> m_numbers;  // kept elements, by refreshDecorations
    mutable FileSpelling m_spelling{FileSpelling::Format::Rule};
};

}  // namespace vellum
