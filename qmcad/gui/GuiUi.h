// The desktop's user interface for the module: message boxes, command-line text, wait cursor.
#pragma once

#include "host/HostUi.h"

#include <functional>
#include <string>

class QWidget;

class CGuiUi : public IHostUi {
public:
    int MessageBox(const std::wstring& strText, const std::wstring& strCaption,
                   unsigned nFlags) override;
    void Print(const std::wstring& strText) override;
    void BeginWaitCursor() override;
    void EndWaitCursor() override;

    QWidget* m_pParent = nullptr; // the boxes' owner, the main window
    // Where command-line text goes; standard output until the pane exists.
    std::function<void(const std::wstring&)> m_print;

private:
    int m_nWaitDepth = 0;
};
