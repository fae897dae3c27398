// Undo steps over the database journal, with system variables and the view of each step.
#include "editor/UndoLog.h"

void CUndoLog::Mark(const VIEW_STATE& view, int nUnit) {
    if (!m_steps.empty() && LastIsEmpty()) {
        m_steps.back().view = view; // an empty step serves as the new one
        m_steps.back().nUnit = nUnit;
        return;
    }
    m_journal.mark();
    m_steps.push_back({{}, view, nUnit});
}

bool CUndoLog::LastIsEmpty() const {
    return m_steps.empty() || (m_steps.back().vars.empty() && m_journal.lastStepIsEmpty());
}

void CUndoLog::BeginCommand(const VIEW_STATE& view) {
    int nUnit = m_nGroupUnit ? m_nGroupUnit : (m_units.empty() ? m_nNextUnit++ : m_units.back());
    m_units.push_back(nUnit);
    Mark(view, nUnit);
}

void CUndoLog::EndCommand() {
    if (!LastIsEmpty())
        m_bModified = true;
    if (m_units.empty())
        return;
    m_units.pop_back();
    // The outer command goes on in a step of its own.
    if (!m_units.empty())
        Mark(m_steps.empty() ? VIEW_STATE() : m_steps.back().view,
             m_nGroupUnit ? m_nGroupUnit : m_units.back());
}

void CUndoLog::BeginGroup(const VIEW_STATE& view) {
    m_nGroupUnit = m_nNextUnit++;
    Mark(view, m_nGroupUnit);
}

void CUndoLog::EndGroup() {
    if (!m_nGroupUnit)
        return;
    m_nGroupUnit = 0;
    int nUnit = m_units.empty() ? m_nNextUnit++ : m_nNextUnit++;
    Mark(m_steps.empty() ? VIEW_STATE() : m_steps.back().view, nUnit);
    if (!m_units.empty())
        m_units.back() = nUnit;
}

void CUndoLog::NoteVar(const std::wstring& strKey, const SYSVAR_VALUE& old) {
    if (m_bRestoring || m_steps.empty())
        return;
    m_steps.back().vars.emplace(strKey, old);
}

void CUndoLog::Restore(CSysVarStore& vars, VIEW_STATE& view) {
    m_bRestoring = true;
    m_journal.undoStep();
    for (const auto& [name, value] : m_steps.back().vars)
        vars.Set(name, value);
    view = m_steps.back().view;
    m_steps.pop_back();
    m_bRestoring = false;
}

bool CUndoLog::UndoStep(CSysVarStore& vars, VIEW_STATE& view) {
    m_nGroupUnit = 0;
    auto dropEmpty = [this] {
        while (!m_steps.empty() && LastIsEmpty()) {
            m_journal.dropEmptyStep();
            m_steps.pop_back();
        }
    };
    dropEmpty();
    if (m_steps.empty())
        return false;
    int nUnit = m_steps.back().nUnit;
    while (!m_steps.empty() && m_steps.back().nUnit == nUnit) {
        Restore(vars, view);
        dropEmpty();
    }
    m_bModified = true;
    if (!m_units.empty()) {
        // The running command goes on in a new unit.
        m_units.back() = m_nNextUnit++;
        Mark(view, m_units.back());
    }
    return true;
}

void CUndoLog::RollBack(CSysVarStore& vars, VIEW_STATE& view) {
    if (m_steps.empty() || LastIsEmpty())
        return;
    int nUnit = m_steps.back().nUnit;
    Restore(vars, view);
    Mark(view, nUnit);
}
