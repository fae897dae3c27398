// The parts-database stand-in: rows written whole or not at all, and a failure said so.
#include "suite/SuiteMainLib.h"
#include "suite/SuiteConfig.h"

#include "TestHost.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {

// The suite's paths with the local install path in a temporary directory.
class CLocalPaths : public CSuiteConfig {
public:
    explicit CLocalPaths(const CTempDir& dir) {
        WriteBytes(dir / L"suite.conf", "LocalPath = " + dir.OsPath() + "\n");
        Load(dir.OsPath() + "suite.conf");
    }
};

} // namespace

TEST(SuiteMainLib, WritesTheRowAndReportsAFailedWriteWithTheFileAsItWas) {
    CTempDir dir;
    CLocalPaths paths(dir);
    CSuiteMainLib lib(paths);
    ASSERT_TRUE(lib.SaveHoleDataToEPartLib(L"C1", L"M1", L"按钮", L"a.dwg", 1));
    std::wstring strDb = dir / L"Data\\TzMainLib.mdb";
    STRUCT_HOLE_PART_ROW row;
    ASSERT_TRUE(CSuiteMainLib::ReadRow(strDb, L"A.DWG", row));
    EXPECT_EQ(row.strName, L"按钮");

    // Another program holds the database: the write fails and says so.
    sqlite3* pOther = nullptr;
    ASSERT_EQ(sqlite3_open((dir.OsPath() + "Data/TzMainLib.mdb").c_str(), &pOther), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(pOther, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr), SQLITE_OK);
    std::string before = ReadBytes(strDb);
    EXPECT_FALSE(lib.SaveHoleDataToEPartLib(L"C2", L"M2", L"灯", L"b.dwg", 0));
    sqlite3_exec(pOther, "ROLLBACK", nullptr, nullptr, nullptr);
    sqlite3_close(pOther);
    EXPECT_EQ(ReadBytes(strDb), before);
    EXPECT_FALSE(CSuiteMainLib::ReadRow(strDb, L"b.dwg", row));

    // A file that is not a database is left alone.
    WriteBytes(strDb, "not a database");
    EXPECT_FALSE(lib.SaveHoleDataToEPartLib(L"C3", L"M3", L"表", L"c.dwg", 0));
    EXPECT_EQ(ReadBytes(strDb), "not a database");
}
