// Common entity properties and the geometry of curves.
#include "host/db/DbEntity.h"

#include "host/db/DbDatabase.h"

#include <cmath>
#include <numbers>

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

// Adds the points where a circle reaches its extreme x and y between two angles.
void AddArcExtents(AcDbExtents& ext, const AcGePoint3d& c, double r, double a0, double a1) {
    auto at = [&](double a) {
        return AcGePoint3d(c.x + r * std::cos(a), c.y + r * std::sin(a), c.z);
    };
    ext.addPoint(at(a0));
    ext.addPoint(at(a1));
    double span = std::fmod(std::fmod(a1 - a0, kTwoPi) + kTwoPi, kTwoPi);
    for (int k = 0; k < 4; ++k) {
        double q = k * std::numbers::pi / 2;
        double d = std::fmod(std::fmod(q - a0, kTwoPi) + kTwoPi, kTwoPi);
        if (d <= span)
            ext.addPoint(at(q));
    }
}

// The arc of a bulged segment from p to q: its centre, radius and angles.
void AddBulgeExtents(AcDbExtents& ext, const AcGePoint3d& p, const AcGePoint3d& q, double bulge) {
    ext.addPoint(p);
    ext.addPoint(q);
    if (bulge == 0.0)
        return;
    double dx = q.x - p.x, dy = q.y - p.y, chord = std::hypot(dx, dy);
    if (chord == 0.0)
        return;
    double theta = 4 * std::atan(bulge);
    double r = chord / (2 * std::sin(theta / 2));
    double h = r * std::cos(theta / 2); // signed distance of the centre from the chord
    AcGePoint3d mid((p.x + q.x) / 2, (p.y + q.y) / 2, p.z);
    AcGePoint3d c(mid.x - h * dy / chord, mid.y + h * dx / chord, p.z);
    double a0 = std::atan2(p.y - c.y, p.x - c.x), a1 = std::atan2(q.y - c.y, q.x - c.x);
    if (bulge < 0)
        std::swap(a0, a1);
    AddArcExtents(ext, c, std::fabs(r), a0, a1);
}

double AngleOf(const AcGeVector3d& v) {
    return std::atan2(v.y, v.x);
}

} // namespace

Acad::ErrorStatus AcDbEntity::setLayer(const std::wstring& name) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (name.empty())
        return Acad::eInvalidInput;
    m_strLayer = name;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setColorIndex(short n) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (n < 0 || n > 257)
        return Acad::eInvalidInput;
    m_nColor = n;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setLinetype(const std::wstring& name) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    m_strLinetype = name;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setLinetypeScale(double d) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!(d > 0))
        return Acad::eInvalidInput;
    m_dLinetypeScale = d;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setLineWeight(short n) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    m_nLineWeight = n;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setVisibility(bool bVisible) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    m_bVisible = bVisible;
    return Acad::eOk;
}

void AcDbEntity::setPropertiesFrom(const AcDbEntity& o) {
    m_strLayer = o.m_strLayer;
    m_strLinetype = o.m_strLinetype;
    m_dLinetypeScale = o.m_dLinetypeScale;
    m_nColor = o.m_nColor;
    m_nLineWeight = o.m_nLineWeight;
    m_bVisible = o.m_bVisible;
}

Acad::ErrorStatus AcDbLine::getGeomExtents(AcDbExtents& ext) const {
    ext = AcDbExtents(m_start, m_end);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbLine::transformBy(const AcGeMatrix3d& m) {
    m_start = m.apply(m_start);
    m_end = m.apply(m_end);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCircle::getGeomExtents(AcDbExtents& ext) const {
    AcGeVector3d r(m_dRadius, m_dRadius, 0);
    ext = AcDbExtents(m_center - r, m_center + r);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbCircle::transformBy(const AcGeMatrix3d& m) {
    if (!m.isUniformXY())
        return Acad::eCannotScaleNonUniformly;
    m_dRadius *= m.scaleXY();
    m_center = m.apply(m_center);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbArc::getGeomExtents(AcDbExtents& ext) const {
    ext = AcDbExtents();
    AddArcExtents(ext, m_center, m_dRadius, m_dStart, m_dEnd);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbArc::transformBy(const AcGeMatrix3d& m) {
    if (!m.isUniformXY())
        return Acad::eCannotScaleNonUniformly;
    double turn = AngleOf(m.apply(AcGeVector3d(1, 0, 0)));
    AcGeVector3d y = m.apply(AcGeVector3d(0, 1, 0)), x = m.apply(AcGeVector3d(1, 0, 0));
    bool bMirror = x.x * y.y - x.y * y.x < 0;
    double a0 = m_dStart, a1 = m_dEnd;
    if (bMirror) { // a mirror reverses the direction: swap and reflect the angles
        m_dStart = turn - a1;
        m_dEnd = turn - a0;
    } else {
        m_dStart = a0 + turn;
        m_dEnd = a1 + turn;
    }
    return AcDbCircle::transformBy(m);
}

Acad::ErrorStatus AcDbPolyline::addVertexAt(unsigned index, const AcGePoint2d& pt, double bulge,
                                            double startWidth, double endWidth) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (index > m_verts.size())
        index = static_cast<unsigned>(m_verts.size());
    VERTEX v{pt, bulge, startWidth < 0 ? m_dConstantWidth : startWidth,
             endWidth < 0 ? m_dConstantWidth : endWidth};
    m_verts.insert(m_verts.begin() + index, v);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::removeVertexAt(unsigned index) {
    if (index >= m_verts.size())
        return Acad::eInvalidInput;
    m_verts.erase(m_verts.begin() + index);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned index, AcGePoint2d& pt) const {
    if (index >= m_verts.size())
        return Acad::eInvalidInput;
    pt = m_verts[index].pt;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned index, AcGePoint3d& pt) const {
    if (index >= m_verts.size())
        return Acad::eInvalidInput;
    pt = AcGePoint3d(m_verts[index].pt.x, m_verts[index].pt.y, m_dElevation);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getBulgeAt(unsigned index, double& bulge) const {
    if (index >= m_verts.size())
        return Acad::eInvalidInput;
    bulge = m_verts[index].dBulge;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setBulgeAt(unsigned index, double bulge) {
    if (index >= m_verts.size())
        return Acad::eInvalidInput;
    m_verts[index].dBulge = bulge;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getWidthsAt(unsigned index, double& s, double& e) const {
    if (index >= m_verts.size())
        return Acad::eInvalidInput;
    s = m_verts[index].dStartWidth;
    e = m_verts[index].dEndWidth;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setWidthsAt(unsigned index, double s, double e) {
    if (index >= m_verts.size())
        return Acad::eInvalidInput;
    m_verts[index].dStartWidth = s;
    m_verts[index].dEndWidth = e;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getGeomExtents(AcDbExtents& ext) const {
    ext = AcDbExtents();
    size_t n = m_verts.size();
    if (n == 0)
        return Acad::eInvalidExtents;
    for (size_t i = 0; i < n; ++i) {
        if (i + 1 == n && !m_bClosed) {
            ext.addPoint(AcGePoint3d(m_verts[i].pt.x, m_verts[i].pt.y, m_dElevation));
            break;
        }
        const VERTEX& a = m_verts[i];
        const VERTEX& b = m_verts[(i + 1) % n];
        AddBulgeExtents(ext, AcGePoint3d(a.pt.x, a.pt.y, m_dElevation),
                        AcGePoint3d(b.pt.x, b.pt.y, m_dElevation), a.dBulge);
    }
    return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::transformBy(const AcGeMatrix3d& m) {
    if (!m.isUniformXY())
        return Acad::eCannotScaleNonUniformly;
    AcGeVector3d x = m.apply(AcGeVector3d(1, 0, 0)), y = m.apply(AcGeVector3d(0, 1, 0));
    bool bMirror = x.x * y.y - x.y * y.x < 0;
    double s = m.scaleXY();
    for (VERTEX& v : m_verts) {
        AcGePoint3d p = m.apply(AcGePoint3d(v.pt.x, v.pt.y, m_dElevation));
        v.pt = AcGePoint2d(p.x, p.y);
        v.dStartWidth *= s;
        v.dEndWidth *= s;
        if (bMirror)
            v.dBulge = -v.dBulge;
    }
    m_dConstantWidth *= s;
    m_dElevation = m.apply(AcGePoint3d(0, 0, m_dElevation)).z;
    return Acad::eOk;
}

AcDbHeavyPolyline::AcDbHeavyPolyline(const AcDbHeavyPolyline& o)
    : AcDbEntity(o), m_verts(o.m_verts), m_bClosed(o.m_bClosed) {
    for (AcDbPolylineVertex& v : m_verts)
        v.handle = AcDbHandle(); // a copy's vertices get their own handles
}

void AcDbHeavyPolyline::onAddedToDatabase(AcDbDatabase& db, bool) {
    for (AcDbPolylineVertex& v : m_verts)
        if (v.handle.isNull())
            v.handle = db.allocateHandle();
    if (m_seqendHandle.isNull())
        m_seqendHandle = db.allocateHandle();
}

Acad::ErrorStatus AcDbHeavyPolyline::appendVertex(const AcDbPolylineVertex& v) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    m_verts.push_back(v);
    if (database() && m_verts.back().handle.isNull())
        m_verts.back().handle = database()->allocateHandle();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbHeavyPolyline::getGeomExtents(AcDbExtents& ext) const {
    ext = AcDbExtents();
    size_t n = m_verts.size();
    for (size_t i = 0; i < n; ++i) {
        bool bLast = i + 1 == n;
        if (bLast && !m_bClosed)
            ext.addPoint(m_verts[i].pt);
        else
            AddBulgeExtents(ext, m_verts[i].pt, m_verts[(i + 1) % n].pt, m_verts[i].dBulge);
    }
    return ext.isValid() ? Acad::eOk : Acad::eInvalidExtents;
}

Acad::ErrorStatus AcDbHeavyPolyline::transformBy(const AcGeMatrix3d& m) {
    for (AcDbPolylineVertex& v : m_verts)
        v.pt = m.apply(v.pt);
    return Acad::eOk;
}
