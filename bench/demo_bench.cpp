// How long `./qm run` and `./qm run shared` spend laying out their demos (target: under 5 s).
#include "DemoSite.h"

#include "demo/DemoInstall.h"
#include "dxf/DxfCodec.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

std::string FreshDir() {
    std::string strTemplate =
        (std::filesystem::temp_directory_path() / "qm-demo-bench-XXXXXX").string();
    return ::mkdtemp(strTemplate.data()) ? strTemplate : std::string();
}

void BM_DemoInstall(benchmark::State& state) {
    acdbSetFileCodec(&GetDxfCodec());
    for (auto _ : state) {
        state.PauseTiming();
        std::string osDir = FreshDir();
        state.ResumeTiming();
        CSuiteConfig config;
        benchmark::DoNotOptimize(MakeDemoInstall(osDir + "/demo", config));
        state.PauseTiming();
        std::filesystem::remove_all(osDir);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_DemoInstall)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_SharedDemo(benchmark::State& state) {
    acdbSetFileCodec(&GetDxfCodec());
    for (auto _ : state) {
        state.PauseTiming();
        std::string osDir = FreshDir();
        state.ResumeTiming();
        benchmark::DoNotOptimize(MakeSharedDemo(osDir, osDir + "/site", 2121, L"qm", L"secret"));
        state.PauseTiming();
        std::filesystem::remove_all(osDir);
        state.ResumeTiming();
    }
}
BENCHMARK(BM_SharedDemo)->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace

BENCHMARK_MAIN();
