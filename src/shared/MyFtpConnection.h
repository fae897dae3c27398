// The system's one client of the FTP site that holds the shared library.
#pragma once

#include "host/FtpClient.h"
#include "shared/fileops/FileOps.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

// Time-outs and retries of the session that Connect opens. The defaults are
// the working values; tests shorten them so that a dead server costs little.
struct FTP_SESSION_OPTIONS {
    uint32_t nConnectTimeoutMs = 6000;
    uint32_t nSendTimeoutMs = 6000;
    uint32_t nReceiveTimeoutMs = 6000;
    uint32_t nConnectBackoffMs = 500;
    uint32_t nConnectRetries = 5;
};

// "LocalData\TzFTPLoginInfo.sys" under the install directory, and the
// marker beside it that asks for uploads through a temporary name.
inline constexpr const wchar_t* kFtpLoginFile = L"LocalData\\TzFTPLoginInfo.sys";
inline constexpr const wchar_t* kTempUploadMarker = L"Ftp.bg";
inline constexpr const wchar_t* kTempFtpDir = L"TempFTP";

class CMyFtpConnection {
public:
    CMyFtpConnection();
    explicit CMyFtpConnection(const std::wstring& strLoginFile);
    virtual ~CMyFtpConnection();
    CMyFtpConnection(const CMyFtpConnection&) = delete;
    CMyFtpConnection& operator=(const CMyFtpConnection&) = delete;

    // True when logged in and in the site directory. Tells the user itself why not.
    bool Connect();
    void CloseConnection();
    bool IsConnected() const { return m_pConnection != nullptr; }

    bool DownloadFile(std::wstring strRemote, std::wstring strLocal);
    // With the marker the transfer goes through "#.txt"; strRemote then
    // holds "#.txt" during the transfer and the final name again after it.
    bool UploadFile(std::wstring strLocal, std::wstring& strRemote);
    bool RemoteFileExists(const std::wstring& strRemote);
    bool FindRemoteFile(const std::wstring& strDir, const std::wstring& strName);
    bool RemoteDirExists(const std::wstring& strPath);
    bool CreateRemoteDir(std::wstring strPath);
    // Names of the subdirectories and files of a remote directory ("" = current).
    bool ListRemoteDir(const std::wstring& strDir, CStringArray& dirs, CStringArray& files);
    bool DownloadDir(const std::wstring& strRemoteDir, const std::wstring& strLocalDir);

    // Whether the main parts database changed on the site after the client's
    // date; it reads a version file and lives with the version-file code.
    bool IsMainLibChanged(const std::wstring& strServerFile, const std::wstring& strClientHeader);

    std::wstring m_strSitePath;
    std::unique_ptr<IFtpConnection> m_pConnection;
    std::unique_ptr<IFtpSession> m_pSession;
    std::wstring m_strLoginFile;
    std::wstring m_strInstallPath;
    int32_t m_bTempUpload = 0;
    std::wstring m_strTempDir;
    std::wstring m_strTempTarget;
    std::wstring m_strTempName;
    FTP_SESSION_OPTIONS m_sessionOptions;

protected:
    // The rule of one retry: on no connection, a failure, or a connection
    // gone meanwhile, close, connect again and try exactly once more.
    bool WithOneRetry(const std::function<bool(IFtpConnection&)>& operation);
    // Connects when there is no connection, dropping any session first.
    bool EnsureConnected();
    // Back to the site directory: "/" and the site path.
    void ReturnToSite();
};

// The workstation's host id, "%s(%s)" of address and machine name. The
// environment variable QM_HOST_ID, when set, stands in for the whole id,
// so that several workstations can share one machine.
std::wstring GetLocalIP();

// Deletes the files directly in "TempFTP"; subdirectories stay.
void ClearTempFTP();
