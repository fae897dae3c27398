// A text-mode string file: code-page bytes on disk, CR LF for "\n", read line by line.
#pragma once

#include "base/StrUtil.h"

#include <cstdio>
#include <string>

class CTextFile {
public:
    enum OpenMode {
        modeRead,        // the file must exist
        modeCreateWrite, // creates or truncates
        modeAppend,      // creates if missing, writes at the end
    };

    CTextFile() = default;
    ~CTextFile();
    CTextFile(const CTextFile&) = delete;
    CTextFile& operator=(const CTextFile&) = delete;

    // System path; false when the file cannot be opened. Never throws.
    bool Open(const std::wstring& strPath, OpenMode mode);
    void Close();
    bool IsOpen() const { return m_pFile != nullptr || m_bReading; }

    // Reads the next line without its line end; false at the end of the
    // file. CR LF reads as the end of a line, a lone CR stays in the text, a
    // last line without a line end is still a line, and a Ctrl-Z byte ends
    // the file as the platform's text mode does.
    bool ReadString(std::wstring& strLine);

    // Writes the text with each "\n" stored as CR LF; false on a write error.
    bool WriteString(const std::wstring& strText);

private:
    std::FILE* m_pFile = nullptr;
    bool m_bReading = false;
    std::string m_bytes; // the whole file while reading: the files are small
    size_t m_nPos = 0;
};

// The lines of a text file, each trimmed; blank ones kept only when asked.
// False when the file cannot be opened.
bool ReadTextFileLines(const std::wstring& strPath, CStringArray& lines, bool bKeepBlank);
