// Texts, block references, dimensions and 3D solids.
#pragma once

#include "host/db/DbEntity.h"

#include <memory>
#include <string>
#include <vector>

namespace AcDb {
enum TextHorzMode {
    kTextLeft = 0,
    kTextCenter = 1,
    kTextRight = 2,
    kTextAlign = 3,
    kTextMid = 4,
    kTextFit = 5
};
enum TextVertMode { kTextBase = 0, kTextBottom = 1, kTextVertMid = 2, kTextTop = 3 };
} // namespace AcDb

class AcDbText : public AcDbEntity {
public:
    const wchar_t* dxfName() const override { return L"TEXT"; }
    QM_ENTITY_CLONE(AcDbText)
    AcGePoint3d position() const { return m_position; }
    void setPosition(const AcGePoint3d& p) { m_position = p; }
    // Used instead of the position unless the text is left and base aligned.
    AcGePoint3d alignmentPoint() const { return m_alignment; }
    void setAlignmentPoint(const AcGePoint3d& p) { m_alignment = p; }
    AcDb::TextHorzMode horizontalMode() const { return m_eHorz; }
    void setHorizontalMode(AcDb::TextHorzMode m) { m_eHorz = m; }
    AcDb::TextVertMode verticalMode() const { return m_eVert; }
    void setVerticalMode(AcDb::TextVertMode m) { m_eVert = m; }
    bool isDefaultAlignment() const {
        return m_eHorz == AcDb::kTextLeft && m_eVert == AcDb::kTextBase;
    }
    const std::wstring& textString() const { return m_strText; }
    void setTextString(const std::wstring& s) { m_strText = s; }
    double height() const { return m_dHeight; }
    void setHeight(double d) { m_dHeight = d; }
    double rotation() const { return m_dRotation; }
    void setRotation(double d) { m_dRotation = d; }
    double widthFactor() const { return m_dWidthFactor; }
    void setWidthFactor(double d) { m_dWidthFactor = d; }
    std::wstring m_strStyle = L"Standard";
    Acad::ErrorStatus getGeomExtents(AcDbExtents& ext) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& m) override;

private:
    AcGePoint3d m_position, m_alignment;
    std::wstring m_strText;
    double m_dHeight = 2.5, m_dRotation = 0.0, m_dWidthFactor = 1.0;
    AcDb::TextHorzMode m_eHorz = AcDb::kTextLeft;
    AcDb::TextVertMode m_eVert = AcDb::kTextBase;
};

// Multi-line text; the contents keep their format codes ("\P", "{\f...;}").
class AcDbMText : public AcDbEntity {
public:
    enum AttachmentPoint {
        kTopLeft = 1,
        kTopCenter,
        kTopRight,
        kMiddleLeft,
        kMiddleCenter,
        kMiddleRight,
        kBottomLeft,
        kBottomCenter,
        kBottomRight
    };
    const wchar_t* dxfName() const override { return L"MTEXT"; }
    QM_ENTITY_CLONE(AcDbMText)
    AcGePoint3d location() const { return m_location; }
    void setLocation(const AcGePoint3d& p) { m_location = p; }
    const std::wstring& contents() const { return m_strContents; }
    void setContents(const std::wstring& s) { m_strContents = s; }
    double textHeight() const { return m_dHeight; }
    void setTextHeight(double d) { m_dHeight = d; }
    double width() const { return m_dWidth; }
    void setWidth(double d) { m_dWidth = d; }
    double rotation() const { return m_dRotation; }
    void setRotation(double d) { m_dRotation = d; }
    AttachmentPoint attachment() const { return m_eAttach; }
    void setAttachment(AttachmentPoint a) { m_eAttach = a; }
    std::wstring m_strStyle = L"Standard";
    Acad::ErrorStatus getGeomExtents(AcDbExtents& ext) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& m) override;

private:
    AcGePoint3d m_location;
    std::wstring m_strContents;
    double m_dHeight = 2.5, m_dWidth = 0.0, m_dRotation = 0.0;
    AttachmentPoint m_eAttach = kTopLeft;
};

struct AcGeScale3d {
    double sx = 1.0, sy = 1.0, sz = 1.0;
};

class AcDbBlockReference : public AcDbEntity {
public:
    AcDbBlockReference() = default;
    AcDbBlockReference(const AcGePoint3d& pos, AcDbObjectId blockId)
        : m_position(pos), m_blockId(blockId) {}
    const wchar_t* dxfName() const override { return L"INSERT"; }
    AcDbObject* clone() const override;
    AcDbObject* journalCopy() const override { return new AcDbBlockReference(*this); }
    AcDbObjectId blockTableRecord() const { return m_blockId; }
    void setBlockTableRecord(AcDbObjectId id) { m_blockId = id; }
    AcGePoint3d position() const { return m_position; }
    void setPosition(const AcGePoint3d& p) { m_position = p; }
    AcGeScale3d scaleFactors() const { return m_scale; }
    Acad::ErrorStatus setScaleFactors(const AcGeScale3d& s);
    double rotation() const { return m_dRotation; }
    void setRotation(double d) { m_dRotation = d; }
    // Block coordinates to world: minus the block's origin, scale, rotate, move.
    AcGeMatrix3d blockTransform() const;
    // New entities, not in a database, for the block's live entities placed
    // by blockTransform; the caller owns them.
    Acad::ErrorStatus explode(std::vector<AcDbEntity*>& entities) const;
    Acad::ErrorStatus getGeomExtents(AcDbExtents& ext) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& m) override;

    DXF_FOLLOWERS m_followers; // attributes, kept for the file

private:
    AcGePoint3d m_position;
    AcDbObjectId m_blockId;
    AcGeScale3d m_scale;
    double m_dRotation = 0.0;
};

// The measured distance of a dimension between its two extension points.
class AcDbDimension : public AcDbEntity {
public:
    AcGePoint3d xLine1Point() const { return m_x1; }
    AcGePoint3d xLine2Point() const { return m_x2; }
    AcGePoint3d dimLinePoint() const { return m_dimLine; }
    void setXLine1Point(const AcGePoint3d& p) { m_x1 = p; }
    void setXLine2Point(const AcGePoint3d& p) { m_x2 = p; }
    void setDimLinePoint(const AcGePoint3d& p) { m_dimLine = p; }
    AcGePoint3d textPosition() const { return m_text; }
    void setTextPosition(const AcGePoint3d& p) { m_text = p; }
    // The text override: empty shows the measurement, "<>" stands for it.
    const std::wstring& dimensionText() const { return m_strText; }
    void setDimensionText(const std::wstring& s) { m_strText = s; }
    AcDbObjectId dimensionStyle() const { return m_styleId; }
    void setDimensionStyle(AcDbObjectId id) { m_styleId = id; }
    AcDbObjectId dimBlockId() const { return m_blockId; }
    // The measured distance: along the rotation for a rotated dimension,
    // point to point for an aligned one; without the linear scale factor.
    double measurement() const;
    void setDimBlockId(AcDbObjectId id) { m_blockId = id; }
    Acad::ErrorStatus getGeomExtents(AcDbExtents& ext) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& m) override;

protected:
    AcDbDimension() = default;
    // A new dimension gets its anonymous "*D" block of graphics, as the
    // editor computes one: the extension lines and the dimension line.
    void onAddedToDatabase(AcDbDatabase& db, bool bLoading) override;

private:
    AcGePoint3d m_x1, m_x2, m_dimLine, m_text;
    std::wstring m_strText;
    AcDbObjectId m_styleId, m_blockId;
};

class AcDbAlignedDimension : public AcDbDimension {
public:
    const wchar_t* dxfName() const override { return L"DIMENSION"; }
    QM_ENTITY_CLONE(AcDbAlignedDimension)
};

class AcDbRotatedDimension : public AcDbDimension {
public:
    const wchar_t* dxfName() const override { return L"DIMENSION"; }
    QM_ENTITY_CLONE(AcDbRotatedDimension)
    double rotation() const { return m_dRotation; }
    void setRotation(double d) { m_dRotation = d; }
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& m) override;

private:
    double m_dRotation = 0.0;
};

// The body of a 3D solid as the geometry kernel sees it: the kernel parses
// the stored text, measures and moves it.
class IAcDbSolidModeler {
public:
    virtual ~IAcDbSolidModeler() = default;
    virtual bool GetExtents(const std::vector<std::string>& body, AcDbExtents& ext) = 0;
    virtual bool Transform(std::vector<std::string>& body, const AcGeMatrix3d& m) = 0;
    virtual bool MakeBox(double dx, double dy, double dz, std::vector<std::string>& body) = 0;
};
// The kernel the host registers; without one a built-in stand-in handles
// axis-aligned boxes only.
void acdbSetSolidModeler(IAcDbSolidModeler* pModeler);
IAcDbSolidModeler* acdbSolidModeler();

class AcDb3dSolid : public AcDbEntity {
public:
    const wchar_t* dxfName() const override { return L"3DSOLID"; }
    QM_ENTITY_CLONE(AcDb3dSolid)
    // A box centred on the origin.
    Acad::ErrorStatus createBox(double dx, double dy, double dz);
    const std::vector<std::string>& body() const { return m_body; }
    void setBody(std::vector<std::string> body) { m_body = std::move(body); }
    Acad::ErrorStatus getGeomExtents(AcDbExtents& ext) const override;
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& m) override;

private:
    std::vector<std::string> m_body; // the kernel's text, one line per entry
};
