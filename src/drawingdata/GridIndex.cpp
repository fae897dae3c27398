// A uniform grid over boxes for the wire analysis.
#include "drawingdata/GridIndex.h"

#include <algorithm>
#include <cmath>

namespace {
// A box spanning more cells than this goes into one shared list instead.
constexpr int64_t kMaxCellsPerBox = 4096;
} // namespace

CGridIndex::CGridIndex(double dCell) : m_dCell(std::max(dCell, 1e-3)) {}

int64_t CGridIndex::Cell(double v) const {
    double c = std::floor(v / m_dCell);
    return static_cast<int64_t>(std::clamp(c, -1e9, 1e9));
}

void CGridIndex::Add(double x0, double y0, double x1, double y1) {
    int n = static_cast<int>(m_nItems++);
    m_boxes.insert(m_boxes.end(),
                   {std::min(x0, x1), std::min(y0, y1), std::max(x0, x1), std::max(y0, y1)});
    const double* b = &m_boxes[4 * n];
    int64_t ix0 = Cell(b[0]), iy0 = Cell(b[1]), ix1 = Cell(b[2]), iy1 = Cell(b[3]);
    if ((ix1 - ix0 + 1) * (iy1 - iy0 + 1) > kMaxCellsPerBox) {
        m_wide.push_back(n);
        return;
    }
    for (int64_t ix = ix0; ix <= ix1; ++ix)
        for (int64_t iy = iy0; iy <= iy1; ++iy)
            m_cells[Key(ix, iy)].push_back(n);
}

void CGridIndex::Query(double x0, double y0, double x1, double y1, std::vector<int>& out) const {
    out.clear();
    if (m_seen.size() < m_nItems)
        m_seen.resize(m_nItems, 0);
    if (++m_nStamp == 0) {
        std::fill(m_seen.begin(), m_seen.end(), 0);
        m_nStamp = 1;
    }
    double qx0 = std::min(x0, x1), qy0 = std::min(y0, y1), qx1 = std::max(x0, x1),
           qy1 = std::max(y0, y1);
    auto visit = [&](const std::vector<int>& items) {
        for (int n : items) {
            if (m_seen[n] == m_nStamp)
                continue;
            m_seen[n] = m_nStamp;
            const double* b = &m_boxes[4 * n];
            if (b[0] <= qx1 && b[2] >= qx0 && b[1] <= qy1 && b[3] >= qy0)
                out.push_back(n);
        }
    };
    visit(m_wide);
    int64_t ix0 = Cell(qx0), iy0 = Cell(qy0), ix1 = Cell(qx1), iy1 = Cell(qy1);
    if ((ix1 - ix0 + 1) * (iy1 - iy0 + 1) > kMaxCellsPerBox) {
        for (const auto& cell : m_cells)
            visit(cell.second);
    } else {
        for (int64_t ix = ix0; ix <= ix1; ++ix)
            for (int64_t iy = iy0; iy <= iy1; ++iy)
                if (auto it = m_cells.find(Key(ix, iy)); it != m_cells.end())
                    visit(it->second);
    }
    std::sort(out.begin(), out.end());
}
