// The table through which the host hands its services to the module.
#pragma once

class AcApDocManager;
class IAcadApplication;
class ICommandStack;
class IHostEditor;
class IHostInput;
class IFtpClient;
class IDrawingPreview;
class IHostUi;
class ISuiteInstallPaths;
class ISuiteLabelNames;
class ISuiteMainLib;
class ISuiteDoubleClick;

// What a module's acrxGetApiVersion answers; the loader refuses a module
// that does not export it.
inline constexpr int kHostApiVersion = 18;

// Plain pointers owned by the host; a null entry is a service the host
// does not offer, and every call through it fails plainly.
struct HOST_SERVICES {
    IHostUi* pUi = nullptr;
    ISuiteInstallPaths* pInstallPaths = nullptr;
    IHostEditor* pEditor = nullptr;
    IHostInput* pInput = nullptr;
    ICommandStack* pCommands = nullptr;
    AcApDocManager* pDocuments = nullptr;
    IAcadApplication* pAutomation = nullptr;
    IFtpClient* pFtp = nullptr;
    ISuiteLabelNames* pLabelNames = nullptr;
    IDrawingPreview* pDrawingPreview = nullptr;
    ISuiteMainLib* pMainLib = nullptr;
    ISuiteDoubleClick* pDoubleClick = nullptr;
};

// The host sets the table before the module's first command and clears it
// at unload. The module keeps its own copy: host and module are linked
// separately, so the table travels through the entry point, not a shared global.
void SetHostServices(const HOST_SERVICES& services);
const HOST_SERVICES& GetHostServices();
