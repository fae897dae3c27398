// Expansion of label texts such as "KM1~KM5", "KM1,2,3" or "1D~9D" into single labels.
#include "drawingdata/LabelExpand.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "drawingdata/LabelText.h"

#include <algorithm>

namespace {

bool IsUpper(wchar_t ch) {
    return ch >= L'A' && ch <= L'Z';
}
bool IsLower(wchar_t ch) {
    return ch >= L'a' && ch <= L'z';
}
bool SameLetterCase(wchar_t a, wchar_t b) {
    return (IsUpper(a) && IsUpper(b)) || (IsLower(a) && IsLower(b));
}

void AddLetters(const std::wstring& strHead, wchar_t a, wchar_t b, CStringArray& out) {
    out.clear();
    for (wchar_t ch = std::min(a, b); ch <= std::max(a, b); ++ch)
        out.push_back(strHead + ch);
}

// Numbers from the smaller to the larger, with a text before or behind.
// In single form an equal pair is listed twice, as the rules have it.
void AddNumbers(int nFirst, int nSecond, const std::wstring& strText, bool bTextFirst,
                bool bTwiceIfEqual, CStringArray& out) {
    out.clear();
    long long nLow = std::min(nFirst, nSecond), nHigh = std::max(nFirst, nSecond);
    if (nHigh - nLow + 1 > kMaxExpandedLabels)
        return;
    for (long long n = nLow; n <= nHigh; ++n) {
        std::wstring strNumber = Format(L"%d", n);
        out.push_back(bTextFirst ? strText + strNumber : strNumber + strText);
    }
    if (bTwiceIfEqual && nLow == nHigh)
        out.push_back(out.back());
}

// Letter suffix in single form: "KM1a~KM1c". The leading digits go.
void TryLetterSuffix(const std::wstring& a, const std::wstring& b, CStringArray& out) {
    size_t nLeadA = LeadingDigits(a).size(), nLeadB = LeadingDigits(b).size();
    std::wstring strMidA =
        StrMid(a, static_cast<int>(nLeadA), static_cast<int>(a.size() - nLeadA) - 1);
    std::wstring strMidB =
        StrMid(b, static_cast<int>(nLeadB), static_cast<int>(b.size() - nLeadB) - 1);
    if (strMidA == strMidB && SameLetterCase(a.back(), b.back()))
        AddLetters(strMidA, a.back(), b.back(), out);
}

// Gate Y: a number on one side, leading digits and a suffix on the other.
bool TryGateY(const std::wstring& a, const std::wstring& b, bool bDigitsA, bool bDigitsB,
              ERangeForm form, CStringArray& out) {
    std::wstring strLeadA = LeadingDigits(a), strLeadB = LeadingDigits(b);
    bool bOpen = form == ERangeForm::Single
                     ? bDigitsA
                     : (bDigitsA || bDigitsB) && (!strLeadA.empty() || !strLeadB.empty());
    if (!bOpen)
        return false;
    const std::wstring& strOther = bDigitsA ? b : a;
    std::wstring strSuffix = strOther.substr(LeadingDigits(strOther).size());
    AddNumbers(LabelToInt(bDigitsA ? a : strLeadA), LabelToInt(bDigitsA ? strLeadB : b), strSuffix,
               false, form == ERangeForm::Single, out);
    return true;
}

// Gate X: a number on one side, a prefix and trailing digits on the other.
bool TryGateX(const std::wstring& a, const std::wstring& b, bool bDigitsA, bool bDigitsB,
              ERangeForm form, CStringArray& out) {
    std::wstring strTrailA = TrailingDigits(a), strTrailB = TrailingDigits(b);
    bool bOpen = form == ERangeForm::Single
                     ? bDigitsB && !strTrailA.empty()
                     : (bDigitsA || bDigitsB) && (!strTrailA.empty() || !strTrailB.empty());
    if (!bOpen)
        return false;
    const std::wstring& strOther = bDigitsA ? b : a;
    std::wstring strPrefix = strOther.substr(0, strOther.size() - TrailingDigits(strOther).size());
    AddNumbers(LabelToInt(bDigitsA ? a : strTrailA), LabelToInt(bDigitsA ? strTrailB : b),
               strPrefix, true, form == ERangeForm::Single, out);
    return true;
}

} // namespace

void ExpandRangeParts(const std::wstring& a, const std::wstring& b, ERangeForm form,
                      CStringArray& outLabels) {
    outLabels.clear();
    if (a.empty() || b.empty())
        return;
    bool bSingle = form == ERangeForm::Single;
    bool bDigitsA = IsAllDigits(a), bDigitsB = IsAllDigits(b);
    if (bDigitsA && bDigitsB) {
        AddNumbers(LabelToInt(a), LabelToInt(b), L"", false, false, outLabels);
        return;
    }
    if (a.size() == 1 && b.size() == 1 && SameLetterCase(a[0], b[0])) {
        AddLetters(L"", a[0], b[0], outLabels);
        return;
    }
    if (bSingle)
        TryLetterSuffix(a, b, outLabels); // a later rule may still replace it
    std::wstring strTrailA = TrailingDigits(a), strTrailB = TrailingDigits(b);
    if (!strTrailA.empty() && !strTrailB.empty()) {
        std::wstring strPrefix = a.substr(0, a.size() - strTrailA.size());
        if (strPrefix == b.substr(0, b.size() - strTrailB.size())) {
            AddNumbers(LabelToInt(strTrailA), LabelToInt(strTrailB), strPrefix, true, bSingle,
                       outLabels);
            return;
        }
    }
    std::wstring strLeadA = LeadingDigits(a), strLeadB = LeadingDigits(b);
    if (!bDigitsA && !bDigitsB && !strLeadA.empty() && !strLeadB.empty()) {
        std::wstring strSuffix = a.substr(strLeadA.size());
        if (strSuffix == b.substr(strLeadB.size())) {
            AddNumbers(LabelToInt(strLeadA), LabelToInt(strLeadB), strSuffix, false, bSingle,
                       outLabels);
            return;
        }
    }
    CStringArray gated;
    if (TryGateY(a, b, bDigitsA, bDigitsB, form, gated) ||
        TryGateX(a, b, bDigitsA, bDigitsB, form, gated))
        outLabels.swap(gated);
}

void ExpandLabelRange(const std::wstring& range, CStringArray& outLabels) {
    outLabels.clear();
    CStringArray ends;
    SplitText(range, L"~", ends);
    if (ends.size() == 2)
        ExpandRangeParts(ends[0], ends[1], ERangeForm::List, outLabels);
}

namespace {

// "KM1,2,3": a bare number takes the prefix of the nearest label before it
// that is not a bare number (which may itself have inherited one).
void InheritPrefixes(CStringArray& labels) {
    long long nNearest = labels.empty() || IsAllDigits(labels[0]) ? -1 : 0;
    for (size_t i = 1; i < labels.size(); ++i) {
        if (IsAllDigits(labels[i]) && nNearest >= 0) {
            std::wstring strPrefix, strNumber;
            SplitTrailingNumber(labels[nNearest], strPrefix, strNumber);
            if (!strPrefix.empty() && IsAllDigits(strNumber))
                labels[i] = strPrefix + labels[i];
        }
        if (!IsAllDigits(labels[i]))
            nNearest = static_cast<long long>(i);
    }
}

bool IsBracketedComma(const std::wstring& s) {
    int p = StrFind(s, L'('), q = StrFind(s, L')'), c = StrFind(s, L',');
    return p >= 0 && q >= 1 && c >= 1 && p < c && c < q;
}

void ExpandList(const std::wstring& s, CStringArray& outLabels) {
    CStringArray parts, range;
    SplitText(s, L",", parts);
    for (std::wstring& part : parts) {
        StrReplace(part, L"～", L"~");
        if (StrFind(part, L'~', 1) < 0) {
            outLabels.push_back(part);
        } else {
            ExpandLabelRange(part, range);
            outLabels.insert(outLabels.end(), range.begin(), range.end());
        }
        if (static_cast<long long>(outLabels.size()) > kMaxExpandedLabels) {
            outLabels.clear();
            return;
        }
    }
    InheritPrefixes(outLabels);
}

} // namespace

void ExpandLabel(const std::wstring& label, CStringArray& outLabels) {
    outLabels.clear();
    std::wstring s = label;
    StrReplace(s, L"～", L"~");
    StrReplace(s, L"，", L",");
    bool bComma = StrFind(s, L',', 1) >= 0, bTilde = StrFind(s, L'~', 1) >= 0;
    if (!bComma && !bTilde) {
        outLabels.push_back(label);
        return;
    }
    if (!bComma) {
        CStringArray ends;
        SplitText(s, L"~", ends);
        if (ends.size() != 2 || ends[0].empty() || ends[1].empty())
            return;
        if (ends[0] == ends[1])
            outLabels = {ends[0], ends[1]};
        else
            ExpandRangeParts(ends[0], ends[1], ERangeForm::Single, outLabels);
        return;
    }
    if (IsBracketedComma(s)) {
        outLabels.push_back(label);
        return;
    }
    ExpandList(s, outLabels);
}
