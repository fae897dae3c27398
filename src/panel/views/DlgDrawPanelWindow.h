// The panel dialog's window: sizes, axes, scale box, catalogue list, and the record editor.
#pragma once

class CDlgDrawPanel;
class CDlnDictionaryAdd;
class QWidget;

// Shows the dialog modally over the host's frame and returns IDOK or IDCANCEL.
int RunDlgDrawPanelWindow(CDlgDrawPanel& dlg);
// The catalogue record editor, modal over its parent; true when it ended with OK.
bool RunDlnDictionaryAddWindow(CDlnDictionaryAdd& dlg, QWidget* pParent);
// Makes the panel commands show their dialog in these windows, unless a runner is installed.
void InstallPanelViews();
