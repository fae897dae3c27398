// The road of one insertion in a shared installation: a workstation a commit behind the site
// opens the hole browser (and is brought up to date first: the site's new meter arrives),
// picks a cell, asks for a row of three exploded, drags the item into the drawing with the
// mouse, and the browser comes back when the insertion has run.
#include "DemoSite.h"
#include "Road.h"
#include "SharedDemoRoad.h"

#include "dxf/DxfCodec.h"

#include "drawingdata/PartTables.h"
#include "host/db/AcDb.h"

#include "base/CodePage.h"
#include "base/FileSystem.h"
#include "base/SysPath.h"

#include "FtpTestServer.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

const QString kHoleBrowser = QStringLiteral("开孔图库管理");

QWidget* CellOf(QWidget* pBrowser, const QString& strLabel) {
    QList<QLabel*> labels = pBrowser->findChildren<QLabel*>();
    for (int i = 0; i < 16; ++i)
        for (QLabel* p : labels)
            if (p->text() == strLabel && p->isVisible())
                if (QWidget* pCell =
                        pBrowser->findChild<QWidget*>(QStringLiteral("slide%1").arg(i));
                    pCell &&
                    pCell->parentWidget()->geometry().center().x() == p->geometry().center().x() &&
                    pCell->parentWidget()->geometry().bottom() < p->geometry().top() &&
                    p->geometry().top() - pCell->parentWidget()->geometry().bottom() < 20)
                    return pCell;
    return nullptr;
}

// What model space holds after the insertion.
struct MODEL_SPACE {
    std::vector<AcGePoint3d> items; // references of the inserted (anonymous) block
    std::vector<AcGePoint3d> cuts;  // loose circles of the item's opening
    std::vector<std::wstring> texts;
    int nOthers = 0;
};

MODEL_SPACE Look(AcDbDatabase* pDb) {
    MODEL_SPACE ms;
    AcDbBlockTableRecord* pSpace = nullptr;
    if (acdbOpenObject(pSpace, pDb->modelSpaceId(), AcDb::kForRead) != Acad::eOk)
        return ms;
    for (AcDbObjectId id : pSpace->entities()) {
        AcDbEntity* pEnt = nullptr;
        if (acdbOpenObject(pEnt, id, AcDb::kForRead) != Acad::eOk)
            continue;
        AcDbBlockTableRecord* pBlock = nullptr;
        if (auto* pRef = dynamic_cast<AcDbBlockReference*>(pEnt);
            pRef && acdbOpenObject(pBlock, pRef->blockTableRecord(), AcDb::kForRead) == Acad::eOk) {
            if (pBlock->isAnonymous())
                ms.items.push_back(pRef->position());
            else
                ++ms.nOthers;
            pBlock->close();
        } else if (auto* pCircle = dynamic_cast<AcDbCircle*>(pEnt)) {
            if (std::abs(pCircle->radius() - 22.3 / 2) < 1e-6)
                ms.cuts.push_back(pCircle->center());
        } else if (auto* pText = dynamic_cast<AcDbText*>(pEnt)) {
            ms.texts.push_back(pText->textString());
        } else {
            ++ms.nOthers;
        }
        pEnt->close();
    }
    pSpace->close();
    return ms;
}

// The drag paints the item's cyan face around the cursor at its real size.
bool FacePaintedNear(const QImage& image, QPoint px) {
    for (int dx = -2; dx <= 2; ++dx)
        for (int dy = -2; dy <= 2; ++dy) {
            QPoint p = px + QPoint(dx, dy);
            if (!image.rect().contains(p))
                continue;
            QColor c = image.pixelColor(p);
            if (c.red() < 100 && c.green() > 150 && c.blue() > 150)
                return true;
        }
    return false;
}

void ClickTreeItem(QWidget* pBrowser, const QString& strText) {
    auto* pTree = pBrowser->findChild<QTreeWidget*>(QStringLiteral("tree"));
    ASSERT_NE(pTree, nullptr);
    QList<QTreeWidgetItem*> found =
        pTree->findItems(strText, Qt::MatchExactly | Qt::MatchRecursive);
    ASSERT_EQ(found.size(), 1);
    QTest::mouseClick(pTree->viewport(), Qt::LeftButton, {},
                      pTree->visualItemRect(found[0]).center());
}

} // namespace

TEST(SharedInsertRoad, ABehindWorkstationUpdatesInsertsARowWithTheMouseAndGetsItsBrowserBack) {
    SHARED_DEMO shared("127.0.0.1(WS2)");
    ASSERT_TRUE(shared.bReady);
    CRoad road("insert", shared.Config(2));
    ASSERT_TRUE(road.m_bDemo);
    ASSERT_TRUE(road.LoadModule());
    road.Frame(0, 0, 200, 125);
    int nUpdatesAtOpen = -1;
    bool bPicked = false, bHidden = false, bBack = false, bDragged = false;
    QString strCount, strFirstPrompt, strSecondPrompt, strHistory;
    MODEL_SPACE placed;
    CStringArray records;

    road.Then([&] { road.Type(QStringLiteral("DrawingManage")); });
    road.Then([&] {
        nUpdatesAtOpen = road.m_nUpdates;
        QWidget* pBrowser = CRoad::FindWindow(kHoleBrowser);
        ASSERT_NE(pBrowser, nullptr);
        road.Milestone("browser", pBrowser);
        ClickTreeItem(pBrowser, QStringLiteral("按钮指示灯"));
        QWidget* pCell = CellOf(pBrowser, QStringLiteral("22mm指示灯"));
        ASSERT_NE(pCell, nullptr);
        QTest::mouseClick(pCell, Qt::LeftButton, {}, pCell->rect().center());
        for (int i = 0; i < 2; ++i)
            QTest::mouseClick(pBrowser->findChild<QToolButton*>(QStringLiteral("countUp")),
                              Qt::LeftButton);
        QCheckBox* pExplode = Named<QCheckBox>(pBrowser, QStringLiteral("炸开开孔图块"));
        ASSERT_NE(pExplode, nullptr);
        if (!pExplode->isChecked())
            QTest::mouseClick(pExplode, Qt::LeftButton);
        for (QLineEdit* p : pBrowser->findChildren<QLineEdit*>())
            if (p->text() == QStringLiteral("3"))
                strCount = p->text();
        bPicked = true;
        road.Milestone("picked", pBrowser);
        QTest::mouseClick(Named<QPushButton>(pBrowser, QStringLiteral("调用(&I)")), Qt::LeftButton);
        bHidden = CRoad::FindWindow(kHoleBrowser) == nullptr;
    });
    // The item follows the mouse at its real size (its face is 15.6 from its centre); a click
    // puts the first one down.
    road.Then([&] {
        strFirstPrompt = road.m_gui.m_pWindow->CommandLine()->Prompt();
        road.m_gui.Move(AcGePoint3d(40, 60, 0));
        QImage image = road.m_gui.m_pView->Render();
        bDragged = FacePaintedNear(image, road.m_gui.Pixel(AcGePoint3d(40 + 15.6, 60, 0))) &&
                   !FacePaintedNear(image, road.m_gui.Pixel(AcGePoint3d(40 + 25, 60, 0)));
        road.Milestone("drag");
        road.Click(40, 60);
    });
    // The second click sets the row's step: 40 along X.
    road.Then([&] {
        strSecondPrompt = road.m_gui.m_pWindow->CommandLine()->Prompt();
        road.m_gui.Move(AcGePoint3d(80, 61, 0));
        road.Click(80, 61);
    });
    road.Then([&] {
        bBack = CRoad::FindWindow(kHoleBrowser) != nullptr;
        AcDbDatabase* pDb = road.m_gui.Database();
        placed = Look(pDb);
        FindPartRecordNames(pDb, L"", L"", L"HL1", records);
        strHistory = road.m_gui.m_pWindow->CommandLine()->History();
        road.Milestone("placed");
    });
    road.Run();

    EXPECT_EQ(nUpdatesAtOpen, 1); // behind the site: updated before the browser opened
    EXPECT_TRUE(bPicked);
    EXPECT_EQ(strCount, QStringLiteral("3"));
    EXPECT_TRUE(bHidden);
    EXPECT_TRUE(strFirstPrompt.contains(QStringLiteral("请指定插入位置")))
        << strFirstPrompt.toStdString();
    EXPECT_TRUE(strSecondPrompt.contains(QStringLiteral("请指定第二个符号位置")))
        << strSecondPrompt.toStdString();
    EXPECT_TRUE(bDragged);
    // Two references stay whole, the last of the row is exploded; the drag image is gone.
    ASSERT_EQ(placed.items.size(), 2u);
    EXPECT_NEAR(placed.items[0].distanceTo(AcGePoint3d(40, 60, 0)), 0, 0.3);
    EXPECT_NEAR(placed.items[1].x - placed.items[0].x, 40, 0.5);
    EXPECT_DOUBLE_EQ(placed.items[1].y, placed.items[0].y);
    ASSERT_EQ(placed.cuts.size(), 1u);
    EXPECT_NEAR(placed.cuts[0].x - placed.items[0].x, 80, 1.0);
    EXPECT_DOUBLE_EQ(placed.cuts[0].y, placed.items[0].y);
    EXPECT_EQ(placed.texts, std::vector<std::wstring>{L"HL1"});
    EXPECT_GT(placed.nOthers, 0); // the opening's axes, tool and face
    // The item's part record came along with its symbols.
    EXPECT_EQ(records.size(), 1u);
    // The installation's settings were there for the hand-over: no complaint on the command line.
    EXPECT_FALSE(strHistory.contains(QStringLiteral("出错"))) << strHistory.toStdString();
    EXPECT_TRUE(bBack);
    EXPECT_EQ(road.m_nUpdates, 1); // in step when the browser came back
    // The site's newest commit reached the workstation, which now holds the site's version.
    std::wstring strMeter =
        road.m_config.CommonResInstallPath() + L"InstallHole\\仪表\\多功能电力仪表";
    EXPECT_TRUE(FsExists(strMeter + L".dwg"));
    EXPECT_TRUE(FsExists(strMeter + L".sld"));
    std::string bytes;
    ASSERT_TRUE(FsReadBinary(road.m_config.InstallPath() + L"Client.xml", bytes));
    EXPECT_EQ(DecodeText(bytes), std::wstring(L"版本日期：") + kSharedDemoVersion);
}
