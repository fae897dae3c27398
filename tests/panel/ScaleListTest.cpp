// Scale texts: ratios, the positive-real test, the sorted list and its file.
#include "panel/ScaleList.h"

#include "TestData.h"
#include "TestHost.h"
#include "base/FileSystem.h"

#include <gtest/gtest.h>

TEST(ScaleList, RatioIsRightOverLeft) {
    EXPECT_DOUBLE_EQ(ScaleTextToRatio(L""), 1.0);
    EXPECT_DOUBLE_EQ(ScaleTextToRatio(L"1:10"), 10.0);
    EXPECT_DOUBLE_EQ(ScaleTextToRatio(L"2:1"), 0.5);
    EXPECT_DOUBLE_EQ(ScaleTextToRatio(L"1:2.5"), 2.5);
    EXPECT_DOUBLE_EQ(ScaleTextToRatio(L"4"), 4.0);
    EXPECT_DOUBLE_EQ(ScaleTextToRatio(L"1:2:3"), 2.0); // the first ":" splits
}

TEST(ScaleList, PositiveRealNeedsDigitsOnBothSidesOfTheDot) {
    for (const wchar_t* psz : {L"5", L" 12 ", L"0", L"2.5", L"007.50"})
        EXPECT_TRUE(IsPositiveReal(psz)) << psz;
    for (const wchar_t* psz :
         {L"", L"  ", L".5", L"5.", L"-5", L"+5", L"1.2.3", L"1e3", L"1 2", L"１２", L"."})
        EXPECT_FALSE(IsPositiveReal(psz)) << psz;
}

TEST(ScaleList, SortDropsDuplicatesThenOrdersByTheRightNumber) {
    CStringArray arr = {L"1:10", L"2:5", L"1:5", L"1:1", L"1:10", L"1:2.5", L"1:5"};
    SortScaleList(arr);
    EXPECT_EQ(arr, (CStringArray{L"1:1", L"1:2.5", L"2:5", L"1:5", L"1:10"}));

    CStringArray texts = {L"A:3", L"a:3", L"x", L"b:1"};
    SortScaleList(texts); // no case for duplicates; "x" has no ":" and reads as 0
    EXPECT_EQ(texts, (CStringArray{L"x", L"b:1", L"A:3"}));
}

TEST(ScaleList, FileGivesItsScalesOrTheNineDefaults) {
    CTempDir dir;
    CTestHost host;
    host.m_strLocal = dir.Path();
    EXPECT_EQ(DefaultScaleList().size(), 9u);
    FsCreateDirectory(dir / L"LocalData");
    WriteBytes(dir / L"LocalData\\DwgScale.txt", "\r\n  \r\n");
    EXPECT_EQ(LoadScaleList(), DefaultScaleList());

    WriteBytes(dir / L"LocalData\\DwgScale.txt", " 1:10 \r\n\r\n2:20\r\n1:1\n1:2.5");
    CStringArray arr = LoadScaleList();
    EXPECT_EQ(arr, (CStringArray{L"1:10", L"2:20", L"1:1", L"1:2.5"}));
    SortScaleList(arr);
    ASSERT_TRUE(SaveScaleList(arr));
    EXPECT_EQ(Hex(ReadBytes(dir / L"LocalData\\DwgScale.txt")),
              Hex(ReadTestData("panel/dwgscale_saved.txt")));
}
