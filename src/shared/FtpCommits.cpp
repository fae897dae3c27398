// Commits to the shared library: the change on the site, then the recorded rewrite of "Server.xml".
#include "shared/MyFtpConnection.h"
#include "shared/OperateVersionFile.h"

#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"
#include "host/HostUi.h"

namespace {

constexpr const wchar_t* kServerFile = L"Server.xml";
constexpr const wchar_t* kNoConnectionText = L"\n网络无连接,请检查网络连接后再重试!";

bool IsTreeUploadExt(const std::wstring& strName) {
    std::wstring strExt = GetFileExt(strName);
    return EqualsNoCase(strExt, L"dwg") || EqualsNoCase(strExt, L"itm") ||
           EqualsNoCase(strExt, L"prj");
}

// A site-relative path has no leading backslash, also at the top of the site.
std::wstring RemoteChild(const std::wstring& strDir, const std::wstring& strName) {
    return strDir.empty() ? strName : JoinPath(strDir, strName);
}

} // namespace

bool CMyFtpConnection::StopForConnection() {
    QmMessageBox(kNoConnectionText, MB_ICONSTOP);
    return false;
}

// The lock stays behind whenever a step before the upload fails: the next
// client waits it out and breaks it.
bool CMyFtpConnection::RewriteVersionFile(const CStringArray& arrPaths,
                                          const CStringArray& arrOprts) {
    std::wstring strLocal = TempFtpPath(kServerFile);
    LockServerFile();
    RemoveStaleTempUploads(arrPaths);
    // A version file that could not be fetched must not be rebuilt from
    // nothing: that upload would drop every record on the site.
    bool bExists = RemoteFileExists(kServerFile);
    if (!IsConnected())
        return StopForConnection();
    if (bExists) {
        PlainRename(kServerFile, L"Server_Tmp.xml");
        PlainRename(L"Server_Tmp.xml", kServerFile);
        if (!DownloadFile(kServerFile, strLocal))
            return StopForConnection();
        BackupServerFile(strLocal);
    } else {
        FsDeleteFile(strLocal);
    }
    if (!COperateVersionFile(strLocal).UpdateRecords(arrPaths, arrOprts)) {
        FsDeleteFile(strLocal);
        return false;
    }
    if (!VerifyServerFile(strLocal, arrPaths, arrOprts))
        return false;
    std::wstring strRemote = kServerFile;
    if (UploadFile(strLocal, strRemote))
        PlainRemove(L"Server.xml.bak");
    FsDeleteFile(strLocal);
    return true;
}

bool CMyFtpConnection::CommitFile(const std::wstring& strLocal, const std::wstring& strRemote) {
    if (!EnsureConnected())
        return StopForConnection();
    CWaitCursor wait;
    bool bInStep = !CheckServerVersion();
    std::wstring strTarget = strRemote;
    if (UploadFile(strLocal, strTarget) && !RewriteVersionFile({strRemote}, {L"MOD"}))
        return false;
    if (bInStep)
        AdoptServerVersion();
    return true;
}

bool CMyFtpConnection::CommitDelete(const std::wstring& strRemote) {
    if (!RemoteFileExists(strRemote))
        return true;
    bool bInStep = !CheckServerVersion();
    CWaitCursor wait;
    bool bDone = DeleteRemoteFile(strRemote);
    if (bDone && !RewriteVersionFile({strRemote}, {L"DEL"}))
        return false;
    if (bInStep)
        AdoptServerVersion();
    return bDone;
}

bool CMyFtpConnection::CommitRename(const std::wstring& strOld, const std::wstring& strNew) {
    bool bInStep = !CheckServerVersion();
    CWaitCursor wait;
    bool bDone = RenameRemoteFile(strOld, strNew);
    if (bDone && !RewriteVersionFile({strOld, strNew}, {L"DEL", L"MOD"}))
        return false;
    if (bInStep)
        AdoptServerVersion();
    return bDone;
}

// The new name stands first in the file, as the last path of a batch does.
bool CMyFtpConnection::CommitRenameDir(const std::wstring& strOld, const std::wstring& strNew) {
    bool bInStep = !CheckServerVersion();
    CWaitCursor wait;
    bool bDone = RenameRemoteDir(strOld, strNew);
    if (bDone && !RewriteVersionFile({strOld + L"\\", strNew + L"\\"}, {L"DEL", L"REN"}))
        return false;
    if (bInStep)
        AdoptServerVersion();
    return bDone;
}

bool CMyFtpConnection::CommitNewDir(const std::wstring& strParent, const std::wstring& strName) {
    if (!EnsureConnected())
        return false;
    std::wstring strPath =
        strName.empty() ? StrTrimRight(strParent, L"\\") + L"\\" : JoinPath(strParent, strName);
    bool bInStep = !CheckServerVersion();
    if (!CreateRemoteDir(strPath)) {
        QmMessageBox(Format(L"创建目录%s失败！", strPath), MB_ICONEXCLAMATION);
        return false;
    }
    if (!RewriteVersionFile({strPath}, {L"MOD"}))
        return false;
    if (bInStep)
        AdoptServerVersion();
    return true;
}

// A deleted tree leaves one record per directory and none per file.
bool CMyFtpConnection::CommitDeleteDir(const std::wstring& strPath) {
    if (!EnsureConnected())
        return false;
    bool bInStep = !CheckServerVersion();
    if (!m_pConnection->SetCurrentDirectory(strPath))
        return true;
    std::vector<FTP_FIND_DATA> found;
    m_pConnection->FindFiles(L"*.*", found);
    for (const FTP_FIND_DATA& entry : found) {
        ReturnToSite();
        if (entry.nAttributes == FILE_ATTRIBUTE_DIRECTORY)
            CommitDeleteDir(strPath + entry.strName + L"\\");
        else
            PlainRemove(strPath + entry.strName);
    }
    ReturnToSite();
    bool bRemoved = m_pConnection && m_pConnection->RemoveDirectory(strPath);
    if (bRemoved && !RewriteVersionFile({strPath}, {L"DEL"}))
        return false;
    if (bInStep)
        AdoptServerVersion();
    return bRemoved;
}

bool CMyFtpConnection::DeleteRemoteFile(std::wstring strPath) {
    return DeleteRemoteFileWith(std::move(strPath), true);
}

bool CMyFtpConnection::DeleteRemoteFileQuiet(std::wstring strPath) {
    return DeleteRemoteFileWith(std::move(strPath), false);
}

bool CMyFtpConnection::DeleteRemoteFileWith(std::wstring strPath, bool bReport) {
    strPath = StrTrim(strPath);
    bool bInStep = !CheckServerVersion();
    bool bDone = false;
    if (m_pConnection) {
        if (!RemoteFileExists(strPath))
            return true;
        bDone = m_pConnection && m_pConnection->Remove(strPath);
    }
    if (!bDone) {
        CloseConnection();
        if (!Connect())
            return false;
        bool bStays = RemoteFileExists(strPath) && !m_pConnection->Remove(strPath);
        if (bStays && bReport) {
            QmMessageBox(Format(L"文件 %s 无法删除，请确认是否被其它客户端用户调用！", strPath),
                         MB_ICONEXCLAMATION);
            return false;
        }
    }
    if (bInStep)
        AdoptServerVersion();
    return true;
}

bool CMyFtpConnection::RenameRemoteFile(std::wstring strOld, std::wstring strNew) {
    strOld = StrTrim(strOld);
    strNew = StrTrim(strNew);
    bool bInStep = !CheckServerVersion();
    if (!RemoteFileExists(strOld)) {
        QmMessageBox(Format(L"重命名文件<%s>服务器上不存在!", strOld), MB_ICONEXCLAMATION);
        return false;
    }
    if (RemoteFileExists(strNew)) {
        if (QmMessageBox(Format(L"重命名文件%s已经存在,是否覆盖？", strNew),
                         MB_YESNO | MB_ICONINFORMATION) != IDYES)
            return false;
        DeleteRemoteFile(strNew);
    }
    if (!WithOneRetry([&](IFtpConnection& c) { return c.Rename(strOld, strNew); })) {
        QmMessageBox(Format(L"文件%s无法更名，请确认是否被其它客户端用户调用！", strOld),
                     MB_ICONEXCLAMATION);
        return false;
    }
    if (bInStep)
        AdoptServerVersion();
    return true;
}

// Unlike the other flows, the version check comes after the first attempt.
bool CMyFtpConnection::RenameRemoteDir(std::wstring strOld, std::wstring strNew) {
    strOld = StrTrim(strOld);
    strNew = StrTrim(strNew);
    if (!RemoteDirExists(strOld)) {
        QmMessageBox(Format(L"重命名文件夹<%s>服务器上不存在!", strOld), MB_ICONEXCLAMATION);
        return false;
    }
    if (RemoteDirExists(strNew)) {
        QmMessageBox(Format(L"重命名文件夹%s已经存在,不能重命名！", strNew), MB_ICONEXCLAMATION);
        return false;
    }
    bool bDone = PlainRename(strOld, strNew);
    bool bBehind = CheckServerVersion();
    if (!bDone) {
        CloseConnection();
        bDone = Connect() && PlainRename(strOld, strNew);
    }
    if (!bDone) {
        QmMessageBox(Format(L"文件%s无法更名，请确认是否被其它客户端用户调用！", strOld),
                     MB_ICONEXCLAMATION);
        return false;
    }
    if (!bBehind)
        AdoptServerVersion();
    return true;
}

bool CMyFtpConnection::UploadDirTree(const std::wstring& strLocalDir,
                                     const std::wstring& strRemoteDir) {
    std::wstring strRemote = StrTrimRight(strRemoteDir, L"\\");
    if (!strRemote.empty() && !RemoteDirExists(strRemote) && !CommitNewDir(strRemote, L""))
        return false;
    std::vector<FS_FIND_DATA> found;
    FsFind(JoinPath(strLocalDir, L"*.*"), found);
    bool bOk = true;
    for (const FS_FIND_DATA& entry : found) {
        if (entry.bDirectory || !IsTreeUploadExt(entry.strName))
            continue;
        FtpSleep(1000);
        bOk = CommitFile(JoinPath(strLocalDir, entry.strName),
                         RemoteChild(strRemote, entry.strName)) &&
              bOk;
    }
    for (const FS_FIND_DATA& entry : found) {
        if (!entry.bDirectory || entry.bLink || entry.strName == L"." || entry.strName == L"..")
            continue;
        bOk = UploadDirTree(JoinPath(strLocalDir, entry.strName),
                            RemoteChild(strRemote, entry.strName)) &&
              bOk;
    }
    return bOk;
}
