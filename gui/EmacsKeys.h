// The module editor's emacs-like key bindings: a table of actions and the keys that run them,
// written as in the user documentation ("c:e", "ESC;f", "c:x;u", "m:s:<"), and the state of a
// sequence being typed. Without toolkit types, so that the table and the sequences can be read
// and tested on their own; the editor turns its key events into KeyStrokes.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vellum {

enum class EditorAction {
    EndOfLine,
    BeginningOfLine,
    PreviousLine,
    NextLine,
    DeletePreviousCharacter,
    DeleteNextCharacter,
    ForwardCharacter,
    BackwardCharacter,
    ForwardWord,
    BackwardWord,
    KillWord,
    BackwardKillWord,
    BeginningOfFile,
    EndOfFile,
    NextPage,
    PreviousPage,
    DeleteToEndOfLine,
    PasteClipboard,
    Undo,
    Redo,
    CutClipboard,
    CopyClipboard,
};

// One key with its modifiers. `key` is a lower-case letter, a punctuation character as typed
// (with Shift: "<", not ","), or one of the named keys below.
struct KeyStroke {
    static constexpr int kEscape = -1;
    static constexpr int kEnd = -2;
    static constexpr int kHome = -3;
    static constexpr int kDelete = -4;  // DEL: the key that deletes backwards

    int key = 0;
    bool control = false;
    bool meta = false;
    bool alt = false;
    bool shift = false;

    bool operator==(const KeyStroke& other) const {
        return key == other.key && control == other.control && meta == other.meta &&
               alt == other.alt && shift == other.shift;
    }
};

struct KeyBinding {
    const char* action;  // its name, e.g. "end-of-line"
    const char* keys;    // e.g. "ESC;s:<"
};

// Every binding of the editor, in the order the documentation lists them.
const std::vector<KeyBinding>& moduleEditorBindings();

// The action of that name; none for an unknown one.
std::optional<EditorAction> editorActionNamed(const std::string& name);
// The strokes of a key text such as "c:x;u"; empty when it cannot be read.
std::vector<KeyStroke> parseKeys(const std::string& keys);

// The key sequence being typed: each stroke either completes a binding, continues one (an
// Escape or Control-x waits for its second key), or is none of the editor's own, which then
// leaves it to the text control. Alt acts as Meta for keys that only a Meta binding has.
class KeySequences {
  public:
    KeySequences();

    struct Outcome {
        enum class Kind { Action, Pending, Unbound } kind = Kind::Unbound;
        EditorAction action = EditorAction::EndOfLine;  // for Kind::Action
    };
    Outcome press(const KeyStroke& stroke);
    bool pending() const { return !typed_.empty(); }

  private:
    struct Row {
        std::vector<KeyStroke> strokes;
        EditorAction action;
    };
    std::vector<Row> rows_;
    std::vector<KeyStroke> typed_;  // a proper prefix of some row's strokes
};

}  // namespace vellum
