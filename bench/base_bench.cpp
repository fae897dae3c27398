// Throughput of the base layer on the sizes the system meets: code-page text and directory search.
#include "base/CodePage.h"
#include "base/FileSystem.h"
#include "base/SysPath.h"

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <filesystem>

static void BM_DecodeGbkLine(benchmark::State& state) {
    std::string line = EncodeText(L"InstallHole\\按钮指示灯\\22mm按钮.dwg|20261121093000");
    for (auto _ : state)
        benchmark::DoNotOptimize(DecodeText(line));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * line.size()));
}
BENCHMARK(BM_DecodeGbkLine);

static void BM_EncodeGbkLine(benchmark::State& state) {
    std::wstring line = L"InstallHole\\按钮指示灯\\22mm按钮.dwg|20261121093000";
    for (auto _ : state)
        benchmark::DoNotOptimize(EncodeText(line));
}
BENCHMARK(BM_EncodeGbkLine);

// A library directory of N items with slides: the browser lists it on every change of directory.
static void BM_FindDwgInDirectory(benchmark::State& state) {
    auto dir = std::filesystem::temp_directory_path() / "qm-bench-find";
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    for (int i = 0; i < state.range(0); ++i) {
        std::FILE* f = std::fopen((dir / ("item" + std::to_string(i) + ".dwg")).c_str(), "w");
        std::fclose(f);
        f = std::fopen((dir / ("item" + std::to_string(i) + ".sld")).c_str(), "w");
        std::fclose(f);
    }
    std::wstring pattern = FromOsPath(dir.string()) + L"\\*.dwg";
    std::vector<FS_FIND_DATA> found;
    for (auto _ : state)
        FsFind(pattern, found);
    state.SetItemsProcessed(state.iterations() * state.range(0));
    std::filesystem::remove_all(dir);
}
BENCHMARK(BM_FindDwgInDirectory)->Arg(100)->Arg(2000);

BENCHMARK_MAIN();
