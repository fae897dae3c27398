// Builders for drawing databases in tests.
#include "DbBuilders.h"

#include <gtest/gtest.h>

AcDbObjectId AppendToModelSpace(AcDbDatabase& db, AcDbEntity* pEnt) {
    AcDbBlockTableRecord* pMs = nullptr;
    EXPECT_EQ(acdbOpenObject(pMs, db.modelSpaceId(), AcDb::kForWrite), Acad::eOk);
    AcDbObjectId id;
    EXPECT_EQ(pMs->appendAcDbEntity(id, pEnt), Acad::eOk);
    pEnt->close();
    pMs->close();
    return id;
}

AcDbObjectId AppendToBlock(AcDbDatabase& db, const std::wstring& strBlock, AcDbEntity* pEnt) {
    AcDbBlockTable* pTable = nullptr;
    EXPECT_EQ(db.getBlockTable(pTable, AcDb::kForWrite), Acad::eOk);
    AcDbObjectId blockId;
    if (pTable->getAt(strBlock, blockId) != Acad::eOk) {
        auto* pRec = new AcDbBlockTableRecord;
        EXPECT_EQ(pRec->setName(strBlock), Acad::eOk);
        EXPECT_EQ(pTable->add(blockId, pRec), Acad::eOk);
        pRec->close();
    }
    pTable->close();
    AcDbBlockTableRecord* pRec = nullptr;
    EXPECT_EQ(acdbOpenObject(pRec, blockId, AcDb::kForWrite), Acad::eOk);
    AcDbObjectId id;
    EXPECT_EQ(pRec->appendAcDbEntity(id, pEnt), Acad::eOk);
    pEnt->close();
    pRec->close();
    return id;
}

void RegisterApp(AcDbDatabase& db, const std::wstring& strApp) {
    AcDbRegAppTable* pTable = nullptr;
    ASSERT_EQ(db.getRegAppTable(pTable, AcDb::kForWrite), Acad::eOk);
    if (!pTable->has(strApp)) {
        auto* pRec = new AcDbRegAppTableRecord;
        pRec->setName(strApp);
        ASSERT_EQ(pTable->add(pRec), Acad::eOk);
        pRec->close();
    }
    pTable->close();
}

void SetXData(AcDbObjectId id, resbuf* pChain) {
    for (resbuf* p = pChain; p; p = p->rbnext)
        if (p->restype == 1001)
            RegisterApp(*id.database(), p->resval.rstring);
    AcDbObject* pObj = nullptr;
    ASSERT_EQ(acdbOpenObject(pObj, id, AcDb::kForWrite), Acad::eOk);
    EXPECT_EQ(pObj->setXData(pChain), Acad::eOk);
    pObj->close();
    acutRelRb(pChain);
}

resbuf* Chain(std::initializer_list<resbuf*> nodes) {
    resbuf* head = nullptr;
    resbuf** tail = &head;
    for (resbuf* p : nodes) {
        *tail = p;
        tail = &p->rbnext;
    }
    return head;
}

std::vector<std::wstring> ChainTexts(const resbuf* p) {
    std::vector<std::wstring> out;
    for (; p; p = p->rbnext)
        if (acdbGroupCodeToType(p->restype) == RTSTR)
            out.push_back(p->resval.rstring);
    return out;
}

AcDbPolyline* MakeDot(double x, double y, double diameter, double bulge) {
    auto* pDot = new AcDbPolyline;
    pDot->addVertexAt(0, AcGePoint2d(x - diameter / 2, y), bulge, 2.0, 2.0);
    pDot->addVertexAt(1, AcGePoint2d(x + diameter / 2, y), bulge, 2.0, 2.0);
    pDot->setClosed(true);
    return pDot;
}
