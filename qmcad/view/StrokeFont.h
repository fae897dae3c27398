// A small stroke font for slides and pictures: digits, Latin letters and the signs drawings use;
// other characters (Chinese) show as the outline of their cell.
#pragma once

#include "view/ViewProjection.h"

#include <utility>
#include <vector>

// The strokes of a projected text line on the screen, in pixels.
void TextStrokes(const PX_TEXT& text, std::vector<std::pair<PX_POINT, PX_POINT>>& strokes);
