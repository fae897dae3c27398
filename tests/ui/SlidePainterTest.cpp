// Slides painted into cells: known pixels, fitting with the aspect kept, colours, bad files.
#include "ui/SlidePainter.h"

#include "TestHost.h"

#include <gtest/gtest.h>

namespace {

constexpr COLORREF kGrey = 0x828282;

// A 10 x 10 slide: red along the bottom, green up the middle, a blue square top left.
CSlide KnownSlide(double dAspect = 1.0) {
    CSlide s;
    s.m_nHighX = s.m_nHighY = 10;
    s.m_dAspect = dAspect;
    s.m_vectors = {{0, 0, 10, 0, 1}, {5, 0, 5, 10, 3}};
    s.m_fills = {{5, 2, {{1, 6}, {4, 6}, {4, 9}, {1, 9}}}};
    return s;
}

} // namespace

TEST(SlidePainter, PaintsAKnownSlideToKnownPixelsWithTheAspectKept) {
    CImageSurface cell(11, 11, RGB(9, 9, 9));
    PaintSlide(cell, KnownSlide(), kGrey);
    for (int x : {0, 4, 6, 10})
        EXPECT_EQ(cell.GetPixel(x, 10), RGB(255, 0, 0)) << x;
    for (int y : {0, 9})
        EXPECT_EQ(cell.GetPixel(5, y), RGB(0, 255, 0)) << y;
    for (int xy : {1, 3})
        EXPECT_EQ(cell.GetPixel(xy, xy), RGB(0, 0, 255));
    for (int xy : {0, 4, 8})
        EXPECT_EQ(cell.GetPixel(xy, xy / 2), kGrey);

    CImageSurface wide(21, 11);
    PaintSlide(wide, KnownSlide(), 0);
    EXPECT_EQ(wide.GetPixel(10, 3), RGB(0, 255, 0)) << "centred";
    EXPECT_EQ(wide.GetPixel(4, 10), 0u);
    EXPECT_EQ(wide.GetPixel(5, 10), RGB(255, 0, 0));
    // A screen twice as wide as high with as many dots each way: y dots are half as long.
    PaintSlide(wide, KnownSlide(2.0), 0);
    EXPECT_EQ(wide.GetPixel(0, 10), RGB(255, 0, 0));
    EXPECT_EQ(wide.GetPixel(20, 10), RGB(255, 0, 0));
    EXPECT_EQ(wide.GetPixel(10, 0), RGB(0, 255, 0));
}

TEST(SlidePainter, UsesTheIndexPaletteWithWhiteTurningBlackOnLightCells) {
    const std::pair<int, COLORREF> known[] = {
        {1, RGB(255, 0, 0)},      {5, RGB(0, 0, 255)},      {8, RGB(128, 128, 128)},
        {22, RGB(204, 51, 0)},    {25, RGB(153, 95, 76)},   {27, RGB(127, 79, 63)},
        {41, RGB(255, 223, 127)}, {140, RGB(0, 191, 255)},  {239, RGB(76, 38, 57)},
        {250, RGB(51, 51, 51)},   {255, RGB(255, 255, 255)}};
    for (const auto& [nIndex, colour] : known)
        EXPECT_EQ(AciColour(nIndex), colour) << nIndex;
    CSlide s = KnownSlide();
    s.m_vectors[0].nColour = 7;
    CImageSurface cell(11, 11);
    PaintSlide(cell, s, 0);
    EXPECT_EQ(cell.GetPixel(0, 10), RGB(255, 255, 255));
    PaintSlide(cell, s, RGB(240, 240, 240));
    EXPECT_EQ(cell.GetPixel(0, 10), RGB(0, 0, 0));
}

TEST(SlidePainter, CommonEndpointRecordsAreReadFromTheFileAndDrawn) {
    // 10 x 10, aspect 1: a red vector from (2, 5) to (0, 5), whose from point
    // two common-endpoint records continue to (6, 5) and on to (10, 5).
    std::string bytes("AutoCAD Slide\r\n\x1a\0\x56\x02\x0a\0\x0a\0\x80\x96\x98\0\0\0\x34\x12", 31);
    bytes += std::string("\x01\xff\x02\0\x05\0\0\0\x05\0", 10);
    bytes += std::string("\x04\xfe\0\x04\xfe\0\0\xfc", 8);
    CTempDir dir;
    WriteBytes(dir / L"common.sld", bytes);
    CImageSurface cell(11, 11, kGrey);
    ASSERT_TRUE(PaintSlideFile(cell, dir / L"common.sld", kGrey));
    for (int x = 0; x <= 10; ++x)
        EXPECT_EQ(cell.GetPixel(x, 5), RGB(255, 0, 0)) << x;
    EXPECT_EQ(cell.GetPixel(5, 4), kGrey);
}

TEST(SlidePainter, BadOrMissingSlidesPaintTheBackgroundOnly) {
    CTempDir dir;
    std::string good = WriteSlide(KnownSlide());
    WriteBytes(dir / L"cut.sld", good.substr(0, good.size() - 3));
    WriteBytes(dir / L"junk.sld", std::string(100, '\xFB'));
    CImageSurface cell(11, 11, RGB(1, 1, 1)), grey(11, 11, kGrey);
    CSlideView view;
    view.SetBackground(kGrey);
    EXPECT_TRUE(view.Paint(cell)) << "an empty name is an empty cell";
    for (const wchar_t* name : {L"cut.sld", L"junk.sld", L"missing.sld"}) {
        view.SetSlideFile(dir / name);
        EXPECT_FALSE(view.Paint(cell));
        EXPECT_TRUE(std::equal(cell.Bytes(), cell.Bytes() + 11 * 11 * 4, grey.Bytes()));
    }
    WriteBytes(dir / L"good.sld", good);
    view.SetSlideFile(dir / L"good.sld");
    EXPECT_TRUE(view.Paint(cell));
    EXPECT_EQ(cell.GetPixel(5, 5), RGB(0, 255, 0));
}
