// Lines of the servers' LIST output.
#include "ftp/FtpListing.h"

#include <gtest/gtest.h>

TEST(FtpListingTest, ReadsUnixAndDosLinesAndSkipsTheRest) {
    FTP_LIST_ENTRY e;
    ASSERT_TRUE(
        ParseListLine("drwxr-xr-x   2 root     root         4096 Nov 21 16:03 Install Hole\r", e));
    EXPECT_EQ(e.strName, "Install Hole");
    EXPECT_TRUE(e.bDirectory);
    ASSERT_TRUE(ParseListLine("-r--r--r--   1 u g 1234567890123 Jan  2  2024 a.dwg", e));
    EXPECT_EQ(e.strName, "a.dwg");
    EXPECT_FALSE(e.bDirectory);
    EXPECT_TRUE(e.bReadOnly);
    EXPECT_EQ(e.nSize, 1234567890123);
    ASSERT_TRUE(ParseListLine("lrwxrwxrwx 1 u g 5 Nov 21 16:03 link -> target", e));
    EXPECT_EQ(e.strName, "link");
    ASSERT_TRUE(ParseListLine("11-21-26  04:00PM       <DIR>          Lay Sketch", e));
    EXPECT_EQ(e.strName, "Lay Sketch");
    EXPECT_TRUE(e.bDirectory);
    ASSERT_TRUE(ParseListLine("11-21-26  04:00PM                  42 b.dwg", e));
    EXPECT_EQ(e.nSize, 42);
    EXPECT_FALSE(e.bDirectory);

    for (const char* pszLine :
         {"total 12", "", "\r", "drwxr-xr-x 2 u g 4096 Nov 21 16:03 .",
          "drwxr-xr-x 2 u g 4096 Nov 21 16:03 ..", "garbage", "-rw-r--r-- 1 u g 5 Nov 21 16:03"})
        EXPECT_FALSE(ParseListLine(pszLine, e)) << pszLine;
}

TEST(FtpListingTest, RefusesNamesWithControlBytes) {
    FTP_LIST_ENTRY e;
    using namespace std::string_literals;
    for (const std::string& line :
         {"-rw-r--r-- 1 u g 5 Nov 21 16:03 a\0b.dwg"s, "-rw-r--r-- 1 u g 5 Nov 21 16:03 a\tb"s,
          "-rw-r--r-- 1 u g 5 Nov 21 16:03 \x1b[2Jx"s, "11-21-26  04:00PM  42 del\x7f.dwg"s,
          "-rw-r--r-- 1 u g 5 Nov 21 16:03 a\rb"s})
        EXPECT_FALSE(ParseListLine(line, e)) << line;
    EXPECT_TRUE(ParseListLine("-rw-r--r-- 1 u g 5 Nov 21 16:03 图纸 1.dwg", e));
    EXPECT_EQ(e.strName, "图纸 1.dwg");
}

TEST(FtpListingTest, PatternsKeepCaseAndStarDotStarTakesAll) {
    EXPECT_TRUE(MatchRemotePattern(L"*.*", L"README"));
    EXPECT_TRUE(MatchRemotePattern(L"*.dwg", L"a.b.dwg"));
    EXPECT_FALSE(MatchRemotePattern(L"*.dwg", L"A.DWG"));
    EXPECT_TRUE(MatchRemotePattern(L"a?c.DWG", L"abc.DWG"));
    EXPECT_FALSE(MatchRemotePattern(L"Server.xml", L"server.xml"));
}
