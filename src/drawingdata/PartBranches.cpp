// The branch table of a drawing: each symbol label as a member of its (location, device) group.
#include "drawingdata/InnerSymbArray.h"
#include "drawingdata/LabelExpand.h"
#include "drawingdata/LabelSplit.h"
#include "drawingdata/ModelSpace.h"
#include "drawingdata/PartTables.h"
#include "drawingdata/SymbolReader.h"

#include "base/StrUtil.h"

#include <algorithm>

namespace {

// Makes a database the working one and gives the former back on every way out.
class CWorkingDatabaseSwitch {
public:
    explicit CWorkingDatabaseSwitch(AcDbDatabase* pDb)
        : m_pFormer(acdbHostApplicationServices()->workingDatabase()) {
        acdbHostApplicationServices()->setWorkingDatabase(pDb);
    }
    ~CWorkingDatabaseSwitch() { acdbHostApplicationServices()->setWorkingDatabase(m_pFormer); }
    CWorkingDatabaseSwitch(const CWorkingDatabaseSwitch&) = delete;
    CWorkingDatabaseSwitch& operator=(const CWorkingDatabaseSwitch&) = delete;

private:
    AcDbDatabase* m_pFormer;
};

struct SYMBOL_FACTS {
    std::wstring name, kind, location, label, special, handle;
    bool bInner = false;
};

COnePartBranch* MakeBranch(AcDbDatabase* pDb, const AcDbBlockReference& ref,
                           const SYMBOL_FACTS& facts, const std::wstring& one,
                           std::wstring& device) {
    std::wstring terminal;
    SplitDeviceLabel(one, device, terminal, facts.special);
    auto* p = new COnePartBranch;
    p->fullLabel = one;
    p->terminal = terminal;
    int nRest = static_cast<int>(one.size() - device.size() - terminal.size());
    p->separator = StrMid(one, static_cast<int>(device.size()), nRest);
    p->symbolName = facts.name;
    p->symbolKind = facts.kind;
    p->handle = facts.handle;
    p->rotation = RotationToDegrees(ref.rotation());
    GetSymbolTerminals(pDb, &ref, p->terminals);
    p->isMain = IsMainSymbol(&ref) ? 1 : 0;
    p->orderNo = GetSymbolOrderNo(&ref);
    AcDbExtents ext;
    if (ref.getGeomExtents(ext) == Acad::eOk)
        p->center = AcGePoint3d((ext.minPoint().x + ext.maxPoint().x) / 2,
                                (ext.minPoint().y + ext.maxPoint().y) / 2, 0);
    p->special = facts.bInner ? std::wstring(L"内部元件") : facts.special;
    return p;
}

void PlaceBranch(CPartBranchArray& out, const std::wstring& location, const std::wstring& device,
                 COnePartBranch* pBranch) {
    for (CPartBranchDataBase* g : out)
        if (g && g->location == location && g->label == device) {
            g->branches.Add(pBranch);
            return;
        }
    auto* g = out.Add(new CPartBranchDataBase);
    g->location = location;
    g->label = device;
    g->branches.Add(pBranch);
}

} // namespace

int CGetPartInfo::CollectPartBranches(AcDbDatabase* pDb, const std::wstring& path, int saved,
                                      const std::wstring& drawingLocation,
                                      CPartBranchArray& outBranches) {
    if (!pDb)
        return 0;
    CWorkingDatabaseSwitch working(pDb);
    CStringArray innerHandles;
    GetInnerSymbolHandles(pDb, innerHandles);
    ForEachModelSpaceEntity(pDb, [&](AcDbObjectId, const AcDbEntity& ent) {
        SYMBOL_FACTS facts;
        if (GetSymbolNameAndKind(&ent, facts.name, facts.kind) != 1)
            return;
        const auto& ref = static_cast<const AcDbBlockReference&>(ent);
        std::wstring textHandle;
        GetSymbolLocation(pDb, &ent, drawingLocation, facts.location);
        GetSymbolLabel(pDb, &ent, facts.label, textHandle);
        facts.special = GetSymbolSpecial(&ent);
        facts.handle = HandleText(&ent);
        facts.bInner =
            std::any_of(innerHandles.begin(), innerHandles.end(),
                        [&](const std::wstring& h) { return EqualsNoCase(h, facts.handle); });
        CStringArray singles;
        ExpandLabel(facts.label, singles);
        for (const std::wstring& one : singles) {
            std::wstring device;
            COnePartBranch* pBranch = MakeBranch(pDb, ref, facts, one, device);
            pBranch->path = path;
            pBranch->saved = saved;
            pBranch->drawingLocation = drawingLocation;
            PlaceBranch(outBranches, facts.location, device, pBranch);
        }
    });
    return 1;
}
