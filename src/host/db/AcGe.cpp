// Geometry arithmetic for the drawing database.
#include "host/db/AcGe.h"

#include <algorithm>
#include <cmath>

const AcGePoint3d AcGePoint3d::kOrigin;

double AcGeVector3d::length() const {
    return std::sqrt(x * x + y * y + z * z);
}

AcGeMatrix3d::AcGeMatrix3d() {
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c)
            entry[r][c] = r == c ? 1.0 : 0.0;
}

AcGeMatrix3d AcGeMatrix3d::translation(const AcGeVector3d& v) {
    AcGeMatrix3d m;
    m.entry[0][3] = v.x;
    m.entry[1][3] = v.y;
    m.entry[2][3] = v.z;
    return m;
}

AcGeMatrix3d AcGeMatrix3d::scaling(double sx, double sy, double sz, const AcGePoint3d& c) {
    AcGeMatrix3d m;
    m.entry[0][0] = sx;
    m.entry[1][1] = sy;
    m.entry[2][2] = sz;
    m.entry[0][3] = c.x - sx * c.x;
    m.entry[1][3] = c.y - sy * c.y;
    m.entry[2][3] = c.z - sz * c.z;
    return m;
}

AcGeMatrix3d AcGeMatrix3d::rotationAboutZ(double angle, const AcGePoint3d& c) {
    AcGeMatrix3d m;
    double cs = std::cos(angle), sn = std::sin(angle);
    m.entry[0][0] = cs;
    m.entry[0][1] = -sn;
    m.entry[1][0] = sn;
    m.entry[1][1] = cs;
    m.entry[0][3] = c.x - (cs * c.x - sn * c.y);
    m.entry[1][3] = c.y - (sn * c.x + cs * c.y);
    return m;
}

AcGeMatrix3d AcGeMatrix3d::operator*(const AcGeMatrix3d& o) const {
    AcGeMatrix3d m;
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 4; ++c) {
            double s = 0;
            for (int k = 0; k < 4; ++k)
                s += entry[r][k] * o.entry[k][c];
            m.entry[r][c] = s;
        }
    return m;
}

AcGePoint3d AcGeMatrix3d::apply(const AcGePoint3d& p) const {
    return {entry[0][0] * p.x + entry[0][1] * p.y + entry[0][2] * p.z + entry[0][3],
            entry[1][0] * p.x + entry[1][1] * p.y + entry[1][2] * p.z + entry[1][3],
            entry[2][0] * p.x + entry[2][1] * p.y + entry[2][2] * p.z + entry[2][3]};
}

AcGeVector3d AcGeMatrix3d::apply(const AcGeVector3d& v) const {
    return {entry[0][0] * v.x + entry[0][1] * v.y + entry[0][2] * v.z,
            entry[1][0] * v.x + entry[1][1] * v.y + entry[1][2] * v.z,
            entry[2][0] * v.x + entry[2][1] * v.y + entry[2][2] * v.z};
}

double AcGeMatrix3d::scaleXY() const {
    return apply(AcGeVector3d(1, 0, 0)).length();
}

bool AcGeMatrix3d::isUniformXY() const {
    double sx = apply(AcGeVector3d(1, 0, 0)).length();
    double sy = apply(AcGeVector3d(0, 1, 0)).length();
    return std::fabs(sx - sy) <= 1e-9 * std::max(1.0, sx);
}

AcDbExtents::AcDbExtents(const AcGePoint3d& a, const AcGePoint3d& b) {
    addPoint(a);
    addPoint(b);
}

void AcDbExtents::addPoint(const AcGePoint3d& p) {
    if (!m_bValid) {
        m_min = m_max = p;
        m_bValid = true;
        return;
    }
    m_min = {std::min(m_min.x, p.x), std::min(m_min.y, p.y), std::min(m_min.z, p.z)};
    m_max = {std::max(m_max.x, p.x), std::max(m_max.y, p.y), std::max(m_max.z, p.z)};
}

void AcDbExtents::addExt(const AcDbExtents& e) {
    if (!e.m_bValid)
        return;
    addPoint(e.m_min);
    addPoint(e.m_max);
}

void AcDbExtents::transformBy(const AcGeMatrix3d& m) {
    if (!m_bValid)
        return;
    AcGePoint3d a = m_min, b = m_max;
    m_bValid = false;
    for (int i = 0; i < 8; ++i)
        addPoint(m.apply(AcGePoint3d(i & 1 ? b.x : a.x, i & 2 ? b.y : a.y, i & 4 ? b.z : a.z)));
}
