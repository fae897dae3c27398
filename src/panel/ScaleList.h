// Drawing scales: the ratio of a scale text, the size test of every field, and the remembered scale
// list.
#pragma once

#include <string>
#include <vector>

using CStringArray = std::vector<std::wstring>;

// "1:10" gives 10.0 and "2:1" gives 0.5: the number right of the first ":"
// divided by the number left of it. Empty counts as "1:1"; a text without
// ":" gives its own number. A zero on the left gives infinity.
double ScaleTextToRatio(const std::wstring& strScale);

// Digits, or digits "." digits, after trimming; ".5", "5." and signs are refused.
bool IsPositiveReal(const std::wstring& strText);

// Drops later duplicates (no case), then orders by the number right of the
// first ":", keeping the order of equal numbers.
void SortScaleList(CStringArray& arrScales);

// The nine scales offered when the scale file gives nothing.
CStringArray DefaultScaleList();

// "LocalData\DwgScale.txt" under the local install directory.
std::wstring GetScaleListPath();
// The file's scales, trimmed and without empty lines; the defaults when it gives none.
CStringArray LoadScaleList();
bool SaveScaleList(const CStringArray& arrScales);
