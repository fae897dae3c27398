// The FTP client the host lends the module: session, connection and directory listings.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

// Session options with the platform's option numbers; each value is 32 bits.
enum : int {
    INTERNET_OPTION_CONNECT_TIMEOUT = 2, // ms to establish the control connection
    INTERNET_OPTION_CONNECT_RETRIES = 3, // attempts to reach the host
    INTERNET_OPTION_CONNECT_BACKOFF = 4, // ms between those attempts
    INTERNET_OPTION_SEND_TIMEOUT = 5,    // ms a send may stall
    INTERNET_OPTION_RECEIVE_TIMEOUT = 6, // ms to wait for the server
};

// The values of those options. The defaults are the working values the
// site's client sets; tests shorten them so that a dead server costs little.
struct FTP_SESSION_OPTIONS {
    uint32_t nConnectTimeoutMs = 6000;
    uint32_t nSendTimeoutMs = 6000;
    uint32_t nReceiveTimeoutMs = 6000;
    uint32_t nConnectBackoffMs = 500;
    uint32_t nConnectRetries = 5;
};

// Attribute bits of a listed entry, with the platform's values.
enum : uint32_t {
    FILE_ATTRIBUTE_READONLY = 0x01,
    FILE_ATTRIBUTE_DIRECTORY = 0x10,
    FILE_ATTRIBUTE_NORMAL = 0x80,
};

// One entry of a remote listing.
struct FTP_FIND_DATA {
    std::wstring strName;     // the entry's name as the server spells it
    std::wstring strFilePath; // the listed directory as asked for, "/" and the name
    bool bDirectory = false;
    uint32_t nAttributes = FILE_ATTRIBUTE_NORMAL;
    int64_t nSize = 0;
};

// A logged-in connection. Remote paths are the system's (backslashes); a
// path that begins with a backslash or "/" is absolute on the server, any
// other is relative to the current directory. Every call reaches the
// server: nothing is answered from a cache. Failures are plain false.
class IFtpConnection {
public:
    virtual ~IFtpConnection() = default;
    virtual void Close() = 0;
    // Remote to local, binary; replaces the local file only once the whole file has arrived.
    virtual bool GetFile(const std::wstring& strRemote, const std::wstring& strLocal) = 0;
    // Local to remote, binary, replacing the remote file.
    virtual bool PutFile(const std::wstring& strLocal, const std::wstring& strRemote) = 0;
    // False if the file is not there.
    virtual bool Remove(const std::wstring& strRemote) = 0;
    // File or directory; false if the source is missing or the target exists.
    virtual bool Rename(const std::wstring& strFrom, const std::wstring& strTo) = 0;
    virtual bool SetCurrentDirectory(const std::wstring& strDir) = 0;
    // The server's absolute current directory, "/" separated.
    virtual bool GetCurrentDirectory(std::wstring& strDir) = 0;
    virtual bool CreateDirectory(const std::wstring& strDir) = 0;
    virtual bool RemoveDirectory(const std::wstring& strDir) = 0;
    // Entries of the pattern's directory whose names match its last element
    // ("*" and "?", case-sensitive; "*.*" matches every name). A pattern
    // without a directory lists the current one. "." and ".." are never
    // listed. False when the directory cannot be listed or nothing matched.
    // One call serves both the search object and the raw find-first /
    // find-next walk: the caller steps through the entries.
    virtual bool FindFiles(const std::wstring& strPattern, std::vector<FTP_FIND_DATA>& found) = 0;
    // The size the server gives for a file (SIZE); false when it gives none.
    virtual bool GetFileSize(const std::wstring& /*strRemote*/, int64_t& /*nSize*/) {
        return false;
    }
    // This end's address of the control connection, as the server sees it
    // ("192.168.1.20"); empty when unknown.
    virtual std::wstring GetLocalAddress() { return {}; }
};

// A session: options, then connections made with them.
class IFtpSession {
public:
    virtual ~IFtpSession() = default;
    virtual bool SetOption(int nOption, uint32_t nValue) = 0;
    // Logs in; empty user and password log in anonymously. On failure the
    // result is null and strError holds the server's reply or the network error.
    virtual std::unique_ptr<IFtpConnection> GetFtpConnection(const std::wstring& strServer,
                                                             const std::wstring& strUser,
                                                             const std::wstring& strPassword,
                                                             uint16_t nPort, bool bPassive,
                                                             std::wstring& strError) = 0;
};

class IFtpClient {
public:
    virtual ~IFtpClient() = default;
    virtual std::unique_ptr<IFtpSession> OpenSession() = 0;
};

// A new session from the host's client, or null when the host offers none.
std::unique_ptr<IFtpSession> OpenFtpSession();
