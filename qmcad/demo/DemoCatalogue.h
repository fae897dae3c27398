// What the demo installation holds: the cutouts of the hole library, the panel faces of the
// layout library that use them, the panel catalogue and the drawing scales.
#pragma once

#include <cstddef>

// The opening a device needs in the plate, centred on the origin (millimetres, 1:1). Every
// opening is drawn twice: its contour for the plan, and a solid through the plate for the 3D
// view, which cuts with solids only.
enum class CUTOUT_SHAPE {
    Circle, // diameter dW
    Rect,   // dW by dH
    Slot,   // dW by dH with round ends
    None,   // fixing holes only
};

struct DEMO_CUTOUT {
    const wchar_t* pszRelPath; // under InstallHole
    CUTOUT_SHAPE eShape;
    double dW, dH;
    double dFixD;            // fixing holes' diameter, 0 for none
    double dFixX, dFixY;     // their pitch: two holes when dFixY is 0, else four
    const wchar_t* pszLabel; // the device label written beside it
    const wchar_t* pszName;  // the recommended part
    const wchar_t* pszModel;
};

// A cutout placed on a panel face: the item by its path, centred at x, y from the corner.
struct DEMO_PLACE {
    const wchar_t* pszCutout;
    double x, y;
};

struct DEMO_LAYOUT {
    const wchar_t* pszRelPath; // under LaySketch
    const wchar_t* pszCaption;
    double dW, dH, dT;
    const DEMO_PLACE* pPlaces;
    size_t nPlaces;
};

const DEMO_CUTOUT* DemoCutouts(size_t& nCount);
const DEMO_CUTOUT* FindDemoCutout(const wchar_t* pszRelPath);
const DEMO_LAYOUT* DemoLayouts(size_t& nCount);
// Lines of the panel catalogue ("description:WxHxT") and of the scale list.
const wchar_t* const* DemoPanelCatalogue(size_t& nCount);
const wchar_t* const* DemoScales(size_t& nCount);
