// The hole and layout browsers side by side: the rows in which they differ, and nothing else.
#include "LibraryBrowserFixture.h"

#include "app/entry/Commands.h"
#include "app/entry/DrawingManageApp.h"
#include "base/FileSystem.h"
#include "editor/DocManager.h"
#include "library/views/LibBrowserFactory.h"
#include "library/views/LibBrowserWindow.h"

#include <QAbstractButton>
#include <QApplication>

#include <algorithm>

namespace {

// One library's column of the table of differences.
struct BROWSER_ROW {
    void (*pfnManage)();
    CLibState* pState;
    const wchar_t* pszManage;
    int nTemplate;
    const char* pszTitle;
    int nList;
    int buttons[5]; // insert, new, modify, delete, rename
    const char* pszExplode;
    int nSyncId;
    const wchar_t* pszSync;
    unsigned nFlags;
    std::vector<std::wstring> kept;      // running commands the browser leaves alone
    std::vector<std::wstring> cancelled; // running commands it cancels
    bool bModeRecomputedByHandlers;
    bool bDirRenameInMode1;
};

const BROWSER_ROW kRows[] = {
    {CmdDrawingManage,
     &g_HoleLib,
     L"DrawingManage",
     102,
     "开孔图库管理",
     639,
     {617, 613, 614, 616, 615},
     "炸开开孔图块",
     652,
     L"目录同步到屏面布置图库",
     0x200000,
     {L"DrawingOpen", L"DrawingInsert", L"MakeSld", L"DrawingManage"},
     {L"LaySketchInsert", L"LINE"},
     true,
     true},
    {CmdLaySketchManage,
     &g_LayoutLib,
     L"LaySketchManage",
     319,
     "屏面布置图库管理",
     539,
     {540, 541, 542, 601, 602},
     "炸开屏面图块",
     653,
     L"目录同步到开孔图库",
     1,
     {L"LaySketchOpen", L"LaySketchInsert", L"LaySketchMakeSld"},
     {L"LaySketchManage", L"DrawingInsert", L"LINE"},
     false,
     false},
};

constexpr int kRoles[5] = {IDC_BTN_INSERT, IDC_BTN_NEW, IDC_BTN_MODIFY, IDC_BTN_DELETE,
                           IDC_BTN_RENAME};

class RecordingRename : public ILibItemOperations {
public:
    void OnBtnNew(CCircuitLibDlg&) override {}
    void OnBtnModify(CCircuitLibDlg&) override {}
    void OnBtnRename(CCircuitLibDlg& dlg) override { m_strLog += dlg.Kind().pszClass; }
    void OnBtnDelete(CCircuitLibDlg&) override {}
    void OnBtnSave(CCircuitLibDlg&) override {}
    void OnImport(CCircuitLibDlg&) override {}
    void OnEnlarge(CCircuitLibDlg&) override {}
    void OnBatchSlides(CCircuitLibDlg&) override {}
    std::wstring m_strLog;
};

class LibBrowserKindTest : public CLibraryBrowserTest {
protected:
    void SetUp() override {
        m_host.m_strCommonRes = m_dir / L"common\\";
        AddFile(L"common\\InstallHole\\按钮\\22mm按钮.dwg");
        AddFile(L"local\\LaySketch\\配电柜\\PLC控制箱.dwg");
        m_host.m_editor.m_pFrame = &m_frame;
        SetBrowserFactory(g_HoleLib, [] { return MakeCircuitLibDlg(g_HoleLib, nullptr); });
        SetBrowserFactory(g_LayoutLib, [] { return MakeLaySketchLibDlg(g_LayoutLib, nullptr); });
        SetLibItemOperations(&m_ops);
    }
    void TearDown() override {
        SetLibItemOperations(nullptr);
        CLibBrowserWindow::s_menuHook = nullptr;
        for (CLibState* pState : {&g_HoleLib, &g_LayoutLib}) {
            IModelessWindow* pWindow = pState->pLibDlg;
            pState->pLibDlg = nullptr;
            DestroyModelessWindow(pWindow);
            *pState = CLibState();
        }
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    void AddFile(const std::wstring& strRel) {
        std::wstring strPath = m_dir / strRel;
        CreateDirPath(GetParentPath(strPath));
        WriteBytes(strPath, "item");
    }
    static CCircuitLibDlg* Browser(const BROWSER_ROW& row) {
        return dynamic_cast<CCircuitLibDlg*>(row.pState->pLibDlg);
    }
    static CLibBrowserDialog* Dialog(const BROWSER_ROW& row) {
        return static_cast<CLibBrowserWindow&>(Browser(row)->View()).Dialog();
    }

    QWidget m_frame;
    RecordingRename m_ops;
};

} // namespace

TEST_F(LibBrowserKindTest, EachBrowserHasItsOwnTemplateIdsTextsAndMenu) {
    CreateDirPath(m_dir / L"common\\DzStrucLib");
    for (const BROWSER_ROW& row : kRows) {
        SCOPED_TRACE(row.pszTitle);
        row.pfnManage();
        ASSERT_NE(Browser(row), nullptr);
        CLibBrowserDialog* pDialog = Dialog(row);
        EXPECT_EQ(pDialog->property("templateId").toInt(), row.nTemplate);
        EXPECT_EQ(pDialog->windowTitle(), QString::fromUtf8(row.pszTitle));
        EXPECT_EQ(pDialog->m_controls[IDC_LIST]->property("controlId").toInt(), row.nList);
        for (int i = 0; i < 5; ++i)
            EXPECT_EQ(pDialog->m_controls[kRoles[i]]->property("controlId").toInt(),
                      row.buttons[i]);
        auto* pExplode = static_cast<QAbstractButton*>(pDialog->m_controls[IDC_CHK_EXPLODE]);
        EXPECT_EQ(pExplode->text(), QString::fromUtf8(row.pszExplode));

        // A click on the button reaches the handler of its role through its own id.
        m_ops.m_strLog.clear();
        static_cast<QAbstractButton*>(pDialog->m_controls[IDC_BTN_RENAME])->click();
        EXPECT_EQ(m_ops.m_strLog, Browser(row)->Kind().pszClass);
        Browser(row)->OnCommand(row.buttons[4]);
        EXPECT_EQ(m_ops.m_strLog.size(), 2 * std::wstring(Browser(row)->Kind().pszClass).size());

        std::vector<MENU_ENTRY> menu;
        CLibBrowserWindow::s_menuHook = [&](const std::vector<MENU_ENTRY>& entries) {
            menu = entries;
            return 0;
        };
        row.pState->g_nFtpMode = 1;
        Browser(row)->OnRclickTree(Browser(row)->TreeSelection());
        row.pState->g_nFtpMode = 0;
        ASSERT_FALSE(menu.empty());
        EXPECT_EQ(menu.back().nId, row.nSyncId);
        EXPECT_EQ(menu.back().strText, row.pszSync);
        auto rename = std::find_if(menu.begin(), menu.end(),
                                   [](const MENU_ENTRY& e) { return e.nId == IDM_DIR_RENAME; });
        ASSERT_NE(rename, menu.end());
        EXPECT_EQ(rename->bGrayed, !row.bDirRenameInMode1);
    }
}

TEST_F(LibBrowserKindTest, FlagsCancelledCommandsAndTheModeFollowTheLibrary) {
    CreateDirPath(m_dir / L"common\\DzStrucLib");
    for (const BROWSER_ROW& row : kRows) {
        SCOPED_TRACE(row.pszTitle);
        auto command = std::find_if(
            g_arxCommands, g_arxCommands + g_nArxCommands,
            [&](const STRUCT_ARXCOMMAND& c) { return std::wstring(c.pszGlobal) == row.pszManage; });
        ASSERT_NE(command, g_arxCommands + g_nArxCommands);
        EXPECT_EQ(command->nFlags, row.nFlags);

        row.pfnManage();
        CCircuitLibDlg* pBrowser = Browser(row);
        ASSERT_NE(pBrowser, nullptr);
        auto* pDoc = static_cast<CHostDocument*>(acDocManagerPtr()->curDocument());
        for (bool bKept : {true, false}) {
            for (const std::wstring& strCommand : bKept ? row.kept : row.cancelled) {
                bool bCancelled = false; // the mouse comes over while the command runs
                m_host.m_editor.m_commands.AddNative(strCommand, [&] {
                    pDoc->m_posted.clear();
                    pBrowser->PreTranslateMessage(false, false, false, false);
                    bCancelled = !pDoc->m_posted.empty();
                });
                m_host.Run({strCommand});
                EXPECT_EQ(bCancelled, !bKept) << strCommand;
            }
        }

        // Install style 0 brings the mode back to 0 only where the handlers recompute it.
        row.pState->g_nFtpMode = 1;
        pBrowser->PassGates(GATE_A_MODE);
        EXPECT_EQ(row.pState->g_nFtpMode, row.bModeRecomputedByHandlers ? 0 : 1);
        row.pState->g_nFtpMode = 0;
    }
}

TEST_F(LibBrowserKindTest, AMissingSentinelKeepsEitherWindowClosed) {
    CmdDrawingManage(); // first run: the sentinel is made, silently, and no window opens
    EXPECT_EQ(g_HoleLib.pLibDlg, nullptr);
    EXPECT_TRUE(IsDirExist(m_dir / L"common\\DzStrucLib"));
    EXPECT_TRUE(m_host.m_boxes.empty());
    CmdDrawingManage();
    EXPECT_NE(g_HoleLib.pLibDlg, nullptr);

    // The layout browser wants the hole library's name under the local root.
    FsRemoveDirectory(m_dir / L"local\\InstallHole");
    CmdLaySketchManage();
    EXPECT_EQ(g_LayoutLib.pLibDlg, nullptr);
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText,
              L"屏面布置图库目录 " + m_dir / L"local\\InstallHole\\" + L" 不存在！");
}
