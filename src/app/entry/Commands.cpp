// Command bodies of the frame: the browser starts and the hand-over fall-throughs.
#include "app/entry/Commands.h"
#include "panel/PanelCommands.h"
#include "panel/views/DlgDrawPanelWindow.h"

#include "app/EditorServices.h"
#include "app/LibState.h"
#include "base/Format.h"
#include "host/HostUi.h"
#include "host/SuiteInstallPaths.h"
#include "library/BlockInsert.h"
#include "library/LibraryFtp.h"
#include "library/LibraryRules.h"
#include "library/SlideCommands.h"
#include "library/views/SlideWindows.h"
#include "shared/MyFtpConnection.h"
#include "shared/fileops/FileOps.h"

namespace {

ModelessFactory g_holeFactory;
ModelessFactory g_layoutFactory;

std::wstring WithBackslash(std::wstring strPath) {
    if (!strPath.empty() && strPath.back() != L'\\')
        strPath += L'\\';
    return strPath;
}

// Mode and login on entry of a browser command; false stops the command.
bool EnterLibraryMode(CLibState& state) {
    int nStyle = GetCurQuillmInstallStyle();
    int nMode = DeriveFtpMode(nStyle, nStyle == 0 ? 1 : GetCurFTPLoginStatus());
    if (nMode < 0) {
        QmMessageBox(kNoFtpLoginText, MB_ICONINFORMATION);
        state.ResetHandOver();
        return false;
    }
    state.g_nFtpMode = nMode;
    return true;
}

// An existing browser comes to the front with its list reloaded and the
// hand-over item selected; the path stays as it is.
void RaiseExistingBrowser(CLibState& state) {
    ILibraryBrowser* pBrowser = state.pLibDlg;
    pBrowser->Show();
    pBrowser->Activate();
    pBrowser->ReloadList();
    pBrowser->SelectListItem(GetFileName(state.strDwgFile));
    if (pBrowser->IsIconic())
        pBrowser->Restore();
}

void CreateBrowser(CLibState& state, const ModelessFactory& factory, const wchar_t* pszClass) {
    IModelessWindow* pWindow = state.pLibDlg;
    RaiseModelessWindow(pWindow, factory, pszClass);
    state.pLibDlg = dynamic_cast<ILibraryBrowser*>(pWindow);
}

void ShowBrowserIfPending(CLibState& state) {
    if (!state.pLibDlg)
        return;
    state.pLibDlg->Show();
    if (state.pLibDlg->IsIconic())
        state.pLibDlg->Restore();
}

} // namespace

void SetBrowserFactory(CLibState& state, const ModelessFactory& factory) {
    (&state == &g_LayoutLib ? g_layoutFactory : g_holeFactory) = factory;
}

void RaiseLibraryBrowser(CLibState& state) {
    bool bLayout = &state == &g_LayoutLib;
    CreateBrowser(state, bLayout ? g_layoutFactory : g_holeFactory,
                  bLayout ? L"CLaySketchLibDlg" : L"CCircuitLibDlg");
}

namespace {

// What differs between the two browser starts.
struct LIBRARY_START {
    CLibState& state;
    std::wstring (*pfnRoot)();
    const wchar_t* pszSentinelFormat;
    bool bMakeMissingSentinel; // hole: made silently; layout: refused with a box
    bool bSyncOnStart;         // hole: a super client first catches up with the site
    const ModelessFactory& factory;
    const wchar_t* pszClass;
};

void StartLibrary(const LIBRARY_START& lib) {
    CLibState& state = lib.state;
    if (!EnterLibraryMode(state))
        return;
    if (lib.bSyncOnStart && GetCurQuillmInstallStyle() == 1)
        SyncClientOnStart();
    if (state.pLibDlg) {
        RaiseExistingBrowser(state);
        return;
    }
    state.ResetHandOver();
    state.strRoot = WithBackslash(lib.pfnRoot());
    if (state.strRoot.empty())
        return;
    std::wstring strSentinel = Format(lib.pszSentinelFormat, state.strRoot);
    if (IsDirExist(strSentinel))
        CreateBrowser(state, lib.factory, lib.pszClass);
    else if (lib.bMakeMissingSentinel)
        CreateDirPath(strSentinel); // first run: the user types the command again
    else
        QmMessageBox(Format(L"屏面布置图库目录 %s 不存在！", strSentinel), MB_ICONEXCLAMATION);
    state.ResetHandOver();
}

} // namespace

void CmdDrawingManage() {
    StartLibrary({g_HoleLib, GetQuillmCommonResInstallPath, L"%sDzStrucLib\\", true, true,
                  g_holeFactory, L"CCircuitLibDlg"});
}

// The layout browser looks for the hole library's name under the local root.
void CmdLaySketchManage() {
    StartLibrary({g_LayoutLib, GetQuillmLocalInstallPath, L"%sInstallHole\\", false, false,
                  g_layoutFactory, L"CLaySketchLibDlg"});
}

namespace {

void InsertBody(CLibState& state, void (*pfnManage)()) {
    if (state.strDwgFile.empty() && state.pLibDlg) {
        ShowBrowserIfPending(state);
        return;
    }
    if (!state.strDwgFile.empty()) {
        InsertLibraryDrawing(state);
        state.strDwgFile.clear();
    }
    pfnManage();
}

void OpenBody(CLibState& state, void (*pfnManage)()) {
    if (!state.pLibDlg) {
        state.strDwgFile.clear();
        pfnManage();
        return;
    }
    if (!state.strDwgFile.empty()) {
        RunCommandQuiet({L"ZOOM", L"E"});
        return; // the path stays: the save dialog works on it
    }
    if (state.pLibDlg->IsIconic())
        state.pLibDlg->Restore();
}

} // namespace

void CmdDrawingInsert() {
    InsertBody(g_HoleLib, CmdDrawingManage);
}
void CmdLaySketchInsert() {
    InsertBody(g_LayoutLib, CmdLaySketchManage);
}
void CmdDrawingOpen() {
    OpenBody(g_HoleLib, CmdDrawingManage);
}
void CmdLaySketchOpen() {
    OpenBody(g_LayoutLib, CmdLaySketchManage);
}

// Moving a hole is no behaviour of this module: the command stays and does nothing.
void CmdMoveHole() {}

void CmdDrawPanel() {
    InstallPanelViews();
    DrawPanel();
}
void CmdDimHole() {
    DimHole();
}
void CmdEditPanel() {
    InstallPanelViews();
    EditPanel();
}
void CmdMakeSld() {
    InstallSlideViews();
    MakeSld({g_HoleLib, GetLibraryFtp(g_HoleFtp), CmdDrawingManage});
}
void CmdShowSld() {
    InstallSlideViews();
    ShowSld({g_HoleLib, GetLibraryFtp(g_HoleFtp), CmdDrawingManage});
}
void CmdOpenDwg() {
    OpenDwg(g_HoleLib);
}
void CmdCloseDwg() {
    CloseDwg(g_HoleLib);
}
void CmdShowSldDlg() {
    InstallSlideViews();
    ShowSldDlg(g_HoleLib);
}
void CmdTz3dView() {
    Tz3dView();
}
void CmdTz2dView() {
    Tz2dView();
}
void CmdLaySketchMakeSld() {
    InstallSlideViews();
    MakeSld({g_LayoutLib, GetLibraryFtp(g_LayoutFtp), CmdLaySketchManage});
}
