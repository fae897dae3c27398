// Inserting a library drawing into the current drawing: the block, the drag, the row of copies,
// the optional explode and the hand-over of the item's part records.
#pragma once

#include <string>

struct CLibState;

// Inserts state.strDwgFile into the working drawing with the hand-over's
// count, scale, angle and explode flag, asking the user for the places.
// 1 when the insertion reached the part hand-over, 0 when it ended before.
// The caller empties the hand-over path and raises the browser.
int InsertLibraryDrawing(CLibState& state);
