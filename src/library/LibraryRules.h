// Rules that every library item and directory obeys: names, paths, twins and the library mode.
#pragma once

#include <string>

// Cuts a final ".dwg" (any case). False for an empty result: the caller
// refuses without a message and returns the focus to the name field.
bool NormaliseItemName(std::wstring& strName);

// "%s%s.dwg" from a directory with its final backslash and a stem.
std::wstring MakeItemPath(const std::wstring& strDir, const std::wstring& strName);

// A new item's name must be a valid block name, as the drawing database
// judges it; the system counts nothing itself.
bool IsValidNewItemName(const std::wstring& strName);
// The refusal text of that test, which names the limit of 31 characters.
std::wstring BlockNameRefusalText(const std::wstring& strName);

// The name field swallows file-name punctuation while it has the focus.
bool IsNameKeySwallowed(unsigned nVirtualKey, bool bShift);

enum class LibraryKind { Hole, Layout };

// The twin directory: the local root's "\InstallHole" replaced by its
// "\LaySketch" (from the hole library) or the other way round, as plain text
// over the whole path. A hole library under another root has no twin: the
// path comes back unchanged.
std::wstring MakeTwinDir(const std::wstring& strPath, const std::wstring& strLocalRoot,
                         LibraryKind fromKind);

// The library mode as a browser command starts: 0 local, 1 shared,
// 2 read-only. Returns -1 when styles 1 and 2 lack the FTP login.
int DeriveFtpMode(int nInstallStyle, int nLoginStatus);
// A handler recomputes the mode before an operation that depends on it.
int RecomputeFtpMode(int nInstallStyle, int nCurrentMode);
// The text of the refusal without login.
extern const wchar_t* const kNoFtpLoginText;
