// What a block reference means as a symbol: its kind, name, linked label and location texts,
// special marks and the axis of a segment.
#pragma once

#include "host/db/AcDb.h"
#include "shared/fileops/FileOps.h"

#include <string>

// Symbol kinds of ClassifySymbol.
enum : int {
    SYMB_NOT_BLOCKREF = 0,
    SYMB_EMPTY_EXTENTS = 1,
    SYMB_FIRST_LEVEL = 2,
    SYMB_SECOND_LEVEL = 3,
    SYMB_PLAIN_BLOCK = 4,
    SYMB_MULTI_TERMINAL = 5,
    SYMB_RELAY = 6,
    SYMB_ANONYMOUS = 7,
};

// 0 to 7: reference, extents, anonymous ("*U"), then the applications.
int ClassifySymbol(const AcDbEntity* pEnt);
// 1 for kinds 3, 5, 6 with their name; kinds 2, 4, 7 give the block name and 0.
int GetSymbolNameAndKind(const AcDbEntity* pEnt, std::wstring& outName, std::wstring& outKind);

// The label text linked both ways through TZ_SYMB2_LABEL, "：" made ":" and
// trimmed; 1 for any block reference, with an empty label when unlinked.
int GetSymbolLabel(AcDbDatabase* pDb, const AcDbEntity* pEnt, std::wstring& outLabel,
                   std::wstring& outTextHandle);
// The location text linked forward by TZ_SYMB2_location and back by
// TZ_SYMB2_Location, or the default; 0 only for a non-block-reference.
int GetSymbolLocation(AcDbDatabase* pDb, const AcDbEntity* pEnt,
                      const std::wstring& defaultLocation, std::wstring& outLocation);
std::wstring GetSymbolSpecial(const AcDbEntity* pEnt);
bool IsInternalComponent(const AcDbEntity* pEnt);
std::wstring GetSymbolOrderNo(const AcDbEntity* pEnt);
bool IsMainSymbol(const AcDbEntity* pEnt);

// The string of a single-line text or the plain text of a multi-line one;
// false (and outText untouched) for anything else.
bool GetTextOfHandle(AcDbDatabase* pDb, const std::wstring& handleText, std::wstring& outText);

// 0 horizontal, 1 vertical, 2 neither; up to 5 percent off an axis counts as on it.
int ClassifySegment(const AcGePoint3d& p, const AcGePoint3d& q);

// The rotation in degrees, the three right angles snapped within 0.001 radian.
double RotationToDegrees(double dRadians);

// Helpers shared with the terminal and wire readers.
std::wstring HandleText(const AcDbObject* pObj);
AcDbObjectId IdOfHandle(AcDbDatabase* pDb, const std::wstring& handleText);
// Every value of the group in the application's chain, in order.
void GetXDataStrings(const AcDbObject* pObj, const std::wstring& strApp, int nGroupCode,
                     CStringArray& out);
// True when a text of the back-link application holds a 1005 naming the handle.
bool HasBackLink(const AcDbObject* pText, const std::wstring& strApp, const std::wstring& handle);
