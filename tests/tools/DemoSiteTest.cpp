// The shared demo: a site whose version file lists exactly its files, two workstations that
// log in to it, the first in step with it and the second told to update.
#include "DemoSite.h"

#include "dxf/DxfCodec.h"
#include "ftp/CurlFtpClient.h"
#include "shared/FtpLoginInfo.h"
#include "shared/MyFtpConnection.h"
#include "shared/OperateVersionFile.h"
#include "suite/SuiteConfig.h"

#include "base/FileSystem.h"
#include "base/SysPath.h"

#include "FtpTestServer.h"
#include "TestHost.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

namespace fs = std::filesystem;

namespace {

struct SharedDemoFixture : ::testing::Test {
    void SetUp() override {
        acdbSetFileCodec(&GetDxfCodec());
        ASSERT_TRUE(server.Start());
        ASSERT_TRUE(MakeSharedDemo(dir.OsPath(), ToOsPath(server.Root()), server.Port(),
                                   server.User(), server.Password()));
    }
    void TearDown() override { acdbSetFileCodec(nullptr); }
    std::wstring Ws(int n, const std::wstring& strRel) {
        return FromOsPath(dir.OsPath() + "ws" + std::to_string(n) + "/") + strRel;
    }
    CTestHost host;
    CTempDir dir;
    CFtpTestServer server;
};

} // namespace

TEST_F(SharedDemoFixture, TheVersionFileListsEverySiteFileOnceAndTheLastCommitFirst) {
    std::set<std::wstring> onSite; // the libraries' files, not the site's own at its root
    fs::path root = ToOsPath(server.Root());
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        fs::path rel = fs::relative(entry.path(), root);
        if (entry.is_regular_file() && rel.has_parent_path())
            onSite.insert(FromOsPath(rel.string()));
    }
    COperateVersionFile version(server / L"Server.xml");
    version.ReadRecords();
    std::set<std::wstring> recorded, last;
    for (const auto& pInfo : version.m_arrFileInfo) {
        EXPECT_EQ(pInfo->strOprt, L"MOD");
        EXPECT_TRUE(recorded.insert(pInfo->strPath).second) << WideToUtf8(pInfo->strPath);
        if (pInfo->strDate == kSharedDemoVersion)
            last.insert(pInfo->strPath);
        else
            EXPECT_EQ(pInfo->strDate, kSharedDemoOldVersion);
    }
    EXPECT_GE(recorded.size(), 2u * (40 + 8)); // drawings and slides of both libraries
    EXPECT_EQ(recorded, onSite);
    // The newest commit brought one meter, its drawing and slide, and the second workstation
    // hasn't got it.
    ASSERT_EQ(last.size(), 2u);
    for (const std::wstring& strPath : last) {
        EXPECT_NE(strPath.find(L"多功能电力仪表"), std::wstring::npos);
        EXPECT_TRUE(FsExists(Ws(1, strPath)));
        EXPECT_FALSE(FsExists(Ws(2, strPath)));
    }
    EXPECT_EQ(ReadBytes(server / L"Server.backup"), ReadBytes(server / L"Server.xml"));
}

TEST_F(SharedDemoFixture, BothWorkstationsLogInAndOnlyTheSecondIsBehind) {
    CCurlFtpClient curl("UTF-8");
    HOST_SERVICES services = GetHostServices();
    services.pFtp = &curl;
    SetHostServices(services);
    for (int n : {1, 2}) {
        CSuiteConfig config;
        ASSERT_TRUE(config.Load(ToOsPath(Ws(n, L"suite.conf"))));
        EXPECT_EQ(config.InstallStyle(), 1);
        EXPECT_EQ(config.FtpLoginStatus(), 1);
        host.m_strInstall = config.InstallPath();
        host.m_strLocal = config.LocalInstallPath();
        CStringArray login;
        ASSERT_TRUE(ReadLoginInfo(Ws(n, L"LocalData\\TzFTPLoginInfo.sys"), login));
        EXPECT_EQ(login[LOGIN_LINE_PORT], std::to_wstring(server.Port()));
        CMyFtpConnection ftp;
        ASSERT_TRUE(ftp.Connect()) << n;
        bool bMainLib = true;
        EXPECT_EQ(ftp.CheckServerUpdate(bMainLib), n == 2) << n;
        EXPECT_FALSE(bMainLib); // the parts database is the same everywhere
        ftp.CloseConnection();
    }
}
