// Directory operations of the browser's tree: local with the twin library, and on a shared site.
#include "LibraryBrowserFixture.h"

#include "FixedVersionClock.h"
#include "SharedSite.h"
#include "base/FileSystem.h"
#include "base/StrUtil.h"
#include "host/HostUi.h"

#include <algorithm>
#include <cstdlib>

namespace {

class CircuitLibDirOpsTest : public CLibraryBrowserTest {
protected:
    CircuitLibDirOpsTest() { setenv("XDG_DATA_HOME", m_trash.OsPath().c_str(), 1); }
    ~CircuitLibDirOpsTest() override { unsetenv("XDG_DATA_HOME"); }
    std::wstring Twin(const std::wstring& strRel) const {
        return m_dir / (L"local\\LaySketch\\" + strRel);
    }
    // Runs a tree menu entry on the directory with this tree text.
    void TreeMenu(const std::wstring& strItem, int nEntry) {
        m_pView->m_menuAnswers.push_back(nEntry);
        m_pDlg->OnRclickTree(m_pView->TreeItem(strItem));
    }
    std::vector<std::wstring> ChildTexts(int nParent) const {
        std::vector<std::wstring> texts;
        for (int nChild : m_pDlg->TreeNode(nParent)->children)
            texts.push_back(m_pDlg->TreeNode(nChild)->strText);
        return texts;
    }
    std::wstring Root() const { return StrTrimRight(HoleRoot(), L"\\"); }

    CTempDir m_trash;
};

} // namespace

TEST_F(CircuitLibDirOpsTest, NewDirectoryRefusesExistingNamesAndMirrorsIntoTheTwin) {
    AddItems(L"按钮\\", {L"a.dwg"});
    Open();
    m_pView->m_nameAnswers = {{L"", 1}, {L"按钮", 1}, {L"仪表", 1}};
    TreeMenu(Root(), IDM_DIR_NEW);
    ASSERT_EQ(m_pView->m_dialogTitles, std::vector<std::wstring>{L"目录新建"});
    EXPECT_EQ(m_pView->m_lastDialog.m_strDir, HoleRoot());
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText, L"目录 " + HoleRoot() + L"按钮 已经存在，不能创建！");
    EXPECT_TRUE(FsIsDirectory(HoleRoot() + L"仪表"));
    EXPECT_TRUE(FsIsDirectory(Twin(L"仪表")));
    int nRoot = m_pView->TreeItem(Root());
    EXPECT_EQ(ChildTexts(nRoot), (std::vector<std::wstring>{L"仪表", L"按钮"}));
    EXPECT_EQ(m_pView->m_childOrder[nRoot].size(), 2u);

    // Without the check box the twin stays as it is.
    m_pView->m_nameAnswers = {{L"风扇", 0}};
    TreeMenu(L"按钮", IDM_DIR_NEW);
    EXPECT_TRUE(FsIsDirectory(HoleRoot() + L"按钮\\风扇"));
    EXPECT_FALSE(FsExists(Twin(L"按钮\\风扇")));
}

TEST_F(CircuitLibDirOpsTest, RenameKeepsTheDialogOpenOnRefusalsAndRenamesTheTwin) {
    AddItems(L"按钮\\", {L"a.dwg"});
    CreateDirPath(HoleRoot() + L"仪表");
    CreateDirPath(Twin(L"按钮"));
    Open();
    m_pView->m_nameAnswers = {{L"按钮", 1}, {L"仪表", 1}, {L"开关", 1}};
    TreeMenu(L"按钮", IDM_DIR_RENAME);
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText,
              L"目录 " + HoleRoot() + L"仪表 已经存在，不能更名为仪表！");
    EXPECT_EQ(m_pView->m_lastDialog.m_strOldName, L"按钮");
    EXPECT_FALSE(FsExists(HoleRoot() + L"按钮"));
    EXPECT_TRUE(FsIsDirectory(HoleRoot() + L"开关"));
    EXPECT_TRUE(FsIsDirectory(Twin(L"开关")));
    EXPECT_FALSE(FsExists(Twin(L"按钮")));
    EXPECT_EQ(ChildTexts(m_pView->TreeItem(Root())), (std::vector<std::wstring>{L"仪表", L"开关"}));
    EXPECT_EQ(m_pView->m_list, CStringArray{L"a.dwg"}); // the list follows the new name
}

TEST_F(CircuitLibDirOpsTest, DeleteAsksForEachTreeAndSendsItToTheTrash) {
    AddItems(L"按钮\\", {L"a.dwg", L"a.sld"});
    CreateDirPath(Twin(L"按钮"));
    Open();
    m_host.m_answers = {IDNO};
    TreeMenu(L"按钮", IDM_DIR_DELETE);
    EXPECT_TRUE(FsIsDirectory(HoleRoot() + L"按钮"));

    m_host.m_answers = {IDYES, IDNO};
    TreeMenu(L"按钮", IDM_DIR_DELETE);
    ASSERT_EQ(m_host.m_boxes.size(), 3u);
    EXPECT_EQ(m_host.m_boxes[1].strText, L"真的删除目录 " + HoleRoot() + L"按钮 吗？");
    EXPECT_EQ(m_host.m_boxes[2].strText, L"真的删除目录 " + Twin(L"按钮") + L" 吗？");
    EXPECT_FALSE(FsExists(HoleRoot() + L"按钮"));
    EXPECT_TRUE(FsIsDirectory(Twin(L"按钮")));
    EXPECT_TRUE(FsExists(m_trash / L"Trash\\files\\按钮\\a.dwg"));
    EXPECT_EQ(m_pView->TreeItem(L"按钮"), 0);

    // The root itself may go: the root text and the list are emptied.
    m_host.m_answers = {IDYES, IDNO};
    TreeMenu(Root(), IDM_DIR_DELETE);
    EXPECT_FALSE(FsExists(HoleRoot()));
    EXPECT_TRUE(m_pView->m_tree.empty());
    EXPECT_EQ(m_pView->m_text[IDC_EDIT_ROOT], L"");
}

TEST_F(CircuitLibDirOpsTest, MenusGreyWhatTheDirectoryAndInstallStyleForbid) {
    AddItems(L"按钮\\", {L"a.dwg"});
    Open();
    m_host.m_nInstallStyle = 2;
    m_pDlg->OnRclickTree(m_pView->TreeItem(L"按钮"));
    auto greyed = [this](int nId) {
        auto it = std::find_if(m_pView->m_lastMenu.begin(), m_pView->m_lastMenu.end(),
                               [nId](const MENU_ENTRY& e) { return e.nId == nId; });
        return it != m_pView->m_lastMenu.end() && it->bGrayed;
    };
    for (int nId : {IDM_DIR_NEW, IDM_DIR_RENAME, IDM_DIR_DELETE, IDM_IMPORT, IDC_BTN_BATCH})
        EXPECT_TRUE(greyed(nId)) << nId;
    EXPECT_FALSE(greyed(IDM_DIR_REFRESH));
    m_host.m_nInstallStyle = 0;
    m_pView->m_selection.clear();
    m_pDlg->OnItemchangedList({});
    m_pDlg->OnRclickList();
    EXPECT_FALSE(greyed(IDC_BTN_NEW));
    EXPECT_TRUE(greyed(IDC_BTN_INSERT));
    EXPECT_TRUE(greyed(IDC_BTN_DELETE));
}

TEST_F(CircuitLibDirOpsTest, SyncMirrorsEveryDirectoryOnceAndRemovesNothing) {
    CreateDirPath(HoleRoot() + L"a\\b");
    CreateDirPath(HoleRoot() + L"c");
    CreateDirPath(Twin(L"only"));
    Open();
    TreeMenu(Root(), IDM_DIR_SYNC);
    CStringArray first;
    CollectDirs(m_dir / L"local\\LaySketch", first);
    std::sort(first.begin(), first.end());
    TreeMenu(Root(), IDM_DIR_SYNC);
    CStringArray second;
    CollectDirs(m_dir / L"local\\LaySketch", second);
    std::sort(second.begin(), second.end());
    EXPECT_EQ(first, second);
    EXPECT_TRUE(FsIsDirectory(Twin(L"a\\b")));
    EXPECT_TRUE(FsIsDirectory(Twin(L"c")));
    EXPECT_TRUE(FsIsDirectory(Twin(L"only")));
}

namespace {

// Two workstations of one site; the browser runs on workstation 0 in mode 1.
class SharedDirOpsTest : public CircuitLibDirOpsTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_site.Started());
        FsCreateDirectory(m_site.SitePath(L"InstallHole"));
        FsCreateDirectory(m_site.SitePath(L"LaySketch"));
        ASSERT_TRUE(m_site.On(0).CommitNewDir(L"InstallHole\\按钮\\", L""));
        m_host.m_strCommonRes = m_host.m_strLocal;
        for (const wchar_t* pszDir : {L"InstallHole\\按钮", L"LaySketch", L"Data"})
            CreateDirPath(m_site.Install(0, pszDir));
        m_host.m_nInstallStyle = 1;
        g_HoleLib.g_nFtpMode = 1;
    }
    std::wstring Local(const std::wstring& strRel) const { return m_site.Install(0, strRel); }

    CFixedVersionClock m_clock;
    CCountingSleep m_sleep;
    CSharedSite m_site{m_host, 2};
};

} // namespace

TEST_F(SharedDirOpsTest, NewAndRenamedDirectoriesReachTheSiteAndTheOtherWorkstation) {
    Open(&m_site.On(0));
    ASSERT_EQ(g_HoleLib.g_nFtpMode, 1);
    m_pView->m_nameAnswers = {{L"仪表", 1}};
    TreeMenu(L"按钮", IDM_DIR_NEW);
    EXPECT_TRUE(FsIsDirectory(m_site.SitePath(L"InstallHole\\按钮\\仪表")));
    EXPECT_TRUE(FsIsDirectory(m_site.SitePath(L"LaySketch\\按钮\\仪表")));
    EXPECT_TRUE(FsIsDirectory(Local(L"LaySketch\\按钮\\仪表")));

    // An existing server directory is refused even though the local one is made.
    ASSERT_TRUE(m_site.On(1).CommitNewDir(L"InstallHole\\按钮\\电机\\", L""));
    m_site.Use(0);
    m_pView->m_nameAnswers = {{L"电机", 1}};
    TreeMenu(L"按钮", IDM_DIR_NEW);
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText, L"目录InstallHole\\按钮\\电机已经存在！");
    EXPECT_TRUE(FsIsDirectory(Local(L"InstallHole\\按钮\\电机")));

    m_pView->m_nameAnswers = {{L"开关", 1}};
    TreeMenu(L"按钮", IDM_DIR_RENAME);
    EXPECT_TRUE(FsIsDirectory(m_site.SitePath(L"InstallHole\\开关\\仪表")));
    EXPECT_FALSE(FsExists(m_site.SitePath(L"InstallHole\\按钮")));
    EXPECT_EQ(g_HoleLib.strRelDir, L"InstallHole\\开关\\");
    CStringArray records = m_site.SiteLines(L"Server.xml");
    EXPECT_TRUE(std::any_of(records.begin(), records.end(), [](const std::wstring& s) {
        return s.rfind(L"InstallHole\\开关\\|", 0) == 0 && s.ends_with(L"|REN");
    }));

    // The other workstation finds the renamed tree when it updates.
    CMyFtpConnection& other = m_site.On(1);
    EXPECT_TRUE(other.RemoteDirExists(L"InstallHole\\开关\\仪表"));
    EXPECT_FALSE(other.RemoteDirExists(L"InstallHole\\按钮"));
    ASSERT_TRUE(other.DownloadDir(L"InstallHole\\", m_site.Install(1, L"InstallHole\\")));
    EXPECT_TRUE(FsIsDirectory(m_site.Install(1, L"InstallHole\\开关\\仪表")));
}

TEST_F(SharedDirOpsTest, DeleteCommitsTheTreeBeforeTrashingIt) {
    Open(&m_site.On(0));
    m_host.m_answers = {IDYES};
    TreeMenu(L"按钮", IDM_DIR_DELETE);
    EXPECT_FALSE(FsExists(m_site.SitePath(L"InstallHole\\按钮")));
    EXPECT_FALSE(FsExists(Local(L"InstallHole\\按钮")));
    CStringArray records = m_site.SiteLines(L"Server.xml");
    EXPECT_TRUE(std::any_of(records.begin(), records.end(), [](const std::wstring& s) {
        return s.rfind(L"InstallHole\\按钮\\|", 0) == 0 && s.ends_with(L"|DEL");
    }));
}

TEST_F(CircuitLibDirOpsTest, LayoutBrowserMirrorsIntoTheHoleLibraryAndKeepsRenameOffTheSite) {
    CreateDirPath(Twin(L"配电柜\\低压"));
    g_LayoutLib.strRoot = m_host.m_strLocal;
    g_LayoutLib.g_nFtpMode = 1; // no connection object: the browser falls back to mode 2
    auto pView = std::make_unique<CRecordingLibView>();
    CRecordingLibView& view = *pView;
    CLaySketchLibDlg dlg(g_LayoutLib, nullptr, std::move(pView));
    ASSERT_TRUE(dlg.Create());
    EXPECT_EQ(view.m_texts.strTitle, L"屏面布置图库管理");
    EXPECT_EQ(g_LayoutLib.g_nFtpMode, 2);
    g_LayoutLib.g_nFtpMode = 1;
    view.m_menuAnswers = {IDM_DIR_SYNC_LAYOUT};
    dlg.OnRclickTree(view.TreeItem(L"配电柜"));
    auto rename = std::find_if(view.m_lastMenu.begin(), view.m_lastMenu.end(),
                               [](const MENU_ENTRY& e) { return e.nId == IDM_DIR_RENAME; });
    ASSERT_NE(rename, view.m_lastMenu.end());
    EXPECT_TRUE(rename->bGrayed);
    EXPECT_EQ(view.m_lastMenu.back().strText, L"目录同步到开孔图库");
    EXPECT_TRUE(FsIsDirectory(HoleRoot() + L"配电柜\\低压"));
    g_LayoutLib = CLibState();
}
