// A sibling module's Qt window as the owner of a browser in select mode.
#pragma once

#include "library/LibSelectOwner.h"

#include <QPointer>
#include <QWidget>

// Watches the window, so that a caller that destroyed it gets nothing.
class CLibSelectOwnerWindow : public ILibSelectOwner {
public:
    explicit CLibSelectOwnerWindow(QWidget* pWindow) : m_pWindow(pWindow) {}
    bool IsWindow() const override { return !m_pWindow.isNull(); }
    // A plain event of the message's number, delivered when the event loop is back.
    void PostMessage(unsigned nMsg) override;

private:
    QPointer<QWidget> m_pWindow;
};
