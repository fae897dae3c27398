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
    return g_pModeler;
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

double AcDbDimension::measurement() const {
    AcGeVector3d d = m_x2 - m_x1;
    if (auto* pRot = dynamic_cast<const AcDbRotatedDimension*>(this))
        return std::fabs(d.x * std::cos(pRot->rotation()) + d.y * std::sin(pRot->rotation()));
    return d.length();
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
    // The measurement times the linear scale factor, above the middle of the
    // dimension line, two decimals without trailing zeros.
    double dHeight = 2.5;
    acdbWithObject<AcDbDimStyleTableRecord>(
        m_styleId, [&](const AcDbDimStyleTableRecord& s) { dHeight = s.dimtxt() * s.dimscale(); });
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.2f", measurement() * db.dimlfac());
    std::string strValue = buf;
    while (strValue.find('.') != std::string::npos &&
           (strValue.back() == '0' || strValue.back() == '.'))
        strValue.pop_back();
    auto* pText = new AcDbText;
    double angle = std::atan2(dir.y, dir.x);
    if (angle > M_PI / 2 + 1e-9 || angle <= -M_PI / 2 + 1e-9)
        angle += angle > 0 ? -M_PI : M_PI; // texts read from below or from the right
    // An angle that comes back the same from the file, which keeps degrees.
    const double kDeg = M_PI / 180.0;
    for (int i = 0; i < 4 && (angle / kDeg) * kDeg != angle; ++i)
        angle = (angle / kDeg) * kDeg;
    AcGePoint3d mid((f1.x + f2.x) / 2, (f1.y + f2.y) / 2, (f1.z + f2.z) / 2);
    pText->setTextString(std::wstring(strValue.begin(), strValue.end()));
    pText->setHeight(dHeight);
    pText->setRotation(angle);
    pText->setHorizontalMode(AcDb::kTextCenter);
    pText->setVerticalMode(AcDb::kTextBottom);
    pText->setAlignmentPoint(mid +
                             AcGeVector3d(-std::sin(angle), std::cos(angle), 0) * (dHeight * 0.4));
    pText->setPosition(pText->alignmentPoint());
    if (pBlock->appendAcDbEntity(pText) == Acad::eOk)
        pText->close();
    else
        delete pText;
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
    if (!acdbSolidModeler() || !acdbSolidModeler()->MakeBox(dx, dy, dz, body))
        return Acad::eNotApplicable;
    m_body = std::move(body);
    return Acad::eOk;
}

Acad::ErrorStatus AcDb3dSolid::getGeomExtents(AcDbExtents& ext) const {
    IAcDbSolidModeler* p = acdbSolidModeler();
    return p && p->GetExtents(m_body, ext) ? Acad::eOk : Acad::eInvalidExtents;
}

Acad::ErrorStatus AcDb3dSolid::getMassProp(double& volume, AcGePoint3d& centroid) const {
    IAcDbSolidModeler* p = acdbSolidModeler();
    return p && p->GetMassProps(m_body, volume, centroid) ? Acad::eOk : Acad::eNotApplicable;
}

Acad::ErrorStatus AcDb3dSolid::transformBy(const AcGeMatrix3d& m) {
    IAcDbSolidModeler* p = acdbSolidModeler();
    return p && p->Transform(m_body, m) ? Acad::eOk : Acad::eNotApplicable;
}
