// The database's undo journal: a step puts back modified, erased and new objects exactly.
#include "DbBuilders.h"
#include "DbDump.h"

#include "host/db/AcDb.h"

#include <gtest/gtest.h>

TEST(UndoJournal, AStepPutsBackChangedErasedAndNewObjectsAndTableRecords) {
    AcDbDatabase db;
    AcDbObjectId lineId = AppendToModelSpace(db, new AcDbLine({0, 0, 0}, {1, 0, 0}));
    AcDbObjectId circleId = AppendToModelSpace(db, new AcDbCircle({0, 0, 0}, 2));
    std::string before = DumpDatabase(db);
    AcDbUndoJournal journal(db);
    journal.mark();
    AcDbLine* pLine = nullptr;
    ASSERT_EQ(acdbOpenObject(pLine, lineId, AcDb::kForWrite), Acad::eOk);
    pLine->setEndPoint({5, 5, 0});
    pLine->setLayer(L"0");
    pLine->close();
    AcDbCircle* pCircle = nullptr;
    ASSERT_EQ(acdbOpenObject(pCircle, circleId, AcDb::kForWrite), Acad::eOk);
    pCircle->erase();
    pCircle->close();
    AcDbObjectId newId = AppendToModelSpace(db, new AcDbLine({9, 9, 0}, {8, 8, 0}));
    AcDbLayerTable* pLayers = nullptr;
    db.getLayerTable(pLayers, AcDb::kForWrite);
    auto* pLayer = new AcDbLayerTableRecord;
    pLayer->setName(L"新图层");
    pLayers->add(pLayer);
    pLayer->close();
    pLayers->close();
    EXPECT_FALSE(journal.lastStepIsEmpty());
    ASSERT_NE(DumpDatabase(db), before);

    ASSERT_TRUE(journal.undoStep());
    EXPECT_EQ(DumpDatabase(db), before);
    EXPECT_FALSE(newId.isValid()); // the new line is gone; its handle stays used
    EXPECT_GT(db.handseed().value(), newId.handle().value());
    EXPECT_FALSE(journal.undoStep());
}

TEST(UndoJournal, OnlyTheFirstWriteOfAStepIsKeptAndLaterStepsGoFirst) {
    AcDbDatabase db;
    AcDbObjectId id = AppendToModelSpace(db, new AcDbCircle({0, 0, 0}, 1));
    AcDbUndoJournal journal(db);
    auto setRadius = [&](double r) {
        AcDbCircle* p = nullptr;
        acdbOpenObject(p, id, AcDb::kForWrite);
        p->setRadius(r);
        p->close();
    };
    auto radius = [&] {
        double r = 0;
        acdbWithObject<AcDbCircle>(id, [&](const AcDbCircle& c) { r = c.radius(); });
        return r;
    };
    journal.mark();
    setRadius(2);
    setRadius(3);
    journal.mark();
    setRadius(4);
    ASSERT_TRUE(journal.undoStep());
    EXPECT_EQ(radius(), 3);
    ASSERT_TRUE(journal.undoStep());
    EXPECT_EQ(radius(), 1);
}
