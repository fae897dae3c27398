// The shared demo, written with the module's own version-file and login-file writers.
#include "DemoSite.h"

#include "demo/DemoInstall.h"
#include "shared/FtpLoginInfo.h"
#include "shared/OperateVersionFile.h"
#include "shared/fileops/FileOps.h"

#include "base/FileSystem.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <algorithm>
#include <ctime>

const wchar_t* const kSharedDemoVersion = L"2026,11,20,09,00,00";
const wchar_t* const kSharedDemoOldVersion = L"2026,11,19,17,30,00";

namespace {

// The site's two commits have fixed stamps, so that the demo is the same every time: the
// libraries on the 19th at 17:30, then one new meter on the 20th at 9:00, which the second
// workstation hasn't fetched yet.
int g_nCommit = 0;

bool DemoClock(std::tm& t) {
    t = std::tm{};
    t.tm_year = 2026 - 1900;
    t.tm_mon = 10;
    t.tm_mday = g_nCommit == 0 ? 19 : 20;
    t.tm_hour = g_nCommit == 0 ? 17 : 9;
    t.tm_min = g_nCommit == 0 ? 30 : 0;
    return true;
}

constexpr const wchar_t* kNewItem = L"InstallHole\\仪表\\多功能电力仪表";

// Copies the files under strFrom to strTo, noting each as a site path under strRel.
bool CopyTree(const std::wstring& strFrom, const std::wstring& strTo, const std::wstring& strRel,
              CStringArray& paths) {
    if (!FsIsDirectory(strTo) && !FsCreateDirectory(strTo))
        return false;
    std::vector<FS_FIND_DATA> found;
    FsFind(strFrom + L"\\*.*", found);
    std::sort(found.begin(), found.end(),
              [](const FS_FIND_DATA& a, const FS_FIND_DATA& b) { return a.strName < b.strName; });
    for (const FS_FIND_DATA& entry : found) {
        if (entry.strName == L"." || entry.strName == L"..")
            continue;
        std::wstring strFromPath = strFrom + L"\\" + entry.strName;
        std::wstring strToPath = strTo + L"\\" + entry.strName;
        std::wstring strRelPath = strRel + L"\\" + entry.strName;
        bool bOk = entry.bDirectory ? CopyTree(strFromPath, strToPath, strRelPath, paths)
                                    : FsCopyFile(strFromPath, strToPath, false);
        if (!bOk)
            return false;
        if (!entry.bDirectory)
            paths.push_back(strRelPath);
    }
    return true;
}

bool MakeWorkstation(const std::string& osDir, int nPort, const std::wstring& strUser,
                     const std::wstring& strPassword, const wchar_t* pszVersion) {
    CSuiteConfig config;
    if (!MakeDemoInstall(osDir, config))
        return false;
    // A shared installation keeps its libraries at the install root: the site mirrors that
    // root, and the libraries' commits name their paths from "InstallHole\\" and "LaySketch\\"
    // as their directories and the suite's update do from the root.
    std::wstring strRoot = config.InstallPath();
    for (const wchar_t* pszDir : {L"InstallHole", L"DzStrucLib"})
        if (!FsMoveFile(config.CommonResInstallPath() + pszDir, strRoot + pszDir))
            return false;
    for (const wchar_t* pszDir :
         {L"LaySketch", L"Data", L"Temp", L"LocalData\\PanelLib.txt", L"LocalData\\DwgScale.txt"})
        if (!FsMoveFile(config.LocalInstallPath() + pszDir, strRoot + pszDir))
            return false;
    config.m_strCommonRes = strRoot;
    config.m_strLocal = strRoot;
    config.m_nInstallStyle = 1; // super client: writes to the shared libraries
    config.m_nFtpLogin = 1;
    std::wstring strLogin = config.InstallPath() + L"LocalData\\TzFTPLoginInfo.sys";
    std::wstring strHeader = std::wstring(L"版本日期：") + pszVersion;
    return config.Save(osDir + "/suite.conf") && FsWriteBinary(strLogin, "") &&
           WriteLoginInfo(strLogin, {L"", L"", L"127.0.0.1", std::to_wstring(nPort), L"0", strUser,
                                     strPassword, L"", L"", L"", L"1"}) &&
           WriteTextFile(config.InstallPath() + L"Client.xml", strHeader) &&
           WriteTextFile(config.InstallPath() + L"Client_PartLib.xml",
                         std::wstring(L"版本日期：") + kSharedDemoVersion);
}

} // namespace

bool MakeSharedDemo(const std::string& osDir, const std::string& osSite, int nPort,
                    const std::wstring& strUser, const std::wstring& strPassword) {
    std::string osBase = osDir;
    while (osBase.size() > 1 && osBase.back() == '/')
        osBase.pop_back();
    if (!MakeWorkstation(osBase + "/ws1", nPort, strUser, strPassword, kSharedDemoVersion) ||
        !MakeWorkstation(osBase + "/ws2", nPort, strUser, strPassword, kSharedDemoOldVersion))
        return false;
    // The site holds what a workstation's libraries hold, at the same paths below its root.
    std::wstring strWs = FromOsPath(osBase + "/ws1");
    std::wstring strSite = StrTrimRight(FromOsPath(osSite), L"\\");
    CStringArray paths;
    for (const wchar_t* pszLib : {L"InstallHole", L"LaySketch"}) {
        std::wstring strParent = strSite + L"\\" + StrLeft(pszLib, StrFind(pszLib, L'\\'));
        if (!FsIsDirectory(strSite) && !FsCreateDirectory(strSite))
            return false;
        if (!FsIsDirectory(strParent) && !FsCreateDirectory(strParent))
            return false;
        if (!CopyTree(strWs + L"\\" + pszLib, strSite + L"\\" + pszLib, pszLib, paths))
            return false;
    }
    // The parts database's directory: workstations lock and commit it there.
    if (!FsIsDirectory(strSite + L"\\Data") && !FsCreateDirectory(strSite + L"\\Data"))
        return false;
    CStringArray first, second;
    for (const std::wstring& strPath : paths)
        (StrLeft(strPath, static_cast<int>(strPath.size()) - 4) == kNewItem ? second : first)
            .push_back(strPath);
    SetVersionClock(&DemoClock);
    COperateVersionFile version(strSite + L"\\Server.xml");
    g_nCommit = 0;
    bool bOk = version.WriteRecords(first, CStringArray(first.size(), L"MOD"));
    g_nCommit = 1;
    bOk = bOk && version.WriteRecords(second, CStringArray(second.size(), L"MOD"));
    SetVersionClock(nullptr);
    // The second workstation is a commit behind: it hasn't got the new meter.
    std::wstring strWs2 = FromOsPath(osBase + "/ws2") + L"\\";
    for (const std::wstring& strPath : second)
        bOk = bOk && FsDeleteFile(strWs2 + strPath);
    return bOk && FsCopyFile(strSite + L"\\Server.xml", strSite + L"\\Server.backup", false);
}
