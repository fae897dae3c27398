// Item names, paths, the key filter, twin directories and the library mode.
#include "library/LibraryRules.h"

#include <gtest/gtest.h>

TEST(LibraryRules, ItemNameNormalisationAndPath) {
    std::wstring strName = L"ABC.DWG";
    EXPECT_TRUE(NormaliseItemName(strName));
    EXPECT_EQ(strName, L"ABC");
    strName = L".dwg";
    EXPECT_FALSE(NormaliseItemName(strName));
    strName = L"a.dwg.dwg";
    EXPECT_TRUE(NormaliseItemName(strName));
    EXPECT_EQ(strName, L"a.dwg"); // one extension is cut
    EXPECT_EQ(MakeItemPath(L"d:\\lib\\", L"5x10"), L"d:\\lib\\5x10.dwg");
}

TEST(LibraryRules, BlockNameTestIsTheEditorsAndTheMessageNames31) {
    EXPECT_TRUE(IsValidNewItemName(std::wstring(32, L'x')));
    EXPECT_FALSE(IsValidNewItemName(L""));
    EXPECT_FALSE(IsValidNewItemName(L"a:b"));
    EXPECT_EQ(BlockNameRefusalText(L"a:b"),
              L"块名“a:b”错误！\n块名不允许有空格等限制字符,且字符数小于等于31！\n");
}

TEST(LibraryRules, NameFieldKeyFilter) {
    EXPECT_TRUE(IsNameKeySwallowed(191, false));
    EXPECT_TRUE(IsNameKeySwallowed(191, true));
    for (unsigned key : {186u, 56u, 222u, 188u, 190u}) {
        EXPECT_FALSE(IsNameKeySwallowed(key, false)) << key;
        EXPECT_TRUE(IsNameKeySwallowed(key, true)) << key;
    }
    EXPECT_FALSE(IsNameKeySwallowed(220, true)); // backslash and bar pass
    EXPECT_FALSE(IsNameKeySwallowed(65, true));
}

TEST(LibraryRules, TwinDirectoryIsAPlainTextReplacement) {
    std::wstring strLocal = L"d:\\qm\\local\\";
    EXPECT_EQ(MakeTwinDir(L"d:\\qm\\local\\InstallHole\\按钮\\", strLocal, LibraryKind::Hole),
              L"d:\\qm\\local\\LaySketch\\按钮\\");
    EXPECT_EQ(MakeTwinDir(L"d:\\qm\\local\\LaySketch\\a\\", strLocal, LibraryKind::Layout),
              L"d:\\qm\\local\\InstallHole\\a\\");
    // A hole library under another root has no twin.
    EXPECT_EQ(MakeTwinDir(L"e:\\common\\InstallHole\\a\\", strLocal, LibraryKind::Hole),
              L"e:\\common\\InstallHole\\a\\");
}

TEST(LibraryRules, LibraryModeFromStyleAndLogin) {
    EXPECT_EQ(DeriveFtpMode(0, 0), 0);
    EXPECT_EQ(DeriveFtpMode(1, 0), -1);
    EXPECT_EQ(DeriveFtpMode(2, 0), -1);
    EXPECT_EQ(DeriveFtpMode(1, 1), 1);
    EXPECT_EQ(DeriveFtpMode(2, 1), 2);
    EXPECT_EQ(RecomputeFtpMode(0, 2), 0);
    EXPECT_EQ(RecomputeFtpMode(1, 2), 2); // an offline fallback stays
    EXPECT_STREQ(kNoFtpLoginText, L"没有通过FTP登录验证!");
}
