// Path text, existence, whole-file and directory-tree helpers at their edges.
#include "shared/fileops/FileOps.h"

#include "base/FileSystem.h"
#include "base/SysPath.h"

#include "TestHost.h"
#include <unistd.h>

#include <gtest/gtest.h>

TEST(FileOps, PathTextEdges) {
    EXPECT_EQ(GetFileName(L"abc.dwg"), L"");
    EXPECT_EQ(GetFileName(L".\\abc.dwg"), L"abc.dwg");
    EXPECT_EQ(GetParentPath(L"abc"), L"");
    EXPECT_EQ(GetParentPath(L"a\\b\\c.dwg"), L"a\\b");
    EXPECT_EQ(JoinPath(L"a\\", L"\\b"), L"a\\b");
    EXPECT_EQ(JoinPath(L"a", L"b"), L"a\\b");
    EXPECT_EQ(JoinPath(L"a\\", L""), L"a\\");
    EXPECT_EQ(JoinPath(L"a", L""), L"a\\");
    EXPECT_EQ(GetLastDirName(L"a\\b\\"), L"b");
    EXPECT_EQ(GetLastDirName(L"a\\b"), L"b");
    EXPECT_EQ(GetLastDirName(L"a\\"), L"");
    EXPECT_FALSE(HasFileExt(L"a.b\\c"));
    EXPECT_FALSE(HasFileExt(L"a."));
    EXPECT_EQ(GetFileExt(L"x\\a.b.DWG"), L"DWG");
    EXPECT_EQ(GetFileExt(L"a.b\\c"), L"");
    EXPECT_EQ(RemoveFileExt(L"x\\a.b.dwg"), L"x\\a.b");
    EXPECT_EQ(RemoveFileExt(L"a.b\\c"), L"a.b\\c");
}

TEST(FileOps, ExistenceRefusesCom1AndCom2WithoutTheDisk) {
    CTempDir dir;
    WriteBytes(dir / L"COM1.txt", "x");
    WriteBytes(dir / L"com2.sld", "x");
    WriteBytes(dir / L"com3.dwg", "x");
    EXPECT_FALSE(IsFileExist(dir / L"COM1.txt"));
    EXPECT_FALSE(IsFileExist(dir / L"com2.sld"));
    EXPECT_TRUE(IsFileExist(dir / L"com3.dwg")); // only the two are guarded
    EXPECT_TRUE(IsFileExist(dir / L"*.dwg"));
    EXPECT_FALSE(IsFileExist(dir / L"*.bak"));
    EXPECT_TRUE(IsDirExist(dir.Path())); // "." and ".." match in an empty-looking dir
    EXPECT_FALSE(IsDirExist(L""));
    EXPECT_FALSE(IsDirExist(dir / L"com3.dwg"));
}

TEST(FileOps, BareNameIsSearchedInTheWorkingDirectory) {
    CTempDir dir;
    std::wstring strOld = FsGetCurrentDirectory();
    ASSERT_EQ(::chdir(dir.OsPath().c_str()), 0);
    WriteBytes(dir / L"com1.txt", "x");
    EXPECT_TRUE(IsFileExist(L"com1.txt")); // no backslash: the device test is skipped
    EXPECT_FALSE(IsFileExist(L"other.txt"));
    ASSERT_EQ(::chdir(ToOsPath(strOld).c_str()), 0);
}

TEST(FileOps, WholeFilesTrimAndKeepBlanksOnRequest) {
    CTempDir dir;
    std::wstring strPath = dir / L"list.txt";
    ASSERT_TRUE(WriteLines(strPath, {L"  a ", L"", L"柜体"}));
    EXPECT_EQ(ReadBytes(strPath), std::string("  a \r\n\r\n\xB9\xF1\xCC\xE5\r\n"));
    CStringArray lines{L"stale"};
    ASSERT_TRUE(ReadLines(strPath, lines, false));
    EXPECT_EQ(lines, (CStringArray{L"a", L"柜体"}));
    ASSERT_TRUE(ReadLines(strPath, lines, true));
    EXPECT_EQ(lines, (CStringArray{L"a", L"", L"柜体"}));
    EXPECT_FALSE(ReadLines(dir / L"none.txt", lines, true));
    EXPECT_TRUE(lines.empty());

    ASSERT_TRUE(WriteTextFile(strPath, L" x \n"));
    std::wstring strLine;
    ASSERT_TRUE(ReadFirstLine(strPath, strLine));
    EXPECT_EQ(strLine, L" x "); // not trimmed
    EXPECT_FALSE(ReadFirstLine(dir / L"none.txt", strLine));
    EXPECT_FALSE(WriteTextFile(dir / L"no\\such\\dir.txt", L"x"));
}

TEST(FileOps, CreateDirPathResults) {
    CTempDir dir;
    EXPECT_FALSE(CreateDirPath(L""));
    EXPECT_TRUE(CreateDirPath(dir.Path())); // exists: true without any call
    EXPECT_TRUE(CreateDirPath(dir / L"a\\b\\c\\\\"));
    EXPECT_TRUE(FsIsDirectory(dir / L"a\\b\\c"));
    WriteBytes(dir / L"file", "x");
    EXPECT_FALSE(CreateDirPath(dir / L"file\\sub")); // the last call made failed
}

TEST(FileOps, DeleteDirTreeRemovesReadOnlyContent) {
    CTempDir dir;
    ASSERT_TRUE(CreateDirPath(dir / L"t\\sub\\deep"));
    WriteBytes(dir / L"t\\a.dwg", "x");
    WriteBytes(dir / L"t\\sub\\deep\\b.sld", "x");
    FsSetReadOnly(dir / L"t\\a.dwg");
    DeleteDirTree(dir / L"t");
    EXPECT_FALSE(FsExists(dir / L"t"));
    DeleteDirTree(dir / L"never"); // nothing to do, nothing raised
}

TEST(FileOps, CollectFilesAndDirs) {
    CTempDir dir;
    ASSERT_TRUE(CreateDirPath(dir / L"lib\\s1\\s2"));
    WriteBytes(dir / L"lib\\a.dwg", "x");
    WriteBytes(dir / L"lib\\a.sld", "x");
    WriteBytes(dir / L"lib\\s1\\s2\\b.DWG", "x");
    CStringArray files;
    CollectFiles(dir / L"lib", L"dwg", files, false);
    EXPECT_EQ(files.size(), 1u);
    files.clear();
    CollectFiles(dir / L"lib", L"dwg", files, true);
    EXPECT_EQ(files.size(), 2u);
    files.clear();
    CollectFiles(dir / L"lib", L"*.*", files, true);
    EXPECT_EQ(files.size(), 3u);
    CStringArray dirs;
    CollectDirs(dir / L"lib", dirs);
    EXPECT_EQ(dirs.size(), 8u); // s1, s2 and the dots entries of lib, s1 and s2

    // Links to directories are listed, never walked into: a loop ends, and
    // what lies outside the library stays out of it.
    ASSERT_TRUE(CreateDirPath(dir / L"outside"));
    WriteBytes(dir / L"outside\\c.dwg", "x");
    std::string os = dir.OsPath();
    ASSERT_EQ(::symlink((os + "lib").c_str(), (os + "lib/s1/loop").c_str()), 0);
    ASSERT_EQ(::symlink((os + "outside").c_str(), (os + "lib/out").c_str()), 0);
    files.clear();
    CollectFiles(dir / L"lib", L"dwg", files, true);
    EXPECT_EQ(files.size(), 2u);
    dirs.clear();
    CollectDirs(dir / L"lib", dirs);
    EXPECT_EQ(dirs.size(), 10u);
    DeleteDirTree(dir / L"lib");
    EXPECT_FALSE(IsDirExist(dir / L"lib"));
    EXPECT_EQ(ReadBytes(dir / L"outside\\c.dwg"), "x");
}

TEST(FileOps, ShowLastErrorUsesItsOwnCaption) {
    CTestHost host;
    std::vector<FS_FIND_DATA> found;
    FsFind(L"\\no\\such\\dir\\*.*", found);
    ShowLastError();
    ASSERT_EQ(host.m_boxes.size(), 1u);
    EXPECT_EQ(host.m_boxes[0].strCaption, L"Error");
    EXPECT_EQ(host.m_boxes[0].nFlags, unsigned(MB_ICONINFORMATION));
    EXPECT_FALSE(host.m_boxes[0].strText.empty());
}
