// The libcurl FTP client against a real server: transfers, directories, faults, names.
#include "ftp/CurlFtpClient.h"

#include "FtpTestServer.h"
#include "TestHost.h"

#include "base/StrUtil.h"
#include "base/SysPath.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

namespace {

// Every byte value once, then pseudo-random bytes.
std::string EveryByte(size_t nSize) {
    std::mt19937 random(7);
    std::string bytes;
    for (size_t i = 0; i < nSize; ++i)
        bytes += static_cast<char>(i < 256 ? i : random() & 0xFF);
    return bytes;
}

class CurlFtpClientTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(m_server.Start()); }

    std::unique_ptr<IFtpConnection> Login(const std::wstring& strUser, bool bPassive = true,
                                          CCurlFtpClient* pClient = nullptr) {
        m_pSession = (pClient ? *pClient : m_client).OpenSession();
        m_pSession->SetOption(INTERNET_OPTION_CONNECT_TIMEOUT, 2000);
        m_pSession->SetOption(INTERNET_OPTION_RECEIVE_TIMEOUT, 1000);
        m_pSession->SetOption(INTERNET_OPTION_SEND_TIMEOUT, 1000);
        m_pSession->SetOption(INTERNET_OPTION_CONNECT_RETRIES, 1);
        std::wstring strError;
        return m_pSession->GetFtpConnection(L"127.0.0.1", strUser, L"secret",
                                            static_cast<uint16_t>(m_server.Port()), bPassive,
                                            strError);
    }
    std::string ServerFile(const std::string& strRel) {
        return ReadBytes(m_server / Utf8ToWide(strRel));
    }

    CFtpTestServer m_server;
    CCurlFtpClient m_client{"UTF-8"};
    std::unique_ptr<IFtpSession> m_pSession;
    CTempDir m_local;
};

TEST_F(CurlFtpClientTest, TransfersLargeBinaryFilesInActiveMode) {
    auto pConnection = Login(L"qm", false);
    ASSERT_TRUE(pConnection);
    std::string bytes = EveryByte(300000);
    WriteBytes(m_local / L"up.bin", bytes);
    ASSERT_TRUE(pConnection->PutFile(m_local / L"up.bin", L"\\up.bin"));
    EXPECT_EQ(ServerFile("up.bin"), bytes);
    int64_t nSize = 0;
    EXPECT_TRUE(pConnection->GetFileSize(L"up.bin", nSize));
    EXPECT_EQ(nSize, 300000);
    EXPECT_FALSE(pConnection->GetFileSize(L"missing.bin", nSize));
    EXPECT_EQ(pConnection->GetLocalAddress(), L"127.0.0.1"); // as the server sees this end
    WriteBytes(m_local / L"down.bin", "older content");
    ASSERT_TRUE(pConnection->GetFile(L"up.bin", m_local / L"down.bin"));
    EXPECT_EQ(ReadBytes(m_local / L"down.bin"), bytes);
    WriteBytes(m_local / L"empty.bin", "");
    EXPECT_TRUE(pConnection->PutFile(m_local / L"empty.bin", L"up.bin"));
    EXPECT_EQ(ServerFile("up.bin"), "");
}

TEST_F(CurlFtpClientTest, KeepsItsOwnCurrentDirectoryAndListsFreshly) {
    auto pConnection = Login(L"qm");
    ASSERT_TRUE(pConnection);
    EXPECT_TRUE(pConnection->CreateDirectory(L"site"));
    EXPECT_TRUE(pConnection->CreateDirectory(L"site\\InstallHole"));
    EXPECT_FALSE(pConnection->CreateDirectory(L"site"));
    ASSERT_TRUE(pConnection->SetCurrentDirectory(L"site\\"));
    std::wstring strCwd;
    ASSERT_TRUE(pConnection->GetCurrentDirectory(strCwd));
    EXPECT_EQ(strCwd, L"/site");
    EXPECT_FALSE(pConnection->SetCurrentDirectory(L"missing"));

    WriteBytes(m_local / L"a", "x");
    ASSERT_TRUE(pConnection->PutFile(m_local / L"a", L"InstallHole\\Plate.DWG"));
    EXPECT_EQ(ServerFile("site/InstallHole/Plate.DWG"), "x");
    std::vector<FTP_FIND_DATA> found;
    ASSERT_TRUE(pConnection->FindFiles(L"*.*", found));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].strFilePath, L"InstallHole");
    EXPECT_TRUE(found[0].bDirectory);

    ASSERT_TRUE(pConnection->FindFiles(L"InstallHole\\*.*", found));
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].strFilePath, L"InstallHole/Plate.DWG");
    EXPECT_EQ(found[0].nSize, 1);
    EXPECT_FALSE(pConnection->FindFiles(L"InstallHole\\plate.dwg", found)); // case-sensitive
    EXPECT_TRUE(pConnection->FindFiles(L"\\site\\InstallHole\\P?ate.*", found));

    // Another client's change shows at once: nothing is cached.
    std::filesystem::remove(ToOsPath(m_server / L"site\\InstallHole\\Plate.DWG"));
    EXPECT_FALSE(pConnection->FindFiles(L"InstallHole\\*.*", found));
    EXPECT_TRUE(pConnection->RemoveDirectory(L"InstallHole"));
    EXPECT_FALSE(pConnection->FindFiles(L"*.*", found));
}

TEST_F(CurlFtpClientTest, ServerFaultsArePlainFalseAndKeepLocalFiles) {
    auto pConnection = Login(L"qm");
    ASSERT_TRUE(pConnection);
    WriteBytes(m_local / L"keep.dwg", "local work");
    EXPECT_FALSE(pConnection->GetFile(L"missing.dwg", m_local / L"keep.dwg"));
    EXPECT_EQ(ReadBytes(m_local / L"keep.dwg"), "local work");
    EXPECT_FALSE(std::filesystem::exists(ToOsPath(m_local / L"keep.dwg.ftp-part")));
    EXPECT_FALSE(pConnection->Remove(L"missing.dwg"));
    EXPECT_FALSE(pConnection->PutFile(m_local / L"keep.dwg", L"nodir\\x.dwg"));

    WriteBytes(m_server / L"a.dwg", "A");
    WriteBytes(m_server / L"b.dwg", "B");
    EXPECT_FALSE(pConnection->Rename(L"a.dwg", L"b.dwg"));
    EXPECT_EQ(ServerFile("a.dwg") + ServerFile("b.dwg"), "AB");
    EXPECT_FALSE(pConnection->Rename(L"missing.dwg", L"c.dwg"));
    // The refusals left the connection usable.
    EXPECT_TRUE(pConnection->Rename(L"a.dwg", L"c.dwg"));
    EXPECT_TRUE(pConnection->Remove(L"b.dwg"));
    EXPECT_TRUE(pConnection->GetFile(L"c.dwg", m_local / L"keep.dwg"));
    EXPECT_EQ(ReadBytes(m_local / L"keep.dwg"), "A");

    auto pViewer = Login(L"viewer");
    ASSERT_TRUE(pViewer);
    EXPECT_FALSE(pViewer->PutFile(m_local / L"keep.dwg", L"c.dwg"));
    EXPECT_FALSE(pViewer->Remove(L"c.dwg"));
    EXPECT_EQ(ServerFile("c.dwg"), "A");
}

TEST_F(CurlFtpClientTest, ChineseNamesTravelInTheChosenCodePage) {
    for (const char* pszWire : {"utf8", "gbk"}) {
        ASSERT_TRUE(m_server.Start({pszWire}));
        CCurlFtpClient client(pszWire == std::string("gbk") ? "GBK" : "UTF-8");
        auto pConnection = Login(L"qm", true, &client);
        ASSERT_TRUE(pConnection);
        std::wstring strDir = std::wstring(L"图库") + Utf8ToWide(pszWire);
        WriteBytes(m_local / L"f", pszWire);
        ASSERT_TRUE(pConnection->CreateDirectory(strDir));
        ASSERT_TRUE(pConnection->PutFile(m_local / L"f", strDir + L"\\开孔板.dwg"));
        EXPECT_EQ(ReadBytes(m_server / (strDir + L"\\开孔板.dwg")), pszWire);
        std::vector<FTP_FIND_DATA> found;
        ASSERT_TRUE(pConnection->FindFiles(strDir + L"\\*.*", found));
        EXPECT_EQ(found[0].strName, L"开孔板.dwg");
        EXPECT_TRUE(pConnection->SetCurrentDirectory(strDir));
    }
}

} // namespace

namespace {

// Debian's vsftpd, the server most Linux sites run; it needs root to make its user.
TEST(CurlFtpClientOnVsftpd, TransfersListsAndRenamesAsOnTheTestServer) {
    if (geteuid() != 0)
        GTEST_SKIP() << "vsftpd's local user can only be made by root";
    CFtpTestServer server;
    ASSERT_TRUE(server.Start({"utf8", false, true}));
    CCurlFtpClient client("UTF-8");
    CTempDir local;
    for (bool bPassive : {true, false}) {
        SCOPED_TRACE(bPassive ? "passive" : "active");
        auto pSession = client.OpenSession();
        pSession->SetOption(INTERNET_OPTION_CONNECT_TIMEOUT, 2000);
        pSession->SetOption(INTERNET_OPTION_RECEIVE_TIMEOUT, 2000);
        pSession->SetOption(INTERNET_OPTION_CONNECT_RETRIES, 1);
        std::wstring strError;
        auto pConnection =
            pSession->GetFtpConnection(L"127.0.0.1", server.User(), server.Password(),
                                       static_cast<uint16_t>(server.Port()), bPassive, strError);
        ASSERT_TRUE(pConnection) << WideToUtf8(strError);
        std::wstring strDir = bPassive ? L"图库被动" : L"图库主动";
        std::string bytes = EveryByte(300000);
        WriteBytes(local / L"up.bin", bytes);
        ASSERT_TRUE(pConnection->CreateDirectory(strDir));
        ASSERT_TRUE(pConnection->SetCurrentDirectory(strDir));
        ASSERT_TRUE(pConnection->PutFile(local / L"up.bin", L"开孔板.dwg"));
        EXPECT_EQ(ReadBytes(server / (strDir + L"\\开孔板.dwg")), bytes);
        int64_t nSize = 0;
        EXPECT_TRUE(pConnection->GetFileSize(L"开孔板.dwg", nSize));
        EXPECT_EQ(nSize, 300000);
        ASSERT_TRUE(pConnection->GetFile(L"/" + strDir + L"/开孔板.dwg", local / L"down.bin"));
        EXPECT_EQ(ReadBytes(local / L"down.bin"), bytes);

        std::vector<FTP_FIND_DATA> found;
        ASSERT_TRUE(pConnection->FindFiles(L"*.*", found));
        ASSERT_EQ(found.size(), 1u);
        EXPECT_EQ(found[0].strName, L"开孔板.dwg");
        EXPECT_EQ(found[0].nSize, 300000);
        EXPECT_FALSE(found[0].bDirectory);

        WriteBytes(local / L"b.bin", "B");
        ASSERT_TRUE(pConnection->PutFile(local / L"b.bin", L"b.dwg"));
        EXPECT_FALSE(pConnection->Rename(L"b.dwg", L"开孔板.dwg")); // the target exists
        EXPECT_TRUE(pConnection->Remove(L"开孔板.dwg"));
        EXPECT_FALSE(pConnection->Remove(L"开孔板.dwg"));
        EXPECT_TRUE(pConnection->Rename(L"b.dwg", L"开孔板.dwg"));
        EXPECT_EQ(ReadBytes(server / (strDir + L"\\开孔板.dwg")), "B");
        ASSERT_TRUE(pConnection->SetCurrentDirectory(L"/"));
        EXPECT_FALSE(pConnection->RemoveDirectory(strDir)); // not empty
        EXPECT_FALSE(pConnection->GetFile(L"missing.dwg", local / L"down.bin"));
        EXPECT_EQ(ReadBytes(local / L"down.bin"), bytes);
    }
}

} // namespace
