// Fixtures under tests/data (QM_TEST_DATA): the bytes of an input or golden file.
#pragma once

#include <string>

// strRel is relative to tests/data, with slashes ("shared/server_new.xml").
std::string ReadTestData(const std::string& strRel);
