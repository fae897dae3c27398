// Command-line side of the DWG oracle: opens a DWG through the host's codec and reports what it
// read as JSON, or inserts it into a new drawing and saves that.
#include "dwg/DwgCodec.h"

#include "DbBuilders.h"
#include "TestHost.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstring>

namespace {

std::string Point(const AcGePoint3d& p) {
    char buf[128];
    std::snprintf(buf, sizeof buf, "[%.17g,%.17g,%.17g]", p.x, p.y, p.z);
    return buf;
}

std::string Quoted(const std::wstring& s) {
    std::string out = "\"";
    for (char c : WideToUtf8(s)) {
        if (c == '"' || c == '\\')
            out += '\\';
        out += c;
    }
    return out + "\"";
}

// Entities per block (layouts included), by name.
std::string BlockCounts(AcDbDatabase& db) {
    AcDbBlockTable* pTable = nullptr;
    if (db.getBlockTable(pTable, AcDb::kForRead) != Acad::eOk)
        return "{}";
    AcDbSymbolTableIterator* pIt = nullptr;
    pTable->newIterator(pIt);
    std::string out = "{";
    for (; !pIt->done(); pIt->step()) {
        AcDbBlockTableRecord* pRec = nullptr;
        if (pIt->getRecord(pRec, AcDb::kForRead) != Acad::eOk)
            continue;
        out += (out.size() > 1 ? "," : "") + Quoted(pRec->name()) + ":" +
               std::to_string(pRec->entities().size());
        pRec->close();
    }
    delete pIt;
    pTable->close();
    return out + "}";
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    if (argc < 4)
        return 2;
    CTestHost host; // the codec's notes go to stderr at the end
    CDwgWorker::OPTIONS opt = DwgWorkerOptionsFromEnv();
    opt.nTimeoutMs = 120000;
    CDwgCodec codec(opt, argv[2]);
    acdbSetFileCodec(&codec);
    std::wstring path = FromOsPath(argv[3]);
    AcDbDatabase db(false, true);
    Acad::ErrorStatus es = db.readDwgFile(path.c_str());
    std::fputs(WideToUtf8(host.m_strPrinted).c_str(), stderr);
    if (es != Acad::eOk)
        return 1;
    if (std::strcmp(argv[1], "read") == 0) {
        std::string dwg = ReadBytes(path);
        std::printf("{\"dxf\":\"%s\",\"version\":\"%s\",\"extmin\":%s,\"extmax\":%s,"
                    "\"unknown\":%d,\"blocks\":%s}\n",
                    codec.Cache().PathOf(CDwgCache::Key(dwg)).c_str(),
                    codec.LastReport().strVersion.c_str(), Point(db.extmin()).c_str(),
                    Point(db.extmax()).c_str(), codec.LastReport().UnknownEntityCount(),
                    BlockCounts(db).c_str());
        return 0;
    }
    if (std::strcmp(argv[1], "insert") == 0 && argc == 5) {
        AcDbDatabase target;
        AcDbObjectId blockId;
        if (target.insert(blockId, L"SAMPLE", &db) != Acad::eOk)
            return 1;
        AppendToModelSpace(target, new AcDbBlockReference(AcGePoint3d(10, 20, 0), blockId));
        return target.saveAs(FromOsPath(argv[4]).c_str()) == Acad::eOk ? 0 : 1;
    }
    return 2;
}
