// The suite's label setting files: single-line diagram names and the extra terminal symbols.
#pragma once

#include "host/SuiteLabelNames.h"
#include "shared/fileops/FileOps.h"

#include <string>

// "Data\RpLabelDef.txt": the "name|value" lines between "$BEGIN_SINGLELINENAME"
// and "$END_SINGLELINENAME"; an empty line or "$EOF" ends the file. Value "0"
// gives flag 0, any other value flag 1. False when the file cannot be read.
bool ReadSingleLineNames(const std::wstring& strPath, CZhuangZhiDzNameArray& rows);

// "Data\DzbCreate_ExtraAddDzSettings.txt": the characters behind "可选符号:"
// (blanks and commas apart) are the optional terminal symbols; "'" when there
// are none. False when the file cannot be read (the list is then "'").
bool ReadExtraDzSymbols(const std::wstring& strPath, CStringArray& symbols);

// The two files under the suite's common resources.
std::wstring GetRpLabelDefPath();
std::wstring GetExtraAddDzSettingsPath();
