// qmcad, the reference host: loads the module and runs its command line on an installation.
#include "ConsoleInput.h"
#include "ConsoleUi.h"
#include "HostApplication.h"
#include "PluginLoader.h"
#include "demo/DemoInstall.h"
#include "dwg/DwgCodec.h"
#include "editor/EditorHost.h"
#include "ftp/CurlFtpClient.h"
#include "gui/GuiUi.h"
#include "gui/MainWindow.h"
#include "gui/Screenshots.h"
#include "solid/OcctModeler.h"
#include "solid/PanelExport.h"
#include "suite/SuiteConfig.h"
#include "suite/SuiteDoubleClick.h"
#include "suite/SuiteLabelNames.h"
#include "suite/SuiteMainLib.h"
#include "suite/SuiteUpdate.h"

#include "base/Environment.h"
#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <QApplication>
#include <QWidget>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <unistd.h>
#include <vector>

namespace {

struct OPTIONS {
    std::string strDemoDir;
    std::string strConfigFile = CSuiteConfig::DefaultConfigFile();
    std::string strScript;
    std::vector<std::string> modules;
    std::string strOpen; // a drawing to open at start
    std::string strScreenshots;
    bool bConsole = false;
};

int Usage() {
    std::fputs("usage: qmcad [--console] [--demo DIR] [--config FILE] [--script FILE] "
               "[--module PATH]... [--screenshots DIR] [FILE.dwg]\n       qmcad --export-panels "
               "DRAWING DIR\n",
               stderr);
    return 2;
}

bool ParseOptions(int argc, char** argv, OPTIONS& opt) {
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--console") {
            opt.bConsole = true;
            continue;
        }
        if (arg.rfind("--", 0) != 0 && opt.strOpen.empty()) {
            opt.strOpen = arg;
            continue;
        }
        if (i + 1 >= argc)
            return false;
        if (arg == "--demo")
            opt.strDemoDir = argv[++i];
        else if (arg == "--config")
            opt.strConfigFile = argv[++i];
        else if (arg == "--script")
            opt.strScript = argv[++i];
        else if (arg == "--module")
            opt.modules.push_back(argv[++i]);
        else if (arg == "--screenshots")
            opt.strScreenshots = argv[++i];
        else
            return false;
    }
    if (opt.modules.empty()) {
        std::string strModule = EnvText("QMCAD_MODULE");
        opt.modules.push_back(strModule.empty() ? QMCAD_DEFAULT_MODULE : strModule);
    }
    return true;
}

bool LoadSettings(const OPTIONS& opt, CSuiteConfig& config) {
    if (opt.strDemoDir.empty()) {
        if (config.Load(opt.strConfigFile))
            return true;
        std::fprintf(stderr, "qmcad: no suite settings at %s (try --demo DIR)\n",
                     opt.strConfigFile.c_str());
        return false;
    }
    if (!MakeDemoInstall(opt.strDemoDir, config)) {
        std::fprintf(stderr, "qmcad: cannot lay out the demo installation in %s: %s\n",
                     opt.strDemoDir.c_str(), WideToUtf8(FsErrorText(FsGetLastError())).c_str());
        return false;
    }
    config.Save(opt.strDemoDir + "/suite.conf");
    return true;
}

bool HasDisplay() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY"})
        if (!EnvText(name).empty())
            return true;
    return false;
}

// Windows exist in every mode so that dialogs can be driven and tested; without
// a screen to show them on (or when asked for the console) they live offscreen.
// True when the desktop's main window is to be shown.
bool ChooseWindowPlatform(const OPTIONS& opt) {
    if (!opt.strScreenshots.empty()) {
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
        return false;
    }
    if (opt.bConsole || !opt.strScript.empty()) {
        if (!EnvIsSet("QT_QPA_PLATFORM"))
            ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
        return false;
    }
    if (EnvIsSet("QT_QPA_PLATFORM"))
        return EnvText("QT_QPA_PLATFORM") != "offscreen"; // the user's choice stands
    if (HasDisplay())
        return true;
    std::fputs("qmcad: no display (DISPLAY and WAYLAND_DISPLAY are not set): the command line "
               "runs on this terminal, windows stay offscreen\n",
               stdout);
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    return false;
}

// The drawing named on the command line, else a new one (also when it cannot be read).
void OpenStartDocument(CEditorHost& editor, IHostUi& ui, std::string strOpen) {
    char cwd[4096];
    if (!strOpen.empty() && strOpen[0] != '/' && ::getcwd(cwd, sizeof cwd))
        strOpen = std::string(cwd) + "/" + strOpen;
    std::wstring path = FromOsPath(strOpen);
    if (strOpen.empty() || editor.m_docs.OpenDocument(path))
        return;
    ui.Print(Format(L"文件<%s>打开失败!\n", Utf8ToWide(strOpen)));
    editor.m_docs.NewDocument();
}

// qmcad --export-panels DRAWING DIR: the workshop's files of every panel, without a window.
int ExportPanelsBatch(const char* pszDrawing, const char* pszDir) {
    acdbSetFileCodec(&GetDxfCodec());
    acdbSetSolidModeler(&GetOcctModeler());
    AcDbDatabase db(false, true);
    std::wstring strDrawing = FromOsPath(pszDrawing);
    if (db.readDwgFile(strDrawing.c_str()) != Acad::eOk) {
        std::fprintf(stderr, "qmcad: cannot read the drawing %s\n", pszDrawing);
        return 1;
    }
    std::vector<std::wstring> lines;
    int nWritten = ExportPanels(db, pszDir, lines);
    for (const std::wstring& strLine : lines)
        std::printf("%s\n", WideToUtf8(strLine).c_str());
    std::printf("qmcad: %d panel(s) exported\n", nWritten);
    return nWritten > 0 ? 0 : 1;
}

// The modules, each loaded as the editor loads an application; the first that
// fails ends the start with the reason.
class CModules {
public:
    ~CModules() { Unload(); }
    bool Load(const std::vector<std::string>& paths, const HOST_SERVICES& services) {
        for (const std::string& strPath : paths) {
            m_loaded.push_back(std::make_unique<CPluginLoader>());
            if (!m_loaded.back()->Load(strPath, services)) {
                std::fprintf(stderr, "qmcad: %s\n", m_loaded.back()->LastError().c_str());
                m_loaded.pop_back();
                return false;
            }
        }
        return true;
    }
    void Unload() {
        while (!m_loaded.empty()) {
            m_loaded.back()->Unload();
            m_loaded.pop_back();
        }
    }

private:
    std::vector<std::unique_ptr<CPluginLoader>> m_loaded;
};

} // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::string(argv[1]) == "--export-panels")
        return ExportPanelsBatch(argv[2], argv[3]);
    OPTIONS opt;
    if (!ParseOptions(argc, argv, opt))
        return Usage();
    bool bDesktop = ChooseWindowPlatform(opt);
    bool bScreenshots = !opt.strScreenshots.empty();
    CHostApplication app(argc, argv);
    // Drawings are DXF files whatever their names; binary DWG files are converted on reading.
    acdbSetFileCodec(&GetDwgCodec());
    CSuiteConfig config;
    if (!LoadSettings(opt, config))
        return 1;
    // Script lines are UTF-8; a missing script is an error before anything runs.
    std::unique_ptr<CScriptInput> pScript;
    if (!opt.strScript.empty()) {
        pScript = std::make_unique<CScriptInput>(opt.strScript);
        if (!pScript->IsOpen()) {
            std::fprintf(stderr, "qmcad: cannot read script %s\n", opt.strScript.c_str());
            return 1;
        }
    }

    CConsoleUi consoleUi;
    CGuiUi guiUi;
    bool bWindow = bDesktop || bScreenshots;
    CEditorHost editor(bWindow ? static_cast<IHostUi&>(guiUi) : consoleUi);
    QWidget frame; // the parent of the module's windows; the console shows none of its own
    frame.setWindowTitle(QStringLiteral("qmcad"));
    editor.m_pFrame = &frame;
    std::unique_ptr<CMainWindow> pWindow;
    if (bWindow)
        pWindow = std::make_unique<CMainWindow>(editor, guiUi); // the frame from now on
    IHostUi& ui = bWindow ? static_cast<IHostUi&>(guiUi) : consoleUi;
    app.m_onEscape = [&ui](const std::wstring& strWhat) {
        ui.Print(L"; 错误: 窗口事件异常中止（" + strWhat + L"）\n");
    };
    HOST_SERVICES services = editor.Services();
    services.pInstallPaths = &config;
    CCurlFtpClient ftp;
    services.pFtp = &ftp;
    CSuiteLabelNames labelNames(config);
    if (!opt.strDemoDir.empty())
        labelNames.WriteDefaultFiles();
    services.pLabelNames = &labelNames;
    CSuiteMainLib mainLib(config);
    services.pMainLib = &mainLib;
    CSuiteDoubleClick doubleClick;
    services.pDoubleClick = &doubleClick;
    // The suite's update of a workstation behind the shared site, which the module asks for.
    CSuiteUpdate update(config);
    editor.AddCommand(L"SynchUpdateHide", [&] {
        std::wstring strReport;
        update.Run(strReport);
        ui.Print(strReport + L"\n");
        return RTNORM;
    });
    editor.AddCommand(L"CloseMain", [] { return RTNORM; }); // the parts database is never held open
    if (pWindow)
        pWindow->m_onEntityDoubleClick = [&](AcDbObjectId id) {
            return doubleClick.CommandFor(id);
        };
    SetHostServices(services);
    OpenStartDocument(editor, ui, opt.strOpen);
    PrintDemoSummary(config);

    CModules module;
    if (!module.Load(opt.modules, services))
        return 1;
    if (bScreenshots) {
        bool bOk = WriteScreenshots(*pWindow, editor, opt.strScreenshots);
        module.Unload();
        GetDwgCodec().Worker().Stop();
        SetHostServices(HOST_SERVICES{});
        return bOk ? 0 : 1;
    }
    CConsoleInput terminal(STDIN_FILENO);
    CEditorHost::LineSource source;
    if (pWindow) {
        pWindow->show();
        source = [&](std::wstring& strLine) { return pWindow->Read(strLine); };
    } else if (pScript) {
        source = [&](std::wstring& strLine) { return pScript->Read(strLine); };
    } else {
        source = [&](std::wstring& strLine) { return terminal.Read(strLine); };
        editor.m_docs.m_onPosted = [&] { terminal.Wake(); };
    }
    editor.SetSource(source, !pWindow && (pScript || !::isatty(STDIN_FILENO)));
    editor.RunLoop();
    editor.m_docs.m_onPosted = nullptr;
    module.Unload();
    pWindow.reset();
    GetDwgCodec().Worker().Stop(); // while the application object still exists
    SetHostServices(HOST_SERVICES{});
    return 0;
}
