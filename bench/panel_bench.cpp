// The panel designer's heavy moments: the cut 3D view and the plan back on 4 panels of 50 cutouts
// each, and the workshop export of that drawing.
#include "dxf/DxfCodec.h"
#include "editor/EditorHost.h"
#include "host/HostServices.h"
#include "panel/PanelCommands.h"
#include "panel/PanelRecord.h"
#include "solid/OcctModeler.h"
#include "solid/PanelExport.h"

#include "base/FileSystem.h"
#include "base/SysPath.h"

#include "QuietUi.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <cwchar>

namespace {

AcDbObjectId Append(AcDbDatabase* pDb, AcDbEntity* pEnt) {
    AcDbBlockTableRecord* pSpace = nullptr;
    acdbOpenObject(pSpace, pDb->modelSpaceId(), AcDb::kForWrite);
    AcDbObjectId id;
    pSpace->appendAcDbEntity(id, pEnt);
    pEnt->close();
    pSpace->close();
    return id;
}

AcDbObjectId AddSolid(AcDbDatabase* pDb, std::vector<std::string> body) {
    auto* pSolid = new AcDb3dSolid();
    pSolid->setBody(std::move(body));
    return Append(pDb, pSolid);
}

// A 600 x 800 x 2 panel at x0 with 25 round and 25 square cutouts, made straight in the
// database so that no undo step of the set-up lies before the views.
void AddPanel(AcDbDatabase* pDb, double x0) {
    COcctModeler& kernel = GetOcctModeler();
    std::vector<std::string> body;
    kernel.MakeBox(600, 800, 2, body);
    kernel.Transform(body, AcGeMatrix3d::translation(AcGeVector3d(x0 + 300, 400, -1)));
    AcDbObjectId idPanel = AddSolid(pDb, body);
    AcDbEntity* pPanel = nullptr;
    acdbOpenObject(pPanel, idPanel, AcDb::kForWrite);
    WritePanelRecord(pDb, pPanel, 600, 800, 2, PANEL_PARTS());
    pPanel->close();
    for (int i = 0; i < 50; ++i) {
        double x = x0 + 50 + (i % 10) * 55, y = 80 + (i / 10) * 150;
        if (i % 2 == 0) {
            PROFILE_SEGMENT circle;
            circle.a = circle.b = AcGePoint3d(x + 10, y, -5);
            circle.bArc = true;
            circle.centre = AcGePoint3d(x, y, -5);
            kernel.Extrude({circle}, 10, body);
        } else {
            kernel.MakeBox(20, 30, 10, body);
            kernel.Transform(body, AcGeMatrix3d::translation(AcGeVector3d(x, y, 0)));
        }
        AddSolid(pDb, body);
    }
}

void Setup(CEditorHost& ed) {
    acdbSetFileCodec(&GetDxfCodec());
    SetHostServices(ed.Services());
    ed.m_docs.NewDocument();
    ed.AddCommand(L"TZ3DVIEW", [] {
        Tz3dView();
        return RTNORM;
    });
    ed.AddCommand(L"TZ2DVIEW", [] {
        Tz2dView();
        return RTNORM;
    });
    for (int i = 0; i < 4; ++i)
        AddPanel(ed.Db(), i * 700.0);
}

void BM_ThreeDViewThenPlanOfFourPanelsOfFiftyCutouts(benchmark::State& state) {
    CQuietUi ui;
    CEditorHost ed(ui);
    Setup(ed);
    for (auto _ : state) {
        ed.Command({L"TZ3DVIEW"});
        ed.Command({L"TZ2DVIEW"});
    }
}
BENCHMARK(BM_ThreeDViewThenPlanOfFourPanelsOfFiftyCutouts)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);

void BM_ExportFourPanelsOfFiftyCutouts(benchmark::State& state) {
    CQuietUi ui;
    CEditorHost ed(ui);
    Setup(ed);
    std::string strDir = ToOsPath(FsGetTempDirectory()) + "qm_panel_bench";
    FsCreateDirectory(FromOsPath(strDir));
    for (auto _ : state) {
        std::vector<std::wstring> lines;
        if (ExportPanels(*ed.Db(), strDir, lines) != 4)
            state.SkipWithError("export failed");
    }
}
BENCHMARK(BM_ExportFourPanelsOfFiftyCutouts)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

BENCHMARK_MAIN();
