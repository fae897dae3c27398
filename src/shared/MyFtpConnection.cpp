// The connection life of the site's client: login, one retry per transfer, uploads, remote tests.
#include "shared/MyFtpConnection.h"
#include "shared/OperateVersionFile.h"

#include "shared/FtpLoginInfo.h"

#include "base/CodePage.h"
#include "base/Environment.h"
#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/Network.h"
#include "base/StrUtil.h"
#include "host/HostUi.h"
#include "host/SuiteInstallPaths.h"

#include <algorithm>
#include <cwchar>

CMyFtpConnection::CMyFtpConnection()
    : CMyFtpConnection(JoinPath(GetInstallPath_QM(), kFtpLoginFile)) {}

CMyFtpConnection::CMyFtpConnection(const std::wstring& strLoginFile)
    : m_strLoginFile(strLoginFile), m_strInstallPath(GetInstallPath_QM()) {
    m_bTempUpload = IsFileExist(JoinPath(GetParentPath(m_strLoginFile), kTempUploadMarker));
}

CMyFtpConnection::~CMyFtpConnection() {
    CloseConnection();
}

bool CMyFtpConnection::Connect() {
    CStringArray lines;
    if (!ReadLoginInfo(m_strLoginFile, lines))
        return false;
    m_strSitePath = lines[LOGIN_LINE_SITE];
    std::wstring strUser = lines[LOGIN_LINE_USER];
    std::wstring strPassword = lines[LOGIN_LINE_PASSWORD];
    if (lines[LOGIN_LINE_ANONYMOUS] == L"1") {
        strUser.clear();
        strPassword.clear();
    }
    bool bPassive = lines[LOGIN_LINE_PASSIVE] == L"1";
    auto nPort = static_cast<uint16_t>(std::wcstol(lines[LOGIN_LINE_PORT].c_str(), nullptr, 10));

    m_pSession = OpenFtpSession();
    if (!m_pSession)
        return false;
    m_pSession->SetOption(INTERNET_OPTION_CONNECT_TIMEOUT, m_sessionOptions.nConnectTimeoutMs);
    m_pSession->SetOption(INTERNET_OPTION_SEND_TIMEOUT, m_sessionOptions.nSendTimeoutMs);
    m_pSession->SetOption(INTERNET_OPTION_RECEIVE_TIMEOUT, m_sessionOptions.nReceiveTimeoutMs);
    m_pSession->SetOption(INTERNET_OPTION_CONNECT_BACKOFF, m_sessionOptions.nConnectBackoffMs);
    m_pSession->SetOption(INTERNET_OPTION_CONNECT_RETRIES, m_sessionOptions.nConnectRetries);

    std::wstring strError;
    m_pConnection = m_pSession->GetFtpConnection(lines[LOGIN_LINE_HOST], strUser, strPassword,
                                                 nPort, bPassive, strError);
    if (!m_pConnection) {
        CloseConnection();
        // The platform hands the message over in a buffer of 200 characters.
        acutPrintf(L"\n%s", StrLeft(strError, 199) + L"\n请检查网络连接后再重试!");
        return false;
    }
    if (!m_strSitePath.empty() && !m_pConnection->SetCurrentDirectory(m_strSitePath)) {
        CloseConnection();
        QmMessageBox(
            Format(L"设置站点当前路径失败!\n可能原因:FTP站点中路径名%s不存在", m_strSitePath),
            MB_ICONSTOP);
        return false;
    }
    OfferHostAddress(m_pConnection->GetLocalAddress());
    return true;
}

void CMyFtpConnection::CloseConnection() {
    if (m_pConnection)
        m_pConnection->Close();
    m_pConnection.reset();
    m_pSession.reset();
}

bool CMyFtpConnection::WithOneRetry(const std::function<bool(IFtpConnection&)>& operation) {
    if (m_pConnection && operation(*m_pConnection))
        return true;
    CloseConnection();
    if (!Connect())
        return false;
    return operation(*m_pConnection);
}

bool CMyFtpConnection::EnsureConnected() {
    if (m_pConnection)
        return true;
    m_pSession.reset();
    return Connect();
}

void CMyFtpConnection::ReturnToSite() {
    if (m_pConnection)
        m_pConnection->SetCurrentDirectory(L"/" + m_strSitePath);
}

bool CMyFtpConnection::DownloadFile(std::wstring strRemote, std::wstring strLocal) {
    strRemote = StrTrim(strRemote);
    strLocal = StrTrim(strLocal);
    std::wstring strLocalDir = GetParentPath(strLocal);
    if (!IsDirExist(strLocalDir))
        CreateDirPath(strLocalDir);
    return WithOneRetry(
        [&](IFtpConnection& connection) { return connection.GetFile(strRemote, strLocal); });
}

// The transfer goes by path, never by a change of directory, so that the
// retry after a reconnect lands where the first attempt aimed. With the
// marker the target is replaced only by a temporary file that arrived whole.
bool CMyFtpConnection::UploadFile(std::wstring strLocal, std::wstring& strRemote) {
    strLocal = StrTrim(strLocal);
    strRemote = StrTrim(strRemote);
    std::wstring strTransfer = strRemote;
    if (m_bTempUpload) {
        m_strTempTarget = strRemote;
        m_strTempDir = StrLeft(strRemote, StrReverseFind(strRemote, L'\\'));
        m_strTempName =
            m_strTempDir.empty() ? TempUploadName() : JoinPath(m_strTempDir, TempUploadName());
        strTransfer = m_strTempName;
    }
    bool bOk = WithOneRetry(
        [&](IFtpConnection& connection) { return PutWhole(connection, strLocal, strTransfer); });
    if (bOk && m_bTempUpload) {
        bOk = WithOneRetry([&](IFtpConnection& connection) {
            connection.Remove(strRemote);
            return connection.Rename(strTransfer, strRemote);
        });
    }
    if (!bOk) {
        QmMessageBox(Format(L"文件 %s 上传失败，请确认是否被其它客户端用户调用！", strRemote),
                     MB_ICONEXCLAMATION);
        return false;
    }
    return true;
}

std::wstring CMyFtpConnection::TempUploadName() {
    std::wstring strName = L"#";
    for (wchar_t ch : GetLocalIP()) {
        bool bSafe = (ch >= L'0' && ch <= L'9') || (ch >= L'A' && ch <= L'Z') ||
                     (ch >= L'a' && ch <= L'z') || StrFind(L".()-_", ch) >= 0;
        strName += bSafe ? ch : L'_';
    }
    return strName + L".txt";
}

bool CMyFtpConnection::RemoteSizeMatches(IFtpConnection& connection, const std::wstring& strLocal,
                                         const std::wstring& strRemote) {
    FS_FIND_DATA local;
    if (!FsGetInfo(strLocal, local))
        return false;
    int64_t nRemote = -1;
    if (!connection.GetFileSize(strRemote, nRemote)) {
        std::vector<FTP_FIND_DATA> found;
        if (!connection.FindFiles(strRemote, found) || found.size() != 1)
            return false;
        nRemote = found[0].nSize;
    }
    return nRemote == local.nSize;
}

bool CMyFtpConnection::PutWhole(IFtpConnection& connection, const std::wstring& strLocal,
                                const std::wstring& strRemote) {
    if (!connection.PutFile(strLocal, strRemote))
        return false;
    if (RemoteSizeMatches(connection, strLocal, strRemote))
        return true;
    connection.Remove(strRemote);
    return false;
}

void CMyFtpConnection::RemoveStaleTempUploads(const CStringArray& arrPaths) {
    if (!m_bTempUpload || !m_pConnection)
        return;
    std::wstring strName = TempUploadName();
    CStringArray dirs{L""};
    for (const std::wstring& strPath : arrPaths) {
        std::wstring strDir = StrLeft(strPath, StrReverseFind(strPath, L'\\'));
        if (std::find(dirs.begin(), dirs.end(), strDir) == dirs.end())
            dirs.push_back(strDir);
    }
    for (const std::wstring& strDir : dirs) {
        std::vector<FTP_FIND_DATA> found;
        std::wstring strPath = strDir.empty() ? strName : JoinPath(strDir, strName);
        if (m_pConnection->FindFiles(strPath, found))
            m_pConnection->Remove(strPath);
    }
}

// A download, not a listing. The scratch directory is made when missing:
// without it every file would read as absent.
bool CMyFtpConnection::RemoteFileExists(const std::wstring& strRemote) {
    if (!EnsureConnected())
        return false;
    std::wstring strTempDir = JoinPath(m_strInstallPath, kTempFtpDir);
    if (!IsDirExist(strTempDir))
        CreateDirPath(strTempDir);
    std::wstring strScratch = JoinPath(strTempDir, L"Exist.dwg");
    bool bOk = WithOneRetry(
        [&](IFtpConnection& connection) { return connection.GetFile(strRemote, strScratch); });
    if (bOk)
        FsDeleteFile(strScratch);
    return bOk;
}

bool CMyFtpConnection::FindRemoteFile(const std::wstring& strDir, const std::wstring& strName) {
    if (!EnsureConnected())
        return false;
    if (!strDir.empty())
        m_pConnection->SetCurrentDirectory(strDir);
    std::vector<FTP_FIND_DATA> found;
    bool bFound = m_pConnection->FindFiles(strName, found);
    if (!bFound && HasFileExt(strName)) {
        std::wstring strUpper = RemoveFileExt(strName) + L"." + StrMakeUpper(GetFileExt(strName));
        bFound = m_pConnection->FindFiles(strUpper, found);
    }
    if (!strDir.empty())
        ReturnToSite();
    return bFound;
}

bool CMyFtpConnection::RemoteDirExists(const std::wstring& strPath) {
    if (!m_pConnection)
        return false;
    std::vector<FTP_FIND_DATA> found;
    m_pConnection->FindFiles(JoinPath(GetParentPath(strPath), L"*.*"), found);
    for (const FTP_FIND_DATA& entry : found) {
        if (!entry.bDirectory)
            continue;
        std::wstring strEntry = entry.strFilePath;
        StrReplace(strEntry, L"/", L"\\");
        if (EqualsNoCase(strEntry, strPath))
            return true;
    }
    return false;
}

// Each level is tested by entering it, not by a listing.
bool CMyFtpConnection::CreateRemoteDir(std::wstring strPath) {
    if (!EnsureConnected())
        return false;
    std::wstring strHome;
    m_pConnection->GetCurrentDirectory(strHome);
    if (strPath.empty())
        return false;
    strPath = StrTrimRight(strPath, L"\\") + L"\\";
    for (int nSep = StrFind(strPath, L'\\'); nSep >= 0; nSep = StrFind(strPath, L'\\', nSep + 1)) {
        std::wstring strPrefix = StrLeft(strPath, nSep);
        if (!m_pConnection->SetCurrentDirectory(strPrefix) &&
            !m_pConnection->CreateDirectory(strPrefix)) {
            m_pConnection->SetCurrentDirectory(strHome);
            return false;
        }
        m_pConnection->SetCurrentDirectory(strHome);
    }
    return true;
}

bool CMyFtpConnection::ListRemoteDir(const std::wstring& strDir, CStringArray& dirs,
                                     CStringArray& files) {
    dirs.clear();
    files.clear();
    if (!EnsureConnected())
        return false;
    std::vector<FTP_FIND_DATA> found;
    std::wstring strPattern = strDir.empty() ? L"*.*" : JoinPath(strDir, L"*.*");
    m_pConnection->FindFiles(strPattern, found);
    for (const FTP_FIND_DATA& entry : found)
        (entry.bDirectory ? dirs : files).push_back(entry.strName);
    return true;
}

// The files of a level first, then its subdirectories, each in full.
bool CMyFtpConnection::DownloadDir(const std::wstring& strRemoteDir,
                                   const std::wstring& strLocalDir) {
    CStringArray dirs, files;
    if (!ListRemoteDir(strRemoteDir, dirs, files))
        return false;
    bool bOk = IsDirExist(strLocalDir) || CreateDirPath(strLocalDir);
    for (const std::wstring& strFile : files)
        bOk = DownloadFile(JoinPath(strRemoteDir, strFile), JoinPath(strLocalDir, strFile)) && bOk;
    for (const std::wstring& strSub : dirs)
        bOk = DownloadDir(JoinPath(strRemoteDir, strSub), JoinPath(strLocalDir, strSub)) && bOk;
    return bOk;
}

namespace {

// The host id of this run, made at the first need.
std::wstring& HostIdOfRun() {
    static std::wstring s_strId;
    return s_strId;
}

std::wstring MakeHostId(std::string strAddress) {
    std::string strName;
    NetGetHostName(strName);
    if (strAddress.empty())
        NetGetInterfaceIPv4(strAddress);
    if (strAddress.empty() && !strName.empty())
        NetGetHostIPv4(strName, strAddress);
    return Format(L"%s(%s)", DecodeText(strAddress), DecodeText(strName));
}

} // namespace

void OfferHostAddress(const std::wstring& strAddress) {
    if (HostIdOfRun().empty() && !strAddress.empty() && strAddress.rfind(L"127.", 0) != 0)
        HostIdOfRun() = MakeHostId(WideToUtf8(strAddress));
}

std::wstring GetLocalIP() {
    if (std::string strId = EnvText("QM_HOST_ID"); !strId.empty())
        return Utf8ToWide(strId);
    if (HostIdOfRun().empty())
        HostIdOfRun() = MakeHostId("");
    return HostIdOfRun();
}

void ClearTempFTP() {
    std::wstring strDir = JoinPath(GetInstallPath_QM(), kTempFtpDir);
    std::vector<FS_FIND_DATA> found;
    if (!FsFind(JoinPath(strDir, L"*.*"), found))
        return;
    for (const FS_FIND_DATA& entry : found)
        if (!entry.bDirectory)
            FsDeleteFile(JoinPath(strDir, entry.strName));
}

bool CMyFtpConnection::IsMainLibChanged(const std::wstring& strServerFile,
                                        const std::wstring& strClientHeader) {
    return ::IsMainLibChanged(strServerFile, strClientHeader);
}

std::wstring CMyFtpConnection::TempFtpPath(const std::wstring& strRel) const {
    std::wstring strPath = JoinPath(JoinPath(m_strInstallPath, kTempFtpDir), strRel);
    std::wstring strDir = GetParentPath(strPath);
    if (!IsDirExist(strDir))
        CreateDirPath(strDir);
    return strPath;
}

std::wstring CMyFtpConnection::ClientFilePath(const wchar_t* pszName) const {
    return JoinPath(m_strInstallPath, pszName);
}

bool CMyFtpConnection::PlainGet(const std::wstring& strRemote, const std::wstring& strLocal) {
    return m_pConnection && m_pConnection->GetFile(strRemote, strLocal);
}

bool CMyFtpConnection::PlainPut(const std::wstring& strLocal, const std::wstring& strRemote) {
    return m_pConnection && m_pConnection->PutFile(strLocal, strRemote);
}

bool CMyFtpConnection::PlainRemove(const std::wstring& strRemote) {
    return m_pConnection && m_pConnection->Remove(strRemote);
}

bool CMyFtpConnection::PlainRename(const std::wstring& strFrom, const std::wstring& strTo) {
    return m_pConnection && m_pConnection->Rename(strFrom, strTo);
}

bool CMyFtpConnection::PlainPutToSite(const std::wstring& strLocal, const std::wstring& strName) {
    if (!m_pConnection)
        return false;
    if (!m_bTempUpload)
        return PutWhole(*m_pConnection, strLocal, strName);
    std::wstring strTemp = TempUploadName();
    if (!PutWhole(*m_pConnection, strLocal, strTemp))
        return false;
    PlainRemove(strName);
    return PlainRename(strTemp, strName);
}
