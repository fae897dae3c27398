// Boxes as QMessageBox with the module's caption, icon and buttons; the wait cursor of the app.
#include "gui/GuiUi.h"

#include "base/StrUtil.h"

#include <QApplication>
#include <QMessageBox>

#include <cstdio>

namespace {

QMessageBox::Icon BoxIcon(unsigned nFlags) {
    switch (nFlags & 0xF0) {
    case MB_ICONSTOP:
        return QMessageBox::Critical;
    case MB_ICONQUESTION:
        return QMessageBox::Question;
    case MB_ICONEXCLAMATION:
        return QMessageBox::Warning;
    case MB_ICONINFORMATION:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

struct BUTTON {
    QMessageBox::StandardButton eButton;
    int nAnswer;
};

std::vector<BUTTON> Buttons(unsigned nFlags) {
    switch (nFlags & 0x0F) {
    case MB_OKCANCEL:
        return {{QMessageBox::Ok, IDOK}, {QMessageBox::Cancel, IDCANCEL}};
    case MB_YESNO:
        return {{QMessageBox::Yes, IDYES}, {QMessageBox::No, IDNO}};
    case MB_RETRYCANCEL:
        return {{QMessageBox::Retry, IDRETRY}, {QMessageBox::Cancel, IDCANCEL}};
    default:
        return {{QMessageBox::Ok, IDOK}};
    }
}

} // namespace

int CGuiUi::MessageBox(const std::wstring& strText, const std::wstring& strCaption,
                       unsigned nFlags) {
    std::vector<BUTTON> buttons = Buttons(nFlags);
    QMessageBox box(BoxIcon(nFlags), QString::fromStdWString(strCaption),
                    QString::fromStdWString(strText), QMessageBox::NoButton, m_pParent);
    for (const BUTTON& b : buttons)
        box.addButton(b.eButton);
    box.setDefaultButton(buttons.front().eButton);
    if (buttons.size() > 1)
        box.setEscapeButton(buttons.back().eButton);
    // The box stands over the wait cursor, as the editor's boxes do.
    bool bWaiting = m_nWaitDepth > 0;
    if (bWaiting)
        QApplication::setOverrideCursor(Qt::ArrowCursor);
    int nClicked = box.exec();
    if (bWaiting)
        QApplication::restoreOverrideCursor();
    for (const BUTTON& b : buttons)
        if (b.eButton == nClicked)
            return b.nAnswer;
    // Closed without a button: the box's escape answer.
    return buttons.size() > 1 ? buttons.back().nAnswer : IDOK;
}

void CGuiUi::Print(const std::wstring& strText) {
    if (m_print) {
        m_print(strText);
        return;
    }
    std::fputs(WideToUtf8(strText).c_str(), stdout);
    std::fflush(stdout);
}

void CGuiUi::BeginWaitCursor() {
    if (m_nWaitDepth++ == 0)
        QApplication::setOverrideCursor(Qt::WaitCursor);
}

void CGuiUi::EndWaitCursor() {
    if (m_nWaitDepth == 0)
        return;
    if (--m_nWaitDepth == 0)
        QApplication::restoreOverrideCursor();
}
