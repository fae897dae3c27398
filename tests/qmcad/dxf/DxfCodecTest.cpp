// Drawing files through the DXF codec: exact round trips, code pages, refused and broken files.
#include "dxf/DxfCodec.h"
#include "dxf/DxfEntityIo.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"

#include "DbBuilders.h"
#include "DbDump.h"
#include "SampleDrawing.h"
#include "TestHost.h"

#include <gtest/gtest.h>

namespace {

struct CodecFixture : ::testing::Test {
    CodecFixture() { acdbSetFileCodec(&GetDxfCodec()); }
    ~CodecFixture() override { acdbSetFileCodec(nullptr); }
    CTempDir m_dir;
};

using DxfCodec = CodecFixture;

} // namespace

TEST_F(DxfCodec, EverythingSurvivesSaveAndLoadWithItsHandles) {
    AcDbDatabase db;
    BuildSampleDrawing(db);
    std::wstring path = m_dir / L"样例.dwg";
    ASSERT_EQ(db.saveAs(path.c_str()), Acad::eOk);
    AcDbDatabase back(false, true);
    ASSERT_EQ(back.readDwgFile(path.c_str()), Acad::eOk);
    EXPECT_EQ(DumpDatabase(back), DumpDatabase(db)); // every handle, owner and value
    EXPECT_GE(back.handseed().value(), db.handseed().value());
    std::vector<uint8_t> thumb;
    ASSERT_TRUE(acdbGetPreviewBitmapFromDwg(path.c_str(), thumb));
    EXPECT_EQ(thumb, db.thumbnailBitmap());

    // A second generation is byte for byte the first: nothing drifts.
    std::wstring again = m_dir / L"again.dwg";
    ASSERT_EQ(back.saveAs(again.c_str()), Acad::eOk);
    EXPECT_TRUE(ReadBytes(again) == ReadBytes(path));
    // New objects never take a handle the file used.
    AcDbObjectId id = AppendToModelSpace(back, new AcDbLine);
    EXPECT_GE(id.handle().value(), db.handseed().value());
}

TEST_F(DxfCodec, TextsFollowTheFilesCodePage) {
    AcDbDatabase db;
    auto* pText = new AcDbText;
    pText->setTextString(L"接触器 ∮ 한");
    AppendToModelSpace(db, pText);
    std::wstring path = m_dir / L"gbk.dwg";
    ASSERT_EQ(db.saveAs(path.c_str()), Acad::eOk);
    std::string bytes = ReadBytes(path);
    EXPECT_NE(bytes.find("ANSI_936"), std::string::npos);
    EXPECT_NE(bytes.find("\xBD\xD3\xB4\xA5\xC6\xF7"), std::string::npos); // 接触器 in GBK
    EXPECT_NE(bytes.find("\\U+D55C"), std::string::npos);                 // not in GBK

    // A UTF-8 file of a later version and an escape in a code-page file.
    WriteBytes(
        m_dir / L"utf8.dxf",
        "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1021\n9\n$DWGCODEPAGE\n3\nANSI_1252\n"
        "ENDSEC\n0\nENDSEC\n"
        "0\nSECTION\n2\nENTITIES\n0\nTEXT\n5\n2A\n8\n0\n1\n端子\\U+4E00\n0\nENDSEC\n0\nEOF\n");
    std::string fixed = ReadBytes(m_dir / L"utf8.dxf");
    fixed.replace(fixed.find("ENDSEC\n0\nENDSEC"), 15, "0\nENDSEC"); // header ends once
    WriteBytes(m_dir / L"utf8.dxf", fixed);
    AcDbDatabase back(false, true);
    ASSERT_EQ(back.readDwgFile((m_dir / L"utf8.dxf").c_str()), Acad::eOk);
    AcDbObjectId textId;
    back.getAcDbObjectId(textId, false, AcDbHandle(0x2Au));
    AcDbText* pBack = nullptr;
    ASSERT_EQ(acdbOpenObject(pBack, textId, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(pBack->textString(), L"端子一");        // UTF-8 whatever code page the file names
    EXPECT_EQ(pBack->ownerId(), back.modelSpaceId()); // no owner group: model space
    pBack->close();
    EXPECT_TRUE(back.clayer().isValid());
    EXPECT_EQ(back.codePage(), L"ANSI_936"); // saved again in the workstation's code page

    // A value is one line: line ends inside a text travel as blanks, and what
    // follows the text in the file is still read.
    AcDbDatabase lines;
    auto* pTwo = new AcDbText;
    pTwo->setTextString(L"上\n下\r\n末");
    AcDbObjectId twoId = AppendToModelSpace(lines, pTwo);
    AppendToModelSpace(lines, new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(5, 0, 0)));
    std::wstring linesPath = m_dir / L"lines.dwg";
    ASSERT_EQ(lines.saveAs(linesPath.c_str()), Acad::eOk);
    AcDbDatabase linesBack(false, true);
    ASSERT_EQ(linesBack.readDwgFile(linesPath.c_str()), Acad::eOk);
    AcDbObjectId backId;
    linesBack.getAcDbObjectId(backId, false, twoId.handle());
    ASSERT_EQ(acdbOpenObject(pBack, backId, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(pBack->textString(), L"上 下  末");
    pBack->close();
    AcDbBlockTableRecord* pMs = nullptr;
    ASSERT_EQ(acdbOpenObject(pMs, linesBack.modelSpaceId(), AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(pMs->entities().size(), 2u);
    pMs->close();
}

TEST_F(DxfCodec, BinaryBrokenAndMissingFilesAreRefusedPlainly) {
    AcDbDatabase db(false, true);
    WriteBytes(m_dir / L"real.dwg", std::string("AC1015\0\0\0\0\0\x01", 12));
    EXPECT_EQ(db.readDwgFile((m_dir / L"real.dwg").c_str()), Acad::eBinaryDwgNotSupported);
    EXPECT_EQ(db.readDwgFile((m_dir / L"none.dwg").c_str()), Acad::eFileNotFound);

    AcDbDatabase sample;
    BuildSampleDrawing(sample);
    std::wstring path = m_dir / L"s.dwg";
    ASSERT_EQ(sample.saveAs(path.c_str()), Acad::eOk);
    std::string whole = ReadBytes(path);
    for (size_t cut :
         {size_t(0), size_t(7), whole.size() / 3, whole.size() / 2, whole.size() - 4}) {
        WriteBytes(m_dir / L"cut.dwg", whole.substr(0, cut));
        AcDbDatabase part(false, true);
        EXPECT_EQ(part.readDwgFile((m_dir / L"cut.dwg").c_str()), Acad::eBadDxfFile) << cut;
        EXPECT_TRUE(part.modelSpaceId().isNull());
    }
    WriteBytes(m_dir / L"junk.dwg", "hello\nworld\n");
    EXPECT_EQ(db.readDwgFile((m_dir / L"junk.dwg").c_str()), Acad::eBadDxfFile);
    acdbSetFileCodec(nullptr);
    EXPECT_EQ(sample.saveAs(path.c_str()), Acad::eNoFileCodec);
}

namespace {

AcDbObjectId BlockId(AcDbDatabase& db, const std::wstring& strName) {
    AcDbBlockTable* pTable = nullptr;
    AcDbObjectId id;
    if (db.getBlockTable(pTable, AcDb::kForRead) == Acad::eOk) {
        pTable->getAt(strName, id);
        pTable->close();
    }
    return id;
}

AcDbObjectId InsertOf(AcDbDatabase& db, const std::wstring& strInto, const std::wstring& strBlock) {
    auto* pRef = new AcDbBlockReference;
    pRef->setBlockTableRecord(BlockId(db, strBlock));
    return strInto.empty() ? AppendToModelSpace(db, pRef) : AppendToBlock(db, strInto, pRef);
}

AcDbObjectId AddDictionary(AcDbDatabase& db, AcDbObjectId ownerId) {
    AcDbObjectId id;
    auto* pDict = new AcDbDictionary;
    db.addAcDbObject(id, pDict);
    pDict->setOwnerId(ownerId);
    pDict->close();
    return id;
}

void AddEntry(AcDbObjectId dictId, const std::wstring& strKey, AcDbObjectId id) {
    static_cast<AcDbDictionary*>(dictId.stub()->pObject)->appendRaw(strKey, id);
}

// A drawing as damaged files arrive: blocks inside themselves (directly and
// through another block), a dictionary holding itself, a dictionary entry
// naming a symbol table, and one extension dictionary shared by many lines
// whose dictionaries each hold the next one twice.
std::string DamagedDrawing() {
    AcDbDatabase db;
    AppendToBlock(db, L"A", new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 1, 0)));
    InsertOf(db, L"A", L"A");
    AppendToBlock(db, L"B", new AcDbLine);
    AppendToBlock(db, L"C", new AcDbLine);
    InsertOf(db, L"B", L"C");
    InsertOf(db, L"C", L"B");
    InsertOf(db, L"", L"A");
    InsertOf(db, L"", L"B");
    AcDbObjectId nod = db.namedObjectsDictionaryId();
    AcDbObjectId loop = AddDictionary(db, nod);
    AddEntry(nod, L"LOOP", loop);
    AddEntry(loop, L"SELF", loop);
    AddEntry(nod, L"TABLE", db.layerTableId());
    AcDbObjectId shared = AddDictionary(db, nod);
    AcDbObjectId level = shared;
    for (int i = 0; i < 40; ++i) {
        AcDbObjectId next = AddDictionary(db, level);
        AddEntry(level, L"L", next);
        AddEntry(level, L"R", next);
        level = next;
    }
    for (int i = 0; i < 20; ++i) {
        AcDbObjectId line = AppendToModelSpace(db, new AcDbLine);
        line.stub()->pObject->setExtensionDictionaryRaw(shared);
    }
    std::string out;
    WriteDxf(db, out);
    return out;
}

} // namespace

TEST_F(DxfCodec, CyclesInADamagedDrawingAreRefusedAtLoadAndCopiesStayBounded) {
    std::string damaged = DamagedDrawing();
    AcDbDatabase db(false, true);
    DXF_READ_REPORT report;
    ASSERT_EQ(ReadDxf(db, damaged, &report), Acad::eOk);
    EXPECT_EQ(report.nRefusedReferences, 4);
    DumpDatabase(db);
    WriteBytes(m_dir / L"damaged.dwg", damaged);
    AcDbDatabase opened(false, true); // through the codec, which says what it let go of
    EXPECT_EQ(opened.readDwgFile((m_dir / L"damaged.dwg").c_str()), Acad::eOk);

    // The repaired drawing saves, and its next generation is the same.
    std::string first, second;
    WriteDxf(db, first);
    AcDbDatabase again(false, true);
    DXF_READ_REPORT clean;
    ASSERT_EQ(ReadDxf(again, first, &clean), Acad::eOk);
    EXPECT_EQ(clean.nRefusedReferences, 0);
    WriteDxf(again, second);
    EXPECT_TRUE(first == second);

    // Copies take each object once: no blow-up, no overflow.
    AcDbDatabase* pOut = nullptr;
    ASSERT_EQ(db.wblock(pOut), Acad::eOk);
    std::string copy;
    WriteDxf(*pOut, copy);
    EXPECT_LT(copy.size(), 2 * first.size());
    AcDbDatabase target;
    AcDbObjectId blockId;
    EXPECT_EQ(target.insert(blockId, L"COPY", pOut, true), Acad::eOk);
    delete pOut;
    AcDbBlockTableRecord* pMs = nullptr;
    ASSERT_EQ(acdbOpenObject(pMs, db.modelSpaceId(), AcDb::kForRead), Acad::eOk);
    for (AcDbObjectId id : pMs->entities()) {
        AcDbExtents ext;
        if (auto* pRef = dynamic_cast<AcDbBlockReference*>(id.stub()->pObject))
            pRef->getGeomExtents(ext);
    }
    pMs->close();
}

TEST_F(DxfCodec, OutOfRangeEnumeratedValuesReadAsTheDefaultAndAreCounted) {
    AcDbDatabase db;
    auto* pText = new AcDbText;
    pText->setTextString(L"KM1");
    pText->setHorizontalMode(AcDb::kTextCenter);
    AppendToModelSpace(db, pText);
    auto* pMText = new AcDbMText;
    pMText->setContents(L"a");
    pMText->setAttachment(AcDbMText::kMiddleCenter);
    AppendToModelSpace(db, pMText);
    std::string data;
    WriteDxf(db, data);
    auto replace = [&](const std::string& from, const std::string& to) {
        size_t at = data.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        data.replace(at, from.size(), to);
    };
    replace("\n 72\n1\n", "\n 72\n77\n");
    replace("\n 71\n5\n", "\n 71\n-2147483648\n");
    replace("\nAcDbText\n", "\nAcDbText\n 62\n300\n370\n9999\n"); // colour, line weight
    AcDbDatabase back(false, true);
    DXF_READ_REPORT report;
    ASSERT_EQ(ReadDxf(back, data, &report), Acad::eOk);
    EXPECT_EQ(report.nOutOfRange, 4);
    std::string out;
    WriteDxf(back, out);
    EXPECT_EQ(out.find("\n 72\n77\n"), std::string::npos); // left, the default, isn't written
    EXPECT_NE(out.find("\n 71\n1\n"), std::string::npos);
}

TEST(DxfSolidText, ScramblingIsReversibleAndMatchesAutoCads) {
    // "A" gains a space; letters mirror within A..^; others flip with 0x5F.
    EXPECT_EQ(EncodeSatLine("A 1_@"), std::string("^  n@_"));
    std::string line = "400 0 1 0 @33 Standard ACIS Text $-1 #";
    EXPECT_EQ(DecodeSatLine(EncodeSatLine(line)), line);
}
