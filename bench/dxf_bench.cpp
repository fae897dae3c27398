// Load and save of a 100,000-entity drawing with extended data, against python3-ezdxf on the same
// file.
#include "dxf/DxfCodec.h"
#include "host/db/AcDb.h"

#include "base/SysPath.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <malloc.h>
#include <string>

namespace {

constexpr int kEntities = 100000;

double Seconds(std::chrono::steady_clock::time_point t0) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - t0).count();
}

// Bytes the allocator has handed out and not taken back.
long AllocatedBytes() {
    return static_cast<long>(mallinfo2().uordblks);
}

void Register(AcDbDatabase& db, const wchar_t* app) {
    AcDbRegAppTable* pApps = nullptr;
    db.getRegAppTable(pApps, AcDb::kForWrite);
    auto* pRec = new AcDbRegAppTableRecord;
    pRec->setName(app);
    pApps->add(pRec);
    pRec->close();
    pApps->close();
}

// Lines, dots, texts and block references, every one with two applications of extended data.
void Generate(const std::wstring& path) {
    AcDbDatabase db;
    Register(db, L"TZ_SYMB2_LABEL");
    Register(db, L"TZ_SYMB2_SPECIAL");
    AcDbBlockTable* pBlocks = nullptr;
    db.getBlockTable(pBlocks, AcDb::kForWrite);
    auto* pSym = new AcDbBlockTableRecord;
    pSym->setName(L"SYM");
    AcDbObjectId symId;
    pBlocks->add(symId, pSym);
    auto* pCircle = new AcDbCircle(AcGePoint3d(), 2);
    pSym->appendAcDbEntity(pCircle);
    pCircle->close();
    pSym->close();
    pBlocks->close();
    AcDbBlockTableRecord* pMs = nullptr;
    acdbOpenObject(pMs, db.modelSpaceId(), AcDb::kForWrite);
    AcDbHandle last;
    for (int i = 0; i < kEntities; ++i) {
        double x = i % 1000, y = i / 1000;
        AcDbEntity* pEnt = nullptr;
        switch (i % 5) {
        case 0:
        case 1:
            pEnt = new AcDbLine(AcGePoint3d(x, y, 0), AcGePoint3d(x + 1, y + 0.5, 0));
            break;
        case 2: {
            auto* pPl = new AcDbPolyline;
            pPl->addVertexAt(0, AcGePoint2d(x - 0.5, y), 1.0, 2.0, 2.0);
            pPl->addVertexAt(1, AcGePoint2d(x + 0.5, y), 1.0, 2.0, 2.0);
            pPl->setClosed(true);
            pEnt = pPl;
            break;
        }
        case 3: {
            auto* pText = new AcDbText;
            pText->setPosition(AcGePoint3d(x, y, 0));
            pText->setTextString(L"端子 X" + std::to_wstring(i));
            pEnt = pText;
            break;
        }
        default:
            pEnt = new AcDbBlockReference(AcGePoint3d(x, y, 0), symId);
            break;
        }
        AcDbObjectId id;
        pMs->appendAcDbEntity(id, pEnt);
        resbuf* x1 = acutNewStringRb(1001, L"TZ_SYMB2_LABEL");
        x1->rbnext = acutNewStringRb(1005, last.isNull() ? L"0" : last.text());
        x1->rbnext->rbnext = acutNewStringRb(1001, L"TZ_SYMB2_SPECIAL");
        x1->rbnext->rbnext->rbnext = acutNewStringRb(1000, L"内部元件");
        x1->rbnext->rbnext->rbnext->rbnext = acutNewRealRb(1040, i * 0.5);
        pEnt->setXData(x1);
        acutRelRb(x1);
        last = id.handle();
        pEnt->close();
    }
    pMs->close();
    db.saveAs(path.c_str());
}

} // namespace

int main() {
    acdbSetFileCodec(&GetDxfCodec());
    std::filesystem::path dir = std::filesystem::temp_directory_path() / "qm-dxf-bench";
    std::filesystem::create_directories(dir);
    std::string src = (dir / "big.dwg").string(), ours = (dir / "ours.dwg").string(),
                theirs = (dir / "ezdxf.dwg").string();
    Generate(FromOsPath(src));
    std::printf("file: %d entities with extended data, %.1f MB\n", kEntities,
                std::filesystem::file_size(src) / 1e6);

    long before = AllocatedBytes();
    auto t0 = std::chrono::steady_clock::now();
    auto* pDb = new AcDbDatabase(false, true);
    if (pDb->readDwgFile(FromOsPath(src).c_str()) != Acad::eOk) {
        std::printf("load failed\n");
        return 1;
    }
    double load = Seconds(t0);
    long after = AllocatedBytes();
    t0 = std::chrono::steady_clock::now();
    pDb->saveAs(FromOsPath(ours).c_str());
    double save = Seconds(t0);
    delete pDb;
    std::printf("qmcad: load %.3f s, save %.3f s, memory %.0f bytes per entity\n", load, save,
                double(after - before) / kEntities);

    std::string cmd = "/usr/bin/python3 -c \"import time, ezdxf; t = time.perf_counter(); "
                      "doc = ezdxf.readfile('" +
                      src + "'); t1 = time.perf_counter(); doc.saveas('" + theirs +
                      "'); t2 = time.perf_counter(); print(t1 - t, t2 - t1)\"";
    FILE* pipe = popen(cmd.c_str(), "r");
    double ezLoad = 0, ezSave = 0;
    if (!pipe || std::fscanf(pipe, "%lf %lf", &ezLoad, &ezSave) != 2) {
        std::printf("ezdxf did not run\n");
        return 1;
    }
    pclose(pipe);
    std::printf("ezdxf %s: load %.3f s, save %.3f s\n", "0.18", ezLoad, ezSave);
    std::printf("ratio (ezdxf / qmcad): load %.1fx, save %.1fx, both %.1fx\n", ezLoad / load,
                ezSave / save, (ezLoad + ezSave) / (load + save));
    std::filesystem::remove_all(dir);
    return 0;
}
