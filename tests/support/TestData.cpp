// Fixture access through QM_TEST_DATA.
#include "TestData.h"

#include <cstdlib>
#include <fstream>
#include <iterator>

std::string ReadTestData(const std::string& strRel) {
    const char* pszRoot = std::getenv("QM_TEST_DATA");
    std::ifstream in(std::string(pszRoot ? pszRoot : "tests/data") + "/" + strRel,
                     std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}
