// Demo installation: category trees of the hole and layout libraries with a few items each.
#include "demo/DemoInstall.h"

#include "base/SysPath.h"
#include "host/HostUi.h"
#include "shared/fileops/FileOps.h"

namespace {

struct DEMO_ITEM {
    const wchar_t* pszRelPath;
};

// Cutouts and layouts a panel designer recognises. The item files are
// placeholders until the host can write real drawings.
constexpr DEMO_ITEM kHoleItems[] = {
    {L"按钮指示灯\\22mm按钮.dwg"}, {L"按钮指示灯\\30mm按钮.dwg"}, {L"按钮指示灯\\急停按钮.dwg"},
    {L"仪表\\96x96电流表.dwg"},    {L"仪表\\72x72电压表.dwg"},    {L"风扇\\FK6623风扇.dwg"},
    {L"5x10腰形孔.dwg"},
};
constexpr DEMO_ITEM kLayoutItems[] = {
    {L"配电柜\\GGD低压柜.dwg"},
    {L"控制箱\\PLC控制箱.dwg"},
};

bool MakeItems(const std::wstring& strRoot, const DEMO_ITEM* items, size_t nCount) {
    for (size_t i = 0; i < nCount; ++i) {
        std::wstring strPath = JoinPath(strRoot, items[i].pszRelPath);
        if (!CreateDirPath(GetParentPath(strPath)))
            return false;
        if (!IsFileExist(strPath) && !WriteTextFile(strPath, L"demo placeholder\n"))
            return false;
    }
    return true;
}

} // namespace

bool MakeDemoInstall(const std::string& osDir, CSuiteConfig& config) {
    std::wstring strBase = FromOsPath(osDir);
    config.m_strCommonRes = JoinPath(strBase, L"common\\");
    config.m_strLocal = JoinPath(strBase, L"local\\");
    config.m_strInstall = JoinPath(strBase, L"");
    config.m_nInstallStyle = 0;
    config.m_nFtpLogin = 0;
    config.m_strVersion = L"2026.1";
    // The layout browser looks for the hole library's name under the local root.
    const wchar_t* dirs[] = {L"common\\InstallHole", L"common\\DzStrucLib", L"local\\LaySketch",
                             L"local\\InstallHole",  L"local\\Data",        L"local\\LocalData",
                             L"local\\Temp"};
    for (const wchar_t* dir : dirs)
        if (!CreateDirPath(JoinPath(strBase, dir)))
            return false;
    return MakeItems(config.m_strCommonRes + L"InstallHole\\", kHoleItems, std::size(kHoleItems)) &&
           MakeItems(config.m_strLocal + L"LaySketch\\", kLayoutItems, std::size(kLayoutItems));
}

void PrintDemoSummary(CSuiteConfig& config) {
    CStringArray holes, layouts;
    CollectFiles(config.CommonResInstallPath() + L"InstallHole", L"dwg", holes, true);
    CollectFiles(config.LocalInstallPath() + L"LaySketch", L"dwg", layouts, true);
    acutPrintf(L"开孔图库 %sInstallHole\\: %d 项\n", config.CommonResInstallPath(), holes.size());
    acutPrintf(L"屏面布置图库 %sLaySketch\\: %d 项\n", config.LocalInstallPath(), layouts.size());
}
