// The suite stand-in's settings file: paths with a final backslash, defaults, demo layout.
#include "suite/SuiteConfig.h"
#include "demo/DemoInstall.h"
#include "dxf/DxfCodec.h"
#include "host/db/AcDb.h"

#include "TestHost.h"
#include "base/FileSystem.h"

#include <gtest/gtest.h>

TEST(SuiteConfig, ReadsSettingsAndAddsTheFinalBackslash) {
    CTempDir dir;
    WriteBytes(dir / L"suite.conf", "# c\nCommonResPath = /srv/共用\nlocalpath=/home/u/qm/\n"
                                    "InstallStyle = 1\nFtpLogin=1\nVersion = 9.2\nbogus\n");
    CSuiteConfig config;
    ASSERT_TRUE(config.Load(dir.OsPath() + "suite.conf"));
    EXPECT_EQ(config.CommonResInstallPath(), L"\\srv\\共用\\");
    EXPECT_EQ(config.LocalInstallPath(), L"\\home\\u\\qm\\");
    EXPECT_EQ(config.InstallPath(), L""); // missing stays empty: commands end silently
    EXPECT_EQ(config.InstallStyle(), 1);
    EXPECT_EQ(config.FtpLoginStatus(), 1);
    EXPECT_EQ(config.CurrentVersion(), L"9.2");
    EXPECT_FALSE(config.Load(dir.OsPath() + "none.conf"));
}

TEST(SuiteConfig, DemoInstallLaysOutBothLibrariesAndRoundTrips) {
    CTempDir dir;
    CSuiteConfig config;
    acdbSetFileCodec(&GetDxfCodec());
    ASSERT_TRUE(MakeDemoInstall(dir.OsPath() + "demo", config));
    AcDbDatabase db(false, true); // the items are drawings
    EXPECT_EQ(
        db.readDwgFile((config.CommonResInstallPath() + L"InstallHole\\5x10腰形孔.dwg").c_str()),
        Acad::eOk);
    EXPECT_TRUE(FsIsDirectory(config.CommonResInstallPath() + L"InstallHole"));
    EXPECT_TRUE(FsIsDirectory(config.CommonResInstallPath() + L"DzStrucLib"));
    EXPECT_TRUE(FsIsDirectory(config.LocalInstallPath() + L"LaySketch"));
    ASSERT_TRUE(config.Save(dir.OsPath() + "suite.conf"));
    CSuiteConfig again;
    ASSERT_TRUE(again.Load(dir.OsPath() + "suite.conf"));
    EXPECT_EQ(again.LocalInstallPath(), config.LocalInstallPath());
    ASSERT_TRUE(MakeDemoInstall(dir.OsPath() + "demo", config)); // again over an existing one
}
