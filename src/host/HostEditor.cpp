// The editor's functions by name, forwarding to the host's services.
#include "host/HostEditor.h"

#include "host/HostAutomation.h"
#include "host/HostCommands.h"
#include "host/HostDocuments.h"
#include "host/HostServices.h"

namespace {
IHostEditor* Editor() {
    return GetHostServices().pEditor;
}
} // namespace

int acedGetVar(const std::wstring& strName, SYSVAR_VALUE& value) {
    return Editor() ? Editor()->GetVar(strName, value) : RTERROR;
}
int acedSetVar(const std::wstring& strName, const SYSVAR_VALUE& value) {
    return Editor() ? Editor()->SetVar(strName, value) : RTERROR;
}
int acedGetEnv(const std::wstring& strName, std::wstring& strValue) {
    return Editor() ? Editor()->GetEnv(strName, strValue) : RTERROR;
}
int acedSetEnv(const std::wstring& strName, const std::wstring& strValue) {
    return Editor() ? Editor()->SetEnv(strName, strValue) : RTERROR;
}
int acedCommandS(const std::vector<std::wstring>& words) {
    return Editor() ? Editor()->Command(words) : RTERROR;
}
void acedPostCommandPrompt() {
    if (Editor())
        Editor()->PostCommandPrompt();
}
int acedSyncFileOpen(const std::wstring& strPath) {
    return Editor() ? Editor()->SyncFileOpen(strPath) : RTERROR;
}
bool acedRegisterFilterWinMsg() {
    return Editor() && Editor()->SetMouseFilter(true);
}
bool acedRemoveFilterWinMsg() {
    return Editor() && Editor()->SetMouseFilter(false);
}
bool acedHasAcadFrame() {
    return Editor() && Editor()->HasMainFrame();
}

ICommandStack* acedRegCmds() {
    return GetHostServices().pCommands;
}
AcApDocManager* acDocManagerPtr() {
    return GetHostServices().pDocuments;
}
IAcadApplication* GetAcadApplication() {
    return GetHostServices().pAutomation;
}
