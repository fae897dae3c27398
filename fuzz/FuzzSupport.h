// What the fuzz targets share: the input as a file, and an install tree for readers of fixed paths.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

// A directory of this process, made once, as a system path with a final backslash.
const std::wstring& FuzzDir();
// Writes the input to FuzzDir() + name and returns that system path.
std::wstring FuzzFile(const std::wstring& strName, const uint8_t* data, size_t size);
// Lends the host's install paths (all FuzzDir()) to readers of the suite's files.
void FuzzInstallHost();
// Aborts with the message: a broken property is a finding like a crash.
[[noreturn]] void FuzzFail(const char* pszWhat);
