// Projection of the display list onto pixels, depth order of facets, and the two zooms.
#include "view/ViewProjection.h"

#include "base/AciPalette.h"

#include <algorithm>
#include <cmath>

namespace {

struct SCREEN {
    VIEW_AXES axes;
    AcGePoint3d target;
    double dScale = 1.0;
    double cx = 0, cy = 0;

    PX_POINT Map(const AcGePoint3d& p, double* pDepth = nullptr) const {
        VIEW_COORD v = ToView(axes, target, p);
        if (pDepth)
            *pDepth = v.depth;
        return {cx + v.u * dScale, cy - v.v * dScale};
    }
};

double Dot(const AcGeVector3d& a, const AcGeVector3d& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

// The box of the list in view coordinates (u, v).
bool ViewBox(const CDisplayList& list, const VIEW_AXES& axes, double box[4]) {
    AcDbExtents ext = list.Extents();
    if (!ext.isValid())
        return false;
    box[0] = box[1] = 1e300;
    box[2] = box[3] = -1e300;
    auto add = [&](const AcGePoint3d& p) {
        VIEW_COORD v = ToView(axes, AcGePoint3d(), p);
        box[0] = std::min(box[0], v.u);
        box[1] = std::min(box[1], v.v);
        box[2] = std::max(box[2], v.u);
        box[3] = std::max(box[3], v.v);
    };
    // The corners of the world box are enough in a plan view; other views
    // take every point so that the fit is tight.
    for (const DL_LINE& l : list.m_lines) {
        add(l.a);
        add(l.b);
    }
    for (const DL_TEXT& t : list.m_texts) {
        add(t.origin);
        add(t.origin + t.xDir * t.dAdvance + t.yDir * t.dHeight);
    }
    for (const DL_TRIANGLE& t : list.m_triangles)
        for (const AcGePoint3d& p : t.p)
            add(p);
    return true;
}

} // namespace

CProjectedView ProjectDisplayList(const CDisplayList& list, const VIEW_STATE& viewIn, int nWidth,
                                  int nHeight) {
    CProjectedView out;
    out.m_nWidth = nWidth;
    out.m_nHeight = nHeight;
    if (nWidth <= 0 || nHeight <= 0)
        return out;
    VIEW_STATE view = viewIn;
    if (view.dHeight <= 0 && !ZoomViewToExtents(list, nWidth, nHeight, view))
        view.dHeight = 1.0;
    SCREEN s{ViewAxes(view.direction), view.target, nHeight / view.dHeight, nWidth / 2.0,
             nHeight / 2.0};
    out.m_dScale = s.dScale;

    out.m_lines.reserve(list.m_lines.size());
    for (const DL_LINE& l : list.m_lines)
        out.m_lines.push_back({s.Map(l.a), s.Map(l.b), l.nColour, l.dWidth * s.dScale});

    for (const DL_TEXT& t : list.m_texts) {
        PX_TEXT px;
        px.origin = s.Map(t.origin);
        PX_POINT end = s.Map(t.origin + t.xDir * t.dAdvance);
        PX_POINT up = s.Map(t.origin + t.yDir * t.dHeight);
        px.dAngle = std::atan2(-(end.y - px.origin.y), end.x - px.origin.x);
        px.dAdvance = std::hypot(end.x - px.origin.x, end.y - px.origin.y);
        px.dHeight = std::hypot(up.x - px.origin.x, up.y - px.origin.y);
        px.dWidthFactor = t.dWidthFactor;
        px.strText = t.strText;
        px.strStyle = t.strStyle;
        px.strFont = t.strFont;
        px.nColour = t.nColour;
        out.m_texts.push_back(std::move(px));
    }

    // One light over the viewer's shoulder; facets turned away are culled.
    AcGeVector3d light = s.axes.z * 0.8 + s.axes.y * 0.45 + s.axes.x * (-0.4);
    light = light * (1.0 / light.length());
    for (const DL_TRIANGLE& t : list.m_triangles) {
        double facing = Dot(t.normal, s.axes.z);
        if (facing < -1e-9)
            continue;
        PX_POLYGON poly;
        double depth = 0;
        for (int i = 0; i < 3; ++i) {
            double d = 0;
            poly.p[i] = s.Map(t.p[i], &d);
            depth += d / 3;
        }
        poly.dDepth = depth;
        poly.dLight = 0.3 + 0.7 * std::max(0.0, Dot(t.normal, light));
        poly.nColour = t.nColour;
        out.m_polygons.push_back(poly);
    }
    std::stable_sort(out.m_polygons.begin(), out.m_polygons.end(),
                     [](const PX_POLYGON& a, const PX_POLYGON& b) { return a.dDepth < b.dDepth; });
    return out;
}

bool ZoomViewToExtents(const CDisplayList& list, int nWidth, int nHeight, VIEW_STATE& view) {
    VIEW_AXES axes = ViewAxes(view.direction);
    double box[4];
    if (nWidth <= 0 || nHeight <= 0 || !ViewBox(list, axes, box))
        return false;
    double w = std::max(box[2] - box[0], 1e-9), h = std::max(box[3] - box[1], 1e-9);
    double aspect = static_cast<double>(nWidth) / nHeight;
    view.dHeight = std::max(h, w / aspect) * 1.02; // the editor's small margin
    double cu = (box[0] + box[2]) / 2, cv = (box[1] + box[3]) / 2;
    // The target keeps its depth so that the eye's distance stays; only u, v move.
    VIEW_COORD old = ToView(axes, AcGePoint3d(), view.target);
    view.target = AcGePoint3d() + axes.x * cu + axes.y * cv + axes.z * old.depth;
    return true;
}

bool ZoomViewToWindow(const AcGePoint3d& a, const AcGePoint3d& b, int nWidth, int nHeight,
                      VIEW_STATE& view) {
    VIEW_AXES axes = ViewAxes(view.direction);
    VIEW_COORD va = ToView(axes, AcGePoint3d(), a), vb = ToView(axes, AcGePoint3d(), b);
    double w = std::fabs(va.u - vb.u), h = std::fabs(va.v - vb.v);
    if (nWidth <= 0 || nHeight <= 0 || w < 1e-12 || h < 1e-12)
        return false;
    double aspect = static_cast<double>(nWidth) / nHeight;
    view.dHeight = std::max(h, w / aspect);
    VIEW_COORD old = ToView(axes, AcGePoint3d(), view.target);
    view.target = AcGePoint3d() + axes.x * ((va.u + vb.u) / 2) + axes.y * ((va.v + vb.v) / 2) +
                  axes.z * old.depth;
    return true;
}

unsigned AciToRgb(short nColour, bool bLightBackground) {
    if (nColour == 7 && bLightBackground)
        return 0x000000;
    COLORREF c = AciColour(nColour);
    return (GetRValue(c) << 16) | (GetGValue(c) << 8) | GetBValue(c);
}
