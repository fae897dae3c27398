// The reader and writer of "Server.xml", the version file every workstation of a shared site
// rewrites.
#pragma once

#include "shared/fileops/FileOps.h"

#include <ctime>
#include <memory>
#include <string>
#include <vector>

// The prefix of every header line of the version files.
inline constexpr const wchar_t* kVersionHeaderPrefix = L"版本日期：";
// The site path of the main parts database, the one path with its own client stamp.
inline constexpr const wchar_t* kMainLibPath = L"Data\\TzMainLib.mdb";

// Gives the current local time; false when the conversion to local time
// failed. Tests install their own to fix the time.
using VERSION_CLOCK = bool (*)(std::tm& localTime);
// Installs a clock; nullptr restores the system's.
void SetVersionClock(VERSION_CLOCK pClock);
// The installed clock's local time.
bool VersionClockNow(std::tm& localTime);

class COperateVersionFile {
public:
    struct STRUCT_FILE_INFO {
        std::wstring strPath; // library path
        std::wstring strDate; // version date of the commit
        std::wstring strOprt; // "MOD", "DEL" or "REN"
    };

    // The version file in the install directory.
    COperateVersionFile();
    explicit COperateVersionFile(const std::wstring& strVersionFile);
    ~COperateVersionFile();
    COperateVersionFile(const COperateVersionFile&) = delete;
    COperateVersionFile& operator=(const COperateVersionFile&) = delete;

    void ClearRecords();
    // Appends the file's records in the file's order; a missing file adds nothing.
    void ReadRecords();
    // Removes, per path, the first record of that path (no case). False only
    // for an empty array.
    bool RemoveRecords(const CStringArray& arrPaths);
    // Adds a record per path at the head of the list and rewrites the file.
    // Throws std::invalid_argument when there are fewer codes than paths.
    bool WriteRecords(const CStringArray& arrPaths, const CStringArray& arrOprts);
    bool UpdateRecord(const std::wstring& strPath, const std::wstring& strOprt);
    bool UpdateRecords(const CStringArray& arrPaths, const CStringArray& arrOprts);

    // "year,month,day,hour,minute,second" of the current local time.
    static std::wstring MakeVersionDate();

    std::wstring m_strVersionFile;
    std::wstring m_strReserved;
    std::vector<std::unique_ptr<STRUCT_FILE_INFO>> m_arrFileInfo; // newest first

private:
    std::wstring NextVersionDate() const;
};

// The date part of a header line: the prefix's characters trimmed from the left.
std::wstring VersionDateOfHeader(const std::wstring& strHeader);

// Splits a trimmed record line at its first two bars; further bars stay in the code.
COperateVersionFile::STRUCT_FILE_INFO ParseVersionRecord(const std::wstring& strLine);

// Whether a line of a version file is whole: a record has a path, a date and
// one of the codes; a line cut short anywhere fails. The header (bHeader)
// has the header prefix.
bool IsSoundVersionLine(const std::wstring& strLine, bool bHeader);
// The number of unsound lines among a version file's non-blank lines, header first.
size_t CountUnsoundVersionLines(const CStringArray& lines);

// Whether the version file at strServerFile records a change of the main
// parts database newer than the date of the client's header line.
bool IsMainLibChanged(const std::wstring& strServerFile, const std::wstring& strClientHeader);
