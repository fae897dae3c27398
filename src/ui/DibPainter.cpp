// The four painting modes of the thumbnails, with nearest-pixel stretching into an RGBA surface.
#include "ui/DibPainter.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kReduce = 0.7;

// The pixel words of the colour table, for DIBs of up to 8 bits.
std::vector<uint32_t> TablePixels(const DIB_MEMORY& dib, const STRUCT_DIB_INFO& info) {
    std::vector<uint32_t> table(256, CImageSurface::ToPixel(0));
    uint32_t n = std::min<uint32_t>(info.nColours, 256);
    for (uint32_t i = 0; i < n; ++i) {
        const uint8_t* e = dib.bytes.data() + info.nTableOffset + i * info.nEntrySize;
        table[i] = CImageSurface::ToPixel(RGB(e[2], e[1], e[0]));
    }
    return table;
}

uint32_t FetchPixel(const uint8_t* row, int64_t x, unsigned nBitCount,
                    const std::vector<uint32_t>& table) {
    switch (nBitCount) {
    case 1:
        return table[(row[x >> 3] >> (7 - (x & 7))) & 1];
    case 4:
        return table[(row[x >> 1] >> ((x & 1) ? 0 : 4)) & 15];
    case 8:
        return table[row[x]];
    case 16: {
        unsigned v = row[2 * x] | (row[2 * x + 1] << 8);
        auto c5 = [](unsigned c) { return static_cast<uint8_t>(c * 255 / 31); };
        return CImageSurface::ToPixel(RGB(c5((v >> 10) & 31), c5((v >> 5) & 31), c5(v & 31)));
    }
    case 24:
        return CImageSurface::ToPixel(RGB(row[3 * x + 2], row[3 * x + 1], row[3 * x]));
    default:
        return CImageSurface::ToPixel(RGB(row[4 * x + 2], row[4 * x + 1], row[4 * x]));
    }
}

RECT Inset(const RECT& r) {
    return {r.left + 2, r.top + 2, r.left + 2 + r.Width() - 3, r.top + 2 + r.Height() - 3};
}

// Per axis of mode 1: centre a smaller source, or cut the middle of a larger one.
void CentreAxis(int nDestPos, int nDestLen, int nSrcLen, int& nDest0, int& nDest1, int& nSrc0,
                int& nSrc1) {
    if (nSrcLen <= nDestLen) {
        nDest0 = nDestPos + (nDestLen - nSrcLen) / 2;
        nDest1 = nDest0 + nSrcLen;
        nSrc0 = 0, nSrc1 = nSrcLen;
    } else {
        nDest0 = nDestPos, nDest1 = nDestPos + nDestLen;
        nSrc0 = (nSrcLen - nDestLen) / 2;
        nSrc1 = nSrc0 + nDestLen;
    }
}

void PaintInMode(CImageSurface& surface, const RECT& dest, const DIB_MEMORY& dib,
                 const STRUCT_DIB_INFO& info, const RECT& source, int nMode) {
    int nSrcW = source.Width(), nSrcH = source.Height();
    switch (nMode) {
    case DIB_MODE_STRETCH:
        if (nSrcW == dest.Width() && nSrcH == dest.Height())
            StretchDib(surface, dest, dib, info, source);
        else
            StretchDib(surface, Inset(dest), dib, info, source);
        return;
    case DIB_MODE_CENTRE: {
        RECT d, s;
        CentreAxis(dest.left, dest.Width(), nSrcW, d.left, d.right, s.left, s.right);
        CentreAxis(dest.top, dest.Height(), nSrcH, d.top, d.bottom, s.top, s.bottom);
        s.left += source.left, s.right += source.left;
        s.top += source.top, s.bottom += source.top;
        StretchDib(surface, d, dib, info, s);
        return;
    }
    case DIB_MODE_REDUCE: {
        double w = nSrcW * kReduce, h = nSrcH * kReduce;
        if (w <= dest.Width() && h <= dest.Height()) {
            int nW = static_cast<int>(w), nH = static_cast<int>(h);
            int x = dest.left + (dest.Width() - nW) / 2, y = dest.top + (dest.Height() - nH) / 2;
            StretchDib(surface, {x, y, x + nW, y + nH}, dib, info, source);
            return;
        }
        // Still 0.7: a window of the source, centred on it, fills the inset.
        RECT d = Inset(dest);
        int nSx = source.left + static_cast<int>((w - dest.Width()) / 1.4);
        int nSy = source.top + static_cast<int>((h - dest.Height()) / 1.4);
        RECT s{nSx, nSy, nSx + static_cast<int>(d.Width() / kReduce),
               nSy + static_cast<int>(d.Height() / kReduce)};
        StretchDib(surface, d, dib, info, s);
        return;
    }
    default:
        StretchDib(surface, dest, dib, info, source);
        return;
    }
}

} // namespace

void StretchDib(CImageSurface& surface, const RECT& dest, const DIB_MEMORY& dib,
                const STRUCT_DIB_INFO& info, const RECT& source) {
    int64_t nDestW = dest.Width(), nDestH = dest.Height();
    int64_t nSrcW = source.Width(), nSrcH = source.Height();
    if (nDestW <= 0 || nDestH <= 0 || nSrcW <= 0 || nSrcH <= 0)
        return;
    int x0 = std::max(dest.left, 0), x1 = std::min(dest.right, surface.Width());
    int y0 = std::max(dest.top, 0), y1 = std::min(dest.bottom, surface.Height());
    if (x0 >= x1 || y0 >= y1)
        return;
    std::vector<uint32_t> table = TablePixels(dib, info);
    std::vector<int64_t> srcX(static_cast<size_t>(x1 - x0));
    for (int x = x0; x < x1; ++x)
        srcX[x - x0] = source.left + (x - dest.left) * nSrcW / nDestW;
    const uint8_t* bits = dib.bytes.data() + info.nBitsOffset;
    for (int y = y0; y < y1; ++y) {
        int64_t sy = source.top + (y - dest.top) * nSrcH / nDestH;
        if (sy < 0 || sy >= info.nHeight)
            continue;
        // Rows are stored bottom-up.
        const uint8_t* row = bits + (info.nHeight - 1 - sy) * info.nStride;
        uint32_t* out = surface.Row(y);
        for (int x = x0; x < x1; ++x) {
            int64_t sx = srcX[x - x0];
            if (sx >= 0 && sx < info.nWidth)
                out[x] = FetchPixel(row, sx, info.nBitCount, table);
        }
    }
}

bool DrawDibToWindow(CImageSurface& surface, const RECT& destRect, HDIB hDib,
                     const RECT& sourceRect, const CPalette* /*pPalette*/, int nMode,
                     double dAngle) {
    if (!hDib)
        return false;
    RECT source = sourceRect;
    if (dAngle != 0) {
        if (HDIB hTurned = RotateDib(*hDib, dAngle)) {
            hDib = std::move(hTurned); // the original is freed here
            STRUCT_DIB_INFO turned;
            CheckDibHeader(*hDib, turned);
            source = {0, 0, static_cast<int>(turned.nWidth), static_cast<int>(turned.nHeight)};
        }
    }
    STRUCT_DIB_INFO info;
    if (!CheckDibHeader(*hDib, info) || !IsDibPaintable(*hDib, info))
        return false;
    // The surface holds true colours, so the palette needs no realising.
    PaintInMode(surface, destRect, *hDib, info, source, nMode);
    return true;
}

bool PaintDibPreview(CImageSurface& surface, HDIB hDib, int keepColours, double dAngle, int nMode,
                     std::unique_ptr<CPalette>& pPalette) {
    STRUCT_DIB_INFO info;
    if (!hDib || !CheckDibHeader(*hDib, info))
        return false;
    auto pNew = std::make_unique<CPalette>();
    if (MakeDibPalette(*hDib, *pNew, keepColours))
        pPalette = std::move(pNew);
    else
        pPalette.reset();
    RECT source{0, 0, static_cast<int>(info.nWidth), static_cast<int>(info.nHeight)};
    return DrawDibToWindow(surface, surface.ClientRect(), std::move(hDib), source, pPalette.get(),
                           nMode, dAngle);
}
