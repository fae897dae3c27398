// A walk over the live entities of a database's model space, each open for read in turn.
#pragma once

#include "host/db/AcDb.h"

// visit(id, entity) is called for each entity that opens; the entity is
// closed after the call.
template <class F> void ForEachModelSpaceEntity(AcDbDatabase* pDb, F&& visit) {
    AcDbBlockTableRecord* pMs = nullptr;
    if (!pDb || acdbOpenObject(pMs, pDb->modelSpaceId(), AcDb::kForRead) != Acad::eOk)
        return;
    AcDbBlockTableRecordIterator* pIter = nullptr;
    pMs->newIterator(pIter);
    for (; !pIter->done(); pIter->step()) {
        AcDbEntity* pEnt = nullptr;
        if (pIter->getEntity(pEnt, AcDb::kForRead) != Acad::eOk)
            continue;
        visit(pEnt->objectId(), *pEnt);
        pEnt->close();
    }
    delete pIter;
    pMs->close();
}
