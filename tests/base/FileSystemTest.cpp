// Path mapping and the file search's platform behaviour: wildcards, dots entries, no-replace moves.
#include "base/FileSystem.h"
#include "base/SysPath.h"

#include "TestHost.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

TEST(SysPath, MapsBackslashesAndUtf8BothWays) {
    EXPECT_EQ(ToOsPath(L"\\opt\\qm\\开孔\\a.dwg"), "/opt/qm/\xE5\xBC\x80\xE5\xAD\x94/a.dwg");
    EXPECT_EQ(FromOsPath("/opt/qm/x/"), L"\\opt\\qm\\x\\");
    EXPECT_EQ(FromOsPath(ToOsPath(L"rel\\sub")), L"rel\\sub");
}

TEST(FileSystem, WildcardsMatchWithoutRegardToCase) {
    EXPECT_TRUE(FsMatchWildcard(L"*.dwg", L"A.DWG"));
    EXPECT_FALSE(FsMatchWildcard(L"*.dwg", L"a.dwg.bak"));
    EXPECT_TRUE(FsMatchWildcard(L"*.*", L"noext"));
    EXPECT_TRUE(FsMatchWildcard(L"*.*", L"."));
    EXPECT_TRUE(FsMatchWildcard(L"*.*", L".."));
    EXPECT_FALSE(FsMatchWildcard(L"*.dwg", L"."));
    EXPECT_TRUE(FsMatchWildcard(L"a?c.s*", L"ABC.sld"));
}

TEST(FileSystem, FindListsDotsAndRefusesTrailingBackslash) {
    CTempDir dir;
    WriteBytes(dir / L"One.DWG", "x");
    WriteBytes(dir / L"two.sld", "y");
    std::vector<FS_FIND_DATA> found;
    ASSERT_TRUE(FsFind(dir / L"*.*", found));
    EXPECT_EQ(found.size(), 4u); // ".", "..", and the two files
    ASSERT_TRUE(FsFind(dir / L"*.dwg", found));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].strName, L"One.DWG");
    EXPECT_TRUE(FsFind(dir / L"one.dwg", found)); // exact name, other case
    EXPECT_FALSE(FsFind(dir.Path(), found));
    EXPECT_FALSE(FsFind(dir / L"missing\\*.*", found));
}

TEST(FileSystem, MovesNeverReplaceAndCopiesRespectTheFlag) {
    CTempDir dir;
    WriteBytes(dir / L"a", "A");
    WriteBytes(dir / L"b", "B");
    EXPECT_FALSE(FsMoveFile(dir / L"a", dir / L"b"));
    EXPECT_EQ(ReadBytes(dir / L"b"), "B");
    EXPECT_TRUE(FsMoveFile(dir / L"a", dir / L"c"));
    EXPECT_FALSE(FsCopyFile(dir / L"c", dir / L"b", true));
    EXPECT_TRUE(FsCopyFile(dir / L"c", dir / L"b", false));
    EXPECT_EQ(ReadBytes(dir / L"b"), "A");
    EXPECT_FALSE(FsCopyFile(dir / L"none", dir / L"d", false));
    EXPECT_FALSE(FsExists(dir / L"d"));
}

TEST(FileSystem, ReadOnlyStateAndDirectories) {
    CTempDir dir;
    WriteBytes(dir / L"f", "x");
    ASSERT_TRUE(FsSetReadOnly(dir / L"f"));
    FS_FIND_DATA info;
    ASSERT_TRUE(FsGetInfo(dir / L"f", info));
    EXPECT_TRUE(info.bReadOnly);
    ASSERT_TRUE(FsSetNormalAttributes(dir / L"f"));
    ASSERT_TRUE(FsGetInfo(dir / L"f", info));
    EXPECT_FALSE(info.bReadOnly);
    EXPECT_FALSE(FsCreateDirectory(dir / L"x\\y")); // one level only
    EXPECT_TRUE(FsCreateDirectory(dir / L"x"));
    EXPECT_FALSE(FsCreateDirectory(dir / L"x"));
    WriteBytes(dir / L"x\\g", "g");
    EXPECT_FALSE(FsRemoveDirectory(dir / L"x"));
    EXPECT_FALSE(FsDeleteFile(dir / L"x"));
}

TEST(FileSystem, TrashKeepsTheFileRecoverable) {
    CTempDir dir;
    std::string strData = dir.OsPath() + "xdg";
    ::setenv("XDG_DATA_HOME", strData.c_str(), 1);
    WriteBytes(dir / L"gone.dwg", "drawing");
    ASSERT_TRUE(FsMoveToTrash(dir / L"gone.dwg"));
    EXPECT_FALSE(FsExists(dir / L"gone.dwg"));
    std::vector<FS_FIND_DATA> found;
    ASSERT_TRUE(FsFind(FromOsPath(strData) + L"\\Trash\\files\\gone*.dwg", found));
    EXPECT_FALSE(FsMoveToTrash(dir / L"never-there"));
}

TEST(FileSystem, LocksHeldByAnotherOpenFileAreSeen) {
    CTempDir dir;
    WriteBytes(dir / L"held.dwg", "x");
    EXPECT_FALSE(FsIsLockedElsewhere(dir / L"held.dwg"));
    int fd = ::open((dir.OsPath() + "held.dwg").c_str(), O_RDWR);
    ASSERT_GE(fd, 0);
    ASSERT_TRUE(FsLockOpenFile(fd));
    EXPECT_TRUE(FsIsLockedElsewhere(dir / L"held.dwg"));
    ::close(fd);
    EXPECT_FALSE(FsIsLockedElsewhere(dir / L"held.dwg"));
}

TEST(FileSystem, SubdirectoryListingSkipsFilesAndTheDotEntries) {
    CTempDir dir;
    FsCreateDirectory(dir / L"目录");
    FsCreateDirectory(dir / L"b");
    WriteBytes(dir / L"a.dwg", "x");
    std::vector<std::wstring> names;
    ASSERT_TRUE(FsListSubdirectories(dir.Path(), names));
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::wstring>{L"b", L"目录"}));
    EXPECT_FALSE(FsListSubdirectories(dir / L"none", names));
    EXPECT_TRUE(names.empty());
}
