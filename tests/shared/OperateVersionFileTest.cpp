// The version file: byte-exact rewrites, the roll-forward of dates, loose reading, the
// parts-database stamp.
#include "shared/OperateVersionFile.h"

#include "FixedVersionClock.h"
#include "TestData.h"
#include "TestHost.h"
#include "base/CodePage.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

class VersionFileTest : public ::testing::Test {
protected:
    void SetUp() override { m_host.m_strInstall = m_dir.Path(); }

    std::wstring HeaderAfterCommitOver(const std::wstring& strStoredHeader) {
        WriteBytes(m_strFile, EncodeText(strStoredHeader + L"\n"));
        COperateVersionFile(m_strFile).UpdateRecord(L"a.dwg", L"MOD");
        std::wstring strHeader;
        ReadFirstLine(m_strFile, strHeader);
        return strHeader;
    }
    static std::wstring Fields(const COperateVersionFile& file, size_t i) {
        const auto& r = *file.m_arrFileInfo.at(i);
        return r.strPath + L"/" + r.strDate + L"/" + r.strOprt;
    }

    CFixedVersionClock m_clock;
    CTempDir m_dir;
    CTestHost m_host;
    std::wstring m_strFile = m_dir / L"Server.xml";
};

} // namespace

TEST_F(VersionFileTest, VersionDateHasFixedWidthFieldsAndTheFailureValues) {
    EXPECT_EQ(COperateVersionFile::MakeVersionDate(), L"2026,11,21,16,02,09");
    m_clock.s_time.tm_year = -1850; // a two-digit year gets 1900 once more
    EXPECT_EQ(COperateVersionFile::MakeVersionDate(), L"1950,11,21,16,02,09");
    m_clock.s_bFails = true;
    EXPECT_EQ(COperateVersionFile::MakeVersionDate(), L"1900,00,00,-01,-01,-01");
}

TEST_F(VersionFileTest, NewFileInTheInstallDirectoryHoldsHeaderAndOneRecord) {
    COperateVersionFile file;
    ASSERT_TRUE(file.UpdateRecord(L"InstallHole\\柜门\\abc.dwg", L"MOD"));
    EXPECT_EQ(Hex(ReadBytes(m_strFile)), Hex(ReadTestData("shared/server_new.xml")));
    EXPECT_FALSE(IsFileExist(m_dir / L"Client_PartLib.xml"));
}

TEST_F(VersionFileTest, BatchOverOddFileIsNewestFirstAndDropsBlankAndOldRecords) {
    WriteBytes(m_strFile, ReadTestData("shared/server_odd.xml"));
    COperateVersionFile file(m_strFile);
    ASSERT_TRUE(
        file.UpdateRecords({L"installhole\\a.DWG", L"InstallHole\\b.dwg"}, {L"MOD", L"DEL"}));
    EXPECT_EQ(Hex(ReadBytes(m_strFile)), Hex(ReadTestData("shared/server_odd_after.xml")));
    // A second commit in the same second rolls the date for all its records.
    ASSERT_TRUE(file.UpdateRecords({L"c\\"}, {L"REN"}));
    EXPECT_EQ(Fields(file, 0), L"c\\/2026,11,21,16,02,10/REN");
    EXPECT_EQ(Fields(file, 1), L"InstallHole\\b.dwg/2026,11,21,16,02,09/DEL");
}

TEST_F(VersionFileTest, StoredDateAsNewOrNewerRollsTheLastFieldForward) {
    const wchar_t* kCases[][2] = {
        // The seed with the blank sorts below the same day's real stamp.
        {L"2026,11,21, 16:02:09", L"2026,11,21,16,02,09"},
        {L"2007,07,07,07,07,07", L"2026,11,21,16,02,09"},
        {L"2026,11,21,16,02,09", L"2026,11,21,16,02,10"},
        {L"2026,11,21,16,02,59", L"2026,11,21,16,02,60"},
        {L"2027,01,01,00,00,00", L"2027,01,01,00,00,01"},     // a clock behind the site
        {L"2026,11,21,16,02,99", L"2026,11,21,16,02,100"},    // no carry
        {L"2026,11,21,16,02,100", L"2026,11,21,16,02,,01"},   // and the shape goes
        {L"版：2030,01,01,00,00,00", L"2030,01,01,00,00,01"}, // trimmed as a set
    };
    for (const auto& c : kCases)
        EXPECT_EQ(HeaderAfterCommitOver(std::wstring(L"版本日期：") + c[0]),
                  std::wstring(L"版本日期：") + c[1])
            << c[0];
    EXPECT_EQ(HeaderAfterCommitOver(L"2030,01,01,00,00,00"), L"版本日期：2026,11,21,16,02,09");
}

TEST_F(VersionFileTest, FailuresKeepTheNewRecordsAndTouchNothingElse) {
    COperateVersionFile file(m_dir / L"missing\\Server.xml");
    EXPECT_FALSE(file.WriteRecords({L"a.dwg"}, {L"MOD"}));
    EXPECT_EQ(Fields(file, 0), L"a.dwg/2026,11,21,16,02,09/MOD");

    COperateVersionFile good(m_strFile);
    EXPECT_THROW(good.WriteRecords({L"a.dwg", L"b.dwg"}, {L"MOD"}), std::invalid_argument);
    EXPECT_TRUE(good.m_arrFileInfo.empty());
    EXPECT_FALSE(IsFileExist(m_strFile));
}

TEST_F(VersionFileTest, LoneMainLibCommitStampsTheClientFirst) {
    COperateVersionFile broken(m_dir / L"missing\\Server.xml");
    EXPECT_FALSE(broken.UpdateRecord(L"data\\tzmainlib.MDB", L"MOD"));
    EXPECT_EQ(Hex(ReadBytes(m_dir / L"Client_PartLib.xml")),
              Hex(ReadTestData("shared/client_partlib.xml")));

    WriteBytes(m_dir / L"Client_PartLib.xml", "old");
    COperateVersionFile file(m_strFile);
    ASSERT_TRUE(file.UpdateRecords({L"Data\\TzMainLib.mdb", L"a.dwg"}, {L"MOD", L"MOD"}));
    EXPECT_EQ(ReadBytes(m_dir / L"Client_PartLib.xml"), "old");
}

TEST_F(VersionFileTest, ReadingIsLooseAndRemovingTakesTheFirstMatch) {
    WriteBytes(m_strFile,
               EncodeText(L"\r\n  not a header\r\na\r\nB|1\r\nc|2|MOD|x|y\r\n\r\nb|3|DEL"));
    COperateVersionFile file(m_strFile);
    file.ReadRecords();
    ASSERT_EQ(file.m_arrFileInfo.size(), 4u);
    EXPECT_EQ(Fields(file, 0), L"//");
    EXPECT_EQ(Fields(file, 1), L"B//");
    EXPECT_EQ(Fields(file, 2), L"c/2/MOD|x|y");
    EXPECT_FALSE(file.RemoveRecords({}));
    EXPECT_TRUE(file.RemoveRecords({L"b", L"zzz"}));
    EXPECT_EQ(Fields(file, 1), L"c/2/MOD|x|y");
    EXPECT_EQ(Fields(file, 2), L"b/3/DEL");
}

TEST_F(VersionFileTest, MainLibChangeIsSoughtOnlyAboveTheClientDate) {
    WriteBytes(m_strFile, EncodeText(L"版本日期：2026,03,01,00,00,00\r\n\r\n"
                                     L"a.dwg|2026,03,01,00,00,00|MOD\r\n"
                                     L"DATA\\tzmainlib.mdb|2026,02,01,00,00,00|MOD\r\n"
                                     L"b.dwg|2026,01,01,00,00,00|MOD"));
    EXPECT_TRUE(IsMainLibChanged(m_strFile, L""));
    EXPECT_TRUE(IsMainLibChanged(m_strFile, L"版本日期：2026,01,31, 23:59:59"));
    EXPECT_FALSE(IsMainLibChanged(m_strFile, L"版本日期：2026,02,01,00,00,00"));
    EXPECT_FALSE(IsMainLibChanged(m_dir / L"none.xml", L""));
    WriteBytes(m_strFile, EncodeText(L"版本日期：1\r\na.dwg|2026,03,01,00,00,00|MOD"));
    EXPECT_FALSE(IsMainLibChanged(m_strFile, L""));
}
