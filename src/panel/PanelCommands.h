// The panel commands: DrawPanel, EditPanel, DimHole, Tz3dView and Tz2dView.
#pragma once

#include <functional>

class CDlgDrawPanel;

// Shows the panel dialog modally and returns IDOK or IDCANCEL. The window library
// installs the runner; without one the dialog counts as cancelled.
using DRAW_PANEL_DIALOG = std::function<int(CDlgDrawPanel&)>;
void SetDrawPanelDialogRunner(DRAW_PANEL_DIALOG runner);
int RunDrawPanelDialog(CDlgDrawPanel& dlg);

void DrawPanel();
void EditPanel();
void DimHole();
void Tz2dView();
void Tz3dView();
