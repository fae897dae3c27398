// The browser's batch run of slides on 42 demo items: time per item locally, and on a shared
// site the FTP calls (each at least one round trip) per item; prints its figures.
#include "EditorTestHost.h"
#include "RecordingLibView.h"
#include "SharedSite.h"

#include "app/LibState.h"
#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"
#include "demo/DemoInstall.h"
#include "library/CircuitLibDlg.h"
#include "settings/HistoryDataOprt.h"
#include "shared/fileops/FileOps.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <map>

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kCopies = 6; // of the demo's seven hole items: 42 items

double SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// The demo's hole items, six times over, under InstallHole\批量\ of the install root.
int MakeItems(const std::wstring& strInstall) {
    CTempDir demoDir;
    CSuiteConfig config;
    if (!MakeDemoInstall(demoDir.OsPath(), config))
        return 0;
    CStringArray demo;
    CollectFiles(config.CommonResInstallPath() + L"InstallHole", L"dwg", demo, true);
    std::wstring strDir = strInstall + L"InstallHole\\批量\\";
    CreateDirPath(strDir);
    int nItems = 0;
    for (int k = 0; k < kCopies; ++k)
        for (const std::wstring& strFile : demo)
            nItems +=
                FsCopyFile(strFile, strDir + Format(L"%d-%s", k, GetFileName(strFile)), false);
    FsCreateDirectory(strInstall + L"LocalData");
    CHistoryDataOprt history;
    history.SetText(7, L"批量");
    return nItems;
}

int CountSlides(const std::wstring& strDir) {
    CStringArray slides;
    CollectFiles(strDir, L"sld", slides, true);
    return static_cast<int>(slides.size());
}

// One batch run over the browser's list; the seconds it took.
double RunBatch(CEditorTestHost& host, CMyFtpConnection* pFtp) {
    g_HoleLib = CLibState();
    g_HoleLib.strRoot = host.m_strCommonRes;
    g_HoleLib.g_nFtpMode = pFtp ? 1 : 0;
    CCircuitLibDlg browser(g_HoleLib, pFtp, std::make_unique<CRecordingLibView>());
    if (!browser.Create())
        return -1;
    host.m_answers = {IDYES};
    auto start = Clock::now();
    browser.OnCommand(IDC_BTN_BATCH);
    double dSeconds = SecondsSince(start);
    browser.DestroyWindow();
    return dSeconds;
}

} // namespace

int main() {
    CEditorTestHost host;
    CTempDir local;
    host.m_strCommonRes = host.m_strLocal = host.m_strInstall = local.Path();
    int nItems = MakeItems(local.Path());
    std::vector<double> runs;
    for (int i = 0; i < 3; ++i)
        runs.push_back(RunBatch(host, nullptr));
    std::sort(runs.begin(), runs.end());
    int nSlides = CountSlides(local / L"InstallHole\\批量");
    std::printf("batch slides, %d demo items, local mode (%d slides written)\n", nItems, nSlides);
    std::printf("  per item: %.4f s (median of 3 runs; target < 0.2 s), whole run %.2f s\n",
                runs[1] / nItems, runs[1]);

    CSharedSite site(host, 1);
    if (!site.Started()) {
        std::printf("  shared mode: no FTP server (python3-pyftpdlib) - skipped\n");
        return nSlides == nItems ? 0 : 1;
    }
    CMyFtpConnection& ftp = site.On(0);
    host.m_strCommonRes = host.m_strLocal;
    host.m_nInstallStyle = 1;
    int nShared = MakeItems(site.Install(0, L""));
    ftp.CommitNewDir(L"InstallHole\\批量\\", L"");
    CStringArray files;
    CollectFiles(site.Install(0, L"InstallHole\\批量"), L"dwg", files, false);
    for (const std::wstring& strFile : files)
        site.PutOnSite(L"InstallHole\\批量\\" + GetFileName(strFile), ReadBytes(strFile));
    size_t nCallsBefore = site.m_recorder.m_log.size();
    double dShared = RunBatch(host, &ftp);
    size_t nCalls = site.m_recorder.m_log.size() - nCallsBefore;
    int nOnSite = CountSlides(site.SitePath(L"InstallHole\\批量"));
    std::printf("batch slides, %d demo items, shared mode on a local pyftpdlib site (%d on the "
                "site)\n",
                nShared, nOnSite);
    std::printf("  per item: %.4f s, FTP calls %.1f (download, commit of the slide with the "
                "version file)\n",
                dShared / nShared, static_cast<double>(nCalls) / nShared);
    std::map<std::wstring, int> calls; // by the call's name
    for (size_t i = nCallsBefore; i < site.m_recorder.m_log.size(); ++i) {
        const std::wstring& strLine = site.m_recorder.m_log[i];
        ++calls[strLine.substr(0, strLine.find(L' '))];
    }
    std::printf("    per item by call:");
    for (const auto& [strCall, nCount] : calls)
        std::printf(" %s %.1f", WideToUtf8(strCall).c_str(), static_cast<double>(nCount) / nShared);
    std::printf("\n");
    return nSlides == nItems && nOnSite == nShared ? 0 : 1;
}
