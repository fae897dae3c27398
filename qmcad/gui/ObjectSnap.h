// Object snap: the end, middle and centre points of the entity under the cursor.
#pragma once

#include "gui/ViewTransform.h"
#include "host/db/AcDb.h"

enum class SNAP_KIND { End, Mid, Centre };

struct SNAP_POINT {
    AcGePoint3d pt;
    SNAP_KIND eKind = SNAP_KIND::End;
};

// The snap point of model space nearest to the pixel within the tolerance
// (pixels): ends and middles of lines, arcs and polyline segments, centres
// of circles and arcs. Solids and blocks offer none. False when none is near.
bool FindSnapPoint(AcDbDatabase* pDb, const CViewTransform& view, double sx, double sy,
                   double dTolerance, SNAP_POINT& snap);
