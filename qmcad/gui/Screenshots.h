// Screenshots of the main window on a demo panel, for the README.
#pragma once

#include <string>

class CEditorHost;
class CMainWindow;

// Draws the demo panel in the current document and writes "qmcad-plan.png"
// (plan view) and "qmcad-shaded.png" (isometric, shaded) into the directory.
bool WriteScreenshots(CMainWindow& window, CEditorHost& editor, const std::string& strDir);
