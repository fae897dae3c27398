// The terminals of a symbol: reading them from the block definition, their texts and marks on
// the reference, their order, and what they tell of the symbol's orientation.
#pragma once

#include "drawingdata/OwningArray.h"
#include "host/db/AcDb.h"
#include "shared/fileops/FileOps.h"

#include <string>
#include <vector>

// One terminal as found on a block reference, in drawing coordinates.
class CDoubleNodeInfo {
public:
    virtual ~CDoubleNodeInfo() = default;
    double y = 0, x = 0;
    std::wstring name;
    std::wstring direction; // TZ_PARTLIB_DOTCONDIRECT
    int hasTextPoint = 0;
    double textY = 0, textX = 0;
    std::wstring text; // from TZ_SYMB2_TERM_TEXT_<n>
    std::wstring textHandle;
    int isPlugIn = 0;
    int isGreatElectric = 0;
};

// The result record of a read, used across the system.
struct STRUCT_SYMB2TERMINFO {
    std::wstring name; // ":" replaced by "-"
    std::wstring text;
    std::wstring textHandle;
    AcGePoint3d point;
    int hasTextPoint = 0;
    AcGePoint3d textPoint;
    std::wstring direction;
    int wireCount = 0;
    int isPlugIn = 0;
    int isGreatElectric = 0;
    int index = -1;
};
using CSymbTermInfoArray = std::vector<STRUCT_SYMB2TERMINFO>;

// One spur track of a symbol: its logic text and terminal texts, kept for the schematic modules.
class COneSpurTrackData {
public:
    virtual ~COneSpurTrackData() = default;
    std::wstring logic;
    CStringArray termTexts;
};

class CGetSymbData {
public:
    virtual ~CGetSymbData() = default;

    // A text point of the block definition, held during one read.
    struct STRUCT_TERMTEXTPOINT {
        std::wstring termHandle; // the terminal point it belongs to
        std::wstring ownHandle;
        AcGePoint3d position;
    };

    // The full read: terminal points (by name or by a text's handle), text
    // points, terminal texts linked both ways and high-potential marks.
    // 1 when at least one terminal was found.
    int ReadSymbolNodes(AcDbDatabase* pDb, const AcDbBlockReference* pRef,
                        COwningArray<CDoubleNodeInfo>& outNodes);
    // The quick read: names and positions, text handles looked up in the working database.
    int ReadTerminalPoints(const AcDbBlockReference* pRef, COwningArray<CDoubleNodeInfo>& outNodes);
    // All-digit names first by value, then the others by string; equal names keep their order.
    void SortSymbolTerminals(const COwningArray<CDoubleNodeInfo>& nodes,
                             CSymbTermInfoArray& outInfos);

    COwningArray<CDoubleNodeInfo> m_nodes;
    COwningArray<COneSpurTrackData> m_spurTracks;
};

// ReadSymbolNodes and SortSymbolTerminals; kinds 5 and 6 show the name where
// a terminal has no text. 1 when a terminal was found.
int GetSymbolTerminals(AcDbDatabase* pDb, const AcDbBlockReference* pRef,
                       CSymbTermInfoArray& outInfos);
// The quick read as names and points (x, y, 0) in reading order.
int GetSymbolTerminalPoints(const AcDbBlockReference* pRef, CStringArray& outNames,
                            std::vector<AcGePoint3d>& outPoints);
// A plain two-terminal symbol along an axis: mode 1, or 2 when reversed.
int GetTwoTerminalMode(AcDbDatabase* pDb, const AcDbBlockReference* pRef, int& outMode);

// 1 along x, 2 along y, 0 when it can't tell. Reads "方向" of the working database.
int GetSymbolOrientation(const AcDbBlockReference* pRef);
bool IsSymbolUpright(const AcDbEntity* pEnt);
