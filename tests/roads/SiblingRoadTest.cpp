// The road of a sibling module: another module of the suite, loaded beside DrawingManage, asks
// the designer to pick a hole drawing three times. The designer picks one in the browser's
// list, then cancels, then picks after the sibling has closed its window.
#include "Road.h"

#include <QCheckBox>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace {

const QString kHoleBrowser = QStringLiteral("开孔图库管理");

QPushButton* Button(QWidget* pWindow, const QString& strText) {
    for (QPushButton* p : pWindow->findChildren<QPushButton*>())
        if (p->text() == strText)
            return p;
    return nullptr;
}

bool Shown(QWidget* pWindow, const QString& strButton) {
    QPushButton* p = Button(pWindow, strButton);
    return p && p->isVisible();
}

void ClickButton(QWidget* pWindow, const QString& strText) {
    QPushButton* p = Button(pWindow, strText);
    ASSERT_NE(p, nullptr) << strText.toStdString();
    QTest::mouseClick(p, Qt::LeftButton);
}

// A click on the row of a tree or list, as the mouse makes it.
void ClickRow(QTreeWidget* pTree, QTreeWidgetItem* pItem) {
    pTree->scrollToItem(pItem);
    QTest::mouseClick(pTree->viewport(), Qt::LeftButton, {}, pTree->visualItemRect(pItem).center());
}

QTreeWidget* Tree(QWidget* pBrowser, const QString& strName) {
    return pBrowser->findChild<QTreeWidget*>(strName);
}

QStringList Selected(QWidget* pBrowser) {
    QStringList texts;
    if (QTreeWidget* pList = Tree(pBrowser, QStringLiteral("list")))
        for (QTreeWidgetItem* p : pList->selectedItems())
            texts << p->text(0);
    return texts;
}

// The history's lines from the first one that starts with strFrom on.
QStringList LinesFrom(const QString& strHistory, const QString& strFrom) {
    QStringList lines = strHistory.split(QLatin1Char('\n'));
    qsizetype at = 0;
    while (at < lines.size() && !lines[at].startsWith(strFrom))
        ++at;
    return lines.mid(at);
}

} // namespace

TEST(SiblingRoad, ASiblingGetsThePickedFileNameThenACancelThenNothingWithoutItsWindow) {
    CRoad road("sibling");
    ASSERT_TRUE(road.m_bDemo);
    ASSERT_TRUE(road.LoadModule());
    CPluginLoader sibling;
    ASSERT_TRUE(sibling.Load(QM_SIBLING_PATH, road.Services())) << sibling.LastError();
    QStringList preselected;
    QString strRow;
    bool bSelectMode = false, bPickedClosed = false, bCancelClosed = false, bGoneClosed = false;
    auto ask = [&road](const char* pszName) {
        road.Then([&road] { road.Type(QStringLiteral("SibPickHole")); });
        road.Then([&road, pszName] { road.Type(QString::fromUtf8(pszName)); });
    };
    auto showPicked = [&road] {
        road.Then([&road] { road.Type(QStringLiteral("SibShowPicked")); });
        road.Then([&road] { road.Type(QStringLiteral("H")); });
    };

    // The browser opens on the sibling's current name; the designer picks another drawing from
    // the whole library, listed with its directory.
    ask("22mm指示灯.dwg");
    road.Then([&] {
        QWidget* pBrowser = CRoad::FindWindow(kHoleBrowser);
        ASSERT_NE(pBrowser, nullptr);
        preselected = Selected(pBrowser);
        bSelectMode = Shown(pBrowser, QStringLiteral("确定(&O)")) &&
                      Shown(pBrowser, QStringLiteral("取消(&C)")) &&
                      !Shown(pBrowser, QStringLiteral("调用(&I)")) &&
                      !Shown(pBrowser, QStringLiteral("新建(&N)"));
        road.Milestone("select-mode", pBrowser);
        for (QCheckBox* p : pBrowser->findChildren<QCheckBox*>())
            if (p->text() == QStringLiteral("检索子目录") && !p->isChecked())
                QTest::mouseClick(p, Qt::LeftButton);
        QTreeWidget* pTree = Tree(pBrowser, QStringLiteral("tree"));
        ASSERT_TRUE(pTree && pTree->topLevelItemCount() == 1);
        ClickRow(pTree, pTree->topLevelItem(0));
        QTreeWidget* pList = Tree(pBrowser, QStringLiteral("list"));
        ASSERT_NE(pList, nullptr);
        QList<QTreeWidgetItem*> rows =
            pList->findItems(QStringLiteral("\\急停按钮.dwg"), Qt::MatchEndsWith);
        ASSERT_EQ(rows.size(), 1);
        strRow = rows[0]->text(0);
        ClickRow(pList, rows[0]);
        road.Milestone("picked", pBrowser);
        ClickButton(pBrowser, QStringLiteral("确定(&O)"));
        bPickedClosed = CRoad::FindWindow(kHoleBrowser) == nullptr;
    });
    showPicked();
    // Asked again, the designer cancels.
    ask("急停按钮.dwg");
    road.Then([&] {
        QWidget* pBrowser = CRoad::FindWindow(kHoleBrowser);
        ASSERT_NE(pBrowser, nullptr);
        ClickButton(pBrowser, QStringLiteral("取消(&C)"));
        bCancelClosed = CRoad::FindWindow(kHoleBrowser) == nullptr;
    });
    showPicked();
    // Asked a third time, the sibling closes its window before the designer double-clicks a cell.
    ask("22mm按钮.dwg");
    road.Then([&] { road.Type(QStringLiteral("SibDestroyWindow")); });
    road.Then([&] {
        QWidget* pBrowser = CRoad::FindWindow(kHoleBrowser);
        ASSERT_NE(pBrowser, nullptr);
        QWidget* pCell = pBrowser->findChild<QWidget*>(QStringLiteral("slide0"));
        ASSERT_NE(pCell, nullptr);
        QTest::mouseDClick(pCell, Qt::LeftButton, {}, pCell->rect().center());
        bGoneClosed = CRoad::FindWindow(kHoleBrowser) == nullptr;
    });
    showPicked();
    QString strHistory;
    road.Then([&] {
        strHistory = road.m_gui.m_pWindow->CommandLine()->History();
        road.Milestone("transcript");
    });
    road.Run();
    sibling.Unload();

    EXPECT_EQ(preselected, QStringList{QStringLiteral("22mm指示灯.dwg")});
    EXPECT_TRUE(bSelectMode);
    EXPECT_TRUE(strRow.contains(QLatin1Char('\\'))) << strRow.toStdString();
    EXPECT_TRUE(bPickedClosed);
    EXPECT_TRUE(bCancelClosed);
    EXPECT_TRUE(bGoneClosed);
    // The name comes with its extension and without its directory; the cancel and the window
    // that went leave the sibling's string as it was.
    QStringList lines = LinesFrom(strHistory, QStringLiteral("命令: SibPickHole"));
    QStringList said;
    for (const QString& line : lines)
        if (line.startsWith(QStringLiteral("收到")) || line.startsWith(QStringLiteral("读取")))
            said << line;
    EXPECT_EQ(said, (QStringList{QStringLiteral("收到 1129: 急停按钮.dwg"),
                                 QStringLiteral("读取: 急停按钮.dwg"), QStringLiteral("收到 1130"),
                                 QStringLiteral("读取: <无>"), QStringLiteral("读取: <无>")}))
        << strHistory.toStdString();
}
