// FTP traffic of a new item and of an edited item's save in mode 1, 1 MB drawing, loopback site.
//   item_edit_bench   prints commands by kind, payload bytes and wall time of each flow:
//   "new": the parts database hand-over of the record and the drawing's and slide's commits;
//   "modify-save": the check-out, the hand-over, the slide's and drawing's commits, the unlock.
#include "shared/FtpLoginInfo.h"
#include "shared/MainLibHandOver.h"
#include "shared/MyFtpConnection.h"

#include "FtpTestServer.h"
#include "TestHost.h"
#include "ftp/CurlFtpClient.h"
#include "suite/SuiteMainLib.h"

#include "base/FileSystem.h"
#include "base/StrUtil.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <map>

namespace {

using CClock = std::chrono::steady_clock;

void NoSleep(unsigned) {}

// The log's lines by their first word, and the bytes the gets and puts carried.
void PrintFigures(const char* pszFlow, const CRecordingFtpClient& recorder, size_t nFrom,
                  long long nBytes, double dSeconds) {
    std::map<std::wstring, int> kinds;
    for (size_t i = nFrom; i < recorder.m_log.size(); ++i)
        ++kinds[recorder.m_log[i].substr(0, recorder.m_log[i].find(L' '))];
    int nTotal = 0;
    std::printf("%-12s", pszFlow);
    for (const auto& [kind, n] : kinds) {
        std::printf(" %s=%d", WideToUtf8(kind).c_str(), n);
        nTotal += n;
    }
    std::printf("\n%-12s commands=%d payload=%lld bytes wall=%.3f s\n", "", nTotal, nBytes,
                dSeconds);
}

long long SizeOf(const std::wstring& strPath) {
    return static_cast<long long>(ReadBytes(strPath).size());
}

} // namespace

int main() {
    CFtpTestServer server;
    if (!server.Start()) {
        std::printf("no FTP server (python3-pyftpdlib missing)\n");
        return 0;
    }
    for (const wchar_t* pszDir : {L"InstallHole", L"Data"})
        FsCreateDirectory(server / pszDir);
    CTempDir install;
    CTestHost host;
    host.m_strInstall = host.m_strLocal = host.m_strCommonRes = install.Path();
    for (const wchar_t* pszDir : {L"LocalData", L"InstallHole", L"Data", L"Temp"})
        FsCreateDirectory(install / pszDir);
    std::wstring strLogin = install / L"LocalData\\TzFTPLoginInfo.sys";
    WriteBytes(strLogin, "");
    WriteLoginInfo(strLogin, {L"", L"", L"127.0.0.1", std::to_wstring(server.Port()), L"0",
                              server.User(), server.Password(), L"", L"", L"", L"1"});
    CCurlFtpClient curl("UTF-8");
    CRecordingFtpClient recorder(curl);
    CSuiteMainLib mainLib(host);
    HOST_SERVICES services = GetHostServices();
    services.pFtp = &recorder;
    services.pMainLib = &mainLib;
    SetHostServices(services);
    setenv("QM_HOST_ID", "10.0.2.1(BENCH)", 1);
    SetFtpSleep(&NoSleep);

    std::string drawing(1 << 20, 'd');
    std::wstring strItem = install / L"InstallHole\\bench.dwg";
    std::wstring strSlide = install / L"InstallHole\\bench.sld";
    WriteBytes(strItem, drawing);
    WriteBytes(strSlide, std::string(20000, 's'));
    CMyFtpConnection ftp;
    ftp.Connect();

    // A new item: the record's hand-over, then the drawing and its slide reach the site.
    size_t nFrom = recorder.m_log.size();
    auto start = CClock::now();
    STRUCT_MAIN_LIB_ENTRY entry{L"C-1", L"M-1", L"N-1", L"bench.dwg", strItem, L"InstallHole\\", 0};
    HandOverToMainLib(ftp, 1, entry);
    ftp.Connect();
    ftp.CommitFile(strItem, L"InstallHole\\bench.dwg");
    ftp.CommitFile(strSlide, L"InstallHole\\bench.sld");
    double dNew = std::chrono::duration<double>(CClock::now() - start).count();
    long long nMdb = SizeOf(install / L"Data\\TzMainLib.mdb");
    PrintFigures("new", recorder, nFrom, nMdb + SizeOf(strItem) + SizeOf(strSlide), dNew);

    // An edited item: check-out, hand-over, both commits, the lock marker removed.
    FsDeleteFile(strItem);
    nFrom = recorder.m_log.size();
    start = CClock::now();
    ftp.CheckOutFile(strItem, L"InstallHole\\", L"bench.dwg");
    entry.nFlag = 1;
    HandOverToMainLib(ftp, 1, entry);
    ftp.CommitFile(strSlide, L"InstallHole\\bench.sld");
    ftp.CommitFile(strItem, L"InstallHole\\bench.dwg");
    ftp.DeleteRemoteFile(L"InstallHole\\bench.dwg.bak");
    double dSave = std::chrono::duration<double>(CClock::now() - start).count();
    PrintFigures("modify-save", recorder, nFrom, 2 * SizeOf(strItem) + SizeOf(strSlide) + nMdb,
                 dSave);
    return 0;
}
