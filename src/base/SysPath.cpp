// Mapping between system paths (backslash) and OS paths (slash, UTF-8).
#include "base/SysPath.h"

#include "base/StrUtil.h"

std::string ToOsPath(std::wstring_view sysPath) {
    std::string out = WideToUtf8(sysPath);
    for (char& c : out)
        if (c == '\\')
            c = '/';
    return out;
}

std::wstring FromOsPath(std::string_view osPath) {
    std::wstring out = Utf8ToWide(osPath);
    for (wchar_t& c : out)
        if (c == L'/')
            c = L'\\';
    return out;
}
