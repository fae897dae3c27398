// The two libraries' connections to the shared site, globals of the module.
#pragma once

#include <memory>

class CMyFtpConnection;

// Made on first use, when the host's install paths are known; never connected until a browser
// opens.
extern std::unique_ptr<CMyFtpConnection> g_HoleFtp;
extern std::unique_ptr<CMyFtpConnection> g_LayoutFtp;
CMyFtpConnection* GetLibraryFtp(std::unique_ptr<CMyFtpConnection>& pFtp);
