// Parsing of the servers' LIST output and the name patterns of a remote search.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

struct FTP_LIST_ENTRY {
    std::string strName; // wire bytes
    bool bDirectory = false;
    bool bReadOnly = false;
    int64_t nSize = 0;
};

// One line of a Unix ("drwxr-xr-x 2 u g 4096 Nov 21 16:00 name") or DOS
// ("11-21-26  04:00PM  <DIR>  name") listing. False for lines that name no
// entry: "total" lines, blanks, "." and "..", names with control bytes.
bool ParseListLine(std::string_view line, FTP_LIST_ENTRY& entry);

// "*" and "?" matched case-sensitively, as a Unix server matches names;
// "*.*" matches every name, as the servers of the Windows clients do
// (the file system's matcher with case kept).
bool MatchRemotePattern(std::wstring_view strPattern, std::wstring_view strName);
