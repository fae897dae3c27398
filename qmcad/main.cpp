// qmcad, the reference host: loads the module and runs its command line on an installation.
#include "ConsoleUi.h"
#include "PluginLoader.h"
#include "demo/DemoInstall.h"
#include "dxf/DxfCodec.h"
#include "editor/EditorHost.h"
#include "ftp/CurlFtpClient.h"
#include "suite/SuiteConfig.h"
#include "suite/SuiteLabelNames.h"
#include "suite/SuiteMainLib.h"

#include "base/FileSystem.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <unistd.h>

namespace {

struct OPTIONS {
    std::string strDemoDir;
    std::string strConfigFile = CSuiteConfig::DefaultConfigFile();
    std::string strScript;
    std::string strModule;
};

int Usage() {
    std::fputs("usage: qmcad [--demo DIR] [--config FILE] [--script FILE] [--module PATH]\n",
               stderr);
    return 2;
}

bool ParseOptions(int argc, char** argv, OPTIONS& opt) {
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (i + 1 >= argc)
            return false;
        if (arg == "--demo")
            opt.strDemoDir = argv[++i];
        else if (arg == "--config")
            opt.strConfigFile = argv[++i];
        else if (arg == "--script")
            opt.strScript = argv[++i];
        else if (arg == "--module")
            opt.strModule = argv[++i];
        else
            return false;
    }
    if (opt.strModule.empty()) {
        const char* env = std::getenv("QMCAD_MODULE");
        opt.strModule = env && *env ? env : QMCAD_DEFAULT_MODULE;
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

// Script lines are UTF-8; a missing script is an error before anything runs.
CEditorHost::LineSource MakeSource(const OPTIONS& opt, std::shared_ptr<std::ifstream>& script) {
    if (opt.strScript.empty())
        return [](std::wstring& strLine) {
            std::string line;
            if (!std::getline(std::cin, line))
                return false;
            strLine = Utf8ToWide(line);
            return true;
        };
    script = std::make_shared<std::ifstream>(opt.strScript);
    return [script](std::wstring& strLine) {
        std::string line;
        if (!std::getline(*script, line))
            return false;
        strLine = Utf8ToWide(line);
        return true;
    };
}

} // namespace

int main(int argc, char** argv) {
    OPTIONS opt;
    if (!ParseOptions(argc, argv, opt))
        return Usage();
    acdbSetFileCodec(&GetDxfCodec()); // drawings are DXF files whatever their names
    CSuiteConfig config;
    if (!LoadSettings(opt, config))
        return 1;
    std::shared_ptr<std::ifstream> script;
    CEditorHost::LineSource source = MakeSource(opt, script);
    if (script && !*script) {
        std::fprintf(stderr, "qmcad: cannot read script %s\n", opt.strScript.c_str());
        return 1;
    }

    CConsoleUi ui;
    CEditorHost editor(ui);
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
    SetHostServices(services);
    editor.m_docs.NewDocument();
    PrintDemoSummary(config);

    CPluginLoader module;
    if (!module.Load(opt.strModule, services)) {
        std::fprintf(stderr, "qmcad: %s\n", module.LastError().c_str());
        return 1;
    }
    editor.SetSource(source, !opt.strScript.empty() || !::isatty(STDIN_FILENO));
    editor.RunLoop();
    module.Unload();
    SetHostServices(HOST_SERVICES{});
    return 0;
}
