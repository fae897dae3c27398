// A designer's road through the product: qmcad's desktop offscreen on the demo installation,
// the real module loaded, steps driven with the mouse, keys and the command line, and a
// screenshot at each milestone.
#pragma once

#include "GuiDriver.h"
#include "TestHost.h"

#include "PluginLoader.h"
#include "ftp/CurlFtpClient.h"
#include "suite/SuiteConfig.h"
#include "suite/SuiteDoubleClick.h"
#include "suite/SuiteLabelNames.h"
#include "suite/SuiteMainLib.h"
#include "suite/SuiteUpdate.h"

#include <QString>

#include <functional>
#include <string>
#include <vector>

class QWidget;

class CRoad {
public:
    // strName names the road's screenshots: build/roads/<name>-<nn>-<milestone>.png. Without
    // a settings file the road runs on a fresh demo installation in m_dir.
    explicit CRoad(std::string strName, const std::string& osConfigFile = {});
    ~CRoad();

    bool LoadModule();
    void UnloadModule();
    bool ModuleLoaded() const { return m_module.IsLoaded(); }
    // What the host hands a module: for other modules loaded beside this one.
    const HOST_SERVICES& Services() const { return m_services; }

    void Then(std::function<void()> step) { m_gui.Then(std::move(step)); }
    // Runs fn once on the first visible top-level window titled strTitle, when it is up;
    // handlers run one after another in the order they were given.
    void WhenWindow(const QString& strTitle, std::function<void(QWidget*)> fn);
    // The main window (or the given window) as a PNG picture; the path is kept in m_shots.
    void Milestone(const std::string& strMilestone, QWidget* pWidget = nullptr);
    // The editor's loop through the steps; the module is unloaded at its end, as qmcad does.
    void Run();

    // Types a command line and runs nothing else in this step.
    void Type(const QString& text) { m_gui.Type(text); }
    void Click(double x, double y, Qt::MouseButton button = Qt::LeftButton) {
        m_gui.Click(AcGePoint3d(x, y, 0), button);
    }
    // Shows the model window from (x0, y0) to (x1, y1) in plan.
    void Frame(double x0, double y0, double x1, double y1);
    static QWidget* FindWindow(const QString& strTitle);

    CTempDir m_dir;
    CSuiteConfig m_config;
    CGuiTestEditor m_gui;
    CCurlFtpClient m_ftp;
    CSuiteLabelNames m_labelNames{m_config};
    CSuiteMainLib m_mainLib{m_config};
    CSuiteDoubleClick m_doubleClick;
    CSuiteUpdate m_update{m_config};
    int m_nUpdates = 0; // runs of the suite's update command
    std::vector<std::string> m_shots;
    bool m_bDemo = false; // the installation is there

private:
    struct PENDING {
        QString strTitle;
        std::function<void(QWidget*)> fn;
    };
    std::string m_strName;
    int m_nShot = 0;
    std::vector<PENDING> m_pending;
    HOST_SERVICES m_services;
    CPluginLoader m_module;
};
