// Part table reading with its inheritance, look-up by file then by data, writing with merging.
#include "drawingdata/PartTables.h"
#include "drawingdata/RecordKeys.h"
#include "drawingdata/Records.h"

#include "DbBuilders.h"
#include "SchematicBuilder.h"
#include "TestHost.h"

#include <gtest/gtest.h>

namespace {

void AddRecord(AcDbDatabase& db, const std::wstring& name, const CStringArray& strings) {
    resbuf* p = ChainFromStrings(strings);
    WriteNamedXrecord(&db, TZ_DICITIONARY_PART2DATABASE, name, p);
    acutRelRb(p);
}

std::wstring Describe(const CPartBomArray& groups) {
    std::wstring s;
    for (const CPartBomDataBase* g : groups) {
        s += g->location + L"/" + g->label + L":";
        for (const COnePartBom* p : g->parts)
            s += L"[" + p->name + L"," + p->type + L"," + p->code + L"," + p->describe + L"," +
                 p->note + L"]";
        s += L" ";
    }
    return s;
}

CStringArray RecordStrings(AcDbDatabase& db, const std::wstring& name) {
    resbuf* p = nullptr;
    ReadNamedXrecord(&db, TZ_DICITIONARY_PART2DATABASE, name, p);
    CStringArray out;
    StringsFromChain(p, out);
    acutRelRb(p);
    return out;
}

} // namespace

TEST(PartTables, ReadWalksOneLongListWithItsInheritance) {
    CTestHost host;
    AcDbDatabase db;
    CGetPartInfo info;
    CPartBomArray groups;
    EXPECT_EQ(info.ReadPartTable(nullptr, L"a.dwg", 1, L"+A", groups), 0);
    EXPECT_EQ(info.ReadPartTable(&db, L"a.dwg", 1, L"+A", groups), 1);
    EXPECT_TRUE(groups.empty());

    CSchematicBuilder(db)
        .Part(L"", L"KM1", L"接触器", L"LC1", L"n1")
        .Part(L"+B", L"KM1", L"接触器2");
    AddRecord(db, L"TZ_XRECORD_ONEPART2_3", // old format, keys in any case
              {L"$location", L"", L"$LABEL", L"KA1", L"$CODE", L"C9", L"$NAME", L"继电器"});
    AddRecord(db, L"TZ_XRECORD_ONEPART2_4", {L"$LABEL", L"", L"$NAME", L"无标号"});
    // No location: the one before (+A), and the code of the record before.
    AddRecord(db, L"TZ_XRECORD_ONEPART2_5", {L"$LABEL", L"KM1", L"$NAME", L"again"});
    AddRecord(db, L"TZ_XRECORD_ONEPART2_6", {L"$LABEL", L"SB1", L"$TYPE", L"LA"}); // no $NAME
    ASSERT_EQ(info.ReadPartTable(&db, L"a.dwg", 1, L"+A", groups), 1);
    EXPECT_EQ(Describe(groups), L"+A/KM1:[接触器,LC1,,,n1][again,,C9,,] +B/KM1:[接触器2,,,,] "
                                L"+A/KA1:[继电器,,C9,,] ");
    EXPECT_EQ(groups[0]->parts[0]->path + groups[0]->parts[0]->drawingLocation, L"a.dwg+A");
}

TEST(PartTables, FindPartDataTakesThisFileFirstThenAnyPartWithData) {
    CPartBomArray groups;
    auto* g = groups.Add(new CPartBomDataBase);
    g->location = L"+A";
    g->label = L"KM1";
    auto add = [&](const wchar_t* path, int saved, const wchar_t* type, const wchar_t* note) {
        auto* p = g->parts.Add(new COnePartBom);
        p->path = path;
        p->saved = saved;
        p->type = type;
        p->note = note;
    };
    add(L"C:\\lib\\x.dwg", 1, L"", L"");
    add(L"C:\\other.dwg", 1, L"", L"only note");
    add(L"C:\\LIB\\X.DWG", 1, L"T-later", L"");
    std::wstring type = L"?", code = L"?", name = L"?", note = L"?", describe = L"?";
    FindPartData(L"+A", L"", L"", 1, groups, type, code, name, note, describe);
    EXPECT_EQ(type, L"?"); // an empty label does nothing
    FindPartData(L"+A", L"KM1", L"c:\\lib\\x.dwg", 1, groups, type, code, name, note, describe);
    EXPECT_EQ(type + L"|" + note, L"|only note"); // the empty exact part isn't searched past
    FindPartData(L"+A", L"KM1", L"c:\\lib\\x.dwg", 0, groups, type, code, name, note, describe);
    EXPECT_EQ(note, L"only note");
    g->parts[1]->note.clear();
    FindPartData(L"+A", L"KM1", L"elsewhere", 1, groups, type, code, name, note, describe);
    EXPECT_EQ(type, L"T-later");
    FindPartData(L"+a", L"KM1", L"elsewhere", 1, groups, type, code, name, note, describe);
    EXPECT_EQ(type + code + name + note + describe, L"");
}

TEST(PartTables, WriteMergesRecordsOfOneKeyUnderTheFirstName) {
    CTestHost host;
    AcDbDatabase db;
    CSchematicBuilder(db)
        .Part(L"", L"KM1", L"a")
        .Part(L"+B", L"KM1", L"b")
        .Part(L"+A", L"KM1", L"c");
    COnePartBom part;
    part.name = L"新";
    part.type = L"LC1";
    EXPECT_EQ(WritePartRecord(&db, L"+A", L"+A", L"", part), 0);
    CStringArray names;
    EXPECT_EQ(FindPartRecordNames(&db, L"+A", L"", L"KM1", names), 1);
    EXPECT_EQ(names, (CStringArray{L"TZ_XRECORD_ONEPART2_1", L"TZ_XRECORD_ONEPART2_3"}));

    EXPECT_EQ(WritePartRecord(&db, L"+A", L"+A", L"KM1", part), 1);
    EXPECT_EQ(
        RecordStrings(db, L"TZ_XRECORD_ONEPART2_1"),
        (CStringArray{L"$Location", L"", L"$LABEL", L"KM1", L"$DESCRIBE", L"", L"$TYPE", L"LC1",
                      L"$CODE", L"", L"$NOTE", L"", L"$LABELDIS", L"", L"$NAME", L"新"}));
    EXPECT_TRUE(RecordStrings(db, L"TZ_XRECORD_ONEPART2_3").empty());

    EXPECT_EQ(WritePartRecord(&db, L"+A", L"+C", L"KM2", part), 1); // fills the gap at 3
    EXPECT_EQ(RecordStrings(db, L"TZ_XRECORD_ONEPART2_3")[1], L"+C");
    std::wstring next;
    NewPartRecordName(&db, next);
    EXPECT_EQ(next, L"TZ_XRECORD_ONEPART2_4");
}
