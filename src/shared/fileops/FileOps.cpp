// Path and file helpers with the exact edge results their callers rely on.
#include "shared/fileops/FileOps.h"

#include "base/FileSystem.h"
#include "base/StrUtil.h"
#include "base/TextFile.h"
#include "host/HostUi.h"

std::wstring JoinPath(std::wstring strLeft, std::wstring strRight) {
    bool bLeft = !strLeft.empty() && strLeft.back() == L'\\';
    bool bRight = !strRight.empty() && strRight.front() == L'\\';
    if (bLeft && bRight)
        return strLeft + StrMid(strRight, 1);
    if (!bLeft && !bRight)
        return strLeft + L"\\" + strRight;
    return strLeft + strRight;
}

std::wstring GetParentPath(std::wstring strPath) {
    int n = StrReverseFind(strPath, L'\\');
    return n < 0 ? std::wstring() : StrLeft(strPath, n);
}

std::wstring GetFileName(std::wstring strPath) {
    int n = StrReverseFind(strPath, L'\\');
    return n < 0 ? std::wstring() : StrMid(strPath, n + 1);
}

std::wstring GetLastDirName(std::wstring strPath) {
    if (!strPath.empty() && strPath.back() == L'\\')
        strPath.pop_back();
    int n = StrReverseFind(strPath, L'\\');
    return n < 0 ? std::wstring() : StrMid(strPath, n + 1);
}

bool HasFileExt(std::wstring strPath) {
    std::wstring strLast = StrMid(strPath, StrReverseFind(strPath, L'\\') + 1);
    int nDot = StrReverseFind(strLast, L'.');
    return nDot >= 0 && nDot + 1 < static_cast<int>(strLast.size());
}

std::wstring GetFileExt(std::wstring strPath) {
    if (!HasFileExt(strPath))
        return {};
    return StrMid(strPath, StrReverseFind(strPath, L'.') + 1);
}

std::wstring RemoveFileExt(std::wstring strPath) {
    if (!HasFileExt(strPath))
        return strPath;
    return StrLeft(strPath, StrReverseFind(strPath, L'.'));
}

bool IsFileExist(std::wstring strPath) {
    std::wstring strName;
    int nSlash = StrReverseFind(strPath, L'\\');
    if (nSlash >= 0)
        strName = StrMid(strPath, nSlash + 1);
    int nDot = StrReverseFind(strName, L'.');
    if (nDot >= 0)
        strName = StrLeft(strName, nDot);
    // Device names on the platform; only these two are guarded.
    if (EqualsNoCase(strName, L"com1") || EqualsNoCase(strName, L"com2"))
        return false;
    std::vector<FS_FIND_DATA> found;
    return FsFind(strPath, found);
}

bool IsDirExist(std::wstring strPath) {
    if (strPath.empty())
        return false;
    return IsFileExist(JoinPath(strPath, L"*.*"));
}

bool ReadFirstLine(std::wstring strPath, std::wstring& strLine) {
    CTextFile file;
    if (!file.Open(strPath, CTextFile::modeRead))
        return false;
    file.ReadString(strLine);
    return true;
}

bool WriteTextFile(std::wstring strPath, std::wstring strText) {
    CTextFile file;
    if (!file.Open(strPath, CTextFile::modeCreateWrite))
        return false;
    file.WriteString(strText);
    return file.Close();
}

bool ReadLines(std::wstring strPath, CStringArray& lines, bool bKeepBlank) {
    return ReadTextFileLines(strPath, lines, bKeepBlank);
}

bool WriteLines(std::wstring strPath, const CStringArray& lines) {
    CTextFile file;
    if (!file.Open(strPath, CTextFile::modeCreateWrite))
        return false;
    for (const std::wstring& strLine : lines)
        file.WriteString(strLine + L"\n");
    return file.Close();
}

bool CreateDirPath(std::wstring strPath) {
    if (strPath.empty())
        return false;
    if (IsDirExist(strPath))
        return true;
    strPath = StrTrimRight(strPath, L"\\") + L"\\";
    bool bResult = false;
    bool bMadeOne = false;
    for (int n = StrFind(strPath, L'\\'); n >= 0; n = StrFind(strPath, L'\\', n + 1)) {
        std::wstring strPrefix = StrLeft(strPath, n);
        if (strPrefix.empty() || FsExists(strPrefix))
            continue; // the root of an absolute path, or a level that stands
        bResult = FsCreateDirectory(strPrefix);
        bMadeOne = true;
    }
    return bMadeOne && bResult;
}

void DeleteDirTree(std::wstring strPath) {
    FsDeleteTree(strPath);
}

bool IsFileOpenElsewhere(std::wstring strPath) {
    return FsIsLockedElsewhere(strPath);
}

void ShowLastError() {
    HostMessageBox(FsErrorText(FsGetLastError()), L"Error", MB_ICONINFORMATION);
}

void CollectFiles(std::wstring strDir, std::wstring strExt, CStringArray& files, bool bRecursive) {
    std::wstring strPattern = strExt == L"*.*" ? L"*.*" : L"*." + strExt;
    std::vector<FS_FIND_DATA> found;
    FsFind(JoinPath(strDir, strPattern), found);
    for (const FS_FIND_DATA& entry : found)
        if (!entry.bDirectory)
            files.push_back(JoinPath(strDir, entry.strName));
    if (!bRecursive)
        return;
    FsFind(JoinPath(strDir, L"*.*"), found);
    for (const FS_FIND_DATA& entry : found)
        if (entry.bDirectory && !entry.bLink && entry.strName != L"." && entry.strName != L"..")
            CollectFiles(JoinPath(strDir, entry.strName), strExt, files, true);
}

void CollectDirs(std::wstring strDir, CStringArray& dirs) {
    std::vector<FS_FIND_DATA> found;
    FsFind(JoinPath(strDir, L"*.*"), found);
    for (const FS_FIND_DATA& entry : found) {
        if (!entry.bDirectory)
            continue;
        std::wstring strSub = JoinPath(strDir, entry.strName);
        dirs.push_back(strSub);
        if (!entry.bLink && entry.strName != L"." && entry.strName != L"..")
            CollectDirs(strSub, dirs);
    }
}
