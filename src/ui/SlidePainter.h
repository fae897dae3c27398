// Paints slide files into preview cells in the editor's colours, and the slide view the cells use.
#pragma once

#include "base/AciPalette.h"
#include "base/ImageSurface.h"
#include "base/SlideFile.h"

#include <string>

// Fills the surface with the background and draws the slide over it,
// scaled to fit with its aspect ratio kept and centred. Index 7 is drawn
// black on a light background, as the editor does.
void PaintSlide(CImageSurface& surface, const CSlide& slide, COLORREF background);

// The same from a file. An empty name, or a file that is no complete slide,
// paints the background only; false then, except for the empty name.
bool PaintSlideFile(CImageSurface& surface, const std::wstring& strSlideFile, COLORREF background);

// What a cell's slide control holds: property 1 the slide file, property 2
// the background colour. Each paint reads the file anew.
class CSlideView {
public:
    enum : int { DISPID_SLIDE_FILE = 1, DISPID_BACKGROUND = 2 };

    void SetSlideFile(const std::wstring& strFile) { m_strSlideFile = strFile; }
    const std::wstring& GetSlideFile() const { return m_strSlideFile; }
    void SetBackground(COLORREF colour) { m_background = colour; }
    COLORREF GetBackground() const { return m_background; }

    bool Paint(CImageSurface& surface) const {
        return PaintSlideFile(surface, m_strSlideFile, m_background);
    }

private:
    std::wstring m_strSlideFile;
    COLORREF m_background = 0;
};
