// The suite's closed library of install paths, as the module imports it.
#pragma once

#include <string>

class ISuiteInstallPaths {
public:
    virtual ~ISuiteInstallPaths() = default;
    virtual std::wstring CommonResInstallPath() = 0;
    virtual std::wstring LocalInstallPath() = 0;
    virtual std::wstring InstallPath() = 0;
    virtual int InstallStyle() = 0;   // 0 server, 1 super client, 2 common client
    virtual int FtpLoginStatus() = 0; // nonzero once the FTP login has passed
    virtual std::wstring CurrentVersion() = 0;
};

// The suite's functions by their own names. Without a host they answer
// empty paths, style 0 and no login.
std::wstring GetQuillmCommonResInstallPath();
std::wstring GetQuillmLocalInstallPath();
std::wstring GetInstallPath_QM();
int GetCurQuillmInstallStyle();
int GetCurFTPLoginStatus();
std::wstring TzGetQuillmCurVer();
