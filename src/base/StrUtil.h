// CString-style helpers on std::wstring, with the platform's edge results.
// Case folding is that of the C locale: only the ASCII letters A-Z and a-z fold,
// and comparisons fold to lower case first, so "_x" sorts before "A".
#pragma once

#include <string>
#include <string_view>
#include <vector>

// The array of strings every layer passes around (MFC's CStringArray).
using CStringArray = std::vector<std::wstring>;

// _wcsicmp: <0, 0 or >0 after folding ASCII upper case to lower case.
int CompareNoCase(std::wstring_view a, std::wstring_view b);
bool EqualsNoCase(std::wstring_view a, std::wstring_view b);
wchar_t FoldLower(wchar_t ch);

// Left/Mid/Right clamp their counts as CString does: negative counts give
// nothing, counts past the end stop at the end.
std::wstring StrLeft(std::wstring_view s, int nCount);
std::wstring StrMid(std::wstring_view s, int nFirst);
std::wstring StrMid(std::wstring_view s, int nFirst, int nCount);
std::wstring StrRight(std::wstring_view s, int nCount);

// Find from an index; -1 when absent or when the start lies past the end.
int StrFind(std::wstring_view s, std::wstring_view sub, int nStart = 0);
int StrFind(std::wstring_view s, wchar_t ch, int nStart = 0);
int StrReverseFind(std::wstring_view s, wchar_t ch);
int StrFindOneOf(std::wstring_view s, std::wstring_view set);

// Without a set, trimming removes the C locale's white space.
std::wstring StrTrim(std::wstring_view s);
std::wstring StrTrim(std::wstring_view s, std::wstring_view set);
std::wstring StrTrimLeft(std::wstring_view s);
std::wstring StrTrimLeft(std::wstring_view s, std::wstring_view set);
std::wstring StrTrimRight(std::wstring_view s);
std::wstring StrTrimRight(std::wstring_view s, std::wstring_view set);

// Replaces every occurrence, left to right, without rescanning replaced
// text; returns the count. An empty search string replaces nothing.
int StrReplace(std::wstring& s, std::wstring_view strOld, std::wstring_view strNew);

std::wstring StrMakeUpper(std::wstring_view s);
std::wstring StrMakeLower(std::wstring_view s);

// UTF-8 is the OS's file-name and wire encoding; invalid input becomes U+FFFD.
std::wstring Utf8ToWide(std::string_view s);
std::string WideToUtf8(std::wstring_view s);
