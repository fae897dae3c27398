// Catalogue, scales and history of the demo, in the workstation's code page.
#include "demo/DemoSettings.h"

#include "demo/DemoCatalogue.h"

#include "base/FileSystem.h"
#include "base/TextFile.h"

namespace {

bool WriteLines(const std::wstring& strPath, const wchar_t* const* lines, size_t nCount,
                bool bLastLineEnd) {
    if (FsExists(strPath))
        return true;
    CTextFile file;
    if (!file.Open(strPath, CTextFile::modeCreateWrite))
        return false;
    for (size_t i = 0; i < nCount; ++i)
        file.WriteString(std::wstring(lines[i]) + (bLastLineEnd || i + 1 < nCount ? L"\n" : L""));
    return file.Close();
}

// Positions 0 to 10 of the history; a short file keeps the defaults of every later position.
constexpr const wchar_t* kHistory[] = {
    L"1",   // 0: belongs to the suite
    L"600", // 1-3: the panel dialog's width, height and thickness
    L"800",        L"2",
    L"1", // 4-6: its three axis boxes
    L"1",          L"1",
    L"",    // 7: no last directory: the hole and the layout browser share it, and each
            //    opens on its own first directory
    L"0",          // 8: its selected row
    L"1",          // 9: search in subdirectories
    L"1",          // 10: explode on insert
};

} // namespace

bool WriteDemoSettings(const std::wstring& strLocal, const std::wstring& strInstall) {
    size_t nPanels = 0, nScales = 0;
    const wchar_t* const* panels = DemoPanelCatalogue(nPanels);
    const wchar_t* const* scales = DemoScales(nScales);
    return WriteLines(strLocal + L"LocalData\\PanelLib.txt", panels, nPanels, true) &&
           WriteLines(strLocal + L"LocalData\\DwgScale.txt", scales, nScales, true) &&
           WriteLines(strInstall + L"LocalData\\HistoryData.txt", kHistory, std::size(kHistory),
                      false);
}
