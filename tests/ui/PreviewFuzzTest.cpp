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

std::string Mutate(std::string s, std::mt19937& rng, size_t nRange) {
    nRange = std::min(nRange, s.size());
    int nFlips = 1 + static_cast<int>(rng() % 4);
    for (int i = 0; i < nFlips && nRange; ++i)
        s[rng() % nRange] = static_cast<char>(rng());
    return s;
}

std::string Random(std::mt19937& rng, size_t nMax) {
    std::string s(rng() % nMax, '\0');
    for (char& c : s)
        c = static_cast<char>(rng());
    return s;
}

// Whatever comes in, painting it must stay inside the cell and end.
void PaintAnyDib(HDIB hDib, std::mt19937& rng) {
    CImageSurface cell(120, 90);
    std::unique_ptr<CPalette> pPalette;
    double angles[] = {0, 90, -90, 180, 33.3};
    PaintDibPreview(cell, std::move(hDib), static_cast<int>(rng() % 2), angles[rng() % 5],
                    static_cast<int>(rng() % 4), pPalette);
}

std::string ValidDib(std::mt19937& rng) {
    if (rng() % 2)
        return MakeDib8(
            13, 7, {RGB(0, 0, 0), RGB(255, 0, 0)}, [](int x, int y) { return x ^ y; },
            rng() % 4 == 0);
    return MakeDib24(5, 9, [](int x, int y) { return RGB(x * 40, y * 20, 0); });
}

} // namespace

TEST(PreviewFuzz, ThumbnailReaderSurvivesDamagedFiles) {
    std::mt19937 rng(20261121);
    CTempDir dir;
    std::string good = MakeDwgBytes(ValidDib(rng), {1, 1, 2});
    for (size_t n = 0; n <= good.size(); n += 7) {
        WriteBytes(dir / L"t.dwg", good.substr(0, n));
        if (HDIB h = ReadDwgThumbnail(dir / L"t.dwg"))
            PaintAnyDib(std::move(h), rng);
    }
    for (int i = 0; i < 600; ++i) {
        std::string bytes = i % 5 == 0 ? Random(rng, 300) : Mutate(good, rng, 120);
        WriteBytes(dir / L"m.dwg", bytes);
        if (HDIB h = ReadDwgThumbnail(dir / L"m.dwg"))
            PaintAnyDib(std::move(h), rng);
    }
}

TEST(PreviewFuzz, HeaderCheckAndPaletteSurviveDamagedDibs) {
    std::mt19937 rng(7);
    for (int i = 0; i < 3000; ++i) {
        std::string dib = ValidDib(rng);
        std::string bytes = i % 4 == 0   ? Random(rng, 200)
                            : i % 4 == 1 ? dib.substr(0, rng() % dib.size())
                                         : Mutate(dib, rng, 48);
        HDIB h = ToDib(bytes);
        STRUCT_DIB_INFO info;
        if (CheckDibHeader(*h, info)) {
            CPalette palette;
            MakeDibPalette(*h, palette, 0);
            if (HDIB turned = RotateDib(*h, 45))
                PaintAnyDib(std::move(turned), rng);
        }
        PaintAnyDib(std::move(h), rng);
    }
}

TEST(PreviewFuzz, SlideReaderSurvivesDamagedSlides) {
    std::mt19937 rng(99);
    CSlide sample;
    sample.m_nHighX = 639, sample.m_nHighY = 479;
    for (int i = 0; i < 40; ++i)
        sample.m_vectors.push_back({i * 7, i * 3, i * 7 + (i % 9), 470 - i, i});
    sample.m_fills.push_back({2, 10, {{0, 0}, {100, 0}, {50, 80}}});
    std::string good = WriteSlide(sample, false);
    CImageSurface cell(120, 90);
    for (int i = 0; i < 3000; ++i) {
        std::string bytes = i % 4 == 0 ? Random(rng, 400)
                            : i % 4 == 1
                                ? good.substr(0, rng() % good.size())
                                : Mutate(i % 2 ? good : WriteSlide(sample, true), rng, good.size());
        if (i % 8 == 0)
            bytes.replace(0, std::min<size_t>(17, bytes.size()), good.substr(0, 17));
        CSlide slide;
        if (ReadSlide(bytes, slide))
            PaintSlide(cell, slide, 0);
        else
            EXPECT_TRUE(slide.m_vectors.empty() && slide.m_fills.empty());
    }
}
