// The editor's 256-colour index palette, shared by slides, previews and the host's views.
#pragma once

#include "base/ImageSurface.h"

// The colour of an index (0 and 7 are the foreground colour, drawn white here).
COLORREF AciColour(int nIndex);
