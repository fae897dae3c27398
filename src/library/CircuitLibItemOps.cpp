// The browser's item handlers: rename, delete, saving the current drawing into the library, import.
#include "library/CircuitLibDlg.h"

#include "app/DocumentServices.h"
#include "app/EditorServices.h"
#include "app/LibState.h"
#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"
#include "host/HostAutomation.h"
#include "host/HostDocuments.h"
#include "host/HostUi.h"
#include "host/SuiteInstallPaths.h"
#include "host/db/AcDb.h"
#include "library/CirNewDlg.h"
#include "library/DatabaseSave.h"
#include "library/MyFileDialog.h"
#include "shared/MyFtpConnection.h"

#include <algorithm>
#include <memory>

namespace {

std::wstring WithBackslash(std::wstring strPath) {
    if (!strPath.empty() && strPath.back() != L'\\')
        strPath += L'\\';
    return strPath;
}

std::wstring SlideOf(const std::wstring& strDwg) {
    return RemoveFileExt(strDwg) + L".sld";
}

std::wstring BakOf(const std::wstring& strDwg) {
    return RemoveFileExt(strDwg) + L".bak";
}

// A library file goes to the trash, so a delete can be taken back; one that
// another program holds stays, as the platform refuses to delete it.
bool TrashLibraryFile(const std::wstring& strPath) {
    if (IsFileOpenElsewhere(strPath))
        return false;
    return FsMoveToTrash(strPath);
}

AcDbDatabase* CurrentDatabase() {
    AcApDocManager* pDocs = acDocManagerPtr();
    AcApDocument* pDoc = pDocs ? pDocs->curDocument() : nullptr;
    return pDoc ? pDoc->database() : nullptr;
}

// The current document's database saved straight to a file, the document locked meanwhile.
int SaveCurrentDatabase(const std::wstring& strPath) {
    AcDbDatabase* pDb = acdbHostApplicationServices()->workingDatabase();
    if (!pDb)
        pDb = CurrentDatabase();
    LockCurrentDocument();
    int nStatus = SaveDatabaseToFile(pDb, strPath);
    UnlockCurrentDocument();
    return nStatus;
}

// Opens the file in the editor, saves it there and closes it again, so that
// the editor writes it as its own; a new drawing keeps the editor from
// being left without one. A drawing the user had open stays open.
void ResaveThroughEditor(const std::wstring& strPath) {
    IAcadApplication* pApp = GetAcadApplication();
    IAcadDocuments* pDocs = pApp ? pApp->Documents() : nullptr;
    if (!pDocs)
        return;
    IAcadDocument* pDoc = pDocs->Item(strPath);
    const bool bWasOpen = pDoc != nullptr;
    if (!pDoc)
        pDoc = pDocs->Open(strPath);
    if (!pDoc)
        return;
    pDoc->Activate();
    pDoc->SendCommand(L"QSAVE\n");
    if (bWasOpen)
        return;
    if (pDocs->Count() < 2)
        pDocs->Add(L"");
    pDoc->Close(false, L"");
}

} // namespace

// ---- rename ----

void CCircuitLibDlg::OnBtnRename() {
    if (!PassGates(GATE_A_MODE | GATE_B_DOCUMENT | GATE_D_DIRECTORY | GATE_E_SINGLE |
                   GATE_F_SELECTED))
        return;
    const std::wstring strItem = m_Names[m_selection.front()];
    const std::wstring strOldPath = JoinPath(m_strCurDir, strItem);
    if (!IsFileExist(strOldPath)) {
        QmMessageBox(Format(L"文件“%s”不存在，无法更名！", strOldPath), MB_ICONEXCLAMATION);
        return;
    }
    if (m_state.g_nFtpMode != 0 && m_pFtp && !m_pFtp->ConfirmLockBreak(m_state.strRelDir + strItem))
        return;
    CCirNewDlg dlg;
    dlg.m_strTitle = L"图形更名";
    dlg.m_strDir = WithBackslash(m_strCurDir);
    dlg.m_strOldName = StrLeft(strItem, static_cast<int>(strItem.size()) - 4);
    dlg.m_bSyncTwin = 0;
    dlg.m_onOK = [this, &strItem](CCirNewDlg& d) { return RenameItem(d, strItem); };
    if (!m_pView->RunNameDialog(dlg))
        return;
    LoadList();
    SelectListItem(dlg.m_strResult + L".dwg");
}

// The name dialog's OK under "图形更名"; leaves the name without ".dwg" in m_strResult.
bool CCircuitLibDlg::RenameItem(CCirNewDlg& d, const std::wstring& strItem) {
    std::wstring strName = StrTrim(d.m_strResult, L"\\");
    StrReplace(strName, L"\\\\", L"\\");
    if (!NormaliseItemName(strName) || strName == d.m_strOldName)
        return false;
    const std::wstring strOldPath = JoinPath(m_strCurDir, strItem);
    const std::wstring strNewPath = MakeItemPath(d.m_strDir, strName);
    if (IsFileExist(strNewPath) && !EqualsNoCase(strNewPath, strOldPath)) {
        QmMessageBox(Format(L"文件%s已经存在，不能更名为%s！", strNewPath, strName),
                     MB_ICONEXCLAMATION);
        return false;
    }
    if (m_state.g_nFtpMode == 1 && m_pFtp) {
        const std::wstring strOldRel = m_state.strRelDir + strItem;
        const std::wstring strNewRel = m_state.strRelDir + strName + L".dwg";
        m_pFtp->CreateRemoteDir(GetParentPath(strNewRel));
        if (!m_pFtp->CommitRename(strOldRel, strNewRel))
            return false;
        m_pFtp->CommitRename(SlideOf(strOldRel), SlideOf(strNewRel));
        CreateDirPath(GetParentPath(strNewPath));
        FsMoveFile(strOldPath, strNewPath);
        FsMoveFile(SlideOf(strOldPath), SlideOf(strNewPath));
    } else {
        CreateDirPath(GetParentPath(strNewPath));
        if (IsFileOpenElsewhere(strOldPath) || !FsMoveFile(strOldPath, strNewPath)) {
            QmMessageBox(Format(L"文件%s无法更名，请确定是否被其它程序调用！", strOldPath),
                         MB_ICONEXCLAMATION);
            return false;
        }
        FsMoveFile(SlideOf(strOldPath), SlideOf(strNewPath));
    }
    d.m_strResult = strName;
    return true;
}

// ---- delete ----

void CCircuitLibDlg::OnBtnDelete() {
    if (!PassGates(GATE_A_MODE | GATE_D_DIRECTORY) || m_selection.empty())
        return;
    std::vector<int> selected = m_selection;
    std::sort(selected.begin(), selected.end());
    if (QmMessageBox(
            Format(L"真的删除所选%d项吗？删除之后无法恢复！", static_cast<int>(selected.size())),
            MB_YESNO | MB_ICONQUESTION) != IDYES)
        return;
    const bool bShared = m_state.g_nFtpMode != 0 && m_pFtp;
    bool bNoted = false;
    std::vector<int> kept;
    for (int n : selected) {
        if (n < 0 || n >= static_cast<int>(m_Names.size()))
            continue;
        const std::wstring strPath = JoinPath(m_strCurDir, m_Names[n]);
        if (IsFileExist(strPath)) {
            const std::wstring strRel = m_state.strRelDir + m_Names[n];
            if (bShared && !m_pFtp->ConfirmLockBreak(strRel))
                return; // the list stays as it was
            if (bShared && m_pFtp->CommitDelete(strRel)) {
                m_pFtp->CommitDelete(SlideOf(strRel));
                bNoted = true;
            }
            if (!TrashLibraryFile(strPath)) {
                kept.push_back(n);
                m_selection.erase(std::find(m_selection.begin(), m_selection.end(), n));
                m_pView->ListSetSelection(m_selection, -1);
                QmMessageBox(Format(L"文件 %s 无法删除，请确定是否被其它程序调用！", strPath),
                             MB_ICONEXCLAMATION);
                continue;
            }
            TrashLibraryFile(SlideOf(strPath));
            TrashLibraryFile(BakOf(strPath));
            bNoted = true;
        }
    }
    std::erase_if(selected, [&kept](int n) { return std::count(kept.begin(), kept.end(), n); });
    RemoveDeletedRows(selected, bNoted);
}

// The rows of the deleted items leave the list; the names only when a file went.
void CCircuitLibDlg::RemoveDeletedRows(const std::vector<int>& removed, bool bNamesToo) {
    CStringArray rows = m_Names;
    int nLast = -1;
    int k = 1;
    for (int n : removed) {
        nLast = n - k + 1;
        if (nLast >= 0 && nLast < static_cast<int>(rows.size()))
            rows.erase(rows.begin() + nLast);
        ++k;
    }
    m_pView->ListSetItems(rows);
    m_selection.clear();
    if (bNamesToo) {
        m_Names = rows;
        m_nItems = static_cast<int>(m_Names.size());
    }
    InvalidateCells();
    if (rows.empty() || nLast < 0)
        return;
    int nSelect = nLast < static_cast<int>(rows.size()) ? nLast : 0;
    SetSelection({nSelect}, nSelect);
}

// ---- save the current drawing ----

void CCircuitLibDlg::OnBtnSave() {
    if (!PassGates(GATE_B_DOCUMENT | GATE_C_NO_NEW_ITEM))
        return;
    if (!IsCurDirUsable()) {
        QmMessageBox(Format(L"当前选择目录 %s 不存在，无法保存当前图至当前选择目录！", m_strCurDir),
                     MB_ICONEXCLAMATION);
        return;
    }
    const std::wstring strDir = WithBackslash(m_strCurDir);
    const bool bTitled = IsCurDwgTitled();
    const std::wstring strDwgName = GetCurDwgName();
    if (bTitled && EqualsNoCase(GetCurDwgPrefix(), strDir)) {
        std::wstring strPath = strDir + strDwgName;
        if (QmMessageBox(Format(L"是否保存文件%s？", strPath), MB_YESNO | MB_ICONQUESTION) != IDYES)
            return;
        SaveCurrentDatabase(strPath);
        SelectListItem(strDwgName);
        return;
    }
    CCirNewDlg dlg;
    dlg.m_strTitle = L"保存当前图至";
    dlg.m_strDir = strDir;
    if (bTitled)
        dlg.m_strOldName = StrLeft(strDwgName, static_cast<int>(strDwgName.size()) - 4);
    dlg.m_bSyncTwin = 0;
    dlg.m_onOK = [this](CCirNewDlg& d) { return SaveCurrentAs(d); };
    if (!m_pView->RunNameDialog(dlg))
        return;
    LoadList();
    SelectListItem(dlg.m_strResult + L".dwg");
}

// The name dialog's OK under "保存当前图至"; leaves the name without ".dwg" in m_strResult.
bool CCircuitLibDlg::SaveCurrentAs(CCirNewDlg& d) {
    std::wstring strName = d.m_strResult;
    if (!NormaliseItemName(strName))
        return false;
    const std::wstring strLibFile = MakeItemPath(d.m_strDir, strName);
    d.m_strPath = strLibFile;
    if (m_state.g_nFtpMode != 1 || !m_pFtp) {
        if (SaveCurrentDatabase(strLibFile) != Acad::eOk) {
            QmMessageBox(Format(L"文件%s保存失败！", strLibFile), MB_ICONEXCLAMATION);
            return false;
        }
        d.m_strResult = strName;
        return true;
    }
    // Asked before anything is written: the working copy may be the library file itself.
    const bool bExisted = IsFileExist(strLibFile);
    if (bExisted && QmMessageBox(Format(L"图形“%s”已经存在,是否覆盖？", strName),
                                 MB_YESNO | MB_ICONQUESTION) != IDYES) {
        ClearTempFTP();
        return false;
    }
    const std::wstring strLocalRoot = GetQuillmLocalInstallPath();
    const std::wstring strLocalDir = JoinPath(strLocalRoot, m_state.strRelDir);
    if (!IsDirExist(strLocalDir))
        CreateDirPath(strLocalDir);
    m_state.strWorkingFile = MakeItemPath(WithBackslash(strLocalDir), strName);
    AcDbDatabase* pCopy = nullptr;
    AcDbDatabase* pDb = acdbHostApplicationServices()->workingDatabase();
    Acad::ErrorStatus es = pDb ? pDb->wblock(pCopy) : Acad::eInvalidInput;
    std::unique_ptr<AcDbDatabase> copy(pCopy);
    if (es != Acad::eOk || !copy ||
        SaveDatabaseToFile(copy.get(), m_state.strWorkingFile) != Acad::eOk) {
        QmMessageBox(Format(L"文件%s保存失败！", m_state.strWorkingFile), MB_ICONEXCLAMATION);
        return false;
    }
    copy.reset();
    ResaveThroughEditor(m_state.strWorkingFile);
    CommitThroughScratch(m_state.strWorkingFile, strName + L".dwg", bExisted);
    d.m_strResult = strName;
    return true;
}

// The upload goes from a copy in a scratch directory, which is removed afterwards.
void CCircuitLibDlg::CommitThroughScratch(const std::wstring& strFile, const std::wstring& strName,
                                          bool bExisted) {
    const std::wstring strLocalRoot = GetQuillmLocalInstallPath();
    std::wstring strScratchDir = JoinPath(strLocalRoot, bExisted ? L"Temp" : L"InstallHole");
    std::wstring strScratch = JoinPath(strScratchDir, strName);
    // A library file standing under that name is never taken for the scratch copy.
    if (IsFileExist(strScratch) || EqualsNoCase(strScratch, strFile)) {
        strScratchDir = JoinPath(strLocalRoot, L"Temp");
        strScratch = JoinPath(strScratchDir, strName);
    }
    if (!IsDirExist(strScratchDir))
        CreateDirPath(strScratchDir);
    if (FsCopyFile(strFile, strScratch, false))
        m_pFtp->CommitFile(strScratch, m_state.strRelDir + strName);
    FsDeleteFile(strScratch);
    ClearTempFTP();
}

// ---- import ----

void CCircuitLibDlg::OnImport() {
    if (!IsCurDirUsable())
        return;
    CMyFileDialog fileDlg(L"DWG File(*.dwg)|*.dwg|", true, 5000);
    fileDlg.m_strTitle = L"选择要导入的图纸文件(.dwg)";
    fileDlg.m_strInitialDir = FsGetCurrentDirectory();
    if (fileDlg.DoModal() != IDOK) {
        if (fileDlg.CommDlgExtendedError() == FNERR_BUFFERTOOSMALL)
            QmMessageBox(L"长度溢出，导入失败！", MB_ICONEXCLAMATION);
        return;
    }
    const bool bShared = m_state.g_nFtpMode == 1 && m_pFtp;
    const std::wstring strRoot = m_kind.kind == LibraryKind::Hole ? GetQuillmCommonResInstallPath()
                                                                  : GetQuillmLocalInstallPath();
    std::wstring strFailures;
    CWaitCursor wait;
    for (const std::wstring& strSource : fileDlg.GetPathNames()) {
        const std::wstring strName = GetFileName(strSource);
        if (bShared) {
            std::wstring strRel = m_state.strRelDir + strName;
            std::wstring strExisting = JoinPath(strRoot, strRel);
            if (IsFileExist(strExisting) &&
                QmMessageBox(Format(L"文件%s已经存在,是否覆盖！", strExisting),
                             MB_YESNO | MB_ICONEXCLAMATION) != IDYES)
                continue;
            m_pFtp->CommitFile(strSource, strRel);
        }
        const std::wstring strTarget = JoinPath(m_strCurDir, strName);
        if (!FsCopyFile(strSource, strTarget, true))
            strFailures += L"文件" + strSource + L"复制为" + strTarget + L"失败！\n";
    }
    if (!strFailures.empty())
        QmMessageBox(strFailures, MB_ICONEXCLAMATION);
    LoadList();
}
