// The bodies of the four exports through which sibling modules let the user pick a library drawing.
#pragma once

#include <string>

class QWidget;

// Opens the library's browser in select mode for the caller's window, on the
// directory of the given name with that name selected. A null window does nothing.
void SelectHoleDwgFile(QWidget* pOwner, const std::wstring& strCurName);
void SelectLayoutDwgFile(QWidget* pOwner, const std::wstring& strCurName);
// The last picked name, if there is one; otherwise the string stays as it is.
void GetPickedHoleName(std::wstring& strName);
void GetPickedLayoutName(std::wstring& strName);
