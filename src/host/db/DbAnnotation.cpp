// Geometry of texts, block references, dimensions and solids.
#include "host/db/DbAnnotation.h"

#include "host/db/DbDatabase.h"
#include "host/db/DbSymbolTable.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <utility>

namespace {

// The box of a text run of the given width and height from its origin.
AcDbExtents TextBox(const AcGePoint3d& origin, double height, double width, double rotation) {
    AcGeMatrix3d m = AcGeMatrix3d::rotationAboutZ(rotation, origin);
    AcDbExtents ext;
    ext.addPoint(m.apply(origin));
    ext.addPoint(m.apply(origin + AcGeVector3d(width, 0, 0)));
    ext.addPoint(m.apply(origin + AcGeVector3d(0, height, 0)));
    ext.addPoint(m.apply(origin + AcGeVector3d(width, height, 0)));
    return ext;
}

double Rotated(const AcGeMatrix3d& m, double angle) {
    AcGeVector3d d = m.apply(AcGeVector3d(std::cos(angle), std::sin(angle), 0));
    return std::atan2(d.y, d.x);
}

// The stand-in body: "QM_BOX x0 y0 z0 x1 y1 z1", an axis-aligned box.
class CBoxModeler : public IAcDbSolidModeler {
public:
    bool GetExtents(const std::vector<std::string>& body, AcDbExtents& ext) override {
        double v[6];
        if (body.size() != 1 || std::sscanf(body[0].c_str(), "QM_BOX %lf %lf %lf %lf %lf %lf",
                                            &v[0], &v[1], &v[2], &v[3], &v[4], &v[5]) != 6)
            return false;
        ext = AcDbExtents(AcGePoint3d(v[0], v[1], v[2]), AcGePoint3d(v[3], v[4], v[5]));
        return true;
    }
    bool Transform(std::vector<std::string>& body, const AcGeMatrix3d& m) override {
        AcDbExtents ext;
        if (!GetExtents(body, ext))
            return false;
        ext.transformBy(m);
        Write(ext.minPoint(), ext.maxPoint(), body);
        return true;
    }
    bool MakeBox(double dx, double dy, double dz, std::vector<std::string>& body) override {
        Write(AcGePoint3d(-dx / 2, -dy / 2, -dz / 2), AcGePoint3d(dx / 2, dy / 2, dz / 2), body);
        return true;
    }

private:
    static void Write(const AcGePoint3d& a, const AcGePoint3d& b, std::vector<std::string>& body) {
        char buf[200];
        std::snprintf(buf, sizeof buf, "QM_BOX %.17g %.17g %.17g %.17g %.17g %.17g", a.x, a.y, a.z,
                      b.x, b.y, b.z);
        body.assign(1, buf);
    }
};

CBoxModeler g_boxModeler;

// The block behind a reference, read in place: the block may be open elsewhere.
const AcDbBlockTableRecord* BlockOf(AcDbObjectId id) {
    if (!id.isValid() || id.isErased())
        return nullptr;
    return dynamic_cast<const AcDbBlockTableRecord*>(id.stub()->pObject);
}
IAcDbSolidModeler* g_pModeler = nullptr;

} // namespace

void acdbSetSolidModeler(IAcDbSolidModeler* p) {
    g_pModeler = p;
}

IAcDbSolidModeler* acdbSolidModeler() {
    return g_pModeler ? g_pModeler : &g_boxModeler;
}

Acad::ErrorStatus AcDbText::getGeomExtents(AcDbExtents& ext) const {
    double w = m_dHeight * m_dWidthFactor * static_cast<double>(m_strText.size());
    AcGePoint3d base = m_position;
    if (!isDefaultAlignment()) { // the alignment point sits at the mode's place in the box
        double fx = m_eHorz == AcDb::kTextCenter || m_eHorz == AcDb::kTextMid ? 0.5
                    : m_eHorz == AcDb::kTextRight                             ? 1.0
                                                                              : 0.0;
        double fy = m_eVert == AcDb::kTextTop ? 1.0 : m_eVert == AcDb::kTextVertMid ? 0.5 : 0.0;
        if (m_eHorz == AcDb::kTextMid)
            fy = 0.5;
        base = m_alignment - AcGeVector3d(fx * w, fy * m_dHeight, 0);
        base = AcGeMatrix3d::rotationAboutZ(m_dRotation, m_alignment).apply(base);
    }
    ext = TextBox(base, m_dHeight, w, m_dRotation);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbText::transformBy(const AcGeMatrix3d& m) {
    m_position = m.apply(m_position);
    m_alignment = m.apply(m_alignment);
    m_dHeight *= m.scaleXY();
    m_dRotation = Rotated(m, m_dRotation);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::getGeomExtents(AcDbExtents& ext) const {
    double w = m_dWidth > 0 ? m_dWidth : m_dHeight * static_cast<double>(m_strContents.size());
    int col = (m_eAttach - 1) % 3, row = (m_eAttach - 1) / 3;
    AcGePoint3d corner = m_location - AcGeVector3d(col * w / 2, (2 - row) * m_dHeight / 2, 0);
    corner = AcGeMatrix3d::rotationAboutZ(m_dRotation, m_location).apply(corner);
    ext = TextBox(corner, m_dHeight, w, m_dRotation);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbMText::transformBy(const AcGeMatrix3d& m) {
    m_location = m.apply(m_location);
    m_dHeight *= m.scaleXY();
    m_dWidth *= m.scaleXY();
    m_dRotation = Rotated(m, m_dRotation);
    return Acad::eOk;
}

AcDbObject* AcDbBlockReference::clone() const {
    auto* p = new AcDbBlockReference(*this);
    p->m_followers.clear();
    return p;
}

Acad::ErrorStatus AcDbBlockReference::setScaleFactors(const AcGeScale3d& s) {
    if (s.sx == 0 || s.sy == 0 || s.sz == 0)
        return Acad::eInvalidInput;
    m_scale = s;
    return Acad::eOk;
}

AcGeMatrix3d AcDbBlockReference::blockTransform() const {
    const AcDbBlockTableRecord* pRec = BlockOf(m_blockId);
    AcGePoint3d origin = pRec ? pRec->origin() : AcGePoint3d();
    return AcGeMatrix3d::translation(m_position - AcGePoint3d()) *
           AcGeMatrix3d::rotationAboutZ(m_dRotation) *
           AcGeMatrix3d::scaling(m_scale.sx, m_scale.sy, m_scale.sz) *
           AcGeMatrix3d::translation(AcGePoint3d() - origin);
}

Acad::ErrorStatus AcDbBlockReference::explode(std::vector<AcDbEntity*>& out) const {
    const AcDbBlockTableRecord* pRec = BlockOf(m_blockId);
    if (!pRec)
        return Acad::eKeyNotFound;
    Acad::ErrorStatus es = Acad::eOk;
    AcGeMatrix3d m = blockTransform();
    std::vector<AcDbEntity*> made;
    for (AcDbObjectId id : pRec->entities()) {
        if (!id.isValid() || id.isErased())
            continue;
        auto* pSrc = dynamic_cast<AcDbEntity*>(id.stub()->pObject);
        if (!pSrc)
            continue;
        auto* pCopy = static_cast<AcDbEntity*>(pSrc->clone());
        es = pCopy->transformBy(m);
        made.push_back(pCopy);
        if (es != Acad::eOk)
            break;
    }
    if (es != Acad::eOk) {
        for (AcDbEntity* p : made)
            delete p;
        return es;
    }
    out.insert(out.end(), made.begin(), made.end());
    return Acad::eOk;
}

namespace {

// The blocks being measured on this thread, outermost first, and the entities
// looked at: a block inside itself has no extents, and a damaged file whose
// nesting multiplies the work stops at a budget instead of running for ever.
struct EXTENTS_WALK {
    std::vector<const AcDbBlockTableRecord*> path;
    size_t nVisits = 0;
};
thread_local EXTENTS_WALK t_walk;
constexpr size_t kMaxExtentsVisits = 4'000'000;
constexpr size_t kMaxExtentsDepth = 64;

class CExtentsStep {
public:
    explicit CExtentsStep(const AcDbBlockTableRecord* pRec) {
        if (t_walk.path.empty())
            t_walk.nVisits = 0;
        m_bRefused = t_walk.path.size() >= kMaxExtentsDepth ||
                     std::find(t_walk.path.begin(), t_walk.path.end(), pRec) != t_walk.path.end();
        if (!m_bRefused)
            t_walk.path.push_back(pRec);
    }
    ~CExtentsStep() {
        if (!m_bRefused)
            t_walk.path.pop_back();
    }
    CExtentsStep(const CExtentsStep&) = delete;
    CExtentsStep& operator=(const CExtentsStep&) = delete;
    bool Refused() const { return m_bRefused; }

private:
    bool m_bRefused;
};

} // namespace

Acad::ErrorStatus AcDbBlockReference::getGeomExtents(AcDbExtents& ext) const {
    ext = AcDbExtents();
    const AcDbBlockTableRecord* pRec = BlockOf(m_blockId);
    if (!pRec)
        return Acad::eInvalidExtents;
    CExtentsStep step(pRec);
    if (step.Refused())
        return Acad::eInvalidExtents;
    AcGeMatrix3d m = blockTransform();
    for (AcDbObjectId id : pRec->entities()) {
        if (++t_walk.nVisits > kMaxExtentsVisits)
            return Acad::eInvalidExtents;
        if (!id.isValid() || id.isErased())
            continue;
        auto* pEnt = dynamic_cast<AcDbEntity*>(id.stub()->pObject);
        AcDbExtents e;
        if (pEnt && pEnt->getGeomExtents(e) == Acad::eOk) {
            e.transformBy(m);
            ext.addExt(e);
        }
    }
    return ext.isValid() ? Acad::eOk : Acad::eInvalidExtents;
}

Acad::ErrorStatus AcDbBlockReference::transformBy(const AcGeMatrix3d& m) {
    if (!m.isUniformXY())
        return Acad::eCannotScaleNonUniformly;
    double s = m.scaleXY();
    m_position = m.apply(m_position);
    m_dRotation = Rotated(m, m_dRotation);
    m_scale.sx *= s;
    m_scale.sy *= s;
    m_scale.sz *= s;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDimension::getGeomExtents(AcDbExtents& ext) const {
    ext = AcDbExtents(m_x1, m_x2);
    ext.addPoint(m_dimLine);
    ext.addPoint(m_text);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDimension::transformBy(const AcGeMatrix3d& m) {
    m_x1 = m.apply(m_x1);
    m_x2 = m.apply(m_x2);
    m_dimLine = m.apply(m_dimLine);
    m_text = m.apply(m_text);
    return Acad::eOk;
}

void AcDbDimension::onAddedToDatabase(AcDbDatabase& db, bool bLoading) {
    if (bLoading || m_blockId.isValid())
        return;
    AcDbBlockTable* pTable = nullptr;
    if (db.getBlockTable(pTable, AcDb::kForWrite) != Acad::eOk)
        return;
    auto* pBlock = new AcDbBlockTableRecord;
    pBlock->setNameRaw(L"*D");
    Acad::ErrorStatus es = pTable->add(m_blockId, pBlock);
    pTable->close();
    if (es != Acad::eOk) {
        delete pBlock;
        return;
    }
    // The dimension line runs through the dimension line point, along the
    // measured direction; the extension lines drop onto it.
    AcGeVector3d dir = m_x2 - m_x1;
    if (auto* pRot = dynamic_cast<AcDbRotatedDimension*>(this))
        dir = AcGeVector3d(std::cos(pRot->rotation()), std::sin(pRot->rotation()), 0);
    double len = dir.length();
    if (len > 0)
        dir = dir * (1.0 / len);
    auto foot = [&](const AcGePoint3d& p) {
        AcGeVector3d d = p - m_dimLine;
        double t = d.x * dir.x + d.y * dir.y + d.z * dir.z;
        return m_dimLine + dir * t;
    };
    AcGePoint3d f1 = foot(m_x1), f2 = foot(m_x2);
    for (auto [a, b] : {std::pair{m_x1, f1}, std::pair{m_x2, f2}, std::pair{f1, f2}}) {
        auto* pLine = new AcDbLine(a, b);
        if (pBlock->appendAcDbEntity(pLine) == Acad::eOk)
            pLine->close();
        else
            delete pLine;
    }
    pBlock->close();
}

Acad::ErrorStatus AcDbRotatedDimension::transformBy(const AcGeMatrix3d& m) {
    m_dRotation = Rotated(m, m_dRotation);
    return AcDbDimension::transformBy(m);
}

Acad::ErrorStatus AcDb3dSolid::createBox(double dx, double dy, double dz) {
    if (!(dx > 0 && dy > 0 && dz > 0))
        return Acad::eInvalidInput;
    std::vector<std::string> body;
    if (!acdbSolidModeler()->MakeBox(dx, dy, dz, body))
        return Acad::eNotApplicable;
    m_body = std::move(body);
    return Acad::eOk;
}

Acad::ErrorStatus AcDb3dSolid::getGeomExtents(AcDbExtents& ext) const {
    return acdbSolidModeler()->GetExtents(m_body, ext) ? Acad::eOk : Acad::eInvalidExtents;
}

Acad::ErrorStatus AcDb3dSolid::transformBy(const AcGeMatrix3d& m) {
    return acdbSolidModeler()->Transform(m_body, m) ? Acad::eOk : Acad::eNotApplicable;
}
