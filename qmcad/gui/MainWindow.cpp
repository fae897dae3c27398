// Main window: wires the editor's loop, input and documents to the view, the pane and the menus.
#include "gui/MainWindow.h"

#include "base/StrUtil.h"
#include "base/SysPath.h"
#include "gui/GuiUi.h"
#include "solid/OcctModeler.h"

#include <QAction>
#include <QCloseEvent>
#include <QDateTime>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QStatusBar>
#include <QTabBar>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

const int kMaxRecent = 8;

CHostDocument* AsHostDoc(AcApDocument* pDoc) {
    return static_cast<CHostDocument*>(pDoc);
}

QString ShortName(const std::wstring& strFileName) {
    return QString::fromStdWString(StrMid(strFileName, StrReverseFind(strFileName, L'\\') + 1));
}

} // namespace

CMainWindow::CMainWindow(CEditorHost& editor, CGuiUi& ui)
    : m_editor(editor), m_ui(ui),
      m_scene([] { return acdbHostApplicationServices()->workingDatabase(); }, &GetOcctModeler()) {
    BuildLayout();
    ConnectEditor();
    ConnectView();
    BuildMenus();
}

void CMainWindow::BuildLayout() {
    setWindowTitle(QStringLiteral("qmcad"));
    resize(1280, 800);
    m_pTabs = new QTabBar;
    m_pTabs->setExpanding(false);
    m_pTabs->setDocumentMode(true);
    m_pView = new CDrawingView;
    m_pView->SetScene(&m_scene);
    auto* pCentral = new QWidget;
    auto* pLayout = new QVBoxLayout(pCentral);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addWidget(m_pTabs);
    pLayout->addWidget(m_pView, 1);
    setCentralWidget(pCentral);

    m_pCommandLine = new CCommandLinePane;
    auto* pDock = new QDockWidget(QStringLiteral("命令行"), this);
    pDock->setObjectName(QStringLiteral("commandLine"));
    pDock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    pDock->setWidget(m_pCommandLine);
    addDockWidget(Qt::BottomDockWidgetArea, pDock);
    resizeDocks({pDock}, {160}, Qt::Vertical);

    m_pCoords = new QLabel;
    m_pCoords->setMinimumWidth(260);
    m_pModes = new QLabel;
    statusBar()->addWidget(m_pCoords);
    statusBar()->addPermanentWidget(m_pModes);
}

// The editor's output, input, posted work and view commands go through this window.
void CMainWindow::ConnectEditor() {
    m_ui.m_pParent = this;
    m_ui.m_print = [this](const std::wstring& s) { m_pCommandLine->Print(s); };
    m_editor.m_pFrame = this;
    m_editor.m_input.m_pFeedback = this;
    m_editor.m_input.m_pickAt = [this](const AcGePoint3d& pt, AcDbObjectId& id) {
        return m_pView->PickAt(pt, id);
    };
    m_editor.m_docs.m_onPosted = [this] { m_pCommandLine->Wake(); };
    // A document closed inside a module's handler: its view state goes with it at once.
    m_editor.m_docs.m_onClosed = [this] {
        m_pShown = nullptr;
        m_pView->SetViewState(nullptr);
        ShowDocument(m_editor.m_docs.Current());
        m_pView->Invalidate();
    };
    m_pCommandLine->m_onWaiting = [this] { Refresh(); };
    m_editor.m_interactiveView = [this](const std::wstring& s) { return RunInteractiveView(s); };
    m_editor.m_onDrawingChanged = [this] { m_pView->Invalidate(); };
}

void CMainWindow::ConnectView() {
    m_pView->m_onAnswer = [this](const std::wstring& s, bool bEcho, const std::wstring& shown) {
        m_pCommandLine->Submit(s, bEcho, shown);
    };
    m_pView->m_onCursor = [this](const AcGePoint3d& pt) {
        m_pCoords->setText(QStringLiteral("%1, %2, %3")
                               .arg(pt.x, 0, 'f', 4)
                               .arg(pt.y, 0, 'f', 4)
                               .arg(pt.z, 0, 'f', 4));
    };
    // Typing over the drawing types on the command line.
    m_pView->m_onKey = [this](QKeyEvent* pEvent) {
        QLineEdit* pInput = m_pCommandLine->Input();
        pInput->setFocus();
        if (pEvent->key() == Qt::Key_Return || pEvent->key() == Qt::Key_Enter ||
            (pEvent->key() == Qt::Key_Space && m_pCommandLine->m_bSpaceEnters))
            emit pInput->returnPressed();
        else
            pInput->insert(pEvent->text());
    };
    m_pView->m_onModesChanged = [this] { UpdateStatusWords(); };
    // At the command prompt a double-click on an entity starts its editing command.
    m_pView->m_onDoubleClick = [this](const AcGePoint3d& pt) {
        AcDbObjectId id;
        if (!m_onEntityDoubleClick || !IsIdle() || !m_pView->PickAt(pt, id))
            return false;
        std::wstring strCommand = m_onEntityDoubleClick(id);
        if (strCommand.empty())
            return false;
        Post(strCommand);
        return true;
    };
    QObject::connect(m_pTabs, &QTabBar::currentChanged, this,
                     [this](int nIndex) { OnTabClicked(nIndex); });
}

CMainWindow::~CMainWindow() {
    m_editor.m_interactiveView = nullptr;
    m_editor.m_onDrawingChanged = nullptr;
    m_editor.m_input.m_pFeedback = nullptr;
    m_editor.m_input.m_pickAt = nullptr;
    m_editor.m_docs.m_onPosted = nullptr;
    m_editor.m_docs.m_onClosed = nullptr;
    m_ui.m_print = nullptr;
    m_ui.m_pParent = nullptr;
    if (m_editor.m_pFrame == this)
        m_editor.m_pFrame = nullptr;
}

void CMainWindow::BuildMenus() {
    QMenu* pFile = menuBar()->addMenu(QStringLiteral("文件(&F)"));
    pFile->addAction(QStringLiteral("新建(&N)"), QKeySequence::New, this, [this] {
        if (m_editor.m_docs.Current())
            Post(L"NEW");
        else
            m_editor.m_docs.NewDocument();
        Refresh();
    });
    pFile->addAction(QStringLiteral("打开(&O)..."), QKeySequence::Open, this,
                     [this] { OpenFile(); });
    m_pRecentMenu = pFile->addMenu(QStringLiteral("最近使用的文件(&R)"));
    QObject::connect(m_pRecentMenu, &QMenu::aboutToShow, this, [this] { FillRecentMenu(); });
    pFile->addAction(QStringLiteral("保存(&S)"), QKeySequence::Save, this,
                     [this] { SaveFile(false); });
    pFile->addAction(QStringLiteral("另存为(&A)..."), QKeySequence::SaveAs, this,
                     [this] { SaveFile(true); });
    pFile->addAction(QStringLiteral("关闭(&C)"), this, [this] { Post(L"CLOSE"); });
    pFile->addSeparator();
    pFile->addAction(QStringLiteral("退出(&X)"), QKeySequence::Quit, this, [this] { close(); });

    QMenu* pEdit = menuBar()->addMenu(QStringLiteral("编辑(&E)"));
    pEdit->addAction(QStringLiteral("放弃(&U)"), QKeySequence::Undo, this,
                     [this] { Post(L"UNDO\n1"); });

    QMenu* pView = menuBar()->addMenu(QStringLiteral("视图(&V)"));
    pView->addAction(QStringLiteral("范围缩放(&E)"), this, [this] { m_pView->ZoomExtents(); });
    // While a command reads input events, pan and zoom reach it as the
    // editor's menu command numbers; otherwise they run as commands.
    pView->addAction(QStringLiteral("实时平移(&P)"), this, [this] {
        if (!m_requests.empty() && m_requests.back().eKind == INPUT_REQUEST::Events)
            m_pCommandLine->Submit(L"*Menu* 1405", false);
        else
            Post(L"'_RTPAN");
    });
    pView->addAction(QStringLiteral("实时缩放(&Z)"), this, [this] {
        if (!m_requests.empty() && m_requests.back().eKind == INPUT_REQUEST::Events)
            m_pCommandLine->Submit(L"*Menu* 1406", false);
        else
            Post(L"'_RTZOOM");
    });
    pView->addSeparator();
    pView->addAction(QStringLiteral("俯视(&T)"), this, [this] { SetPlanView(); });
    pView->addAction(QStringLiteral("西南等轴测(&I)"), this, [this] { SetIsometricView(); });
    pView->addAction(QStringLiteral("三维动态观察(&O)"), this, [this] { Post(L"3DORBIT"); });
    pView->addSeparator();
    pView->addAction(QStringLiteral("二维线框(&2)"), this,
                     [this] { SetShade(SHADE_MODE::Wireframe2d); });
    pView->addAction(QStringLiteral("着色(&G)"), this, [this] { SetShade(SHADE_MODE::Gouraud); });
}

bool CMainWindow::IsIdle() {
    SYSVAR_VALUE value;
    return m_requests.empty() && m_editor.GetVar(L"CMDNAMES", value) == RTNORM &&
           value.strText.empty();
}

void CMainWindow::Post(const std::wstring& strText) {
    CHostDocument* pDoc = m_editor.m_docs.Current();
    if (!pDoc)
        return;
    // A transparent command ("'") may run inside another; the rest wait for the loop.
    bool bTransparent = !strText.empty() && strText[0] == L'\'';
    if (!bTransparent && !IsIdle()) {
        statusBar()->showMessage(QStringLiteral("命令进行中，请先结束或按 Esc 取消。"), 3000);
        return;
    }
    m_editor.m_docs.sendStringToExecute(pDoc, bTransparent ? strText.substr(1) : strText, false,
                                        true, true);
}

void CMainWindow::OpenFile() {
    if (!IsIdle())
        return;
    QString path = QFileDialog::getOpenFileName(this, QStringLiteral("打开图形"), QString(),
                                                QStringLiteral("图形 (*.dwg *.dxf);;所有文件 (*)"));
    if (path.isEmpty())
        return;
    std::wstring strPath = FromOsPath(path.toStdString());
    if (m_editor.m_docs.Current())
        Post(L"OPEN\n" + strPath);
    else if (!m_editor.m_docs.OpenDocument(strPath))
        m_pCommandLine->Print(Format(L"无法打开“%s”。\n", strPath));
    Refresh();
}

void CMainWindow::SaveFile(bool bAs) {
    CHostDocument* pDoc = m_editor.m_docs.Current();
    if (!pDoc || !IsIdle())
        return;
    std::wstring strPath = pDoc->fileName();
    if (bAs || !pDoc->IsTitled()) {
        QString path = QFileDialog::getSaveFileName(this, QStringLiteral("图形另存为"),
                                                    QString::fromStdString(ToOsPath(strPath)),
                                                    QStringLiteral("图形 (*.dwg *.dxf)"));
        if (path.isEmpty())
            return;
        Post(L"SaveAs\n2000\n" + FromOsPath(path.toStdString()) + L"\ny");
        return;
    }
    Post(L"QSAVE");
}

QStringList CMainWindow::RecentFiles() const {
    return QSettings(QStringLiteral("Quillmarch"), QStringLiteral("qmcad"))
        .value(QStringLiteral("recentFiles"))
        .toStringList();
}

void CMainWindow::AddRecent(const std::wstring& strPath) {
    QString path = QString::fromStdString(ToOsPath(strPath));
    QStringList files = RecentFiles();
    if (!files.isEmpty() && files.front() == path)
        return;
    files.removeAll(path);
    files.prepend(path);
    while (files.size() > kMaxRecent)
        files.removeLast();
    QSettings(QStringLiteral("Quillmarch"), QStringLiteral("qmcad"))
        .setValue(QStringLiteral("recentFiles"), files);
}

void CMainWindow::FillRecentMenu() {
    m_pRecentMenu->clear();
    for (const QString& path : RecentFiles())
        m_pRecentMenu->addAction(path, this, [this, path] {
            if (!IsIdle())
                return;
            std::wstring strPath = FromOsPath(path.toStdString());
            if (m_editor.m_docs.Current())
                Post(L"OPEN\n" + strPath);
            else
                m_editor.m_docs.OpenDocument(strPath);
            Refresh();
        });
    m_pRecentMenu->setEnabled(!m_pRecentMenu->isEmpty());
}

int CMainWindow::RunInteractiveView(const std::wstring& strCommand) {
    CDrawingView::TOOL eTool = EqualsNoCase(strCommand, L"3DORBIT")  ? CDrawingView::TOOL::Orbit
                               : EqualsNoCase(strCommand, L"RTZOOM") ? CDrawingView::TOOL::Zoom
                                                                     : CDrawingView::TOOL::Pan;
    std::wstring strAnswer;
    m_pView->SetTool(eTool);
    bool bOk = m_editor.GetInput(L"按 Esc 或 Enter 键退出，或单击右键结束。", strAnswer);
    m_pView->SetTool(CDrawingView::TOOL::None);
    // "._RTZOOM" "_W" (a tracker's zoom window) goes on with the window's corners.
    if (bOk && eTool == CDrawingView::TOOL::Zoom &&
        (EqualsNoCase(strAnswer, L"_W") || EqualsNoCase(strAnswer, L"W")))
        ZoomWindow();
    return RTNORM;
}

void CMainWindow::ZoomWindow() {
    AcGePoint3d a, b;
    if (m_editor.m_input.GetPoint(nullptr, L"指定第一个角点: ", a) != RTNORM ||
        m_editor.m_input.GetCorner(a, L"指定对角点: ", b) != RTNORM)
        return;
    m_pView->ZoomWindow(a, b);
}

void CMainWindow::SetPlanView() {
    m_pView->State().direction = {0, 0, 1};
    m_pView->ZoomExtents();
    UpdateStatusWords();
}

void CMainWindow::SetIsometricView() {
    m_pView->State().direction = {-1, -1, 1};
    m_pView->ZoomExtents();
    UpdateStatusWords();
}

void CMainWindow::SetShade(SHADE_MODE eShade) {
    m_pView->State().eShade = eShade;
    m_pView->Repaint();
    UpdateStatusWords();
}

void CMainWindow::BeginInput(const INPUT_REQUEST& request) {
    m_requests.push_back(request);
    m_pView->SetRequest(request);
    m_pCommandLine->m_bSpaceEnters = request.eKind != INPUT_REQUEST::Text;
}

void CMainWindow::EndInput() {
    if (!m_requests.empty())
        m_requests.pop_back();
    m_pView->SetRequest(m_requests.empty() ? INPUT_REQUEST{} : m_requests.back());
    m_pCommandLine->m_bSpaceEnters =
        m_requests.empty() || m_requests.back().eKind != INPUT_REQUEST::Text;
}

void CMainWindow::Refresh() {
    // Commands size their views for the window (ZOOM, -VIEW, MSLIDE).
    m_editor.m_nScreenWidth = std::max(m_pView->width(), 1);
    m_editor.m_nScreenHeight = std::max(m_pView->height(), 1);
    SyncTabs();
    CHostDocument* pDoc = m_editor.m_docs.Current();
    ShowDocument(pDoc);
    if (pDoc && pDoc->IsTitled())
        AddRecent(pDoc->fileName());
    setWindowTitle(pDoc ? QStringLiteral("qmcad - [%1]").arg(ShortName(pDoc->fileName()))
                        : QStringLiteral("qmcad"));
    UpdateStatusWords();
    // New objects and new undo steps show in the mark; a tracker moves
    // objects between its reads of input events, so those always repaint.
    DRAWING_MARK mark;
    if (pDoc && pDoc->database())
        mark = {pDoc->database(), pDoc->database()->handseed().value(), pDoc->Undo().StepCount()};
    bool bTracking = !m_requests.empty() && m_requests.back().eKind == INPUT_REQUEST::Events;
    if (!(mark == m_lastMark) || bTracking)
        m_pView->Invalidate();
    else
        m_pView->Repaint();
    m_lastMark = mark;
}

void CMainWindow::SyncTabs() {
    std::vector<AcApDocument*> docs = m_editor.m_docs.documents();
    if (std::find(docs.begin(), docs.end(), m_pShown) == docs.end())
        m_pShown = nullptr;
    m_bSyncingTabs = true;
    while (m_pTabs->count() > static_cast<int>(docs.size()))
        m_pTabs->removeTab(m_pTabs->count() - 1);
    while (m_pTabs->count() < static_cast<int>(docs.size()))
        m_pTabs->addTab(QString());
    for (size_t i = 0; i < docs.size(); ++i) {
        QString title = ShortName(docs[i]->fileName());
        if (AsHostDoc(docs[i])->Undo().IsModified())
            title += QLatin1Char('*');
        m_pTabs->setTabText(static_cast<int>(i), title);
        if (docs[i] == m_editor.m_docs.Current())
            m_pTabs->setCurrentIndex(static_cast<int>(i));
    }
    m_tabDocs = docs;
    m_bSyncingTabs = false;
}

void CMainWindow::OnTabClicked(int nIndex) {
    if (m_bSyncingTabs || nIndex < 0 || nIndex >= static_cast<int>(m_tabDocs.size()))
        return;
    AcApDocument* pDoc = m_tabDocs[nIndex];
    if (pDoc == m_editor.m_docs.Current())
        return;
    if (!IsIdle()) { // a running command keeps its document
        SyncTabs();
        return;
    }
    m_editor.m_docs.activateDocument(pDoc);
    m_editor.m_docs.setCurDocument(pDoc);
    Refresh();
}

void CMainWindow::ShowDocument(AcApDocument* pDoc) {
    m_pView->State().bGrid = m_editor.m_vars.Short(L"GRIDMODE") != 0;
    if (pDoc == m_pShown)
        return;
    m_pShown = pDoc;
    m_pView->SetViewState(pDoc ? &AsHostDoc(pDoc)->m_view : nullptr);
    m_pView->State().bGrid = m_editor.m_vars.Short(L"GRIDMODE") != 0;
}

void CMainWindow::UpdateStatusWords() {
    QStringList words;
    if (m_editor.m_vars.Short(L"SNAPMODE"))
        words << QStringLiteral("捕捉");
    if (m_editor.m_vars.Short(L"GRIDMODE"))
        words << QStringLiteral("栅格");
    if (m_editor.m_vars.Short(L"ORTHOMODE"))
        words << QStringLiteral("正交");
    if (m_pView->m_bSnapOn)
        words << QStringLiteral("对象捕捉");
    const VIEW_STATE& view = m_pView->State();
    words << (view.eShade == SHADE_MODE::Gouraud ? QStringLiteral("着色")
                                                 : QStringLiteral("二维线框"));
    words << (view.IsPlan() ? QStringLiteral("俯视") : QStringLiteral("三维"));
    m_pModes->setText(words.join(QStringLiteral("  ")));
}

void CMainWindow::closeEvent(QCloseEvent* pEvent) {
    m_pCommandLine->Close(); // the editor's loop ends with its input
    pEvent->accept();
}
