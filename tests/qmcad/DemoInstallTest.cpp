// The demo installation: enough real items in categories, a slide for each, the small files the
// panel dialog and the browsers read, and the same bytes on every run.
#include "demo/DemoInstall.h"

#include "dxf/DxfCodec.h"
#include "host/db/AcDb.h"
#include "solid/OcctModeler.h"

#include "drawingdata/PartTables.h"
#include "drawingdata/ProcessXdictInfo.h"

#include "base/SlideFile.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"

#include "TestHost.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <set>

namespace fs = std::filesystem;

namespace {

// Relative path -> bytes of every file under the OS directory.
std::map<std::string, std::string> Tree(const std::string& osDir) {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(osDir))
        if (entry.is_regular_file())
            files[fs::relative(entry.path(), osDir).string()] =
                ReadBytes(FromOsPath(entry.path().string()));
    return files;
}

struct DemoFixture : ::testing::Test {
    void SetUp() override {
        acdbSetFileCodec(&GetDxfCodec());
        ASSERT_TRUE(MakeDemoInstall(dir.OsPath() + "demo", config));
    }
    std::wstring Hole(const std::wstring& strRel) {
        return config.CommonResInstallPath() + L"InstallHole\\" + strRel;
    }
    // Entity counts by DXF name in the model space of a drawing.
    std::map<std::wstring, int> Entities(const std::wstring& strPath) {
        std::map<std::wstring, int> counts;
        AcDbDatabase db(false, true);
        EXPECT_EQ(db.readDwgFile(strPath.c_str()), Acad::eOk) << WideToUtf8(strPath);
        AcDbBlockTableRecord* pSpace = nullptr;
        if (acdbOpenObject(pSpace, db.modelSpaceId(), AcDb::kForRead) != Acad::eOk)
            return counts;
        AcDbBlockTableRecordIterator* pIt = nullptr;
        pSpace->newIterator(pIt);
        for (; pIt && !pIt->done(); pIt->step()) {
            AcDbEntity* pEnt = nullptr;
            if (pIt->getEntity(pEnt, AcDb::kForRead) == Acad::eOk) {
                ++counts[pEnt->dxfName()];
                AcDbExtents ext;
                if (std::wstring(pEnt->dxfName()) == L"LWPOLYLINE" &&
                    pEnt->getGeomExtents(ext) == Acad::eOk)
                    dOutlineWidth = ext.maxPoint().x - ext.minPoint().x;
                pEnt->close();
            }
        }
        delete pIt;
        pSpace->close();
        return counts;
    }
    CTempDir dir;
    CSuiteConfig config;
    double dOutlineWidth = 0; // of the last outline that Entities met
};

} // namespace

TEST_F(DemoFixture, BothLibrariesHoldCategorisedItemsEachWithAReadableSlide) {
    std::set<std::string> holeDirs;
    int nHoles = 0, nLayouts = 0;
    for (const auto& [rel, bytes] : Tree(dir.OsPath() + "demo")) {
        fs::path path(rel);
        if (path.extension() != ".dwg")
            continue;
        bool bHole = rel.find("InstallHole/") != std::string::npos;
        nHoles += bHole ? 1 : 0;
        nLayouts += rel.find("LaySketch/") != std::string::npos ? 1 : 0;
        if (bHole)
            holeDirs.insert(path.parent_path().filename().string());
        CSlide slide;
        std::string slideRel = (path.parent_path() / path.stem()).string() + ".sld";
        ASSERT_TRUE(ReadSlideFile(FromOsPath(dir.OsPath() + "demo/" + slideRel), slide)) << rel;
        EXPECT_FALSE(slide.m_vectors.empty()) << rel;
        EXPECT_EQ(slide.m_nHighX, 1023) << rel; // the editor's screen, as MSLIDE writes it
    }
    EXPECT_GE(nHoles, 40);
    EXPECT_GE(holeDirs.size(), 7u); // categories and the root
    EXPECT_EQ(nLayouts, 8);
}

TEST_F(DemoFixture, CutoutsHaveTheirDevicesSizesAndASolidPerOpeningForThe3dView) {
    acdbSetSolidModeler(&GetOcctModeler());
    auto meter = Entities(Hole(L"仪表\\96x96电流表.dwg"));
    EXPECT_EQ(meter[L"LWPOLYLINE"], 1);
    EXPECT_EQ(meter[L"TEXT"], 1);         // its label
    EXPECT_NEAR(dOutlineWidth, 92, 1e-9); // the meter's panel cutout, not its bezel

    auto contactor = Entities(Hole(L"接触器\\CJX2-0910安装孔.dwg"));
    EXPECT_EQ(contactor[L"CIRCLE"], 4); // fixing holes only
    EXPECT_EQ(contactor[L"3DSOLID"], 4);
    auto screen = Entities(Hole(L"触摸屏\\7寸触摸屏.dwg"));
    EXPECT_EQ(screen[L"3DSOLID"], 1);
    // Through any plate drawn from z 0 downwards, at 1:1 and at 1:10 alike.
    AcDbDatabase db(false, true);
    ASSERT_EQ(db.readDwgFile(Hole(L"触摸屏\\7寸触摸屏.dwg").c_str()), Acad::eOk);
    AcDbExtents ext;
    AcDbBlockTableRecord* pSpace = nullptr;
    ASSERT_EQ(acdbOpenObject(pSpace, db.modelSpaceId(), AcDb::kForRead), Acad::eOk);
    AcDbBlockTableRecordIterator* pIt = nullptr;
    pSpace->newIterator(pIt);
    for (; !pIt->done(); pIt->step()) {
        AcDbEntity* pEnt = nullptr;
        if (pIt->getEntity(pEnt, AcDb::kForRead) != Acad::eOk)
            continue;
        if (dynamic_cast<AcDb3dSolid*>(pEnt))
            EXPECT_EQ(pEnt->getGeomExtents(ext), Acad::eOk);
        pEnt->close();
    }
    delete pIt;
    pSpace->close();
    EXPECT_NEAR(ext.maxPoint().x - ext.minPoint().x, 192, 1e-6);
    EXPECT_GT(ext.maxPoint().z, 0.5);
    EXPECT_LT(ext.minPoint().z, -5);
}

TEST_F(DemoFixture, CatalogueScalesAndHistoryAreWhereTheDialogsReadThem) {
    std::string panels = ReadBytes(config.LocalInstallPath() + L"LocalData\\PanelLib.txt");
    EXPECT_EQ(panels.rfind("PLC", 0), 0u);
    EXPECT_NE(panels.find(":600x800x2\r\n"), std::string::npos);
    EXPECT_EQ(panels.find("\r\n\r\n"), std::string::npos); // a blank line would end the list
    std::string scales = ReadBytes(config.LocalInstallPath() + L"LocalData\\DwgScale.txt");
    EXPECT_NE(scales.find("1:10\r\n"), std::string::npos);
    std::string history = ReadBytes(config.InstallPath() + L"LocalData\\HistoryData.txt");
    EXPECT_EQ(history.rfind("1\r\n600\r\n800\r\n2\r\n", 0), 0u);
    EXPECT_EQ(history.back(), '1'); // no line end after the last value
}

TEST_F(DemoFixture, ARunGivesTheSameBytesAndKeepsWhatIsThere) {
    CTempDir other;
    CSuiteConfig again;
    ASSERT_TRUE(MakeDemoInstall(other.OsPath() + "demo", again));
    auto first = Tree(dir.OsPath() + "demo"), second = Tree(other.OsPath() + "demo");
    ASSERT_EQ(first.size(), second.size());
    for (const auto& [rel, bytes] : first)
        EXPECT_TRUE(second[rel] == bytes) << rel;

    WriteBytes(Hole(L"M4安装孔.sld"), "edited");
    ASSERT_TRUE(MakeDemoInstall(dir.OsPath() + "demo", config));
    EXPECT_EQ(ReadBytes(Hole(L"M4安装孔.sld")), "edited");
}

TEST_F(DemoFixture, InsertingAnItemHandsItsDevicesPartRecordToTheDrawing) {
    AcDbDatabase source(false, true), target(true);
    std::wstring strSource = Hole(L"接触器\\CJX2-0910安装孔.dwg");
    ASSERT_EQ(source.readDwgFile(strSource.c_str()), Acad::eOk);
    CProcessXdictInfo handOver;
    handOver.sourceDb = &source;
    handOver.sourcePath = strSource;
    handOver.targetDb = &target;
    handOver.ProcessInsertedDrawing();
    CPartBomArray parts;
    CGetPartInfo().ReadPartTable(&target, L"", 0, L"", parts);
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_EQ(parts[0]->label, L"KM1");
    ASSERT_EQ(parts[0]->parts.size(), 1u);
    EXPECT_EQ(parts[0]->parts[0]->name, L"交流接触器");
    EXPECT_EQ(parts[0]->parts[0]->type, L"CJX2-0910");
    EXPECT_FALSE(parts[0]->parts[0]->code.empty());
}

TEST_F(DemoFixture, EveryDeviceOfAFaceHasItsOwnLabelAndRecord) {
    AcDbDatabase face(false, true);
    std::wstring strFace = config.LocalInstallPath() + L"LaySketch\\控制箱\\PLC控制箱门板.dwg";
    ASSERT_EQ(face.readDwgFile(strFace.c_str()), Acad::eOk);
    CPartBranchArray branches;
    CGetPartInfo().CollectPartBranches(&face, strFace, 1, L"", branches);
    CPartBomArray parts;
    CGetPartInfo().ReadPartTable(&face, strFace, 1, L"", parts);
    std::set<std::wstring> used, recorded;
    for (size_t i = 0; i < branches.size(); ++i)
        used.insert(branches[i]->label);
    for (size_t i = 0; i < parts.size(); ++i)
        recorded.insert(parts[i]->label);
    EXPECT_EQ(used.size(), 9u); // nine devices on the PLC door
    EXPECT_EQ(used, recorded);
    EXPECT_TRUE(used.count(L"HL3") && used.count(L"SB2") && used.count(L"HMI1"));
}
