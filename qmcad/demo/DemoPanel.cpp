// The demo panel: what the screenshots, the view tests and the benchmarks look at.
#include "demo/DemoPanel.h"

namespace {

const double kWidth = 600, kHeight = 800, kThick = 2;

struct CUTOUT {
    double x, y; // centre, from the panel's corner
    double w, h; // h 0: a round hole of diameter w
};

const CUTOUT kCutouts[] = {
    {150, 650, 92, 92},   {300, 650, 92, 92},  {450, 650, 92, 92},  {120, 480, 22.3, 0},
    {200, 480, 22.3, 0},  {280, 480, 22.3, 0}, {360, 480, 30.5, 0}, {440, 480, 22.3, 0},
    {300, 250, 224, 224}, {150, 100, 68, 68},  {450, 100, 68, 68},
};

AcDbObjectId Append(AcDbBlockTableRecord* pSpace, AcDbEntity* pEnt, short nColour = 256) {
    AcDbObjectId id;
    pEnt->setColorIndex(nColour);
    if (pSpace->appendAcDbEntity(id, pEnt) != Acad::eOk) {
        delete pEnt;
        return AcDbObjectId();
    }
    pEnt->close();
    return id;
}

AcDbPolyline* Rectangle(double x0, double y0, double x1, double y1) {
    auto* pLine = new AcDbPolyline;
    pLine->addVertexAt(0, AcGePoint2d(x0, y0));
    pLine->addVertexAt(1, AcGePoint2d(x1, y0));
    pLine->addVertexAt(2, AcGePoint2d(x1, y1));
    pLine->addVertexAt(3, AcGePoint2d(x0, y1));
    pLine->setClosed(true);
    return pLine;
}

AcDb3dSolid* Box(double cx, double cy, double w, double h, double depth) {
    auto* pSolid = new AcDb3dSolid;
    pSolid->createBox(w, h, depth);
    pSolid->transformBy(AcGeMatrix3d::translation({cx, cy, 0}));
    return pSolid;
}

} // namespace

DEMO_PANEL AddDemoPanel(AcDbDatabase& db, const AcGePoint3d& c) {
    DEMO_PANEL panel;
    AcDbBlockTableRecord* pSpace = nullptr;
    if (acdbOpenObject(pSpace, db.modelSpaceId(), AcDb::kForWrite) != Acad::eOk)
        return panel;
    auto* pOutline = Rectangle(c.x, c.y, c.x + kWidth, c.y + kHeight);
    pOutline->setConstantWidth(1.0);
    Append(pSpace, pOutline, 7);
    auto* pPlate = Box(c.x + kWidth / 2, c.y + kHeight / 2, kWidth, kHeight, kThick);
    pPlate->transformBy(AcGeMatrix3d::translation({0, 0, -kThick / 2}));
    panel.idSolid = Append(pSpace, pPlate, 8);
    for (const CUTOUT& k : kCutouts) {
        double x = c.x + k.x, y = c.y + k.y, h = k.h > 0 ? k.h : k.w;
        if (k.h > 0)
            Append(pSpace, Rectangle(x - k.w / 2, y - h / 2, x + k.w / 2, y + h / 2), 3);
        else
            Append(pSpace, new AcDbCircle(AcGePoint3d(x, y, 0), k.w / 2), 3);
        Append(pSpace, new AcDbLine({x - h * 0.65, y, 0}, {x + h * 0.65, y, 0}), 1);
        Append(pSpace, new AcDbLine({x, y - h * 0.65, 0}, {x, y + h * 0.65, 0}), 1);
        // Round holes are cut as their square: the stand-in kernel knows boxes only.
        panel.cutoutSolids.push_back(Append(pSpace, Box(x, y, k.w, h, kThick * 3), 3));
    }
    auto* pCaption = new AcDbText;
    pCaption->setPosition(AcGePoint3d(c.x, c.y + kHeight + 20, 0));
    pCaption->setTextString(L"控制箱面板 600×800");
    pCaption->setHeight(24);
    Append(pSpace, pCaption, 2);
    auto* pDim = new AcDbRotatedDimension;
    pDim->setXLine1Point(AcGePoint3d(c.x, c.y, 0));
    pDim->setXLine2Point(AcGePoint3d(c.x + kWidth, c.y, 0));
    pDim->setDimLinePoint(AcGePoint3d(c.x, c.y - 60, 0));
    pDim->setTextPosition(AcGePoint3d(c.x + kWidth / 2, c.y - 60, 0));
    Append(pSpace, pDim, 256);
    pSpace->close();
    return panel;
}
