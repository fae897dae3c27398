// The shared demo: the demo libraries on an FTP site with their version file, and two
// workstations of that site, one in step with it and one a commit behind.
#pragma once

#include <string>

// The site's files under osSite (the server's root), and under the OS directory "ws1" and
// "ws2", install trees of super clients with suite.conf and a login file for 127.0.0.1:nPort.
// False on any failure.
bool MakeSharedDemo(const std::string& osDir, const std::string& osSite, int nPort,
                    const std::wstring& strUser, const std::wstring& strPassword);

// The version date the site's records carry, and the older one workstation 2 holds.
extern const wchar_t* const kSharedDemoVersion;
extern const wchar_t* const kSharedDemoOldVersion;
