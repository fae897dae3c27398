// The view's pixel mapping and its gestures: what stays under the cursor, where the eye goes.
#include "gui/ViewTransform.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

VIEW_STATE Plan(double dHeight) {
    VIEW_STATE view;
    view.target = AcGePoint3d(100, 50, 0);
    view.dHeight = dHeight;
    return view;
}

} // namespace

TEST(ViewTransform, PixelsAndModelPointsMapBothWaysOnThePlane) {
    for (AcGeVector3d dir :
         {AcGeVector3d(0, 0, 1), AcGeVector3d(-1, -1, 1), AcGeVector3d(1, -2, 3)}) {
        VIEW_STATE view = Plan(200);
        view.direction = dir;
        CViewTransform t(view, 800, 400);
        for (AcGePoint3d p :
             {AcGePoint3d(0, 0, 0), AcGePoint3d(123.5, -40, 0), AcGePoint3d(1e4, 7, 0)}) {
            auto s = t.ToScreen(p);
            EXPECT_LT(t.ToWorld(s.x, s.y).distanceTo(p), 1e-6);
        }
    }
    CViewTransform plan(Plan(200), 800, 400);
    auto centre = plan.ToScreen({100, 50, 0});
    EXPECT_DOUBLE_EQ(centre.x, 400);
    EXPECT_DOUBLE_EQ(centre.y, 200);
    auto up = plan.ToScreen({100, 60, 0}); // Y grows up the screen, 2 pixels a unit
    EXPECT_DOUBLE_EQ(up.y, 180);
}

TEST(ViewTransform, ZoomKeepsThePointUnderTheCursorAndPanMovesByPixels) {
    VIEW_STATE view = Plan(200);
    AcGePoint3d under = CViewTransform(view, 800, 400).ToWorld(650, 90);
    ZoomViewAbout(view, 800, 400, 650, 90, 1.2);
    EXPECT_NEAR(view.dHeight, 200 / 1.2, 1e-9);
    EXPECT_LT(CViewTransform(view, 800, 400).ToWorld(650, 90).distanceTo(under), 1e-9);
    ZoomViewAbout(view, 800, 400, 650, 90, 0); // refused
    EXPECT_NEAR(view.dHeight, 200 / 1.2, 1e-9);

    VIEW_STATE pan = Plan(200);
    AcGePoint3d before = CViewTransform(pan, 800, 400).ToWorld(10, 10);
    PanView(pan, 400, 30, -20); // the drawing follows the mouse
    EXPECT_LT(CViewTransform(pan, 800, 400).ToWorld(40, -10).distanceTo(before), 1e-9);
}

TEST(ViewTransform, OrbitFromAboveKeepsXToTheRightAndNeverFlipsOverThePole) {
    VIEW_STATE view = Plan(200);
    OrbitView(view, 0, -0.3); // tilt towards the viewer: the eye goes south
    EXPECT_LT(view.direction.y, 0);
    EXPECT_NEAR(view.direction.x, 0, 1e-9);
    CViewTransform t(view, 800, 400);
    EXPECT_GT(t.ToScreen({200, 50, 0}).x, t.ToScreen({100, 50, 0}).x);
    for (int i = 0; i < 10; ++i)
        OrbitView(view, 0, 0.5);
    EXPECT_GT(view.direction.z, 0.99);
    EXPECT_LT(view.direction.z, 1.0); // held a hair off the pole
}
