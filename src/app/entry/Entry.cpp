// The module's exports for the host: its entry for the host's messages, and its API version.
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

// The loader asks for it beside the entry; it carries nothing of this module.
extern "C" __attribute__((visibility("default"))) int acrxGetApiVersion() {
    return kHostApiVersion;
}
