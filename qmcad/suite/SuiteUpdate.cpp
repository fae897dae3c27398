// The workstation update: the site's version file read record by record, newest first.
#include "suite/SuiteUpdate.h"

#include "host/FtpClient.h"

#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/NumberText.h"
#include "base/StrUtil.h"
#include "base/TextFile.h"

#include <vector>

namespace {

constexpr const wchar_t* kHeaderPrefix = L"版本日期：";
constexpr const wchar_t* kMainLib = L"Data\\TzMainLib.mdb";

std::vector<std::wstring> ReadLines(const std::wstring& strPath) {
    std::vector<std::wstring> lines;
    CTextFile file;
    std::wstring strLine;
    if (file.Open(strPath, CTextFile::modeRead))
        while (file.ReadString(strLine))
            lines.push_back(strLine);
    return lines;
}

bool WriteOneLine(const std::wstring& strPath, const std::wstring& strText) {
    CTextFile file;
    return file.Open(strPath, CTextFile::modeCreateWrite) && file.WriteString(strText) &&
           file.Close();
}

std::wstring DateOf(const std::wstring& strHeader) {
    return StrLeft(strHeader, 5) == kHeaderPrefix ? StrMid(strHeader, 5) : std::wstring();
}

// "path|date|operation"; false for a line of another shape.
bool SplitRecord(const std::wstring& strLine, std::wstring fields[3]) {
    size_t a = strLine.find(L'|'), b = a == std::wstring::npos ? a : strLine.find(L'|', a + 1);
    if (b == std::wstring::npos || strLine.find(L'|', b + 1) != std::wstring::npos)
        return false;
    fields[0] = strLine.substr(0, a);
    fields[1] = strLine.substr(a + 1, b - a - 1);
    fields[2] = strLine.substr(b + 1);
    return !fields[0].empty();
}

bool MakeDirs(const std::wstring& strDir) {
    std::wstring strPath = StrTrimRight(strDir, L"\\") + L"\\";
    for (int n = StrFind(strPath, L'\\', 1); n >= 0; n = StrFind(strPath, L'\\', n + 1)) {
        std::wstring strLevel = StrLeft(strPath, n);
        if (!FsIsDirectory(strLevel) && !FsCreateDirectory(strLevel))
            return false;
    }
    return true;
}

// One record "path|date|operation" applied under the install path; false when it failed.
bool Apply(IFtpConnection& ftp, const std::wstring& strInstall, const std::wstring& strPath,
           const std::wstring& strOprt) {
    std::wstring strLocal = strInstall + strPath;
    bool bDir = !strPath.empty() && strPath.back() == L'\\';
    if (strOprt == L"DEL")
        return bDir ? (!FsIsDirectory(strLocal) || FsDeleteTree(strLocal))
                    : (!FsExists(strLocal) || FsDeleteFile(strLocal));
    if (bDir)
        return MakeDirs(strLocal);
    if (!MakeDirs(StrLeft(strLocal, StrReverseFind(strLocal, L'\\'))))
        return false;
    // Fetched beside the file first, so that a broken transfer leaves the old one.
    std::wstring strTemp = strLocal + L".update";
    if (!ftp.GetFile(strPath, strTemp))
        return false;
    return FsReplaceFile(strTemp, strLocal);
}

} // namespace

std::wstring CSuiteUpdate::DecodeLoginLine(const std::wstring& strLine) {
    std::wstring strClear;
    for (size_t i = 0; i + 1 < strLine.size(); i += 2)
        strClear += static_cast<wchar_t>(
            ((strLine[i] - L'a') * 16 + ((strLine[i + 1] - L'a') & 0x0F)) & 0xFFFF);
    return strClear;
}

bool CSuiteUpdate::Run(std::wstring& strReport) {
    std::wstring strInstall = m_paths.InstallPath();
    std::vector<std::wstring> login = ReadLines(strInstall + L"LocalData\\TzFTPLoginInfo.sys");
    login.resize(11);
    for (std::wstring& strLine : login)
        strLine = DecodeLoginLine(strLine);
    std::unique_ptr<IFtpSession> pSession = OpenFtpSession();
    std::wstring strError;
    std::unique_ptr<IFtpConnection> pFtp =
        pSession ? pSession->GetFtpConnection(login[2], login[5], login[6],
                                              static_cast<uint16_t>(TextToInt(login[3])),
                                              login[10] == L"1", strError)
                 : nullptr;
    if (!pFtp || (!login[1].empty() && !pFtp->SetCurrentDirectory(login[1]))) {
        strReport = Format(L"无法连接服务器: %s", strError);
        return false;
    }
    std::wstring strCopy = strInstall + L"LocalData\\Server.xml.update";
    std::vector<std::wstring> site;
    if (pFtp->GetFile(L"Server.xml", strCopy))
        site = ReadLines(strCopy);
    FsDeleteFile(strCopy);
    std::wstring strSiteDate = site.empty() ? std::wstring() : DateOf(site[0]);
    if (strSiteDate.empty()) {
        strReport = L"服务器的版本文件读不出。";
        return false;
    }
    std::vector<std::wstring> client = ReadLines(strInstall + L"Client.xml");
    std::wstring strClientDate = client.empty() ? std::wstring() : DateOf(client[0]);
    int nDone = 0, nFailed = 0;
    bool bMainLib = false;
    for (size_t i = 1; i < site.size(); ++i) {
        std::wstring fields[3];
        if (!SplitRecord(site[i], fields) || CompareNoCase(fields[1], strClientDate) <= 0)
            continue;
        bool bOk = Apply(*pFtp, strInstall, fields[0], fields[2]);
        bMainLib = bMainLib || (bOk && EqualsNoCase(fields[0], kMainLib));
        (bOk ? nDone : nFailed) += 1;
    }
    pFtp->Close();
    // A workstation that missed a file stays behind, and the next start tries again.
    if (nFailed == 0) {
        WriteOneLine(strInstall + L"Client.xml", site[0]);
        if (bMainLib)
            WriteOneLine(strInstall + L"Client_PartLib.xml", site[0]);
    }
    strReport = Format(L"已从服务器更新 %d 项，失败 %d 项。", nDone, nFailed);
    return nFailed == 0;
}
