// The reference host's FTP client over libcurl.
#pragma once

#include "host/FtpClient.h"

#include <string>

// File names travel in the wire code page: UTF-8 unless the environment
// variable QM_FTP_ENCODING names another iconv code page (GBK for a server
// that keeps the names as Chinese Windows clients send them).
class CCurlFtpClient : public IFtpClient {
public:
    CCurlFtpClient();
    explicit CCurlFtpClient(std::string strWireCodePage);

    std::unique_ptr<IFtpSession> OpenSession() override;
    const std::string& WireCodePage() const { return m_strWireCodePage; }

private:
    std::string m_strWireCodePage;
};
