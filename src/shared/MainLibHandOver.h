// The hand-over of a stored hole item's recommended name, model and code to the parts database.
#pragma once

#include "shared/MyFtpConnection.h"

#include <string>

// The site path of the parts database's check-out lock.
inline constexpr const wchar_t* kMainLibLock = L"Data\\TzMainLib.mdb.bak";

// The three strings of a hole item and where it was stored.
struct STRUCT_MAIN_LIB_ENTRY {
    std::wstring strCode;
    std::wstring strModel;
    std::wstring strName;
    std::wstring strFileName; // the drawing's name with extension, no directory
    std::wstring strDrawing;  // the drawing's local path
    std::wstring strLibDir;   // the library's site-relative directory, with its backslash
    int nFlag = 1;            // 1 from the save dialog, 0 from the write-block dialog
};

// Breaks (with the user's consent) and takes the database's lock; true only
// when this workstation holds it.
bool LockMainLib(CMyFtpConnection& ftp);

// In mode 1 the database is fetched when the site's is newer, locked, written
// by the suite, committed and unlocked; in any other mode only written locally.
void HandOverToMainLib(CMyFtpConnection& ftp, int nFtpMode, const STRUCT_MAIN_LIB_ENTRY& entry);
