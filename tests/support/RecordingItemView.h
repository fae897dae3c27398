// A recording view of the modeless item dialogs: fields by id, and a log of what the dialog did.
#pragma once

#include "library/ItemDialogs.h"

#include <map>
#include <string>

class CRecordingItemView : public IItemDialogView {
public:
    // The view of the dialog made last, until it is destroyed.
    static inline CRecordingItemView* s_pLast = nullptr;
    static inline int s_nFrameWidth = 1600;

    ~CRecordingItemView() override {
        if (s_pLast == this)
            s_pLast = nullptr;
    }
    bool Create(const ITEM_DIALOG_TEMPLATE& tmpl, CItemDialog& dlg) override {
        m_tmpl = tmpl;
        m_pDlg = &dlg;
        s_pLast = this;
        return true;
    }
    void SetText(int nId, const std::wstring& strText) override { m_texts[nId] = strText; }
    std::wstring GetText(int nId) override { return m_texts[nId]; }
    void Show(bool bShow) override { m_strLog += bShow ? L"show;" : L"hide;"; }
    void Activate() override { m_strLog += L"activate;"; }
    bool IsIconic() override { return false; }
    void Restore() override {}
    void Destroy() override { m_strLog += L"destroy;"; }
    ITEM_DIALOG_RECT WindowRect() override { return {100, 50, 300, 200}; }
    void MoveWindow(const ITEM_DIALOG_RECT& rect) override { m_placed = rect; }
    int FrameWidth() override { return s_nFrameWidth; }
    void ActivateFrame() override { m_strLog += L"frame;"; }

    ITEM_DIALOG_TEMPLATE m_tmpl;
    CItemDialog* m_pDlg = nullptr;
    std::map<int, std::wstring> m_texts;
    std::wstring m_strLog;
    ITEM_DIALOG_RECT m_placed;
};

// Installs the recording view for the dialogs made during its lifetime.
struct CRecordingItemViews {
    CRecordingItemViews() {
        SetItemDialogViewFactory([] { return std::make_unique<CRecordingItemView>(); });
    }
    ~CRecordingItemViews() { SetItemDialogViewFactory(nullptr); }
};
