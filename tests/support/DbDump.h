// A database as JSON text: what tests compare across a file round trip and with the oracle.
#pragma once

#include "host/db/AcDb.h"

#include <string>

// Header values, tables, every block with its live entities (properties,
// geometry, extended data, extension dictionaries) and the named object
// dictionary with everything below it. Reals are written exactly.
std::string DumpDatabase(AcDbDatabase& db);
