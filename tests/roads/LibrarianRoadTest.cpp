// The librarian's road on a shared installation: a new directory from the tree's menu, a new
// item drawn from a selection with its slide and its parts record, renamed, refused while the
// other workstation holds it, modified and saved back, deleted to the trash, and a drawing
// imported; the other workstation sees each change once it has updated.
#include "DemoSite.h"
#include "Road.h"
#include "SharedDemoRoad.h"

#include "DbBuilders.h"
#include "FtpTestServer.h"

#include "dxf/DxfCodec.h"
#include "host/db/AcDb.h"
#include "shared/fileops/FileOps.h"

#include "base/FileSystem.h"
#include "base/SysPath.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

const QString kHoleBrowser = QStringLiteral("开孔图库管理");

// Workstation 2 as its own suite: it only sees the site through its update.
struct OTHER_WORKSTATION {
    explicit OTHER_WORKSTATION(const std::string& osConfig) { bLoaded = config.Load(osConfig); }
    bool Update() {
        std::wstring strReport;
        return update.Run(strReport);
    }
    bool Has(const std::wstring& strRel) {
        return FsExists(config.CommonResInstallPath() + L"InstallHole\\" + strRel);
    }
    CSuiteConfig config;
    CSuiteUpdate update{config};
    bool bLoaded = false;
};

// Clicks the popup menu's entry as soon as the menu is up (its loop runs in the click that
// opened it).
void ClickMenuEntryWhenUp(const QString& strEntry) {
    auto* pTimer = new QTimer;
    QObject::connect(pTimer, &QTimer::timeout, [pTimer, strEntry] {
        auto* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!pMenu)
            return;
        pTimer->stop();
        pTimer->deleteLater();
        for (QAction* pAction : pMenu->actions())
            if (pAction->text() == strEntry) {
                QTest::mouseClick(pMenu, Qt::LeftButton, {},
                                  pMenu->actionGeometry(pAction).center());
                return;
            }
        pMenu->close(); // no such entry: the road's checks tell
    });
    pTimer->start(5);
}

// Types strName into the name dialog's field and confirms it.
void AnswerName(QWidget* pDlg, const QString& strName) {
    QList<QLineEdit*> edits = pDlg->findChildren<QLineEdit*>();
    for (QLineEdit* p : edits)
        if (!p->isReadOnly())
            p->setText(strName);
    QTest::mouseClick(Named<QPushButton>(pDlg, QStringLiteral("确定")), Qt::LeftButton);
}

// Answers the next message box with eButton once it is up; its text goes to *pText.
void AnswerBoxWhenUp(QMessageBox::StandardButton eButton, QString* pText) {
    auto* pTimer = new QTimer;
    QObject::connect(pTimer, &QTimer::timeout, [pTimer, eButton, pText] {
        auto* pBox = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!pBox)
            return;
        pTimer->stop();
        pTimer->deleteLater();
        *pText = pBox->text();
        QTest::mouseClick(pBox->button(eButton), Qt::LeftButton);
    });
    pTimer->start(5);
}

// Clicks the button once this step has ended: what it starts asks on the command line or
// runs posted commands, which the next steps see.
void ClickAfterStep(QPushButton* pButton) {
    QTimer::singleShot(0, [pOK = QPointer<QPushButton>(pButton)] {
        if (pOK)
            QTest::mouseClick(pOK, Qt::LeftButton);
    });
}

double BaseX(const std::wstring& strDrawing) {
    AcDbDatabase db(false, true);
    return db.readDwgFile(strDrawing.c_str()) == Acad::eOk ? db.insbase().x : -1;
}

QTreeWidgetItem* TreeItem(QTreeWidget* pTree, const QString& strText) {
    QList<QTreeWidgetItem*> found =
        pTree->findItems(strText, Qt::MatchExactly | Qt::MatchRecursive);
    return found.size() == 1 ? found[0] : nullptr;
}

QStringList ListRows(QWidget* pBrowser, bool bSelectedOnly) {
    QStringList rows;
    auto* pList = pBrowser->findChild<QTreeWidget*>(QStringLiteral("list"));
    for (int i = 0; pList && i < pList->topLevelItemCount(); ++i)
        if (!bSelectedOnly || pList->topLevelItem(i)->isSelected())
            rows << pList->topLevelItem(i)->text(0);
    return rows;
}

} // namespace

TEST(LibrarianRoad, EachChangeToASharedLibraryReachesTheOtherWorkstation) {
    SHARED_DEMO shared("127.0.0.1(WS1)");
    ASSERT_TRUE(shared.bReady);
    ::setenv("XDG_DATA_HOME", (shared.dir.OsPath() + "trash").c_str(), 1);
    CRoad road("librarian", shared.Config(1));
    ASSERT_TRUE(road.m_bDemo);
    OTHER_WORKSTATION ws2(shared.Config(2));
    ASSERT_TRUE(ws2.bLoaded);
    ASSERT_TRUE(road.LoadModule());
    // What the librarian puts into the library: a frame with a cross, and a line outside.
    AcDbDatabase* pDb = road.m_gui.Database();
    AppendToModelSpace(*pDb, new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(20, 0, 0)));
    AppendToModelSpace(*pDb, new AcDbLine(AcGePoint3d(20, 0, 0), AcGePoint3d(20, 20, 0)));
    AppendToModelSpace(*pDb, new AcDbLine(AcGePoint3d(0, 20, 0), AcGePoint3d(20, 0, 0)));
    AppendToModelSpace(*pDb, new AcDbLine(AcGePoint3d(60, 60, 0), AcGePoint3d(70, 60, 0)));
    road.Frame(-10, -10, 80, 80);

    QWidget* pBrowser = nullptr;
    bool bDirInTree = false, bDirOnWs2 = false, bEntryUp = false, bBrowserBack = false;
    bool bItemOnWs2 = false, bRenamedOnWs2 = false, bOldGoneOnWs2 = false;
    QStringList newRows, renamedRows;
    STRUCT_HOLE_PART_ROW row;
    bool bRow = false;

    road.Then([&] { road.Type(QStringLiteral("DrawingManage")); });
    // The new directory under the meters, from the tree's menu.
    road.WhenWindow(QStringLiteral("目录新建"),
                    [](QWidget* pDlg) { AnswerName(pDlg, QStringLiteral("面板仪表")); });
    road.Then([&] {
        pBrowser = CRoad::FindWindow(kHoleBrowser);
        ASSERT_NE(pBrowser, nullptr);
        road.Milestone("browser", pBrowser);
        auto* pTree = pBrowser->findChild<QTreeWidget*>(QStringLiteral("tree"));
        QTreeWidgetItem* pMeters = TreeItem(pTree, QStringLiteral("仪表"));
        ASSERT_NE(pMeters, nullptr);
        ClickMenuEntryWhenUp(QStringLiteral("目录新建"));
        QPoint at = pTree->visualItemRect(pMeters).center();
        QTest::mouseClick(pTree->viewport(), Qt::LeftButton, {}, at);
        emit pTree->customContextMenuRequested(at);
        QTreeWidgetItem* pNew = TreeItem(pTree, QStringLiteral("面板仪表"));
        bDirInTree = pNew != nullptr;
        ASSERT_NE(pNew, nullptr);
        QTest::mouseClick(pTree->viewport(), Qt::LeftButton, {},
                          pTree->visualItemRect(pNew).center());
        road.Milestone("directory", pBrowser);
        bDirOnWs2 = ws2.Update() && FsIsDirectory(ws2.config.CommonResInstallPath() +
                                                  L"InstallHole\\仪表\\面板仪表");
    });
    // A new item: its name, then the entry dialog beside the drawing, two corners and OK.
    road.WhenWindow(QStringLiteral("图形新建"),
                    [](QWidget* pDlg) { AnswerName(pDlg, QStringLiteral("温度表")); });
    road.Then([&] {
        QTest::mouseClick(Named<QPushButton>(pBrowser, QStringLiteral("新建(&N)")), Qt::LeftButton);
    });
    road.Then([&] {
        QWidget* pEntry = CRoad::FindWindow(QStringLiteral("开孔图新建"));
        bEntryUp = pEntry != nullptr;
        ASSERT_NE(pEntry, nullptr);
        pEntry->findChild<QLineEdit*>(QStringLiteral("611"))->setText(QStringLiteral("温度表孔"));
        pEntry->findChild<QLineEdit*>(QStringLiteral("604"))->setText(QStringLiteral("T-7"));
        road.Milestone("entry");
        // OK asks for the corners on the command line: the next steps.
        ClickAfterStep(pEntry->findChild<QPushButton*>(QStringLiteral("IDOK")));
    });
    road.Then([&] { road.Click(-5, -5); });
    road.Then([&] { road.Click(25, 25); });
    road.Then([&] {
        bBrowserBack = CRoad::FindWindow(kHoleBrowser) != nullptr;
        road.Milestone("new-item", pBrowser);
        newRows = ListRows(pBrowser, true);
        bRow = CSuiteMainLib::ReadRow(
            road.m_config.LocalInstallPath() + CSuiteMainLib::kDatabaseFile, L"温度表.dwg", row);
        bItemOnWs2 = ws2.Update() && ws2.Has(L"仪表\\面板仪表\\温度表.dwg") &&
                     ws2.Has(L"仪表\\面板仪表\\温度表.sld");
    });
    // Renamed: drawing and slide move together.
    road.WhenWindow(QStringLiteral("图形更名"),
                    [](QWidget* pDlg) { AnswerName(pDlg, QStringLiteral("温控表")); });
    road.Then([&] {
        QTest::mouseClick(Named<QPushButton>(pBrowser, QStringLiteral("更名(&R)")), Qt::LeftButton);
        road.Milestone("renamed", pBrowser);
        renamedRows = ListRows(pBrowser, true);
        bRenamedOnWs2 = ws2.Update() && ws2.Has(L"仪表\\面板仪表\\温控表.dwg") &&
                        ws2.Has(L"仪表\\面板仪表\\温控表.sld");
        bOldGoneOnWs2 = !ws2.Has(L"仪表\\面板仪表\\温度表.dwg");
    });
    // Workstation 2 has the item checked out: the librarian doesn't take it over.
    const std::wstring strSiteItem =
        shared.server.Root() + L"\\InstallHole\\仪表\\面板仪表\\温控表.dwg";
    QString strLockQuestion;
    bool bRefused = false, bSaveUp = false, bLockGone = false, bDeletedOnWs2 = false;
    double dWs2BaseX = -1;
    road.Then([&] {
        ASSERT_TRUE(WriteTextFile(strSiteItem + L".bak", L"127.0.0.1(WS2)"));
        AnswerBoxWhenUp(QMessageBox::No, &strLockQuestion);
        QTest::mouseClick(Named<QPushButton>(pBrowser, QStringLiteral("修改(&E)")), Qt::LeftButton);
        bRefused = !CRoad::FindWindow(QStringLiteral("开孔图修改")) && pBrowser->isVisible();
        FsDeleteFile(strSiteItem + L".bak"); // workstation 2 is done
    });
    // Now the item opens beside its save window; a new base point is saved back.
    road.Then([&] {
        QTest::mouseClick(Named<QPushButton>(pBrowser, QStringLiteral("修改(&E)")), Qt::LeftButton);
    });
    road.Then([&] {
        QWidget* pSave = CRoad::FindWindow(QStringLiteral("开孔图修改"));
        bSaveUp = pSave != nullptr;
        ASSERT_NE(pSave, nullptr);
        pSave->findChild<QLineEdit*>(QStringLiteral("608"))->setText(QStringLiteral("12.5"));
        road.Milestone("modify");
        ClickAfterStep(pSave->findChild<QPushButton*>(QStringLiteral("IDOK")));
    });
    road.Then([&] {
        road.Milestone("saved-back", pBrowser);
        bLockGone = !FsExists(strSiteItem + L".bak");
        if (ws2.Update())
            dWs2BaseX = BaseX(ws2.config.CommonResInstallPath() +
                              L"InstallHole\\仪表\\面板仪表\\温控表.dwg");
    });
    // Deleted to the trash, after the question; the site loses it too.
    QString strDeleteQuestion;
    QStringList afterDelete, afterImport;
    bool bImportedOnWs2 = false;
    road.Then([&] {
        auto* pList = pBrowser->findChild<QTreeWidget*>(QStringLiteral("list"));
        ASSERT_EQ(pList->topLevelItemCount(), 1);
        QTest::mouseClick(pList->viewport(), Qt::LeftButton, {},
                          pList->visualItemRect(pList->topLevelItem(0)).center());
        AnswerBoxWhenUp(QMessageBox::Yes, &strDeleteQuestion);
        QTest::mouseClick(Named<QPushButton>(pBrowser, QStringLiteral("删除(&D)")), Qt::LeftButton);
        afterDelete = ListRows(pBrowser, false);
        road.Milestone("deleted", pBrowser);
        bDeletedOnWs2 = ws2.Update() && !ws2.Has(L"仪表\\面板仪表\\温控表.dwg") &&
                        !ws2.Has(L"仪表\\面板仪表\\温控表.sld");
    });
    // A drawing from elsewhere imported through the tree's menu and the file dialog.
    const std::string osImport = shared.dir.OsPath() + "开关孔.dwg";
    road.WhenWindow(QStringLiteral("选择要导入的图纸文件(.dwg)"), [&](QWidget* pWindow) {
        auto* pDialog = qobject_cast<QFileDialog*>(pWindow);
        ASSERT_NE(pDialog, nullptr);
        pDialog->selectFile(QString::fromStdString(osImport));
        static_cast<QDialog*>(pDialog)->accept(); // Open
    });
    road.Then([&] {
        AcDbDatabase drawing(true);
        AppendToModelSpace(drawing, new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(8, 8, 0)));
        ASSERT_EQ(drawing.saveAs(FromOsPath(osImport).c_str()), Acad::eOk);
        auto* pTree = pBrowser->findChild<QTreeWidget*>(QStringLiteral("tree"));
        QTreeWidgetItem* pDir = TreeItem(pTree, QStringLiteral("面板仪表"));
        ASSERT_NE(pDir, nullptr);
        ClickMenuEntryWhenUp(QStringLiteral("文件导入"));
        emit pTree->customContextMenuRequested(pTree->visualItemRect(pDir).center());
        afterImport = ListRows(pBrowser, false);
        road.Milestone("imported", pBrowser);
        bImportedOnWs2 = ws2.Update() && ws2.Has(L"仪表\\面板仪表\\开关孔.dwg");
    });
    road.Run();

    EXPECT_TRUE(bDirInTree);
    EXPECT_TRUE(bDirOnWs2);
    EXPECT_TRUE(bEntryUp);
    EXPECT_TRUE(bBrowserBack);
    EXPECT_EQ(newRows, QStringList{QStringLiteral("温度表.dwg")});
    ASSERT_TRUE(bRow);
    EXPECT_EQ(row.strName + L"|" + row.strModel + L"|" + row.strCode, L"温度表孔|温度表|T-7");
    EXPECT_TRUE(bItemOnWs2);
    EXPECT_EQ(renamedRows, QStringList{QStringLiteral("温控表.dwg")});
    EXPECT_TRUE(bRenamedOnWs2);
    EXPECT_TRUE(bOldGoneOnWs2);

    EXPECT_NE(strLockQuestion.indexOf(QStringLiteral("127.0.0.1(WS2)")), -1)
        << qPrintable(strLockQuestion);
    EXPECT_TRUE(bRefused);
    EXPECT_TRUE(bSaveUp);
    EXPECT_TRUE(bLockGone);
    EXPECT_EQ(dWs2BaseX, 12.5);

    EXPECT_NE(strDeleteQuestion.indexOf(QStringLiteral("真的删除所选1项吗")), -1)
        << qPrintable(strDeleteQuestion);
    EXPECT_TRUE(afterDelete.isEmpty()) << qPrintable(afterDelete.join(QLatin1Char(',')));
    EXPECT_TRUE(bDeletedOnWs2);
    EXPECT_EQ(afterImport, QStringList{QStringLiteral("开关孔.dwg")});
    EXPECT_TRUE(bImportedOnWs2);
    EXPECT_TRUE(FsExists(FromOsPath(shared.dir.OsPath()) + L"trash\\Trash\\files\\温控表.dwg"));

    // What went to the trash is the item as drawn: the frame and its cross, not the line
    // outside the corners.
    std::wstring strItem = FromOsPath(shared.dir.OsPath()) + L"trash\\Trash\\files\\";
    AcDbDatabase item(false, true);
    ASSERT_EQ(item.readDwgFile((strItem + L"温控表.dwg").c_str()), Acad::eOk);
    EXPECT_EQ(item.insbase().x, 12.5);
    int nLines = 0;
    AcDbBlockTableRecord* pMs = nullptr;
    ASSERT_EQ(acdbOpenObject(pMs, item.modelSpaceId(), AcDb::kForRead), Acad::eOk);
    AcDbBlockTableRecordIterator* pIt = nullptr;
    pMs->newIterator(pIt);
    for (; !pIt->done(); pIt->step()) {
        AcDbEntity* pEnt = nullptr;
        if (pIt->getEntity(pEnt, AcDb::kForRead) == Acad::eOk) {
            nLines += dynamic_cast<AcDbLine*>(pEnt) != nullptr;
            pEnt->close();
        }
    }
    delete pIt;
    pMs->close();
    EXPECT_EQ(nLines, 3);
    EXPECT_TRUE(FsExists(strItem + L"温控表.sld"));
    std::wstring strDir = road.m_config.CommonResInstallPath() + L"InstallHole\\仪表\\面板仪表\\";
    EXPECT_FALSE(FsExists(strDir + L"温控表.dwg"));
    EXPECT_TRUE(FsExists(strDir + L"开关孔.dwg"));
    EXPECT_FALSE(FsExists(strDir + L"温度表.dwg"));
    EXPECT_FALSE(FsExists(strDir + L"温度表.sld"));
}
