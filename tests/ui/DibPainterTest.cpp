// The four painting modes, the turned paint and the colour handling of the preview paint.
#include "ui/DibPainter.h"

#include "PreviewBuilders.h"

#include <gtest/gtest.h>

namespace {

constexpr COLORREF kOld = RGB(1, 2, 3); // what the cell held before the paint

// Index i is a distinct colour, so a painted pixel tells its source column.
std::vector<COLORREF> Ramp() {
    std::vector<COLORREF> t;
    for (int i = 0; i < 256; ++i)
        t.push_back(RGB(i, 255 - i, 100));
    return t;
}
COLORREF Of(int i) {
    return RGB(i, 255 - i, 100);
}

CImageSurface Paint(int nCellW, int nCellH, const std::string& dib, int nMode, double dAngle = 0) {
    CImageSurface s(nCellW, nCellH, kOld);
    STRUCT_DIB_INFO info;
    HDIB h = ToDib(dib);
    EXPECT_TRUE(CheckDibHeader(*h, info));
    RECT src{0, 0, static_cast<int>(info.nWidth), static_cast<int>(info.nHeight)};
    EXPECT_TRUE(DrawDibToWindow(s, s.ClientRect(), std::move(h), src, nullptr, nMode, dAngle));
    return s;
}

} // namespace

TEST(DibPainter, StretchModeCopiesEqualSizesAndInsetsOthers) {
    auto byXY = [](int x, int y) { return 10 * y + x; };
    CImageSurface s = Paint(4, 3, MakeDib8(4, 3, Ramp(), byXY), DIB_MODE_STRETCH);
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 4; ++x)
            EXPECT_EQ(s.GetPixel(x, y), Of(10 * y + x));
    s = Paint(10, 10, MakeDib8(2, 2, Ramp(), byXY), DIB_MODE_STRETCH);
    EXPECT_EQ(s.GetPixel(1, 1), kOld);
    EXPECT_EQ(s.GetPixel(2, 2), Of(0));
    EXPECT_EQ(s.GetPixel(8, 8), Of(11));
    EXPECT_EQ(s.GetPixel(9, 9), kOld);
}

TEST(DibPainter, CentreModeCentresSmallImagesAndCutsLargeOnes) {
    CImageSurface s =
        Paint(10, 10, MakeDib8(4, 2, Ramp(), [](int x, int) { return x; }), DIB_MODE_CENTRE);
    EXPECT_EQ(s.GetPixel(2, 4), kOld) << "the cell's old content stays around";
    EXPECT_EQ(s.GetPixel(3, 4), Of(0));
    EXPECT_EQ(s.GetPixel(6, 5), Of(3));
    EXPECT_EQ(s.GetPixel(7, 5), kOld);
    EXPECT_EQ(s.GetPixel(3, 6), kOld);
    s = Paint(10, 10, MakeDib8(20, 20, Ramp(), [](int x, int y) { return x + y; }),
              DIB_MODE_CENTRE);
    EXPECT_EQ(s.GetPixel(0, 0), Of(10));
    EXPECT_EQ(s.GetPixel(9, 9), Of(28));
}

TEST(DibPainter, ReduceModeScalesToSevenTenths) {
    CImageSurface s =
        Paint(20, 20, MakeDib8(10, 10, Ramp(), [](int, int) { return 5; }), DIB_MODE_REDUCE);
    EXPECT_EQ(s.GetPixel(5, 5), kOld);
    EXPECT_EQ(s.GetPixel(6, 6), Of(5));
    EXPECT_EQ(s.GetPixel(12, 12), Of(5));
    EXPECT_EQ(s.GetPixel(13, 13), kOld);
    // 100 wide is 70 at 0.7, past the 20 of the cell: the inset shows
    // source columns from (70 - 20) / 1.4 on, 17 / 0.7 of them.
    s = Paint(20, 20, MakeDib8(100, 100, Ramp(), [](int x, int) { return x; }), DIB_MODE_REDUCE);
    EXPECT_EQ(s.GetPixel(1, 10), kOld);
    EXPECT_EQ(s.GetPixel(2, 10), Of(35));
    EXPECT_EQ(s.GetPixel(18, 10), Of(35 + 16 * 24 / 17));
    EXPECT_EQ(s.GetPixel(19, 10), kOld);
}

TEST(DibPainter, FitModeStretchesOverTheCell) {
    CImageSurface s =
        Paint(10, 4, MakeDib8(2, 1, Ramp(), [](int x, int) { return x; }), DIB_MODE_FIT);
    EXPECT_EQ(s.GetPixel(0, 0), Of(0));
    EXPECT_EQ(s.GetPixel(4, 3), Of(0));
    EXPECT_EQ(s.GetPixel(5, 0), Of(1));
    EXPECT_EQ(s.GetPixel(9, 3), Of(1));
}

TEST(DibPainter, TurnedPaintUsesTheTurnedSize) {
    CImageSurface s = Paint(2, 3, MakeDib8(3, 2, Ramp(), [](int x, int y) { return 10 * y + x; }),
                            DIB_MODE_STRETCH, 90);
    EXPECT_EQ(s.GetPixel(0, 0), Of(10));
    EXPECT_EQ(s.GetPixel(1, 2), Of(2));
    // A 24-bit image cannot turn and paints as it is.
    s = Paint(2, 2, MakeDib24(2, 2, [](int x, int) { return x ? RGB(9, 9, 9) : 0; }),
              DIB_MODE_STRETCH, 90);
    EXPECT_EQ(s.GetPixel(1, 0), RGB(9, 9, 9));
}

TEST(DibPainter, PreviewPaintSwapsColoursOnlyThroughTheTable) {
    std::unique_ptr<CPalette> pPalette;
    CImageSurface s(3, 1, kOld);
    std::string dib8 = MakeDib8(3, 1, {RGB(0, 0, 0), RGB(255, 255, 255), RGB(0, 0, 255)},
                                [](int x, int) { return x; });
    ASSERT_TRUE(PaintDibPreview(s, ToDib(dib8), 0, 0, DIB_MODE_STRETCH, pPalette));
    EXPECT_TRUE(pPalette);
    EXPECT_EQ(s.GetPixel(0, 0), RGB(255, 255, 255));
    EXPECT_EQ(s.GetPixel(1, 0), RGB(0, 0, 0));
    EXPECT_EQ(s.GetPixel(2, 0), RGB(0, 0, 255));
    ASSERT_TRUE(PaintDibPreview(s, ToDib(dib8), 1, 0, DIB_MODE_STRETCH, pPalette));
    EXPECT_EQ(s.GetPixel(0, 0), RGB(0, 0, 0));

    std::string dib24 = MakeDib24(3, 1, [](int, int) { return RGB(0, 0, 0); });
    ASSERT_TRUE(PaintDibPreview(s, ToDib(dib24), 0, 0, DIB_MODE_STRETCH, pPalette));
    EXPECT_FALSE(pPalette) << "24 bits have no palette";
    EXPECT_EQ(s.GetPixel(0, 0), RGB(0, 0, 0));

    std::string bad = dib8;
    bad[11] = '\x80';
    EXPECT_FALSE(PaintDibPreview(s, ToDib(bad), 0, 0, DIB_MODE_STRETCH, pPalette));
    EXPECT_FALSE(PaintDibPreview(s, nullptr, 0, 0, DIB_MODE_STRETCH, pPalette));
}
