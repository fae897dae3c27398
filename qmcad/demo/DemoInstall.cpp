// Demo installation: category trees of the hole and layout libraries with a few items each.
#include "demo/DemoInstall.h"

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

// A cutout or a panel face: a circle of diameter dW, or a rectangle dW by dH
// with rounded ends when bSlot is set, drawn centred on the origin.
struct DEMO_ITEM {
    const wchar_t* pszRelPath;
    double dW;
    double dH; // 0 for a circle
    bool bSlot;
};

constexpr DEMO_ITEM kHoleItems[] = {
    {L"按钮指示灯\\22mm按钮.dwg", 22.3, 0, false},
    {L"按钮指示灯\\30mm按钮.dwg", 30.5, 0, false},
    {L"按钮指示灯\\急停按钮.dwg", 22.3, 0, false},
    {L"仪表\\96x96电流表.dwg", 92, 92, false},
    {L"仪表\\72x72电压表.dwg", 68, 68, false},
    {L"风扇\\FK6623风扇.dwg", 224, 224, false},
    {L"5x10腰形孔.dwg", 10, 5, true},
};
constexpr DEMO_ITEM kLayoutItems[] = {
    {L"配电柜\\GGD低压柜.dwg", 800, 2200, false},
    {L"控制箱\\PLC控制箱.dwg", 600, 800, false},
};

void Append(AcDbBlockTableRecord* pSpace, AcDbEntity* pEnt) {
    AcDbObjectId id;
    if (pSpace->appendAcDbEntity(id, pEnt) == Acad::eOk)
        pEnt->close();
    else
        delete pEnt;
}

AcDbPolyline* Outline(double w, double h, bool bSlot) {
    auto* pLine = new AcDbPolyline;
    double r = bSlot ? h / 2 : 0;
    double bulge = bSlot ? 1.0 : 0.0;
    pLine->addVertexAt(0, AcGePoint2d(-w / 2 + r, -h / 2));
    pLine->addVertexAt(1, AcGePoint2d(w / 2 - r, -h / 2), bulge);
    pLine->addVertexAt(2, AcGePoint2d(w / 2 - r, h / 2));
    pLine->addVertexAt(3, AcGePoint2d(-w / 2 + r, h / 2), bulge);
    pLine->setClosed(true);
    return pLine;
}

// The cutout with its two centre lines, saved as a drawing of the library.
bool WriteItemDrawing(const std::wstring& strPath, const DEMO_ITEM& item) {
    AcDbDatabase db(true);
    AcDbBlockTableRecord* pSpace = nullptr;
    if (acdbOpenObject(pSpace, db.modelSpaceId(), AcDb::kForWrite) != Acad::eOk)
        return false;
    double w = item.dW, h = item.dH > 0 ? item.dH : item.dW;
    if (item.dH > 0)
        Append(pSpace, Outline(item.dW, item.dH, item.bSlot));
    else
        Append(pSpace, new AcDbCircle(AcGePoint3d(0, 0, 0), item.dW / 2));
    Append(pSpace, new AcDbLine(AcGePoint3d(-w * 0.65, 0, 0), AcGePoint3d(w * 0.65, 0, 0)));
    Append(pSpace, new AcDbLine(AcGePoint3d(0, -h * 0.65, 0), AcGePoint3d(0, h * 0.65, 0)));
    pSpace->close();
    return db.saveAs(strPath.c_str()) == Acad::eOk;
}

bool MakeItems(const std::wstring& strRoot, const DEMO_ITEM* items, size_t nCount) {
    for (size_t i = 0; i < nCount; ++i) {
        std::wstring strPath = strRoot + items[i].pszRelPath;
        if (!MakeDirs(StrLeft(strPath, StrReverseFind(strPath, L'\\'))))
            return false;
        if (!FsExists(strPath) && !WriteItemDrawing(strPath, items[i]))
            return false;
    }
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
                             L"local\\Temp"};
    for (const wchar_t* dir : dirs)
        if (!MakeDirs(strBase + dir))
            return false;
    return MakeItems(config.m_strCommonRes + L"InstallHole\\", kHoleItems, std::size(kHoleItems)) &&
           MakeItems(config.m_strLocal + L"LaySketch\\", kLayoutItems, std::size(kLayoutItems));
}

void PrintDemoSummary(CSuiteConfig& config) {
    size_t nHoles = CountDrawings(config.CommonResInstallPath() + L"InstallHole");
    size_t nLayouts = CountDrawings(config.LocalInstallPath() + L"LaySketch");
    acutPrintf(L"开孔图库 %sInstallHole\\: %d 项\n", config.CommonResInstallPath(), nHoles);
    acutPrintf(L"屏面布置图库 %sLaySketch\\: %d 项\n", config.LocalInstallPath(), nLayouts);
}
