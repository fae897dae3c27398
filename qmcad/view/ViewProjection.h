// A display list projected for a view onto a screen of pixels: what painters draw, toolkit-free.
#pragma once

#include "view/DisplayList.h"

#include <string>
#include <vector>

// Pixel coordinates: (0, 0) the top left corner, y downwards.
struct PX_POINT {
    double x = 0, y = 0;
};

struct PX_LINE {
    PX_POINT a, b;
    short nColour = 7;
    double dWidth = 0.0; // pixels; 0 for a thin line
};

struct PX_TEXT {
    PX_POINT origin;       // left end of the baseline
    double dAngle = 0.0;   // radians, counter-clockwise on the screen
    double dHeight = 0.0;  // pixels
    double dAdvance = 0.0; // pixels along the baseline
    double dWidthFactor = 1.0;
    std::wstring strText, strStyle, strFont;
    short nColour = 7;
};

// A facet on the screen, painted far to near.
struct PX_POLYGON {
    PX_POINT p[3];
    double dDepth = 0.0; // towards the eye: larger is nearer
    double dLight = 1.0; // 0.3 (turned away) to 1.0 (facing the light)
    short nColour = 7;
};

class CProjectedView {
public:
    int m_nWidth = 0, m_nHeight = 0;
    double m_dScale = 1.0;              // pixels per drawing unit
    std::vector<PX_POLYGON> m_polygons; // far to near
    std::vector<PX_LINE> m_lines;
    std::vector<PX_TEXT> m_texts;
};

// Projects for the view onto nWidth x nHeight pixels, the view's height
// filling the screen's height. A view without a height shows the list's
// extents. Nothing is clipped: painters clip to their screen.
CProjectedView ProjectDisplayList(const CDisplayList& list, const VIEW_STATE& view, int nWidth,
                                  int nHeight);

// The view that shows the whole list on a screen of that shape with a small
// margin, keeping the direction and shade mode (ZOOM Extents). An empty list
// leaves the view as it is and gives false.
bool ZoomViewToExtents(const CDisplayList& list, int nWidth, int nHeight, VIEW_STATE& view);

// The view showing the window between two world points seen along the view's
// direction (ZOOM Window). False for a window of no size.
bool ZoomViewToWindow(const AcGePoint3d& a, const AcGePoint3d& b, int nWidth, int nHeight,
                      VIEW_STATE& view);

// The editor's colour of an index as 0xRRGGBB (index 7 white on a dark
// screen; pass bLightBackground to get black for it).
unsigned AciToRgb(short nColour, bool bLightBackground = false);
