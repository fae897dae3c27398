// The item dialogs' Qt window: fields by the template's ids, the pick button and the two buttons.
#include "library/views/ItemDialogWindow.h"

#include "host/HostEditor.h"
#include "library/ItemDialogs.h"
#include "ui/views/ButtonST.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {

QString ToQt(const std::wstring& s) {
    return QString::fromStdWString(s);
}

} // namespace

CItemDialogWindow::CItemDialogWindow(QWidget* pParent, const ITEM_DIALOG_TEMPLATE& tmpl)
    : QDialog(pParent) {
    setWindowTitle(ToQt(tmpl.pszTitle));
    setModal(false);
    auto* pLayout = new QVBoxLayout(this);
    auto* pForm = new QFormLayout;
    pLayout->addLayout(pForm);
    AddField(pForm, QStringLiteral("X:"), tmpl.nBaseX);
    AddField(pForm, QStringLiteral("Y:"), tmpl.nBaseY);
    auto* pPick = new QPushButton(QStringLiteral("拾取点<"), this);
    pForm->addRow(QString(), pPick);
    connect(pPick, &QPushButton::clicked, this, [this] {
        if (m_pDlg)
            m_pDlg->OnBtnPick();
    });
    if (tmpl.nName) {
        AddField(pForm, QStringLiteral("名称:"), tmpl.nName);
        AddField(pForm, QStringLiteral("型号:"), tmpl.nModel);
        AddField(pForm, QStringLiteral("编码:"), tmpl.nCode);
    }
    if (*tmpl.pszHint) {
        auto* pHint = new QLabel(ToQt(tmpl.pszHint), this);
        pHint->setWordWrap(true);
        pLayout->addWidget(pHint);
    }
    auto* pButtons = new QHBoxLayout;
    pLayout->addLayout(pButtons);
    auto* pOK = new CButtonST(QStringLiteral("确定"), this);
    auto* pCancel = new CButtonST(QStringLiteral("取消"), this);
    if (tmpl.bIconButtons) {
        pOK->SetIcon(style()->standardIcon(QStyle::SP_DialogOkButton));
        pCancel->SetIcon(style()->standardIcon(QStyle::SP_DialogCancelButton));
    }
    pOK->setObjectName(QStringLiteral("IDOK"));
    pCancel->setObjectName(QStringLiteral("IDCANCEL"));
    pButtons->addWidget(pOK);
    pButtons->addWidget(pCancel);
    connect(pOK, &QPushButton::clicked, this, &CItemDialogWindow::accept);
    connect(pCancel, &QPushButton::clicked, this, &CItemDialogWindow::reject);
}

QLineEdit* CItemDialogWindow::AddField(QFormLayout* pForm, const QString& strLabel, int nId) {
    auto* pEdit = new QLineEdit(this);
    pEdit->setObjectName(QString::number(nId));
    pForm->addRow(strLabel, pEdit);
    m_fields[nId] = pEdit;
    return pEdit;
}

// Every key passes the presenter first: the entry dialog swallows Esc.
void CItemDialogWindow::keyPressEvent(QKeyEvent* pEvent) {
    bool bEscape = pEvent->key() == Qt::Key_Escape;
    if (m_pDlg && m_pDlg->PreTranslateMessage(bEscape)) {
        pEvent->accept();
        return;
    }
    QDialog::keyPressEvent(pEvent);
}

void CItemDialogWindow::closeEvent(QCloseEvent* pEvent) {
    pEvent->ignore();
    reject();
}

void CItemDialogWindow::accept() {
    if (m_pDlg)
        m_pDlg->OnOK();
}

void CItemDialogWindow::reject() {
    if (m_pDlg)
        m_pDlg->OnCancel();
}

// ---- the view ----

CItemDialogView::~CItemDialogView() {
    Destroy();
}

bool CItemDialogView::Create(const ITEM_DIALOG_TEMPLATE& tmpl, CItemDialog& dlg) {
    if (!QApplication::instance())
        return false;
    m_pDialog = new CItemDialogWindow(m_pParent, tmpl);
    m_pDialog->m_pDlg = &dlg;
    m_pDialog->adjustSize();
    return true;
}

void CItemDialogView::SetText(int nId, const std::wstring& strText) {
    if (!m_pDialog)
        return;
    auto it = m_pDialog->m_fields.find(nId);
    if (it != m_pDialog->m_fields.end())
        it->second->setText(ToQt(strText));
}

std::wstring CItemDialogView::GetText(int nId) {
    if (!m_pDialog)
        return L"";
    auto it = m_pDialog->m_fields.find(nId);
    return it == m_pDialog->m_fields.end() ? L"" : it->second->text().toStdWString();
}

void CItemDialogView::Show(bool bShow) {
    if (m_pDialog)
        m_pDialog->setVisible(bShow);
}

void CItemDialogView::Activate() {
    if (!m_pDialog)
        return;
    m_pDialog->raise();
    m_pDialog->activateWindow();
}

bool CItemDialogView::IsIconic() {
    return m_pDialog && m_pDialog->isMinimized();
}

void CItemDialogView::Restore() {
    if (m_pDialog)
        m_pDialog->showNormal();
}

// The dialog may be inside one of its own handlers: it goes when the event loop is back.
void CItemDialogView::Destroy() {
    if (!m_pDialog)
        return;
    m_pDialog->m_pDlg = nullptr;
    m_pDialog->hide();
    m_pDialog->deleteLater();
    m_pDialog = nullptr;
}

ITEM_DIALOG_RECT CItemDialogView::WindowRect() {
    if (!m_pDialog)
        return {};
    QRect rect = m_pDialog->frameGeometry();
    if (m_pParent)
        rect.moveTopLeft(m_pParent->frameGeometry().topLeft());
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}

void CItemDialogView::MoveWindow(const ITEM_DIALOG_RECT& rect) {
    if (m_pDialog)
        m_pDialog->move(rect.x, rect.y);
}

int CItemDialogView::FrameWidth() {
    return m_pParent ? m_pParent->frameGeometry().width() : 0;
}

void CItemDialogView::ActivateFrame() {
    if (!m_pParent)
        return;
    m_pParent->raise();
    m_pParent->activateWindow();
}

void InstallItemDialogViews() {
    SetItemDialogViewFactory([]() -> std::unique_ptr<IItemDialogView> {
        QWidget* pFrame = acedGetAcadFrame();
        if (!pFrame)
            return nullptr;
        return std::make_unique<CItemDialogView>(pFrame);
    });
}
