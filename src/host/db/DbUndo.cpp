// Undo journal: the first write open of an object in a step keeps a whole copy of it.
#include "host/db/DbUndo.h"

#include "host/db/DbDatabase.h"
#include "host/db/DbEntity.h"

AcDbUndoJournal::AcDbUndoJournal(AcDbDatabase& db) : m_db(db) {
    m_db.m_pJournal = this;
}

AcDbUndoJournal::~AcDbUndoJournal() {
    clear();
    if (m_db.m_pJournal == this)
        m_db.m_pJournal = nullptr;
}

void AcDbUndoJournal::Free(STEP& step) {
    for (IMAGE& image : step.images)
        delete image.pBefore;
    step.images.clear();
    step.seen.clear();
}

void AcDbUndoJournal::clear() {
    for (STEP& step : m_steps)
        Free(step);
    m_steps.clear();
}

void AcDbUndoJournal::mark() {
    m_steps.emplace_back();
}

void AcDbUndoJournal::dropEmptyStep() {
    if (!m_steps.empty() && m_steps.back().images.empty())
        m_steps.pop_back();
}

void AcDbUndoJournal::noteWrite(AcDbObject* pObj) {
    if (m_bUndoing || m_steps.empty() || !pObj->m_pStub)
        return;
    STEP& step = m_steps.back();
    if (!step.seen.insert(pObj->m_pStub).second)
        return;
    IMAGE image;
    image.pStub = pObj->m_pStub;
    image.pBefore = pObj->journalCopy();
    if (!image.pBefore) {
        step.seen.erase(pObj->m_pStub);
        return;
    }
    // A copy of a polyline gets new vertex handles; the image keeps the old ones.
    if (auto* pPoly = dynamic_cast<AcDbHeavyPolyline*>(pObj))
        static_cast<AcDbHeavyPolyline*>(image.pBefore)->vertices() = pPoly->vertices();
    image.owner = pObj->ownerId();
    image.extDict = pObj->extensionDictionary();
    image.bErased = pObj->isErased();
    step.images.push_back(image);
}

void AcDbUndoJournal::noteAdded(AcDbStub* pStub) {
    if (m_bUndoing || m_steps.empty())
        return;
    STEP& step = m_steps.back();
    if (!step.seen.insert(pStub).second)
        return;
    IMAGE image;
    image.pStub = pStub;
    step.images.push_back(image);
}

bool AcDbUndoJournal::undoStep() {
    if (m_steps.empty())
        return false;
    m_bUndoing = true;
    STEP& step = m_steps.back();
    for (auto it = step.images.rbegin(); it != step.images.rend(); ++it) {
        AcDbStub* pStub = it->pStub;
        AcDbObject* pNow = pStub->pObject;
        if (!it->pBefore) {
            // Made by the step: gone again; the handle stays used.
            pStub->pObject = nullptr;
            delete pNow;
            continue;
        }
        AcDbObject* pBefore = it->pBefore;
        it->pBefore = nullptr;
        pBefore->m_pStub = pStub;
        pBefore->m_ownerId = it->owner;
        pBefore->m_extDictId = it->extDict;
        pBefore->m_bErased = it->bErased;
        pStub->pObject = pBefore;
        if (pNow)
            pNow->m_pStub = nullptr;
        delete pNow;
    }
    Free(step);
    m_steps.pop_back();
    m_bUndoing = false;
    return true;
}
