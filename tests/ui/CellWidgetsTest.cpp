// The cell widgets offscreen: the slide control's properties, painting and notifications; the
// thumbnail frame.
#include "ui/views/SlideCtrl.h"

#include "PreviewBuilders.h"
#include "TestHost.h"
#include "base/SlideFile.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace {

bool HasColourOtherThan(const QImage& image, QRgb background) {
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if ((image.pixel(x, y) & 0xFFFFFF) != (background & 0xFFFFFF))
                return true;
    return false;
}

} // namespace

TEST(CellWidgets, SlideControlPaintsItsFileOnItsBackgroundAndTellsClicks) {
    CTempDir dir;
    CSlide slide;
    ASSERT_TRUE(
        MakeViewSlide({{0, 0, 10, 10, 1}, {0, 10, 10, 0, 3}}, 0, 0, 10, 10, 100, 100, slide));
    ASSERT_TRUE(WriteSlideFile(dir / L"x.sld", slide));
    CSlideCtrl cell;
    cell.resize(120, 90);
    cell.SetProperty(CSlideView::DISPID_BACKGROUND,
                     QVariant::fromValue<uint>(RGB(0x82, 0x82, 0x82)));
    EXPECT_FALSE(HasColourOtherThan(cell.grab().toImage(), qRgb(0x82, 0x82, 0x82)));
    cell.SetProperty(CSlideView::DISPID_SLIDE_FILE, QString::fromStdWString(dir / L"x.sld"));
    EXPECT_EQ(cell.GetProperty(CSlideView::DISPID_SLIDE_FILE).toString().toStdWString(),
              dir / L"x.sld");
    EXPECT_EQ(cell.GetProperty(CSlideView::DISPID_BACKGROUND).toUInt(), 8553090u);
    EXPECT_TRUE(HasColourOtherThan(cell.grab().toImage(), qRgb(0x82, 0x82, 0x82)));

    cell.SetProperty(CSlideView::DISPID_SLIDE_FILE, QString::fromStdWString(dir / L"gone.sld"));
    EXPECT_FALSE(HasColourOtherThan(cell.grab().toImage(), qRgb(0x82, 0x82, 0x82)));

    QSignalSpy down(&cell, &CSlideCtrl::LButtonDown), dbl(&cell, &CSlideCtrl::LButtonDblClk),
        right(&cell, &CSlideCtrl::RButtonDown);
    QTest::mouseClick(&cell, Qt::LeftButton);
    QTest::mouseDClick(&cell, Qt::LeftButton);
    QTest::mouseClick(&cell, Qt::RightButton);
    EXPECT_GE(down.count(), 1);
    EXPECT_EQ(dbl.count(), 1);
    EXPECT_EQ(right.count(), 1);
}

TEST(CellWidgets, PreviewFramePaintsTheDrawingsThumbnailOrLeavesItsBackground) {
    CTempDir dir;
    std::string image =
        MakeDib24(40, 30, [](int x, int) { return x < 20 ? RGB(200, 0, 0) : RGB(0, 0, 200); });
    WriteBytes(dir / L"a.dwg", MakeDwgBytes(image));
    WriteBytes(dir / L"none.dwg", "not a drawing");
    CDwgPreviewCell cell;
    cell.resize(120, 90);
    cell.SetDrawing(dir / L"a.dwg", true, 0.0);
    QImage painted = cell.grab().toImage();
    EXPECT_EQ(painted.pixelColor(50, 45), QColor(200, 0, 0));
    EXPECT_EQ(painted.pixelColor(70, 45), QColor(0, 0, 200));
    cell.SetDrawing(dir / L"none.dwg", true, 0.0);
    EXPECT_EQ(cell.grab().toImage().pixelColor(60, 45), QColor(255, 255, 255));
}
