// What a read reports: the file's version and the entities kept without a model, by type.
#include "dxf/DxfReader.h"

#include <gtest/gtest.h>

namespace {

// A file as old writers make it: no handles, no tables, entities straight away.
std::string R12(const std::string& entities) {
    return "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\nAC1009\n  0\nENDSEC\n"
           "  0\nSECTION\n  2\nENTITIES\n" +
           entities + "  0\nENDSEC\n  0\nEOF\n";
}

size_t ModelSpaceCount(AcDbDatabase& db) {
    AcDbBlockTableRecord* pSpace = nullptr;
    if (acdbOpenObject(pSpace, db.modelSpaceId(), AcDb::kForRead) != Acad::eOk)
        return 0;
    size_t n = pSpace->entities().size();
    pSpace->close();
    return n;
}

} // namespace

TEST(DxfReadReport, OldFilesReadAndUnknownEntitiesAreCountedByType) {
    std::string entities = "  0\nLINE\n  8\n0\n 10\n0\n 20\n0\n 11\n1\n 21\n1\n"
                           "  0\nSHAPE\n  8\n0\n  2\nBOX\n"
                           "  0\nSHAPE\n  8\n0\n  2\nBOX\n"
                           "  0\nTRACE\n  8\n0\n";
    AcDbDatabase db(false, true);
    DXF_READ_REPORT report;
    ASSERT_EQ(ReadDxf(db, R12(entities), &report), Acad::eOk);
    EXPECT_EQ(report.strVersion, "AC1009");
    EXPECT_EQ(report.UnknownEntityCount(), 3);
    EXPECT_EQ(report.unknownEntities["SHAPE"], 2);
    EXPECT_EQ(report.unknownEntities["TRACE"], 1);
    EXPECT_EQ(ModelSpaceCount(db), 4u); // kept, not dropped

    // A second read starts its report afresh.
    AcDbDatabase again(false, true);
    ASSERT_EQ(ReadDxf(again, R12("  0\nLINE\n  8\n0\n"), &report), Acad::eOk);
    EXPECT_EQ(report.UnknownEntityCount(), 0);
}
