// Random, mutated and truncated input to the thumbnail reader, the DIB header check and the slide
// reader.
#include "ui/DibPainter.h"
#include "ui/DwgThumbnail.h"
#include "ui/SlidePainter.h"

#include "PreviewBuilders.h"
#include "TestHost.h"

#include <gtest/gtest.h>
#include <random>

namespace {

std::mt19937 g_rng(20261121);

// One of: random bytes, a cut copy, a copy with a few bytes of its head changed.
std::string Damage(std::string s, int i, size_t nHead) {
    if (i % 4 == 0) {
        s.resize(g_rng() % 300);
        for (char& c : s)
            c = static_cast<char>(g_rng());
    } else if (i % 4 == 1) {
        s.resize(g_rng() % s.size());
    } else {
        for (int n = 0; n < 1 + i % 3; ++n)
            s[g_rng() % std::min(nHead, s.size())] = static_cast<char>(g_rng());
    }
    return s;
}

// Whatever comes in, painting it in any mode must stay inside the cell and end.
void PaintAnyDib(HDIB hDib) {
    CImageSurface cell(120, 90);
    std::unique_ptr<CPalette> pPalette;
    const double angles[] = {0, 90, -90, 180, 33.3};
    PaintDibPreview(cell, std::move(hDib), static_cast<int>(g_rng() % 2), angles[g_rng() % 5],
                    static_cast<int>(g_rng() % 4), pPalette);
}

std::string ValidDib(int i) {
    if (i % 3 == 2)
        return MakeDib24(5, 9, [](int x, int y) { return RGB(x * 40, y * 20, 0); });
    return MakeDib8(
        13, 7, {RGB(0, 0, 0), RGB(255, 0, 0)}, [](int x, int y) { return x ^ y; }, i % 3 == 1);
}

} // namespace

TEST(PreviewFuzz, ThumbnailReaderAndPainterSurviveDamagedFiles) {
    CTempDir dir;
    for (int i = 0; i < 800; ++i) {
        WriteBytes(dir / L"m.dwg", Damage(MakeDwgBytes(ValidDib(i), {1, 1, 2}), i, 120));
        if (HDIB h = ReadDwgThumbnail(dir / L"m.dwg"))
            PaintAnyDib(std::move(h));
    }
}

TEST(PreviewFuzz, HeaderCheckAndPaletteSurviveDamagedDibs) {
    for (int i = 0; i < 3000; ++i) {
        HDIB h = ToDib(Damage(ValidDib(i), i, 48));
        STRUCT_DIB_INFO info;
        if (CheckDibHeader(*h, info)) {
            CPalette palette;
            MakeDibPalette(*h, palette, 0);
            if (HDIB turned = RotateDib(*h, 45))
                PaintAnyDib(std::move(turned));
        }
        PaintAnyDib(std::move(h));
    }
}

TEST(PreviewFuzz, SlideReaderSurvivesDamagedSlides) {
    CSlide sample;
    sample.m_nHighX = 639, sample.m_nHighY = 479;
    for (int i = 0; i < 40; ++i)
        sample.m_vectors.push_back({i * 7, i * 3, i * 7 + (i % 9), 470 - i, i});
    sample.m_fills.push_back({2, 10, {{0, 0}, {100, 0}, {50, 80}}});
    CImageSurface cell(120, 90);
    for (int i = 0; i < 3000; ++i) {
        std::string bytes = Damage(WriteSlide(sample, i % 2), i, 600);
        if (i % 8 == 0) // keep the identification so that the records get read
            bytes.replace(0, std::min<size_t>(17, bytes.size()), WriteSlide(sample), 0, 17);
        CSlide slide;
        if (ReadSlide(bytes, slide))
            PaintSlide(cell, slide, 0);
        else
            EXPECT_TRUE(slide.m_vectors.empty() && slide.m_fills.empty());
    }
}
