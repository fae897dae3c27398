// The process environment and the local clock, read in this one place.
#include "base/Environment.h"

#include <cstdlib>

std::string EnvText(const char* pszName) {
    const char* pszValue = std::getenv(pszName);
    return pszValue ? pszValue : "";
}

bool EnvIsSet(const char* pszName) {
    return std::getenv(pszName) != nullptr;
}

bool LocalTimeNow(std::tm& localTime) {
    std::time_t now = std::time(nullptr);
    return localtime_r(&now, &localTime) != nullptr;
}
