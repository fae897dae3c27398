// The records a drawing carries as a whole: location, scale, part numbers, the library data dot.
#pragma once

#include "host/db/AcDb.h"
#include "shared/fileops/FileOps.h"

#include <string>

// The loose reads of TZ_DWG_DICITIONARY: the string after the first one that
// contains the keyword, blanks removed; empty when anything is missing. A
// scale without ":" reads as "1:%s". The location read shows the wait cursor.
bool GetDrawingLocation(AcDbDatabase* pDb, std::wstring& strOut);
bool GetDrawingScale(AcDbDatabase* pDb, std::wstring& strOut);
// Writes the pair "比例", value, creating dictionary and record when missing.
bool SetDrawingScale(AcDbDatabase* pDb, const std::wstring& strValue);

// The number for a new TZ_XRECORD_ONEPART2_<n>: 1 without records, the
// highest gap (lower + 1), else the largest + 1; a lone record n gives 2
// when n is 1 and 1 otherwise.
int NextPartRecordNumber(AcDbDatabase* pDb);

// The dot: a closed AcDbPolyline of exactly two vertices one unit apart
// (within 0.1) with fabs(bulge) - 1.0 < 0.1 at vertex 0 or 1. That bulge
// test lets any bulge below 1.1 pass, 0 included, and is meant so.
bool IsDotEntity(const AcDbEntity* pEnt);
// The midpoint of the dot's vertices, z = 0.
AcGePoint3d GetDotPoint(const AcDbPolyline* pDot);

// A library drawing's recommended pairs ("推荐名称", name, ...): into
// TZ_SYMB1LIB_XRECORD, and onto a fresh invisible data dot at the middle of
// the extents that replaces the old one.
bool WriteRecommendedPairs(AcDbDatabase* pDb, const CStringArray& pairs);
// TZ_SYMB1LIB_XRECORD; only when that has no string, the TZ_SYMB_BOMANDLABEL
// record of the first model-space entity with TZ_FUNCENTERPT_FLAG.
bool ReadRecommendedPairs(AcDbDatabase* pDb, CStringArray& pairs);
// The value after a key (blanks around keys ignored); empty when the key is
// missing or last.
std::wstring FindPairValue(const CStringArray& pairs, const std::wstring& strKey);

// The editor's block name rule, asked of a scratch block table record.
bool IsValidBlockName(const std::wstring& strName);
