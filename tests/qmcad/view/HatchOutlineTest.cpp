// Hatch boundaries from the groups of a HATCH: polyline and edge paths, and groups that end early.
#include "view/HatchOutline.h"

#include <gtest/gtest.h>

namespace {

std::vector<DXF_TAG> Tags(std::initializer_list<std::pair<int, const wchar_t*>> list) {
    std::vector<DXF_TAG> tags;
    for (auto [code, value] : list)
        tags.push_back({code, value});
    return tags;
}

AcDbExtents Box(const std::vector<DL_LINE>& lines) {
    AcDbExtents ext;
    for (const DL_LINE& l : lines) {
        ext.addPoint(l.a);
        ext.addPoint(l.b);
    }
    return ext;
}

} // namespace

TEST(HatchOutline, PathsOfBothKindsBecomeTheirBoundaryLines) {
    // A 10 x 10 square as a polyline path, then a line and a half circle as edges.
    std::vector<DXF_TAG> tags =
        Tags({{10, L"0"},  {20, L"0"},  {30, L"0"},   {2, L"SOLID"}, {70, L"1"},  {71, L"0"},
              {91, L"2"},  {92, L"2"},  {72, L"0"},   {73, L"1"},    {93, L"4"},  {10, L"0"},
              {20, L"0"},  {10, L"10"}, {20, L"0"},   {10, L"10"},   {20, L"10"}, {10, L"0"},
              {20, L"10"}, {97, L"0"},  {92, L"1"},   {93, L"2"},    {72, L"1"},  {10, L"20"},
              {20, L"0"},  {11, L"40"}, {21, L"0"},   {72, L"2"},    {10, L"30"}, {20, L"0"},
              {40, L"10"}, {50, L"0"},  {51, L"180"}, {73, L"1"},    {97, L"0"},  {75, L"0"},
              {98, L"1"},  {10, L"5"},  {20, L"5"}});
    std::vector<DL_LINE> lines;
    AppendHatchOutline(tags, AcGeMatrix3d::translation({100, 0, 0}), 3, lines);
    ASSERT_GE(lines.size(), 4u + 1u + 10u);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(lines[i].nColour, 3);
    EXPECT_EQ(lines[0].a, AcGePoint3d(100, 0, 0));
    EXPECT_EQ(lines[3].b, AcGePoint3d(100, 0, 0)); // the square closes
    AcDbExtents ext = Box(lines);
    EXPECT_NEAR(ext.minPoint().x, 100, 1e-9);
    EXPECT_NEAR(ext.maxPoint().x, 140, 1e-9);
    EXPECT_NEAR(ext.maxPoint().y, 10, 1e-9); // the half circle's top; the seed point adds nothing
}

TEST(HatchOutline, MalformedGroupsStopTheOutlineWithoutHarm) {
    std::vector<DL_LINE> lines;
    AppendHatchOutline({}, AcGeMatrix3d(), 1, lines);
    AppendHatchOutline(
        Tags({{91, L"1"}, {92, L"2"}, {72, L"0"}, {73, L"1"}, {93, L"999999"}, {10, L"1"}}),
        AcGeMatrix3d(), 1, lines);
    AppendHatchOutline(Tags({{91, L"3"}, {92, L"1"}, {93, L"1"}, {72, L"4"}, {94, L"3"}}),
                       AcGeMatrix3d(), 1, lines);
    AppendHatchOutline(Tags({{91, L"1e300"}}), AcGeMatrix3d(), 1, lines);
    EXPECT_TRUE(lines.empty());
}
