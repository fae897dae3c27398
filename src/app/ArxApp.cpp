// Dispatch of the host's messages and registration of the command table.
#include "app/ArxApp.h"

AcRx::AppRetCode AcRxDbxApp::EntryPoint(AcRx::AppMsgCode msg, void* pkt) {
    using Slot = AcRx::AppRetCode (AcRxDbxApp::*)(void*);
    static const Slot kSlots[] = {
        &AcRxDbxApp::On_kNullMsg,         &AcRxDbxApp::On_kInitAppMsg,
        &AcRxDbxApp::On_kUnloadAppMsg,    &AcRxDbxApp::On_kLoadDwgMsg,
        &AcRxDbxApp::On_kUnloadDwgMsg,    &AcRxDbxApp::On_kInvkSubrMsg,
        &AcRxDbxApp::On_kCfgMsg,          &AcRxDbxApp::On_kEndMsg,
        &AcRxDbxApp::On_kQuitMsg,         &AcRxDbxApp::On_kSaveMsg,
        &AcRxDbxApp::On_kDependencyMsg,   &AcRxDbxApp::On_kNoDependencyMsg,
        &AcRxDbxApp::On_kOleUnloadAppMsg, &AcRxDbxApp::On_kPreQuitMsg,
        &AcRxDbxApp::On_kInitDialogMsg,   &AcRxDbxApp::On_kEndDialogMsg,
    };
    int nMsg = static_cast<int>(msg);
    if (nMsg < 0 || nMsg > 15)
        return static_cast<AcRx::AppRetCode>(0);
    return (this->*kSlots[nMsg])(pkt);
}

AcRx::AppRetCode AcRxArxApp::On_kInitAppMsg(void* pkt) {
    ICommandStack* pStack = acedRegCmds();
    for (int i = 0; pStack && i < m_nCommands; ++i) {
        const STRUCT_ARXCOMMAND& row = m_pCommands[i];
        if (!row.pszGlobal || !row.pFunction)
            continue;
        pStack->AddCommand(row.pszGroup, row.pszGlobal, row.pszLocal ? row.pszLocal : row.pszGlobal,
                           row.nFlags, row.pFunction);
    }
    return AcRxDbxApp::On_kInitAppMsg(pkt);
}

AcRx::AppRetCode AcRxArxApp::On_kUnloadAppMsg(void* pkt) {
    ICommandStack* pStack = acedRegCmds();
    // Groups are removed in the reverse of their first appearance.
    for (int i = m_nCommands - 1; pStack && i >= 0; --i)
        if (m_pCommands[i].pszGroup)
            pStack->RemoveGroup(m_pCommands[i].pszGroup);
    return AcRxDbxApp::On_kUnloadAppMsg(pkt);
}
