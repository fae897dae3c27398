// Builders of DIBs and DWG-shaped files for the preview tests.
#pragma once

#include "ui/DibFormat.h"
#include "base/ImageSurface.h"

#include <functional>
#include <string>
#include <vector>

// An 8-bit DIB with a 40-byte header (or the 12-byte core header) and the
// given colour table; pixel(x, y) gives the index, y counted from the top.
std::string MakeDib8(int nWidth, int nHeight, const std::vector<COLORREF>& table,
                     const std::function<int(int, int)>& pixel, bool bCoreHeader = false);
// A 24-bit DIB without colour table.
std::string MakeDib24(int nWidth, int nHeight, const std::function<COLORREF(int, int)>& pixel);
HDIB ToDib(const std::string& bytes);

// A file shaped like a DWG file as far as its thumbnail goes: the section
// offset at byte 13, the sentinel, and one entry per code. Code 1 entries
// hold 80 bytes of header data, the others the image.
std::string MakeDwgBytes(const std::string& image, const std::vector<int>& codes = {1, 2});
