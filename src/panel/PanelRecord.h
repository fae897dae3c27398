// A panel in the drawing: the solid's record, its axes and dimensions, and the makers of each.
#pragma once

#include "host/db/AcDb.h"

#include <string>
#include <vector>

// The applications of the panel record, in the order they are written.
inline constexpr const wchar_t* kPanelApp = L"3dHolePanel";
inline constexpr const wchar_t* kAxisXApp = L"Axis_X";
inline constexpr const wchar_t* kAxisYApp = L"Axis_Y";
inline constexpr const wchar_t* kAxisZApp = L"Axis_Z";
inline constexpr const wchar_t* kDimLengthApp = L"Dim_Length";
inline constexpr const wchar_t* kDimWidthApp = L"Dim_Width";

// A 3D solid carrying "3dHolePanel".
bool IsPanelSolid(AcDbObjectId id);
bool IsPanelSolid(const AcDbEntity* pEnt);

// The real sizes "X||Y||Z" of the record; false unless they split in exactly three.
bool ReadPanelSizes(const AcDbEntity* pSolid, std::wstring& strX, std::wstring& strY,
                    std::wstring& strZ);

// The layer, made with the colour when missing, else thawed, unlocked and switched on.
AcDbObjectId EnsureLayer(const std::wstring& strName, short nColor, AcDbDatabase* pDb);

// Centre lines on "CENT" (or the current layer, else "0"), colour 4, "CENTER", scale 2.0.
AcDbObjectId MakeCentreLine2d(AcDbDatabase* pDb, const std::vector<AcGePoint3d>& points);
AcDbObjectId MakeCentreLine(AcDbDatabase* pDb, const AcGePoint3d& from, const AcGePoint3d& to);
// An aligned dimension on "DIM" in style "STANDARD" with the text overridden; the
// dimension line passes through ptLine.
AcDbObjectId MakeLengthDim(AcDbDatabase* pDb, const AcGePoint3d& p1, const AcGePoint3d& p2,
                           const AcGePoint3d& ptLine, const std::wstring& strText);

// What BuildPanelParts made, in the record's order: axes (null when not drawn), dimensions.
struct PANEL_PARTS {
    AcDbObjectId idAxisX, idAxisY, idAxisZ, idDimLength, idDimWidth;
};

// Axes and dimensions around the centroid of a panel of drawn size L x W x T, the
// dimension texts at real size (times the ratio).
PANEL_PARTS BuildPanelParts(AcDbDatabase* pDb, const AcGePoint3d& ptCentroid, double dL, double dW,
                            double dT, double dRatio, bool bAxisX, bool bAxisY, bool bAxisZ);

// The six applications on the open solid, "%.2f||%.2f||%.2f" of the real sizes first.
bool WritePanelRecord(AcDbDatabase* pDb, AcDbEntity* pSolid, double dRealX, double dRealY,
                      double dRealZ, const PANEL_PARTS& parts);

// The handle text of an id, as the record stores it.
std::wstring HandleText(AcDbObjectId id);
