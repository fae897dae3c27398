// Painting DWG thumbnails into cells end to end, and the host's preview maker.
#include "ui/DrawDwgPreview.h"

#include "PreviewBuilders.h"
#include "TestHost.h"
#include "host/DrawingPreview.h"

#include <gtest/gtest.h>

namespace {

constexpr COLORREF kOld = RGB(7, 7, 7);

// A drawing made on a black screen: black ground, one red pixel in the middle.
std::string BlackScreenDwg() {
    return MakeDwgBytes(MakeDib8(5, 3, {RGB(0, 0, 0), RGB(255, 0, 0)},
                                 [](int x, int y) { return x == 2 && y == 1; }),
                        {1, 1, 2});
}

class CFakePreviewMaker : public IDrawingPreview {
public:
    int MakeDrawingPreview(AcDbDatabase* pDb, int nFlags) override {
        m_pDb = pDb, m_nFlags = nFlags;
        return 0;
    }
    AcDbDatabase* m_pDb = nullptr;
    int m_nFlags = -1;
};

} // namespace

TEST(DrawDwgPreview, PaintsTheThumbnailOnAWhiteCellUnlessColoursAreKept) {
    CTempDir dir;
    WriteBytes(dir / L"a.dwg", BlackScreenDwg());
    CImageSurface cell(9, 7, kOld);
    ASSERT_TRUE(ShowDwgPreviewCentred(dir / L"a.dwg", &cell, 0, 0));
    EXPECT_EQ(cell.GetPixel(1, 1), kOld);
    EXPECT_EQ(cell.GetPixel(2, 2), RGB(255, 255, 255));
    EXPECT_EQ(cell.GetPixel(4, 3), RGB(255, 0, 0));
    ASSERT_TRUE(ShowDwgPreview(dir / L"a.dwg", &cell, 1, 0, 1));
    EXPECT_EQ(cell.GetPixel(2, 2), RGB(0, 0, 0));
    // The other entry points differ only in the mode.
    CImageSurface fitted(10, 6, kOld), stretched(10, 6, kOld), reduced(10, 6, kOld);
    ASSERT_TRUE(ShowDwgPreviewFitted(dir / L"a.dwg", &fitted, 1, 0));
    EXPECT_EQ(fitted.GetPixel(4, 2), RGB(255, 0, 0));
    EXPECT_TRUE(ShowDwgPreviewStretched(dir / L"a.dwg", &stretched, 1, 0));
    EXPECT_EQ(stretched.GetPixel(1, 1), kOld);
    EXPECT_TRUE(ShowDwgPreviewReduced(dir / L"a.dwg", &reduced, 1, 0));
    EXPECT_EQ(reduced.GetPixel(0, 0), kOld);
}

TEST(DrawDwgPreview, ADrawingWithoutThumbnailLeavesTheCellAlone) {
    CTempDir dir;
    WriteBytes(dir / L"none.dwg", MakeDwgBytes("", {1, 1, 1}));
    std::string badHeader = BlackScreenDwg();
    badHeader[40 + 21 + 27 + 80 + 80 + 11] = '\x80'; // image height of 2^31 and more
    WriteBytes(dir / L"bad.dwg", badHeader);
    CImageSurface cell(9, 7, kOld);
    for (const wchar_t* name : {L"none.dwg", L"bad.dwg", L"missing.dwg"}) {
        CDrawDwgPreview preview(dir / name, &cell, 0, 0, 1);
        EXPECT_FALSE(preview.Draw());
        EXPECT_FALSE(preview.m_hDib);
    }
    EXPECT_EQ(cell.GetPixel(4, 3), kOld);
}

TEST(DrawDwgPreview, MakeDrawingPreviewGoesThroughTheHost) {
    auto* pDb = reinterpret_cast<AcDbDatabase*>(0x1000);
    EXPECT_EQ(MakeDrawingPreview(pDb), 3) << "no host";
    CTestHost host;
    EXPECT_EQ(MakeDrawingPreview(pDb), 3) << "a host without a preview maker";
    CFakePreviewMaker maker;
    HOST_SERVICES services = GetHostServices();
    services.pDrawingPreview = &maker;
    SetHostServices(services);
    EXPECT_EQ(MakeDrawingPreview(nullptr), 3);
    EXPECT_EQ(MakeDrawingPreview(pDb), 0);
    EXPECT_EQ(maker.m_pDb, pDb);
    EXPECT_EQ(maker.m_nFlags, 0);
}
