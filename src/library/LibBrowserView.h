// What the library browser asks of its window: controls by id, the tree, the list, the cells.
#pragma once

#include "shared/fileops/FileOps.h"
#include "base/ImageSurface.h"

#include <string>
#include <vector>

class CCirNewDlg;

// Control ids of the hole browser's template; the layout browser's window
// uses the same ids for its own controls of the same role.
enum : int {
    IDC_BTN_EXIT = 2,
    IDC_CHK_EXPLODE = 415,
    IDC_CHK_SUBDIRS = 416,
    IDC_SCROLL = 428,
    IDC_EDIT_DWGSCALE = 524,
    IDC_RADIO_0 = 624,
    IDC_RADIO_90 = 626,
    IDC_RADIO_180 = 627,
    IDC_RADIO_270 = 628,
    IDC_EDIT_COUNT = 629,
    IDC_TEXT_PAGES = 630,
    IDC_TEXT_PAGE = 631,
    IDC_LABEL_COUNT = 632,
    IDC_EDIT_SCALE = 634,
    IDC_LABEL_SCALE = 635,
    IDC_EDIT_ROOT = 610,
    IDC_EDIT_SEARCH = 612,
    IDC_BTN_NEW = 613,
    IDC_BTN_MODIFY = 614,
    IDC_BTN_RENAME = 615,
    IDC_BTN_DELETE = 616,
    IDC_BTN_INSERT = 617,
    IDC_TREE = 618,
    IDC_BTN_SAVE = 620,
    IDC_BTN_ENLARGE = 621,
    IDC_BTN_BATCH = 623,
    IDC_LIST = 639,
    IDM_LIST_REFRESH = 645,
    IDM_DIR_NEW = 647,
    IDM_DIR_DELETE = 648,
    IDM_DIR_RENAME = 649,
    IDM_DIR_REFRESH = 650,
    IDM_IMPORT = 651,
    IDM_DIR_SYNC = 652,
    IDM_DIR_SYNC_LAYOUT = 653,
};

// Scroll codes of the page bar, as the platform numbers them.
enum : int {
    SB_LINEUP = 0,
    SB_LINEDOWN = 1,
    SB_PAGEUP = 2,
    SB_PAGEDOWN = 3,
    SB_THUMBTRACK = 5,
    SB_ENDSCROLL = 8,
};

// Background colours of the cells.
inline constexpr COLORREF kCellSelected = 8553090; // 0x828282
inline constexpr COLORREF kCellNormal = 0;
inline constexpr COLORREF kCellEmpty = RGB(240, 240, 240); // the button face

// What one of the sixteen cells shows. In display mode 2 the slide control
// paints strSlide on background; in mode 1 the frame paints the drawing's
// own thumbnail, in original colours when selected, turned by dAngle.
struct CELL_CONTENT {
    std::wstring strSlide;
    COLORREF background = kCellEmpty;
    std::wstring strLabel;
    std::wstring strDwg;
    bool bSelected = false;
    double dAngle = 0.0;
    bool operator==(const CELL_CONTENT&) const = default;
};

// One entry of a popup menu; an id of 0 is a separator.
struct MENU_ENTRY {
    int nId = 0;
    std::wstring strText;
    bool bGrayed = false;
};

// The template and the controls whose ids differ between the two browsers.
// The browser speaks of a control by the hole template's id (its role); the
// window gives each control its own template's id.
struct LIB_BROWSER_IDS {
    int nTemplate = 102;
    int nList = IDC_LIST;
    int nInsert = IDC_BTN_INSERT;
    int nNew = IDC_BTN_NEW;
    int nModify = IDC_BTN_MODIFY;
    int nDelete = IDC_BTN_DELETE;
    int nRename = IDC_BTN_RENAME;
    // The template's id of a role; ids that do not differ stay as they are.
    int TemplateId(int nRole) const;
    // The role of a template's id; ids that do not differ stay as they are.
    int RoleId(int nTemplateId) const;
};

// The texts that tell the two browsers apart on the screen.
struct LIB_BROWSER_TEXTS {
    std::wstring strTitle;
    std::wstring strExplode;
    std::wstring strSyncMenu;
    int nSyncMenuId = IDM_DIR_SYNC;
    LIB_BROWSER_IDS ids;
};

class ILibBrowserView {
public:
    virtual ~ILibBrowserView() = default;

    virtual bool Create(const LIB_BROWSER_TEXTS& texts) = 0;
    virtual void Show(bool bShow) = 0;
    virtual void Activate() = 0;
    virtual bool IsIconic() = 0;
    virtual void Restore() = 0;
    virtual void Destroy() = 0;
    // Makes the host's main window the active one, as a hand-over leaves it.
    virtual void ActivateFrame() {}

    // Edits, static texts, check and radio boxes, buttons by control id.
    virtual std::wstring GetText(int nId) = 0;
    virtual void SetText(int nId, const std::wstring& strText) = 0;
    virtual bool GetCheck(int nId) = 0;
    virtual void SetCheck(int nId, bool bChecked) = 0;
    virtual void Enable(int nId, bool bEnable) = 0;
    virtual void SetFocus(int nId) = 0;
    virtual void ShowControl(int nId, bool bShow) = 0;

    // The directory tree, by ids the browser hands out; 0 is no parent.
    virtual void TreeReset() = 0;
    virtual void TreeInsert(int nId, int nParent, const std::wstring& strText,
                            bool bExpandable) = 0;
    virtual void TreeRemove(int nId) = 0; // with its children
    virtual void TreeSetText(int nId, const std::wstring& strText) = 0;
    virtual void TreeSetExpandable(int nId, bool bExpandable) = 0;
    virtual void TreeSetChildOrder(int nParent, const std::vector<int>& children) = 0;
    virtual void TreeSelect(int nId) = 0; // 0 clears the selection
    virtual void TreeExpand(int nId, bool bExpand) = 0;

    // The item list: all rows at once with redrawing off, then the selection.
    virtual void ListSetItems(const CStringArray& names) = 0;
    virtual void ListSetSelection(const std::vector<int>& selected, int nMakeVisible) = 0;

    // The page bar.
    virtual void ScrollSetRange(int nMin, int nMax) = 0;
    virtual void ScrollSetPos(int nPos) = 0;
    virtual void ScrollEnable(bool bEnable) = 0;

    // Cells: 2 slide controls, 1 thumbnail frames.
    virtual void SetDisplayMode(int nMode) = 0;
    virtual void SetCell(int nCell, const CELL_CONTENT& content) = 0;

    // A popup menu at the cursor; the chosen id, 0 for none.
    virtual int TrackMenu(const std::vector<MENU_ENTRY>& entries) = 0;
    // The modal name dialog; runs its OK handler until that accepts. False on cancel.
    virtual bool RunNameDialog(CCirNewDlg& dlg) = 0;
};
