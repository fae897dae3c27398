// Makes the two library browsers with their Qt windows on the host's frame.
#pragma once

#include "app/ModelessWindow.h"

struct CLibState;
class CMyFtpConnection;

// Null when the host hands over no frame window.
IModelessWindow* MakeCircuitLibDlg(CLibState& state, CMyFtpConnection* pFtp);
IModelessWindow* MakeLaySketchLibDlg(CLibState& state, CMyFtpConnection* pFtp);
