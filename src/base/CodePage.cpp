// Code-page conversion through glibc's iconv, one converter pair per code page.
#include "base/CodePage.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iconv.h>
#include <memory>
#include <mutex>
#include <vector>

namespace {

std::mutex g_mutex;
std::string g_strCodePage;

std::string CurrentCodePage() {
    std::lock_guard<std::mutex> lock(g_mutex);
    if (g_strCodePage.empty()) {
        const char* env = std::getenv("QM_CODEPAGE");
        g_strCodePage = (env && *env) ? env : "GBK";
    }
    return g_strCodePage;
}

// Wide strings are UTF-32 on this platform; iconv's "WCHAR_T" is the same.
class CConverter {
public:
    CConverter(const char* to, const char* from) : m_cd(iconv_open(to, from)) {}
    ~CConverter() {
        if (m_cd != reinterpret_cast<iconv_t>(-1))
            iconv_close(m_cd);
    }
    CConverter(const CConverter&) = delete;
    CConverter& operator=(const CConverter&) = delete;
    bool IsOpen() const { return m_cd != reinterpret_cast<iconv_t>(-1); }
    void Reset() { iconv(m_cd, nullptr, nullptr, nullptr, nullptr); }
    // Converts as much as it can; returns iconv's result and advances the pointers.
    size_t Run(const char*& in, size_t& nIn, char*& out, size_t& nOut) {
        return iconv(m_cd, const_cast<char**>(&in), &nIn, &out, &nOut);
    }

private:
    iconv_t m_cd;
};

struct CONVERTERS {
    std::string strCodePage;
    std::unique_ptr<CConverter> pEncode;
    std::unique_ptr<CConverter> pDecode;
};

// A few code pages are in use at once (the workstation's, a drawing's, an
// FTP server's): each keeps its converters instead of reopening them by turns.
CONVERTERS& ConvertersFor(const std::string& cp) {
    thread_local std::vector<CONVERTERS> s_open;
    for (CONVERTERS& conv : s_open)
        if (conv.strCodePage == cp)
            return conv;
    if (s_open.size() >= 8)
        s_open.erase(s_open.begin());
    CONVERTERS conv;
    conv.strCodePage = cp;
    conv.pEncode = std::make_unique<CConverter>(cp.c_str(), "WCHAR_T");
    conv.pDecode = std::make_unique<CConverter>("WCHAR_T", cp.c_str());
    s_open.push_back(std::move(conv));
    return s_open.back();
}

} // namespace

void SetTextCodePage(const std::string& strCodePage) {
    std::lock_guard<std::mutex> lock(g_mutex);
    g_strCodePage = strCodePage;
}

std::string GetTextCodePage() {
    return CurrentCodePage();
}

std::string EncodeText(std::wstring_view text) {
    return EncodeTextIn(CurrentCodePage(), text);
}

std::wstring DecodeText(std::string_view bytes) {
    return DecodeTextIn(CurrentCodePage(), bytes);
}

std::string EncodeTextIn(const std::string& strCodePage, std::wstring_view text) {
    CConverter& conv = *ConvertersFor(strCodePage).pEncode;
    std::string out;
    if (!conv.IsOpen()) { // unknown code page: keep ASCII, mark the rest
        for (wchar_t wc : text)
            out.push_back(wc < 0x80 ? static_cast<char>(wc) : '?');
        return out;
    }
    conv.Reset();
    char buf[16];
    for (wchar_t wc : text) {
        const char* in = reinterpret_cast<const char*>(&wc);
        size_t nIn = sizeof wc;
        char* pOut = buf;
        size_t nOut = sizeof buf;
        if (conv.Run(in, nIn, pOut, nOut) == static_cast<size_t>(-1)) {
            conv.Reset();
            out.push_back('?');
            continue;
        }
        out.append(buf, static_cast<size_t>(pOut - buf));
    }
    return out;
}

bool IsKnownCodePage(const std::string& strCodePage) {
    return ConvertersFor(strCodePage).pDecode->IsOpen();
}

bool EncodeCharIn(const std::string& strCodePage, wchar_t wc, std::string& out) {
    CConverter& conv = *ConvertersFor(strCodePage).pEncode;
    if (!conv.IsOpen())
        return false;
    conv.Reset();
    char buf[16];
    const char* in = reinterpret_cast<const char*>(&wc);
    size_t nIn = sizeof wc;
    char* pOut = buf;
    size_t nOut = sizeof buf;
    if (conv.Run(in, nIn, pOut, nOut) == static_cast<size_t>(-1))
        return false;
    out.append(buf, static_cast<size_t>(pOut - buf));
    return true;
}

std::wstring DecodeTextIn(const std::string& strCodePage, std::string_view bytes) {
    CConverter& conv = *ConvertersFor(strCodePage).pDecode;
    std::wstring out;
    if (!conv.IsOpen()) {
        for (char c : bytes)
            out.push_back(static_cast<unsigned char>(c) < 0x80 ? c : 0xFFFD);
        return out;
    }
    conv.Reset();
    const char* in = bytes.data();
    size_t nIn = bytes.size();
    std::wstring chunk(256, L'\0');
    while (nIn > 0) {
        char* pOut = reinterpret_cast<char*>(chunk.data());
        size_t nOut = chunk.size() * sizeof(wchar_t);
        size_t r = conv.Run(in, nIn, pOut, nOut);
        out.append(chunk.data(), static_cast<size_t>(pOut - reinterpret_cast<char*>(chunk.data())) /
                                     sizeof(wchar_t));
        if (r != static_cast<size_t>(-1) || errno == E2BIG)
            continue;
        // EILSEQ (invalid) or EINVAL (cut short at the end): skip one byte.
        out.push_back(0xFFFD);
        ++in;
        --nIn;
        conv.Reset();
    }
    return out;
}
