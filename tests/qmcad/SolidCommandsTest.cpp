// Solids made and cut by the editor's commands, measured by the kernel and kept through a file.
#include "DbBuilders.h"
#include "EditorTestHost.h"
#include "TestData.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"
#include "solid/OcctModeler.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

std::vector<AcDbObjectId> SolidsOf(AcDbDatabase* pDb) {
    std::vector<AcDbObjectId> ids;
    AcDbBlockTableRecord* pSpace = nullptr;
    acdbOpenObject(pSpace, pDb->modelSpaceId(), AcDb::kForRead);
    for (AcDbObjectId id : pSpace->entities())
        if (id.isValid() && !id.isErased() && dynamic_cast<AcDb3dSolid*>(id.stub()->pObject))
            ids.push_back(id);
    pSpace->close();
    return ids;
}

double VolumeOf(AcDbObjectId id) {
    MASS_PROPS props;
    acdbWithObject<AcDb3dSolid>(
        id, [&](const AcDb3dSolid& s) { GetOcctModeler().MassProperties(s.body(), props); });
    return props.dVolume;
}

std::wstring Hex(AcDbObjectId id) {
    return id.handle().text();
}

} // namespace

TEST(SolidCommands, BoxByCornerAndLengthsStandsOnTheCornerAndGoesDownForANegativeHeight) {
    CEditorTestHost host;
    host.Run({L"BOX 10,20 L 600 800 -2"});
    auto solids = SolidsOf(host.m_editor.Db());
    ASSERT_EQ(solids.size(), 1u) << WideToUtf8(host.m_strPrinted);
    AcDbExtents ext;
    acdbWithObject<AcDb3dSolid>(solids[0], [&](const AcDb3dSolid& s) { s.getGeomExtents(ext); });
    EXPECT_NEAR(ext.minPoint().x, 10, 1e-6);
    EXPECT_NEAR(ext.maxPoint().y, 820, 1e-6);
    EXPECT_NEAR(ext.minPoint().z, -2, 1e-6);
    EXPECT_NEAR(ext.maxPoint().z, 0, 1e-6);
    double volume = 0;
    AcGePoint3d centroid;
    acdbWithObject<AcDb3dSolid>(solids[0],
                                [&](const AcDb3dSolid& s) { s.getMassProp(volume, centroid); });
    EXPECT_NEAR(volume, 600.0 * 800 * 2, 1e-6);
    EXPECT_NEAR(centroid.x, 310, 1e-9);
    EXPECT_NEAR(centroid.z, -1, 1e-9);
}

namespace {

AcDbPolyline* Rectangle(double x, double y, double w, double h) {
    auto* p = new AcDbPolyline;
    p->addVertexAt(0, {x, y});
    p->addVertexAt(1, {x + w, y});
    p->addVertexAt(2, {x + w, y + h});
    p->addVertexAt(3, {x, y + h});
    p->setClosed(true);
    return p;
}

// A 600 x 800 panel, top face at z = 0 and 2 thick, with ten round and ten
// square cutouts through it; returns the expected volume after the cut.
double BuildCutPanel(CEditorHost& ed, AcDbObjectId& panel, std::vector<std::wstring>& cutouts) {
    AcDbDatabase* pDb = ed.Db();
    AcDbObjectId outline = AppendToModelSpace(*pDb, Rectangle(0, 0, 600, 800));
    EXPECT_EQ(ed.Command({L"_extrude", Hex(outline), L"", L"-2"}), RTNORM);
    panel = SolidsOf(pDb).back();
    double volume = 600.0 * 800 * 2;
    for (int i = 0; i < 10; ++i) {
        auto* pCircle = new AcDbCircle(AcGePoint3d(40 + 55 * i, 100, 1), 5 + i);
        AcDbObjectId circle = AppendToModelSpace(*pDb, pCircle);
        EXPECT_EQ(ed.Command({L"_extrude", Hex(circle), L"", L"-5"}), RTNORM);
        cutouts.push_back(Hex(SolidsOf(pDb).back()));
        volume -= std::numbers::pi * (5 + i) * (5 + i) * 2;
        EXPECT_EQ(ed.Command({L"BOX", Format(L"%d,400", 30 + 55 * i), L"L", L"20", L"30", L"-6"}),
                  RTNORM);
        cutouts.push_back(Hex(SolidsOf(pDb).back()));
        volume -= 20.0 * 30 * 2;
    }
    return volume;
}

} // namespace

TEST(SolidCommands, PanelLessTwentyCutoutsHasTheExactVolumeAndKeepsItThroughTheFile) {
    CEditorTestHost host;
    CEditorHost& ed = host.m_editor;
    AcDbObjectId panel;
    std::vector<std::wstring> cutouts;
    double expected = BuildCutPanel(ed, panel, cutouts);
    // The profile is gone (DELOBJ 1); the cutouts go in with a line that isn't a solid.
    AcDbObjectId line = AppendToModelSpace(*ed.Db(), new AcDbLine({0, 0, 0}, {1, 1, 0}));
    std::vector<std::wstring> words{L"_subtract", Hex(panel), L""};
    words.insert(words.end(), cutouts.begin(), cutouts.end());
    words.push_back(Hex(line));
    words.push_back(L"");
    ASSERT_EQ(ed.Command(words), RTNORM) << WideToUtf8(host.m_strPrinted);
    ASSERT_EQ(SolidsOf(ed.Db()).size(), 1u);
    EXPECT_NEAR(VolumeOf(panel) / expected, 1.0, 1e-6);

    CTempDir dir;
    std::wstring strPath = dir / L"panel.dwg";
    ASSERT_EQ(ed.Db()->saveAs(strPath.c_str()), Acad::eOk);
    AcDbDatabase copy(false, true);
    ASSERT_EQ(copy.readDwgFile(strPath.c_str()), Acad::eOk);
    auto solids = SolidsOf(&copy);
    ASSERT_EQ(solids.size(), 1u);
    EXPECT_NEAR(VolumeOf(solids[0]) / VolumeOf(panel), 1.0, 1e-9);
    // A kernel that never saw the body, as after a restart, reads it from the file's text.
    COcctModeler fresh;
    MASS_PROPS props;
    acdbWithObject<AcDb3dSolid>(
        solids[0], [&](const AcDb3dSolid& s) { fresh.MassProperties(s.body(), props); });
    EXPECT_NEAR(props.dVolume / VolumeOf(panel), 1.0, 1e-9);
}

TEST(SolidCommands, SubtractWithAnEmptySecondSelectionOrAFailingCutLeavesThePanelWhole) {
    CEditorTestHost host;
    CEditorHost& ed = host.m_editor;
    ASSERT_EQ(ed.Command({L"BOX", L"0,0", L"L", L"100", L"100", L"-2"}), RTNORM);
    AcDbObjectId panel = SolidsOf(ed.Db()).back();
    EXPECT_EQ(ed.Command({L"_subtract", Hex(panel), L"", L""}), RTNORM);
    EXPECT_NEAR(VolumeOf(panel), 20000, 1e-6);
    // Nothing but non-solids in the first selection: an error, nothing changed.
    AcDbObjectId line = AppendToModelSpace(*ed.Db(), new AcDbLine({0, 0, 0}, {1, 1, 0}));
    EXPECT_NE(ed.Command({L"_subtract", Hex(line), L"", Hex(panel), L""}), RTNORM);
    EXPECT_NEAR(VolumeOf(panel), 20000, 1e-6);
    // Bad sizes: a message and an error code, no solid.
    EXPECT_NE(ed.Command({L"BOX", L"0,0", L"L", L"0", L"10", L"-2"}), RTNORM);
    EXPECT_EQ(SolidsOf(ed.Db()).size(), 1u);
}

TEST(SolidModeler, DamagedBodyTextIsRefusedWithoutAHangOrACrash) {
    COcctModeler& modeler = GetOcctModeler();
    std::vector<std::string> body;
    ASSERT_TRUE(modeler.MakeBox(60, 80, 2, body));
    AcDbExtents ext;
    ASSERT_TRUE(modeler.GetExtents(body, ext));
    // A count that would have the reader loop for ever, a text cut short, another kernel's data.
    auto huge = body;
    for (std::string& line : huge)
        if (line.rfind("TShapes ", 0) == 0)
            line = "TShapes 900000000";
    EXPECT_FALSE(modeler.GetExtents(huge, ext));
    EXPECT_FALSE(modeler.GetExtents({body.begin(), body.begin() + body.size() / 2}, ext));
    EXPECT_FALSE(modeler.GetExtents(
        {"21200 257 2 26", "16 Autodesk AutoCAD 19 ASM 223.0.1.1930 NT 24 ..."}, ext));
    // One character changed anywhere: a result either way, and the same answer every time.
    for (size_t i = 0; i < body.size(); i += 7) {
        auto damaged = body;
        if (damaged[i].empty())
            continue;
        damaged[i][damaged[i].size() / 2] = '9';
        MASS_PROPS props;
        bool bFirst = modeler.MassProperties(damaged, props);
        EXPECT_EQ(modeler.MassProperties(damaged, props), bFirst);
    }
}
