// Digit runs, splitting, the installation-unit prefix and the human order of device labels.
#include "drawingdata/LabelText.h"

#include "base/StrUtil.h"

#include <climits>
#include <cwctype>

bool IsLabelDigit(wchar_t ch) {
    return ch >= L'0' && ch <= L'9';
}

int LabelToInt(std::wstring_view text) {
    size_t i = 0;
    while (i < text.size() && (text[i] == L' ' || (text[i] >= L'\t' && text[i] <= L'\r')))
        ++i;
    bool bNegative = false;
    if (i < text.size() && (text[i] == L'+' || text[i] == L'-'))
        bNegative = text[i++] == L'-';
    long long nValue = 0;
    for (; i < text.size() && IsLabelDigit(text[i]); ++i) {
        nValue = nValue * 10 + (text[i] - L'0');
        if (nValue > static_cast<long long>(INT_MAX) + 1)
            nValue = static_cast<long long>(INT_MAX) + 1; // saturate, keep reading digits
    }
    if (bNegative)
        return nValue > INT_MAX ? INT_MIN : static_cast<int>(-nValue);
    return nValue > INT_MAX ? INT_MAX : static_cast<int>(nValue);
}

bool IsAllDigits(std::wstring_view text) {
    if (text.empty())
        return false;
    for (wchar_t ch : text)
        if (!IsLabelDigit(ch))
            return false;
    return true;
}

std::wstring LeadingDigits(std::wstring_view text) {
    size_t n = 0;
    while (n < text.size() && IsLabelDigit(text[n]))
        ++n;
    return std::wstring(text.substr(0, n));
}

std::wstring TrailingDigits(std::wstring_view text) {
    size_t n = text.size();
    while (n > 0 && IsLabelDigit(text[n - 1]))
        --n;
    if (n == 0)
        return L""; // all digits, or empty
    return std::wstring(text.substr(n));
}

void SplitTrailingNumber(std::wstring_view text, std::wstring& outPrefix, std::wstring& outNumber) {
    size_t n = text.size();
    while (n > 0 && IsLabelDigit(text[n - 1]))
        --n;
    outPrefix = std::wstring(text.substr(0, n));
    outNumber = std::wstring(text.substr(n));
}

void SplitText(std::wstring_view text, std::wstring_view separator, CStringArray& outParts) {
    outParts.clear();
    if (separator.empty()) {
        outParts.emplace_back(text);
        return;
    }
    size_t nStart = 0;
    for (;;) {
        size_t nAt = text.find(separator, nStart);
        if (nAt == std::wstring_view::npos)
            break;
        outParts.emplace_back(text.substr(nStart, nAt - nStart));
        nStart = nAt + separator.size();
    }
    outParts.emplace_back(text.substr(nStart));
}

namespace {

bool IsUnitPrefix(std::wstring_view before) {
    bool bOnlyDigitsAndDashes = true;
    for (wchar_t ch : before)
        if (!IsLabelDigit(ch) && ch != L'-')
            bOnlyDigitsAndDashes = false;
    if (bOnlyDigitsAndDashes)
        return true;
    // Otherwise only digits followed by one apostrophe, as in "12'-".
    if (before.back() != L'\'')
        return false;
    for (size_t i = 0; i + 1 < before.size(); ++i)
        if (!IsLabelDigit(before[i]))
            return false;
    return true;
}

} // namespace

std::wstring StripLabelPrefix(const std::wstring& label, std::wstring& outPrefix) {
    outPrefix.clear();
    int d = StrReverseFind(label, L'-');
    if (d <= 0 || !IsUnitPrefix(std::wstring_view(label).substr(0, d)))
        return label;
    outPrefix = label.substr(0, d + 1);
    return label.substr(d + 1);
}

bool LabelHasInnerDash(const std::wstring& label) {
    size_t nFrom = !label.empty() && label[0] == L'-' ? 1 : 0;
    return label.find(L'-', nFrom + 1) != std::wstring::npos;
}

STRUCT_LABEL_KEY ParseLabelKey(const std::wstring& label, bool bCutAtDash) {
    STRUCT_LABEL_KEY key;
    if (label.empty()) {
        key.bEmpty = true;
        return key;
    }
    std::wstring text = label[0] == L'-' ? label.substr(1) : label;
    if (bCutAtDash) {
        size_t nDash = text.find(L'-', 1);
        if (nDash != std::wstring::npos)
            text.resize(nDash);
    }
    std::wstring strPrefix;
    std::wstring strRest = StripLabelPrefix(text, strPrefix);
    if (!strPrefix.empty() && strPrefix.back() == L'-')
        strPrefix.pop_back();
    key.nPre = LabelToInt(strPrefix);
    std::wstring strLead = LeadingDigits(strRest);
    key.nLead = LabelToInt(strLead);
    strRest.erase(0, strLead.size());
    std::wstring strSuffix;
    if (!strRest.empty() &&
        (strRest.back() == L'a' || strRest.back() == L'b' || strRest.back() == L'c'))
        strSuffix = strRest.substr(strRest.size() - 1);
    else
        strSuffix = TrailingDigits(strRest);
    key.strMid = strRest.substr(0, strRest.size() - strSuffix.size());
    if (IsAllDigits(strSuffix))
        key.nSuffix = LabelToInt(strSuffix);
    else if (!strSuffix.empty())
        key.nSuffix = strSuffix.back();
    return key;
}

int CompareLabelKeys(const STRUCT_LABEL_KEY& a, const STRUCT_LABEL_KEY& b) {
    if (a.nPre != b.nPre)
        return a.nPre < b.nPre ? -1 : 1;
    if (int n = a.strMid.compare(b.strMid); n != 0)
        return n < 0 ? -1 : 1;
    if (a.nLead != b.nLead)
        return a.nLead < b.nLead ? -1 : 1;
    if (a.nSuffix != b.nSuffix)
        return a.nSuffix < b.nSuffix ? -1 : 1;
    return 0;
}

int CompareLabels(const std::wstring& a, const std::wstring& b) {
    if (a.empty())
        return 1;
    if (b.empty())
        return -1;
    // A dash on one side only: compare what stands before it on each side.
    bool bCut = LabelHasInnerDash(a) != LabelHasInnerDash(b);
    return CompareLabelKeys(ParseLabelKey(a, bCut), ParseLabelKey(b, bCut));
}
