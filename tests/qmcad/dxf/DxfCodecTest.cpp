// Drawing files through the DXF codec: exact round trips, code pages, refused and broken files.
#include "dxf/DxfCodec.h"
#include "dxf/DxfEntityIo.h"

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
        "0\nSECTION\n2\nHEADER\n9\n$ACADVER\n1\nAC1021\nENDSEC\n0\nENDSEC\n"
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
    EXPECT_EQ(pBack->textString(), L"端子一");
    EXPECT_EQ(pBack->ownerId(), back.modelSpaceId()); // no owner group: model space
    pBack->close();
    EXPECT_TRUE(back.clayer().isValid());
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

TEST(DxfSolidText, ScramblingIsReversibleAndMatchesAutoCads) {
    // "A" gains a space; letters mirror within A..^; others flip with 0x5F.
    EXPECT_EQ(EncodeSatLine("A 1_@"), std::string("^  n@_"));
    std::string line = "400 0 1 0 @33 Standard ACIS Text $-1 #";
    EXPECT_EQ(DecodeSatLine(EncodeSatLine(line)), line);
}
