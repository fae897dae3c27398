// File-system calls over POSIX and GIO, the only place that touches the disk.
#include "base/FileSystem.h"

#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
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

bool WriteAll(int fd, const char* p, size_t n) {
    for (size_t done = 0; done < n;) {
        ssize_t w = ::write(fd, p + done, n - done);
        if (w < 0 && errno == EINTR)
            continue;
        if (w < 0)
            return false;
        if (w == 0) {
            errno = ENOSPC;
            return false;
        }
        done += static_cast<size_t>(w);
    }
    return true;
}

// A descriptor closed when the scope ends.
struct CFd {
    int fd;
    explicit CFd(int n) : fd(n) {}
    ~CFd() { Close(); }
    CFd(const CFd&) = delete;
    CFd& operator=(const CFd&) = delete;
    void Close() {
        if (fd >= 0)
            ::close(fd);
        fd = -1;
    }
};

std::string DirectoryOf(const std::string& os) {
    size_t n = os.rfind('/');
    if (n == std::string::npos)
        return ".";
    return n == 0 ? "/" : os.substr(0, n);
}

bool SyncDirectoryOf(const std::string& os) {
    CFd dir(::open(DirectoryOf(os).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (dir.fd < 0)
        return false;
    // Some file systems can't sync a directory; the rename itself stands.
    return ::fsync(dir.fd) == 0 || errno == EINVAL || errno == EROFS;
}

// The kernel decides "target exists" and the rename in one step; where the
// file system refuses that, a hard link (which never replaces) and an unlink
// do the same for files.
bool RenameNoReplace(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP)
        return false;
    struct stat st;
    if (::lstat(from.c_str(), &st) == 0 && !S_ISDIR(st.st_mode)) {
        if (::link(from.c_str(), to.c_str()) != 0)
            return false;
        return ::unlink(from.c_str()) == 0;
    }
    if (::lstat(to.c_str(), &st) == 0) {
        errno = EEXIST;
        return false;
    }
    return ::rename(from.c_str(), to.c_str()) == 0;
}

// A temporary file beside a target, removed unless committed over it.
class CTempFile {
public:
    int fd = -1;
    ~CTempFile() {
        if (fd >= 0)
            ::close(fd);
        if (!m_strTemp.empty())
            ::unlink(m_strTemp.c_str());
    }
    // bKeepMode: the target exists and its mode is kept as it is, umask or not.
    bool Create(const std::string& target, mode_t mode, bool bKeepMode) {
        static std::atomic<unsigned> s_nSerial{0};
        m_strTarget = target;
        std::string dir = DirectoryOf(target);
        std::string name = target.substr(target.rfind('/') + 1);
        for (int nTry = 0; nTry < 100; ++nTry) {
            char szTail[64];
            std::snprintf(szTail, sizeof szTail, ".%d.%u~", static_cast<int>(::getpid()),
                          s_nSerial++);
            std::string temp = (dir == "/" ? "" : dir) + "/." + name + szTail;
            fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
            if (fd >= 0) {
                m_strTemp = temp;
                if (bKeepMode)
                    ::fchmod(fd, mode);
                return true;
            }
            if (errno != EEXIST)
                return false;
        }
        return false;
    }
    // Flushes, closes and renames over the target (or beside it, never over
    // an existing file, with bNoReplace); errno tells the failing call.
    bool Commit(bool bNoReplace) {
        if (::fsync(fd) != 0) {
            int err = errno;
            ::close(fd);
            fd = -1;
            errno = err;
            return false;
        }
        int rc = ::close(fd);
        fd = -1;
        if (rc != 0)
            return false;
        bool bOk = bNoReplace ? RenameNoReplace(m_strTemp, m_strTarget)
                              : ::rename(m_strTemp.c_str(), m_strTarget.c_str()) == 0;
        if (!bOk)
            return false;
        m_strTemp.clear();
        return SyncDirectoryOf(m_strTarget);
    }

private:
    std::string m_strTemp;
    std::string m_strTarget;
};

// Removes what a directory holds without following a link: each entry is
// looked at with lstat semantics and a link is unlinked as itself.
bool DeleteContentsAt(int dirFd, int nDepth) {
    if (nDepth > 256)
        return FailWith(ELOOP);
    int dupFd = ::dup(dirFd);
    DIR* dir = dupFd < 0 ? nullptr : ::fdopendir(dupFd);
    if (!dir) {
        if (dupFd >= 0)
            ::close(dupFd);
        return Fail();
    }
    std::vector<std::string> names;
    while (dirent* ent = ::readdir(dir))
        if (std::strcmp(ent->d_name, ".") != 0 && std::strcmp(ent->d_name, "..") != 0)
            names.push_back(ent->d_name);
    ::closedir(dir);
    bool bOk = true;
    for (const std::string& name : names) {
        struct stat st;
        if (::fstatat(dirFd, name.c_str(), &st, AT_SYMLINK_NOFOLLOW) != 0)
            continue; // gone meanwhile
        if (S_ISDIR(st.st_mode)) {
            ::fchmodat(dirFd, name.c_str(), (st.st_mode & 07777) | S_IRWXU, 0);
            CFd sub(::openat(dirFd, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
            if (sub.fd < 0 || !DeleteContentsAt(sub.fd, nDepth + 1)) {
                bOk = sub.fd >= 0 ? false : Fail();
                continue;
            }
            sub.Close();
            if (::unlinkat(dirFd, name.c_str(), AT_REMOVEDIR) != 0)
                bOk = Fail();
        } else if (::unlinkat(dirFd, name.c_str(), 0) != 0) {
            bOk = Fail();
        }
    }
    return bOk;
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
        struct stat lst;
        bool bLink = ::lstat((osDir + ent->d_name).c_str(), &lst) == 0 && S_ISLNK(lst.st_mode);
        if (!Stat(osDir + ent->d_name, st))
            continue; // a dangling link or an entry that just went away
        found.push_back(MakeFindData(strEntry, st));
        found.back().bLink = bLink;
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

bool FsIsWritable(const std::wstring& strPath) {
    return ::access(ToOsPath(strPath).c_str(), W_OK) == 0 || Fail();
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
    // A rename that only changes the case of the name is allowed.
    struct stat stTo;
    if (::lstat(to.c_str(), &stTo) == 0 && stTo.st_ino == st.st_ino && stTo.st_dev == st.st_dev)
        return ::rename(from.c_str(), to.c_str()) == 0 || Fail();
    return RenameNoReplace(from, to) || Fail();
}

bool FsCopyFile(const std::wstring& strFrom, const std::wstring& strTo, bool bFailIfExists) {
    CFd in(::open(ToOsPath(strFrom).c_str(), O_RDONLY | O_CLOEXEC));
    if (in.fd < 0)
        return Fail();
    struct stat st;
    if (::fstat(in.fd, &st) != 0)
        return Fail();
    if (S_ISDIR(st.st_mode))
        return FailWith(EISDIR);
    std::string to = ToOsPath(strTo);
    struct stat stTo;
    if (::stat(to.c_str(), &stTo) == 0) {
        if (stTo.st_ino == st.st_ino && stTo.st_dev == st.st_dev)
            return FailWith(EINVAL); // the same file: copying would empty it
        if (bFailIfExists)
            return FailWith(EEXIST);
    }
    CTempFile temp;
    if (!temp.Create(to, st.st_mode & 0777, false) || !CopyBytes(in.fd, temp.fd))
        return Fail();
    return temp.Commit(bFailIfExists) || Fail();
}

bool FsReplaceFile(const std::wstring& strFrom, const std::wstring& strTo) {
    std::string from = ToOsPath(strFrom), to = ToOsPath(strTo);
    CFd file(::open(from.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.fd < 0 || ::fsync(file.fd) != 0)
        return Fail();
    if (::rename(from.c_str(), to.c_str()) != 0)
        return Fail();
    return SyncDirectoryOf(to) || Fail();
}

bool FsDeleteTree(const std::wstring& strPath) {
    std::string os = ToOsPath(strPath);
    while (os.size() > 1 && os.back() == '/')
        os.pop_back();
    struct stat st;
    if (::lstat(os.c_str(), &st) != 0)
        return Fail();
    if (!S_ISDIR(st.st_mode))
        return FailWith(ENOTDIR); // a link to a directory is not a tree of ours
    ::chmod(os.c_str(), (st.st_mode & 07777) | S_IRWXU);
    CFd dir(::open(os.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (dir.fd < 0)
        return Fail();
    bool bOk = DeleteContentsAt(dir.fd, 0);
    dir.Close();
    return (::rmdir(os.c_str()) == 0 || Fail()) && bOk;
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
    std::string os = ToOsPath(strPath);
    char szReal[PATH_MAX];
    struct stat st;
    if (::lstat(os.c_str(), &st) == 0 && S_ISLNK(st.st_mode) && ::realpath(os.c_str(), szReal))
        os = szReal; // replace the file the link names, keep the link
    bool bExists = ::stat(os.c_str(), &st) == 0;
    if (bExists && S_ISDIR(st.st_mode))
        return FailWith(EISDIR);
    // Writing must be refused where the file itself could not be written.
    if (bExists && ::access(os.c_str(), W_OK) != 0)
        return Fail();
    CTempFile temp;
    if (!temp.Create(os, bExists ? st.st_mode & 07777 : 0666, bExists) ||
        !WriteAll(temp.fd, bytes.data(), bytes.size()))
        return Fail();
    return temp.Commit(false) || Fail();
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
