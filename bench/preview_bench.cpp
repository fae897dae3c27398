// A browser page of previews: 16 DWG thumbnails or 16 slides of 2,000 vectors, read and painted
// into 120x90 cells.
#include "ui/DrawDwgPreview.h"
#include "ui/SlidePainter.h"

#include "base/FileSystem.h"
#include "base/SysPath.h"

#include <benchmark/benchmark.h>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <random>

namespace {

constexpr int kCells = 16;

std::wstring BenchDir() {
    static std::wstring strDir = [] {
        auto dir = std::filesystem::temp_directory_path() / "qm-bench-preview";
        std::filesystem::remove_all(dir);
        std::filesystem::create_directories(dir);
        return FromOsPath(dir.string()) + L"\\";
    }();
    return strDir;
}

void Put32(std::string& s, uint32_t v) {
    for (int i = 0; i < 4; ++i)
        s += static_cast<char>((v >> (8 * i)) & 0xFF);
}

// A DWG-shaped file whose thumbnail is 8-bit, 184 x 126, like the editor writes.
std::string DwgFile(int nSeed) {
    const int w = 184, h = 126, nStride = 184;
    std::string dib;
    Put32(dib, 40), Put32(dib, w), Put32(dib, h), Put32(dib, 1 | (8 << 16)), Put32(dib, 0);
    Put32(dib, nStride * h), Put32(dib, 0), Put32(dib, 0), Put32(dib, 256), Put32(dib, 0);
    for (int i = 0; i < 256; ++i)
        Put32(dib, static_cast<uint32_t>(i * 0x010101));
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < nStride; ++x)
            dib += static_cast<char>((x * y + nSeed) % 7 == 0 ? 255 : 0);
    static const unsigned char kSentinel[16] = {0x1F, 0x25, 0x6D, 0x07, 0xD4, 0x36, 0x28, 0x28,
                                                0x9D, 0x57, 0xCA, 0x3F, 0x9D, 0x44, 0x10, 0x2B};
    std::string s = "AC1015";
    s.resize(13, '\0');
    Put32(s, 64);
    s.resize(64, '\0');
    s.append(reinterpret_cast<const char*>(kSentinel), 16);
    Put32(s, 0);
    s += '\2';
    s += '\1', Put32(s, 64 + 16 + 5 + 18), Put32(s, 80);
    s += '\2', Put32(s, 64 + 16 + 5 + 18 + 80), Put32(s, static_cast<uint32_t>(dib.size()));
    s.append(80, '\0');
    s += dib;
    s.append(200000, '\0'); // the drawing itself
    return s;
}

CSlide SlideOf(int nVectors, int nSeed) {
    std::mt19937 rng(nSeed);
    std::vector<STRUCT_VIEW_VECTOR> v;
    double x = 500, y = 400;
    for (int i = 0; i < nVectors; ++i) {
        double nx = std::clamp(x + static_cast<int>(rng() % 41) - 20.0, 0.0, 1000.0);
        double ny = std::clamp(y + static_cast<int>(rng() % 41) - 20.0, 0.0, 800.0);
        if (i % 50 == 0)
            nx = rng() % 1000, ny = rng() % 800;
        v.push_back({x, y, nx, ny, 1 + i % 7});
        x = nx, y = ny;
    }
    CSlide s;
    MakeViewSlide(v, 0, 0, 1000, 800, 1280, 1024, s);
    return s;
}

} // namespace

static void BM_PageOfDwgThumbnails(benchmark::State& state) {
    std::vector<std::wstring> files;
    for (int i = 0; i < kCells; ++i) {
        files.push_back(BenchDir() + L"item" + std::to_wstring(i) + L".dwg");
        FsWriteBinary(files.back(), DwgFile(i));
    }
    std::vector<CImageSurface> cells(kCells, CImageSurface(120, 90));
    for (auto _ : state)
        for (int i = 0; i < kCells; ++i)
            benchmark::DoNotOptimize(ShowDwgPreviewCentred(files[i], &cells[i], i == 0, 0));
}
BENCHMARK(BM_PageOfDwgThumbnails)->Unit(benchmark::kMillisecond);

static void BM_PageOfSlides(benchmark::State& state) {
    std::vector<std::wstring> files;
    for (int i = 0; i < kCells; ++i) {
        files.push_back(BenchDir() + L"item" + std::to_wstring(i) + L".sld");
        WriteSlideFile(files.back(), SlideOf(static_cast<int>(state.range(0)), i));
    }
    std::vector<CImageSurface> cells(kCells, CImageSurface(120, 90));
    for (auto _ : state)
        for (int i = 0; i < kCells; ++i)
            benchmark::DoNotOptimize(PaintSlideFile(cells[i], files[i], i ? 0 : 0x828282));
}
BENCHMARK(BM_PageOfSlides)->Arg(2000)->Unit(benchmark::kMillisecond);

static void BM_WriteSlideOfView(benchmark::State& state) {
    CSlide s = SlideOf(static_cast<int>(state.range(0)), 1);
    for (auto _ : state)
        benchmark::DoNotOptimize(WriteSlide(s));
}
BENCHMARK(BM_WriteSlideOfView)->Arg(2000)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
