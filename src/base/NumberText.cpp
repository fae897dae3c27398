// Text-to-number conversions with the platform's lenient results.
#include "base/NumberText.h"

#include <climits>
#include <cwchar>
#include <cwctype>
#include <string>

int TextToInt(std::wstring_view text) {
    size_t i = 0;
    while (i < text.size() && std::iswspace(text[i]))
        ++i;
    bool bNegative = false;
    if (i < text.size() && (text[i] == L'+' || text[i] == L'-'))
        bNegative = text[i++] == L'-';
    long long nValue = 0;
    for (; i < text.size() && text[i] >= L'0' && text[i] <= L'9'; ++i) {
        nValue = nValue * 10 + (text[i] - L'0');
        if (nValue > static_cast<long long>(INT_MAX) + 1)
            break;
    }
    if (bNegative)
        nValue = -nValue;
    if (nValue > INT_MAX)
        return INT_MAX;
    if (nValue < INT_MIN)
        return INT_MIN;
    return static_cast<int>(nValue);
}

double TextToReal(std::wstring_view text) {
    std::wstring strCopy(text); // wcstod needs a terminated string
    return std::wcstod(strCopy.c_str(), nullptr);
}
