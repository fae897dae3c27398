// The machine's name and address through the C library's resolver.
#include "base/Network.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <unistd.h>

bool NetGetHostName(std::string& strName) {
    char szName[256] = {};
    if (gethostname(szName, sizeof szName - 1) != 0)
        return false;
    strName = szName;
    return true;
}

bool NetGetHostIPv4(const std::string& strName, std::string& strAddress) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    addrinfo* pResult = nullptr;
    if (getaddrinfo(strName.c_str(), nullptr, &hints, &pResult) != 0 || !pResult)
        return false;
    const auto* pAddr = reinterpret_cast<const sockaddr_in*>(pResult->ai_addr);
    const auto* b = reinterpret_cast<const unsigned char*>(&pAddr->sin_addr.s_addr);
    strAddress = std::to_string(b[0]) + "." + std::to_string(b[1]) + "." + std::to_string(b[2]) +
                 "." + std::to_string(b[3]);
    freeaddrinfo(pResult);
    return true;
}
