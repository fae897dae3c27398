// The symbols that lie inside a device: those reached through wires that start at a terminal
// taking no external wire.
#pragma once

#include "drawingdata/OwningArray.h"
#include "host/db/AcDb.h"
#include "shared/fileops/FileOps.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class CGridIndex;

class CTzGetInnerSymbArray {
public:
    class COneSymbTermInfo {
    public:
        virtual ~COneSymbTermInfo() = default;
        std::wstring name, text;
        AcGePoint3d point;
        AcDbObjectIdArray lines; // lines with an end on this terminal
        int noLine = 0;
    };
    class COneSymbInfo {
    public:
        virtual ~COneSymbInfo() = default;
        std::wstring handle;
        int reversed = 0;
        COwningArray<COneSymbTermInfo> terminals;
        bool upright = false; // read once for the side of two-terminal symbols
        bool HasNoLineTerminal() const;
    };
    class COneGroupInfo {
    public:
        virtual ~COneGroupInfo() = default;
        CStringArray lineHandles;
        CStringArray names;
    };
    class COneConnectedSymbInfo {
    public:
        virtual ~COneConnectedSymbInfo() = default;
        COneSymbInfo* symbol = nullptr; // borrowed
        std::wstring termName, termText, side;
    };
    class COneGroupLine {
    public:
        virtual ~COneGroupLine() = default;
        COwningArray<COneConnectedSymbInfo> connected;
        COneGroupInfo* group = nullptr; // borrowed
    };
    class COneMergedLineInfo {
    public:
        virtual ~COneMergedLineInfo() = default;
        int64_t direction = 0; // of ClassifySegment
        AcGePoint3d upper, lower;
        CStringArray handles;
    };

    explicit CTzGetInnerSymbArray(AcDbDatabase* pDb);
    virtual ~CTzGetInnerSymbArray();

    // Handles of the inner symbols; one handle may come more than once.
    void GetInnerSymbolHandles(CStringArray& outHandles);
    // Orders each group's lines as runs along an axis, longest first; a group
    // with a line that doesn't open is deleted.
    void MergeGroupLines(COwningArray<COneGroupInfo>& groups);

private:
    COneSymbInfo* ReadOneSymbol(const AcDbBlockReference* pRef);
    void ConnectSymbols(const COwningArray<COneGroupInfo>& groups,
                        COwningArray<COneGroupLine>& out);
    // Seeds, spread and result.
    void CollectInner(const COwningArray<COneGroupLine>& groupLines, CStringArray& outHandles);

    AcDbDatabase* m_pDb;
    AcDbObjectIdArray m_allLines;
    std::vector<std::pair<AcGePoint3d, AcGePoint3d>> m_lineEnds; // start, end per line
    std::unique_ptr<CGridIndex> m_pLineIndex;
    COwningArray<COneSymbInfo> m_symbols;
};

void GetInnerSymbolHandles(AcDbDatabase* pDb, CStringArray& outHandles);
