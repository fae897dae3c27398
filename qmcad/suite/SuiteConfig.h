// The reference host's stand-in for the suite's install-path library, read from one settings file.
#pragma once

#include "host/SuiteInstallPaths.h"

#include <string>

// The settings file is UTF-8 text of "key = value" lines; "#" starts a
// comment. Keys: CommonResPath, LocalPath, InstallPath (OS paths),
// InstallStyle (0, 1, 2), FtpLogin (0 or 1), Version. Missing keys read as
// empty paths, style 0, no login and an empty version.
class CSuiteConfig : public ISuiteInstallPaths {
public:
    // The file named by QMCAD_SUITE_CONFIG, else ~/.config/quillmarch/suite.conf.
    static std::string DefaultConfigFile();

    bool Load(const std::string& osConfigFile);
    bool Save(const std::string& osConfigFile) const;

    std::wstring CommonResInstallPath() override { return WithBackslash(m_strCommonRes); }
    std::wstring LocalInstallPath() override { return WithBackslash(m_strLocal); }
    std::wstring InstallPath() override { return WithBackslash(m_strInstall); }
    int InstallStyle() override { return m_nInstallStyle; }
    int FtpLoginStatus() override { return m_nFtpLogin; }
    std::wstring CurrentVersion() override { return m_strVersion; }

    std::wstring m_strCommonRes; // system paths (backslash)
    std::wstring m_strLocal;
    std::wstring m_strInstall;
    int m_nInstallStyle = 0;
    int m_nFtpLogin = 0;
    std::wstring m_strVersion;

private:
    static std::wstring WithBackslash(const std::wstring& strPath);
};
