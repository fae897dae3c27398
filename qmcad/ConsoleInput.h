// Command-line input from the terminal or a script, read while the host's windows go on living.
#pragma once

#include "editor/EditorHost.h"

#include <fstream>
#include <memory>
#include <string>

class QEventLoop;
class QSocketNotifier;

// Lines typed on a terminal (or piped in). While no whole line is there the
// toolkit's event loop runs, so that modeless windows paint and take clicks;
// a window that posts a command string wakes the wait.
class CConsoleInput {
public:
    explicit CConsoleInput(int fd);
    ~CConsoleInput();
    CConsoleInput(const CConsoleInput&) = delete;
    CConsoleInput& operator=(const CConsoleInput&) = delete;

    CEditorHost::LINE_READ Read(std::wstring& strLine);
    // Ends the current wait (or the next one) with LINE_READ::Woken.
    void Wake();

private:
    bool TakeLine(std::wstring& strLine);
    void OnReadable();

    int m_fd;
    std::string m_buffer; // bytes read but not yet a whole line
    bool m_bEof = false;
    bool m_bWoken = false;
    std::unique_ptr<QSocketNotifier> m_pNotifier;
    QEventLoop* m_pLoop = nullptr; // the wait in progress
};

// Lines of a script file (UTF-8). Between lines the windows' pending events
// are handled, as they would be between commands typed by hand.
class CScriptInput {
public:
    explicit CScriptInput(const std::string& strPath) : m_file(strPath) {}
    bool IsOpen() const { return m_file.is_open(); }
    CEditorHost::LINE_READ Read(std::wstring& strLine);

private:
    std::ifstream m_file;
};
