// Cut plates for the workshop: each panel of a drawing as a STEP solid and a flat DXF of its
// outline and cutout contours, at real size in millimetres.
#pragma once

#include "host/db/AcDb.h"

#include <string>
#include <vector>

// Writes "<name>.step" and "<name>.dxf" for every panel into the directory (an OS path),
// the name telling the panel's position. Returns how many panels were written; each
// line says what was written or why a panel was not.
int ExportPanels(AcDbDatabase& db, const std::string& strDir, std::vector<std::wstring>& lines);
