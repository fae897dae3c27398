// The libraries' connection objects.
#include "library/LibraryFtp.h"

#include "shared/MyFtpConnection.h"

std::unique_ptr<CMyFtpConnection> g_HoleFtp;
std::unique_ptr<CMyFtpConnection> g_LayoutFtp;

CMyFtpConnection* GetLibraryFtp(std::unique_ptr<CMyFtpConnection>& pFtp) {
    if (!pFtp)
        pFtp = std::make_unique<CMyFtpConnection>();
    return pFtp.get();
}
