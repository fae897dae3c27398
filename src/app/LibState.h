// The state record of a library: how a modeless browser hands work to a posted command.
#pragma once

#include <string>

class ILibraryBrowser;
class IModelessWindow;

struct CLibState {
    std::wstring strRoot;    // library family root, valid while a browser starts
    std::wstring strDwgFile; // the hand-over path; empty means nothing pending
    int nNewState = 0;       // run that makes a new item: 0 none, 1 confirmed, 2 cancelled
    std::wstring strNewName; // file name to select after a new item
    int nCount = 0;          // insertions, 1 to 100
    double dScale = 0.0;     // insertion scale
    double dAngle = 0.0;     // 0, 90, 180 or 270 degrees
    int bExplode = 0;
    ILibraryBrowser* pLibDlg = nullptr;   // the browser
    IModelessWindow* pSaveDlg = nullptr;  // the save dialog of an edited item
    IModelessWindow* pBlockDlg = nullptr; // the entry dialog of a new item
    int g_nFtpMode = 0;                   // 0 local, 1 shared and connected, 2 read-only/offline
    std::wstring strRelDir;               // shared modes: "InstallHole\sub\"
    std::wstring strRelDirTwin;           // the same in the twin library: "LaySketch\sub\"
    std::wstring strWorkingFile;          // local copy being edited
    std::wstring strSelItem;              // list text of the selected item
    std::wstring strPickedName;           // result of a selection run
    std::wstring strNewSource;            // library path of a confirmed new item
    double ptNewBase[2] = {0.0, 0.0};
    int bNewPending = 0; // a new item is written and its slide still to be made
    int bBatchRunning = 0;
    int bBatchAbort = 0;
    double dDrawingScale = 1.0; // divisor of the insertion scale

    // Every failure exit of a library command calls it. The explode flag,
    // the windows, the mode and the relative directories stay.
    void ResetHandOver();
};

// One record per library; nothing crosses from one to the other.
extern CLibState g_HoleLib;
extern CLibState g_LayoutLib;
