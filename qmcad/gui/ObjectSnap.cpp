// Snap points of curves near the cursor; entities are tried only when their extents are near.
#include "gui/ObjectSnap.h"

#include <cmath>
#include <vector>

namespace {

void CurvePoints(const AcDbEntity& e, std::vector<SNAP_POINT>& out) {
    auto add = [&](const AcGePoint3d& p, SNAP_KIND k) { out.push_back({p, k}); };
    auto mid = [](const AcGePoint3d& a, const AcGePoint3d& b) {
        return AcGePoint3d((a.x + b.x) / 2, (a.y + b.y) / 2, (a.z + b.z) / 2);
    };
    if (auto* p = dynamic_cast<const AcDbLine*>(&e)) {
        add(p->startPoint(), SNAP_KIND::End);
        add(p->endPoint(), SNAP_KIND::End);
        add(mid(p->startPoint(), p->endPoint()), SNAP_KIND::Mid);
    } else if (auto* p = dynamic_cast<const AcDbArc*>(&e)) {
        AcGePoint3d c = p->center();
        double r = p->radius(), a0 = p->startAngle(), a1 = p->endAngle();
        while (a1 <= a0)
            a1 += 2 * M_PI;
        for (double a : {a0, a1})
            add({c.x + r * std::cos(a), c.y + r * std::sin(a), c.z}, SNAP_KIND::End);
        double am = (a0 + a1) / 2;
        add({c.x + r * std::cos(am), c.y + r * std::sin(am), c.z}, SNAP_KIND::Mid);
        add(c, SNAP_KIND::Centre);
    } else if (auto* p = dynamic_cast<const AcDbCircle*>(&e)) {
        add(p->center(), SNAP_KIND::Centre);
    } else if (auto* p = dynamic_cast<const AcDbPolyline*>(&e)) {
        const auto& v = p->vertices();
        double z = p->elevation();
        for (size_t i = 0; i < v.size(); ++i) {
            AcGePoint3d a(v[i].pt.x, v[i].pt.y, z);
            add(a, SNAP_KIND::End);
            bool bLast = i + 1 == v.size();
            if (bLast && !p->isClosed())
                break;
            const auto& n = v[bLast ? 0 : i + 1];
            if (std::fabs(v[i].dBulge) < 1e-12)
                add(mid(a, AcGePoint3d(n.pt.x, n.pt.y, z)), SNAP_KIND::Mid);
        }
    }
}

} // namespace

bool FindSnapPoint(AcDbDatabase* pDb, const CViewTransform& view, double sx, double sy,
                   double dTolerance, SNAP_POINT& snap) {
    if (!pDb)
        return false;
    double dBest = dTolerance;
    bool bFound = false;
    std::vector<SNAP_POINT> points;
    acdbWithObject<AcDbBlockTableRecord>(pDb->modelSpaceId(), [&](AcDbBlockTableRecord& space) {
        AcDbBlockTableRecordIterator* pIter = nullptr;
        if (space.newIterator(pIter) != Acad::eOk)
            return;
        for (; !pIter->done(); pIter->step())
            acdbWithObject<AcDbEntity>(pIter->getEntityId(), [&](AcDbEntity& e) {
                if (!dynamic_cast<AcDbLine*>(&e) && !dynamic_cast<AcDbCircle*>(&e) &&
                    !dynamic_cast<AcDbPolyline*>(&e))
                    return;
                AcDbExtents ext;
                if (e.getGeomExtents(ext) != Acad::eOk || !ext.isValid())
                    return;
                // The extents' corners on the screen, widened by the tolerance.
                double x0 = 1e300, y0 = 1e300, x1 = -1e300, y1 = -1e300;
                for (int i = 0; i < 8; ++i) {
                    const AcGePoint3d &lo = ext.minPoint(), &hi = ext.maxPoint();
                    auto s = view.ToScreen(
                        {i & 1 ? hi.x : lo.x, i & 2 ? hi.y : lo.y, i & 4 ? hi.z : lo.z});
                    x0 = std::min(x0, s.x), x1 = std::max(x1, s.x);
                    y0 = std::min(y0, s.y), y1 = std::max(y1, s.y);
                }
                if (sx < x0 - dTolerance || sx > x1 + dTolerance || sy < y0 - dTolerance ||
                    sy > y1 + dTolerance)
                    return;
                points.clear();
                CurvePoints(e, points);
                for (const SNAP_POINT& p : points) {
                    auto s = view.ToScreen(p.pt);
                    double d = std::hypot(s.x - sx, s.y - sy);
                    if (d <= dBest) {
                        dBest = d;
                        snap = p;
                        bFound = true;
                    }
                }
            });
        delete pIter;
    });
    return bFound;
}
