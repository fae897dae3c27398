// Inner symbols: wire groups, merged runs, symbols on the groups, seeds at no-wire terminals and
// the spread through symbols that take wires on all terminals.
#include "drawingdata/InnerSymbArray.h"

#include "drawingdata/EqualLineArray.h"
#include "drawingdata/GridIndex.h"
#include "drawingdata/ModelSpace.h"
#include "drawingdata/RecordKeys.h"
#include "drawingdata/SymbolReader.h"
#include "drawingdata/SymbolTerminals.h"
#include "settings/DataTables.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <unordered_map>

namespace {

constexpr double kMergeTolerance = 0.2;

struct LINE_ENDS {
    std::wstring handle;
    AcGePoint3d start, end;
    int direction = 0;
    double length = 0;
    bool bRemaining = true;
};

double AlongAxis(int direction, const AcGePoint3d& p) {
    return direction == 0 ? p.x : p.y;
}

// The lines' ends of a group; false when one doesn't open.
bool ReadGroupEnds(AcDbDatabase* pDb, const CStringArray& handles, std::vector<LINE_ENDS>& out) {
    for (const std::wstring& h : handles) {
        AcDbLine* pLine = nullptr;
        if (acdbOpenObject(pLine, IdOfHandle(pDb, h), AcDb::kForRead) != Acad::eOk)
            return false;
        LINE_ENDS e{h, pLine->startPoint(), pLine->endPoint()};
        pLine->close();
        e.direction = ClassifySegment(e.end, e.start);
        e.length = e.start.distanceTo(e.end);
        out.push_back(e);
    }
    return true;
}

// One direction's line ends sorted along the axis, so that a merge looks only near its ends.
struct AXIS_ENDS {
    std::vector<std::pair<double, int>> starts; // start coordinate, line
    std::vector<std::pair<double, int>> ends;   // both end coordinates, line
};

template <class F>
void ForEachNear(const std::vector<std::pair<double, int>>& sorted, double v, F&& visit) {
    double lo = v - kMergeTolerance - 1e-9, hi = v + kMergeTolerance + 1e-9;
    auto it = std::lower_bound(sorted.begin(), sorted.end(), std::make_pair(lo, INT_MIN));
    for (; it != sorted.end() && it->first <= hi; ++it)
        if (std::fabs(it->first - v) <= kMergeTolerance)
            visit(it->second);
}

// The handles of one group as merged runs along an axis: the longest line
// first (the first of equals), then the longest that touches a run's end.
CStringArray MergeRuns(std::vector<LINE_ENDS>& lines) {
    AXIS_ENDS axes[3];
    std::vector<int> byLength(lines.size());
    for (size_t i = 0; i < lines.size(); ++i) {
        const LINE_ENDS& e = lines[i];
        int n = static_cast<int>(i);
        AXIS_ENDS& axis = axes[e.direction];
        axis.starts.emplace_back(AlongAxis(e.direction, e.start), n);
        axis.ends.emplace_back(AlongAxis(e.direction, e.start), n);
        axis.ends.emplace_back(AlongAxis(e.direction, e.end), n);
        byLength[i] = n;
    }
    for (AXIS_ENDS& axis : axes) {
        std::sort(axis.starts.begin(), axis.starts.end());
        std::sort(axis.ends.begin(), axis.ends.end());
    }
    std::stable_sort(byLength.begin(), byLength.end(),
                     [&](int a, int b) { return lines[a].length > lines[b].length; });
    CStringArray result;
    for (int nFirst : byLength) {
        if (!lines[nFirst].bRemaining)
            continue;
        LINE_ENDS& first = lines[nFirst];
        first.bRemaining = false;
        int dir = first.direction;
        double upper = std::max(AlongAxis(dir, first.start), AlongAxis(dir, first.end));
        double lower = std::min(AlongAxis(dir, first.start), AlongAxis(dir, first.end));
        result.push_back(first.handle);
        while (true) {
            // A line starting within the tolerance of both ends is dropped.
            ForEachNear(axes[dir].starts, lower, [&](int i) {
                if (std::fabs(AlongAxis(dir, lines[i].start) - upper) <= kMergeTolerance)
                    lines[i].bRemaining = false;
            });
            int nNext = -1;
            auto consider = [&](int i) {
                const LINE_ENDS& e = lines[i];
                if (e.bRemaining && (nNext < 0 || e.length > lines[nNext].length ||
                                     (e.length == lines[nNext].length && i < nNext)))
                    nNext = i;
            };
            ForEachNear(axes[dir].ends, lower, consider);
            ForEachNear(axes[dir].ends, upper, consider);
            if (nNext < 0)
                break;
            LINE_ENDS& next = lines[nNext];
            next.bRemaining = false;
            result.push_back(next.handle);
            for (double v : {AlongAxis(dir, next.start), AlongAxis(dir, next.end)}) {
                upper = std::max(upper, v);
                lower = std::min(lower, v);
            }
        }
    }
    return result;
}

} // namespace

CTzGetInnerSymbArray::CTzGetInnerSymbArray(AcDbDatabase* pDb) : m_pDb(pDb) {}
CTzGetInnerSymbArray::~CTzGetInnerSymbArray() = default;

bool CTzGetInnerSymbArray::COneSymbInfo::HasNoLineTerminal() const {
    for (const COneSymbTermInfo* t : terminals)
        if (t->noLine)
            return true;
    return false;
}

void CTzGetInnerSymbArray::MergeGroupLines(COwningArray<COneGroupInfo>& groups) {
    std::vector<COneGroupInfo*> all = groups.Release();
    for (COneGroupInfo* pGroup : all) {
        std::vector<LINE_ENDS> ends;
        if (!ReadGroupEnds(m_pDb, pGroup->lineHandles, ends)) {
            delete pGroup;
            continue;
        }
        pGroup->lineHandles = MergeRuns(ends);
        groups.Add(pGroup);
    }
}

CTzGetInnerSymbArray::COneSymbInfo*
CTzGetInnerSymbArray::ReadOneSymbol(const AcDbBlockReference* pRef) {
    int nMode = 0;
    GetTwoTerminalMode(m_pDb, pRef, nMode);
    int nKind = ClassifySymbol(pRef);
    if (nKind != 3 && nKind != 5 && nKind != 6)
        return nullptr;
    CStringArray noLineNames;
    GetXDataStrings(pRef, TZ_SYMB2_NoLineTerm, 1000, noLineNames);
    CSymbTermInfoArray infos;
    GetSymbolTerminals(m_pDb, pRef, infos);
    auto* pSymb = new COneSymbInfo;
    pSymb->handle = HandleText(pRef);
    pSymb->reversed = nMode == 2 ? 1 : 0;
    double d = GetDistLimit();
    std::vector<int> near;
    for (const STRUCT_SYMB2TERMINFO& info : infos) {
        auto* pTerm = pSymb->terminals.Add(new COneSymbTermInfo);
        pTerm->name = info.name;
        pTerm->text = nKind == 3 ? info.text : info.name;
        pTerm->point = info.point;
        pTerm->noLine = info.isPlugIn || std::find(noLineNames.begin(), noLineNames.end(),
                                                   info.name) != noLineNames.end();
        const AcGePoint3d& p = info.point;
        m_pLineIndex->Query(p.x - d, p.y - d, p.x + d, p.y + d, near);
        for (int i : near) {
            int n = PointOnLine(p, m_lineEnds[i].first, m_lineEnds[i].second);
            if (n == 1 || n == 2)
                pTerm->lines.push_back(m_allLines[i]);
        }
    }
    if (pSymb->terminals.size() == 2)
        pSymb->upright = IsSymbolUpright(pRef);
    return pSymb;
}

void CTzGetInnerSymbArray::ConnectSymbols(const COwningArray<COneGroupInfo>& groups,
                                          COwningArray<COneGroupLine>& out) {
    std::unordered_map<std::wstring, std::vector<int>> groupsOfLine;
    for (size_t g = 0; g < groups.size(); ++g) {
        out.Add(new COneGroupLine)->group = groups[g];
        for (const std::wstring& h : groups[g]->lineHandles)
            groupsOfLine[h].push_back(static_cast<int>(g));
    }
    std::vector<std::wstring> lastSide(groups.size());
    std::vector<int> touched;
    for (COneSymbInfo* pSymb : m_symbols) {
        for (size_t t = 0; t < pSymb->terminals.size(); ++t) {
            const COneSymbTermInfo* pTerm = pSymb->terminals[t];
            touched.clear();
            for (AcDbObjectId id : pTerm->lines)
                if (auto it = groupsOfLine.find(id.handle().text()); it != groupsOfLine.end())
                    touched.insert(touched.end(), it->second.begin(), it->second.end());
            std::sort(touched.begin(), touched.end());
            touched.erase(std::unique(touched.begin(), touched.end()), touched.end());
            for (int g : touched) {
                if (pSymb->terminals.size() == 2) {
                    const AcGePoint3d &p = pTerm->point, &o = pSymb->terminals[1 - t]->point;
                    lastSide[g] =
                        pSymb->upright ? (p.y > o.y ? L"上" : L"下") : (o.x > p.x ? L"左" : L"右");
                }
                auto* pEntry = out[g]->connected.Add(new COneConnectedSymbInfo);
                pEntry->symbol = pSymb;
                pEntry->termName = pTerm->name;
                pEntry->termText = pTerm->text;
                pEntry->side = lastSide[g];
            }
        }
    }
}

void CTzGetInnerSymbArray::GetInnerSymbolHandles(CStringArray& outHandles) {
    m_allLines.clear();
    m_lineEnds.clear();
    ForEachModelSpaceEntity(m_pDb, [&](AcDbObjectId id, const AcDbEntity& ent) {
        if (auto* pLine = dynamic_cast<const AcDbLine*>(&ent)) {
            m_allLines.push_back(id);
            m_lineEnds.emplace_back(pLine->startPoint(), pLine->endPoint());
        }
    });
    m_pLineIndex = std::make_unique<CGridIndex>(std::max(1.0, 4 * GetDistLimit()));
    for (const auto& [s, e] : m_lineEnds)
        m_pLineIndex->Add(s.x, s.y, e.x, e.y);

    COwningArray<COneGroupInfo> groups;
    {
        CEqualLineInfoArray sets;
        GetEqualLines(m_pDb, sets, false);
        for (const COneEqualLineInfo* pSet : sets) {
            auto* pGroup = groups.Add(new COneGroupInfo);
            for (AcDbObjectId id : pSet->lineIds)
                pGroup->lineHandles.push_back(id.handle().text());
            pGroup->names = pSet->names;
        }
    }
    MergeGroupLines(groups);

    m_symbols.RemoveAll();
    ForEachModelSpaceEntity(m_pDb, [&](AcDbObjectId, const AcDbEntity& ent) {
        auto* pRef = dynamic_cast<const AcDbBlockReference*>(&ent);
        int nKind = ClassifySymbol(pRef);
        CStringArray names;
        std::vector<AcGePoint3d> points;
        if (!pRef || IsInternalComponent(pRef) || nKind < 3 || nKind == 4 ||
            !GetSymbolTerminalPoints(pRef, names, points))
            return;
        if (COneSymbInfo* pSymb = ReadOneSymbol(pRef))
            m_symbols.Add(pSymb);
    });

    COwningArray<COneGroupLine> groupLines;
    ConnectSymbols(groups, groupLines);
    CollectInner(groupLines, outHandles);
}

void CTzGetInnerSymbArray::CollectInner(const COwningArray<COneGroupLine>& groupLines,
                                        CStringArray& outHandles) {
    std::vector<char> bCandidate(groupLines.size(), 1);
    std::vector<int> inner;
    std::unordered_map<const COneSymbInfo*, std::vector<int>> groupsOfSymbol;
    for (size_t g = 0; g < groupLines.size(); ++g) {
        const auto& connected = groupLines[g]->connected;
        for (const COneConnectedSymbInfo* e : connected)
            groupsOfSymbol[e->symbol].push_back(static_cast<int>(g));
        auto seed = std::find_if(connected.begin(), connected.end(),
                                 [](auto* e) { return e->symbol->HasNoLineTerminal(); });
        if (seed == connected.end())
            continue;
        for (const COneSymbTermInfo* t : (*seed)->symbol->terminals)
            if (t->noLine) {
                if (t->name == (*seed)->termName) {
                    bCandidate[g] = 0;
                    inner.push_back(static_cast<int>(g));
                }
                break;
            }
    }
    for (size_t i = 0; i < inner.size(); ++i)
        for (const COneConnectedSymbInfo* e : groupLines[inner[i]]->connected) {
            if (e->symbol->HasNoLineTerminal())
                continue;
            for (int g : groupsOfSymbol[e->symbol])
                if (bCandidate[g]) {
                    bCandidate[g] = 0;
                    inner.push_back(g);
                }
        }
    for (int g : inner)
        for (const COneConnectedSymbInfo* e : groupLines[g]->connected) {
            if (e->symbol->HasNoLineTerminal())
                continue;
            AcDbObjectId id = IdOfHandle(m_pDb, e->symbol->handle);
            if (!id.isNull())
                outHandles.push_back(id.handle().text());
        }
}

void GetInnerSymbolHandles(AcDbDatabase* pDb, CStringArray& outHandles) {
    CTzGetInnerSymbArray(pDb).GetInnerSymbolHandles(outHandles);
}
