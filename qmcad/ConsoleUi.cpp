// Console boxes: the text with its caption and icon; questions are read from a terminal.
#include "ConsoleUi.h"

#include "base/StrUtil.h"

#include <unistd.h>

namespace {

const char* IconName(unsigned nFlags) {
    switch (nFlags & 0xF0) {
    case MB_ICONSTOP:
        return "stop";
    case MB_ICONQUESTION:
        return "question";
    case MB_ICONEXCLAMATION:
        return "exclamation";
    case MB_ICONINFORMATION:
        return "information";
    default:
        return "plain";
    }
}

// Without a terminal a question is answered no or cancel: nothing is agreed unasked.
int Ask(unsigned nButtons, std::FILE* out) {
    bool bYesNo = nButtons == MB_YESNO;
    const char* prompt = bYesNo ? "[y/n] " : nButtons == MB_RETRYCANCEL ? "[r/c] " : "[o/c] ";
    if (!::isatty(STDIN_FILENO)) {
        std::fputs("(no terminal: answered no)\n", out);
        return bYesNo ? IDNO : IDCANCEL;
    }
    std::fputs(prompt, out);
    std::fflush(out);
    char buf[16] = {};
    if (!std::fgets(buf, sizeof buf, stdin))
        return bYesNo ? IDNO : IDCANCEL;
    char c = buf[0] | 0x20;
    if (bYesNo)
        return c == 'y' ? IDYES : IDNO;
    if (nButtons == MB_RETRYCANCEL)
        return c == 'r' ? IDRETRY : IDCANCEL;
    return c == 'o' ? IDOK : IDCANCEL;
}

} // namespace

int CConsoleUi::MessageBox(const std::wstring& strText, const std::wstring& strCaption,
                           unsigned nFlags) {
    std::fprintf(m_out, "[%s | %s] %s\n", WideToUtf8(strCaption).c_str(), IconName(nFlags),
                 WideToUtf8(strText).c_str());
    unsigned nButtons = nFlags & 0x0F;
    if (nButtons == MB_OK)
        return IDOK;
    return Ask(nButtons, m_out);
}

void CConsoleUi::Print(const std::wstring& strText) {
    std::fputs(WideToUtf8(strText).c_str(), m_out);
    std::fflush(m_out);
}
