// Rename, delete, save of the current drawing and import: locally, to the trash, and on a site.
#include "DbBuilders.h"
#include "FixedVersionClock.h"
#include "LibraryBrowserFixture.h"
#include "SharedSite.h"

#include "base/FileSystem.h"
#include "base/Format.h"
#include "editor/DocManager.h"
#include "host/HostUi.h"
#include "host/db/AcDb.h"
#include "library/MyFileDialog.h"

#include <algorithm>
#include <cstdlib>

namespace {

// Answers the import's file dialog with a list of paths; an empty list cancels.
class CListFileDialogHost : public IFileDialogHost {
public:
    CListFileDialogHost() { SetFileDialogHost(this); }
    ~CListFileDialogHost() override { SetFileDialogHost(nullptr); }
    bool ChooseFiles(const FILE_DIALOG_REQUEST& request,
                     std::vector<std::wstring>& paths) override {
        m_requests.push_back(request);
        paths = m_answer;
        return !paths.empty();
    }
    std::vector<std::wstring> m_answer;
    std::vector<FILE_DIALOG_REQUEST> m_requests;
};

class CircuitLibItemOpsTest : public CLibraryBrowserTest {
protected:
    // GIO reads XDG_DATA_HOME once per process: one trash for the program,
    // emptied before each test.
    CircuitLibItemOpsTest() : m_trash(ProgramTrash()) {
        setenv("XDG_DATA_HOME", m_trash.OsPath().c_str(), 1);
        FsDeleteTree(m_trash / L"Trash");
    }
    static CTempDir& ProgramTrash() {
        static CTempDir s_trash;
        return s_trash;
    }
    std::wstring Item(const std::wstring& strRel) const { return HoleRoot() + L"按钮\\" + strRel; }
    std::wstring Trashed(const std::wstring& strName) const {
        return m_trash / (L"Trash\\files\\" + strName);
    }
    void Select(const std::vector<int>& rows) {
        m_pView->m_selection = rows;
        m_pDlg->OnItemchangedList(rows);
    }
    // A drawing with one line, as the editor writes it.
    static void WriteDrawing(const std::wstring& strPath) {
        AcDbDatabase db(true);
        AppendToModelSpace(db, new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(10, 5, 0)));
        db.saveAs(strPath.c_str());
    }
    std::vector<std::wstring> BoxTexts() const {
        std::vector<std::wstring> texts;
        for (const TEST_BOX& box : m_host.m_boxes)
            texts.push_back(box.strText);
        return texts;
    }

    CTempDir& m_trash;
    CListFileDialogHost m_files;
};

} // namespace

TEST_F(CircuitLibItemOpsTest, RenameMovesDrawingAndSlideAndRefusesWhatItMust) {
    AddItems(L"按钮\\", {L"a.dwg", L"a.sld", L"a.bak", L"b.dwg"});
    Open();
    ASSERT_EQ(m_pView->m_list, (CStringArray{L"a.dwg", L"b.dwg"}));
    Select({0});
    // Unchanged and existing names keep the dialog open; another case is allowed.
    m_pView->m_nameAnswers = {{L"a"}, {L"b.dwg"}, {L"A"}};
    m_pDlg->OnCommand(IDC_BTN_RENAME);
    EXPECT_EQ(m_pView->m_lastDialog.m_strTitle, L"图形更名");
    EXPECT_EQ(m_pView->m_lastDialog.m_strOldName, L"a");
    EXPECT_EQ(BoxTexts(),
              std::vector<std::wstring>{L"文件" + Item(L"b.dwg") + L"已经存在，不能更名为b！"});
    EXPECT_TRUE(FsExists(Item(L"A.dwg")));
    EXPECT_TRUE(FsExists(Item(L"A.sld")));
    EXPECT_FALSE(FsExists(Item(L"a.dwg")));
    EXPECT_TRUE(FsExists(Item(L"a.bak"))); // the backup keeps its name
    ASSERT_EQ(m_pView->m_selection.size(), 1u);
    EXPECT_EQ(m_pView->m_list[m_pView->m_selection[0]], L"A.dwg");

    // Backslashes at the ends and doubled ones are cleaned; the subdirectory is made.
    m_pView->m_nameAnswers = {{L"\\sub\\\\x.dwg\\"}};
    m_pDlg->OnCommand(IDC_BTN_RENAME);
    EXPECT_EQ(ReadBytes(Item(L"sub\\x.dwg")), "item");
    EXPECT_TRUE(FsExists(Item(L"sub\\x.sld")));
    EXPECT_EQ(m_pView->m_list[m_pView->m_selection.at(0)], L"sub\\x.dwg");
}

TEST_F(CircuitLibItemOpsTest, RenameReportsAMissingOrHeldFile) {
    AddItems(L"按钮\\", {L"a.dwg", L"b.dwg"});
    Open();
    Select({1});
    FsDeleteFile(Item(L"b.dwg"));
    m_pDlg->OnCommand(IDC_BTN_RENAME);
    EXPECT_TRUE(m_pView->m_dialogTitles.empty());
    ASSERT_EQ(BoxTexts(),
              std::vector<std::wstring>{L"文件“" + Item(L"b.dwg") + L"”不存在，无法更名！"});

    Select({0});
    int fd = FsOpenLocked(Item(L"a.dwg"));
    ASSERT_GE(fd, 0);
    m_pView->m_nameAnswers = {{L"c"}};
    m_pDlg->OnCommand(IDC_BTN_RENAME);
    FsCloseHandle(fd);
    EXPECT_EQ(m_host.m_boxes.back().strText,
              L"文件" + Item(L"a.dwg") + L"无法更名，请确定是否被其它程序调用！");
    EXPECT_TRUE(FsExists(Item(L"a.dwg")));
    EXPECT_FALSE(FsExists(Item(L"c.dwg")));
}

TEST_F(CircuitLibItemOpsTest, DeleteTrashesTheSelectionAndKeepsAHeldFileSelected) {
    AddItems(L"按钮\\", {L"a.dwg", L"a.sld", L"a.bak", L"b.dwg", L"c.dwg", L"c.sld"});
    Open();
    Select({0, 1, 2});
    m_host.m_answers = {IDNO};
    m_pDlg->OnCommand(IDC_BTN_DELETE);
    EXPECT_EQ(BoxTexts(), std::vector<std::wstring>{L"真的删除所选3项吗？删除之后无法恢复！"});
    EXPECT_TRUE(FsExists(Item(L"a.dwg")));

    int fd = FsOpenLocked(Item(L"b.dwg"));
    ASSERT_GE(fd, 0);
    m_host.m_answers = {IDYES};
    m_pDlg->OnCommand(IDC_BTN_DELETE);
    FsCloseHandle(fd);
    ASSERT_EQ(m_host.m_boxes.size(), 3u); // the question and one message
    EXPECT_EQ(m_host.m_boxes[2].strText,
              L"文件 " + Item(L"b.dwg") + L" 无法删除，请确定是否被其它程序调用！");
    EXPECT_TRUE(FsExists(Item(L"b.dwg")));
    for (const wchar_t* pszGone : {L"a.dwg", L"a.sld", L"a.bak", L"c.dwg", L"c.sld"}) {
        EXPECT_FALSE(FsExists(Item(pszGone))) << pszGone;
        EXPECT_TRUE(FsExists(Trashed(pszGone))) << pszGone; // nothing is lost
    }
    EXPECT_EQ(m_pView->m_list, CStringArray{L"b.dwg"});
    EXPECT_EQ(m_pDlg->m_Names, CStringArray{L"b.dwg"});
    EXPECT_EQ(m_pView->m_selection, std::vector<int>{0});
}

TEST_F(CircuitLibItemOpsTest, DeleteRemovesRowsAtShiftedIndicesAndSelectsTheNextOne) {
    AddNumberedItems(L"按钮\\", 6);
    Open();
    FsDeleteFile(Item(L"4.dwg")); // already gone: its row goes all the same
    Select({1, 3, 4});
    m_host.m_answers = {IDYES};
    m_pDlg->OnCommand(IDC_BTN_DELETE);
    EXPECT_EQ(m_pView->m_list, (CStringArray{L"1.dwg", L"3.dwg", L"6.dwg"}));
    EXPECT_EQ(m_pDlg->m_Names, m_pView->m_list);
    EXPECT_EQ(m_pView->m_selection, std::vector<int>{2}); // the last removed index
    EXPECT_EQ(m_pDlg->m_nPages, 1);
}

TEST_F(CircuitLibItemOpsTest, ImportCopiesEveryFileAndCollectsTheClashesInOneBox) {
    AddItems(L"按钮\\", {L"b.dwg"});
    CTempDir source;
    for (const wchar_t* pszName : {L"a.dwg", L"b.dwg", L"c.dwg"})
        WriteBytes(source / pszName, "new");
    Open();
    m_files.m_answer = {source / L"a.dwg", source / L"b.dwg", source / L"c.dwg"};
    m_pDlg->OnCommand(IDM_IMPORT);
    ASSERT_EQ(m_files.m_requests.size(), 1u);
    EXPECT_EQ(m_files.m_requests[0].strTitle, L"选择要导入的图纸文件(.dwg)");
    EXPECT_EQ(m_files.m_requests[0].strFilter, L"DWG File(*.dwg)|*.dwg|");
    EXPECT_TRUE(m_files.m_requests[0].bMultiSelect);
    EXPECT_EQ(BoxTexts(), std::vector<std::wstring>{L"文件" + (source / L"b.dwg") + L"复制为" +
                                                    Item(L"b.dwg") + L"失败！\n"});
    EXPECT_EQ(ReadBytes(Item(L"a.dwg")), "new");
    EXPECT_EQ(ReadBytes(Item(L"b.dwg")), "item");
    EXPECT_EQ(m_pView->m_list, (CStringArray{L"a.dwg", L"b.dwg", L"c.dwg"}));

    // A choice longer than the name buffer is refused as a whole.
    std::vector<std::wstring> many;
    for (int i = 0; i < 300; ++i)
        many.push_back(source / Format(L"一个很长很长的图纸文件名称%03d.dwg", i));
    m_files.m_answer = many;
    m_pDlg->OnCommand(IDM_IMPORT);
    EXPECT_EQ(m_host.m_boxes.back().strText, L"长度溢出，导入失败！");
    EXPECT_EQ(m_pView->m_list.size(), 3u);
}

TEST_F(CircuitLibItemOpsTest, SaveCurrentAsksForTheTitledDrawingsOwnFileElseForAName) {
    AddItems(L"按钮\\", {L"x.dwg"});
    WriteDrawing(Item(L"own.dwg"));
    Open();
    // An untitled drawing: the name dialog; an existing file is replaced unasked.
    AppendToModelSpace(*m_host.m_editor.Doc()->database(),
                       new AcDbCircle(AcGePoint3d(1, 1, 0), 2.0));
    m_pView->m_nameAnswers = {{L".dwg"}, {L"x.dwg"}};
    m_pDlg->OnCommand(IDC_BTN_SAVE);
    EXPECT_EQ(m_pView->m_lastDialog.m_strTitle, L"保存当前图至");
    EXPECT_EQ(m_pView->m_lastDialog.m_strOldName, L"");
    EXPECT_TRUE(m_host.m_boxes.empty());
    EXPECT_NE(ReadBytes(Item(L"x.dwg")).find("CIRCLE"), std::string::npos);
    EXPECT_EQ(m_pView->m_list[m_pView->m_selection.at(0)], L"x.dwg");

    // The titled drawing of the current directory is saved in place after the question.
    ASSERT_TRUE(m_host.m_editor.m_docs.OpenDocument(Item(L"own.dwg")));
    std::string before = ReadBytes(Item(L"own.dwg"));
    AppendToModelSpace(*m_host.m_editor.Doc()->database(),
                       new AcDbCircle(AcGePoint3d(1, 1, 0), 2.0));
    m_host.m_answers = {IDNO};
    m_pDlg->OnCommand(IDC_BTN_SAVE);
    EXPECT_EQ(m_host.m_boxes.back().strText, L"是否保存文件" + Item(L"own.dwg") + L"？");
    EXPECT_EQ(ReadBytes(Item(L"own.dwg")), before);
    m_host.m_answers = {IDYES};
    m_pDlg->OnCommand(IDC_BTN_SAVE);
    EXPECT_NE(ReadBytes(Item(L"own.dwg")).find("CIRCLE"), std::string::npos);
    EXPECT_EQ(m_pView->m_dialogTitles.size(), 1u);

    // A directory that went away is named.
    FsDeleteTree(HoleRoot() + L"按钮");
    m_pDlg->OnCommand(IDC_BTN_SAVE);
    EXPECT_EQ(m_host.m_boxes.back().strText,
              L"当前选择目录 " + HoleRoot() + L"按钮 不存在，无法保存当前图至当前选择目录！");
}

namespace {

// Two workstations of one site; the browser runs on workstation 0 in mode 1,
// in the directory "按钮" with items that are on the site too.
class SharedItemOpsTest : public CircuitLibItemOpsTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_site.Started());
        FsCreateDirectory(m_site.SitePath(L"InstallHole"));
        ASSERT_TRUE(m_site.On(0).CommitNewDir(L"InstallHole\\按钮\\", L""));
        m_host.m_strCommonRes = m_host.m_strLocal;
        for (const wchar_t* pszDir : {L"InstallHole\\按钮", L"LaySketch", L"Data"})
            CreateDirPath(m_site.Install(0, pszDir));
        m_host.m_nInstallStyle = 1;
        g_HoleLib.g_nFtpMode = 1;
    }
    std::wstring Local(const std::wstring& strName) const {
        return m_site.Install(0, L"InstallHole\\按钮\\" + strName);
    }
    std::wstring Rel(const std::wstring& strName) const { return L"InstallHole\\按钮\\" + strName; }
    void AddShared(const std::wstring& strName, const std::string& bytes = "item") {
        WriteBytes(Local(strName), bytes);
        ASSERT_TRUE(m_site.On(0).CommitFile(Local(strName), Rel(strName)));
    }
    bool HasRecord(const std::wstring& strPath, const wchar_t* pszOprt) const {
        CStringArray records = m_site.SiteLines(L"Server.xml");
        return std::any_of(records.begin(), records.end(), [&](const std::wstring& s) {
            return s.rfind(strPath + L"|", 0) == 0 && s.ends_with(std::wstring(L"|") + pszOprt);
        });
    }
    // Workstation 1 updates its copy of the directory from the site.
    bool UpdateOther() {
        bool bMainLib = false;
        bool bBehind = m_site.On(1).CheckServerUpdate(bMainLib);
        bool bFetched = m_site.On(1).DownloadDir(Rel(L""), m_site.Install(1, Rel(L"")));
        m_site.Use(0);
        return bBehind && bFetched;
    }

    CFixedVersionClock m_clock;
    CCountingSleep m_sleep;
    CSharedSite m_site{m_host, 2};
};

} // namespace

TEST_F(SharedItemOpsTest, RenameAndDeleteGoThroughTheSiteAndReachTheOtherWorkstation) {
    AddShared(L"a.dwg");
    AddShared(L"a.sld");
    AddShared(L"b.dwg");
    ASSERT_TRUE(m_site.On(1).AdoptServerVersion());
    Open(&m_site.On(0));
    ASSERT_EQ(g_HoleLib.g_nFtpMode, 1);
    Select({0});
    m_pView->m_nameAnswers = {{L"sub\\c"}};
    m_pDlg->OnCommand(IDC_BTN_RENAME);
    EXPECT_EQ(m_site.SiteBytes(Rel(L"sub\\c.dwg")), "item");
    EXPECT_TRUE(m_site.OnSite(Rel(L"sub\\c.sld")));
    EXPECT_FALSE(m_site.OnSite(Rel(L"a.dwg")));
    EXPECT_TRUE(FsExists(Local(L"sub\\c.dwg")));
    EXPECT_FALSE(FsExists(Local(L"a.dwg")));
    EXPECT_TRUE(HasRecord(Rel(L"a.dwg"), L"DEL"));
    EXPECT_TRUE(HasRecord(Rel(L"sub\\c.dwg"), L"MOD"));
    ASSERT_TRUE(UpdateOther());
    EXPECT_TRUE(FsExists(m_site.Install(1, Rel(L"sub\\c.dwg"))));
    EXPECT_FALSE(FsExists(m_site.Install(1, Rel(L"a.dwg"))));

    Select({0}); // "b.dwg"
    ASSERT_EQ(m_pView->m_list.at(0), L"b.dwg");
    m_host.m_answers = {IDYES};
    m_pDlg->OnCommand(IDC_BTN_DELETE);
    EXPECT_FALSE(m_site.OnSite(Rel(L"b.dwg")));
    EXPECT_TRUE(HasRecord(Rel(L"b.dwg"), L"DEL"));
    EXPECT_TRUE(FsExists(Trashed(L"b.dwg")));
}

TEST_F(SharedItemOpsTest, ALockTheUserWillNotBreakEndsTheDeleteRun) {
    for (const wchar_t* pszName : {L"a.dwg", L"b.dwg", L"c.dwg"})
        AddShared(pszName);
    ASSERT_TRUE(m_site.On(1).CheckOutFile(m_site.Install(1, Rel(L"b.dwg")), Rel(L""), L"b.dwg"));
    Open(&m_site.On(0));
    Select({0, 1, 2});
    m_host.m_answers = {IDYES, IDNO};
    m_pDlg->OnCommand(IDC_BTN_DELETE);
    ASSERT_EQ(m_host.m_boxes.size(), 2u);
    EXPECT_NE(m_host.m_boxes[1].strText.find(CSharedSite::HostId(1)), std::wstring::npos);
    EXPECT_FALSE(m_site.OnSite(Rel(L"a.dwg")));
    EXPECT_TRUE(m_site.OnSite(Rel(L"b.dwg")));
    EXPECT_TRUE(m_site.OnSite(Rel(L"b.dwg.bak"))); // the other's lock stands
    EXPECT_TRUE(FsExists(Local(L"c.dwg")));
    EXPECT_EQ(m_pView->m_list.size(), 3u); // the run ended before the list
}

TEST_F(SharedItemOpsTest, ImportAsksBeforeOverwritingAndCommitsWhatItKeeps) {
    AddShared(L"b.dwg", "old");
    CTempDir source;
    WriteBytes(source / L"a.dwg", "new a");
    WriteBytes(source / L"b.dwg", "new b");
    Open(&m_site.On(0));
    m_files.m_answer = {source / L"a.dwg", source / L"b.dwg"};
    m_host.m_answers = {IDNO};
    m_pDlg->OnCommand(IDM_IMPORT);
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText, L"文件" + Local(L"b.dwg") + L"已经存在,是否覆盖！");
    EXPECT_EQ(m_host.m_boxes[0].nFlags, 52u);
    EXPECT_EQ(m_site.SiteBytes(Rel(L"a.dwg")), "new a");
    EXPECT_EQ(m_site.SiteBytes(Rel(L"b.dwg")), "old");
    EXPECT_EQ(ReadBytes(Local(L"a.dwg")), "new a");

    // Yes sends it to the site; the local copy never overwrites and says so.
    m_files.m_answer = {source / L"b.dwg"};
    m_host.m_answers = {IDYES};
    m_pDlg->OnCommand(IDM_IMPORT);
    EXPECT_EQ(m_site.SiteBytes(Rel(L"b.dwg")), "new b");
    EXPECT_TRUE(HasRecord(Rel(L"b.dwg"), L"MOD"));
    EXPECT_EQ(m_host.m_boxes.back().strText,
              L"文件" + (source / L"b.dwg") + L"复制为" + Local(L"b.dwg") + L"失败！\n");
}

TEST_F(SharedItemOpsTest, SaveCurrentCommitsAWholeCopyAndAsksBeforeReplacing) {
    AddShared(L"x.dwg", "old");
    Open(&m_site.On(0));
    AppendToModelSpace(*m_host.m_editor.Doc()->database(),
                       new AcDbCircle(AcGePoint3d(1, 1, 0), 2.0));
    m_pView->m_nameAnswers = {{L"x"}, {L"新图"}};
    m_host.m_answers = {IDNO};
    m_pDlg->OnCommand(IDC_BTN_SAVE);
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText, L"图形“x”已经存在,是否覆盖？");
    EXPECT_EQ(ReadBytes(Local(L"x.dwg")), "old"); // refused before anything was written
    EXPECT_EQ(m_site.SiteBytes(Rel(L"x.dwg")), "old");

    EXPECT_NE(m_site.SiteBytes(Rel(L"新图.dwg")).find("CIRCLE"), std::string::npos);
    EXPECT_TRUE(HasRecord(Rel(L"新图.dwg"), L"MOD"));
    EXPECT_FALSE(FsExists(m_site.Install(0, L"InstallHole\\新图.dwg"))); // the scratch copy
    EXPECT_EQ(m_host.m_editor.m_docs.documentCount(), 1);
    EXPECT_EQ(m_pView->m_list[m_pView->m_selection.at(0)], L"新图.dwg");

    // Replacing goes through Temp, and leaves nothing there.
    m_pView->m_nameAnswers = {{L"x"}};
    m_host.m_answers = {IDYES};
    m_pDlg->OnCommand(IDC_BTN_SAVE);
    EXPECT_NE(m_site.SiteBytes(Rel(L"x.dwg")).find("CIRCLE"), std::string::npos);
    EXPECT_FALSE(FsExists(m_site.Install(0, L"Temp\\x.dwg")));
}

TEST_F(SharedItemOpsTest, LayoutItemsAreTestedUnderTheLocalRootAndRenamedOnTheSite) {
    ASSERT_TRUE(m_site.On(0).CommitNewDir(L"LaySketch\\柜\\", L""));
    std::wstring strItem = m_site.Install(0, L"LaySketch\\柜\\p.dwg");
    CreateDirPath(GetParentPath(strItem));
    WriteBytes(strItem, "layout");
    ASSERT_TRUE(m_site.On(0).CommitFile(strItem, L"LaySketch\\柜\\p.dwg"));
    m_host.m_strCommonRes = m_dir / L"elsewhere\\"; // the hole library's root, not this one's
    g_LayoutLib.strRoot = m_host.m_strLocal;
    g_LayoutLib.g_nFtpMode = 1;
    auto pView = std::make_unique<CRecordingLibView>();
    CRecordingLibView& view = *pView;
    CLaySketchLibDlg dlg(g_LayoutLib, &m_site.On(0), std::move(pView));
    ASSERT_TRUE(dlg.Create());
    ASSERT_EQ(view.m_list, CStringArray{L"p.dwg"});

    CTempDir source;
    WriteBytes(source / L"p.dwg", "new");
    m_files.m_answer = {source / L"p.dwg"};
    m_host.m_answers = {IDNO};
    dlg.OnCommand(IDM_IMPORT);
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText, L"文件" + strItem + L"已经存在,是否覆盖！");

    view.m_selection = {0};
    dlg.OnItemchangedList({0});
    view.m_nameAnswers = {{L"q"}};
    dlg.OnCommand(IDC_BTN_RENAME);
    EXPECT_EQ(m_site.SiteBytes(L"LaySketch\\柜\\q.dwg"), "layout");
    EXPECT_FALSE(m_site.OnSite(L"LaySketch\\柜\\p.dwg"));
    g_LayoutLib = CLibState();
}
