// DWG import figures: converter start, conversion per file and per MB, first and cached opens.
#include "dwg/DwgCodec.h"

#include "base/FileSystem.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <QCoreApplication>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

namespace {

double Ms(std::chrono::steady_clock::duration d) {
    return std::chrono::duration<double, std::milli>(d).count();
}

template <class F> double Time(F&& f) {
    auto t0 = std::chrono::steady_clock::now();
    f();
    return Ms(std::chrono::steady_clock::now() - t0);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    std::string samples = argc > 1 ? argv[1] : QM_DWG_SAMPLES;
    char tmpl[] = "/tmp/dwg_bench.XXXXXX";
    if (!::mkdtemp(tmpl))
        return 1;
    std::string cache = std::string(tmpl) + "/cache";

    CDwgWorker::OPTIONS opt = DwgWorkerOptionsFromEnv();
    opt.nTimeoutMs = 120000;
    std::string err;
    for (int i = 0; i < 3; ++i) {
        CDwgWorker worker(opt);
        double ms = Time([&] { worker.Start(err); });
        std::printf("worker start (node + WebAssembly ready): %.0f ms%s\n", ms,
                    err.empty() ? "" : (" FAILED: " + err).c_str());
    }

    CDwgCodec codec(opt, cache);
    acdbSetFileCodec(&codec);
    codec.Worker().Start(err);
    std::vector<FS_FIND_DATA> found;
    FsFind(FromOsPath(samples) + L"\\*.dwg", found);
    std::printf("\n%-24s %8s %10s %10s %10s %10s\n", "file", "KB", "first ms", "ms/MB", "cached ms",
                "ms/MB");
    double totalMb = 0, totalFirst = 0, totalCached = 0;
    for (const FS_FIND_DATA& f : found) {
        std::wstring path = FromOsPath(samples) + L"\\" + f.strName;
        double mb = f.nSize / 1048576.0;
        Acad::ErrorStatus es = Acad::eOk;
        double first = Time([&] {
            AcDbDatabase db(false, true);
            es = db.readDwgFile(path.c_str());
        });
        if (es != Acad::eOk) {
            std::printf("%-24s %8.0f %10.0f  not converted\n", WideToUtf8(f.strName).c_str(),
                        mb * 1024, first);
            continue;
        }
        double cached = Time([&] {
            AcDbDatabase db(false, true);
            db.readDwgFile(path.c_str());
        });
        totalMb += mb;
        totalFirst += first;
        totalCached += cached;
        std::printf("%-24s %8.0f %10.0f %10.0f %10.1f %10.1f\n", WideToUtf8(f.strName).c_str(),
                    mb * 1024, first, first / mb, cached, cached / mb);
    }
    std::printf("%-24s %8.0f %10.0f %10.0f %10.1f %10.1f\n", "all converted", totalMb * 1024,
                totalFirst, totalFirst / totalMb, totalCached, totalCached / totalMb);
    std::printf("converter processes started: %d\n", codec.Worker().Starts());
    acdbSetFileCodec(nullptr);
    std::system(("rm -rf " + std::string(tmpl)).c_str());
    return 0;
}
