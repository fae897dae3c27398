// File-system calls over POSIX and GIO, the only place that touches the disk.
#include "base/FileSystem.h"

#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <gio/gio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

thread_local int t_nLastError = 0;

bool Fail() {
    t_nLastError = errno;
    return false;
}

bool FailWith(int nError) {
    t_nLastError = nError;
    return false;
}

bool Stat(const std::string& osPath, struct stat& st) {
    return ::stat(osPath.c_str(), &st) == 0;
}

FS_FIND_DATA MakeFindData(const std::wstring& strName, const struct stat& st) {
    FS_FIND_DATA data;
    data.strName = strName;
    data.bDirectory = S_ISDIR(st.st_mode);
    data.bReadOnly = (st.st_mode & S_IWUSR) == 0;
    data.nSize = data.bDirectory ? 0 : static_cast<int64_t>(st.st_size);
    data.nModified = static_cast<int64_t>(st.st_mtime);
    data.nModifiedNs = static_cast<int64_t>(st.st_mtim.tv_nsec);
    return data;
}

// "*" and "?" with backtracking; a trailing ".*" may match nothing.
bool MatchFrom(std::wstring_view p, std::wstring_view n, bool bMatchCase) {
    auto same = [bMatchCase](wchar_t a, wchar_t b) {
        return bMatchCase ? a == b : FoldLower(a) == FoldLower(b);
    };
    size_t pi = 0, ni = 0, starP = std::wstring_view::npos, starN = 0;
    while (ni < n.size()) {
        if (pi < p.size() && (p[pi] == L'?' || same(p[pi], n[ni]))) {
            ++pi;
            ++ni;
        } else if (pi < p.size() && p[pi] == L'*') {
            starP = pi++;
            starN = ni;
        } else if (starP != std::wstring_view::npos) {
            pi = starP + 1;
            ni = ++starN;
        } else {
            return false;
        }
    }
    while (pi < p.size() && p[pi] == L'*')
        ++pi;
    if (p.substr(pi) == L".*")
        return true;
    return pi == p.size();
}

bool CopyBytes(int in, int out) {
    char buf[65536];
    for (;;) {
        ssize_t n = ::read(in, buf, sizeof buf);
        if (n == 0)
            return true;
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        for (ssize_t done = 0; done < n;) {
            ssize_t w = ::write(out, buf + done, static_cast<size_t>(n - done));
            if (w < 0 && errno == EINTR)
                continue;
            if (w <= 0)
                return false;
            done += w;
        }
    }
}

} // namespace

bool FsMatchWildcard(std::wstring_view strPattern, std::wstring_view strName, bool bMatchCase) {
    return MatchFrom(strPattern, strName, bMatchCase);
}

bool FsFind(const std::wstring& strPattern, std::vector<FS_FIND_DATA>& found) {
    found.clear();
    int nSlash = StrReverseFind(strPattern, L'\\');
    std::wstring strDir = nSlash < 0 ? L"." : StrLeft(strPattern, nSlash + 1);
    std::wstring strName = StrMid(strPattern, nSlash + 1);
    if (strName.empty())
        return FailWith(ENOENT);
    std::string osDir = ToOsPath(strDir);
    DIR* dir = ::opendir(osDir.c_str());
    if (!dir)
        return Fail();
    if (osDir.back() != '/')
        osDir += '/';
    while (dirent* ent = ::readdir(dir)) {
        std::wstring strEntry = Utf8ToWide(ent->d_name);
        if (!FsMatchWildcard(strName, strEntry))
            continue;
        struct stat st;
        if (!Stat(osDir + ent->d_name, st))
            continue; // a dangling link or an entry that just went away
        found.push_back(MakeFindData(strEntry, st));
    }
    ::closedir(dir);
    return found.empty() ? FailWith(ENOENT) : true;
}

bool FsListSubdirectories(const std::wstring& strDir, std::vector<std::wstring>& names) {
    names.clear();
    std::string osDir = ToOsPath(strDir);
    DIR* dir = ::opendir(osDir.c_str());
    if (!dir)
        return Fail();
    if (osDir.back() != '/')
        osDir += '/';
    while (dirent* ent = ::readdir(dir)) {
        std::string_view name = ent->d_name;
        if (name == "." || name == "..")
            continue;
        bool bDir = ent->d_type == DT_DIR;
        struct stat st;
        if ((ent->d_type == DT_UNKNOWN || ent->d_type == DT_LNK) && Stat(osDir + ent->d_name, st))
            bDir = S_ISDIR(st.st_mode);
        if (bDir)
            names.push_back(Utf8ToWide(name));
    }
    ::closedir(dir);
    return true;
}

bool FsExists(const std::wstring& strPath) {
    struct stat st;
    return Stat(ToOsPath(strPath), st) || Fail();
}

bool FsIsDirectory(const std::wstring& strPath) {
    struct stat st;
    return Stat(ToOsPath(strPath), st) && S_ISDIR(st.st_mode);
}

bool FsGetInfo(const std::wstring& strPath, FS_FIND_DATA& info) {
    struct stat st;
    if (!Stat(ToOsPath(strPath), st))
        return Fail();
    int nSlash = StrReverseFind(strPath, L'\\');
    info = MakeFindData(StrMid(strPath, nSlash + 1), st);
    return true;
}

bool FsCreateDirectory(const std::wstring& strPath) {
    return ::mkdir(ToOsPath(strPath).c_str(), 0777) == 0 || Fail();
}

bool FsRemoveDirectory(const std::wstring& strPath) {
    return ::rmdir(ToOsPath(strPath).c_str()) == 0 || Fail();
}

bool FsDeleteFile(const std::wstring& strPath) {
    std::string os = ToOsPath(strPath);
    struct stat st;
    if (::lstat(os.c_str(), &st) == 0 && S_ISDIR(st.st_mode))
        return FailWith(EISDIR);
    return ::unlink(os.c_str()) == 0 || Fail();
}

bool FsMoveFile(const std::wstring& strFrom, const std::wstring& strTo) {
    std::string from = ToOsPath(strFrom), to = ToOsPath(strTo);
    struct stat st;
    if (::lstat(from.c_str(), &st) != 0)
        return Fail();
    // The platform refuses to replace; a rename that only changes case is allowed.
    struct stat stTo;
    if (::lstat(to.c_str(), &stTo) == 0 && !(stTo.st_ino == st.st_ino && stTo.st_dev == st.st_dev))
        return FailWith(EEXIST);
    return ::rename(from.c_str(), to.c_str()) == 0 || Fail();
}

bool FsCopyFile(const std::wstring& strFrom, const std::wstring& strTo, bool bFailIfExists) {
    int in = ::open(ToOsPath(strFrom).c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0)
        return Fail();
    struct stat st;
    if (::fstat(in, &st) != 0) {
        int err = errno;
        ::close(in);
        return FailWith(err);
    }
    if (S_ISDIR(st.st_mode)) {
        ::close(in);
        return FailWith(EISDIR);
    }
    int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (bFailIfExists ? O_EXCL : O_TRUNC);
    int out = ::open(ToOsPath(strTo).c_str(), flags, st.st_mode & 0777);
    if (out < 0) {
        int err = errno;
        ::close(in);
        return FailWith(err);
    }
    bool bOk = CopyBytes(in, out);
    int err = errno;
    ::close(in);
    if (::close(out) != 0)
        bOk = false;
    return bOk || FailWith(err);
}

bool FsSetNormalAttributes(const std::wstring& strPath) {
    std::string os = ToOsPath(strPath);
    struct stat st;
    if (!Stat(os, st))
        return Fail();
    return ::chmod(os.c_str(), (st.st_mode & 07777) | S_IWUSR) == 0 || Fail();
}

bool FsSetReadOnly(const std::wstring& strPath) {
    std::string os = ToOsPath(strPath);
    struct stat st;
    if (!Stat(os, st))
        return Fail();
    return ::chmod(os.c_str(), (st.st_mode & 07777) & ~(S_IWUSR | S_IWGRP | S_IWOTH)) == 0 ||
           Fail();
}

bool FsMoveToTrash(const std::wstring& strPath) {
    GFile* file = g_file_new_for_path(ToOsPath(strPath).c_str());
    GError* error = nullptr;
    gboolean bOk = g_file_trash(file, nullptr, &error);
    if (error) {
        t_nLastError = error->code == G_IO_ERROR_NOT_FOUND ? ENOENT : EIO;
        g_error_free(error);
    }
    g_object_unref(file);
    return bOk != FALSE;
}

bool FsIsLockedElsewhere(const std::wstring& strPath) {
    int fd = ::open(ToOsPath(strPath).c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return Fail();
    struct flock fl {};
    fl.l_type = F_WRLCK;
    fl.l_whence = SEEK_SET;
    bool bLocked = ::fcntl(fd, F_OFD_GETLK, &fl) == 0 && fl.l_type != F_UNLCK;
    if (!bLocked && ::flock(fd, LOCK_EX | LOCK_NB) != 0)
        bLocked = errno == EWOULDBLOCK;
    ::close(fd); // also drops a flock that this probe took
    if (bLocked)
        t_nLastError = EBUSY;
    return bLocked;
}

bool FsLockOpenFile(int fd) {
    struct flock fl {};
    fl.l_type = F_WRLCK;
    fl.l_whence = SEEK_SET;
    return ::fcntl(fd, F_OFD_SETLK, &fl) == 0 || Fail();
}

int FsOpenLocked(const std::wstring& strPath) {
    int fd = ::open(ToOsPath(strPath).c_str(), O_RDWR | O_CLOEXEC);
    if (fd < 0) {
        Fail();
        return -1;
    }
    if (!FsLockOpenFile(fd)) {
        ::close(fd);
        return -1;
    }
    return fd;
}

void FsCloseHandle(int fd) {
    if (fd >= 0)
        ::close(fd);
}

bool FsReadBinary(const std::wstring& strPath, std::string& bytes) {
    bytes.clear();
    int fd = ::open(ToOsPath(strPath).c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return Fail();
    struct stat st;
    if (::fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
        ::close(fd);
        return FailWith(EISDIR);
    }
    char buf[65536];
    for (;;) {
        ssize_t n = ::read(fd, buf, sizeof buf);
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0) {
            int err = errno;
            ::close(fd);
            return FailWith(err);
        }
        if (n == 0)
            break;
        bytes.append(buf, static_cast<size_t>(n));
    }
    ::close(fd);
    return true;
}

bool FsWriteBinary(const std::wstring& strPath, const std::string& bytes) {
    std::FILE* f = FsOpenStdio(strPath, "wb");
    if (!f)
        return false;
    bool bOk = std::fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    int err = errno;
    if (std::fclose(f) != 0)
        bOk = false;
    return bOk || FailWith(err);
}

std::FILE* FsOpenStdio(const std::wstring& strPath, const char* mode) {
    std::string os = ToOsPath(strPath);
    struct stat st;
    if (Stat(os, st) && S_ISDIR(st.st_mode)) {
        t_nLastError = EISDIR;
        return nullptr;
    }
    std::FILE* f = std::fopen(os.c_str(), mode);
    if (!f)
        t_nLastError = errno;
    return f;
}

std::wstring FsGetCurrentDirectory() {
    char buf[4096];
    if (!::getcwd(buf, sizeof buf))
        return {};
    return FromOsPath(buf);
}

std::wstring FsGetTempDirectory() {
    const char* tmp = std::getenv("TMPDIR");
    std::wstring dir = FromOsPath(tmp && *tmp ? tmp : "/tmp");
    if (dir.empty() || dir.back() != L'\\')
        dir += L'\\';
    return dir;
}

int FsGetLastError() {
    return t_nLastError;
}

std::wstring FsErrorText(int nError) {
    return Utf8ToWide(std::strerror(nError));
}
