// Catalogue editor window logic: index search, confirmed deletion, save on close.
#include "panel/DlnDictionaryEditBrowse.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "host/HostUi.h"

void CDlnDictionaryEditBrowse::OnInitDialog() {
    m_catalogue.LoadPanelLib();
}

void CDlnDictionaryEditBrowse::OnClose() {
    m_catalogue.SavePanelLib();
}

int CDlnDictionaryEditBrowse::FindRow(const std::wstring& strTyped) const {
    const CStringArray& arrRows = m_catalogue.m_arrPanels;
    for (size_t n = 0; n < arrRows.size(); ++n)
        if (EqualsNoCase(StrLeft(arrRows[n], static_cast<int>(strTyped.size())), strTyped))
            return static_cast<int>(n);
    return -1;
}

bool CDlnDictionaryEditBrowse::Add(const RECORD_EDITOR& editor) {
    return m_catalogue.AddRecord(L"", L"", L"", editor);
}

bool CDlnDictionaryEditBrowse::Change(const std::vector<int>& arrSelected,
                                      const RECORD_EDITOR& editor) {
    return m_catalogue.ChangeSelected(arrSelected, editor);
}

bool CDlnDictionaryEditBrowse::Delete(const std::vector<int>& arrSelected) {
    if (arrSelected.empty()) {
        QmMessageBox(kNothingSelectedText, MB_ICONEXCLAMATION);
        return false;
    }
    std::wstring strQuestion =
        Format(L"确定要删除这 %d 项吗?", static_cast<int>(arrSelected.size()));
    if (QmMessageBox(strQuestion, MB_YESNO | MB_ICONQUESTION) != IDYES)
        return false;
    return m_catalogue.DeleteSelected(arrSelected);
}
