// The browser's Qt window offscreen: opened by the command, cells clicked, insert round trip, exit.
#include "LibraryBrowserFixture.h"

#include "app/entry/DrawingManageApp.h"
#include "base/FileSystem.h"
#include "base/SysPath.h"
#include "library/views/LibBrowserWindow.h"
#include "base/SlideFile.h"
#include "ui/views/DirTreeCtrl.h"
#include "ui/views/MyListCtrl.h"
#include "ui/views/SlideCtrl.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>

namespace {

// A slide of a cutout: its outline and centre lines, as the library's slides show them.
void WriteCutoutSlide(const std::wstring& strPath, double w, double h) {
    std::vector<STRUCT_VIEW_VECTOR> vectors = {
        {-w / 2, -h / 2, w / 2, -h / 2, 7}, {w / 2, -h / 2, w / 2, h / 2, 7},
        {w / 2, h / 2, -w / 2, h / 2, 7},   {-w / 2, h / 2, -w / 2, -h / 2, 7},
        {-w * 0.65, 0, w * 0.65, 0, 1},     {0, -h * 0.65, 0, h * 0.65, 1}};
    CSlide slide;
    ASSERT_TRUE(MakeViewSlide(vectors, -w, -h, w, h, 480, 360, slide));
    ASSERT_TRUE(WriteSlideFile(strPath, slide));
}

class LibBrowserWindowTest : public CLibraryBrowserTest {
protected:
    void SetUp() override {
        m_host.m_strCommonRes = m_dir / L"common\\";
        CreateDirPath(m_dir / L"common\\DzStrucLib");
        const wchar_t* names[] = {L"22mm按钮",    L"30mm按钮",   L"急停按钮",  L"96x96电流表",
                                  L"72x72电压表", L"FK6623风扇", L"5x10腰形孔"};
        std::wstring strDir = m_dir / L"common\\InstallHole\\按钮指示灯\\";
        CreateDirPath(strDir);
        for (int i = 0; i < 7; ++i) {
            WriteBytes(strDir + names[i] + L".dwg", "item");
            WriteCutoutSlide(strDir + names[i] + L".sld", 20 + 10 * i, 10 + 12 * i);
        }
        m_host.m_editor.m_pFrame = &m_frame;
        ASSERT_EQ(m_app.EntryPoint(AcRx::kInitAppMsg, nullptr), AcRx::kRetOK);
    }
    void TearDown() override {
        m_app.EntryPoint(AcRx::kUnloadAppMsg, nullptr);
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    CLibBrowserDialog* Dialog() {
        auto* pBrowser = dynamic_cast<CCircuitLibDlg*>(g_HoleLib.pLibDlg);
        if (!pBrowser)
            return nullptr;
        return static_cast<CLibBrowserWindow&>(pBrowser->View()).Dialog();
    }
    QPushButton* Button(int nId) { return static_cast<QPushButton*>(Dialog()->m_controls[nId]); }

    QWidget m_frame;
    CDrawingManageApp m_app;
};

} // namespace

TEST_F(LibBrowserWindowTest, OpensOnTheFrameClicksSelectAndInsertComesBackThroughTheCommand) {
    m_host.Run({L"DrawingManage"});
    CLibBrowserDialog* pDialog = Dialog();
    ASSERT_NE(pDialog, nullptr);
    EXPECT_TRUE(pDialog->isVisible());
    EXPECT_EQ(pDialog->parentWidget(), &m_frame);
    EXPECT_EQ(pDialog->windowTitle(), QStringLiteral("开孔图库管理"));
    EXPECT_EQ(pDialog->m_pTree->currentItem()->text(0), QStringLiteral("按钮指示灯"));
    ASSERT_EQ(pDialog->m_pList->topLevelItemCount(), 7);
    QString strFirst = pDialog->m_pList->topLevelItem(0)->text(0);
    EXPECT_EQ(pDialog->m_labels[0]->text() + QStringLiteral(".dwg"), strFirst);
    EXPECT_TRUE(pDialog->m_slides[6]->GetProperty(1).toString().endsWith(QStringLiteral(".sld")));
    EXPECT_TRUE(pDialog->m_slides[7]->GetProperty(1).toString().isEmpty());

    QTest::mouseClick(pDialog->m_slides[2], Qt::LeftButton);
    EXPECT_EQ(pDialog->m_pList->SelectedRows(), std::vector<int>{2});
    EXPECT_EQ(pDialog->m_slides[2]->GetProperty(2).toUInt(), kCellSelected);
    EXPECT_EQ(pDialog->m_slides[0]->GetProperty(2).toUInt(), kCellNormal);
    QTest::mouseClick(pDialog->m_slides[9], Qt::LeftButton); // an empty cell
    EXPECT_EQ(pDialog->m_pList->SelectedRows(), std::vector<int>{2});

    // The list drives the cells as well.
    pDialog->m_pList->topLevelItem(4)->setSelected(true);
    pDialog->m_pList->topLevelItem(2)->setSelected(false);
    EXPECT_EQ(pDialog->m_slides[4]->GetProperty(2).toUInt(), kCellSelected);

    pDialog->m_pSearch->setText(QStringLiteral("急停"));
    int nMatch = pDialog->m_pList->SelectedRows().at(0);
    EXPECT_EQ(pDialog->m_pList->topLevelItem(nMatch)->text(0), QStringLiteral("急停按钮.dwg"));

    pDialog->grab().save(QString::fromStdString(QM_SCREENSHOT_DIR "/library-browser.png"));

    auto* pUp = pDialog->findChild<QToolButton*>(QStringLiteral("countUp"));
    ASSERT_NE(pUp, nullptr);
    QTest::mouseClick(pUp, Qt::LeftButton);
    QTest::mouseClick(pUp, Qt::LeftButton);
    QTest::mouseClick(Button(IDC_BTN_INSERT), Qt::LeftButton);
    EXPECT_EQ(g_HoleLib.nCount, 3);
    EXPECT_FALSE(pDialog->isVisible());
    EXPECT_EQ(Posted(), L"(Command)\nDrawingInsert\n");
    EXPECT_EQ(GetFileName(g_HoleLib.strDwgFile), L"急停按钮.dwg");

    m_host.Run({}); // the posted command runs and raises the browser again
    EXPECT_EQ(Dialog(), pDialog);
    EXPECT_TRUE(pDialog->isVisible());
    EXPECT_TRUE(g_HoleLib.strDwgFile.empty());
    EXPECT_TRUE(pDialog->m_pList->SelectedRows().empty());

    QTest::mouseClick(Button(IDC_BTN_EXIT), Qt::LeftButton);
    EXPECT_EQ(g_HoleLib.pLibDlg, nullptr);
    QPointer<CLibBrowserDialog> pGone = pDialog;
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(pGone.isNull());
}

TEST_F(LibBrowserWindowTest, TheLayoutBrowserHasItsOwnTitleAndClosingTheWindowForgetsIt) {
    CreateDirPath(m_dir / L"local\\LaySketch\\配电柜");
    m_host.Run({L"LaySketchManage"});
    auto* pBrowser = dynamic_cast<CCircuitLibDlg*>(g_LayoutLib.pLibDlg);
    ASSERT_NE(pBrowser, nullptr);
    CLibBrowserDialog* pDialog = static_cast<CLibBrowserWindow&>(pBrowser->View()).Dialog();
    EXPECT_EQ(pDialog->windowTitle(), QStringLiteral("屏面布置图库管理"));
    EXPECT_EQ(static_cast<QAbstractButton*>(pDialog->m_controls[IDC_CHK_EXPLODE])->text(),
              QStringLiteral("炸开屏面图块"));
    pDialog->close();
    EXPECT_EQ(g_LayoutLib.pLibDlg, nullptr);
    g_LayoutLib = CLibState();
}
