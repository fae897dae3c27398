// Catalogue, scales, history and drawing settings of the demo, in the workstation's code page.
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

// The suite's drawing settings as an installation ships them; without the file every command
// that reads one says it could not open it.
constexpr const wchar_t* kAwork[] = {
    L"符号新旧标: 0",
    L"默认文字样式: ",
    L"连线交叉结点大小: 15",
    L"T型连线交叉点: 0",
    L"元件安装位置文字字高: 2.5",
    L"元件标号文字字高: 2.5",
    L"垂直符号标号文字位置: 0",
    L"垂直符号标号文字方向: 0",
    L"单端水平符号标号文字位置0",
    L"单端垂直符号标号文字位置0",
    L"元件管角号文字字高: 2.0",
    L"水平符号管脚号文字位置: 0",
    L"垂直符号管脚号文字位置: 0",
    L"垂直符号管脚号文字方向: 0",
    L"连线线号文字字高: 2.5",
    L"线号文字到线的距离: 1.5",
    L"垂直连线线号文字位置: 0",
    L"垂直连线线号文字方向: 1",
    L"电路图图块允许炸开: 1",
    L"打开DWG默认启动方式: 1",
    L"标题栏图块允许炸开: 1",
    L"接线连线自适应标识: 否",
    L"继保端子及装置标号与端号之间加分隔符: 1",
    L"端子表格式: 0",
    L"软件当前版本: 1",
    L"端子一端是否接两根线: 1",
    L"接线图图块允许炸开: 1",
};

} // namespace

bool WriteDemoSettings(const std::wstring& strLocal, const std::wstring& strInstall) {
    size_t nPanels = 0, nScales = 0;
    const wchar_t* const* panels = DemoPanelCatalogue(nPanels);
    const wchar_t* const* scales = DemoScales(nScales);
    return WriteLines(strLocal + L"LocalData\\PanelLib.txt", panels, nPanels, true) &&
           WriteLines(strLocal + L"LocalData\\DwgScale.txt", scales, nScales, true) &&
           WriteLines(strInstall + L"LocalData\\HistoryData.txt", kHistory, std::size(kHistory),
                      false) &&
           WriteLines(strInstall + L"LocalData\\awork.sys", kAwork, std::size(kAwork), true);
}
