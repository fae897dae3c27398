// Where things lie on a panel: the cutouts inside each panel's outline, and the tracker that
// carries a new panel on the cursor.
#pragma once

#include "host/db/AcDb.h"

#include <memory>
#include <vector>

// One panel and the entities lying strictly inside its outline.
class CHole3dView {
public:
    AcDbObjectId m_idPanel;
    AcGePoint3d m_ptMin, m_ptMax;
    AcDbObjectIdArray m_arrHoleIds; // in model-space order
};

using CHole3dViewArray = std::vector<std::unique_ptr<CHole3dView>>;

// Module-wide; holds data only while a 3D view is being made.
extern CHole3dViewArray g_arrHole3dView;

void ClearHole3dViews(CHole3dViewArray& arr);
// Panels in model-space order, then every other entity given to the first panel whose
// extents hold it strictly in X and Y. A null database does nothing.
void CollectHole3dViews(AcDbDatabase* pDb, CHole3dViewArray& arr);

bool MoveEntity(AcDbObjectId id, double dx, double dy, double dz);
bool EraseEntity(AcDbObjectId id);

// Carries the tracked entities with the cursor until a pick, Enter, space or menu
// code 0 accepts them; the other button, Esc or a failed read erases them. Pan and
// zoom codes run the editor's own commands and the tracking goes on.
bool TrackPanelToCursor(const AcDbObjectIdArray& ids);
