// The browser's Qt window: builds the controls, forwards their events, shows what the browser sets.
#include "library/views/LibBrowserWindow.h"

#include "library/CirNewDlg.h"
#include "library/CircuitLibDlg.h"
#include "ui/views/ButtonST.h"
#include "ui/views/DirTreeCtrl.h"
#include "ui/views/MyListCtrl.h"
#include "ui/views/SlideCtrl.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QCloseEvent>
#include <QCursor>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QRadioButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>

#include <algorithm>

namespace {

constexpr int kCellWidth = 120;
constexpr int kCellHeight = 90;

QString Q(const std::wstring& s) {
    return QString::fromStdWString(s);
}

QLineEdit* ReadOnlyEdit() {
    auto* pEdit = new QLineEdit;
    pEdit->setReadOnly(true);
    return pEdit;
}

// The count's spinner: its arrows step the number within 1 to 100; typing is free,
// and the insert button judges what was typed.
QHBoxLayout* CountWithSpinner(QLineEdit* pEdit) {
    auto* pRow = new QHBoxLayout;
    pRow->setSpacing(0);
    pRow->addWidget(pEdit);
    auto* pArrows = new QVBoxLayout;
    pArrows->setSpacing(0);
    for (int nStep : {1, -1}) {
        auto* pArrow = new QToolButton;
        pArrow->setObjectName(nStep > 0 ? QStringLiteral("countUp") : QStringLiteral("countDown"));
        pArrow->setArrowType(nStep > 0 ? Qt::UpArrow : Qt::DownArrow);
        pArrow->setFixedSize(16, 12);
        pArrow->setAutoRepeat(true);
        QObject::connect(pArrow, &QToolButton::clicked, pEdit, [pEdit, nStep] {
            int nValue = std::clamp(pEdit->text().toInt() + nStep, 1, 100);
            pEdit->setText(QString::number(nValue));
        });
        pArrows->addWidget(pArrow);
    }
    pRow->addLayout(pArrows);
    return pRow;
}

} // namespace

// ---- the dialog ----

CLibBrowserDialog::CLibBrowserDialog(QWidget* pParent, const LIB_BROWSER_TEXTS& texts)
    : QDialog(pParent, Qt::Window) {
    setWindowTitle(Q(texts.strTitle));
    setWindowIcon(style()->standardIcon(QStyle::SP_DirIcon));
    setModal(false);
    setAttribute(Qt::WA_DeleteOnClose, false);
    auto* pLayout = new QHBoxLayout(this);
    pLayout->addWidget(BuildLeft(), 0);
    auto* pRight = new QVBoxLayout;
    pRight->addWidget(BuildCells());
    pRight->addWidget(BuildFields(texts));
    pLayout->addLayout(pRight, 1);
    // Each control carries its own template's id; the browser is told of clicks by it.
    setProperty("templateId", texts.ids.nTemplate);
    for (auto& [nRole, pWidget] : m_controls)
        pWidget->setProperty("controlId", texts.ids.TemplateId(nRole));
    Connect(texts.ids);
    Watch(this);
}

QWidget* CLibBrowserDialog::BuildLeft() {
    auto* pLeft = new QWidget;
    auto* pLayout = new QVBoxLayout(pLeft);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(new QLabel(QStringLiteral("图库位置:")));
    auto* pRoot = ReadOnlyEdit();
    m_controls[IDC_EDIT_ROOT] = pRoot;
    pLayout->addWidget(pRoot);
    m_pTree = new CDirTreeCtrl;
    m_pTree->setObjectName(QStringLiteral("tree"));
    m_controls[IDC_TREE] = m_pTree;
    pLayout->addWidget(m_pTree, 1);
    pLayout->addWidget(new QLabel(QStringLiteral("索　引:")));
    m_pSearch = new QLineEdit;
    m_controls[IDC_EDIT_SEARCH] = m_pSearch;
    pLayout->addWidget(m_pSearch);
    auto* pSubDirs = new QCheckBox(QStringLiteral("检索子目录"));
    m_controls[IDC_CHK_SUBDIRS] = pSubDirs;
    pLayout->addWidget(pSubDirs);
    m_pList = new CMyListCtrl;
    m_pList->setObjectName(QStringLiteral("list"));
    m_pList->SetHeading(QStringLiteral("图形列表"));
    m_pList->SetSmallIcon(style()->standardIcon(QStyle::SP_FileIcon));
    m_controls[IDC_LIST] = m_pList;
    pLayout->addWidget(m_pList, 2);
    pLeft->setMinimumWidth(220);
    return pLeft;
}

QWidget* CLibBrowserDialog::BuildCells() {
    auto* pBox = new QWidget;
    auto* pLayout = new QHBoxLayout(pBox);
    pLayout->setContentsMargins(0, 0, 0, 0);
    auto* pGrid = new QGridLayout;
    pGrid->setSpacing(4);
    for (int i = 0; i < 16; ++i) {
        auto* pCell = new QWidget;
        pCell->setFixedSize(kCellWidth, kCellHeight);
        m_slides[i] = new CSlideCtrl(pCell);
        m_slides[i]->setGeometry(0, 0, kCellWidth, kCellHeight);
        m_slides[i]->setObjectName(QStringLiteral("slide%1").arg(i));
        m_frames[i] = new CDwgPreviewCell(pCell);
        m_frames[i]->setGeometry(0, 0, kCellWidth, kCellHeight);
        m_frames[i]->hide();
        m_labels[i] = new QLabel;
        m_labels[i]->setAlignment(Qt::AlignCenter);
        m_labels[i]->setFixedWidth(kCellWidth);
        pGrid->addWidget(pCell, (i / 4) * 2, i % 4);
        pGrid->addWidget(m_labels[i], (i / 4) * 2 + 1, i % 4);
    }
    pLayout->addLayout(pGrid);
    m_pScroll = new QScrollBar(Qt::Vertical);
    m_pScroll->setFocusPolicy(Qt::StrongFocus);
    m_pScroll->setRange(0, 0);
    m_pScroll->setPageStep(1);
    m_controls[IDC_SCROLL] = m_pScroll;
    pLayout->addWidget(m_pScroll);
    return pBox;
}

QWidget* CLibBrowserDialog::BuildFields(const LIB_BROWSER_TEXTS& texts) {
    auto* pBox = new QWidget;
    auto* pGrid = new QGridLayout(pBox);
    pGrid->setContentsMargins(0, 0, 0, 0);
    auto addEdit = [this](int nId, bool bReadOnly) {
        auto* pEdit = bReadOnly ? ReadOnlyEdit() : new QLineEdit;
        m_controls[nId] = pEdit;
        return pEdit;
    };
    pGrid->addWidget(addEdit(IDC_TEXT_PAGES, true), 0, 0);
    pGrid->addWidget(addEdit(IDC_TEXT_PAGE, true), 0, 1);
    pGrid->addWidget(new QLabel(QStringLiteral("当前图纸图形比例:")), 0, 2);
    pGrid->addWidget(addEdit(IDC_EDIT_DWGSCALE, true), 0, 3);
    pGrid->addWidget(addEdit(IDC_LABEL_COUNT, true), 1, 0);
    pGrid->addLayout(CountWithSpinner(addEdit(IDC_EDIT_COUNT, false)), 1, 1);
    pGrid->addWidget(addEdit(IDC_LABEL_SCALE, true), 1, 2);
    pGrid->addWidget(addEdit(IDC_EDIT_SCALE, false), 1, 3);
    auto* pExplode = new QCheckBox(Q(texts.strExplode));
    m_controls[IDC_CHK_EXPLODE] = pExplode;
    pGrid->addWidget(pExplode, 2, 0, 1, 2);
    auto* pAngles = new QGroupBox(QStringLiteral("旋转角度"));
    auto* pAngleRow = new QHBoxLayout(pAngles);
    auto* pAngleGroup = new QButtonGroup(pAngles);
    const std::pair<int, const char*> angles[] = {{IDC_RADIO_0, "0°"},
                                                  {IDC_RADIO_90, "90°"},
                                                  {IDC_RADIO_180, "180°"},
                                                  {IDC_RADIO_270, "270°"}};
    for (auto [nId, pszText] : angles) {
        auto* pRadio = new QRadioButton(QString::fromUtf8(pszText));
        pAngleGroup->addButton(pRadio, nId);
        m_controls[nId] = pRadio;
        pAngleRow->addWidget(pRadio);
    }
    pGrid->addWidget(pAngles, 2, 2, 1, 2);
    auto* pButtons = new QHBoxLayout;
    const std::pair<int, const char*> buttons[] = {
        {IDC_BTN_INSERT, "调用(&I)"},       {IDC_BTN_NEW, "新建(&N)"},
        {IDC_BTN_MODIFY, "修改(&E)"},       {IDC_BTN_DELETE, "删除(&D)"},
        {IDC_BTN_RENAME, "更名(&R)"},       {IDC_BTN_ENLARGE, "放大预览(&V)"},
        {IDC_BTN_SAVE, "保存当前图至(&S)"}, {IDC_BTN_BATCH, "批生成Sld(&G)"},
        {IDC_BTN_EXIT, "退出(&X)"}};
    for (auto [nId, pszText] : buttons) {
        auto* pButton = new CButtonST(QString::fromUtf8(pszText));
        m_controls[nId] = pButton;
        pButtons->addWidget(pButton);
    }
    m_controls[IDC_BTN_SAVE]->hide(); // hidden by the template
    m_controls[IDC_BTN_BATCH]->hide();
    pGrid->addLayout(pButtons, 3, 0, 1, 4);
    return pBox;
}

void CLibBrowserDialog::Connect(const LIB_BROWSER_IDS& ids) {
    connect(m_pTree, &CDirTreeCtrl::SelChanged, this,
            [this](int nId) { Call([&](CCircuitLibDlg& b) { b.OnSelchangedTree(nId); }); });
    connect(m_pTree, &CDirTreeCtrl::ItemExpanded, this, [this](int nId, bool bExpanded) {
        Call([&](CCircuitLibDlg& b) { b.OnItemexpandedTree(nId, bExpanded); });
    });
    connect(m_pTree, &CDirTreeCtrl::RClick, this,
            [this](int nId) { Call([&](CCircuitLibDlg& b) { b.OnRclickTree(nId); }); });
    connect(m_pList, &QTreeWidget::itemSelectionChanged, this, [this] {
        Call([&](CCircuitLibDlg& b) { b.OnItemchangedList(m_pList->SelectedRows()); });
    });
    connect(m_pList, &QTreeWidget::itemDoubleClicked, this,
            [this] { Call([](CCircuitLibDlg& b) { b.OnDblclkList(); }); });
    connect(m_pList, &QWidget::customContextMenuRequested, this,
            [this] { Call([](CCircuitLibDlg& b) { b.OnRclickList(); }); });
    connect(m_pList, &CMyListCtrl::DeleteKey, this,
            [this] { Call([](CCircuitLibDlg& b) { b.OnKeydownList(true); }); });
    connect(m_pScroll, &QScrollBar::valueChanged, this, [this](int nValue) {
        Call([&](CCircuitLibDlg& b) { b.OnVScroll(SB_THUMBTRACK, nValue); });
    });
    connect(m_pSearch, &QLineEdit::textChanged, this,
            [this] { Call([](CCircuitLibDlg& b) { b.OnChangeSearch(); }); });
    for (int i = 0; i < 16; ++i) {
        connect(m_slides[i], &CSlideCtrl::LButtonDown, this,
                [this, i] { Call([&](CCircuitLibDlg& b) { b.OnSlideLButtonDown(i); }); });
        connect(m_slides[i], &CSlideCtrl::LButtonDblClk, this,
                [this, i] { Call([&](CCircuitLibDlg& b) { b.OnSlideLButtonDblClk(i); }); });
        connect(m_slides[i], &CSlideCtrl::RButtonDown, this,
                [this, i] { Call([&](CCircuitLibDlg& b) { b.OnSlideRButtonDown(i); }); });
        connect(m_frames[i], &CDwgPreviewCell::Clicked, this, [this, i](bool bDouble) {
            Call([&](CCircuitLibDlg& b) { b.OnBackgroundClick(i, bDouble); });
        });
    }
    for (auto& [nId, pWidget] : m_controls) {
        if (auto* pButton = qobject_cast<QAbstractButton*>(pWidget)) {
            int nCommand = ids.TemplateId(nId);
            connect(pButton, &QAbstractButton::clicked, this,
                    [this, nCommand] { Call([&](CCircuitLibDlg& b) { b.OnCommand(nCommand); }); });
        }
    }
}

void CLibBrowserDialog::Watch(QWidget* pWidget) {
    pWidget->installEventFilter(this);
    pWidget->setMouseTracking(true);
    for (QObject* pChild : pWidget->children())
        if (auto* pChildWidget = qobject_cast<QWidget*>(pChild))
            Watch(pChildWidget);
}

// Every message of the window passes the browser first: Enter never closes
// it, Delete deletes, and a foreign command running in the editor is cancelled.
bool CLibBrowserDialog::eventFilter(QObject* pObject, QEvent* pEvent) {
    if (!m_pBrowser)
        return QDialog::eventFilter(pObject, pEvent);
    switch (pEvent->type()) {
    case QEvent::KeyPress: {
        auto* pKey = static_cast<QKeyEvent*>(pEvent);
        bool bEnter = pKey->key() == Qt::Key_Return || pKey->key() == Qt::Key_Enter;
        bool bDelete = pKey->key() == Qt::Key_Delete;
        QWidget* pFocus = QApplication::focusWidget();
        bool bInTreeOrList =
            pFocus && (pFocus == m_pTree || pFocus == m_pList || m_pTree->isAncestorOf(pFocus) ||
                       m_pList->isAncestorOf(pFocus));
        return m_pBrowser->PreTranslateMessage(true, bEnter, bDelete, bInTreeOrList);
    }
    case QEvent::MouseMove:
    case QEvent::MouseButtonPress:
        m_pBrowser->PreTranslateMessage(false, false, false, false);
        return false;
    case QEvent::Wheel: {
        auto* pWheel = static_cast<QWheelEvent*>(pEvent);
        if (pObject == m_pList || m_pList->isAncestorOf(qobject_cast<QWidget*>(pObject)) ||
            pObject == m_pTree || m_pTree->isAncestorOf(qobject_cast<QWidget*>(pObject)))
            return false; // the lists scroll themselves
        m_pBrowser->OnMouseWheel(pWheel->angleDelta().y(), m_pScroll->hasFocus());
        return true;
    }
    default:
        return QDialog::eventFilter(pObject, pEvent);
    }
}

void CLibBrowserDialog::closeEvent(QCloseEvent* pEvent) {
    pEvent->ignore();
    Call([](CCircuitLibDlg& b) { b.OnClose(); });
}

// Esc is the exit button, as the template's cancel id.
void CLibBrowserDialog::reject() {
    Call([](CCircuitLibDlg& b) { b.OnCommand(IDC_BTN_EXIT); });
}

void CLibBrowserDialog::showEvent(QShowEvent* pEvent) {
    QDialog::showEvent(pEvent);
    Call([](CCircuitLibDlg& b) { b.OnPaint(); });
}

// ---- the view ----

CLibBrowserWindow::CLibBrowserWindow(QWidget* pParent) : m_pParent(pParent) {}

CLibBrowserWindow::~CLibBrowserWindow() {
    Destroy();
}

bool CLibBrowserWindow::Create(const LIB_BROWSER_TEXTS& texts) {
    if (!QApplication::instance())
        return false;
    m_pDialog = new CLibBrowserDialog(m_pParent, texts);
    m_pDialog->m_pBrowser = m_pBrowser;
    return true;
}

void CLibBrowserWindow::Show(bool bShow) {
    if (!m_pDialog)
        return;
    if (bShow)
        m_pDialog->show();
    else
        m_pDialog->hide();
}

void CLibBrowserWindow::Activate() {
    if (!m_pDialog)
        return;
    m_pDialog->raise();
    m_pDialog->activateWindow();
}

void CLibBrowserWindow::ActivateFrame() {
    QWidget* pFrame = m_pDialog ? m_pDialog->parentWidget() : nullptr;
    if (pFrame)
        pFrame->activateWindow();
}

bool CLibBrowserWindow::IsIconic() {
    return m_pDialog && m_pDialog->isMinimized();
}

void CLibBrowserWindow::Restore() {
    if (m_pDialog)
        m_pDialog->showNormal();
}

// The dialog may be inside one of its own handlers: it goes when the event loop is back.
void CLibBrowserWindow::Destroy() {
    if (!m_pDialog)
        return;
    m_pDialog->m_pBrowser = nullptr;
    m_pDialog->hide();
    m_pDialog->deleteLater();
    m_pDialog = nullptr;
}

QWidget* CLibBrowserWindow::Control(int nId) const {
    if (!m_pDialog)
        return nullptr;
    auto it = m_pDialog->m_controls.find(nId);
    return it == m_pDialog->m_controls.end() ? nullptr : it->second;
}

std::wstring CLibBrowserWindow::GetText(int nId) {
    if (auto* pEdit = qobject_cast<QLineEdit*>(Control(nId)))
        return pEdit->text().toStdWString();
    if (auto* pButton = qobject_cast<QAbstractButton*>(Control(nId)))
        return pButton->text().toStdWString();
    return {};
}

void CLibBrowserWindow::SetText(int nId, const std::wstring& strText) {
    QWidget* pControl = Control(nId);
    QSignalBlocker block(pControl);
    if (auto* pEdit = qobject_cast<QLineEdit*>(pControl))
        pEdit->setText(Q(strText));
    else if (auto* pButton = qobject_cast<QAbstractButton*>(pControl))
        pButton->setText(Q(strText));
}

bool CLibBrowserWindow::GetCheck(int nId) {
    auto* pButton = qobject_cast<QAbstractButton*>(Control(nId));
    return pButton && pButton->isChecked();
}

void CLibBrowserWindow::SetCheck(int nId, bool bChecked) {
    if (auto* pButton = qobject_cast<QAbstractButton*>(Control(nId))) {
        QSignalBlocker block(pButton);
        pButton->setChecked(bChecked);
    }
}

void CLibBrowserWindow::Enable(int nId, bool bEnable) {
    if (QWidget* pControl = Control(nId))
        pControl->setEnabled(bEnable);
}

void CLibBrowserWindow::SetFocus(int nId) {
    if (QWidget* pControl = Control(nId))
        pControl->setFocus();
}

void CLibBrowserWindow::ShowControl(int nId, bool bShow) {
    if (QWidget* pControl = Control(nId))
        pControl->setVisible(bShow);
}

void CLibBrowserWindow::TreeReset() {
    if (m_pDialog)
        m_pDialog->m_pTree->Reset();
}

void CLibBrowserWindow::TreeInsert(int nId, int nParent, const std::wstring& strText,
                                   bool bExpandable) {
    if (m_pDialog)
        m_pDialog->m_pTree->Insert(nId, nParent, Q(strText), bExpandable);
}

void CLibBrowserWindow::TreeRemove(int nId) {
    if (m_pDialog)
        m_pDialog->m_pTree->Remove(nId);
}

void CLibBrowserWindow::TreeSetText(int nId, const std::wstring& strText) {
    if (m_pDialog)
        m_pDialog->m_pTree->SetText(nId, Q(strText));
}

void CLibBrowserWindow::TreeSetExpandable(int nId, bool bExpandable) {
    if (m_pDialog)
        m_pDialog->m_pTree->SetExpandable(nId, bExpandable);
}

void CLibBrowserWindow::TreeSetChildOrder(int nParent, const std::vector<int>& children) {
    if (m_pDialog)
        m_pDialog->m_pTree->SetChildOrder(nParent, children);
}

void CLibBrowserWindow::TreeSelect(int nId) {
    if (m_pDialog)
        m_pDialog->m_pTree->Select(nId);
}

void CLibBrowserWindow::TreeExpand(int nId, bool bExpand) {
    if (m_pDialog)
        m_pDialog->m_pTree->Expand(nId, bExpand);
}

void CLibBrowserWindow::ListSetItems(const CStringArray& names) {
    if (m_pDialog)
        m_pDialog->m_pList->SetRows(names);
}

void CLibBrowserWindow::ListSetSelection(const std::vector<int>& selected, int nMakeVisible) {
    if (m_pDialog)
        m_pDialog->m_pList->SetSelectedRows(selected, nMakeVisible);
}

void CLibBrowserWindow::ScrollSetRange(int nMin, int nMax) {
    if (!m_pDialog)
        return;
    QSignalBlocker block(m_pDialog->m_pScroll);
    m_pDialog->m_pScroll->setRange(nMin, nMax);
}

void CLibBrowserWindow::ScrollSetPos(int nPos) {
    if (!m_pDialog)
        return;
    QSignalBlocker block(m_pDialog->m_pScroll);
    m_pDialog->m_pScroll->setValue(nPos);
}

void CLibBrowserWindow::ScrollEnable(bool bEnable) {
    if (m_pDialog)
        m_pDialog->m_pScroll->setEnabled(bEnable);
}

void CLibBrowserWindow::SetDisplayMode(int nMode) {
    m_nDisplayMode = nMode;
    if (!m_pDialog)
        return;
    for (int i = 0; i < 16; ++i) {
        m_pDialog->m_slides[i]->setVisible(nMode != 1);
        m_pDialog->m_frames[i]->setVisible(nMode == 1);
    }
}

void CLibBrowserWindow::SetCell(int nCell, const CELL_CONTENT& content) {
    if (!m_pDialog || nCell < 0 || nCell >= 16)
        return;
    CSlideCtrl* pSlide = m_pDialog->m_slides[nCell];
    pSlide->SetProperty(CSlideView::DISPID_SLIDE_FILE, Q(content.strSlide));
    pSlide->SetProperty(CSlideView::DISPID_BACKGROUND,
                        QVariant::fromValue<uint>(content.background));
    m_pDialog->m_labels[nCell]->setText(Q(content.strLabel));
    if (m_nDisplayMode == 1)
        m_pDialog->m_frames[nCell]->SetDrawing(content.strDwg, content.bSelected, content.dAngle);
}

int CLibBrowserWindow::TrackMenu(const std::vector<MENU_ENTRY>& entries) {
    if (s_menuHook)
        return s_menuHook(entries);
    if (!m_pDialog)
        return 0;
    QMenu menu(m_pDialog);
    for (const MENU_ENTRY& entry : entries) {
        if (!entry.nId) {
            menu.addSeparator();
            continue;
        }
        QAction* pAction = menu.addAction(Q(entry.strText));
        pAction->setData(entry.nId);
        pAction->setEnabled(!entry.bGrayed);
    }
    QAction* pChosen = menu.exec(QCursor::pos());
    return pChosen ? pChosen->data().toInt() : 0;
}

bool CLibBrowserWindow::RunNameDialog(CCirNewDlg& dlg) {
    if (s_nameDialogHook)
        return s_nameDialogHook(dlg);
    QDialog box(m_pDialog);
    box.setWindowTitle(Q(dlg.m_strTitle));
    auto* pLayout = new QVBoxLayout(&box);
    pLayout->addWidget(new QLabel(QStringLiteral("位置:")));
    auto* pDir = ReadOnlyEdit();
    pDir->setText(Q(dlg.m_strDir));
    pLayout->addWidget(pDir);
    pLayout->addWidget(new QLabel(QStringLiteral("名称:")));
    auto* pName = new QLineEdit(Q(dlg.m_strOldName));
    pLayout->addWidget(pName);
    auto* pSync = new QCheckBox(Q(dlg.m_strSyncText));
    pSync->setChecked(dlg.IsDirectoryTitle() && dlg.m_bSyncTwin);
    pSync->setVisible(dlg.IsDirectoryTitle());
    pLayout->addWidget(pSync);
    auto* pButtons = new QHBoxLayout;
    auto* pOK = new CButtonST(QStringLiteral("确定"));
    auto* pCancel = new CButtonST(QStringLiteral("取消"));
    pOK->SetIcon(box.style()->standardIcon(QStyle::SP_DialogOkButton));
    pCancel->SetIcon(box.style()->standardIcon(QStyle::SP_DialogCancelButton));
    pOK->setDefault(true); // Enter confirms the name
    pButtons->addWidget(pOK);
    pButtons->addWidget(pCancel);
    pLayout->addLayout(pButtons);
    QObject::connect(pCancel, &QPushButton::clicked, &box, &QDialog::reject);
    QObject::connect(pOK, &QPushButton::clicked, &box, [&] {
        dlg.m_strResult = pName->text().toStdWString();
        dlg.m_bSyncTwin = dlg.IsDirectoryTitle() && pSync->isChecked();
        if (dlg.OnOK())
            box.accept();
        else
            pName->setFocus(); // refused: the dialog stays with the focus in the field
    });
    return box.exec() == QDialog::Accepted;
}
