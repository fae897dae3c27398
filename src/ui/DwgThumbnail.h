// Reads the thumbnail that a DWG file carries in its preview section, without opening the drawing.
#pragma once

#include "ui/DibFormat.h"

#include <string>

// The thumbnail's DIB (header, colours, bits) as stored in the file, or
// null: no preview section, a wrong sentinel, no image entry among the
// first three, or any read that falls short.
HDIB ReadDwgThumbnail(const std::wstring& strFile);
