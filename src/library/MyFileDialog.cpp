// The import's file dialog: the request to the window and the platform's buffer rule.
#include "library/MyFileDialog.h"

#include "host/HostUi.h"
#include "shared/fileops/FileOps.h"

namespace {

IFileDialogHost* g_pFileDialogHost = nullptr;

// Characters a multi-selection takes in the platform's buffer: the directory,
// then each name, each ended by a zero, and a last zero.
size_t BufferLength(const std::vector<std::wstring>& paths) {
    if (paths.size() == 1)
        return paths.front().size() + 2;
    size_t nLength = GetParentPath(paths.front()).size() + 1;
    for (const std::wstring& strPath : paths)
        nLength += GetFileName(strPath).size() + 1;
    return nLength + 1;
}

} // namespace

void SetFileDialogHost(IFileDialogHost* pHost) {
    g_pFileDialogHost = pHost;
}

IFileDialogHost* GetFileDialogHost() {
    return g_pFileDialogHost;
}

CMyFileDialog::CMyFileDialog(const std::wstring& strFilter, bool bMultiSelect, size_t nMaxFile)
    : m_strFilter(strFilter), m_bMultiSelect(bMultiSelect), m_nMaxFile(nMaxFile) {}

int CMyFileDialog::DoModal() {
    m_nError = 0;
    m_paths.clear();
    if (!g_pFileDialogHost)
        return IDCANCEL;
    FILE_DIALOG_REQUEST request{m_strTitle, m_strFilter, m_strInitialDir, m_bMultiSelect};
    std::vector<std::wstring> paths;
    if (!g_pFileDialogHost->ChooseFiles(request, paths) || paths.empty())
        return IDCANCEL;
    if (!m_bMultiSelect)
        paths.resize(1);
    if (BufferLength(paths) > m_nMaxFile) {
        m_nError = FNERR_BUFFERTOOSMALL;
        return IDCANCEL;
    }
    m_paths = std::move(paths);
    return IDOK;
}
