// The road of one insertion in a shared installation: a workstation a commit behind the site
// opens the hole browser (and is brought up to date first: the site's new meter arrives),
// picks a cell, asks for a row of three exploded, and the browser comes back when the
// insertion has run.
#include "DemoSite.h"
#include "Road.h"

#include "dxf/DxfCodec.h"

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
    ASSERT_TRUE(road.LoadModule());
    int nUpdatesAtOpen = -1;
    bool bPicked = false, bHidden = false, bBack = false;
    QString strCount;

    road.Then([&] { road.Type(QStringLiteral("DrawingManage")); });
    road.Then([&] {
        nUpdatesAtOpen = road.m_nUpdates;
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

    EXPECT_EQ(nUpdatesAtOpen, 1); // behind the site: updated before the browser opened
    EXPECT_TRUE(bPicked);
    EXPECT_EQ(strCount, QStringLiteral("3"));
    EXPECT_TRUE(bHidden);
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
