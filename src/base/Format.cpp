// printf-style formatting with wide "%s", built on the C library's number conversions.
#include "base/Format.h"

#include <cstdio>
#include <cwchar>

namespace {

struct CONV_SPEC {
    std::string strFlags;
    int nWidth = -1;
    int nPrecision = -1;
    wchar_t chConv = 0;
};

class CArgReader {
public:
    explicit CArgReader(const std::vector<FORMAT_ARG>& args) : m_args(args) {}
    const FORMAT_ARG* Next() { return m_nNext < m_args.size() ? &m_args[m_nNext++] : nullptr; }
    long long NextInt() {
        const FORMAT_ARG* p = Next();
        if (!p)
            return 0;
        return p->kind == FORMAT_ARG::Real ? static_cast<long long>(p->dValue) : p->nValue;
    }

private:
    const std::vector<FORMAT_ARG>& m_args;
    size_t m_nNext = 0;
};

std::string NarrowSpec(const CONV_SPEC& cs, const char* length, char conv) {
    std::string s = "%" + cs.strFlags;
    if (cs.nWidth >= 0)
        s += std::to_string(cs.nWidth);
    if (cs.nPrecision >= 0)
        s += "." + std::to_string(cs.nPrecision);
    s += length;
    s += conv;
    return s;
}

template <class T> std::wstring CFormat(const std::string& cs, T value) {
    char buf[512];
    int n = std::snprintf(buf, sizeof buf, cs.c_str(), value);
    if (n < 0)
        return {};
    std::string out;
    if (n < static_cast<int>(sizeof buf)) {
        out.assign(buf, static_cast<size_t>(n));
    } else {
        out.resize(static_cast<size_t>(n) + 1);
        std::snprintf(out.data(), out.size(), cs.c_str(), value);
        out.resize(static_cast<size_t>(n));
    }
    return std::wstring(out.begin(), out.end()); // digits, signs and letters only
}

std::wstring Pad(std::wstring text, const CONV_SPEC& cs) {
    if (cs.nWidth < 0 || static_cast<int>(text.size()) >= cs.nWidth)
        return text;
    std::wstring fill(static_cast<size_t>(cs.nWidth) - text.size(), L' ');
    return cs.strFlags.find('-') != std::string::npos ? text + fill : fill + text;
}

std::wstring ConvertText(const CONV_SPEC& cs, const FORMAT_ARG* p) {
    std::wstring text;
    if (p && p->kind == FORMAT_ARG::Text)
        text = p->strValue;
    else if (p && p->kind == FORMAT_ARG::Int)
        text = std::to_wstring(p->nValue);
    else if (p)
        text = CFormat("%g", p->dValue);
    if (cs.nPrecision >= 0 && static_cast<int>(text.size()) > cs.nPrecision)
        text.resize(static_cast<size_t>(cs.nPrecision));
    return Pad(text, cs);
}

std::wstring Convert(const CONV_SPEC& cs, CArgReader& reader) {
    wchar_t c = cs.chConv;
    if (c == L's' || c == L'S')
        return ConvertText(cs, reader.Next());
    if (c == L'c') {
        auto ch = static_cast<wchar_t>(reader.NextInt());
        return Pad(std::wstring(1, ch), cs);
    }
    if (c == L'd' || c == L'i')
        return CFormat(NarrowSpec(cs, "ll", 'd'), reader.NextInt());
    if (c == L'u' || c == L'x' || c == L'X' || c == L'o') {
        // The platform's ints are 32 bits: a negative %X prints as 8 digits.
        long long v = reader.NextInt();
        unsigned long long u = (v < 0 && v >= INT32_MIN) ? static_cast<uint32_t>(v) : v;
        return CFormat(NarrowSpec(cs, "ll", static_cast<char>(c)), u);
    }
    const FORMAT_ARG* p = reader.Next();
    double d = !p ? 0.0 : p->kind == FORMAT_ARG::Real ? p->dValue : static_cast<double>(p->nValue);
    return CFormat(NarrowSpec(cs, "", static_cast<char>(c)), d);
}

bool IsConversion(wchar_t c) {
    return std::wcschr(L"diuxXocsSfFeEgG", c) != nullptr && c != 0;
}

// Parses one conversion after '%'; returns the index past it, or 0 when malformed.
size_t ParseSpec(std::wstring_view fmt, size_t i, CONV_SPEC& cs, CArgReader& reader) {
    while (i < fmt.size() && std::wcschr(L"-+ 0#", fmt[i]) && fmt[i] != 0)
        cs.strFlags += static_cast<char>(fmt[i++]);
    auto readNumber = [&](int& out) {
        if (i < fmt.size() && fmt[i] == L'*') {
            out = static_cast<int>(reader.NextInt());
            ++i;
            return;
        }
        if (i >= fmt.size() || fmt[i] < L'0' || fmt[i] > L'9')
            return;
        out = 0;
        while (i < fmt.size() && fmt[i] >= L'0' && fmt[i] <= L'9' && out < 100000)
            out = out * 10 + (fmt[i++] - L'0');
    };
    readNumber(cs.nWidth);
    if (cs.nWidth < -1) { // "*" with a negative width means left-justify
        cs.strFlags += '-';
        cs.nWidth = -cs.nWidth;
    }
    if (i < fmt.size() && fmt[i] == L'.') {
        ++i;
        cs.nPrecision = 0;
        readNumber(cs.nPrecision);
        if (cs.nPrecision < 0)
            cs.nPrecision = -1;
    }
    if (fmt.substr(i, 3) == L"I64")
        i += 3;
    while (i < fmt.size() && (fmt[i] == L'h' || fmt[i] == L'l'))
        ++i;
    if (i >= fmt.size() || !IsConversion(fmt[i]))
        return 0;
    cs.chConv = fmt[i];
    return i + 1;
}

} // namespace

std::wstring FormatArgs(std::wstring_view fmt, const std::vector<FORMAT_ARG>& args) {
    std::wstring out;
    CArgReader reader(args);
    size_t i = 0;
    while (i < fmt.size()) {
        wchar_t c = fmt[i];
        if (c != L'%') {
            out.push_back(c);
            ++i;
            continue;
        }
        if (i + 1 < fmt.size() && fmt[i + 1] == L'%') {
            out.push_back(L'%');
            i += 2;
            continue;
        }
        CONV_SPEC cs;
        size_t next = ParseSpec(fmt, i + 1, cs, reader);
        if (next == 0) { // a malformed conversion stands as written
            out.push_back(c);
            ++i;
            continue;
        }
        out += Convert(cs, reader);
        i = next;
    }
    return out;
}
