// The two library state records.
#include "app/LibState.h"

CLibState g_HoleLib;
CLibState g_LayoutLib;

void CLibState::ResetHandOver() {
    strRoot.clear();
    strDwgFile.clear();
    strNewName.clear();
    nNewState = 0;
    nCount = 0;
    dScale = 0.0;
    dAngle = 0.0;
}
