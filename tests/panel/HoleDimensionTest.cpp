// Dimensioning a cutout to its panel: distances to edges, the snap and the squaring up.
#include "panel/HoleDimension.h"

#include "DbBuilders.h"
#include "SolidKernel.h"

#include <gtest/gtest.h>

namespace {

AcDbObjectId AddPanel(AcDbDatabase& db, double x0, double y0, double x1, double y1) {
    UseSolidKernel();
    auto* pSolid = new AcDb3dSolid();
    EXPECT_EQ(pSolid->createBox(x1 - x0, y1 - y0, 2.0), Acad::eOk);
    pSolid->transformBy(
        AcGeMatrix3d::translation(AcGeVector3d((x0 + x1) / 2, (y0 + y1) / 2, -1.0)));
    return AppendToModelSpace(db, pSolid);
}

CDimPointOfEnt Record(const wchar_t* pszType, AcDbObjectId id, double x, double y) {
    CDimPointOfEnt rec;
    rec.m_strType = pszType;
    rec.m_idEnt = id;
    rec.m_ptDim = AcGePoint3d(x, y, 0.0);
    return rec;
}

} // namespace

TEST(HoleDimension, DistanceToASegmentUsesTheNearerEndOutsideIt) {
    AcGePoint3d a(0, 0, 0), b(10, 0, 0);
    EXPECT_DOUBLE_EQ(DistancePointToSegment(AcGePoint3d(5, 3, 9), a, b), 3.0);
    EXPECT_DOUBLE_EQ(DistancePointToSegment(AcGePoint3d(13, 4, 0), a, b), 5.0);
    EXPECT_DOUBLE_EQ(DistancePointToSegment(AcGePoint3d(-3, -4, 0), a, b), 5.0);
    // A segment of 0.01 or less is its start point.
    EXPECT_DOUBLE_EQ(
        DistancePointToSegment(AcGePoint3d(0, 4, 0), AcGePoint3d(3, 0, 0), AcGePoint3d(3.01, 0, 0)),
        5.0);
}

TEST(HoleDimension, SnapTakesRightThenLeftThenTopThenBottom) {
    AcGePoint3d c(100, 50, -1);
    // Real 2000 x 1000 at 1:10: half sizes 100 and 50 drawing units.
    AcGePoint3d p = SnapToPanelEdge(AcGePoint3d(198, 98, 0), c, L"2000", L"1000", 10.0);
    EXPECT_DOUBLE_EQ(p.x, 200.0);
    EXPECT_DOUBLE_EQ(p.y, 100.0); // near both: the corner
    p = SnapToPanelEdge(AcGePoint3d(150, 96, 0), c, L"2000", L"1000", 10.0);
    EXPECT_DOUBLE_EQ(p.y, 96.0); // 4 away stays
    // A very narrow panel: right snaps first, then left is in reach of that and wins.
    p = SnapToPanelEdge(AcGePoint3d(100.5, 0, 0), c, L"20", L"1000", 10.0);
    EXPECT_DOUBLE_EQ(p.x, 99.0);
    p = SnapToPanelEdge(AcGePoint3d(199, 0, 0), c, L"", L"1000", 10.0);
    EXPECT_DOUBLE_EQ(p.x, 199.0); // no size: no snap
}

TEST(HoleDimension, EdgeTestCoversLeftRightTopAndOnlyTheLowerLeftCorner) {
    AcDbDatabase db;
    AcDbObjectId id = AddPanel(db, 0, 0, 100, 50);
    EXPECT_TRUE(IsPointOnPanelEdge(AcGePoint3d(0.05, 20, 0), id));
    EXPECT_TRUE(IsPointOnPanelEdge(AcGePoint3d(100, 30, 0), id));
    EXPECT_TRUE(IsPointOnPanelEdge(AcGePoint3d(50, 50.09, 0), id));
    EXPECT_TRUE(IsPointOnPanelEdge(AcGePoint3d(0, 0, 0), id));
    EXPECT_FALSE(IsPointOnPanelEdge(AcGePoint3d(50, 0, 0), id)); // bottom edge
    EXPECT_FALSE(IsPointOnPanelEdge(AcGePoint3d(50, 25, 0), id));
}

TEST(HoleDimension, SquaringUpGivesTheSameDimensionInEitherOrder) {
    AcDbDatabase db;
    AcDbObjectId idPanel = AddPanel(db, 0, 0, 100, 50);
    // Picked on the right edge: the dimension runs horizontally to the cutout's centre.
    std::vector<CDimPointOfEnt> arr = {Record(L"panelEnt", idPanel, 100, 5),
                                       Record(L"3dEnt", AcDbObjectId(), 80, 20)};
    SquareUpToPanel(arr);
    EXPECT_DOUBLE_EQ(arr[0].m_ptDim.x, 100.0);
    EXPECT_DOUBLE_EQ(arr[0].m_ptDim.y, 20.0);
    // Picked on the bottom edge, cutout first: vertical.
    arr = {Record(L"2dEnt", AcDbObjectId(), 80, 20), Record(L"panelEnt", idPanel, 30, 0)};
    SquareUpToPanel(arr);
    EXPECT_DOUBLE_EQ(arr[1].m_ptDim.x, 80.0);
    EXPECT_DOUBLE_EQ(arr[1].m_ptDim.y, 0.0);
    // Two cutouts: their points stay.
    arr = {Record(L"3dEnt", AcDbObjectId(), 1, 2), Record(L"3dEnt", AcDbObjectId(), 3, 4)};
    SquareUpToPanel(arr);
    EXPECT_DOUBLE_EQ(arr[0].m_ptDim.x + arr[1].m_ptDim.y, 5.0);
}

TEST(HoleDimension, EntityCentreIsTheMiddleOfItsExtentsOnTheGround) {
    AcDbDatabase db;
    AcDbObjectId id =
        AppendToModelSpace(db, new AcDbLine(AcGePoint3d(0, 0, 5), AcGePoint3d(10, 4, 9)));
    AcGePoint3d pt;
    ASSERT_TRUE(GetEntityCentre(id, pt));
    EXPECT_DOUBLE_EQ(pt.x + pt.y + pt.z, 7.0);
    EXPECT_FALSE(GetEntityCentre(AcDbObjectId(), pt));
}
