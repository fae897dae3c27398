// The browsers' factories: presenter and window joined, parented to acedGetAcadFrame.
#include "library/views/LibBrowserFactory.h"

#include "host/HostEditor.h"
#include "library/CircuitLibDlg.h"
#include "library/views/LibBrowserWindow.h"
#include "library/views/QtFileDialogHost.h"
#include "library/views/SlideWindows.h"

#include <QApplication>

namespace {

template <class BROWSER> IModelessWindow* MakeBrowser(CLibState& state, CMyFtpConnection* pFtp) {
    if (!QApplication::instance())
        return nullptr;
    static CQtFileDialogHost s_fileDialogs; // the import asks for its files here
    SetFileDialogHost(&s_fileDialogs);
    InstallSlideViews(); // the enlarged preview and the batch run open from the browser
    auto pWindow = std::make_unique<CLibBrowserWindow>(acedGetAcadFrame());
    CLibBrowserWindow* pView = pWindow.get();
    auto* pBrowser = new BROWSER(state, pFtp, std::move(pWindow));
    pView->Attach(pBrowser);
    return pBrowser;
}

} // namespace

IModelessWindow* MakeCircuitLibDlg(CLibState& state, CMyFtpConnection* pFtp) {
    return MakeBrowser<CCircuitLibDlg>(state, pFtp);
}

IModelessWindow* MakeLaySketchLibDlg(CLibState& state, CMyFtpConnection* pFtp) {
    return MakeBrowser<CLaySketchLibDlg>(state, pFtp);
}
