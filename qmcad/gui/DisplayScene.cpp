// Display list to pixels: rebuilt when the drawing changes, projected per paint, drawn by QPainter.
#include "gui/DisplayScene.h"

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QLineF>
#include <QPainter>
#include <QPolygonF>
#include <QString>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <vector>

namespace {

double SegmentDistance(const PX_POINT& a, const PX_POINT& b, double x, double y) {
    double vx = b.x - a.x, vy = b.y - a.y, len2 = vx * vx + vy * vy;
    double t = len2 > 0 ? std::clamp(((x - a.x) * vx + (y - a.y) * vy) / len2, 0.0, 1.0) : 0;
    return std::hypot(a.x + t * vx - x, a.y + t * vy - y);
}

// Inside the text's box along its baseline, or the distance to that box's outline.
double TextDistance(const PX_TEXT& t, double x, double y) {
    double c = std::cos(t.dAngle), s = std::sin(t.dAngle);
    double u = (x - t.origin.x) * c - (y - t.origin.y) * s;  // along the baseline
    double v = -(x - t.origin.x) * s - (y - t.origin.y) * c; // up the characters
    if (u >= 0 && u <= t.dAdvance && v >= 0 && v <= t.dHeight)
        return 0;
    double du = u < 0 ? -u : u > t.dAdvance ? u - t.dAdvance : 0;
    double dv = v < 0 ? -v : v > t.dHeight ? v - t.dHeight : 0;
    return std::hypot(du, dv);
}

// A thin line straight into 32-bit pixels (the cache the view paints into):
// far cheaper than a painter's path for the many short lines of a big drawing.
void PlotLine(uchar* bits, qsizetype nStride, int nWidth, int nHeight, double x0, double y0,
              double x1, double y1, QRgb colour) {
    double dx = x1 - x0, dy = y1 - y0;
    int n = static_cast<int>(std::max(std::fabs(dx), std::fabs(dy)));
    double sx = n > 0 ? dx / n : 0, sy = n > 0 ? dy / n : 0;
    double x = x0, y = y0;
    for (int i = 0; i <= n; ++i, x += sx, y += sy) {
        // Truncation after a shift: floor without the call, for x > -1024.
        int px = static_cast<int>(x + 1024.0) - 1024, py = static_cast<int>(y + 1024.0) - 1024;
        if (px >= 0 && py >= 0 && px < nWidth && py < nHeight)
            reinterpret_cast<QRgb*>(bits + py * nStride)[px] = colour;
    }
}

// The image under the painter when pixels may be written straight into it.
QImage* DirectImage(QPainter& painter) {
    auto* pImage = dynamic_cast<QImage*>(painter.device());
    bool bDirect = pImage && painter.transform().isIdentity() && !painter.hasClipping() &&
                   (pImage->format() == QImage::Format_RGB32 ||
                    pImage->format() == QImage::Format_ARGB32_Premultiplied);
    return bDirect ? pImage : nullptr;
}

double Dot(const AcGeVector3d& a, const AcGeVector3d& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

// Facets with a depth buffer: each pixel shows the nearest face, where an
// order of whole faces goes wrong for large faces. Light and culling as the
// display list's projection has them.
void RasterFacets(QImage& image, const VIEW_STATE& view, const std::vector<DL_TRIANGLE>& facets) {
    if (facets.empty() || view.dHeight <= 0)
        return;
    int w = image.width(), h = image.height();
    VIEW_AXES axes = ViewAxes(view.direction);
    double scale = h / view.dHeight;
    AcGeVector3d light = axes.z * 0.8 + axes.y * 0.45 + axes.x * (-0.4);
    light = light * (1.0 / light.length());
    std::vector<float> depth(static_cast<size_t>(w) * h, -std::numeric_limits<float>::infinity());
    uchar* bits = image.bits();
    qsizetype nStride = image.bytesPerLine();
    for (const DL_TRIANGLE& t : facets) {
        if (Dot(t.normal, axes.z) < -1e-9)
            continue; // turned away
        double x[3], y[3], z[3];
        for (int i = 0; i < 3; ++i) {
            VIEW_COORD c = ToView(axes, view.target, t.p[i]);
            x[i] = w / 2.0 + c.u * scale;
            y[i] = h / 2.0 - c.v * scale;
            z[i] = c.depth;
        }
        double area = (x[1] - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (y[1] - y[0]);
        if (std::fabs(area) < 1e-9)
            continue; // edge-on
        QColor c = IndexColour(t.nColour);
        double lit = 0.3 + 0.7 * std::max(0.0, Dot(t.normal, light));
        QRgb rgb = qRgb(int(c.red() * lit), int(c.green() * lit), int(c.blue() * lit));
        // Each weight is linear on the screen: b = bx * x + by * y + bc. A row's
        // pixels inside all three lie in one span, found without trying each.
        double bx[3], by[3], bc[3];
        for (int i = 0; i < 3; ++i) {
            int j = (i + 1) % 3, k = (i + 2) % 3;
            bx[i] = (y[j] - y[k]) / area;
            by[i] = (x[k] - x[j]) / area;
            bc[i] = (x[j] * y[k] - x[k] * y[j]) / area;
        }
        double zx = bx[0] * z[0] + bx[1] * z[1] + bx[2] * z[2];
        double zy = by[0] * z[0] + by[1] * z[1] + by[2] * z[2];
        double zc = bc[0] * z[0] + bc[1] * z[1] + bc[2] * z[2];
        int y0 = std::max(0, int(std::floor(std::min({y[0], y[1], y[2]}))));
        int y1 = std::min(h - 1, int(std::ceil(std::max({y[0], y[1], y[2]}))));
        for (int py = y0; py <= y1; ++py) {
            double cy = py + 0.5;
            double lo = 0, hi = w; // pixel centres cx = px + 0.5 in [lo, hi]
            for (int i = 0; i < 3 && lo <= hi; ++i) {
                double rest = by[i] * cy + bc[i]; // b = bx * cx + rest >= 0
                if (std::fabs(bx[i]) < 1e-15) {
                    if (rest < -1e-9)
                        hi = -1;
                } else if (bx[i] > 0) {
                    lo = std::max(lo, (-1e-9 - rest) / bx[i]);
                } else {
                    hi = std::min(hi, (-1e-9 - rest) / bx[i]);
                }
            }
            int px0 = std::max(0, int(std::ceil(lo - 0.5)));
            int px1 = std::min(w - 1, int(std::floor(hi - 0.5)));
            if (px0 > px1)
                continue;
            auto* row = reinterpret_cast<QRgb*>(bits + py * nStride);
            float* zrow = depth.data() + static_cast<size_t>(py) * w;
            double d = zx * (px0 + 0.5) + zy * cy + zc;
            for (int px = px0; px <= px1; ++px, d += zx) {
                if (d < zrow[px])
                    continue;
                zrow[px] = static_cast<float>(d);
                row[px] = rgb;
            }
        }
    }
}

const QFont& TextFont() {
    static const QFont font = [] {
        QFont f(QStringLiteral("WenQuanYi Micro Hei"));
        f.setPixelSize(100); // drawn at one size and scaled: exact at any zoom
        return f;
    }();
    return font;
}

} // namespace

QColor IndexColour(short nColour) {
    unsigned rgb = AciToRgb(nColour);
    return QColor((rgb >> 16) & 0xFF, (rgb >> 8) & 0xFF, rgb & 0xFF);
}

const CDisplayList& CDisplayScene::List(const VIEW_STATE& view, bool bKeepEdges) {
    AcDbDatabase* pDb = m_getDatabase();
    bool bEdgesStale = m_bHasSolidEdges && !bKeepEdges &&
                       (view.direction.x != m_builtView.direction.x ||
                        view.direction.y != m_builtView.direction.y ||
                        view.direction.z != m_builtView.direction.z);
    if (m_bValid && pDb == m_pBuiltFor && view.eShade == m_builtView.eShade && !bEdgesStale)
        return m_list;
    m_list.Clear();
    if (pDb)
        BuildDisplayList(*pDb, view, m_pSolids, m_list);
    m_texts.Clear();
    m_texts.m_texts = m_list.m_texts;
    m_facets.Clear();
    m_facets.m_triangles = m_list.m_triangles;
    m_bPlaneValid = false;
    m_bValid = true;
    m_pBuiltFor = pDb;
    m_builtView = view;
    // Only wireframe edges of solids depend on the direction.
    m_bHasSolidEdges = view.eShade == SHADE_MODE::Wireframe2d && m_pSolids && pDb;
    return m_list;
}

void CDisplayScene::Paint(QPainter& painter, const VIEW_STATE& view, int nWidth, int nHeight,
                          bool bKeepEdges) {
    List(view, bKeepEdges);
    PreparePlaneLines(view);
    QImage* pImage = DirectImage(painter);
    if (pImage)
        RasterFacets(*pImage, view, m_facets.m_triangles);
    else
        DrawFacets(painter, ProjectDisplayList(m_facets, view, nWidth, nHeight));
    DrawPlaneLines(painter, view, nWidth, nHeight);
    DrawTexts(painter, ProjectDisplayList(m_texts, view, nWidth, nHeight));
}

void CDisplayScene::PreparePlaneLines(const VIEW_STATE& view) {
    const AcGeVector3d& d = view.direction;
    if (m_bPlaneValid && d.x == m_planeDirection.x && d.y == m_planeDirection.y &&
        d.z == m_planeDirection.z)
        return;
    VIEW_AXES axes = ViewAxes(d);
    AcDbExtents ext = m_list.Extents();
    AcGePoint3d mid;
    if (ext.isValid())
        mid = AcGePoint3d((ext.minPoint().x + ext.maxPoint().x) / 2,
                          (ext.minPoint().y + ext.maxPoint().y) / 2,
                          (ext.minPoint().z + ext.maxPoint().z) / 2);
    VIEW_COORD o = ToView(axes, AcGePoint3d(), mid);
    m_dPlaneU = o.u;
    m_dPlaneV = o.v;
    m_planeLines.clear();
    m_planeLines.reserve(m_list.m_lines.size());
    for (const DL_LINE& l : m_list.m_lines) {
        VIEW_COORD a = ToView(axes, mid, l.a), b = ToView(axes, mid, l.b);
        m_planeLines.push_back({static_cast<float>(a.u), static_cast<float>(a.v),
                                static_cast<float>(b.u), static_cast<float>(b.v),
                                static_cast<float>(l.dWidth), l.nColour});
    }
    BuildCoarseLines(ext.isValid() ? std::max({ext.maxPoint().x - ext.minPoint().x,
                                               ext.maxPoint().y - ext.minPoint().y,
                                               ext.maxPoint().z - ext.minPoint().z})
                                   : 0.0);
    m_planeDirection = d;
    m_bPlaneValid = true;
}

// Runs of joined thin segments of one colour (arcs, circles) whose whole
// extent stays under a four-thousandth of the drawing become one segment:
// while the drawing is seen whole each such run covers a pixel or two.
void CDisplayScene::BuildCoarseLines(double dDrawingSize) {
    m_coarseLines.clear();
    m_dCoarseSize = dDrawingSize / 4000;
    if (m_dCoarseSize <= 0)
        return;
    float limit = static_cast<float>(m_dCoarseSize);
    size_t i = 0, n = m_planeLines.size();
    while (i < n) {
        PLANE_LINE run = m_planeLines[i];
        float lo[2] = {std::min(run.u0, run.u1), std::min(run.v0, run.v1)};
        float hi[2] = {std::max(run.u0, run.u1), std::max(run.v0, run.v1)};
        size_t j = i + 1;
        while (j < n && run.fWidth == 0) {
            const PLANE_LINE& next = m_planeLines[j];
            if (next.fWidth != 0 || next.nColour != run.nColour || next.u0 != run.u1 ||
                next.v0 != run.v1)
                break;
            float nlo[2] = {std::min(lo[0], next.u1), std::min(lo[1], next.v1)};
            float nhi[2] = {std::max(hi[0], next.u1), std::max(hi[1], next.v1)};
            if (nhi[0] - nlo[0] > limit || nhi[1] - nlo[1] > limit)
                break;
            std::copy(nlo, nlo + 2, lo);
            std::copy(nhi, nhi + 2, hi);
            run.u1 = next.u1;
            run.v1 = next.v1;
            ++j;
        }
        m_coarseLines.push_back(run);
        i = j;
    }
}

// Lines under a pixel long are set as pixels straight into the image: a
// drawing zoomed out has hundreds of thousands of them.
void CDisplayScene::DrawPlaneLines(QPainter& painter, const VIEW_STATE& view, int nWidth,
                                   int nHeight) const {
    double scale = nHeight / (view.dHeight > 0 ? view.dHeight : 1.0);
    VIEW_COORD t = ToView(ViewAxes(view.direction), AcGePoint3d(), view.target);
    double cx = nWidth / 2.0 - (t.u - m_dPlaneU) * scale;
    double cy = nHeight / 2.0 + (t.v - m_dPlaneV) * scale;
    QImage* pImage = DirectImage(painter);
    bool bDirect = pImage != nullptr;
    uchar* bits = bDirect ? pImage->bits() : nullptr; // one detach, not one a pixel
    qsizetype nStride = bDirect ? pImage->bytesPerLine() : 0;
    QRgb palette[256];
    for (int i = 0; i < 256; ++i)
        palette[i] = IndexColour(static_cast<short>(i)).rgb();
    std::map<std::pair<short, double>, std::vector<QLineF>> batches;
    // Zoomed out so far that a coarse run is under half a pixel: draw the runs.
    bool bCoarse = m_dCoarseSize * scale < 0.5 && !m_coarseLines.empty();
    for (const PLANE_LINE& l : bCoarse ? m_coarseLines : m_planeLines) {
        double x0 = cx + l.u0 * scale, y0 = cy - l.v0 * scale;
        double x1 = cx + l.u1 * scale, y1 = cy - l.v1 * scale;
        double w = l.fWidth * scale;
        double margin = std::max(w, 1.0);
        if (std::max(x0, x1) < -margin || std::min(x0, x1) > nWidth + margin ||
            std::max(y0, y1) < -margin || std::min(y0, y1) > nHeight + margin)
            continue; // off the screen
        if (bDirect && w <= 1 && std::fabs(x1 - x0) < 4096 && std::fabs(y1 - y0) < 4096) {
            PlotLine(bits, nStride, pImage->width(), pImage->height(), x0, y0, x1, y1,
                     palette[l.nColour & 0xFF]);
            continue;
        }
        batches[{l.nColour, w > 1 ? w : 0}].emplace_back(x0, y0, x1, y1);
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (auto& [key, lines] : batches) {
        QPen pen(IndexColour(key.first), key.second);
        pen.setCapStyle(key.second > 0 ? Qt::FlatCap : Qt::SquareCap);
        painter.setPen(pen);
        painter.drawLines(lines.data(), static_cast<int>(lines.size()));
    }
    painter.restore();
}

bool CDisplayScene::HitTest(const VIEW_STATE& view, int nWidth, int nHeight, double sx, double sy,
                            double dTolerance, AcDbObjectId& id) {
    AcDbDatabase* pDb = m_getDatabase();
    if (!pDb)
        return false;
    AcDbObjectIdArray ids;
    acdbWithObject<AcDbBlockTableRecord>(pDb->modelSpaceId(), [&](AcDbBlockTableRecord& space) {
        AcDbBlockTableRecordIterator* pIter = nullptr;
        if (space.newIterator(pIter) != Acad::eOk)
            return;
        for (; !pIter->done(); pIter->step())
            ids.push_back(pIter->getEntityId());
        delete pIter;
    });
    // Solids are measured by their box's edges: a pick needs no hidden lines.
    CDisplayList list;
    std::vector<DL_STARTS> starts;
    BuildEntitiesDisplayList(*pDb, view, nullptr, ids, AcGeMatrix3d(), list, &starts);
    starts.push_back({list.m_lines.size(), list.m_texts.size()});
    VIEW_STATE fixed = view;
    if (fixed.dHeight <= 0)
        fixed.dHeight = nHeight; // never here: the view is zoomed before it takes picks
    CProjectedView px = ProjectDisplayList(list, fixed, nWidth, nHeight);
    double dBest = dTolerance;
    bool bFound = false;
    for (size_t i = 0; i < ids.size(); ++i) {
        double d = 1e300;
        for (size_t k = starts[i].nLine; k < starts[i + 1].nLine; ++k)
            d = std::min(d, SegmentDistance(px.m_lines[k].a, px.m_lines[k].b, sx, sy));
        for (size_t k = starts[i].nText; k < starts[i + 1].nText; ++k)
            d = std::min(d, TextDistance(px.m_texts[k], sx, sy));
        if (d <= dBest) { // the later of two equals: the one drawn on top
            dBest = d;
            id = ids[i];
            bFound = true;
        }
    }
    return bFound;
}

void CDisplayScene::PaintMoved(QPainter& painter, const VIEW_STATE& view, int nWidth, int nHeight,
                               const AcDbObjectIdArray& ids, const AcGeMatrix3d& xform) {
    AcDbDatabase* pDb = m_getDatabase();
    if (!pDb || view.dHeight <= 0)
        return;
    CDisplayList list;
    // Solids follow the cursor as boxes: hidden lines at every sample would lag.
    VIEW_STATE wire = view;
    wire.eShade = SHADE_MODE::Wireframe2d;
    BuildEntitiesDisplayList(*pDb, wire, nullptr, ids, xform, list);
    DrawProjectedView(painter, ProjectDisplayList(list, wire, nWidth, nHeight));
}

void DrawFacets(QPainter& painter, const CProjectedView& view) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (const PX_POLYGON& poly : view.m_polygons) {
        QColor c = IndexColour(poly.nColour);
        c.setRgbF(c.redF() * poly.dLight, c.greenF() * poly.dLight, c.blueF() * poly.dLight);
        QPointF pts[3] = {
            {poly.p[0].x, poly.p[0].y}, {poly.p[1].x, poly.p[1].y}, {poly.p[2].x, poly.p[2].y}};
        painter.setPen(QPen(c, 0)); // the outline closes the cracks between facets
        painter.setBrush(c);
        painter.drawPolygon(pts, 3);
    }
    painter.restore();
}

void DrawTexts(QPainter& painter, const CProjectedView& view) {
    const QFont& font = TextFont();
    QFontMetricsF metrics(font);
    double cap = std::max(metrics.capHeight(), 1.0);
    painter.save();
    painter.setFont(font);
    for (const PX_TEXT& t : view.m_texts) {
        if (t.dHeight < 2 || t.strText.empty())
            continue; // too small to read: the editor shows nothing either
        double s = t.dHeight / cap;
        painter.save();
        painter.translate(t.origin.x, t.origin.y);
        painter.rotate(-t.dAngle * 180.0 / M_PI);
        painter.scale(s * t.dWidthFactor, s);
        painter.setPen(IndexColour(t.nColour));
        painter.drawText(QPointF(0, 0), QString::fromStdWString(t.strText));
        painter.restore();
    }
    painter.restore();
}

void DrawProjectedView(QPainter& painter, const CProjectedView& view) {
    DrawFacets(painter, view);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setBrush(Qt::NoBrush);
    // One pen change per colour and width: the lines go in batches.
    std::map<std::pair<short, double>, std::vector<QLineF>> batches;
    QRectF screen(-1, -1, view.m_nWidth + 2, view.m_nHeight + 2);
    for (const PX_LINE& l : view.m_lines) {
        QLineF line(l.a.x, l.a.y, l.b.x, l.b.y);
        double w = l.dWidth > 1 ? l.dWidth : 0;
        double margin = std::max(w, 1.0);
        QRectF box =
            QRectF(line.p1(), line.p2()).normalized().adjusted(-margin, -margin, margin, margin);
        if (!box.intersects(screen))
            continue; // off the screen
        batches[{l.nColour, w}].push_back(line);
    }
    for (auto& [key, lines] : batches) {
        QPen pen(IndexColour(key.first), key.second);
        pen.setCapStyle(key.second > 0 ? Qt::FlatCap : Qt::SquareCap);
        painter.setPen(pen);
        painter.drawLines(lines.data(), static_cast<int>(lines.size()));
    }
    painter.restore();
    DrawTexts(painter, view);
}
