// Library item operations on a shared site over loopback, with a drawing of about 1 MB:
// FTP calls, file bytes moved and wall time of rename, delete and saving the current drawing.
#include "DbBuilders.h"
#include "EditorTestHost.h"
#include "RecordingLibView.h"
#include "SharedSite.h"

#include "app/LibState.h"
#include "base/FileSystem.h"
#include "host/db/AcDb.h"
#include "library/CircuitLibDlg.h"

#include <chrono>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using CClock = std::chrono::steady_clock;

void AddLines(AcDbDatabase& db, int nCount) {
    for (int i = 0; i < nCount; ++i)
        AppendToModelSpace(db, new AcDbLine(AcGePoint3d(i, 0, 0), AcGePoint3d(i + 0.5, 100.25, 0)));
}

struct CBench {
    CEditorTestHost host;
    CTempDir trash;
    CSharedSite site{host, 1};
    CCountingSleep sleep;
    CRecordingLibView* pView = nullptr;
    CCircuitLibDlg* pDlg = nullptr;

    std::wstring Local(const std::wstring& strName) {
        return site.Install(0, L"InstallHole\\bench\\" + strName);
    }
    // Runs one operation and prints its calls, bytes and time.
    template <class OPERATION> void Measure(const char* pszName, OPERATION operation) {
        size_t nCalls = site.m_recorder.m_log.size();
        int64_t nBytes = site.m_recorder.m_nBytes;
        auto start = CClock::now();
        operation();
        double dMs = std::chrono::duration<double, std::milli>(CClock::now() - start).count();
        std::printf("%-28s %5zu calls %10lld bytes %8.1f ms\n", pszName,
                    site.m_recorder.m_log.size() - nCalls,
                    static_cast<long long>(site.m_recorder.m_nBytes - nBytes), dMs);
        if (getenv("QM_BENCH_CALLS"))
            for (size_t i = nCalls; i < site.m_recorder.m_log.size(); ++i)
                std::printf("    %ls\n", site.m_recorder.m_log[i].c_str());
    }
    void Select(int nRow) {
        pView->m_selection = {nRow};
        pDlg->OnItemchangedList({nRow});
    }
};

} // namespace

int main() {
    std::setlocale(LC_ALL, "C.UTF-8");
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    CBench b;
    setenv("XDG_DATA_HOME", b.trash.OsPath().c_str(), 1);
    if (!b.site.Started()) {
        std::printf("no FTP server (python3-pyftpdlib)\n");
        return 1;
    }
    CMyFtpConnection& ftp = b.site.On(0);
    b.host.m_strCommonRes = b.host.m_strLocal;
    b.host.m_nInstallStyle = 1;
    FsCreateDirectory(b.site.SitePath(L"InstallHole"));
    ftp.CommitNewDir(L"InstallHole\\bench\\", L"");
    CreateDirPath(b.Local(L""));

    AcDbDatabase db(true);
    AddLines(db, 8800);
    db.saveAs(b.Local(L"a.dwg").c_str());
    FS_FIND_DATA info;
    FsGetInfo(b.Local(L"a.dwg"), info);
    std::printf("drawing: %lld bytes\n", static_cast<long long>(info.nSize));
    ftp.CommitFile(b.Local(L"a.dwg"), L"InstallHole\\bench\\a.dwg");
    AddLines(*b.host.m_editor.Doc()->database(), 8800);

    g_HoleLib.g_nFtpMode = 1;
    g_HoleLib.strRoot = b.host.m_strCommonRes;
    auto pView = std::make_unique<CRecordingLibView>();
    b.pView = pView.get();
    b.pDlg = new CCircuitLibDlg(g_HoleLib, &ftp, std::move(pView));
    g_HoleLib.pLibDlg = b.pDlg;
    b.pDlg->Create();
    b.pDlg->Show();

    b.Select(0);
    b.pView->m_nameAnswers = {{L"b"}};
    b.Measure("rename", [&] { b.pDlg->OnCommand(IDC_BTN_RENAME); });
    b.pView->m_nameAnswers = {{L"saved"}};
    b.Measure("save current (new name)", [&] { b.pDlg->OnCommand(IDC_BTN_SAVE); });
    b.pView->m_nameAnswers = {{L"saved"}};
    b.host.m_answers = {IDYES};
    b.Measure("save current (replace)", [&] { b.pDlg->OnCommand(IDC_BTN_SAVE); });
    b.Select(0);
    b.host.m_answers = {IDYES};
    b.Measure("delete", [&] { b.pDlg->OnCommand(IDC_BTN_DELETE); });
    for (const TEST_BOX& box : b.host.m_boxes)
        std::printf("box: %ls\n", box.strText.c_str());
    IModelessWindow* pWindow = b.pDlg;
    DestroyModelessWindow(pWindow);
    g_HoleLib = CLibState();
    return 0;
}
