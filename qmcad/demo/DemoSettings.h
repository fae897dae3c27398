// The demo's small text files: panel catalogue, drawing scales, remembered dialog values and
// drawing settings.
#pragma once

#include <string>

// "LocalData\PanelLib.txt" and "LocalData\DwgScale.txt" under the local root, the first dialog
// values of "LocalData\HistoryData.txt" (the panel dialog opens on the first catalogue panel) and
// the drawing settings "LocalData\awork.sys" under the install root. Existing files stay.
bool WriteDemoSettings(const std::wstring& strLocal, const std::wstring& strInstall);
