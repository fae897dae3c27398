// Paints a DIB into a preview surface in one of the four ways the previews use.
#pragma once

#include "ui/DibFormat.h"
#include "base/ImageSurface.h"

// How the thumbnail meets its cell.
enum : int {
    DIB_MODE_STRETCH = 0, // one to one when the sizes match, else stretched into an inset
    DIB_MODE_CENTRE = 1,  // no scaling: centred, or cut from the source's centre
    DIB_MODE_REDUCE = 2,  // scaled to 0.7
    DIB_MODE_FIT = 3,     // stretched over the whole destination
};

// Paints hDib (the source rectangle of it) into destRect of the surface and
// frees hDib. A non-zero angle paints a turned copy instead (8-bit DIBs
// only; any other DIB is painted unturned). The palette, when given, is the
// one made from the DIB's table. False when nothing could be painted.
bool DrawDibToWindow(CImageSurface& surface, const RECT& destRect, HDIB hDib,
                     const RECT& sourceRect, const CPalette* pPalette, int nMode, double dAngle);

// Copies the source rectangle of a checked DIB into the destination
// rectangle with nearest-pixel scaling (the platform's colour-on-colour
// stretch). Source pixels outside the image leave the surface as it was.
void StretchDib(CImageSurface& surface, const RECT& dest, const DIB_MEMORY& dib,
                const STRUCT_DIB_INFO& info, const RECT& source);

// The whole paint of a preview: checks the header (a bad one frees the DIB
// and ends the paint), makes the palette into pPalette (none for DIBs
// without a colour table), and paints over the surface's client rectangle.
bool PaintDibPreview(CImageSurface& surface, HDIB hDib, int keepColours, double dAngle, int nMode,
                     std::unique_ptr<CPalette>& pPalette);
