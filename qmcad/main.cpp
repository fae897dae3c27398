// qmcad, the reference host: for now it sets up an installation and shows its libraries.
#include "ConsoleUi.h"
#include "demo/DemoInstall.h"
#include "dxf/DxfCodec.h"
#include "suite/SuiteConfig.h"

#include "base/FileSystem.h"
#include "base/StrUtil.h"
#include "host/HostServices.h"
#include "library/LibraryRules.h"
#include "shared/fileops/FileOps.h"

#include <algorithm>
#include <cstring>

namespace {

void ListLibrary(const wchar_t* pszTitle, const std::wstring& strLibRoot, LibraryKind kind) {
    acutPrintf(L"\n%s: %s\n", pszTitle, strLibRoot);
    if (!IsDirExist(strLibRoot)) {
        acutPrintf(L"  (目录不存在)\n");
        return;
    }
    CStringArray dirs{strLibRoot};
    CStringArray all;
    CollectDirs(strLibRoot, all);
    for (const std::wstring& dir : all) {
        std::wstring strName = GetFileName(dir);
        if (strName != L"." && strName != L"..")
            dirs.push_back(dir + L"\\");
    }
    std::sort(dirs.begin(), dirs.end(),
              [](const auto& a, const auto& b) { return CompareNoCase(a, b) < 0; });
    for (const std::wstring& dir : dirs) {
        CStringArray items;
        CollectFiles(dir, L"dwg", items, false);
        std::sort(items.begin(), items.end(),
                  [](const auto& a, const auto& b) { return CompareNoCase(a, b) < 0; });
        std::wstring strRel = StrMid(dir, static_cast<int>(strLibRoot.size()));
        acutPrintf(L"  [%s] %d 项\n", strRel.empty() ? L"\\" : strRel, items.size());
        for (const std::wstring& item : items) {
            std::wstring strName = GetFileName(item);
            NormaliseItemName(strName);
            acutPrintf(L"      %-24s %s\n", strName, MakeItemPath(dir, strName));
        }
        std::wstring strTwin = MakeTwinDir(dir, GetQuillmLocalInstallPath(), kind);
        if (strTwin != dir)
            acutPrintf(L"      twin: %s\n", strTwin);
    }
}

int Usage() {
    std::fputs("usage: qmcad [--demo DIR] [--config FILE]\n", stderr);
    return 2;
}

} // namespace

int main(int argc, char** argv) {
    std::string strDemoDir, strConfigFile = CSuiteConfig::DefaultConfigFile();
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--demo") == 0 && i + 1 < argc)
            strDemoDir = argv[++i];
        else if (std::strcmp(argv[i], "--config") == 0 && i + 1 < argc)
            strConfigFile = argv[++i];
        else
            return Usage();
    }
    CConsoleUi ui;
    acdbSetFileCodec(&GetDxfCodec()); // drawings are DXF files whatever their names
    CSuiteConfig config;
    if (!strDemoDir.empty()) {
        if (!MakeDemoInstall(strDemoDir, config)) {
            std::fprintf(stderr, "qmcad: cannot lay out the demo installation in %s: %s\n",
                         strDemoDir.c_str(), WideToUtf8(FsErrorText(FsGetLastError())).c_str());
            return 1;
        }
        strConfigFile = strDemoDir + "/suite.conf";
        config.Save(strConfigFile);
    } else if (!config.Load(strConfigFile)) {
        std::fprintf(stderr, "qmcad: no suite settings at %s (try --demo DIR)\n",
                     strConfigFile.c_str());
        return 1;
    }
    HOST_SERVICES services;
    services.pUi = &ui;
    services.pInstallPaths = &config;
    SetHostServices(services);

    acutPrintf(L"Quillmarch qmcad, suite settings %s\n", Utf8ToWide(strConfigFile));
    int nStyle = GetCurQuillmInstallStyle();
    int nMode = DeriveFtpMode(nStyle, GetCurFTPLoginStatus());
    if (nMode < 0) {
        QmMessageBox(kNoFtpLoginText, MB_ICONINFORMATION);
        return 0;
    }
    acutPrintf(L"安装方式 %d, 图库模式 g_nFtpMode = %d\n", nStyle, nMode);
    ListLibrary(L"开孔图库", GetQuillmCommonResInstallPath() + L"InstallHole\\", LibraryKind::Hole);
    ListLibrary(L"屏面布置图库", GetQuillmLocalInstallPath() + L"LaySketch\\", LibraryKind::Layout);
    SetHostServices(HOST_SERVICES{});
    return 0;
}
