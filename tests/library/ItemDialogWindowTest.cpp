// The item dialogs' Qt window offscreen: fields by id, Esc, the buttons and the icons.
#include "library/views/ItemDialogWindow.h"

#include "LibraryBrowserFixture.h"

#include "app/DocumentServices.h"

#include "app/LibState.h"
#include "app/entry/DrawingManageApp.h"
#include "base/FileSystem.h"
#include "library/ItemDialogs.h"
#include "library/views/LibBrowserWindow.h"
#include "ui/views/ButtonST.h"
#include "ui/views/MyListCtrl.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QWidget>

#include <gtest/gtest.h>

namespace {

// Counts what the window hands to its presenter.
class CCountingDialog : public CItemDialog {
public:
    CCountingDialog(CLibState& state, const ITEM_DIALOG_TEMPLATE& tmpl,
                    std::unique_ptr<IItemDialogView> pView, bool bSwallowEsc)
        : CItemDialog(state, nullptr, LibraryKind::Hole, tmpl, std::move(pView)),
          m_bSwallowEsc(bSwallowEsc) {}
    void OnOK() override { ++m_nOK; }
    void OnCancel() override { ++m_nCancel; }
    bool PreTranslateMessage(bool bEscape) override { return m_bSwallowEsc && bEscape; }
    int m_nOK = 0, m_nCancel = 0;

protected:
    void OnInitDialog() override {}

private:
    bool m_bSwallowEsc;
};

struct Window {
    Window(const ITEM_DIALOG_TEMPLATE& tmpl, bool bSwallowEsc) {
        frame.resize(1200, 800);
        auto pView = std::make_unique<CItemDialogView>(&frame);
        pWindowView = pView.get();
        pDlg = std::make_unique<CCountingDialog>(state, tmpl, std::move(pView), bSwallowEsc);
        EXPECT_TRUE(pDlg->Create());
        pDlg->Show();
    }
    CItemDialogWindow& W() { return *pWindowView->Window(); }
    QWidget frame;
    CLibState state;
    CItemDialogView* pWindowView = nullptr;
    std::unique_ptr<CCountingDialog> pDlg;
};

} // namespace

TEST(ItemDialogWindow, EntryDialogSwallowsEscAndSendsItsButtons) {
    Window w(EntryDialogTemplate(LibraryKind::Hole), true);
    EXPECT_EQ(w.W().windowTitle(), QStringLiteral("开孔图新建"));
    w.pWindowView->SetText(611, L"按钮孔");
    EXPECT_EQ(w.pWindowView->GetText(611), L"按钮孔");
    EXPECT_EQ(w.W().m_fields.size(), 5u);
    QTest::keyClick(&w.W(), Qt::Key_Escape);
    EXPECT_EQ(w.pDlg->m_nCancel, 0);
    EXPECT_TRUE(w.W().isVisible());
    QTest::mouseClick(w.W().findChild<CButtonST*>(QStringLiteral("IDOK")), Qt::LeftButton);
    EXPECT_EQ(w.pDlg->m_nOK, 1);
}

TEST(ItemDialogWindow, LayoutSaveDialogHasBasePointHintAndIconsAndEscCancels) {
    Window w(SaveDialogTemplate(LibraryKind::Layout), false);
    EXPECT_EQ(w.W().windowTitle(), QStringLiteral("保存修改"));
    EXPECT_EQ(w.W().m_fields.size(), 2u);
    EXPECT_FALSE(w.W().findChild<CButtonST*>(QStringLiteral("IDOK"))->icon().isNull());
    QTest::keyClick(&w.W(), Qt::Key_Escape);
    EXPECT_EQ(w.pDlg->m_nCancel, 1);
}

namespace {

// The module loaded on a frame, the editor waiting for commands as the desktop's does.
class ItemDialogDesktopTest : public CLibraryBrowserTest {
protected:
    void SetUp() override {
        m_host.m_strCommonRes = m_dir / L"common\\";
        CreateDirPath(m_dir / L"common\\DzStrucLib");
        CreateDirPath(m_dir / L"common\\InstallHole\\风扇");
        WriteEmptyDrawing(m_dir / L"common\\InstallHole\\风扇\\孔.dwg");
        m_host.m_editor.m_pFrame = &m_frame;
        m_frame.resize(1000, 700);
        ASSERT_EQ(m_app.EntryPoint(AcRx::kInitAppMsg, nullptr), AcRx::kRetOK);
    }
    void TearDown() override {
        m_app.EntryPoint(AcRx::kUnloadAppMsg, nullptr);
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    // Each wait for a command runs the next step, as a person's clicks would.
    void RunSteps(std::deque<std::function<void()>> steps) {
        m_host.m_editor.SetSource(
            [&steps](std::wstring&) {
                if (steps.empty())
                    return CEditorHost::LINE_READ::End;
                auto step = steps.front();
                steps.pop_front();
                step();
                return CEditorHost::LINE_READ::Woken;
            },
            false);
        m_host.m_editor.RunLoop();
    }
    CLibBrowserDialog* Browser() {
        auto* pBrowser = dynamic_cast<CCircuitLibDlg*>(g_HoleLib.pLibDlg);
        return pBrowser ? static_cast<CLibBrowserWindow&>(pBrowser->View()).Dialog() : nullptr;
    }
    CItemDialogWindow* SaveWindow() {
        auto* pDlg = dynamic_cast<CItemDialog*>(g_HoleLib.pSaveDlg);
        return pDlg ? static_cast<CItemDialogView&>(pDlg->View()).Window() : nullptr;
    }

    QWidget m_frame;
    CDrawingManageApp m_app;
};

} // namespace

TEST_F(ItemDialogDesktopTest, ModifyOpensTheDrawingBesideTheSaveWindowAndOkSavesIt) {
    m_host.Run({L"DrawingManage"});
    ASSERT_NE(Browser(), nullptr);
    std::wstring strItem = m_dir / L"common\\InstallHole\\风扇\\孔.dwg";
    QPointer<CItemDialogWindow> pWindow;
    RunSteps({
        [&] {
            ASSERT_EQ(Browser()->m_pList->topLevelItemCount(), 1);
            Browser()->m_pList->topLevelItem(0)->setSelected(true);
            QTest::mouseClick(static_cast<QPushButton*>(Browser()->m_controls[IDC_BTN_MODIFY]),
                              Qt::LeftButton);
        },
        [&] {
            pWindow = SaveWindow();
            ASSERT_NE(pWindow, nullptr);
            EXPECT_TRUE(pWindow->isVisible());
            EXPECT_FALSE(Browser()->isVisible());
            EXPECT_EQ(pWindow->parentWidget(), &m_frame);
            EXPECT_EQ(pWindow->m_fields.at(608)->text(), QStringLiteral("0.00"));
            EXPECT_EQ(acDocManagerPtr()->mdiActiveDocument()->fileName(), strItem);
            pWindow->m_fields.at(608)->setText(QStringLiteral("12.5"));
            pWindow->m_fields.at(605)->setText(QStringLiteral("风扇孔"));
            QTest::mouseClick(pWindow->findChild<CButtonST*>(QStringLiteral("IDOK")),
                              Qt::LeftButton);
        },
    });
    EXPECT_EQ(g_HoleLib.pSaveDlg, nullptr);
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(pWindow.isNull());
    EXPECT_TRUE(Browser()->isVisible());
    AcDbDatabase item(false, true);
    ASSERT_EQ(item.readDwgFile(strItem.c_str()), Acad::eOk);
    EXPECT_EQ(item.insbase().x, 12.5);
    EXPECT_FALSE(IsDocumentOpen(strItem));
}
