// The site's client against a real FTP server: login, retry rule, uploads, remote tests, faults.
#include "shared/MyFtpConnection.h"

#include "shared/FtpLoginInfo.h"

#include "FtpTestServer.h"
#include "TestHost.h"
#include "ftp/CurlFtpClient.h"

#include "base/FileSystem.h"
#include "base/Network.h"
#include "base/StrUtil.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <unistd.h>

namespace {

const FTP_SESSION_OPTIONS kQuick = {2000, 1000, 1000, 10, 2};
const std::wstring kRetryText = L"\n请检查网络连接后再重试!";

class MyFtpConnectionTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_host.m_strInstall = m_install.Path();
        HOST_SERVICES services = GetHostServices();
        services.pFtp = &m_recorder;
        SetHostServices(services);
        ASSERT_TRUE(m_server.Start({"utf8", true}));
        FsCreateDirectory(m_server / L"site");
        FsCreateDirectory(m_install / L"LocalData");
        WriteLogin();
    }

    void WriteLogin(const std::wstring& strSite = L"site", const std::wstring& strUser = L"qm",
                    const std::wstring& strPassword = L"secret",
                    const std::wstring& strAnonymous = L"0",
                    const std::wstring& strPassive = L"1") {
        std::wstring strFile = m_install / L"LocalData\\TzFTPLoginInfo.sys";
        WriteBytes(strFile, "");
        WriteLoginInfo(strFile, {L"", strSite, L"127.0.0.1", std::to_wstring(m_server.Port()),
                                 strAnonymous, strUser, strPassword, L"", L"", L"", strPassive});
    }
    std::unique_ptr<CMyFtpConnection> Make(bool bMarker = false) {
        if (bMarker)
            WriteBytes(m_install / L"LocalData\\Ftp.bg", "");
        auto pFtp = std::make_unique<CMyFtpConnection>();
        pFtp->m_sessionOptions = kQuick;
        return pFtp;
    }
    std::wstring Local(const std::string& bytes, const std::wstring& strName = L"up.dwg") {
        WriteBytes(m_local / strName, bytes);
        return m_local / strName;
    }
    bool OnServer(const std::wstring& strRel) { return FsExists(m_server / strRel); }
    bool Logged(const std::wstring& strLine) {
        return std::count(m_recorder.m_log.begin(), m_recorder.m_log.end(), strLine) > 0;
    }

    CTestHost m_host;
    CTempDir m_install, m_local;
    CCurlFtpClient m_curl{"UTF-8"};
    CRecordingFtpClient m_recorder{m_curl};
    CFtpTestServer m_server;
};

TEST_F(MyFtpConnectionTest, ConnectsWithTheLoginFileRules) {
    auto pFtp = Make();
    ASSERT_TRUE(pFtp->Connect());
    EXPECT_EQ(pFtp->m_strSitePath, L"site");
    std::wstring strRemote = L"a.dwg";
    EXPECT_TRUE(pFtp->UploadFile(Local("A"), strRemote));
    EXPECT_EQ(ReadBytes(m_server / L"site\\a.dwg"), "A");

    WriteLogin(L"site", L"nobody", L"wrong", L"1", L"0"); // anonymous, active mode
    pFtp->CloseConnection();
    ASSERT_TRUE(pFtp->Connect());
    EXPECT_TRUE(pFtp->DownloadFile(L" a.dwg ", m_local / L"back.dwg"));
    EXPECT_EQ(ReadBytes(m_local / L"back.dwg"), "A");
    // The login file's mode reaches the client: the server takes both.
    EXPECT_EQ(m_recorder.m_log.front(), L"login passive");
    EXPECT_EQ(m_recorder.Count(L"login active"), 1);

    WriteLogin(L""); // no site directory: the login directory is the site
    pFtp->CloseConnection();
    ASSERT_TRUE(pFtp->Connect());
    EXPECT_TRUE(pFtp->RemoteFileExists(L"site\\a.dwg"));
    EXPECT_TRUE(m_host.m_boxes.empty());
    EXPECT_EQ(m_host.m_strPrinted, L"");

    FsDeleteFile(m_install / L"LocalData\\TzFTPLoginInfo.sys");
    pFtp->CloseConnection();
    EXPECT_FALSE(pFtp->Connect());
    EXPECT_TRUE(m_host.m_boxes.empty());
    EXPECT_EQ(m_host.m_strPrinted, L"");
}

TEST_F(MyFtpConnectionTest, ConnectTellsWhyItFailedAndStaysIdle) {
    WriteLogin(L"site", L"qm", L"wrong");
    auto pFtp = Make();
    EXPECT_FALSE(pFtp->Connect());
    EXPECT_EQ(m_host.m_strPrinted.substr(0, 4), L"\n530");
    EXPECT_TRUE(m_host.m_strPrinted.ends_with(kRetryText));
    EXPECT_TRUE(m_host.m_boxes.empty());
    EXPECT_TRUE(!pFtp->m_pConnection && !pFtp->m_pSession);

    WriteLogin(L"nosuch");
    EXPECT_FALSE(pFtp->Connect());
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText,
              L"设置站点当前路径失败!\n可能原因:FTP站点中路径名nosuch不存在");
    EXPECT_EQ(m_host.m_boxes[0].nFlags, unsigned(MB_ICONSTOP));
    EXPECT_TRUE(!pFtp->m_pConnection && !pFtp->m_pSession);

    WriteLogin();
    m_server.Stop();
    m_host.m_strPrinted.clear();
    EXPECT_FALSE(pFtp->Connect());
    EXPECT_TRUE(m_host.m_strPrinted.size() > kRetryText.size() + 1);
    EXPECT_TRUE(m_host.m_strPrinted.ends_with(kRetryText));
}

TEST_F(MyFtpConnectionTest, TransfersFollowTheRuleOfOneRetry) {
    std::string bytes;
    for (int i = 0; i < 256 * 4; ++i)
        bytes += static_cast<char>(i * 7);
    auto pFtp = Make();
    std::wstring strRemote = L"every.bin";
    EXPECT_TRUE(pFtp->UploadFile(Local(bytes), strRemote)); // connects by itself
    EXPECT_TRUE(pFtp->DownloadFile(L"every.bin", m_local / L"new\\deeper\\every.bin"));
    EXPECT_EQ(ReadBytes(m_local / L"new\\deeper\\every.bin"), bytes);

    m_server.Stop();
    ASSERT_TRUE(m_server.Start({"utf8", true}));
    EXPECT_TRUE(pFtp->DownloadFile(L"every.bin", m_local / L"again.bin"));

    m_server.Stop();
    WriteBytes(m_local / L"again.bin", "local work");
    EXPECT_FALSE(pFtp->DownloadFile(L"every.bin", m_local / L"again.bin"));
    EXPECT_EQ(ReadBytes(m_local / L"again.bin"), "local work");
    EXPECT_FALSE(pFtp->IsConnected());
    EXPECT_TRUE(m_host.m_boxes.empty());
}

TEST_F(MyFtpConnectionTest, MarkerSendsUploadsThroughTheWorkstationsOwnTemporaryName) {
    setenv("QM_HOST_ID", "10.0.0.7(设计 7)", 1);
    EXPECT_EQ(CMyFtpConnection::TempUploadName(), L"#10.0.0.7(___7).txt");
    auto pFtp = Make(true);
    ASSERT_TRUE(pFtp->Connect());
    std::wstring strRemote = L"root.dwg";
    EXPECT_TRUE(pFtp->UploadFile(Local("R"), strRemote));
    EXPECT_EQ(pFtp->m_strTempName, L"#10.0.0.7(___7).txt");
    EXPECT_EQ(m_recorder.Count(L"Cd "), 1); // only the one into the site
    EXPECT_EQ(ReadBytes(m_server / L"site\\root.dwg"), "R");

    FsCreateDirectory(m_server / L"site\\sub");
    WriteBytes(m_server / L"site\\sub\\a.dwg", "old");
    strRemote = L"sub\\a.dwg";
    EXPECT_TRUE(pFtp->UploadFile(Local("new"), strRemote));
    EXPECT_EQ(strRemote, L"sub\\a.dwg");
    EXPECT_TRUE(Logged(L"PutFile sub\\#10.0.0.7(___7).txt"));
    EXPECT_TRUE(Logged(L"Rename sub\\#10.0.0.7(___7).txt sub\\a.dwg"));
    EXPECT_EQ(ReadBytes(m_server / L"site\\sub\\a.dwg"), "new");

    // Unconnected on entry: the same path, and nothing else on the site changes.
    pFtp->CloseConnection();
    strRemote = L"sub\\b.dwg";
    EXPECT_TRUE(pFtp->UploadFile(Local("B"), strRemote));
    EXPECT_EQ(ReadBytes(m_server / L"site\\sub\\b.dwg"), "B");
    EXPECT_EQ(ReadBytes(m_server / L"site\\sub\\a.dwg"), "new");
    std::vector<FS_FIND_DATA> found;
    EXPECT_FALSE(FsFind(m_server / L"site\\#*", found) ||
                 FsFind(m_server / L"site\\sub\\#*", found));
    EXPECT_TRUE(m_host.m_boxes.empty());
    unsetenv("QM_HOST_ID");
}

TEST_F(MyFtpConnectionTest, RetryAfterAReconnectWithMarkerStillReplacesTheTarget) {
    WriteLogin(L""); // the refusing directory "nostore" lies in the login directory
    WriteBytes(m_server / L"nostore\\a.dwg", "old");
    auto pFtp = Make(true);
    ASSERT_TRUE(pFtp->Connect());
    std::wstring strRemote = L"nostore\\a.dwg";
    EXPECT_FALSE(pFtp->UploadFile(Local("new"), strRemote));
    EXPECT_EQ(ReadBytes(m_server / L"nostore\\a.dwg"), "old"); // never removed unreplaced
    EXPECT_EQ(m_recorder.Count(L"login"), 2);
    std::vector<FS_FIND_DATA> found;
    EXPECT_FALSE(FsFind(m_server / L"#*", found));
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText,
              L"文件 nostore\\a.dwg 上传失败，请确认是否被其它客户端用户调用！");
}

TEST_F(MyFtpConnectionTest, RefusedUploadIsToldOnceWithTheNameInUse) {
    WriteLogin(L"site", L"viewer");
    auto pFtp = Make();
    ASSERT_TRUE(pFtp->Connect());
    std::wstring strRemote = L"a.dwg";
    EXPECT_FALSE(pFtp->UploadFile(Local("A"), strRemote));
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText, L"文件 a.dwg 上传失败，请确认是否被其它客户端用户调用！");
    EXPECT_EQ(m_host.m_boxes[0].nFlags, unsigned(MB_ICONEXCLAMATION));
    EXPECT_EQ(m_recorder.Count(L"PutFile"), 2);

    auto pMarked = Make(true);
    ASSERT_TRUE(pMarked->Connect());
    EXPECT_FALSE(pMarked->UploadFile(Local("A"), strRemote));
    EXPECT_EQ(strRemote, L"a.dwg");
    EXPECT_EQ(m_host.m_boxes.back().strText,
              L"文件 a.dwg 上传失败，请确认是否被其它客户端用户调用！");
    EXPECT_FALSE(OnServer(L"site\\a.dwg"));
}

// The test server cuts uploads that begin with "CUTONCE" the first time and
// "CUTALWAYS" every time, as a server killed or full mid-transfer leaves them.
TEST_F(MyFtpConnectionTest, ShortUploadIsRemovedAndSentOnceMore) {
    for (bool bMarker : {false, true}) {
        auto pFtp = Make(bMarker);
        ASSERT_TRUE(pFtp->Connect());
        std::string bytes =
            (bMarker ? "CUTONCE-marked-" : "CUTONCE-plain-") + std::string(4000, 'x');
        std::wstring strRemote = L"big.dwg";
        EXPECT_TRUE(pFtp->UploadFile(Local(bytes), strRemote)) << bMarker;
        EXPECT_EQ(ReadBytes(m_server / L"site\\big.dwg"), bytes) << bMarker;
        EXPECT_GE(m_recorder.Count(L"PutFile"), 2) << bMarker;
        m_recorder.m_log.clear();

        WriteBytes(m_server / L"site\\kept.dwg", "old");
        strRemote = L"kept.dwg";
        std::string always = "CUTALWAYS" + std::string(4000, 'y');
        EXPECT_FALSE(pFtp->UploadFile(Local(always), strRemote)) << bMarker;
        // Plain, the short file is gone; through the temporary name the old one stays.
        EXPECT_EQ(OnServer(L"site\\kept.dwg"), bMarker);
        if (bMarker) {
            EXPECT_EQ(ReadBytes(m_server / L"site\\kept.dwg"), "old");
        }
        EXPECT_EQ(m_host.m_boxes.back().strText,
                  L"文件 kept.dwg 上传失败，请确认是否被其它客户端用户调用！");
        std::vector<FS_FIND_DATA> found;
        EXPECT_FALSE(FsFind(m_server / L"site\\#*", found));
    }
}

TEST_F(MyFtpConnectionTest, RemoteFileExistsFetchesTheFileTwiceWhenMissing) {
    WriteBytes(m_server / L"site\\big.dwg", std::string(100000, 'x'));
    auto pFtp = Make();
    EXPECT_TRUE(pFtp->RemoteFileExists(L"big.dwg"));
    EXPECT_TRUE(FsIsDirectory(m_install / L"TempFTP"));
    EXPECT_FALSE(FsExists(m_install / L"TempFTP\\Exist.dwg"));

    m_recorder.m_log.clear();
    EXPECT_FALSE(pFtp->RemoteFileExists(L"missing.dwg"));
    std::vector<std::wstring> expected = {L"GetFile missing.dwg", L"login passive", L"Cd site",
                                          L"GetFile missing.dwg"};
    EXPECT_EQ(m_recorder.m_log, expected);
    EXPECT_TRUE(m_host.m_boxes.empty());
}

TEST_F(MyFtpConnectionTest, FindsRemoteFilesAndDirectoriesByListing) {
    FsCreateDirectory(m_server / L"site\\InstallHole");
    FsCreateDirectory(m_server / L"site\\InstallHole\\Sub");
    WriteBytes(m_server / L"site\\InstallHole\\A.DWG", "a");
    WriteBytes(m_server / L"site\\InstallHole\\b.Dwg", "b");
    auto pFtp = Make();
    EXPECT_FALSE(pFtp->RemoteDirExists(L"InstallHole\\Sub")); // not connected
    EXPECT_TRUE(pFtp->FindRemoteFile(L"InstallHole", L"A.dwg"));
    EXPECT_FALSE(pFtp->FindRemoteFile(L"InstallHole", L"b.dwg"));
    EXPECT_TRUE(pFtp->FindRemoteFile(L"InstallHole", L"b.Dwg"));
    EXPECT_TRUE(pFtp->FindRemoteFile(L"", L"InstallHole"));
    EXPECT_FALSE(pFtp->FindRemoteFile(L"", L"Server.xml"));
    std::wstring strCwd;
    pFtp->m_pConnection->GetCurrentDirectory(strCwd);
    EXPECT_EQ(strCwd, L"/site");

    EXPECT_TRUE(pFtp->RemoteDirExists(L"InstallHole\\Sub"));
    EXPECT_TRUE(pFtp->RemoteDirExists(L"InstallHole\\SUB")); // the server lists, we compare
    EXPECT_FALSE(pFtp->RemoteDirExists(L"InstallHole\\A.DWG"));
    EXPECT_FALSE(pFtp->RemoteDirExists(L"InstallHole\\Nope"));
}

TEST_F(MyFtpConnectionTest, CreatesNestedDirectoriesAlsoWithChineseNames) {
    WriteBytes(m_server / L"site\\file", "f");
    auto pFtp = Make();
    EXPECT_TRUE(pFtp->CreateRemoteDir(L"a\\b\\c\\\\"));
    EXPECT_TRUE(FsIsDirectory(m_server / L"site\\a\\b\\c"));
    EXPECT_TRUE(pFtp->CreateRemoteDir(L"a\\b"));
    EXPECT_FALSE(pFtp->CreateRemoteDir(L""));
    EXPECT_FALSE(pFtp->CreateRemoteDir(L"file\\x"));
    std::wstring strCwd;
    pFtp->m_pConnection->GetCurrentDirectory(strCwd);
    EXPECT_EQ(strCwd, L"/site");

    EXPECT_TRUE(pFtp->CreateRemoteDir(L"图库\\开孔"));
    std::wstring strRemote = L"图库\\开孔\\面板.dwg";
    EXPECT_TRUE(pFtp->UploadFile(Local("cn"), strRemote));
    EXPECT_EQ(ReadBytes(m_server / L"site\\图库\\开孔\\面板.dwg"), "cn");
    EXPECT_TRUE(pFtp->FindRemoteFile(L"图库\\开孔", L"面板.dwg"));
    EXPECT_TRUE(pFtp->RemoteDirExists(L"图库\\开孔"));
}

TEST_F(MyFtpConnectionTest, ListsAndDownloadsWholeDirectories) {
    for (const wchar_t* pszDir : {L"site\\lib", L"site\\lib\\sub", L"site\\lib\\sub\\deeper"})
        FsCreateDirectory(m_server / pszDir);
    for (const wchar_t* pszFile : {L"lib\\a.dwg", L"lib\\b.sld", L"lib\\sub\\deeper\\d.dwg"})
        WriteBytes(m_server / (std::wstring(L"site\\") + pszFile), WideToUtf8(pszFile));
    auto pFtp = Make();
    CStringArray dirs, files;
    ASSERT_TRUE(pFtp->ListRemoteDir(L"lib", dirs, files));
    std::sort(files.begin(), files.end());
    EXPECT_EQ(dirs, CStringArray{L"sub"});
    EXPECT_EQ(files, (CStringArray{L"a.dwg", L"b.sld"}));
    ASSERT_TRUE(pFtp->DownloadDir(L"lib", m_local / L"copy"));
    EXPECT_EQ(ReadBytes(m_local / L"copy\\sub\\deeper\\d.dwg"), "lib\\sub\\deeper\\d.dwg");
    EXPECT_EQ(ReadBytes(m_local / L"copy\\b.sld"), "lib\\b.sld");
}

TEST_F(MyFtpConnectionTest, GivesUpOnAServerThatStopsAnswering) {
    auto pFtp = Make();
    pFtp->m_sessionOptions = {300, 300, 300, 10, 1};
    ASSERT_TRUE(pFtp->Connect());
    m_server.Pause();
    EXPECT_FALSE(pFtp->DownloadFile(L"any.dwg", m_local / L"any.dwg"));
    EXPECT_FALSE(pFtp->IsConnected());
    m_server.Resume();
    EXPECT_TRUE(m_host.m_strPrinted.ends_with(kRetryText));
}

TEST(FtpWorkstationTest, HostIdAndScratchDirectory) {
    CTestHost host;
    CTempDir install;
    host.m_strInstall = install.Path();
    unsetenv("QM_HOST_ID");
    char szName[256] = {};
    gethostname(szName, sizeof szName - 1);
    std::wstring strId = GetLocalIP();
    EXPECT_TRUE(strId.ends_with(L"(" + Utf8ToWide(szName) + L")")) << strId;
    EXPECT_EQ(std::count(strId.begin(), strId.end(), L'.'), 3) << strId;
    setenv("QM_HOST_ID", "10.0.0.7(station-2)", 1);
    EXPECT_EQ(GetLocalIP(), L"10.0.0.7(station-2)");
    unsetenv("QM_HOST_ID");

    FsCreateDirectory(install / L"TempFTP");
    FsCreateDirectory(install / L"TempFTP\\keep");
    WriteBytes(install / L"TempFTP\\Exist.dwg", "x");
    WriteBytes(install / L"TempFTP\\keep\\inner.txt", "x");
    ClearTempFTP();
    EXPECT_FALSE(FsExists(install / L"TempFTP\\Exist.dwg"));
    EXPECT_TRUE(FsExists(install / L"TempFTP\\keep\\inner.txt"));
}

} // namespace

// Resolving the machine's name gives a loopback address on Debian; the id
// takes the connection's address, else an interface's, and keeps it.
TEST_F(MyFtpConnectionTest, HostIdNamesAnAddressOtherWorkstationsCanTellApart) {
    unsetenv("QM_HOST_ID");
    auto pFtp = Make();
    ASSERT_TRUE(pFtp->Connect());
    std::wstring strId = GetLocalIP();
    std::string strInterface;
    if (NetGetInterfaceIPv4(strInterface)) {
        EXPECT_EQ(strId.rfind(Utf8ToWide(strInterface) + L"(", 0), 0u) << strId;
    }
    EXPECT_NE(strId.rfind(L"127.", 0), 0u) << strId;
    OfferHostAddress(L"198.51.100.9");
    EXPECT_EQ(GetLocalIP(), strId); // once per run
    setenv("QM_HOST_ID", "10.0.0.9(WS9)", 1);
    EXPECT_EQ(GetLocalIP(), L"10.0.0.9(WS9)");
    unsetenv("QM_HOST_ID");
}
