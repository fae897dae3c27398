// The browser's item list: its two sorts, its pages of sixteen cells and the search box's match.
#pragma once

#include "shared/fileops/FileOps.h"

#include <string>

// The plain sort: ascending without regard to case; names that differ only
// in case keep their order, as a bubble sort leaves them.
class CSortStringArray : public CStringArray {
public:
    using CStringArray::CStringArray;
    void Sort();
};

// The label sort over relative item paths ("KM12.dwg", "sub\3-1n.dwg"):
// items of the directory itself first, then by label order of their stems,
// subdirectories by label order of their names. It is an exchange sort over
// every pair and its result is that sort's, ties and all.
void SortByLabel(CStringArray& names);

// What loading the list does: the plain sort, then the label sort.
void SortLibraryNames(CStringArray& names);

inline constexpr int kCellsPerPage = 16;

// Pages for a number of items, rounded up; 0 items make 0 pages.
int GetPageCount(int nItems);
// The 1-based page that shows list item n (0-based).
int GetPageOfItem(int nItem);
// The cell, 0 to 15, that shows list item n.
int GetCellOfItem(int nItem);
// The list index that cell i shows on a 1-based page (may lie past the end).
int GetCellNameIndex(int nCell, int nPage);
// The page after a wheel turn: a positive delta goes back, a negative one
// forward, never past the first or last page; one page never turns.
int GetPageAfterWheel(int nPage, int nPages, int nDelta);

// The item the search box selects: the first whose file name (the text
// behind the last backslash, if one stands past the first character) starts
// with the typed text without regard to case. An empty text selects item 0;
// -1 when nothing matches.
int FindSearchMatch(const CStringArray& texts, const std::wstring& strTyped);
