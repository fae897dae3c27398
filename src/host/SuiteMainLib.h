// The suite's closed library that manages the main parts database, as the module imports it.
#pragma once

#include <cstdint>
#include <string>

class ISuiteMainLib {
public:
    virtual ~ISuiteMainLib() = default;
    // Writes the three strings under the drawing's file name into the local
    // database "Data\TzMainLib.mdb"; the file can be copied once this returns.
    // False when nothing was written (the database is left as it was).
    virtual bool SaveHoleDataToEPartLib(const std::wstring& strCode, const std::wstring& strModel,
                                        const std::wstring& strName,
                                        const std::wstring& strFileName, int32_t nFlag) = 0;
};

// The suite's export by its own name; without a host nothing is written.
// The flag is 1 from the save dialog and 0 from the write-block dialog.
bool TzSaveHoleDataToEPartLib(std::wstring strCode, std::wstring strModel, std::wstring strName,
                              std::wstring strFileName, int32_t nFlag);
