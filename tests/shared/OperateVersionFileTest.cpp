// The version file: byte-exact rewrites, the roll-forward of dates, loose reading, the
// parts-database stamp.
#include "shared/OperateVersionFile.h"

#include "TestData.h"
#include "TestHost.h"
#include "base/CodePage.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

std::tm g_fixedTime{};
bool g_bClockFails = false;

bool FixedClock(std::tm& t) {
    t = g_fixedTime;
    return !g_bClockFails;
}

// 2026-11-21 16:02:09 local time, unless a test says otherwise.
class VersionFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        g_fixedTime = std::tm{};
        g_fixedTime.tm_year = 126;
        g_fixedTime.tm_mon = 10;
        g_fixedTime.tm_mday = 21;
        g_fixedTime.tm_hour = 16;
        g_fixedTime.tm_min = 2;
        g_fixedTime.tm_sec = 9;
        g_bClockFails = false;
        SetVersionClock(&FixedClock);
        m_host.m_strInstall = m_dir.Path();
    }
    void TearDown() override { SetVersionClock(nullptr); }

    // The header a rewrite leaves when the file starts with strStoredHeader.
    std::wstring HeaderAfterCommitOver(const std::wstring& strStoredHeader) {
        std::wstring strFile = m_dir / L"Server.xml";
        WriteBytes(strFile, EncodeText(strStoredHeader + L"\n"));
        COperateVersionFile file(strFile);
        file.UpdateRecord(L"InstallHole\\a.dwg", L"MOD");
        std::wstring strHeader;
        ReadFirstLine(strFile, strHeader);
        return strHeader;
    }

    CTempDir m_dir;
    CTestHost m_host;
};

} // namespace

TEST_F(VersionFileTest, VersionDateHasFixedWidthFieldsAndTheFailureValues) {
    EXPECT_EQ(COperateVersionFile::MakeVersionDate(), L"2026,11,21,16,02,09");
    g_fixedTime.tm_year = -1850; // a two-digit year gets 1900 once more
    EXPECT_EQ(COperateVersionFile::MakeVersionDate(), L"1950,11,21,16,02,09");
    g_bClockFails = true;
    EXPECT_EQ(COperateVersionFile::MakeVersionDate(), L"1900,00,00,-01,-01,-01");
}

TEST_F(VersionFileTest, NewFileHoldsHeaderAndOneRecordWithoutFinalLineEnd) {
    COperateVersionFile file(m_dir / L"Server.xml");
    ASSERT_TRUE(file.UpdateRecord(L"InstallHole\\柜门\\abc.dwg", L"MOD"));
    EXPECT_EQ(Hex(ReadBytes(m_dir / L"Server.xml")), Hex(ReadTestData("shared/server_new.xml")));
    EXPECT_FALSE(IsFileExist(m_dir / L"Client_PartLib.xml"));
}

TEST_F(VersionFileTest, DefaultFileLiesInTheInstallDirectory) {
    COperateVersionFile file;
    EXPECT_EQ(file.m_strVersionFile, m_dir / L"Server.xml");
    EXPECT_TRUE(file.m_strReserved.empty());
}

TEST_F(VersionFileTest, BatchOverOddFileIsNewestFirstAndDropsBlankAndOldRecords) {
    std::wstring strFile = m_dir / L"Server.xml";
    WriteBytes(strFile, ReadTestData("shared/server_odd.xml"));
    COperateVersionFile file(strFile);
    ASSERT_TRUE(
        file.UpdateRecords({L"installhole\\a.DWG", L"InstallHole\\b.dwg"}, {L"MOD", L"DEL"}));
    EXPECT_EQ(Hex(ReadBytes(strFile)), Hex(ReadTestData("shared/server_odd_after.xml")));
}

TEST_F(VersionFileTest, StoredDateAsNewOrNewerRollsTheLastFieldForward) {
    // A seed with the blank sorts below the same day's real stamp: no roll.
    EXPECT_EQ(HeaderAfterCommitOver(L"版本日期：2026,11,21, 16:02:09"),
              L"版本日期：2026,11,21,16,02,09");
    EXPECT_EQ(HeaderAfterCommitOver(L"版本日期：2007,07,07,07,07,07"),
              L"版本日期：2026,11,21,16,02,09");
    EXPECT_EQ(HeaderAfterCommitOver(L"版本日期：2026,11,21,16,02,09"),
              L"版本日期：2026,11,21,16,02,10");
    EXPECT_EQ(HeaderAfterCommitOver(L"版本日期：2026,11,21,16,02,59"),
              L"版本日期：2026,11,21,16,02,60");
    // A clock behind the site's last stamp: the site's date still grows.
    EXPECT_EQ(HeaderAfterCommitOver(L"版本日期：2027,01,01,00,00,00"),
              L"版本日期：2027,01,01,00,00,01");
    // No carry: 99 becomes 100, and the next roll loses the shape.
    EXPECT_EQ(HeaderAfterCommitOver(L"版本日期：2026,11,21,16,02,99"),
              L"版本日期：2026,11,21,16,02,100");
    EXPECT_EQ(HeaderAfterCommitOver(L"版本日期：2026,11,21,16,02,100"),
              L"版本日期：2026,11,21,16,02,,01");
    // The prefix is trimmed as a set of characters; a line without it is no header.
    EXPECT_EQ(HeaderAfterCommitOver(L"版本日期：版：2030,01,01,00,00,00"),
              L"版本日期：2030,01,01,00,00,01");
    EXPECT_EQ(HeaderAfterCommitOver(L"2030,01,01,00,00,00"), L"版本日期：2026,11,21,16,02,09");
}

TEST_F(VersionFileTest, RollForwardIsSharedByAllRecordsOfTheCommit) {
    std::wstring strFile = m_dir / L"Server.xml";
    COperateVersionFile file(strFile);
    ASSERT_TRUE(file.UpdateRecord(L"a.dwg", L"MOD"));
    ASSERT_TRUE(file.UpdateRecords({L"b.dwg", L"c\\"}, {L"MOD", L"REN"}));
    EXPECT_EQ(ReadBytes(strFile), EncodeText(L"版本日期：2026,11,21,16,02,10\r\n"
                                             L"c\\|2026,11,21,16,02,10|REN\r\n"
                                             L"b.dwg|2026,11,21,16,02,10|MOD\r\n"
                                             L"a.dwg|2026,11,21,16,02,09|MOD"));
}

TEST_F(VersionFileTest, UncreatableFileFailsAndKeepsTheNewRecords) {
    COperateVersionFile file(m_dir / L"missing\\Server.xml");
    EXPECT_FALSE(file.WriteRecords({L"a.dwg"}, {L"MOD"}));
    ASSERT_EQ(file.m_arrFileInfo.size(), 1u);
    EXPECT_EQ(file.m_arrFileInfo[0]->strPath, L"a.dwg");
    EXPECT_EQ(file.m_arrFileInfo[0]->strDate, L"2026,11,21,16,02,09");
    EXPECT_FALSE(file.UpdateRecords({L"b.dwg"}, {L"DEL"}));
}

TEST_F(VersionFileTest, FewerCodesThanPathsIsAnInvalidArgument) {
    COperateVersionFile file(m_dir / L"Server.xml");
    EXPECT_THROW(file.WriteRecords({L"a.dwg", L"b.dwg"}, {L"MOD"}), std::invalid_argument);
    EXPECT_TRUE(file.m_arrFileInfo.empty());
    EXPECT_FALSE(IsFileExist(m_dir / L"Server.xml"));
}

TEST_F(VersionFileTest, LoneMainLibCommitStampsTheClientFirst) {
    COperateVersionFile broken(m_dir / L"missing\\Server.xml");
    EXPECT_FALSE(broken.UpdateRecord(L"data\\tzmainlib.MDB", L"MOD"));
    EXPECT_EQ(Hex(ReadBytes(m_dir / L"Client_PartLib.xml")),
              Hex(ReadTestData("shared/client_partlib.xml")));

    WriteBytes(m_dir / L"Client_PartLib.xml", "old");
    COperateVersionFile file(m_dir / L"Server.xml");
    ASSERT_TRUE(file.UpdateRecords({L"Data\\TzMainLib.mdb", L"a.dwg"}, {L"MOD", L"MOD"}));
    EXPECT_EQ(ReadBytes(m_dir / L"Client_PartLib.xml"), "old"); // only a lone path stamps
}

TEST_F(VersionFileTest, ReadingIsLooseAndKeepsTheFileOrder) {
    std::wstring strFile = m_dir / L"Server.xml";
    WriteBytes(strFile, EncodeText(L"\r\n  not a header at all\r\n"
                                   L"a\r\nb|1\r\nc|2|MOD|x|y\r\n\r\n|||\r\n"));
    COperateVersionFile file(strFile);
    file.ReadRecords();
    file.ReadRecords(); // appends
    ASSERT_EQ(file.m_arrFileInfo.size(), 8u);
    auto fields = [&](size_t i) {
        const auto& r = *file.m_arrFileInfo[i];
        return r.strPath + L"/" + r.strDate + L"/" + r.strOprt;
    };
    EXPECT_EQ(fields(0), L"//");
    EXPECT_EQ(fields(1), L"b//");
    EXPECT_EQ(fields(2), L"c/2/MOD|x|y");
    EXPECT_EQ(fields(3), L"//|");
    EXPECT_EQ(fields(4), L"//");

    COperateVersionFile missing(m_dir / L"none.xml");
    missing.ReadRecords();
    EXPECT_TRUE(missing.m_arrFileInfo.empty());
}

TEST_F(VersionFileTest, RemoveTakesTheFirstMatchPerPathWithoutCase) {
    std::wstring strFile = m_dir / L"Server.xml";
    WriteBytes(strFile, EncodeText(L"h\r\nA|1|MOD\r\nb|2|MOD\r\na|3|DEL"));
    COperateVersionFile file(strFile);
    file.ReadRecords();
    EXPECT_FALSE(file.RemoveRecords({}));
    EXPECT_TRUE(file.RemoveRecords({L"a", L"zzz"}));
    ASSERT_EQ(file.m_arrFileInfo.size(), 2u);
    EXPECT_EQ(file.m_arrFileInfo[0]->strPath, L"b");
    EXPECT_EQ(file.m_arrFileInfo[1]->strDate, L"3");
}

TEST_F(VersionFileTest, MainLibChangeIsSoughtOnlyAboveTheClientDate) {
    std::wstring strFile = m_dir / L"Server.xml";
    WriteBytes(strFile, EncodeText(L"版本日期：2026,03,01,00,00,00\r\n\r\n"
                                   L"a.dwg|2026,03,01,00,00,00|MOD\r\n"
                                   L"DATA\\tzmainlib.mdb|2026,02,01,00,00,00|MOD\r\n"
                                   L"b.dwg|2026,01,01,00,00,00|MOD"));
    EXPECT_TRUE(IsMainLibChanged(strFile, L""));
    EXPECT_TRUE(IsMainLibChanged(strFile, L"版本日期：2026,01,15,00,00,00"));
    EXPECT_FALSE(IsMainLibChanged(strFile, L"版本日期：2026,02,01,00,00,00"));
    EXPECT_FALSE(IsMainLibChanged(strFile, L"版本日期：2026,03,01,00,00,00"));
    // A seed header with the blank still compares as text.
    EXPECT_TRUE(IsMainLibChanged(strFile, L"版本日期：2026,01,31, 23:59:59"));
    EXPECT_FALSE(IsMainLibChanged(m_dir / L"none.xml", L""));

    WriteBytes(strFile,
               EncodeText(L"版本日期：2026,03,01,00,00,00\r\na.dwg|2026,03,01,00,00,00|MOD"));
    EXPECT_FALSE(IsMainLibChanged(strFile, L""));
}
