// The tag level of ASCII DXF: group code and value lines, read and written, with text in the file's
// code page.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

struct DXF_RAW_TAG {
    int nCode = 0;
    std::string_view value; // the value line, trailing blanks and CR removed
};

// Reads tags from a buffer that outlives it; one tag can be pushed back.
class CDxfTagReader {
public:
    explicit CDxfTagReader(std::string_view data) : m_data(data) {}
    // False at the end or on a code line that is no integer (m_bBad then).
    bool Next(DXF_RAW_TAG& tag);
    void PushBack() { m_bPushed = true; }
    bool IsBad() const { return m_bBad; }

private:
    bool ReadLine(std::string_view& line);
    std::string_view m_data;
    size_t m_pos = 0;
    DXF_RAW_TAG m_last;
    bool m_bPushed = false;
    bool m_bBad = false;
};

int DxfInt(std::string_view value, int nDefault = 0);
double DxfReal(std::string_view value, double dDefault = 0.0);
uint64_t DxfHandle(std::string_view value); // hexadecimal; 0 when invalid

// Text of the file in and out: a code page for AutoCAD 2000 files ("ANSI_936"
// is GBK), UTF-8 from AutoCAD 2007 on. Characters the code page cannot hold
// travel as "\U+XXXX".
class CDxfText {
public:
    CDxfText();
    ~CDxfText();
    CDxfText(const CDxfText&) = delete;
    CDxfText& operator=(const CDxfText&) = delete;
    // An empty or unknown code page means UTF-8.
    void SetCodePage(const std::wstring& strDxfCodePage);
    void SetUtf8();
    std::wstring Decode(std::string_view bytes);
    void Encode(std::wstring_view text, std::string& out);

private:
    std::string m_strCodePage; // an iconv name, through base's converters
};

// Appends tags to a buffer in the layout AutoCAD writes.
class CDxfTagWriter {
public:
    explicit CDxfTagWriter(CDxfText& text) : m_text(text) {}
    void Str(int nCode, std::string_view value);
    void Text(int nCode, std::wstring_view value); // encoded for the file
    void Int(int nCode, long long value);
    void Real(int nCode, double value);
    void Point(int nCode, double x, double y, double z);
    void Point2(int nCode, double x, double y);
    void Handle(int nCode, uint64_t h);
    void Encode(std::wstring_view value, std::string& out) { m_text.Encode(value, out); }
    std::string& Buffer() { return m_out; }

private:
    void Code(int nCode);
    CDxfText& m_text;
    std::string m_out;
};
