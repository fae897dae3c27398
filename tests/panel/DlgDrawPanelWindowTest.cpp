// The panel dialog's window offscreen: typed sizes reach the presenter, a refusal keeps the
// window open on the field, "绘制" ends it with OK and "关闭" with cancel.
#include "panel/views/DlgDrawPanelWindow.h"

#include "panel/DlgDrawPanel.h"

#include "TestHost.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

namespace {

QDialog* OpenDialog() {
    for (QWidget* p : QApplication::topLevelWidgets())
        if (auto* pDlg = qobject_cast<QDialog*>(p); pDlg && pDlg->isVisible())
            return pDlg;
    return nullptr;
}

QPushButton* Button(QDialog* pDlg, const QString& strText) {
    for (QPushButton* p : pDlg->findChildren<QPushButton*>())
        if (p->text() == strText)
            return p;
    return nullptr;
}

// Runs the steps one after another once the dialog is up, in the order they were given.
void Script(std::vector<std::function<void(QDialog*)>> steps) {
    auto pSteps = std::make_shared<std::vector<std::function<void(QDialog*)>>>(std::move(steps));
    for (size_t i = 0; i < pSteps->size(); ++i)
        QTimer::singleShot(static_cast<int>(i) * 20, [pSteps, i] { (*pSteps)[i](OpenDialog()); });
}

struct PanelWindowFixture : ::testing::Test {
    void SetUp() override {
        host.m_strLocal = dir.Path();
        host.m_strInstall = dir.Path();
    }
    CTempDir dir;
    CTestHost host;
};

} // namespace

TEST_F(PanelWindowFixture, TypedSizesGoThroughTheRefusalsToOk) {
    CDlgDrawPanel dlg;
    QString strTitle;
    Script({[&](QDialog* p) {
                ASSERT_NE(p, nullptr);
                strTitle = p->windowTitle();
                auto edits = p->findChildren<QLineEdit*>();
                edits[0]->setText(QStringLiteral("1000"));
                edits[1]->setText(QStringLiteral("abc"));
                edits[2]->setText(QStringLiteral("2"));
                QTest::mouseClick(Button(p, QStringLiteral("绘制")), Qt::LeftButton);
            },
            [&](QDialog* p) {
                ASSERT_NE(p, nullptr); // refused: still open
                auto edits = p->findChildren<QLineEdit*>();
                EXPECT_EQ(p->focusWidget(), edits[1]); // the window's focus, active or not
                EXPECT_EQ(edits[1]->selectedText(), QStringLiteral("abc"));
                edits[1]->setText(QStringLiteral("600"));
                p->findChildren<QCheckBox*>()[1]->setChecked(false);
                QTest::mouseClick(Button(p, QStringLiteral("绘制")), Qt::LeftButton);
            }});
    EXPECT_EQ(RunDlgDrawPanelWindow(dlg), IDOK);
    EXPECT_EQ(strTitle, QStringLiteral("面板绘制"));
    ASSERT_EQ(host.m_boxes.size(), 1u);
    EXPECT_EQ(host.m_boxes[0].strText, L"面板高度数据输入不正确，请输入正实数!");
    EXPECT_DOUBLE_EQ(g_dPanelLength, 100.0); // 1000 mm at the default 1:10
    EXPECT_EQ(dlg.m_nAxisY, 0);
    EXPECT_EQ(OpenDialog(), nullptr);
}

TEST_F(PanelWindowFixture, CloseCancelsAndTheCloseBoxActsTheSame) {
    for (bool bEscape : {false, true}) {
        CDlgDrawPanel dlg;
        Script({[&](QDialog* p) {
            ASSERT_NE(p, nullptr);
            if (bEscape)
                QTest::keyClick(p, Qt::Key_Escape);
            else
                QTest::mouseClick(Button(p, QStringLiteral("关闭")), Qt::LeftButton);
        }});
        EXPECT_EQ(RunDlgDrawPanelWindow(dlg), IDCANCEL) << bEscape;
    }
}
