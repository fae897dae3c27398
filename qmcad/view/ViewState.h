// What a view looks at: direction, target, zoom and shade mode, and the screen axes they give.
#pragma once

#include "host/db/AcGe.h"

#include <string>

enum class SHADE_MODE {
    Wireframe2d, // lines and edges; solids show their visible edges only
    Gouraud      // solids as lit faces
};

struct VIEW_STATE {
    AcGeVector3d direction{0, 0, 1}; // from the target towards the eye
    AcGePoint3d target;              // shown at the centre of the screen
    double dHeight = 0.0;            // drawing units from the bottom to the top of the screen
    SHADE_MODE eShade = SHADE_MODE::Wireframe2d;
    bool bGrid = false; // the grid is painted by the window, never written to slides

    // Looking straight down the Z axis.
    bool IsPlan() const;
};

// The screen's right, up and towards-the-eye directions in world space. Up
// is the world's Z axis seen from the direction, or Y in a plan view, as
// the editor keeps Z upright in its 3D views.
struct VIEW_AXES {
    AcGeVector3d x, y, z;
};
VIEW_AXES ViewAxes(const AcGeVector3d& direction);

// Screen coordinates of a world point: u right, v up, depth towards the eye,
// all in drawing units from the target.
struct VIEW_COORD {
    double u = 0, v = 0, depth = 0;
};
VIEW_COORD ToView(const VIEW_AXES& axes, const AcGePoint3d& target, const AcGePoint3d& p);

// The editor's preset view directions by their option words ("_top", "_seiso", "top"...).
// False for a word that names none.
bool PresetViewDirection(const std::wstring& strWord, AcGeVector3d& direction);
