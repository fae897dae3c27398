// The history file: defaults of every module of the suite, read whole, written whole.
#include "settings/HistoryDataOprt.h"

#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/NumberText.h"
#include "base/TextFile.h"
#include "host/SuiteInstallPaths.h"
#include "shared/fileops/FileOps.h"

#include <stdexcept>

namespace {

struct HISTORY_RUN {
    int nFirst;
    int nLast;
    const wchar_t* pszValue;
};

// Positions 0 to 280; 281 to 296 count 1 to 16. Other modules own most of
// these positions: they must stay exactly as they are.
const HISTORY_RUN kDefaultRuns[] = {
    {0, 0, L"1"},       {1, 3, L""},
    {4, 6, L"1"},       {7, 7, L""},
    {8, 8, L"0"},       {9, 10, L"1"},
    {11, 13, L"0.0"},   {14, 14, L"0"},
    {15, 17, L""},      {18, 20, L"1"},
    {21, 22, L"0.0"},   {23, 23, L"0"},
    {24, 24, L""},      {25, 25, L"0.0"},
    {26, 26, L"1"},     {27, 28, L""},
    {29, 29, L"0.0"},   {30, 30, L"1"},
    {31, 32, L""},      {33, 33, L"0.0"},
    {34, 34, L"1"},     {35, 38, L""},
    {39, 39, L"1"},     {40, 41, L""},
    {42, 44, L"1"},     {45, 47, L"0.0"},
    {48, 50, L""},      {51, 53, L"0.00"},
    {54, 54, L"0"},     {55, 55, L"1"},
    {56, 56, L""},      {57, 60, L"0"},
    {61, 61, L"1"},     {62, 65, L"0"},
    {66, 66, L"1"},     {67, 67, L"0"},
    {68, 68, L"3"},     {69, 69, L"0"},
    {70, 70, L"A"},     {71, 72, L"0"},
    {73, 73, L"8"},     {74, 74, L"10"},
    {75, 78, L"0"},     {79, 81, L"1"},
    {82, 82, L"10"},    {83, 83, L"2"},
    {84, 84, L"1"},     {85, 85, L"0.0"},
    {86, 86, L"-5.0"},  {87, 87, L"1"},
    {88, 89, L"0"},     {90, 91, L"1"},
    {92, 93, L"0"},     {94, 95, L""},
    {96, 96, L"0"},     {97, 97, L""},
    {98, 99, L"1"},     {100, 100, L"0"},
    {101, 103, L"1"},   {104, 104, L"0"},
    {105, 116, L""},    {117, 117, L"1"},
    {118, 164, L"0"},   {165, 168, L"1"},
    {169, 176, L"0"},   {177, 179, L"1"},
    {180, 183, L""},    {184, 184, L"2.0"},
    {185, 185, L"4.0"}, {186, 186, L"5.0"},
    {187, 187, L"0"},   {188, 188, L""},
    {189, 190, L"0"},   {191, 192, L"800"},
    {193, 193, L"1"},   {194, 194, L"12"},
    {195, 195, L"1"},   {196, 196, L"0"},
    {197, 198, L"1"},   {199, 203, L""},
    {204, 207, L"0"},   {208, 210, L"1"},
    {211, 212, L"0"},   {213, 213, L"2.5"},
    {214, 214, L"0.7"}, {215, 216, L"0"},
    {217, 217, L"1"},   {218, 218, L""},
    {219, 221, L"0"},   {222, 222, L"1"},
    {223, 227, L""},    {228, 228, L"1"},
    {229, 229, L"4"},   {230, 230, L"WL"},
    {231, 233, L""},    {234, 234, L"0"},
    {235, 236, L""},    {237, 237, L"C30-15L(1.5)"},
    {238, 240, L"0"},   {241, 241, L""},
    {242, 250, L"1"},   {251, 257, L"0"},
    {258, 262, L""},    {263, 266, L"1"},
    {267, 280, L"0"},
};

std::wstring JoinValues(const std::vector<std::wstring>& arrValues) {
    std::wstring strText;
    for (size_t i = 0; i < arrValues.size(); ++i) {
        if (i > 0)
            strText += L"\n";
        strText += arrValues[i];
    }
    return strText;
}

} // namespace

std::vector<std::wstring> CHistoryDataOprt::DefaultValues() {
    std::vector<std::wstring> arrValues;
    for (const HISTORY_RUN& run : kDefaultRuns)
        for (int n = run.nFirst; n <= run.nLast; ++n)
            arrValues.push_back(run.pszValue);
    for (int n = 1; n <= 16; ++n)
        arrValues.push_back(Format(L"%d", n));
    return arrValues;
}

std::wstring CHistoryDataOprt::GetHistoryFilePath() {
    return JoinPath(GetInstallPath_QM(), L"LocalData\\HistoryData.txt");
}

CHistoryDataOprt::CHistoryDataOprt() : m_arrValues(DefaultValues()) {
    std::wstring strPath = GetHistoryFilePath();
    if (!IsFileExist(strPath)) {
        WriteValues();
        return;
    }
    CTextFile file;
    if (!file.Open(strPath, CTextFile::modeRead))
        return;
    std::wstring strLine;
    for (size_t n = 0; file.ReadString(strLine); ++n) {
        if (n < m_arrValues.size())
            m_arrValues[n] = strLine;
        else
            m_arrValues.push_back(strLine); // a newer suite's values are kept
    }
}

CHistoryDataOprt::~CHistoryDataOprt() {
    if (!m_bModified)
        return;
    std::wstring strDir = JoinPath(GetInstallPath_QM(), L"LocalData");
    if (!FsIsDirectory(strDir))
        FsCreateDirectory(strDir);
    WriteValues();
}

void CHistoryDataOprt::WriteValues() const {
    CTextFile file;
    if (file.Open(GetHistoryFilePath(), CTextFile::modeCreateWrite))
        file.WriteString(JoinValues(m_arrValues));
}

void CHistoryDataOprt::GetText(int nPos, std::wstring& strValue) const {
    strValue.clear();
    if (nPos >= 0 && nPos < static_cast<int>(m_arrValues.size()))
        strValue = m_arrValues[nPos];
}

void CHistoryDataOprt::GetInt(int nPos, int& nValue) const {
    std::wstring strValue;
    GetText(nPos, strValue);
    nValue = TextToInt(strValue);
}

void CHistoryDataOprt::GetReal(int nPos, double& dValue) const {
    std::wstring strValue;
    GetText(nPos, strValue);
    dValue = TextToReal(strValue);
}

void CHistoryDataOprt::SetText(int nPos, const std::wstring& strValue) {
    if (nPos < 0)
        throw std::invalid_argument("negative history position");
    if (nPos >= static_cast<int>(m_arrValues.size()))
        return;
    m_bModified = 1;
    m_arrValues[nPos] = strValue;
}

void CHistoryDataOprt::SetInt(int nPos, int nValue) {
    SetText(nPos, Format(L"%d", nValue));
}

void CHistoryDataOprt::SetReal(int nPos, double dValue) {
    SetText(nPos, Format(L"%.2f", dValue));
}
