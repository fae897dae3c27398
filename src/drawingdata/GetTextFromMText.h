// Plain text out of a multi-line text's contents, so that labels from single and multi-line texts
// compare equal.
#pragma once

#include <string>
#include <vector>

// Where a format code or a semicolon stands in the contents.
struct TypeSpecialSymbPos {
    int pos = 0;  // index in the text
    int type = 0; // 1 a format code, 2 a semicolon
};

class CGetTextFromMText {
public:
    virtual ~CGetTextFromMText() = default;

    // Strips format codes ("\fSimSun;", "\H2.5;", "\L", "\P"...) and braces.
    // Codes with an argument go up to their semicolon; "\U+xxxx" and stacked
    // fractions stay, less the two characters of any format code.
    std::wstring GetPlainText(const std::wstring& contents);

private:
    std::vector<TypeSpecialSymbPos> m_marks; // scratch of one call
};
