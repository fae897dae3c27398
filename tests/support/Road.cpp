// The roads' harness: demo installation, suite stand-ins, the real module, window handlers and
// milestone pictures.
#include "Road.h"

#include "demo/DemoInstall.h"
#include "dxf/DxfCodec.h"

#include "base/SysPath.h"

#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QTimer>
#include <QWidget>

#include <cstdio>

CRoad::CRoad(std::string strName, const std::string& osConfigFile) : m_strName(std::move(strName)) {
    acdbSetFileCodec(&GetDxfCodec());
    m_bDemo = osConfigFile.empty() ? MakeDemoInstall(m_dir.OsPath() + "demo", m_config)
                                   : m_config.Load(osConfigFile);
    m_labelNames.WriteDefaultFiles();
    m_services = m_gui.m_editor.Services();
    m_services.pInstallPaths = &m_config;
    m_services.pFtp = &m_ftp;
    m_services.pLabelNames = &m_labelNames;
    m_services.pMainLib = &m_mainLib;
    m_services.pDoubleClick = &m_doubleClick;
    SetHostServices(m_services);
    // The suite's commands the module sends, as qmcad has them.
    m_gui.m_editor.AddCommand(L"SynchUpdateHide", [this] {
        std::wstring strReport;
        ++m_nUpdates;
        m_update.Run(strReport);
        m_gui.m_ui.Print(strReport + L"\n");
        return RTNORM;
    });
    m_gui.m_editor.AddCommand(L"CloseMain", [] { return RTNORM; });
    m_gui.m_pWindow->m_onEntityDoubleClick = [this](AcDbObjectId id) {
        return m_doubleClick.CommandFor(id);
    };
    m_gui.m_pWindow->resize(1280, 800);
    QApplication::processEvents();
}

CRoad::~CRoad() {
    UnloadModule();
    acdbSetFileCodec(nullptr);
}

bool CRoad::LoadModule() {
    if (!m_module.Load(QM_MODULE_PATH, m_services)) {
        std::fprintf(stderr, "road: %s\n", m_module.LastError().c_str());
        return false;
    }
    return true;
}

void CRoad::UnloadModule() {
    if (m_module.IsLoaded())
        m_module.Unload();
}

QWidget* CRoad::FindWindow(const QString& strTitle) {
    for (QWidget* p : QApplication::topLevelWidgets())
        if (p->isVisible() && p->windowTitle() == strTitle)
            return p;
    return nullptr;
}

void CRoad::WhenWindow(const QString& strTitle, std::function<void(QWidget*)> fn) {
    m_pending.push_back({strTitle, std::move(fn)});
}

void CRoad::Frame(double x0, double y0, double x1, double y1) {
    m_gui.m_pWindow->Refresh();
    VIEW_STATE& view = m_gui.m_pView->State();
    view.direction = {0, 0, 1};
    double dAspect = double(m_gui.m_pView->width()) / std::max(1, m_gui.m_pView->height());
    view.dHeight = std::max(y1 - y0, (x1 - x0) / dAspect);
    view.target = AcGePoint3d((x0 + x1) / 2, (y0 + y1) / 2, 0);
    m_gui.m_pView->update();
}

void CRoad::Milestone(const std::string& strMilestone, QWidget* pWidget) {
    QApplication::processEvents();
    QDir dir(QStringLiteral(QM_ROADS_DIR));
    dir.mkpath(QStringLiteral("."));
    char szName[256];
    std::snprintf(szName, sizeof szName, "%s-%02d-%s.png", m_strName.c_str(), ++m_nShot,
                  strMilestone.c_str());
    QString path = dir.filePath(QString::fromUtf8(szName));
    QWidget* pShown = pWidget ? pWidget : m_gui.m_pWindow.get();
    if (pShown->grab().save(path, "PNG"))
        m_shots.push_back(path.toStdString());
}

void CRoad::Run() {
    // Windows of the module run their own loops; the handlers look for them meanwhile.
    QTimer watcher;
    QObject::connect(&watcher, &QTimer::timeout, [this] {
        if (m_pending.empty())
            return;
        QWidget* pWindow = FindWindow(m_pending.front().strTitle);
        if (!pWindow)
            return;
        auto fn = std::move(m_pending.front().fn);
        m_pending.erase(m_pending.begin());
        fn(pWindow);
    });
    watcher.start(5);
    m_gui.Run();
    UnloadModule();
}
