// The library browser's window in Qt: tree, list, search, sixteen cells, page bar and fields.
#pragma once

#include "library/LibBrowserView.h"

#include <QDialog>
#include <QPointer>

#include <functional>
#include <map>

class CCircuitLibDlg;
class CDirTreeCtrl;
class CMyListCtrl;
class CSlideCtrl;
class CDwgPreviewCell;
class QAbstractButton;
class QLabel;
class QLineEdit;
class QScrollBar;

// The dialog itself; every event reaches the browser through its handlers.
class CLibBrowserDialog : public QDialog {
    Q_OBJECT
public:
    CLibBrowserDialog(QWidget* pParent, const LIB_BROWSER_TEXTS& texts);

    CCircuitLibDlg* m_pBrowser = nullptr; // null once the browser has gone
    CDirTreeCtrl* m_pTree = nullptr;
    CMyListCtrl* m_pList = nullptr;
    QScrollBar* m_pScroll = nullptr;
    QLineEdit* m_pSearch = nullptr;
    CSlideCtrl* m_slides[16] = {};
    CDwgPreviewCell* m_frames[16] = {};
    QLabel* m_labels[16] = {};
    std::map<int, QWidget*> m_controls; // by the hole template's control id (the role)
    bool m_bIconic = false;

protected:
    bool eventFilter(QObject* pObject, QEvent* pEvent) override;
    void closeEvent(QCloseEvent* pEvent) override;
    void reject() override;
    void showEvent(QShowEvent* pEvent) override;

private:
    QWidget* BuildLeft();
    QWidget* BuildCells();
    QWidget* BuildFields(const LIB_BROWSER_TEXTS& texts);
    void Connect(const LIB_BROWSER_IDS& ids);
    void Watch(QWidget* pWidget);
    template <class F> void Call(F f) {
        if (m_pBrowser)
            f(*m_pBrowser);
    }
};

class CLibBrowserWindow : public ILibBrowserView {
public:
    explicit CLibBrowserWindow(QWidget* pParent);
    ~CLibBrowserWindow() override;
    void Attach(CCircuitLibDlg* pBrowser) { m_pBrowser = pBrowser; }
    CLibBrowserDialog* Dialog() const { return m_pDialog; }

    bool Create(const LIB_BROWSER_TEXTS& texts) override;
    void Show(bool bShow) override;
    void Activate() override;
    void ActivateFrame() override;
    bool IsIconic() override;
    void Restore() override;
    void Destroy() override;
    std::wstring GetText(int nId) override;
    void SetText(int nId, const std::wstring& strText) override;
    bool GetCheck(int nId) override;
    void SetCheck(int nId, bool bChecked) override;
    void Enable(int nId, bool bEnable) override;
    void SetFocus(int nId) override;
    void ShowControl(int nId, bool bShow) override;
    void TreeReset() override;
    void TreeInsert(int nId, int nParent, const std::wstring& strText, bool bExpandable) override;
    void TreeRemove(int nId) override;
    void TreeSetText(int nId, const std::wstring& strText) override;
    void TreeSetExpandable(int nId, bool bExpandable) override;
    void TreeSetChildOrder(int nParent, const std::vector<int>& children) override;
    void TreeSelect(int nId) override;
    void TreeExpand(int nId, bool bExpand) override;
    void ListSetItems(const CStringArray& names) override;
    void ListSetSelection(const std::vector<int>& selected, int nMakeVisible) override;
    void ScrollSetRange(int nMin, int nMax) override;
    void ScrollSetPos(int nPos) override;
    void ScrollEnable(bool bEnable) override;
    void SetDisplayMode(int nMode) override;
    void SetCell(int nCell, const CELL_CONTENT& content) override;
    int TrackMenu(const std::vector<MENU_ENTRY>& entries) override;
    bool RunNameDialog(CCirNewDlg& dlg) override;

    // Tests answer menus and name dialogs here instead of a person.
    static inline std::function<int(const std::vector<MENU_ENTRY>&)> s_menuHook;
    static inline std::function<bool(CCirNewDlg&)> s_nameDialogHook;

private:
    QWidget* Control(int nId) const;
    QWidget* m_pParent;
    QPointer<CLibBrowserDialog> m_pDialog;
    CCircuitLibDlg* m_pBrowser = nullptr;
    int m_nDisplayMode = 2;
};
