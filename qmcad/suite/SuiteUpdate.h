// The reference host's stand-in for the suite's update of a workstation from the shared site
// (the commands "SynchUpdateHide" and "CloseMain" that the module sends when it is behind).
#pragma once

#include "host/SuiteInstallPaths.h"

#include <string>

// Brings the install tree up to the site's version: every record of the site's version file
// newer than the workstation's "Client.xml" is applied (a file or directory fetched, made or
// removed under the install path), then "Client.xml" takes the site's header line, and
// "Client_PartLib.xml" too when the parts database came. The site is the one of the login
// file "LocalData\TzFTPLoginInfo.sys". Nothing is changed on the site.
class CSuiteUpdate {
public:
    explicit CSuiteUpdate(ISuiteInstallPaths& paths) : m_paths(paths) {}

    // False, with the reason in strReport, when the site can't be reached or read; otherwise
    // strReport says how many entries were brought up to date.
    bool Run(std::wstring& strReport);

    // The login file's text as the suite stores it, one scrambled line per field.
    static std::wstring DecodeLoginLine(const std::wstring& strLine);

private:
    ISuiteInstallPaths& m_paths;
};
