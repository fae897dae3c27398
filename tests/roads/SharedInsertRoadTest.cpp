// The road of one insertion in a shared installation: a workstation a commit behind the site
// opens the hole browser (and is told to update first), picks a cell, asks for a row of three
// exploded, and the browser comes back when the insertion has run.
#include "DemoSite.h"
#include "Road.h"

#include "dxf/DxfCodec.h"

#include "base/FileSystem.h"
#include "base/SysPath.h"

#include "FtpTestServer.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

const QString kHoleBrowser = QStringLiteral("开孔图库管理");

// The site and its two workstations, served before the road starts on workstation 2.
struct SHARED_DEMO {
    SHARED_DEMO() {
        acdbSetFileCodec(&GetDxfCodec());
        bReady = server.Start() && MakeSharedDemo(dir.OsPath(), ToOsPath(server.Root()),
                                                  server.Port(), server.User(), server.Password());
        ::setenv("QM_HOST_ID", "127.0.0.1(WS2)", 1);
    }
    ~SHARED_DEMO() { ::unsetenv("QM_HOST_ID"); }
    std::string Config(int n) const {
        return dir.OsPath() + "ws" + std::to_string(n) + "/suite.conf";
    }
    CTempDir dir;
    CFtpTestServer server;
    bool bReady = false;
};

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

template <class T> T* Named(QWidget* pParent, const QString& strText) {
    for (T* p : pParent->findChildren<T*>())
        if (p->text() == strText)
            return p;
    return nullptr;
}

// The insertion itself, from the posted command to the reference under the mouse: its steps
// join the road here once the command inserts; until then the posted command only hands the
// browser back.
void InsertionSteps(CRoad&) {}

} // namespace

TEST(SharedInsertRoad, ABehindWorkstationUpdatesPicksACellAndGetsItsBrowserBack) {
    SHARED_DEMO shared;
    ASSERT_TRUE(shared.bReady);
    CRoad road("insert", shared.Config(2));
    ASSERT_TRUE(road.m_bDemo);
    int nUpdates = 0; // the suite's own update command, which this module only asks for
    road.m_gui.m_editor.m_commands.AddNative(L"SynchUpdateHide", [&] { ++nUpdates; });
    ASSERT_TRUE(road.LoadModule());
    int nUpdatesAtOpen = -1;
    bool bPicked = false, bHidden = false, bBack = false;
    QString strCount;

    road.Then([&] { road.Type(QStringLiteral("DrawingManage")); });
    road.Then([&] {
        nUpdatesAtOpen = nUpdates;
        QWidget* pBrowser = CRoad::FindWindow(kHoleBrowser);
        ASSERT_NE(pBrowser, nullptr);
        road.Milestone("browser", pBrowser);
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
    InsertionSteps(road);
    road.Then([&] {
        bBack = CRoad::FindWindow(kHoleBrowser) != nullptr;
        road.Milestone("back");
    });
    road.Run();

    EXPECT_EQ(nUpdatesAtOpen, 1); // behind the site: told to update before the browser opened
    EXPECT_TRUE(bPicked);
    EXPECT_EQ(strCount, QStringLiteral("3"));
    EXPECT_TRUE(bHidden);
    EXPECT_TRUE(bBack);
    EXPECT_EQ(nUpdates, 2); // and again when the browser came back: still behind
    // The workstation's copy of the version is the site's to change, through the update.
    std::wstring strClient = FromOsPath(shared.dir.OsPath() + "ws2/Client.xml");
    std::string bytes;
    ASSERT_TRUE(FsReadBinary(strClient, bytes));
    EXPECT_NE(bytes.find("17,30,00"), std::string::npos);
}
