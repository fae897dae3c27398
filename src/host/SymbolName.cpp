// The editor's symbol name rule, shared by the drawing database and the module's name test.
#include "host/SymbolName.h"

#include <cwchar>

bool IsValidSymbolName(const std::wstring& strName) {
    if (strName.empty() || strName.size() > 255)
        return false;
    if (strName.front() == L' ' || strName.back() == L' ')
        return false;
    for (wchar_t ch : strName) {
        if (ch < 0x20 || ch == 0x7F)
            return false;
        if (std::wcschr(L"<>/\\\":;?*|,=`", ch) != nullptr)
            return false;
    }
    return true;
}
