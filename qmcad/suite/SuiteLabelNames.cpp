// The reference host's stand-in for the suite's name-table library, read from two files of the
// install tree.
#include "suite/SuiteLabelNames.h"

#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"
#include "base/TextFile.h"

#include <cwchar>

CZhuangZhiDzNameArray CSuiteLabelNames::DefaultDevices() {
    // Contactors, relays, breakers, fuses, buttons, lamps, meters,
    // transformers; "n" is a protection unit ("1n") and never opens a label.
    return {{L"KM", 1}, {L"KA", 1}, {L"KT", 1}, {L"QF", 1}, {L"QS", 1},
            {L"FU", 1}, {L"FR", 1}, {L"SB", 1}, {L"SA", 1}, {L"HL", 1},
            {L"PA", 1}, {L"PV", 1}, {L"TA", 1}, {L"TC", 1}, {L"n", 0}};
}

CZhuangZhiDzNameArray CSuiteLabelNames::DefaultTerminals() {
    // Terminal strips "XT1", "X2"; "D" only behind a number, as in "1D".
    return {{L"XT", 1}, {L"X", 1}, {L"D", 0}};
}

bool CSuiteLabelNames::ReadNameFile(const std::wstring& strPath, CZhuangZhiDzNameArray& table) {
    table.clear();
    CStringArray lines; // trimmed, blank lines left out
    if (!ReadTextFileLines(strPath, lines, false))
        return false;
    for (const std::wstring& strLine : lines) {
        if (strLine[0] == L'#')
            continue;
        int nBar = StrFind(strLine, L'|');
        STRUCT_ZHUANGZHI_DZ_NAME row;
        row.name = StrTrim(nBar < 0 ? strLine : StrLeft(strLine, nBar));
        if (nBar >= 0)
            row.flag =
                static_cast<int>(std::wcstol(StrMid(strLine, nBar + 1).c_str(), nullptr, 10));
        if (!row.name.empty())
            table.push_back(row);
    }
    return true;
}

bool CSuiteLabelNames::WriteNameFile(const std::wstring& strPath,
                                     const CZhuangZhiDzNameArray& table,
                                     const std::wstring& strTitle) {
    CTextFile file;
    if (!file.Open(strPath, CTextFile::modeCreateWrite))
        return false;
    std::wstring strText = L"# " + strTitle + L"\n# 名称|标志: 1 可在标注开头, 0 前面须有字符\n";
    for (const STRUCT_ZHUANGZHI_DZ_NAME& row : table)
        strText += Format(L"%s|%d\n", row.name, row.flag);
    return file.WriteString(strText) && file.Close();
}

std::wstring CSuiteLabelNames::FilePath(const wchar_t* pszRelPath) {
    std::wstring strRoot = m_paths.CommonResInstallPath();
    return strRoot.empty() ? L"" : strRoot + pszRelPath;
}

bool CSuiteLabelNames::WriteDefaultFiles() {
    std::wstring strDevices = FilePath(kDeviceFile), strTerminals = FilePath(kTerminalFile);
    if (strDevices.empty())
        return false;
    std::wstring strDataDir = m_paths.CommonResInstallPath() + L"Data";
    if (!FsIsDirectory(strDataDir) && !FsCreateDirectory(strDataDir))
        return false;
    bool bOk = true;
    if (!FsExists(strDevices))
        bOk = WriteNameFile(strDevices, DefaultDevices(), L"装置名称表") && bOk;
    if (!FsExists(strTerminals))
        bOk = WriteNameFile(strTerminals, DefaultTerminals(), L"端子排名称表") && bOk;
    return bOk;
}

bool CSuiteLabelNames::CreatZhuangZhiAndDzNameArray(CZhuangZhiDzNameArray& devices,
                                                    CZhuangZhiDzNameArray& terminals) {
    devices.clear();
    terminals.clear();
    std::wstring strDevices = FilePath(kDeviceFile), strTerminals = FilePath(kTerminalFile);
    if (strDevices.empty())
        return false;
    if (!FsExists(strDevices))
        devices = DefaultDevices();
    else if (!ReadNameFile(strDevices, devices))
        return false;
    if (!FsExists(strTerminals))
        terminals = DefaultTerminals();
    else if (!ReadNameFile(strTerminals, terminals))
        return false;
    return true;
}

std::wstring CSuiteLabelNames::NameTablesStamp() {
    std::wstring strStamp;
    for (const wchar_t* pszFile : {kDeviceFile, kTerminalFile}) {
        std::wstring strPath = FilePath(pszFile);
        FS_FIND_DATA info;
        if (!strPath.empty() && FsGetInfo(strPath, info))
            strStamp +=
                Format(L"%s|%d.%09d|%d;", strPath, info.nModified, info.nModifiedNs, info.nSize);
        else
            strStamp += strPath + L"|-;";
    }
    return strStamp;
}
