// The client's update decision against the site's "Server.xml", and taking the site's header.
#include "shared/MyFtpConnection.h"
#include "shared/OperateVersionFile.h"

#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"
#include "host/HostAutomation.h"
#include "host/HostUi.h"

namespace {

constexpr const wchar_t* kServerFile = L"Server.xml";
constexpr const wchar_t* kClientFile = L"Client.xml";
constexpr const wchar_t* kClientPartLibFile = L"Client_PartLib.xml";

// The seed of CheckServerVersion: "%Y,%m,%d, %X" of the local time, the
// time as hours:minutes:seconds after a blank; a shape of its own on purpose.
std::wstring TimeSeedHeader() {
    std::tm t{};
    VersionClockNow(t);
    return Format(L"版本日期：%d,%2.2d,%2.2d, %2.2d:%2.2d:%2.2d", t.tm_year + 1900, t.tm_mon + 1,
                  t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec);
}

std::wstring FirstLineOf(const std::wstring& strPath) {
    std::wstring strLine;
    ReadFirstLine(strPath, strLine);
    return strLine;
}

} // namespace

void CMyFtpConnection::SeedServerVersion(const std::wstring& strSeedHeader) {
    std::wstring strClient = ClientFilePath(kClientFile);
    if (!IsFileExist(strClient))
        WriteTextFile(strClient, strSeedHeader);
    std::wstring strRemote = kServerFile;
    UploadFile(strClient, strRemote);
}

// Only equality of the header lines counts: a client ahead of the site is as
// much out of step as one behind it.
bool CMyFtpConnection::CheckServerVersion() {
    std::wstring strTemp = TempFtpPath(kServerFile);
    FsDeleteFile(strTemp);
    if (!m_pConnection)
        return false;
    if (!DownloadFile(kServerFile, strTemp))
        SeedServerVersion(TimeSeedHeader());
    std::wstring strServer = FirstLineOf(strTemp);
    if (strServer.empty()) {
        FsDeleteFile(strTemp);
        return false;
    }
    std::wstring strClient = FirstLineOf(ClientFilePath(kClientFile));
    std::wstring strPartLib = FirstLineOf(ClientFilePath(kClientPartLibFile));
    if (strClient.empty())
        return IsMainLibChanged(strTemp, strPartLib);
    if (EqualsNoCase(strClient, strServer)) {
        FsDeleteFile(strTemp);
        return false;
    }
    if (IsMainLibChanged(strTemp, strPartLib))
        FsDeleteFile(strTemp);
    return true;
}

bool CMyFtpConnection::CheckServerUpdate(bool& bMainLibChanged) {
    bMainLibChanged = false;
    std::wstring strTemp = TempFtpPath(kServerFile);
    FsDeleteFile(strTemp);
    if (!m_pConnection)
        return false;
    if (!FindRemoteFile(L"", kServerFile)) {
        SeedServerVersion(L"版本日期：2007,07,07,07,07,07");
        return false;
    }
    DownloadFile(kServerFile, strTemp);
    std::wstring strServer = FirstLineOf(strTemp);
    if (strServer.empty()) {
        FsDeleteFile(strTemp);
        return false;
    }
    std::wstring strClient = FirstLineOf(ClientFilePath(kClientFile));
    std::wstring strPartLib = FirstLineOf(ClientFilePath(kClientPartLibFile));
    if (!strClient.empty() && EqualsNoCase(strClient, strServer)) {
        FsDeleteFile(strTemp);
        return false;
    }
    bMainLibChanged = IsMainLibChanged(strTemp, strPartLib);
    if (!strClient.empty())
        FsDeleteFile(strTemp);
    return true;
}

bool CMyFtpConnection::AdoptServerVersion() {
    std::wstring strTemp = TempFtpPath(kServerFile);
    FsDeleteFile(strTemp);
    if (!FindRemoteFile(L"", kServerFile))
        return false;
    DownloadFile(kServerFile, strTemp);
    std::wstring strServer = FirstLineOf(strTemp);
    if (strServer.empty()) {
        FsDeleteFile(strTemp);
        return false;
    }
    WriteTextFile(ClientFilePath(kClientFile), strServer);
    return WriteTextFile(ClientFilePath(kClientPartLibFile), strServer);
}

// The update commands belong to other modules of the suite: they are sent
// as text and not waited for.
void SyncClientOnStart() {
    CWaitCursor wait;
    CMyFtpConnection ftp;
    if (!ftp.Connect())
        return;
    bool bMainLibChanged = false;
    if (ftp.CheckServerUpdate(bMainLibChanged)) {
        IAcadApplication* pApp = GetAcadApplication();
        IAcadDocument* pDoc = pApp ? pApp->ActiveDocument() : nullptr;
        if (pDoc) {
            if (bMainLibChanged)
                pDoc->SendCommand(L"CloseMain\n");
            pDoc->SendCommand(L"SynchUpdateHide\n");
        }
    }
    ftp.CloseConnection();
}
