// The browser on a directory of 10,000 items: open (list filled, first page painted) and page
// turns.
#include "TestHost.h"

#include "app/LibState.h"
#include "base/FileSystem.h"
#include "base/Format.h"
#include "library/CircuitLibDlg.h"
#include "library/LibraryListOrder.h"
#include "library/views/LibBrowserWindow.h"
#include "shared/fileops/FileOps.h"
#include "base/SlideFile.h"

#include <QApplication>

#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace {

using Clock = std::chrono::steady_clock;

double MsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// Items with label-like names ("KM12-3.dwg") and a slide each, as a big library holds them.
void MakeLibrary(const std::wstring& strDir, int nItems) {
    CreateDirPath(strDir);
    std::vector<STRUCT_VIEW_VECTOR> vectors;
    for (int i = 0; i < 40; ++i)
        vectors.push_back({0.0 + i, 0.0, 40.0 - i, 30.0, 1 + i % 7});
    CSlide slide;
    MakeViewSlide(vectors, 0, 0, 40, 30, 480, 360, slide);
    std::string bytes = WriteSlide(slide);
    const wchar_t* prefixes[] = {L"KM", L"QF", L"SB", L"HL", L"按钮", L"电表"};
    for (int i = 0; i < nItems; ++i) {
        std::wstring strStem = Format(L"%s%d-%d", prefixes[i % 6], i / 60, i % 60);
        WriteBytes(strDir + strStem + L".dwg", "item");
        WriteBytes(strDir + strStem + L".sld", bytes);
    }
}

} // namespace

int main(int argc, char** argv) {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication app(argc, argv);
    constexpr int kItems = 10000;
    CTempDir dir;
    CTestHost host;
    host.m_strCommonRes = dir.Path();
    host.m_strLocal = dir.Path();
    host.m_strInstall = dir.Path();
    FsCreateDirectory(dir / L"LocalData");
    MakeLibrary(dir / L"InstallHole\\大库\\", kItems);

    auto start = Clock::now();
    CStringArray names;
    CollectFiles(dir / L"InstallHole\\大库", L"dwg", names, true);
    double dCollectMs = MsSince(start);
    for (std::wstring& strName : names)
        strName = GetFileName(strName); // the list holds names relative to the directory
    start = Clock::now();
    SortLibraryNames(names);
    double dSortMs = MsSince(start);

    g_HoleLib.strRoot = dir.Path();
    start = Clock::now();
    auto pWindow = std::make_unique<CLibBrowserWindow>(nullptr);
    CLibBrowserWindow* pView = pWindow.get();
    CCircuitLibDlg browser(g_HoleLib, nullptr, std::move(pWindow));
    pView->Attach(&browser);
    if (!browser.Create() || browser.m_nItems != kItems) {
        std::fprintf(stderr, "library_browser_bench: the list holds %d items\n", browser.m_nItems);
        return 1;
    }
    browser.Show();
    pView->Dialog()->grab();
    double dOpenMs = MsSince(start);

    constexpr int kTurns = 100;
    start = Clock::now();
    for (int i = 0; i < kTurns; ++i) {
        browser.OnVScroll(SB_THUMBTRACK, 2 + (i * 37) % (browser.m_nPages - 1));
        pView->Dialog()->grab(); // sixteen slides read and painted
    }
    double dTurnMs = MsSince(start) / kTurns;

    std::printf("library browser, %d items, %d pages\n", kItems, browser.m_nPages);
    std::printf("  open: list filled and first page painted  %8.1f ms  (target < 500 ms)\n",
                dOpenMs);
    std::printf("    of which: directory walk %.1f ms, the two sorts %.1f ms\n", dCollectMs,
                dSortMs);
    std::printf("  page turn: 16 slides read and painted     %8.2f ms  (target < 20 ms)\n",
                dTurnMs);
    browser.DestroyWindow();
    return 0;
}
