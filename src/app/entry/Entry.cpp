// The module's one export for the host: the entry that receives the host's messages.
#include "app/entry/DrawingManageApp.h"

#include "host/HostServices.h"

// The host's packet on the init message is its service table; the module
// keeps a copy, and clears it after the unload message.
extern "C" __attribute__((visibility("default"))) AcRx::AppRetCode
acrxEntryPoint(AcRx::AppMsgCode msg, void* pkt) {
    static CDrawingManageApp theApp;
    if (msg == AcRx::kInitAppMsg && pkt)
        SetHostServices(*static_cast<const HOST_SERVICES*>(pkt));
    AcRx::AppRetCode ret = theApp.EntryPoint(msg, pkt);
    if (msg == AcRx::kUnloadAppMsg)
        SetHostServices(HOST_SERVICES{});
    return ret;
}
