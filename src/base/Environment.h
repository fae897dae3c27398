// The process environment and the local clock, read in this one place.
#pragma once

#include <ctime>
#include <string>

// The value of an environment variable; empty when it is unset or empty.
std::string EnvText(const char* pszName);
// Whether the variable is set at all, even to nothing.
bool EnvIsSet(const char* pszName);
// The current local time; false when the conversion failed.
bool LocalTimeNow(std::tm& localTime);
