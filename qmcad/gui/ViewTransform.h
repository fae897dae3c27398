// The drawing view's pixels and a view state: mapping both ways, and the gestures that move a view.
#pragma once

#include "view/ViewState.h"

// A view state seen on a viewport of width x height pixels; screen y grows
// downwards, the target sits in the middle, the view's height fills the
// viewport's height (as the display list's projection has it).
class CViewTransform {
public:
    struct SCREEN_POINT {
        double x = 0, y = 0;
        double depth = 0; // larger is nearer the eye
    };

    CViewTransform(const VIEW_STATE& view, int nWidth, int nHeight);
    double Scale() const { return m_dScale; } // pixels per drawing unit
    SCREEN_POINT ToScreen(const AcGePoint3d& pt) const;
    // The model point under a pixel: on the XY plane when the view sees that
    // plane, else on the plane through the target facing the eye.
    AcGePoint3d ToWorld(double sx, double sy) const;

private:
    VIEW_AXES m_axes;
    AcGePoint3d m_target;
    double m_dScale;
    double m_cx, m_cy;
};

// The gestures, on a view state with a height (zoomed to something).
void PanView(VIEW_STATE& view, int nHeightPx, double dxPixels, double dyPixels);
// The model point under (sx, sy) stays under it; a factor above 1 zooms in.
void ZoomViewAbout(VIEW_STATE& view, int nWidthPx, int nHeightPx, double sx, double sy,
                   double dFactor);
// Turns the eye about the world Z axis and tilts it towards or away from it.
void OrbitView(VIEW_STATE& view, double dYaw, double dPitch);
