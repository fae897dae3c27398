// CString semantics at the edges: clamping, find from an index, ASCII-only case folding.
#include "base/StrUtil.h"

#include <gtest/gtest.h>

TEST(StrUtil, CaseFoldingIsAsciiAndFoldsToLower) {
    EXPECT_LT(CompareNoCase(L"_x", L"A"), 0); // '_' (0x5F) sorts after 'A' but before 'a'
    EXPECT_EQ(CompareNoCase(L"InstallHole", L"INSTALLHOLE"), 0);
    EXPECT_NE(CompareNoCase(L"Ä", L"ä"), 0); // only ASCII letters fold
    EXPECT_LT(CompareNoCase(L"ab", L"abc"), 0);
    EXPECT_EQ(StrMakeUpper(L"a1ä"), L"A1ä");
    EXPECT_EQ(StrMakeLower(L"ABC.DWG"), L"abc.dwg");
}

TEST(StrUtil, LeftMidRightClampLikeCString) {
    EXPECT_EQ(StrLeft(L"abc", 5), L"abc");
    EXPECT_EQ(StrLeft(L"abc", -1), L"");
    EXPECT_EQ(StrMid(L"abc", 5), L"");
    EXPECT_EQ(StrMid(L"abc", -2, 2), L"ab");
    EXPECT_EQ(StrMid(L"abc", 1, 99), L"bc");
    EXPECT_EQ(StrMid(L"abc", 1, -1), L"");
    EXPECT_EQ(StrRight(L"abc", 2), L"bc");
    EXPECT_EQ(StrRight(L"abc", 9), L"abc");
}

TEST(StrUtil, FindFromIndexAndReplace) {
    EXPECT_EQ(StrFind(L"a\\b\\c", L'\\', 2), 3);
    EXPECT_EQ(StrFind(L"abc", L"c", 4), -1);
    EXPECT_EQ(StrFind(L"abc", L"", 3), 3);
    EXPECT_EQ(StrReverseFind(L"a.b.c", L'.'), 3);
    std::wstring s = L"aaa";
    EXPECT_EQ(StrReplace(s, L"aa", L"a"), 1); // no rescan of replaced text
    EXPECT_EQ(s, L"aa");
    EXPECT_EQ(StrReplace(s, L"", L"x"), 0);
}

TEST(StrUtil, TrimBySetAndWhiteSpace) {
    EXPECT_EQ(StrTrim(L" \t版本\r\n"), L"版本");
    EXPECT_EQ(StrTrimRight(L"a\\\\", L"\\"), L"a");
    EXPECT_EQ(StrTrimLeft(L"xxa", L"x"), L"a");
    EXPECT_EQ(StrTrim(L"xxx", L"x"), L"");
}

TEST(StrUtil, Utf8RoundTripAndInvalidBytes) {
    std::wstring s = L"开孔图库 Ω 😀";
    EXPECT_EQ(Utf8ToWide(WideToUtf8(s)), s);
    EXPECT_EQ(Utf8ToWide("a\xFF"
                         "b\xE5"),
              L"a\xFFFD"
              L"b\xFFFD");
}
