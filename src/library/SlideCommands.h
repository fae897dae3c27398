// The slide commands: make, show, open, close and preview an item's slide in real documents.
#pragma once

#include <string>

struct CLibState;
class CMyFtpConnection;
class IAcadDocument;

// The library a slide command works for: its state record, its connection
// to the shared site, and the command that starts its browser.
struct SLIDE_LIBRARY {
    CLibState& state;
    CMyFtpConnection* pFtp = nullptr;
    void (*pfnManage)() = nullptr;
};

// Slide of strDwgFile, saved and closed when it is a new item still pending.
void MakeSld(const SLIDE_LIBRARY& lib);
// Shows the slide of strDwgFile, making it from the current drawing first if absent.
void ShowSld(const SLIDE_LIBRARY& lib);
// Opens strDwgFile and makes its slide; neither saves nor closes.
void OpenDwg(CLibState& state);
// Saves the active drawing to strDwgFile and closes it.
void CloseDwg(CLibState& state);
// Shows the slide of strDwgFile if it exists.
void ShowSldDlg(CLibState& state);

// Helpers the browser's enlarge and batch run share with the commands.

// The local working path of a library file in the shared mode:
// the local install root, the relative directory, the name.
std::wstring LocalLibraryPath(const CLibState& state, const std::wstring& strName);
// The open drawing of this path, made current and active, or the drawing
// opened now (bOpened set); null when it cannot be opened.
IAcadDocument* OpenDocumentForScript(const std::wstring& strPath, bool& bOpened);
// Activate, update, maximise, then the slide script.
bool SendSlideScriptTo(IAcadDocument* pDoc, const std::wstring& strSlide);
// The file's size and time, to tell afterwards whether a command replaced it.
struct FILE_STAMP {
    bool bExists = false;
    long long nSize = 0, nSec = 0, nNsec = 0;
    bool operator==(const FILE_STAMP&) const = default;
};
FILE_STAMP StampOf(const std::wstring& strPath);
// A new document when none remains, so that the editor is never left empty.
void NewDocumentWhenNone();
