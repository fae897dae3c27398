// A plain RGBA pixel buffer that previews paint into; the GUI blits it to the screen.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// The platform's colour value: 0x00BBGGRR.
using COLORREF = uint32_t;

constexpr COLORREF RGB(uint8_t r, uint8_t g, uint8_t b) {
    return static_cast<COLORREF>(r) | (static_cast<COLORREF>(g) << 8) |
           (static_cast<COLORREF>(b) << 16);
}
constexpr uint8_t GetRValue(COLORREF c) {
    return static_cast<uint8_t>(c & 0xFF);
}
constexpr uint8_t GetGValue(COLORREF c) {
    return static_cast<uint8_t>((c >> 8) & 0xFF);
}
constexpr uint8_t GetBValue(COLORREF c) {
    return static_cast<uint8_t>((c >> 16) & 0xFF);
}

struct RECT {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
};

// Rows run top to bottom; each pixel is the bytes R, G, B, A in memory, so
// on a little-endian machine a pixel word is the COLORREF with alpha 0xFF on top.
class CImageSurface {
public:
    CImageSurface() = default;
    CImageSurface(int nWidth, int nHeight, COLORREF fill = 0);

    // Resizes and fills; a non-positive size leaves an empty surface.
    void Create(int nWidth, int nHeight, COLORREF fill = 0);
    int Width() const { return m_nWidth; }
    int Height() const { return m_nHeight; }
    bool IsEmpty() const { return m_pixels.empty(); }
    RECT ClientRect() const { return {0, 0, m_nWidth, m_nHeight}; }

    void Fill(COLORREF colour);
    void FillRect(const RECT& rect, COLORREF colour); // clipped
    void SetPixel(int x, int y, COLORREF colour);     // ignored outside
    COLORREF GetPixel(int x, int y) const;            // 0 outside

    // Direct row access for painters that have clipped already.
    uint32_t* Row(int y) { return m_pixels.data() + static_cast<size_t>(y) * m_nWidth; }
    const uint32_t* Row(int y) const { return m_pixels.data() + static_cast<size_t>(y) * m_nWidth; }
    static uint32_t ToPixel(COLORREF c) { return (c & 0xFFFFFFu) | 0xFF000000u; }

    // The pixels as R, G, B, A bytes, rows top to bottom.
    const uint8_t* Bytes() const { return reinterpret_cast<const uint8_t*>(m_pixels.data()); }

private:
    int m_nWidth = 0;
    int m_nHeight = 0;
    std::vector<uint32_t> m_pixels;
};
