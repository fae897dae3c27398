// Conversion between wide text and the workstation's narrow code page (GBK by default).
#pragma once

#include <string>
#include <string_view>

// The code page is an iconv name; the process default is "GBK", and the
// environment variable QM_CODEPAGE overrides it at first use.
void SetTextCodePage(const std::string& strCodePage);
std::string GetTextCodePage();

// A character the code page cannot hold is written as '?', as the
// platform's conversion does with its default character.
std::string EncodeText(std::wstring_view text);

// A byte sequence that is not valid in the code page decodes to U+FFFD, one
// per offending byte, and decoding goes on after it: never a failure, never
// a loop that does not advance.
std::wstring DecodeText(std::string_view bytes);

// The same in a code page named by the caller (an FTP server's file names,
// for one), with the same rules for what cannot be converted.
std::string EncodeTextIn(const std::string& strCodePage, std::wstring_view text);
std::wstring DecodeTextIn(const std::string& strCodePage, std::string_view bytes);

// Whether iconv knows the code page.
bool IsKnownCodePage(const std::string& strCodePage);
// Appends the character in the code page; false, with nothing appended, when
// the code page cannot hold it (the caller chooses its own stand-in).
bool EncodeCharIn(const std::string& strCodePage, wchar_t wc, std::string& out);
