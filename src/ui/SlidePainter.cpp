// Slide painting: fit to the cell, clip, draw vectors and filled polygons in index colours.
#include "ui/SlidePainter.h"

#include "base/ClipSegment.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

bool IsLight(COLORREF c) {
    return GetRValue(c) * 299 + GetGValue(c) * 587 + GetBValue(c) * 114 > 128 * 1000;
}

// Slide coordinates to surface pixels.
struct SLIDE_MAPPING {
    double dScale = 1, dYFactor = 1, dOffX = 0, dOffY = 0, dBottom = 0;
    double X(double x) const { return dOffX + x * dScale; }
    double Y(double y) const { return dBottom - (dOffY + y * dYFactor * dScale); }
};

SLIDE_MAPPING FitSlide(const CSlide& slide, int nWidth, int nHeight) {
    SLIDE_MAPPING m;
    double sw = std::max(slide.m_nHighX, 1), sh = std::max(slide.m_nHighY, 1);
    // Non-square screen pixels: a y unit is this many x units long.
    double f = sh > 0 && slide.m_dAspect > 0 ? sw / (slide.m_dAspect * sh) : 1.0;
    m.dYFactor = std::isfinite(f) ? std::clamp(f, 0.1, 10.0) : 1.0;
    double ext = sh * m.dYFactor;
    m.dScale = std::min((nWidth - 1) / sw, (nHeight - 1) / ext);
    m.dOffX = ((nWidth - 1) - sw * m.dScale) / 2;
    m.dOffY = ((nHeight - 1) - ext * m.dScale) / 2;
    m.dBottom = nHeight - 1;
    return m;
}

void DrawLine(CImageSurface& s, double x1, double y1, double x2, double y2, uint32_t pixel) {
    if (!ClipSegmentToBox(x1, y1, x2, y2, s.Width() - 1, s.Height() - 1))
        return;
    int ax = static_cast<int>(std::lround(x1)), ay = static_cast<int>(std::lround(y1));
    int bx = static_cast<int>(std::lround(x2)), by = static_cast<int>(std::lround(y2));
    int dx = std::abs(bx - ax), dy = -std::abs(by - ay);
    int sx = ax < bx ? 1 : -1, sy = ay < by ? 1 : -1, err = dx + dy;
    for (;;) {
        s.Row(ay)[ax] = pixel;
        if (ax == bx && ay == by)
            return;
        int e2 = 2 * err;
        if (e2 >= dy)
            err += dy, ax += sx;
        if (e2 <= dx)
            err += dx, ay += sy;
    }
}

// Even-odd scanline fill through pixel centres.
void FillPolygon(CImageSurface& s, const std::vector<std::pair<double, double>>& pts,
                 uint32_t pixel) {
    if (pts.size() < 3)
        return;
    double minY = pts[0].second, maxY = minY;
    for (const auto& p : pts)
        minY = std::min(minY, p.second), maxY = std::max(maxY, p.second);
    int y0 = std::max(0, static_cast<int>(std::ceil(minY - 0.5)));
    int y1 = std::min(s.Height() - 1, static_cast<int>(std::floor(maxY - 0.5)));
    std::vector<double> xs;
    for (int y = y0; y <= y1; ++y) {
        double cy = y + 0.5;
        xs.clear();
        for (size_t i = 0; i < pts.size(); ++i) {
            const auto& a = pts[i];
            const auto& b = pts[(i + 1) % pts.size()];
            if ((a.second <= cy) != (b.second <= cy))
                xs.push_back(a.first +
                             (cy - a.second) * (b.first - a.first) / (b.second - a.second));
        }
        std::sort(xs.begin(), xs.end());
        for (size_t i = 0; i + 1 < xs.size(); i += 2) {
            int xa = std::max(0, static_cast<int>(std::ceil(xs[i] - 0.5)));
            int xb = std::min(s.Width() - 1, static_cast<int>(std::floor(xs[i + 1] - 0.5)));
            for (int x = xa; x <= xb; ++x)
                s.Row(y)[x] = pixel;
        }
    }
}

} // namespace

void PaintSlide(CImageSurface& surface, const CSlide& slide, COLORREF background) {
    surface.Fill(background);
    if (surface.Width() < 2 || surface.Height() < 2)
        return;
    SLIDE_MAPPING m = FitSlide(slide, surface.Width(), surface.Height());
    uint32_t pixels[256];
    for (int i = 0; i < 256; ++i)
        pixels[i] = CImageSurface::ToPixel(AciColour(i));
    uint32_t foreground = CImageSurface::ToPixel(IsLight(background) ? RGB(0, 0, 0) : AciColour(7));
    pixels[0] = pixels[7] = foreground;
    size_t nFill = 0;
    std::vector<std::pair<double, double>> pts;
    auto paintFill = [&](const STRUCT_SLIDE_FILL& f) {
        pts.clear();
        for (const STRUCT_SLIDE_POINT& p : f.points)
            pts.emplace_back(m.X(p.x), m.Y(p.y));
        FillPolygon(surface, pts, pixels[f.nColour & 0xFF]);
    };
    for (size_t i = 0; i < slide.m_vectors.size(); ++i) {
        while (nFill < slide.m_fills.size() && slide.m_fills[nFill].nBefore <= i)
            paintFill(slide.m_fills[nFill++]);
        const STRUCT_SLIDE_VECTOR& v = slide.m_vectors[i];
        DrawLine(surface, m.X(v.nFromX), m.Y(v.nFromY), m.X(v.nToX), m.Y(v.nToY),
                 pixels[v.nColour & 0xFF]);
    }
    while (nFill < slide.m_fills.size())
        paintFill(slide.m_fills[nFill++]);
}

bool PaintSlideFile(CImageSurface& surface, const std::wstring& strSlideFile, COLORREF background) {
    surface.Fill(background);
    if (strSlideFile.empty())
        return true;
    CSlide slide;
    if (!ReadSlideFile(strSlideFile, slide))
        return false;
    PaintSlide(surface, slide, background);
    return true;
}
