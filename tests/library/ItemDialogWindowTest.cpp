// The item dialogs' Qt window offscreen: fields by id, Esc, the buttons and the icons.
#include "library/views/ItemDialogWindow.h"

#include "app/LibState.h"
#include "library/ItemDialogs.h"
#include "ui/views/ButtonST.h"

#include <QKeyEvent>
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
