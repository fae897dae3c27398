// A panel's parts and record: where the axes and dimensions go, what the record holds, layers.
#include "panel/PanelRecord.h"

#include "drawingdata/Records.h"

#include "DbBuilders.h"
#include "SolidKernel.h"

#include <gtest/gtest.h>

namespace {

template <class T> T* Open(AcDbObjectId id) {
    T* p = nullptr;
    EXPECT_EQ(acdbOpenObject(p, id, AcDb::kForRead), Acad::eOk);
    return p;
}

void AddLayer(AcDbDatabase& db, const wchar_t* pszName) {
    AcDbLayerTable* pTable = nullptr;
    db.getLayerTable(pTable, AcDb::kForWrite);
    auto* pLayer = new AcDbLayerTableRecord();
    pLayer->setName(pszName);
    pTable->add(pLayer);
    pLayer->close();
    pTable->close();
}

} // namespace

TEST(PanelRecord, PartsStandAroundTheCentroidWithRealSizeTexts) {
    AcDbDatabase db;
    AddLayer(db, L"CENT");
    PANEL_PARTS parts =
        BuildPanelParts(&db, AcGePoint3d(50, 20, -1), 100, 40, 2, 10.0, true, false, true);
    EXPECT_TRUE(parts.idAxisY.isNull());
    auto* pX = Open<AcDb2dPolyline>(parts.idAxisX);
    ASSERT_EQ(pX->numVerts(), 2u);
    EXPECT_DOUBLE_EQ(pX->vertices()[0].pt.x, 105.0); // half length plus 5 percent
    EXPECT_DOUBLE_EQ(pX->vertices()[1].pt.x, -5.0);
    EXPECT_DOUBLE_EQ(pX->vertices()[0].pt.z, 1.0); // one unit above the top face
    EXPECT_EQ(pX->layer() + L"|" + pX->linetype(), L"CENT|CENTER");
    EXPECT_EQ(pX->colorIndex(), 4);
    EXPECT_DOUBLE_EQ(pX->linetypeScale(), 2.0);
    pX->close();
    auto* pZ = Open<AcDbLine>(parts.idAxisZ);
    EXPECT_DOUBLE_EQ(pZ->startPoint().z, -1 - 1 - 0.1 - 2.0);
    pZ->close();

    auto* pLength = Open<AcDbDimension>(parts.idDimLength);
    EXPECT_EQ(pLength->dimensionText(), L"1000.00");
    EXPECT_DOUBLE_EQ(pLength->xLine1Point().y, 40.0);
    EXPECT_DOUBLE_EQ(pLength->dimLinePoint().x, 2.0); // 2 percent of the longer side
    EXPECT_EQ(pLength->layer(), L"0");                // no "DIM" layer: the current one
    pLength->close();
    auto* pWidth = Open<AcDbDimension>(parts.idDimWidth);
    EXPECT_EQ(pWidth->dimensionText(), L"400.00");
    EXPECT_DOUBLE_EQ(pWidth->dimLinePoint().y, 38.0);
    pWidth->close();
}

TEST(PanelRecord, RecordHoldsSizesThenHandlesAndMarksThePanel) {
    UseSolidKernel();
    AcDbDatabase db;
    auto* pSolid = new AcDb3dSolid();
    ASSERT_EQ(pSolid->createBox(10, 10, 1), Acad::eOk);
    AcDbObjectId idSolid = AppendToModelSpace(db, pSolid);
    EXPECT_FALSE(IsPanelSolid(idSolid));
    PANEL_PARTS parts = BuildPanelParts(&db, AcGePoint3d(), 10, 10, 1, 1.0, false, true, false);
    AcDbEntity* pEnt = nullptr;
    ASSERT_EQ(acdbOpenObject(pEnt, idSolid, AcDb::kForWrite), Acad::eOk);
    EXPECT_TRUE(WritePanelRecord(&db, pEnt, 1000, 800.005, 0.01, parts));
    pEnt->close();
    EXPECT_TRUE(IsPanelSolid(idSolid));
    pEnt = Open<AcDbEntity>(idSolid);
    std::wstring x, y, z, strHandle;
    ASSERT_TRUE(ReadPanelSizes(pEnt, x, y, z));
    EXPECT_EQ(x + L"|" + y + L"|" + z, L"1000.00|800.00|0.01");
    EXPECT_FALSE(HasXData(pEnt, kAxisXApp));
    ASSERT_TRUE(GetXDataValue(pEnt, kAxisYApp, 1005, strHandle));
    EXPECT_EQ(strHandle, parts.idAxisY.handle().text());
    EXPECT_TRUE(HasXData(pEnt, kDimWidthApp));
    pEnt->close();
    // A line carrying the mark is no panel.
    AcDbObjectId idLine = AppendToModelSpace(db, new AcDbLine());
    ASSERT_EQ(acdbOpenObject(pEnt, idLine, AcDb::kForWrite), Acad::eOk);
    AppendXDataValue(&db, pEnt, kPanelApp, 1000, L"1||2");
    EXPECT_FALSE(IsPanelSolid(pEnt));
    EXPECT_FALSE(ReadPanelSizes(pEnt, x, y, z)); // two parts only
    pEnt->close();
}

TEST(PanelRecord, EnsureLayerMakesOrWakesTheLayer) {
    AcDbDatabase db;
    AcDbObjectId id = EnsureLayer(L"CENT", 5, &db);
    auto* pLayer = Open<AcDbLayerTableRecord>(id);
    EXPECT_EQ(pLayer->colorIndex(), 5);
    pLayer->close();
    ASSERT_EQ(acdbOpenObject(pLayer, id, AcDb::kForWrite), Acad::eOk);
    pLayer->setIsFrozen(true);
    pLayer->setIsLocked(true);
    pLayer->setIsOff(true);
    pLayer->setColorIndex(1);
    pLayer->close();
    EXPECT_EQ(EnsureLayer(L"cent", 5, &db), id);
    pLayer = Open<AcDbLayerTableRecord>(id);
    EXPECT_FALSE(pLayer->isFrozen() || pLayer->isLocked() || pLayer->isOff());
    EXPECT_EQ(pLayer->colorIndex(), 1); // an existing layer keeps its colour
    pLayer->close();
    EXPECT_TRUE(EnsureLayer(L"X", 1, nullptr).isNull());
}
