// EditHistory: an editor's unlimited undo and redo, shared by every part of one document (the
// graph editor's graph; a rule's two sides and its interface). Each command records what it
// changed as entries; entries recorded inside a group become one step, so a command that
// changes several parts is undone as a whole.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace vellum {

class EditHistory {
  public:
    // One recorded change that can be replayed both ways. False when what it changed is no
    // longer as it left it, which the history's order rules out.
    class Entry {
      public:
        virtual ~Entry() = default;
        virtual bool undo() = 0;
        virtual bool redo() = 0;
    };

    // Everything recorded while a group lives is one step; groups nest, the outermost counts.
    class Group {
      public:
        explicit Group(EditHistory& history) : m_history(history) { m_history.beginGroup(); }
        ~Group() { m_history.endGroup(); }
        Group(const Group&) = delete;
        Group& operator=(const Group&) = delete;

      private:
        EditHistory& m_history;
    };

    EditHistory() = default;
    EditHistory(const EditHistory&) = delete;
    EditHistory& operator=(const EditHistory&) = delete;

    // A change just made: a step of its own, or part of the open group. Forgets what was undone.
    void record(std::unique_ptr<Entry> entry);
    void beginGroup();
    void endGroup();

    bool canUndo() const { return !m_done.empty(); }
    bool canRedo() const { return !m_undone.empty(); }
    // Replays the newest step backwards (the newest undone step forwards); false when there is
    // none or an entry could not be replayed.
    bool undo();
    bool redo();

    // Forgets every step. Entries may hold elements taken out of a graph: clear the history
    // before that graph is cleared, swapped or destroyed.
    void clear();
    // Whether steps were done or undone since markSaved() (or since the history was cleared).
    bool modified() const { return newestStep() != m_savedStep; }
    void markSaved() { m_savedStep = newestStep(); }

  private:
    struct Step {
        std::uint64_t id = 0;
        std::vector<std::unique_ptr<Entry>> entries;
    };
    std::uint64_t newestStep() const { return m_done.empty() ? 0 : m_done.back().id; }
    void closeGroup();

    std::vector<Step> m_done;
    std::vector<Step> m_undone;
    Step m_open;  // the entries of the open group
    int m_depth = 0;
    std::uint64_t m_lastStepId = 0;
    std::uint64_t m_savedStep = 0;  // the newest step when last saved (0: none)
};

}  // namespace vellum
