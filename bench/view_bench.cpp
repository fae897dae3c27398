// Drawing view figures: first paint of 100k entities, redraw after a pan, orbit of 50 cut panels
// (QImage of 1920 x 1080, offscreen).
#include "demo/DemoPanel.h"
#include "gui/DisplayScene.h"
#include "gui/ViewTransform.h"
#include "solid/OcctModeler.h"

#include <QApplication>
#include <QImage>
#include <QPainter>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

const int kWidth = 1920, kHeight = 1080;

double Seconds(std::chrono::steady_clock::time_point since) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - since).count();
}

void Append(AcDbBlockTableRecord* pSpace, AcDbEntity* pEnt, short nColour) {
    pEnt->setColorIndex(nColour);
    AcDbObjectId id;
    pSpace->appendAcDbEntity(id, pEnt);
    pEnt->close();
}

// 100,000 entities on a 1000 x 500 field: lines, circles, polylines and texts.
void FillLarge(AcDbDatabase& db) {
    AcDbBlockTableRecord* pSpace = nullptr;
    acdbOpenObject(pSpace, db.modelSpaceId(), AcDb::kForWrite);
    for (int i = 0; i < 100000; ++i) {
        double x = (i % 1000) * 10.0, y = (i / 1000) * 50.0;
        switch (i % 10) {
        case 0:
        case 1:
        case 2:
        case 3:
        case 4:
        case 5:
            Append(pSpace, new AcDbLine({x, y, 0}, {x + 8, y + 30, 0}),
                   static_cast<short>(1 + i % 7));
            break;
        case 6:
        case 7:
            Append(pSpace, new AcDbCircle({x + 4, y + 4, 0}, 3), 3);
            break;
        case 8: {
            auto* p = new AcDbPolyline;
            for (unsigned k = 0; k < 4; ++k)
                p->addVertexAt(k, {x + (k & 1) * 6.0, y + (k / 2) * 6.0});
            p->setClosed(true);
            Append(pSpace, p, 4);
            break;
        }
        default: {
            auto* t = new AcDbText;
            t->setPosition({x, y + 40, 0});
            t->setTextString(L"QF1 断路器");
            t->setHeight(2.5);
            Append(pSpace, t, 2);
        }
        }
    }
    pSpace->close();
}

// 50 panels on a grid: one panel is cut and made a block, referenced 50 times.
void FillPanels(AcDbDatabase& db) {
    AcDbBlockTable* pTable = nullptr;
    db.getBlockTable(pTable, AcDb::kForWrite);
    auto* pBlock = new AcDbBlockTableRecord;
    pBlock->setName(L"CUTPANEL");
    AcDbObjectId blockId;
    pTable->add(blockId, pBlock);
    pTable->close();
    pBlock->close();
    AcDbDatabase scratch(true);
    DEMO_PANEL panel = AddDemoPanel(scratch, AcGePoint3d(0, 0, 0));
    std::vector<std::vector<std::string>> tools;
    for (AcDbObjectId id : panel.cutoutSolids)
        acdbWithObject<AcDb3dSolid>(id, [&](AcDb3dSolid& s) { tools.push_back(s.body()); });
    std::vector<const std::vector<std::string>*> toolRefs;
    for (const auto& t : tools)
        toolRefs.push_back(&t);
    std::vector<std::string> body;
    acdbWithObject<AcDb3dSolid>(panel.idSolid, [&](AcDb3dSolid& s) { body = s.body(); });
    std::string strError;
    if (!GetOcctModeler().Subtract(body, toolRefs, strError))
        std::fprintf(stderr, "view_bench: the subtraction failed: %s\n", strError.c_str());
    acdbOpenObject(pBlock, blockId, AcDb::kForWrite);
    auto* pPlate = new AcDb3dSolid;
    pPlate->setBody(body);
    Append(pBlock, pPlate, 8);
    pBlock->close();
    AcDbBlockTableRecord* pSpace = nullptr;
    acdbOpenObject(pSpace, db.modelSpaceId(), AcDb::kForWrite);
    for (int i = 0; i < 50; ++i)
        Append(pSpace,
               new AcDbBlockReference(AcGePoint3d((i % 10) * 700.0, (i / 10) * 900.0, 0), blockId),
               256);
    pSpace->close();
}

} // namespace

int main(int argc, char** argv) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication app(argc, argv);
    acdbSetSolidModeler(&GetOcctModeler());
    QImage image(kWidth, kHeight, QImage::Format_RGB32);

    AcDbDatabase large(true);
    FillLarge(large);
    CDisplayScene scene([&] { return &large; }, &GetOcctModeler());
    VIEW_STATE view;
    ZoomViewToExtents(scene.List(view), kWidth, kHeight, view);
    auto start = std::chrono::steady_clock::now();
    scene.Invalidate();
    std::printf("  display list alone:            %7.1f ms, %zu lines\n",
                (scene.List(view), Seconds(start) * 1e3), scene.List(view).m_lines.size());
    start = std::chrono::steady_clock::now();
    ProjectDisplayList(scene.List(view), view, kWidth, kHeight);
    std::printf("  projection alone:              %7.1f ms\n", Seconds(start) * 1e3);
    scene.Invalidate(); // the first paint builds the list itself
    start = std::chrono::steady_clock::now();
    {
        QPainter painter(&image);
        scene.Paint(painter, view, kWidth, kHeight);
    }
    std::printf("first paint, 100,000 entities:   %7.1f ms (target < 500)\n", Seconds(start) * 1e3);
    const int kPans = 20;
    start = std::chrono::steady_clock::now();
    for (int i = 0; i < kPans; ++i) {
        PanView(view, kHeight, 7, 3);
        image.fill(Qt::black);
        QPainter painter(&image);
        scene.Paint(painter, view, kWidth, kHeight);
    }
    std::printf("redraw after a pan:              %7.1f ms (target < 30)\n",
                Seconds(start) * 1e3 / kPans);

    if (argc > 1 && std::string(argv[1]) == "--2d")
        return 0;
    AcDbDatabase panels(true);
    start = std::chrono::steady_clock::now();
    FillPanels(panels);
    std::printf("50 cut panels made in            %7.1f ms\n", Seconds(start) * 1e3);
    CDisplayScene solids([&] { return &panels; }, &GetOcctModeler());
    VIEW_STATE orbit;
    orbit.direction = {-1, -1, 1};
    orbit.eShade = SHADE_MODE::Gouraud;
    ZoomViewToExtents(solids.List(orbit), kWidth, kHeight, orbit);
    std::printf("  facets: %zu\n", solids.List(orbit).m_triangles.size());
    const int kFrames = 40;
    start = std::chrono::steady_clock::now();
    for (int i = 0; i < kFrames; ++i) {
        OrbitView(orbit, 0.02, 0.005);
        image.fill(Qt::black);
        QPainter painter(&image);
        solids.Paint(painter, orbit, kWidth, kHeight);
    }
    std::printf("shaded orbit, 50 cut panels:     %7.1f frames/s (target >= 20)\n",
                kFrames / Seconds(start));
    orbit.eShade = SHADE_MODE::Wireframe2d;
    start = std::chrono::steady_clock::now();
    solids.Invalidate();
    {
        QPainter painter(&image);
        solids.Paint(painter, orbit, kWidth, kHeight);
    }
    std::printf("hidden-line view, 50 cut panels: %7.1f ms once; an orbit keeps the edges until "
                "the button is let go\n",
                Seconds(start) * 1e3);
    return 0;
}
