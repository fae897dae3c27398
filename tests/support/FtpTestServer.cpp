// A real FTP server process for the tests, and a recorder of the module's FTP calls.
#include "FtpTestServer.h"

#include "base/FileSystem.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <arpa/inet.h>
#include <csignal>
#include <cstdlib>
#include <netinet/in.h>
#include <poll.h>
#include <pwd.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <random>

extern char** environ;

namespace {

// Starts the program with one end of a pipe as its stdin or its stdout (nChildFd) and hands
// back the other end; false when it could not start.
bool SpawnPiped(std::vector<std::string> args, int nChildFd, pid_t& pid, int& nParentFd) {
    std::vector<char*> argv;
    for (std::string& arg : args)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    int fds[2];
    if (pipe(fds) != 0)
        return false;
    const bool bChildReads = nChildFd == STDIN_FILENO;
    const int nChildEnd = bChildReads ? fds[0] : fds[1];
    nParentFd = bChildReads ? fds[1] : fds[0];
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, nChildEnd, nChildFd);
    posix_spawn_file_actions_addclose(&actions, nParentFd);
    int rc = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(nChildEnd);
    if (rc == 0)
        return true;
    close(nParentFd);
    return false;
}

// Kills every process below pid, found through /proc, leaves first.
void KillDescendants(int pid) {
    std::error_code ec;
    for (const auto& entry : std::filesystem::directory_iterator("/proc", ec)) {
        std::string strName = entry.path().filename().string();
        if (strName.find_first_not_of("0123456789") != std::string::npos)
            continue;
        std::string stat = ReadBytes(FromOsPath(entry.path().string() + "/stat"));
        size_t nClose = stat.rfind(')');
        int nParent = 0;
        char chState = 0;
        if (nClose == std::string::npos ||
            std::sscanf(stat.c_str() + nClose + 1, " %c %d", &chState, &nParent) != 2 ||
            nParent != pid)
            continue;
        int nChild = std::atoi(strName.c_str());
        KillDescendants(nChild);
        kill(nChild, SIGKILL);
    }
}

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
    m_bVsftpd = options.bVsftpd;
    if (m_nPort != 0)
        return StartOn(m_nPort, options);
    for (int nTry = 0; nTry < 20; ++nTry)
        if (StartOn(PickPort(), options))
            return true;
    return false;
}

bool CFtpTestServer::StartOn(int nWantedPort, const FTP_TEST_SERVER_OPTIONS& options) {
    Stop();
    if (options.bVsftpd)
        return StartVsftpd(nWantedPort);
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
    pid_t pid = -1;
    int nOut = -1;
    if (!SpawnPiped(std::move(args), STDOUT_FILENO, pid, nOut))
        return false;
    m_pid = pid;
    int nPort = ReadPort(nOut);
    close(nOut);
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
    if (m_bVsftpd)
        KillDescendants(m_pid); // the sessions it forked go with it, as in a crash
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

constexpr const char* kVsftpdUser = "qmftp";

// Runs a program and waits for it; true on exit status 0.
bool RunProgram(std::vector<std::string> args, const std::string& strInput = "") {
    pid_t pid = -1;
    int nIn = -1;
    if (!SpawnPiped(std::move(args), STDIN_FILENO, pid, nIn))
        return false;
    if (!strInput.empty())
        (void)!write(nIn, strInput.data(), strInput.size());
    close(nIn);
    int status = 0;
    return waitpid(pid, &status, 0) == pid && WIFEXITED(status) &&
           WEXITSTATUS(status) == 0;
}

// vsftpd's local user: no home of its own, a shell PAM accepts, a fixed password.
bool EnsureVsftpdUser(const std::string& strPassword) {
    if (getpwnam(kVsftpdUser))
        return true;
    return RunProgram({"/usr/sbin/useradd", "-M", "-d", "/tmp", "-s", "/bin/sh", kVsftpdUser}) &&
           RunProgram({"/usr/sbin/chpasswd"}, std::string(kVsftpdUser) + ":" + strPassword + "\n");
}

bool Accepts(int nPort) {
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in addr{};
    addr.sin_family = AF_INET;
    addr.sin_port = htons(static_cast<uint16_t>(nPort));
    addr.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bool bOk = connect(fd, reinterpret_cast<sockaddr*>(&addr), sizeof addr) == 0;
    close(fd);
    return bOk;
}

} // namespace

void CFtpTestServer::Adopt(const std::wstring& strPath) const {
    passwd* pUser = m_bVsftpd ? getpwnam(kVsftpdUser) : nullptr;
    if (!pUser)
        return;
    std::filesystem::path root = std::filesystem::path(m_root.OsPath()).lexically_normal();
    std::filesystem::path path = std::filesystem::path(ToOsPath(strPath)).lexically_normal();
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec))
        for (const auto& entry : std::filesystem::recursive_directory_iterator(path, ec))
            (void)!chown(entry.path().c_str(), pUser->pw_uid, pUser->pw_gid);
    for (; path.string().size() >= root.string().size() && path != path.parent_path();
         path = path.parent_path())
        (void)!chown(path.c_str(), pUser->pw_uid, pUser->pw_gid);
}

bool CFtpTestServer::StartVsftpd(int nWantedPort) {
    if (geteuid() != 0 || access("/usr/sbin/vsftpd", X_OK) != 0 ||
        !EnsureVsftpdUser(WideToUtf8(Password())))
        return false;
    std::string strRoot = m_root.OsPath();
    while (strRoot.size() > 1 && strRoot.back() == '/')
        strRoot.pop_back();
    chmod(strRoot.c_str(), 0755);
    Adopt(m_root.Path());
    std::string strConf = m_conf.OsPath() + "/vsftpd.conf";
    std::string text = "listen=YES\nlisten_ipv6=NO\nlisten_address=127.0.0.1\nbackground=NO\n"
                       "anonymous_enable=NO\nlocal_enable=YES\nwrite_enable=YES\nlocal_umask=022\n"
                       "chroot_local_user=YES\nallow_writeable_chroot=YES\n"
                       "pam_service_name=vsftpd\nseccomp_sandbox=NO\npasv_address=127.0.0.1\n"
                       "connect_from_port_20=NO\nxferlog_enable=NO\nutf8_filesystem=YES\n"
                       "listen_port=" +
                       std::to_string(nWantedPort) + "\nlocal_root=" + strRoot + "\n";
    WriteBytes(FromOsPath(strConf), text);
    std::vector<std::string> args = {"/usr/sbin/vsftpd", strConf};
    std::vector<char*> argv = {args[0].data(), args[1].data(), nullptr};
    posix_spawnattr_t attr;
    posix_spawnattr_init(&attr);
    posix_spawnattr_setflags(&attr, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attr, 0);
    pid_t pid = -1;
    int rc = posix_spawn(&pid, argv[0], nullptr, &attr, argv.data(), environ);
    posix_spawnattr_destroy(&attr);
    if (rc != 0)
        return false;
    m_pid = pid;
    for (int i = 0; i < 200; ++i) {
        int status = 0;
        if (waitpid(m_pid, &status, WNOHANG) == m_pid) { // it could not listen there
            m_pid = -1;
            return false;
        }
        if (Accepts(nWantedPort)) {
            m_nPort = nWantedPort;
            return true;
        }
        usleep(20000);
    }
    Stop();
    return false;
}

namespace {

int64_t LocalSize(const std::wstring& strPath) {
    FS_FIND_DATA info;
    return FsGetInfo(strPath, info) ? static_cast<int64_t>(info.nSize) : 0;
}

class CRecordingConnection : public IFtpConnection {
public:
    CRecordingConnection(std::unique_ptr<IFtpConnection> real, CRecordingFtpClient& owner)
        : m_real(std::move(real)), m_owner(owner) {}
    void Close() override { m_real->Close(); }
    bool GetFile(const std::wstring& strRemote, const std::wstring& strLocal) override {
        m_owner.Log(L"GetFile " + strRemote);
        bool bOk = m_real->GetFile(strRemote, strLocal);
        m_owner.m_nBytes += bOk ? LocalSize(strLocal) : 0;
        return bOk;
    }
    bool PutFile(const std::wstring& strLocal, const std::wstring& strRemote) override {
        m_owner.Log(L"PutFile " + strRemote);
        bool bOk = m_real->PutFile(strLocal, strRemote);
        m_owner.m_nBytes += bOk ? LocalSize(strLocal) : 0;
        return bOk;
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
