// Writes PNGs of painted cells into the build tree for a person to look at, and reads them back.
#include "ui/DrawDwgPreview.h"
#include "ui/SlidePainter.h"

#include "PreviewBuilders.h"
#include "TestHost.h"
#include "base/FileSystem.h"
#include "base/SysPath.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {

std::string OutDir() {
    std::wstring strDir = FromOsPath(QM_PNG_OUT);
    FsCreateDirectory(strDir);
    return QM_PNG_OUT;
}

void WriteAndCompare(const CImageSurface& cell, const std::string& strName) {
    std::string strPath = OutDir() + "/" + strName;
    ASSERT_TRUE(WritePng(cell, strPath));
    CImageSurface back;
    ASSERT_TRUE(ReadPng(strPath, back));
    ASSERT_EQ(back.Width(), cell.Width());
    ASSERT_EQ(back.Height(), cell.Height());
    for (int y = 0; y < cell.Height(); ++y)
        for (int x = 0; x < cell.Width(); ++x)
            ASSERT_EQ(back.GetPixel(x, y), cell.GetPixel(x, y)) << strName;
}

// A panel-like slide: outline, a row of round cutouts, a filled label plate.
CSlide PanelSlide() {
    std::vector<STRUCT_VIEW_VECTOR> v = {
        {0, 0, 600, 0, 7}, {600, 0, 600, 400, 7}, {600, 400, 0, 400, 7}, {0, 400, 0, 0, 7}};
    for (int h = 0; h < 5; ++h)
        for (int i = 0; i < 24; ++i) {
            double a = i * 3.14159265 / 12, b = (i + 1) * 3.14159265 / 12;
            double cx = 80 + h * 110, cy = 260;
            v.push_back({cx + 35 * std::cos(a), cy + 35 * std::sin(a), cx + 35 * std::cos(b),
                         cy + 35 * std::sin(b), 1 + h});
        }
    CSlide s;
    MakeViewSlide(v, -20, -20, 620, 420, 800, 600, s);
    s.m_fills.push_back({3, 0, {{200, 80}, {600, 80}, {600, 160}, {200, 160}}});
    return s;
}

} // namespace

TEST(PreviewPng, WritesPaintedCells) {
    CImageSurface cell(120, 90);
    PaintSlide(cell, PanelSlide(), 0x828282);
    WriteAndCompare(cell, "slide-selected.png");
    PaintSlide(cell, PanelSlide(), 0);
    WriteAndCompare(cell, "slide.png");

    CTempDir dir;
    WriteBytes(dir / L"a.dwg",
               MakeDwgBytes(MakeDib8(80, 60, {RGB(0, 0, 0), RGB(255, 255, 0), RGB(0, 255, 255)},
                                     [](int x, int y) { return (x / 10 + y / 10) % 3; })));
    cell.Fill(RGB(200, 200, 200));
    ASSERT_TRUE(ShowDwgPreviewCentred(dir / L"a.dwg", &cell, 0, 0));
    WriteAndCompare(cell, "thumbnail-built.png");

    std::wstring strSample = FromOsPath(QM_DWG_SAMPLES) + L"\\example_2000.dwg";
    if (ReadBytes(strSample).empty())
        GTEST_SKIP() << "no sample drawings at " << QM_DWG_SAMPLES;
    for (int nMode = 0; nMode < 4; ++nMode) {
        cell.Fill(RGB(200, 200, 200));
        ASSERT_TRUE(ShowDwgPreview(strSample, &cell, 0, 0, nMode));
        WriteAndCompare(cell, "thumbnail-example_2000-mode" + std::to_string(nMode) + ".png");
    }
    cell.Fill(RGB(200, 200, 200));
    ASSERT_TRUE(ShowDwgPreview(strSample, &cell, 1, 30, 3));
    WriteAndCompare(cell, "thumbnail-example_2000-turned30-kept.png");
}
