// Select runs for sibling modules: the browser in select mode, owned by the caller's window.
#include "app/entry/SiblingSelect.h"

#include "app/LibState.h"
#include "app/entry/Commands.h"
#include "base/Format.h"
#include "host/HostUi.h"
#include "host/SuiteInstallPaths.h"
#include "library/CircuitLibDlg.h"
#include "library/views/LibSelectOwnerWindow.h"
#include "shared/fileops/FileOps.h"

namespace {

// What differs between the two libraries' select runs.
struct SELECT_LIBRARY {
    CLibState& state;
    std::wstring (*pfnRoot)();
    const wchar_t* pszDirFormat;
    const wchar_t* pszMissingText;
};

void SelectDwgFile(const SELECT_LIBRARY& lib, QWidget* pOwner, const std::wstring& strCurName) {
    if (!pOwner)
        return;
    CLibState& state = lib.state;
    if (state.pLibDlg) { // whatever the user had open there is gone
        state.ResetHandOver();
        IModelessWindow* pWindow = state.pLibDlg;
        state.pLibDlg = nullptr;
        DestroyModelessWindow(pWindow);
    }
    state.strRoot = lib.pfnRoot();
    if (!state.strRoot.empty() && state.strRoot.back() != L'\\')
        state.strRoot += L'\\';
    if (!state.strRoot.empty()) {
        std::wstring strDir = Format(lib.pszDirFormat, state.strRoot);
        if (IsDirExist(strDir))
            RaiseLibraryBrowser(state);
        else
            QmMessageBox(Format(lib.pszMissingText, strDir), MB_ICONEXCLAMATION);
    }
    auto* pBrowser = dynamic_cast<CCircuitLibDlg*>(state.pLibDlg);
    if (!pBrowser)
        return; // the window could not be created
    pBrowser->SetSelectOwner(pOwner, std::make_unique<CLibSelectOwnerWindow>(pOwner));
    pBrowser->PrepareSelectMode(strCurName);
}

void GetPickedName(const CLibState& state, std::wstring& strName) {
    if (!state.strPickedName.empty())
        strName = state.strPickedName;
}

} // namespace

void SelectHoleDwgFile(QWidget* pOwner, const std::wstring& strCurName) {
    SelectDwgFile(
        {g_HoleLib, GetQuillmCommonResInstallPath, L"%sInstallHole\\", L"开孔图库目录 %s 不存在！"},
        pOwner, strCurName);
}

void SelectLayoutDwgFile(QWidget* pOwner, const std::wstring& strCurName) {
    SelectDwgFile(
        {g_LayoutLib, GetQuillmLocalInstallPath, L"%sLaySketch\\", L"屏面布置图库目录 %s 不存在！"},
        pOwner, strCurName);
}

void GetPickedHoleName(std::wstring& strName) {
    GetPickedName(g_HoleLib, strName);
}

void GetPickedLayoutName(std::wstring& strName) {
    GetPickedName(g_LayoutLib, strName);
}
