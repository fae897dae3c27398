// A uniform grid over boxes, so that the wire analysis asks only nearby lines and dots instead
// of all of them; queries answer in the order the boxes were added.
#pragma once

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

class CGridIndex {
public:
    // Cells of the given size; the size is raised to a sane minimum.
    explicit CGridIndex(double dCell);
    // Item n is the n-th box added.
    void Add(double x0, double y0, double x1, double y1);
    // Items whose box meets the query box, ascending, each once.
    void Query(double x0, double y0, double x1, double y1, std::vector<int>& out) const;
    size_t size() const { return m_nItems; }

private:
    int64_t Cell(double v) const;
    static uint64_t Key(int64_t ix, int64_t iy) {
        return (static_cast<uint64_t>(ix) << 32) ^ static_cast<uint32_t>(iy);
    }
    double m_dCell;
    size_t m_nItems = 0;
    std::vector<double> m_boxes; // four per item
    std::unordered_map<uint64_t, std::vector<int>> m_cells;
    std::vector<int> m_wide;              // boxes over too many cells
    mutable std::vector<uint32_t> m_seen; // query stamps per item
    mutable uint32_t m_nStamp = 0;
};
