// The drawing database: handles, open rules, dictionaries, extended data, tables, geometry, copies.
#include "host/db/AcDb.h"

#include "DbBuilders.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

TEST(Database, HandlesAreHexUniqueAndNeverReused) {
    AcDbDatabase db;
    AcDbObjectId a = AppendToModelSpace(db, new AcDbLine);
    AcDbObjectId b = AppendToModelSpace(db, new AcDbLine);
    EXPECT_NE(a.handle(), b.handle());
    AcDbEntity* p = nullptr;
    ASSERT_EQ(acdbOpenObject(p, b, AcDb::kForWrite), Acad::eOk);
    p->erase();
    p->close();
    AcDbObjectId c = AppendToModelSpace(db, new AcDbLine);
    EXPECT_GT(c.handle().value(), b.handle().value());

    wchar_t buf[17];
    AcDbHandle(0x2AFu).getIntoAsciiBuffer(buf);
    EXPECT_STREQ(buf, L"2AF");
    EXPECT_EQ(AcDbHandle(L"2af").value(), 0x2AFu);
    EXPECT_TRUE(AcDbHandle(L"xyz").isNull());
    AcDbObjectId found;
    EXPECT_EQ(db.getAcDbObjectId(found, false, AcDbHandle(a.handle().text().c_str())), Acad::eOk);
    EXPECT_EQ(found, a);
    EXPECT_EQ(db.getAcDbObjectId(found, false, AcDbHandle(0xFFFFFu)), Acad::eKeyNotFound);
}

TEST(Database, OpenRulesAndErasedObjectsInIterators) {
    AcDbDatabase db;
    AcDbObjectId a = AppendToModelSpace(db, new AcDbLine);
    AcDbObjectId b = AppendToModelSpace(db, new AcDbCircle);
    AcDbEntity *p1 = nullptr, *p2 = nullptr;
    ASSERT_EQ(acdbOpenObject(p1, a, AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(acdbOpenObject(p2, a, AcDb::kForRead), Acad::eOk);
    AcDbEntity* pWriter = nullptr;
    EXPECT_EQ(acdbOpenObject(pWriter, a, AcDb::kForWrite), Acad::eWasOpenForRead);
    EXPECT_EQ(pWriter, nullptr);
    EXPECT_EQ(p1->setColorIndex(1), Acad::eNotOpenForWrite);
    EXPECT_EQ(p1->upgradeOpen(), Acad::eInvalidOpenState); // another reader holds it
    p1->close();
    p2->close();
    EXPECT_EQ(p2->close(), Acad::eInvalidOpenState);
    ASSERT_EQ(acdbOpenObject(p1, a, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(p1->upgradeOpen(), Acad::eOk);
    EXPECT_EQ(p1->setColorIndex(1), Acad::eOk);
    EXPECT_EQ(p1->erase(), Acad::eOk);
    p1->close();
    AcDbCircle* pCircle = nullptr;
    EXPECT_EQ(acdbOpenObject(pCircle, a, AcDb::kForRead), Acad::eNotThatKindOfClass);
    EXPECT_EQ(acdbOpenObject(p1, a, AcDb::kForRead), Acad::eWasErased);
    EXPECT_EQ(acdbOpenObject(p1, a, AcDb::kForRead, true), Acad::eOk);
    p1->close();

    AcDbBlockTableRecord* pMs = nullptr;
    ASSERT_EQ(acdbOpenObject(pMs, db.modelSpaceId(), AcDb::kForRead), Acad::eOk);
    AcDbBlockTableRecordIterator* pIt = nullptr;
    pMs->newIterator(pIt);
    ASSERT_FALSE(pIt->done());
    EXPECT_EQ(pIt->getEntityId(), b);
    pIt->step();
    EXPECT_TRUE(pIt->done());
    delete pIt;
    pMs->newIterator(pIt, true, false);
    int n = 0;
    for (; !pIt->done(); pIt->step())
        ++n;
    EXPECT_EQ(n, 2);
    delete pIt;
    pMs->close();
}

TEST(Database, DictionariesKeepOrderFindKeysWithoutCaseAndReportStatus) {
    AcDbDatabase db;
    AcDbDictionary* pNod = nullptr;
    ASSERT_EQ(db.getNamedObjectsDictionary(pNod, AcDb::kForWrite), Acad::eOk);
    AcDbObjectId id;
    EXPECT_EQ(pNod->getAt(L"TZ_DWG_DICITIONARY", id), 22);
    auto* pDict = new AcDbDictionary;
    ASSERT_EQ(pNod->setAt(L"TZ_DWG_DICITIONARY", pDict, id), Acad::eOk);
    for (const wchar_t* key : {L"B", L"a", L"C"}) {
        auto* pX = new AcDbXrecord;
        resbuf* chain = acutNewStringRb(1, key);
        pX->setFromRbChain(*chain);
        acutRelRb(chain);
        AcDbObjectId xid;
        ASSERT_EQ(pDict->setAt(key, pX, xid), Acad::eOk);
        pX->close();
    }
    AcDbObjectId firstB;
    pDict->getAt(L"b", firstB);
    auto* pNew = new AcDbXrecord;
    AcDbObjectId newB;
    pDict->setAt(L"B", pNew, newB); // replaces and erases the old record
    pNew->close();
    EXPECT_TRUE(firstB.isErased());
    std::vector<std::wstring> keys;
    AcDbDictionaryIterator* pIt = pDict->newIterator();
    for (; !pIt->done(); pIt->next())
        keys.push_back(pIt->name());
    delete pIt;
    EXPECT_EQ(keys, (std::vector<std::wstring>{L"B", L"a", L"C"}));
    EXPECT_EQ(pDict->remove(L"A"), Acad::eOk);
    EXPECT_EQ(pDict->remove(L"A"), Acad::eKeyNotFound);
    EXPECT_EQ(pDict->numEntries(), 2);
    pDict->close();
    pNod->close();

    AcDbXrecord* pX = nullptr;
    ASSERT_EQ(acdbOpenObject(pX, newB, AcDb::kForRead), Acad::eOk);
    resbuf* out = nullptr;
    pX->rbChain(out);
    EXPECT_EQ(out, nullptr);
    pX->close();
}

TEST(Database, ExtensionDictionaryIsMadeOnceThenAlreadyExists) {
    AcDbDatabase db;
    AcDbObjectId id = AppendToModelSpace(db, new AcDbLine);
    AcDbEntity* p = nullptr;
    ASSERT_EQ(acdbOpenObject(p, id, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(p->createExtensionDictionary(), Acad::eNotOpenForWrite);
    p->upgradeOpen();
    EXPECT_EQ(p->createExtensionDictionary(), Acad::eOk);
    EXPECT_EQ(p->createExtensionDictionary(), 26);
    AcDbObjectId ext = p->extensionDictionary();
    p->close();
    AcDbDictionary* pDict = nullptr;
    ASSERT_EQ(acdbOpenObject(pDict, ext, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(pDict->ownerId(), id);
    pDict->close();
}

TEST(Database, ExtendedDataIsPerRegisteredApplication) {
    AcDbDatabase db;
    AcDbObjectId id = AppendToModelSpace(db, new AcDbText);
    AcDbEntity* p = nullptr;
    ASSERT_EQ(acdbOpenObject(p, id, AcDb::kForWrite), Acad::eOk);
    resbuf* chain = Chain({acutNewStringRb(1001, L"TZ_X"), acutNewStringRb(1000, L"v")});
    EXPECT_EQ(p->setXData(chain), Acad::eRegappIdNotFound);
    p->close();
    acutRelRb(chain);

    SetXData(id, Chain({acutNewStringRb(1001, L"TZ_A"), acutNewStringRb(1000, L"文字"),
                        acutNewStringRb(1005, L"1F"), acutNewPointRb(1010, 1, 2, 3),
                        acutNewRealRb(1040, 2.5), acutNewShortRb(1070, -7),
                        acutNewLongRb(1071, 70000)}));
    SetXData(id, Chain({acutNewStringRb(1001, L"TZ_B")})); // nothing to remove
    SetXData(id, Chain({acutNewStringRb(1001, L"TZ_B"), acutNewStringRb(1000, L"b")}));
    ASSERT_EQ(acdbOpenObject(p, id, AcDb::kForRead), Acad::eOk);
    resbuf* a = p->xData(L"TZ_A");
    ASSERT_NE(a, nullptr);
    resbuf* expected =
        Chain({acutNewStringRb(1001, L"TZ_A"), acutNewStringRb(1000, L"文字"),
               acutNewStringRb(1005, L"1F"), acutNewPointRb(1010, 1, 2, 3),
               acutNewRealRb(1040, 2.5), acutNewShortRb(1070, -7), acutNewLongRb(1071, 70000)});
    EXPECT_TRUE(acutChainsEqual(a, expected));
    acutRelRb(a);
    acutRelRb(expected);
    EXPECT_EQ(p->xData(L"tz_a"), nullptr); // application names are exact
    p->close();
    // Replacing one application keeps the other; a lone 1001 removes it.
    SetXData(id, Chain({acutNewStringRb(1001, L"TZ_A"), acutNewStringRb(1000, L"new")}));
    SetXData(id, Chain({acutNewStringRb(1001, L"TZ_B")}));
    ASSERT_EQ(acdbOpenObject(p, id, AcDb::kForRead), Acad::eOk);
    resbuf* all = p->xData();
    EXPECT_EQ(ChainTexts(all), (std::vector<std::wstring>{L"TZ_A", L"new"}));
    acutRelRb(all);
    p->close();

    EXPECT_EQ(acdbGroupCodeToType(1000), RTSTR);
    EXPECT_EQ(acdbGroupCodeToType(1005), RTSTR);
    EXPECT_EQ(acdbGroupCodeToType(1), RTSTR);
    EXPECT_EQ(acdbGroupCodeToType(1010), RT3DPOINT);
    EXPECT_EQ(acdbGroupCodeToType(1040), RTREAL);
    EXPECT_EQ(acdbGroupCodeToType(1070), RTSHORT);
    EXPECT_EQ(acdbGroupCodeToType(1071), RTLONG);
    EXPECT_EQ(acdbGroupCodeToType(-9999), RTNONE);
}

TEST(Database, SymbolTablesNameRecordsByTheEditorsRules) {
    AcDbDatabase db;
    AcDbBlockTable* pBlocks = nullptr;
    ASSERT_EQ(db.getBlockTable(pBlocks, AcDb::kForWrite), Acad::eOk);
    EXPECT_TRUE(pBlocks->has(L"*MODEL_SPACE"));
    EXPECT_TRUE(pBlocks->has(ACDB_PAPER_SPACE));
    std::wstring names[2];
    for (auto& name : names) {
        auto* pRec = new AcDbBlockTableRecord;
        ASSERT_EQ(pRec->setName(L"*U"), Acad::eOk);
        ASSERT_EQ(pBlocks->add(pRec), Acad::eOk);
        EXPECT_TRUE(pRec->isAnonymous());
        name = pRec->name();
        pRec->close();
    }
    EXPECT_NE(names[0], names[1]);
    EXPECT_EQ(names[0].substr(0, 2), L"*U");
    auto* pRec = new AcDbBlockTableRecord;
    EXPECT_EQ(pRec->setName(L"a<b"), Acad::eInvalidInput);
    EXPECT_EQ(pRec->setName(L" lead"), Acad::eInvalidInput);
    EXPECT_EQ(pRec->setName(L"按钮"), Acad::eOk);
    ASSERT_EQ(pBlocks->add(pRec), Acad::eOk);
    pRec->close();
    auto* pDup = new AcDbBlockTableRecord;
    pDup->setName(L"按钮");
    EXPECT_EQ(pBlocks->add(pDup), Acad::eDuplicateRecordName);
    delete pDup;
    pBlocks->close();

    auto* pLayer = new AcDbLayerTableRecord;
    EXPECT_EQ(pLayer->setName(L"*bad"), Acad::eInvalidInput); // stars are for blocks only
    delete pLayer;
    AcDbDimStyleTable* pDims = nullptr;
    ASSERT_EQ(db.getDimStyleTable(pDims, AcDb::kForRead), Acad::eOk);
    AcDbDimStyleTableRecord* pStyle = nullptr;
    ASSERT_EQ(pDims->getAt(L"standard", pStyle, AcDb::kForWrite), Acad::eOk);
    pDims->close();
    pStyle->setDimlfac(10.0);
    pStyle->close();
    EXPECT_EQ(db.setDimstyleData(db.dimstyle()), Acad::eOk);
    EXPECT_EQ(db.dimlfac(), 10.0);
}

TEST(Database, GeometryOfPolylinesReferencesAndExplode) {
    AcDbDatabase db;
    // A clockwise half circle (bulge -1) from (0,0) to (2,0) rises to y = 1.
    auto* pPl = new AcDbPolyline;
    pPl->addVertexAt(0, AcGePoint2d(0, 0), -1.0);
    pPl->addVertexAt(1, AcGePoint2d(2, 0));
    AcDbExtents ext;
    ASSERT_EQ(pPl->getGeomExtents(ext), Acad::eOk);
    EXPECT_NEAR(ext.minPoint().y, 0.0, 1e-9);
    EXPECT_NEAR(ext.maxPoint().y, 1.0, 1e-9);
    delete pPl;

    AppendToBlock(db, L"BLK", new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(10, 0, 0)));
    AppendToBlock(db, L"BLK", new AcDbCircle(AcGePoint3d(0, 0, 0), 1.0));
    AcDbBlockTable* pBlocks = nullptr;
    db.getBlockTable(pBlocks, AcDb::kForRead);
    AcDbObjectId blk;
    pBlocks->getAt(L"blk", blk);
    pBlocks->close();
    auto* pRef = new AcDbBlockReference(AcGePoint3d(100, 50, 0), blk);
    pRef->setRotation(std::numbers::pi / 2);
    pRef->setScaleFactors({2, 2, 1});
    AcDbObjectId refId = AppendToModelSpace(db, pRef);
    ASSERT_EQ(acdbOpenObject(pRef, refId, AcDb::kForRead), Acad::eOk);
    AcGePoint3d tip = pRef->blockTransform().apply(AcGePoint3d(10, 0, 0));
    EXPECT_NEAR(tip.x, 100, 1e-9);
    EXPECT_NEAR(tip.y, 70, 1e-9);
    ASSERT_EQ(pRef->getGeomExtents(ext), Acad::eOk);
    EXPECT_NEAR(ext.minPoint().x, 98, 1e-9);
    EXPECT_NEAR(ext.maxPoint().y, 70, 1e-9);
    std::vector<AcDbEntity*> parts;
    ASSERT_EQ(pRef->explode(parts), Acad::eOk);
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_NEAR(static_cast<AcDbCircle*>(parts[1])->radius(), 2.0, 1e-9);
    for (AcDbEntity* p : parts)
        delete p;
    parts.clear();
    pRef->close();
    // A circle cannot follow a non-uniform scale.
    ASSERT_EQ(acdbOpenObject(pRef, refId, AcDb::kForWrite), Acad::eOk);
    pRef->setScaleFactors({1, 3, 1});
    EXPECT_EQ(pRef->explode(parts), Acad::eCannotScaleNonUniformly);
    EXPECT_TRUE(parts.empty());
    pRef->close();

    // Without a registered geometry kernel a solid keeps its data and refuses the rest.
    auto* pSolid = new AcDb3dSolid;
    EXPECT_NE(pSolid->createBox(4, 2, 1), Acad::eOk);
    pSolid->setBody({"opaque"});
    EXPECT_NE(pSolid->transformBy(AcGeMatrix3d::translation(AcGeVector3d(10, 0, 0))), Acad::eOk);
    EXPECT_NE(pSolid->getGeomExtents(ext), Acad::eOk);
    EXPECT_EQ(pSolid->body(), std::vector<std::string>{"opaque"});
    delete pSolid;
}

TEST(Database, WblockAndInsertCopyWhatTheEntitiesNeed) {
    AcDbDatabase src;
    auto* pText = new AcDbText;
    pText->setLayer(L"0"); // placeholder, replaced below
    AcDbObjectId textId = AppendToModelSpace(src, pText);
    AcDbLayerTable* pLayers = nullptr;
    src.getLayerTable(pLayers, AcDb::kForWrite);
    auto* pLayer = new AcDbLayerTableRecord;
    pLayer->setName(L"元件");
    pLayer->setColorIndex(3);
    pLayers->add(pLayer);
    pLayer->close();
    pLayers->close();
    AppendToBlock(src, L"SYM", new AcDbCircle(AcGePoint3d(), 1));
    AcDbBlockTable* pBlocks = nullptr;
    src.getBlockTable(pBlocks, AcDb::kForRead);
    AcDbObjectId sym;
    pBlocks->getAt(L"SYM", sym);
    pBlocks->close();
    auto* pRef = new AcDbBlockReference(AcGePoint3d(5, 5, 0), sym);
    pRef->setLayer(L"元件");
    AcDbObjectId refId = AppendToModelSpace(src, pRef);
    SetXData(refId, Chain({acutNewStringRb(1001, L"TZ_SYMB2_LABEL"),
                           acutNewStringRb(1005, textId.handle().text())}));
    SetXData(textId, Chain({acutNewStringRb(1001, L"TZ_SYMB2_LABEL"),
                            acutNewStringRb(1005, refId.handle().text())}));
    AcDbEntity* p = nullptr;
    acdbOpenObject(p, refId, AcDb::kForWrite);
    p->createExtensionDictionary();
    AcDbObjectId extId = p->extensionDictionary();
    p->close();
    AcDbDictionary* pExt = nullptr;
    acdbOpenObject(pExt, extId, AcDb::kForWrite);
    auto* pX = new AcDbXrecord;
    AcDbObjectId xid;
    pExt->setAt(L"TZ_SYMB_BOMANDLABEL", pX, xid);
    pX->close();
    pExt->close();
    AppendToModelSpace(src, new AcDbLine); // not selected

    AcDbDatabase* pOut = nullptr;
    ASSERT_EQ(src.wblock(pOut, {refId, textId}, AcGePoint3d(1, 2, 0)), Acad::eOk);
    EXPECT_EQ(pOut->insbase(), AcGePoint3d(1, 2, 0));
    AcDbBlockTableRecord* pMs = nullptr;
    ASSERT_EQ(acdbOpenObject(pMs, pOut->modelSpaceId(), AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(pMs->entities().size(), 2u);
    AcDbObjectId newRef = pMs->entities()[0], newText = pMs->entities()[1];
    pMs->close();
    AcDbBlockReference* pNewRef = nullptr;
    ASSERT_EQ(acdbOpenObject(pNewRef, newRef, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(pNewRef->layer(), L"元件");
    EXPECT_TRUE(pNewRef->extensionDictionary().isValid());
    EXPECT_EQ(pNewRef->blockTableRecord().database(), pOut);
    resbuf* link = pNewRef->xData(L"TZ_SYMB2_LABEL");
    EXPECT_EQ(ChainTexts(link)[1], newText.handle().text()); // translated to the copy
    acutRelRb(link);
    pNewRef->close();
    pOut->getLayerTable(pLayers, AcDb::kForRead);
    AcDbLayerTableRecord* pNewLayer = nullptr;
    ASSERT_EQ(pLayers->getAt(L"元件", pNewLayer, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(pNewLayer->colorIndex(), 3);
    pNewLayer->close();
    pLayers->close();

    AcDbDatabase target;
    AcDbObjectId blockId;
    ASSERT_EQ(target.insert(blockId, L"*U", pOut), Acad::eOk);
    AcDbBlockTableRecord* pBlock = nullptr;
    ASSERT_EQ(acdbOpenObject(pBlock, blockId, AcDb::kForRead), Acad::eOk);
    EXPECT_TRUE(pBlock->isAnonymous());
    EXPECT_EQ(pBlock->origin(), AcGePoint3d(1, 2, 0));
    EXPECT_EQ(pBlock->entities().size(), 2u);
    pBlock->close();
    target.getBlockTable(pBlocks, AcDb::kForRead);
    EXPECT_TRUE(pBlocks->has(L"SYM"));
    pBlocks->close();
    delete pOut;
}

TEST(Database, CopiedUnmodelledEntitiesKeepFollowersUnderFreshHandlesAndNoStalePointers) {
    AcDbDatabase src;
    AcDbObjectId textId = AppendToModelSpace(src, new AcDbLine);
    auto* pMesh = new AcDbUnknownEntity(L"POLYLINE");
    pMesh->m_tags = {{100, L"AcDbEntity"},
                     {100, L"AcDbPolyFaceMesh"},
                     {66, L"1"},
                     {340, textId.handle().text()},
                     {360, L"FFFF"}};
    AcDbObjectId meshId = AppendToModelSpace(src, pMesh);
    std::wstring owner = meshId.handle().text();
    AcDbUnknownEntity* pOpen = nullptr;
    ASSERT_EQ(acdbOpenObject(pOpen, meshId, AcDb::kForWrite), Acad::eOk);
    pOpen->m_followers = {{{0, L"VERTEX"}, {5, L"F00"}, {330, owner}, {100, L"AcDbEntity"}},
                          {{0, L"SEQEND"}, {5, L"F01"}, {330, owner}}};
    pOpen->close();

    AcDbDatabase target;
    AcDbObjectId blockId;
    ASSERT_EQ(target.insert(blockId, L"MESH", &src), Acad::eOk);
    AcDbBlockTableRecord* pBlock = nullptr;
    ASSERT_EQ(acdbOpenObject(pBlock, blockId, AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(pBlock->entities().size(), 2u);
    AcDbObjectId newLine = pBlock->entities()[0], newMesh = pBlock->entities()[1];
    pBlock->close();
    AcDbUnknownEntity* pCopy = nullptr;
    ASSERT_EQ(acdbOpenObject(pCopy, newMesh, AcDb::kForRead), Acad::eOk);
    ASSERT_EQ(pCopy->m_followers.size(), 2u);
    std::wstring h1 = pCopy->m_followers[0][1].strValue, h2 = pCopy->m_followers[1][1].strValue;
    EXPECT_NE(h1, h2);
    for (const std::wstring& h : {h1, h2}) {
        EXPECT_GE(AcDbHandle(h.c_str()).value(), newMesh.handle().value());
        EXPECT_LT(AcDbHandle(h.c_str()).value(),
                  target.handseed().value()); // never handed out again
    }
    EXPECT_EQ(pCopy->m_followers[0][2].strValue, newMesh.handle().text());
    EXPECT_EQ(pCopy->m_tags[3].strValue, newLine.handle().text()); // the copied line
    EXPECT_EQ(pCopy->m_tags[4].strValue, L"0");                    // nothing copied for it
    pCopy->close();
}

TEST(Database, LastEntityIsTheNewestLiveOneOfALayoutAndDeletionToggles) {
    AcDbDatabase db;
    acdbHostApplicationServices()->setWorkingDatabase(&db);
    AcDbObjectId id;
    EXPECT_EQ(acdbEntLast(id), RTERROR); // an empty drawing
    EXPECT_TRUE(id.isNull());
    AcDbObjectId first = AppendToModelSpace(db, new AcDbLine(AcGePoint3d(), AcGePoint3d(1, 0, 0)));
    AcDbObjectId second = AppendToModelSpace(db, new AcDbCircle(AcGePoint3d(), 2));
    AppendToBlock(db, L"INNER", new AcDbLine(AcGePoint3d(), AcGePoint3d(0, 1, 0))); // no layout
    ASSERT_EQ(acdbEntLast(id), RTNORM);
    EXPECT_EQ(id, second);

    EXPECT_EQ(acdbEntDel(second), RTNORM);
    EXPECT_TRUE(second.isErased());
    ASSERT_EQ(acdbEntLast(id), RTNORM);
    EXPECT_EQ(id, first);
    EXPECT_EQ(acdbEntDel(second), RTNORM); // a second call brings it back
    EXPECT_FALSE(second.isErased());
    ASSERT_EQ(acdbEntLast(id), RTNORM);
    EXPECT_EQ(id, second);
    EXPECT_EQ(acdbEntDel(AcDbObjectId()), RTERROR);
    acdbHostApplicationServices()->setWorkingDatabase(nullptr);
}
