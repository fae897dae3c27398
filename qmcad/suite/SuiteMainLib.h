// The reference host's stand-in for the suite's parts-database library, over SQLite.
#pragma once

#include "host/SuiteInstallPaths.h"
#include "host/SuiteMainLib.h"

#include <string>

// What the stand-in keeps for one drawing.
struct STRUCT_HOLE_PART_ROW {
    std::wstring strCode;
    std::wstring strModel;
    std::wstring strName;
    int nFlag = 0;
};

// Writes into "Data\TzMainLib.mdb" under the local install path, which here
// is an SQLite database with one table "HolePart" keyed by the file name.
// Each call opens and closes the file, so that it can be copied at once.
class CSuiteMainLib : public ISuiteMainLib {
public:
    explicit CSuiteMainLib(ISuiteInstallPaths& paths) : m_paths(paths) {}

    static constexpr const wchar_t* kDatabaseFile = L"Data\\TzMainLib.mdb";

    bool SaveHoleDataToEPartLib(const std::wstring& strCode, const std::wstring& strModel,
                                const std::wstring& strName, const std::wstring& strFileName,
                                int32_t nFlag) override;

    // The row of a drawing in a database file; false when there is none.
    static bool ReadRow(const std::wstring& strDatabase, const std::wstring& strFileName,
                        STRUCT_HOLE_PART_ROW& row);
    // Inserts or replaces the row in one transaction; false (and the file as
    // it was) when the file can't be written.
    static bool WriteRow(const std::wstring& strDatabase, const std::wstring& strFileName,
                         const STRUCT_HOLE_PART_ROW& row);

private:
    ISuiteInstallPaths& m_paths;
};
