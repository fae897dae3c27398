// The boundary of a hatch, read from the groups the database keeps for it, as display-list lines.
#pragma once

#include "view/DisplayList.h"

// Lines along every boundary path of a HATCH entity's groups (polyline
// paths with bulges, line and arc edges; ellipse and spline edges as the
// chords of their end points), moved by the matrix. Malformed groups end
// the outline where they begin.
void AppendHatchOutline(const std::vector<DXF_TAG>& tags, const AcGeMatrix3d& m, short nColour,
                        std::vector<DL_LINE>& lines);
