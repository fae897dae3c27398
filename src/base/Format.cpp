// printf-style formatting with wide "%s", built on the C library's number conversions.
#include "base/Format.h"

#include <cstdio>
#include <cwchar>

namespace {

struct SPEC {
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

std::string NarrowSpec(const SPEC& spec, const char* length, char conv) {
    std::string s = "%" + spec.strFlags;
    if (spec.nWidth >= 0)
        s += std::to_string(spec.nWidth);
    if (spec.nPrecision >= 0)
        s += "." + std::to_string(spec.nPrecision);
    s += length;
    s += conv;
    return s;
}

template <class T> std::wstring CFormat(const std::string& spec, T value) {
    char buf[512];
    int n = std::snprintf(buf, sizeof buf, spec.c_str(), value);
    if (n < 0)
        return {};
    std::string out;
    if (n < static_cast<int>(sizeof buf)) {
        out.assign(buf, static_cast<size_t>(n));
    } else {
        out.resize(static_cast<size_t>(n) + 1);
        std::snprintf(out.data(), out.size(), spec.c_str(), value);
        out.resize(static_cast<size_t>(n));
    }
    return std::wstring(out.begin(), out.end()); // digits, signs and letters only
}

std::wstring Pad(std::wstring text, const SPEC& spec) {
    if (spec.nWidth < 0 || static_cast<int>(text.size()) >= spec.nWidth)
        return text;
    std::wstring fill(static_cast<size_t>(spec.nWidth) - text.size(), L' ');
    return spec.strFlags.find('-') != std::string::npos ? text + fill : fill + text;
}

std::wstring ConvertText(const SPEC& spec, const FORMAT_ARG* p) {
    std::wstring text;
    if (p && p->kind == FORMAT_ARG::Text)
        text = p->strValue;
    else if (p && p->kind == FORMAT_ARG::Int)
        text = std::to_wstring(p->nValue);
    else if (p)
        text = CFormat("%g", p->dValue);
    if (spec.nPrecision >= 0 && static_cast<int>(text.size()) > spec.nPrecision)
        text.resize(static_cast<size_t>(spec.nPrecision));
    return Pad(text, spec);
}

std::wstring Convert(const SPEC& spec, CArgReader& reader) {
    wchar_t c = spec.chConv;
    if (c == L's' || c == L'S')
        return ConvertText(spec, reader.Next());
    if (c == L'c') {
        auto ch = static_cast<wchar_t>(reader.NextInt());
        return Pad(std::wstring(1, ch), spec);
    }
    if (c == L'd' || c == L'i')
        return CFormat(NarrowSpec(spec, "ll", 'd'), reader.NextInt());
    if (c == L'u' || c == L'x' || c == L'X' || c == L'o') {
        // The platform's ints are 32 bits: a negative %X prints as 8 digits.
        long long v = reader.NextInt();
        unsigned long long u = (v < 0 && v >= INT32_MIN) ? static_cast<uint32_t>(v) : v;
        return CFormat(NarrowSpec(spec, "ll", static_cast<char>(c)), u);
    }
    const FORMAT_ARG* p = reader.Next();
    double d = !p ? 0.0 : p->kind == FORMAT_ARG::Real ? p->dValue : static_cast<double>(p->nValue);
    return CFormat(NarrowSpec(spec, "", static_cast<char>(c)), d);
}

bool IsConversion(wchar_t c) {
    return std::wcschr(L"diuxXocsSfFeEgG", c) != nullptr && c != 0;
}

// Parses one specification after '%'; returns the index past it, or 0 when malformed.
size_t ParseSpec(std::wstring_view fmt, size_t i, SPEC& spec, CArgReader& reader) {
    while (i < fmt.size() && std::wcschr(L"-+ 0#", fmt[i]) && fmt[i] != 0)
        spec.strFlags += static_cast<char>(fmt[i++]);
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
    readNumber(spec.nWidth);
    if (spec.nWidth < -1) { // "*" with a negative width means left-justify
        spec.strFlags += '-';
        spec.nWidth = -spec.nWidth;
    }
    if (i < fmt.size() && fmt[i] == L'.') {
        ++i;
        spec.nPrecision = 0;
        readNumber(spec.nPrecision);
        if (spec.nPrecision < 0)
            spec.nPrecision = -1;
    }
    if (fmt.substr(i, 3) == L"I64")
        i += 3;
    while (i < fmt.size() && (fmt[i] == L'h' || fmt[i] == L'l'))
        ++i;
    if (i >= fmt.size() || !IsConversion(fmt[i]))
        return 0;
    spec.chConv = fmt[i];
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
        SPEC spec;
        size_t next = ParseSpec(fmt, i + 1, spec, reader);
        if (next == 0) { // a malformed specification stands as written
            out.push_back(c);
            ++i;
            continue;
        }
        out += Convert(spec, reader);
        i = next;
    }
    return out;
}
