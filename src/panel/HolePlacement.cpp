// Cutouts by geometry, and the placement of a new panel under the cursor.
#include "panel/HolePlacement.h"

#include "drawingdata/ModelSpace.h"
#include "drawingdata/Records.h"
#include "host/HostEditor.h"
#include "host/HostInput.h"
#include "host/db/GrReadValue.h"
#include "host/HostUi.h"
#include "panel/PanelRecord.h"

#include <algorithm>

CHole3dViewArray g_arrHole3dView;

void ClearHole3dViews(CHole3dViewArray& arr) {
    arr.clear();
}

namespace {

bool StrictlyInside(const AcDbExtents& ext, const CHole3dView& view) {
    const AcGePoint3d& lo = ext.minPoint();
    const AcGePoint3d& hi = ext.maxPoint();
    return lo.x > view.m_ptMin.x && lo.y > view.m_ptMin.y && view.m_ptMax.x > hi.x &&
           view.m_ptMax.y > hi.y;
}

} // namespace

void CollectHole3dViews(AcDbDatabase* pDb, CHole3dViewArray& arr) {
    if (!pDb)
        return;
    ForEachModelSpaceEntity(pDb, [&](AcDbObjectId id, AcDbEntity& ent) {
        AcDbExtents ext;
        if (!IsPanelSolid(&ent) || ent.getGeomExtents(ext) != Acad::eOk)
            return;
        auto pView = std::make_unique<CHole3dView>();
        pView->m_idPanel = id;
        pView->m_ptMin = ext.minPoint();
        pView->m_ptMax = ext.maxPoint();
        arr.push_back(std::move(pView));
    });
    if (arr.empty())
        return;
    ForEachModelSpaceEntity(pDb, [&](AcDbObjectId id, AcDbEntity& ent) {
        AcDbExtents ext;
        if (HasXData(&ent, kPanelApp) || ent.getGeomExtents(ext) != Acad::eOk)
            return;
        auto it = std::find_if(arr.begin(), arr.end(),
                               [&](const auto& pView) { return StrictlyInside(ext, *pView); });
        if (it != arr.end())
            (*it)->m_arrHoleIds.push_back(id);
    });
}

bool MoveEntity(AcDbObjectId id, double dx, double dy, double dz) {
    AcDbEntity* pEnt = nullptr;
    if (id.isNull() || acdbOpenObject(pEnt, id, AcDb::kForWrite) != Acad::eOk)
        return false;
    pEnt->transformBy(AcGeMatrix3d::translation(AcGeVector3d(dx, dy, dz)));
    pEnt->close();
    return true;
}

bool EraseEntity(AcDbObjectId id) {
    AcDbObject* pObj = nullptr;
    if (id.isNull() || acdbOpenObject(pObj, id, AcDb::kForWrite) != Acad::eOk)
        return false;
    pObj->erase();
    pObj->close();
    return true;
}

namespace {

enum class TRACK { Again, Accept, Discard, Sample };

// The editor's command numbers of pan, zoom and window zoom, as menus send them.
bool IsOneOf(int n, std::initializer_list<int> codes) {
    return std::find(codes.begin(), codes.end(), n) != codes.end();
}

TRACK MenuCommand(int nCode) {
    if (nCode == 0)
        return TRACK::Accept;
    if (IsOneOf(nCode, {1405, 562, 1414, 1451, 1419})) {
        acedCommandS({L"._RTPAN"});
        return TRACK::Sample;
    }
    if (IsOneOf(nCode, {1406, 552, 1415, 1454, 1452, 1420})) {
        acedCommandS({L"._RTZOOM"});
        return TRACK::Sample;
    }
    if (IsOneOf(nCode, {1494, 1503, 1542, 1544, 1512})) {
        acedCommandS({L"._RTZOOM", L"_W"});
        return TRACK::Sample;
    }
    return TRACK::Again;
}

TRACK ClassifyRead(int nType, const GRREAD_VALUE& value) {
    switch (nType) {
    case 2:
        return value.nKey == 13 || value.nKey == 32 ? TRACK::Accept : TRACK::Again;
    case 3:
        return TRACK::Accept;
    case 5:
        return TRACK::Sample;
    case 11:
        return MenuCommand(value.nKey);
    case 25:
        return TRACK::Discard;
    default:
        return TRACK::Again;
    }
}

} // namespace

bool TrackPanelToCursor(const AcDbObjectIdArray& ids) {
    acutPrintf(L"\n 选择插入点<Enter结束>:");
    AcGePoint3d ptLast;
    for (;;) {
        int nType = 0;
        GRREAD_VALUE value;
        TRACK action =
            acedGrRead(7, nType, value) == RTNORM ? ClassifyRead(nType, value) : TRACK::Discard;
        if (action == TRACK::Accept)
            return true;
        if (action == TRACK::Discard) {
            for (AcDbObjectId id : ids)
                EraseEntity(id);
            return false;
        }
        if (action != TRACK::Sample)
            continue;
        // A pan or zoom read carries a command number, not a position: it samples
        // where the cursor was last seen, so the panel stays put.
        AcGePoint3d pt = nType == 11 ? ptLast : value.pt;
        // Z never changes: the panel slides in its plane.
        for (AcDbObjectId id : ids)
            MoveEntity(id, pt.x - ptLast.x, pt.y - ptLast.y, 0.0);
        ptLast = AcGePoint3d(pt.x, pt.y, ptLast.z);
    }
}
