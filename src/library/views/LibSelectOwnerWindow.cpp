// Posting the select mode's messages to a sibling module's window.
#include "library/views/LibSelectOwnerWindow.h"

#include <QCoreApplication>
#include <QEvent>

void CLibSelectOwnerWindow::PostMessage(unsigned nMsg) {
    if (m_pWindow)
        QCoreApplication::postEvent(m_pWindow.data(), new QEvent(QEvent::Type(nMsg)));
}
