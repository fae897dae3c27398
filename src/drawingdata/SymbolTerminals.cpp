// Terminal reading of a symbol's block definition and reference, their order and orientation.
#include "drawingdata/SymbolTerminals.h"

#include "base/StrUtil.h"
#include "drawingdata/DrawingRecords.h"
#include "drawingdata/LabelText.h"
#include "drawingdata/RecordKeys.h"
#include "drawingdata/Records.h"
#include "drawingdata/SymbolReader.h"

#include <cmath>

namespace {

// Visits the live entities of the reference's block definition, each open for read.
template <class F> void ForEachBlockEntity(const AcDbBlockReference* pRef, F&& visit) {
    AcDbBlockTableRecord* pRec = nullptr;
    if (!pRef || acdbOpenObject(pRec, pRef->blockTableRecord(), AcDb::kForRead) != Acad::eOk)
        return;
    AcDbBlockTableRecordIterator* pIter = nullptr;
    pRec->newIterator(pIter);
    for (; !pIter->done(); pIter->step()) {
        AcDbEntity* pEnt = nullptr;
        if (pIter->getEntity(pEnt, AcDb::kForRead) != Acad::eOk)
            continue;
        visit(*pEnt);
        pEnt->close();
    }
    delete pIter;
    pRec->close();
}

// A terminal point of either form: name, position and, with bFull, its marks.
CDoubleNodeInfo* ReadTermPoint(AcDbDatabase* pTextDb, const AcDbEntity& ent, const AcGeMatrix3d& m,
                               bool bFull) {
    if (!IsDotEntity(&ent))
        return nullptr;
    std::wstring name, handle;
    if (!GetXDataValue(&ent, TZ_SYMB1LIB_TERMPOINT, 1000, name)) {
        if (!GetXDataValue(&ent, TZ_SYMB1LIB_TERMPOINT, 1005, handle))
            return nullptr;
        GetTextOfHandle(pTextDb, handle, name);
    }
    auto* pNode = new CDoubleNodeInfo;
    pNode->name = name;
    AcGePoint3d p = m.apply(GetDotPoint(static_cast<const AcDbPolyline*>(&ent)));
    pNode->x = p.x;
    pNode->y = p.y;
    if (bFull) {
        GetXDataValue(&ent, TZ_PARTLIB_DOTCONDIRECT, 1000, pNode->direction);
        pNode->isPlugIn = HasXData(&ent, TZ_SYMB_CZTERM) ? 1 : 0;
    }
    return pNode;
}

// The last value of the group in the application's chain.
std::wstring LastValue(const AcDbObject* pObj, const std::wstring& strApp, int nGroupCode) {
    CStringArray values;
    GetXDataStrings(pObj, strApp, nGroupCode, values);
    return values.empty() ? std::wstring() : values.back();
}

CDoubleNodeInfo* FindNode(const COwningArray<CDoubleNodeInfo>& nodes, const std::wstring& name) {
    for (CDoubleNodeInfo* p : nodes)
        if (p->name == name)
            return p;
    return nullptr;
}

// Terminal texts on the reference whose text links back to it.
void ReadTerminalTexts(AcDbDatabase* pDb, const AcDbBlockReference* pRef,
                       const COwningArray<CDoubleNodeInfo>& nodes) {
    std::wstring strRef = HandleText(pRef);
    for (size_t n = 1; n <= nodes.size(); ++n) {
        std::wstring app = TZ_SYMB2_TERM_TEXT_ + std::to_wstring(n);
        std::wstring name = LastValue(pRef, app, 1000);
        std::wstring handle = LastValue(pRef, app, 1005);
        AcDbText* pText = nullptr;
        if (acdbOpenObject(pText, IdOfHandle(pDb, handle), AcDb::kForRead) != Acad::eOk)
            continue;
        if (HasBackLink(pText, app, strRef)) {
            if (CDoubleNodeInfo* pNode = FindNode(nodes, name)) {
                pNode->text = pText->textString();
                pNode->textHandle = handle;
            }
        }
        pText->close();
    }
}

void ReadGreatElectricMarks(const AcDbBlockReference* pRef,
                            const COwningArray<CDoubleNodeInfo>& nodes) {
    for (CDoubleNodeInfo* p : nodes)
        p->isGreatElectric = 0;
    for (size_t n = 1; n <= nodes.size(); ++n) {
        CStringArray names;
        GetXDataStrings(pRef, TZ_SYMB2_GreatElectricTerm_ + std::to_wstring(n), 1000, names);
        if (names.empty())
            continue;
        if (CDoubleNodeInfo* pNode = FindNode(nodes, names.back()))
            pNode->isGreatElectric = 1;
    }
}

// Inserts in order: behind the last when not below it, else before the first greater
// (bBeforeEqual: greater or equal).
template <class Less>
void InsertSorted(CSymbTermInfoArray& list, STRUCT_SYMB2TERMINFO&& info, Less less,
                  bool bBeforeEqual) {
    if (list.empty() || !less(info, list.back())) {
        list.push_back(std::move(info));
        return;
    }
    auto it = list.begin();
    while (it != list.end() && !(less(info, *it) || (bBeforeEqual && !less(*it, info))))
        ++it;
    list.insert(it, std::move(info));
}

std::wstring DirectionOfWorkingDrawing() {
    resbuf* pChain = nullptr;
    AcDbDatabase* pDb = acdbHostApplicationServices()->workingDatabase();
    if (!ReadNamedXrecord(pDb, TZ_SYMB1LIB_DICITIONARY, TZ_SYMB1LIB_XRECORD, pChain))
        return L"";
    CStringArray strings;
    StringsFromChain(pChain, strings);
    acutRelRb(pChain);
    for (size_t i = 0; i + 1 < strings.size(); ++i)
        if (EqualsNoCase(strings[i], KEY_DIRECTION))
            return strings[i + 1];
    return L"";
}

std::wstring DirectionOfTerminalPoints(const AcDbBlockReference* pRef) {
    std::wstring found;
    ForEachBlockEntity(pRef, [&](const AcDbEntity& ent) {
        if (!found.empty() || !IsDotEntity(&ent) || !HasXData(&ent, TZ_SYMB1LIB_TERMPOINT))
            return;
        GetXDataValue(&ent, TZ_DIRECTION_SYMBLIB, 1000, found);
    });
    return found;
}

} // namespace

int CGetSymbData::ReadSymbolNodes(AcDbDatabase* pDb, const AcDbBlockReference* pRef,
                                  COwningArray<CDoubleNodeInfo>& outNodes) {
    if (!pRef)
        return 0;
    if (!pDb)
        pDb = pRef->database();
    AcGeMatrix3d m = pRef->blockTransform();
    std::vector<STRUCT_TERMTEXTPOINT> textPoints;
    ForEachBlockEntity(pRef, [&](const AcDbEntity& ent) {
        std::wstring term;
        if (GetXDataValue(&ent, TZ_SYMB1LIB_TERMTEXTPOINT, 1005, term) && IsDotEntity(&ent))
            textPoints.push_back({term, HandleText(&ent),
                                  m.apply(GetDotPoint(static_cast<const AcDbPolyline*>(&ent)))});
    });
    size_t nFirst = outNodes.size();
    ForEachBlockEntity(pRef, [&](const AcDbEntity& ent) {
        CDoubleNodeInfo* pNode = ReadTermPoint(pDb, ent, m, true);
        if (!pNode)
            return;
        std::wstring own = HandleText(&ent);
        for (const STRUCT_TERMTEXTPOINT& tp : textPoints) {
            if (!EqualsNoCase(tp.termHandle, own))
                continue;
            pNode->hasTextPoint = 1;
            pNode->textX = tp.position.x;
            pNode->textY = tp.position.y;
            break;
        }
        outNodes.Add(pNode);
    });
    if (outNodes.size() == nFirst)
        return 0;
    ReadTerminalTexts(pDb, pRef, outNodes);
    ReadGreatElectricMarks(pRef, outNodes);
    return 1;
}

int CGetSymbData::ReadTerminalPoints(const AcDbBlockReference* pRef,
                                     COwningArray<CDoubleNodeInfo>& outNodes) {
    AcDbDatabase* pDb = acdbHostApplicationServices()->workingDatabase();
    if (!pRef)
        return 0;
    AcGeMatrix3d m = pRef->blockTransform();
    size_t nFirst = outNodes.size();
    ForEachBlockEntity(pRef, [&](const AcDbEntity& ent) {
        if (CDoubleNodeInfo* pNode = ReadTermPoint(pDb, ent, m, false))
            outNodes.Add(pNode);
    });
    return outNodes.size() > nFirst ? 1 : 0;
}

void CGetSymbData::SortSymbolTerminals(const COwningArray<CDoubleNodeInfo>& nodes,
                                       CSymbTermInfoArray& outInfos) {
    CSymbTermInfoArray digits, others;
    for (const CDoubleNodeInfo* p : nodes) {
        STRUCT_SYMB2TERMINFO info;
        info.name = p->name;
        StrReplace(info.name, L":", L"-");
        info.text = p->text;
        info.textHandle = p->textHandle;
        info.point = AcGePoint3d(p->x, p->y, 0);
        info.hasTextPoint = p->hasTextPoint;
        info.textPoint = AcGePoint3d(p->textX, p->textY, 0);
        info.direction = p->direction;
        info.isPlugIn = p->isPlugIn;
        info.isGreatElectric = p->isGreatElectric;
        if (IsAllDigits(info.name))
            InsertSorted(
                digits, std::move(info),
                [](const auto& a, const auto& b) {
                    return LabelToInt(a.name) < LabelToInt(b.name);
                },
                false);
        else
            InsertSorted(
                others, std::move(info),
                [](const auto& a, const auto& b) { return a.name < b.name; }, true);
    }
    outInfos.insert(outInfos.end(), digits.begin(), digits.end());
    outInfos.insert(outInfos.end(), others.begin(), others.end());
}

int GetSymbolTerminals(AcDbDatabase* pDb, const AcDbBlockReference* pRef,
                       CSymbTermInfoArray& outInfos) {
    outInfos.clear();
    CGetSymbData data;
    if (!data.ReadSymbolNodes(pDb, pRef, data.m_nodes))
        return 0;
    data.SortSymbolTerminals(data.m_nodes, outInfos);
    int nKind = ClassifySymbol(pRef);
    if (nKind == SYMB_MULTI_TERMINAL || nKind == SYMB_RELAY)
        for (STRUCT_SYMB2TERMINFO& info : outInfos)
            if (info.text.empty())
                info.text = info.name;
    return 1;
}

int GetSymbolTerminalPoints(const AcDbBlockReference* pRef, CStringArray& outNames,
                            std::vector<AcGePoint3d>& outPoints) {
    CGetSymbData data;
    data.ReadTerminalPoints(pRef, data.m_nodes);
    for (const CDoubleNodeInfo* p : data.m_nodes) {
        outNames.push_back(p->name);
        outPoints.emplace_back(p->x, p->y, 0);
    }
    return data.m_nodes.empty() ? 0 : 1;
}

int GetTwoTerminalMode(AcDbDatabase* pDb, const AcDbBlockReference* pRef, int& outMode) {
    outMode = 0;
    CSymbTermInfoArray infos;
    GetSymbolTerminals(pDb, pRef, infos);
    if (infos.size() != 2 || !infos[0].text.empty() || !infos[1].text.empty())
        return 0;
    if (ClassifySegment(infos[1].point, infos[0].point) == 2)
        return 0;
    outMode = HasXData(pRef, TZ_SYMB_REVERSE) ? 2 : 1;
    return 1;
}

int GetSymbolOrientation(const AcDbBlockReference* pRef) {
    if (!pRef)
        return 0;
    double dDegrees = RotationToDegrees(pRef->rotation());
    if (dDegrees != 0 && dDegrees != 90 && dDegrees != 180 && dDegrees != 270)
        return 0;
    bool bAlongX = dDegrees == 0 || dDegrees == 180;
    std::wstring direction = DirectionOfWorkingDrawing();
    if (direction.empty())
        direction = DirectionOfTerminalPoints(pRef);
    if (EqualsNoCase(direction, L"水平"))
        return bAlongX ? 1 : 2;
    if (EqualsNoCase(direction, L"垂直"))
        return bAlongX ? 2 : 1;
    if (!direction.empty())
        return 0;
    CGetSymbData data;
    AcDbExtents ext;
    if (data.ReadTerminalPoints(pRef, data.m_nodes) != 1 || data.m_nodes.size() != 1 ||
        pRef->getGeomExtents(ext) != Acad::eOk)
        return 0;
    double cx = (ext.minPoint().x + ext.maxPoint().x) / 2;
    double cy = (ext.minPoint().y + ext.maxPoint().y) / 2;
    double a = std::atan2(data.m_nodes[0]->y - cy, data.m_nodes[0]->x - cx);
    if (a < 0)
        a += 2 * M_PI;
    a = a * 180 / 3.1415926;
    return (a > 45 && a < 135) || (a > 225 && a < 315) ? 2 : 1;
}

bool IsSymbolUpright(const AcDbEntity* pEnt) {
    int nOrientation = GetSymbolOrientation(dynamic_cast<const AcDbBlockReference*>(pEnt));
    if (nOrientation)
        return nOrientation == 2;
    AcDbExtents ext;
    if (!pEnt || pEnt->getGeomExtents(ext) != Acad::eOk)
        return false;
    double w = ext.maxPoint().x - ext.minPoint().x, h = ext.maxPoint().y - ext.minPoint().y;
    if (w > 200 || h > 200)
        return false;
    int nKind = ClassifySymbol(pEnt);
    if (nKind == SYMB_MULTI_TERMINAL || nKind == SYMB_RELAY)
        return false;
    return h > w && std::fabs(h - w) > 0.001;
}
