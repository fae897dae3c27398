// The demo's devices as the suite's schematic modules leave them in a drawing: a symbol block
// reference with its label text linked both ways, and the part record behind the label.
#pragma once

#include "demo/DemoCatalogue.h"

#include "host/db/AcDb.h"

#include <string>

// Adds, in the model space of the open record, a reference of the device's face (its bezel,
// drawn around the opening at x, y) linked with the label text idLabel, and writes the part
// record of strLabel (name, model and code of the item) unless the drawing has it already.
// False when a record could not be written.
bool AddDemoDevice(AcDbBlockTableRecord* pSpace, const DEMO_CUTOUT& item,
                   const std::wstring& strLabel, double x, double y, AcDbObjectId idLabel);

// The product code the demo's part records give an item of the catalogue.
std::wstring DemoPartCode(const DEMO_CUTOUT& item);
