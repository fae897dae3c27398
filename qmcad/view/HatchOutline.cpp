// Hatch boundaries from their DXF groups: paths of polylines or of line, arc and other edges.
#include "view/HatchOutline.h"

#include <array>
#include <cmath>
#include <cwchar>
#include <tuple>
#include <utility>

namespace {

// Reads the groups in order; a missing or unexpected group stops everything.
class CTagReader {
public:
    explicit CTagReader(const std::vector<DXF_TAG>& tags) : m_tags(tags) {}
    bool Seek(int nCode) { // to the next group of that code
        while (m_i < m_tags.size() && m_tags[m_i].nCode != nCode)
            ++m_i;
        return m_i < m_tags.size();
    }
    bool Is(int nCode) const { return m_i < m_tags.size() && m_tags[m_i].nCode == nCode; }
    bool Read(int nCode, double& d) {
        if (!Is(nCode))
            return false;
        d = std::wcstod(m_tags[m_i++].strValue.c_str(), nullptr);
        return std::isfinite(d);
    }
    bool ReadInt(int nCode, int& n) {
        double d = 0;
        if (!Read(nCode, d) || std::fabs(d) > 1e7)
            return false;
        n = static_cast<int>(d);
        return true;
    }
    void Skip() { ++m_i; }

private:
    const std::vector<DXF_TAG>& m_tags;
    size_t m_i = 0;
};

struct CSink {
    const AcGeMatrix3d& m;
    short nColour;
    std::vector<DL_LINE>& lines;
    void Line(double x0, double y0, double x1, double y1) {
        lines.push_back(
            {m.apply(AcGePoint3d(x0, y0, 0)), m.apply(AcGePoint3d(x1, y1, 0)), nColour, 0.0});
    }
    void Arc(double cx, double cy, double r, double a0, double a1) {
        std::vector<DL_LINE> arc;
        AppendArcLines(AcGePoint3d(cx, cy, 0), r, a0, a1, nColour, 0.0, arc);
        for (const DL_LINE& l : arc)
            lines.push_back({m.apply(l.a), m.apply(l.b), nColour, 0.0});
    }
};

bool PolylinePath(CTagReader& r, CSink& sink) {
    int nBulge = 0, nClosed = 0, nCount = 0;
    if (!r.ReadInt(72, nBulge) || !r.ReadInt(73, nClosed) || !r.ReadInt(93, nCount))
        return false;
    std::vector<std::array<double, 3>> v;
    for (int i = 0; i < nCount; ++i) {
        double x = 0, y = 0, b = 0;
        if (!r.Read(10, x) || !r.Read(20, y))
            return false;
        if (r.Is(42) && !r.Read(42, b))
            return false;
        v.push_back({x, y, b});
    }
    size_t nSegs = v.size() < 2 ? 0 : (nClosed || v.size() > 2 ? v.size() : v.size() - 1);
    for (size_t i = 0; i < nSegs; ++i) {
        const auto& a = v[i];
        const auto& b = v[(i + 1) % v.size()];
        double chord = std::hypot(b[0] - a[0], b[1] - a[1]);
        if (std::fabs(a[2]) < 1e-12 || chord < 1e-12) {
            sink.Line(a[0], a[1], b[0], b[1]);
            continue;
        }
        double theta = 4 * std::atan(a[2]);
        double rad = chord / (2 * std::sin(std::fabs(theta) / 2));
        double nx = -(b[1] - a[1]) / chord, ny = (b[0] - a[0]) / chord;
        double off = rad * std::cos(theta / 2) * (theta > 0 ? 1 : -1);
        double cx = (a[0] + b[0]) / 2 + nx * off, cy = (a[1] + b[1]) / 2 + ny * off;
        double a0 = std::atan2(a[1] - cy, a[0] - cx), a1 = std::atan2(b[1] - cy, b[0] - cx);
        if (theta < 0)
            std::swap(a0, a1);
        while (a1 <= a0)
            a1 += 2 * M_PI;
        sink.Arc(cx, cy, rad, a0, a1);
    }
    return true;
}

bool EdgePath(CTagReader& r, CSink& sink) {
    int nEdges = 0;
    if (!r.ReadInt(93, nEdges))
        return false;
    for (int e = 0; e < nEdges; ++e) {
        int nType = 0;
        if (!r.ReadInt(72, nType))
            return false;
        double x0 = 0, y0 = 0, x1 = 0, y1 = 0, rad = 0, a0 = 0, a1 = 0;
        int nCcw = 1;
        if (nType == 1) {
            if (!r.Read(10, x0) || !r.Read(20, y0) || !r.Read(11, x1) || !r.Read(21, y1))
                return false;
            sink.Line(x0, y0, x1, y1);
        } else if (nType == 2) {
            if (!r.Read(10, x0) || !r.Read(20, y0) || !r.Read(40, rad) || !r.Read(50, a0) ||
                !r.Read(51, a1) || !r.ReadInt(73, nCcw))
                return false;
            a0 *= M_PI / 180, a1 *= M_PI / 180;
            if (!nCcw) // clockwise edges give their angles mirrored
                std::tie(a0, a1) = std::pair(-a1, -a0);
            while (a1 <= a0)
                a1 += 2 * M_PI;
            sink.Arc(x0, y0, rad, a0, a1);
        } else {
            return false; // ellipse and spline edges: the outline stops short
        }
    }
    return true;
}

} // namespace

void AppendHatchOutline(const std::vector<DXF_TAG>& tags, const AcGeMatrix3d& m, short nColour,
                        std::vector<DL_LINE>& lines) {
    CTagReader r(tags);
    CSink sink{m, nColour, lines};
    int nPaths = 0;
    if (!r.Seek(91) || !r.ReadInt(91, nPaths))
        return;
    for (int p = 0; p < nPaths; ++p) {
        int nFlags = 0;
        if (!r.ReadInt(92, nFlags))
            return;
        bool bOk = (nFlags & 2) ? PolylinePath(r, sink) : EdgePath(r, sink);
        if (!bOk)
            return;
        // The path's source objects follow: their count and handles.
        int nSources = 0;
        if (r.Is(97) && r.ReadInt(97, nSources))
            while (r.Is(330))
                r.Skip();
    }
}
