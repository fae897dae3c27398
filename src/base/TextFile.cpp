// Text-mode string file over the code-page layer.
#include "base/TextFile.h"

#include "base/CodePage.h"
#include "base/FileSystem.h"

namespace {

std::wstring ParentOf(const std::wstring& strPath) {
    size_t n = strPath.rfind(L'\\');
    if (n == std::wstring::npos)
        return L".";
    return n == 0 ? L"\\" : strPath.substr(0, n);
}

} // namespace

CTextFile::~CTextFile() {
    Close();
}

bool CTextFile::Open(const std::wstring& strPath, OpenMode mode) {
    Close();
    if (mode == modeRead) {
        if (!FsReadBinary(strPath, m_bytes))
            return false;
        size_t eof = m_bytes.find('\x1A');
        if (eof != std::string::npos)
            m_bytes.resize(eof);
        m_nPos = 0;
        m_bReading = true;
        return true;
    }
    if (mode == modeCreateWrite) {
        // Refuse at once what could not be written later: a directory, a
        // missing folder, a read-only file.
        if (FsIsDirectory(strPath) || !FsIsDirectory(ParentOf(strPath)) ||
            (FsExists(strPath) && !FsIsWritable(strPath)))
            return false;
        m_strPath = strPath;
        m_bWriting = true;
        return true;
    }
    m_pFile = FsOpenStdio(strPath, "ab");
    return m_pFile != nullptr;
}

bool CTextFile::Close() {
    bool bOk = true;
    if (m_pFile)
        bOk = std::fclose(m_pFile) == 0;
    if (m_bWriting)
        bOk = FsWriteBinary(m_strPath, m_bytes);
    m_pFile = nullptr;
    m_bReading = false;
    m_bWriting = false;
    m_strPath.clear();
    m_bytes.clear();
    m_nPos = 0;
    return bOk;
}

bool CTextFile::ReadString(std::wstring& strLine) {
    strLine.clear();
    if (!m_bReading || m_nPos >= m_bytes.size())
        return false;
    // 0x0A is never a trail byte in GBK, so lines can be cut before decoding.
    size_t nl = m_bytes.find('\n', m_nPos);
    size_t end = nl == std::string::npos ? m_bytes.size() : nl;
    size_t len = end - m_nPos;
    if (nl != std::string::npos && len > 0 && m_bytes[end - 1] == '\r')
        --len;
    strLine = DecodeText(std::string_view(m_bytes).substr(m_nPos, len));
    m_nPos = nl == std::string::npos ? m_bytes.size() : nl + 1;
    return true;
}

bool CTextFile::WriteString(const std::wstring& strText) {
    if (!m_pFile && !m_bWriting)
        return false;
    std::string bytes = EncodeText(strText);
    std::string out;
    out.reserve(bytes.size() + 8);
    for (char c : bytes) {
        if (c == '\n')
            out.push_back('\r');
        out.push_back(c);
    }
    if (m_bWriting) {
        m_bytes += out;
        return true;
    }
    if (std::fwrite(out.data(), 1, out.size(), m_pFile) != out.size())
        return false;
    return std::fflush(m_pFile) == 0;
}

bool ReadTextFileLines(const std::wstring& strPath, CStringArray& lines, bool bKeepBlank) {
    lines.clear();
    CTextFile file;
    if (!file.Open(strPath, CTextFile::modeRead))
        return false;
    std::wstring strLine;
    while (file.ReadString(strLine)) {
        strLine = StrTrim(strLine);
        if (!strLine.empty() || bKeepBlank)
            lines.push_back(strLine);
    }
    return true;
}
