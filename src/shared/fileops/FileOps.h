// Path text, existence tests, whole text files and directory trees shared by the whole system.
#pragma once

#include "base/StrUtil.h"

#include <string>
#include <vector>

// Path text. Arguments are taken by value; the edge results are relied on.
std::wstring JoinPath(std::wstring strLeft, std::wstring strRight);
std::wstring GetParentPath(std::wstring strPath);
std::wstring GetFileName(std::wstring strPath); // empty when there is no backslash
std::wstring GetLastDirName(std::wstring strPath);
bool HasFileExt(std::wstring strPath);
std::wstring GetFileExt(std::wstring strPath);
std::wstring RemoveFileExt(std::wstring strPath);

// Existence. The stems "com1" and "com2" are refused without touching the disk.
bool IsFileExist(std::wstring strPath);
bool IsDirExist(std::wstring strPath);

// Whole files in the text mode of the string file.
bool ReadFirstLine(std::wstring strPath, std::wstring& strLine);
bool WriteTextFile(std::wstring strPath, std::wstring strText);
bool ReadLines(std::wstring strPath, CStringArray& lines, bool bKeepBlank);
bool WriteLines(std::wstring strPath, const CStringArray& lines);

// Directories.
bool CreateDirPath(std::wstring strPath);
void DeleteDirTree(std::wstring strPath);

// True only when the file is held by another program (see FsIsLockedElsewhere).
bool IsFileOpenElsewhere(std::wstring strPath);
// The last file-system error in a box titled "Error".
void ShowLastError();
// Full paths of the files under a directory with an extension ("dwg") or "*.*".
void CollectFiles(std::wstring strDir, std::wstring strExt, CStringArray& files, bool bRecursive);
// Directory paths under a directory, recursively, "." and ".." included.
void CollectDirs(std::wstring strDir, CStringArray& dirs);
