// A drawing that holds one of everything the file codec carries, for round trips and the oracle.
#pragma once

#include "host/db/AcDb.h"

// Fills a default database: layers, a block with an insert (scale, rotation,
// xdata of every group code), an extension-dictionary xrecord, a named
// dictionary of xrecords, bulged polylines with widths, heavy polylines,
// texts in Chinese, dimensions, a solid and a thumbnail.
void BuildSampleDrawing(AcDbDatabase& db);
