// Part records following symbols into the current drawing and into a new library drawing.
#include "drawingdata/ProcessXdictInfo.h"
#include "drawingdata/PartTables.h"
#include "drawingdata/RecordKeys.h"
#include "drawingdata/Records.h"

#include "SchematicBuilder.h"
#include "TestHost.h"

#include <gtest/gtest.h>
#include <map>

namespace {

// Every part record as "number:location/label/name/note", by number.
std::wstring PartRecords(AcDbDatabase& db) {
    AcDbDictionary* pNod = nullptr;
    db.getNamedObjectsDictionary(pNod, AcDb::kForRead);
    AcDbDictionary* pDict = nullptr;
    pNod->getAt(TZ_DICITIONARY_PART2DATABASE, pDict, AcDb::kForRead);
    pNod->close();
    std::map<int, std::wstring> records;
    if (!pDict)
        return L"";
    for (AcDbDictionaryIterator* it = pDict->newIterator(); it; it = nullptr) {
        for (; !it->done(); it->next()) {
            AcDbXrecord* pRec = nullptr;
            it->getObject(pRec, AcDb::kForRead);
            CStringArray v;
            StringsFromChain(pRec->chain(), v);
            pRec->close();
            records[std::stoi(it->name().substr(20))] =
                v[1] + L"/" + v[3] + L"/" + v[15] + L"/" + v[11];
        }
        delete it;
    }
    pDict->close();
    std::wstring s;
    for (const auto& [n, text] : records)
        s += std::to_wstring(n) + L":" + text + L" ";
    return s;
}

struct HandOver : ::testing::Test {
    HandOver() {
        src.Symbol(L"K", {{L"13", 0, 0}, {L"14", 10, 0}});
        dst.Symbol(L"K", {{L"13", 0, 0}, {L"14", 10, 0}});
    }
    AcDbObjectId Symbol(CSchematicBuilder& b, const std::wstring& label, double y,
                        const std::wstring& location = L"") {
        AcDbObjectId id = b.Insert(L"K", 0, y);
        b.Label(id, label);
        if (!location.empty())
            b.Location(id, location);
        return id;
    }
    CTestHost host;
    AcDbDatabase source, target;
    CSchematicBuilder src{source}, dst{target};
};

} // namespace

TEST_F(HandOver, InsertionCopiesUsedPartsTheTargetDoesNotKnow) {
    src.DrawingLocation(L"+S");
    Symbol(src, L"KM1:13", 0);
    Symbol(src, L"KA1,2", 10);
    Symbol(src, L"QF1", 20, L"XX");
    Symbol(src, L"HL1", 30);
    Symbol(src, L"FU1", 40);
    src.Part(L"", L"KM1", L"接触器")
        .Part(L"", L"KA1", L"继电器1")
        .Part(L"+S", L"KA2", L"继电器2")
        .Part(L"", L"SB9", L"按钮") // no symbol uses it
        .Part(L"XX", L"QF1", L"断路器")
        .Part(L"", L"HL1", L"新灯")
        .Part(L"", L"FU1", L"熔断器", L"RT18");
    dst.DrawingLocation(L"XX").Part(L"", L"HL1", L"旧灯").Part(L"", L"FU1", L"", L"", L"备注");

    CProcessXdictInfo info;
    info.sourceDb = &source;
    info.sourcePath = L"C:\\Lib\\a.dwg";
    info.targetPath = L"C:\\Work\\b.dwg";
    info.targetSaved = 1;
    acdbHostApplicationServices()->setWorkingDatabase(&target);
    info.ProcessInsertedDrawing(); // no target: nothing
    EXPECT_EQ(PartRecords(target), L"1:/HL1/旧灯/ 2:/FU1//备注 ");
    info.targetDb = &target;
    info.ProcessInsertedDrawing();
    const wchar_t* expected = L"1:/HL1/旧灯/ 2:/FU1/熔断器/ 3:/KM1/接触器/ 4:/KA1/继电器1/ "
                              L"5:/KA2/继电器2/ 6:/QF1/断路器/ ";
    EXPECT_EQ(PartRecords(target), expected);
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), &target);
    info.ProcessInsertedDrawing(); // a second insertion writes nothing more
    EXPECT_EQ(PartRecords(target), expected);

    AcDbDatabase bare;
    info.sourceDb = &bare;
    info.ProcessInsertedDrawing();
    EXPECT_EQ(PartRecords(target), expected);
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
}

TEST_F(HandOver, BranchesGroupByDeviceAndMarkInnerSymbols) {
    src.Symbol(L"R", {{L"1", 0, 0}, {L"2", 10, 0}});
    AcDbObjectId dev = Symbol(src, L"1-KM1:13", 0, L"+A");
    src.Tag(dev, TZ_SYMB2_NoLineTerm, 1000, L"13");
    AcDbObjectId r = src.Insert(L"R", 20, 0, 1.5712);
    src.Label(r, L"KM1:A");
    src.Wire(0, 0, 20, 0);
    CPartBranchArray branches;
    CGetPartInfo info;
    EXPECT_EQ(info.CollectPartBranches(nullptr, L"", 0, L"", branches), 0);
    EXPECT_EQ(info.CollectPartBranches(&source, L"a.dwg", 1, L"+S", branches), 1);
    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), nullptr);
    ASSERT_EQ(branches.size(), 2u);
    EXPECT_EQ(branches[0]->location + L"|" + branches[0]->label, L"+A|1-KM1");
    const COnePartBranch& b0 = *branches[0]->branches[0];
    EXPECT_EQ(b0.fullLabel + L"|" + b0.separator + L"|" + b0.terminal, L"1-KM1:13|:|13");
    EXPECT_EQ(b0.terminals.size(), 2u);
    EXPECT_EQ(b0.special, L"");
    const COnePartBranch& b1 = *branches[1]->branches[0];
    EXPECT_EQ(branches[1]->location + L"|" + branches[1]->label, L"+S|KM1");
    EXPECT_EQ(b1.special, L"内部元件");
    EXPECT_EQ(b1.rotation, 90);
    EXPECT_EQ(b1.path + b1.drawingLocation, L"a.dwg+S");
}

TEST_F(HandOver, WrittenDrawingTakesTheSelectedSymbolsRecords) {
    dst.DrawingLocation(L"+W").Part(L"", L"KM1", L"接触器").Part(L"+A", L"KM2", L"中间");
    dst.Part(L"+A", L"KM3", L"未选");
    AcDbObjectId lost = Symbol(dst, L"KM1:13", 0); // no location text: the drawing's own
    AcDbObjectId other = Symbol(dst, L"KM2", 10, L"+A");
    Symbol(dst, L"KM3", 20, L"+A");
    CProcessXdictInfo info;
    info.sourceDb = &source;
    info.targetDb = &target;
    info.entities = {lost, other, AcDbObjectId::kNull, lost};
    info.ProcessWrittenDrawing();
    EXPECT_EQ(PartRecords(source), L"1:/KM1/接触器/ 2:+A/KM2/中间/ ");
}

TEST_F(HandOver, InsertionFromADrawingMadeByAnotherWriter) {
    AcDbDatabase library(false, true);
    ASSERT_TRUE(ReadFixtureDrawing(library, "drawingdata/ezdxf_library.dxf"));
    dst.DrawingLocation(L"+T");
    CProcessXdictInfo info;
    info.sourceDb = &library;
    info.targetDb = &target;
    info.ProcessInsertedDrawing();
    EXPECT_EQ(PartRecords(target), L"1:/KM1/接触器/ 2:+B/QF1/断路器/ 3:/X1/端子排/ ");
}
