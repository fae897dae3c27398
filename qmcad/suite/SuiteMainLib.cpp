// The parts-database stand-in: one SQLite table of the hole items' name, model and code.
#include "suite/SuiteMainLib.h"

#include "base/FileSystem.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <sqlite3.h>

namespace {

constexpr const char* kCreateTable = "CREATE TABLE IF NOT EXISTS HolePart ("
                                     "FileName TEXT PRIMARY KEY COLLATE NOCASE, Code TEXT, "
                                     "Model TEXT, Name TEXT, Flag INTEGER)";

// Closes the database when the scope ends.
class CDatabase {
public:
    explicit CDatabase(const std::wstring& strPath, int nFlags) {
        if (sqlite3_open_v2(ToOsPath(strPath).c_str(), &m_pDb, nFlags, nullptr) != SQLITE_OK) {
            sqlite3_close(m_pDb);
            m_pDb = nullptr;
        }
    }
    ~CDatabase() { sqlite3_close(m_pDb); }
    CDatabase(const CDatabase&) = delete;
    CDatabase& operator=(const CDatabase&) = delete;
    sqlite3* Get() const { return m_pDb; }

private:
    sqlite3* m_pDb = nullptr;
};

void BindText(sqlite3_stmt* pStmt, int nIndex, const std::wstring& strText) {
    sqlite3_bind_text(pStmt, nIndex, WideToUtf8(strText).c_str(), -1, SQLITE_TRANSIENT);
}

bool Exec(sqlite3* pDb, const char* pszSql) {
    return sqlite3_exec(pDb, pszSql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

std::wstring ColumnText(sqlite3_stmt* pStmt, int nIndex) {
    const unsigned char* psz = sqlite3_column_text(pStmt, nIndex);
    return psz ? Utf8ToWide(reinterpret_cast<const char*>(psz)) : std::wstring();
}

} // namespace

bool CSuiteMainLib::SaveHoleDataToEPartLib(const std::wstring& strCode,
                                           const std::wstring& strModel,
                                           const std::wstring& strName,
                                           const std::wstring& strFileName, int32_t nFlag) {
    std::wstring strRoot = m_paths.LocalInstallPath();
    if (strRoot.empty())
        return false;
    if (strRoot.back() != L'\\')
        strRoot += L'\\';
    std::wstring strDataDir = strRoot + L"Data";
    if (!FsIsDirectory(strDataDir) && !FsCreateDirectory(strDataDir))
        return false;
    return WriteRow(strRoot + kDatabaseFile, strFileName, {strCode, strModel, strName, nFlag});
}

bool CSuiteMainLib::WriteRow(const std::wstring& strDatabase, const std::wstring& strFileName,
                             const STRUCT_HOLE_PART_ROW& row) {
    CDatabase db(strDatabase, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    // The table and the row go in together or not at all.
    if (!db.Get() || !Exec(db.Get(), "BEGIN IMMEDIATE"))
        return false;
    sqlite3_stmt* pStmt = nullptr;
    const char* pszSql = "INSERT OR REPLACE INTO HolePart VALUES (?, ?, ?, ?, ?)";
    bool bOk = Exec(db.Get(), kCreateTable) &&
               sqlite3_prepare_v2(db.Get(), pszSql, -1, &pStmt, nullptr) == SQLITE_OK;
    if (bOk) {
        BindText(pStmt, 1, strFileName);
        BindText(pStmt, 2, row.strCode);
        BindText(pStmt, 3, row.strModel);
        BindText(pStmt, 4, row.strName);
        sqlite3_bind_int(pStmt, 5, row.nFlag);
        bOk = sqlite3_step(pStmt) == SQLITE_DONE;
    }
    sqlite3_finalize(pStmt);
    if (bOk && Exec(db.Get(), "COMMIT"))
        return true;
    Exec(db.Get(), "ROLLBACK");
    return false;
}

bool CSuiteMainLib::ReadRow(const std::wstring& strDatabase, const std::wstring& strFileName,
                            STRUCT_HOLE_PART_ROW& row) {
    CDatabase db(strDatabase, SQLITE_OPEN_READONLY);
    sqlite3_stmt* pStmt = nullptr;
    const char* pszSql = "SELECT Code, Model, Name, Flag FROM HolePart WHERE FileName = ?";
    if (!db.Get() || sqlite3_prepare_v2(db.Get(), pszSql, -1, &pStmt, nullptr) != SQLITE_OK)
        return false;
    BindText(pStmt, 1, strFileName);
    bool bFound = sqlite3_step(pStmt) == SQLITE_ROW;
    if (bFound)
        row = {ColumnText(pStmt, 0), ColumnText(pStmt, 1), ColumnText(pStmt, 2),
               sqlite3_column_int(pStmt, 3)};
    sqlite3_finalize(pStmt);
    return bFound;
}
