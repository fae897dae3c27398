// The one place where the system's backslash paths meet the OS's slash paths.
#pragma once

#include <string>
#include <string_view>

// A system path is wide text with backslashes; the OS path is its UTF-8 form
// with slashes. A backslash inside an OS file name cannot be expressed and
// reads back as a separator.
std::string ToOsPath(std::wstring_view sysPath);
std::wstring FromOsPath(std::string_view osPath);
