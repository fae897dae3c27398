// .bmp files through CDib, and the preview that paints them.
#include "ui/Dib.h"

#include "PreviewBuilders.h"
#include "TestHost.h"

#include <gtest/gtest.h>

namespace {

const std::string kDib =
    MakeDib8(2, 2, {RGB(0, 0, 0), RGB(0, 200, 0)}, [](int x, int) { return x; });

// The 14-byte file header, then the DIB with a gap between table and bits.
std::string BmpFile(const std::string& strGap = "") {
    uint32_t nOff = 14 + 40 + 1024 + strGap.size(), nSize = 14 + strGap.size() + kDib.size();
    std::string s = "BM";
    for (uint32_t v : {nSize, 0u, nOff})
        for (int i = 0; i < 4; ++i)
            s += static_cast<char>((v >> (8 * i)) & 0xFF);
    return s + kDib.substr(0, 1064) + strGap + kDib.substr(1064);
}

} // namespace

TEST(Dib, ReadsWritesAndPaintsBmpFiles) {
    CTempDir dir;
    WriteBytes(dir / L"a.bmp", BmpFile());
    WriteBytes(dir / L"gap.bmp", BmpFile("xxxxxx"));
    CDib bmp, gap;
    ASSERT_TRUE(bmp.Read(dir / L"a.bmp"));
    EXPECT_EQ(bmp.Width() * 10 + bmp.Height(), 22);
    ASSERT_TRUE(bmp.Write(dir / L"b.bmp"));
    EXPECT_EQ(ReadBytes(dir / L"b.bmp"), ReadBytes(dir / L"a.bmp"));
    ASSERT_TRUE(gap.Read(dir / L"gap.bmp")) << "bits found by the file header's offset";
    EXPECT_EQ(gap.GetDib()->bytes, bmp.GetDib()->bytes);

    WriteBytes(dir / L"short.bmp", BmpFile().substr(0, 1080));
    WriteBytes(dir / L"notbmp.bmp", "PK" + kDib);
    for (const wchar_t* name : {L"short.bmp", L"notbmp.bmp", L"missing.bmp"}) {
        CDib bad;
        EXPECT_FALSE(bad.Read(dir / name));
        EXPECT_FALSE(bad.Write(dir / L"out.bmp"));
    }

    CImageSurface cell(4, 4, RGB(5, 5, 5));
    CDrawDibPreview preview(dir / L"a.bmp", &cell, 0, 0, 1);
    ASSERT_TRUE(preview.Draw());
    EXPECT_FALSE(preview.m_dib.IsValid()) << "the DIB went to the painter";
    EXPECT_EQ(cell.GetPixel(0, 0), RGB(5, 5, 5));
    EXPECT_EQ(cell.GetPixel(1, 1), RGB(255, 255, 255));
    EXPECT_EQ(cell.GetPixel(2, 2), RGB(0, 200, 0));
    EXPECT_FALSE(CDrawDibPreview(dir / L"short.bmp", &cell, 0, 0, 1).Draw());
}
