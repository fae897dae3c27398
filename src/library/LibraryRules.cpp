// Library item rules: name normalisation, paths, the block-name test, key filter, twins, mode.
#include "library/LibraryRules.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "drawingdata/DrawingRecords.h"

const wchar_t* const kNoFtpLoginText = L"没有通过FTP登录验证!";

bool NormaliseItemName(std::wstring& strName) {
    if (EqualsNoCase(StrRight(strName, 4), L".dwg"))
        strName = StrLeft(strName, static_cast<int>(strName.size()) - 4);
    return !strName.empty();
}

std::wstring MakeItemPath(const std::wstring& strDir, const std::wstring& strName) {
    return Format(L"%s%s.dwg", strDir, strName);
}

bool IsValidNewItemName(const std::wstring& strName) {
    return IsValidBlockName(strName);
}

std::wstring BlockNameRefusalText(const std::wstring& strName) {
    return Format(L"块名“%s”错误！\n块名不允许有空格等限制字符,且字符数小于等于31！\n", strName);
}

namespace {

struct KEY_RULE {
    unsigned nKey;
    bool bOnlyWithShift;
};

// 191 "/?" always; ";:" "8*" "'\"" ",<" ".>" only with Shift. Backslash and
// the bar stay allowed: a rename may carry a relative path.
constexpr KEY_RULE kSwallowedKeys[] = {
    {191, false}, {186, true}, {56, true}, {222, true}, {188, true}, {190, true},
};

} // namespace

bool IsNameKeySwallowed(unsigned nVirtualKey, bool bShift) {
    for (const KEY_RULE& rule : kSwallowedKeys)
        if (rule.nKey == nVirtualKey)
            return !rule.bOnlyWithShift || bShift;
    return false;
}

std::wstring MakeTwinDir(const std::wstring& strPath, const std::wstring& strLocalRoot,
                         LibraryKind fromKind) {
    std::wstring strRoot = StrTrimRight(strLocalRoot, L"\\");
    std::wstring strHole = strRoot + L"\\InstallHole";
    std::wstring strLayout = strRoot + L"\\LaySketch";
    std::wstring strTwin = strPath;
    if (fromKind == LibraryKind::Hole)
        StrReplace(strTwin, strHole, strLayout);
    else
        StrReplace(strTwin, strLayout, strHole);
    return strTwin;
}

int DeriveFtpMode(int nInstallStyle, int nLoginStatus) {
    if (nInstallStyle == 0)
        return 0;
    if (nLoginStatus == 0)
        return -1;
    return nInstallStyle;
}

int RecomputeFtpMode(int nInstallStyle, int nCurrentMode) {
    return nInstallStyle == 0 ? 0 : nCurrentMode;
}
