// The fuzz targets' shared input files and install paths.
#include "FuzzSupport.h"

#include "base/FileSystem.h"
#include "base/SysPath.h"
#include "host/HostServices.h"
#include "host/SuiteInstallPaths.h"

#include <cstdio>
#include <cstdlib>
#include <sys/stat.h>
#include <unistd.h>

namespace {

class CFuzzPaths : public ISuiteInstallPaths {
public:
    std::wstring CommonResInstallPath() override { return FuzzDir(); }
    std::wstring LocalInstallPath() override { return FuzzDir(); }
    std::wstring InstallPath() override { return FuzzDir(); }
    int InstallStyle() override { return 2; }
    int FtpLoginStatus() override { return 0; }
    std::wstring CurrentVersion() override { return L"1.0"; }
};

} // namespace

const std::wstring& FuzzDir() {
    // Never destroyed: the clean-up at exit runs after static destructors.
    static const std::wstring& s_strDir = *new std::wstring([] {
        std::string os = "/tmp/qm-fuzz-" + std::to_string(::getpid());
        ::mkdir(os.c_str(), 0700);
        std::wstring dir = FromOsPath(os) + L"\\";
        FsCreateDirectory(dir + L"Data");
        FsCreateDirectory(dir + L"LocalData");
        std::atexit([] { FsDeleteTree(FuzzDir()); });
        return dir;
    }());
    return s_strDir;
}

std::wstring FuzzFile(const std::wstring& strName, const uint8_t* data, size_t size) {
    std::wstring strPath = FuzzDir() + strName;
    // A plain write: a synced replace per input would make the disk the fuzzer's limit.
    if (std::FILE* f = std::fopen(ToOsPath(strPath).c_str(), "wb")) {
        std::fwrite(data, 1, size, f);
        std::fclose(f);
    }
    return strPath;
}

void FuzzInstallHost() {
    static CFuzzPaths s_paths;
    HOST_SERVICES services;
    services.pInstallPaths = &s_paths;
    SetHostServices(services);
}

void FuzzFail(const char* pszWhat) {
    std::fprintf(stderr, "fuzz property broken: %s\n", pszWhat);
    std::abort();
}
