// The demo's drawings and their slides, written through the host's own codec and display list.
#pragma once

#include "demo/DemoCatalogue.h"

#include <string>

// One library item: the cutout centred on the origin with its centre lines and, when it has
// one, the device label beneath. The file codec and the solid modeler must be registered.
bool WriteCutoutDrawing(const std::wstring& strPath, const DEMO_CUTOUT& item);

// A panel face at 1:1: the plate's outline from the origin, its caption, and each placed
// cutout as the hole library draws it.
bool WriteLayoutDrawing(const std::wstring& strPath, const DEMO_LAYOUT& layout);

// The slide of a drawing file, zoomed to its extents on the editor's default screen, as
// MSLIDE writes it; false when the drawing can't be read or the slide written.
bool WriteDrawingSlide(const std::wstring& strDrawing, const std::wstring& strSlide);
