// Extended data values by group width, applications, named and extension records, string chains.
#include "drawingdata/Records.h"
#include "drawingdata/RecordKeys.h"

#include "DbBuilders.h"
#include "TestHost.h"

#include <gtest/gtest.h>

TEST(Records, ExtendedDataValuesKeepTheirGroupWidths) {
    AcDbDatabase db;
    AcDbObjectId id = AppendToModelSpace(db, new AcDbText);
    AcDbEntity* pEnt = nullptr;
    ASSERT_EQ(acdbOpenObject(pEnt, id, AcDb::kForRead), Acad::eOk);
    EXPECT_FALSE(HasXData(pEnt, TZ_SYMB2_LABEL));
    EXPECT_TRUE(SetXDataValue(&db, pEnt, TZ_SYMB2_LABEL, 1005, L"2A"));
    EXPECT_TRUE(pEnt->isWriteEnabled()); // upgraded, the caller closes
    EXPECT_TRUE(SetXDataValue(&db, pEnt, DZB_ORIGINPOINT_POS, 1010, AcGePoint3d(1, 2, 3)));
    EXPECT_TRUE(SetXDataValue(&db, pEnt, DZB_TOTAL_WIDTH_WL, 1040, 12.5));
    EXPECT_TRUE(SetXDataValue(&db, pEnt, L"TZ_N", 1070, 70000)); // cut to 16 bits
    EXPECT_TRUE(AppendXDataValue(&db, pEnt, L"TZ_N", 1071, 70000));
    EXPECT_TRUE(AppendXDataValue(&db, pEnt, TZ_SYMB2_NoLineTerm, 1000, L"A1"));
    EXPECT_TRUE(AppendXDataValue(&db, pEnt, TZ_SYMB2_NoLineTerm, 1000, L"A2"));
    EXPECT_TRUE(SetXDataValue(&db, pEnt, TZ_SYMB2_LABEL, 1005, L"2B")); // replaces
    EXPECT_FALSE(SetXDataValue(&db, pEnt, L"TZ_BAD", 1, L"x"));         // no xdata group 1
    pEnt->close();

    ASSERT_EQ(acdbOpenObject(pEnt, id, AcDb::kForRead), Acad::eOk);
    std::wstring text;
    EXPECT_TRUE(GetXDataValue(pEnt, TZ_SYMB2_LABEL, 1005, text));
    EXPECT_EQ(text, L"2B");
    AcGePoint3d pt;
    EXPECT_TRUE(GetXDataValue(pEnt, DZB_ORIGINPOINT_POS, 1010, pt));
    EXPECT_EQ(pt, AcGePoint3d(1, 2, 3));
    double d = 0;
    EXPECT_TRUE(GetXDataValue(pEnt, DZB_TOTAL_WIDTH_WL, 1040, d));
    EXPECT_EQ(d, 12.5);
    int n = 0;
    EXPECT_TRUE(GetXDataValue(pEnt, L"TZ_N", 1070, n));
    EXPECT_EQ(n, static_cast<short>(70000));
    EXPECT_TRUE(GetXDataValue(pEnt, L"TZ_N", 1071, n));
    EXPECT_EQ(n, 70000);
    EXPECT_TRUE(GetXDataValue(pEnt, TZ_SYMB2_NoLineTerm, 1000, text));
    EXPECT_EQ(text, L"A1"); // the first node of the group
    EXPECT_FALSE(GetXDataValue(pEnt, DZB_TOTAL_WIDTH_WL, 1040, text)); // wrong width
    EXPECT_FALSE(
        GetXDataValue(pEnt, TZ_SYMB2_Location, 1005, text)); // the other case is another app
    EXPECT_FALSE(GetXDataValue(nullptr, TZ_SYMB2_LABEL, 1005, text));
    resbuf* all = pEnt->xData(TZ_SYMB2_NoLineTerm);
    EXPECT_EQ(ChainTexts(all), (std::vector<std::wstring>{TZ_SYMB2_NoLineTerm, L"A1", L"A2"}));
    acutRelRb(all);
    pEnt->close();
}

TEST(Records, RegisteredApplicationsInBothForms) {
    AcDbDatabase db;
    EXPECT_EQ(EnsureRegApp(&db, L"TZ_SYMB2_location"), 1);
    EXPECT_EQ(EnsureRegApp(&db, L"TZ_SYMB2_location"), 1);
    EXPECT_EQ(EnsureRegApp(&db, L"bad<name"), 0);
    EXPECT_EQ(EnsureRegApp(nullptr, L"TZ_X"), 0);

    CTestHost host;
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
    EXPECT_EQ(EnsureRegApp(L"TZ_Y"), 0);
    EXPECT_EQ(host.m_strPrinted, L"\n无法注册应用程序 TZ_Y");
    acdbHostApplicationServices()->setWorkingDatabase(&db);
    host.m_strPrinted.clear();
    EXPECT_EQ(EnsureRegApp(L"TZ_Y"), 1);
    EXPECT_EQ(EnsureRegApp(L"TZ_Y"), 1);
    EXPECT_EQ(host.m_strPrinted, L"");
    AcDbRegAppTable* pApps = nullptr;
    db.getRegAppTable(pApps, AcDb::kForRead);
    EXPECT_TRUE(pApps->has(L"TZ_Y"));
    pApps->close();
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
}

TEST(Records, NamedRecordsAreMadeReadAndRemoved) {
    AcDbDatabase db;
    resbuf* pChain = nullptr;
    EXPECT_EQ(ReadNamedXrecord(&db, TZ_DWG_DICITIONARY, TZ_SCALE_XRECORD, pChain), 0);
    EXPECT_EQ(pChain, nullptr);
    resbuf* pIn = ChainFromStrings({KEY_SCALE, L"1:20"});
    EXPECT_EQ(WriteNamedXrecord(&db, TZ_DWG_DICITIONARY, TZ_SCALE_XRECORD, pIn), 1);
    acutSetRbString(pIn->rbnext, L"1:30"); // the caller's chain is copied
    EXPECT_EQ(WriteNamedXrecord(&db, TZ_DWG_DICITIONARY, TZ_COUNT_XRECORD, pIn), 1);
    ASSERT_EQ(ReadNamedXrecord(&db, TZ_DWG_DICITIONARY, TZ_SCALE_XRECORD, pChain), 1);
    CStringArray strings;
    StringsFromChain(pChain, strings);
    acutRelRb(pChain);
    EXPECT_EQ(strings, (CStringArray{KEY_SCALE, L"1:20"}));
    EXPECT_EQ(WriteNamedXrecord(&db, TZ_DWG_DICITIONARY, TZ_SCALE_XRECORD, pIn), 1); // overwrite
    ASSERT_EQ(ReadNamedXrecord(&db, TZ_DWG_DICITIONARY, TZ_SCALE_XRECORD, pChain), 1);
    EXPECT_EQ(ChainTexts(pChain), (std::vector<std::wstring>{KEY_SCALE, L"1:30"}));
    acutRelRb(pChain);
    acutRelRb(pIn);
    AcDbObjectId removedId;
    {
        AcDbDictionary* pNod = nullptr;
        ASSERT_EQ(db.getNamedObjectsDictionary(pNod, AcDb::kForRead), Acad::eOk);
        AcDbDictionary* pDict = nullptr;
        ASSERT_EQ(pNod->getAt(TZ_DWG_DICITIONARY, pDict, AcDb::kForRead), Acad::eOk);
        pNod->close();
        ASSERT_EQ(pDict->getAt(TZ_SCALE_XRECORD, removedId), Acad::eOk);
        pDict->close();
    }
    EXPECT_EQ(RemoveNamedXrecord(&db, TZ_DWG_DICITIONARY, TZ_SCALE_XRECORD), 1);
    EXPECT_TRUE(removedId.isErased()); // gone from the drawing, not only from its dictionary
    EXPECT_EQ(RemoveNamedXrecord(&db, TZ_DWG_DICITIONARY, TZ_SCALE_XRECORD), 0);
    EXPECT_EQ(ReadNamedXrecord(&db, TZ_DWG_DICITIONARY, TZ_SCALE_XRECORD, pChain), 0);
    EXPECT_EQ(ReadNamedXrecord(&db, TZ_DWG_DICITIONARY, TZ_COUNT_XRECORD, pChain), 1);
    acutRelRb(pChain);
    EXPECT_EQ(ChainFromStrings({}), nullptr);
    EXPECT_EQ(WriteNamedXrecord(&db, L"", TZ_SCALE_XRECORD, nullptr),
              0); // setAt refuses an empty key
}

TEST(Records, ExtensionRecordsMatchTrimmedNamesWithoutCase) {
    AcDbDatabase db;
    AcDbObjectId id = AppendToModelSpace(db, new AcDbCircle);
    AcDbEntity* pEnt = nullptr;
    ASSERT_EQ(acdbOpenObject(pEnt, id, AcDb::kForRead), Acad::eOk);
    resbuf* pOut = nullptr;
    EXPECT_EQ(ReadExtXrecord(pEnt, TZ_SYMB_BOMANDLABEL, pOut), 0);
    resbuf* pIn = ChainFromStrings({KEY_RECOMMENDED_NAME, L"按钮"});
    EXPECT_EQ(WriteExtXrecord(pEnt, L" tz_symb_bomandlabel ", pIn), 1);
    EXPECT_EQ(WriteExtXrecord(pEnt, TZBOM_LABEL, pIn),
              1); // the dictionary exists: status 26 is fine
    acutRelRb(pIn);
    pEnt->close();
    ASSERT_EQ(acdbOpenObject(pEnt, id, AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(ReadExtXrecord(pEnt, TZ_SYMB_BOMANDLABEL, pOut), 1);
    EXPECT_EQ(ChainTexts(pOut), (std::vector<std::wstring>{KEY_RECOMMENDED_NAME, L"按钮"}));
    acutRelRb(pOut);
    pEnt->close();
}
