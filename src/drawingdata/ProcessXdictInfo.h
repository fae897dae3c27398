// The hand-over of part records across a file boundary: into the current drawing after an
// insertion, into a new library drawing after it was written.
#pragma once

#include "host/db/AcDb.h"

#include <string>

// One hand-over, filled by the caller. The databases are borrowed: sourceDb
// is the library drawing, targetDb the working one.
class CProcessXdictInfo {
public:
    virtual ~CProcessXdictInfo() = default;

    // Copies the records of used parts from the source that the target doesn't know.
    void ProcessInsertedDrawing();
    // Copies the records of the selected symbols' devices from the target
    // (the working drawing) into the source (the new library drawing).
    void ProcessWrittenDrawing();

    AcDbObjectIdArray entities; // symbols selected for ProcessWrittenDrawing
    AcDbDatabase* sourceDb = nullptr;
    std::wstring sourcePath;
    int sourceSaved = 1;
    AcDbDatabase* targetDb = nullptr;
    std::wstring targetPath;
    int targetSaved = 0;
};

// The device of the symbol's label, cut by its special text.
std::wstring SplitSymbolLabel(AcDbDatabase* pDb, const AcDbEntity* pEnt);
