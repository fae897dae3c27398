// The machine's name and addresses through the C library's resolver and interface list.
#include "base/Network.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
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

namespace {

std::string DottedQuad(const in_addr& addr) {
    const auto* b = reinterpret_cast<const unsigned char*>(&addr.s_addr);
    return std::to_string(b[0]) + "." + std::to_string(b[1]) + "." + std::to_string(b[2]) + "." +
           std::to_string(b[3]);
}

} // namespace

bool NetGetHostIPv4(const std::string& strName, std::string& strAddress) {
    addrinfo hints{};
    hints.ai_family = AF_INET;
    addrinfo* pResult = nullptr;
    if (getaddrinfo(strName.c_str(), nullptr, &hints, &pResult) != 0 || !pResult)
        return false;
    const auto* pAddr = reinterpret_cast<const sockaddr_in*>(pResult->ai_addr);
    strAddress = DottedQuad(pAddr->sin_addr);
    freeaddrinfo(pResult);
    return true;
}

bool NetGetInterfaceIPv4(std::string& strAddress) {
    ifaddrs* pList = nullptr;
    if (getifaddrs(&pList) != 0)
        return false;
    bool bFound = false;
    for (ifaddrs* p = pList; p && !bFound; p = p->ifa_next) {
        if (!p->ifa_addr || p->ifa_addr->sa_family != AF_INET || !(p->ifa_flags & IFF_UP) ||
            (p->ifa_flags & IFF_LOOPBACK))
            continue;
        strAddress = DottedQuad(reinterpret_cast<const sockaddr_in*>(p->ifa_addr)->sin_addr);
        bFound = true;
    }
    freeifaddrs(pList);
    return bFound;
}
