// A fluent builder of schematics in a drawing database: symbol blocks with terminal dots,
// references with two-way linked labels, wires, junction dots and terminal board frames.
#pragma once

#include "host/db/AcDb.h"

#include <string>
#include <utility>
#include <vector>

// Reads a drawing of tests/data through the reference host's file codec.
bool ReadFixtureDrawing(AcDbDatabase& db, const std::string& relPath);

struct TERMINAL_AT {
    std::wstring name;
    double x = 0, y = 0;
};

class CSchematicBuilder {
public:
    explicit CSchematicBuilder(AcDbDatabase& db) : m_db(db) {}

    // A block of a w x h frame from the origin and one named dot (form A)
    // per terminal at block coordinates; returns the block's name ("*U" makes
    // an anonymous one).
    std::wstring Symbol(const std::wstring& block, const std::vector<TERMINAL_AT>& terminals,
                        double w = 10, double h = 4);
    // A terminal dot whose name stands in a text of the block (form B).
    CSchematicBuilder& TerminalByText(const std::wstring& block, const std::wstring& name, double x,
                                      double y);
    // A reference in model space; kind 3 unless extended data says otherwise.
    AcDbObjectId Insert(const std::wstring& block, double x, double y, double rotation = 0,
                        bool bSecondLevel = true);
    // A text linked both ways (forward app on the reference, back app on the text).
    AcDbObjectId LinkedText(AcDbObjectId ref, const std::wstring& text, const std::wstring& forward,
                            const std::wstring& back, bool bMText = false);
    AcDbObjectId Label(AcDbObjectId ref, const std::wstring& text) {
        return LinkedText(ref, text, L"TZ_SYMB2_LABEL", L"TZ_SYMB2_LABEL");
    }
    AcDbObjectId Location(AcDbObjectId ref, const std::wstring& text) {
        return LinkedText(ref, text, L"TZ_SYMB2_location", L"TZ_SYMB2_Location");
    }
    AcDbObjectId Wire(double x0, double y0, double x1, double y1,
                      const std::wstring& layer = L"CONNECT");
    AcDbObjectId JunctionDot(double x, double y);
    // A board name text at p with the frame's origin offset and size.
    AcDbObjectId BoardFrame(double px, double py, double ox, double oy, double w, double h);
    // A wire number text linked both ways with the line.
    AcDbObjectId WireName(AcDbObjectId line, const std::wstring& text);

    // Replaces (or, with bAppend, extends) one application's values on an object.
    CSchematicBuilder& Tag(AcDbObjectId id, const std::wstring& app, int code,
                           const std::wstring& value = L"", bool bAppend = false);
    CSchematicBuilder& Part(const std::wstring& location, const std::wstring& label,
                            const std::wstring& name, const std::wstring& type = L"",
                            const std::wstring& note = L"");
    // Writes the drawing's own location record.
    CSchematicBuilder& DrawingLocation(const std::wstring& location);

    AcDbDatabase& m_db;

private:
    int m_nPart = 0;
};
