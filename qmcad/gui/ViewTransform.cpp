// Pixels to model and back for a view state, and pan, zoom about a point, orbit.
#include "gui/ViewTransform.h"

#include <algorithm>
#include <cmath>

CViewTransform::CViewTransform(const VIEW_STATE& view, int nWidth, int nHeight)
    : m_axes(ViewAxes(view.direction)), m_target(view.target),
      m_dScale(std::max(nHeight, 1) / (view.dHeight > 0 ? view.dHeight : 1.0)), m_cx(nWidth / 2.0),
      m_cy(nHeight / 2.0) {}

CViewTransform::SCREEN_POINT CViewTransform::ToScreen(const AcGePoint3d& pt) const {
    VIEW_COORD v = ToView(m_axes, m_target, pt);
    return {m_cx + v.u * m_dScale, m_cy - v.v * m_dScale, v.depth};
}

AcGePoint3d CViewTransform::ToWorld(double sx, double sy) const {
    AcGePoint3d onView =
        m_target + m_axes.x * ((sx - m_cx) / m_dScale) + m_axes.y * ((m_cy - sy) / m_dScale);
    const AcGeVector3d& dir = m_axes.z;
    if (std::fabs(dir.z) < 1e-6)
        return onView; // edge-on to the XY plane
    AcGePoint3d pt = onView - dir * (onView.z / dir.z);
    pt.z = 0; // exactly on the plane, whatever the rounding
    return pt;
}

void PanView(VIEW_STATE& view, int nHeightPx, double dxPixels, double dyPixels) {
    if (view.dHeight <= 0 || nHeightPx <= 0)
        return;
    double unitsPerPixel = view.dHeight / nHeightPx;
    VIEW_AXES axes = ViewAxes(view.direction);
    view.target =
        view.target - axes.x * (dxPixels * unitsPerPixel) + axes.y * (dyPixels * unitsPerPixel);
}

void ZoomViewAbout(VIEW_STATE& view, int nWidthPx, int nHeightPx, double sx, double sy,
                   double dFactor) {
    if (!(dFactor > 0) || view.dHeight <= 0)
        return;
    double dHeight = view.dHeight / dFactor;
    if (!std::isfinite(dHeight) || dHeight < 1e-9 || dHeight > 1e12)
        return;
    double cx = sx - nWidthPx / 2.0, cy = sy - nHeightPx / 2.0;
    PanView(view, nHeightPx, -cx, -cy); // the point under the cursor to the middle
    view.dHeight = dHeight;
    PanView(view, nHeightPx, cx, cy);
}

void OrbitView(VIEW_STATE& view, double dYaw, double dPitch) {
    const AcGeVector3d& d = view.direction;
    double len = d.length();
    if (len <= 0)
        return;
    // Straight from above, the screen's right is X: the eye stands to the south.
    bool bPole = std::hypot(d.x, d.y) < 1e-9 * len;
    double azimuth = (bPole ? -M_PI / 2 : std::atan2(d.y, d.x)) + dYaw;
    double elevation = std::asin(std::clamp(d.z / len, -1.0, 1.0)) + dPitch;
    // Straight down stays a hair off the pole, so that the turn keeps its sense.
    elevation = std::clamp(elevation, -M_PI / 2 + 1e-6, M_PI / 2 - 1e-6);
    if (dYaw == 0 && dPitch == 0)
        return;
    double c = std::cos(elevation);
    view.direction = {c * std::cos(azimuth), c * std::sin(azimuth), std::sin(elevation)};
}
