// The host's one application object: the event loop of its windows and the module's.
#pragma once

#include <QApplication>

#include <functional>
#include <string>

// An exception that leaves an event handler (a module window's click, a
// timer) would end the program inside Qt; here it ends only that event,
// and m_onEscape is told what it was, in one line.
class CHostApplication : public QApplication {
public:
    CHostApplication(int& argc, char** argv) : QApplication(argc, argv) {}
    bool notify(QObject* pReceiver, QEvent* pEvent) override;

    std::function<void(const std::wstring& strWhat)> m_onEscape;
};
