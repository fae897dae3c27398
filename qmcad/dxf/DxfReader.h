// Reads an ASCII DXF file into an empty drawing database.
#pragma once

#include "host/db/AcDb.h"

#include <map>
#include <string>
#include <string_view>

// What a read met that the database does not model.
struct DXF_READ_REPORT {
    std::string strVersion;                     // $ACADVER, AC1009 (R12) to AC1032 (2018)
    std::map<std::string, int> unknownEntities; // by DXF type, kept verbatim
    int UnknownEntityCount() const;
    int nRefusedReferences = 0; // references that made a cycle or named a table
    int nOutOfRange = 0;        // enumerated values read as their default
    int nMisplaced = 0;         // section, table or block markers where an entity or object belongs
};

// Data is the whole file. A binary DWG is refused with eBinaryDwgNotSupported,
// anything else unreadable with eBadDxfFile; the database is then left for
// the caller to clear.
Acad::ErrorStatus ReadDxf(AcDbDatabase& db, std::string_view data,
                          DXF_READ_REPORT* pReport = nullptr);
// The bitmap of the THUMBNAILIMAGE section; false when there is none.
bool ReadDxfThumbnail(std::string_view data, std::vector<uint8_t>& bitmap);
bool IsBinaryDwg(std::string_view data);
