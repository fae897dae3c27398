// Demo installation: the hole and layout libraries with their slides, and the small files.
#include "demo/DemoInstall.h"

#include "demo/DemoDrawings.h"
#include "demo/DemoSettings.h"
#include "solid/OcctModeler.h"

#include "base/FileSystem.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"
#include "host/HostUi.h"
#include "host/db/AcDb.h"

namespace {

// Makes every missing level of a directory path (backslashes, no final one needed).
bool MakeDirs(const std::wstring& strDir) {
    std::wstring strPath = StrTrimRight(strDir, L"\\") + L"\\";
    for (int n = StrFind(strPath, L'\\', 1); n >= 0; n = StrFind(strPath, L'\\', n + 1)) {
        std::wstring strLevel = StrLeft(strPath, n);
        if (!FsIsDirectory(strLevel) && !FsCreateDirectory(strLevel))
            return false;
    }
    return true;
}

// The drawings under a directory, at any depth.
size_t CountDrawings(const std::wstring& strDir) {
    std::vector<FS_FIND_DATA> found;
    FsFind(StrTrimRight(strDir, L"\\") + L"\\*.*", found);
    size_t nCount = 0;
    for (const FS_FIND_DATA& entry : found) {
        if (!entry.bDirectory)
            nCount += EqualsNoCase(StrRight(entry.strName, 4), L".dwg") ? 1 : 0;
        else if (entry.strName != L"." && entry.strName != L"..")
            nCount += CountDrawings(StrTrimRight(strDir, L"\\") + L"\\" + entry.strName);
    }
    return nCount;
}

// The drawing under the root, made when missing, and its slide beside it.
template <class Write>
bool MakeItem(const std::wstring& strRoot, const wchar_t* pszRelPath, Write write) {
    std::wstring strPath = strRoot + pszRelPath;
    if (!MakeDirs(StrLeft(strPath, StrReverseFind(strPath, L'\\'))))
        return false;
    if (!FsExists(strPath) && !write(strPath))
        return false;
    std::wstring strSlide = StrLeft(strPath, static_cast<int>(strPath.size()) - 4) + L".sld";
    return FsExists(strSlide) || WriteDrawingSlide(strPath, strSlide);
}

bool MakeItems(const std::wstring& strHoles, const std::wstring& strLayouts) {
    size_t nCutouts = 0, nLayouts = 0;
    const DEMO_CUTOUT* cutouts = DemoCutouts(nCutouts);
    const DEMO_LAYOUT* layouts = DemoLayouts(nLayouts);
    for (size_t i = 0; i < nCutouts; ++i)
        if (!MakeItem(strHoles, cutouts[i].pszRelPath, [&](const std::wstring& strPath) {
                return WriteCutoutDrawing(strPath, cutouts[i]);
            }))
            return false;
    for (size_t i = 0; i < nLayouts; ++i)
        if (!MakeItem(strLayouts, layouts[i].pszRelPath, [&](const std::wstring& strPath) {
                return WriteLayoutDrawing(strPath, layouts[i]);
            }))
            return false;
    return true;
}

} // namespace

bool MakeDemoInstall(const std::string& osDir, CSuiteConfig& config) {
    std::wstring strBase = StrTrimRight(FromOsPath(osDir), L"\\") + L"\\";
    config.m_strCommonRes = strBase + L"common\\";
    config.m_strLocal = strBase + L"local\\";
    config.m_strInstall = strBase;
    config.m_nInstallStyle = 0;
    config.m_nFtpLogin = 0;
    config.m_strVersion = L"2026.1";
    // The layout browser looks for the hole library's name under the local root.
    const wchar_t* dirs[] = {L"common\\InstallHole", L"common\\DzStrucLib", L"local\\LaySketch",
                             L"local\\InstallHole",  L"local\\Data",        L"local\\LocalData",
                             L"local\\Temp",         L"LocalData"};
    for (const wchar_t* dir : dirs)
        if (!MakeDirs(strBase + dir))
            return false;
    acdbSetSolidModeler(&GetOcctModeler()); // the touch screens' cutouts are solids
    return MakeItems(config.m_strCommonRes + L"InstallHole\\",
                     config.m_strLocal + L"LaySketch\\") &&
           WriteDemoSettings(config.m_strLocal, config.m_strInstall);
}

void PrintDemoSummary(CSuiteConfig& config) {
    size_t nHoles = CountDrawings(config.CommonResInstallPath() + L"InstallHole");
    size_t nLayouts = CountDrawings(config.LocalInstallPath() + L"LaySketch");
    acutPrintf(L"开孔图库 %sInstallHole\\: %d 项\n", config.CommonResInstallPath(), nHoles);
    acutPrintf(L"屏面布置图库 %sLaySketch\\: %d 项\n", config.LocalInstallPath(), nLayouts);
}
