// A document's undo log: steps of database changes, the system variables the step set and the
// view, with the editor's groups (UNDO BEgin / End).
#pragma once

#include "editor/SysVars.h"
#include "host/db/AcDb.h"
#include "view/ViewState.h"

#include <map>
#include <string>
#include <vector>

class CUndoLog {
public:
    explicit CUndoLog(AcDbDatabase& db) : m_journal(db) {}

    // A command starts and ends. Every command has a step of its own, so
    // that a failed one can be taken back alone; the steps of a command and
    // the commands it runs form one undo unit, as do all steps of a group.
    void BeginCommand(const VIEW_STATE& view);
    void EndCommand();
    // UNDO BEgin: a group open already ends first. UNDO End: nothing without a group.
    void BeginGroup(const VIEW_STATE& view);
    void EndGroup();
    bool IsGroupOpen() const { return m_nGroupUnit != 0; }
    // Puts back the last step that changed anything; the running command's
    // own changes so far count as that step. False when nothing is left.
    bool UndoStep(CSysVarStore& vars, VIEW_STATE& view);
    // Takes back the running command's own step (it failed).
    void RollBack(CSysVarStore& vars, VIEW_STATE& view);
    // A system variable is about to change: its old value belongs to the step.
    void NoteVar(const std::wstring& strKey, const SYSVAR_VALUE& old);
    // Whether anything changed since the last save.
    bool IsModified() const { return m_bModified; }
    void SetSaved() { m_bModified = false; }
    size_t StepCount() const { return m_steps.size(); }

private:
    struct STEP {
        std::map<std::wstring, SYSVAR_VALUE> vars;
        VIEW_STATE view;
        int nUnit = 0; // steps of one unit are undone together
    };
    void Mark(const VIEW_STATE& view, int nUnit);
    bool LastIsEmpty() const;
    void Restore(CSysVarStore& vars, VIEW_STATE& view);

    AcDbUndoJournal m_journal;
    std::vector<STEP> m_steps; // one for each journal step
    std::vector<int> m_units;  // the unit of each running command, outermost first
    int m_nNextUnit = 1;
    int m_nGroupUnit = 0; // the open group's unit, 0 without one
    bool m_bRestoring = false;
    bool m_bModified = false;
};
