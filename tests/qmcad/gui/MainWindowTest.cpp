// The desktop: commands driven by typing and clicking, drags, cancels, windows, zoom, shading,
// boxes.
#include "GuiDriver.h"

#include "demo/DemoPanel.h"
#include "host/HostInput.h"
#include "host/HostUi.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QTabBar>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

const QColor kBackground(33, 40, 48);

AcDbObjectId AddEntity(AcDbDatabase* pDb, AcDbEntity* pEnt, short nColour = 1) {
    pEnt->setColorIndex(nColour);
    AcDbObjectId id;
    AcDbBlockTableRecord* pSpace = nullptr;
    acdbOpenObject(pSpace, pDb->modelSpaceId(), AcDb::kForWrite);
    pSpace->appendAcDbEntity(id, pEnt);
    pEnt->close();
    pSpace->close();
    return id;
}

AcDbPolyline* Square(double x, double y, double size) {
    auto* p = new AcDbPolyline;
    p->addVertexAt(0, {x, y});
    p->addVertexAt(1, {x + size, y});
    p->addVertexAt(2, {x + size, y + size});
    p->addVertexAt(3, {x, y + size});
    p->setClosed(true);
    return p;
}

bool IsBackground(const QImage& image, QPoint px) {
    return QColor(image.pixel(px)) == kBackground;
}

// A painted pixel within a few pixels of the point.
bool PaintedNear(const QImage& image, QPoint px, int nRadius = 2) {
    for (int dx = -nRadius; dx <= nRadius; ++dx)
        for (int dy = -nRadius; dy <= nRadius; ++dy)
            if (image.rect().contains(px + QPoint(dx, dy)) &&
                !IsBackground(image, px + QPoint(dx, dy)))
                return true;
    return false;
}

QAction* MenuAction(QMainWindow& window, const QString& text) {
    for (QAction* pAction : window.menuBar()->findChildren<QAction*>())
        if (pAction->text() == text)
            return pAction;
    return nullptr;
}

} // namespace

TEST(MainWindow, TypedCommandAndClicksDrawALineAndTheHistoryShowsIt) {
    CGuiTestEditor t;
    t.m_editor.m_commands.AddNative(L"TESTLINE", [&] {
        AcGePoint3d a, b;
        if (acedGetPoint(nullptr, L"指定第一点: ", a) != RTNORM ||
            acedGetPoint(&a, L"指定下一点: ", b) != RTNORM)
            return;
        AddEntity(t.Database(), new AcDbLine(a, b));
    });
    AcGePoint3d a(10, 20, 0), b(60, 45, 0);
    t.Then([&] { t.Type(QStringLiteral("testline")); });
    t.Then([&] { t.Click(a); });
    t.Then([&] {
        // The rubber band runs from the first point to the cursor.
        t.Move(b);
        QImage image = t.m_pView->Render();
        EXPECT_TRUE(PaintedNear(image, t.Pixel(AcGePoint3d(35, 32.5, 0))));
        t.Click(b);
    });
    t.Run();
    AcDbObjectIdArray ids;
    ASSERT_EQ(acedSSGet(L"X", ids), RTNORM);
    ASSERT_EQ(ids.size(), 1u);
    AcDbLine* pLine = nullptr;
    ASSERT_EQ(acdbOpenObject(pLine, ids[0], AcDb::kForRead), Acad::eOk);
    EXPECT_NEAR(pLine->startPoint().distanceTo(a), 0, 0.25); // a pixel is a quarter unit
    EXPECT_NEAR(pLine->endPoint().distanceTo(b), 0, 0.25);
    pLine->close();
    QString history = t.m_pWindow->CommandLine()->History();
    EXPECT_TRUE(history.contains(QStringLiteral("命令: testline"))) << history.toStdString();
    EXPECT_TRUE(history.contains(QStringLiteral("指定第一点: 10.")) ||
                history.contains(QStringLiteral("指定第一点: 9.9")))
        << history.toStdString();
}

TEST(MainWindow, PointsSnapToEndsMiddlesAndCentresUntilF3) {
    CGuiTestEditor t;
    AddEntity(t.Database(), new AcDbLine({0, 0, 0}, {40, 0, 0}));
    AddEntity(t.Database(), new AcDbCircle({80, 40, 0}, 10));
    std::vector<AcGePoint3d> points;
    t.m_editor.m_commands.AddNative(L"TESTPT", [&] {
        AcGePoint3d pt;
        while (acedGetPoint(nullptr, L"指定点: ", pt) == RTNORM)
            points.push_back(pt);
    });
    t.Then([&] { t.Type(QStringLiteral("TESTPT")); });
    t.Then([&] { t.Click({19.6, 0.5, 0}); });  // the line's middle
    t.Then([&] { t.Click({39.5, -0.4, 0}); }); // its end
    t.Then([&] { t.Click({81, 39, 0}); });     // the circle's centre
    t.Then([&] {
        QTest::keyClick(t.m_pView, Qt::Key_F3);
        t.Click({19.6, 0.5, 0}); // off: where the cursor is
    });
    t.Then([&] { t.Type(QString()); });
    t.Run();
    ASSERT_EQ(points.size(), 4u);
    EXPECT_EQ(points[0], AcGePoint3d(20, 0, 0));
    EXPECT_EQ(points[1], AcGePoint3d(40, 0, 0));
    EXPECT_EQ(points[2], AcGePoint3d(80, 40, 0));
    EXPECT_NE(points[3], AcGePoint3d(20, 0, 0));
    EXPECT_NEAR(points[3].distanceTo({19.6, 0.5, 0}), 0, 0.3);
}

TEST(MainWindow, DraggedBlockFollowsTheCursorAndLandsWhereTheLastSampleSays) {
    CGuiTestEditor t;
    AcDbDatabase* pDb = t.Database();
    // A block of one red cross, referenced at the origin at a thousandth of
    // its size, as the insertion's drag image is.
    AcDbBlockTable* pTable = nullptr;
    pDb->getBlockTable(pTable, AcDb::kForWrite);
    auto* pBlock = new AcDbBlockTableRecord;
    pBlock->setName(L"CROSS");
    AcDbObjectId blockId;
    pTable->add(blockId, pBlock);
    pTable->close();
    AcDbObjectId lineId;
    auto* pLine = new AcDbLine({-5, 0, 0}, {5, 0, 0});
    pLine->setColorIndex(1);
    pBlock->appendAcDbEntity(lineId, pLine);
    pLine->close();
    pBlock->close();
    auto* pRef = new AcDbBlockReference(AcGePoint3d(), blockId);
    pRef->setScaleFactors({0.001, 0.001, 0.001});
    AcDbObjectId refId = AddEntity(pDb, pRef);
    int nResult = 0;
    t.m_editor.m_commands.AddNative(L"TESTDRAG", [&] {
        AcGePoint3d pt;
        nResult = acedDragGen(
            {refId}, L"请指定插入位置:",
            [](const AcGePoint3d& cursor, AcGeMatrix3d& xform) {
                xform = AcGeMatrix3d::translation(cursor - AcGePoint3d()) *
                        AcGeMatrix3d::scaling(1000, 1000, 1000);
                return true;
            },
            pt);
    });
    AcGePoint3d far(80, 60, 0), last(40, 30, 0);
    t.Then([&] { t.Type(QStringLiteral("TESTDRAG")); });
    t.Then([&] {
        t.Move(far);
        QImage image = t.m_pView->Render();
        EXPECT_TRUE(PaintedNear(image, t.Pixel(AcGePoint3d(83, 60, 0))));
        t.Move(last);
        image = t.m_pView->Render();
        EXPECT_FALSE(PaintedNear(image, t.Pixel(AcGePoint3d(83, 60, 0)))); // gone from there
        EXPECT_TRUE(PaintedNear(image, t.Pixel(AcGePoint3d(43, 30, 0))));
        t.Click(last);
    });
    t.Run();
    EXPECT_EQ(nResult, RTNORM);
    AcDbBlockReference* pPlaced = nullptr;
    ASSERT_EQ(acdbOpenObject(pPlaced, refId, AcDb::kForRead), Acad::eOk);
    EXPECT_NEAR(pPlaced->position().distanceTo(last), 0, 0.25);
    EXPECT_NEAR(pPlaced->scaleFactors().sx, 1.0, 1e-9);
    pPlaced->close();
}

TEST(MainWindow, EscCancelsPromptsFromTheViewAndTheCommandLine) {
    CGuiTestEditor t;
    std::vector<int> results;
    t.m_editor.m_commands.AddNative(L"TESTESC", [&] {
        AcGePoint3d pt;
        results.push_back(acedGetPoint(nullptr, L"指定点: ", pt));
        std::wstring strText;
        results.push_back(acedGetString(true, L"输入文字: ", strText));
        AcDbObjectId id;
        results.push_back(acedEntSel(L"选择对象: ", id, pt));
    });
    t.Then([&] { t.Type(QStringLiteral("TESTESC")); });
    t.Then([&] { QTest::keyClick(t.m_pView, Qt::Key_Escape); });
    t.Then([&] { QTest::keyClick(t.m_pWindow->CommandLine()->Input(), Qt::Key_Escape); });
    t.Then([&] { t.Click(AcGePoint3d(5, 5, 0), Qt::RightButton); }); // Enter: nothing picked
    t.Run();
    EXPECT_EQ(results, (std::vector<int>{RTCAN, RTCAN, RTERROR}));
    EXPECT_TRUE(t.m_pWindow->CommandLine()->History().contains(QStringLiteral("指定点: *取消*")));
}

TEST(MainWindow, SelectionWindowTakesWhatIsInsideAndCrossingWhatItTouches) {
    CGuiTestEditor t;
    AcDbDatabase* pDb = t.Database();
    AcDbObjectId inside = AddEntity(pDb, Square(20, 20, 10));
    AcDbObjectId crossing = AddEntity(pDb, Square(45, 20, 20));
    AddEntity(pDb, Square(100, 100, 5)); // far away
    std::vector<AcDbObjectIdArray> selections;
    t.m_editor.m_commands.AddNative(L"TESTSEL", [&] {
        AcDbObjectIdArray ids;
        acedSSGet(L"", ids);
        selections.push_back(ids);
    });
    auto window = [&](AcGePoint3d from, AcGePoint3d to) {
        QTest::mousePress(t.m_pView, Qt::LeftButton, {}, t.Pixel(from));
        t.Move(to);
        QTest::mouseRelease(t.m_pView, Qt::LeftButton, {}, t.Pixel(to));
    };
    t.Then([&] { t.Type(QStringLiteral("TESTSEL")); });
    t.Then([&] { window({10, 10, 0}, {50, 40, 0}); }); // left to right: inside only
    t.Then([&] { t.Type(QString()); });
    t.Then([&] { t.Type(QStringLiteral("TESTSEL")); });
    t.Then([&] { window({55, 45, 0}, {10, 10, 0}); }); // right to left: crossing too
    t.Then([&] { t.Type(QString()); });
    t.Then([&] { t.Type(QStringLiteral("TESTSEL")); });
    t.Then([&] { t.Click(AcGePoint3d(45, 25, 0)); }); // on the crossing square's edge
    t.Then([&] { t.Type(QString()); });
    t.Run();
    ASSERT_EQ(selections.size(), 3u);
    EXPECT_EQ(selections[0], (AcDbObjectIdArray{inside}));
    EXPECT_EQ(selections[1], (AcDbObjectIdArray{inside, crossing}));
    EXPECT_EQ(selections[2], (AcDbObjectIdArray{crossing}));
}

TEST(MainWindow, InputEventsArriveAsTheTrackersReadTypesAndPanKeepsTracking) {
    CGuiTestEditor t;
    std::vector<int> types, codes;
    t.m_editor.m_commands.AddNative(L"TESTTRACK", [&] {
        for (;;) {
            int nType = 0;
            GRREAD_VALUE value;
            if (acedGrRead(7, nType, value) != RTNORM)
                return;
            types.push_back(nType);
            if (nType == 11) {
                codes.push_back(value.nKey);
                t.m_editor.Command({L"._RTPAN"});
            }
            if (nType == 3 || nType == 25)
                return;
        }
    });
    double dTargetX = 0, dPanned = 0;
    t.Then([&] { t.Type(QStringLiteral("TESTTRACK")); });
    t.Then([&] { t.Move({30, 30, 0}); });
    t.Then([&] { MenuAction(*t.m_pWindow, QStringLiteral("实时平移(&P)"))->trigger(); });
    t.Then([&] { // inside "._RTPAN": a left drag pans the view, Enter ends it
        dTargetX = t.m_pView->State().target.x;
        dPanned = 40 / t.m_pView->Transform().Scale();
        QTest::mousePress(t.m_pView, Qt::LeftButton, {}, QPoint(100, 100));
        QMouseEvent move(QEvent::MouseMove, QPointF(140, 100), QPointF(140, 100), Qt::LeftButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(t.m_pView, &move);
        QTest::mouseRelease(t.m_pView, Qt::LeftButton, {}, QPoint(140, 100));
        t.Type(QString());
    });
    t.Then([&] { t.Click({20, 20, 0}, Qt::RightButton); });
    t.Run();
    EXPECT_EQ(types, (std::vector<int>{5, 11, 5, 25}));
    EXPECT_EQ(codes, (std::vector<int>{1405}));
    EXPECT_NEAR(t.m_pView->State().target.x, dTargetX - dPanned, 1e-9); // 40 pixels to the right
}

TEST(MainWindow, ZoomExtentsFramesTheDrawing) {
    CGuiTestEditor t;
    AcDbDatabase* pDb = t.Database();
    AddEntity(pDb, new AcDbLine({1000, 2000, 0}, {3000, 2500, 0}), 2);
    AddEntity(pDb, new AcDbCircle({3000, 2500, 0}, 100), 3);
    // Circles far under a pixel: drawn as joined runs, but drawn.
    std::vector<AcGePoint3d> dots{{1500, 2100, 0}, {2000, 2400, 0}, {2500, 2050, 0}};
    for (const AcGePoint3d& c : dots)
        AddEntity(pDb, new AcDbCircle(c, 0.8), 4);
    t.Then([&] { t.Type(QStringLiteral("ZOOM")); });
    t.Then([&] { t.Type(QStringLiteral("E")); });
    t.Run();
    QPointF lo = t.m_pView->ToScreen({1000, 1900, 0}), hi = t.m_pView->ToScreen({3100, 2600, 0});
    QRectF drawn = QRectF(lo, hi).normalized();
    QRectF view = t.m_pView->rect();
    EXPECT_TRUE(view.contains(drawn)) << drawn.x() << "," << drawn.y();
    // Fitted: the drawing fills the width nearly (it is the wider way).
    EXPECT_GT(drawn.width(), view.width() * 0.9);
    QImage image = t.m_pView->Render();
    EXPECT_TRUE(PaintedNear(image, t.Pixel({1000, 2000, 0})));
    EXPECT_TRUE(PaintedNear(image, t.Pixel({3100, 2500, 0})));
    for (const AcGePoint3d& c : dots)
        EXPECT_TRUE(PaintedNear(image, t.Pixel(c), 1));
}

TEST(MainWindow, ShadedViewOfACutPanelShowsTheCutouts) {
    CGuiTestEditor t;
    DEMO_PANEL panel = AddDemoPanel(*t.Database(), AcGePoint3d(0, 0, 0));
    VIEW_STATE& view = t.m_pView->State();
    view.direction = {0, 0, 1};
    view.target = {300, 400, 0};
    view.dHeight = 900;
    view.eShade = SHADE_MODE::Gouraud;
    // Inside the fan's 224 square cutout at (300, 250), away from its centre lines.
    AcGePoint3d hole(350, 300, 0), plate(60, 350, 0);
    t.m_pView->Invalidate();
    QImage whole = t.m_pView->Render();
    EXPECT_FALSE(IsBackground(whole, t.Pixel(hole))); // the cutout solid fills it
    // Seen from the south-west, the far cutouts stand out of the plate in
    // front of it: every pixel shows the nearest face, not the last painted.
    view.direction = {-1, -1, 1};
    t.m_pView->Repaint();
    QColor far = QColor(t.m_pView->Render().pixel(t.Pixel({150 + 20, 650 + 20, 3})));
    EXPECT_GT(far.green(), far.red() + 60) << far.name().toStdString();
    view.direction = {0, 0, 1};
    t.m_pView->Invalidate();
    wchar_t buf[32];
    std::vector<std::wstring> words{L"_subtract"};
    panel.idSolid.handle().getIntoAsciiBuffer(buf);
    words.insert(words.end(), {buf, L""});
    for (AcDbObjectId id : panel.cutoutSolids) {
        id.handle().getIntoAsciiBuffer(buf);
        words.push_back(buf);
    }
    words.push_back(L"");
    ASSERT_EQ(t.m_editor.Command(words), RTNORM);
    t.m_pView->Invalidate();
    QImage cut = t.m_pView->Render();
    EXPECT_TRUE(IsBackground(cut, t.Pixel(hole)));
    EXPECT_FALSE(IsBackground(cut, t.Pixel(plate)));
    // Seen from the south-west the hole still shows the background through the plate.
    view.direction = {-1, -1, 1};
    ZoomViewToExtents(t.m_pView->Scene()->List(view), t.m_pView->width(), t.m_pView->height(),
                      view);
    t.m_pView->Repaint();
    QImage iso = t.m_pView->Render();
    EXPECT_TRUE(IsBackground(iso, t.Pixel(hole)));
    EXPECT_FALSE(IsBackground(iso, t.Pixel(plate)));
}

TEST(MainWindow, DocumentTabsFollowTheEditorMarkChangesAndSwitchDocuments) {
    CGuiTestEditor t;
    t.m_editor.m_commands.AddNative(L"TESTADD", [&] {
        AddEntity(t.Database(), new AcDbLine({0, 0, 0}, {10, 10, 0}));
    });
    auto* pTabs = t.m_pWindow->findChild<QTabBar*>();
    ASSERT_NE(pTabs, nullptr);
    AcApDocument* pFirst = t.m_editor.m_docs.curDocument();
    t.Then([&] { t.Type(QStringLiteral("NEW")); });
    t.Then([&] { t.Type(QStringLiteral("TESTADD")); });
    t.Then([&] {
        ASSERT_EQ(pTabs->count(), 2);
        EXPECT_EQ(pTabs->tabText(0), QStringLiteral("Drawing1.dwg"));
        EXPECT_EQ(pTabs->tabText(1), QStringLiteral("Drawing2.dwg*"));
        EXPECT_EQ(pTabs->currentIndex(), 1);
        pTabs->setCurrentIndex(0); // a click on the first tab while the editor waits
    });
    t.Run();
    EXPECT_EQ(t.m_editor.m_docs.curDocument(), pFirst);
    EXPECT_TRUE(t.m_pWindow->windowTitle().contains(QStringLiteral("Drawing1.dwg")));
}

TEST(MainWindow, BoxesCarryCaptionIconAndButtonsAndReturnTheAnswer) {
    CGuiTestEditor t;
    QMessageBox::Icon eIcon = QMessageBox::NoIcon;
    QString title;
    int nButtons = 0;
    QTimer::singleShot(0, [&] {
        auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(pBox, nullptr);
        eIcon = pBox->icon();
        title = pBox->windowTitle();
        nButtons = static_cast<int>(pBox->buttons().size());
        pBox->button(QMessageBox::No)->click();
    });
    int nAnswer = QmMessageBox(L"锁定已被解除，是否继续？", MB_YESNO | MB_ICONQUESTION);
    EXPECT_EQ(nAnswer, IDNO);
    EXPECT_EQ(eIcon, QMessageBox::Question);
    EXPECT_EQ(title, QStringLiteral("Quillmarch"));
    EXPECT_EQ(nButtons, 2);
}
