// A panel as a designer draws one: plate outline, solid, cutouts, centre lines, text, dimension.
#pragma once

#include "host/db/AcDb.h"

struct DEMO_PANEL {
    AcDbObjectId idSolid;           // the 600 x 800 x 2 plate
    AcDbObjectIdArray cutoutSolids; // one solid per cutout, through the plate
};

// Adds the panel with its lower left corner at the point to the database's
// model space: 2D outline and cutouts (circles and rectangles) with centre
// lines, a caption, a width dimension, the plate solid and a solid per
// cutout, ready to be subtracted.
DEMO_PANEL AddDemoPanel(AcDbDatabase& db, const AcGePoint3d& corner);
