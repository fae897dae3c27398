// A real FTP server process for the tests, and a recorder of the module's FTP calls.
#pragma once

#include "TestHost.h"

#include "host/FtpClient.h"

#include <functional>
#include <string>
#include <vector>

struct FTP_TEST_SERVER_OPTIONS {
    std::string strEncoding = "utf8"; // file names on the wire: "utf8" or "gbk"
    bool bNoStoreDir = false;         // a directory "nostore" where uploads are refused
    bool bVsftpd = false;             // Debian's vsftpd instead of pyftpdlib
};

// Debian's pyftpdlib on 127.0.0.1 with a fresh root. Users "qm" and
// "viewer" (read only), both with the password "secret", and anonymous.
// With bVsftpd: Debian's vsftpd in its own process group with its own
// configuration, one local user (User(), Password()) locked into the root;
// names in UTF-8, uploads cut short never. The user is made on first use,
// which needs root; Start is false without root or without vsftpd.
// The process is stopped at the latest when the object goes.
class CFtpTestServer {
public:
    CFtpTestServer() = default;
    ~CFtpTestServer();
    CFtpTestServer(const CFtpTestServer&) = delete;
    CFtpTestServer& operator=(const CFtpTestServer&) = delete;

    // Starts on a free port below the kernel's ephemeral range, or on the
    // port of the previous start after a Stop; returns once the server
    // accepts connections.
    bool Start(const FTP_TEST_SERVER_OPTIONS& options = {});
    void Stop();
    // Freezes the process: connections stay open and nothing is answered.
    void Pause();
    void Resume();

    int Port() const { return m_nPort; }
    const wchar_t* User() const { return m_bVsftpd ? L"qmftp" : L"qm"; }
    const wchar_t* Password() const { return m_bVsftpd ? L"qm-Ftp-4711" : L"secret"; }
    // Files a test lays into the root must belong to vsftpd's user, or it
    // could not replace them: hands the path and the levels above it over.
    void Adopt(const std::wstring& strPath) const;
    // The server's root on disk (system path with a final backslash).
    const std::wstring& Root() const { return m_root.Path(); }
    std::wstring operator/(const std::wstring& strRel) const { return m_root / strRel; }

private:
    static int PickPort();
    bool StartOn(int nWantedPort, const FTP_TEST_SERVER_OPTIONS& options);
    bool StartVsftpd(int nWantedPort);

    CTempDir m_root;
    CTempDir m_conf;
    bool m_bVsftpd = false;
    int m_pid = -1;
    int m_nPort = 0;
    bool m_bPaused = false;
};

// Passes every call to a real client and writes one line per call into
// m_log: "login passive" or "login active", "GetFile remote", "PutFile remote", "Remove remote",
// "Rename from to", "Cd dir", "Mkd dir", "Find pattern", "Size remote".
class CRecordingFtpClient : public IFtpClient {
public:
    explicit CRecordingFtpClient(IFtpClient& real) : m_real(real) {}
    std::unique_ptr<IFtpSession> OpenSession() override;
    int Count(const std::wstring& strPrefix) const; // lines that begin with the prefix
    void Log(const std::wstring& strLine);

    std::vector<std::wstring> m_log;
    int64_t m_nBytes = 0; // file bytes moved by GetFile and PutFile
    // Called with each line before the call is passed on.
    std::function<void(const std::wstring&)> m_onCall;

private:
    IFtpClient& m_real;
};
