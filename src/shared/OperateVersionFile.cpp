// Version file records, version dates and the roll-forward that keeps a site's date growing.
#include "shared/OperateVersionFile.h"

#include "base/Environment.h"
#include "base/Format.h"
#include "base/NumberText.h"
#include "base/StrUtil.h"
#include "base/TextFile.h"
#include "host/SuiteInstallPaths.h"

#include <functional>
#include <stdexcept>

namespace {

bool SystemClock(std::tm& localTime) {
    return LocalTimeNow(localTime);
}

VERSION_CLOCK g_pVersionClock = &SystemClock;

// Calls onRecord for each record line of a version file, skipping blank lines
// and the first non-empty line whatever it holds; stops when onRecord says
// false. False when the file can't be opened.
bool ForEachRecordLine(const std::wstring& strFile,
                       const std::function<bool(const std::wstring&)>& onRecord) {
    CTextFile file;
    if (!file.Open(strFile, CTextFile::modeRead))
        return false;
    bool bHeader = true;
    std::wstring strLine;
    while (file.ReadString(strLine)) {
        strLine = StrTrim(strLine);
        if (strLine.empty())
            continue;
        if (bHeader) {
            bHeader = false;
            continue;
        }
        if (!onRecord(strLine))
            break;
    }
    return true;
}

} // namespace

void SetVersionClock(VERSION_CLOCK pClock) {
    g_pVersionClock = pClock ? pClock : &SystemClock;
}

bool VersionClockNow(std::tm& localTime) {
    return g_pVersionClock(localTime);
}

std::wstring VersionDateOfHeader(const std::wstring& strHeader) {
    return StrTrimLeft(strHeader, kVersionHeaderPrefix);
}

COperateVersionFile::STRUCT_FILE_INFO ParseVersionRecord(const std::wstring& strLine) {
    COperateVersionFile::STRUCT_FILE_INFO info;
    int nFirst = StrFind(strLine, L'|');
    if (nFirst < 0)
        return info;
    info.strPath = StrLeft(strLine, nFirst);
    int nSecond = StrFind(strLine, L'|', nFirst + 1);
    if (nSecond < 0)
        return info;
    info.strDate = StrMid(strLine, nFirst + 1, nSecond - nFirst - 1);
    info.strOprt = StrMid(strLine, nSecond + 1);
    return info;
}

COperateVersionFile::COperateVersionFile()
    : m_strVersionFile(JoinPath(GetInstallPath_QM(), L"Server.xml")) {}

COperateVersionFile::COperateVersionFile(const std::wstring& strVersionFile)
    : m_strVersionFile(strVersionFile) {}

COperateVersionFile::~COperateVersionFile() {
    ClearRecords();
}

void COperateVersionFile::ClearRecords() {
    m_arrFileInfo.clear();
}

void COperateVersionFile::ReadRecords() {
    if (!IsFileExist(m_strVersionFile))
        return;
    ForEachRecordLine(m_strVersionFile, [this](const std::wstring& strLine) {
        m_arrFileInfo.push_back(std::make_unique<STRUCT_FILE_INFO>(ParseVersionRecord(strLine)));
        return true;
    });
}

bool COperateVersionFile::RemoveRecords(const CStringArray& arrPaths) {
    if (arrPaths.empty())
        return false;
    for (const std::wstring& strPath : arrPaths) {
        for (auto it = m_arrFileInfo.begin(); it != m_arrFileInfo.end(); ++it) {
            if (EqualsNoCase((*it)->strPath, strPath)) {
                m_arrFileInfo.erase(it);
                break;
            }
        }
    }
    return true;
}

std::wstring COperateVersionFile::MakeVersionDate() {
    std::tm t{};
    int nYear = 1900, nMonth = 0, nDay = 0, nHour = -1, nMinute = -1, nSecond = -1;
    if (g_pVersionClock(t)) {
        nYear = t.tm_year + 1900;
        if (nYear < 100)
            nYear += 1900;
        nMonth = t.tm_mon + 1;
        nDay = t.tm_mday;
        nHour = t.tm_hour;
        nMinute = t.tm_min;
        nSecond = t.tm_sec;
    }
    return Format(L"%d,%2.2d,%2.2d,%2.2d,%2.2d,%2.2d", nYear, nMonth, nDay, nHour, nMinute,
                  nSecond);
}

// The date of a new commit: the clock's, unless the stored header is as new
// or newer; then the stored one with its last field raised by one, so that a
// site's date only grows even across slow clocks. There is no carry.
std::wstring COperateVersionFile::NextVersionDate() const {
    std::wstring strDate = MakeVersionDate();
    std::wstring strHeader;
    ReadFirstLine(m_strVersionFile, strHeader);
    if (StrFind(strHeader, kVersionHeaderPrefix) < 0)
        return strDate;
    std::wstring strStored = VersionDateOfHeader(strHeader);
    if (CompareNoCase(strStored, strDate) < 0)
        return strDate;
    int nLast = TextToInt(StrRight(strStored, 2)) + 1;
    std::wstring strKept = StrLeft(strStored, static_cast<int>(strStored.size()) - 3);
    return Format(L"%s,%s", strKept, Format(L"%2.2d", nLast));
}

bool COperateVersionFile::WriteRecords(const CStringArray& arrPaths, const CStringArray& arrOprts) {
    std::wstring strDate = NextVersionDate();
    std::wstring strHeader = Format(L"版本日期：%s", strDate);

    // A client's own commit of the parts database must not look like a change
    // it has yet to fetch, even if the version file can't be written.
    if (arrPaths.size() == 1 && EqualsNoCase(arrPaths[0], kMainLibPath))
        WriteTextFile(JoinPath(GetInstallPath_QM(), L"Client_PartLib.xml"), strHeader);

    if (arrOprts.size() < arrPaths.size())
        throw std::invalid_argument("fewer operation codes than paths");
    for (size_t i = 0; i < arrPaths.size(); ++i) {
        auto pInfo =
            std::make_unique<STRUCT_FILE_INFO>(STRUCT_FILE_INFO{arrPaths[i], strDate, arrOprts[i]});
        m_arrFileInfo.insert(m_arrFileInfo.begin(), std::move(pInfo));
    }

    CTextFile file;
    if (!file.Open(m_strVersionFile, CTextFile::modeCreateWrite))
        return false;
    std::wstring strText = strHeader + L"\n";
    for (size_t i = 0; i < m_arrFileInfo.size(); ++i) {
        const STRUCT_FILE_INFO& info = *m_arrFileInfo[i];
        bool bLast = i + 1 == m_arrFileInfo.size();
        strText +=
            Format(bLast ? L"%s|%s|%s" : L"%s|%s|%s\n", info.strPath, info.strDate, info.strOprt);
    }
    file.WriteString(strText);
    return file.Close();
}

bool COperateVersionFile::UpdateRecord(const std::wstring& strPath, const std::wstring& strOprt) {
    return UpdateRecords(CStringArray{strPath}, CStringArray{strOprt});
}

bool COperateVersionFile::UpdateRecords(const CStringArray& arrPaths,
                                        const CStringArray& arrOprts) {
    ClearRecords();
    ReadRecords();
    RemoveRecords(arrPaths);
    return WriteRecords(arrPaths, arrOprts);
}

bool IsSoundVersionLine(const std::wstring& strLine, bool bHeader) {
    std::wstring strTrimmed = StrTrim(strLine);
    if (bHeader)
        return StrFind(strTrimmed, kVersionHeaderPrefix) == 0;
    COperateVersionFile::STRUCT_FILE_INFO info = ParseVersionRecord(strTrimmed);
    return !info.strPath.empty() && !info.strDate.empty() &&
           (info.strOprt == L"MOD" || info.strOprt == L"DEL" || info.strOprt == L"REN");
}

size_t CountUnsoundVersionLines(const CStringArray& lines) {
    size_t nBad = 0;
    for (size_t i = 0; i < lines.size(); ++i)
        nBad += IsSoundVersionLine(lines[i], i == 0) ? 0 : 1;
    return nBad;
}

bool IsMainLibChanged(const std::wstring& strServerFile, const std::wstring& strClientHeader) {
    std::wstring strClientDate = VersionDateOfHeader(strClientHeader);
    bool bChanged = false;
    bool bOpened = ForEachRecordLine(strServerFile, [&](const std::wstring& strLine) {
        COperateVersionFile::STRUCT_FILE_INFO info = ParseVersionRecord(strLine);
        // Records stand newest first: all below this one are older still.
        if (!strClientDate.empty() && CompareNoCase(strClientDate, info.strDate) >= 0)
            return false;
        if (EqualsNoCase(info.strPath, kMainLibPath)) {
            bChanged = true;
            return false;
        }
        return true;
    });
    return bOpened && bChanged;
}
