// The editor on real geometry: a panel cut by twenty cutouts in one subtract, saving and loading
// fifty cut panels, a slide of a 10,000-entity drawing, undo of a 10,000-entity group.
#include "dxf/DxfCodec.h"
#include "editor/EditorHost.h"
#include "solid/OcctModeler.h"

#include "base/FileSystem.h"
#include "base/Format.h"

#include "QuietUi.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdlib>

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

AcDbObjectId LastEntity(AcDbDatabase* pDb) {
    AcDbObjectId id;
    acdbWithObject<AcDbBlockTableRecord>(
        pDb->modelSpaceId(), [&](const AcDbBlockTableRecord& b) { id = b.entities().back(); });
    return id;
}

// A 600 x 800 x 2 panel at (x0, 0) and its twenty cutouts, ten round and ten square.
std::vector<std::wstring> PanelWords(CEditorHost& ed, double x0) {
    ed.Command({L"BOX", Format(L"%g,0", x0), L"L", L"600", L"800", L"-2"});
    std::vector<std::wstring> words{L"_subtract", LastEntity(ed.Db()).handle().text(), L""};
    for (int i = 0; i < 10; ++i) {
        AcDbObjectId circle =
            Append(ed.Db(), new AcDbCircle(AcGePoint3d(x0 + 40 + 55 * i, 100, 1), 8));
        ed.Command({L"_extrude", circle.handle().text(), L"", L"-5"});
        words.push_back(LastEntity(ed.Db()).handle().text());
        ed.Command({L"BOX", Format(L"%g,400", x0 + 30 + 55 * i), L"L", L"20", L"30", L"-6"});
        words.push_back(LastEntity(ed.Db()).handle().text());
    }
    words.push_back(L"");
    return words;
}

void BM_SubtractTwentyCutouts(benchmark::State& state) {
    CQuietUi ui;
    for (auto _ : state) {
        state.PauseTiming();
        CEditorHost ed(ui);
        ed.m_docs.NewDocument();
        std::vector<std::wstring> words = PanelWords(ed, 0);
        state.ResumeTiming();
        if (ed.Command(words) != RTNORM)
            state.SkipWithError("subtract failed");
    }
}
BENCHMARK(BM_SubtractTwentyCutouts)->Unit(benchmark::kMillisecond)->Iterations(5);

std::wstring TempPath(const wchar_t* pName) {
    return FsGetTempDirectory() + pName;
}

void BM_SaveLoadFiftyCutPanels(benchmark::State& state) {
    CQuietUi ui;
    CEditorHost ed(ui);
    acdbSetFileCodec(&GetDxfCodec());
    ed.m_docs.NewDocument();
    for (int i = 0; i < 50; ++i)
        ed.Command(PanelWords(ed, i * 700.0));
    std::wstring strPath = TempPath(L"qm_editor_bench_panels.dwg");
    for (auto _ : state) {
        ed.Db()->saveAs(strPath.c_str());
        AcDbDatabase copy(false, true);
        if (copy.readDwgFile(strPath.c_str()) != Acad::eOk)
            state.SkipWithError("load failed");
    }
    FsDeleteFile(strPath);
}
BENCHMARK(BM_SaveLoadFiftyCutPanels)->Unit(benchmark::kMillisecond)->Iterations(3);

// 10,000 lines, circles and texts on a grid.
void FillTenThousand(AcDbDatabase* pDb) {
    AcDbBlockTableRecord* pSpace = nullptr;
    acdbOpenObject(pSpace, pDb->modelSpaceId(), AcDb::kForWrite);
    for (int i = 0; i < 10000; ++i) {
        double x = (i % 100) * 10.0, y = (i / 100) * 10.0;
        AcDbEntity* pEnt = nullptr;
        if (i % 3 == 0) {
            pEnt = new AcDbLine({x, y, 0}, {x + 8, y + 8, 0});
        } else if (i % 3 == 1) {
            pEnt = new AcDbCircle({x + 5, y + 5, 0}, 3);
        } else {
            auto* pText = new AcDbText;
            pText->setTextString(L"K1");
            pText->setPosition({x, y, 0});
            pEnt = pText;
        }
        pSpace->appendAcDbEntity(pEnt);
        pEnt->close();
    }
    pSpace->close();
}

void BM_SlideOfTenThousandEntities(benchmark::State& state) {
    CQuietUi ui;
    CEditorHost ed(ui);
    ed.m_docs.NewDocument();
    FillTenThousand(ed.Db());
    ed.Command({L"ZOOM", L"E"});
    std::wstring strPath = TempPath(L"qm_editor_bench.sld");
    for (auto _ : state)
        ed.Command({L"MSLIDE", strPath});
    FsDeleteFile(strPath);
}
BENCHMARK(BM_SlideOfTenThousandEntities)->Unit(benchmark::kMillisecond);

void BM_UndoTenThousandEntityGroup(benchmark::State& state) {
    CQuietUi ui;
    CEditorHost ed(ui);
    ed.m_docs.NewDocument();
    for (auto _ : state) {
        state.PauseTiming();
        ed.Command({L"UNDO", L"BE"});
        ed.m_commands.AddNative(L"FILLBENCH", [&] { FillTenThousand(ed.Db()); });
        ed.Command({L"FILLBENCH"});
        ed.Command({L"UNDO", L"E"});
        state.ResumeTiming();
        ed.Command({L"UNDO", L""});
    }
}
BENCHMARK(BM_UndoTenThousandEntityGroup)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
