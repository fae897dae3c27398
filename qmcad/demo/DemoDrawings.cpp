// Cutouts, panel faces and slides of the demo, drawn entity by entity.
#include "demo/DemoDrawings.h"

#include "demo/DemoParts.h"
#include "solid/OcctModeler.h"
#include "view/DisplayList.h"
#include "view/SlideOut.h"

#include "host/db/AcDb.h"

#include <algorithm>
#include <cwctype>
#include <map>

namespace {

constexpr short kCutColour = 7, kToolColour = 8, kAxisColour = 1, kLabelColour = 3,
                kPlateColour = 5;

AcDbObjectId Append(AcDbBlockTableRecord* pSpace, AcDbEntity* pEnt, short nColour) {
    AcDbObjectId id;
    pEnt->setColorIndex(nColour);
    if (pSpace->appendAcDbEntity(id, pEnt) == Acad::eOk) {
        pEnt->close();
        return id;
    }
    delete pEnt;
    return AcDbObjectId();
}

// A rectangle centred on c; with bSlot its short ends are half circles.
AcDbPolyline* Outline(const AcGePoint2d& c, double w, double h, bool bSlot) {
    auto* pLine = new AcDbPolyline;
    double r = bSlot ? std::min(w, h) / 2 : 0;
    double bulge = bSlot ? 1.0 : 0.0;
    bool bWide = w >= h;
    double rx = bWide ? r : 0, ry = bWide ? 0 : r;
    pLine->addVertexAt(0, AcGePoint2d(c.x - w / 2 + rx, c.y - h / 2 + ry), bWide ? 0.0 : bulge);
    pLine->addVertexAt(1, AcGePoint2d(c.x + w / 2 - rx, c.y - h / 2 + ry), bWide ? bulge : 0.0);
    pLine->addVertexAt(2, AcGePoint2d(c.x + w / 2 - rx, c.y + h / 2 - ry), bWide ? 0.0 : bulge);
    pLine->addVertexAt(3, AcGePoint2d(c.x - w / 2 + rx, c.y + h / 2 - ry), bWide ? bulge : 0.0);
    pLine->setClosed(true);
    return pLine;
}

// A prism of the profile from above the plate to well below it, whatever the drawing's scale
// and the plate's thickness: the 3D view subtracts it.
void AppendTool(AcDbBlockTableRecord* pSpace, std::vector<PROFILE_SEGMENT> profile) {
    for (PROFILE_SEGMENT& s : profile) {
        s.a.z = s.b.z = s.centre.z = 5;
    }
    std::vector<std::string> body;
    if (!GetOcctModeler().Extrude(profile, -20, body))
        return;
    auto* pSolid = new AcDb3dSolid;
    pSolid->setBody(std::move(body));
    Append(pSpace, pSolid, kToolColour);
}

PROFILE_SEGMENT Edge(const AcGePoint3d& a, const AcGePoint3d& b) {
    PROFILE_SEGMENT s;
    s.a = a;
    s.b = b;
    return s;
}

// A counter-clockwise arc from a to b about the centre.
PROFILE_SEGMENT Arc(const AcGePoint3d& a, const AcGePoint3d& b, const AcGePoint3d& centre) {
    PROFILE_SEGMENT s = Edge(a, b);
    s.bArc = true;
    s.centre = centre;
    return s;
}

void Circle(AcDbBlockTableRecord* pSpace, double x, double y, double d) {
    Append(pSpace, new AcDbCircle(AcGePoint3d(x, y, 0), d / 2), kCutColour);
    AcGePoint3d start(x + d / 2, y, 0);
    AppendTool(pSpace, {Arc(start, start, AcGePoint3d(x, y, 0))});
}

// The profile of a rectangle or slot centred on c, counter-clockwise.
std::vector<PROFILE_SEGMENT> RectProfile(const AcGePoint2d& c, double w, double h, bool bSlot) {
    double r = bSlot ? std::min(w, h) / 2 : 0;
    bool bWide = w >= h;
    double rx = bWide ? r : 0, ry = bWide ? 0 : r;
    AcGePoint3d p0(c.x - w / 2 + rx, c.y - h / 2 + ry, 0),
        p1(c.x + w / 2 - rx, c.y - h / 2 + ry, 0);
    AcGePoint3d p2(c.x + w / 2 - rx, c.y + h / 2 - ry, 0),
        p3(c.x - w / 2 + rx, c.y + h / 2 - ry, 0);
    if (!bSlot)
        return {Edge(p0, p1), Edge(p1, p2), Edge(p2, p3), Edge(p3, p0)};
    if (bWide)
        return {Edge(p0, p1), Arc(p1, p2, AcGePoint3d(p1.x, c.y, 0)), Edge(p2, p3),
                Arc(p3, p0, AcGePoint3d(p0.x, c.y, 0))};
    return {Arc(p0, p1, AcGePoint3d(c.x, p0.y, 0)), Edge(p1, p2),
            Arc(p2, p3, AcGePoint3d(c.x, p2.y, 0)), Edge(p3, p0)};
}

void FixingHoles(AcDbBlockTableRecord* pSpace, const DEMO_CUTOUT& item, double x, double y) {
    if (item.dFixD <= 0)
        return;
    double dx = item.dFixX / 2, dy = item.dFixY / 2;
    Circle(pSpace, x - dx, y - dy, item.dFixD);
    Circle(pSpace, x + dx, y - dy, item.dFixD);
    if (item.dFixY <= 0)
        return;
    Circle(pSpace, x - dx, y + dy, item.dFixD);
    Circle(pSpace, x + dx, y + dy, item.dFixD);
}

// The cutout's extent, fixing holes included, for its centre lines and label.
void Extent(const DEMO_CUTOUT& item, double& w, double& h) {
    w = item.dW;
    h = item.eShape == CUTOUT_SHAPE::Circle ? item.dW : item.dH;
    if (item.dFixD > 0) {
        w = std::max(w, item.dFixX + item.dFixD);
        h = std::max(h, item.dFixY + item.dFixD);
    }
}

void MainOpening(AcDbBlockTableRecord* pSpace, const DEMO_CUTOUT& item, double x, double y) {
    switch (item.eShape) {
    case CUTOUT_SHAPE::Circle:
        Circle(pSpace, x, y, item.dW);
        break;
    case CUTOUT_SHAPE::Rect:
    case CUTOUT_SHAPE::Slot: {
        bool bSlot = item.eShape == CUTOUT_SHAPE::Slot;
        Append(pSpace, Outline({x, y}, item.dW, item.dH, bSlot), kCutColour);
        AppendTool(pSpace, RectProfile({x, y}, item.dW, item.dH, bSlot));
        break;
    }
    case CUTOUT_SHAPE::None:
        break;
    }
}

// The opening with its device, labelled strLabel; labels no lower than dMinText, so that they
// still read on a large face. False when the device's records could not be written.
bool DrawCutout(AcDbBlockTableRecord* pSpace, const DEMO_CUTOUT& item, double x, double y,
                const std::wstring& strLabel, double dMinText) {
    MainOpening(pSpace, item, x, y);
    FixingHoles(pSpace, item, x, y);
    double w = 0, h = 0;
    Extent(item, w, h);
    Append(pSpace, new AcDbLine(AcGePoint3d(x - w * 0.65, y, 0), AcGePoint3d(x + w * 0.65, y, 0)),
           kAxisColour);
    Append(pSpace, new AcDbLine(AcGePoint3d(x, y - h * 0.65, 0), AcGePoint3d(x, y + h * 0.65, 0)),
           kAxisColour);
    if (strLabel.empty())
        return true;
    auto* pText = new AcDbText;
    pText->setTextString(strLabel);
    pText->setHeight(std::max(dMinText, std::min(w, h) * 0.18));
    pText->setHorizontalMode(AcDb::kTextCenter);
    pText->setAlignmentPoint(AcGePoint3d(x, y - h * 0.65 - pText->height() * 1.4, 0));
    pText->setPosition(pText->alignmentPoint());
    AcDbObjectId idText = Append(pSpace, pText, kLabelColour);
    return AddDemoDevice(pSpace, item, strLabel, x, y, idText);
}

// The letters of a label, without its number: devices of one kind share them, and the n-th
// device of a kind on a face is numbered n ("HL1" -> "HL3", "1XT" -> "3XT").
std::wstring LabelKind(const std::wstring& strLabel) {
    std::wstring strKind;
    for (wchar_t c : strLabel)
        if (!iswdigit(c))
            strKind += c;
    return strKind;
}

std::wstring NumberedLabel(const std::wstring& strLabel, int n) {
    if (strLabel.empty())
        return strLabel;
    if (iswdigit(strLabel.front()))
        return std::to_wstring(n) + LabelKind(strLabel);
    return LabelKind(strLabel) + std::to_wstring(n);
}

template <class Fill> bool WriteDrawing(const std::wstring& strPath, Fill fill) {
    AcDbDatabase db(true);
    AcDbBlockTableRecord* pSpace = nullptr;
    if (acdbOpenObject(pSpace, db.modelSpaceId(), AcDb::kForWrite) != Acad::eOk)
        return false;
    bool bOk = fill(pSpace);
    pSpace->close();
    return bOk && db.saveAs(strPath.c_str()) == Acad::eOk;
}

} // namespace

bool WriteCutoutDrawing(const std::wstring& strPath, const DEMO_CUTOUT& item) {
    return WriteDrawing(strPath, [&](AcDbBlockTableRecord* pSpace) {
        return DrawCutout(pSpace, item, 0, 0, item.pszLabel, 2.5);
    });
}

bool WriteLayoutDrawing(const std::wstring& strPath, const DEMO_LAYOUT& layout) {
    return WriteDrawing(strPath, [&](AcDbBlockTableRecord* pSpace) {
        auto* pPlate = Outline({layout.dW / 2, layout.dH / 2}, layout.dW, layout.dH, false);
        pPlate->setConstantWidth(std::max(layout.dW, layout.dH) / 400);
        Append(pSpace, pPlate, kPlateColour);
        auto* pCaption = new AcDbText;
        pCaption->setTextString(layout.pszCaption);
        pCaption->setHeight(std::max(layout.dW, layout.dH) / 40);
        pCaption->setPosition(AcGePoint3d(0, layout.dH + pCaption->height(), 0));
        Append(pSpace, pCaption, kLabelColour);
        std::map<std::wstring, int> counts; // devices of each kind so far
        bool bOk = true;
        for (size_t i = 0; i < layout.nPlaces; ++i) {
            const DEMO_PLACE& place = layout.pPlaces[i];
            const DEMO_CUTOUT* pItem = FindDemoCutout(place.pszCutout);
            if (!pItem)
                continue;
            std::wstring strLabel =
                NumberedLabel(pItem->pszLabel, ++counts[LabelKind(pItem->pszLabel)]);
            bOk = DrawCutout(pSpace, *pItem, place.x, place.y, strLabel,
                             std::max(layout.dW, layout.dH) / 100) &&
                  bOk;
        }
        return bOk;
    });
}

bool WriteDrawingSlide(const std::wstring& strDrawing, const std::wstring& strSlide) {
    AcDbDatabase db(false, true);
    if (db.readDwgFile(strDrawing.c_str()) != Acad::eOk)
        return false;
    // The editor's default screen, the one MSLIDE uses without a window.
    const int nWidth = 1024, nHeight = 768;
    VIEW_STATE view;
    CDisplayList list;
    BuildDisplayList(db, view, &GetOcctModeler(), list);
    ZoomViewToExtents(list, nWidth, nHeight, view);
    CSlide slide;
    MakeSlideOfView(ProjectDisplayList(list, view, nWidth, nHeight), slide);
    return WriteSlideFile(strSlide, slide);
}
