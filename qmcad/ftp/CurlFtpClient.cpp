// The reference host's FTP client over libcurl: one easy handle, so one control
// connection, reused by every operation of a connection object.
//
// How the Windows client's behaviour is kept:
// - The server's current directory is tracked here, and every command carries
//   an absolute path ("/%2F..." URLs, NOCWD): libcurl's own directory changes
//   and its memory of them never decide where a file goes.
// - Commands without a transfer (CWD, DELE, RNFR/RNTO, MKD, RMD) go as quoted
//   commands marked "may fail", and their replies are read from the
//   conversation, so a refusal is a plain false and the connection stays up.
// - Rename refuses an existing target, as Windows servers do; a Linux server
//   would replace it silently. A file held open by another client cannot be
//   seen from here, so Remove and Rename of a held file go through.
// - A listing is always a fresh LIST (never MLSD, which some servers refuse),
//   matched here against the pattern, with "*.*" meaning every name.
// - A download lands in a side file and replaces the local file only when
//   complete, so a dropped connection never leaves half a file behind.
#include "ftp/CurlFtpClient.h"

#include "ftp/FtpListing.h"

#include "base/CodePage.h"
#include "base/Environment.h"
#include "base/FileSystem.h"
#include "base/StrUtil.h"

#include <curl/curl.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <mutex>
#include <thread>

namespace {

// A session nobody configured keeps the platform's own values.
constexpr FTP_SESSION_OPTIONS kPlatformOptions = {60000, 30000, 30000, 0, 5};

struct LOGIN {
    std::string strHost;
    uint16_t nPort = 21;
    std::string strUser; // empty: anonymous
    std::string strPassword;
    bool bPassive = true;
};

// A command sent on the control connection and the code of its final reply.
struct EXCHANGE {
    std::string strCommand;
    int nReply = 0;
};

long CeilSeconds(uint32_t nMs) {
    return std::max<long>(1, static_cast<long>((nMs + 999) / 1000));
}

bool IsUtf8(const std::string& cp) {
    return EqualsNoCase(Utf8ToWide(cp), L"UTF-8") || EqualsNoCase(Utf8ToWide(cp), L"UTF8");
}

size_t WriteToFile(char* p, size_t n, size_t m, void* pFile) {
    return std::fwrite(p, n, m, static_cast<std::FILE*>(pFile)) * n;
}
size_t ReadFromFile(char* p, size_t n, size_t m, void* pFile) {
    return std::fread(p, n, m, static_cast<std::FILE*>(pFile)) * n;
}
size_t AppendToString(char* p, size_t n, size_t m, void* pText) {
    static_cast<std::string*>(pText)->append(p, n * m);
    return n * m;
}
size_t Discard(char*, size_t n, size_t m, void*) {
    return n * m;
}

class CCurlFtpConnection : public IFtpConnection {
public:
    CCurlFtpConnection(const FTP_SESSION_OPTIONS& settings, std::string cp, LOGIN login)
        : m_settings(settings), m_strCodePage(std::move(cp)), m_login(std::move(login)),
          m_pMulti(curl_multi_init()), m_pCurl(curl_easy_init()) {
        std::string strHost = m_login.strHost.find(':') != std::string::npos
                                  ? "[" + m_login.strHost + "]"
                                  : m_login.strHost;
        m_strBaseUrl = "ftp://" + strHost + ":" + std::to_string(m_login.nPort);
    }
    ~CCurlFtpConnection() override { Close(); }

    bool Login(std::wstring& strError);

    void Close() override {
        if (m_pCurl)
            curl_easy_cleanup(m_pCurl);
        m_pCurl = nullptr;
        if (m_pMulti)
            curl_multi_cleanup(m_pMulti);
        m_pMulti = nullptr;
    }
    bool GetFile(const std::wstring& strRemote, const std::wstring& strLocal) override;
    bool PutFile(const std::wstring& strLocal, const std::wstring& strRemote) override;
    bool Remove(const std::wstring& strRemote) override {
        return Quote({"DELE " + Wire(Absolute(strRemote))});
    }
    bool Rename(const std::wstring& strFrom, const std::wstring& strTo) override;
    bool SetCurrentDirectory(const std::wstring& strDir) override;
    bool GetCurrentDirectory(std::wstring& strDir) override {
        strDir = m_strCwd;
        return m_pCurl != nullptr;
    }
    bool CreateDirectory(const std::wstring& strDir) override {
        return Quote({"MKD " + Wire(Absolute(strDir))});
    }
    bool RemoveDirectory(const std::wstring& strDir) override {
        return Quote({"RMD " + Wire(Absolute(strDir))});
    }
    bool FindFiles(const std::wstring& strPattern, std::vector<FTP_FIND_DATA>& found) override;
    bool GetFileSize(const std::wstring& strRemote, int64_t& nSize) override;
    std::wstring GetLocalAddress() override { return Utf8ToWide(m_strLocalAddress); }

private:
    enum class Kind { Control, Transfer };

    void Prepare(const std::string& strUrl, Kind kind);
    CURLcode Perform();
    bool Run();
    bool Quote(const std::vector<std::string>& commands);
    bool List(const std::wstring& strAbsDir, std::vector<FTP_LIST_ENTRY>& entries);
    bool Exists(const std::wstring& strAbsPath);

    std::string Wire(std::wstring_view text) const {
        return IsUtf8(m_strCodePage) ? WideToUtf8(text) : EncodeTextIn(m_strCodePage, text);
    }
    std::wstring FromWire(std::string_view bytes) const {
        return IsUtf8(m_strCodePage) ? Utf8ToWide(bytes) : DecodeTextIn(m_strCodePage, bytes);
    }
    std::wstring Absolute(const std::wstring& strPath) const;
    std::string Url(const std::wstring& strAbs, bool bDirectory) const;

    static int OnDebug(CURL*, curl_infotype type, char* p, size_t n, void* pSelf);

    FTP_SESSION_OPTIONS m_settings;
    std::string m_strCodePage;
    LOGIN m_login;
    CURLM* m_pMulti; // holds the control connection between requests
    CURL* m_pCurl;
    std::string m_strBaseUrl;
    std::wstring m_strCwd = L"/";
    std::vector<EXCHANGE> m_exchanges; // of the last request
    std::string m_strLastReply;
    std::string m_strLocalAddress; // of the control connection, read at login
    char m_szError[CURL_ERROR_SIZE] = {};
};

// "/" separated and absolute, without "." or ".." steps and without a final "/".
std::wstring CCurlFtpConnection::Absolute(const std::wstring& strPath) const {
    std::wstring strFull = strPath;
    StrReplace(strFull, L"\\", L"/");
    if (strFull.empty() || strFull[0] != L'/')
        strFull = m_strCwd + L"/" + strFull;
    std::vector<std::wstring> parts;
    size_t nPos = 0;
    while (nPos <= strFull.size()) {
        size_t nEnd = std::min(strFull.find(L'/', nPos), strFull.size());
        std::wstring strPart = strFull.substr(nPos, nEnd - nPos);
        if (strPart == L"..") {
            if (!parts.empty())
                parts.pop_back();
        } else if (!strPart.empty() && strPart != L".") {
            parts.push_back(strPart);
        }
        nPos = nEnd + 1;
    }
    std::wstring strAbs;
    for (const std::wstring& strPart : parts)
        strAbs += L"/" + strPart;
    return strAbs.empty() ? L"/" : strAbs;
}

std::string CCurlFtpConnection::Url(const std::wstring& strAbs, bool bDirectory) const {
    std::string strUrl = m_strBaseUrl + "/%2F";
    size_t nPos = 1;
    while (nPos < strAbs.size()) {
        size_t nEnd = std::min(strAbs.find(L'/', nPos), strAbs.size());
        std::string strPart = Wire(strAbs.substr(nPos, nEnd - nPos));
        char* pEscaped =
            curl_easy_escape(m_pCurl, strPart.data(), static_cast<int>(strPart.size()));
        if (nPos > 1)
            strUrl += "/";
        strUrl += pEscaped ? pEscaped : "";
        curl_free(pEscaped);
        nPos = nEnd + 1;
    }
    if (bDirectory && strAbs.size() > 1)
        strUrl += "/";
    return strUrl;
}

// Pairs every command sent with the final line of the reply that follows it.
int CCurlFtpConnection::OnDebug(CURL*, curl_infotype type, char* p, size_t n, void* pSelf) {
    auto* self = static_cast<CCurlFtpConnection*>(pSelf);
    std::string strLine(p, n);
    while (!strLine.empty() && (strLine.back() == '\n' || strLine.back() == '\r'))
        strLine.pop_back();
    if (type == CURLINFO_HEADER_OUT) {
        self->m_exchanges.push_back({strLine, 0});
    } else if (type == CURLINFO_HEADER_IN && strLine.size() >= 4 && strLine[3] == ' ' &&
               std::isdigit(static_cast<unsigned char>(strLine[0]))) {
        self->m_strLastReply = strLine;
        if (!self->m_exchanges.empty() && self->m_exchanges.back().nReply == 0)
            self->m_exchanges.back().nReply = std::atoi(strLine.c_str());
    }
    return 0;
}

// Options are set afresh for every request (a reused handle keeps them).
void CCurlFtpConnection::Prepare(const std::string& strUrl, Kind kind) {
    CURL* h = m_pCurl;
    curl_easy_reset(h);
    m_exchanges.clear();
    m_szError[0] = 0;
    curl_easy_setopt(h, CURLOPT_URL, strUrl.c_str());
    curl_easy_setopt(h, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(h, CURLOPT_ERRORBUFFER, m_szError);
    curl_easy_setopt(h, CURLOPT_VERBOSE, 1L);
    curl_easy_setopt(h, CURLOPT_DEBUGFUNCTION, &CCurlFtpConnection::OnDebug);
    curl_easy_setopt(h, CURLOPT_DEBUGDATA, this);
    curl_easy_setopt(h, CURLOPT_WRITEFUNCTION, &Discard);
    if (!m_login.strUser.empty()) {
        curl_easy_setopt(h, CURLOPT_USERNAME, m_login.strUser.c_str());
        curl_easy_setopt(h, CURLOPT_PASSWORD, m_login.strPassword.c_str());
    }
    curl_easy_setopt(h, CURLOPT_FTPPORT, m_login.bPassive ? nullptr : "-");
    curl_easy_setopt(h, CURLOPT_FTP_FILEMETHOD, static_cast<long>(CURLFTPMETHOD_NOCWD));
    curl_easy_setopt(h, CURLOPT_FTP_CREATE_MISSING_DIRS, 0L);
    curl_easy_setopt(h, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(m_settings.nConnectTimeoutMs));
    curl_easy_setopt(h, CURLOPT_ACCEPTTIMEOUT_MS, static_cast<long>(m_settings.nConnectTimeoutMs));
    curl_easy_setopt(h, CURLOPT_SERVER_RESPONSE_TIMEOUT, CeilSeconds(m_settings.nReceiveTimeoutMs));
    // A data connection that stalls longer than a send or receive may is given up.
    curl_easy_setopt(h, CURLOPT_LOW_SPEED_LIMIT, 1L);
    curl_easy_setopt(
        h, CURLOPT_LOW_SPEED_TIME,
        CeilSeconds(std::max(m_settings.nSendTimeoutMs, m_settings.nReceiveTimeoutMs)));
    // A request without a file's worth of data has no reason to take longer
    // than one connect and one answer; a transfer may take as long as it flows.
    long nTotalMs =
        kind == Kind::Control
            ? static_cast<long>(m_settings.nConnectTimeoutMs + m_settings.nReceiveTimeoutMs)
            : 0L;
    curl_easy_setopt(h, CURLOPT_TIMEOUT_MS, nTotalMs);
}

// The request runs in the handle's own multi stack, polled every few
// milliseconds: the easy interface's one-second poll would otherwise delay
// the opening of many passive data connections by a second each.
CURLcode CCurlFtpConnection::Perform() {
    if (!m_pCurl || !m_pMulti || curl_multi_add_handle(m_pMulti, m_pCurl) != CURLM_OK)
        return CURLE_FAILED_INIT;
    int nRunning = 1;
    while (curl_multi_perform(m_pMulti, &nRunning) == CURLM_OK && nRunning > 0)
        curl_multi_poll(m_pMulti, nullptr, 0, 10, nullptr);
    CURLcode rc = CURLE_RECV_ERROR;
    int nQueued = 0;
    while (CURLMsg* pMsg = curl_multi_info_read(m_pMulti, &nQueued))
        if (pMsg->msg == CURLMSG_DONE && pMsg->easy_handle == m_pCurl)
            rc = pMsg->data.result;
    curl_multi_remove_handle(m_pMulti, m_pCurl);
    return rc;
}

bool CCurlFtpConnection::Run() {
    return Perform() == CURLE_OK;
}

bool CCurlFtpConnection::Login(std::wstring& strError) {
    if (!m_pCurl || !m_pMulti) {
        strError = L"FTP client not available";
        return false;
    }
    uint32_t nAttempts = std::max<uint32_t>(1, m_settings.nConnectRetries);
    for (uint32_t i = 0; i < nAttempts; ++i) {
        if (i > 0)
            std::this_thread::sleep_for(std::chrono::milliseconds(m_settings.nConnectBackoffMs));
        m_strLastReply.clear();
        Prepare(m_strBaseUrl + "/", Kind::Control);
        curl_easy_setopt(m_pCurl, CURLOPT_NOBODY, 1L);
        CURLcode rc = Perform();
        if (rc == CURLE_OK) {
            char* pszEntry = nullptr;
            curl_easy_getinfo(m_pCurl, CURLINFO_FTP_ENTRY_PATH, &pszEntry);
            m_strCwd = L"/"; // an entry path that is not absolute counts from the root
            m_strCwd = Absolute(pszEntry ? FromWire(pszEntry) : L"/");
            char* pszLocal = nullptr;
            curl_easy_getinfo(m_pCurl, CURLINFO_LOCAL_IP, &pszLocal);
            m_strLocalAddress = pszLocal ? pszLocal : "";
            return true;
        }
        bool bRefused = rc == CURLE_LOGIN_DENIED;
        strError = !m_strLastReply.empty() && (m_strLastReply[0] == '4' || m_strLastReply[0] == '5')
                       ? FromWire(m_strLastReply)
                       : Utf8ToWide(m_szError[0] ? m_szError : curl_easy_strerror(rc));
        if (bRefused)
            break;
    }
    return false;
}

bool CCurlFtpConnection::GetFile(const std::wstring& strRemote, const std::wstring& strLocal) {
    std::wstring strPart = strLocal + L".ftp-part";
    std::FILE* pFile = FsOpenStdio(strPart, "wb");
    if (!pFile)
        return false;
    Prepare(Url(Absolute(strRemote), false), Kind::Transfer);
    curl_easy_setopt(m_pCurl, CURLOPT_WRITEFUNCTION, &WriteToFile);
    curl_easy_setopt(m_pCurl, CURLOPT_WRITEDATA, pFile);
    bool bOk = Run();
    bOk = std::fclose(pFile) == 0 && bOk;
    // Renamed over the old copy, so that a failed download leaves it whole.
    if (bOk)
        bOk = FsReplaceFile(strPart, strLocal);
    if (!bOk)
        FsDeleteFile(strPart);
    return bOk;
}

bool CCurlFtpConnection::PutFile(const std::wstring& strLocal, const std::wstring& strRemote) {
    FS_FIND_DATA info;
    if (!FsGetInfo(strLocal, info) || info.bDirectory)
        return false;
    std::FILE* pFile = FsOpenStdio(strLocal, "rb");
    if (!pFile)
        return false;
    Prepare(Url(Absolute(strRemote), false), Kind::Transfer);
    curl_easy_setopt(m_pCurl, CURLOPT_UPLOAD, 1L);
    curl_easy_setopt(m_pCurl, CURLOPT_READFUNCTION, &ReadFromFile);
    curl_easy_setopt(m_pCurl, CURLOPT_READDATA, pFile);
    curl_easy_setopt(m_pCurl, CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(info.nSize));
    bool bOk = Run();
    std::fclose(pFile);
    return bOk;
}

// Each command is marked "may fail" ("*") so that a refusal leaves the
// connection up; success is read from the reply to every command.
bool CCurlFtpConnection::Quote(const std::vector<std::string>& commands) {
    if (!m_pCurl)
        return false;
    curl_slist* pList = nullptr;
    for (const std::string& strCommand : commands)
        pList = curl_slist_append(pList, ("*" + strCommand).c_str());
    Prepare(m_strBaseUrl + "/", Kind::Control);
    curl_easy_setopt(m_pCurl, CURLOPT_NOBODY, 1L);
    curl_easy_setopt(m_pCurl, CURLOPT_QUOTE, pList);
    bool bOk = Run();
    curl_easy_setopt(m_pCurl, CURLOPT_QUOTE, nullptr);
    curl_slist_free_all(pList);
    for (const std::string& strCommand : commands) {
        auto it = std::find_if(m_exchanges.begin(), m_exchanges.end(),
                               [&](const EXCHANGE& e) { return e.strCommand == strCommand; });
        bOk = bOk && it != m_exchanges.end() && it->nReply >= 200 && it->nReply < 400;
    }
    return bOk;
}

bool CCurlFtpConnection::SetCurrentDirectory(const std::wstring& strDir) {
    std::wstring strAbs = Absolute(strDir);
    if (!Quote({"CWD " + Wire(strAbs)}))
        return false;
    m_strCwd = strAbs;
    return true;
}

bool CCurlFtpConnection::List(const std::wstring& strAbsDir, std::vector<FTP_LIST_ENTRY>& entries) {
    if (!m_pCurl)
        return false;
    std::string strText;
    Prepare(Url(strAbsDir, true), Kind::Control);
    curl_easy_setopt(m_pCurl, CURLOPT_WRITEFUNCTION, &AppendToString);
    curl_easy_setopt(m_pCurl, CURLOPT_WRITEDATA, &strText);
    if (!Run())
        return false;
    size_t nPos = 0;
    while (nPos < strText.size()) {
        size_t nEnd = std::min(strText.find('\n', nPos), strText.size());
        FTP_LIST_ENTRY entry;
        if (ParseListLine(std::string_view(strText).substr(nPos, nEnd - nPos), entry))
            entries.push_back(entry);
        nPos = nEnd + 1;
    }
    return true;
}

bool CCurlFtpConnection::Exists(const std::wstring& strAbsPath) {
    int nSlash = StrReverseFind(strAbsPath, L'/');
    std::wstring strName = StrMid(strAbsPath, nSlash + 1);
    std::vector<FTP_LIST_ENTRY> entries;
    if (strName.empty() || !List(nSlash <= 0 ? L"/" : StrLeft(strAbsPath, nSlash), entries))
        return false;
    return std::any_of(entries.begin(), entries.end(),
                       [&](const FTP_LIST_ENTRY& e) { return FromWire(e.strName) == strName; });
}

bool CCurlFtpConnection::Rename(const std::wstring& strFrom, const std::wstring& strTo) {
    std::wstring strAbsTo = Absolute(strTo);
    if (Exists(strAbsTo))
        return false;
    return Quote({"RNFR " + Wire(Absolute(strFrom)), "RNTO " + Wire(strAbsTo)});
}

bool CCurlFtpConnection::FindFiles(const std::wstring& strPattern,
                                   std::vector<FTP_FIND_DATA>& found) {
    found.clear();
    std::wstring strSlashed = strPattern;
    StrReplace(strSlashed, L"\\", L"/");
    int nSlash = StrReverseFind(strSlashed, L'/');
    std::wstring strDir = StrLeft(strPattern, nSlash); // as the caller wrote it
    std::wstring strMask = StrMid(strSlashed, nSlash + 1);
    std::vector<FTP_LIST_ENTRY> entries;
    if (strMask.empty() ||
        !List(Absolute(nSlash < 0 ? L"." : StrLeft(strSlashed, nSlash + 1)), entries))
        return false;
    for (const FTP_LIST_ENTRY& entry : entries) {
        FTP_FIND_DATA data;
        data.strName = FromWire(entry.strName);
        if (!MatchRemotePattern(strMask, data.strName))
            continue;
        data.strFilePath = nSlash < 0 ? data.strName : strDir + L"/" + data.strName;
        data.bDirectory = entry.bDirectory;
        data.nAttributes = entry.bDirectory ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL;
        if (entry.bReadOnly)
            data.nAttributes |= FILE_ATTRIBUTE_READONLY;
        data.nSize = entry.nSize;
        found.push_back(data);
    }
    return !found.empty();
}

// SIZE through a request without a body: libcurl asks the server for the size.
bool CCurlFtpConnection::GetFileSize(const std::wstring& strRemote, int64_t& nSize) {
    if (!m_pCurl)
        return false;
    Prepare(Url(Absolute(strRemote), false), Kind::Control);
    curl_easy_setopt(m_pCurl, CURLOPT_NOBODY, 1L);
    if (!Run())
        return false;
    curl_off_t nLength = -1;
    if (curl_easy_getinfo(m_pCurl, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &nLength) != CURLE_OK ||
        nLength < 0)
        return false;
    nSize = static_cast<int64_t>(nLength);
    return true;
}

class CCurlFtpSession : public IFtpSession {
public:
    explicit CCurlFtpSession(std::string cp) : m_strCodePage(std::move(cp)) {}

    bool SetOption(int nOption, uint32_t nValue) override {
        switch (nOption) {
        case INTERNET_OPTION_CONNECT_TIMEOUT:
            m_settings.nConnectTimeoutMs = nValue;
            return true;
        case INTERNET_OPTION_CONNECT_RETRIES:
            m_settings.nConnectRetries = nValue;
            return true;
        case INTERNET_OPTION_CONNECT_BACKOFF:
            m_settings.nConnectBackoffMs = nValue;
            return true;
        case INTERNET_OPTION_SEND_TIMEOUT:
            m_settings.nSendTimeoutMs = nValue;
            return true;
        case INTERNET_OPTION_RECEIVE_TIMEOUT:
            m_settings.nReceiveTimeoutMs = nValue;
            return true;
        default:
            return false;
        }
    }

    std::unique_ptr<IFtpConnection> GetFtpConnection(const std::wstring& strServer,
                                                     const std::wstring& strUser,
                                                     const std::wstring& strPassword,
                                                     uint16_t nPort, bool bPassive,
                                                     std::wstring& strError) override {
        LOGIN login{WideToUtf8(strServer), nPort, WideToUtf8(strUser), WideToUtf8(strPassword),
                    bPassive};
        auto pConnection = std::make_unique<CCurlFtpConnection>(m_settings, m_strCodePage, login);
        if (!pConnection->Login(strError))
            return nullptr;
        strError.clear();
        return pConnection;
    }

private:
    std::string m_strCodePage;
    FTP_SESSION_OPTIONS m_settings = kPlatformOptions;
};

} // namespace

CCurlFtpClient::CCurlFtpClient() {
    std::string strEnv = EnvText("QM_FTP_ENCODING");
    m_strWireCodePage = strEnv.empty() ? "UTF-8" : strEnv;
    static std::once_flag s_once;
    std::call_once(s_once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

CCurlFtpClient::CCurlFtpClient(std::string strWireCodePage) : CCurlFtpClient() {
    m_strWireCodePage = std::move(strWireCodePage);
}

std::unique_ptr<IFtpSession> CCurlFtpClient::OpenSession() {
    return std::make_unique<CCurlFtpSession>(m_strWireCodePage);
}
