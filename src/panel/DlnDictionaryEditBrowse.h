// The self-contained editor of the panel catalogue, without its window.
#pragma once

#include "panel/PanelCatalogue.h"

#include <string>
#include <vector>

// Opens on the catalogue file and writes it back when it closes; add,
// change and delete follow the panel dialog's rules.
class CDlnDictionaryEditBrowse {
public:
    void OnInitDialog();
    void OnClose();

    // "索引:": the first row that begins with the typed text (no case), or -1.
    int FindRow(const std::wstring& strTyped) const;
    bool Add(const RECORD_EDITOR& editor);
    bool Change(const std::vector<int>& arrSelected, const RECORD_EDITOR& editor);
    // Asks "确定要删除这 %d 项吗?" first.
    bool Delete(const std::vector<int>& arrSelected);

    std::wstring m_strCaption = L"标准面板库扩充";
    CPanelCatalogue m_catalogue;
};
