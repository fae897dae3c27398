// Readers of the Data directory's table files, with the defaults of a fresh installation.
#include "settings/DataTables.h"

#include "base/Format.h"
#include "base/NumberText.h"
#include "base/StrUtil.h"
#include "host/SuiteInstallPaths.h"
#include "shared/fileops/FileOps.h"

#include <iterator>

namespace {

// Module-wide caches; everything runs on the host's main thread.
bool g_bDistLimitRead = false;
double g_dDistLimit = 0.5;
bool g_bErpModeRead = false;
int g_nErpMode = 0;

const wchar_t* const kDefaultTerminalTypes[] = {
    L"普通端子:,6.2",
    L"光隔端子:,6.2",
    L"光藕端子:,6.2",
    L"电流端子:粗线,8.2",
    L"试验端子:粗线,8.2",
    L"熔断器端子:熔断器符号,6.2",
    L"保险端子:熔断器符号,6.2",
    L"电压端子:▽,6.2",
    L"刀闸端子:＆,6.2",
    L"双进双出端子:＃,6.2",
    L"双进双出刀闸端子:＃＆,6.2",
};
const wchar_t* const kDefaultWireTypes[] = {
    L"三芯屏蔽线:@",       L"屏蔽双绞线:*",        L"4*0.5mm屏蔽线:★",
    L"9芯单头(孔)DB9线:◆", L"≥8芯单头(孔)DB9线:◇", L"9芯单头(针)DB9线:■",
};
const wchar_t* const kDefaultCircuitTypes[] = {L"电流回路:", L"电压回路:", L"普通回路:"};

std::wstring DataFilePath(const wchar_t* pszName) {
    return JoinPath(GetInstallPath_QM(), pszName);
}

CStringArray Split(const std::wstring& strText, wchar_t chSep) {
    CStringArray arrParts;
    size_t nStart = 0;
    for (size_t n = strText.find(chSep); n != std::wstring::npos; n = strText.find(chSep, nStart)) {
        arrParts.push_back(strText.substr(nStart, n - nStart));
        nStart = n + 1;
    }
    arrParts.push_back(strText.substr(nStart));
    return arrParts;
}

// Lines of a table file; empty when the file is missing or has no lines.
CStringArray ReadTable(const wchar_t* pszName) {
    CStringArray arrLines;
    ReadLines(DataFilePath(pszName), arrLines, false);
    return arrLines;
}

template <size_t N> CStringArray ToArray(const wchar_t* const (&arrTexts)[N]) {
    return CStringArray(std::begin(arrTexts), std::end(arrTexts));
}

void SplitAtFirstColon(const std::wstring& strLine, std::wstring& strName, std::wstring& strValue) {
    std::wstring strText = StrTrim(NormaliseTableLine(strLine));
    int nColon = StrFind(strText, L':');
    strName = nColon < 0 ? strText : StrLeft(strText, nColon);
    strValue = nColon < 0 ? std::wstring() : StrMid(strText, nColon + 1);
}

} // namespace

std::wstring NormaliseTableLine(std::wstring strLine) {
    StrReplace(strLine, L"：", L":");
    StrReplace(strLine, L"，", L",");
    return strLine;
}

double GetDistLimit() {
    if (g_bDistLimitRead)
        return g_dDistLimit;
    g_bDistLimitRead = true;
    std::wstring strLine;
    if (ReadFirstLine(DataFilePath(L"Data\\DistLimit.txt"), strLine)) {
        double dValue = TextToReal(strLine);
        if (dValue > 0)
            g_dDistLimit = dValue;
    }
    return g_dDistLimit;
}

int GetErpMode() {
    if (g_bErpModeRead)
        return g_nErpMode;
    std::wstring strLine;
    if (!ReadFirstLine(DataFilePath(L"Data\\ErpOrCad.txt"), strLine))
        return 0;
    g_bErpModeRead = true;
    std::wstring strHead = StrLeft(strLine, 3);
    g_nErpMode = EqualsNoCase(strHead, L"Erp") ? 1 : EqualsNoCase(strHead, L"BSF") ? 2 : 0;
    return g_nErpMode;
}

void ResetDataTableCaches() {
    g_bDistLimitRead = false;
    g_dDistLimit = 0.5;
    g_bErpModeRead = false;
    g_nErpMode = 0;
}

void ReadTerminalTypes(CStringArray& arrName, CStringArray& arrSymbol, CStringArray& arrWidth,
                       CStringArray& arrExtra) {
    arrName.clear();
    arrSymbol.clear();
    arrWidth.clear();
    arrExtra.clear();
    CStringArray arrLines = ReadTable(L"Data\\DZBDZLXFH.txt");
    if (arrLines.empty() || StrFindOneOf(arrLines[0], L",，") < 0)
        arrLines = ToArray(kDefaultTerminalTypes);
    for (const std::wstring& strLine : arrLines) {
        std::wstring strName, strValue;
        SplitAtFirstColon(strLine, strName, strValue);
        strValue = StrTrim(Split(strValue, L':')[0]);
        CStringArray arrParts = Split(strValue, L',');
        arrName.push_back(strName);
        arrSymbol.push_back(arrParts[0]);
        arrWidth.push_back(Format(L"%.2f", TextToReal(arrParts.size() > 1 ? arrParts[1] : L"")));
        // The extra text is all that follows the second comma, commas included.
        std::wstring strExtra;
        if (arrParts.size() > 2) {
            int nFirst = StrFind(strValue, L',');
            strExtra = StrMid(strValue, StrFind(strValue, L',', nFirst + 1) + 1);
        }
        arrExtra.push_back(strExtra);
    }
}

void ReadWireTypes(CStringArray& arrName, CStringArray& arrSymbol) {
    arrName.clear();
    arrSymbol.clear();
    CStringArray arrLines = ReadTable(L"Data\\DZBDXLXFH.txt");
    if (arrLines.empty())
        arrLines = ToArray(kDefaultWireTypes);
    for (const std::wstring& strLine : arrLines) {
        std::wstring strName, strValue;
        SplitAtFirstColon(strLine, strName, strValue);
        arrName.push_back(strName);
        arrSymbol.push_back(Split(strValue, L',')[0]);
    }
}

void ReadCircuitTypes(CStringArray& arrName, CStringArray& arrValue) {
    arrName.clear();
    arrValue.clear();
    CStringArray arrLines = ReadTable(L"Data\\DZBHUILUFH.txt");
    if (arrLines.empty())
        arrLines = ToArray(kDefaultCircuitTypes);
    for (const std::wstring& strLine : arrLines) {
        std::wstring strName, strValue;
        SplitAtFirstColon(strLine, strName, strValue);
        arrName.push_back(strName);
        arrValue.push_back(strValue);
    }
}
