// The editor's functions by name, forwarding to the host's services.
#include "host/HostEditor.h"

#include "host/HostAutomation.h"
#include "host/HostCommands.h"
#include "host/HostDocuments.h"
#include "host/HostInput.h"
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
QWidget* acedGetAcadFrame() {
    return Editor() ? Editor()->MainFrame() : nullptr;
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

namespace {
IHostInput* Input() {
    return GetHostServices().pInput;
}
} // namespace

int acedGetPoint(const AcGePoint3d* pBase, const std::wstring& strPrompt, AcGePoint3d& pt) {
    return Input() ? Input()->GetPoint(pBase, strPrompt, pt) : RTCAN;
}
int acedGetCorner(const AcGePoint3d& base, const std::wstring& strPrompt, AcGePoint3d& pt) {
    return Input() ? Input()->GetCorner(base, strPrompt, pt) : RTCAN;
}
int acedGetString(bool bAllowSpaces, const std::wstring& strPrompt, std::wstring& strText) {
    return Input() ? Input()->GetString(bAllowSpaces, strPrompt, strText) : RTCAN;
}
int acedGetReal(const std::wstring& strPrompt, double& dValue) {
    return Input() ? Input()->GetReal(strPrompt, dValue) : RTCAN;
}
int acedEntSel(const std::wstring& strPrompt, AcDbObjectId& id, AcGePoint3d& pt) {
    return Input() ? Input()->EntSel(strPrompt, id, pt) : RTCAN;
}
int acedSSGet(const std::wstring& strMode, AcDbObjectIdArray& ids) {
    return Input() ? Input()->SSGet(strMode, ids) : RTCAN;
}
int acedSSGet(const std::wstring& strMode, const AcGePoint3d& pt1, const AcGePoint3d& pt2,
              AcDbObjectIdArray& ids) {
    return Input() ? Input()->SSGetWindow(strMode, pt1, pt2, ids) : RTCAN;
}
int acedDragGen(const AcDbObjectIdArray& ids, const std::wstring& strPrompt,
                const DragSampler& sampler, AcGePoint3d& pt) {
    return Input() ? Input()->DragGen(ids, strPrompt, sampler, pt) : RTCAN;
}
int acedGrRead(int nTrack, int& nType, GRREAD_VALUE& value) {
    return Input() ? Input()->GrRead(nTrack, nType, value) : RTCAN;
}
int acedTrans(const AcGePoint3d& pt, int nFrom, int nTo, bool bDisp, AcGePoint3d& result) {
    return Input() ? Input()->Trans(pt, nFrom, nTo, bDisp, result) : RTERROR;
}
