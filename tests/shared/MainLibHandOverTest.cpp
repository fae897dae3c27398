// The parts database between workstations around the suite's write, and the start-up sync.
#include "shared/MainLibHandOver.h"

#include "EditorTestHost.h"
#include "FixedVersionClock.h"
#include "SharedSite.h"
#include "suite/SuiteMainLib.h"

#include "base/FileSystem.h"
#include "base/StrUtil.h"
#include "host/HostCommands.h"

#include <gtest/gtest.h>

namespace {

std::wstring g_strSent;

class MainLibHandOverTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_site.Started());
        HOST_SERVICES services = GetHostServices();
        services.pMainLib = &m_mainLib;
        SetHostServices(services);
        FsCreateDirectory(m_site.SitePath(L"Data"));
        m_site.PutOnSite(L"InstallHole\\b.dwg", "b");
        g_strSent.clear();
        ICommandStack* pCommands = acedRegCmds();
        pCommands->AddCommand(L"QmSuite", L"CloseMain", L"CloseMain", ACRX_CMD_MODAL,
                              [] { g_strSent += L"CloseMain;"; });
        pCommands->AddCommand(L"QmSuite", L"SynchUpdateHide", L"SynchUpdateHide", ACRX_CMD_MODAL,
                              [] { g_strSent += L"SynchUpdateHide;"; });
    }
    static STRUCT_MAIN_LIB_ENTRY Entry(const std::wstring& strFile, int nFlag = 1) {
        return {L"C-" + strFile, L"M-" + strFile, L"N-" + strFile, strFile, L"", L"", nFlag};
    }
    bool Row(const std::wstring& strDatabase, const std::wstring& strFile) {
        STRUCT_HOLE_PART_ROW row;
        return CSuiteMainLib::ReadRow(strDatabase, strFile, row) && row.strModel == L"M-" + strFile;
    }
    std::wstring Local(int i) { return m_site.Install(i, L"Data\\TzMainLib.mdb"); }
    std::wstring OnSite() { return m_site.SitePath(L"Data\\TzMainLib.mdb"); }
    std::wstring SyncOn(int i) {
        g_strSent.clear();
        m_site.Use(i);
        SyncClientOnStart();
        return g_strSent;
    }

    CFixedVersionClock m_clock;
    CEditorTestHost m_host;
    CSharedSite m_site{m_host, 2};
    CSuiteMainLib m_mainLib{m_host};
    CCountingSleep m_sleep;
};

} // namespace

TEST_F(MainLibHandOverTest, DatabaseTravelsThroughTheSiteUnderItsLock) {
    HandOverToMainLib(m_site.On(0), 2, Entry(L"local.dwg")); // not shared: local only
    EXPECT_TRUE(Row(Local(0), L"local.dwg"));
    EXPECT_TRUE(m_site.m_recorder.m_log.empty());

    HandOverToMainLib(m_site.On(0), 1, Entry(L"a.dwg"));
    EXPECT_TRUE(Row(OnSite(), L"a.dwg") && Row(OnSite(), L"local.dwg"));
    EXPECT_FALSE(m_site.OnSite(L"Data\\TzMainLib.mdb.bak"));
    EXPECT_FALSE(FsExists(m_site.Install(0, L"Temp\\TzMainLib.mdb")));
    CStringArray server = m_site.SiteLines(L"Server.xml");
    EXPECT_EQ(server.at(1), L"Data\\TzMainLib.mdb|2026,11,21,16,02,09|MOD");
    std::wstring strPartLib;
    ReadFirstLine(m_site.Install(0, L"Client_PartLib.xml"), strPartLib);
    EXPECT_EQ(strPartLib, server.at(0));

    // B fetches A's newer database first, and its write-block save also
    // gives back the drawing's own check-out.
    ASSERT_TRUE(m_site.On(1).CheckOutFile(m_site.Install(1, L"b.dwg"), L"InstallHole\\", L"b.dwg"));
    STRUCT_MAIN_LIB_ENTRY entry = Entry(L"b.dwg", 0);
    entry.strDrawing = m_site.Install(1, L"b.dwg");
    entry.strLibDir = L"InstallHole\\";
    HandOverToMainLib(m_site.On(1), 1, entry);
    EXPECT_TRUE(Row(OnSite(), L"a.dwg") && Row(OnSite(), L"b.dwg"));
    EXPECT_FALSE(m_site.OnSite(L"InstallHole\\b.dwg.bak"));
    EXPECT_FALSE(m_site.On(1).IsConnected());
    EXPECT_TRUE(m_host.m_boxes.empty());
}

TEST_F(MainLibHandOverTest, ForeignLockIsAskedTwiceAndADeclinedHandOverWritesNothing) {
    HandOverToMainLib(m_site.On(1), 1, Entry(L"b.dwg"));
    m_site.PutOnSite(L"Data\\TzMainLib.mdb.bak", WideToUtf8(CSharedSite::HostId(1))); // B crashed
    m_host.m_answers = {IDNO, IDNO};
    ASSERT_TRUE(m_site.On(0).Connect()); // as the save dialog leaves it
    HandOverToMainLib(m_site.On(0), 1, Entry(L"c.dwg"));
    EXPECT_EQ(m_host.m_boxes.size(), 2u);
    EXPECT_FALSE(Row(Local(0), L"c.dwg") || Row(OnSite(), L"c.dwg"));

    HandOverToMainLib(m_site.On(1), 1, Entry(L"d.dwg")); // B passes its own leftover lock
    EXPECT_EQ(m_host.m_boxes.size(), 2u);
    EXPECT_TRUE(Row(OnSite(), L"d.dwg"));
    EXPECT_FALSE(m_site.OnSite(L"Data\\TzMainLib.mdb.bak"));
}

TEST_F(MainLibHandOverTest, StartUpSendsTheSuitesUpdateCommandsOnlyWhenOutOfStep) {
    EXPECT_EQ(SyncOn(0), L""); // seeds the empty site with the fixed date
    EXPECT_EQ(m_site.SiteLines(L"Server.xml"), CStringArray{L"版本日期：2007,07,07,07,07,07"});
    EXPECT_EQ(SyncOn(0), L"");

    HandOverToMainLib(m_site.On(1), 1, Entry(L"b.dwg"));
    EXPECT_EQ(SyncOn(0), L"CloseMain;SynchUpdateHide;");
    ASSERT_TRUE(m_site.On(0).Connect() && m_site.On(0).AdoptServerVersion());
    EXPECT_EQ(SyncOn(0), L"");

    std::wstring strLocal = m_site.Install(1, L"x.dwg");
    WriteBytes(strLocal, "x");
    ASSERT_TRUE(m_site.On(1).CommitFile(strLocal, L"InstallHole\\x.dwg"));
    EXPECT_EQ(SyncOn(0), L"SynchUpdateHide;");
}
