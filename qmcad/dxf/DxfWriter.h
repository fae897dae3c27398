// Writes a drawing database as AutoCAD 2000 ASCII DXF.
#pragma once

#include "host/db/AcDb.h"

#include <string>

// The whole file into out; texts in the database's code page.
void WriteDxf(AcDbDatabase& db, std::string& out);
