// Cutting one label into device, separator and terminal, by the suite's name tables.
#pragma once

#include "host/SuiteLabelNames.h"

#include <string>

// The symbol's special text that selects how a label is cut; any other text is generic.
inline constexpr const wchar_t* kLabelKindTerminal = L"端子";
inline constexpr const wchar_t* kLabelKindDeviceTerminal = L"装置端子";

// What the device part of a split label is.
enum : int { LABEL_IS_DEVICE = 0, LABEL_IS_TERMINAL_STRIP = 1, LABEL_IS_OTHER = 2 };

// Cuts a label such as "1-KM1:13", "XT1-5" or "KM1--" with the given tables.
// A label that fits no rule stays whole as its own device with an empty
// separator and terminal. Returns LABEL_IS_*.
int SplitLabelWithTables(const std::wstring& label, const CZhuangZhiDzNameArray& deviceTable,
                         const CZhuangZhiDzNameArray& terminalTable, std::wstring& outDevice,
                         std::wstring& outTerminal, std::wstring& outSeparator,
                         const std::wstring& kind);

// The same with the suite's tables. They are kept between calls and taken
// anew as soon as the host's stamp or the extra settings file changes.
void SplitDeviceLabel(const std::wstring& label, std::wstring& outDevice, std::wstring& outTerminal,
                      const std::wstring& special);
