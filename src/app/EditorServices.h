// Small services over the editor: system variables, the CMDECHO bracket, posting, the mouse filter.
#pragma once

#include <string>
#include <vector>

// The value if the variable is an integer; otherwise false and the value unchanged.
bool GetIntVar(const std::wstring& strName, int& nValue);
bool SetIntVar(const std::wstring& strName, int nValue);
// The text if the variable is a string; otherwise false.
bool GetStrVar(const std::wstring& strName, std::wstring& strValue);
void CmdEchoOff();
void CmdEchoOn();

bool IsCurDwgTitled();
std::wstring GetCurDwgName();
std::wstring GetCurDwgPrefix(); // with a final backslash

// Runs a command with its answers between saving CMDECHO, setting it to 0
// and writing the saved value back; returns the editor's result.
int RunCommandQuiet(const std::vector<std::wstring>& words);

// Posts a command string to the current document (activation off, inactive
// documents wrapped up, echo on). An empty string posts nothing.
bool PostCommandString(const std::wstring& strCommand);
// The browser's cancelling string goes to the MDI-active document without echo.
bool PostCancelString(const std::wstring& strCommand);

// A path inside a LISP string has every backslash doubled.
std::wstring LispPath(const std::wstring& strPath);

// The mouse filter while a save or new item runs with a window on the screen.
void InstallMouseFilter();
void RemoveMouseFilter();
