// Tag reading and writing, number formats and code-page conversion for DXF files.
#include "dxf/DxfTags.h"

#include "base/CodePage.h"

#include <charconv>
#include <cstdio>
#include <cstring>

bool CDxfTagReader::ReadLine(std::string_view& line) {
    if (m_pos >= m_data.size())
        return false;
    size_t end = m_data.find('\n', m_pos);
    if (end == std::string_view::npos)
        end = m_data.size();
    line = m_data.substr(m_pos, end - m_pos);
    m_pos = end + 1;
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t'))
        line.remove_suffix(1);
    return true;
}

bool CDxfTagReader::Next(DXF_RAW_TAG& tag) {
    if (m_bPushed) {
        m_bPushed = false;
        tag = m_last;
        return true;
    }
    std::string_view code, value;
    if (m_bBad || !ReadLine(code))
        return false;
    while (!code.empty() && (code.front() == ' ' || code.front() == '\t'))
        code.remove_prefix(1);
    int n = 0;
    auto [p, ec] = std::from_chars(code.data(), code.data() + code.size(), n);
    if (ec != std::errc() || p != code.data() + code.size() || !ReadLine(value)) {
        m_bBad = true;
        return false;
    }
    m_last = {n, value};
    tag = m_last;
    return true;
}

int DxfInt(std::string_view v, int nDefault) {
    while (!v.empty() && v.front() == ' ')
        v.remove_prefix(1);
    long long n = 0;
    auto [p, ec] = std::from_chars(v.data(), v.data() + v.size(), n);
    if (ec != std::errc())
        return nDefault;
    return static_cast<int>(n);
}

double DxfReal(std::string_view v, double dDefault) {
    while (!v.empty() && v.front() == ' ')
        v.remove_prefix(1);
    if (!v.empty() && v.front() == '+')
        v.remove_prefix(1);
    double d = 0;
    auto [p, ec] = std::from_chars(v.data(), v.data() + v.size(), d);
    return ec == std::errc() ? d : dDefault;
}

uint64_t DxfHandle(std::string_view v) {
    while (!v.empty() && v.front() == ' ')
        v.remove_prefix(1);
    uint64_t n = 0;
    auto [p, ec] = std::from_chars(v.data(), v.data() + v.size(), n, 16);
    return ec == std::errc() && p == v.data() + v.size() ? n : 0;
}

CDxfText::CDxfText() {
    SetUtf8();
}

CDxfText::~CDxfText() = default;

void CDxfText::SetUtf8() {
    m_strCodePage = "UTF-8";
}

void CDxfText::SetCodePage(const std::wstring& s) {
    std::string cp;
    if (s.rfind(L"ANSI_", 0) == 0 || s.rfind(L"ansi_", 0) == 0)
        for (wchar_t c : s.substr(5))
            cp.push_back(static_cast<char>(c));
    if (cp == "936")
        cp = "GBK";
    else if (!cp.empty())
        cp = "CP" + cp;
    m_strCodePage = cp.empty() || !IsKnownCodePage(cp) ? "UTF-8" : cp;
}

namespace {

int HexDigit(char c) {
    return c >= '0' && c <= '9'   ? c - '0'
           : c >= 'a' && c <= 'f' ? c - 'a' + 10
           : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                  : -1;
}

// Replaces "\U+XXXX" by the character it names.
void UnescapeUnicode(std::wstring& s) {
    size_t at = s.find(L"\\U+");
    if (at == std::wstring::npos)
        return;
    std::wstring out;
    size_t i = 0;
    while (i < s.size()) {
        if (s.compare(i, 3, L"\\U+") == 0 && i + 7 <= s.size()) {
            int v = 0;
            bool ok = true;
            for (int k = 0; k < 4 && ok; ++k) {
                wchar_t c = s[i + 3 + k];
                int d = c < 128 ? HexDigit(static_cast<char>(c)) : -1;
                ok = d >= 0;
                v = v * 16 + d;
            }
            if (ok) {
                out.push_back(static_cast<wchar_t>(v));
                i += 7;
                continue;
            }
        }
        out.push_back(s[i++]);
    }
    s.swap(out);
}

} // namespace

std::wstring CDxfText::Decode(std::string_view bytes) {
    std::wstring out;
    bool bAscii = true;
    for (char c : bytes)
        if (static_cast<unsigned char>(c) >= 0x80) {
            bAscii = false;
            break;
        }
    if (bAscii)
        out.assign(bytes.begin(), bytes.end());
    else
        out = DecodeTextIn(m_strCodePage, bytes); // an invalid byte becomes U+FFFD
    UnescapeUnicode(out);
    return out;
}

void CDxfText::Encode(std::wstring_view text, std::string& out) {
    for (size_t i = 0; i < text.size(); ++i) {
        wchar_t wc = text[i];
        if (wc < 0x80 && wc != L'\n' && wc != L'\r') {
            out.push_back(static_cast<char>(wc));
            continue;
        }
        if (wc == L'\n' || wc == L'\r') { // a value is one line
            out.push_back(' ');
            continue;
        }
        if (EncodeCharIn(m_strCodePage, wc, out))
            continue;
        if (wc > 0xFFFF) {
            out.push_back('?');
            continue;
        }
        char buf[16]; // what the code page cannot hold goes as "\U+XXXX"
        std::snprintf(buf, sizeof buf, "\\U+%04X", static_cast<unsigned>(wc));
        out += buf;
    }
}

void CDxfTagWriter::Code(int nCode) {
    char buf[16];
    auto [p, ec] = std::to_chars(buf, buf + sizeof buf, nCode);
    for (long pad = 3 - (p - buf); pad > 0; --pad) // right-aligned in three columns
        m_out.push_back(' ');
    m_out.append(buf, p);
    m_out.push_back('\n');
}

void CDxfTagWriter::Str(int nCode, std::string_view value) {
    Code(nCode);
    m_out.append(value);
    m_out.push_back('\n');
}

void CDxfTagWriter::Text(int nCode, std::wstring_view value) {
    Code(nCode);
    m_text.Encode(value, m_out);
    m_out.push_back('\n');
}

void CDxfTagWriter::Int(int nCode, long long value) {
    Code(nCode);
    char buf[24];
    auto [p, ec] = std::to_chars(buf, buf + sizeof buf, value);
    m_out.append(buf, p);
    m_out.push_back('\n');
}

void CDxfTagWriter::Real(int nCode, double value) {
    Code(nCode);
    char buf[32];
    auto [p, ec] = std::to_chars(buf, buf + sizeof buf, value);
    m_out.append(buf, p);
    if (std::memchr(buf, '.', p - buf) == nullptr && std::memchr(buf, 'e', p - buf) == nullptr &&
        std::memchr(buf, 'n', p - buf) == nullptr)
        m_out += ".0";
    m_out.push_back('\n');
}

void CDxfTagWriter::Point(int nCode, double x, double y, double z) {
    Real(nCode, x);
    Real(nCode + 10, y);
    Real(nCode + 20, z);
}

void CDxfTagWriter::Point2(int nCode, double x, double y) {
    Real(nCode, x);
    Real(nCode + 10, y);
}

void CDxfTagWriter::Handle(int nCode, uint64_t h) {
    Code(nCode);
    char buf[24];
    auto [p, ec] = std::to_chars(buf, buf + sizeof buf, h, 16);
    for (char* c = buf; c < p; ++c)
        if (*c >= 'a')
            *c = static_cast<char>(*c - 'a' + 'A');
    m_out.append(buf, p);
    m_out.push_back('\n');
}
