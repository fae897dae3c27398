// Builders for drawing databases in tests: append entities, register applications, make chains.
#pragma once

#include "host/db/AcDb.h"

#include <initializer_list>
#include <string>
#include <vector>

// Appends the entity to model space and closes it; returns its id.
AcDbObjectId AppendToModelSpace(AcDbDatabase& db, AcDbEntity* pEnt);
// Appends to the named block, creating the block when it is missing.
AcDbObjectId AppendToBlock(AcDbDatabase& db, const std::wstring& strBlock, AcDbEntity* pEnt);
void RegisterApp(AcDbDatabase& db, const std::wstring& strApp);
// Registers the application and sets the chain (led by its 1001 node) on the object.
void SetXData(AcDbObjectId id, resbuf* pChain);
// A chain from nodes; takes ownership of them.
resbuf* Chain(std::initializer_list<resbuf*> nodes);
// The texts of a chain's string nodes, in order.
std::vector<std::wstring> ChainTexts(const resbuf* pChain);
// A closed two-vertex polyline "dot" of the given diameter and bulge at x, y.
AcDbPolyline* MakeDot(double x, double y, double diameter = 1.0, double bulge = 1.0);
