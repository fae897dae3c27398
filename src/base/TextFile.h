// A text-mode string file: code-page bytes on disk, CR LF for "\n", read line by line.
#pragma once

#include "base/StrUtil.h"

#include <cstdio>
#include <string>

class CTextFile {
public:
    enum OpenMode {
        modeRead,        // the file must exist
        modeCreateWrite, // creates or replaces, whole, when closed
        modeAppend,      // creates if missing, writes at the end
    };

    CTextFile() = default;
    ~CTextFile();
    CTextFile(const CTextFile&) = delete;
    CTextFile& operator=(const CTextFile&) = delete;

    // System path; false when the file cannot be opened. Never throws.
    bool Open(const std::wstring& strPath, OpenMode mode);
    // A file opened with modeCreateWrite replaces the old one here (also from
    // the destructor) in one step; false when that failed, the old file kept.
    bool Close();
    bool IsOpen() const { return m_pFile != nullptr || m_bReading || m_bWriting; }

    // Reads the next line without its line end; false at the end of the
    // file. CR LF reads as the end of a line, a lone CR stays in the text, a
    // last line without a line end is still a line, and a Ctrl-Z byte ends
    // the file as the platform's text mode does.
    bool ReadString(std::wstring& strLine);

    // Writes the text with each "\n" stored as CR LF; false on a write error
    // (with modeCreateWrite the disk is reached by Close).
    bool WriteString(const std::wstring& strText);

private:
    std::FILE* m_pFile = nullptr;
    bool m_bReading = false;
    bool m_bWriting = false; // modeCreateWrite: the bytes wait in m_bytes
    std::wstring m_strPath;  // and go to this file when closed
    std::string m_bytes;     // the whole file while reading: the files are small
    size_t m_nPos = 0;
};

// The lines of a text file, each trimmed; blank ones kept only when asked.
// False when the file cannot be opened.
bool ReadTextFileLines(const std::wstring& strPath, CStringArray& lines, bool bKeepBlank);
