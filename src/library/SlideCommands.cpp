// The slide commands on real documents: open or activate, zoom, MSLIDE, save, close, commit.
#include "library/SlideCommands.h"

#include "app/DocumentServices.h"
#include "app/EditorServices.h"
#include "app/LibState.h"
#include "app/ModelessWindow.h"
#include "base/FileSystem.h"
#include "host/HostAutomation.h"
#include "host/HostDocuments.h"
#include "host/HostEditor.h"
#include "host/HostUi.h"
#include "host/ResultCodes.h"
#include "host/SuiteInstallPaths.h"
#include "host/db/AcDb.h"
#include "library/CircuitLibDlg.h"
#include "library/DlgZoomIn.h"
#include "library/SlideScript.h"
#include "shared/MyFtpConnection.h"
#include "shared/fileops/FileOps.h"

namespace {

std::wstring WithBackslash(std::wstring strPath) {
    if (!strPath.empty() && strPath.back() != L'\\')
        strPath += L'\\';
    return strPath;
}

std::wstring SlideNameOf(const std::wstring& strName) {
    return RemoveFileExt(strName) + L".sld";
}

// CMDECHO is 0 while the editor's commands run; the saved value comes back
// when asked, or at the latest when the bracket ends.
class CCmdEchoBracket {
public:
    CCmdEchoBracket() {
        m_bSaved = GetIntVar(L"CMDECHO", m_nEcho);
        SetIntVar(L"CMDECHO", 0);
    }
    ~CCmdEchoBracket() { Restore(); }
    CCmdEchoBracket(const CCmdEchoBracket&) = delete;
    CCmdEchoBracket& operator=(const CCmdEchoBracket&) = delete;
    void Restore() {
        if (m_bSaved)
            SetIntVar(L"CMDECHO", m_nEcho);
        m_bSaved = false;
    }

private:
    int m_nEcho = 0;
    bool m_bSaved = false;
};

// An empty path or a drawing that did not open: the browser comes back, or starts.
void FallBackToBrowser(const SLIDE_LIBRARY& lib) {
    CLibState& state = lib.state;
    if (state.pLibDlg) {
        if (state.pLibDlg->IsIconic())
            state.pLibDlg->Restore();
        return;
    }
    state.strDwgFile.clear();
    if (lib.pfnManage)
        lib.pfnManage();
}

// MSLIDE of the current drawing; the directory of a local working copy may not exist yet.
bool MakeSlideAt(const std::wstring& strSlide) {
    std::wstring strDir = GetParentPath(strSlide);
    if (!strDir.empty() && !IsDirExist(strDir))
        CreateDirPath(strDir);
    return acedCommandS({L"MSLIDE", strSlide}) == RTNORM;
}

// Saves the active drawing with a backup in the current format and closes it.
// A drawing whose save failed stays open, so that nothing of it is lost.
bool SaveActiveAndClose(const std::wstring& strPath) {
    AcApDocManager* pDocs = acDocManagerPtr();
    AcApDocument* pDoc = pDocs ? pDocs->mdiActiveDocument() : nullptr;
    if (!pDoc || !pDoc->database())
        return false;
    LockCurrentDocument();
    bool bSaved = !strPath.empty() &&
                  pDoc->database()->saveAs(strPath.c_str(), true, AcDb::kDHL_2400) == Acad::eOk;
    UnlockCurrentDocument();
    if (!bSaved) {
        acutPrintf(L"\n图形%s保存失败！\n", strPath);
        return false;
    }
    IAcadApplication* pApp = GetAcadApplication();
    IAcadDocument* pActive = pApp ? pApp->ActiveDocument() : nullptr;
    if (pActive)
        pActive->Close(false, L"");
    return true;
}

// The new drawing goes to the site by way of a copy under "Temp".
void CommitNewDrawing(const SLIDE_LIBRARY& lib, const std::wstring& strName) {
    CLibState& state = lib.state;
    std::wstring strTemp = WithBackslash(GetQuillmLocalInstallPath()) + L"Temp\\";
    if (!IsDirExist(strTemp))
        FsCreateDirectory(strTemp);
    std::wstring strCopy = strTemp + strName;
    if (FsCopyFile(state.strWorkingFile, strCopy, false) && lib.pFtp)
        lib.pFtp->CommitFile(strCopy, state.strRelDir + strName);
    FsDeleteFile(strCopy);
    ClearTempFTP();
}

void RefreshBrowserCell(CLibState& state) {
    auto* pBrowser = dynamic_cast<CCircuitLibDlg*>(state.pLibDlg);
    if (pBrowser && pBrowser->m_nCell >= 0 && pBrowser->m_nCell < kCellsPerPage)
        pBrowser->RefreshCell(pBrowser->m_nCell);
}

} // namespace

std::wstring LocalLibraryPath(const CLibState& state, const std::wstring& strName) {
    return WithBackslash(GetQuillmLocalInstallPath()) + state.strRelDir + strName;
}

IAcadDocument* OpenDocumentForScript(const std::wstring& strPath, bool& bOpened) {
    bOpened = false;
    IAcadApplication* pApp = GetAcadApplication();
    IAcadDocuments* pDocs = pApp ? pApp->Documents() : nullptr;
    if (!pDocs)
        return nullptr;
    if (IAcadDocument* pDoc = pDocs->Item(strPath)) {
        pDoc->Activate();
        return pDoc;
    }
    if (!IsFileExist(strPath))
        return nullptr;
    IAcadDocument* pDoc = pDocs->Open(strPath);
    bOpened = pDoc != nullptr;
    return pDoc;
}

bool SendSlideScriptTo(IAcadDocument* pDoc, const std::wstring& strSlide) {
    IAcadApplication* pApp = GetAcadApplication();
    if (!pDoc || !pApp)
        return false;
    pDoc->Activate();
    pApp->Update();
    pApp->MaximizeActiveFrame();
    return SendSlideScript(pDoc, strSlide);
}

FILE_STAMP StampOf(const std::wstring& strPath) {
    FILE_STAMP stamp;
    FS_FIND_DATA info;
    if (!FsGetInfo(strPath, info) || info.bDirectory)
        return stamp;
    stamp.bExists = true;
    stamp.nSize = info.nSize;
    stamp.nSec = info.nModified;
    stamp.nNsec = info.nModifiedNs;
    return stamp;
}

// A host that closes documents at once has no current one left to post the
// new drawing to; the automation's collection makes it then.
void NewDocumentWhenNone() {
    if (GetDocumentCount() > 0)
        return;
    NewDefaultDocument();
    AcApDocManager* pDocs = acDocManagerPtr();
    if (pDocs && pDocs->curDocument())
        return;
    IAcadApplication* pApp = GetAcadApplication();
    if (pApp && pApp->Documents())
        pApp->Documents()->Add(g_szDefaultTemplate);
}

void MakeSld(const SLIDE_LIBRARY& lib) {
    CLibState& state = lib.state;
    if (state.strDwgFile.empty() || !OpenOrActivate(state.strDwgFile, true) ||
        !IsDocumentOpen(state.strDwgFile)) {
        FallBackToBrowser(lib);
        return;
    }
    const bool bShared = state.g_nFtpMode == 1;
    const std::wstring strSlide = SlidePathOf(state.strDwgFile);
    CCmdEchoBracket echo;
    acedCommandS({L"ZOOM", L"E"});
    if (!bShared) {
        MakeSlideAt(strSlide);
        echo.Restore();
        if (state.bNewPending)
            SaveActiveAndClose(state.strDwgFile);
    } else {
        std::wstring strLocal = LocalLibraryPath(state, GetFileName(strSlide));
        MakeSlideAt(strLocal);
        echo.Restore();
        if (state.bNewPending)
            SaveActiveAndClose(state.strWorkingFile);
        std::wstring strRemote =
            SlideNameOf(state.bNewPending ? GetFileName(state.strWorkingFile) : state.strSelItem);
        if (lib.pFtp)
            lib.pFtp->CommitFile(strLocal, state.strRelDir + strRemote);
    }
    if (state.bNewPending) {
        std::wstring strName = GetFileName(bShared ? state.strWorkingFile : state.strDwgFile);
        if (bShared)
            CommitNewDrawing(lib, strName);
        if (state.pLibDlg) {
            state.pLibDlg->ReloadList();
            state.pLibDlg->SelectListItem(strName);
        }
        state.bNewPending = 0;
    }
    state.strDwgFile.clear();
    NewDocumentWhenNone();
}

void ShowSld(const SLIDE_LIBRARY& lib) {
    CLibState& state = lib.state;
    if (state.strDwgFile.empty()) {
        FallBackToBrowser(lib);
        return;
    }
    const bool bShared = state.g_nFtpMode == 1;
    const std::wstring strSlide = SlidePathOf(state.strDwgFile);
    std::wstring strShown = strSlide;
    const bool bMake = !IsFileExist(strSlide);
    if (bMake) {
        CCmdEchoBracket echo;
        acedCommandS({L"ZOOM", L"E"});
        if (bShared)
            strShown = LocalLibraryPath(state, GetFileName(strSlide));
        MakeSlideAt(strShown);
        echo.Restore();
        SaveActiveAndClose(bShared ? state.strWorkingFile : state.strDwgFile);
    }
    ShowSlideZoomIn(strShown);
    if (bShared && bMake && lib.pFtp)
        lib.pFtp->CommitFile(strShown, state.strRelDir + SlideNameOf(state.strSelItem));
    state.strDwgFile.clear();
    NewDocumentWhenNone();
    RefreshBrowserCell(state);
}

void OpenDwg(CLibState& state) {
    if (state.strDwgFile.empty())
        return;
    OpenOrActivate(state.strDwgFile, true);
    // Only the drawing itself may give the item its slide.
    if (!IsDocumentOpen(state.strDwgFile))
        return;
    ActivateDocument(state.strDwgFile);
    RunCommandQuiet({L"Zoom", L"E"});
    RunCommandQuiet({L"MSLIDE", SlidePathOf(state.strDwgFile)});
}

void CloseDwg(CLibState& state) {
    SaveActiveAndClose(state.strDwgFile);
}

void ShowSldDlg(CLibState& state) {
    if (state.strDwgFile.empty()) {
        if (state.pLibDlg && state.pLibDlg->IsIconic())
            state.pLibDlg->Restore();
        return;
    }
    std::wstring strSlide = SlidePathOf(state.strDwgFile);
    if (!IsFileExist(strSlide))
        return;
    ShowSlideZoomIn(strSlide);
    state.strDwgFile.clear();
}
