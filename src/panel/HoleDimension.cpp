// Snap and squaring of the cutout dimension.
#include "panel/HoleDimension.h"

#include "base/NumberText.h"

#include <cmath>

namespace {

constexpr double kSnapReach = 3.0;
constexpr double kOnEdge = 0.1;

double PlanarDistance(const AcGePoint3d& p, const AcGePoint3d& q) {
    return std::hypot(p.x - q.x, p.y - q.y);
}

} // namespace

double DistancePointToSegment(const AcGePoint3d& p, const AcGePoint3d& a, const AcGePoint3d& b) {
    double dx = b.x - a.x, dy = b.y - a.y;
    double dLength = std::hypot(dx, dy);
    if (dLength <= 0.01)
        return PlanarDistance(p, a);
    double t = ((p.x - a.x) * dx + (p.y - a.y) * dy) / (dLength * dLength);
    if (t < 0.0)
        return PlanarDistance(p, a);
    if (t > 1.0)
        return PlanarDistance(p, b);
    return PlanarDistance(p, AcGePoint3d(a.x + t * dx, a.y + t * dy, 0.0));
}

bool GetEntityCentre(AcDbObjectId id, AcGePoint3d& pt) {
    AcDbEntity* pEnt = nullptr;
    if (id.isNull() || acdbOpenObject(pEnt, id, AcDb::kForRead) != Acad::eOk)
        return false;
    AcDbExtents ext;
    Acad::ErrorStatus es = pEnt->getGeomExtents(ext);
    pEnt->close();
    const AcGePoint3d &lo = ext.minPoint(), &hi = ext.maxPoint();
    if (es != Acad::eOk || hi.x < lo.x || hi.y < lo.y || hi.z < lo.z)
        return false;
    pt = AcGePoint3d((lo.x + hi.x) / 2, (lo.y + hi.y) / 2, 0.0);
    return true;
}

bool IsPointOnPanelEdge(const AcGePoint3d& pt, AcDbObjectId idPanel) {
    AcDbEntity* pEnt = nullptr;
    if (acdbOpenObject(pEnt, idPanel, AcDb::kForRead) != Acad::eOk)
        return false;
    AcDbExtents ext;
    Acad::ErrorStatus es = pEnt->getGeomExtents(ext);
    pEnt->close();
    if (es != Acad::eOk)
        return false;
    // The host works in the world system: the extents need no translation.
    AcGePoint3d lo(ext.minPoint().x, ext.minPoint().y, 0.0);
    AcGePoint3d hi(ext.maxPoint().x, ext.maxPoint().y, 0.0);
    AcGePoint3d topLeft(lo.x, hi.y, 0.0), bottomRight(hi.x, lo.y, 0.0);
    // The bottom edge is tested at its corner only; its points fall to the vertical case anyway.
    return DistancePointToSegment(pt, topLeft, lo) < kOnEdge ||
           DistancePointToSegment(pt, bottomRight, hi) < kOnEdge ||
           DistancePointToSegment(pt, topLeft, hi) < kOnEdge || PlanarDistance(pt, lo) < kOnEdge;
}

AcGePoint3d SnapToPanelEdge(const AcGePoint3d& ptPick, const AcGePoint3d& c,
                            const std::wstring& strRealX, const std::wstring& strRealY,
                            double dRatio) {
    if (strRealX.empty() || strRealY.empty())
        return ptPick;
    double r = dRatio * 2.0;
    double dRight = c.x + TextToReal(strRealX) / r, dLeft = c.x - TextToReal(strRealX) / r;
    double dTop = c.y + TextToReal(strRealY) / r, dBottom = c.y - TextToReal(strRealY) / r;
    AcGePoint3d p = ptPick;
    if (std::fabs(p.x - dRight) < kSnapReach)
        p.x = dRight;
    if (std::fabs(p.x - dLeft) < kSnapReach)
        p.x = dLeft;
    if (std::fabs(p.y - dTop) < kSnapReach)
        p.y = dTop;
    if (std::fabs(p.y - dBottom) < kSnapReach)
        p.y = dBottom;
    return p;
}

void SquareUpToPanel(std::vector<CDimPointOfEnt>& arr) {
    if (arr.size() != 2)
        return;
    int nPanel = arr[0].m_strType == L"panelEnt" ? 0 : arr[1].m_strType == L"panelEnt" ? 1 : -1;
    if (nPanel < 0 || arr[1 - nPanel].m_strType == L"panelEnt")
        return;
    CDimPointOfEnt& panel = arr[nPanel];
    const AcGePoint3d& h = arr[1 - nPanel].m_ptDim;
    AcGePoint3d q = panel.m_ptDim;
    AcGePoint3d a(q.x, h.y, q.z);
    panel.m_ptDim = IsPointOnPanelEdge(a, panel.m_idEnt) ? a : AcGePoint3d(h.x, q.y, q.z);
}
