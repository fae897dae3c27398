// The RGBA pixel buffer of the previews.
#include "base/ImageSurface.h"

#include <algorithm>
#include <bit>

static_assert(std::endian::native == std::endian::little,
              "pixel words hold R, G, B, A bytes only on little-endian machines");

CImageSurface::CImageSurface(int nWidth, int nHeight, COLORREF fill) {
    Create(nWidth, nHeight, fill);
}

void CImageSurface::Create(int nWidth, int nHeight, COLORREF fill) {
    if (nWidth <= 0 || nHeight <= 0) {
        m_nWidth = m_nHeight = 0;
        m_pixels.clear();
        return;
    }
    m_nWidth = nWidth;
    m_nHeight = nHeight;
    m_pixels.assign(static_cast<size_t>(nWidth) * nHeight, ToPixel(fill));
}

void CImageSurface::Fill(COLORREF colour) {
    std::fill(m_pixels.begin(), m_pixels.end(), ToPixel(colour));
}

void CImageSurface::FillRect(const RECT& rect, COLORREF colour) {
    int x0 = std::max(rect.left, 0), x1 = std::min(rect.right, m_nWidth);
    int y0 = std::max(rect.top, 0), y1 = std::min(rect.bottom, m_nHeight);
    if (x0 >= x1)
        return;
    for (int y = y0; y < y1; ++y)
        std::fill(Row(y) + x0, Row(y) + x1, ToPixel(colour));
}

void CImageSurface::SetPixel(int x, int y, COLORREF colour) {
    if (x < 0 || y < 0 || x >= m_nWidth || y >= m_nHeight)
        return;
    Row(y)[x] = ToPixel(colour);
}

COLORREF CImageSurface::GetPixel(int x, int y) const {
    if (x < 0 || y < 0 || x >= m_nWidth || y >= m_nHeight)
        return 0;
    return Row(y)[x] & 0xFFFFFFu;
}
