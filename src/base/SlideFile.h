// The CAD editor's vector slide file (.sld): reading both byte orders and the old header, writing
// the new one.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// One vector in slide pixels, (0, 0) at the lower left of the screen.
struct STRUCT_SLIDE_VECTOR {
    int nFromX = 0;
    int nFromY = 0;
    int nToX = 0;
    int nToY = 0;
    int nColour = 7; // the editor's colour index
    bool operator==(const STRUCT_SLIDE_VECTOR&) const = default;
};

struct STRUCT_SLIDE_POINT {
    int x = 0;
    int y = 0;
    bool operator==(const STRUCT_SLIDE_POINT&) const = default;
};

// A filled polygon, drawn before the vector at index nBefore.
struct STRUCT_SLIDE_FILL {
    int nColour = 7;
    size_t nBefore = 0;
    std::vector<STRUCT_SLIDE_POINT> points;
    bool operator==(const STRUCT_SLIDE_FILL&) const = default;
};

class CSlide {
public:
    int m_nHighX = 0;        // screen width - 1, in pixels
    int m_nHighY = 0;        // screen height - 1
    double m_dAspect = 1.0;  // physical width / height of the screen
    int m_nHardwareFill = 0; // 0 or 2, of no meaning
    int m_nLevel = 2;        // 2 the portable format, 1 the old one
    std::vector<STRUCT_SLIDE_VECTOR> m_vectors;
    std::vector<STRUCT_SLIDE_FILL> m_fills;
};

// Parses a whole slide. False for anything but a complete slide ending in
// its end-of-file record: wrong identification, unknown byte order, an
// undefined record, or data that stops short.
bool ReadSlide(const std::string& bytes, CSlide& slide);
bool ReadSlideFile(const std::wstring& strPath, CSlide& slide);

// The slide in the portable format (level 2), with the 2-byte values in the
// chosen order. Coordinates are clamped to 0..32767; vectors are packed as
// offset and common-endpoint records where they fit.
std::string WriteSlide(const CSlide& slide, bool bHighByteFirst = false);
bool WriteSlideFile(const std::wstring& strPath, const CSlide& slide);

// A 2D vector of the drawing, in drawing units, with its colour index.
struct STRUCT_VIEW_VECTOR {
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
    int nColour = 7;
};

// Makes the slide of what a view shows: the view's window (minX..maxX,
// minY..maxY in drawing units) fitted into a screen of nWidth x nHeight
// pixels with the scale the same on both axes; the parts of vectors outside
// the screen are cut off. False for an empty window or screen.
bool MakeViewSlide(const std::vector<STRUCT_VIEW_VECTOR>& vectors, double minX, double minY,
                   double maxX, double maxY, int nWidth, int nHeight, CSlide& slide);
