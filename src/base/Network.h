// The machine's name and address, as the socket library reports them.
#pragma once

#include <string>

// The host name in the system's narrow encoding; false when it cannot be read.
bool NetGetHostName(std::string& strName);
// The first IPv4 address the name resolves to, as "%d.%d.%d.%d"; false when
// the name does not resolve to one.
bool NetGetHostIPv4(const std::string& strName, std::string& strAddress);
// The first IPv4 address of an interface that is up and not a loopback, as
// "%d.%d.%d.%d"; false when there is none.
bool NetGetInterfaceIPv4(std::string& strAddress);
