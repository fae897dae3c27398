// The words of the editor commands the panel commands run: reals, points and selections as
// the command line takes them.
#pragma once

#include "host/db/AcDb.h"

#include <string>
#include <vector>

// A real number with all the digits it needs.
std::wstring RealWord(double d);
// "x,y,z", or "x,y" for a point in the plane.
std::wstring PointWord(const AcGePoint3d& pt, bool b3d = true);
// The picks of a selection: one handle text per entity, then the empty word that ends it.
void AppendSelection(std::vector<std::wstring>& words, const AcDbObjectIdArray& ids);

// The last live entity of the drawing's model space, as acdbEntLast gives it.
AcDbObjectId LastEntity(AcDbDatabase* pDb);
// The centroid of a solid body.
bool SolidCentroid(const AcDbEntity* pSolid, AcGePoint3d& pt);
