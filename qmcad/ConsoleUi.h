// The reference host's console user interface: boxes and command-line text on the terminal.
#pragma once

#include "host/HostUi.h"

#include <cstdio>

class CConsoleUi : public IHostUi {
public:
    explicit CConsoleUi(std::FILE* out = stdout) : m_out(out) {}
    int MessageBox(const std::wstring& strText, const std::wstring& strCaption,
                   unsigned nFlags) override;
    void Print(const std::wstring& strText) override;
    void BeginWaitCursor() override {}
    void EndWaitCursor() override {}

private:
    std::FILE* m_out;
};
