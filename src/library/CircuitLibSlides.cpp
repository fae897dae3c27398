// The browser's item handlers: the enlarged preview of a cell and the batch run of slides.
#include "library/CircuitLibDlg.h"

#include "app/DocumentServices.h"
#include "app/LibState.h"
#include "base/FileSystem.h"
#include "base/Format.h"
#include "host/HostAutomation.h"
#include "host/HostUi.h"
#include "host/SuiteInstallPaths.h"
#include "host/db/AcDb.h"
#include "library/DlgBatchSld.h"
#include "library/DlgZoomIn.h"
#include "library/SlideCommands.h"
#include "library/SlideScript.h"
#include "shared/MyFtpConnection.h"

namespace {

std::wstring SlideNameOf(const std::wstring& strName) {
    return RemoveFileExt(strName) + L".sld";
}

// A drawing opened only for its slide is closed unsaved; one the user had
// open stays as it is.
void CloseIfOpenedHere(IAcadDocument* pDoc, bool bOpened) {
    if (pDoc && bOpened)
        pDoc->Close(false, L"");
}

} // namespace

void CCircuitLibDlg::RefreshCell(int nCell) {
    if (nCell < 0 || nCell >= kCellsPerPage)
        return;
    int nIndex = m_Names.empty() ? -1 : GetCellNameIndex(nCell, m_nPage);
    SetCell(nCell, CellOfItem(nIndex, nCell == m_nCell));
}

void CCircuitLibDlg::OnEnlarge() {
    if (m_nCell < 0 || m_nCell >= kCellsPerPage || m_selection.empty() || m_selection.front() < 0 ||
        m_selection.front() >= static_cast<int>(m_Names.size())) {
        QmMessageBox(L"请重新选择需放大查看的文件或缩微图", MB_ICONINFORMATION);
        return;
    }
    const std::wstring strItem = m_Names[m_selection.front()];
    std::wstring strDwg = JoinPath(m_strCurDir, strItem);
    std::wstring strSlide = SlidePathOf(strDwg);
    if (!IsFileExist(strSlide)) {
        if (m_bSelectMode || GetCurQuillmInstallStyle() == 2) {
            acutPrintf(L"\n幻灯片文件%s不存在,无法放大预览", strDwg);
            return;
        }
        const bool bShared = CurrentMode() == 1;
        if (bShared) {
            strDwg = LocalLibraryPath(m_state, strItem);
            CreateDirPath(GetParentPath(strDwg));
            if (m_pFtp)
                m_pFtp->DownloadFile(m_state.strRelDir + strItem, strDwg);
            strSlide = SlidePathOf(strDwg);
        }
        bool bOpened = false;
        IAcadDocument* pDoc = OpenDocumentForScript(strDwg, bOpened);
        if (!pDoc)
            return;
        SendSlideScriptTo(pDoc, strSlide);
        if (!bShared && HasFileExt(strDwg))
            FsDeleteFile(RemoveFileExt(strDwg) + L".bak");
        if (bShared && m_pFtp)
            m_pFtp->CommitFile(strSlide, m_state.strRelDir + SlideNameOf(strItem));
        CloseIfOpenedHere(pDoc, bOpened);
    }
    ShowSlideZoomIn(strSlide);
    RefreshCell(m_nCell);
}

namespace {

// One item of a batch run; false when the run must end at once (the drawing cannot be had).
bool MakeBatchSlide(CLibState& state, CMyFtpConnection* pFtp, const std::wstring& strCurDir,
                    const std::wstring& strName, CDlgBatchSld& progress) {
    const bool bShared = state.g_nFtpMode == 1;
    std::wstring strDwg = JoinPath(strCurDir, strName);
    std::wstring strSlide = SlidePathOf(strDwg);
    if (bShared && pFtp && !pFtp->DownloadFile(state.strRelDir + strName, strDwg))
        progress.Fail(strName, L"下载失败");
    AcDbDatabase* pDb = nullptr;
    if (GetDatabaseOfFile(strDwg, pDb))
        delete pDb; // read only to see that it can be had
    else if (!pDb) {
        progress.Fail(strName, L"无法读取图形, 批生成已中止");
        return false;
    }
    bool bOpened = false;
    IAcadDocument* pDoc = OpenDocumentForScript(strDwg, bOpened);
    if (!pDoc) {
        progress.Fail(strName, L"无法打开图形, 批生成已中止");
        return false;
    }
    state.bBatchRunning = 1;
    FILE_STAMP before = StampOf(strSlide);
    SendSlideScriptTo(pDoc, strSlide);
    FILE_STAMP after = StampOf(strSlide);
    bool bWritten = after.bExists && !(after == before);
    if (!bWritten)
        progress.Fail(strName, L"幻灯片文件未能写入");
    else if (bShared && pFtp && !pFtp->CommitFile(strSlide, state.strRelDir + SlideNameOf(strName)))
        progress.Fail(strName, L"幻灯片文件未能提交到服务器");
    else
        progress.Done(strName);
    if (!bShared)
        FsDeleteFile(RemoveFileExt(strDwg) + L".bak");
    CloseIfOpenedHere(pDoc, bOpened);
    return true;
}

} // namespace

void CCircuitLibDlg::OnBatchSlides() {
    if (GetDocumentCount() < 1) {
        QmMessageBox(L"请先打开或创建一副DWG文件后再执行该操作!", MB_ICONINFORMATION);
        return;
    }
    if (m_Names.empty()) {
        QmMessageBox(Format(L"选择目录中%s不存在DWG文件!", m_strCurDir), MB_ICONINFORMATION);
        return;
    }
    if (m_Names.size() > 10 && QmMessageBox(L"此操作可能会花费很长时间，确定执行吗？",
                                            MB_YESNO | MB_ICONQUESTION) != IDYES)
        return;
    CurrentMode();
    m_bHidden = true;
    m_pView->Show(false);
    const CStringArray names = m_Names; // the list may be reloaded while the run pumps events
    const std::wstring strCurDir = m_strCurDir;
    CDlgBatchSld progress(m_state);
    progress.Begin(static_cast<int>(names.size()));
    bool bCompleted = true;
    for (size_t i = 0; i < names.size() && !m_state.bBatchAbort; ++i) {
        progress.Step(static_cast<int>(i), names[i]);
        progress.Pump();
        if (m_state.bBatchAbort)
            break;
        if (!MakeBatchSlide(m_state, m_pFtp, strCurDir, names[i], progress)) {
            bCompleted = false;
            break;
        }
        progress.Pump();
    }
    progress.m_bCancelled = m_state.bBatchAbort != 0;
    m_state.bBatchAbort = 0;
    m_state.bBatchRunning = 0;
    NewDocumentWhenNone();
    progress.End();
    // A drawing that could not be had leaves the window hidden until a command raises it.
    if (!bCompleted)
        return;
    Show();
    Restore();
}
