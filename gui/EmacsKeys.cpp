#include "gui/EmacsKeys.h"

#include <algorithm>
#include <cassert>
#include <cctype>
#include <utility>

namespace vellum {
namespace {

const std::pair<const char*, EditorAction> kActionNames[] = {
    {"end-of-line", EditorAction::EndOfLine},
    {"beginning-of-line", EditorAction::BeginningOfLine},
    {"previous-line", EditorAction::PreviousLine},
    {"next-line", EditorAction::NextLine},
    {"delete-previous-character", EditorAction::DeletePreviousCharacter},
    {"delete-next-character", EditorAction::DeleteNextCharacter},
    {"forward-character", EditorAction::ForwardCharacter},
    {"backward-character", EditorAction::BackwardCharacter},
    {"forward-word", EditorAction::ForwardWord},
    {"backward-word", EditorAction::BackwardWord},
    {"kill-word", EditorAction::KillWord},
    {"backward-kill-word", EditorAction::BackwardKillWord},
    {"beginning-of-file", EditorAction::BeginningOfFile},
    {"end-of-file", EditorAction::EndOfFile},
    {"next-page", EditorAction::NextPage},
    {"previous-page", EditorAction::PreviousPage},
    {"delete-to-end-of-line", EditorAction::DeleteToEndOfLine},
    {"paste-clipboard", EditorAction::PasteClipboard},
    {"undo", EditorAction::Undo},
    {"redo", EditorAction::Redo},
    {"cut-clipboard", EditorAction::CutClipboard},
    {"copy-clipboard", EditorAction::CopyClipboard},
};

// One stroke: modifiers "c:", "m:", "a:", "s:" in any order, then a key name or one character.
std::optional<KeyStroke> parseStroke(std::string text) {
    KeyStroke stroke;
    while (text.size() > 2 && text[1] == ':') {
        switch (text[0]) {
            case 'c':
                stroke.control = true;
                break;
            case 'm':
                stroke.meta = true;
                break;
            case 'a':
                stroke.alt = true;
                break;
            case 's':
                stroke.shift = true;
                break;
            default:
                return std::nullopt;
        }
        text.erase(0, 2);
    }
    if (text == "ESC")
        stroke.key = KeyStroke::kEscape;
    else if (text == "END")
        stroke.key = KeyStroke::kEnd;
    else if (text == "HOME")
        stroke.key = KeyStroke::kHome;
    else if (text == "DEL")
        stroke.key = KeyStroke::kDelete;
    else if (text.size() == 1)
        stroke.key = std::tolower(static_cast<unsigned char>(text[0]));
    else
        return std::nullopt;
    return stroke;
}

bool startsWith(const std::vector<KeyStroke>& strokes, const std::vector<KeyStroke>& prefix) {
    return prefix.size() <= strokes.size() &&
           std::equal(prefix.begin(), prefix.end(), strokes.begin());
}

}  // namespace

const std::vector<KeyBinding>& moduleEditorBindings() {
    static const std::vector<KeyBinding> table = {
        {"end-of-line", "c:e"},
        {"end-of-line", "END"},
        {"beginning-of-line", "c:a"},
        {"beginning-of-line", "HOME"},
        {"previous-line", "c:p"},
        {"next-line", "c:n"},
        {"delete-previous-character", "c:h"},
        {"delete-next-character", "c:d"},
        {"forward-character", "c:f"},
        {"backward-character", "c:b"},
        {"forward-word", "m:f"},
        {"backward-word", "m:b"},
        {"kill-word", "m:d"},
        {"backward-kill-word", "m:DEL"},
        {"forward-word", "ESC;f"},
        {"backward-word", "ESC;b"},
        {"kill-word", "ESC;d"},
        {"backward-kill-word", "ESC;DEL"},
        {"beginning-of-file", "m:s:<"},
        {"end-of-file", "m:s:>"},
        {"beginning-of-file", "ESC;s:<"},
        {"end-of-file", "ESC;s:>"},
        {"next-page", "c:v"},
        {"previous-page", "m:v"},
        {"previous-page", "ESC;v"},
        {"delete-to-end-of-line", "c:k"},
        {"paste-clipboard", "c:y"},
        {"paste-clipboard", "a:v"},
        {"undo", "c:s:_"},
        {"redo", "c:s:+"},
        {"undo", "a:z"},
        {"undo", "c:x;u"},
        {"cut-clipboard", "c:w"},
        {"cut-clipboard", "a:x"},
        {"copy-clipboard", "m:w"},
        {"copy-clipboard", "ESC;w"},
        {"copy-clipboard", "a:c"},
    };
    return table;
}

std::optional<EditorAction> editorActionNamed(const std::string& name) {
    for (const auto& [actionName, action] : kActionNames)
        if (name == actionName)
            return action;
    return std::nullopt;
}

std::vector<KeyStroke> parseKeys(const std::string& keys) {
    std::vector<KeyStroke> strokes;
    std::size_t at = 0;
    while (at <= keys.size()) {
        const std::size_t end = std::min(keys.find(';', at), keys.size());
        const std::optional<KeyStroke> stroke = parseStroke(keys.substr(at, end - at));
        if (!stroke)
            return {};
        strokes.push_back(*stroke);
        at = end + 1;
    }
    return strokes;
}

KeySequences::KeySequences() {
    for (const KeyBinding& binding : moduleEditorBindings()) {
        const std::optional<EditorAction> action = editorActionNamed(binding.action);
        std::vector<KeyStroke> strokes = parseKeys(binding.keys);
        assert(action && !strokes.empty() && "every binding of the table can be read");
        if (action && !strokes.empty())
            rows_.push_back({std::move(strokes), *action});
    }
}

KeySequences::Outcome KeySequences::press(const KeyStroke& stroke) {
    typed_.push_back(stroke);
    bool continues = false;
    for (const Row& row : rows_) {
        if (row.strokes == typed_) {
            typed_.clear();
            return {Outcome::Kind::Action, row.action};
        }
        continues = continues || startsWith(row.strokes, typed_);
    }
    if (continues)
        return {Outcome::Kind::Pending};
    // A prefix followed by a key it does not bind: the prefix is dropped and the key counts on
    // its own.
    const bool hadPrefix = typed_.size() > 1;
    typed_.clear();
    if (hadPrefix)
        return press(stroke);
    // Most keyboards have no Meta key of their own (X puts Meta_L beside Alt), so Alt stands for
    // Meta where no Alt binding has the key: a:f is forward-word, a:v stays paste.
    if (stroke.alt) {
        KeyStroke meta = stroke;
        meta.alt = false;
        meta.meta = true;
        return press(meta);
    }
    return {};
}

}  // namespace vellum
