// The safety net of "Server.xml": its backup, the repair from that backup, and the site's journal.
#include "shared/MyFtpConnection.h"
#include "shared/OperateVersionFile.h"

#include "base/FileSystem.h"
#include "base/Format.h"
#include "host/HostUi.h"

#include <algorithm>
#include <exception>

namespace {

constexpr const wchar_t* kBackupFile = L"Server.backup";
constexpr const wchar_t* kLogFile = L"OS.log";

CStringArray LinesOf(const std::wstring& strPath) {
    CStringArray lines;
    ReadLines(strPath, lines, false);
    return lines;
}

// Rewrites the file without its unsound records; the header stays.
bool DropUnsoundLines(const std::wstring& strPath, CStringArray& lines) {
    CStringArray kept;
    for (size_t i = 0; i < lines.size(); ++i)
        if (i == 0 || IsSoundVersionLine(lines[i], false))
            kept.push_back(lines[i]);
    if (!WriteLines(strPath, kept))
        return false;
    lines = kept;
    return true;
}

} // namespace

// A backup with more lines than the current file is taken as the better one
// and kept, and so is any backup when the current file has a line cut short;
// that refusal is worth a line in the journal.
void CMyFtpConnection::BackupServerFile(const std::wstring& strLocal) {
    CStringArray current = LinesOf(strLocal);
    if (CountUnsoundVersionLines(current) > 0) {
        WriteOperateLog(L"备份Server.xml文件时出错！");
        return;
    }
    std::wstring strCopy = TempFtpPath(kBackupFile);
    FsDeleteFile(strCopy);
    PlainGet(kBackupFile, strCopy);
    CStringArray backup = LinesOf(strCopy);
    FsDeleteFile(strCopy);
    bool bStored = false;
    if (backup.empty() || backup.size() <= current.size()) {
        PlainRemove(kBackupFile);
        bStored = PlainPutToSite(strLocal, kBackupFile);
    }
    if (!bStored)
        WriteOperateLog(L"备份Server.xml文件时出错！");
}

// The record count of "Server.xml" may only grow: a rewrite shorter than the
// backup, or one with a line cut short, has lost records, and the backup with
// the new records takes its place. Lines the backup itself holds cut short are
// dropped then, since no reader could use them.
bool CMyFtpConnection::VerifyServerFile(const std::wstring& strLocal, const CStringArray& arrPaths,
                                        const CStringArray& arrOprts) {
    std::wstring strCopy = TempFtpPath(kBackupFile);
    FsDeleteFile(strCopy);
    PlainGet(kBackupFile, strCopy);
    CStringArray current = LinesOf(strLocal);
    CStringArray backup = LinesOf(strCopy);
    if (backup.size() <= current.size() && CountUnsoundVersionLines(current) == 0) {
        if (current.size() == 1)
            WriteOperateLog(Format(L"%s,更新Server.xml文件仅有一条数据！", current[0]));
        else if (current.empty())
            WriteOperateLog(L"更新后Server.xml文件数据为空！");
        // The one-line test looks at the rewrite, not at the backup, as it always has.
        if (backup.size() < 2 && current.size() == 1)
            WriteOperateLog(Format(L"%s,Server.backup文件仅有一条数据！", current[0]));
        else if (backup.size() < 2)
            WriteOperateLog(L"Server.backup文件不存在或数据为空！");
    } else {
        FsCopyFile(strCopy, strLocal, false);
        COperateVersionFile(strLocal).UpdateRecords(arrPaths, arrOprts);
        current = LinesOf(strLocal);
        size_t nBad = CountUnsoundVersionLines(current);
        if (nBad > 0 && DropUnsoundLines(strLocal, current))
            backup.resize(backup.size() - std::min(nBad, backup.size()));
    }
    if (current.size() < backup.size()) {
        std::wstring strText = L"利用备份数据更新Server.xml仍然出错！";
        if (!current.empty())
            strText = Format(L"%s,利用备份数据更新Server.xml仍然出错！", current.back());
        WriteOperateLog(strText);
        QmMessageBox(strText, MB_ICONSTOP);
        FsDeleteFile(strCopy);
        FsDeleteFile(strLocal);
        return false;
    }
    FsDeleteFile(strCopy);
    return true;
}

bool CMyFtpConnection::WriteOperateLog(const std::wstring& strText) {
    try {
        std::wstring strLocal = TempFtpPath(kLogFile);
        FsDeleteFile(strLocal);
        PlainGet(kLogFile, strLocal);
        std::tm t{};
        VersionClockNow(t);
        CStringArray lines = LinesOf(strLocal);
        lines.push_back(Format(L"[TIME:]%d-%d-%d %d:%d:%d  [HOST:]%s  [OPRT:]%s", t.tm_year + 1900,
                               t.tm_mon + 1, t.tm_mday, t.tm_hour, t.tm_min, t.tm_sec, GetLocalIP(),
                               strText));
        WriteLines(strLocal, lines);
        PlainPutToSite(strLocal, kLogFile);
        FsDeleteFile(strLocal);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}
