// Workstations of one shared site on a real FTP server, a crash trigger and a counting sleep.
#include "SharedSite.h"

#include "shared/FtpLoginInfo.h"

#include "base/CodePage.h"
#include "base/FileSystem.h"
#include "base/StrUtil.h"

#include <cstdlib>

namespace {

const FTP_SESSION_OPTIONS kQuick = {2000, 2000, 2000, 10, 1};

void CountingSleep(unsigned) {
    ++CCountingSleep::s_nSleeps;
    if (CCountingSleep::s_onSleep)
        CCountingSleep::s_onSleep();
}

} // namespace

void CSharedSite::CrashAfter(const std::wstring& strCall) {
    m_bCrashed = false;
    auto pLast = std::make_shared<std::wstring>();
    m_recorder.m_onCall = [this, strCall, pLast](const std::wstring& strLine) {
        if (!m_bCrashed && *pLast == strCall) {
            m_bCrashed = true;
            m_server.Stop();
        }
        *pLast = strLine;
    };
}

CCountingSleep::CCountingSleep() {
    s_nSleeps = 0;
    s_onSleep = nullptr;
    SetFtpSleep(&CountingSleep);
}

CCountingSleep::~CCountingSleep() {
    SetFtpSleep(nullptr);
    s_onSleep = nullptr;
}

CSharedSite::CSharedSite(CTestHost& host, int nWorkstations, const FTP_TEST_SERVER_OPTIONS& options)
    : m_host(host) {
    HOST_SERVICES services = GetHostServices();
    services.pFtp = &m_recorder;
    SetHostServices(services);
    m_bStarted = m_server.Start(options);
    for (int i = 0; i < nWorkstations; ++i) {
        m_installs.push_back(std::make_unique<CTempDir>());
        std::wstring strLogin = *m_installs[i] / L"LocalData\\TzFTPLoginInfo.sys";
        FsCreateDirectory(*m_installs[i] / L"LocalData");
        WriteBytes(strLogin, "");
        WriteLoginInfo(strLogin, {L"", L"", L"127.0.0.1", std::to_wstring(m_server.Port()), L"0",
                                  m_server.User(), m_server.Password(), L"", L"", L"", L"1"});
        m_connections.emplace_back();
    }
}

CSharedSite::~CSharedSite() {
    m_connections.clear();
    unsetenv("QM_HOST_ID");
}

std::wstring CSharedSite::HostId(int i) {
    return L"10.0.0." + std::to_wstring(i + 1) + L"(WS" + std::to_wstring(i + 1) + L")";
}

void CSharedSite::Use(int i) {
    m_host.m_strInstall = m_installs[i]->Path();
    m_host.m_strLocal = m_installs[i]->Path();
    setenv("QM_HOST_ID", WideToUtf8(HostId(i)).c_str(), 1);
}

void CSharedSite::Restart(int i) {
    Use(i);
    m_connections[i] = std::make_unique<CMyFtpConnection>();
    m_connections[i]->m_sessionOptions = kQuick;
}

CMyFtpConnection& CSharedSite::On(int i) {
    if (!m_connections[i])
        Restart(i);
    Use(i);
    return *m_connections[i];
}

bool CSharedSite::OnSite(const std::wstring& strRel) const {
    return FsExists(SitePath(strRel));
}

std::string CSharedSite::SiteBytes(const std::wstring& strRel) const {
    return ReadBytes(SitePath(strRel));
}

void CSharedSite::PutOnSite(const std::wstring& strRel, const std::string& bytes) {
    std::wstring strDir = GetParentPath(SitePath(strRel));
    if (!IsDirExist(strDir))
        CreateDirPath(strDir);
    WriteBytes(SitePath(strRel), bytes);
    m_server.Adopt(SitePath(strRel));
}

CStringArray CSharedSite::SiteLines(const std::wstring& strRel) const {
    CStringArray lines;
    ReadLines(SitePath(strRel), lines, false);
    return lines;
}
