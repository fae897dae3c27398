// The demo's small text files: panel catalogue, drawing scales and remembered dialog values.
#pragma once

#include <string>

// "LocalData\PanelLib.txt" and "LocalData\DwgScale.txt" under the local root, and the first
// dialog values of "LocalData\HistoryData.txt" under the install root (the panel dialog opens
// on the first catalogue panel, the hole browser on the push buttons). Existing files stay.
bool WriteDemoSettings(const std::wstring& strLocal, const std::wstring& strInstall);
