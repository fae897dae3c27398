// The stand-in of the suite's workstation update: what the site committed after the
// workstation's version arrives, deletions go, and the workstation is in step afterwards.
#include "suite/SuiteUpdate.h"

#include "ftp/CurlFtpClient.h"
#include "shared/FtpLoginInfo.h"

#include "base/CodePage.h"
#include "base/FileSystem.h"

#include "FtpTestServer.h"
#include "TestHost.h"

#include <gtest/gtest.h>

namespace {

std::string Gbk(const std::wstring& strText) {
    return EncodeText(strText);
}

struct SuiteUpdateFixture : ::testing::Test {
    void SetUp() override {
        ASSERT_TRUE(server.Start());
        HOST_SERVICES services = GetHostServices();
        services.pFtp = &curl;
        SetHostServices(services);
        host.m_strInstall = ws.Path();
        FsCreateDirectory(ws / L"LocalData");
        WriteBytes(ws / L"LocalData\\TzFTPLoginInfo.sys", "");
        ASSERT_TRUE(WriteLoginInfo(ws / L"LocalData\\TzFTPLoginInfo.sys",
                                   {L"", L"lib", L"127.0.0.1", std::to_wstring(server.Port()), L"0",
                                    server.User(), server.Password(), L"", L"", L"", L"1"}));
        FsCreateDirectory(server / L"lib");
        FsCreateDirectory(server / L"lib\\InstallHole");
        WriteBytes(server / L"lib\\InstallHole\\new.dwg", "new drawing");
        WriteBytes(server / L"lib\\InstallHole\\old.dwg", "site's old drawing");
        WriteBytes(server / L"lib\\Server.xml",
                   Gbk(L"版本日期：2026,11,20,09,00,00\r\n"
                       L"InstallHole\\new.dwg|2026,11,20,09,00,00|MOD\r\n"
                       L"InstallHole\\gone.dwg|2026,11,20,09,00,00|DEL\r\n"
                       L"InstallHole\\仪表\\|2026,11,20,09,00,00|MOD\r\n"
                       L"InstallHole\\old.dwg|2026,11,19,17,30,00|MOD"));
        FsCreateDirectory(ws / L"InstallHole");
        WriteBytes(ws / L"InstallHole\\gone.dwg", "removed on the site");
        WriteBytes(ws / L"InstallHole\\old.dwg", "workstation's copy");
        WriteBytes(ws / L"Client.xml", Gbk(L"版本日期：2026,11,19,17,30,00"));
    }
    CTestHost host;
    CTempDir ws;
    CFtpTestServer server;
    CCurlFtpClient curl{"UTF-8"};
    CSuiteUpdate update{host};
};

} // namespace

TEST_F(SuiteUpdateFixture, OnlyWhatTheSiteCommittedSinceArrivesAndTheVersionIsAdopted) {
    std::wstring strReport;
    ASSERT_TRUE(update.Run(strReport)) << WideToUtf8(strReport);
    EXPECT_EQ(ReadBytes(ws / L"InstallHole\\new.dwg"), "new drawing");
    EXPECT_FALSE(FsExists(ws / L"InstallHole\\gone.dwg"));
    EXPECT_TRUE(FsIsDirectory(ws / L"InstallHole\\仪表"));
    EXPECT_EQ(ReadBytes(ws / L"InstallHole\\old.dwg"), "workstation's copy"); // not newer
    EXPECT_EQ(ReadBytes(ws / L"Client.xml"), Gbk(L"版本日期：2026,11,20,09,00,00"));
    EXPECT_FALSE(FsExists(ws / L"Client_PartLib.xml")); // the parts database didn't come
    // In step now: a second run has nothing to do.
    FsDeleteFile(ws / L"InstallHole\\new.dwg");
    ASSERT_TRUE(update.Run(strReport));
    EXPECT_FALSE(FsExists(ws / L"InstallHole\\new.dwg"));
}

TEST_F(SuiteUpdateFixture, AMissingFileKeepsTheWorkstationBehindAndAnUnreachableSiteSaysSo) {
    FsDeleteFile(server / L"lib\\InstallHole\\new.dwg");
    std::wstring strReport;
    EXPECT_FALSE(update.Run(strReport));
    EXPECT_EQ(ReadBytes(ws / L"Client.xml"), Gbk(L"版本日期：2026,11,19,17,30,00"));
    EXPECT_FALSE(FsExists(ws / L"InstallHole\\new.dwg.update"));
    server.Stop();
    EXPECT_FALSE(update.Run(strReport));
    EXPECT_NE(strReport.find(L"无法连接服务器"), std::wstring::npos);
}
