// Locks between workstations on a real site: version-lock polls and take-over, check-outs.
#include "shared/MyFtpConnection.h"

#include "SharedSite.h"
#include "TestHost.h"

#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

const std::wstring kTakeOver = L"主机IP为%s的用户正对文件<%s>进行操作，可等待其完成后再继续...\n"
                               L"是否强制撤销其库修改操作?";

std::wstring TakeOverText(const std::wstring& strHolder, const std::wstring& strName) {
    return Format(kTakeOver, strHolder, strName);
}

class FtpLocksTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_site.Started());
        m_site.PutOnSite(L"InstallHole\\a.dwg", "site drawing");
    }
    std::string Holder(const std::wstring& strLock) { return m_site.SiteBytes(strLock); }
    static std::string Id(int i) { return WideToUtf8(CSharedSite::HostId(i)); }
    bool CheckOut(int i) {
        return m_site.On(i).CheckOutFile(m_site.Install(i, L"InstallHole\\a.dwg"), L"InstallHole\\",
                                         L"a.dwg");
    }

    CTestHost m_host;
    CSharedSite m_site{m_host, 2};
    CCountingSleep m_sleep;
};

} // namespace

TEST_F(FtpLocksTest, VersionLockWaitsSixPollsForAForeignHolderAndNoneForItsOwn) {
    m_site.PutOnSite(L"Server.xml.bak", Id(1));
    ASSERT_TRUE(m_site.On(0).Connect() && m_site.On(1).Connect());
    m_site.On(0).LockServerFile();
    EXPECT_EQ(CCountingSleep::s_nSleeps, 6);
    EXPECT_EQ(m_site.m_recorder.Count(L"GetFile Server.xml.bak"), 6);
    EXPECT_EQ(m_site.m_recorder.Count(L"Remove Server.xml.bak"), 1);
    EXPECT_EQ(Holder(L"Server.xml.bak"), Id(0));

    m_site.On(0).LockServerFile(); // a leftover of this workstation
    EXPECT_EQ(CCountingSleep::s_nSleeps, 6);
    EXPECT_EQ(Holder(L"Server.xml.bak"), Id(0));

    // The holder finishes between two polls: no removal by the waiter.
    m_site.m_recorder.m_log.clear();
    CCountingSleep::s_onSleep = [&] {
        if (CCountingSleep::s_nSleeps == 8)
            FsDeleteFile(m_site.SitePath(L"Server.xml.bak"));
    };
    m_site.On(1).LockServerFile();
    EXPECT_EQ(CCountingSleep::s_nSleeps, 8);
    EXPECT_EQ(m_site.m_recorder.Count(L"Remove"), 0);
    EXPECT_EQ(Holder(L"Server.xml.bak"), Id(1));
    EXPECT_TRUE(m_host.m_boxes.empty());
}

// Another workstation writes the lock in the same instant as this one: the
// read-back shows it, and it is waited for like any holder.
TEST_F(FtpLocksTest, VersionLockTakenInTheSameInstantByAnotherIsWaitedFor) {
    ASSERT_TRUE(m_site.On(0).Connect());
    bool bRaced = false;
    std::wstring strLast;
    m_site.m_recorder.m_onCall = [&](const std::wstring& strLine) {
        if (!bRaced && strLine == L"GetFile Server.xml.bak" &&
            strLast == L"Size Server.xml.bak") { // the read-back after the checked upload
            bRaced = true;
            m_site.PutOnSite(L"Server.xml.bak", Id(1));
        }
        strLast = strLine;
    };
    CCountingSleep::s_onSleep = [&] {
        if (CCountingSleep::s_nSleeps == 2)
            FsDeleteFile(m_site.SitePath(L"Server.xml.bak")); // the other one is done
    };
    m_site.On(0).LockServerFile();
    m_site.m_recorder.m_onCall = nullptr;
    EXPECT_TRUE(bRaced);
    EXPECT_EQ(CCountingSleep::s_nSleeps, 2);
    EXPECT_EQ(Holder(L"Server.xml.bak"), Id(0));
}

// With the real sleep a foreign holder is waited out for six polls of 400 ms
// before the lock is taken: no less, however fast the server answers.
TEST_F(FtpLocksTest, VersionLockTakeOverWaitsForReal) {
    SetFtpSleep(nullptr);
    m_site.PutOnSite(L"Server.xml.bak", Id(1));
    ASSERT_TRUE(m_site.On(0).Connect());
    auto start = std::chrono::steady_clock::now();
    m_site.On(0).LockServerFile();
    auto waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited, std::chrono::milliseconds(2400));
    EXPECT_EQ(Holder(L"Server.xml.bak"), Id(0));
}

TEST_F(FtpLocksTest, CheckOutPassesBetweenWorkstationsOnlyWithConsent) {
    ASSERT_TRUE(CheckOut(0)); // free -> held by A
    EXPECT_EQ(ReadBytes(m_site.Install(0, L"InstallHole\\a.dwg")), "site drawing");
    EXPECT_EQ(Holder(L"InstallHole\\a.dwg.bak"), Id(0));
    ASSERT_TRUE(CheckOut(0)); // again: the deletion of the bare name keeps the lock
    EXPECT_EQ(Holder(L"InstallHole\\a.dwg.bak"), Id(0));
    EXPECT_FALSE(m_site.On(0).IsLockRevoked(L"InstallHole\\a.dwg"));
    EXPECT_TRUE(m_host.m_boxes.empty());

    m_host.m_answers = {IDNO};
    EXPECT_FALSE(CheckOut(1));
    EXPECT_FALSE(FsExists(m_site.Install(1, L"InstallHole\\a.dwg")));
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText, TakeOverText(CSharedSite::HostId(0), L"a.dwg"));
    EXPECT_EQ(m_host.m_boxes[0].nFlags, unsigned(MB_YESNO | MB_ICONINFORMATION));
    EXPECT_EQ(Holder(L"InstallHole\\a.dwg.bak"), Id(0));

    m_host.m_answers = {IDYES};
    EXPECT_TRUE(CheckOut(1)); // held by B, A revoked
    EXPECT_EQ(Holder(L"InstallHole\\a.dwg.bak"), Id(1));
    EXPECT_TRUE(m_site.On(0).IsLockRevoked(L"InstallHole\\a.dwg"));
    EXPECT_EQ(m_host.m_boxes.size(), 2u);
    EXPECT_TRUE(m_site.On(0).IsLockRevokedPrompt(L"InstallHole\\a.dwg"));
    EXPECT_EQ(m_host.m_boxes.back().strText, L"文件<InstallHole\\a.dwg>的库修改作已被主机IP为" +
                                                 CSharedSite::HostId(1) +
                                                 L"的用户强制撤销，无法入库...");

    // B breaks its own lock without a question: free, and A is told so.
    EXPECT_TRUE(m_site.On(1).ConfirmLockBreak(L"InstallHole\\a.dwg"));
    EXPECT_FALSE(m_site.OnSite(L"InstallHole\\a.dwg.bak"));
    EXPECT_EQ(m_host.m_boxes.size(), 3u);
    EXPECT_TRUE(m_site.On(0).IsLockRevoked(L"InstallHole\\a.dwg"));
    EXPECT_TRUE(m_site.On(0).IsLockRevokedPrompt(L"InstallHole\\a.dwg"));
    EXPECT_EQ(m_host.m_boxes.back().strText,
              L"文件<InstallHole\\a.dwg>的库修改作已被强制撤销，无法入库...");
    EXPECT_FALSE(m_site.On(0).IsLockRevokedPrompt(L"InstallHole\\gone.dwg"));
}

TEST_F(FtpLocksTest, TakeFileLockAsksOnlyAForeignHolder) {
    m_site.PutOnSite(L"Data\\TzMainLib.mdb.bak", Id(1));
    m_host.m_answers = {IDNO, IDYES};
    EXPECT_FALSE(m_site.On(0).TakeFileLock(L"Data\\TzMainLib.mdb.bak"));
    EXPECT_EQ(Holder(L"Data\\TzMainLib.mdb.bak"), Id(1));
    EXPECT_TRUE(m_site.On(0).TakeFileLock(L"Data\\TzMainLib.mdb.bak"));
    EXPECT_TRUE(m_site.On(0).TakeFileLock(L"Data\\TzMainLib.mdb.bak")); // own: rewritten
    EXPECT_EQ(Holder(L"Data\\TzMainLib.mdb.bak"), Id(0));
    ASSERT_EQ(m_host.m_boxes.size(), 2u);
    EXPECT_EQ(m_host.m_boxes[0].strText,
              TakeOverText(CSharedSite::HostId(1), L"Data\\TzMainLib.mdb.bak"));

    // A file that isn't on the site: the local copy counts, and nothing is locked.
    EXPECT_TRUE(m_site.On(0).CheckOutFile(m_site.Install(0, L"b.dwg"), L"InstallHole\\", L"b.dwg"));
    EXPECT_EQ(m_host.m_boxes.back().strText, L"服务器上不存在<b.dwg>文件！");
    EXPECT_FALSE(m_site.OnSite(L"InstallHole\\b.dwg.bak"));
}

// The hole save commits over a revoked lock and frees it; the layout save
// tests first and stores nothing.
TEST_F(FtpLocksTest, TwinSaveDialogsTreatARevokedCheckOutDifferently) {
    ASSERT_TRUE(CheckOut(0));
    m_host.m_answers = {IDYES};
    ASSERT_TRUE(CheckOut(1));
    WriteBytes(m_site.Install(0, L"InstallHole\\a.dwg"), "A's work");

    CMyFtpConnection& a = m_site.On(0);
    if (!a.IsLockRevokedPrompt(L"InstallHole\\a.dwg"))
        a.CommitFile(m_site.Install(0, L"InstallHole\\a.dwg"), L"InstallHole\\a.dwg");
    EXPECT_EQ(m_site.SiteBytes(L"InstallHole\\a.dwg"), "site drawing");
    EXPECT_EQ(Holder(L"InstallHole\\a.dwg.bak"), Id(1));

    ASSERT_TRUE(a.CommitFile(m_site.Install(0, L"InstallHole\\a.dwg"), L"InstallHole\\a.dwg"));
    ASSERT_TRUE(a.DeleteRemoteFile(L"InstallHole\\a.dwg.bak"));
    EXPECT_EQ(m_site.SiteBytes(L"InstallHole\\a.dwg"), "A's work");
    EXPECT_FALSE(m_site.OnSite(L"InstallHole\\a.dwg.bak"));

    // A leftover check-out of a crashed run is A's again at the next start.
    ASSERT_TRUE(CheckOut(0));
    m_site.Restart(0);
    size_t nBoxes = m_host.m_boxes.size();
    ASSERT_TRUE(CheckOut(0));
    m_site.On(0).ReleaseFileLock(m_site.Install(0, L"InstallHole\\a.dwg"), L"InstallHole\\");
    EXPECT_FALSE(m_site.OnSite(L"InstallHole\\a.dwg.bak"));
    EXPECT_FALSE(m_site.On(0).IsConnected());
    EXPECT_EQ(m_host.m_boxes.size(), nBoxes);
}
