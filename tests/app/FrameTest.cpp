// The module frame: registration, the posted hand-over, browser starts and unload.
#include "app/LibState.h"
#include "app/entry/Commands.h"
#include "app/entry/DrawingManageApp.h"
#include "base/FileSystem.h"
#include "host/HostDocuments.h"

#include "EditorTestHost.h"
#include "SlideFixtures.h"
#include "app/DocumentServices.h"
#include "app/EditorServices.h"
#include "shared/fileops/FileOps.h"

#include <gtest/gtest.h>

namespace {

class FrameTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_host.m_strCommonRes = m_dir / L"common\\";
        m_host.m_strLocal = m_dir / L"local\\";
        FsCreateDirectory(m_dir / L"common");
        ASSERT_EQ(m_app.EntryPoint(AcRx::kInitAppMsg, nullptr), AcRx::kRetOK);
        SetBrowserFactory(g_HoleLib, [this] { return m_pHole = new CFakeBrowser; });
        SetBrowserFactory(g_LayoutLib, [this] { return m_pLayout = new CFakeBrowser; });
    }
    void TearDown() override {
        m_app.EntryPoint(AcRx::kUnloadAppMsg, nullptr);
        for (CLibState* pState : {&g_HoleLib, &g_LayoutLib}) {
            delete pState->pLibDlg;
            *pState = CLibState();
        }
    }

    CTempDir m_dir;
    CEditorTestHost m_host;
    CDrawingManageApp m_app;
    CFakeBrowser* m_pHole = nullptr;
    CFakeBrowser* m_pLayout = nullptr;
};

} // namespace

// The names and flags as the editor must see them, written out here rather
// than read from the table under test.
TEST_F(FrameTest, RegistersEighteenCommandsWithTheirFlags) {
    const CCommandStack& stack = m_host.m_editor.m_commands;
    const std::pair<const wchar_t*, unsigned> kExpected[] = {
        {L"DrawingManage", 0x200000u},
        {L"DrawingInsert", 1u},
        {L"DrawingOpen", 1u},
        {L"DrawPanel", 1u},
        {L"MoveHole", 1u},
        {L"DimHole", 1u},
        {L"EditPanel", 1u},
        {L"MakeSld", 1u},
        {L"ShowSld", 1u},
        {L"OpenDwg", 1u},
        {L"CloseDwg", 1u},
        {L"ShowSldDlg", 1u},
        {L"Tz3dView", 1u},
        {L"Tz2dView", 1u},
        {L"LaySketchManage", 1u},
        {L"LaySketchInsert", 1u},
        {L"LaySketchOpen", 1u},
        {L"LaySketchMakeSld", 1u},
    };
    for (const auto& [pszName, nFlags] : kExpected) {
        const HOST_COMMAND* pCmd = stack.Find(pszName);
        ASSERT_NE(pCmd, nullptr) << pszName;
        EXPECT_EQ(pCmd->strGlobal, pszName);
        EXPECT_EQ(pCmd->strGroup, L"TzDrawingManage") << pszName;
        EXPECT_EQ(pCmd->nFlags, nFlags) << pszName;
    }
    size_t nWithModule = stack.Count();
    m_app.EntryPoint(AcRx::kUnloadAppMsg, nullptr);
    EXPECT_EQ(nWithModule - stack.Count(), 18u); // and no command beyond these
    m_app.EntryPoint(AcRx::kInitAppMsg, nullptr);
    EXPECT_EQ(stack.Find(L"drawingmanage"), stack.Find(L"DrawingManage"));
    EXPECT_EQ(m_app.EntryPoint(AcRx::kSuspendMsg, nullptr), 0);
    m_app.EntryPoint(AcRx::kUnloadAppMsg, nullptr);
    EXPECT_EQ(stack.Find(L"MoveHole"), nullptr);
    m_app.EntryPoint(AcRx::kInitAppMsg, nullptr);
}

namespace {

unsigned long g_nSerials[3];
void ThrowsNoMemory() {
    g_nSerials[0] = CurrentCommandSerial();
    throw std::bad_alloc();
}
void ThrowsRuntime() {
    g_nSerials[1] = CurrentCommandSerial();
    throw std::runtime_error("file vanished");
}
void Finishes() {
    g_nSerials[2] = CurrentCommandSerial();
}
const STRUCT_ARXCOMMAND kThrowingTable[] = {
    {L"TzTest", L"Oom", L"Oom", 0, &ThrowsNoMemory, nullptr, -1, {0, 0}},
    {L"TzTest", L"Broken", L"Broken", 0, &ThrowsRuntime, nullptr, -1, {0, 0}},
    {L"TzTest", L"Fine", L"Fine", 0, &Finishes, nullptr, -1, {0, 0}},
};

} // namespace

// No exception of a command body reaches the host: the command ends with one
// line, and each command runs under a serial of its own.
TEST_F(FrameTest, CommandBodiesEndWithOneLineWhateverTheyThrow) {
    m_app.EntryPoint(AcRx::kUnloadAppMsg, nullptr);
    AcRxArxApp app(kThrowingTable, 3);
    ASSERT_EQ(app.EntryPoint(AcRx::kInitAppMsg, nullptr), AcRx::kRetOK);
    m_host.m_strPrinted.clear();
    m_host.Run({L"Oom", L"Broken", L"Fine"});
    EXPECT_EQ(m_host.m_strPrinted,
              L"命令: Oom\n\n; 错误: 命令 Oom 异常中止（内存不足）\n"
              L"命令: Broken\n\n; 错误: 命令 Broken 异常中止（file vanished）\n"
              L"命令: Fine\n");
    EXPECT_NE(g_nSerials[0], 0u);
    EXPECT_NE(g_nSerials[0], g_nSerials[1]);
    EXPECT_NE(g_nSerials[1], g_nSerials[2]);
    EXPECT_EQ(CurrentCommandSerial(), 0u);
    app.EntryPoint(AcRx::kUnloadAppMsg, nullptr);
    ASSERT_EQ(m_app.EntryPoint(AcRx::kInitAppMsg, nullptr), AcRx::kRetOK);
}

TEST_F(FrameTest, MoveHolePrintsNothingAndFirstRunOnlyMakesTheSentinel) {
    m_host.Run({L"MoveHole"});
    EXPECT_EQ(m_host.m_strPrinted, L"命令: MoveHole\n");
    m_host.Run({L"DrawingManage"});
    EXPECT_TRUE(FsIsDirectory(m_dir / L"common\\DzStrucLib")); // made, and no window yet
    EXPECT_EQ(g_HoleLib.pLibDlg, nullptr);
    m_host.Run({L"DrawingInsert"}); // no browser, no path: starts it as DrawingManage would
    EXPECT_NE(g_HoleLib.pLibDlg, nullptr);
}

TEST_F(FrameTest, PostedInsertWithoutPathFallsThroughToTheBrowserStart) {
    FsCreateDirectory(m_dir / L"common\\DzStrucLib");
    g_HoleLib.nCount = 3;
    ASSERT_TRUE(acDocManagerPtr()->sendStringToExecute(
        acDocManagerPtr()->curDocument(), L"(Command)\nDrawingInsert\n", false, true, true));
    m_host.Run({});
    ASSERT_NE(m_pHole, nullptr);
    EXPECT_EQ(g_HoleLib.pLibDlg, m_pHole);
    EXPECT_EQ(g_HoleLib.nCount, 0); // the start resets the hand-over

    // A second start raises the same window, reloads and selects the pending item.
    g_HoleLib.strDwgFile = m_dir / L"common\\InstallHole\\22mm按钮.dwg";
    m_pHole->m_bIconic = true;
    m_host.Run({L"DrawingManage"});
    EXPECT_EQ(m_pHole->m_strLog,
              L"show;activate;show;activate;reload;select 22mm按钮.dwg;restore;");
    EXPECT_FALSE(g_HoleLib.strDwgFile.empty()); // the path stays
}

TEST_F(FrameTest, LoginAndRootRefusals) {
    m_host.m_nInstallStyle = 1;
    m_host.Run({L"DrawingManage"});
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText, L"没有通过FTP登录验证!");
    EXPECT_EQ(m_host.m_boxes[0].nFlags, 64u);
    m_host.m_nInstallStyle = 0;
    m_host.m_strCommonRes.clear();
    m_host.Run({L"DrawingManage"});
    EXPECT_EQ(m_host.m_boxes.size(), 1u); // an empty root ends silently
    m_host.Run({L"LaySketchManage"});
    ASSERT_EQ(m_host.m_boxes.size(), 2u);
    EXPECT_EQ(m_host.m_boxes[1].strText,
              L"屏面布置图库目录 " + m_dir.Path() + L"local\\InstallHole\\ 不存在！");
}

TEST_F(FrameTest, WindowCreationFailuresPrintTheFrameLines) {
    FsCreateDirectory(m_dir / L"common\\DzStrucLib");
    SetBrowserFactory(g_HoleLib, [] {
        auto* p = new CFakeBrowser;
        p->m_bCreatable = false;
        return p;
    });
    m_host.Run({L"DrawingManage"});
    EXPECT_NE(m_host.m_strPrinted.find(
                  L"\nUnable to create the dialog.Failed to create modeless dialog box.\n"),
              std::wstring::npos);
    EXPECT_EQ(g_HoleLib.pLibDlg, nullptr);
    m_host.m_editor.m_bHasFrame = false;
    m_host.Run({L"DrawingManage"});
    EXPECT_NE(m_host.m_strPrinted.find(L"\nUnable to locate AutoCAD parent window."),
              std::wstring::npos);
    EXPECT_EQ(m_host.m_editor.m_docs.ResourceDepth(), 0);
}

TEST_F(FrameTest, OpenKeepsThePathAndZoomsQuietly) {
    FsCreateDirectory(m_dir / L"common\\DzStrucLib");
    m_host.Run({L"DrawingManage", L"SETVAR CMDECHO 2"});
    g_HoleLib.strDwgFile = L"d:\\lib\\a.dwg";
    m_host.Run({L"DrawingOpen"});
    EXPECT_EQ(g_HoleLib.strDwgFile, L"d:\\lib\\a.dwg");
    EXPECT_EQ(m_host.m_editor.m_vars.Short(L"CMDECHO"), 2);
    EXPECT_EQ(m_host.m_strPrinted.find(L"ZOOM"), std::wstring::npos); // echo was off
}

TEST_F(FrameTest, UnloadDestroysOnlyTheHoleWindows) {
    FsCreateDirectory(m_dir / L"common\\DzStrucLib");
    FsCreateDirectory(m_dir / L"local");
    FsCreateDirectory(m_dir / L"local\\InstallHole");
    m_host.Run({L"DrawingManage", L"LaySketchManage"});
    ASSERT_NE(g_LayoutLib.pLibDlg, nullptr);
    int nBefore = CFakeBrowser::m_nDestroyed;
    m_app.EntryPoint(AcRx::kUnloadAppMsg, nullptr);
    EXPECT_EQ(g_HoleLib.pLibDlg, nullptr);
    EXPECT_EQ(CFakeBrowser::m_nDestroyed, nBefore + 1);
    EXPECT_EQ(g_LayoutLib.pLibDlg, m_pLayout);
    m_app.EntryPoint(AcRx::kInitAppMsg, nullptr);
}

TEST_F(FrameTest, SuperClientWithoutSiteStillOpensTheBrowser) {
    FsCreateDirectory(m_dir / L"common\\DzStrucLib");
    m_host.m_nInstallStyle = 1;
    m_host.m_nFtpLogin = 1;
    m_host.Run({L"DrawingManage"}); // the site cannot be reached: nothing to catch up with
    EXPECT_NE(g_HoleLib.pLibDlg, nullptr);
    EXPECT_EQ(g_HoleLib.g_nFtpMode, 1);
    EXPECT_EQ(m_host.m_nWaitDepth, 0);
}

// The end of a new item in either library: the posted command makes the slide and hands the
// item to the browser.
TEST_F(FrameTest, PostedMakeSldOfANewItemSlidesItInEitherLibrary) {
    for (CLibState* pState : {&g_HoleLib, &g_LayoutLib}) {
        std::wstring strDwg = m_dir / (pState == &g_HoleLib ? L"common\\a.dwg" : L"local\\b.dwg");
        FsCreateDirectory(m_dir / L"local");
        WriteRectDrawing(strDwg, 0, 0, 40, 20);
        ASSERT_NE(m_host.m_editor.m_docs.OpenDocument(strDwg), nullptr);
        auto* pBrowser = new CFakeBrowser;
        pState->pLibDlg = pBrowser;
        pState->strDwgFile = strDwg;
        pState->bNewPending = 1;
        PostCommandString(pState == &g_HoleLib ? L"(Command)\nMakeSld\n"
                                               : L"(Command)\nLaySketchMakeSld\n");
        m_host.Run({});
        EXPECT_TRUE(ReadSlideBounds(RemoveFileExt(strDwg) + L".sld").bRead);
        EXPECT_FALSE(IsDocumentOpen(strDwg));
        EXPECT_EQ(pBrowser->m_strLog, L"reload;select " + GetFileName(strDwg) + L";");
        EXPECT_EQ(pState->bNewPending, 0);
    }
}
