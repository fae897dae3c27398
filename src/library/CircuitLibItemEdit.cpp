// The browser's item handlers: new item and open-for-edit.
#include "library/CircuitLibDlg.h"

#include "app/DocumentServices.h"
#include "app/EditorServices.h"
#include "app/LibState.h"
#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"
#include "host/HostDocuments.h"
#include "host/HostUi.h"
#include "host/SuiteInstallPaths.h"
#include "library/CirNewDlg.h"
#include "library/ItemDialogs.h"
#include "shared/MyFtpConnection.h"

void CCircuitLibDlg::Hide() {
    m_bHidden = true;
    m_pView->Show(false);
}

namespace {

// The new item's name: normalised, a valid block name, and an existing file
// replaced only with the user's consent.
bool AcceptNewItemName(CLibState& state, CCirNewDlg& dlg) {
    std::wstring strName = StrTrim(dlg.m_strResult);
    if (!NormaliseItemName(strName))
        return false;
    if (!IsValidNewItemName(strName)) {
        QmMessageBox(BlockNameRefusalText(strName), MB_ICONEXCLAMATION);
        return false;
    }
    std::wstring strPath = MakeItemPath(dlg.m_strDir, strName);
    if (IsFileExist(strPath)) {
        if (QmMessageBox(Format(L"图形“%s”已经存在,是否覆盖？", strName),
                         MB_YESNO | MB_ICONQUESTION) != IDYES)
            return false;
        if (IsCurDwgTitled() && EqualsNoCase(GetCurDwgPrefix() + GetCurDwgName(), strPath)) {
            QmMessageBox(Format(L"图形“%s”正处于图形编辑状态，无法覆盖！", strName),
                         MB_ICONEXCLAMATION);
            return false;
        }
        // In a shared mode the old file stays until the new one is committed.
        if (state.g_nFtpMode == 0 && !FsDeleteFile(strPath)) {
            QmMessageBox(Format(L"文件%s无法覆盖，请确定是否被其它程序调用！", strPath),
                         MB_ICONEXCLAMATION);
            return false;
        }
    }
    dlg.m_strResult = strName + L".dwg";
    dlg.m_strPath = strPath;
    state.strDwgFile = strPath;
    if (state.g_nFtpMode == 1) {
        std::wstring strDir = GetQuillmLocalInstallPath() + state.strRelDir;
        if (!IsDirExist(strDir))
            CreateDirPath(strDir);
        state.strWorkingFile = JoinPath(strDir, dlg.m_strResult);
    }
    return true;
}

} // namespace

void CCircuitLibDlg::OnBtnNew() {
    if (!PassGates(GATE_A_MODE | GATE_B_DOCUMENT | GATE_C_NO_NEW_ITEM) || m_strCurDir.empty())
        return;
    CCirNewDlg dlg;
    dlg.m_strTitle = L"图形新建";
    dlg.m_strDir = m_strCurDir;
    if (!dlg.m_strDir.empty() && dlg.m_strDir.back() != L'\\')
        dlg.m_strDir += L'\\';
    dlg.m_bSyncTwin = 0;
    dlg.m_onOK = [this](CCirNewDlg& d) { return AcceptNewItemName(m_state, d); };
    AcApDocManager* pDocs = acDocManagerPtr();
    if (pDocs)
        pDocs->pushResourceHandle();
    bool bAccepted = m_pView->RunNameDialog(dlg);
    if (pDocs)
        pDocs->popResourceHandle();
    if (!bAccepted)
        return;

    Hide();
    m_state.nNewState = 0;
    m_state.strNewName.clear();
    CLibState& state = m_state;
    CMyFtpConnection* pFtp = m_pFtp;
    const bool bHole = m_kind.kind == LibraryKind::Hole;
    RaiseModelessWindow(
        state.pBlockDlg,
        [&state, pFtp, bHole]() -> IModelessWindow* {
            std::unique_ptr<IItemDialogView> pView = MakeItemDialogView();
            if (!pView)
                return nullptr;
            if (bHole)
                return new CCirWblockDlg(state, pFtp, std::move(pView));
            return new CLSBlockDlg(state, pFtp, std::move(pView));
        },
        bHole ? L"CCirWblockDlg" : L"CLSBlockDlg");
    if (!state.pBlockDlg)
        Show();
}

void CCircuitLibDlg::OnBtnModify() {
    if (!PassGates(GATE_A_MODE | GATE_B_DOCUMENT | GATE_C_NO_NEW_ITEM | GATE_D_DIRECTORY |
                   GATE_E_SINGLE | GATE_F_SELECTED))
        return;
    const std::wstring strItem = m_Names[m_selection.front()];
    const std::wstring strLibPath = JoinPath(m_strCurDir, strItem);
    m_state.strWorkingFile = strLibPath;
    if (m_state.g_nFtpMode == 1) {
        m_state.strSelItem = strItem;
        m_state.strWorkingFile = GetQuillmLocalInstallPath() + m_state.strRelDir + strItem;
        std::wstring strParent = GetParentPath(m_state.strWorkingFile);
        if (!IsDirExist(strParent))
            CreateDirPath(strParent);
        if (!IsDocumentOpen(m_state.strWorkingFile) &&
            (!m_pFtp || !m_pFtp->CheckOutFile(m_state.strWorkingFile, m_state.strRelDir, strItem)))
            return;
    }
    if (!IsFileExist(m_state.strWorkingFile)) {
        QmMessageBox(Format(L"文件“%s”不存在，无法打开！", m_state.strWorkingFile),
                     MB_ICONEXCLAMATION);
        return;
    }
    Hide();
    OpenOrActivate(m_state.strWorkingFile, true);
    m_state.strDwgFile = m_state.strWorkingFile;
    PostCommandString(m_kind.kind == LibraryKind::Hole ? L"(Command)\nDrawingOpen\n"
                                                       : L"(Command)\nLaySketchOpen\n");
    m_state.strDwgFile = strLibPath;
    CLibState& state = m_state;
    CMyFtpConnection* pFtp = m_pFtp;
    const bool bHole = m_kind.kind == LibraryKind::Hole;
    RaiseModelessWindow(
        state.pSaveDlg,
        [&state, pFtp, bHole]() -> IModelessWindow* {
            std::unique_ptr<IItemDialogView> pView = MakeItemDialogView();
            if (!pView)
                return nullptr;
            if (bHole)
                return new CCirFileSaveDlg(state, pFtp, std::move(pView));
            return new CLSFileSaveDlg(state, pFtp, std::move(pView));
        },
        bHole ? L"CCirFileSaveDlg" : L"CLSFileSaveDlg");
    if (!bHole && state.pSaveDlg)
        static_cast<CItemDialog*>(state.pSaveDlg)->View().ActivateFrame();
}
