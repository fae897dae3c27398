// The reference host's editor: command loop, input, posted strings, native commands, services.
#pragma once

#include "editor/Automation.h"
#include "editor/CommandStack.h"
#include "editor/DocManager.h"
#include "editor/EditorInput.h"
#include "editor/SysVars.h"
#include "host/HostEditor.h"
#include "host/HostServices.h"
#include "host/HostUi.h"

#include <deque>
#include <functional>
#include <string>

class CEditorHost : public IHostEditor {
public:
    // Reads the next line of input; false at its end.
    using LineSource = std::function<bool(std::wstring&)>;

    explicit CEditorHost(IHostUi& ui);

    // The table handed to the module; the caller adds the services it owns.
    HOST_SERVICES Services();

    // Typed input echoes nothing (the terminal shows it); scripted input is
    // echoed after the prompt so that a transcript reads like a session.
    void SetSource(LineSource source, bool bEchoInput);
    // Runs commands until the input ends or QUIT; posted strings run first.
    void RunLoop();
    // Runs one line as the command line would.
    void ExecuteLine(const std::wstring& strLine, bool bEcho);

    int GetVar(const std::wstring& strName, SYSVAR_VALUE& value) override;
    int SetVar(const std::wstring& strName, const SYSVAR_VALUE& value) override;
    int GetEnv(const std::wstring& strName, std::wstring& strValue) override;
    int SetEnv(const std::wstring& strName, const std::wstring& strValue) override;
    int Command(const std::vector<std::wstring>& words) override;
    void PostCommandPrompt() override {}
    int SyncFileOpen(const std::wstring& strPath) override;
    bool SetMouseFilter(bool bOn) override;
    bool HasMainFrame() override { return m_bHasFrame; }

    // A prompt inside a command: pending answers, then posted lines, then input.
    bool GetInput(const std::wstring& strPrompt, std::wstring& strAnswer);
    // Runs the text in the document now, as automation's SendCommand does;
    // prompts read only from the text. Lines posted earlier wait behind it.
    bool RunTextNow(CHostDocument* pDoc, const std::wstring& strText);

    CSysVarStore m_vars;
    CCommandStack m_commands;
    CDocManager m_docs;
    CAutomation m_automation{*this};
    CEditorInput m_input{*this};
    bool m_bHasFrame = true;
    bool m_bMouseFiltered = false;
    IHostUi& m_ui;

private:
    void AddNativeCommands();
    bool NextLine(std::wstring& strLine, bool& bEcho);
    void RunCommand(const std::wstring& strName);
    void Print(const std::wstring& strText) { m_ui.Print(strText); }

    LineSource m_source;
    bool m_bEchoInput = false;
    bool m_bQuit = false;
    std::deque<std::wstring> m_pending; // words of the line at hand and answers
    std::wstring m_strActive;           // the running command, for CMDNAMES
};
