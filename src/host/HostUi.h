// What the module needs of the editor's user interface: boxes, command-line output, wait cursor.
#pragma once

#include "base/Format.h"

#include <string>

// Box flags and answers with the platform's values.
enum : unsigned {
    MB_OK = 0,
    MB_OKCANCEL = 1,
    MB_YESNO = 4,
    MB_RETRYCANCEL = 5,
    MB_ICONSTOP = 16,
    MB_ICONQUESTION = 32,
    MB_ICONEXCLAMATION = 48,
    MB_ICONINFORMATION = 64,
};
enum : int { IDOK = 1, IDCANCEL = 2, IDRETRY = 4, IDYES = 6, IDNO = 7 };

class IHostUi {
public:
    virtual ~IHostUi() = default;
    // Shows a modal box and returns the answer (IDOK, IDYES, ...).
    virtual int MessageBox(const std::wstring& strText, const std::wstring& strCaption,
                           unsigned nFlags) = 0;
    // Text for the command line, already formatted.
    virtual void Print(const std::wstring& strText) = 0;
    virtual void BeginWaitCursor() = 0;
    virtual void EndWaitCursor() = 0;
};

// The system's boxes carry this caption.
inline constexpr const wchar_t* kBoxCaption = L"Quillmarch";

// A box with the system's caption. Without a host nothing is shown and the
// answer is IDCANCEL, so that no question is taken as agreed.
int QmMessageBox(const std::wstring& strText, unsigned nFlags);
int HostMessageBox(const std::wstring& strText, const std::wstring& strCaption, unsigned nFlags);

void HostPrint(const std::wstring& strText);

// The editor's command-line printf.
template <class... A> void acutPrintf(std::wstring_view fmt, const A&... args) {
    HostPrint(Format(fmt, args...));
}

// Shows the wait cursor for the life of the object.
class CWaitCursor {
public:
    CWaitCursor();
    ~CWaitCursor();
    CWaitCursor(const CWaitCursor&) = delete;
    CWaitCursor& operator=(const CWaitCursor&) = delete;
    void Restore(); // takes the cursor off before the end of the scope
private:
    bool m_bOn = false;
};
