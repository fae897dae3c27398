// Time of the site client's transfers on loopback, against the tests' real FTP server.
#include "shared/FtpLoginInfo.h"
#include "shared/MyFtpConnection.h"

#include "FtpTestServer.h"
#include "TestHost.h"
#include "ftp/CurlFtpClient.h"

#include "base/FileSystem.h"

#include <benchmark/benchmark.h>

#include <memory>

namespace {

// One server, one installation and one host for the whole program.
struct BENCH_SITE {
    CTestHost host;
    CTempDir install, local;
    CCurlFtpClient curl{"UTF-8"};
    CFtpTestServer server;
    bool bReady = false;

    BENCH_SITE() {
        HOST_SERVICES services = GetHostServices();
        services.pFtp = &curl;
        SetHostServices(services);
        host.m_strInstall = install.Path();
        if (!server.Start())
            return;
        FsCreateDirectory(server / L"site");
        FsCreateDirectory(install / L"LocalData");
        std::wstring strFile = install / L"LocalData\\TzFTPLoginInfo.sys";
        WriteBytes(strFile, "");
        WriteLoginInfo(strFile, {L"", L"site", L"127.0.0.1", std::to_wstring(server.Port()), L"0",
                                 L"qm", L"secret", L"", L"", L"", L"1"});
        WriteBytes(local / L"1mb.dwg", std::string(1 << 20, '\x5a'));
        WriteBytes(server / L"site\\small.dwg", "small");
        bReady = true;
    }
};

BENCH_SITE& Site() {
    static BENCH_SITE site;
    return site;
}

void RunUpload(benchmark::State& state, bool bMarker) {
    BENCH_SITE& site = Site();
    std::wstring strMarker = site.install / L"LocalData\\Ftp.bg";
    bMarker ? WriteBytes(strMarker, "") : (void)FsDeleteFile(strMarker);
    CMyFtpConnection ftp;
    if (!site.bReady || !ftp.Connect()) {
        state.SkipWithError("no FTP server");
        return;
    }
    for (auto _ : state) {
        std::wstring strRemote = L"1mb.dwg";
        if (!ftp.UploadFile(site.local / L"1mb.dwg", strRemote))
            state.SkipWithError("upload failed");
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) << 20);
}

void BM_Upload1MB(benchmark::State& state) {
    RunUpload(state, false);
}
BENCHMARK(BM_Upload1MB)->Unit(benchmark::kMillisecond);

void BM_Upload1MBThroughTemporaryName(benchmark::State& state) {
    RunUpload(state, true);
}
BENCHMARK(BM_Upload1MBThroughTemporaryName)->Unit(benchmark::kMillisecond);

void RunExists(benchmark::State& state, const wchar_t* pszRemote, bool bExpected) {
    BENCH_SITE& site = Site();
    CMyFtpConnection ftp;
    if (!site.bReady || !ftp.Connect()) {
        state.SkipWithError("no FTP server");
        return;
    }
    for (auto _ : state)
        if (ftp.RemoteFileExists(pszRemote) != bExpected)
            state.SkipWithError("unexpected answer");
}

void BM_RemoteFileExists(benchmark::State& state) {
    RunExists(state, L"small.dwg", true);
}
BENCHMARK(BM_RemoteFileExists)->Unit(benchmark::kMillisecond);

// A missing file costs a second attempt after a full reconnect.
void BM_RemoteFileExistsMissing(benchmark::State& state) {
    RunExists(state, L"missing.dwg", false);
}
BENCHMARK(BM_RemoteFileExistsMissing)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
