// Location and scale, part record numbers, the dot, the library data dot and block names.
#include "drawingdata/DrawingRecords.h"
#include "drawingdata/RecordKeys.h"
#include "drawingdata/Records.h"
#include "dxf/DxfCodec.h"

#include "DbBuilders.h"
#include "TestHost.h"
#include "base/SysPath.h"

#include <cstdlib>
#include <gtest/gtest.h>

namespace {

void WriteScale(AcDbDatabase& db, const CStringArray& strings) {
    resbuf* p = ChainFromStrings(strings);
    WriteNamedXrecord(&db, TZ_DWG_DICITIONARY, TZ_SCALE_XRECORD, p);
    acutRelRb(p);
}

void AddPartRecords(AcDbDatabase& db, std::initializer_list<int> numbers) {
    for (int n : numbers) {
        resbuf* p = ChainFromStrings({PART_LABEL, L"K"});
        WriteNamedXrecord(&db, TZ_DICITIONARY_PART2DATABASE,
                          TZ_XRECORD_ONEPART2_ + std::to_wstring(n), p);
        acutRelRb(p);
    }
}

// The ezdxf-made fixture, read through the reference host's codec.
struct EzdxfFile {
    EzdxfFile() {
        acdbSetFileCodec(&GetDxfCodec());
        std::wstring path =
            FromOsPath(std::string(std::getenv("QM_TEST_DATA")) + "/drawingdata/ezdxf_records.dxf");
        es = db.readDwgFile(path.c_str());
        acdbSetFileCodec(nullptr);
    }
    AcDbDatabase db{false, true};
    Acad::ErrorStatus es;
};

} // namespace

TEST(DrawingRecords, ScaleAndLocationAreReadLoosely) {
    CTestHost host;
    AcDbDatabase db;
    std::wstring out = L"old";
    EXPECT_FALSE(GetDrawingScale(&db, out));
    EXPECT_EQ(out, L"");
    WriteScale(db, {KEY_SCALE, L"1:50"});
    EXPECT_TRUE(GetDrawingScale(&db, out));
    EXPECT_EQ(out, L"1:50");
    WriteScale(db, {L"图纸 比 例", L" 50 "}); // contains the keyword once blanks are gone
    EXPECT_TRUE(GetDrawingScale(&db, out));
    EXPECT_EQ(out, L"1:50");
    WriteScale(db, {L"x", KEY_SCALE});
    GetDrawingScale(&db, out);
    EXPECT_EQ(out, L""); // a key in last place has no value
    EXPECT_TRUE(SetDrawingScale(&db, L"1:100"));
    EXPECT_TRUE(GetDrawingScale(&db, out));
    EXPECT_EQ(out, L"1:100");

    resbuf* p = ChainFromStrings({KEY_LOCATION, L"+A1", KEY_LOCATION, L"+B2"});
    WriteNamedXrecord(&db, TZ_DWG_DICITIONARY, TZ_LOCATION_XRECORD, p);
    acutRelRb(p);
    EXPECT_TRUE(GetDrawingLocation(&db, out));
    EXPECT_EQ(out, L"+A1");
    EXPECT_EQ(host.m_nWaitDepth, 0);

    EzdxfFile file;
    ASSERT_EQ(file.es, Acad::eOk);
    EXPECT_TRUE(GetDrawingScale(&file.db, out));
    EXPECT_EQ(out, L"1:50");
    EXPECT_TRUE(GetDrawingLocation(&file.db, out));
    EXPECT_EQ(out, L"+A1柜");
}

TEST(DrawingRecords, NextPartRecordNumberTakesTheHighestGap) {
    AcDbDatabase none;
    EXPECT_EQ(NextPartRecordNumber(&none), 1);
    auto next = [](std::initializer_list<int> numbers) {
        AcDbDatabase db;
        AddPartRecords(db, numbers);
        return NextPartRecordNumber(&db);
    };
    EXPECT_EQ(next({1, 3, 5, 9}), 6);
    EXPECT_EQ(next({9, 1, 5, 3}), 6);
    EXPECT_EQ(next({2, 3}), 4);
    EXPECT_EQ(next({7}), 1);
    EXPECT_EQ(next({1}), 2);
    EXPECT_EQ(next({1, 2, 3}), 4);
    EXPECT_EQ(next({-1, 1}), 0); // a gap at 0 is a gap
    AcDbDatabase empty;
    AddPartRecords(empty, {1});
    RemoveNamedXrecord(&empty, TZ_DICITIONARY_PART2DATABASE, L"TZ_XRECORD_ONEPART2_1");
    EXPECT_EQ(NextPartRecordNumber(&empty), 1); // the dictionary stays, empty

    EzdxfFile file;
    EXPECT_EQ(NextPartRecordNumber(&file.db), 6);
}

TEST(DrawingRecords, TheDotTestKeepsItsLooseBulgeClause) {
    auto dot = [](double diameter, double bulge, bool bClosed = true) {
        AcDbPolyline* p = MakeDot(0, 0, diameter, bulge);
        p->setClosed(bClosed);
        bool b = IsDotEntity(p);
        delete p;
        return b;
    };
    EXPECT_TRUE(dot(1.0, 1.0));
    EXPECT_TRUE(dot(1.05, 1.0));
    EXPECT_FALSE(dot(1.2, 1.0));
    EXPECT_TRUE(dot(1.0, 0.0)); // any bulge below 1.1 passes
    EXPECT_TRUE(dot(1.0, -1.05));
    EXPECT_FALSE(dot(1.0, 1.2));
    EXPECT_FALSE(dot(1.0, 1.0, false));
    AcDbPolyline* pDot = MakeDot(3, 4);
    EXPECT_EQ(GetDotPoint(pDot), AcGePoint3d(3, 4, 0));
    pDot->addVertexAt(2, AcGePoint2d(9, 9));
    EXPECT_FALSE(IsDotEntity(pDot));
    delete pDot;
    AcDbCircle circle;
    EXPECT_FALSE(IsDotEntity(&circle));
    EXPECT_FALSE(IsDotEntity(nullptr));
}

TEST(DrawingRecords, LibraryDataDotReplacesTheOldOneAndCarriesThePairs) {
    AcDbDatabase db;
    AppendToModelSpace(db, new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(20, 10, 0)));
    AcDbPolyline* pOld = MakeDot(1, 1);
    AcDbObjectId oldId = AppendToModelSpace(db, pOld);
    SetXData(oldId, Chain({acutNewStringRb(1001, TZ_KKDOTPT_FLAG), acutNewStringRb(1000, L"")}));
    db.updateExt();
    CStringArray pairs{KEY_RECOMMENDED_NAME, L"按钮", KEY_RECOMMENDED_MODEL, L"LA38",
                       KEY_RECOMMENDED_CODE, L""};
    ASSERT_TRUE(WriteRecommendedPairs(&db, pairs));
    EXPECT_TRUE(oldId.isErased());
    CStringArray back;
    ASSERT_TRUE(ReadRecommendedPairs(&db, back));
    EXPECT_EQ(back, pairs);
    EXPECT_EQ(FindPairValue(back, L" 推荐型号 "), L"LA38");
    EXPECT_EQ(FindPairValue(back, KEY_RECOMMENDED_CODE), L"");
    EXPECT_EQ(FindPairValue(back, L"方向"), L"");
    // The last key of a list has a value too; a key without one has none.
    EXPECT_EQ(FindPairValue({L"A", L"1", KEY_RECOMMENDED_CODE, L"C-7"}, KEY_RECOMMENDED_CODE),
              L"C-7");
    EXPECT_EQ(FindPairValue({L"A", L"1", KEY_RECOMMENDED_CODE}, KEY_RECOMMENDED_CODE), L"");

    AcDbBlockTableRecord* pMs = nullptr;
    acdbOpenObject(pMs, db.modelSpaceId(), AcDb::kForRead);
    AcDbObjectId dotId = pMs->entities().back();
    pMs->close();
    AcDbPolyline* pDot = nullptr;
    ASSERT_EQ(acdbOpenObject(pDot, dotId, AcDb::kForRead), Acad::eOk);
    EXPECT_TRUE(IsDotEntity(pDot));
    EXPECT_EQ(GetDotPoint(pDot), AcGePoint3d(10, 5, 0));
    EXPECT_FALSE(pDot->isVisible());
    EXPECT_EQ(pDot->colorIndex(), 1);
    double s = 0, e = 0;
    pDot->getWidthsAt(1, s, e);
    EXPECT_EQ(s, 2.0);
    std::wstring flag = L"x";
    EXPECT_TRUE(GetXDataValue(pDot, TZ_KKDOTPT_FLAG, 1000, flag));
    EXPECT_EQ(flag, L"");
    resbuf* pExt = nullptr;
    ASSERT_EQ(ReadExtXrecord(pDot, TZ_KKDOTPT_FLAG, pExt), 1);
    EXPECT_EQ(ChainTexts(pExt), std::vector<std::wstring>(pairs.begin(), pairs.end()));
    acutRelRb(pExt);
    pDot->close();
}

TEST(DrawingRecords, RecommendedPairsFallBackToTheFunctionCentre) {
    AcDbDatabase db;
    CStringArray pairs;
    EXPECT_FALSE(ReadRecommendedPairs(&db, pairs));
    WriteNamedXrecord(&db, TZ_SYMB1LIB_DICITIONARY, TZ_SYMB1LIB_XRECORD,
                      nullptr); // holds no string
    AcDbObjectId plain = AppendToModelSpace(db, new AcDbCircle);
    AcDbEntity* pEnt = nullptr;
    acdbOpenObject(pEnt, plain, AcDb::kForRead);
    resbuf* p = ChainFromStrings({L"wrong"});
    WriteExtXrecord(pEnt, TZ_SYMB_BOMANDLABEL, p); // no function centre flag
    acutRelRb(p);
    pEnt->close();
    EXPECT_FALSE(ReadRecommendedPairs(&db, pairs));

    EzdxfFile file;
    ASSERT_TRUE(ReadRecommendedPairs(&file.db, pairs));
    EXPECT_EQ(pairs, (CStringArray{KEY_RECOMMENDED_NAME, L"按钮", KEY_RECOMMENDED_MODEL, L"LA38"}));
}

TEST(DrawingRecords, EzdxfExtendedDataReadsWithItsWidths) {
    EzdxfFile file;
    AcDbBlockTableRecord* pMs = nullptr;
    ASSERT_EQ(acdbOpenObject(pMs, file.db.modelSpaceId(), AcDb::kForRead), Acad::eOk);
    AcDbObjectId textId = pMs->entities().back();
    AcDbObjectId dotId = pMs->entities().front();
    pMs->close();
    AcDbEntity* pText = nullptr;
    ASSERT_EQ(acdbOpenObject(pText, textId, AcDb::kForRead), Acad::eOk);
    AcGePoint3d pt;
    double d = 0;
    int n = 0;
    std::wstring s;
    EXPECT_TRUE(GetXDataValue(pText, DZB_ORIGINPOINT_POS, 1010, pt));
    EXPECT_EQ(pt, AcGePoint3d(1, 2, 3));
    EXPECT_TRUE(GetXDataValue(pText, DZB_TOTAL_WIDTH_WL, 1040, d));
    EXPECT_EQ(d, 12.5);
    EXPECT_TRUE(GetXDataValue(pText, L"TZ_COUNTS", 1070, n));
    EXPECT_EQ(n, -3);
    EXPECT_TRUE(GetXDataValue(pText, L"TZ_COUNTS", 1071, n));
    EXPECT_EQ(n, 100000);
    EXPECT_TRUE(GetXDataValue(pText, TZ_SYMB2_SymbJxOrderNo, 1000, s));
    EXPECT_EQ(s, L"第1");
    pText->close();
    AcDbEntity* pDot = nullptr;
    ASSERT_EQ(acdbOpenObject(pDot, dotId, AcDb::kForRead), Acad::eOk);
    EXPECT_TRUE(IsDotEntity(pDot));
    EXPECT_TRUE(HasXData(pDot, TZ_KKDOTPT_FLAG));
    pDot->close();
}

TEST(DrawingRecords, BlockNamesFollowTheEditorsRule) {
    EXPECT_TRUE(IsValidBlockName(L"按钮指示灯22mm"));
    EXPECT_FALSE(IsValidBlockName(L""));
    EXPECT_FALSE(IsValidBlockName(L"a:b"));
    EXPECT_FALSE(IsValidBlockName(L"trailing "));
    EXPECT_TRUE(IsValidBlockName(std::wstring(255, L'x')));
    EXPECT_FALSE(IsValidBlockName(std::wstring(256, L'x')));
}
