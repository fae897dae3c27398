// Numbers read from text the way the platform's _wtoi and _wtof read them.
#pragma once

#include <string_view>

// Leading white space and a sign are skipped, digits are taken up to the
// first other character; no digits gives 0. Values past the int range clamp.
int TextToInt(std::wstring_view text);

// The longest prefix that forms a number in the C locale; none gives 0.0.
double TextToReal(std::wstring_view text);
