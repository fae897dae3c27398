// The module's eighteen commands and the browser factories they start windows with.
#pragma once

#include "app/ModelessWindow.h"

struct CLibState;

void CmdDrawingManage();
void CmdDrawingInsert();
void CmdDrawingOpen();
void CmdDrawPanel();
void CmdMoveHole();
void CmdDimHole();
void CmdEditPanel();
void CmdMakeSld();
void CmdShowSld();
void CmdOpenDwg();
void CmdCloseDwg();
void CmdShowSldDlg();
void CmdTz3dView();
void CmdTz2dView();
void CmdLaySketchManage();
void CmdLaySketchInsert();
void CmdLaySketchOpen();
void CmdLaySketchMakeSld();

// Where the browser classes come in: each library's window is made by its
// factory. Without one, allocation fails and the frame says so.
void SetBrowserFactory(CLibState& state, const ModelessFactory& factory);
// Raises the library's browser, or creates it with its factory.
void RaiseLibraryBrowser(CLibState& state);
