// Segment clipping shared by the slide writer's view and the slide painter.
#include "base/ClipSegment.h"

#include <algorithm>

bool ClipSegmentToBox(double& x1, double& y1, double& x2, double& y2, double w, double h) {
    double t0 = 0, t1 = 1, dx = x2 - x1, dy = y2 - y1;
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {x1, w - x1, y1, h - y1};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0) {
            if (q[i] < 0)
                return false;
            continue;
        }
        double t = q[i] / p[i];
        if (p[i] < 0)
            t0 = std::max(t0, t);
        else
            t1 = std::min(t1, t);
        if (t0 > t1)
            return false;
    }
    double ox = x1, oy = y1;
    x1 = ox + t0 * dx, y1 = oy + t0 * dy;
    x2 = ox + t1 * dx, y2 = oy + t1 * dy;
    return true;
}
