// The rows of the sortable list without a window: copies of the texts, headings and the
// number-aware order.
#include "ui/SortListModel.h"

#include "base/StrUtil.h"

#include <algorithm>
#include <climits>
#include <cwchar>

namespace {

bool IsDigit(wchar_t ch) {
    return ch >= L'0' && ch <= L'9';
}

void AppendDigitRun(std::wstring_view run, std::wstring& out) {
    if (run.size() == 1) {
        if (run[0] != L'0') {
            out += L'0';
            out += run[0];
        }
        return;
    }
    if (run[0] != L'0') {
        out += run;
        return;
    }
    size_t nFirst = run.find_first_not_of(L'0');
    if (nFirst == std::wstring_view::npos)
        return; // zeros only
    if (run.size() - nFirst == 1)
        out += L'0';
    out += run.substr(nFirst);
}

// _wtoi of a width text.
int WidthOf(const std::wstring& text) {
    return static_cast<int>(
        std::clamp<long>(std::wcstol(text.c_str(), nullptr, 10), INT_MIN, INT_MAX));
}

} // namespace

std::wstring NormaliseDigits(std::wstring_view text) {
    std::wstring out;
    out.reserve(text.size() + 4);
    size_t i = 0;
    while (i < text.size()) {
        if (!IsDigit(text[i])) {
            out += text[i++];
            continue;
        }
        size_t nStart = i;
        while (i < text.size() && IsDigit(text[i]))
            ++i;
        AppendDigitRun(text.substr(nStart, i - nStart), out);
    }
    return out;
}

int CompareListTexts(const std::wstring& a, const std::wstring& b, bool bAscending) {
    int n = NormaliseDigits(a).compare(NormaliseDigits(b));
    n = n < 0 ? -1 : (n > 0 ? 1 : 0);
    return bAscending ? n : -n;
}

void ParseHeadings(const std::wstring& text, std::vector<STRUCT_LIST_COLUMN>& columns) {
    std::wstring rest = text;
    for (int nComma; (nComma = StrFind(rest, L',')) >= 0;) {
        STRUCT_LIST_COLUMN column;
        column.strName = StrLeft(rest, nComma);
        rest = StrMid(rest, nComma + 1);
        int nSemicolon = StrFind(rest, L';');
        std::wstring strWidth = nSemicolon < 0 ? rest : StrLeft(rest, nSemicolon);
        rest = nSemicolon < 0 ? L"" : StrMid(rest, nSemicolon + 1);
        column.nWidth = WidthOf(strWidth);
        columns.push_back(column);
    }
}

bool CSortListModel::SetHeadings(const std::wstring& text) {
    ParseHeadings(text, m_columns);
    m_nColumns = static_cast<int>(m_columns.size());
    return true;
}

STRUCT_LIST_ROW CSortListModel::MakeRow(const std::vector<std::wstring>& texts) const {
    STRUCT_LIST_ROW row;
    row.texts.resize(m_nColumns);
    for (int i = 0; i < m_nColumns && i < static_cast<int>(texts.size()); ++i)
        row.texts[i] = texts[i];
    return row;
}

int CSortListModel::AddItem(const std::vector<std::wstring>& texts) {
    return InsertItemAt(GetItemCount(), texts);
}

int CSortListModel::InsertItemAt(int nRow, const std::vector<std::wstring>& texts) {
    if (nRow < 0)
        return -1;
    nRow = std::min(nRow, GetItemCount());
    m_rows.insert(m_rows.begin() + nRow, MakeRow(texts));
    return nRow;
}

bool CSortListModel::SetItemTextAndCopy(int nRow, int nColumn, const std::wstring& text) {
    if (nRow < 0 || nRow >= GetItemCount() || nColumn < 0 || nColumn >= m_nColumns)
        return false;
    m_rows[nRow].texts[nColumn] = text;
    return true;
}

std::wstring CSortListModel::GetItemText(int nRow, int nColumn) const {
    if (nRow < 0 || nRow >= GetItemCount() || nColumn < 0 ||
        nColumn >= static_cast<int>(m_rows[nRow].texts.size()))
        return L"";
    return m_rows[nRow].texts[nColumn];
}

bool CSortListModel::DeleteItem(int nRow) {
    if (nRow < 0 || nRow >= GetItemCount())
        return false;
    m_rows.erase(m_rows.begin() + nRow);
    return true;
}

void CSortListModel::DeleteAllItems() {
    m_rows.clear();
}

CSortListModel::ESortOutcome CSortListModel::Sort(int nColumn, bool bAscending) {
    m_nSortColumn = nColumn;
    m_bAscending = bAscending ? 1 : 0;
    if (!m_bAllColumns && nColumn != 0)
        return SortNothing;
    auto TextOf = [nColumn](const STRUCT_LIST_ROW& row) -> const std::wstring& {
        static const std::wstring kEmpty;
        return nColumn >= 0 && nColumn < static_cast<int>(row.texts.size()) ? row.texts[nColumn]
                                                                            : kEmpty;
    };
    // Each text is normalised once, not once per comparison.
    std::vector<std::pair<std::wstring, size_t>> keys;
    keys.reserve(m_rows.size());
    for (size_t i = 0; i < m_rows.size(); ++i)
        keys.emplace_back(NormaliseDigits(TextOf(m_rows[i])), i);
    std::stable_sort(keys.begin(), keys.end(), [bAscending](const auto& a, const auto& b) {
        return bAscending ? a.first < b.first : b.first < a.first;
    });
    std::vector<STRUCT_LIST_ROW> sorted;
    sorted.reserve(m_rows.size());
    for (const auto& key : keys)
        sorted.push_back(std::move(m_rows[key.second]));
    m_rows.swap(sorted);
    return m_bAllColumns ? SortRows : SortRowsAndTell;
}

CSortListModel::ESortOutcome CSortListModel::ClickColumn(int nColumn) {
    bool bAscending = nColumn == m_nSortColumn ? !m_bAscending : true;
    return Sort(nColumn, bAscending);
}
