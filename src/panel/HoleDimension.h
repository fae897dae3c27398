// The geometry of dimensioning a cutout to its panel: picked records, the snap to the panel's
// edge, and the squaring up that makes the dimension run at right angles to the edge.
#pragma once

#include "host/db/AcDb.h"

#include <string>
#include <vector>

class CDimPointOfEnt {
public:
    AcGePoint3d m_ptDim;
    std::wstring m_strType; // "panelEnt", "3dEnt" or "2dEnt"
    AcDbObjectId m_idEnt;
    AcGePoint3d m_ptAux; // a panel's centroid
};

// Planar distance; a segment of 0.01 or less counts as its start point, a foot outside
// the segment as the nearer end.
double DistancePointToSegment(const AcGePoint3d& p, const AcGePoint3d& a, const AcGePoint3d& b);

// Centre of the entity's extents with z 0; false for an empty box.
bool GetEntityCentre(AcDbObjectId id, AcGePoint3d& pt);

// Within 0.1 of the left, right or top edge of the solid's extents, or of its lower-left corner.
bool IsPointOnPanelEdge(const AcGePoint3d& pt, AcDbObjectId idPanel);

// Right, left, top, bottom in that order, each within 3.0 drawing units, each on the
// value the earlier tests left. The half sizes are the real sizes over twice the ratio.
AcGePoint3d SnapToPanelEdge(const AcGePoint3d& ptPick, const AcGePoint3d& ptCentroid,
                            const std::wstring& strRealX, const std::wstring& strRealY,
                            double dRatio);

// A panel paired with a cutout or a 2D entity: the panel's point moves level with the other
// point, horizontally when that lands on a vertical edge, else vertically. Other pairs stay.
void SquareUpToPanel(std::vector<CDimPointOfEnt>& arrPoints);
