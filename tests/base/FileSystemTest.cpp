// Path mapping and the file search's platform behaviour: wildcards, dots entries, no-replace moves.
#include "base/FileSystem.h"
#include "base/SysPath.h"

#include "FileSizeLimit.h"
#include "TestHost.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <thread>
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
    ASSERT_TRUE(FsCreateDirectory(dir / L"d1"));
    ASSERT_TRUE(FsCreateDirectory(dir / L"d2"));
    EXPECT_FALSE(FsMoveFile(dir / L"d1", dir / L"d2"));
    EXPECT_TRUE(FsMoveFile(dir / L"d1", dir / L"D1")); // case only
    EXPECT_TRUE(FsMoveFile(dir / L"a", dir / L"c"));
    EXPECT_FALSE(FsCopyFile(dir / L"c", dir / L"b", true));
    EXPECT_TRUE(FsCopyFile(dir / L"c", dir / L"b", false));
    EXPECT_EQ(ReadBytes(dir / L"b"), "A");
    EXPECT_FALSE(FsCopyFile(dir / L"none", dir / L"d", false));
    EXPECT_FALSE(FsExists(dir / L"d"));
}

// Only the named files are in the directory: no temporary was left behind.
std::vector<std::wstring> NamesIn(const CTempDir& dir) {
    std::vector<FS_FIND_DATA> found;
    FsFind(dir / L"*", found);
    std::vector<std::wstring> names;
    for (const FS_FIND_DATA& entry : found)
        if (entry.strName != L"." && entry.strName != L"..")
            names.push_back(entry.strName);
    return names;
}

TEST(FileSystem, AFailedWriteLeavesTheOldFileWholeAndNoTemporary) {
    CTempDir dir;
    std::string old(227850, 'o');
    WriteBytes(dir / L"a.dwg", old);
    {
        CFileSizeLimit full(16384);
        EXPECT_FALSE(FsWriteBinary(dir / L"a.dwg", std::string(227850, 'n')));
        EXPECT_EQ(FsGetLastError(), EFBIG); // the write's error, not a later call's
        EXPECT_FALSE(FsCopyFile(dir / L"a.dwg", dir / L"b.dwg", false));
    }
    EXPECT_EQ(ReadBytes(dir / L"a.dwg"), old);
    EXPECT_EQ(NamesIn(dir), std::vector<std::wstring>{L"a.dwg"});
    ASSERT_TRUE(FsWriteBinary(dir / L"a.dwg", "new"));
    EXPECT_EQ(ReadBytes(dir / L"a.dwg"), "new");
    EXPECT_EQ(NamesIn(dir), std::vector<std::wstring>{L"a.dwg"});
}

TEST(FileSystem, CopiesReplaceWholeAndRefuseTheSameFile) {
    CTempDir dir;
    WriteBytes(dir / L"long", "LONG OLD CONTENT");
    WriteBytes(dir / L"short", "new");
    ASSERT_TRUE(FsCopyFile(dir / L"short", dir / L"long", false));
    EXPECT_EQ(ReadBytes(dir / L"long"), "new"); // no old tail survives
    ASSERT_TRUE(FsCreateDirectory(dir / L"sub"));
    EXPECT_FALSE(FsCopyFile(dir / L"long", dir / L"long", false));
    EXPECT_FALSE(FsCopyFile(dir / L"long", dir / L"sub\\..\\long", false));
    ASSERT_EQ(::link((dir.OsPath() + "long").c_str(), (dir.OsPath() + "hard").c_str()), 0);
    EXPECT_FALSE(FsCopyFile(dir / L"hard", dir / L"long", false));
    EXPECT_EQ(ReadBytes(dir / L"long"), "new");
}

TEST(FileSystem, TreesAreDeletedWithoutFollowingLinks) {
    CTempDir dir;
    ASSERT_TRUE(FsCreateDirectory(dir / L"outside"));
    WriteBytes(dir / L"outside\\keep.dwg", "keep");
    ASSERT_TRUE(FsCreateDirectory(dir / L"lib"));
    ASSERT_TRUE(FsCreateDirectory(dir / L"lib\\sub"));
    WriteBytes(dir / L"lib\\sub\\ro.dwg", "x");
    ASSERT_TRUE(FsSetReadOnly(dir / L"lib\\sub\\ro.dwg"));
    std::string os = dir.OsPath();
    ASSERT_EQ(::symlink((os + "outside").c_str(), (os + "lib/sub/dirlink").c_str()), 0);
    ASSERT_EQ(::symlink((os + "outside/keep.dwg").c_str(), (os + "lib/filelink").c_str()), 0);
    ASSERT_EQ(::symlink((os + "lib").c_str(), (os + "lib/sub/loop").c_str()), 0);
    ASSERT_EQ(::chmod((os + "lib/sub").c_str(), 0555), 0);
    std::vector<FS_FIND_DATA> found;
    ASSERT_TRUE(FsFind(dir / L"lib\\sub\\dirlink", found));
    EXPECT_TRUE(found[0].bLink);
    EXPECT_TRUE(FsDeleteTree(dir / L"lib"));
    EXPECT_FALSE(FsExists(dir / L"lib"));
    EXPECT_EQ(ReadBytes(dir / L"outside\\keep.dwg"), "keep");
    ASSERT_EQ(::symlink((os + "outside").c_str(), (os + "toplink").c_str()), 0);
    EXPECT_FALSE(FsDeleteTree(dir / L"toplink")); // a link is not a tree to empty
    EXPECT_EQ(ReadBytes(dir / L"outside\\keep.dwg"), "keep");
}

TEST(FileSystem, OfMovesRacingForOneNameExactlyOneWins) {
    CTempDir dir;
    for (int nRound = 0; nRound < 20; ++nRound) {
        std::wstring strTarget = dir / (L"target" + std::to_wstring(nRound));
        std::vector<std::thread> threads;
        std::vector<int> won(6, 0);
        for (int i = 0; i < 6; ++i) {
            std::wstring strFrom =
                dir / (L"w" + std::to_wstring(i) + L"_" + std::to_wstring(nRound));
            WriteBytes(strFrom, std::to_string(i));
            threads.emplace_back(
                [&, i, strFrom] { won[i] = FsMoveFile(strFrom, strTarget) ? 1 : 0; });
        }
        for (std::thread& t : threads)
            t.join();
        int nWinner = static_cast<int>(std::find(won.begin(), won.end(), 1) - won.begin());
        ASSERT_EQ(std::count(won.begin(), won.end(), 1), 1);
        EXPECT_EQ(ReadBytes(strTarget), std::to_string(nWinner));
    }
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
