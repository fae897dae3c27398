// The browser test fixture: the hole library under the local root, so that its twin is real.
#include "LibraryBrowserFixture.h"

#include "base/FileSystem.h"
#include "base/Format.h"
#include "editor/DocManager.h"
#include "settings/HistoryDataOprt.h"

CLibraryBrowserTest::CLibraryBrowserTest() {
    m_host.m_strCommonRes = m_dir / L"local\\";
    m_host.m_strLocal = m_dir / L"local\\";
    m_host.m_strInstall = m_dir / L"";
    FsCreateDirectory(m_dir / L"local");
    FsCreateDirectory(m_dir / L"local\\InstallHole");
    FsCreateDirectory(m_dir / L"local\\LaySketch");
    FsCreateDirectory(m_dir / L"LocalData");
}

CLibraryBrowserTest::~CLibraryBrowserTest() {
    if (g_HoleLib.pLibDlg) {
        IModelessWindow* pWindow = g_HoleLib.pLibDlg;
        DestroyModelessWindow(pWindow);
    }
    g_HoleLib = CLibState();
}

void CLibraryBrowserTest::AddItems(const std::wstring& strSubDir,
                                   std::initializer_list<std::wstring> names) {
    std::wstring strDir = HoleRoot() + strSubDir;
    CreateDirPath(strDir);
    for (const std::wstring& strName : names)
        WriteBytes(JoinPath(strDir, strName), "item");
}

void CLibraryBrowserTest::AddNumberedItems(const std::wstring& strSubDir, int nCount) {
    std::wstring strDir = HoleRoot() + strSubDir;
    CreateDirPath(strDir);
    for (int i = 1; i <= nCount; ++i)
        WriteBytes(JoinPath(strDir, Format(L"%d.dwg", i)), "item");
}

void CLibraryBrowserTest::SetLastDir(const std::wstring& strDir, int nIndex) {
    CHistoryDataOprt history;
    history.SetText(7, strDir);
    history.SetText(8, Format(L"%d", nIndex));
}

CCircuitLibDlg& CLibraryBrowserTest::Open(CMyFtpConnection* pFtp) {
    g_HoleLib.strRoot = m_host.m_strCommonRes;
    auto pView = std::make_unique<CRecordingLibView>();
    m_pView = pView.get();
    m_pDlg = new CCircuitLibDlg(g_HoleLib, pFtp, std::move(pView));
    g_HoleLib.pLibDlg = m_pDlg;
    EXPECT_TRUE(m_pDlg->Create());
    m_pDlg->Show();
    return *m_pDlg;
}

std::wstring CLibraryBrowserTest::Posted() const {
    std::wstring strPosted;
    auto* pDoc = static_cast<CHostDocument*>(acDocManagerPtr()->curDocument());
    for (const POSTED_LINE& line : pDoc->m_posted)
        strPosted += line.strText + L"\n";
    return strPosted;
}
