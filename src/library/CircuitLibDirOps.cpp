// The browser's directory tree and its menu: new, rename, delete, refresh and the twin sync.
#include "library/CircuitLibDlg.h"

#include "app/LibState.h"
#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"
#include "host/HostUi.h"
#include "host/SuiteInstallPaths.h"
#include "library/CirNewDlg.h"
#include "library/LibraryListOrder.h"
#include "shared/MyFtpConnection.h"

namespace {

std::wstring WithBackslash(std::wstring strPath) {
    if (!strPath.empty() && strPath.back() != L'\\')
        strPath += L'\\';
    return strPath;
}

CStringArray SubDirNames(const std::wstring& strPath) {
    CSortStringArray names;
    FsListSubdirectories(strPath, names);
    names.Sort();
    return names;
}

} // namespace

// ---- the tree ----

const DIR_TREE_NODE* CCircuitLibDlg::TreeNode(int nItem) const {
    auto it = m_tree.find(nItem);
    return it == m_tree.end() ? nullptr : &it->second;
}

// The texts from the item up to the root, joined by backslashes, without a final one.
std::wstring CCircuitLibDlg::TreeItemPath(int nItem) const {
    std::wstring strPath;
    for (const DIR_TREE_NODE* pNode = TreeNode(nItem); pNode; pNode = TreeNode(pNode->nParent))
        strPath = strPath.empty() ? pNode->strText : pNode->strText + L"\\" + strPath;
    return strPath;
}

bool CCircuitLibDlg::HasSubDirs(const std::wstring& strPath) const {
    return !SubDirNames(strPath).empty();
}

int CCircuitLibDlg::InsertTreeItem(int nParent, const std::wstring& strText) {
    int nId = m_nNextTreeId++;
    DIR_TREE_NODE& node = m_tree[nId];
    node.strText = strText;
    node.nParent = nParent;
    if (nParent)
        m_tree[nParent].children.push_back(nId);
    m_pView->TreeInsert(nId, nParent, strText, HasSubDirs(TreeItemPath(nId)));
    return nId;
}

void CCircuitLibDlg::FillTreeChildren(int nItem) {
    for (const std::wstring& strName : SubDirNames(TreeItemPath(nItem)))
        InsertTreeItem(nItem, strName);
}

void CCircuitLibDlg::RemoveTreeChildren(int nItem) {
    std::vector<int> children = m_tree[nItem].children;
    for (int nChild : children)
        DeleteTreeItem(nChild);
}

void CCircuitLibDlg::DeleteTreeItem(int nItem) {
    auto it = m_tree.find(nItem);
    if (it == m_tree.end())
        return;
    std::vector<int> children = it->second.children;
    for (int nChild : children)
        DeleteTreeItem(nChild);
    int nParent = it->second.nParent;
    if (nParent) {
        std::vector<int>& siblings = m_tree[nParent].children;
        std::erase(siblings, nItem);
    }
    if (m_nTreeSel == nItem)
        m_nTreeSel = 0;
    if (m_nTreeRoot == nItem)
        m_nTreeRoot = 0;
    m_tree.erase(nItem);
    m_pView->TreeRemove(nItem);
}

void CCircuitLibDlg::SortTreeChildren(int nItem) {
    std::vector<int>& children = m_tree[nItem].children;
    std::stable_sort(children.begin(), children.end(), [this](int a, int b) {
        return CompareNoCase(m_tree[a].strText, m_tree[b].strText) < 0;
    });
    m_pView->TreeSetChildOrder(nItem, children);
}

void CCircuitLibDlg::FillTree() {
    m_tree.clear();
    m_nTreeSel = 0;
    m_pView->TreeReset();
    std::wstring strRoot = StrTrimRight(m_strRoot, L"\\");
    if (strRoot.empty() || !IsDirExist(strRoot)) {
        m_nTreeRoot = 0;
        return; // a failed fill leaves the tree empty
    }
    m_nTreeRoot = InsertTreeItem(0, strRoot);
    FillTreeChildren(m_nTreeRoot);
    SelectCurrentDirectory();
    m_tree[m_nTreeRoot].bExpanded = true;
    m_pView->TreeExpand(m_nTreeRoot, true);
}

// The process's current directory is selected when it is one of the items just made.
void CCircuitLibDlg::SelectCurrentDirectory() {
    std::wstring strCwd = StrTrimRight(FsGetCurrentDirectory(), L"\\");
    std::vector<int> items = m_tree[m_nTreeRoot].children;
    items.insert(items.begin(), m_nTreeRoot);
    for (int nItem : items) {
        if (!strCwd.empty() && EqualsNoCase(TreeItemPath(nItem), strCwd)) {
            m_pView->TreeSelect(nItem);
            OnSelchangedTree(nItem);
            return;
        }
    }
}

// An expanded item reads its children anew; a collapsed one drops them.
void CCircuitLibDlg::OnItemexpandedTree(int nItem, bool bExpanded) {
    if (!m_tree.count(nItem))
        return;
    bool bLostSelection = false;
    for (int nSel = m_nTreeSel; nSel; nSel = TreeNode(nSel) ? TreeNode(nSel)->nParent : 0)
        bLostSelection |= TreeNode(nSel) && TreeNode(nSel)->nParent == nItem;
    RemoveTreeChildren(nItem);
    m_tree[nItem].bExpanded = bExpanded;
    if (bExpanded)
        FillTreeChildren(nItem);
    else
        m_pView->TreeSetExpandable(nItem, HasSubDirs(TreeItemPath(nItem)));
    m_pView->TreeExpand(nItem, bExpanded);
    if (bLostSelection) {
        m_pView->TreeSelect(nItem);
        OnSelchangedTree(nItem);
    }
}

void CCircuitLibDlg::OnSelchangedTree(int nItem) {
    if (!m_tree.count(nItem))
        return;
    CWaitCursor wait;
    m_nTreeSel = nItem;
    m_strCurDir = TreeItemPath(nItem);
    if (m_state.g_nFtpMode == 1) {
        std::wstring strRel;
        for (int n = nItem; n && n != m_nTreeRoot; n = m_tree[n].nParent)
            strRel = m_tree[n].strText + L"\\" + strRel;
        m_state.strRelDir = m_kind.pszRelDir + strRel;
        m_state.strRelDirTwin = m_kind.pszRelDirTwin + strRel;
    }
    LoadList();
    SelectFirstItem();
}

// ---- directory operations ----

// The site path of a local one: the install root cut off, leading backslashes trimmed.
std::wstring CCircuitLibDlg::ServerPath(const std::wstring& strLocal) const {
    std::wstring strInstall = GetInstallPath_QM();
    std::wstring strPath = strLocal;
    if (!strInstall.empty() && strPath.size() >= strInstall.size() &&
        EqualsNoCase(strPath.substr(0, strInstall.size()), strInstall))
        strPath = strPath.substr(strInstall.size());
    return StrTrimLeft(strPath, L"\\");
}

std::wstring CCircuitLibDlg::TwinOf(const std::wstring& strPath) const {
    return MakeTwinDir(strPath, GetQuillmLocalInstallPath(), m_kind.kind);
}

namespace {

CCirNewDlg MakeDirDialog(const wchar_t* pszTitle, const std::wstring& strDir, LibraryKind kind) {
    CCirNewDlg dlg;
    dlg.m_strTitle = pszTitle;
    dlg.m_strDir = WithBackslash(strDir);
    if (kind == LibraryKind::Layout)
        dlg.m_strSyncText = L"同步到开孔图库目录";
    return dlg;
}

} // namespace

void CCircuitLibDlg::OnDirNew() {
    if (!IsCurDirUsable())
        return;
    CCirNewDlg dlg = MakeDirDialog(L"目录新建", m_strCurDir, m_kind.kind);
    dlg.m_onOK = [this](CCirNewDlg& d) {
        if (d.m_strResult.empty())
            return false;
        std::wstring strPath = d.m_strDir + d.m_strResult;
        if (IsDirExist(strPath)) {
            QmMessageBox(Format(L"目录 %s 已经存在，不能创建！", strPath), MB_ICONEXCLAMATION);
            return false;
        }
        if (!FsCreateDirectory(strPath)) {
            QmMessageBox(Format(L"目录 %s 创建失败！", strPath), MB_ICONEXCLAMATION);
            return false;
        }
        std::wstring strTwin = TwinOf(strPath);
        if (d.m_bSyncTwin && !IsDirExist(strTwin))
            CreateDirPath(strTwin);
        if (m_state.g_nFtpMode != 1 || !m_pFtp)
            return true;
        std::wstring strServer = ServerPath(strPath);
        if (m_pFtp->RemoteDirExists(strServer)) {
            QmMessageBox(Format(L"目录%s已经存在！", strServer), MB_ICONEXCLAMATION);
            return false; // the local directory stays
        }
        if (!m_pFtp->CommitNewDir(strServer, L""))
            return false;
        std::wstring strTwinServer = ServerPath(strTwin);
        if (d.m_bSyncTwin && !m_pFtp->RemoteDirExists(strTwinServer))
            m_pFtp->CreateRemoteDir(strTwinServer);
        return true;
    };
    if (!m_pView->RunNameDialog(dlg))
        return;
    int nParent = m_nTreeSel ? m_nTreeSel : m_nTreeRoot;
    if (!nParent)
        return;
    InsertTreeItem(nParent, dlg.m_strResult);
    SortTreeChildren(nParent);
    if (!m_tree[nParent].bExpanded)
        OnItemexpandedTree(nParent, true);
}

void CCircuitLibDlg::OnDirRename() {
    if (!IsCurDirUsable() || !m_nTreeSel)
        return;
    if (!m_kind.bServerDirRename && m_state.g_nFtpMode == 1)
        return; // no server step exists for this library
    std::wstring strOldPath = m_strCurDir;
    std::wstring strParent = WithBackslash(GetParentPath(strOldPath));
    CCirNewDlg dlg = MakeDirDialog(L"目录更名", strParent, m_kind.kind);
    dlg.m_strOldName = m_tree[m_nTreeSel].strText;
    dlg.m_onOK = [this, strOldPath](CCirNewDlg& d) {
        const std::wstring& strName = d.m_strResult;
        if (strName.empty() || strName == d.m_strOldName)
            return false;
        std::wstring strNewPath = d.m_strDir + strName;
        bool bOtherName = !EqualsNoCase(strName, d.m_strOldName);
        if (IsDirExist(strNewPath) && bOtherName) {
            QmMessageBox(Format(L"目录 %s 已经存在，不能更名为%s！", strNewPath, strName),
                         MB_ICONEXCLAMATION);
            return false;
        }
        if (!FsMoveFile(strOldPath, strNewPath))
            return false; // the shell's refusal is not reported
        std::wstring strTwinOld = TwinOf(strOldPath), strTwinNew = TwinOf(strNewPath);
        if (m_state.g_nFtpMode != 1 || !m_pFtp) {
            if (d.m_bSyncTwin && !IsDirExist(strTwinNew))
                FsMoveFile(strTwinOld, strTwinNew);
            return true;
        }
        auto commitRename = [this, &d](const std::wstring& strOld, const std::wstring& strNew) {
            std::wstring strOldServer = ServerPath(strOld), strNewServer = ServerPath(strNew);
            if (m_pFtp->RemoteDirExists(strNewServer) &&
                !EqualsNoCase(GetLastDirName(strNew), GetLastDirName(strOld))) {
                QmMessageBox(
                    Format(L"文件夹%s已经存在，不能更名为%s！", strNewServer, d.m_strResult),
                    MB_ICONEXCLAMATION);
                return false;
            }
            return m_pFtp->CommitRenameDir(strOldServer, strNewServer);
        };
        if (!commitRename(strOldPath, strNewPath))
            return false;
        if (d.m_bSyncTwin) {
            if (!IsFileExist(strTwinNew) && IsFileExist(strTwinOld))
                FsMoveFile(strTwinOld, strTwinNew);
            if (m_pFtp->RemoteDirExists(ServerPath(strTwinOld)) &&
                !commitRename(strTwinOld, strTwinNew))
                return false;
        }
        return true;
    };
    if (!m_pView->RunNameDialog(dlg))
        return;
    int nItem = m_nTreeSel;
    m_tree[nItem].strText = dlg.m_strResult;
    m_pView->TreeSetText(nItem, dlg.m_strResult);
    if (int nParent = m_tree[nItem].nParent)
        SortTreeChildren(nParent);
    OnSelchangedTree(nItem); // the list follows the directory under its new name
}

void CCircuitLibDlg::OnDirDelete() {
    if (!IsCurDirUsable())
        return;
    std::wstring strPath = m_strCurDir;
    if (QmMessageBox(Format(L"真的删除目录 %s 吗？", strPath), MB_YESNO | MB_ICONQUESTION) != IDYES)
        return;
    bool bShared = m_state.g_nFtpMode == 1 && m_pFtp;
    if (bShared && !m_pFtp->CommitDeleteDir(m_state.strRelDir)) {
        QmMessageBox(Format(L"目录 %s 删除失败,\n请先删除子目录后再执行该操作！", strPath),
                     MB_ICONEXCLAMATION);
        return;
    }
    std::wstring strTwin = TwinOf(strPath);
    if (IsDirExist(strTwin) && QmMessageBox(Format(L"真的删除目录 %s 吗？", strTwin),
                                            MB_YESNO | MB_ICONQUESTION) == IDYES) {
        if (bShared)
            m_pFtp->CommitDeleteDir(m_state.strRelDirTwin);
        FsMoveToTrash(strTwin);
    }
    if (!FsMoveToTrash(strPath))
        return; // the tree item stays; the next refresh shows the directory
    int nItem = m_nTreeSel;
    int nParent = TreeNode(nItem) ? TreeNode(nItem)->nParent : 0;
    DeleteTreeItem(nItem);
    if (!m_nTreeRoot) {
        m_pView->SetText(IDC_EDIT_ROOT, L"");
        m_Names.clear();
        m_selection.clear();
        m_nItems = 0;
        m_pView->ListSetItems(m_Names);
        m_strCurDir.clear();
        InvalidateCells();
        return;
    }
    if (nParent) {
        m_pView->TreeSelect(nParent);
        OnSelchangedTree(nParent);
    }
}

void CCircuitLibDlg::OnDirRefresh() {
    FillTree();
}

// Mirrors every directory of this library into the twin library; nothing is removed.
void CCircuitLibDlg::OnDirSync() {
    std::wstring strLocal = StrTrimRight(GetQuillmLocalInstallPath(), L"\\");
    bool bHole = m_kind.kind == LibraryKind::Hole;
    std::wstring strFrom = strLocal + (bHole ? L"\\InstallHole" : L"\\LaySketch");
    std::wstring strTo = strLocal + (bHole ? L"\\LaySketch" : L"\\InstallHole");
    std::wstring strToRel = bHole ? L"LaySketch" : L"InstallHole";
    CStringArray found;
    CollectDirs(strFrom, found);
    CSortStringArray dirs;
    for (const std::wstring& strDir : found) {
        std::wstring strName = GetFileName(strDir);
        if (strName != L"." && strName != L"..")
            dirs.push_back(strDir);
    }
    dirs.Sort();
    SortByLabel(dirs);
    CWaitCursor wait;
    for (const std::wstring& strDir : dirs) {
        std::wstring strTwin = strTo + strDir.substr(strFrom.size());
        if (!IsDirExist(strTwin))
            CreateDirPath(strTwin);
        if (m_state.g_nFtpMode != 1 || !m_pFtp)
            continue;
        std::wstring strRemote = strTwin;
        StrReplace(strRemote, strTo, strToRel);
        strRemote = WithBackslash(strRemote);
        if (!m_pFtp->RemoteDirExists(strRemote))
            m_pFtp->CreateRemoteDir(strRemote);
    }
}
