// Install paths of the suite from the reference host's settings file.
#include "suite/SuiteConfig.h"

#include "base/Environment.h"
#include "base/FileSystem.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <sstream>

std::string CSuiteConfig::DefaultConfigFile() {
    if (std::string strEnv = EnvText("QMCAD_SUITE_CONFIG"); !strEnv.empty())
        return strEnv;
    std::string strHome = EnvText("HOME");
    return (strHome.empty() ? std::string("/tmp") : strHome) + "/.config/quillmarch/suite.conf";
}

bool CSuiteConfig::Load(const std::string& osConfigFile) {
    std::string bytes;
    if (!FsReadBinary(FromOsPath(osConfigFile), bytes))
        return false;
    std::istringstream in(bytes);
    std::string line;
    while (std::getline(in, line)) {
        std::wstring strLine = StrTrim(Utf8ToWide(line));
        int nEq = StrFind(strLine, L'=');
        if (strLine.empty() || strLine[0] == L'#' || nEq < 0)
            continue;
        std::wstring strKey = StrTrim(StrLeft(strLine, nEq));
        std::wstring strValue = StrTrim(StrMid(strLine, nEq + 1));
        if (EqualsNoCase(strKey, L"CommonResPath"))
            m_strCommonRes = FromOsPath(WideToUtf8(strValue));
        else if (EqualsNoCase(strKey, L"LocalPath"))
            m_strLocal = FromOsPath(WideToUtf8(strValue));
        else if (EqualsNoCase(strKey, L"InstallPath"))
            m_strInstall = FromOsPath(WideToUtf8(strValue));
        else if (EqualsNoCase(strKey, L"InstallStyle"))
            m_nInstallStyle = static_cast<int>(std::wcstol(strValue.c_str(), nullptr, 10));
        else if (EqualsNoCase(strKey, L"FtpLogin"))
            m_nFtpLogin = static_cast<int>(std::wcstol(strValue.c_str(), nullptr, 10));
        else if (EqualsNoCase(strKey, L"Version"))
            m_strVersion = strValue;
    }
    return true;
}

bool CSuiteConfig::Save(const std::string& osConfigFile) const {
    std::string text = "# Quillmarch suite settings of the reference host\n";
    text += "CommonResPath = " + ToOsPath(m_strCommonRes) + "\n";
    text += "LocalPath = " + ToOsPath(m_strLocal) + "\n";
    text += "InstallPath = " + ToOsPath(m_strInstall) + "\n";
    text += "InstallStyle = " + std::to_string(m_nInstallStyle) + "\n";
    text += "FtpLogin = " + std::to_string(m_nFtpLogin) + "\n";
    text += "Version = " + WideToUtf8(m_strVersion) + "\n";
    return FsWriteBinary(FromOsPath(osConfigFile), text);
}

std::wstring CSuiteConfig::WithBackslash(const std::wstring& strPath) {
    if (strPath.empty() || strPath.back() == L'\\')
        return strPath;
    return strPath + L'\\';
}
