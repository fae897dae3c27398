// printf-style formatting of the system's texts, where "%s" takes a wide string.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

// One argument of Format. Integers, reals and wide strings; a conversion
// that meets an argument of another kind converts it instead of reading
// garbage, and a missing argument formats as zero or the empty string.
struct FORMAT_ARG {
    enum Kind { Int, Real, Text } kind = Int;
    long long nValue = 0;
    double dValue = 0.0;
    std::wstring_view strValue;

    template <class T, std::enable_if_t<std::is_integral_v<T>, int> = 0>
    FORMAT_ARG(T v) : kind(Int), nValue(static_cast<long long>(v)) {}
    FORMAT_ARG(double v) : kind(Real), dValue(v) {}
    FORMAT_ARG(float v) : kind(Real), dValue(v) {}
    FORMAT_ARG(const wchar_t* v) : kind(Text), strValue(v ? v : L"") {}
    FORMAT_ARG(const std::wstring& v) : kind(Text), strValue(v) {}
    FORMAT_ARG(std::wstring_view v) : kind(Text), strValue(v) {}
};

// Supports the flags "-+ 0#", width and precision (also "*"), the length
// prefixes h, l, ll, I64 (ignored: all integers are 64-bit here), and the
// conversions d i u x X o c s S f F e E g G and "%%".
std::wstring FormatArgs(std::wstring_view fmt, const std::vector<FORMAT_ARG>& args);

template <class... A> std::wstring Format(std::wstring_view fmt, const A&... args) {
    return FormatArgs(fmt, std::vector<FORMAT_ARG>{FORMAT_ARG(args)...});
}
