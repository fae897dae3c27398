// Painters of a projected view that need no toolkit: the editor's slide and an RGBA picture.
#pragma once

#include "base/ImageSurface.h"
#include "base/SlideFile.h"
#include "view/ViewProjection.h"

// The slide of the view: lines as vectors, facets and wide lines as filled
// polygons, texts in a small stroke font (Chinese characters as
// their cells' outlines), the screen's size as the slide's. Parts off the screen are cut.
void MakeSlideOfView(const CProjectedView& view, CSlide& slide);

// Paints the view on the surface (sized to the view): facets lit in their
// colour, lines with their widths, texts in the stroke font. Index 7 paints black
// on a light background.
void PaintProjectedView(CImageSurface& surface, const CProjectedView& view, COLORREF background);

// Writes the surface as an 8-bit RGB PNG file, atomically; false on any failure.
bool WritePngFile(const std::wstring& strPath, const CImageSurface& surface);
