// The editor of one catalogue record, without its window: fields in, refusals and the record out.
#pragma once

#include <string>
#include <vector>

using CStringArray = std::vector<std::wstring>;

// The window shows the fields, calls OnInitDialog when it opens and OnOK on
// the OK button; a false OnOK keeps it open with the focus on m_nFocus and,
// when m_bSelectFocus is set, the field's text selected.
class CDlnDictionaryAdd {
public:
    enum FIELD { fieldDesc, fieldW, fieldH, fieldT };

    void OnInitDialog();
    bool OnOK();

    CStringArray m_arrOthers;  // all other records, for the duplicate test
    std::wstring m_strRecord;  // in and out: the whole record
    std::wstring m_strCaption; // "修改面板" or "添加面板"
    std::wstring m_strDesc;
    std::wstring m_strW, m_strH, m_strT;
    int m_nFocus = fieldDesc;
    bool m_bSelectFocus = false;

private:
    bool Refuse(int nField, const wchar_t* pszText, bool bSelect);
};
