// The panel commands on the reference editor's real solids: a panel drawn and placed, thrown
// away, rebuilt, cut in the 3D view and whole again in the plan, and a cutout dimensioned.
#include "panel/PanelCommands.h"

#include "app/EditorServices.h"
#include "drawingdata/DrawingRecords.h"
#include "drawingdata/ModelSpace.h"
#include "drawingdata/Records.h"
#include "host/HostServices.h"
#include "host/db/AcDb.h"
#include "panel/DlgDrawPanel.h"
#include "panel/PanelRecord.h"
#include "solid/OcctModeler.h"
#include "suite/SuiteDoubleClick.h"

#include "DbBuilders.h"
#include "EditorTestHost.h"
#include "TypingPanelView.h"

#include <gtest/gtest.h>

namespace {

struct PanelCommandsFixture : ::testing::Test {
    void SetUp() override {
        host.m_strLocal = dir.Path();
        host.m_strInstall = dir.Path();
        SetDrawPanelDialogRunner([this](CDlgDrawPanel& dlg) {
            dlg.OnInitDialog(view);
            view.m_strShownThick = dlg.m_strThick;
            return dlg.OnOK() ? IDOK : IDCANCEL;
        });
    }
    void TearDown() override { SetDrawPanelDialogRunner(nullptr); }
    AcDbDatabase* Db() { return host.m_editor.m_docs.Current()->database(); }
    std::vector<AcDbObjectId> Live() {
        std::vector<AcDbObjectId> ids;
        ForEachModelSpaceEntity(Db(), [&](AcDbObjectId id, AcDbEntity&) { ids.push_back(id); });
        return ids;
    }
    AcDbObjectId FindPanel() {
        for (AcDbObjectId id : Live())
            if (IsPanelSolid(id))
                return id;
        return AcDbObjectId();
    }
    AcDbExtents Extents(AcDbObjectId id) {
        AcDbEntity* pEnt = nullptr;
        AcDbExtents ext;
        if (acdbOpenObject(pEnt, id, AcDb::kForRead) == Acad::eOk) {
            pEnt->getGeomExtents(ext);
            pEnt->close();
        }
        return ext;
    }
    double Volume(AcDbObjectId id) {
        AcDb3dSolid* pSolid = nullptr;
        MASS_PROPS props;
        if (acdbOpenObject(pSolid, id, AcDb::kForRead) != Acad::eOk)
            return -1;
        GetOcctModeler().MassProperties(pSolid->body(), props);
        pSolid->close();
        return props.dVolume;
    }
    // A 100 x 60 x 0.2 panel placed with its corner at (30, 40).
    AcDbObjectId DrawPlacedPanel() {
        host.Feed({L"~30,40", L""});
        DrawPanel();
        return FindPanel();
    }
    AcDbObjectId AddCutout(double x0, double y0, double x1, double y1) {
        auto* pSolid = new AcDb3dSolid();
        EXPECT_EQ(pSolid->createBox(x1 - x0, y1 - y0, 10.0), Acad::eOk);
        pSolid->transformBy(
            AcGeMatrix3d::translation(AcGeVector3d((x0 + x1) / 2, (y0 + y1) / 2, 0.0)));
        return AppendToModelSpace(*Db(), pSolid);
    }

    // The commands as the user runs them, each one undo step; MARK is a step of the user's
    // own far from the panels.
    void AddPanelCommands() {
        CEditorHost& ed = host.m_editor;
        ed.AddCommand(L"DRAWPANEL", [] {
            DrawPanel();
            return RTNORM;
        });
        ed.AddCommand(L"TZ3DVIEW", [] {
            Tz3dView();
            return RTNORM;
        });
        ed.AddCommand(L"TZ2DVIEW", [] {
            Tz2dView();
            return RTNORM;
        });
        ed.AddCommand(L"MARK", [this] {
            AppendToModelSpace(*Db(), new AcDbLine(AcGePoint3d(500, 0, 0), AcGePoint3d(600, 0, 0)));
            return RTNORM;
        });
    }

    CTempDir dir;
    CEditorTestHost host;
    CTypingPanelView view;
};

} // namespace

TEST_F(PanelCommandsFixture, DrawPanelExtrudesDownwardRecordsRealSizesAndFollowsTheCursor) {
    AcDbObjectId id = DrawPlacedPanel();
    ASSERT_FALSE(id.isNull());
    AcDbExtents ext = Extents(id);
    EXPECT_NEAR(ext.minPoint().x, 30.0, 1e-6);
    EXPECT_NEAR(ext.minPoint().y, 40.0, 1e-6);
    EXPECT_NEAR(ext.maxPoint().x, 130.0, 1e-6);
    EXPECT_NEAR(ext.maxPoint().z, 0.0, 1e-6); // top face at z = 0, the body below
    EXPECT_NEAR(ext.minPoint().z, -0.2, 1e-6);
    EXPECT_NEAR(Volume(id), 100 * 60 * 0.2, 1e-6);

    AcDbEntity* pSolid = nullptr;
    ASSERT_EQ(acdbOpenObject(pSolid, id, AcDb::kForRead), Acad::eOk);
    std::wstring x, y, z;
    ASSERT_TRUE(ReadPanelSizes(pSolid, x, y, z));
    EXPECT_EQ(x + L"|" + y + L"|" + z, L"1000.00|600.00|2.00");
    EXPECT_EQ(pSolid->colorIndex(), 8);
    std::wstring strDim;
    ASSERT_TRUE(GetXDataValue(pSolid, kDimLengthApp, 1005, strDim));
    pSolid->close();
    AcDbObjectId idDim;
    ASSERT_EQ(Db()->getAcDbObjectId(idDim, false, AcDbHandle(strDim.c_str())), Acad::eOk);
    AcDbDimension* pDim = nullptr;
    ASSERT_EQ(acdbOpenObject(pDim, idDim, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(pDim->dimensionText(), L"1000.00");
    EXPECT_NEAR(pDim->xLine1Point().x, 30.0, 1e-6); // moved with the panel
    pDim->close();
    EXPECT_EQ(Live().size(), 6u); // the outline went into the solid
    int nEcho = 0;
    ASSERT_TRUE(GetIntVar(L"CMDECHO", nEcho));
    EXPECT_EQ(nEcho, 1);
}

TEST_F(PanelCommandsFixture, CancellingThePlacementLeavesNoTraceAndAThinSheetKeepsABody) {
    view.m_strT = L"0";
    host.Feed({L"~10,10", L"*Cancel*"});
    DrawPanel();
    EXPECT_TRUE(Live().empty());

    host.Feed({L""});
    DrawPanel(); // Enter at once: at the origin
    AcDbObjectId id = FindPanel();
    ASSERT_FALSE(id.isNull());
    EXPECT_NEAR(Extents(id).minPoint().x, 0.0, 1e-9);
    EXPECT_NEAR(Extents(id).minPoint().z, -0.001, 1e-9);
}

TEST_F(PanelCommandsFixture, EditPanelRebuildsAroundTheOldCentreWithTheRecordsAxes) {
    view.m_nAxisY = 0;
    AcDbObjectId idOld = DrawPlacedPanel();
    ASSERT_FALSE(idOld.isNull());
    view.m_strW = L"500";
    view.m_nAxisY = 0;
    host.Feed({L"20,20", idOld.handle().text()}); // empty space first: asked again
    EditPanel();
    EXPECT_EQ(view.m_strTitle, L"面板编辑");
    EXPECT_TRUE(idOld.isErased());
    AcDbObjectId idNew = FindPanel();
    ASSERT_FALSE(idNew.isNull());
    AcDbExtents ext = Extents(idNew);
    EXPECT_NEAR((ext.minPoint().x + ext.maxPoint().x) / 2, 80.0, 1e-6);
    EXPECT_NEAR(ext.maxPoint().x - ext.minPoint().x, 50.0, 1e-6);
    EXPECT_NEAR(ext.maxPoint().z, 0.0, 1e-6);
    AcDbEntity* pSolid = nullptr;
    ASSERT_EQ(acdbOpenObject(pSolid, idNew, AcDb::kForRead), Acad::eOk);
    EXPECT_FALSE(HasXData(pSolid, kAxisYApp));
    EXPECT_TRUE(HasXData(pSolid, kAxisXApp));
    pSolid->close();
    EXPECT_EQ(Live().size(), 5u); // solid, two axes, two dimensions: the old parts are gone
}

TEST_F(PanelCommandsFixture, The3dViewCutsInsideAnUndoGroupAndThePlanGivesEverythingBack) {
    CEditorHost& ed = host.m_editor;
    AddPanelCommands();
    ed.AddCommand(L"CUTOUTS", [this] {
        AddCutout(40, 50, 50, 60);
        AddCutout(100, 60, 120, 90);
        AddCutout(200, 200, 210, 210); // outside: stays loose
        return RTNORM;
    });
    ASSERT_TRUE(SetIntVar(L"GRIDMODE", 1));
    host.Run({L"DRAWPANEL", L"~30,40", L"", L"CUTOUTS", L"MARK"});
    size_t nBefore = Live().size();
    double dWhole = Volume(FindPanel());
    ASSERT_NEAR(dWhole, 1200.0, 1e-6);

    // The first 3D view steps back over the user's last command before it cuts.
    host.Run({L"TZ3DVIEW"});
    EXPECT_EQ(Live().size(), nBefore - 1 - 2); // the mark undone, two cutouts consumed
    double dCut = Volume(FindPanel());
    EXPECT_NEAR(dCut, dWhole - (100 + 600) * 0.2, 1e-6);
    host.Run({L"TZ3DVIEW"}); // again, from a whole panel
    EXPECT_NEAR(Volume(FindPanel()), dCut, 1e-6);
    int nGrid = -1;
    ASSERT_TRUE(GetIntVar(L"GRIDMODE", nGrid));
    EXPECT_EQ(nGrid, 0);

    host.Run({L"TZ2DVIEW"});
    EXPECT_NEAR(Volume(FindPanel()), dWhole, 1e-6);
    EXPECT_EQ(Live().size(), nBefore - 1);
    ASSERT_TRUE(GetIntVar(L"GRIDMODE", nGrid));
    EXPECT_EQ(nGrid, 0); // not brought back
    // Without a 3D view before it, the plan view undoes one user step.
    host.Run({L"MARK"});
    EXPECT_EQ(Live().size(), nBefore);
    host.Run({L"TZ2DVIEW"});
    EXPECT_EQ(Live().size(), nBefore - 1);
}

TEST_F(PanelCommandsFixture, WithoutPanelsThe3dViewSaysSo) {
    Tz3dView();
    EXPECT_NE(host.m_strPrinted.find(L"当前图中不存在开孔面板实体！\n"), std::wstring::npos);
}

TEST_F(PanelCommandsFixture, DimHoleSnapsToTheEdgeAndSquaresUpOnTheDimLayer) {
    ASSERT_TRUE(SetDrawingScale(Db(), L"1:10"));
    AcDbObjectId idPanel = DrawPlacedPanel(); // x 30..130, y 40..100
    AcDbObjectId idCut = AddCutout(100, 60, 110, 70);
    // The panel picked 1.5 inside its right edge, the cutout by handle, the line at x 140.
    host.Feed({L"128.5,90", idCut.handle().text(), L"140,65"});
    DimHole();
    AcDbObjectId idLast = Live().back();
    AcDbDimension* pDim = nullptr;
    ASSERT_EQ(acdbOpenObject(pDim, idLast, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(pDim->layer(), L"DIM");
    EXPECT_NEAR(pDim->xLine1Point().x, 130.0, 1e-6); // snapped to the edge
    EXPECT_NEAR(pDim->xLine1Point().y, 65.0, 1e-6);  // level with the cutout's centre
    EXPECT_NEAR(pDim->xLine2Point().x, 105.0, 1e-6);
    pDim->close();
    EXPECT_FALSE(idPanel.isErased());
}

TEST_F(PanelCommandsFixture, ADoubleClickedEntityThatIsNoPanelEndsEditPanelWithoutAWord) {
    CSuiteDoubleClick broker;
    HOST_SERVICES services = GetHostServices();
    services.pDoubleClick = &broker;
    SetHostServices(services);
    AcDbObjectId idLine =
        AppendToModelSpace(*Db(), new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(5, 5, 0)));
    broker.Arm(idLine.handle().text());
    size_t nPrinted = host.m_strPrinted.size();
    EditPanel();
    EXPECT_EQ(view.m_strTitle, L"");               // no dialog
    EXPECT_EQ(host.m_strPrinted.size(), nPrinted); // no pick asked
    EXPECT_FALSE(idLine.isErased());
}

TEST_F(PanelCommandsFixture, SavedInThe3dViewTheDrawingKeepsTheCutPanelAndNoUndoAfterReopening) {
    CEditorHost& ed = host.m_editor;
    AddPanelCommands();
    ed.AddCommand(L"CUTOUT", [this] {
        AddCutout(40, 50, 50, 60);
        return RTNORM;
    });
    host.Run({L"DRAWPANEL", L"~30,40", L"", L"CUTOUT", L"MARK", L"TZ3DVIEW"});
    double dCut = Volume(FindPanel());
    ASSERT_NEAR(dCut, 1200 - 100 * 0.2, 1e-6);
    std::wstring strPath = dir / L"cut.dwg";
    ASSERT_EQ(Db()->saveAs(strPath.c_str()), Acad::eOk);
    ASSERT_TRUE(ed.m_docs.CloseDocument(ed.m_docs.Current()));
    ASSERT_NE(ed.m_docs.OpenDocument(strPath), nullptr);
    EXPECT_NEAR(Volume(FindPanel()), dCut, 1e-6);
    host.Run({L"UNDO", L""}); // the group died with the document: nothing to take back
    EXPECT_NEAR(Volume(FindPanel()), dCut, 1e-6);
}
