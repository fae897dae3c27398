// Fixture access through QM_TEST_DATA.
#include "TestData.h"

#include "TestHost.h"
#include "base/SysPath.h"

#include <cstdlib>

std::wstring TestDataPath(const std::string& strRel) {
    const char* pszRoot = std::getenv("QM_TEST_DATA");
    std::string strRoot = pszRoot ? pszRoot : "tests/data";
    return FromOsPath(strRoot + "/" + strRel);
}

std::string ReadTestData(const std::string& strRel) {
    return ReadBytes(TestDataPath(strRel));
}
