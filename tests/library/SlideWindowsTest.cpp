// The slide windows offscreen: the preview closes on Enter and the right button, the batch cancels.
#include "TestHost.h"

#include "app/LibState.h"
#include "base/SlideFile.h"
#include "host/HostUi.h"
#include "library/views/SlideWindows.h"
#include "ui/SlidePainter.h"
#include "ui/views/SlideCtrl.h"

#include <QApplication>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

// Opens the preview on a slide, acts on its window once it is up, and
// returns the dialog's result; a window that never closes is shut after a while.
int RunPreview(const std::wstring& strSlide, const std::function<void(CDlgZoomInDialog&)>& act,
               std::wstring* pShown = nullptr, QString* pTitle = nullptr) {
    CDlgZoomIn dlg(std::make_unique<CDlgZoomInWindow>(nullptr));
    dlg.m_strSldFile = strSlide;
    QTimer::singleShot(0, [&] {
        auto* pDialog = qobject_cast<CDlgZoomInDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(pDialog, nullptr);
        if (pShown)
            *pShown = pDialog->m_pSlide->GetProperty(CSlideView::DISPID_SLIDE_FILE)
                          .toString()
                          .toStdWString();
        if (pTitle)
            *pTitle = pDialog->windowTitle();
        act(*pDialog);
    });
    QTimer guard;
    guard.setSingleShot(true);
    QObject::connect(&guard, &QTimer::timeout, [] {
        if (QWidget* pModal = QApplication::activeModalWidget())
            pModal->close();
    });
    guard.start(5000);
    return dlg.DoModal();
}

} // namespace

TEST(SlideWindows, PreviewClosesAsOkOnEnterAndTheRightButtonAndCancelsFromTheCloseBox) {
    CTempDir dir;
    CSlide slide;
    slide.m_nHighX = 99;
    slide.m_nHighY = 74;
    slide.m_vectors = {{0, 0, 99, 74, 1}};
    std::wstring strSlide = dir / L"预览.sld";
    ASSERT_TRUE(WriteSlideFile(strSlide, slide));

    std::wstring strShown;
    QString strTitle;
    EXPECT_EQ(RunPreview(
                  strSlide, [](CDlgZoomInDialog& w) { QTest::keyClick(&w, Qt::Key_Return); },
                  &strShown, &strTitle),
              IDOK);
    EXPECT_EQ(strShown, strSlide);
    EXPECT_EQ(strTitle, QStringLiteral("放大预览"));
    EXPECT_EQ(RunPreview(strSlide,
                         [](CDlgZoomInDialog& w) {
                             QTest::mouseClick(w.m_pSlide, Qt::RightButton, {}, QPoint(20, 20));
                         }),
              IDOK);
    // A left click leaves it open; the close box then cancels.
    EXPECT_EQ(RunPreview(strSlide,
                         [](CDlgZoomInDialog& w) {
                             QTest::mouseClick(w.m_pSlide, Qt::LeftButton, {}, QPoint(20, 20));
                             QTest::keyClick(&w, Qt::Key_A);
                             EXPECT_TRUE(w.isVisible());
                             w.close();
                         }),
              IDCANCEL);
}

TEST(SlideWindows, BatchCancelButtonAsksTheRunToStopOnce) {
    CTestHost host;
    CLibState state;
    auto pWindow = std::make_unique<CDlgBatchSldWindow>(nullptr);
    CDlgBatchSldWindow* pView = pWindow.get();
    CDlgBatchSld dlg(state, std::move(pWindow));
    dlg.Begin(3);
    ASSERT_NE(pView->Dialog(), nullptr);
    EXPECT_TRUE(pView->Dialog()->isVisible());
    dlg.Step(0, L"1.dwg");
    dlg.Pump();
    EXPECT_EQ(state.bBatchAbort, 0);
    QTest::mouseClick(pView->CancelButton(), Qt::LeftButton);
    EXPECT_EQ(state.bBatchAbort, 1);
    EXPECT_FALSE(pView->CancelButton()->isEnabled());
    dlg.End();
    EXPECT_EQ(pView->Dialog(), nullptr);
    EXPECT_NE(host.m_strPrinted.find(L"已终止"), std::wstring::npos);
}
