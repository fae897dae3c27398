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
    // What a wait for input ended with. Woken: nothing was read, but work was
    // posted meanwhile (a window posted a command string), to be run first.
    enum class LINE_READ { Line, End, Woken };
    // Reads the next line of input, or waits for one while the host's windows live.
    using LineSource = std::function<LINE_READ(std::wstring&)>;

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
    QWidget* MainFrame() override { return m_pFrame; }

    // A prompt inside a command: pending answers, then posted lines, then input.
    // A pending "\\" (the LISP pause) is passed over and the answer read from
    // the person (the window, the terminal, a script's next line).
    bool GetInput(const std::wstring& strPrompt, std::wstring& strAnswer);
    // A host command that returns the editor's result: anything but RTNORM
    // takes the command's changes back.
    void AddCommand(const std::wstring& strName, std::function<int()> function);
    void Print(const std::wstring& strText) { m_ui.Print(strText); }
    // The current document and its database; null without one.
    CHostDocument* Doc() { return m_docs.Current(); }
    AcDbDatabase* Db() { return Doc() ? Doc()->database() : nullptr; }
    // Runs the text in the document now, as automation's SendCommand does;
    // prompts read only from the text. Lines posted earlier wait behind it.
    bool RunTextNow(CHostDocument* pDoc, const std::wstring& strText);

    CSysVarStore m_vars;
    CCommandStack m_commands;
    CDocManager m_docs;
    CAutomation m_automation{*this};
    CEditorInput m_input{*this};
    bool m_bHasFrame = true;
    QWidget* m_pFrame = nullptr; // the toolkit's window, set by a host that has one
    bool m_bMouseFiltered = false;
    IHostUi& m_ui;
    // The drawing window's size in pixels: views, zooms and slides are made for it.
    int m_nScreenWidth = 1024, m_nScreenHeight = 768;
    // Set by a host with a drawing window: runs "3DORBIT", "RTPAN" or "RTZOOM"
    // interactively and returns the result. Without it they act as in a script.
    std::function<int(const std::wstring&)> m_interactiveView;
    // Called after each command line, so that a window can paint the drawing again.
    std::function<void()> m_onDrawingChanged;

private:
    void AddNativeCommands();
    bool NextLine(std::wstring& strLine, bool& bEcho);
    // The command's result: RTNORM, or what a host command returned.
    int RunCommand(const std::wstring& strName);

    LineSource m_source;
    bool m_bEchoInput = false;
    bool m_bQuit = false;
    std::deque<std::wstring> m_pending; // words of the line at hand and answers
    std::wstring m_strActive;           // the running command, for CMDNAMES
    int m_nResult = RTNORM;             // of the last host command
};
