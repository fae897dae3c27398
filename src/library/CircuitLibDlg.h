// The library browser: tree, list, pages of sixteen cells, and the hand-over to the commands.
#pragma once

#include "app/ModelessWindow.h"
#include "library/LibBrowserView.h"
#include "library/LibSelectOwner.h"
#include "library/LibraryListOrder.h"
#include "library/LibraryRules.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

struct CLibState;
class CMyFtpConnection;
class CCircuitLibDlg;

// A stand-in for the item operations, the enlarged preview and the batch
// slides: tests set one to see which operation a button or menu reaches.
class ILibItemOperations {
public:
    virtual ~ILibItemOperations() = default;
    virtual void OnBtnNew(CCircuitLibDlg& dlg) = 0;
    virtual void OnBtnModify(CCircuitLibDlg& dlg) = 0;
    virtual void OnBtnRename(CCircuitLibDlg& dlg) = 0;
    virtual void OnBtnDelete(CCircuitLibDlg& dlg) = 0;
    virtual void OnBtnSave(CCircuitLibDlg& dlg) = 0;
    virtual void OnImport(CCircuitLibDlg& dlg) = 0;
    virtual void OnEnlarge(CCircuitLibDlg& dlg) = 0;
    virtual void OnBatchSlides(CCircuitLibDlg& dlg) = 0;
};
// Both browsers call the one set here; null runs the browser's own handlers.
void SetLibItemOperations(ILibItemOperations* pOps);

// The common gates of the item operations.
enum : unsigned {
    GATE_A_MODE = 1,        // the mode is recomputed
    GATE_B_DOCUMENT = 2,    // a document is open
    GATE_C_NO_NEW_ITEM = 4, // no new item in progress
    GATE_D_DIRECTORY = 8,   // current directory set and existing
    GATE_E_SINGLE = 16,     // at most one selected
    GATE_F_SELECTED = 32,   // an item selected
};

// What tells the hole browser and the layout browser apart.
struct LIB_BROWSER_KIND {
    LibraryKind kind = LibraryKind::Hole;
    const wchar_t* pszClass = L"CCircuitLibDlg";
    const wchar_t* pszRootFormat = L"%sInstallHole\\";
    const wchar_t* pszRelDir = L"InstallHole\\";
    const wchar_t* pszRelDirTwin = L"LaySketch\\";
    const wchar_t* pszLibName = L"InstallHole"; // the root's own name in select mode
    const wchar_t* pszInsertCommand = L"(Command)\nDrawingInsert\n";
    std::vector<std::wstring> ownCommands; // not cancelled when the mouse comes over
    bool bRecomputeModeInHandlers = true;
    bool bServerDirRename = true;
    LIB_BROWSER_TEXTS texts;
    static LIB_BROWSER_KIND Hole();
    static LIB_BROWSER_KIND Layout();
};

// One directory of the tree: the root's text is its full path, the others
// hold their name. Children are read when the item is expanded.
struct DIR_TREE_NODE {
    std::wstring strText;
    int nParent = 0;
    std::vector<int> children;
    bool bExpanded = false;
};

class CCircuitLibDlg : public ILibraryBrowser {
public:
    CCircuitLibDlg(CLibState& state, CMyFtpConnection* pFtp, std::unique_ptr<ILibBrowserView> pView,
                   LIB_BROWSER_KIND kind = LIB_BROWSER_KIND::Hole());
    ~CCircuitLibDlg() override;

    // The frame's protocol.
    bool Create() override;
    void Show() override;
    void Activate() override;
    bool IsIconic() override;
    void Restore() override;
    void DestroyWindow() override;
    // Steps aside while an item is drawn or edited; Show brings it back.
    void Hide();
    void ReloadList() override;
    void SelectListItem(const std::wstring& strName) override;

    // Handlers the window calls.
    void OnPaint();
    void OnSelchangedTree(int nItem);
    void OnItemexpandedTree(int nItem, bool bExpanded);
    void OnRclickTree(int nItem);
    void OnItemchangedList(const std::vector<int>& selected);
    void OnDblclkList();
    void OnRclickList();
    void OnKeydownList(bool bDeleteKey);
    void OnVScroll(int nCode, int nTrackPos);
    void OnMouseWheel(int nDelta, bool bScrollHasFocus);
    void OnSlideLButtonDown(int nCell);              // WM_USER+1
    void OnSlideLButtonDblClk(int nCell);            // WM_USER+2
    void OnSlideRButtonDown(int nCell);              // WM_USER+3
    void OnBackgroundClick(int nCell, bool bDouble); // display mode 1
    void OnChangeSearch();
    void OnCommand(int nId); // buttons, radio buttons, check boxes, menu entries
    void OnClose();
    // Every message of the window passes here first; true swallows it.
    bool PreTranslateMessage(bool bKeyDown, bool bEnterKey, bool bDeleteKey,
                             bool bFocusInTreeOrList);

    // Handlers of the buttons that are the browser's own.
    void OnBtnInsert();
    void OnBtnExit();
    void OnRefreshList();
    void OnDirNew();
    void OnDirRename();
    void OnDirDelete();
    void OnDirRefresh();
    void OnDirSync();

    // The item operations (CircuitLibItemEdit.cpp: new and modify;
    // CircuitLibItemOps.cpp: rename, delete, save the current drawing, import)
    // and the slides (CircuitLibSlides.cpp: enlarge, batch run).
    void OnBtnNew();
    void OnBtnModify();
    void OnBtnRename();
    void OnBtnDelete();
    void OnBtnSave();
    void OnImport();
    void OnEnlarge();
    void OnBatchSlides();

    // Sets a cell's slide again, so that its control reads the file anew.
    void RefreshCell(int nCell);
    // Select mode (CircuitLibSelect.cpp): the window picks a name for a sibling module.
    void SetSelectOwner(void* pOwner, std::unique_ptr<ILibSelectOwner> hOwner);
    void PrepareSelectMode(const std::wstring& strName);
    void OnSelectOK();
    void OnSelectCancel();

    // The gates of the item operations, in their order; false ends the operation.
    bool PassGates(unsigned nGates);
    // The list's selected rows in order.
    const std::vector<int>& GetSelection() const { return m_selection; }
    CLibState& State() { return m_state; }
    CMyFtpConnection* Ftp() { return m_pFtp; }
    ILibBrowserView& View() { return *m_pView; }
    const LIB_BROWSER_KIND& Kind() const { return m_kind; }
    int TreeSelection() const { return m_nTreeSel; }
    const DIR_TREE_NODE* TreeNode(int nItem) const;
    std::wstring TreeItemPath(int nItem) const;

    // Members of the dialog.
    int m_nDisplayMode = 2;
    int m_bSelectMode = 0;
    void* m_pOwner = nullptr;
    std::unique_ptr<ILibSelectOwner> m_hOwner;
    std::wstring m_strMsg;
    std::wstring m_strRoot;
    double m_dAngle = 0.0;
    int m_nCount = 1;
    double m_dScale = 1.0;
    std::wstring m_strCurDir;
    int m_nItems = 0;
    int m_bExplode = 1;
    int m_nCell = 0;
    int m_nPages = 0;
    int m_nPage = 0;
    CStringArray m_Names;
    int m_bSubDirs = 1;
    std::wstring m_strLastDir;
    int m_nLastIndex = 0;
    std::wstring m_strDwgPath;
    std::wstring m_strDwgScale = L"1:1";
    int m_bDwgTitled = 0;

private:
    void ReadHistory();
    void WriteHistory();
    void FillTree();
    void SelectCurrentDirectory();
    int InsertTreeItem(int nParent, const std::wstring& strText);
    void FillTreeChildren(int nItem);
    void RemoveTreeChildren(int nItem);
    void SortTreeChildren(int nItem);
    void DeleteTreeItem(int nItem);
    bool HasSubDirs(const std::wstring& strPath) const;
    void ReadDrawingScale();
    void LoadList();
    void SetSelection(const std::vector<int>& selected, int nMakeVisible);
    void SelectFirstItem();
    void InvalidateCells();
    void SetCell(int nCell, const CELL_CONTENT& content);
    CELL_CONTENT CellOfItem(int nIndex, bool bSelected) const;
    void FollowList();
    void SelectCell(int nCell);
    void SetPage(int nPage);
    bool ReadCountAndScale();
    void CancelForeignCommand();
    int CurrentMode();
    void DestroySelf();
    std::wstring ServerPath(const std::wstring& strLocal) const;
    std::wstring TwinOf(const std::wstring& strPath) const;
    bool IsCurDirUsable() const;
    // Steps of the item operations (CircuitLibItemOps.cpp).
    bool RenameItem(CCirNewDlg& dlg, const std::wstring& strItem);
    void RemoveDeletedRows(const std::vector<int>& removed, bool bNamesToo);
    bool SaveCurrentAs(CCirNewDlg& dlg);
    void CommitThroughScratch(const std::wstring& strFile, const std::wstring& strName,
                              bool bExisted);
    bool OnSelectCommand(int nId);
    void ExpandTreeAll(int nItem);
    int FindTreeItemByPrefix(int nItem, const std::wstring& strPrefix) const;
    void SelectTreeItem(int nItem);

    CLibState& m_state;
    CMyFtpConnection* m_pFtp;
    std::unique_ptr<ILibBrowserView> m_pView;
    LIB_BROWSER_KIND m_kind;
    std::vector<int> m_selection;
    CELL_CONTENT m_cells[kCellsPerPage]; // what each cell's control holds
    int m_nScrollMin = 0, m_nScrollMax = 0, m_nScrollPos = 0;
    std::map<int, DIR_TREE_NODE> m_tree;
    int m_nTreeRoot = 0;
    int m_nTreeSel = 0;
    int m_nNextTreeId = 1;
    bool m_bCreated = false;
    bool m_bHidden = false;
};

// The layout library's browser: the same body with the layout library's
// root, texts, commands and deliberate differences.
class CLaySketchLibDlg : public CCircuitLibDlg {
public:
    CLaySketchLibDlg(CLibState& state, CMyFtpConnection* pFtp,
                     std::unique_ptr<ILibBrowserView> pView)
        : CCircuitLibDlg(state, pFtp, std::move(pView), LIB_BROWSER_KIND::Layout()) {}
};
