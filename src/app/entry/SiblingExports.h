// The module's exports for sibling modules: let the user pick a library drawing, then read the
// pick.
//
// A sibling finds them in the loaded module with dlsym (the host loads
// modules RTLD_GLOBAL, so dlsym(RTLD_DEFAULT, "TzGetInstallHoleDwgFile")
// works). The order of calls: TzGetInstallHoleDwgFile(window, name in use)
// opens the hole browser in select mode and returns at once. When the user
// confirms, an event of type kTzPickedEvent is posted to the window: call
// TzGetSelectHoleFileName then. Cancel or the close box post kTzCancelledEvent.
// A window destroyed before the pick gets nothing, and no name is stored.
// The layout library's pair works alike.
#pragma once

#include <string>

class QWidget;

// Plain QEvents of these types, posted to the caller's window.
inline constexpr int kTzPickedEvent = 1129;    // the user confirmed a name
inline constexpr int kTzCancelledEvent = 1130; // the user cancelled or closed the window

extern "C" {
// The window of the caller and the file name in use ("5x10.dwg"), by value.
void TzGetInstallHoleDwgFile(QWidget* pOwner, std::wstring strCurName);
void TzGetLSDwgFile(QWidget* pOwner, std::wstring strCurName);
// The picked file name, with extension, without directory; left as it is when there is none.
void TzGetSelectHoleFileName(std::wstring& strName);
void TzGetSelectLSName(std::wstring& strName);
}

// The exports' types, for dlsym.
using PFN_TzGetDwgFile = void (*)(QWidget*, std::wstring);
using PFN_TzGetSelectName = void (*)(std::wstring&);
