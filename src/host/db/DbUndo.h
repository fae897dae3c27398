// The undo journal of a database: before-images of the objects each step changes and the objects
// it made, so that a step can be put back exactly.
#pragma once

#include "host/db/DbCore.h"

#include <unordered_set>
#include <vector>

class AcDbUndoJournal {
public:
    // Attaches to the database for the journal's lifetime; one journal a database.
    explicit AcDbUndoJournal(AcDbDatabase& db);
    ~AcDbUndoJournal();
    AcDbUndoJournal(const AcDbUndoJournal&) = delete;
    AcDbUndoJournal& operator=(const AcDbUndoJournal&) = delete;

    // Starts a new step: later changes belong to it.
    void mark();
    // Puts back the changes of the last step and drops it. False when there is none.
    bool undoStep();
    // Steps that changed something, the open one included.
    bool lastStepIsEmpty() const { return m_steps.empty() || m_steps.back().images.empty(); }
    size_t stepCount() const { return m_steps.size(); }
    // Drops an empty last step so that it does not count as one.
    void dropEmptyStep();
    void clear();

    // Called by the database: an object opened for write, a new object.
    void noteWrite(AcDbObject* pObj);
    void noteAdded(AcDbStub* pStub);

private:
    struct IMAGE {
        AcDbStub* pStub = nullptr;
        AcDbObject* pBefore = nullptr; // null: the step made the object
        AcDbObjectId owner, extDict;
        bool bErased = false;
    };
    struct STEP {
        std::vector<IMAGE> images;
        std::unordered_set<AcDbStub*> seen;
    };
    static void Free(STEP& step);

    AcDbDatabase& m_db;
    std::vector<STEP> m_steps;
    bool m_bUndoing = false;
};
