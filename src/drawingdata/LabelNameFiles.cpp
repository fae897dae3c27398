// The suite's label setting files: single-line diagram names and the extra terminal symbols.
#include "drawingdata/LabelNameFiles.h"

#include "base/StrUtil.h"
#include "base/TextFile.h"
#include "host/SuiteInstallPaths.h"

bool ReadSingleLineNames(const std::wstring& strPath, CZhuangZhiDzNameArray& rows) {
    rows.clear();
    CTextFile file;
    if (!file.Open(strPath, CTextFile::modeRead))
        return false;
    bool bInside = false;
    std::wstring strLine;
    while (file.ReadString(strLine)) {
        if (strLine.empty() || strLine == L"$EOF")
            break;
        if (strLine == L"$BEGIN_SINGLELINENAME") {
            bInside = true;
            continue;
        }
        if (strLine == L"$END_SINGLELINENAME") {
            bInside = false;
            continue;
        }
        int nBar = StrFind(strLine, L'|');
        if (!bInside || nBar < 0)
            continue;
        std::wstring strName = StrLeft(strLine, nBar), strValue = StrMid(strLine, nBar + 1);
        if (strName.empty() || strValue.empty())
            continue;
        rows.push_back({strName, strValue == L"0" ? 0 : 1});
    }
    return true;
}

bool ReadExtraDzSymbols(const std::wstring& strPath, CStringArray& symbols) {
    static const std::wstring kMarker = L"可选符号:";
    symbols.clear();
    CTextFile file;
    bool bRead = file.Open(strPath, CTextFile::modeRead);
    std::wstring strLine;
    while (bRead && file.ReadString(strLine)) {
        int nAt = StrFind(strLine, kMarker);
        if (nAt < 0)
            continue;
        for (wchar_t ch : StrMid(strLine, nAt + static_cast<int>(kMarker.size())))
            if (ch != L' ' && ch != L'\t' && ch != L',')
                symbols.emplace_back(1, ch);
    }
    if (symbols.empty())
        symbols.push_back(L"'");
    return bRead;
}

namespace {
// Empty without an install path, so that nothing is read relative to the working directory.
std::wstring CommonResFile(const wchar_t* pszRelPath) {
    std::wstring strRoot = GetQuillmCommonResInstallPath();
    return strRoot.empty() ? L"" : strRoot + pszRelPath;
}
} // namespace

std::wstring GetRpLabelDefPath() {
    return CommonResFile(L"Data\\RpLabelDef.txt");
}

std::wstring GetExtraAddDzSettingsPath() {
    return CommonResFile(L"Data\\DzbCreate_ExtraAddDzSettings.txt");
}
