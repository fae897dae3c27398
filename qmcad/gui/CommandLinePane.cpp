// Command-line pane: prompt and history from the editor's output, answers queued for its loop.
#include "gui/CommandLinePane.h"

#include <QEventLoop>
#include <QFont>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

CCommandLinePane::CCommandLinePane(QWidget* pParent) : QWidget(pParent) {
    m_pHistory = new QPlainTextEdit(this);
    m_pHistory->setReadOnly(true);
    m_pHistory->setFocusPolicy(Qt::NoFocus);
    m_pHistory->setMaximumBlockCount(5000);
    m_pPrompt = new QLabel(this);
    m_pInput = new QLineEdit(this);
    m_pInput->setFrame(false);
    m_pInput->installEventFilter(this);
    auto* pLine = new QHBoxLayout;
    pLine->setContentsMargins(4, 0, 4, 2);
    pLine->setSpacing(0);
    pLine->addWidget(m_pPrompt);
    pLine->addWidget(m_pInput, 1);
    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);
    pLayout->addWidget(m_pHistory, 1);
    pLayout->addLayout(pLine);
    QObject::connect(m_pInput, &QLineEdit::returnPressed, this, [this] {
        std::wstring strText = m_pInput->text().toStdWString();
        if (!m_pInput->text().isEmpty() &&
            (m_typed.isEmpty() || m_typed.back() != m_pInput->text()))
            m_typed.append(m_pInput->text());
        m_nRecall = m_typed.size();
        m_pInput->clear();
        Submit(strText);
    });
}

CCommandLinePane::~CCommandLinePane() = default;

void CCommandLinePane::AppendHistory(const QString& strText) {
    m_pHistory->appendPlainText(strText);
    m_pHistory->verticalScrollBar()->setValue(m_pHistory->verticalScrollBar()->maximum());
}

void CCommandLinePane::Print(const std::wstring& strText) {
    m_strOpenLine += QString::fromStdWString(strText);
    qsizetype nl;
    while ((nl = m_strOpenLine.indexOf(QLatin1Char('\n'))) >= 0) {
        AppendHistory(m_strOpenLine.left(nl));
        m_strOpenLine.remove(0, nl + 1);
    }
    m_pPrompt->setText(m_strOpenLine);
}

QString CCommandLinePane::Prompt() const {
    return m_strOpenLine;
}

QString CCommandLinePane::History() const {
    return m_pHistory->toPlainText();
}

void CCommandLinePane::Submit(const std::wstring& strText, bool bEcho,
                              const std::wstring& strShown) {
    bool bTracked = !strText.empty() && strText[0] == L'~';
    if (bTracked && !m_answers.empty() && !m_answers.back().strText.empty() &&
        m_answers.back().strText[0] == L'~')
        m_answers.back().strText = strText; // only the newest position matters
    else
        m_answers.push_back({strText, bEcho, strShown});
    Quit();
}

void CCommandLinePane::Wake() {
    m_bWoken = true;
    Quit();
}

void CCommandLinePane::Close() {
    m_bClosed = true;
    Quit();
}

void CCommandLinePane::Quit() {
    if (m_pLoop)
        m_pLoop->quit();
}

CEditorHost::LINE_READ CCommandLinePane::Read(std::wstring& strLine) {
    using LINE_READ = CEditorHost::LINE_READ;
    if (m_onWaiting)
        m_onWaiting();
    for (;;) {
        if (m_bClosed)
            return LINE_READ::End;
        if (!m_answers.empty()) {
            ANSWER answer = m_answers.front();
            m_answers.pop_front();
            strLine = answer.strText;
            if (answer.bEcho)
                Print((strLine == L"*Cancel*"     ? std::wstring(L"*取消*")
                       : !answer.strShown.empty() ? answer.strShown
                                                  : strLine) +
                      L"\n");
            else if (!m_strOpenLine.isEmpty() && (strLine.empty() || strLine[0] != L'~'))
                Print(L"\n");
            return LINE_READ::Line;
        }
        if (m_bWoken) {
            // Posted work runs first and echoes itself: the prompt shown goes
            // unanswered and is asked again afterwards.
            m_bWoken = false;
            m_strOpenLine.clear();
            m_pPrompt->clear();
            return LINE_READ::Woken;
        }
        // A handler inside this wait may wait for a line itself: the inner
        // wait takes the answers, the outer one goes on after it.
        QEventLoop loop;
        QEventLoop* pOuter = m_pLoop;
        m_pLoop = &loop;
        loop.exec();
        m_pLoop = pOuter;
    }
}

bool CCommandLinePane::eventFilter(QObject* pWatched, QEvent* pEvent) {
    if (pWatched != m_pInput || pEvent->type() != QEvent::KeyPress)
        return QWidget::eventFilter(pWatched, pEvent);
    auto* pKey = static_cast<QKeyEvent*>(pEvent);
    if (pKey->key() == Qt::Key_Escape) {
        m_pInput->clear();
        Submit(L"*Cancel*");
        return true;
    }
    if ((pKey->key() == Qt::Key_Up || pKey->key() == Qt::Key_Down) && !m_typed.isEmpty()) {
        m_nRecall = std::clamp<qsizetype>(m_nRecall + (pKey->key() == Qt::Key_Up ? -1 : 1), 0,
                                          m_typed.size());
        m_pInput->setText(m_nRecall < m_typed.size() ? m_typed[m_nRecall] : QString());
        return true;
    }
    if (pKey->key() == Qt::Key_Space && m_bSpaceEnters) {
        emit m_pInput->returnPressed();
        return true;
    }
    return QWidget::eventFilter(pWatched, pEvent);
}
