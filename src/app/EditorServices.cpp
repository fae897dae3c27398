// Editor services over the host's system variables, command line and filters.
#include "app/EditorServices.h"

#include "base/StrUtil.h"
#include "host/HostDocuments.h"
#include "host/HostEditor.h"

bool GetIntVar(const std::wstring& strName, int& nValue) {
    SYSVAR_VALUE value;
    if (acedGetVar(strName, value) != RTNORM || value.nType != RTSHORT)
        return false;
    nValue = value.nShort;
    return true;
}

bool SetIntVar(const std::wstring& strName, int nValue) {
    return acedSetVar(strName, SYSVAR_VALUE::Short(nValue)) == RTNORM;
}

bool GetStrVar(const std::wstring& strName, std::wstring& strValue) {
    SYSVAR_VALUE value;
    if (acedGetVar(strName, value) != RTNORM || value.nType != RTSTR)
        return false;
    strValue = value.strText;
    return true;
}

void CmdEchoOff() {
    SetIntVar(L"CMDECHO", 0);
}
void CmdEchoOn() {
    SetIntVar(L"CMDECHO", 1);
}

bool IsCurDwgTitled() {
    int nTitled = 0;
    GetIntVar(L"DWGTITLED", nTitled);
    return nTitled != 0;
}

std::wstring GetCurDwgName() {
    std::wstring strName;
    GetStrVar(L"DWGNAME", strName);
    return strName;
}

std::wstring GetCurDwgPrefix() {
    std::wstring strPrefix;
    GetStrVar(L"DWGPREFIX", strPrefix);
    if (!strPrefix.empty() && strPrefix.back() != L'\\')
        strPrefix += L'\\';
    return strPrefix;
}

int RunCommandQuiet(const std::vector<std::wstring>& words) {
    int nEcho = 0;
    bool bHadEcho = GetIntVar(L"CMDECHO", nEcho);
    SetIntVar(L"CMDECHO", 0);
    int nResult = acedCommandS(words);
    if (bHadEcho)
        SetIntVar(L"CMDECHO", nEcho);
    return nResult;
}

bool PostCommandString(const std::wstring& strCommand) {
    AcApDocManager* pDocs = acDocManagerPtr();
    if (strCommand.empty() || !pDocs || !pDocs->curDocument())
        return false;
    return pDocs->sendStringToExecute(pDocs->curDocument(), strCommand, false, true, true);
}

bool PostCancelString(const std::wstring& strCommand) {
    AcApDocManager* pDocs = acDocManagerPtr();
    if (strCommand.empty() || !pDocs || !pDocs->mdiActiveDocument())
        return false;
    return pDocs->sendStringToExecute(pDocs->mdiActiveDocument(), strCommand, false, true, false);
}

std::wstring LispPath(const std::wstring& strPath) {
    std::wstring strOut = strPath;
    StrReplace(strOut, L"\\", L"\\\\");
    return strOut;
}

void InstallMouseFilter() {
    acedRegisterFilterWinMsg();
}
void RemoveMouseFilter() {
    acedRemoveFilterWinMsg();
}
