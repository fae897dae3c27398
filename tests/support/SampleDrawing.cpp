// The sample drawing used by codec tests and the oracle tool.
#include "SampleDrawing.h"

#include "DbBuilders.h"

#include <numbers>

namespace {

void AddLayer(AcDbDatabase& db, const wchar_t* name, short color, bool bOff) {
    AcDbLayerTable* pLayers = nullptr;
    db.getLayerTable(pLayers, AcDb::kForWrite);
    auto* pLayer = new AcDbLayerTableRecord;
    pLayer->setName(name);
    pLayer->setColorIndex(color);
    pLayer->setIsOff(bOff);
    pLayers->add(pLayer);
    pLayer->close();
    pLayers->close();
}

void AddNamedRecord(AcDbDatabase& db, const wchar_t* dict, const wchar_t* key, resbuf* chain) {
    AcDbDictionary* pNod = nullptr;
    db.getNamedObjectsDictionary(pNod, AcDb::kForWrite);
    AcDbDictionary* pDict = nullptr;
    if (pNod->getAt(dict, pDict, AcDb::kForWrite) != Acad::eOk) {
        pDict = new AcDbDictionary;
        AcDbObjectId id;
        pNod->setAt(dict, pDict, id);
    }
    pNod->close();
    auto* pX = new AcDbXrecord;
    pX->setFromRbChain(chain);
    acutRelRb(chain);
    AcDbObjectId id;
    pDict->setAt(key, pX, id);
    pX->close();
    pDict->close();
}

} // namespace

void BuildSampleDrawing(AcDbDatabase& db) {
    AddLayer(db, L"元件", 3, false);
    AddLayer(db, L"HIDDEN_LAYER", 5, true);

    auto* pLine = new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(10, 5, 0));
    pLine->setLayer(L"元件");
    pLine->setColorIndex(1);
    pLine->setLinetypeScale(2.0);
    pLine->setLineWeight(25);
    AppendToBlock(db, L"SYM按钮", pLine);
    AppendToBlock(db, L"SYM按钮", new AcDbCircle(AcGePoint3d(5, 5, 0), 2.5));
    AppendToBlock(db, L"SYM按钮", new AcDbArc(AcGePoint3d(0, 0, 0), 3, 0, std::numbers::pi / 2));

    AcDbBlockTable* pBlocks = nullptr;
    db.getBlockTable(pBlocks, AcDb::kForRead);
    AcDbObjectId blockId;
    pBlocks->getAt(L"SYM按钮", blockId);
    pBlocks->close();
    auto* pRef = new AcDbBlockReference(AcGePoint3d(100, 200, 0), blockId);
    pRef->setScaleFactors({2, 3, 1});
    pRef->setRotation(std::numbers::pi / 6);
    AcDbObjectId refId = AppendToModelSpace(db, pRef);

    auto* pText = new AcDbText;
    pText->setTextString(L"标号 KM1");
    pText->setPosition(AcGePoint3d(1, 2, 0));
    pText->setAlignmentPoint(AcGePoint3d(3, 4, 0));
    pText->setHorizontalMode(AcDb::kTextCenter);
    pText->setVerticalMode(AcDb::kTextVertMid);
    pText->setHeight(3.5);
    AcDbObjectId textId = AppendToModelSpace(db, pText);

    SetXData(refId, Chain({acutNewStringRb(1001, L"TZ_SYMB2_LABEL"),
                           acutNewStringRb(1005, textId.handle().text())}));
    SetXData(refId, Chain({acutNewStringRb(1001, L"TZ_ALL_CODES"), acutNewStringRb(1000, L"中文值"),
                           acutNewStringRb(1005, textId.handle().text()),
                           acutNewPointRb(1010, 1.5, -2.25, 3), acutNewRealRb(1040, 0.125),
                           acutNewShortRb(1070, -12), acutNewLongRb(1071, 123456789)}));
    SetXData(textId, Chain({acutNewStringRb(1001, L"TZ_SYMB2_LABEL"),
                            acutNewStringRb(1005, refId.handle().text())}));

    AcDbEntity* pEnt = nullptr;
    acdbOpenObject(pEnt, refId, AcDb::kForWrite);
    pEnt->createExtensionDictionary();
    AcDbObjectId extId = pEnt->extensionDictionary();
    pEnt->close();
    AcDbDictionary* pExt = nullptr;
    acdbOpenObject(pExt, extId, AcDb::kForWrite);
    auto* pX = new AcDbXrecord;
    resbuf* pairs = Chain({acutNewStringRb(1, L"推荐名称"), acutNewStringRb(1, L"按钮")});
    pX->setFromRbChain(pairs);
    acutRelRb(pairs);
    AcDbObjectId xid;
    pExt->setAt(L"TZ_SYMB_BOMANDLABEL", pX, xid);
    pX->close();
    pExt->close();

    AddNamedRecord(db, L"TZ_DWG_DICITIONARY", L"TZ_SCALE_XRECORD",
                   Chain({acutNewStringRb(1, L"比例"), acutNewStringRb(1, L"1:50")}));
    AddNamedRecord(db, L"TZ_DICITIONARY_PART2DATABASE", L"TZ_XRECORD_ONEPART2_1",
                   Chain({acutNewStringRb(1, L"$Location"), acutNewStringRb(1, L""),
                          acutNewStringRb(1, L"$LABEL"), acutNewStringRb(1, L"KM1"),
                          acutNewStringRb(1, L"$NAME"), acutNewStringRb(1, L"接触器")}));

    auto* pPl = MakeDot(50, 60);
    pPl->setColorIndex(1);
    pPl->setWidthsAt(1, 0.5, 1.5);
    AppendToModelSpace(db, pPl);
    auto* pOpen = new AcDbPolyline;
    pOpen->addVertexAt(0, AcGePoint2d(0, 0), 0.4142);
    pOpen->addVertexAt(1, AcGePoint2d(10, 0), -0.25);
    pOpen->addVertexAt(2, AcGePoint2d(10, 10));
    AppendToModelSpace(db, pOpen);

    auto* p2d = new AcDb2dPolyline;
    p2d->appendVertex({AcGePoint3d(0, 0, 0), 0.5, 1, 2, {}});
    p2d->appendVertex({AcGePoint3d(5, 0, 0), 0, 0, 0, {}});
    p2d->setClosed(true);
    AppendToModelSpace(db, p2d);
    auto* p3d = new AcDb3dPolyline;
    p3d->appendVertex({AcGePoint3d(0, 0, 0), 0, 0, 0, {}});
    p3d->appendVertex({AcGePoint3d(1, 2, 3), 0, 0, 0, {}});
    AppendToModelSpace(db, p3d);

    auto* pMText = new AcDbMText;
    pMText->setContents(L"{\\f宋体;第一行}\\P第二行 ABC");
    pMText->setLocation(AcGePoint3d(7, 8, 0));
    pMText->setTextHeight(5);
    pMText->setAttachment(AcDbMText::kMiddleCenter);
    AppendToModelSpace(db, pMText);

    auto* pDim = new AcDbRotatedDimension;
    pDim->setXLine1Point(AcGePoint3d(0, 0, 0));
    pDim->setXLine2Point(AcGePoint3d(100, 0, 0));
    pDim->setDimLinePoint(AcGePoint3d(0, -20, 0));
    pDim->setTextPosition(AcGePoint3d(50, -20, 0));
    pDim->setDimensionText(L"<>mm");
    pDim->setDimensionStyle(db.dimstyle());
    AppendToModelSpace(db, pDim);
    auto* pAligned = new AcDbAlignedDimension;
    pAligned->setXLine1Point(AcGePoint3d(0, 0, 0));
    pAligned->setXLine2Point(AcGePoint3d(30, 40, 0));
    pAligned->setDimLinePoint(AcGePoint3d(-8, 6, 0));
    pAligned->setDimensionStyle(db.dimstyle());
    AppendToModelSpace(db, pAligned);

    auto* pSolid = new AcDb3dSolid;
    pSolid->setBody({"QM_TEST_BODY 40 20 2", "opaque to every reader"});
    SetXData(AppendToModelSpace(db, pSolid),
             Chain({acutNewStringRb(1001, L"3dHolePanel"), acutNewStringRb(1000, L"")}));

    db.setInsbase(AcGePoint3d(1, 2, 0));
    db.updateExt();
    db.setThumbnailBitmap({0x28, 0, 0, 0, 0xFF, 0x10, 0x7F});
}
