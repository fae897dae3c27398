// A library browser view without a window: records what the browser shows, answers menus and
// dialogs.
#pragma once

#include "library/CirNewDlg.h"
#include "library/LibBrowserView.h"

#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

struct RECORDED_TREE_ITEM {
    int nParent = 0;
    std::wstring strText;
    bool bExpandable = false;
    bool bExpanded = false;
};

// A name typed into the name dialog and the twin check box with it.
struct NAME_ANSWER {
    std::wstring strName;
    int bSyncTwin = 1;
};

class CRecordingLibView : public ILibBrowserView {
public:
    bool Create(const LIB_BROWSER_TEXTS& texts) override {
        m_texts = texts;
        return m_bCreatable;
    }
    void Show(bool bShow) override { m_bVisible = bShow; }
    void Activate() override {}
    void ActivateFrame() override { ++m_nFrameActivated; }
    bool IsIconic() override { return false; }
    void Restore() override {}
    void Destroy() override { ++m_nDestroyed; }
    std::wstring GetText(int nId) override { return m_text[nId]; }
    void SetText(int nId, const std::wstring& strText) override { m_text[nId] = strText; }
    bool GetCheck(int nId) override { return m_check[nId]; }
    void SetCheck(int nId, bool bChecked) override { m_check[nId] = bChecked; }
    void Enable(int nId, bool bEnable) override { m_enabled[nId] = bEnable; }
    void SetFocus(int nId) override { m_nFocus = nId; }
    void ShowControl(int nId, bool bShow) override { m_shown[nId] = bShow; }
    void TreeReset() override { m_tree.clear(); }
    void TreeInsert(int nId, int nParent, const std::wstring& strText, bool bExpandable) override {
        m_tree[nId] = {nParent, strText, bExpandable, false};
    }
    void TreeRemove(int nId) override {
        std::vector<int> children;
        for (auto& [nChild, item] : m_tree)
            if (item.nParent == nId)
                children.push_back(nChild);
        for (int nChild : children)
            TreeRemove(nChild);
        m_tree.erase(nId);
    }
    void TreeSetText(int nId, const std::wstring& strText) override {
        m_tree[nId].strText = strText;
    }
    void TreeSetExpandable(int nId, bool bExpandable) override {
        m_tree[nId].bExpandable = bExpandable;
    }
    void TreeSetChildOrder(int nParent, const std::vector<int>& children) override {
        m_childOrder[nParent] = children;
    }
    void TreeSelect(int nId) override { m_nTreeSel = nId; }
    void TreeExpand(int nId, bool bExpand) override { m_tree[nId].bExpanded = bExpand; }
    void ListSetItems(const CStringArray& names) override {
        m_list = names;
        m_selection.clear();
    }
    void ListSetSelection(const std::vector<int>& selected, int nMakeVisible) override {
        m_selection = selected;
        m_nVisible = nMakeVisible;
    }
    void ScrollSetRange(int nMin, int nMax) override { m_scrollRange = {nMin, nMax}; }
    void ScrollSetPos(int nPos) override { m_nScrollPos = nPos; }
    void ScrollEnable(bool bEnable) override { m_bScrollEnabled = bEnable; }
    void SetDisplayMode(int nMode) override { m_nDisplayMode = nMode; }
    void SetCell(int nCell, const CELL_CONTENT& content) override { m_cells[nCell] = content; }
    int TrackMenu(const std::vector<MENU_ENTRY>& entries) override {
        m_lastMenu = entries;
        if (m_menuAnswers.empty())
            return 0;
        int nId = m_menuAnswers.front();
        m_menuAnswers.pop_front();
        return nId;
    }
    // Types the queued names one after the other until the handler accepts one;
    // running out of names is the cancel button.
    bool RunNameDialog(CCirNewDlg& dlg) override {
        m_dialogTitles.push_back(dlg.m_strTitle);
        m_lastDialog = dlg;
        while (!m_nameAnswers.empty()) {
            NAME_ANSWER answer = m_nameAnswers.front();
            m_nameAnswers.pop_front();
            dlg.m_strResult = answer.strName;
            dlg.m_bSyncTwin = answer.bSyncTwin;
            if (dlg.OnOK())
                return true;
        }
        return false;
    }

    // The tree item with this text, 0 when none.
    int TreeItem(const std::wstring& strText) const {
        for (auto& [nId, item] : m_tree)
            if (item.strText == strText)
                return nId;
        return 0;
    }

    bool m_bCreatable = true;
    bool m_bVisible = false;
    int m_nFrameActivated = 0;
    int m_nDestroyed = 0;
    LIB_BROWSER_TEXTS m_texts;
    std::map<int, std::wstring> m_text;
    std::map<int, bool> m_check;
    std::map<int, bool> m_enabled;
    std::map<int, bool> m_shown; // controls shown or hidden after creation
    int m_nFocus = 0;
    std::map<int, RECORDED_TREE_ITEM> m_tree;
    std::map<int, std::vector<int>> m_childOrder;
    int m_nTreeSel = 0;
    CStringArray m_list;
    std::vector<int> m_selection;
    int m_nVisible = -1;
    std::pair<int, int> m_scrollRange{0, 0};
    int m_nScrollPos = 0;
    bool m_bScrollEnabled = false;
    int m_nDisplayMode = 0;
    CELL_CONTENT m_cells[16];
    std::vector<MENU_ENTRY> m_lastMenu;
    std::deque<int> m_menuAnswers;
    std::deque<NAME_ANSWER> m_nameAnswers;
    std::vector<std::wstring> m_dialogTitles;
    CCirNewDlg m_lastDialog;
};
