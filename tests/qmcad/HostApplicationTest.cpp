// The host's application object: an exception of an event handler ends only that event.
#include "HostApplication.h"

#include <QCoreApplication>
#include <QEvent>
#include <QObject>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

// A window's handler gone wrong: it throws on the first user event.
class CThrowingObject : public QObject {
public:
    bool event(QEvent* pEvent) override {
        if (pEvent->type() != QEvent::User)
            return QObject::event(pEvent);
        ++m_nEvents;
        if (m_nEvents == 1)
            throw std::runtime_error("slot failed");
        return true;
    }
    int m_nEvents = 0;
};

} // namespace

TEST(CHostApplication, AnEventThatThrowsEndsOnlyThatEvent) {
    int argc = 1;
    char szName[] = "qmcad";
    char* argv[] = {szName, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    CHostApplication app(argc, argv);
    std::wstring strTold;
    app.m_onEscape = [&](const std::wstring& strWhat) { strTold += strWhat + L";"; };
    CThrowingObject object;
    QCoreApplication::postEvent(&object, new QEvent(QEvent::User));
    QCoreApplication::postEvent(&object, new QEvent(QEvent::User));
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(object.m_nEvents, 2); // the loop went on after the first
    EXPECT_EQ(strTold, L"slot failed;");
}
