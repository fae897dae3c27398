// Part records following the symbols across a file boundary, never overwriting what the
// receiving drawing knows.
#include "drawingdata/ProcessXdictInfo.h"

#include "drawingdata/DrawingRecords.h"
#include "drawingdata/LabelSplit.h"
#include "drawingdata/PartTables.h"
#include "drawingdata/SymbolReader.h"

#include <vector>

namespace {

const CPartBranchDataBase* FindBranchGroup(const CPartBranchArray& branches,
                                           const std::wstring& location,
                                           const std::wstring& label) {
    for (const CPartBranchDataBase* g : branches)
        if (g && g->location == location && g->label == label)
            return g;
    return nullptr;
}

const COnePartBom* FirstPart(const CPartBomDataBase& group) {
    for (const COnePartBom* p : group.parts)
        if (p)
            return p;
    return nullptr;
}

} // namespace

std::wstring SplitSymbolLabel(AcDbDatabase* pDb, const AcDbEntity* pEnt) {
    std::wstring label, handle, device, terminal;
    GetSymbolLabel(pDb, pEnt, label, handle);
    SplitDeviceLabel(label, device, terminal, GetSymbolSpecial(pEnt));
    return device;
}

void CProcessXdictInfo::ProcessInsertedDrawing() {
    AcDbDatabase *S = sourceDb, *T = targetDb;
    if (!S || !T)
        return;
    std::wstring locS, locT;
    GetDrawingLocation(S, locS);
    GetDrawingLocation(T, locT);
    CGetPartInfo info;
    CPartBomArray partsS, partsT;
    CPartBranchArray branchesS;
    info.ReadPartTable(S, sourcePath, sourceSaved, locS, partsS);
    info.CollectPartBranches(S, sourcePath, sourceSaved, locS, branchesS);
    info.ReadPartTable(T, targetPath, targetSaved, locT, partsT);
    if (branchesS.empty())
        return;
    for (const CPartBomDataBase* g : partsS) {
        if (!g || !FindBranchGroup(branchesS, g->location, g->label))
            continue; // no symbol of the source uses this part
        std::wstring location = g->location;
        if (!location.empty() && location == locS)
            location.clear();
        if (location.empty())
            location = locT;
        std::wstring type, code, name, note, describe;
        FindPartData(location, g->label, targetPath, targetSaved, partsT, type, code, name, note,
                     describe);
        if (!type.empty() || !code.empty() || !name.empty())
            continue; // the target's own data wins
        if (const COnePartBom* pPart = FirstPart(*g))
            WritePartRecord(T, locT, location, g->label, *pPart);
    }
}

void CProcessXdictInfo::ProcessWrittenDrawing() {
    AcDbDatabase *W = targetDb, *L = sourceDb;
    if (!W || !L)
        return;
    std::wstring locW;
    GetDrawingLocation(W, locW);
    CPartBomArray partsW;
    CGetPartInfo().ReadPartTable(W, targetPath, targetSaved, locW, partsW);
    std::vector<const CPartBomDataBase*> found;
    for (AcDbObjectId id : entities) {
        AcDbEntity* pEnt = nullptr;
        if (id.isNull() || acdbOpenObject(pEnt, id, AcDb::kForRead) != Acad::eOk)
            continue;
        std::wstring location;
        GetSymbolLocation(W, pEnt, locW, location);
        std::wstring device = SplitSymbolLabel(W, pEnt);
        pEnt->close();
        for (const CPartBomDataBase* g : partsW)
            if (g && g->location == location && g->label == device) {
                found.push_back(g);
                break;
            }
    }
    for (const CPartBomDataBase* g : found) {
        std::wstring location = g->location == locW ? std::wstring() : g->location;
        if (const COnePartBom* pPart = FirstPart(*g))
            WritePartRecord(L, L"", location, g->label, *pPart);
    }
}
