// Command words for reals, points and selections; the last entity and a solid's centroid.
#include "panel/PanelScript.h"

#include "base/Format.h"
#include "drawingdata/ModelSpace.h"

std::wstring RealWord(double d) {
    return Format(L"%.12g", d);
}

std::wstring PointWord(const AcGePoint3d& pt, bool b3d) {
    if (!b3d)
        return RealWord(pt.x) + L"," + RealWord(pt.y);
    return RealWord(pt.x) + L"," + RealWord(pt.y) + L"," + RealWord(pt.z);
}

void AppendSelection(std::vector<std::wstring>& words, const AcDbObjectIdArray& ids) {
    for (AcDbObjectId id : ids)
        words.push_back(id.handle().text());
    words.push_back(L"");
}

AcDbObjectId LastEntity(AcDbDatabase* pDb) {
    AcDbObjectId idLast;
    ForEachModelSpaceEntity(pDb, [&](AcDbObjectId id, AcDbEntity&) { idLast = id; });
    return idLast;
}

bool SolidCentroid(const AcDbEntity* pSolid, AcGePoint3d& pt) {
    double dVolume = 0;
    if (auto* p = dynamic_cast<const AcDb3dSolid*>(pSolid);
        p && p->getMassProp(dVolume, pt) == Acad::eOk)
        return true;
    // Without a kernel's answer the middle of the extents stands in.
    AcDbExtents ext;
    if (!pSolid || pSolid->getGeomExtents(ext) != Acad::eOk)
        return false;
    const AcGePoint3d &lo = ext.minPoint(), &hi = ext.maxPoint();
    pt = AcGePoint3d((lo.x + hi.x) / 2, (lo.y + hi.y) / 2, (lo.z + hi.z) / 2);
    return true;
}
