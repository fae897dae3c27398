// Symbol kinds, linked texts, terminal reading and order, orientation.
#include "drawingdata/SymbolReader.h"
#include "drawingdata/RecordKeys.h"
#include "drawingdata/Records.h"
#include "drawingdata/SymbolTerminals.h"

#include "DbBuilders.h"
#include "SchematicBuilder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

namespace {

template <class T = AcDbBlockReference> struct COpened {
    explicit COpened(AcDbObjectId id) { acdbOpenObject(p, id, AcDb::kForRead); }
    ~COpened() {
        if (p)
            p->close();
    }
    T* operator->() const { return p; }
    T* p = nullptr;
};

std::wstring Names(const CSymbTermInfoArray& infos) {
    std::wstring s;
    for (const auto& i : infos)
        s += i.name + L"=" + i.text + L";";
    return s;
}

struct SymbolDrawing : ::testing::Test {
    CTestHost host;
    AcDbDatabase db;
    CSchematicBuilder b{db};
};

} // namespace

TEST_F(SymbolDrawing, KindsAreTestedInOrder) {
    b.Symbol(L"K", {{L"1", 0, 2}});
    std::wstring anon = b.Symbol(L"*U", {{L"1", 0, 2}});
    AcDbObjectId second = b.Insert(L"K", 0, 0);
    AcDbObjectId plain = b.Insert(L"K", 20, 0, 0, false);
    AcDbObjectId first = b.Insert(L"K", 40, 0, 0, false);
    b.Tag(first, TZ_SYMB1_CODE, 1000);
    AcDbObjectId firstAndSecond = b.Insert(L"K", 40, 0);
    b.Tag(firstAndSecond, TZ_SYMB1_NAME, 1000);
    AcDbObjectId multi = b.Insert(anon, 60, 0, 0, false);
    b.Tag(multi, TZ_SYMB2_MULTI, 1000, L"端子排").Tag(multi, TZ_SYMB2_PART2LIB, 1000, L"R");
    AcDbObjectId relay = b.Insert(anon, 80, 0, 0, false);
    b.Tag(relay, TZ_SYMB2_PART2LIB, 1000, L"中间继电器");
    AcDbObjectId anonLabelled = b.Insert(anon, 100, 0); // the label is not looked at
    b.Symbol(L"FLAT", {}, 10, 0);
    AcDbObjectId flat = b.Insert(L"FLAT", 0, 50);
    AcDbObjectId line = b.Wire(0, 0, 1, 1);

    int expected[] = {3, 4, 2, 3, 5, 6, 7, 1, 0};
    AcDbObjectId ids[] = {second,       plain, first, firstAndSecond, multi, relay,
                          anonLabelled, flat,  line};
    for (int i = 0; i < 9; ++i)
        EXPECT_EQ(ClassifySymbol(COpened<AcDbEntity>(ids[i]).p), expected[i]) << i;

    std::wstring name, kind;
    EXPECT_EQ(GetSymbolNameAndKind(COpened(multi).p, name, kind), 1);
    EXPECT_EQ(name + kind, L"端子排多端元件");
    EXPECT_EQ(GetSymbolNameAndKind(COpened(relay).p, name, kind), 1);
    EXPECT_EQ(name + kind, L"中间继电器继电元件");
    EXPECT_EQ(GetSymbolNameAndKind(COpened(second).p, name, kind), 1);
    EXPECT_EQ(name + kind, L"K二次符号");
    EXPECT_EQ(GetSymbolNameAndKind(COpened(plain).p, name, kind), 0);
    EXPECT_EQ(name + kind, L"K普通图块");
    EXPECT_EQ(GetSymbolNameAndKind(COpened(anonLabelled).p, name, kind), 0);
    EXPECT_EQ(kind, L"无名块");
    EXPECT_EQ(GetSymbolNameAndKind(COpened<AcDbEntity>(line).p, name, kind), 0);
    EXPECT_EQ(name + kind, L"");
}

TEST_F(SymbolDrawing, LabelsAndLocationsCountOnlyWhenLinkedBothWays) {
    b.Symbol(L"K", {{L"1", 0, 2}});
    AcDbObjectId a = b.Insert(L"K", 0, 0), c = b.Insert(L"K", 20, 0);
    AcDbObjectId text =
        b.LinkedText(a, L"{\\fSimSun; KM1：13 }", TZ_SYMB2_LABEL, TZ_SYMB2_LABEL, true);
    b.Tag(text, TZ_SYMB2_LABEL, 1005, c.handle().text(), true); // valid for both blocks
    b.Tag(c, TZ_SYMB2_LABEL, 1005, text.handle().text());
    b.Location(a, L"+A1");
    AcDbObjectId d = b.Insert(L"K", 40, 0);
    AcDbObjectId copied = b.Label(d, L"KM9");
    b.Tag(copied, TZ_SYMB2_LABEL, 1005, a.handle().text()); // back link names another block
    AcDbObjectId wrongBack = b.LinkedText(d, L"+B", TZ_SYMB2_location, TZ_SYMB2_location);

    std::wstring label, handle, loc;
    EXPECT_EQ(GetSymbolLabel(&db, COpened(a).p, label, handle), 1);
    EXPECT_EQ(label, L"KM1:13");
    EXPECT_EQ(handle, text.handle().text());
    GetSymbolLabel(&db, COpened(c).p, label, handle);
    EXPECT_EQ(label, L"KM1:13");
    EXPECT_EQ(GetSymbolLabel(&db, COpened(d).p, label, handle), 1);
    EXPECT_EQ(label + handle, L"");
    EXPECT_EQ(GetSymbolLabel(&db, COpened<AcDbEntity>(wrongBack).p, label, handle), 0);

    EXPECT_EQ(GetSymbolLocation(&db, COpened(a).p, L"+Z", loc), 1);
    EXPECT_EQ(loc, L"+A1");
    GetSymbolLocation(&db, COpened(d).p, L"+Z", loc); // the text carries the forward key only
    EXPECT_EQ(loc, L"+Z");
    b.Location(c, L"");
    GetSymbolLocation(&db, COpened(c).p, L"+Z", loc);
    EXPECT_EQ(loc, L"+Z");

    b.Tag(a, TZ_SYMB2_SPECIAL, 1000, SPECIAL_INTERNAL_COMPONENT).Tag(a, TZ_SYMB2_MAIN, 1000);
    b.Tag(c, TZ_SYMB2_SPECIAL, 1000, L"内部元件 ");
    EXPECT_TRUE(IsInternalComponent(COpened(a).p));
    EXPECT_FALSE(IsInternalComponent(COpened(c).p));
    EXPECT_TRUE(IsMainSymbol(COpened(a).p));
    EXPECT_FALSE(IsMainSymbol(COpened(c).p));
}

TEST_F(SymbolDrawing, TerminalsSortDigitsByValueThenOthers) {
    b.Symbol(L"T", {{L"10", 0, 0},
                    {L"2", 2, 0},
                    {L"A", 4, 0},
                    {L"1", 6, 0},
                    {L"3", 8, 0},
                    {L"3", 10, 0},
                    {L"B:1", 12, 0},
                    {L"B", 14, 0}});
    b.TerminalByText(L"T", L"0", 16, 0);
    AcDbObjectId ref = b.Insert(L"T", 100, 50);
    CSymbTermInfoArray infos;
    ASSERT_EQ(GetSymbolTerminals(&db, COpened(ref).p, infos), 1);
    EXPECT_EQ(Names(infos), L"0=;1=;2=;3=;3=;10=;A=;B=;B-1=;");
    EXPECT_DOUBLE_EQ(infos[3].point.x, 108); // reading order kept for equal names
    EXPECT_DOUBLE_EQ(infos[3].point.y, 50);
    EXPECT_EQ(infos[0].index, -1);
}

TEST_F(SymbolDrawing, TerminalTextsFollowTheTwoWayLinkAndKindsFiveAndSixShowNames) {
    std::wstring anon = b.Symbol(L"*U", {{L"1", 0, 0}, {L"2", 4, 0}});
    AcDbObjectId ref = b.Insert(anon, 0, 0, 0, false), other = b.Insert(anon, 0, 20, 0, false);
    b.Tag(ref, TZ_SYMB2_MULTI, 1000, L"M");
    AcDbObjectId good = b.LinkedText(ref, L"X1", L"TZ_SYMB2_TERM_TEXT_1", L"TZ_SYMB2_TERM_TEXT_1");
    b.Tag(ref, L"TZ_SYMB2_TERM_TEXT_1", 1000, L"1", true);
    b.Tag(ref, L"TZ_SYMB2_TERM_TEXT_1", 1005, good.handle().text(), true);
    AcDbObjectId copied =
        b.LinkedText(other, L"X2", L"TZ_SYMB2_TERM_TEXT_2", L"TZ_SYMB2_TERM_TEXT_2");
    b.Tag(ref, L"TZ_SYMB2_TERM_TEXT_2", 1000, L"2")
        .Tag(ref, L"TZ_SYMB2_TERM_TEXT_2", 1005, copied.handle().text(), true);
    AcDbObjectId beyond =
        b.LinkedText(ref, L"X3", L"TZ_SYMB2_TERM_TEXT_3", L"TZ_SYMB2_TERM_TEXT_3");
    b.Tag(ref, L"TZ_SYMB2_TERM_TEXT_3", 1000, L"2", true);
    b.Tag(ref, L"TZ_SYMB2_GreatElectricTerm_2", 1000, L"1")
        .Tag(ref, L"TZ_SYMB2_GreatElectricTerm_2", 1000, L"2", true);
    (void)beyond;

    CSymbTermInfoArray infos;
    ASSERT_EQ(GetSymbolTerminals(&db, COpened(ref).p, infos), 1);
    EXPECT_EQ(Names(infos), L"1=X1;2=2;"); // the copied text names another block
    EXPECT_EQ(infos[0].textHandle, good.handle().text());
    EXPECT_EQ(infos[0].isGreatElectric + 2 * infos[1].isGreatElectric, 2); // the last one counts
    int mode = 7;
    EXPECT_EQ(GetTwoTerminalMode(&db, COpened(ref).p, mode), 0); // texts are not empty
    EXPECT_EQ(mode, 0);
}

TEST_F(SymbolDrawing, TwoTerminalModeAndOrientation) {
    b.Symbol(L"R", {{L"1", 0, 2}, {L"2", 10, 2}});
    b.Symbol(L"ONE", {{L"1", 5, 4}}, 10, 4);
    b.Symbol(L"TALL", {}, 10, 201);
    b.Symbol(L"SLIM", {}, 2, 8);
    AcDbObjectId r = b.Insert(L"R", 0, 0), rev = b.Insert(L"R", 0, 10, 1.5715);
    b.Tag(rev, TZ_SYMB_REVERSE, 1000);
    AcDbObjectId skew = b.Insert(L"R", 0, 20, 3.1415926 / 4);
    AcDbObjectId one = b.Insert(L"ONE", 50, 0), tall = b.Insert(L"TALL", 80, 0);
    AcDbObjectId slim = b.Insert(L"SLIM", 100, 0);

    int mode = 0;
    EXPECT_EQ(GetTwoTerminalMode(&db, COpened(r).p, mode), 1);
    EXPECT_EQ(mode, 1);
    EXPECT_EQ(GetTwoTerminalMode(&db, COpened(rev).p, mode), 1);
    EXPECT_EQ(mode, 2);
    EXPECT_EQ(GetTwoTerminalMode(&db, COpened(skew).p, mode), 0);

    acdbHostApplicationServices()->setWorkingDatabase(&db);
    EXPECT_EQ(GetSymbolOrientation(COpened(skew).p), 0);
    EXPECT_EQ(GetSymbolOrientation(COpened(r).p), 0);   // two terminals, no direction
    EXPECT_EQ(GetSymbolOrientation(COpened(one).p), 2); // terminal above the centre
    EXPECT_FALSE(IsSymbolUpright(COpened(tall).p));
    EXPECT_TRUE(IsSymbolUpright(COpened(slim).p));

    resbuf* p = ChainFromStrings({L"推荐名称", L"x", L"方向", L"垂直"});
    WriteNamedXrecord(&db, TZ_SYMB1LIB_DICITIONARY, TZ_SYMB1LIB_XRECORD, p);
    acutRelRb(p);
    EXPECT_EQ(GetSymbolOrientation(COpened(r).p), 2);
    EXPECT_EQ(GetSymbolOrientation(COpened(rev).p), 1); // 1.5715 counts as 90 degrees
    EXPECT_TRUE(IsSymbolUpright(COpened(r).p));
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
}

TEST(SymbolReader, ClassifySegmentAllowsFivePercent) {
    auto seg = [](double dx, double dy) {
        return ClassifySegment(AcGePoint3d(1, 1, 0), AcGePoint3d(1 + dx, 1 + dy, 0));
    };
    EXPECT_EQ(seg(0, 0), 1);
    EXPECT_EQ(seg(10, 0), 0);
    EXPECT_EQ(seg(0, -10), 1);
    EXPECT_EQ(seg(-10, 0.49), 0);
    EXPECT_EQ(seg(10, 0.5), 2);
    EXPECT_EQ(seg(0.49, 10), 1);
    EXPECT_EQ(seg(10, 10), 2);
}

TEST(SymbolReader, ReadsTheSymbolsOfADrawingMadeByAnotherWriter) {
    CTestHost host;
    AcDbDatabase db(false, true);
    ASSERT_TRUE(ReadFixtureDrawing(db, "drawingdata/ezdxf_library.dxf"));
    std::wstring out;
    AcDbBlockTableRecord* pMs = nullptr;
    ASSERT_EQ(acdbOpenObject(pMs, db.modelSpaceId(), AcDb::kForRead), Acad::eOk);
    for (AcDbObjectId id : pMs->entities()) {
        COpened<AcDbEntity> ent(id);
        auto* pRef = dynamic_cast<AcDbBlockReference*>(ent.p);
        if (!pRef)
            continue;
        std::wstring name, kind, label, handle, loc;
        GetSymbolNameAndKind(pRef, name, kind);
        GetSymbolLabel(&db, pRef, label, handle);
        GetSymbolLocation(&db, pRef, L"-", loc);
        CSymbTermInfoArray infos;
        GetSymbolTerminals(&db, pRef, infos);
        out += name + L"|" + kind + L"|" + label + L"|" + loc + L"|" + Names(infos) + L"\n";
        if (label == L"KM1:A1") { // turned by 90 degrees about its insertion point
            EXPECT_NEAR(infos[1].point.x, -2, 1e-9);
            EXPECT_NEAR(infos[1].point.y, 10, 1e-9);
        }
    }
    pMs->close();
    EXPECT_EQ(out, L"KM_COIL|二次符号|KM1:A1|-|A1=;A2=;\n"
                   L"KM_COIL|二次符号|QF1|+B|A1=;A2=;\n"
                   L"端子排|多端元件|X1|-|1=1;2=2;10=10;A=PE;\n");
}
