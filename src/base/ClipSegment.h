// Clipping of a line segment to the box from (0, 0) to (w, h).
#pragma once

// Liang-Barsky: cuts the segment to the box; false when nothing of it lies inside.
bool ClipSegmentToBox(double& x1, double& y1, double& x2, double& y2, double w, double h);
