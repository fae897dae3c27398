// Equipotential sets of the wire lines of a model space: which lines touch, with the T, corner,
// crossing and junction-dot rules, and the wire numbers of each set.
#pragma once

#include "drawingdata/GridIndex.h"
#include "drawingdata/OwningArray.h"
#include "host/db/AcDb.h"
#include "shared/fileops/FileOps.h"

#include <memory>
#include <string>
#include <vector>

// One axis-parallel wire; low is the end with the smaller running coordinate.
class CTzHorOrVerLineInfo {
public:
    virtual ~CTzHorOrVerLineInfo() = default;
    AcGePoint3d low, high;
    double fixed = 0; // y of a horizontal line, x of a vertical one
    int isHorizontal = 0;
    int startIsLow = 0;
    AcDbObjectId lineId;
};

// One equipotential set and its wire numbers (a text and its line per name).
class COneEqualLineInfo {
public:
    virtual ~COneEqualLineInfo() = default;
    AcDbObjectIdArray lineIds;
    CStringArray names;
    AcDbObjectIdArray nameTextIds;
    AcDbObjectIdArray nameLineIds;
};
using CEqualLineInfoArray = COwningArray<COneEqualLineInfo>;

// A terminal board frame: lines inside it belong to the board, not the schematic.
struct STRUCT_BOARD_FRAME {
    double x = 0, y = 0, width = 0, height = 0;
};

class CEqualLineArray {
public:
    // Reads the wire lines (pruned to those reaching a terminal) and the junction dots.
    explicit CEqualLineArray(AcDbDatabase* pDb);
    virtual ~CEqualLineArray();

    void BuildEqualLines(CEqualLineInfoArray& out);

    void ReadWireLines();
    void ReadJunctionDots();
    bool AreConnected(const CTzHorOrVerLineInfo& a, const CTzHorOrVerLineInfo& b) const;
    bool HasDotAt(const AcGePoint3d& c) const;
    bool BridgedByDot(const CTzHorOrVerLineInfo& a, const CTzHorOrVerLineInfo& b) const;
    bool IsFourWay(const AcGePoint3d& c) const;

    int connectedOnly = 1;
    AcDbDatabase* m_pDb;
    COwningArray<CTzHorOrVerLineInfo> lines;
    std::vector<CTzHorOrVerLineInfo*> group; // the working set of one flood
    std::vector<AcGePoint3d> dotCenters, dotVertices;
    AcDbObjectIdArray dotIds;

private:
    // Marks every line reached from the start, depth first in list order,
    // appending each newly marked one to pOrder. An explicit stack keeps the
    // order of the recursive walk without its depth.
    void Flood(int nStart, std::vector<char>& marked, std::vector<int>* pOrder);
    const std::vector<int>& Neighbours(int n);
    void IndexLines();
    void IndexDots();
    bool DotTouches(size_t nDot, const CTzHorOrVerLineInfo& line) const;

    double m_dLimit;
    double m_dMaxDotReach = 0;
    std::unique_ptr<CGridIndex> m_pLineIndex, m_pDotIndex;
    std::vector<std::vector<int>> m_neighbours;
    std::vector<char> m_bNeighboursKnown;
    mutable std::vector<int> m_scratch;
};

// The sets of a model space; with bNameUnnamed a set without a wire number
// gets "未定义%d" (numbered from 1) and null ids. The caller owns the sets.
void GetEqualLines(AcDbDatabase* pDb, CEqualLineInfoArray& out, bool bNameUnnamed);
// The wire number of a line linked both ways (TEXTHANDLE, LINEHANDLE), trimmed.
bool GetWireNameOfLine(AcDbDatabase* pDb, AcDbObjectId line, AcDbObjectId& outTextId,
                       std::wstring& outText);
// 1 at a, 2 at b, 0 between them on the line, -1 otherwise (within the distance limit).
int PointOnLine(const AcGePoint3d& p, const AcGePoint3d& a, const AcGePoint3d& b);
