// Workstations of one shared site, each with its own install tree and host id, on a real server.
#pragma once

#include "FtpTestServer.h"
#include "TestHost.h"

#include "ftp/CurlFtpClient.h"
#include "shared/MyFtpConnection.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

// Counts the sleeps of the lock polls instead of sleeping; m_onSleep runs at each.
class CCountingSleep {
public:
    CCountingSleep();
    ~CCountingSleep();
    static inline int s_nSleeps = 0;
    static inline std::function<void()> s_onSleep;
};

// The site is the server's login directory. Workstation i has the host id
// "10.0.0.<i+1>(WS<i+1>)" and the install tree m_installs[i]; On(i) makes it
// the current one (install paths and host id) and returns its connection.
class CSharedSite {
public:
    CSharedSite(CTestHost& host, int nWorkstations, const FTP_TEST_SERVER_OPTIONS& options = {});
    ~CSharedSite();
    bool Started() const { return m_bStarted; }

    CMyFtpConnection& On(int i);
    void Use(int i);
    static std::wstring HostId(int i);
    std::wstring Install(int i, const std::wstring& strRel) const {
        return *m_installs[i] / strRel;
    }
    // A fresh connection object of workstation i, as a new run would build it.
    void Restart(int i);

    std::wstring SitePath(const std::wstring& strRel) const { return m_server / strRel; }
    bool OnSite(const std::wstring& strRel) const;
    std::string SiteBytes(const std::wstring& strRel) const;
    void PutOnSite(const std::wstring& strRel, const std::string& bytes);
    // Non-blank lines of a site text file, decoded.
    CStringArray SiteLines(const std::wstring& strRel) const;

    CTestHost& m_host;
    // Kills the server once a call logged as this line ("PutFile Server.xml.bak")
    // has finished, as if the workstation died there.
    void CrashAfter(const std::wstring& strCall);

    CFtpTestServer m_server;
    CCurlFtpClient m_curl{"UTF-8"};
    CRecordingFtpClient m_recorder{m_curl};
    bool m_bCrashed = false;

private:
    std::vector<std::unique_ptr<CTempDir>> m_installs;
    std::vector<std::unique_ptr<CMyFtpConnection>> m_connections;
    bool m_bStarted = false;
};
