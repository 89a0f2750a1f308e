#include "gui/edit/EditHistory.h"

namespace vellum {

void EditHistory::record(std::unique_ptr<Entry> entry) {
    m_open.entries.push_back(std::move(entry));
    if (m_depth == 0)
        closeGroup();
}

void EditHistory::beginGroup() {
    ++m_depth;
}

void EditHistory::endGroup() {
    if (m_depth > 0 && --m_depth == 0)
        closeGroup();
}

void EditHistory::closeGroup() {
    if (m_open.entries.empty())
        return;
    m_open.id = ++m_lastStepId;
    m_done.push_back(std::move(m_open));
    m_open = Step{};
    m_undone.clear();
}

bool EditHistory::undo() {
    if (m_done.empty() || m_depth > 0)
        return false;
    Step step = std::move(m_done.back());
    m_done.pop_back();
    bool replayed = true;
    for (auto it = step.entries.rbegin(); it != step.entries.rend(); ++it)
        replayed = (*it)->undo() && replayed;
    m_undone.push_back(std::move(step));
    return replayed;
}

bool EditHistory::redo() {
    if (m_undone.empty() || m_depth > 0)
        return false;
    Step step = std::move(m_undone.back());
    m_undone.pop_back();
    bool replayed = true;
    for (auto& entry : step.entries)
        replayed = entry->redo() && replayed;
    m_done.push_back(std::move(step));
    return replayed;
}

void EditHistory::clear() {
    m_done.clear();
    m_undone.clear();
    m_open = Step{};
    m_savedStep = 0;
}

}  // namespace vellum
