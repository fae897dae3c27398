// Select mode of the browser: a sibling module's window waits for the user to pick a drawing.
#include "library/CircuitLibDlg.h"

#include "app/LibState.h"
#include "base/StrUtil.h"
#include "shared/fileops/FileOps.h"

namespace {

bool BeginsWithNoCase(const std::wstring& strText, const std::wstring& strPrefix) {
    return strText.size() >= strPrefix.size() &&
           EqualsNoCase(strText.substr(0, strPrefix.size()), strPrefix);
}

// The first drawing under the root whose file name equals the name; empty when none.
std::wstring FindDrawing(const std::wstring& strRoot, const std::wstring& strName) {
    CStringArray files;
    CollectFiles(strRoot, L"dwg", files, true);
    for (const std::wstring& strFile : files)
        if (EqualsNoCase(GetFileName(strFile), strName))
            return strFile;
    return {};
}

} // namespace

void CCircuitLibDlg::SetSelectOwner(void* pOwner, std::unique_ptr<ILibSelectOwner> hOwner) {
    m_pOwner = pOwner;
    m_hOwner = std::move(hOwner);
    m_bSelectMode = 1;
}

void CCircuitLibDlg::SelectTreeItem(int nItem) {
    m_pView->TreeSelect(nItem);
    OnSelchangedTree(nItem);
    OnItemexpandedTree(nItem, true);
}

// Every directory below the item, expanded; children are read as they open.
void CCircuitLibDlg::ExpandTreeAll(int nItem) {
    if (!m_tree.count(nItem))
        return;
    OnItemexpandedTree(nItem, true);
    std::vector<int> children = m_tree[nItem].children;
    for (int nChild : children)
        ExpandTreeAll(nChild);
}

// Depth first from the item: the first whose text begins with the prefix.
int CCircuitLibDlg::FindTreeItemByPrefix(int nItem, const std::wstring& strPrefix) const {
    const DIR_TREE_NODE* pNode = TreeNode(nItem);
    if (!pNode)
        return 0;
    if (BeginsWithNoCase(pNode->strText, strPrefix))
        return nItem;
    for (int nChild : pNode->children)
        if (int nFound = FindTreeItemByPrefix(nChild, strPrefix))
            return nFound;
    return 0;
}

// The buttons that make no sense in a pick go; rename and exit become Cancel
// and OK. The given name's directory is opened and the name selected.
void CCircuitLibDlg::PrepareSelectMode(const std::wstring& strName) {
    for (int nId : {IDC_BTN_INSERT, IDC_BTN_NEW, IDC_BTN_MODIFY, IDC_BTN_DELETE, IDC_CHK_EXPLODE})
        m_pView->ShowControl(nId, false);
    m_pView->SetText(IDC_BTN_RENAME, L"取消(&C)");
    m_pView->SetText(IDC_BTN_EXIT, L"确定(&O)");

    std::wstring strFound = FindDrawing(m_strRoot, strName);
    if (!strFound.empty() && m_nTreeRoot) {
        std::wstring strDirName = GetLastDirName(GetParentPath(strFound));
        if (EqualsNoCase(strDirName, m_kind.pszLibName)) {
            SelectTreeItem(m_nTreeRoot);
        } else {
            ExpandTreeAll(m_nTreeRoot);
            if (int nItem = FindTreeItemByPrefix(m_nTreeRoot, strDirName))
                SelectTreeItem(nItem);
        }
    }
    SelectListItem(strName);
}

// The first selected item, without its directory, goes to the owner.
void CCircuitLibDlg::OnSelectOK() {
    if (m_selection.empty())
        return; // nothing picked: the window stays
    int n = m_selection.front();
    if (n < 0 || n >= static_cast<int>(m_Names.size()))
        return;
    std::wstring strName = m_Names[n];
    if (strName.find(L'\\') != std::wstring::npos)
        strName = GetFileName(strName);
    m_bSelectMode = 0;
    if (m_hOwner && m_hOwner->IsWindow()) {
        m_state.strPickedName = strName;
        m_hOwner->PostMessage(WM_LIB_PICKED);
    }
    m_state.ResetHandOver();
    DestroySelf();
}

void CCircuitLibDlg::OnSelectCancel() {
    if (m_hOwner && m_hOwner->IsWindow())
        m_hOwner->PostMessage(WM_LIB_CANCELLED);
    m_state.ResetHandOver();
    DestroySelf();
}

// The buttons whose meaning select mode changes; true when handled here.
bool CCircuitLibDlg::OnSelectCommand(int nId) {
    switch (nId) {
    case IDC_BTN_EXIT:
    case IDC_BTN_INSERT: // hidden, but a double click still reaches the insert handler
        OnSelectOK();
        return true;
    case IDC_BTN_RENAME:
        OnSelectCancel();
        return true;
    default:
        return false;
    }
}
