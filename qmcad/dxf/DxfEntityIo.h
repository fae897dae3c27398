// One mapping per entity type between the database's entities and DXF groups.
#pragma once

#include "dxf/DxfTags.h"
#include "host/db/AcDb.h"

#include <string>
#include <vector>

// Names an entity refers to that are resolved once all tables are read.
struct DXF_ENTITY_REFS {
    std::wstring strBlock;    // INSERT and DIMENSION: group 2
    std::wstring strDimStyle; // DIMENSION: group 3
    int nOutOfRange = 0;      // enumerated values outside their range, read as the default
};

// The entity of the type with its own groups read from tags (the common
// groups, handles and extended data are the caller's); null for a type
// the database does not model.
AcDbEntity* ReadEntityBody(const std::string_view& type, const std::vector<DXF_RAW_TAG>& tags,
                           CDxfText& text, DXF_ENTITY_REFS& refs);
// Vertices of a heavy polyline, one VERTEX entity's groups at a time.
void ReadPolylineVertex(AcDbHeavyPolyline& pl, const std::vector<DXF_RAW_TAG>& tags);

// Writes the entity's own groups after the common ones.
void WriteEntityBody(CDxfTagWriter& w, const AcDbEntity& ent);
// The VERTEX and SEQEND entities of a heavy polyline, after its extended data.
void WriteVertices(CDxfTagWriter& w, const AcDbEntity& ent);

// Extended data and xrecord values: a chain from tags and back.
resbuf* ChainFromTags(const std::vector<DXF_RAW_TAG>& tags, size_t first, size_t end,
                      CDxfText& text);
void WriteChain(CDxfTagWriter& w, const resbuf* pChain);

// The SAT text of a solid as AutoCAD 2000 stores it: each line scrambled
// character by character.
std::string EncodeSatLine(const std::string& line);
std::string DecodeSatLine(std::string_view line);
