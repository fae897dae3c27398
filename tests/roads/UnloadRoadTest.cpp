// The unload road: with both library browsers open and the panel dialog used, the module is
// unloaded; the hole browser goes with it, the layout browser stays and still closes cleanly,
// the commands are gone, and (in the sanitizer build) nothing leaks.
#include "Road.h"

#include "gui/CommandLinePane.h"

#include <QApplication>
#include <QCloseEvent>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace {

const QString kHoleBrowser = QStringLiteral("开孔图库管理");
const QString kLayoutBrowser = QStringLiteral("屏面布置图库管理");

void Settle() {
    for (int i = 0; i < 5; ++i) {
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QApplication::processEvents();
    }
}

} // namespace

TEST(UnloadRoad, TheModuleLeavesWithItsWindowsOpenAndTakesItsCommands) {
    CRoad road("unload");
    ASSERT_TRUE(road.m_bDemo);
    ASSERT_TRUE(road.LoadModule());
    CEditorHost& editor = road.m_gui.m_editor;
    bool bHoleOpen = false, bLayoutOpen = false, bHoleAfter = true, bLayoutAfter = false;
    bool bCommandAfter = true;
    QString strHistory;

    road.Then([&] { road.Type(QStringLiteral("DrawingManage")); });
    road.Then([&] {
        QWidget* pHole = CRoad::FindWindow(kHoleBrowser);
        bHoleOpen = pHole != nullptr;
        if (pHole)
            road.Milestone("hole-browser", pHole);
        road.Type(QStringLiteral("LaySketchManage"));
    });
    road.Then([&] {
        QWidget* pLayout = CRoad::FindWindow(kLayoutBrowser);
        bLayoutOpen = pLayout != nullptr;
        if (pLayout)
            road.Milestone("layout-browser", pLayout);
        road.Type(QStringLiteral("DrawPanel"));
    });
    road.WhenWindow(QStringLiteral("面板绘制"), [&](QWidget* pDlg) {
        for (QPushButton* p : pDlg->findChildren<QPushButton*>())
            if (p->text() == QStringLiteral("关闭"))
                QTest::mouseClick(p, Qt::LeftButton);
    });
    road.Then([&] {
        road.UnloadModule();
        Settle();
        bHoleAfter = CRoad::FindWindow(kHoleBrowser) != nullptr;
        bLayoutAfter = CRoad::FindWindow(kLayoutBrowser) != nullptr;
        bCommandAfter = editor.m_commands.Find(L"DrawingManage") != nullptr;
        road.Milestone("unloaded");
        road.Type(QStringLiteral("DrawingManage"));
    });
    // The layout browser outlives the module: closing it still goes through its own code.
    road.Then([&] {
        strHistory = road.m_gui.m_pWindow->CommandLine()->History();
        if (QWidget* pLayout = CRoad::FindWindow(kLayoutBrowser))
            pLayout->close();
        Settle();
    });
    road.Run();

    EXPECT_TRUE(bHoleOpen);
    EXPECT_TRUE(bLayoutOpen);
    EXPECT_FALSE(bHoleAfter);
    EXPECT_TRUE(bLayoutAfter);
    EXPECT_FALSE(bCommandAfter);
    EXPECT_TRUE(strHistory.contains(QStringLiteral("未知命令“DRAWINGMANAGE”")))
        << strHistory.toStdString();
    EXPECT_EQ(CRoad::FindWindow(kLayoutBrowser), nullptr);
    EXPECT_EQ(road.m_shots.size(), 3u);
}
