// The small table files of the Data directory: distance limit, ERP mode, terminal, wire and circuit
// types.
#pragma once

#include <string>
#include <vector>

using CStringArray = std::vector<std::wstring>;

// "Data\DistLimit.txt": read once per process; 0.5 unless the file holds a
// value above zero.
double GetDistLimit();

// "Data\ErpOrCad.txt": 1 for "Erp...", 2 for "BSF..." (no case), else 0.
// Cached once the file was opened; a file that can't be opened is asked
// again next time.
int GetErpMode();

// Forgets the cached values, as a fresh process would.
void ResetDataTableCaches();

// Terminal types: name, symbol, width as "%.2f", extra text.
void ReadTerminalTypes(CStringArray& arrName, CStringArray& arrSymbol, CStringArray& arrWidth,
                       CStringArray& arrExtra);
// Wire types: name and symbol.
void ReadWireTypes(CStringArray& arrName, CStringArray& arrSymbol);
// Circuit types: name and the value after the first ":".
void ReadCircuitTypes(CStringArray& arrName, CStringArray& arrValue);

// Full-width "：" and "，" become their ASCII forms before a line is split.
std::wstring NormaliseTableLine(std::wstring strLine);
