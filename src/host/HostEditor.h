// What the module needs of the editor itself: system variables, scripted commands, prompts,
// filters.
#pragma once

#include "host/ResultCodes.h"

#include <string>
#include <vector>

class QWidget; // the host's toolkit; the contract only passes the pointer on

// A system variable's value: the type code says which member holds it.
struct SYSVAR_VALUE {
    int nType = RTNONE;
    int nShort = 0;
    double dReal = 0.0;
    double pt[3] = {0.0, 0.0, 0.0};
    std::wstring strText;

    static SYSVAR_VALUE Short(int n) {
        SYSVAR_VALUE v;
        v.nType = RTSHORT;
        v.nShort = n;
        return v;
    }
    static SYSVAR_VALUE Text(const std::wstring& s) {
        SYSVAR_VALUE v;
        v.nType = RTSTR;
        v.strText = s;
        return v;
    }
};

class IHostEditor {
public:
    virtual ~IHostEditor() = default;
    // RTNORM with the value, or RTERROR for an unknown name.
    virtual int GetVar(const std::wstring& strName, SYSVAR_VALUE& value) = 0;
    // RTNORM, or RTERROR for an unknown or read-only name or a value of the wrong type.
    virtual int SetVar(const std::wstring& strName, const SYSVAR_VALUE& value) = 0;
    // Environment values of the editor's profile (such as DefaultFormatForSave).
    virtual int GetEnv(const std::wstring& strName, std::wstring& strValue) = 0;
    virtual int SetEnv(const std::wstring& strName, const std::wstring& strValue) = 0;
    // Runs a command from inside a command, the words as its name and answers.
    virtual int Command(const std::vector<std::wstring>& words) = 0;
    virtual void PostCommandPrompt() = 0;
    // Opens a drawing in a single-document session, replacing the one there.
    virtual int SyncFileOpen(const std::wstring& strPath) = 0;
    // Swallows mouse clicks, moves and the wheel while set.
    virtual bool SetMouseFilter(bool bOn) = 0;
    // Whether the editor has a main window to parent modeless windows to.
    virtual bool HasMainFrame() = 0;
    // That window, for the module's Qt windows; null in a host without a toolkit.
    virtual QWidget* MainFrame() = 0;
};

// The editor's functions by their own names; without a host they fail with RTERROR.
int acedGetVar(const std::wstring& strName, SYSVAR_VALUE& value);
int acedSetVar(const std::wstring& strName, const SYSVAR_VALUE& value);
int acedGetEnv(const std::wstring& strName, std::wstring& strValue);
int acedSetEnv(const std::wstring& strName, const std::wstring& strValue);
int acedCommandS(const std::vector<std::wstring>& words);
void acedPostCommandPrompt();
int acedSyncFileOpen(const std::wstring& strPath);
// The editor's main window, the parent of the module's windows; null without one.
QWidget* acedGetAcadFrame();
bool acedRegisterFilterWinMsg();
bool acedRemoveFilterWinMsg();
bool acedHasAcadFrame();
