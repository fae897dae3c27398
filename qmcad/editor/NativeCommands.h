// The editor's own commands beyond the command loop's basics, registered by subsystem.
#pragma once

class CEditorHost;

// _extrude, BOX, _subtract on the solid modeler.
void AddSolidCommands(CEditorHost& editor);
// UNDO, dimlinear, explode, purge.
void AddDrawingCommands(CEditorHost& editor);
// shademode, -view, 3dorbit, ZOOM, RTPAN, RTZOOM, GRID, MSLIDE, PNGOUT.
void AddViewCommands(CEditorHost& editor);
// NEW, OPEN, QSAVE, SAVE, SAVEAS, CLOSE.
void AddFileCommands(CEditorHost& editor);

#include <string>
// A dimension's value as the editor shows it: two decimals without trailing zeros.
std::wstring FormatMeasurement(double d);
