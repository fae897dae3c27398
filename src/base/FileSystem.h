// Every file-system call of the system, on system paths (backslash), with plain results.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

// One entry of a directory search, as the platform's file search reports it.
struct FS_FIND_DATA {
    std::wstring strName; // the entry's name, "." and ".." included
    bool bDirectory = false;
    bool bReadOnly = false; // no write permission for the owner
    bool bLink = false;     // a symbolic link (the rest describes what it points to)
    int64_t nSize = 0;
    int64_t nModified = 0;   // seconds since 1970
    int64_t nModifiedNs = 0; // and nanoseconds within that second, where the file system keeps them
};

// Matches a name against a pattern with "*" and "?", without regard to
// case (ASCII) unless asked, in the platform's manner: a final ".*" also
// matches a name without an extension, so "*.*" matches every name.
bool FsMatchWildcard(std::wstring_view strPattern, std::wstring_view strName,
                     bool bMatchCase = false);

// Searches the directory part of the pattern for names matching its last
// element. A pattern ending in a backslash finds nothing; a directory
// searched with "*.*" lists "." and "..". Returns false when nothing matched.
bool FsFind(const std::wstring& strPattern, std::vector<FS_FIND_DATA>& found);
// The names of the subdirectories of a directory, without "." and "..", in
// no order; cheaper than a search, since files are not looked at one by one.
bool FsListSubdirectories(const std::wstring& strDir, std::vector<std::wstring>& names);

bool FsExists(const std::wstring& strPath);
bool FsIsDirectory(const std::wstring& strPath);
bool FsGetInfo(const std::wstring& strPath, FS_FIND_DATA& info);
// True when this process may write the existing file.
bool FsIsWritable(const std::wstring& strPath);

// One level only; false if it exists or the parent is missing.
bool FsCreateDirectory(const std::wstring& strPath);
// Only an empty directory.
bool FsRemoveDirectory(const std::wstring& strPath);
bool FsDeleteFile(const std::wstring& strPath);
// Renames or moves a file or directory; false if the target exists, decided
// by the kernel in the same step as the rename, so that two workstations on
// one share can't both win.
bool FsMoveFile(const std::wstring& strFrom, const std::wstring& strTo);
// Copies through a temporary beside the target that replaces it whole; false
// (and both files intact) for a copy of a file onto itself, under whatever
// spelling or hard link.
bool FsCopyFile(const std::wstring& strFrom, const std::wstring& strTo, bool bFailIfExists);
// Renames a file over another (replacing it) and makes the rename durable.
bool FsReplaceFile(const std::wstring& strFrom, const std::wstring& strTo);
// Deletes a directory and everything under it. Symbolic links are removed
// themselves, never followed; read-only entries are deleted too. False when
// anything remained.
bool FsDeleteTree(const std::wstring& strPath);
// Clears the read-only state (owner write permission).
bool FsSetNormalAttributes(const std::wstring& strPath);
bool FsSetReadOnly(const std::wstring& strPath);
// Recoverable delete into the freedesktop trash (the shell's recycle bin).
bool FsMoveToTrash(const std::wstring& strPath);

// True when another open file description holds a conflicting advisory lock
// on the file (fcntl record lock or flock). Linux has no sharing modes, so a
// program that opens a file without locking it cannot be detected.
bool FsIsLockedElsewhere(const std::wstring& strPath);
// Takes an advisory write lock on an open descriptor, as a document holds
// its drawing; released when the descriptor is closed.
bool FsLockOpenFile(int fd);
// Opens the file for reading and writing and takes that lock; -1 on failure.
int FsOpenLocked(const std::wstring& strPath);
void FsCloseHandle(int fd);

bool FsReadBinary(const std::wstring& strPath, std::string& bytes);
// Replaces the file whole: the bytes go to a temporary in the same directory,
// which is flushed to the disk and renamed over the target. On any failure
// the old file is untouched, the temporary is gone and the error is that of
// the call that failed. A link is followed to the file it names.
bool FsWriteBinary(const std::wstring& strPath, const std::string& bytes);
std::FILE* FsOpenStdio(const std::wstring& strPath, const char* mode);

std::wstring FsGetCurrentDirectory();
std::wstring FsGetTempDirectory(); // with a final backslash

// The error of the last failed call on this thread (errno values) and its text.
int FsGetLastError();
std::wstring FsErrorText(int nError);
