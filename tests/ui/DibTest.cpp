// .bmp files through CDib, and the preview that paints them.
#include "ui/Dib.h"

#include "PreviewBuilders.h"
#include "TestHost.h"

#include <gtest/gtest.h>

namespace {

std::string BmpFile(const std::string& dib, size_t nOffBits, const std::string& gap = "") {
    std::string s = "BM";
    auto put32 = [&](uint32_t v) {
        for (int i = 0; i < 4; ++i)
            s += static_cast<char>((v >> (8 * i)) & 0xFF);
    };
    put32(static_cast<uint32_t>(14 + gap.size() + dib.size()));
    put32(0);
    put32(static_cast<uint32_t>(nOffBits));
    std::string table = dib.substr(0, 40 + 1024);
    return s + table + gap + dib.substr(table.size());
}

} // namespace

TEST(Dib, WritesAndReadsBmpFiles) {
    CTempDir dir;
    std::string dib =
        MakeDib8(3, 2, {RGB(0, 0, 0), RGB(0, 200, 0)}, [](int x, int) { return x & 1; });
    WriteBytes(dir / L"a.bmp", BmpFile(dib, 14 + 40 + 1024));
    CDib bmp;
    ASSERT_TRUE(bmp.Read(dir / L"a.bmp"));
    EXPECT_EQ(bmp.Width(), 3);
    EXPECT_EQ(bmp.Height(), 2);
    ASSERT_TRUE(bmp.GetPalette());
    EXPECT_EQ(bmp.GetPalette()->GetLogPalette().palPalEntry[0].peRed, 0) << "read as it is";
    ASSERT_TRUE(bmp.Write(dir / L"b.bmp"));
    EXPECT_EQ(ReadBytes(dir / L"b.bmp"), ReadBytes(dir / L"a.bmp"));

    // Bits placed behind a gap are found by the file header's offset.
    WriteBytes(dir / L"gap.bmp", BmpFile(dib, 14 + 40 + 1024 + 6, "xxxxxx"));
    CDib gap;
    ASSERT_TRUE(gap.Read(dir / L"gap.bmp"));
    EXPECT_EQ(gap.GetDib()->bytes, ToDib(dib)->bytes);

    WriteBytes(dir / L"short.bmp", BmpFile(dib, 14 + 40 + 1024).substr(0, 1080));
    WriteBytes(dir / L"notbmp.bmp", "PK" + dib);
    for (const wchar_t* name : {L"short.bmp", L"notbmp.bmp", L"missing.bmp"}) {
        CDib bad;
        EXPECT_FALSE(bad.Read(dir / name));
        EXPECT_FALSE(bad.IsValid());
        EXPECT_FALSE(bad.Write(dir / L"out.bmp"));
    }
}

TEST(Dib, PreviewPaintsABmpLikeAThumbnail) {
    CTempDir dir;
    std::string dib = MakeDib8(2, 2, {RGB(0, 0, 0), RGB(0, 200, 0)}, [](int x, int) { return x; });
    WriteBytes(dir / L"a.bmp", BmpFile(dib, 14 + 40 + 1024));
    CImageSurface cell(4, 4, RGB(5, 5, 5));
    CDrawDibPreview preview(dir / L"a.bmp", &cell, 0, 0, 1);
    ASSERT_TRUE(preview.Draw());
    EXPECT_FALSE(preview.m_dib.IsValid()) << "the DIB went to the painter";
    EXPECT_EQ(cell.GetPixel(0, 0), RGB(5, 5, 5));
    EXPECT_EQ(cell.GetPixel(1, 1), RGB(255, 255, 255));
    EXPECT_EQ(cell.GetPixel(2, 2), RGB(0, 200, 0));
    CDrawDibPreview missing(dir / L"none.bmp", &cell, 0, 0, 1);
    EXPECT_FALSE(missing.Draw());
}
