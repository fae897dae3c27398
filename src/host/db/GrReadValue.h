// One input event of the editor's acedGrRead, a value the input contract passes on.
#pragma once

#include "host/db/AcGe.h"

// Type 2 a key (nKey), 3 a picked point, 5 a tracked point.
struct GRREAD_VALUE {
    AcGePoint3d pt;
    int nKey = 0;
};
