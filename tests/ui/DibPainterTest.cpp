// The four painting modes and what paints without a colour table.
#include "ui/DibPainter.h"

#include "PreviewBuilders.h"

#include <gtest/gtest.h>

namespace {

constexpr COLORREF kOld = RGB(1, 2, 3); // what the cell held before the paint

// Index i is a distinct colour, so a painted pixel tells where in the source it came from.
COLORREF Of(int i) {
    return RGB(i, 255 - i, 100);
}

CImageSurface Paint(int nCellW, int nCellH, int w, int h, int (*index)(int, int), int nMode,
                    double dAngle = 0) {
    std::vector<COLORREF> ramp;
    for (int i = 0; i < 256; ++i)
        ramp.push_back(Of(i));
    CImageSurface s(nCellW, nCellH, kOld);
    EXPECT_TRUE(DrawDibToWindow(s, s.ClientRect(), ToDib(MakeDib8(w, h, ramp, index)), {0, 0, w, h},
                                nullptr, nMode, dAngle));
    return s;
}
int ByXY(int x, int y) {
    return 10 * y + x;
}
int ByX(int x, int) {
    return x;
}

} // namespace

TEST(DibPainter, StretchModeCopiesEqualSizesAndInsetsOthersFitModeFills) {
    CImageSurface s = Paint(4, 3, 4, 3, ByXY, DIB_MODE_STRETCH);
    EXPECT_EQ(s.GetPixel(3, 2), Of(23));
    s = Paint(10, 10, 2, 2, ByXY, DIB_MODE_STRETCH);
    EXPECT_EQ(s.GetPixel(1, 1), kOld);
    EXPECT_EQ(s.GetPixel(8, 8), Of(11));
    EXPECT_EQ(s.GetPixel(9, 9), kOld);
    s = Paint(10, 4, 2, 1, ByX, DIB_MODE_FIT);
    EXPECT_EQ(s.GetPixel(4, 3), Of(0));
    EXPECT_EQ(s.GetPixel(5, 0), Of(1));
}

TEST(DibPainter, CentreModeCentresSmallImagesAndCutsLargeOnes) {
    CImageSurface s = Paint(10, 10, 4, 2, ByX, DIB_MODE_CENTRE);
    EXPECT_EQ(s.GetPixel(2, 4), kOld) << "the cell's old content stays around";
    EXPECT_EQ(s.GetPixel(3, 4), Of(0));
    EXPECT_EQ(s.GetPixel(7, 5), kOld);
    s = Paint(
        10, 10, 20, 20, [](int x, int y) { return x + y; }, DIB_MODE_CENTRE);
    EXPECT_EQ(s.GetPixel(0, 0), Of(10));
    EXPECT_EQ(s.GetPixel(9, 9), Of(28));
}

TEST(DibPainter, ReduceModeScalesToSevenTenths) {
    CImageSurface s = Paint(20, 20, 10, 10, ByX, DIB_MODE_REDUCE);
    EXPECT_EQ(s.GetPixel(5, 5), kOld);
    EXPECT_EQ(s.GetPixel(12, 12), Of(8));
    // 100 wide is 70 at 0.7, past the 20 of the cell: the inset shows
    // source columns from (70 - 20) / 1.4 on, 17 / 0.7 of them.
    s = Paint(20, 20, 100, 100, ByX, DIB_MODE_REDUCE);
    EXPECT_EQ(s.GetPixel(1, 1), kOld);
    EXPECT_EQ(s.GetPixel(2, 10), Of(35));
    EXPECT_EQ(s.GetPixel(18, 10), Of(35 + 16 * 24 / 17));
    EXPECT_EQ(s.GetPixel(19, 10), kOld);
}

TEST(DibPainter, TurnsEightBitsAndPaintsTwentyFourUnturnedWithoutPalette) {
    CImageSurface s = Paint(2, 3, 3, 2, ByXY, DIB_MODE_STRETCH, 90);
    EXPECT_EQ(s.GetPixel(0, 0), Of(10));
    EXPECT_EQ(s.GetPixel(1, 2), Of(2));
    auto pPalette = std::make_unique<CPalette>();
    s.Create(2, 2, kOld);
    std::string dib24 = MakeDib24(2, 2, [](int x, int) { return x ? RGB(9, 9, 9) : 0; });
    ASSERT_TRUE(PaintDibPreview(s, ToDib(dib24), 0, 90, DIB_MODE_STRETCH, pPalette));
    EXPECT_FALSE(pPalette);
    EXPECT_EQ(s.GetPixel(0, 0), RGB(0, 0, 0)) << "black stays black without a table";
    EXPECT_EQ(s.GetPixel(1, 0), RGB(9, 9, 9));
    EXPECT_FALSE(PaintDibPreview(s, nullptr, 0, 0, DIB_MODE_STRETCH, pPalette));
}
