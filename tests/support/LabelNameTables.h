// Name tables of the kind panel designers use, for the label tests and benchmarks.
#pragma once

#include "host/SuiteLabelNames.h"

// Devices and units: "n" is the unit of "1n", so it needs a character before it.
inline CZhuangZhiDzNameArray MakeDeviceTable() {
    return {{L"KM", 1}, {L"KA", 1}, {L"QF", 1}, {L"FU", 1}, {L"SB", 1}, {L"HL", 1}, {L"n", 0}};
}

// Terminal strips: "1D", "XT3"; "D" alone only after a number.
inline CZhuangZhiDzNameArray MakeTerminalTable() {
    return {{L"XT", 1}, {L"D", 0}, {L"X", 1}};
}
