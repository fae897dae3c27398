// Workstations of one shared site on a real FTP server, a crash trigger and a counting sleep.
#include "SharedSite.h"

#include "shared/FtpLoginInfo.h"

#include "base/CodePage.h"
#include "base/FileSystem.h"
#include "base/StrUtil.h"

#include <cstdlib>

namespace {

const FTP_SESSION_OPTIONS kQuick = {2000, 2000, 2000, 10, 1};

class CCrashingConnection : public IFtpConnection {
public:
    CCrashingConnection(std::unique_ptr<IFtpConnection> real, CCrashingFtpClient& owner)
        : m_real(std::move(real)), m_owner(owner) {}
    void Close() override { m_real->Close(); }
    bool GetFile(const std::wstring& r, const std::wstring& l) override {
        return After(m_real->GetFile(r, l), L"GetFile " + r);
    }
    bool PutFile(const std::wstring& l, const std::wstring& r) override {
        return After(m_real->PutFile(l, r), L"PutFile " + r);
    }
    bool Remove(const std::wstring& r) override { return After(m_real->Remove(r), L"Remove " + r); }
    bool Rename(const std::wstring& f, const std::wstring& t) override {
        return After(m_real->Rename(f, t), L"Rename " + f + L" " + t);
    }
    bool SetCurrentDirectory(const std::wstring& d) override {
        return After(m_real->SetCurrentDirectory(d), L"Cd " + d);
    }
    bool GetCurrentDirectory(std::wstring& d) override { return m_real->GetCurrentDirectory(d); }
    bool CreateDirectory(const std::wstring& d) override {
        return After(m_real->CreateDirectory(d), L"Mkd " + d);
    }
    bool RemoveDirectory(const std::wstring& d) override {
        return After(m_real->RemoveDirectory(d), L"Rmd " + d);
    }
    bool FindFiles(const std::wstring& p, std::vector<FTP_FIND_DATA>& found) override {
        return After(m_real->FindFiles(p, found), L"Find " + p);
    }

private:
    bool After(bool bResult, const std::wstring& strLine) {
        m_owner.AfterCall(strLine);
        return bResult;
    }
    std::unique_ptr<IFtpConnection> m_real;
    CCrashingFtpClient& m_owner;
};

class CCrashingSession : public IFtpSession {
public:
    CCrashingSession(std::unique_ptr<IFtpSession> real, CCrashingFtpClient& owner)
        : m_real(std::move(real)), m_owner(owner) {}
    bool SetOption(int nOption, uint32_t nValue) override {
        return m_real->SetOption(nOption, nValue);
    }
    std::unique_ptr<IFtpConnection> GetFtpConnection(const std::wstring& s, const std::wstring& u,
                                                     const std::wstring& p, uint16_t n, bool b,
                                                     std::wstring& e) override {
        auto real = m_real->GetFtpConnection(s, u, p, n, b, e);
        return real ? std::make_unique<CCrashingConnection>(std::move(real), m_owner) : nullptr;
    }

private:
    std::unique_ptr<IFtpSession> m_real;
    CCrashingFtpClient& m_owner;
};

void CountingSleep(unsigned) {
    ++CCountingSleep::s_nSleeps;
    if (CCountingSleep::s_onSleep)
        CCountingSleep::s_onSleep();
}

} // namespace

std::unique_ptr<IFtpSession> CCrashingFtpClient::OpenSession() {
    return std::make_unique<CCrashingSession>(m_real.OpenSession(), *this);
}

void CCrashingFtpClient::AfterCall(const std::wstring& strLine) {
    if (m_bCrashed || m_strCrashAfter.empty() || strLine != m_strCrashAfter)
        return;
    m_bCrashed = true;
    m_server.Stop();
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

CSharedSite::CSharedSite(CTestHost& host, int nWorkstations) : m_host(host) {
    HOST_SERVICES services = GetHostServices();
    services.pFtp = &m_recorder;
    SetHostServices(services);
    m_bStarted = m_server.Start();
    for (int i = 0; i < nWorkstations; ++i) {
        m_installs.push_back(std::make_unique<CTempDir>());
        std::wstring strLogin = *m_installs[i] / L"LocalData\\TzFTPLoginInfo.sys";
        FsCreateDirectory(*m_installs[i] / L"LocalData");
        WriteBytes(strLogin, "");
        WriteLoginInfo(strLogin, {L"", L"", L"127.0.0.1", std::to_wstring(m_server.Port()), L"0",
                                  L"qm", L"secret", L"", L"", L"", L"1"});
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
}

CStringArray CSharedSite::SiteLines(const std::wstring& strRel) const {
    CStringArray lines;
    ReadLines(SitePath(strRel), lines, false);
    return lines;
}
