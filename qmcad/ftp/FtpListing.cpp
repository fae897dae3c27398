// Parsing of the servers' LIST output and the name patterns of a remote search.
#include "ftp/FtpListing.h"

#include "base/FileSystem.h"

#include <cctype>
#include <cstdlib>
#include <vector>

namespace {

// Splits off nCount blank-separated fields; the rest of the line, after
// the blanks that follow the last field, is left in strRest.
bool SplitFields(std::string_view line, size_t nCount, std::vector<std::string_view>& fields,
                 std::string_view& strRest) {
    size_t nPos = 0;
    fields.clear();
    while (fields.size() < nCount) {
        while (nPos < line.size() && line[nPos] == ' ')
            ++nPos;
        size_t nEnd = line.find(' ', nPos);
        if (nPos >= line.size() || nEnd == std::string_view::npos)
            return false;
        fields.push_back(line.substr(nPos, nEnd - nPos));
        nPos = nEnd;
    }
    while (nPos < line.size() && line[nPos] == ' ')
        ++nPos;
    strRest = line.substr(nPos);
    return !strRest.empty();
}

int64_t ToSize(std::string_view text) {
    return std::strtoll(std::string(text).c_str(), nullptr, 10);
}

bool ParseUnixLine(std::string_view line, FTP_LIST_ENTRY& entry) {
    std::vector<std::string_view> fields;
    std::string_view strName;
    if (!SplitFields(line, 8, fields, strName) || fields[0].size() < 10)
        return false;
    char chType = fields[0][0];
    if (chType == 'l') { // a link lists as "name -> target"
        size_t nArrow = strName.find(" -> ");
        if (nArrow != std::string_view::npos)
            strName = strName.substr(0, nArrow);
    }
    entry.strName = std::string(strName);
    entry.bDirectory = chType == 'd';
    entry.bReadOnly = fields[0][2] != 'w';
    entry.nSize = ToSize(fields[4]);
    return true;
}

bool ParseDosLine(std::string_view line, FTP_LIST_ENTRY& entry) {
    std::vector<std::string_view> fields;
    std::string_view strName;
    if (!SplitFields(line, 3, fields, strName))
        return false;
    entry.strName = std::string(strName);
    entry.bDirectory = fields[2] == "<DIR>";
    entry.bReadOnly = false;
    entry.nSize = entry.bDirectory ? 0 : ToSize(fields[2]);
    return true;
}

// NUL and control bytes come only from a broken or hostile server; such a
// name could never be asked for again, so the line names no entry.
bool HasControlByte(std::string_view strName) {
    for (char ch : strName)
        if (static_cast<unsigned char>(ch) < 0x20 || ch == '\x7f')
            return true;
    return false;
}

} // namespace

bool ParseListLine(std::string_view line, FTP_LIST_ENTRY& entry) {
    while (!line.empty() && (line.back() == '\r' || line.back() == '\n'))
        line.remove_suffix(1);
    if (line.empty())
        return false;
    bool bOk = std::isdigit(static_cast<unsigned char>(line[0])) ? ParseDosLine(line, entry)
                                                                 : ParseUnixLine(line, entry);
    return bOk && entry.strName != "." && entry.strName != ".." && !HasControlByte(entry.strName);
}

bool MatchRemotePattern(std::wstring_view strPattern, std::wstring_view strName) {
    return FsMatchWildcard(strPattern, strName, true);
}
