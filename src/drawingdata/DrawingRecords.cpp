// Location and scale records, part record numbers, the dot and the library data dot, block names.
#include "drawingdata/DrawingRecords.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "drawingdata/RecordKeys.h"
#include "drawingdata/Records.h"
#include "host/HostUi.h"

#include <algorithm>
#include <cmath>
#include <cwchar>
#include <optional>

namespace {

std::wstring RemoveBlanks(std::wstring s) {
    s.erase(std::remove(s.begin(), s.end(), L' '), s.end());
    return s;
}

// The loose read: the string after the first that contains the keyword.
bool ReadLoosely(AcDbDatabase* pDb, const wchar_t* pKey, const wchar_t* pKeyword,
                 std::wstring& strOut) {
    strOut.clear();
    resbuf* pChain = nullptr;
    if (!ReadNamedXrecord(pDb, TZ_DWG_DICITIONARY, pKey, pChain))
        return false;
    CStringArray strings;
    StringsFromChain(pChain, strings);
    acutRelRb(pChain);
    for (size_t i = 0; i < strings.size(); ++i) {
        if (RemoveBlanks(strings[i]).find(pKeyword) == std::wstring::npos)
            continue;
        if (i + 1 < strings.size())
            strOut = RemoveBlanks(strings[i + 1]);
        return true;
    }
    return false;
}

template <class F> void ForEachModelSpaceEntity(AcDbDatabase* pDb, F&& visit) {
    AcDbBlockTableRecord* pMs = nullptr;
    if (!pDb || acdbOpenObject(pMs, pDb->modelSpaceId(), AcDb::kForRead) != Acad::eOk)
        return;
    AcDbBlockTableRecordIterator* pIter = nullptr;
    pMs->newIterator(pIter);
    bool bGoOn = true;
    for (; !pIter->done() && bGoOn; pIter->step()) {
        AcDbEntity* pEnt = nullptr;
        if (pIter->getEntity(pEnt, AcDb::kForRead) != Acad::eOk)
            continue;
        bGoOn = visit(pEnt->objectId(), *pEnt);
        pEnt->close();
    }
    delete pIter;
    pMs->close();
}

// Erases the first model-space entity that carries the application.
void EraseFirstWith(AcDbDatabase* pDb, const wchar_t* pApp) {
    AcDbObjectId found;
    ForEachModelSpaceEntity(pDb, [&](AcDbObjectId id, AcDbEntity& ent) {
        if (HasXData(&ent, pApp))
            found = id;
        return found.isNull();
    });
    AcDbEntity* pEnt = nullptr;
    if (acdbOpenObject(pEnt, found, AcDb::kForWrite) == Acad::eOk) {
        pEnt->erase();
        pEnt->close();
    }
}

} // namespace

bool GetDrawingLocation(AcDbDatabase* pDb, std::wstring& strOut) {
    CWaitCursor wait;
    return ReadLoosely(pDb, TZ_LOCATION_XRECORD, KEY_LOCATION, strOut);
}

bool GetDrawingScale(AcDbDatabase* pDb, std::wstring& strOut) {
    if (!ReadLoosely(pDb, TZ_SCALE_XRECORD, KEY_SCALE, strOut))
        return false;
    if (!strOut.empty() && strOut.find(L':') == std::wstring::npos)
        strOut = Format(L"1:%s", strOut);
    return true;
}

bool SetDrawingScale(AcDbDatabase* pDb, const std::wstring& strValue) {
    resbuf* pChain = ChainFromStrings({KEY_SCALE, strValue});
    int n = WriteNamedXrecord(pDb, TZ_DWG_DICITIONARY, TZ_SCALE_XRECORD, pChain);
    acutRelRb(pChain);
    return n == 1;
}

int NextPartRecordNumber(AcDbDatabase* pDb) {
    AcDbDictionary* pNod = nullptr;
    if (!pDb || pDb->getNamedObjectsDictionary(pNod, AcDb::kForRead) != Acad::eOk)
        return 1;
    AcDbDictionary* pDict = nullptr;
    Acad::ErrorStatus es = pNod->getAt(TZ_DICITIONARY_PART2DATABASE, pDict, AcDb::kForRead);
    pNod->close();
    if (es != Acad::eOk)
        return 1;
    std::vector<long> numbers;
    AcDbDictionaryIterator* pIter = pDict->newIterator();
    for (; !pIter->done(); pIter->next()) {
        const std::wstring& name = pIter->name();
        numbers.push_back(
            std::wcstol(StrMid(name, StrReverseFind(name, L'_') + 1).c_str(), nullptr, 10));
    }
    delete pIter;
    pDict->close();
    std::sort(numbers.begin(), numbers.end());
    if (numbers.empty())
        return 1;
    if (numbers.size() == 1)
        return numbers[0] == 1 ? 2 : 1;
    // A gap may sit at 0 (records -1 and 1), so "found" is its own flag.
    std::optional<long> gap;
    for (size_t i = 0; i + 1 < numbers.size(); ++i)
        if (numbers[i + 1] - numbers[i] > 1)
            gap = numbers[i] + 1; // the last gap found wins
    return static_cast<int>(gap.value_or(numbers.back() + 1));
}

bool IsDotEntity(const AcDbEntity* pEnt) {
    auto* pPl = dynamic_cast<const AcDbPolyline*>(pEnt);
    if (!pPl || pPl->numVerts() != 2 || !pPl->isClosed())
        return false;
    double b0 = 0, b1 = 0;
    pPl->getBulgeAt(0, b0);
    pPl->getBulgeAt(1, b1);
    if (!(std::fabs(b0) - 1.0 < 0.1 || std::fabs(b1) - 1.0 < 0.1))
        return false;
    AcGePoint3d p0, p1;
    pPl->getPointAt(0, p0);
    pPl->getPointAt(1, p1);
    return std::fabs(p0.distanceTo(p1) - 1.0) < 0.1;
}

AcGePoint3d GetDotPoint(const AcDbPolyline* pDot) {
    AcGePoint2d a, b;
    pDot->getPointAt(0, a);
    pDot->getPointAt(1, b);
    return AcGePoint3d((a.x + b.x) / 2, (a.y + b.y) / 2, 0);
}

bool WriteRecommendedPairs(AcDbDatabase* pDb, const CStringArray& pairs) {
    resbuf* pChain = ChainFromStrings(pairs);
    bool bOk = WriteNamedXrecord(pDb, TZ_SYMB1LIB_DICITIONARY, TZ_SYMB1LIB_XRECORD, pChain) == 1;
    AcGePoint3d lo = pDb->extmin(), hi = pDb->extmax();
    AcGePoint3d mid((lo.x + hi.x) / 2, (lo.y + hi.y) / 2, (lo.z + hi.z) / 2);
    EraseFirstWith(pDb, TZ_KKDOTPT_FLAG);

    // The dot joins the working drawing, which the callers have made this one.
    AcDbDatabase* pTarget = acdbHostApplicationServices()->workingDatabase();
    if (!pTarget)
        pTarget = pDb;
    auto* pDot = new AcDbPolyline;
    pDot->addVertexAt(0, AcGePoint2d(mid.x - 0.5, mid.y), 1.0, 2.0, 2.0);
    pDot->addVertexAt(1, AcGePoint2d(mid.x + 0.5, mid.y), 1.0, 2.0, 2.0);
    pDot->setClosed(true);
    pDot->setLayer(L"0");
    pDot->setColorIndex(1);
    AcDbBlockTableRecord* pMs = nullptr;
    AcDbObjectId dotId;
    if (acdbOpenObject(pMs, pTarget->modelSpaceId(), AcDb::kForWrite) != Acad::eOk) {
        delete pDot;
        acutRelRb(pChain);
        return false;
    }
    if (pMs->appendAcDbEntity(dotId, pDot) != Acad::eOk) {
        delete pDot;
        pDot = nullptr;
    }
    pMs->close();
    if (pDot) {
        bOk = SetXDataValue(pTarget, pDot, TZ_KKDOTPT_FLAG, 1000, L"") && bOk;
        pDot->close();
    }
    AcDbEntity* pAgain = nullptr;
    if (acdbOpenObject(pAgain, dotId, AcDb::kForWrite) == Acad::eOk) {
        pAgain->setVisibility(false);
        bOk = WriteExtXrecord(pAgain, TZ_KKDOTPT_FLAG, pChain) == 1 && bOk;
        pAgain->close();
    } else {
        bOk = false;
    }
    acutRelRb(pChain);
    return bOk;
}

bool ReadRecommendedPairs(AcDbDatabase* pDb, CStringArray& pairs) {
    pairs.clear();
    resbuf* pChain = nullptr;
    if (ReadNamedXrecord(pDb, TZ_SYMB1LIB_DICITIONARY, TZ_SYMB1LIB_XRECORD, pChain)) {
        StringsFromChain(pChain, pairs);
        acutRelRb(pChain);
    }
    if (!pairs.empty())
        return true;
    ForEachModelSpaceEntity(pDb, [&](AcDbObjectId, AcDbEntity& ent) {
        if (!HasXData(&ent, TZ_FUNCENTERPT_FLAG))
            return true;
        resbuf* pExt = nullptr;
        if (!ReadExtXrecord(&ent, TZ_SYMB_BOMANDLABEL, pExt))
            return true;
        StringsFromChain(pExt, pairs);
        acutRelRb(pExt);
        return false;
    });
    return !pairs.empty();
}

std::wstring FindPairValue(const CStringArray& pairs, const std::wstring& strKey) {
    for (size_t i = 0; i + 1 < pairs.size(); ++i)
        if (CompareNoCase(StrTrim(pairs[i]), StrTrim(strKey)) == 0)
            return pairs[i + 1];
    return L"";
}

bool IsValidBlockName(const std::wstring& strName) {
    AcDbBlockTableRecord scratch;
    return !strName.empty() && scratch.setName(strName) == Acad::eOk;
}
