// Points, vectors, affine matrices and extents in the editor's geometry vocabulary.
#pragma once

struct AcGeVector3d {
    double x = 0, y = 0, z = 0;
    AcGeVector3d() = default;
    AcGeVector3d(double dx, double dy, double dz) : x(dx), y(dy), z(dz) {}
    double length() const;
    AcGeVector3d operator*(double s) const { return {x * s, y * s, z * s}; }
    AcGeVector3d operator+(const AcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
};

struct AcGePoint3d {
    double x = 0, y = 0, z = 0;
    AcGePoint3d() = default;
    AcGePoint3d(double px, double py, double pz) : x(px), y(py), z(pz) {}
    static const AcGePoint3d kOrigin;
    AcGePoint3d operator+(const AcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
    AcGePoint3d operator-(const AcGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
    AcGeVector3d operator-(const AcGePoint3d& p) const { return {x - p.x, y - p.y, z - p.z}; }
    bool operator==(const AcGePoint3d&) const = default;
    double distanceTo(const AcGePoint3d& p) const { return (*this - p).length(); }
};

struct AcGePoint2d {
    double x = 0, y = 0;
    AcGePoint2d() = default;
    AcGePoint2d(double px, double py) : x(px), y(py) {}
    bool operator==(const AcGePoint2d&) const = default;
};

// Row-major 4x4 affine transform acting on column vectors.
class AcGeMatrix3d {
public:
    AcGeMatrix3d(); // identity
    static AcGeMatrix3d translation(const AcGeVector3d& v);
    static AcGeMatrix3d scaling(double sx, double sy, double sz,
                                const AcGePoint3d& center = AcGePoint3d());
    static AcGeMatrix3d rotationAboutZ(double angle, const AcGePoint3d& center = AcGePoint3d());
    AcGeMatrix3d operator*(const AcGeMatrix3d& m) const;
    AcGePoint3d apply(const AcGePoint3d& p) const;
    AcGeVector3d apply(const AcGeVector3d& v) const;
    // Uniform scale in the XY plane (length of the transformed X axis).
    double scaleXY() const;
    bool isUniformXY() const;
    double entry[4][4];
};

class AcDbExtents {
public:
    AcDbExtents() = default;
    AcDbExtents(const AcGePoint3d& a, const AcGePoint3d& b);
    void addPoint(const AcGePoint3d& p);
    void addExt(const AcDbExtents& e);
    bool isValid() const { return m_bValid; }
    const AcGePoint3d& minPoint() const { return m_min; }
    const AcGePoint3d& maxPoint() const { return m_max; }
    void transformBy(const AcGeMatrix3d& m); // the box of the transformed corners

private:
    AcGePoint3d m_min, m_max;
    bool m_bValid = false;
};
