// Both browsers typed into the desktop's command line on the demo installation, as a user starts
// them.
#include "GuiDriver.h"
#include "TestHost.h"

#include "app/LibState.h"
#include "app/entry/DrawingManageApp.h"
#include "demo/DemoInstall.h"
#include "dxf/DxfCodec.h"
#include "host/HostServices.h"
#include "host/db/AcDb.h"
#include "library/CircuitLibDlg.h"
#include "library/views/LibBrowserWindow.h"
#include "suite/SuiteConfig.h"
#include "ui/views/MyListCtrl.h"
#include "ui/views/SlideCtrl.h"

#include <QApplication>
#include <QLineEdit>

#include <gtest/gtest.h>

namespace {

struct SEEN {
    bool bVisible = false;
    QString title;
    QString root;
    int nItems = -1;
    uint nCellBackground = 0; // of the first cell
};

SEEN Look(CLibState& state) {
    SEEN seen;
    auto* pBrowser = dynamic_cast<CCircuitLibDlg*>(state.pLibDlg);
    CLibBrowserDialog* pDialog =
        pBrowser ? static_cast<CLibBrowserWindow&>(pBrowser->View()).Dialog() : nullptr;
    if (!pDialog)
        return seen;
    seen.bVisible = pDialog->isVisible();
    seen.title = pDialog->windowTitle();
    seen.root = static_cast<QLineEdit*>(pDialog->m_controls[IDC_EDIT_ROOT])->text();
    seen.nItems = pDialog->m_pList->topLevelItemCount();
    seen.nCellBackground = pDialog->m_slides[0]->GetProperty(2).toUInt();
    return seen;
}

} // namespace

TEST(LibraryDesktop, BothBrowsersOpenFromTheCommandLineAndComeBackAfterExit) {
    CTempDir dir;
    CGuiTestEditor gui;
    acdbSetFileCodec(&GetDxfCodec());
    CSuiteConfig config;
    ASSERT_TRUE(MakeDemoInstall(dir.OsPath() + "demo", config));
    HOST_SERVICES services = gui.m_editor.Services();
    services.pInstallPaths = &config;
    SetHostServices(services);
    CDrawingManageApp app;
    ASSERT_EQ(app.EntryPoint(AcRx::kInitAppMsg, nullptr), AcRx::kRetOK);

    SEEN layout, hole, layoutAgain;
    gui.Then([&] { gui.Type("LaySketchManage"); });
    gui.Then([&] { gui.Type("DrawingManage"); });
    gui.Then([&] {
        layout = Look(g_LayoutLib);
        hole = Look(g_HoleLib);
        // Both leave by the exit button: the hole browser's directory is remembered last.
        dynamic_cast<CCircuitLibDlg*>(g_LayoutLib.pLibDlg)->OnCommand(IDC_BTN_EXIT);
        dynamic_cast<CCircuitLibDlg*>(g_HoleLib.pLibDlg)->OnCommand(IDC_BTN_EXIT);
        gui.Type("LaySketchManage");
    });
    gui.Then([&] { layoutAgain = Look(g_LayoutLib); });
    gui.Run();

    EXPECT_TRUE(layout.bVisible);
    EXPECT_EQ(layout.title, QStringLiteral("屏面布置图库管理"));
    EXPECT_EQ(layout.root, QString::fromStdWString(config.LocalInstallPath() + L"LaySketch\\"));
    EXPECT_GT(layout.nItems, 0);
    EXPECT_TRUE(hole.bVisible);
    EXPECT_EQ(hole.title, QStringLiteral("开孔图库管理"));
    // The remembered directory is the hole library's, which the layout library
    // does not hold: the window opens with no directory and an empty list, its
    // cells blank in the button face rather than black.
    EXPECT_TRUE(layoutAgain.bVisible);
    EXPECT_EQ(layoutAgain.nItems, 0);
    EXPECT_EQ(layoutAgain.nCellBackground, kCellEmpty);

    for (CLibState* pState : {&g_HoleLib, &g_LayoutLib}) {
        IModelessWindow* pWindow = pState->pLibDlg;
        pState->pLibDlg = nullptr;
        DestroyModelessWindow(pWindow);
        *pState = CLibState();
    }
    app.EntryPoint(AcRx::kUnloadAppMsg, nullptr);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
