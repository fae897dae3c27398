// DIB headers, the palette with its black-and-white swap, and the turned copy.
#include "ui/DibFormat.h"

#include "PreviewBuilders.h"

#include <gtest/gtest.h>

namespace {

const std::vector<COLORREF> kTable = {RGB(0, 0, 0), RGB(255, 255, 255), RGB(10, 20, 30),
                                      RGB(254, 255, 255)};

HDIB Dib8(int w, int h, const std::function<int(int, int)>& pixel, bool bCore = false) {
    return ToDib(MakeDib8(w, h, kTable, pixel, bCore));
}

// Index at (x, y), y from the top, of an 8-bit DIB.
int IndexAt(const DIB_MEMORY& dib, int x, int y) {
    STRUCT_DIB_INFO info;
    EXPECT_TRUE(CheckDibHeader(dib, info));
    return dib.bytes[info.nBitsOffset + (info.nHeight - 1 - y) * info.nStride + x];
}

} // namespace

TEST(DibFormat, HeaderKindsAndSizeLimits) {
    STRUCT_DIB_INFO info;
    HDIB h = Dib8(5, 3, [](int, int) { return 0; });
    ASSERT_TRUE(CheckDibHeader(*h, info));
    EXPECT_EQ(info.nStride * 10000 + info.nBitsOffset, 8u * 10000 + 40 + 1024);
    h = Dib8(
        5, 3, [](int, int) { return 0; }, true);
    ASSERT_TRUE(CheckDibHeader(*h, info));
    EXPECT_TRUE(info.bCoreHeader);
    EXPECT_EQ(info.nWidth * 10000 + info.nBitsOffset, 5u * 10000 + 12 + 768);
    EXPECT_TRUE(IsDibPaintable(*h, info));
    h->bytes.resize(info.nBitsOffset + 8); // the last two rows are missing
    EXPECT_FALSE(IsDibPaintable(*h, info));
    h->bytes.resize(8);
    EXPECT_FALSE(CheckDibHeader(*h, info));
    h = ToDib(MakeDib24(2, 2, [](int, int) { return RGB(1, 2, 3); }));
    h->bytes[11] = '\x80'; // height 2^31 and more
    EXPECT_FALSE(CheckDibHeader(*h, info));
}

TEST(DibFormat, PaletteSwapsBlackAndWhiteUnlessKept) {
    HDIB h = Dib8(1, 1, [](int, int) { return 0; });
    CPalette palette;
    const std::vector<PALETTEENTRY>& e = palette.GetLogPalette().palPalEntry;
    ASSERT_TRUE(MakeDibPalette(*h, palette, 1));
    EXPECT_EQ(palette.GetLogPalette().palVersion, 0x300);
    ASSERT_EQ(e.size(), 256u);
    EXPECT_EQ(e[0].peRed + e[2].peBlue, 30);
    ASSERT_TRUE(MakeDibPalette(*h, palette, 0));
    EXPECT_EQ(e[0].peRed + e[0].peGreen + e[0].peBlue, 765);
    EXPECT_EQ(e[1].peRed + e[1].peGreen + e[1].peBlue, 0);
    EXPECT_EQ(e[3].peRed, 254) << "only pure white turns black";
    EXPECT_EQ(h->bytes[40], 255) << "the DIB's own table changes too";
    // Under a core header a sum above 764 counts as white.
    ASSERT_TRUE(MakeDibPalette(*Dib8(
                                   1, 1, [](int, int) { return 0; }, true),
                               palette, 0));
    EXPECT_EQ(e[3].peRed, 0);
    EXPECT_FALSE(MakeDibPalette(*ToDib(MakeDib24(1, 1, [](int, int) { return 0u; })), palette, 0));
    h->bytes[33] = 0x10; // 4096 colours used: the table runs past the block
    EXPECT_FALSE(MakeDibPalette(*h, palette, 0));
}

TEST(DibFormat, TurnsQuarterTurnsExactlyAndOtherAnglesIntoALargerBox) {
    // 3 x 2, index = 10 * y + x; a quarter turn clockwise.
    HDIB t = RotateDib(*Dib8(3, 2, [](int x, int y) { return 10 * y + x; }), 90);
    STRUCT_DIB_INFO info;
    ASSERT_TRUE(t && CheckDibHeader(*t, info));
    EXPECT_EQ(info.nWidth * 10 + info.nHeight, 23u);
    EXPECT_EQ(info.nStride, 4u);
    for (int x = 0; x < 2; ++x)
        for (int y = 0; y < 3; ++y)
            EXPECT_EQ(IndexAt(*t, x, y), 10 * (1 - x) + y) << x << "," << y;
    t = RotateDib(*Dib8(10, 10, [](int, int) { return 3; }), 45);
    ASSERT_TRUE(t && CheckDibHeader(*t, info));
    EXPECT_EQ(info.nWidth, 14u); // 10 * sqrt(2) + 0.5
    EXPECT_EQ(IndexAt(*t, 0, 0) * 10 + IndexAt(*t, 7, 7), 3);
    EXPECT_FALSE(RotateDib(*ToDib(MakeDib24(2, 2, [](int, int) { return 0u; })), 45));
}
