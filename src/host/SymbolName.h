// The editor's rule for names of symbol table records (blocks, layers, styles).
#pragma once

#include <string>

// True when the editor accepts the name for a symbol table record: not
// empty, at most 255 characters, none of < > / \ " : ; ? * | , = `, no
// control character, and no leading or trailing space.
bool IsValidSymbolName(const std::wstring& strName);
