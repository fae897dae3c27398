// A real FTP server process for the tests, and a recorder of the module's FTP calls.
#include "FtpTestServer.h"

#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <random>

extern char** environ;

namespace {

// Reads the port the server prints once it listens; 0 on failure.
int ReadPort(int fd) {
    std::string text;
    char buf[64];
    while (text.find('\n') == std::string::npos) {
        pollfd pfd{fd, POLLIN, 0};
        if (poll(&pfd, 1, 15000) <= 0)
            return 0;
        ssize_t n = read(fd, buf, sizeof buf);
        if (n <= 0)
            return 0;
        text.append(buf, static_cast<size_t>(n));
    }
    return std::atoi(text.c_str());
}

} // namespace

CFtpTestServer::~CFtpTestServer() {
    Stop();
}

// The kernel hands out the ports of its ephemeral range to every outgoing
// connection and every passive data port of the other tests running beside
// this one. A server that takes such a port and is restarted on it after a
// Stop may find it taken in between: the tests then fail by lot. Ports below
// that range are handed out to nobody unasked.
int CFtpTestServer::PickPort() {
    int nLow = 32768;
    if (std::FILE* pFile = std::fopen("/proc/sys/net/ipv4/ip_local_port_range", "r")) {
        if (std::fscanf(pFile, "%d", &nLow) != 1)
            nLow = 32768;
        std::fclose(pFile);
    }
    nLow = std::clamp(nLow, 2048, 65535);
    static std::mt19937 s_random(static_cast<unsigned>(getpid()) ^ std::random_device{}());
    int nFloor = std::max(1024, nLow - 12000);
    return nFloor + static_cast<int>(s_random() % static_cast<unsigned>(nLow - nFloor));
}

bool CFtpTestServer::Start(const FTP_TEST_SERVER_OPTIONS& options) {
    if (m_nPort != 0)
        return StartOn(m_nPort, options);
    for (int nTry = 0; nTry < 20; ++nTry)
        if (StartOn(PickPort(), options))
            return true;
    return false;
}

bool CFtpTestServer::StartOn(int nWantedPort, const FTP_TEST_SERVER_OPTIONS& options) {
    Stop();
    std::string strRoot = m_root.OsPath();
    while (strRoot.size() > 1 && strRoot.back() == '/')
        strRoot.pop_back();
    if (options.bNoStoreDir)
        std::filesystem::create_directories(strRoot + "/nostore");
    std::string strPort = std::to_string(nWantedPort);
    std::vector<std::string> args = {"/usr/bin/python3",
                                     QM_FTP_TEST_SERVER_SCRIPT,
                                     strRoot,
                                     strPort,
                                     options.strEncoding,
                                     options.bNoStoreDir ? "nostore" : "-"};
    std::vector<char*> argv;
    for (std::string& arg : args)
        argv.push_back(arg.data());
    argv.push_back(nullptr);

    int fds[2];
    if (pipe(fds) != 0)
        return false;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, fds[1], STDOUT_FILENO);
    posix_spawn_file_actions_addclose(&actions, fds[0]);
    pid_t pid = -1;
    int rc = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(fds[1]);
    if (rc != 0) {
        close(fds[0]);
        return false;
    }
    m_pid = pid;
    int nPort = ReadPort(fds[0]);
    close(fds[0]);
    if (nPort <= 0) {
        Stop();
        return false;
    }
    m_nPort = nPort;
    return true;
}

void CFtpTestServer::Stop() {
    if (m_pid <= 0)
        return;
    kill(m_pid, SIGKILL);
    int status = 0;
    waitpid(m_pid, &status, 0);
    m_pid = -1;
    m_bPaused = false;
}

void CFtpTestServer::Pause() {
    if (m_pid > 0 && kill(m_pid, SIGSTOP) == 0)
        m_bPaused = true;
}

void CFtpTestServer::Resume() {
    if (m_pid > 0 && m_bPaused)
        kill(m_pid, SIGCONT);
    m_bPaused = false;
}

namespace {

class CRecordingConnection : public IFtpConnection {
public:
    CRecordingConnection(std::unique_ptr<IFtpConnection> real, CRecordingFtpClient& owner)
        : m_real(std::move(real)), m_owner(owner) {}
    void Close() override { m_real->Close(); }
    bool GetFile(const std::wstring& strRemote, const std::wstring& strLocal) override {
        m_owner.Log(L"GetFile " + strRemote);
        return m_real->GetFile(strRemote, strLocal);
    }
    bool PutFile(const std::wstring& strLocal, const std::wstring& strRemote) override {
        m_owner.Log(L"PutFile " + strRemote);
        return m_real->PutFile(strLocal, strRemote);
    }
    bool Remove(const std::wstring& strRemote) override {
        m_owner.Log(L"Remove " + strRemote);
        return m_real->Remove(strRemote);
    }
    bool Rename(const std::wstring& strFrom, const std::wstring& strTo) override {
        m_owner.Log(L"Rename " + strFrom + L" " + strTo);
        return m_real->Rename(strFrom, strTo);
    }
    bool SetCurrentDirectory(const std::wstring& strDir) override {
        m_owner.Log(L"Cd " + strDir);
        return m_real->SetCurrentDirectory(strDir);
    }
    bool GetCurrentDirectory(std::wstring& strDir) override {
        return m_real->GetCurrentDirectory(strDir);
    }
    bool CreateDirectory(const std::wstring& strDir) override {
        m_owner.Log(L"Mkd " + strDir);
        return m_real->CreateDirectory(strDir);
    }
    bool RemoveDirectory(const std::wstring& strDir) override {
        m_owner.Log(L"Rmd " + strDir);
        return m_real->RemoveDirectory(strDir);
    }
    bool FindFiles(const std::wstring& strPattern, std::vector<FTP_FIND_DATA>& found) override {
        m_owner.Log(L"Find " + strPattern);
        return m_real->FindFiles(strPattern, found);
    }
    bool GetFileSize(const std::wstring& strRemote, int64_t& nSize) override {
        m_owner.Log(L"Size " + strRemote);
        return m_real->GetFileSize(strRemote, nSize);
    }
    std::wstring GetLocalAddress() override { return m_real->GetLocalAddress(); }

private:
    std::unique_ptr<IFtpConnection> m_real;
    CRecordingFtpClient& m_owner;
};

class CRecordingSession : public IFtpSession {
public:
    CRecordingSession(std::unique_ptr<IFtpSession> real, CRecordingFtpClient& owner)
        : m_real(std::move(real)), m_owner(owner) {}
    bool SetOption(int nOption, uint32_t nValue) override {
        return m_real->SetOption(nOption, nValue);
    }
    std::unique_ptr<IFtpConnection> GetFtpConnection(const std::wstring& strServer,
                                                     const std::wstring& strUser,
                                                     const std::wstring& strPassword,
                                                     uint16_t nPort, bool bPassive,
                                                     std::wstring& strError) override {
        m_owner.Log(bPassive ? L"login passive" : L"login active");
        auto real =
            m_real->GetFtpConnection(strServer, strUser, strPassword, nPort, bPassive, strError);
        if (!real)
            return nullptr;
        return std::make_unique<CRecordingConnection>(std::move(real), m_owner);
    }

private:
    std::unique_ptr<IFtpSession> m_real;
    CRecordingFtpClient& m_owner;
};

} // namespace

std::unique_ptr<IFtpSession> CRecordingFtpClient::OpenSession() {
    return std::make_unique<CRecordingSession>(m_real.OpenSession(), *this);
}

void CRecordingFtpClient::Log(const std::wstring& strLine) {
    if (m_onCall)
        m_onCall(strLine);
    m_log.push_back(strLine);
}

int CRecordingFtpClient::Count(const std::wstring& strPrefix) const {
    return static_cast<int>(std::count_if(m_log.begin(), m_log.end(), [&](const auto& line) {
        return line.compare(0, strPrefix.size(), strPrefix) == 0;
    }));
}
