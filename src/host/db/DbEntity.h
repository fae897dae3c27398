// Entities: common properties and the curve types (lines, arcs, polylines).
#pragma once

#include "host/db/AcGe.h"
#include "host/db/DbCore.h"

#include <string>
#include <vector>

class AcDbEntity : public AcDbObject {
public:
    AcDbObjectId blockId() const { return ownerId(); }
    const std::wstring& layer() const { return m_strLayer; }
    Acad::ErrorStatus setLayer(const std::wstring& name);
    short colorIndex() const { return m_nColor; }
    Acad::ErrorStatus setColorIndex(short n); // 0 by block, 256 by layer
    const std::wstring& linetype() const { return m_strLinetype; }
    Acad::ErrorStatus setLinetype(const std::wstring& name);
    double linetypeScale() const { return m_dLinetypeScale; }
    Acad::ErrorStatus setLinetypeScale(double d);
    short lineWeight() const { return m_nLineWeight; }
    Acad::ErrorStatus setLineWeight(short n); // hundredths of a millimetre; -1 by layer
    bool isVisible() const { return m_bVisible; }
    Acad::ErrorStatus setVisibility(bool bVisible);
    void setPropertiesFrom(const AcDbEntity& other);

    virtual Acad::ErrorStatus getGeomExtents(AcDbExtents& ext) const = 0;
    virtual Acad::ErrorStatus transformBy(const AcGeMatrix3d& m) = 0;

    bool m_bPaperSpace = false; // group 67, kept for the file

protected:
    AcDbEntity() = default;
    AcDbEntity(const AcDbEntity&) = default;

private:
    std::wstring m_strLayer = L"0";
    std::wstring m_strLinetype = L"ByLayer";
    double m_dLinetypeScale = 1.0;
    short m_nColor = 256;
    short m_nLineWeight = -1;
    bool m_bVisible = true;
};

// Clone with the concrete type; shared by all entity classes.
#define QM_ENTITY_CLONE(Class)                                                                     \
    AcDbObject* clone() const override {                                                           \
        return new Class(*this);                                                                   \
    }

class AcDbLine : public AcDbEntity {
public:
    AcDbLine() = default;
    AcDbLine(const AcGePoint3d& s, const AcGePoint3d& e) : m_start(s), m_end(e) {}
    const wchar_t* dxfName() const override { return L"LINE"; }
    QM_ENTITY_CLONE(AcDbLine)
    AcGePoint3d startPoint() const { return m_start; }
    AcGePoint3d endPoint() const { return m_end; }
    void setStartPoint(const AcGePoint3d& p) { m_start = p; }
    void setEndPoint(const AcGePoint3d& p) { m_end = p; }
    Acad::ErrorStatus getGeomExtents(AcDbExtents& ext) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& m) override;

private:
    AcGePoint3d m_start, m_end;
};

class AcDbCircle : public AcDbEntity {
public:
    AcDbCircle() = default;
    AcDbCircle(const AcGePoint3d& c, double r) : m_center(c), m_dRadius(r) {}
    const wchar_t* dxfName() const override { return L"CIRCLE"; }
    QM_ENTITY_CLONE(AcDbCircle)
    AcGePoint3d center() const { return m_center; }
    void setCenter(const AcGePoint3d& p) { m_center = p; }
    double radius() const { return m_dRadius; }
    void setRadius(double r) { m_dRadius = r; }
    Acad::ErrorStatus getGeomExtents(AcDbExtents& ext) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& m) override;

protected:
    AcGePoint3d m_center;
    double m_dRadius = 0.0;
};

// Angles in radians, counter-clockwise from start to end.
class AcDbArc : public AcDbCircle {
public:
    AcDbArc() = default;
    AcDbArc(const AcGePoint3d& c, double r, double a0, double a1)
        : AcDbCircle(c, r), m_dStart(a0), m_dEnd(a1) {}
    const wchar_t* dxfName() const override { return L"ARC"; }
    QM_ENTITY_CLONE(AcDbArc)
    double startAngle() const { return m_dStart; }
    double endAngle() const { return m_dEnd; }
    void setStartAngle(double a) { m_dStart = a; }
    void setEndAngle(double a) { m_dEnd = a; }
    Acad::ErrorStatus getGeomExtents(AcDbExtents& ext) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& m) override;

private:
    double m_dStart = 0.0, m_dEnd = 0.0;
};

// The lightweight polyline: 2D vertices with bulges and widths.
class AcDbPolyline : public AcDbEntity {
public:
    struct VERTEX {
        AcGePoint2d pt;
        double dBulge = 0.0, dStartWidth = 0.0, dEndWidth = 0.0;
    };
    const wchar_t* dxfName() const override { return L"LWPOLYLINE"; }
    QM_ENTITY_CLONE(AcDbPolyline)
    unsigned numVerts() const { return static_cast<unsigned>(m_verts.size()); }
    Acad::ErrorStatus addVertexAt(unsigned index, const AcGePoint2d& pt, double bulge = 0.0,
                                  double startWidth = -1.0, double endWidth = -1.0);
    Acad::ErrorStatus removeVertexAt(unsigned index);
    Acad::ErrorStatus getPointAt(unsigned index, AcGePoint2d& pt) const;
    Acad::ErrorStatus getPointAt(unsigned index, AcGePoint3d& pt) const;
    Acad::ErrorStatus getBulgeAt(unsigned index, double& bulge) const;
    Acad::ErrorStatus setBulgeAt(unsigned index, double bulge);
    Acad::ErrorStatus getWidthsAt(unsigned index, double& startWidth, double& endWidth) const;
    Acad::ErrorStatus setWidthsAt(unsigned index, double startWidth, double endWidth);
    bool isClosed() const { return m_bClosed; }
    void setClosed(bool b) { m_bClosed = b; }
    double elevation() const { return m_dElevation; }
    void setElevation(double d) { m_dElevation = d; }
    double constantWidth() const { return m_dConstantWidth; }
    void setConstantWidth(double d) { m_dConstantWidth = d; }
    const std::vector<VERTEX>& vertices() const { return m_verts; }
    Acad::ErrorStatus getGeomExtents(AcDbExtents& ext) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& m) override;

private:
    std::vector<VERTEX> m_verts;
    double m_dElevation = 0.0, m_dConstantWidth = 0.0;
    bool m_bClosed = false;
};

// The heavy polylines keep one handle per vertex and one for the end marker,
// as the file gives each its own entity.
struct AcDbPolylineVertex {
    AcGePoint3d pt;
    double dBulge = 0.0, dStartWidth = 0.0, dEndWidth = 0.0;
    AcDbHandle handle;
};

class AcDbHeavyPolyline : public AcDbEntity {
public:
    unsigned numVerts() const { return static_cast<unsigned>(m_verts.size()); }
    Acad::ErrorStatus appendVertex(const AcDbPolylineVertex& v);
    bool isClosed() const { return m_bClosed; }
    void setClosed(bool b) { m_bClosed = b; }
    std::vector<AcDbPolylineVertex>& vertices() { return m_verts; }
    const std::vector<AcDbPolylineVertex>& vertices() const { return m_verts; }
    AcDbHandle m_seqendHandle;
    Acad::ErrorStatus getGeomExtents(AcDbExtents& ext) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& m) override;

protected:
    AcDbHeavyPolyline() = default;
    AcDbHeavyPolyline(const AcDbHeavyPolyline& o);
    void onAddedToDatabase(AcDbDatabase& db, bool bLoading) override;

private:
    std::vector<AcDbPolylineVertex> m_verts;
    bool m_bClosed = false;
};

class AcDb2dPolyline : public AcDbHeavyPolyline {
public:
    const wchar_t* dxfName() const override { return L"POLYLINE"; }
    QM_ENTITY_CLONE(AcDb2dPolyline)
};

class AcDb3dPolyline : public AcDbHeavyPolyline {
public:
    const wchar_t* dxfName() const override { return L"POLYLINE"; }
    QM_ENTITY_CLONE(AcDb3dPolyline)
};

// An entity of a type the database does not model, kept for the file.
class AcDbUnknownEntity : public AcDbEntity {
public:
    explicit AcDbUnknownEntity(std::wstring strDxfName) : m_strDxfName(std::move(strDxfName)) {}
    const wchar_t* dxfName() const override { return m_strDxfName.c_str(); }
    AcDbObject* clone() const override {
        auto* p = new AcDbUnknownEntity(*this);
        p->m_followers.clear();
        return p;
    }
    AcDbObject* journalCopy() const override { return new AcDbUnknownEntity(*this); }
    Acad::ErrorStatus getGeomExtents(AcDbExtents&) const override { return Acad::eInvalidExtents; }
    Acad::ErrorStatus transformBy(const AcGeMatrix3d&) override { return Acad::eNotApplicable; }
    std::wstring m_strDxfName;
    std::vector<DXF_TAG> m_tags; // the entity's own groups after the common ones
    DXF_FOLLOWERS m_followers;
};
