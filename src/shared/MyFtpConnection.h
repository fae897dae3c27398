// The system's one client of the FTP site that holds the shared library.
#pragma once

#include "host/FtpClient.h"
#include "shared/fileops/FileOps.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

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
    // With the marker the transfer goes through the workstation's own
    // temporary name in the target's directory, then the target is replaced.
    // Every transfer is checked by size; a short one counts as failed.
    bool UploadFile(std::wstring strLocal, std::wstring& strRemote);
    // "#" and the host id, made safe for any server: each workstation uploads
    // through a name of its own, so two uploads never share one file.
    static std::wstring TempUploadName();
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

    // Locks: "Server.xml.bak" for the rewrite of the version file, and a
    // library path plus ".bak" for a check-out (FtpLocks.cpp).
    void LockServerFile();
    bool CheckOutFile(const std::wstring& strLocal, const std::wstring& strDir,
                      const std::wstring& strName);
    bool TakeFileLock(const std::wstring& strLock);
    bool ConfirmLockBreak(const std::wstring& strPath);
    void ReleaseFileLock(const std::wstring& strLocal, const std::wstring& strDir);
    bool IsLockRevokedPrompt(const std::wstring& strPath);
    bool IsLockRevoked(const std::wstring& strPath);

    // Commits: the change on the site, then the rewrite of "Server.xml" (FtpCommits.cpp).
    bool CommitFile(const std::wstring& strLocal, const std::wstring& strRemote);
    bool CommitDelete(const std::wstring& strRemote);
    bool CommitRename(const std::wstring& strOld, const std::wstring& strNew);
    bool CommitRenameDir(const std::wstring& strOld, const std::wstring& strNew);
    bool CommitNewDir(const std::wstring& strParent, const std::wstring& strName);
    bool CommitDeleteDir(const std::wstring& strPath);
    bool DeleteRemoteFile(std::wstring strPath);
    bool DeleteRemoteFileQuiet(std::wstring strPath);
    bool RenameRemoteFile(std::wstring strOld, std::wstring strNew);
    bool RenameRemoteDir(std::wstring strOld, std::wstring strNew);
    // Uploads the drawings, items and projects of a local tree, one commit each.
    bool UploadDirTree(const std::wstring& strLocalDir, const std::wstring& strRemoteDir);

    // The backup of "Server.xml", its repair and the site's journal (FtpRepair.cpp).
    void BackupServerFile(const std::wstring& strLocal);
    bool VerifyServerFile(const std::wstring& strLocal, const CStringArray& arrPaths,
                          const CStringArray& arrOprts);
    bool WriteOperateLog(const std::wstring& strText);

    // The client's update decision (FtpVersionSync.cpp).
    bool CheckServerVersion();
    bool CheckServerUpdate(bool& bMainLibChanged);
    bool AdoptServerVersion();

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

    // A path under the install directory's "TempFTP", which is made when missing.
    std::wstring TempFtpPath(const std::wstring& strRel) const;
    std::wstring ClientFilePath(const wchar_t* pszName) const;
    // The plain calls: one attempt, no reconnect; false without a connection.
    bool PlainGet(const std::wstring& strRemote, const std::wstring& strLocal);
    bool PlainPut(const std::wstring& strLocal, const std::wstring& strRemote);
    bool PlainRemove(const std::wstring& strRemote);
    bool PlainRename(const std::wstring& strFrom, const std::wstring& strTo);
    // A plain upload into the site directory; with the marker through the
    // temporary name, then the final name is removed and the temporary renamed
    // to it. False when any step failed or the file arrived short.
    bool PlainPutToSite(const std::wstring& strLocal, const std::wstring& strName);
    // Whether the remote file has the local file's size: SIZE, else the listing.
    static bool RemoteSizeMatches(IFtpConnection& connection, const std::wstring& strLocal,
                                  const std::wstring& strRemote);
    // A put checked by size; what arrived short is removed again.
    static bool PutWhole(IFtpConnection& connection, const std::wstring& strLocal,
                         const std::wstring& strRemote);
    // Removes this workstation's temporary uploads that a crash left in the
    // site directory and in the directories of the given paths.
    void RemoveStaleTempUploads(const CStringArray& arrPaths);
    // Deletes a site file with one reconnect; bReport shows the box when the
    // file stays after that.
    bool DeleteRemoteFileWith(std::wstring strPath, bool bReport);
    // Writes the own host id to "TempFTP\LocalIP.txt" and uploads it as the lock.
    void UploadOwnLock(const std::wstring& strLock);
    // The same for the version file's lock "Server.xml.bak".
    void UploadServerLock();
    // The holder's line of a lock, fetched to strScratch and deleted there;
    // empty when the download failed.
    std::wstring ReadRemoteLock(const std::wstring& strLock, const std::wstring& strScratch);
    // Shows the connection box and returns false.
    bool StopForConnection();
    // Lock, fetch, backup, record, verify, upload, unlock.
    bool RewriteVersionFile(const CStringArray& arrPaths, const CStringArray& arrOprts);
    // The seed of a site without "Server.xml": the client's version file, or a
    // new one with the given header.
    void SeedServerVersion(const std::wstring& strSeedHeader);
};

// The sleeps of the lock polls and the tree upload; tests install their own.
using FTP_SLEEP = void (*)(unsigned nMs);
// Installs a sleep; nullptr restores the real one.
void SetFtpSleep(FTP_SLEEP pSleep);
void FtpSleep(unsigned nMs);

// The opening step of the hole library's command in a shared installation:
// when the site's version differs, the suite's update command is sent to the
// editor, after "CloseMain" when the parts database changed.
void SyncClientOnStart();

// The workstation's host id, "%s(%s)" of address and machine name, made
// once per run: the address is this end of the first FTP control connection
// (what the server sees), else the first address of an interface that is up
// and no loopback. The environment variable QM_HOST_ID, when set, stands in
// for the whole id, so that several workstations can share one machine.
std::wstring GetLocalIP();
// Offers the local address of a control connection; the first one offered
// before the id was made is the one it uses.
void OfferHostAddress(const std::wstring& strAddress);

// Deletes the files directly in "TempFTP"; subdirectories stay.
void ClearTempFTP();
