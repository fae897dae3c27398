// What the display list shows of a drawing, and where the projection puts it on the screen.
#include "view/DisplayList.h"
#include "view/ViewProjection.h"

#include "DbBuilders.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

AcDbObjectId AddLayer(AcDbDatabase& db, const std::wstring& strName, short nColour, bool bOff) {
    AcDbLayerTable* pTable = nullptr;
    db.getLayerTable(pTable, AcDb::kForWrite);
    auto* pLayer = new AcDbLayerTableRecord;
    pLayer->setName(strName);
    pLayer->setColorIndex(nColour);
    pLayer->setIsOff(bOff);
    AcDbObjectId id;
    pTable->add(id, pLayer);
    pLayer->close();
    pTable->close();
    return id;
}

AcDbLine* LineOn(const std::wstring& strLayer, AcGePoint3d a, AcGePoint3d b, short nColour = 256) {
    auto* p = new AcDbLine(a, b);
    p->setLayer(strLayer);
    p->setColorIndex(nColour);
    return p;
}

} // namespace

TEST(DisplayList, ColoursResolveByLayerAndByBlockAndHiddenLayersDrawNothing) {
    AcDbDatabase db;
    AddLayer(db, L"RED", 1, false);
    AddLayer(db, L"OFF", 3, true);
    AppendToModelSpace(db, LineOn(L"RED", {0, 0, 0}, {10, 0, 0}));
    AppendToModelSpace(db, LineOn(L"OFF", {0, 5, 0}, {10, 5, 0}));
    // A block whose line is by block, referenced in colour 5, moved by (100, 0).
    AppendToBlock(db, L"B", LineOn(L"0", {0, 0, 0}, {0, 10, 0}, 0));
    AcDbBlockTable* pTable = nullptr;
    db.getBlockTable(pTable, AcDb::kForRead);
    AcDbObjectId blockId;
    pTable->getAt(L"B", blockId);
    pTable->close();
    auto* pRef = new AcDbBlockReference({100, 0, 0}, blockId);
    pRef->setColorIndex(5);
    AppendToModelSpace(db, pRef);

    CDisplayList list;
    BuildDisplayList(db, VIEW_STATE(), nullptr, list);
    ASSERT_EQ(list.m_lines.size(), 2u);
    EXPECT_EQ(list.m_lines[0].nColour, 1);
    EXPECT_EQ(list.m_lines[1].nColour, 5);
    EXPECT_DOUBLE_EQ(list.m_lines[1].a.x, 100.0);
    EXPECT_DOUBLE_EQ(list.m_lines[1].b.y, 10.0);
}

TEST(DisplayList, BulgedPolylineArcsStayOnTheirCircle) {
    AcDbDatabase db;
    auto* pPl = new AcDbPolyline;
    // Two half circles of radius 5 around (5, 0): one counter-clockwise, one back clockwise.
    pPl->addVertexAt(0, {0, 0}, 1.0);
    pPl->addVertexAt(1, {10, 0}, 1.0);
    pPl->setClosed(true);
    AppendToModelSpace(db, pPl);
    CDisplayList list;
    BuildDisplayList(db, VIEW_STATE(), nullptr, list);
    ASSERT_GT(list.m_lines.size(), 20u);
    double minY = 0, maxY = 0;
    for (const DL_LINE& l : list.m_lines) {
        EXPECT_NEAR(std::hypot(l.a.x - 5, l.a.y), 5.0, 1e-9);
        minY = std::min(minY, l.a.y);
        maxY = std::max(maxY, l.a.y);
    }
    EXPECT_NEAR(minY, -5.0, 1e-9);
    EXPECT_NEAR(maxY, 5.0, 1e-9);
}

TEST(DisplayList, TextCentredOnItsAlignmentPointKeepsItsMultiLineBreaks) {
    AcDbDatabase db;
    auto* pText = new AcDbText;
    pText->setTextString(L"开孔");
    pText->setHeight(10);
    pText->setHorizontalMode(AcDb::kTextCenter);
    pText->setAlignmentPoint({50, 0, 0});
    AppendToModelSpace(db, pText);
    auto* pMText = new AcDbMText;
    pMText->setContents(L"{\\fSimSun|b0;A}\\PB");
    AppendToModelSpace(db, pMText);
    CDisplayList list;
    BuildDisplayList(db, VIEW_STATE(), nullptr, list);
    ASSERT_EQ(list.m_texts.size(), 3u);
    const DL_TEXT& t = list.m_texts[0];
    EXPECT_EQ(t.strText, L"开孔");
    EXPECT_NEAR(t.origin.x + t.dAdvance / 2, 50.0, 1e-9);
    EXPECT_EQ(list.m_texts[1].strText, L"A");
    EXPECT_EQ(list.m_texts[2].strText, L"B");
    EXPECT_LT(list.m_texts[2].origin.y, list.m_texts[1].origin.y);
}

TEST(ViewProjection, ZoomExtentsFitsThePlanAndIsoViewsPutXToTheRight) {
    CDisplayList list;
    list.m_lines.push_back({{0, 0, 0}, {200, 0, 0}, 7, 0});
    list.m_lines.push_back({{0, 0, 0}, {0, 100, 0}, 7, 0});
    VIEW_STATE view;
    ASSERT_TRUE(ZoomViewToExtents(list, 400, 200, view));
    CProjectedView px = ProjectDisplayList(list, view, 400, 200);
    // 200 wide on 400 pixels with the margin: x from about 4 to 396, y down.
    EXPECT_NEAR(px.m_lines[0].a.x, 200 - 100 * px.m_dScale, 1e-9);
    EXPECT_GT(px.m_lines[0].b.x, 390);
    EXPECT_GT(px.m_lines[1].a.y, px.m_lines[1].b.y);

    AcGeVector3d dir;
    ASSERT_TRUE(PresetViewDirection(L"_seiso", dir));
    view.direction = dir;
    px = ProjectDisplayList(list, view, 400, 200);
    EXPECT_GT(px.m_lines[0].b.x, px.m_lines[0].a.x); // X runs right and down
    EXPECT_GT(px.m_lines[0].b.y, px.m_lines[0].a.y);
    EXPECT_LT(px.m_lines[1].b.y, px.m_lines[1].a.y); // Y runs right and up
    EXPECT_FALSE(PresetViewDirection(L"_sideways", dir));
}

TEST(ViewProjection, FacetsFacingAwayAreCulledAndTheRestPaintFarToNear) {
    CDisplayList list;
    DL_TRIANGLE low{{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, {0, 0, 1}, 1};
    DL_TRIANGLE high{{{0, 0, 5}, {1, 0, 5}, {0, 1, 5}}, {0, 0, 1}, 2};
    DL_TRIANGLE under{{{0, 0, -1}, {0, 1, -1}, {1, 0, -1}}, {0, 0, -1}, 3};
    list.m_triangles = {high, under, low};
    VIEW_STATE view;
    view.dHeight = 10;
    CProjectedView px = ProjectDisplayList(list, view, 100, 100);
    ASSERT_EQ(px.m_polygons.size(), 2u);
    EXPECT_EQ(px.m_polygons[0].nColour, 1);
    EXPECT_EQ(px.m_polygons[1].nColour, 2);
}
