// Terminal and script input of the command line, with the toolkit's events handled while waiting.
#include "ConsoleInput.h"

#include "base/StrUtil.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QSocketNotifier>

#include <cerrno>
#include <unistd.h>

CConsoleInput::CConsoleInput(int fd) : m_fd(fd) {}

CConsoleInput::~CConsoleInput() = default;

bool CConsoleInput::TakeLine(std::wstring& strLine) {
    size_t nl = m_buffer.find('\n');
    if (nl == std::string::npos) {
        if (!m_bEof || m_buffer.empty())
            return false;
        nl = m_buffer.size(); // a last line without its line end still counts
    }
    std::string line = m_buffer.substr(0, nl);
    m_buffer.erase(0, nl < m_buffer.size() ? nl + 1 : nl);
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    strLine = Utf8ToWide(line);
    return true;
}

void CConsoleInput::OnReadable() {
    char chunk[4096];
    ssize_t n = ::read(m_fd, chunk, sizeof chunk);
    if (n < 0 && (errno == EINTR || errno == EAGAIN))
        return;
    if (n <= 0) {
        m_bEof = true;
        m_pNotifier->setEnabled(false);
    } else {
        m_buffer.append(chunk, static_cast<size_t>(n));
    }
    if (m_pLoop)
        m_pLoop->quit();
}

void CConsoleInput::Wake() {
    m_bWoken = true;
    if (m_pLoop)
        m_pLoop->quit();
}

CEditorHost::LINE_READ CConsoleInput::Read(std::wstring& strLine) {
    using LINE_READ = CEditorHost::LINE_READ;
    if (!m_pNotifier) {
        m_pNotifier = std::make_unique<QSocketNotifier>(m_fd, QSocketNotifier::Read);
        QObject::connect(m_pNotifier.get(), &QSocketNotifier::activated, [this] { OnReadable(); });
    }
    for (;;) {
        if (TakeLine(strLine))
            return LINE_READ::Line;
        if (m_bEof)
            return LINE_READ::End;
        if (m_bWoken) {
            m_bWoken = false;
            return LINE_READ::Woken;
        }
        // A window's handler may itself wait for a line (a modal prompt): the
        // inner wait takes over and the outer one resumes after it.
        QEventLoop loop;
        QEventLoop* pOuter = m_pLoop;
        m_pLoop = &loop;
        loop.exec();
        m_pLoop = pOuter;
    }
}

CEditorHost::LINE_READ CScriptInput::Read(std::wstring& strLine) {
    QCoreApplication::processEvents();
    std::string line;
    if (!std::getline(m_file, line))
        return CEditorHost::LINE_READ::End;
    if (!line.empty() && line.back() == '\r')
        line.pop_back();
    strLine = Utf8ToWide(line);
    return CEditorHost::LINE_READ::Line;
}
