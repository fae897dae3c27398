// Reliability of concurrent commits: N workstation processes, M distinct files each, one site.
//   site_commit_bench [M]   runs N = 2, 4, 8 without and with "Ftp.bg" and prints what
//                           reached "Server.xml" and the site: records lost per 100 commits,
//                           library files lost or holding other bytes, unsound version lines.
#include "shared/FtpLoginInfo.h"
#include "shared/MyFtpConnection.h"
#include "shared/OperateVersionFile.h"

#include "FtpTestServer.h"
#include "TestHost.h"
#include "ftp/CurlFtpClient.h"

#include "base/FileSystem.h"
#include "base/StrUtil.h"

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

namespace {

using CClock = std::chrono::steady_clock;

int g_nSleepsThisCommit = 0;
int g_nSleeps = 0;

void RealCountingSleep(unsigned nMs) {
    ++g_nSleepsThisCommit;
    ++g_nSleeps;
    std::this_thread::sleep_for(std::chrono::milliseconds(nMs));
}

struct RUN_FIGURES {
    int nAttempted = 0, nPresent = 0, nTakeOvers = 0, nLockWaits = 0;
    int nRefusedBackups = 0, nFailedRepairs = 0;
    int nFilesLost = 0, nFilesCorrupt = 0, nUnsoundLines = 0, nStrayTemps = 0;
    double dWallSeconds = 0;
};

std::wstring ItemName(int nIndex, int k) {
    return L"w" + std::to_wstring(nIndex) + L"_" + std::to_wstring(k) + L".dwg";
}

// Bytes of their own for every commit, so that a file holding another's shows.
std::string ItemBytes(int nIndex, int k) {
    std::string bytes = "drawing " + std::to_string(nIndex) + "_" + std::to_string(k) + "\n";
    while (bytes.size() < 20000)
        bytes += bytes;
    return bytes;
}

// One workstation process: M commits, then "take-overs" into its result file.
[[noreturn]] void RunWorkstation(const std::wstring& strInstall, int nIndex, int nCommits) {
    CTestHost host;
    host.m_strInstall = strInstall;
    CCurlFtpClient curl("UTF-8");
    HOST_SERVICES services = GetHostServices();
    services.pFtp = &curl;
    SetHostServices(services);
    setenv("QM_HOST_ID", ("10.0.1." + std::to_string(nIndex + 1) + "(BENCH)").c_str(), 1);
    SetFtpSleep(&RealCountingSleep);
    int nTakeOvers = 0;
    {
        CMyFtpConnection ftp;
        std::wstring strLocal = strInstall + L"item.dwg";
        for (int k = 0; k < nCommits; ++k) {
            WriteBytes(strLocal, ItemBytes(nIndex, k));
            g_nSleepsThisCommit = 0;
            ftp.CommitFile(strLocal, L"InstallHole\\" + ItemName(nIndex, k));
            nTakeOvers += g_nSleepsThisCommit >= 6;
        }
    }
    WriteBytes(strInstall + L"result.txt",
               std::to_string(nTakeOvers) + " " + std::to_string(g_nSleeps));
    _exit(0);
}

RUN_FIGURES RunOnce(int nWorkstations, int nCommits, bool bTempUpload) {
    RUN_FIGURES figures;
    CFtpTestServer server;
    if (!server.Start())
        return figures;
    FsCreateDirectory(server / L"InstallHole");
    std::vector<std::unique_ptr<CTempDir>> installs;
    for (int i = 0; i < nWorkstations; ++i) {
        installs.push_back(std::make_unique<CTempDir>());
        FsCreateDirectory(*installs[i] / L"LocalData");
        std::wstring strLogin = *installs[i] / L"LocalData\\TzFTPLoginInfo.sys";
        WriteBytes(strLogin, "");
        WriteLoginInfo(strLogin, {L"", L"", L"127.0.0.1", std::to_wstring(server.Port()), L"0",
                                  L"qm", L"secret", L"", L"", L"", L"1"});
        if (bTempUpload)
            WriteBytes(*installs[i] / L"LocalData\\Ftp.bg", "");
    }
    auto start = CClock::now();
    std::vector<pid_t> children;
    std::fflush(nullptr); // a child must not print the parent's buffer again
    for (int i = 0; i < nWorkstations; ++i) {
        pid_t pid = fork();
        if (pid == 0)
            RunWorkstation(installs[i]->Path(), i, nCommits);
        children.push_back(pid);
    }
    for (pid_t pid : children)
        waitpid(pid, nullptr, 0);
    figures.dWallSeconds = std::chrono::duration<double>(CClock::now() - start).count();
    figures.nAttempted = nWorkstations * nCommits;
    for (int i = 0; i < nWorkstations; ++i) {
        std::string strResult = ReadBytes(*installs[i] / L"result.txt");
        figures.nTakeOvers += std::atoi(strResult.c_str());
        figures.nLockWaits += std::atoi(strResult.c_str() + strResult.find(' ') + 1);
    }
    CStringArray lines;
    ReadLines(server / L"Server.xml", lines, false);
    figures.nUnsoundLines = static_cast<int>(CountUnsoundVersionLines(lines));
    for (int i = 0; i < nWorkstations; ++i)
        for (int k = 0; k < nCommits; ++k) {
            std::wstring strFile = server / (L"InstallHole\\" + ItemName(i, k));
            if (!FsExists(strFile))
                ++figures.nFilesLost;
            else if (ReadBytes(strFile) != ItemBytes(i, k))
                ++figures.nFilesCorrupt;
        }
    std::vector<FS_FIND_DATA> found;
    FsFind(server / L"#*", found);
    figures.nStrayTemps = static_cast<int>(found.size());
    FsFind(server / L"InstallHole\\#*", found);
    figures.nStrayTemps += static_cast<int>(found.size());
    for (int i = 0; i < nWorkstations; ++i)
        for (int k = 0; k < nCommits; ++k) {
            std::wstring strPath = L"InstallHole\\" + ItemName(i, k) + L"|";
            for (const std::wstring& strLine : lines)
                if (strLine.starts_with(strPath)) {
                    ++figures.nPresent;
                    break;
                }
        }
    CStringArray log;
    ReadLines(server / L"OS.log", log, false);
    for (const std::wstring& strLine : log) {
        figures.nRefusedBackups += strLine.ends_with(L"备份Server.xml文件时出错！");
        figures.nFailedRepairs += StrFind(strLine, L"利用备份数据更新Server.xml仍然出错") >= 0;
    }
    return figures;
}

} // namespace

int main(int argc, char** argv) {
    int nCommits = argc > 1 ? std::atoi(argv[1]) : 25;
    std::printf("%-6s %-3s %9s %8s %9s %10s %12s %10s %11s %8s %13s %6s %10s\n", "Ftp.bg", "N",
                "attempted", "present", "lost/100", "files-lost", "files-corrupt", "lock-waits",
                "take-overs", "repairs", "failed-repair", "stray", "ms/commit");
    for (bool bTempUpload : {false, true}) {
        for (int nWorkstations : {2, 4, 8}) {
            RUN_FIGURES f = RunOnce(nWorkstations, nCommits, bTempUpload);
            double dLost = f.nAttempted ? 100.0 * (f.nAttempted - f.nPresent) / f.nAttempted : 0;
            std::printf("%-6s %-3d %9d %8d %9.1f %10d %12d %10d %11d %8d %13d %6d %10.1f\n",
                        bTempUpload ? "yes" : "no", nWorkstations, f.nAttempted, f.nPresent, dLost,
                        f.nFilesLost, f.nFilesCorrupt + f.nUnsoundLines, f.nLockWaits, f.nTakeOvers,
                        f.nRefusedBackups, f.nFailedRepairs, f.nStrayTemps,
                        f.nAttempted ? 1000.0 * f.dWallSeconds / f.nAttempted : 0.0);
            std::fflush(stdout);
        }
    }
    return 0;
}
