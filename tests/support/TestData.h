// Fixtures under tests/data: the bytes of a golden file and a copy of an input file.
#pragma once

#include <string>

// The system path of a fixture, relative to tests/data ("shared/server_new.xml").
std::wstring TestDataPath(const std::string& strRel);
std::string ReadTestData(const std::string& strRel);
