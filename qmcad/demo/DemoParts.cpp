// Device symbols and part records of the demo, written in the suite's record layout.
#include "demo/DemoParts.h"

#include <algorithm>

namespace {

// The record names and keys the suite's modules share, letter for letter.
constexpr const wchar_t* kLabelApp = L"TZ_SYMB2_LABEL";
constexpr const wchar_t* kPartDictionary = L"TZ_DICITIONARY_PART2DATABASE";
constexpr const wchar_t* kPartRecordPrefix = L"TZ_XRECORD_ONEPART2_";
constexpr short kFaceColour = 4;

void RegisterApp(AcDbDatabase& db, const wchar_t* pszApp) {
    AcDbRegAppTable* pTable = nullptr;
    if (db.getRegAppTable(pTable, AcDb::kForWrite) != Acad::eOk)
        return;
    if (!pTable->has(pszApp)) {
        auto* pRec = new AcDbRegAppTableRecord;
        pRec->setName(pszApp);
        if (pTable->add(pRec) == Acad::eOk)
            pRec->close();
        else
            delete pRec;
    }
    pTable->close();
}

bool Link(AcDbObjectId from, AcDbObjectId to) {
    AcDbObject* pObj = nullptr;
    if (acdbOpenObject(pObj, from, AcDb::kForWrite) != Acad::eOk)
        return false;
    resbuf* pChain = acutNewStringRb(1001, kLabelApp);
    pChain->rbnext = acutNewStringRb(1005, to.handle().text());
    bool bOk = pObj->setXData(pChain) == Acad::eOk;
    acutRelRb(pChain);
    pObj->close();
    return bOk;
}

// The face a device shows around its opening, the same for every reference of the device.
void DrawFace(AcDbBlockTableRecord* pBlock, const DEMO_CUTOUT& item) {
    auto add = [pBlock](AcDbEntity* pEnt) {
        pEnt->setColorIndex(kFaceColour);
        AcDbObjectId id;
        if (pBlock->appendAcDbEntity(id, pEnt) == Acad::eOk)
            pEnt->close();
        else
            delete pEnt;
    };
    if (item.eShape == CUTOUT_SHAPE::Circle && item.dFixD <= 0) {
        add(new AcDbCircle(AcGePoint3d(0, 0, 0), item.dW * 0.7));
        return;
    }
    double w = std::max(item.dW, item.dFixX + item.dFixD) + 8;
    double h =
        std::max(item.eShape == CUTOUT_SHAPE::Circle ? item.dW : item.dH, item.dFixY + item.dFixD) +
        8;
    auto* pFace = new AcDbPolyline;
    pFace->addVertexAt(0, AcGePoint2d(-w / 2, -h / 2));
    pFace->addVertexAt(1, AcGePoint2d(w / 2, -h / 2));
    pFace->addVertexAt(2, AcGePoint2d(w / 2, h / 2));
    pFace->addVertexAt(3, AcGePoint2d(-w / 2, h / 2));
    pFace->setClosed(true);
    add(pFace);
}

AcDbObjectId FaceBlock(AcDbDatabase& db, const DEMO_CUTOUT& item) {
    std::wstring strName = item.pszModel;
    std::replace_if(
        strName.begin(), strName.end(), [](wchar_t c) { return !iswalnum(c); }, L'_');
    strName = L"QM_" + strName;
    AcDbBlockTable* pTable = nullptr;
    AcDbObjectId id;
    if (db.getBlockTable(pTable, AcDb::kForWrite) != Acad::eOk)
        return id;
    if (pTable->getAt(strName, id) != Acad::eOk) {
        auto* pBlock = new AcDbBlockTableRecord;
        pBlock->setName(strName);
        if (pTable->add(id, pBlock) == Acad::eOk) {
            DrawFace(pBlock, item);
            pBlock->close();
        } else {
            delete pBlock;
        }
    }
    pTable->close();
    return id;
}

bool HasPartRecord(AcDbDictionary* pDict, const std::wstring& strLabel, int& nLast) {
    bool bFound = false;
    AcDbDictionaryIterator* pIt = pDict->newIterator();
    for (; !pIt->done(); pIt->next()) {
        ++nLast;
        AcDbXrecord* pRec = nullptr;
        if (acdbOpenObject(pRec, pIt->objectId(), AcDb::kForRead) != Acad::eOk)
            continue;
        resbuf* pChain = nullptr;
        pRec->rbChain(pChain);
        for (resbuf* p = pChain; p && p->rbnext; p = p->rbnext->rbnext)
            bFound = bFound || (std::wstring(p->resval.rstring) == L"$LABEL" &&
                                strLabel == p->rbnext->resval.rstring);
        acutRelRb(pChain);
        pRec->close();
    }
    delete pIt;
    return bFound;
}

// The part behind the label at the drawing's own location (stored as the empty text).
bool WritePart(AcDbDatabase& db, const DEMO_CUTOUT& item, const std::wstring& strLabel) {
    AcDbDictionary* pNod = nullptr;
    if (db.getNamedObjectsDictionary(pNod, AcDb::kForWrite) != Acad::eOk)
        return false;
    AcDbDictionary* pDict = nullptr;
    if (pNod->getAt(kPartDictionary, pDict, AcDb::kForWrite) != Acad::eOk) {
        pDict = new AcDbDictionary;
        AcDbObjectId id;
        if (pNod->setAt(kPartDictionary, pDict, id) != Acad::eOk) {
            delete pDict;
            pNod->close();
            return false;
        }
    }
    pNod->close();
    int nLast = 0;
    bool bOk = true;
    if (!HasPartRecord(pDict, strLabel, nLast)) {
        const std::wstring values[] = {
            L"$Location", L"",           L"$LABEL", strLabel,           L"$DESCRIBE", item.pszName,
            L"$TYPE",     item.pszModel, L"$CODE",  DemoPartCode(item), L"$NOTE",     L"",
            L"$LABELDIS", L"",           L"$NAME",  item.pszName};
        resbuf* pChain = nullptr;
        for (auto it = std::rbegin(values); it != std::rend(values); ++it) {
            resbuf* p = acutNewStringRb(1, *it);
            p->rbnext = pChain;
            pChain = p;
        }
        auto* pRec = new AcDbXrecord;
        pRec->setFromRbChain(*pChain);
        acutRelRb(pChain);
        AcDbObjectId id;
        bOk = pDict->setAt(kPartRecordPrefix + std::to_wstring(nLast + 1), pRec, id) == Acad::eOk;
        if (bOk)
            pRec->close();
        else
            delete pRec;
    }
    pDict->close();
    return bOk;
}

} // namespace

std::wstring DemoPartCode(const DEMO_CUTOUT& item) {
    size_t nCount = 0;
    const DEMO_CUTOUT* items = DemoCutouts(nCount);
    return L"QM" + std::to_wstring(100001 + (&item - items));
}

bool AddDemoDevice(AcDbBlockTableRecord* pSpace, const DEMO_CUTOUT& item,
                   const std::wstring& strLabel, double x, double y, AcDbObjectId idLabel) {
    AcDbDatabase& db = *pSpace->database();
    AcDbObjectId idBlock = FaceBlock(db, item);
    if (idBlock.isNull())
        return false;
    auto* pRef = new AcDbBlockReference(AcGePoint3d(x, y, 0), idBlock);
    AcDbObjectId idRef;
    if (pSpace->appendAcDbEntity(idRef, pRef) != Acad::eOk) {
        delete pRef;
        return false;
    }
    pRef->close();
    RegisterApp(db, kLabelApp);
    return Link(idRef, idLabel) && Link(idLabel, idRef) && WritePart(db, item, strLabel);
}
