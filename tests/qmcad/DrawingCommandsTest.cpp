// UNDO groups over the document's log, linear dimensions with DIMLFAC, explode and purge.
#include "DbDump.h"
#include "EditorTestHost.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "solid/OcctModeler.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace {

AcDbObjectId Append(AcDbDatabase* pDb, AcDbEntity* pEnt, AcDbObjectId blockId = {}) {
    AcDbBlockTableRecord* pBlock = nullptr;
    acdbOpenObject(pBlock, blockId.isNull() ? pDb->modelSpaceId() : blockId, AcDb::kForWrite);
    AcDbObjectId id;
    pBlock->appendAcDbEntity(id, pEnt);
    pEnt->close();
    pBlock->close();
    return id;
}

AcDbObjectId NewBlock(AcDbDatabase* pDb, const std::wstring& strName) {
    AcDbBlockTable* pTable = nullptr;
    pDb->getBlockTable(pTable, AcDb::kForWrite);
    auto* pBlock = new AcDbBlockTableRecord;
    pBlock->setName(strName);
    AcDbObjectId id;
    pTable->add(id, pBlock);
    pBlock->close();
    pTable->close();
    return id;
}

std::vector<AcDbEntity*> Live(AcDbDatabase* pDb) {
    std::vector<AcDbEntity*> out;
    acdbWithObject<AcDbBlockTableRecord>(pDb->modelSpaceId(), [&](const AcDbBlockTableRecord& b) {
        for (AcDbObjectId id : b.entities())
            if (id.isValid() && !id.isErased())
                out.push_back(static_cast<AcDbEntity*>(id.stub()->pObject));
    });
    return out;
}

} // namespace

TEST(UndoCommand, AGroupOfCommandsGoesBackAsOneStepToTheExactDatabase) {
    CEditorTestHost host;
    CEditorHost& ed = host.m_editor;
    ed.Command({L"BOX", L"0,0", L"L", L"10", L"10", L"1"});
    std::string before = DumpDatabase(*ed.Db());
    ed.Command({L"UNDO", L"BE"});
    ed.Command({L"BOX", L"20,0", L"L", L"10", L"10", L"1"});
    AcDbObjectId first = Live(ed.Db()).front()->objectId();
    ed.Command({L"SETVAR", L"GRIDMODE", L"1"});
    ed.Command({L"explode", first.handle().text(), L""}); // fails: a solid; the group goes on
    ed.Command({L"dimlinear", L"0,0,0", L"10,0,0", L"5,-5,0"});
    ed.Command({L"UNDO", L"BE"}); // a group open already ends and a new one starts
    ed.Command({L"BOX", L"40,0", L"L", L"5", L"5", L"1"});
    ed.Command({L"UNDO", L"E"});
    ed.Command({L"UNDO", L"E"}); // no group: nothing
    ed.Command({L"UNDO", L""});
    EXPECT_EQ(Live(ed.Db()).size(), 3u); // the box and the dimension of the first group stay
    ed.Command({L"UNDO", L""});
    EXPECT_EQ(DumpDatabase(*ed.Db()), before);
    EXPECT_EQ(ed.m_vars.Short(L"GRIDMODE"), 0);
    ed.Command({L"UNDO", L""}); // the first box
    EXPECT_TRUE(Live(ed.Db()).empty());
    EXPECT_EQ(ed.Command({L"UNDO", L""}), RTNORM); // nothing left: said so, no harm
    EXPECT_EQ(ed.Command({L"UNDO", L"x"}), RTERROR);
}

TEST(UndoCommand, AnOpenGroupGathersLaterCommandsAndTheLogDiesWithTheDocument) {
    CEditorTestHost host;
    CEditorHost& ed = host.m_editor;
    ed.Command({L"BOX", L"0,0", L"L", L"10", L"10", L"1"});
    ed.Command({L"UNDO", L"BE"});
    ed.Command({L"BOX", L"20,0", L"L", L"10", L"10", L"1"});
    ed.Command({L"BOX", L"40,0", L"L", L"10", L"10", L"1"});
    // "E" then "": the whole open group, not just the last box.
    ed.Command({L"UNDO", L"E"});
    ed.Command({L"UNDO", L""});
    EXPECT_EQ(Live(ed.Db()).size(), 1u);

    CTempDir dir;
    std::wstring strPath = dir / L"a.dwg";
    ASSERT_EQ(ed.Db()->saveAs(strPath.c_str()), Acad::eOk);
    ed.m_docs.CloseDocument(ed.Doc());
    ASSERT_TRUE(ed.m_docs.OpenDocument(strPath));
    ed.Command({L"UNDO", L""});
    EXPECT_EQ(Live(ed.Db()).size(), 1u); // after a reopen there is nothing to undo
}

TEST(DimLinear, PlacedDimensionMeasuresAlongItsDirectionTimesDimlfacAndEzdxfReadsIt) {
    CEditorTestHost host;
    CEditorHost& ed = host.m_editor;
    ASSERT_EQ(ed.Command({L"SETVAR", L"DIMLFAC", L"10"}), RTNORM);
    // The dimension line is placed by the person: the next line of input answers the pause.
    host.Feed({L"50,-30"});
    ASSERT_EQ(ed.Command({L"dimlinear", L"0,0,0", L"60,25,0", L"\\"}), RTNORM);
    auto ents = Live(ed.Db());
    ASSERT_EQ(ents.size(), 1u);
    auto* pDim = dynamic_cast<AcDbRotatedDimension*>(ents[0]);
    ASSERT_NE(pDim, nullptr);
    EXPECT_DOUBLE_EQ(pDim->rotation(), 0.0); // placed below: horizontal
    EXPECT_DOUBLE_EQ(pDim->measurement(), 60.0);
    EXPECT_NE(host.m_strPrinted.find(L"标注文字 = 600"), std::wstring::npos);
    host.Feed({L"90,10"});
    ASSERT_EQ(ed.Command({L"dimlinear", L"0,0,0", L"60,25,0", L"\\"}), RTNORM);
    EXPECT_NE(host.m_strPrinted.find(L"标注文字 = 250"), std::wstring::npos); // beside: vertical

    ASSERT_EQ(ed.Command({L"BOX", L"0,0", L"L", L"10", L"10", L"-1"}), RTNORM);
    CTempDir dir;
    std::wstring strPath = dir / L"dim.dxf";
    ASSERT_EQ(ed.Db()->saveAs(strPath.c_str()), Acad::eOk);
    std::string strCmd = "/usr/bin/python3 -c \"import ezdxf,sys; d=ezdxf.readfile(sys.argv[1]); "
                         "print(' '.join('%g' % (x.get_measurement() * d.header['\\$DIMLFAC']) "
                         "for x in d.modelspace().query('DIMENSION')), "
                         "[len(x.sat) > 100 for x in d.modelspace().query('3DSOLID')])\" '" +
                         dir.OsPath() + "dim.dxf'";
    FILE* pipe = popen(strCmd.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    char buf[256] = {};
    size_t n = std::fread(buf, 1, sizeof buf - 1, pipe);
    pclose(pipe);
    EXPECT_EQ(std::string(buf, n), "600 250 [True]\n");
}

TEST(Explode, AReferenceBecomesItsEntitiesPlacedAndNestedReferencesStayReferences) {
    CEditorTestHost host;
    CEditorHost& ed = host.m_editor;
    AcDbDatabase* pDb = ed.Db();
    AcDbObjectId inner = NewBlock(pDb, L"INNER");
    Append(pDb, new AcDbLine({0, 0, 0}, {1, 0, 0}), inner);
    AcDbObjectId outer = NewBlock(pDb, L"OUTER");
    Append(pDb, new AcDbCircle({0, 0, 0}, 2), outer);
    Append(pDb, new AcDbBlockReference({5, 0, 0}, inner), outer);
    auto* pRef = new AcDbBlockReference({100, 50, 0}, outer);
    pRef->setScaleFactors({2, 2, 1});
    AcDbObjectId ref = Append(pDb, pRef);

    ASSERT_EQ(ed.Command({L"explode", ref.handle().text(), L""}), RTNORM);
    auto ents = Live(pDb);
    ASSERT_EQ(ents.size(), 2u);
    auto* pCircle = dynamic_cast<AcDbCircle*>(ents[0]);
    auto* pNested = dynamic_cast<AcDbBlockReference*>(ents[1]);
    ASSERT_TRUE(pCircle && pNested);
    EXPECT_EQ(pCircle->center(), AcGePoint3d(100, 50, 0));
    EXPECT_DOUBLE_EQ(pCircle->radius(), 4.0);
    EXPECT_EQ(pNested->position(), AcGePoint3d(110, 50, 0));
    EXPECT_EQ(pNested->blockTableRecord(), inner);
    // A circle can't be exploded: an error code, nothing changed.
    EXPECT_NE(ed.Command({L"explode", pCircle->objectId().handle().text(), L"\n"}), RTNORM);
    EXPECT_EQ(Live(pDb).size(), 2u);

    // OUTER is unused now; INNER is still referenced and stays.
    ASSERT_EQ(ed.Command({L"purge", L""}), RTNORM);
    AcDbBlockTable* pTable = nullptr;
    pDb->getBlockTable(pTable, AcDb::kForRead);
    EXPECT_FALSE(pTable->has(L"OUTER"));
    EXPECT_TRUE(pTable->has(L"INNER"));
    pTable->close();
}

namespace {

double PanelVolume(AcDbDatabase* pDb) {
    double volume = 0;
    for (AcDbEntity* pEnt : Live(pDb))
        if (auto* pSolid = dynamic_cast<AcDb3dSolid*>(pEnt)) {
            AcDbExtents ext;
            pSolid->getGeomExtents(ext);
            if (ext.maxPoint().x - ext.minPoint().x > 50) {
                MASS_PROPS props;
                GetOcctModeler().MassProperties(pSolid->body(), props);
                volume = props.dVolume;
            }
        }
    return volume;
}

} // namespace

// The plan and 3D view scripts as a module command sends them, each line one call.
TEST(UndoCommand, TheThreeDViewScriptCutsInsideAnOpenGroupAndThePlanScriptTakesItBack) {
    CEditorTestHost host;
    CEditorHost& ed = host.m_editor;
    ed.Command({L"BOX", L"0,0", L"L", L"100", L"100", L"-2"});
    ed.Command({L"BOX", L"10,10", L"L", L"10", L"10", L"-5"});
    auto ents = Live(ed.Db());
    std::wstring panel = ents[0]->objectId().handle().text();
    std::wstring hole = ents[1]->objectId().handle().text();
    auto plan = [&] {
        ed.Command({L"UNDO", L"E"});
        ed.Command({L"UNDO", L""});
        ed.Command({L"_.shademode", L"_2D"});
        ed.Command({L"_.-view", L"_top"});
    };
    ed.m_commands.AddNative(L"PLANVIEW", plan);
    ed.m_commands.AddNative(L"CUTVIEW", [&] {
        plan();
        ed.m_vars.Set(L"GRIDMODE", SYSVAR_VALUE::Short(0));
        ed.Command({L"UNDO", L"BE"});
        ed.Command({L"_subtract", panel, L"", hole, L""});
        ed.Command({L"_.shademode", L"_g"});
        ed.Command({L"3dorbit"});
    });
    ed.Command({L"SETVAR", L"GRIDMODE", L"1"}); // the user's last step before the 3D view
    host.Run({L"CUTVIEW"});
    EXPECT_NEAR(PanelVolume(ed.Db()), 20000 - 200, 1e-6);
    EXPECT_EQ(ed.m_vars.Short(L"GRIDMODE"), 0);
    host.Run({L"CUTVIEW"}); // again: the same picture, not a double cut
    EXPECT_NEAR(PanelVolume(ed.Db()), 20000 - 200, 1e-6);
    EXPECT_EQ(Live(ed.Db()).size(), 1u);
    host.Run({L"PLANVIEW"});
    EXPECT_NEAR(PanelVolume(ed.Db()), 20000, 1e-6);
    EXPECT_EQ(Live(ed.Db()).size(), 2u);
    EXPECT_EQ(ed.m_vars.Short(L"GRIDMODE"), 0); // set outside the group: stays
    EXPECT_TRUE(ed.Doc()->m_view.IsPlan());
}
