// Record editor: splits the record to edit, tests the sizes, refuses duplicates.
#include "panel/DlnDictionaryAdd.h"

#include "base/StrUtil.h"
#include "host/HostUi.h"
#include "panel/PanelCatalogue.h"
#include "panel/ScaleList.h"

void CDlnDictionaryAdd::OnInitDialog() {
    m_nFocus = fieldDesc;
    m_bSelectFocus = false;
    if (StrFind(m_strCaption, L"修改") < 0 || m_strRecord.empty())
        return;
    std::wstring strW, strH, strT;
    if (SplitPanelRecord(m_strRecord, m_strDesc, strW, strH, strT)) {
        m_strW = strW;
        m_strH = strH;
        m_strT = strT;
    }
}

bool CDlnDictionaryAdd::Refuse(int nField, const wchar_t* pszText, bool bSelect) {
    QmMessageBox(pszText, MB_ICONEXCLAMATION);
    m_nFocus = nField;
    m_bSelectFocus = bSelect;
    return false;
}

bool CDlnDictionaryAdd::OnOK() {
    // The messages name the sizes otherwise than the field labels do.
    if (!m_strW.empty() && !IsPositiveReal(m_strW))
        return Refuse(fieldW, L"面板长度输入不正确，请输入正实数!", true);
    if (!m_strH.empty() && !IsPositiveReal(m_strH))
        return Refuse(fieldH, L"面板宽度输入不正确，请输入正实数!", true);
    if (!m_strT.empty() && !IsPositiveReal(m_strT))
        return Refuse(fieldT, L"面板高度输入不正确，请输入正实数!", true);
    std::wstring strRecord = MakePanelRecord(m_strDesc, m_strW, m_strH, m_strT);
    for (const std::wstring& strOther : m_arrOthers)
        if (EqualsNoCase(strOther, strRecord))
            return Refuse(fieldW, L"添加的项已存在!", false);
    m_strRecord = strRecord;
    return true;
}
