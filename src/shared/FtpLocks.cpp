// Advisory locks on the site: the version file's short lock and the check-out of a library file.
#include "shared/MyFtpConnection.h"

#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"
#include "host/HostUi.h"

#include <chrono>
#include <thread>

namespace {

constexpr const wchar_t* kServerLock = L"Server.xml.bak";
constexpr const wchar_t* kLocalIdFile = L"LocalIP.txt";
constexpr unsigned kLockPollMs = 400;
constexpr int kLockPolls = 5; // waits beyond this many count the holder as dead

void RealSleep(unsigned nMs) {
    std::this_thread::sleep_for(std::chrono::milliseconds(nMs));
}

FTP_SLEEP g_pSleep = &RealSleep;

// Asks whether to take the lock of strName from strHolder.
bool UserTakesLock(const std::wstring& strHolder, const std::wstring& strName) {
    std::wstring strText = Format(L"主机IP为%s的用户正对文件<%s>进行操作，可等待其完成后再继续..."
                                  L"\n是否强制撤销其库修改操作?",
                                  strHolder, strName);
    return QmMessageBox(strText, MB_YESNO | MB_ICONINFORMATION) == IDYES;
}

std::wstring ReadAndDelete(const std::wstring& strLocal) {
    std::wstring strLine;
    ReadFirstLine(strLocal, strLine);
    FsDeleteFile(strLocal);
    return strLine;
}

} // namespace

void SetFtpSleep(FTP_SLEEP pSleep) {
    g_pSleep = pSleep ? pSleep : &RealSleep;
}

void FtpSleep(unsigned nMs) {
    g_pSleep(nMs);
}

void CMyFtpConnection::UploadOwnLock(const std::wstring& strLock) {
    std::wstring strLocal = TempFtpPath(kLocalIdFile);
    WriteTextFile(strLocal, GetLocalIP());
    std::wstring strRemote = strLock;
    UploadFile(strLocal, strRemote);
    FsDeleteFile(strLocal);
}

std::wstring CMyFtpConnection::ReadRemoteLock(const std::wstring& strLock,
                                              const std::wstring& strScratch) {
    FsDeleteFile(strScratch);
    DownloadFile(strLock, strScratch);
    return ReadAndDelete(strScratch);
}

// Polls a foreign holder six times and then takes the lock from it, alive or
// not: no step here is atomic, and the backup check of the rewrite catches
// the double take that this leaves possible. The lock just written is read
// back: when another workstation's id stands there, that one took it in the
// same instant, and it is waited for like any holder (within the same six
// polls), which narrows the double take to the instant of the read-back.
void CMyFtpConnection::LockServerFile() {
    std::wstring strScratch = TempFtpPath(kServerLock);
    FsDeleteFile(strScratch);
    int nWaits = 0;
    for (int nTakes = 0; nTakes <= kLockPolls; ++nTakes) {
        if (PlainGet(kServerLock, strScratch)) {
            for (;;) {
                std::wstring strHolder = ReadAndDelete(strScratch);
                if (EqualsNoCase(strHolder, GetLocalIP())) {
                    PlainRemove(kServerLock);
                    break;
                }
                FtpSleep(kLockPollMs);
                if (++nWaits > kLockPolls) {
                    PlainRemove(kServerLock);
                    break;
                }
                if (!PlainGet(kServerLock, strScratch))
                    break;
            }
        }
        UploadServerLock();
        if (nWaits > kLockPolls || !PlainGet(kServerLock, strScratch))
            return; // taken over, or nothing to read back: the flow goes on as it always has
        std::wstring strHolder = ReadAndDelete(strScratch);
        if (strHolder.empty() || EqualsNoCase(strHolder, GetLocalIP()))
            return;
        FtpSleep(kLockPollMs); // another took it in the same instant
        if (++nWaits > kLockPolls)
            return;
    }
}

// With the marker the lock goes up through the temporary name and is renamed
// without removing what stands there: a rename onto a lock another
// workstation just wrote fails instead of wiping it out.
void CMyFtpConnection::UploadServerLock() {
    std::wstring strLocal = TempFtpPath(kLocalIdFile);
    WriteTextFile(strLocal, GetLocalIP());
    if (!m_bTempUpload || !m_pConnection) {
        PlainPutToSite(strLocal, kServerLock);
    } else if (PutWhole(*m_pConnection, strLocal, TempUploadName()) &&
               !PlainRename(TempUploadName(), kServerLock)) {
        PlainRemove(TempUploadName());
    }
    FsDeleteFile(strLocal);
}

// The file is fetched before the lock is written, so a failure in between holds nothing.
bool CMyFtpConnection::CheckOutFile(const std::wstring& strLocal, const std::wstring& strDir,
                                    const std::wstring& strName) {
    std::wstring strRemote = strDir + strName;
    std::wstring strLock = strRemote + L".bak";
    if (!RemoteFileExists(strRemote)) {
        QmMessageBox(Format(L"服务器上不存在<%s>文件！", strName), MB_ICONINFORMATION);
        return true;
    }
    if (!FindRemoteFile(strDir, strName + L".bak")) {
        if (!DownloadFile(strRemote, strLocal))
            return false;
        UploadOwnLock(strLock);
        return true;
    }
    std::wstring strHolder = ReadRemoteLock(strLock, TempFtpPath(kLocalIdFile));
    if (!EqualsNoCase(strHolder, GetLocalIP())) {
        if (!UserTakesLock(strHolder, strName) || !DownloadFile(strRemote, strLocal))
            return false;
        UploadOwnLock(strLock);
        return true;
    }
    if (!DownloadFile(strRemote, strLocal))
        return false;
    // The bare name is looked for in the site directory, where it isn't:
    // the workstation's earlier lock stays in force, as it always has.
    DeleteRemoteFile(strName + L".bak");
    return true;
}

bool CMyFtpConnection::TakeFileLock(const std::wstring& strLock) {
    if (!RemoteFileExists(strLock)) {
        UploadOwnLock(strLock);
        return true;
    }
    std::wstring strHolder = ReadRemoteLock(strLock, TempFtpPath(strLock));
    if (!EqualsNoCase(strHolder, GetLocalIP())) {
        if (!UserTakesLock(strHolder, strLock))
            return false;
    } else {
        DeleteRemoteFileQuiet(strLock);
    }
    UploadOwnLock(strLock);
    return true;
}

bool CMyFtpConnection::ConfirmLockBreak(const std::wstring& strPath) {
    std::wstring strLock = Format(L"%s.bak", strPath);
    if (!RemoteFileExists(strLock))
        return true;
    std::wstring strHolder = ReadRemoteLock(strLock, TempFtpPath(strLock));
    if (!EqualsNoCase(strHolder, GetLocalIP()) && !UserTakesLock(strHolder, strPath))
        return false;
    DeleteRemoteFileQuiet(strLock);
    return true;
}

void CMyFtpConnection::ReleaseFileLock(const std::wstring& strLocal, const std::wstring& strDir) {
    DeleteRemoteFile(JoinPath(strDir, GetFileName(strLocal) + L".bak"));
    CloseConnection();
}

bool CMyFtpConnection::IsLockRevokedPrompt(const std::wstring& strPath) {
    if (!RemoteFileExists(strPath))
        return false;
    std::wstring strLock = strPath + L".bak";
    if (!RemoteFileExists(strLock)) {
        QmMessageBox(Format(L"文件<%s>的库修改作已被强制撤销，无法入库...", strPath),
                     MB_ICONINFORMATION);
        return true;
    }
    std::wstring strHolder = ReadRemoteLock(strLock, TempFtpPath(strLock));
    if (EqualsNoCase(strHolder, GetLocalIP()))
        return false;
    QmMessageBox(
        Format(L"文件<%s>的库修改作已被主机IP为%s的用户强制撤销，无法入库...", strPath, strHolder),
        MB_ICONINFORMATION);
    return true;
}

bool CMyFtpConnection::IsLockRevoked(const std::wstring& strPath) {
    std::wstring strLock = strPath + L".bak";
    if (!RemoteFileExists(strLock))
        return true;
    return !EqualsNoCase(ReadRemoteLock(strLock, TempFtpPath(strLock)), GetLocalIP());
}
