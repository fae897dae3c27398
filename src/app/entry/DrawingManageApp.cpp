// The command table in registration order and the application object's messages.
#include "app/entry/DrawingManageApp.h"

#include "app/LibState.h"
#include "app/ModelessWindow.h"
#include "app/entry/Commands.h"
#include "host/HostServices.h"
#include "library/LibraryFtp.h"
#include "library/views/ItemDialogWindow.h"
#include "library/views/LibBrowserFactory.h"

namespace {
constexpr const wchar_t* kGroup = L"TzDrawingManage";
constexpr unsigned kT = ACRX_CMD_TRANSPARENT;

constexpr STRUCT_ARXCOMMAND Row(const wchar_t* pszName, unsigned nFlags, AcRxFunctionPtr pfn) {
    return STRUCT_ARXCOMMAND{kGroup, pszName, pszName, nFlags, pfn, nullptr, -1, {0, 0}};
}
} // namespace

const STRUCT_ARXCOMMAND g_arxCommands[] = {
    Row(L"DrawingManage", ACRX_CMD_SESSION, CmdDrawingManage),
    Row(L"DrawingInsert", kT, CmdDrawingInsert),
    Row(L"DrawingOpen", kT, CmdDrawingOpen),
    Row(L"DrawPanel", kT, CmdDrawPanel),
    Row(L"MoveHole", kT, CmdMoveHole),
    Row(L"DimHole", kT, CmdDimHole),
    Row(L"EditPanel", kT, CmdEditPanel),
    Row(L"MakeSld", kT, CmdMakeSld),
    Row(L"ShowSld", kT, CmdShowSld),
    Row(L"OpenDwg", kT, CmdOpenDwg),
    Row(L"CloseDwg", kT, CmdCloseDwg),
    Row(L"ShowSldDlg", kT, CmdShowSldDlg),
    Row(L"Tz3dView", kT, CmdTz3dView),
    Row(L"Tz2dView", kT, CmdTz2dView),
    Row(L"LaySketchManage", kT, CmdLaySketchManage),
    Row(L"LaySketchInsert", kT, CmdLaySketchInsert),
    Row(L"LaySketchOpen", kT, CmdLaySketchOpen),
    Row(L"LaySketchMakeSld", kT, CmdLaySketchMakeSld),
};
const int g_nArxCommands = static_cast<int>(std::size(g_arxCommands));

AcRx::AppRetCode CDrawingManageApp::On_kInitAppMsg(void* pkt) {
    SetBrowserFactory(g_HoleLib,
                      [] { return MakeCircuitLibDlg(g_HoleLib, GetLibraryFtp(g_HoleFtp)); });
    SetBrowserFactory(g_LayoutLib,
                      [] { return MakeLaySketchLibDlg(g_LayoutLib, GetLibraryFtp(g_LayoutFtp)); });
    InstallItemDialogViews();
    return AcRxArxApp::On_kInitAppMsg(pkt);
}

AcRx::AppRetCode CDrawingManageApp::On_kUnloadAppMsg(void* pkt) {
    // Only the hole browser and its entry dialog; the layout windows stay.
    IModelessWindow* pBrowser = g_HoleLib.pLibDlg;
    DestroyModelessWindow(pBrowser);
    g_HoleLib.pLibDlg = nullptr;
    DestroyModelessWindow(g_HoleLib.pBlockDlg);
    return AcRxArxApp::On_kUnloadAppMsg(pkt);
}
