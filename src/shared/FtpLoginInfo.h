// The FTP login file: eleven lines, each scrambled by itself.
#pragma once

#include "shared/fileops/FileOps.h"

#include <string>

// Lines of the login file, counted from 0.
enum : int {
    LOGIN_LINE_SITE = 1,      // site directory
    LOGIN_LINE_HOST = 2,      // server host
    LOGIN_LINE_PORT = 3,      // decimal port
    LOGIN_LINE_ANONYMOUS = 4, // "1" for an anonymous login
    LOGIN_LINE_USER = 5,
    LOGIN_LINE_PASSWORD = 6,
    LOGIN_LINE_PASSIVE = 10, // "1" for passive mode
    LOGIN_LINE_COUNT = 11,
};

// Two letters 'a'..'p' per character, from the low eight bits of each.
std::wstring EncodeLoginText(const std::wstring& strText);
std::wstring DecodeLoginText(const std::wstring& strText);

// Decodes the eleven lines; lines missing from a short file read as empty.
// False when the file does not exist or cannot be opened.
bool ReadLoginInfo(const std::wstring& strFile, CStringArray& lines);
// The exact inverse of ReadLoginInfo: the file is written anew, lines
// joined by "\n" with none after the last. Refuses (false) unless the file
// exists already.
bool WriteLoginInfo(const std::wstring& strFile, const CStringArray& lines);
