// A panel dialog window for tests: it types the sizes it holds and says what it was shown.
#pragma once

#include "panel/DlgDrawPanel.h"

#include <string>

class CTypingPanelView : public IDlgDrawPanelView {
public:
    void UpdateData(CDlgDrawPanel& dlg, bool bSave) override {
        if (!bSave)
            return;
        dlg.m_strWidth = m_strW;
        dlg.m_strHeight = m_strH;
        dlg.m_strThick = m_strT;
        dlg.m_nAxisY = m_nAxisY;
    }
    void SetTitle(const std::wstring& s) override { m_strTitle = s; }
    void SetScaleList(const CStringArray&) override {}
    void SetScaleText(const std::wstring& s) override { m_strScale = s; }
    std::wstring GetScaleText() override { return m_strScale; }
    int GetListClientWidth() override { return 100; }
    void SetListHeading(const std::wstring&) override {}
    void SetListRows(const CStringArray&) override {}
    std::vector<int> GetSelectedRows() override { return {}; }
    void FocusField(int) override {}
    void BeginEditorCommand() override {}
    void MakeDialogsVisible() override {}
    bool RunRecordEditor(CDlnDictionaryAdd&) override { return false; }
    void EndDialog(int) override {}

    std::wstring m_strW = L"1000", m_strH = L"600", m_strT = L"2", m_strScale = L"1:10";
    std::wstring m_strTitle, m_strShownThick;
    int m_nAxisY = 1;
};
