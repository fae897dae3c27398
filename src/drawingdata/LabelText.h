// Digit runs, splitting, the installation-unit prefix and the human order of device labels.
#pragma once

#include "shared/fileops/FileOps.h"

#include <string>

// Digits are the ASCII digits only: full-width digits are ordinary characters.
bool IsLabelDigit(wchar_t ch);

// The platform's _wtoi: leading blanks, a sign, digits; an empty or
// non-numeric text is 0 and an overflow stops at the int limits.
int LabelToInt(std::wstring_view text);

// At least one character, each a digit.
bool IsAllDigits(std::wstring_view text);
// The whole text when all digits, else the digits before the first non-digit.
std::wstring LeadingDigits(std::wstring_view text);
// Empty when all digits, else the digits behind the last non-digit.
std::wstring TrailingDigits(std::wstring_view text);
// An all-digit text is all number; otherwise the cut lies behind the last non-digit.
void SplitTrailingNumber(std::wstring_view text, std::wstring& outPrefix, std::wstring& outNumber);

// Splits at every occurrence, keeping empty parts; an empty separator gives
// the whole text as one part.
void SplitText(std::wstring_view text, std::wstring_view separator, CStringArray& outParts);

// Cuts a leading installation-unit prefix such as "1-", "1-2-" or "12'-" and
// returns the rest; outPrefix receives what was cut, dash included.
std::wstring StripLabelPrefix(const std::wstring& label, std::wstring& outPrefix);

// The order engineers expect: unit prefix, letters, leading number, then the
// trailing number or a, b, c. An empty label sorts last. <0, 0 or >0.
int CompareLabels(const std::wstring& a, const std::wstring& b);

// One side of CompareLabels, parsed: the browser sorts thousands of names
// and parses each once.
struct STRUCT_LABEL_KEY {
    bool bEmpty = false;
    int nPre = 0;        // the unit prefix as a number
    std::wstring strMid; // compared case-sensitively
    int nLead = 0;       // the leading digits
    int nSuffix = 0;     // trailing number, or the code of a final a, b or c
};
// bCutAtDash: the pair's other side differs in holding a dash past index 0.
STRUCT_LABEL_KEY ParseLabelKey(const std::wstring& label, bool bCutAtDash);
// True when the label holds a dash past index 0 once one leading dash is off.
bool LabelHasInnerDash(const std::wstring& label);
// Compares two non-empty parsed sides (empty ones are ordered by CompareLabels).
int CompareLabelKeys(const STRUCT_LABEL_KEY& a, const STRUCT_LABEL_KEY& b);
