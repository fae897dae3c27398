// Inserting a library item in the desktop: the mouse drags the item at its size and clicks place
// it and its row.
#include "app/LibState.h"
#include "app/entry/DrawingManageApp.h"
#include "dxf/DxfCodec.h"

#include "DbBuilders.h"
#include "EditorTestHost.h"
#include "GuiDriver.h"

#include <gtest/gtest.h>

namespace {

// The bar is red; the crosshair and the rest are not.
bool PaintedNear(const QImage& image, QPoint px) {
    for (int dx = -2; dx <= 2; ++dx)
        for (int dy = -2; dy <= 2; ++dy) {
            QPoint p = px + QPoint(dx, dy);
            if (!image.rect().contains(p))
                continue;
            QColor c = image.pixelColor(p);
            if (c.red() > 150 && c.green() < 100 && c.blue() < 100)
                return true;
        }
    return false;
}

std::vector<AcGePoint3d> ReferencePositions(AcDbDatabase* pDb) {
    std::vector<AcGePoint3d> at;
    AcDbBlockTableRecord* pMs = nullptr;
    acdbOpenObject(pMs, pDb->modelSpaceId(), AcDb::kForRead);
    for (AcDbObjectId id : pMs->entities()) {
        AcDbBlockReference* pRef = nullptr;
        if (acdbOpenObject(pRef, id, AcDb::kForRead) != Acad::eOk)
            continue;
        at.push_back(pRef->position());
        pRef->close();
    }
    pMs->close();
    return at;
}

} // namespace

TEST(BlockInsertDesktop, TheMouseDragsTheItemAtItsSizeAndTwoClicksPlaceARow) {
    CTempDir dir;
    acdbSetFileCodec(&GetDxfCodec());
    {
        AcDbDatabase item; // a red bar 20 long, 5 above the base point
        auto* pBar = new AcDbLine(AcGePoint3d(0, 5, 0), AcGePoint3d(20, 5, 0));
        pBar->setColorIndex(1);
        AppendToModelSpace(item, pBar);
        ASSERT_EQ(item.saveAs((dir / L"bar.dwg").c_str()), Acad::eOk);
    }
    CGuiTestEditor t;
    CDrawingManageApp app;
    ASSERT_EQ(app.EntryPoint(AcRx::kInitAppMsg, nullptr), AcRx::kRetOK);
    g_HoleLib = CLibState();
    g_HoleLib.pLibDlg = new CFakeBrowser;
    g_HoleLib.strDwgFile = dir / L"bar.dwg";
    g_HoleLib.nCount = 2;
    g_HoleLib.dScale = 1.0;

    t.Then([&] { t.Type(QStringLiteral("DrawingInsert")); });
    t.Then([&] {
        t.Move(AcGePoint3d(80, 60, 0));
        QImage image = t.m_pView->Render();
        EXPECT_TRUE(PaintedNear(image, t.Pixel(AcGePoint3d(95, 65, 0)))); // at its real size
        EXPECT_FALSE(PaintedNear(image, t.Pixel(AcGePoint3d(105, 65, 0))));
        t.Click(AcGePoint3d(40, 30, 0));
    });
    t.Then([&] {
        // The second drag starts afresh: the same size again, not grown by the first.
        t.Move(AcGePoint3d(60, 80, 0));
        QImage image = t.m_pView->Render();
        EXPECT_TRUE(PaintedNear(image, t.Pixel(AcGePoint3d(75, 85, 0))));
        EXPECT_FALSE(PaintedNear(image, t.Pixel(AcGePoint3d(85, 85, 0))));
        t.Click(AcGePoint3d(70, 32, 0));
    });
    t.Run();

    std::vector<AcGePoint3d> at = ReferencePositions(t.Database());
    ASSERT_EQ(at.size(), 2u);
    EXPECT_NEAR(at[0].distanceTo(AcGePoint3d(40, 30, 0)), 0, 0.25);
    EXPECT_NEAR(at[1].y, at[0].y, 1e-9); // the row runs along X
    EXPECT_NEAR(at[1].x - at[0].x, 30, 0.5);
    EXPECT_TRUE(g_HoleLib.strDwgFile.empty());
    app.EntryPoint(AcRx::kUnloadAppMsg, nullptr);
    delete g_HoleLib.pLibDlg;
    g_HoleLib = CLibState();
}
