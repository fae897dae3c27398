// The catalogue of standard panels in "LocalData\PanelLib.txt" and the panel dialog's actions on
// it.
#pragma once

#include <functional>
#include <string>
#include <vector>

using CStringArray = std::vector<std::wstring>;

class CDlnDictionaryAdd;

// Whole text files of one entry per line. Reading trims each line and keeps
// empty ones only on request; false when the file is missing.
bool ReadTextLines(const std::wstring& strPath, CStringArray& arrLines, bool bKeepEmpty);
bool WriteTextLines(const std::wstring& strPath, const CStringArray& arrLines);

// "description:WxHxT".
std::wstring MakePanelRecord(const std::wstring& strDesc, const std::wstring& strW,
                             const std::wstring& strH, const std::wstring& strT);
// The description is what stands before the first ":", the sizes the rest
// split at every lower-case "x". True when there are exactly three sizes;
// otherwise the sizes are left alone.
bool SplitPanelRecord(const std::wstring& strRecord, std::wstring& strDesc, std::wstring& strW,
                      std::wstring& strH, std::wstring& strT);

// Shows the record editor modally, as the window does; true when it ended with OK.
using RECORD_EDITOR = std::function<bool(CDlnDictionaryAdd&)>;

// The catalogue rows in list order, and what the panel dialog does with the
// selected rows. The list shows m_arrPanels row for row.
class CPanelCatalogue {
public:
    static std::wstring GetPanelLibPath();

    // Up to the first empty line: what follows it is dropped at the next save.
    void LoadPanelLib();
    // Errors are not reported.
    bool SavePanelLib() const;

    // Double-click: the first selected row's sizes go to the three fields
    // when they split in three; otherwise nothing changes.
    bool FillSizes(const std::vector<int>& arrSelected, std::wstring& strW, std::wstring& strH,
                   std::wstring& strT) const;
    // "删除": removes by each selected index in ascending order, without
    // correcting the later indices for the earlier removals.
    bool DeleteSelected(const std::vector<int>& arrSelected);
    // "修改": one row only, edited in place.
    bool ChangeSelected(const std::vector<int>& arrSelected, const RECORD_EDITOR& editor);
    // "库扩充": a new record, the editor starting from the dialog's sizes.
    bool AddRecord(const std::wstring& strW, const std::wstring& strH, const std::wstring& strT,
                   const RECORD_EDITOR& editor);

    CStringArray m_arrPanels;
};

extern const wchar_t* const kNothingSelectedText;
