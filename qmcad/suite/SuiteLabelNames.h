// The reference host's stand-in for the suite's name-table library, read from two files of the
// install tree.
#pragma once

#include "host/SuiteInstallPaths.h"
#include "host/SuiteLabelNames.h"

#include <string>

// "Data\TzZhuangZhiName.txt" (devices and units) and "Data\TzDzName.txt"
// (terminal strips) under the common resources: text in the workstation's
// code page, one "name|flag" per line; a line without "|" has flag 1, blank
// lines and lines starting with "#" are skipped. A missing file gives the
// built-in default table; an unreadable install path gives empty tables.
class CSuiteLabelNames : public ISuiteLabelNames {
public:
    explicit CSuiteLabelNames(ISuiteInstallPaths& paths) : m_paths(paths) {}

    static constexpr const wchar_t* kDeviceFile = L"Data\\TzZhuangZhiName.txt";
    static constexpr const wchar_t* kTerminalFile = L"Data\\TzDzName.txt";

    static CZhuangZhiDzNameArray DefaultDevices();
    static CZhuangZhiDzNameArray DefaultTerminals();
    static bool ReadNameFile(const std::wstring& strPath, CZhuangZhiDzNameArray& table);
    static bool WriteNameFile(const std::wstring& strPath, const CZhuangZhiDzNameArray& table,
                              const std::wstring& strTitle);

    // Writes the default tables where their files are missing, making "Data" if need be.
    bool WriteDefaultFiles();

    bool CreatZhuangZhiAndDzNameArray(CZhuangZhiDzNameArray& devices,
                                      CZhuangZhiDzNameArray& terminals) override;
    // Paths, modification times and sizes of both files.
    std::wstring NameTablesStamp() override;

private:
    std::wstring FilePath(const wchar_t* pszRelPath);

    ISuiteInstallPaths& m_paths;
};
