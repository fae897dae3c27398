// The open-file dialog of the library's import, without a toolkit: the window is the host's.
#pragma once

#include <string>
#include <vector>

// What the dialog asks of the window that shows it.
struct FILE_DIALOG_REQUEST {
    std::wstring strTitle;
    std::wstring strFilter;     // "Name(*.ext)|*.ext|" pairs
    std::wstring strInitialDir; // system path
    bool bMultiSelect = false;
};

// Shows the dialog; true with the chosen full paths, false on cancel.
class IFileDialogHost {
public:
    virtual ~IFileDialogHost() = default;
    virtual bool ChooseFiles(const FILE_DIALOG_REQUEST& request,
                             std::vector<std::wstring>& paths) = 0;
};
// The window side registers itself; without one every dialog is cancelled.
void SetFileDialogHost(IFileDialogHost* pHost);
IFileDialogHost* GetFileDialogHost();

// The platform's code of a cancel whose names did not fit the buffer.
inline constexpr unsigned FNERR_BUFFERTOOSMALL = 12291;

class CMyFileDialog {
public:
    CMyFileDialog(const std::wstring& strFilter, bool bMultiSelect, size_t nMaxFile);
    // IDOK or IDCANCEL; a choice longer than the name buffer is a cancel
    // with FNERR_BUFFERTOOSMALL, as the platform's dialog reports it.
    int DoModal();
    unsigned CommDlgExtendedError() const { return m_nError; }
    const std::vector<std::wstring>& GetPathNames() const { return m_paths; }

    std::wstring m_strTitle;
    std::wstring m_strInitialDir;

private:
    std::wstring m_strFilter;
    bool m_bMultiSelect;
    size_t m_nMaxFile;
    unsigned m_nError = 0;
    std::vector<std::wstring> m_paths;
};
