// The command-line pane: the history above, the prompt and the input line below.
#pragma once

#include "editor/EditorHost.h"

#include <QWidget>

#include <deque>
#include <functional>
#include <string>

class QEventLoop;
class QLabel;
class QLineEdit;
class QPlainTextEdit;

// The editor's line source on the desktop. It reads like a terminal: what
// the editor prints goes to the history, and the unfinished last line is the
// prompt in front of the input. Answers come from the input line or from the
// drawing view; while none is there the event loop runs.
class CCommandLinePane : public QWidget {
public:
    explicit CCommandLinePane(QWidget* pParent = nullptr);
    ~CCommandLinePane() override;

    CEditorHost::LINE_READ Read(std::wstring& strLine);
    // An answer as if typed; bEcho shows it in the history (as strShown when
    // given). A tracked cursor position (starting "~") replaces one not yet read.
    void Submit(const std::wstring& strText, bool bEcho = true, const std::wstring& strShown = {});
    // Ends the current wait with LINE_READ::Woken (posted work is waiting).
    void Wake();
    // Ends every wait: the window is closing.
    void Close();
    void Print(const std::wstring& strText);

    // A wait for input is in progress and has nothing to read yet.
    bool IsWaitingIdle() const { return m_pLoop && m_answers.empty() && !m_bWoken; }
    QString Prompt() const;
    QString History() const;
    QLineEdit* Input() { return m_pInput; }
    // Called when a wait begins: the moment to bring the windows up to date.
    std::function<void()> m_onWaiting;
    // Space ends the input as Enter does, except where text is awaited.
    bool m_bSpaceEnters = true;

protected:
    bool eventFilter(QObject* pWatched, QEvent* pEvent) override;

private:
    void AppendHistory(const QString& strText);
    void Quit();

    QPlainTextEdit* m_pHistory;
    QLabel* m_pPrompt;
    QLineEdit* m_pInput;
    QString m_strOpenLine; // printed text after the last line end
    QStringList m_typed;   // lines typed, for Up and Down
    qsizetype m_nRecall = 0;
    struct ANSWER {
        std::wstring strText;
        bool bEcho;
        std::wstring strShown;
    };
    std::deque<ANSWER> m_answers;
    bool m_bWoken = false;
    bool m_bClosed = false;
    QEventLoop* m_pLoop = nullptr;
};
