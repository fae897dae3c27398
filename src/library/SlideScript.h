// The few lines that make an item's slide in an open drawing, sent through the editor's automation.
#pragma once

#include <string>
#include <vector>

class IAcadDocument;

// The slide beside a drawing: the drawing's stem with ".sld".
std::wstring SlidePathOf(const std::wstring& strDwgPath);
// Grid off, MSLIDE to the path, grid on; each line's backslashes doubled,
// since the text passes through the LISP reader.
std::vector<std::wstring> SlideScriptLines(const std::wstring& strSlidePath);
// Sends those lines to the document; false when the document refused one.
bool SendSlideScript(IAcadDocument* pDoc, const std::wstring& strSlidePath);
