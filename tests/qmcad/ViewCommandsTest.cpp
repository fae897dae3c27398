// What the view commands show: slides of a known drawing, views and zooms, shading, the grid.
#include "DbBuilders.h"
#include "EditorTestHost.h"
#include "TestData.h"

#include "base/SysPath.h"
#include "solid/OcctModeler.h"
#include "ui/SlidePainter.h"
#include "view/SlideOut.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

// A panel outline with a text, a red circle and a cut solid under it.
void BuildKnownDrawing(CEditorHost& ed) {
    AcDbDatabase* pDb = ed.Db();
    auto* pPoly = new AcDbPolyline;
    for (auto [x, y] : {std::pair{0.0, 0.0}, {200.0, 0.0}, {200.0, 120.0}, {0.0, 120.0}})
        pPoly->addVertexAt(pPoly->numVerts(), {x, y});
    pPoly->setClosed(true);
    AppendToModelSpace(*pDb, pPoly);
    auto* pCircle = new AcDbCircle({150, 60, 0}, 20);
    pCircle->setColorIndex(1);
    AppendToModelSpace(*pDb, pCircle);
    auto* pText = new AcDbText;
    pText->setTextString(L"面板 A1-Φ22.5");
    pText->setPosition({10, 100, 0});
    pText->setHeight(8);
    AppendToModelSpace(*pDb, pText);
    ed.Command({L"BOX", L"20,20", L"L", L"80", L"50", L"-2"});
    ed.Command({L"BOX", L"40,30", L"L", L"20", L"20", L"-5"});
    AcDbObjectIdArray solids;
    acdbWithObject<AcDbBlockTableRecord>(pDb->modelSpaceId(), [&](const AcDbBlockTableRecord& b) {
        for (AcDbObjectId id : b.entities())
            if (dynamic_cast<AcDb3dSolid*>(id.stub()->pObject))
                solids.push_back(id);
    });
    ed.Command({L"_subtract", solids[0].handle().text(), L"", solids[1].handle().text(), L""});
}

} // namespace

// The golden slide was made once and checked by eye in the PNG beside it; set
// QM_UPDATE_GOLDEN to write both again.
TEST(MakeSlide, KnownDrawingGivesTheGoldenSlideWithHiddenLinesOfTheSolidRemoved) {
    CEditorTestHost host;
    CEditorHost& ed = host.m_editor;
    ed.m_nScreenWidth = 400;
    ed.m_nScreenHeight = 300;
    BuildKnownDrawing(ed);
    CTempDir dir;
    ASSERT_EQ(ed.Command({L"ZOOM", L"E"}), RTNORM);
    ASSERT_EQ(ed.Command({L"MSLIDE", dir.Path() + L"known"}), RTNORM);
    std::string bytes = ReadBytes(dir / L"known.sld");
    CSlide slide;
    ASSERT_TRUE(ReadSlide(bytes, slide));
    EXPECT_EQ(slide.m_nHighX, 399);
    EXPECT_EQ(slide.m_nHighY, 299);
    if (const char* pRoot = std::getenv("QM_UPDATE_GOLDEN")) {
        std::string strDir = std::string(pRoot) + "/qmcad/view/";
        WriteBytes(FromOsPath(strDir + "known.sld"), bytes);
        CImageSurface surface(400, 300);
        PaintSlide(surface, slide, RGB(255, 255, 255));
        WritePngFile(FromOsPath(strDir + "known.png"), surface);
    }
    EXPECT_EQ(bytes, ReadTestData("qmcad/view/known.sld"));
}

TEST(ViewCommands, ShadedIsoViewPaintsFacetsAndThePlanViewOnlyEdges) {
    CEditorTestHost host;
    CEditorHost& ed = host.m_editor;
    BuildKnownDrawing(ed);
    CHostDocument* pDoc = ed.Doc();
    ASSERT_EQ(ed.Command({L"_.shademode", L"_g"}), RTNORM);
    ASSERT_EQ(ed.Command({L"3dorbit"}), RTNORM); // a script: south-east above, then back
    EXPECT_EQ(pDoc->m_view.eShade, SHADE_MODE::Gouraud);
    EXPECT_FALSE(pDoc->m_view.IsPlan());
    CDisplayList list;
    BuildDisplayList(*ed.Db(), pDoc->m_view, &GetOcctModeler(), list);
    EXPECT_GT(list.m_triangles.size(), 20u);
    ASSERT_EQ(ed.Command({L"_.shademode", L"_2D"}), RTNORM);
    ASSERT_EQ(ed.Command({L"_.-view", L"_top"}), RTNORM);
    EXPECT_TRUE(pDoc->m_view.IsPlan());
    BuildDisplayList(*ed.Db(), pDoc->m_view, &GetOcctModeler(), list);
    EXPECT_TRUE(list.m_triangles.empty());
    EXPECT_NE(ed.Command({L"_.-view", L"_sideways"}), RTNORM);
    EXPECT_NE(ed.Command({L"_.shademode", L"_q"}), RTNORM);
    EXPECT_EQ(ed.Command({L"._RTPAN"}), RTNORM);
    EXPECT_EQ(ed.Command({L"._RTZOOM"}), RTNORM);
}

TEST(ViewCommands, ZoomWindowAndGridSwitchSetTheViewAndGridmode) {
    CEditorTestHost host;
    CEditorHost& ed = host.m_editor;
    ASSERT_EQ(ed.Command({L"ZOOM", L"W", L"0,0", L"400,300"}), RTNORM);
    EXPECT_DOUBLE_EQ(ed.Doc()->m_view.dHeight, 300.0);
    EXPECT_DOUBLE_EQ(ed.Doc()->m_view.target.x, 200.0);
    EXPECT_NE(ed.Command({L"ZOOM", L"W", L"0,0", L"0,0"}), RTNORM);
    EXPECT_DOUBLE_EQ(ed.Doc()->m_view.dHeight, 300.0);
    ASSERT_EQ(ed.Command({L"GRID", L"ON"}), RTNORM);
    EXPECT_EQ(ed.m_vars.Short(L"GRIDMODE"), 1);
    ASSERT_EQ(ed.Command({L"GRID", L"OFF"}), RTNORM);
    EXPECT_EQ(ed.m_vars.Short(L"GRIDMODE"), 0);
}
