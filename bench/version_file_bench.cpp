// Cost of one commit's rewrite of "Server.xml" and of the client's update check, by the file's
// size.
#include "base/CodePage.h"
#include "base/Format.h"
#include "base/SysPath.h"
#include "shared/OperateVersionFile.h"

#include <benchmark/benchmark.h>
#include <filesystem>
#include <fstream>

namespace {

// A site with N library files, each recorded once, newest first.
std::wstring MakeServerFile(int nRecords) {
    auto dir = std::filesystem::temp_directory_path() / "qm-bench-version";
    std::filesystem::create_directories(dir);
    std::wstring strText = L"版本日期：2026,11,21,16,02,09\n";
    for (int i = 0; i < nRecords; ++i)
        strText += Format(L"InstallHole\\按钮指示灯\\按钮%d.dwg|2026,11,21,16,02,09|MOD\n", i);
    std::wstring strPath = FromOsPath((dir / "Server.xml").string());
    std::ofstream(ToOsPath(strPath), std::ios::binary) << EncodeText(strText);
    return strPath;
}

void BM_UpdateRecord(benchmark::State& state) {
    std::wstring strPath = MakeServerFile(static_cast<int>(state.range(0)));
    COperateVersionFile file(strPath);
    for (auto _ : state)
        file.UpdateRecord(L"InstallHole\\按钮指示灯\\按钮7.dwg", L"MOD");
    state.SetItemsProcessed(state.iterations() * state.range(0));
    std::filesystem::remove(ToOsPath(strPath));
}
BENCHMARK(BM_UpdateRecord)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void BM_IsMainLibChanged(benchmark::State& state) {
    std::wstring strPath = MakeServerFile(static_cast<int>(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(IsMainLibChanged(strPath, L""));
    std::filesystem::remove(ToOsPath(strPath));
}
BENCHMARK(BM_IsMainLibChanged)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
