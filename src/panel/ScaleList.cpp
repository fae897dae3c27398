// Scale texts and the scale list file.
#include "panel/ScaleList.h"

#include "base/NumberText.h"
#include "base/StrUtil.h"
#include "host/SuiteInstallPaths.h"
#include "panel/PanelCatalogue.h"
#include "shared/fileops/FileOps.h"

#include <utility>

namespace {

bool IsAllDigits(std::wstring_view text) {
    if (text.empty())
        return false;
    for (wchar_t ch : text)
        if (ch < L'0' || ch > L'9')
            return false;
    return true;
}

double RightNumber(const std::wstring& strScale) {
    return TextToReal(StrMid(strScale, StrFind(strScale, L':') + 1));
}

} // namespace

double ScaleTextToRatio(const std::wstring& strScale) {
    if (strScale.empty())
        return 1.0;
    int nColon = StrFind(strScale, L':');
    if (nColon < 0)
        return TextToReal(strScale);
    return TextToReal(StrMid(strScale, nColon + 1)) / TextToReal(StrLeft(strScale, nColon));
}

bool IsPositiveReal(const std::wstring& strText) {
    std::wstring strValue = StrTrim(strText);
    if (strValue.empty() || strValue[0] == L'-')
        return false;
    int nDot = StrFind(strValue, L'.');
    if (nDot < 0)
        return IsAllDigits(strValue);
    return IsAllDigits(StrLeft(strValue, nDot)) && IsAllDigits(StrMid(strValue, nDot + 1));
}

void SortScaleList(CStringArray& arrScales) {
    CStringArray arrUnique;
    for (const std::wstring& strScale : arrScales) {
        bool bSeen = false;
        for (const std::wstring& strKept : arrUnique)
            bSeen = bSeen || EqualsNoCase(strKept, strScale);
        if (!bSeen)
            arrUnique.push_back(strScale);
    }
    // A bubble sort: stable, and the lists are a handful of entries.
    for (size_t nEnd = arrUnique.size(); nEnd > 1; --nEnd)
        for (size_t i = 0; i + 1 < nEnd; ++i)
            if (RightNumber(arrUnique[i]) > RightNumber(arrUnique[i + 1]))
                std::swap(arrUnique[i], arrUnique[i + 1]);
    arrScales = std::move(arrUnique);
}

CStringArray DefaultScaleList() {
    return {L"1:1", L"1:1.5", L"1:2", L"1:2.5", L"1:3", L"1:4", L"1:5", L"1:6", L"1:10"};
}

std::wstring GetScaleListPath() {
    return JoinPath(GetQuillmLocalInstallPath(), L"LocalData\\DwgScale.txt");
}

CStringArray LoadScaleList() {
    CStringArray arrScales;
    ReadTextLines(GetScaleListPath(), arrScales, false);
    if (arrScales.empty())
        arrScales = DefaultScaleList();
    return arrScales;
}

bool SaveScaleList(const CStringArray& arrScales) {
    return WriteTextLines(GetScaleListPath(), arrScales);
}
