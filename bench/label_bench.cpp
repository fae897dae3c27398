// The browser's sorts over realistic item names, and label expansion and splitting in bulk.
#include "app/ArxApp.h"
#include "drawingdata/LabelExpand.h"
#include "drawingdata/LabelSplit.h"
#include "library/LibraryListOrder.h"
#include "suite/SuiteConfig.h"
#include "suite/SuiteLabelNames.h"

#include "base/Format.h"
#include "base/SysPath.h"
#include "host/HostServices.h"

#include <benchmark/benchmark.h>
#include <filesystem>
#include <random>

namespace {

// "KM12.dwg", "sub\3-1n.dwg", "1-2-QF10a.dwg" and their like, with repeats and case variants.
CStringArray MakeItemNames(int nCount) {
    static const wchar_t* kDevices[] = {L"KM", L"KA", L"QF", L"FU", L"SB", L"HL", L"km", L"n"};
    static const wchar_t* kDirs[] = {L"", L"", L"", L"sub\\", L"按钮\\", L"仪表\\", L"Sub\\2\\"};
    static const wchar_t* kSuffixes[] = {L"", L"", L"a", L"b"};
    std::mt19937 rng(42);
    auto Pick = [&rng](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
    CStringArray names;
    for (int i = 0; i < nCount; ++i) {
        std::wstring name = kDirs[Pick(std::size(kDirs))];
        switch (Pick(3)) {
        case 0:
            name += Format(L"%s%d", kDevices[Pick(std::size(kDevices))], Pick(40));
            break;
        case 1:
            name += Format(L"%d-%d%s", Pick(9), Pick(20), kDevices[Pick(std::size(kDevices))]);
            break;
        default:
            name += Format(L"%d-%d-%s%d", Pick(4), Pick(4), kDevices[Pick(std::size(kDevices))],
                           Pick(30));
        }
        names.push_back(name + kSuffixes[Pick(std::size(kSuffixes))] + L".dwg");
    }
    return names;
}

void BM_PlainSort(benchmark::State& state) {
    CStringArray names = MakeItemNames(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        CSortStringArray sorted(names.begin(), names.end());
        sorted.Sort();
        benchmark::DoNotOptimize(sorted.data());
    }
}
BENCHMARK(BM_PlainSort)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

void BM_LabelSort(benchmark::State& state) {
    CStringArray names = MakeItemNames(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        CStringArray sorted = names;
        SortByLabel(sorted);
        benchmark::DoNotOptimize(sorted.data());
    }
}
BENCHMARK(BM_LabelSort)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

// What loading the list costs: both sorts.
void BM_LoadListSorts(benchmark::State& state) {
    CStringArray names = MakeItemNames(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        CStringArray sorted = names;
        SortLibraryNames(sorted);
        benchmark::DoNotOptimize(sorted.data());
    }
}
BENCHMARK(BM_LoadListSorts)->Arg(1000)->Arg(10000)->Unit(benchmark::kMillisecond);

const wchar_t* const kLabels[] = {L"KM1:13",  L"1-KM3",   L"KM1~KM5", L"KM1,2,3",
                                  L"1D~9D",   L"3'-1n:5", L"XT1-5",   L"FU(A,B)",
                                  L"QF10a:2", L"1-2-SB4", L"HL1--",   L"KA1～KA3"};
const wchar_t* const kKinds[] = {L"元件", L"端子", L"装置端子"};

// 100,000 label texts (about 233,000 labels) through ExpandLabel and SplitDeviceLabel.
void ExpandAndSplit(benchmark::State& state) {
    CStringArray expanded;
    std::wstring dev, term;
    for (auto _ : state) {
        for (int i = 0; i < 100000; ++i) {
            ExpandLabel(kLabels[i % std::size(kLabels)], expanded);
            for (const std::wstring& label : expanded)
                SplitDeviceLabel(label, dev, term, kKinds[i % std::size(kKinds)]);
        }
        benchmark::DoNotOptimize(dev.data());
    }
}

// With the reference host's name files on disk, outside a command (every call
// looks at their stamps) or inside one (the stamps are looked at once).
void BM_ExpandAndSplit100k_NameFiles(benchmark::State& state) {
    auto dir = std::filesystem::temp_directory_path() / "qm-bench-labels";
    std::filesystem::create_directories(dir);
    CSuiteConfig config;
    config.m_strCommonRes = FromOsPath(dir.string());
    CSuiteLabelNames names(config);
    names.WriteDefaultFiles();
    HOST_SERVICES services;
    services.pInstallPaths = &config;
    services.pLabelNames = &names;
    SetHostServices(services);
    static benchmark::State* s_pState = nullptr;
    s_pState = &state;
    if (state.range(0))
        RunCommandBody(L"BENCH", [] { ExpandAndSplit(*s_pState); });
    else
        ExpandAndSplit(state);
    SetHostServices(HOST_SERVICES{});
    std::filesystem::remove_all(dir);
}
BENCHMARK(BM_ExpandAndSplit100k_NameFiles)
    ->ArgName("inCommand")
    ->Arg(0)
    ->Arg(1)
    ->Unit(benchmark::kMillisecond);

// The text engines alone: tables in memory, no install path, no file looked at.
class CMemoryLabelNames : public ISuiteLabelNames {
public:
    bool CreatZhuangZhiAndDzNameArray(CZhuangZhiDzNameArray& devices,
                                      CZhuangZhiDzNameArray& terminals) override {
        devices = CSuiteLabelNames::DefaultDevices();
        terminals = CSuiteLabelNames::DefaultTerminals();
        return true;
    }
    std::wstring NameTablesStamp() override { return L"memory"; }
};

void BM_ExpandAndSplit100k_Memory(benchmark::State& state) {
    CMemoryLabelNames names;
    HOST_SERVICES services;
    services.pLabelNames = &names;
    SetHostServices(services);
    ExpandAndSplit(state);
    SetHostServices(HOST_SERVICES{});
}
BENCHMARK(BM_ExpandAndSplit100k_Memory)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
