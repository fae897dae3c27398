// CString-style helpers on std::wstring.
#include "base/StrUtil.h"

#include <algorithm>

namespace {

const std::wstring_view kWhiteSpace = L" \t\n\v\f\r";

std::wstring_view Clamp(std::wstring_view s, int nFirst, int nCount) {
    int nLen = static_cast<int>(s.size());
    if (nFirst < 0)
        nFirst = 0;
    if (nCount < 0 || nFirst >= nLen)
        return {};
    if (nCount > nLen - nFirst)
        nCount = nLen - nFirst;
    return s.substr(static_cast<size_t>(nFirst), static_cast<size_t>(nCount));
}

} // namespace

wchar_t FoldLower(wchar_t ch) {
    return (ch >= L'A' && ch <= L'Z') ? ch - L'A' + L'a' : ch;
}

int CompareNoCase(std::wstring_view a, std::wstring_view b) {
    size_t n = std::min(a.size(), b.size());
    for (size_t i = 0; i < n; ++i) {
        wchar_t ca = FoldLower(a[i]);
        wchar_t cb = FoldLower(b[i]);
        if (ca != cb)
            return ca < cb ? -1 : 1;
    }
    if (a.size() == b.size())
        return 0;
    return a.size() < b.size() ? -1 : 1;
}

bool EqualsNoCase(std::wstring_view a, std::wstring_view b) {
    return a.size() == b.size() && CompareNoCase(a, b) == 0;
}

std::wstring StrLeft(std::wstring_view s, int nCount) {
    return std::wstring(Clamp(s, 0, nCount));
}

std::wstring StrMid(std::wstring_view s, int nFirst) {
    return std::wstring(Clamp(s, nFirst, static_cast<int>(s.size())));
}

std::wstring StrMid(std::wstring_view s, int nFirst, int nCount) {
    return std::wstring(Clamp(s, nFirst, nCount));
}

std::wstring StrRight(std::wstring_view s, int nCount) {
    int nLen = static_cast<int>(s.size());
    if (nCount < 0)
        nCount = 0;
    if (nCount > nLen)
        nCount = nLen;
    return std::wstring(s.substr(static_cast<size_t>(nLen - nCount)));
}

int StrFind(std::wstring_view s, std::wstring_view sub, int nStart) {
    if (nStart < 0 || nStart > static_cast<int>(s.size()))
        return -1;
    size_t pos = s.find(sub, static_cast<size_t>(nStart));
    return pos == std::wstring_view::npos ? -1 : static_cast<int>(pos);
}

int StrFind(std::wstring_view s, wchar_t ch, int nStart) {
    if (nStart < 0 || nStart >= static_cast<int>(s.size()))
        return -1;
    size_t pos = s.find(ch, static_cast<size_t>(nStart));
    return pos == std::wstring_view::npos ? -1 : static_cast<int>(pos);
}

int StrReverseFind(std::wstring_view s, wchar_t ch) {
    size_t pos = s.rfind(ch);
    return pos == std::wstring_view::npos ? -1 : static_cast<int>(pos);
}

int StrFindOneOf(std::wstring_view s, std::wstring_view set) {
    size_t pos = s.find_first_of(set);
    return pos == std::wstring_view::npos ? -1 : static_cast<int>(pos);
}

std::wstring StrTrim(std::wstring_view s) {
    return StrTrim(s, kWhiteSpace);
}
std::wstring StrTrimLeft(std::wstring_view s) {
    return StrTrimLeft(s, kWhiteSpace);
}
std::wstring StrTrimRight(std::wstring_view s) {
    return StrTrimRight(s, kWhiteSpace);
}

std::wstring StrTrim(std::wstring_view s, std::wstring_view set) {
    return StrTrimLeft(StrTrimRight(s, set), set);
}

std::wstring StrTrimLeft(std::wstring_view s, std::wstring_view set) {
    size_t pos = s.find_first_not_of(set);
    return pos == std::wstring_view::npos ? std::wstring() : std::wstring(s.substr(pos));
}

std::wstring StrTrimRight(std::wstring_view s, std::wstring_view set) {
    size_t pos = s.find_last_not_of(set);
    return pos == std::wstring_view::npos ? std::wstring() : std::wstring(s.substr(0, pos + 1));
}

int StrReplace(std::wstring& s, std::wstring_view strOld, std::wstring_view strNew) {
    if (strOld.empty())
        return 0;
    int nCount = 0;
    std::wstring out;
    size_t from = 0;
    for (size_t pos = s.find(strOld); pos != std::wstring::npos; pos = s.find(strOld, from)) {
        out.append(s, from, pos - from);
        out.append(strNew);
        from = pos + strOld.size();
        ++nCount;
    }
    if (nCount == 0)
        return 0;
    out.append(s, from, std::wstring::npos);
    s.swap(out);
    return nCount;
}

std::wstring StrMakeUpper(std::wstring_view s) {
    std::wstring out(s);
    for (wchar_t& ch : out)
        if (ch >= L'a' && ch <= L'z')
            ch = ch - L'a' + L'A';
    return out;
}

std::wstring StrMakeLower(std::wstring_view s) {
    std::wstring out(s);
    for (wchar_t& ch : out)
        ch = FoldLower(ch);
    return out;
}

std::wstring Utf8ToWide(std::string_view s) {
    std::wstring out;
    out.reserve(s.size());
    size_t i = 0;
    while (i < s.size()) {
        unsigned char c = static_cast<unsigned char>(s[i]);
        int nTrail = c < 0x80         ? 0
                     : (c >> 5) == 6  ? 1
                     : (c >> 4) == 14 ? 2
                     : (c >> 3) == 30 ? 3
                                      : -1;
        if (nTrail < 0 || i + static_cast<size_t>(nTrail) >= s.size()) {
            out.push_back(0xFFFD);
            ++i;
            continue;
        }
        char32_t cp = nTrail == 0 ? c : (c & (0x3F >> nTrail));
        bool bOk = true;
        for (int k = 1; k <= nTrail; ++k) {
            unsigned char t = static_cast<unsigned char>(s[i + k]);
            if ((t & 0xC0) != 0x80) {
                bOk = false;
                break;
            }
            cp = (cp << 6) | (t & 0x3F);
        }
        if (!bOk) {
            out.push_back(0xFFFD);
            ++i;
            continue;
        }
        out.push_back(static_cast<wchar_t>(cp));
        i += static_cast<size_t>(nTrail) + 1;
    }
    return out;
}

std::string WideToUtf8(std::wstring_view s) {
    std::string out;
    out.reserve(s.size());
    for (wchar_t wc : s) {
        auto cp = static_cast<char32_t>(wc);
        if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF))
            cp = 0xFFFD;
        if (cp < 0x80) {
            out.push_back(static_cast<char>(cp));
        } else if (cp < 0x800) {
            out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
            out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        } else if (cp < 0x10000) {
            out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
        }
    }
    return out;
}
