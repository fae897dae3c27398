// The slide windows in Qt: the enlarged preview over the slide control, the batch progress.
#include "library/views/SlideWindows.h"

#include "host/HostEditor.h"
#include "ui/SlidePainter.h"
#include "ui/views/SlideCtrl.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {

QString Q(const std::wstring& s) {
    return QString::fromStdWString(s);
}

// The progress window's close box asks for a cancel like its button.
class CBatchSldDialog : public QDialog {
public:
    CBatchSldDialog(CDlgBatchSld& dlg, QWidget* pParent) : QDialog(pParent), m_dlg(dlg) {}

protected:
    void reject() override { m_dlg.OnCancel(); }

private:
    CDlgBatchSld& m_dlg;
};

} // namespace

CDlgZoomInDialog::CDlgZoomInDialog(CDlgZoomIn& dlg, QWidget* pParent)
    : QDialog(pParent), m_dlg(dlg) {
    setWindowTitle(QStringLiteral("放大预览"));
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    m_pSlide = new CSlideCtrl(this);
    m_pSlide->setObjectName(QStringLiteral("slide%1").arg(CDlgZoomIn::IDC_SLIDE));
    m_pSlide->setMinimumSize(320, 240);
    pLayout->addWidget(m_pSlide);
    resize(640, 480);
    installEventFilter(this);
    m_pSlide->installEventFilter(this);
}

// The dialog's PreTranslateMessage: every key and click of it and its control passes here.
bool CDlgZoomInDialog::eventFilter(QObject* pObject, QEvent* pEvent) {
    ZOOMIN_MESSAGE message = ZOOMIN_MESSAGE::Other;
    if (pEvent->type() == QEvent::KeyPress) {
        int nKey = static_cast<QKeyEvent*>(pEvent)->key();
        if (nKey == Qt::Key_Return || nKey == Qt::Key_Enter)
            message = ZOOMIN_MESSAGE::KeyEnter;
    } else if (pEvent->type() == QEvent::MouseButtonPress &&
               static_cast<QMouseEvent*>(pEvent)->button() == Qt::RightButton) {
        message = ZOOMIN_MESSAGE::RButtonDown;
    }
    if (message != ZOOMIN_MESSAGE::Other && m_dlg.PreTranslateMessage(message))
        return true;
    return QDialog::eventFilter(pObject, pEvent);
}

void CDlgZoomInDialog::reject() {
    m_dlg.OnCancel();
}

int CDlgZoomInWindow::DoModal(CDlgZoomIn& dlg) {
    if (!QApplication::instance())
        return m_nResult;
    CDlgZoomInDialog dialog(dlg, m_pParent);
    m_pDialog = &dialog;
    m_nResult = 2;
    dlg.OnInitDialog();
    dialog.exec();
    m_pDialog = nullptr;
    return m_nResult;
}

void CDlgZoomInWindow::SetIcon(int) {
    if (m_pDialog)
        m_pDialog->setWindowIcon(
            m_pDialog->style()->standardIcon(QStyle::SP_FileDialogContentsView));
}

void CDlgZoomInWindow::SetSlideFile(const std::wstring& strFile) {
    if (m_pDialog)
        m_pDialog->m_pSlide->SetProperty(CSlideView::DISPID_SLIDE_FILE, Q(strFile));
}

void CDlgZoomInWindow::EndDialog(int nResult) {
    m_nResult = nResult;
    if (m_pDialog)
        m_pDialog->done(nResult == 1 ? QDialog::Accepted : QDialog::Rejected);
}

CDlgBatchSldWindow::~CDlgBatchSldWindow() {
    Destroy();
}

bool CDlgBatchSldWindow::Create(CDlgBatchSld& dlg, const std::wstring& strTitle) {
    if (!QApplication::instance())
        return false;
    auto* pDialog = new CBatchSldDialog(dlg, m_pParent);
    pDialog->setWindowTitle(Q(strTitle));
    // While the run lets events through, only this window takes input.
    pDialog->setWindowModality(Qt::ApplicationModal);
    auto* pLayout = new QVBoxLayout(pDialog);
    m_pText = new QLabel(pDialog);
    m_pText->setMinimumWidth(360);
    m_pBar = new QProgressBar(pDialog);
    m_pCancel = new QPushButton(QStringLiteral("取消"), pDialog);
    pLayout->addWidget(m_pText);
    pLayout->addWidget(m_pBar);
    pLayout->addWidget(m_pCancel, 0, Qt::AlignRight);
    QObject::connect(m_pCancel, &QPushButton::clicked, pDialog, [&dlg] { dlg.OnCancel(); });
    m_pDialog = pDialog;
    pDialog->show();
    return true;
}

void CDlgBatchSldWindow::SetProgress(int nDone, int nTotal, const std::wstring& strText) {
    if (!m_pDialog)
        return;
    m_pBar->setRange(0, std::max(nTotal, 1));
    m_pBar->setValue(nDone);
    m_pText->setText(Q(strText));
}

void CDlgBatchSldWindow::EnableCancel(bool bEnable) {
    if (m_pDialog)
        m_pCancel->setEnabled(bEnable);
}

void CDlgBatchSldWindow::Pump() {
    if (m_pDialog)
        QApplication::processEvents();
}

void CDlgBatchSldWindow::Destroy() {
    delete m_pDialog.data();
    m_pDialog = nullptr;
}

void InstallSlideViews() {
    static bool bInstalled = false;
    if (bInstalled || !QApplication::instance())
        return;
    bInstalled = true;
    SetZoomInViewFactory([] { return std::make_unique<CDlgZoomInWindow>(acedGetAcadFrame()); });
    SetBatchSldViewFactory([] { return std::make_unique<CDlgBatchSldWindow>(acedGetAcadFrame()); });
}
