// Slides and pictures from a projected view: clipping, polygons of wide lines and text boxes.
#include "view/SlideOut.h"

#include "base/FileSystem.h"
#include "base/ClipSegment.h"
#include "base/AciPalette.h"
#include "view/StrokeFont.h"

#include <png.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

// A wide line as the quadrilateral around it.
std::array<PX_POINT, 4> WideLine(const PX_LINE& l) {
    double dx = l.b.x - l.a.x, dy = l.b.y - l.a.y, len = std::hypot(dx, dy);
    double nx = len > 0 ? -dy / len * l.dWidth / 2 : 0, ny = len > 0 ? dx / len * l.dWidth / 2 : 0;
    return {PX_POINT{l.a.x + nx, l.a.y + ny}, PX_POINT{l.b.x + nx, l.b.y + ny},
            PX_POINT{l.b.x - nx, l.b.y - ny}, PX_POINT{l.a.x - nx, l.a.y - ny}};
}

} // namespace

void MakeSlideOfView(const CProjectedView& view, CSlide& slide) {
    slide = CSlide();
    slide.m_nHighX = std::max(view.m_nWidth - 1, 0);
    slide.m_nHighY = std::max(view.m_nHeight - 1, 0);
    slide.m_dAspect =
        view.m_nHeight > 0 ? static_cast<double>(view.m_nWidth) / view.m_nHeight : 1.0;
    auto toSlide = [&](const PX_POINT& p) {
        return STRUCT_SLIDE_POINT{
            std::clamp(static_cast<int>(std::lround(p.x)), 0, slide.m_nHighX),
            std::clamp(static_cast<int>(std::lround(slide.m_nHighY - p.y)), 0, slide.m_nHighY)};
    };
    auto fill = [&](const PX_POINT* pts, int n, short nColour) {
        STRUCT_SLIDE_FILL f;
        f.nColour = nColour;
        f.nBefore = slide.m_vectors.size();
        for (int i = 0; i < n; ++i)
            f.points.push_back(toSlide(pts[i]));
        slide.m_fills.push_back(std::move(f));
    };
    auto vector = [&](PX_POINT a, PX_POINT b, short nColour) {
        double x1 = a.x, y1 = a.y, x2 = b.x, y2 = b.y;
        if (!ClipSegmentToBox(x1, y1, x2, y2, slide.m_nHighX, slide.m_nHighY))
            return;
        STRUCT_SLIDE_POINT p = toSlide({x1, y1}), q = toSlide({x2, y2});
        slide.m_vectors.push_back({p.x, p.y, q.x, q.y, nColour});
    };
    for (const PX_POLYGON& poly : view.m_polygons)
        fill(poly.p, 3, poly.nColour);
    for (const PX_LINE& l : view.m_lines) {
        if (l.dWidth > 1.5) {
            auto quad = WideLine(l);
            fill(quad.data(), 4, l.nColour);
        }
        vector(l.a, l.b, l.nColour);
    }
    std::vector<std::pair<PX_POINT, PX_POINT>> strokes;
    for (const PX_TEXT& t : view.m_texts) {
        strokes.clear();
        TextStrokes(t, strokes);
        for (const auto& [a, b] : strokes)
            vector(a, b, t.nColour);
    }
}

namespace {

// A line's or a facet's colour; index 7 is black lines but light grey faces on a light background.
COLORREF Lit(short nColour, double dLight, COLORREF background, bool bFace = false) {
    COLORREF c = AciColour(nColour);
    if (nColour == 7 && GetRValue(background) + GetGValue(background) + GetBValue(background) > 384)
        c = bFace ? RGB(200, 200, 200) : RGB(0, 0, 0);
    auto f = [&](uint8_t v) { return static_cast<uint8_t>(std::clamp(v * dLight, 0.0, 255.0)); };
    return RGB(f(GetRValue(c)), f(GetGValue(c)), f(GetBValue(c)));
}

// Scan-line fill of a convex polygon, pixel centres inside.
void FillPolygon(CImageSurface& s, const PX_POINT* pts, int n, COLORREF colour) {
    double y0 = pts[0].y, y1 = pts[0].y;
    for (int i = 1; i < n; ++i) {
        y0 = std::min(y0, pts[i].y);
        y1 = std::max(y1, pts[i].y);
    }
    int yStart = std::max(0, static_cast<int>(std::ceil(y0 - 0.5)));
    int yEnd = std::min(s.Height() - 1, static_cast<int>(std::floor(y1 - 0.5)));
    uint32_t px = CImageSurface::ToPixel(colour);
    for (int y = yStart; y <= yEnd; ++y) {
        double yc = y + 0.5, xl = 1e300, xr = -1e300;
        for (int i = 0; i < n; ++i) {
            const PX_POINT& a = pts[i];
            const PX_POINT& b = pts[(i + 1) % n];
            if ((a.y <= yc) == (b.y <= yc))
                continue;
            double x = a.x + (yc - a.y) * (b.x - a.x) / (b.y - a.y);
            xl = std::min(xl, x);
            xr = std::max(xr, x);
        }
        int xs = std::max(0, static_cast<int>(std::ceil(xl - 0.5)));
        int xe = std::min(s.Width() - 1, static_cast<int>(std::floor(xr - 0.5)));
        uint32_t* row = s.Row(y);
        for (int x = xs; x <= xe; ++x)
            row[x] = px;
    }
}

void DrawLine(CImageSurface& s, PX_POINT a, PX_POINT b, COLORREF colour) {
    double x1 = a.x, y1 = a.y, x2 = b.x, y2 = b.y;
    if (!ClipSegmentToBox(x1, y1, x2, y2, s.Width() - 1, s.Height() - 1))
        return;
    int n = static_cast<int>(std::ceil(std::max(std::fabs(x2 - x1), std::fabs(y2 - y1))));
    for (int i = 0; i <= n; ++i) {
        double t = n ? static_cast<double>(i) / n : 0;
        s.SetPixel(static_cast<int>(std::lround(x1 + (x2 - x1) * t)),
                   static_cast<int>(std::lround(y1 + (y2 - y1) * t)), colour);
    }
}

} // namespace

void PaintProjectedView(CImageSurface& surface, const CProjectedView& view, COLORREF background) {
    surface.Create(view.m_nWidth, view.m_nHeight, background);
    for (const PX_POLYGON& poly : view.m_polygons)
        FillPolygon(surface, poly.p, 3, Lit(poly.nColour, poly.dLight, background, true));
    for (const PX_LINE& l : view.m_lines) {
        COLORREF c = Lit(l.nColour, 1.0, background);
        if (l.dWidth > 1.5) {
            auto quad = WideLine(l);
            FillPolygon(surface, quad.data(), 4, c);
        }
        DrawLine(surface, l.a, l.b, c);
    }
    std::vector<std::pair<PX_POINT, PX_POINT>> strokes;
    for (const PX_TEXT& t : view.m_texts) {
        strokes.clear();
        TextStrokes(t, strokes);
        COLORREF c = Lit(t.nColour, 1.0, background);
        for (const auto& [a, b] : strokes)
            DrawLine(surface, a, b, c);
    }
}

bool WritePngFile(const std::wstring& strPath, const CImageSurface& surface) {
    if (surface.IsEmpty())
        return false;
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(surface.Width());
    image.height = static_cast<png_uint_32>(surface.Height());
    image.format = PNG_FORMAT_RGBA;
    png_alloc_size_t size = 0;
    if (!png_image_write_to_memory(&image, nullptr, &size, 0, surface.Bytes(), 0, nullptr))
        return false;
    std::string bytes(size, '\0');
    if (!png_image_write_to_memory(&image, bytes.data(), &size, 0, surface.Bytes(), 0, nullptr))
        return false;
    bytes.resize(size);
    return FsWriteBinary(strPath, bytes);
}
