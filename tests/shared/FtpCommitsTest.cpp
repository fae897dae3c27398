// Commit flows between workstations on a real site: records, seeding, repair, crash at each step.
#include "shared/MyFtpConnection.h"

#include "FixedVersionClock.h"
#include "SharedSite.h"
#include "TestHost.h"

#include "base/CodePage.h"
#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <unistd.h>

namespace {

const std::wstring kDate = L"2026,11,21,16,02,";
const std::wstring kOldClient = L"版本日期：2026,01,01,00,00,00";

class FtpCommitsTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_site->Started());
        FsCreateDirectory(m_site->SitePath(L"InstallHole"));
    }
    // Workstation i commits a file of that name and content into InstallHole.
    bool Commit(int i, const std::wstring& strName, const std::string& bytes = "work") {
        std::wstring strLocal = m_site->Install(i, strName);
        WriteBytes(strLocal, bytes);
        return m_site->On(i).CommitFile(strLocal, L"InstallHole\\" + strName);
    }
    CStringArray Server() { return m_site->SiteLines(L"Server.xml"); }
    // The record of a path with the date's last field, or empty.
    static std::wstring Record(const std::wstring& strPath, int nSecond, const wchar_t* pszOprt) {
        return Format(L"%s|%s%2.2d|%s", strPath, kDate, nSecond, std::wstring(pszOprt));
    }
    bool HasLine(const CStringArray& lines, const std::wstring& strLine) {
        return std::find(lines.begin(), lines.end(), strLine) != lines.end();
    }
    std::wstring ClientHeader(int i) {
        std::wstring strLine;
        ReadFirstLine(m_site->Install(i, L"Client.xml"), strLine);
        return strLine;
    }
    // Restarts the site with three commits of A, and B in step with it.
    void SeedThreeCommits() {
        m_site = std::make_unique<CSharedSite>(m_host, 2);
        FsCreateDirectory(m_site->SitePath(L"InstallHole"));
        for (const wchar_t* pszName : {L"a1.dwg", L"a2.dwg", L"a3.dwg"})
            ASSERT_TRUE(Commit(0, pszName));
        ASSERT_TRUE(m_site->On(1).Connect() && m_site->On(1).AdoptServerVersion());
    }

    CFixedVersionClock m_clock;
    CTestHost m_host;
    std::unique_ptr<CSharedSite> m_site = std::make_unique<CSharedSite>(m_host, 2);
    CCountingSleep m_sleep;
};

} // namespace

TEST_F(FtpCommitsTest, FirstCommitSeedsTheSiteAndLeavesTheClientInStep) {
    ASSERT_TRUE(Commit(0, L"a.dwg", "A"));
    EXPECT_EQ(m_site->SiteBytes(L"InstallHole\\a.dwg"), "A");
    EXPECT_EQ(
        m_site->SiteBytes(L"Server.xml"),
        EncodeText(L"版本日期：2026,11,21,16,02,09\r\nInstallHole\\a.dwg|2026,11,21,16,02,09|MOD"));
    EXPECT_EQ(m_site->SiteLines(L"Server.backup"), CStringArray{L"版本日期：2026,11,21, 16:02:09"});
    EXPECT_EQ(m_site->SiteLines(L"OS.log"),
              CStringArray{L"[TIME:]2026-11-21 16:2:9  [HOST:]10.0.0.1(WS1)  "
                           L"[OPRT:]Server.backup文件不存在或数据为空！"});
    EXPECT_FALSE(m_site->OnSite(L"Server.xml.bak"));
    EXPECT_EQ(ClientHeader(0), L"版本日期：2026,11,21,16,02,09");
    bool bMainLib = true;
    EXPECT_FALSE(m_site->On(0).CheckServerUpdate(bMainLib));

    // A failed upload writes no record, yet the flow counts as done.
    EXPECT_TRUE(m_site->On(0).CommitFile(m_site->Install(0, L"a.dwg"), L"Missing\\a.dwg"));
    EXPECT_EQ(m_host.m_boxes.back().strText,
              L"文件 Missing\\a.dwg 上传失败，请确认是否被其它客户端用户调用！");
    EXPECT_EQ(Server().size(), 2u);

    // A client behind the site records its work and stays behind.
    WriteTextFile(m_site->Install(1, L"Client.xml"), kOldClient);
    ASSERT_TRUE(Commit(1, L"b.dwg"));
    EXPECT_EQ(Server().at(1), Record(L"InstallHole\\b.dwg", 10, L"MOD"));
    EXPECT_EQ(ClientHeader(1), kOldClient);
    EXPECT_TRUE(m_site->On(1).CheckServerUpdate(bMainLib));
    EXPECT_FALSE(bMainLib);
    EXPECT_TRUE(m_site->On(0).CheckServerVersion()); // A is behind B's commit now

    // A site restored from an older copy: a client ahead of it is out of step as well.
    WriteTextFile(m_site->Install(1, L"Client.xml"), L"版本日期：2030,01,01,00,00,00");
    EXPECT_TRUE(m_site->On(1).CheckServerVersion());
    EXPECT_TRUE(m_site->On(1).CheckServerUpdate(bMainLib));
    ASSERT_TRUE(m_site->On(1).AdoptServerVersion());
    EXPECT_FALSE(m_site->On(1).CheckServerVersion());
}

TEST_F(FtpCommitsTest, DeleteRenameAndDirectoryFlowsWriteTheirRecordShapes) {
    ASSERT_TRUE(Commit(0, L"a.dwg") && Commit(0, L"c.dwg"));
    CMyFtpConnection& a = m_site->On(0);
    EXPECT_TRUE(a.CommitDelete(L"InstallHole\\gone.dwg"));
    EXPECT_EQ(Server().size(), 3u);

    m_host.m_answers = {IDNO};
    EXPECT_FALSE(a.CommitRename(L"InstallHole\\a.dwg", L"InstallHole\\c.dwg"));
    EXPECT_EQ(m_host.m_boxes.back().strText, L"重命名文件InstallHole\\c.dwg已经存在,是否覆盖？");
    EXPECT_TRUE(m_site->OnSite(L"InstallHole\\a.dwg") && m_site->OnSite(L"InstallHole\\c.dwg"));
    EXPECT_EQ(Server().size(), 3u);

    ASSERT_TRUE(a.CommitRename(L"InstallHole\\a.dwg", L"InstallHole\\d.dwg"));
    EXPECT_EQ(Server().at(1), Record(L"InstallHole\\d.dwg", 11, L"MOD"));
    EXPECT_EQ(Server().at(2), Record(L"InstallHole\\a.dwg", 11, L"DEL"));
    ASSERT_TRUE(a.CommitDelete(L"InstallHole\\c.dwg"));
    EXPECT_EQ(Server().at(1), Record(L"InstallHole\\c.dwg", 12, L"DEL"));
    EXPECT_FALSE(m_site->OnSite(L"InstallHole\\c.dwg"));

    ASSERT_TRUE(a.CommitNewDir(L"InstallHole\\Sub\\", L""));
    EXPECT_EQ(Server().at(1), Record(L"InstallHole\\Sub\\", 13, L"MOD"));
    ASSERT_TRUE(a.CommitRenameDir(L"InstallHole\\Sub", L"InstallHole\\Box"));
    EXPECT_EQ(Server().at(1), Record(L"InstallHole\\Box\\", 14, L"REN"));
    EXPECT_EQ(Server().at(2), Record(L"InstallHole\\Sub\\", 14, L"DEL"));
    EXPECT_TRUE(FsIsDirectory(m_site->SitePath(L"InstallHole\\Box")));

    m_site->PutOnSite(L"InstallHole\\Box\\x.dwg", "x");
    m_site->PutOnSite(L"InstallHole\\Box\\Inner\\y.dwg", "y");
    ASSERT_TRUE(a.CommitDeleteDir(L"InstallHole\\Box\\"));
    EXPECT_FALSE(m_site->OnSite(L"InstallHole\\Box"));
    CStringArray lines = Server();
    EXPECT_EQ(lines.size(), 7u); // one record per directory, none per file
    EXPECT_EQ(lines.at(1), Record(L"InstallHole\\Box\\", 16, L"DEL"));
    EXPECT_EQ(lines.at(2), Record(L"InstallHole\\Box\\Inner\\", 15, L"DEL"));
    EXPECT_TRUE(a.CommitDeleteDir(L"Nowhere\\"));
    EXPECT_EQ(Server().size(), 7u);
    EXPECT_EQ(ClientHeader(0), L"版本日期：" + kDate + L"16");
    EXPECT_FALSE(m_site->OnSite(L"Server.xml.bak"));
}

TEST_F(FtpCommitsTest, ShortServerFileIsRepairedFromTheBackupAndAnIrreparableOneIsTold) {
    std::wstring strBackup = L"版本日期：2026,01,01,00,00,09";
    for (int i = 9; i >= 0; --i)
        strBackup += Format(L"\r\nInstallHole\\r%d.dwg|2026,01,01,00,00,%2.2d|MOD", i, i);
    m_site->PutOnSite(L"Server.backup", EncodeText(strBackup));
    std::string truncated = EncodeText(strBackup);
    truncated.resize(truncated.find("\r\nInstallHole\\r1")); // two records lost
    m_site->PutOnSite(L"Server.xml", truncated);
    ASSERT_TRUE(Commit(0, L"new.dwg"));
    CStringArray lines = Server();
    EXPECT_EQ(lines.size(), 12u);
    EXPECT_EQ(lines.at(1), Record(L"InstallHole\\new.dwg", 9, L"MOD"));
    EXPECT_EQ(lines.back(), L"InstallHole\\r0.dwg|2026,01,01,00,00,00|MOD");
    EXPECT_EQ(m_site->SiteLines(L"OS.log").at(0),
              L"[TIME:]2026-11-21 16:2:9  [HOST:]10.0.0.1(WS1)  [OPRT:]备份Server.xml文件时出错！");
    EXPECT_TRUE(m_host.m_boxes.empty());

    // The local rewrite can't be written at all: box and log, nothing kept.
    std::wstring strLocal = m_site->Install(0, L"TempFTP\\Unwritable");
    FsCreateDirectory(strLocal);
    EXPECT_FALSE(m_site->On(0).VerifyServerFile(strLocal, {L"x.dwg"}, {L"MOD"}));
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText, L"利用备份数据更新Server.xml仍然出错！");
    EXPECT_EQ(m_host.m_boxes[0].nFlags, unsigned(MB_ICONSTOP));
    EXPECT_TRUE(m_site->SiteLines(L"OS.log").back().ends_with(
        L"[OPRT:]利用备份数据更新Server.xml仍然出错！"));
    EXPECT_FALSE(FsExists(m_site->Install(0, L"TempFTP\\Server.backup")));
}

// Each row: A's fourth commit dies right after one step; then B commits.
TEST_F(FtpCommitsTest, CrashAfterEachStepIsCaughtUpByTheNextClient) {
    struct ROW {
        const wchar_t* pszStep;
        bool bLockLeft, bRecordOfB;
        int nSleepsOfNext;
    };
    const ROW rows[] = {
        {L"PutFile InstallHole\\b.dwg", false, false, 0},
        {L"PutFile Server.xml.bak", true, false, 6},
        {L"Rename Server.xml Server_Tmp.xml", true, false, 6},
        {L"PutFile Server.xml", true, true, 6},
    };
    for (const ROW& row : rows) {
        SCOPED_TRACE(row.pszStep);
        SeedThreeCommits();
        m_site->CrashAfter(row.pszStep);
        Commit(0, L"b.dwg", "B");
        ASSERT_TRUE(m_site->m_bCrashed);
        m_site->m_recorder.m_onCall = nullptr;
        ASSERT_TRUE(m_site->m_server.Start());
        EXPECT_EQ(m_site->SiteBytes(L"InstallHole\\b.dwg"), "B");
        EXPECT_EQ(m_site->OnSite(L"Server.xml.bak"), row.bLockLeft);

        CCountingSleep::s_nSleeps = 0;
        m_site->Restart(1);
        ASSERT_TRUE(Commit(1, L"c.dwg"));
        EXPECT_EQ(CCountingSleep::s_nSleeps, row.nSleepsOfNext);
        EXPECT_FALSE(m_site->OnSite(L"Server.xml.bak"));
        CStringArray lines = Server();
        EXPECT_TRUE(lines.at(1).starts_with(L"InstallHole\\c.dwg|"));
        EXPECT_EQ(lines.at(2).starts_with(L"InstallHole\\b.dwg|"), row.bRecordOfB);
        EXPECT_TRUE(HasLine(lines, Record(L"InstallHole\\a1.dwg", 9, L"MOD")));
        // Only the crash inside the rename loses a commit: the one the backup hadn't yet.
        bool bTmpLeft = m_site->OnSite(L"Server_Tmp.xml");
        EXPECT_EQ(HasLine(lines, Record(L"InstallHole\\a3.dwg", 11, L"MOD")), !bTmpLeft);
        EXPECT_EQ(bTmpLeft, row.pszStep == rows[2].pszStep);
    }
}

TEST_F(FtpCommitsTest, TreeUploadThroughTheTemporaryNameLeavesNoScratchOnTheSite) {
    WriteBytes(m_site->Install(0, L"LocalData\\Ftp.bg"), "");
    m_site->Restart(0);
    std::wstring strTree = m_site->Install(0, L"Tree");
    FsCreateDirectory(strTree);
    FsCreateDirectory(strTree + L"\\Sub");
    WriteBytes(strTree + L"\\a.dwg", "a");
    WriteBytes(strTree + L"\\b.ITM", "b");
    WriteBytes(strTree + L"\\notes.txt", "n");
    WriteBytes(strTree + L"\\Sub\\c.prj", "c");
    ASSERT_TRUE(m_site->On(0).UploadDirTree(strTree, L"InstallHole\\Tree\\"));
    EXPECT_EQ(CCountingSleep::s_nSleeps, 3);
    EXPECT_EQ(m_site->SiteBytes(L"InstallHole\\Tree\\Sub\\c.prj"), "c");
    EXPECT_EQ(m_site->SiteBytes(L"InstallHole\\Tree\\b.ITM"), "b");
    EXPECT_FALSE(m_site->OnSite(L"InstallHole\\Tree\\notes.txt"));
    // A level's files go first (in the order the directory lists them), then its subdirectories.
    CStringArray lines = Server();
    ASSERT_EQ(lines.size(), 6u);
    EXPECT_EQ(lines[0], L"版本日期：" + kDate + L"13");
    EXPECT_EQ(lines[1], Record(L"InstallHole\\Tree\\Sub\\c.prj", 13, L"MOD"));
    EXPECT_EQ(lines[2], Record(L"InstallHole\\Tree\\Sub\\", 12, L"MOD"));
    EXPECT_TRUE(HasLine(lines, Record(L"InstallHole\\Tree\\a.dwg", 10, L"MOD")) ||
                HasLine(lines, Record(L"InstallHole\\Tree\\a.dwg", 11, L"MOD")));
    EXPECT_TRUE(HasLine(lines, Record(L"InstallHole\\Tree\\b.ITM", 10, L"MOD")) ||
                HasLine(lines, Record(L"InstallHole\\Tree\\b.ITM", 11, L"MOD")));
    EXPECT_EQ(lines[5], Record(L"InstallHole\\Tree\\", 9, L"MOD"));
    EXPECT_EQ(m_site->SiteLines(L"Server.backup").size(), 5u);
    EXPECT_EQ(m_site->SiteLines(L"OS.log").size(), 1u);
    std::vector<FS_FIND_DATA> found;
    EXPECT_FALSE(FsFind(m_site->SitePath(L"#*"), found) ||
                 FsFind(m_site->SitePath(L"InstallHole\\Tree\\#*"), found));
    EXPECT_FALSE(m_site->OnSite(L"Server.xml.bak"));
    EXPECT_TRUE(m_host.m_boxes.empty());
}

TEST_F(FtpCommitsTest, RecordCutShortTriggersTheRepairThoughTheCountStillMatches) {
    std::wstring strBackup = L"版本日期：2026,01,01,00,00,09";
    for (int i = 9; i >= 0; --i)
        strBackup += Format(L"\r\nInstallHole\\r%d.dwg|2026,01,01,00,00,%2.2d|MOD", i, i);
    m_site->PutOnSite(L"Server.backup", EncodeText(strBackup));
    for (const char* pszCut : {"|2026,01,01,00,00,00|MOD", "|MOD", "D"}) {
        SCOPED_TRACE(pszCut);
        std::string cut = EncodeText(strBackup);
        cut.resize(cut.size() - std::string(pszCut).size()); // the last record cut short
        m_site->PutOnSite(L"Server.xml", cut);
        ASSERT_TRUE(Commit(0, L"new.dwg"));
        CStringArray lines = Server();
        EXPECT_EQ(lines.size(), 12u);
        EXPECT_EQ(lines.back(), L"InstallHole\\r0.dwg|2026,01,01,00,00,00|MOD");
        // The backup was not replaced by the damaged file.
        EXPECT_EQ(m_site->SiteLines(L"Server.backup").back(), lines.back());
        EXPECT_TRUE(m_host.m_boxes.empty());
    }
}

// The version file's download dies after the renames; a server back in time
// for the upload would otherwise receive a version file rebuilt from nothing.
TEST_F(FtpCommitsTest, FailedDownloadOfTheVersionFileStopsTheCommit) {
    SeedThreeCommits();
    CStringArray before = Server();
    bool bKilled = false;
    int nLoginsAfter = 0;
    std::wstring strLast;
    m_site->m_recorder.m_onCall = [&](const std::wstring& strLine) {
        if (!bKilled && strLine == L"GetFile Server.xml" &&
            strLast == L"Rename Server_Tmp.xml Server.xml") {
            bKilled = true;
            m_site->m_server.Stop();
        } else if (bKilled && strLine.starts_with(L"login") && ++nLoginsAfter == 2) {
            m_site->m_server.Start();
        }
        strLast = strLine;
    };
    EXPECT_FALSE(Commit(0, L"b.dwg", "B"));
    ASSERT_TRUE(bKilled);
    EXPECT_EQ(Server(), before);
    ASSERT_FALSE(m_host.m_boxes.empty());
    EXPECT_EQ(m_host.m_boxes.back().strText, L"\n网络无连接,请检查网络连接后再重试!");
    EXPECT_EQ(m_host.m_boxes.back().nFlags, unsigned(MB_ICONSTOP));
    m_site->m_recorder.m_onCall = nullptr;
}

TEST_F(FtpCommitsTest, WorkstationsUploadThroughTheirOwnNamesAndClearTheirStaleOnes) {
    for (int i : {0, 1}) {
        WriteBytes(m_site->Install(i, L"LocalData\\Ftp.bg"), "");
        m_site->Restart(i);
    }
    m_site->PutOnSite(L"#10.0.0.1(WS1).txt", "stale");
    m_site->PutOnSite(L"InstallHole\\#10.0.0.1(WS1).txt", "stale");
    m_site->PutOnSite(L"InstallHole\\#10.0.0.2(WS2).txt", "B's upload in flight");
    ASSERT_TRUE(Commit(0, L"a.dwg", "A"));
    EXPECT_FALSE(m_site->OnSite(L"#10.0.0.1(WS1).txt"));
    EXPECT_FALSE(m_site->OnSite(L"InstallHole\\#10.0.0.1(WS1).txt"));
    EXPECT_EQ(m_site->SiteBytes(L"InstallHole\\#10.0.0.2(WS2).txt"), "B's upload in flight");
    EXPECT_EQ(m_site->SiteBytes(L"InstallHole\\a.dwg"), "A");
    ASSERT_TRUE(Commit(1, L"b.dwg", "B"));
    EXPECT_FALSE(m_site->OnSite(L"InstallHole\\#10.0.0.2(WS2).txt"));
    EXPECT_EQ(Server().size(), 3u);
    EXPECT_TRUE(m_site->m_recorder.Count(L"PutFile InstallHole\\#10.0.0.2(WS2).txt") > 0);
    EXPECT_TRUE(m_host.m_boxes.empty());
}

// The same flows on Debian's vsftpd, the server most Linux sites run (its
// user can only be made by root), one workstation through its temporary names.
TEST_F(FtpCommitsTest, TwoWorkstationsCommitAndCatchUpAfterACrashOnVsftpd) {
    if (geteuid() != 0)
        GTEST_SKIP() << "vsftpd's local user can only be made by root";
    m_site = std::make_unique<CSharedSite>(m_host, 2, FTP_TEST_SERVER_OPTIONS{"utf8", false, true});
    ASSERT_TRUE(m_site->Started());
    FsCreateDirectory(m_site->SitePath(L"InstallHole"));
    m_site->m_server.Adopt(m_site->SitePath(L"InstallHole"));
    WriteBytes(m_site->Install(1, L"LocalData\\Ftp.bg"), "");
    m_site->Restart(1);

    ASSERT_TRUE(Commit(0, L"a.dwg", "A"));
    ASSERT_TRUE(Commit(1, L"b.dwg", "B"));
    ASSERT_TRUE(Commit(1, L"a.dwg", "A2"));
    ASSERT_TRUE(m_site->On(0).CommitRename(L"InstallHole\\b.dwg", L"InstallHole\\c.dwg"));
    EXPECT_EQ(m_site->SiteBytes(L"InstallHole\\a.dwg"), "A2");
    EXPECT_EQ(m_site->SiteBytes(L"InstallHole\\c.dwg"), "B");
    CStringArray lines = Server();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_TRUE(lines[1].starts_with(L"InstallHole\\c.dwg|"));
    EXPECT_TRUE(lines[2].starts_with(L"InstallHole\\b.dwg|") && lines[2].ends_with(L"|DEL"));
    EXPECT_TRUE(lines[3].starts_with(L"InstallHole\\a.dwg|"));

    // A dies holding the version lock; B waits it out and records its work.
    m_site->CrashAfter(L"PutFile Server.xml.bak");
    Commit(0, L"d.dwg", "D");
    ASSERT_TRUE(m_site->m_bCrashed);
    m_site->m_recorder.m_onCall = nullptr;
    ASSERT_TRUE(m_site->m_server.Start({"utf8", false, true}));
    EXPECT_EQ(m_host.m_boxes.at(0).strText, L"\n网络无连接,请检查网络连接后再重试!"); // A's own
    m_host.m_boxes.clear();
    CCountingSleep::s_nSleeps = 0;
    m_site->Restart(1);
    ASSERT_TRUE(Commit(1, L"e.dwg", "E"));
    EXPECT_EQ(CCountingSleep::s_nSleeps, 6);
    lines = Server();
    EXPECT_TRUE(lines.at(1).starts_with(L"InstallHole\\e.dwg|"));
    EXPECT_EQ(lines.size(), 5u);
    EXPECT_FALSE(m_site->OnSite(L"Server.xml.bak"));
    std::vector<FS_FIND_DATA> found;
    EXPECT_FALSE(FsFind(m_site->SitePath(L"#*"), found) ||
                 FsFind(m_site->SitePath(L"InstallHole\\#*"), found));
    EXPECT_TRUE(m_host.m_boxes.empty());
}
