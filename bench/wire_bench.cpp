// Wire analysis on generated schematics: equipotential sets and inner symbols for 1,000 to
// 16,000 wire lines, about one symbol per three lines.
#include "drawingdata/EqualLineArray.h"
#include "drawingdata/InnerSymbArray.h"
#include "drawingdata/RecordKeys.h"
#include "drawingdata/Records.h"
#include "host/db/AcDb.h"

#include <benchmark/benchmark.h>
#include <memory>

namespace {

// Appends and closes the entity.
AcDbObjectId Append(AcDbObjectId block, AcDbEntity* pEnt) {
    AcDbBlockTableRecord* pRec = nullptr;
    acdbOpenObject(pRec, block, AcDb::kForWrite);
    AcDbObjectId id;
    pRec->appendAcDbEntity(id, pEnt);
    pEnt->close();
    pRec->close();
    return id;
}

void Tag(AcDbDatabase& db, AcDbObjectId id, const wchar_t* app, const std::wstring& value) {
    AcDbObject* p = nullptr;
    acdbOpenObject(p, id, AcDb::kForWrite);
    SetXDataValue(&db, p, app, 1000, value);
    p->close();
}

AcDbObjectId MakeResistorBlock(AcDbDatabase& db) {
    AcDbBlockTable* pTable = nullptr;
    db.getBlockTable(pTable, AcDb::kForWrite);
    auto* pRec = new AcDbBlockTableRecord;
    pRec->setName(L"R");
    AcDbObjectId block;
    pTable->add(block, pRec);
    pRec->close();
    pTable->close();
    Append(block, new AcDbLine(AcGePoint3d(0, -1, 0), AcGePoint3d(10, 1, 0)));
    for (double x : {0.0, 10.0}) {
        auto* pDot = new AcDbPolyline;
        pDot->addVertexAt(0, AcGePoint2d(x - 0.5, 0), 1.0);
        pDot->addVertexAt(1, AcGePoint2d(x + 0.5, 0), 1.0);
        pDot->setClosed(true);
        AcDbObjectId id = Append(block, pDot);
        Tag(db, id, TZ_SYMB1LIB_TERMPOINT, x == 0 ? L"1" : L"2");
    }
    return block;
}

AcDbObjectId Wire(AcDbDatabase& db, double x0, double y0, double x1, double y1) {
    auto* p = new AcDbLine(AcGePoint3d(x0, y0, 0), AcGePoint3d(x1, y1, 0));
    p->setLayer(L"CONNECT");
    return Append(db.modelSpaceId(), p);
}

// Rungs of eight symbols between a vertical bus and T-branched wires; every
// third rung starts at a terminal that takes no wire.
std::unique_ptr<AcDbDatabase> MakeSchematic(int nLines) {
    auto pDb = std::make_unique<AcDbDatabase>();
    AcDbDatabase& db = *pDb;
    AcDbObjectId block = MakeResistorBlock(db);
    int nMade = 0;
    for (int r = 0; nMade < nLines; ++r) {
        double y = r * 10.0;
        nMade += 2;
        Wire(db, 0, y, 0, y + 10);
        Wire(db, 0, y, 5, y);
        for (int k = 0; k < 8; ++k) {
            auto* pRef = new AcDbBlockReference(AcGePoint3d(20 * k + 5, y, 0), block);
            AcDbObjectId ref = Append(db.modelSpaceId(), pRef);
            Tag(db, ref, TZ_SYMB2_LABEL, L"");
            if (k == 0 && r % 3 == 0)
                Tag(db, ref, TZ_SYMB2_NoLineTerm, L"1");
            if (k == 7)
                break;
            double x = 20 * k + 20;
            Wire(db, x - 5, y, x, y);
            Wire(db, x, y, x + 5, y);
            Wire(db, x, y, x, y - 3);
            nMade += 3;
        }
    }
    return pDb;
}

void BM_GetEqualLines(benchmark::State& state) {
    std::unique_ptr<AcDbDatabase> pDb = MakeSchematic(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        CEqualLineInfoArray sets;
        GetEqualLines(pDb.get(), sets, true);
        benchmark::DoNotOptimize(sets.size());
    }
    state.SetComplexityN(state.range(0));
}

void BM_GetInnerSymbolHandles(benchmark::State& state) {
    std::unique_ptr<AcDbDatabase> pDb = MakeSchematic(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        CStringArray handles;
        GetInnerSymbolHandles(pDb.get(), handles);
        benchmark::DoNotOptimize(handles.size());
    }
    state.SetComplexityN(state.range(0));
}

} // namespace

BENCHMARK(BM_GetEqualLines)
    ->Arg(1000)
    ->Arg(4000)
    ->Arg(16000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();
BENCHMARK(BM_GetInnerSymbolHandles)
    ->Arg(1000)
    ->Arg(4000)
    ->Arg(16000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();
BENCHMARK_MAIN();
