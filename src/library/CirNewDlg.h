// The modal name dialog of the library: its fields and the OK handler its window calls.
#pragma once

#include <functional>
#include <string>

// One class serves the item and directory operations; the title selects
// what its OK handler does. The window shows m_strDir and the name field,
// and the twin check box only under the two directory titles.
class CCirNewDlg {
public:
    std::wstring m_strTitle;
    std::wstring m_strDir;     // target directory with final backslash
    std::wstring m_strOldName; // shown in the name field for the renames
    std::wstring m_strResult;  // the name the user typed, read by OnOK
    std::wstring m_strPath;    // full path built on OK
    std::wstring m_strSyncText = L"同步到屏面布置图库目录";
    int m_bSyncTwin = 1;

    bool IsDirectoryTitle() const { return m_strTitle == L"目录新建" || m_strTitle == L"目录更名"; }
    // The operation's own handler: true closes the dialog, false keeps it
    // open with the focus in the name field.
    std::function<bool(CCirNewDlg&)> m_onOK;
    bool OnOK() { return m_onOK ? m_onOK(*this) : true; }
};
