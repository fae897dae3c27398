// The view the two modeless item dialogs drive: fields by control id, the window and its place.
#pragma once

#include <string>

class CItemDialog;

// What tells the four dialogs apart on the screen.
struct ITEM_DIALOG_TEMPLATE {
    int nTemplate = 104;
    const wchar_t* pszClass = L"CCirWblockDlg";
    const wchar_t* pszTitle = L"开孔图新建";
    const wchar_t* pszHint = L""; // a line above the buttons; empty shows none
    int nBaseX = 525, nBaseY = 526;
    int nName = 611, nModel = 603, nCode = 604; // 0: the dialog has no such field
    bool bIconButtons = false;                  // OK and Cancel with the icons 638 and 640
};

inline constexpr int IDC_ITEM_PICK = 527;
inline constexpr int IDI_ITEM_OK = 638;
inline constexpr int IDI_ITEM_CANCEL = 640;

struct ITEM_DIALOG_RECT {
    int x = 0, y = 0, cx = 0, cy = 0;
};

class IItemDialogView {
public:
    virtual ~IItemDialogView() = default;
    // Builds the window from the template; its buttons, Esc and the pick
    // button go to the dialog's handlers. False leaves nothing on the screen.
    virtual bool Create(const ITEM_DIALOG_TEMPLATE& tmpl, CItemDialog& dlg) = 0;
    virtual void SetText(int nId, const std::wstring& strText) = 0;
    virtual std::wstring GetText(int nId) = 0;
    virtual void Show(bool bShow) = 0;
    virtual void Activate() = 0;
    virtual bool IsIconic() = 0;
    virtual void Restore() = 0;
    // Hides the window at once and frees it once its own event has ended.
    virtual void Destroy() = 0;
    virtual ITEM_DIALOG_RECT WindowRect() = 0;
    virtual void MoveWindow(const ITEM_DIALOG_RECT& rect) = 0;
    // The width of the host's main window, 0 without one.
    virtual int FrameWidth() = 0;
    // Gives the keyboard focus to the host's main window.
    virtual void ActivateFrame() = 0;
};
