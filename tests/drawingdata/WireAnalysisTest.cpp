// Equipotential sets (gaps, T joints, corners, crossings, dots, layers, frames, pruning) and the
// inner symbols found through them.
#include "drawingdata/EqualLineArray.h"
#include "drawingdata/InnerSymbArray.h"
#include "drawingdata/RecordKeys.h"
#include "drawingdata/SymbolReader.h"

#include "SchematicBuilder.h"
#include "TestHost.h"
#include "base/FileSystem.h"
#include "settings/DataTables.h"
#include "shared/fileops/FileOps.h"

#include <gtest/gtest.h>
#include <map>
#include <random>

namespace {

struct WireDrawing : ::testing::Test {
    // Settings of a suite that draws wires on the layer "CONNECT" only.
    WireDrawing() {
        ResetDataTableCaches();
        host.m_strInstall = dir.Path();
        FsCreateDirectory(dir / L"LocalData");
        WriteTextFile(dir / L"LocalData\\awork.sys", L"软件当前版本: 0\n");
        b.Symbol(L"P", {{L"1", 0, 0}}, 2, 2);
    }
    // A named wire; bTerminals puts a one-terminal symbol on each end.
    AcDbObjectId W(const std::wstring& name, double x0, double y0, double x1, double y1,
                   bool bTerminals = false, const std::wstring& layer = L"CONNECT") {
        AcDbObjectId id = b.Wire(x0, y0, x1, y1, layer);
        names[id] = name;
        if (bTerminals) {
            b.Insert(L"P", x0, y0);
            b.Insert(L"P", x1, y1);
        }
        return id;
    }
    std::wstring Sets(bool bNameUnnamed = false) {
        CEqualLineInfoArray sets;
        GetEqualLines(&db, sets, bNameUnnamed);
        std::wstring s;
        for (const COneEqualLineInfo* p : sets) {
            for (AcDbObjectId id : p->lineIds)
                s += names[id];
            for (const std::wstring& n : p->names)
                s += L"=" + n;
            s += L" ";
        }
        return s;
    }
    CTempDir dir;
    CTestHost host;
    AcDbDatabase db;
    CSchematicBuilder b{db};
    std::map<AcDbObjectId, std::wstring> names;
};

} // namespace

TEST_F(WireDrawing, GapsJointsAndCrossings) {
    W(L"a", 0, 0, 10, 0, true);
    W(L"b", 10.4, 0, 20, 0, true); // gap 0.4: connected
    W(L"c", 0, 10, 10, 10, true);
    W(L"d", 10.6, 10, 20, 10, true); // gap 0.6: apart
    W(L"e", 0, 20, 20, 20, true);
    W(L"f", 10, 20, 10, 30, true); // T joint
    W(L"g", 0, 40, 20, 40, true);
    W(L"h", 10, 35, 10, 45, true); // crossing without a dot
    W(L"i", 0, 50, 20, 50, true);
    W(L"j", 10, 45.5, 10, 55, true);
    b.JunctionDot(10.15, 50.1); // within 0.25 of the crossing
    W(L"k", 0, 60, 20, 60, true);
    W(L"l", 10, 55.5, 10, 65, true);
    b.JunctionDot(11, 60); // on k only
    W(L"m", 0, 70, 10, 70, true);
    W(L"n", 10, 70, 10, 80, true); // corner
    EXPECT_EQ(Sets(), L"ab c d ef g h ij k l mn ");
}

TEST_F(WireDrawing, OnlyWiresOfTheSchematicTakePart) {
    W(L"a", 0, 0, 10, 0, true);
    W(L"x", 0, 0, 10, 10);                 // oblique
    W(L"y", 10, 0, 10, 10, false, L"MXB"); // drawing lines
    W(L"z", 10, 0, 10, -10, false, L"0");  // not a wire layer
    W(L"p", 100, 0, 110, 0);               // touches no terminal
    W(L"q", 10, 0, 20, 0);                 // reaches a terminal through a
    b.BoardFrame(200, 0, 5, 2, 30, 20);    // corner (195, -2), 30 wide, 20 down
    W(L"r", 195, -3, 224, -3, true);       // inside the frame, on terminals
    W(L"s", 195, -3, 226, -3, true);       // one end outside
    AcDbObjectId named = W(L"t", 0, 100, 10, 100, true);
    b.WireName(named, L" 101 ");
    EXPECT_EQ(Sets(), L"aq s t=101 ");
    EXPECT_EQ(Sets(true), L"aq=未定义1 s=未定义2 t=101 ");
    host.m_strVersion = L"2"; // this version draws wires on any layer
    EXPECT_EQ(Sets(), L"azq s t=101 ");
}

TEST_F(WireDrawing, LongChainsNeedNoDeepRecursion) {
    W(L"a", 0, 0, 1, 0, true);
    for (int i = 1; i < 100000; ++i)
        b.Wire(i, 0, i + 1, 0);
    CEqualLineInfoArray sets;
    GetEqualLines(&db, sets, false);
    ASSERT_EQ(sets.size(), 1u);
    EXPECT_EQ(sets[0]->lineIds.size(), 100000u);
    CStringArray handles; // merging the chain's runs must not go over all pairs either
    GetInnerSymbolHandles(&db, handles);
    EXPECT_TRUE(handles.empty());
}

TEST_F(WireDrawing, InnerSymbolsAreReachedFromNoWireTerminals) {
    b.Symbol(L"DEV", {{L"1", 0, 0}, {L"2", 0, 10}, {L"3", 0, 20}}, 4, 20);
    b.Symbol(L"R", {{L"1", 0, 0}, {L"2", 10, 0}}, 10, 2);
    AcDbObjectId dev = b.Insert(L"DEV", 0, 0);
    b.Tag(dev, TZ_SYMB2_NoLineTerm, 1000, L"1");
    AcDbObjectId r1 = b.Insert(L"R", 20, 0), r2 = b.Insert(L"R", 40, 0);
    AcDbObjectId outer = b.Insert(L"R", 20, 10);
    AcDbObjectId plug = b.Insert(L"R", 20, 20);
    b.Tag(plug, TZ_SYMB2_NoLineTerm, 1000, L"2");
    b.Wire(0, 0, 20, 0);   // DEV:1 (no wire) - r1
    b.Wire(30, 0, 40, 0);  // r1 - r2
    b.Wire(0, 10, 20, 10); // DEV:2 - outer
    b.Wire(0, 20, 20, 20); // DEV:3 - plug, whose own no-wire terminal is on the far side
    b.Wire(30, 20, 40, 20);

    CStringArray handles;
    GetInnerSymbolHandles(&db, handles);
    std::sort(handles.begin(), handles.end());
    handles.erase(std::unique(handles.begin(), handles.end()), handles.end());
    CStringArray expected = {r1.handle().text(), r2.handle().text()};
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(handles, expected);
    (void)outer;
}

TEST_F(WireDrawing, ReadsTheWiresOfADrawingMadeByAnotherWriter) {
    AcDbDatabase file(false, true);
    ASSERT_TRUE(ReadFixtureDrawing(file, "drawingdata/ezdxf_schematic.dxf"));
    CEqualLineInfoArray sets;
    GetEqualLines(&file, sets, true);
    std::wstring s;
    for (const COneEqualLineInfo* p : sets)
        s += std::to_wstring(p->lineIds.size()) + p->names[0] + L" ";
    EXPECT_EQ(s, L"2未定义1 1未定义2 2101 "); // the crossing without a dot and the board stay out

    CStringArray handles;
    GetInnerSymbolHandles(&file, handles);
    CStringArray labels;
    for (const std::wstring& h : handles) {
        AcDbEntity* pEnt = nullptr;
        ASSERT_EQ(acdbOpenObject(pEnt, IdOfHandle(&file, h), AcDb::kForRead), Acad::eOk);
        std::wstring label, textHandle;
        GetSymbolLabel(&file, pEnt, label, textHandle);
        pEnt->close();
        labels.push_back(label);
    }
    EXPECT_EQ(labels, (CStringArray{L"R2", L"R2", L"HL1"}));
}

// The sets as a plain recursive flood over all pairs would make them.
void FloodAllPairs(CEqualLineArray& a, size_t n, std::vector<char>& marked,
                   AcDbObjectIdArray& out) {
    if (marked[n])
        return;
    marked[n] = 1;
    out.push_back(a.lines[n]->lineId);
    for (size_t m = 0; m < a.lines.size(); ++m)
        if (m != n && !marked[m] && a.AreConnected(*a.lines[n], *a.lines[m]))
            FloodAllPairs(a, m, marked, out);
}

TEST_F(WireDrawing, IndexedSetsEqualThoseOfAllPairs) {
    std::mt19937 rand(7);
    auto coord = [&] { return (rand() % 400) / 4.0; }; // quarters: gaps of 0.25 and 0.5 occur
    for (int i = 0; i < 600; ++i) {
        double x = coord(), y = coord(), len = 1.0 + rand() % 12;
        if (rand() % 2)
            b.Wire(x, y, x + len, y);
        else
            b.Wire(x, y, x, y + len);
        if (i % 10 == 0)
            b.Insert(L"P", x, y);
        if (i % 7 == 0)
            b.JunctionDot(coord(), coord());
    }
    CEqualLineArray lines(&db);
    ASSERT_GT(lines.lines.size(), 100u);
    CEqualLineInfoArray sets;
    lines.BuildEqualLines(sets);
    std::vector<char> pending(lines.lines.size(), 1);
    size_t nSet = 0;
    for (size_t first = 0; first < pending.size(); ++first) {
        if (!pending[first])
            continue;
        std::vector<char> marked(pending.size(), 0);
        AcDbObjectIdArray expected;
        FloodAllPairs(lines, first, marked, expected);
        for (size_t n = 0; n < marked.size(); ++n)
            pending[n] = pending[n] && !marked[n];
        ASSERT_LT(nSet, sets.size());
        EXPECT_EQ(sets[nSet++]->lineIds, expected);
    }
    EXPECT_EQ(nSet, sets.size());
}
