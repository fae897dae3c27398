// The module's application object: the command table of group TzDrawingManage and the unload rule.
#pragma once

#include "app/ArxApp.h"

extern const STRUCT_ARXCOMMAND g_arxCommands[];
extern const int g_nArxCommands;

class CDrawingManageApp : public AcRxArxApp {
public:
    CDrawingManageApp() : AcRxArxApp(g_arxCommands, g_nArxCommands) {}
    AcRx::AppRetCode On_kInitAppMsg(void* pkt) override;
    AcRx::AppRetCode On_kUnloadAppMsg(void* pkt) override;
};
