// The application frame: message dispatch to handler slots and the command table's registration.
#pragma once

#include "host/HostCommands.h"

#include <string>

namespace AcRx {
enum AppMsgCode {
    kNullMsg = 0,
    kInitAppMsg = 1,
    kUnloadAppMsg = 2,
    kLoadDwgMsg = 3,
    kUnloadDwgMsg = 4,
    kInvkSubrMsg = 5,
    kCfgMsg = 6,
    kEndMsg = 7,
    kQuitMsg = 8,
    kSaveMsg = 9,
    kDependencyMsg = 10,
    kNoDependencyMsg = 11,
    kOleUnloadAppMsg = 12,
    kPreQuitMsg = 13,
    kInitDialogMsg = 14,
    kEndDialogMsg = 15,
    kSuspendMsg = 16,
};
enum AppRetCode { kRetOK = 0, kRetError = 3 };
} // namespace AcRx

// One row of the command table.
struct STRUCT_ARXCOMMAND {
    const wchar_t* pszGroup;
    const wchar_t* pszGlobal;
    const wchar_t* pszLocal;
    unsigned nFlags;
    AcRxFunctionPtr pFunction;
    void* pUIContext; // always null
    int nLocalNameId; // always -1
    int nSpare[2];
};

class AcRxDbxApp {
public:
    virtual ~AcRxDbxApp() = default;
    virtual AcRx::AppRetCode On_kInitAppMsg(void* pkt) { return Ok(pkt); }
    virtual AcRx::AppRetCode On_kUnloadAppMsg(void* pkt) { return Ok(pkt); }
    virtual AcRx::AppRetCode On_kLoadDwgMsg(void* pkt) { return Ok(pkt); }
    virtual AcRx::AppRetCode On_kUnloadDwgMsg(void* pkt) { return Ok(pkt); }
    virtual AcRx::AppRetCode On_kInvkSubrMsg(void* pkt) { return Ok(pkt); }
    virtual AcRx::AppRetCode On_kCfgMsg(void* pkt) { return Ok(pkt); }
    virtual AcRx::AppRetCode On_kEndMsg(void* pkt) { return Ok(pkt); }
    virtual AcRx::AppRetCode On_kQuitMsg(void* pkt) { return Ok(pkt); }
    virtual AcRx::AppRetCode On_kSaveMsg(void* pkt) { return Ok(pkt); }
    virtual AcRx::AppRetCode On_kDependencyMsg(void* pkt) { return Ok(pkt); }
    virtual AcRx::AppRetCode On_kNoDependencyMsg(void* pkt) { return Ok(pkt); }
    virtual AcRx::AppRetCode On_kOleUnloadAppMsg(void* pkt) { return Ok(pkt); }
    virtual AcRx::AppRetCode On_kPreQuitMsg(void* pkt) { return Ok(pkt); }
    virtual AcRx::AppRetCode On_kInitDialogMsg(void* pkt) { return Ok(pkt); }
    virtual AcRx::AppRetCode On_kEndDialogMsg(void* pkt) { return Ok(pkt); }
    virtual AcRx::AppRetCode On_kNullMsg(void* pkt) { return Ok(pkt); }
    virtual void RegisterServerComponents() {}

    // Message 0 goes to the null slot, 1 to 15 to the slots in order, others answer 0.
    AcRx::AppRetCode EntryPoint(AcRx::AppMsgCode msg, void* pkt);

private:
    static AcRx::AppRetCode Ok(void*) { return AcRx::kRetOK; }
};

// The serial of the command running now: a new number at the start of every
// command of the table (nested ones too), 0 between commands. A cache of
// files may check its files at most once per serial: an edited file then
// applies from the next command on.
unsigned long CurrentCommandSerial();

// Runs a command body under a new serial. An exception that leaves the body
// ends the command with one line on the command line; it never reaches the host.
void RunCommandBody(const wchar_t* pszName, AcRxFunctionPtr pBody);

// The most rows a command table may have: each row gets its own entry
// function that runs the row's body through RunCommandBody.
inline constexpr int kMaxArxCommands = 64;

// Owns the command table and registers it on the host's command stack.
class AcRxArxApp : public AcRxDbxApp {
public:
    AcRxArxApp(const STRUCT_ARXCOMMAND* pCommands, int nCommands)
        : m_pCommands(pCommands), m_nCommands(nCommands) {}
    AcRx::AppRetCode On_kInitAppMsg(void* pkt) override;
    AcRx::AppRetCode On_kUnloadAppMsg(void* pkt) override;

private:
    const STRUCT_ARXCOMMAND* m_pCommands;
    int m_nCommands;
};
