// The rows of the sortable list without a window: copies of the texts, headings and the
// number-aware order.
#pragma once

#include <string>
#include <vector>

// Digit runs made comparable as text: a lone digit gets a leading zero, a
// lone zero and runs of zeros drop out, other leading zeros go. So numbers
// up to two digits sort by value ("3" before "10") and longer ones do not
// ("100" before "20"): that is the list's rule.
std::wstring NormaliseDigits(std::wstring_view text);

// Both texts normalised, then compared code by code in the given direction.
int CompareListTexts(const std::wstring& a, const std::wstring& b, bool bAscending);

struct STRUCT_LIST_COLUMN {
    std::wstring strName;
    int nWidth = 0; // left aligned
};

// "name,width;name,width": for each comma the name runs up to it and the
// width (read as _wtoi reads) up to the next semicolon or the end.
void ParseHeadings(const std::wstring& text, std::vector<STRUCT_LIST_COLUMN>& columns);

// One row's record: its own copy of every column's text, made when the row is added.
struct STRUCT_LIST_ROW {
    std::vector<std::wstring> texts;
};

class CSortListModel {
public:
    enum ESortOutcome {
        SortNothing,     // only the column and direction were stored
        SortRows,        // the rows were sorted, the header shows the arrow
        SortRowsAndTell, // also the parent gets message 101
    };
    static constexpr unsigned kParentNotifyMessage = 101;

    // Adds the columns of a headings text; a text without a comma adds none.
    bool SetHeadings(const std::wstring& text);
    const std::vector<STRUCT_LIST_COLUMN>& GetColumns() const { return m_columns; }

    // One text per column (missing ones empty, extra ones dropped). Return the row.
    int AddItem(const std::vector<std::wstring>& texts);
    int InsertItemAt(int nRow, const std::vector<std::wstring>& texts); // -1 for a negative row
    bool SetItemTextAndCopy(int nRow, int nColumn, const std::wstring& text);
    std::wstring GetItemText(int nRow, int nColumn) const;
    int GetItemCount() const { return static_cast<int>(m_rows.size()); }
    bool DeleteItem(int nRow);
    void DeleteAllItems();

    ESortOutcome Sort(int nColumn, bool bAscending);
    // A header click with m_bAllColumns 0: the last sorted column turns round,
    // any other column sorts ascending.
    ESortOutcome ClickColumn(int nColumn);

    int m_nColumns = 0;
    int m_nSortColumn = -1;
    int m_bAscending = 1;
    unsigned char m_bAllColumns = 1;

private:
    STRUCT_LIST_ROW MakeRow(const std::vector<std::wstring>& texts) const;

    std::vector<STRUCT_LIST_COLUMN> m_columns;
    std::vector<STRUCT_LIST_ROW> m_rows;
};
