// Symbol kinds, names, two-way linked texts and the small marks of a symbol's block reference.
#include "drawingdata/SymbolReader.h"

#include "base/StrUtil.h"
#include "drawingdata/GetTextFromMText.h"
#include "drawingdata/RecordKeys.h"
#include "drawingdata/Records.h"

#include <cmath>

namespace {

bool BlockNameOf(const AcDbBlockReference* pRef, std::wstring& outName) {
    AcDbBlockTableRecord* pRec = nullptr;
    if (acdbOpenObject(pRec, pRef->blockTableRecord(), AcDb::kForRead) != Acad::eOk)
        return false;
    outName = pRec->name();
    pRec->close();
    return true;
}

std::wstring FirstString(const AcDbEntity* pEnt, const wchar_t* pApp) {
    std::wstring s;
    GetXDataValue(pEnt, pApp, 1000, s);
    return s;
}

// The text behind a forward link whose text links back to the entity.
bool FollowLink(AcDbDatabase* pDb, const AcDbEntity* pEnt, const wchar_t* pForward,
                const wchar_t* pBack, std::wstring& outText, std::wstring& outHandle) {
    std::wstring handle;
    if (!GetXDataValue(pEnt, pForward, 1005, handle))
        return false;
    AcDbEntity* pText = nullptr;
    if (acdbOpenObject(pText, IdOfHandle(pDb, handle), AcDb::kForRead) != Acad::eOk)
        return false;
    bool bOk = false;
    if (HasBackLink(pText, pBack, HandleText(pEnt))) {
        if (auto* pT = dynamic_cast<AcDbText*>(pText)) {
            outText = pT->textString();
            bOk = true;
        } else if (auto* pM = dynamic_cast<AcDbMText*>(pText)) {
            outText = CGetTextFromMText().GetPlainText(pM->contents());
            bOk = true;
        }
    }
    pText->close();
    if (bOk)
        outHandle = handle;
    return bOk;
}

} // namespace

std::wstring HandleText(const AcDbObject* pObj) {
    return pObj ? pObj->handle().text() : std::wstring();
}

AcDbObjectId IdOfHandle(AcDbDatabase* pDb, const std::wstring& handleText) {
    AcDbHandle h(handleText.c_str());
    AcDbObjectId id;
    if (!pDb || h.isNull() || pDb->getAcDbObjectId(id, false, h) != Acad::eOk)
        return AcDbObjectId::kNull;
    return id;
}

void GetXDataStrings(const AcDbObject* pObj, const std::wstring& strApp, int nGroupCode,
                     CStringArray& out) {
    if (!pObj)
        return;
    resbuf* pChain = pObj->xData(strApp.c_str());
    for (const resbuf* p = pChain ? pChain->rbnext : nullptr; p; p = p->rbnext)
        if (p->restype == nGroupCode && acdbGroupCodeToType(nGroupCode) == RTSTR)
            out.push_back(p->resval.rstring);
    acutRelRb(pChain);
}

bool HasBackLink(const AcDbObject* pText, const std::wstring& strApp, const std::wstring& handle) {
    if (!dynamic_cast<const AcDbText*>(pText) && !dynamic_cast<const AcDbMText*>(pText))
        return false;
    CStringArray backs;
    GetXDataStrings(pText, strApp, 1005, backs);
    for (const std::wstring& b : backs)
        if (EqualsNoCase(b, handle))
            return true;
    return false;
}

int ClassifySymbol(const AcDbEntity* pEnt) {
    auto* pRef = dynamic_cast<const AcDbBlockReference*>(pEnt);
    if (!pRef)
        return SYMB_NOT_BLOCKREF;
    AcDbExtents ext;
    if (pRef->getGeomExtents(ext) != Acad::eOk || !(ext.maxPoint().x > ext.minPoint().x) ||
        !(ext.maxPoint().y > ext.minPoint().y))
        return SYMB_EMPTY_EXTENTS;
    std::wstring name;
    BlockNameOf(pRef, name);
    if (EqualsNoCase(StrLeft(name, 2), L"*U")) {
        if (HasXData(pEnt, TZ_SYMB2_MULTI))
            return SYMB_MULTI_TERMINAL;
        if (HasXData(pEnt, TZ_SYMB2_PART2LIB))
            return SYMB_RELAY;
        return SYMB_ANONYMOUS;
    }
    if (HasXData(pEnt, TZ_SYMB2_LABEL))
        return SYMB_SECOND_LEVEL;
    for (const wchar_t* pApp : {TZ_SYMB1_LABEL, TZ_SYMB1_TYPE, TZ_SYMB1_CODE, TZ_SYMB1_NAME})
        if (HasXData(pEnt, pApp))
            return SYMB_FIRST_LEVEL;
    return SYMB_PLAIN_BLOCK;
}

int GetSymbolNameAndKind(const AcDbEntity* pEnt, std::wstring& outName, std::wstring& outKind) {
    outName.clear();
    outKind.clear();
    int nCode = ClassifySymbol(pEnt);
    if (nCode <= SYMB_EMPTY_EXTENTS)
        return 0;
    BlockNameOf(static_cast<const AcDbBlockReference*>(pEnt), outName);
    switch (nCode) {
    case SYMB_SECOND_LEVEL:
        outKind = L"二次符号";
        return 1;
    case SYMB_MULTI_TERMINAL:
        outName = FirstString(pEnt, TZ_SYMB2_MULTI);
        outKind = L"多端元件";
        return 1;
    case SYMB_RELAY:
        outName = FirstString(pEnt, TZ_SYMB2_PART2LIB);
        outKind = L"继电元件";
        return 1;
    case SYMB_ANONYMOUS:
        outKind = L"无名块";
        return 0;
    default:
        outKind = L"普通图块";
        return 0;
    }
}

int GetSymbolLabel(AcDbDatabase* pDb, const AcDbEntity* pEnt, std::wstring& outLabel,
                   std::wstring& outTextHandle) {
    outLabel.clear();
    outTextHandle.clear();
    if (!dynamic_cast<const AcDbBlockReference*>(pEnt))
        return 0;
    if (!FollowLink(pDb, pEnt, TZ_SYMB2_LABEL, TZ_SYMB2_LABEL, outLabel, outTextHandle))
        outLabel.clear();
    StrReplace(outLabel, L"：", L":");
    outLabel = StrTrim(outLabel);
    return 1;
}

int GetSymbolLocation(AcDbDatabase* pDb, const AcDbEntity* pEnt,
                      const std::wstring& defaultLocation, std::wstring& outLocation) {
    outLocation = defaultLocation;
    if (!dynamic_cast<const AcDbBlockReference*>(pEnt))
        return 0;
    std::wstring text, handle;
    if (FollowLink(pDb, pEnt, TZ_SYMB2_location, TZ_SYMB2_Location, text, handle) && !text.empty())
        outLocation = text;
    return 1;
}

std::wstring GetSymbolSpecial(const AcDbEntity* pEnt) {
    return FirstString(pEnt, TZ_SYMB2_SPECIAL);
}

bool IsInternalComponent(const AcDbEntity* pEnt) {
    return GetSymbolSpecial(pEnt) == SPECIAL_INTERNAL_COMPONENT;
}

std::wstring GetSymbolOrderNo(const AcDbEntity* pEnt) {
    return FirstString(pEnt, TZ_SYMB2_SymbJxOrderNo);
}

bool IsMainSymbol(const AcDbEntity* pEnt) {
    return HasXData(pEnt, TZ_SYMB2_MAIN);
}

bool GetTextOfHandle(AcDbDatabase* pDb, const std::wstring& handleText, std::wstring& outText) {
    AcDbEntity* pEnt = nullptr;
    if (acdbOpenObject(pEnt, IdOfHandle(pDb, handleText), AcDb::kForRead) != Acad::eOk)
        return false;
    bool bOk = true;
    if (auto* pT = dynamic_cast<AcDbText*>(pEnt))
        outText = pT->textString();
    else if (auto* pM = dynamic_cast<AcDbMText*>(pEnt))
        outText = CGetTextFromMText().GetPlainText(pM->contents());
    else
        bOk = false;
    pEnt->close();
    return bOk;
}

int ClassifySegment(const AcGePoint3d& p, const AcGePoint3d& q) {
    double dx = std::fabs(p.x - q.x), dy = std::fabs(p.y - q.y);
    if (dx == 0)
        return 1;
    if (dy == 0)
        return 0;
    if (dx > dy && dy / dx * 100 < 5)
        return 0;
    if (dx <= dy && dx / dy * 100 < 5)
        return 1;
    return 2;
}

double RotationToDegrees(double r) {
    if (std::fabs(r - 1.571) <= 0.001)
        return 90;
    if (std::fabs(r - 3.142) <= 0.001)
        return 180;
    if (std::fabs(r - 4.712) <= 0.001)
        return 270;
    return r * 180 / 3.1415926;
}
