// Wire lines, junction dots and their equipotential sets.
#include "drawingdata/EqualLineArray.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "drawingdata/GetTextFromMText.h"
#include "drawingdata/ModelSpace.h"
#include "drawingdata/RecordKeys.h"
#include "drawingdata/Records.h"
#include "drawingdata/SymbolReader.h"
#include "drawingdata/SymbolTerminals.h"
#include "settings/DataTables.h"
#include "settings/ReadAworkSys.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double kFrameMargin = 0.5;

double Along(const CTzHorOrVerLineInfo& l, const AcGePoint3d& p) {
    return l.isHorizontal ? p.x : p.y;
}

double Distance2d(const AcGePoint3d& a, const AcGePoint3d& b) {
    return std::hypot(a.x - b.x, a.y - b.y);
}

CTzHorOrVerLineInfo* MakeLineInfo(AcDbObjectId id, const AcDbLine& line) {
    AcGePoint3d s(line.startPoint().x, line.startPoint().y, 0);
    AcGePoint3d e(line.endPoint().x, line.endPoint().y, 0);
    int nClass = ClassifySegment(s, e);
    if (nClass == 2)
        return nullptr;
    auto* p = new CTzHorOrVerLineInfo;
    p->isHorizontal = nClass == 0 ? 1 : 0;
    p->startIsLow = (p->isHorizontal ? s.x <= e.x : s.y <= e.y) ? 1 : 0;
    p->low = p->startIsLow ? s : e;
    p->high = p->startIsLow ? e : s;
    p->fixed = p->isHorizontal ? p->low.y : p->low.x;
    p->lineId = id;
    return p;
}

bool BoardFrameOf(const AcDbEntity& ent, STRUCT_BOARD_FRAME& frame) {
    AcGePoint3d p;
    if (auto* pText = dynamic_cast<const AcDbText*>(&ent))
        p = pText->isDefaultAlignment() ? pText->position() : pText->alignmentPoint();
    else if (auto* pM = dynamic_cast<const AcDbMText*>(&ent))
        p = pM->location();
    else
        return false;
    if (!HasXData(&ent, DZP_NAME))
        return false;
    AcGePoint3d o;
    double w = 0, h = 0;
    GetXDataValue(&ent, DZB_ORIGINPOINT_POS, 1010, o);
    GetXDataValue(&ent, DZB_TOTAL_WIDTH_WL, 1040, w);
    GetXDataValue(&ent, DZB_TOTAL_HEIGHT_HL, 1040, h);
    if (std::fabs(o.x) - std::fabs(o.y) > 0)
        frame = {p.x - o.x, p.y - o.y, w, h};
    else
        frame = {p.x - o.x, p.y + o.y, h, w};
    return true;
}

bool InFrame(const AcGePoint3d& p, const STRUCT_BOARD_FRAME& f) {
    return p.x >= f.x - kFrameMargin && p.x <= f.x + f.width + kFrameMargin &&
           p.y >= f.y - f.height - kFrameMargin && p.y <= f.y + kFrameMargin;
}

} // namespace

int PointOnLine(const AcGePoint3d& p, const AcGePoint3d& a, const AcGePoint3d& b) {
    int nClass = ClassifySegment(a, b);
    if (nClass == 2)
        return -1;
    double d = GetDistLimit();
    bool bVertical = nClass == 1;
    double across = bVertical ? std::fabs(p.x - a.x) : std::fabs(p.y - a.y);
    double pv = bVertical ? p.y : p.x, av = bVertical ? a.y : a.x, bv = bVertical ? b.y : b.x;
    if (across > d)
        return -1;
    if (std::fabs(pv - av) <= d)
        return 1;
    if (std::fabs(pv - bv) <= d)
        return 2;
    return pv > std::min(av, bv) && pv < std::max(av, bv) ? 0 : -1;
}

CEqualLineArray::CEqualLineArray(AcDbDatabase* pDb) : m_pDb(pDb), m_dLimit(GetDistLimit()) {
    ReadJunctionDots();
    ReadWireLines();
}

CEqualLineArray::~CEqualLineArray() = default;

void CEqualLineArray::ReadWireLines() {
    lines.RemoveAll();
    std::vector<AcGePoint3d> symbolPoints;
    std::vector<STRUCT_BOARD_FRAME> frames;
    ForEachModelSpaceEntity(m_pDb, [&](AcDbObjectId, const AcDbEntity& ent) {
        STRUCT_BOARD_FRAME frame;
        if (BoardFrameOf(ent, frame)) {
            frames.push_back(frame);
            return;
        }
        auto* pRef = dynamic_cast<const AcDbBlockReference*>(&ent);
        if (!pRef)
            return;
        int nKind = ClassifySymbol(pRef);
        CStringArray names;
        std::vector<AcGePoint3d> points;
        if (nKind >= 2 && nKind != 4 && GetSymbolTerminalPoints(pRef, names, points))
            symbolPoints.insert(symbolPoints.end(), points.begin(), points.end());
    });
    bool bAnyLayer = CReadAworkSys().GetSoftwareTag() != 0;
    ForEachModelSpaceEntity(m_pDb, [&](AcDbObjectId id, const AcDbEntity& ent) {
        auto* pLine = dynamic_cast<const AcDbLine*>(&ent);
        if (!pLine || ent.layer() == L"MXB" || (!bAnyLayer && ent.layer() != L"CONNECT"))
            return;
        CTzHorOrVerLineInfo* pInfo = MakeLineInfo(id, *pLine);
        if (!pInfo)
            return;
        for (const STRUCT_BOARD_FRAME& f : frames)
            if (InFrame(pInfo->low, f) && InFrame(pInfo->high, f)) {
                delete pInfo;
                return;
            }
        lines.Add(pInfo);
    });
    IndexLines();
    if (!connectedOnly)
        return;
    CGridIndex points(4 * m_dLimit);
    for (const AcGePoint3d& p : symbolPoints)
        points.Add(p.x, p.y, p.x, p.y);
    std::vector<char> marked(lines.size(), 0);
    std::vector<int> near;
    for (size_t n = 0; n < lines.size(); ++n) {
        bool bSeed = false;
        for (const AcGePoint3d& end : {lines[n]->low, lines[n]->high}) {
            points.Query(end.x - m_dLimit, end.y - m_dLimit, end.x + m_dLimit, end.y + m_dLimit,
                         near);
            for (int i : near)
                bSeed = bSeed || Distance2d(symbolPoints[i], end) <= m_dLimit;
        }
        if (bSeed)
            Flood(static_cast<int>(n), marked, nullptr);
    }
    std::vector<CTzHorOrVerLineInfo*> all = lines.Release();
    for (size_t n = 0; n < all.size(); ++n) {
        if (marked[n])
            lines.Add(all[n]);
        else
            delete all[n];
    }
    IndexLines();
}

void CEqualLineArray::ReadJunctionDots() {
    ForEachModelSpaceEntity(m_pDb, [&](AcDbObjectId id, const AcDbEntity& ent) {
        auto* pPl = dynamic_cast<const AcDbPolyline*>(&ent);
        if (!pPl || pPl->numVerts() < 2 || !HasXData(pPl, TZ_CONNECT_DOT))
            return;
        AcGePoint3d a, b;
        pPl->getPointAt(0, a);
        pPl->getPointAt(1, b);
        dotCenters.emplace_back((a.x + b.x) / 2, (a.y + b.y) / 2, 0);
        dotVertices.emplace_back(a.x, a.y, 0);
        dotIds.push_back(id);
    });
    IndexDots();
}

void CEqualLineArray::IndexDots() {
    m_pDotIndex = std::make_unique<CGridIndex>(4 * m_dLimit);
    m_dMaxDotReach = 0;
    for (size_t i = 0; i < dotCenters.size(); ++i) {
        const AcGePoint3d& m = dotCenters[i];
        m_pDotIndex->Add(m.x, m.y, m.x, m.y);
        m_dMaxDotReach = std::max(m_dMaxDotReach, std::fabs(m.x - dotVertices[i].x) * 2);
    }
}

void CEqualLineArray::IndexLines() {
    double dTotal = 0;
    for (CTzHorOrVerLineInfo* p : lines)
        dTotal += Distance2d(p->low, p->high);
    double dCell = lines.empty() ? 1.0 : dTotal / static_cast<double>(lines.size());
    m_pLineIndex = std::make_unique<CGridIndex>(std::max(dCell, 4 * m_dLimit));
    for (CTzHorOrVerLineInfo* p : lines)
        m_pLineIndex->Add(p->low.x, p->low.y, p->high.x, p->high.y);
    m_neighbours.assign(lines.size(), {});
    m_bNeighboursKnown.assign(lines.size(), 0);
}

const std::vector<int>& CEqualLineArray::Neighbours(int n) {
    if (m_bNeighboursKnown[n])
        return m_neighbours[n];
    const CTzHorOrVerLineInfo& a = *lines[n];
    double m = std::max(2 * m_dLimit, 2 * m_dMaxDotReach) + 1e-9;
    std::vector<int> near;
    m_pLineIndex->Query(a.low.x - m, a.low.y - m, a.high.x + m, a.high.y + m, near);
    std::vector<int>& out = m_neighbours[n];
    for (int i : near)
        if (i != n && AreConnected(a, *lines[i]))
            out.push_back(i);
    m_bNeighboursKnown[n] = 1;
    return out;
}

void CEqualLineArray::Flood(int nStart, std::vector<char>& marked, std::vector<int>* pOrder) {
    if (marked[nStart])
        return;
    marked[nStart] = 1;
    if (pOrder)
        pOrder->push_back(nStart);
    std::vector<std::pair<int, size_t>> stack{{nStart, 0}};
    while (!stack.empty()) {
        auto [nLine, nNext] = stack.back();
        const std::vector<int>& around = Neighbours(nLine);
        if (nNext >= around.size()) {
            stack.pop_back();
            continue;
        }
        stack.back().second = nNext + 1;
        int nOther = around[nNext];
        if (marked[nOther])
            continue;
        marked[nOther] = 1;
        if (pOrder)
            pOrder->push_back(nOther);
        stack.emplace_back(nOther, 0);
    }
}

bool CEqualLineArray::AreConnected(const CTzHorOrVerLineInfo& a,
                                   const CTzHorOrVerLineInfo& b) const {
    double d = m_dLimit;
    if (a.isHorizontal == b.isHorizontal) {
        if (std::fabs(a.fixed - b.fixed) > d)
            return false;
        double lo = Along(b, b.low) - d, hi = Along(b, b.high) + d;
        double al = Along(a, a.low), ah = Along(a, a.high);
        if ((al > lo && al < hi) || (ah > lo && ah < hi))
            return true;
        return BridgedByDot(a, b);
    }
    const CTzHorOrVerLineInfo& h = a.isHorizontal ? a : b;
    const CTzHorOrVerLineInfo& v = a.isHorizontal ? b : a;
    AcGePoint3d c(v.fixed, h.fixed, 0);
    if (!(c.x > h.low.x - d && c.x < h.high.x + d && c.y > v.low.y - d && c.y < v.high.y + d))
        return false;
    bool bEndH = std::fabs(c.x - h.low.x) <= d || std::fabs(c.x - h.high.x) <= d;
    bool bEndV = std::fabs(c.y - v.low.y) <= d || std::fabs(c.y - v.high.y) <= d;
    if (BridgedByDot(h, v))
        return true;
    if (bEndH || bEndV)
        return !IsFourWay(c) || HasDotAt(c);
    return HasDotAt(c);
}

bool CEqualLineArray::HasDotAt(const AcGePoint3d& c) const {
    double r = m_dLimit * 0.5;
    m_pDotIndex->Query(c.x - r, c.y - r, c.x + r, c.y + r, m_scratch);
    for (int i : m_scratch)
        if (Distance2d(dotCenters[i], c) <= r)
            return true;
    return false;
}

bool CEqualLineArray::DotTouches(size_t nDot, const CTzHorOrVerLineInfo& l) const {
    const AcGePoint3d& m = dotCenters[nDot];
    double r = std::fabs(m.x - dotVertices[nDot].x) * 2;
    double along = Along(l, m), across = l.isHorizontal ? m.y - l.fixed : m.x - l.fixed;
    if (along >= Along(l, l.low) && along <= Along(l, l.high))
        return std::fabs(across) <= r;
    return Distance2d(m, l.low) <= r || Distance2d(m, l.high) <= r;
}

bool CEqualLineArray::BridgedByDot(const CTzHorOrVerLineInfo& a,
                                   const CTzHorOrVerLineInfo& b) const {
    double r = m_dMaxDotReach;
    std::vector<int> near;
    m_pDotIndex->Query(a.low.x - r, a.low.y - r, a.high.x + r, a.high.y + r, near);
    for (int i : near)
        if (DotTouches(i, a) && DotTouches(i, b))
            return true;
    return false;
}

bool CEqualLineArray::IsFourWay(const AcGePoint3d& c) const {
    double d = m_dLimit;
    std::vector<int> near;
    m_pLineIndex->Query(c.x - d, c.y - d, c.x + d, c.y + d, near);
    bool bLeft = false, bRight = false, bUp = false, bDown = false, bAnyA = false, bAnyB = false;
    for (int i : near) {
        const CTzHorOrVerLineInfo& l = *lines[i];
        if (PointOnLine(c, l.high, l.low) < 0)
            continue;
        if (ClassifySegment(l.high, l.low) == 1) { // the x of vertical lines: as it was meant
            bAnyA = true;
            bLeft = bLeft || l.low.x <= c.x - d || l.high.x <= c.x - d;
            bRight = bRight || l.low.x >= c.x + d || l.high.x >= c.x + d;
        } else {
            bAnyB = true;
            bUp = bUp || l.low.y >= c.y + d || l.high.y >= c.y + d;
            bDown = bDown || l.low.y <= c.y - d || l.high.y <= c.y - d;
        }
    }
    return bAnyA && bAnyB && bLeft && bRight && bUp && bDown;
}

void CEqualLineArray::BuildEqualLines(CEqualLineInfoArray& out) {
    std::vector<char> pending(lines.size(), 1);
    size_t nFirst = 0;
    std::vector<int> order;
    while (true) {
        while (nFirst < pending.size() && !pending[nFirst])
            ++nFirst;
        if (nFirst >= pending.size())
            break;
        std::vector<char> marked(lines.size(), 0);
        order.clear();
        Flood(static_cast<int>(nFirst), marked, &order);
        group.clear();
        auto* pSet = out.Add(new COneEqualLineInfo);
        for (int n : order) {
            group.push_back(lines[n]);
            pending[n] = 0;
            AcDbObjectId lineId = lines[n]->lineId, textId;
            pSet->lineIds.push_back(lineId);
            std::wstring text;
            if (GetWireNameOfLine(m_pDb, lineId, textId, text) && !textId.isNull() &&
                !text.empty()) {
                pSet->names.push_back(text);
                pSet->nameTextIds.push_back(textId);
                pSet->nameLineIds.push_back(lineId);
            }
        }
    }
}

bool GetWireNameOfLine(AcDbDatabase* pDb, AcDbObjectId line, AcDbObjectId& outTextId,
                       std::wstring& outText) {
    outTextId = AcDbObjectId::kNull;
    outText.clear();
    std::wstring handle;
    AcDbEntity* pLine = nullptr;
    if (acdbOpenObject(pLine, line, AcDb::kForRead) != Acad::eOk)
        return false;
    bool bLinked = GetXDataValue(pLine, TEXTHANDLE, 1005, handle);
    std::wstring lineHandle = HandleText(pLine);
    pLine->close();
    AcDbObjectId textId = IdOfHandle(pDb, handle);
    AcDbEntity* pText = nullptr;
    if (!bLinked || acdbOpenObject(pText, textId, AcDb::kForRead) != Acad::eOk)
        return false;
    bool bOk = HasBackLink(pText, LINEHANDLE, lineHandle);
    if (bOk) {
        if (auto* pT = dynamic_cast<AcDbText*>(pText))
            outText = StrTrim(pT->textString());
        else if (auto* pM = dynamic_cast<AcDbMText*>(pText))
            outText = StrTrim(CGetTextFromMText().GetPlainText(pM->contents()));
        outTextId = textId;
    }
    pText->close();
    return bOk;
}

void GetEqualLines(AcDbDatabase* pDb, CEqualLineInfoArray& out, bool bNameUnnamed) {
    CEqualLineArray lines(pDb);
    size_t nFirst = out.size();
    lines.BuildEqualLines(out);
    if (!bNameUnnamed)
        return;
    int nUnnamed = 0;
    for (size_t i = nFirst; i < out.size(); ++i) {
        if (!out[i]->names.empty())
            continue;
        out[i]->names.push_back(Format(L"未定义%d", ++nUnnamed));
        out[i]->nameTextIds.push_back(AcDbObjectId::kNull);
        out[i]->nameLineIds.push_back(AcDbObjectId::kNull);
    }
}
