// DIB headers, the palette with its black-and-white swap, and the turned copy.
#include "ui/DibFormat.h"

#include "PreviewBuilders.h"

#include <gtest/gtest.h>

namespace {

const std::vector<COLORREF> kTable = {RGB(0, 0, 0), RGB(255, 255, 255), RGB(10, 20, 30),
                                      RGB(254, 255, 255)};

// Index at (x, y), y from the top, of an 8-bit DIB.
int IndexAt(const DIB_MEMORY& dib, int x, int y) {
    STRUCT_DIB_INFO info;
    EXPECT_TRUE(CheckDibHeader(dib, info));
    return dib.bytes[info.nBitsOffset + (info.nHeight - 1 - y) * info.nStride + x];
}

} // namespace

TEST(DibFormat, HeaderKindsAndSizeLimits) {
    STRUCT_DIB_INFO info;
    HDIB h = ToDib(MakeDib8(5, 3, kTable, [](int, int) { return 0; }));
    ASSERT_TRUE(CheckDibHeader(*h, info));
    EXPECT_FALSE(info.bCoreHeader);
    EXPECT_EQ(info.nWidth, 5u);
    EXPECT_EQ(info.nStride, 8u);
    EXPECT_EQ(info.nBitsOffset, 40u + 1024u);
    EXPECT_TRUE(IsDibPaintable(*h, info));

    h = ToDib(MakeDib8(
        5, 3, kTable, [](int, int) { return 0; }, true));
    ASSERT_TRUE(CheckDibHeader(*h, info));
    EXPECT_TRUE(info.bCoreHeader);
    EXPECT_EQ(info.nHeight, 3u);
    EXPECT_EQ(info.nBitsOffset, 12u + 768u);

    h->bytes.resize(info.nBitsOffset + 8); // the last two rows are missing
    EXPECT_FALSE(IsDibPaintable(*h, info));
    h->bytes.resize(8);
    EXPECT_FALSE(CheckDibHeader(*h, info));

    h = ToDib(MakeDib24(2, 2, [](int, int) { return RGB(1, 2, 3); }));
    h->bytes[11] = '\x80'; // height 2^31 and more
    EXPECT_FALSE(CheckDibHeader(*h, info));
}

TEST(DibFormat, PaletteSwapsBlackAndWhiteUnlessKept) {
    HDIB h = ToDib(MakeDib8(1, 1, kTable, [](int, int) { return 0; }));
    CPalette kept;
    ASSERT_TRUE(MakeDibPalette(*h, kept, 1));
    EXPECT_EQ(kept.GetLogPalette().palVersion, 0x300);
    ASSERT_EQ(kept.GetLogPalette().palPalEntry.size(), 256u);
    EXPECT_EQ(kept.GetLogPalette().palPalEntry[2].peBlue, 30);
    EXPECT_EQ(h->bytes[40], 0);

    CPalette swapped;
    ASSERT_TRUE(MakeDibPalette(*h, swapped, 0));
    const auto& e = swapped.GetLogPalette().palPalEntry;
    EXPECT_EQ(e[0].peRed + e[0].peGreen + e[0].peBlue, 765);
    EXPECT_EQ(e[1].peRed + e[1].peGreen + e[1].peBlue, 0);
    EXPECT_EQ(e[3].peRed, 254) << "only pure white turns black";
    EXPECT_EQ(h->bytes[40], 255) << "the DIB's own table changes too";

    // Under a core header a sum above 764 counts as white.
    h = ToDib(MakeDib8(
        1, 1, kTable, [](int, int) { return 0; }, true));
    ASSERT_TRUE(MakeDibPalette(*h, swapped, 0));
    EXPECT_EQ(swapped.GetLogPalette().palPalEntry[3].peRed, 0);

    h = ToDib(MakeDib24(1, 1, [](int, int) { return RGB(0, 0, 0); }));
    EXPECT_FALSE(MakeDibPalette(*h, swapped, 0));
    h = ToDib(MakeDib8(1, 1, kTable, [](int, int) { return 0; }));
    h->bytes[33] = 0x10; // 4096 colours used: the table runs past the block
    EXPECT_FALSE(MakeDibPalette(*h, swapped, 0));
}

TEST(DibFormat, QuarterTurnsKeepEveryPixel) {
    // 3 x 2, index = 10 * y + x.
    HDIB h = ToDib(MakeDib8(3, 2, kTable, [](int x, int y) { return 10 * y + x; }));
    HDIB t = RotateDib(*h, 90);
    ASSERT_TRUE(t);
    STRUCT_DIB_INFO info;
    ASSERT_TRUE(CheckDibHeader(*t, info));
    EXPECT_EQ(info.nWidth, 2u);
    EXPECT_EQ(info.nHeight, 3u);
    EXPECT_EQ(info.nStride, 4u);
    for (int x = 0; x < 2; ++x)
        for (int y = 0; y < 3; ++y)
            EXPECT_EQ(IndexAt(*t, x, y), 10 * (1 - x) + y) << x << "," << y;

    HDIB half = RotateDib(*h, 180);
    for (int x = 0; x < 3; ++x)
        for (int y = 0; y < 2; ++y)
            EXPECT_EQ(IndexAt(*half, x, y), 10 * (1 - y) + (2 - x));
    HDIB back = RotateDib(*RotateDib(*h, -90), 90);
    EXPECT_EQ(back->bytes, RotateDib(*h, 360)->bytes);
    EXPECT_EQ(IndexAt(*back, 2, 1), 12);
}

TEST(DibFormat, OddAnglesGrowTheBoxAndFillWithIndexZero) {
    HDIB h = ToDib(MakeDib8(10, 10, kTable, [](int, int) { return 3; }));
    HDIB t = RotateDib(*h, 45);
    ASSERT_TRUE(t);
    STRUCT_DIB_INFO info;
    ASSERT_TRUE(CheckDibHeader(*t, info));
    EXPECT_EQ(info.nWidth, 14u); // 10 * sqrt(2) + 0.5
    EXPECT_EQ(info.nHeight, 14u);
    EXPECT_EQ(IndexAt(*t, 0, 0), 0);
    EXPECT_EQ(IndexAt(*t, 7, 7), 3);
    EXPECT_FALSE(RotateDib(*ToDib(MakeDib24(2, 2, [](int, int) { return 0u; })), 45));
}
