// awork.sys: exact keys, blank removal, the guarded keys and what a missing file leaves behind.
#include "settings/ReadAworkSys.h"

#include "TestData.h"
#include "TestHost.h"
#include "base/CodePage.h"
#include "base/FileSystem.h"
#include "settings/DataTables.h"

#include <gtest/gtest.h>

namespace {

class AworkTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetDataTableCaches();
        m_host.m_strInstall = m_dir.Path();
        FsCreateDirectory(m_dir / L"LocalData");
        FsCreateDirectory(m_dir / L"Data");
    }
    void TearDown() override { ResetDataTableCaches(); }
    void UseOddFile() { WriteBytes(m_strFile, ReadTestData("settings/awork_odd.sys")); }

    CTempDir m_dir;
    CTestHost m_host;
    std::wstring m_strFile = m_dir / L"LocalData\\awork.sys";
};

} // namespace

TEST_F(AworkTest, KeysMatchExactlyAndValuesLoseTheirBlanks) {
    UseOddFile();
    CReadAworkSys sys;
    EXPECT_EQ(sys.m_nCrossDotSize, 15);   // the constructor's value until first use
    EXPECT_EQ(sys.GetSymbolNewOld(), 12); // "1 2" reads as 12
    EXPECT_EQ(sys.GetDefaultTextStyle(), L" 宋体 Bold ");
    EXPECT_EQ(sys.GetCrossDotSize(), 20);
    EXPECT_DOUBLE_EQ(sys.GetLabelTextHeight(), 4.5);
    EXPECT_EQ(sys.GetOneEndHorzLabelPos() * 10 + sys.GetOneEndVertLabelPos(), 34);
    EXPECT_EQ(sys.GetVertWireNoDir(), 0);
    EXPECT_DOUBLE_EQ(sys.GetFrameWidth(), 30.0); // the first line wins
    EXPECT_EQ(sys.GetCircuitBlockExplode(), 0);
    EXPECT_EQ(sys.GetTitleBlockType() + sys.GetWiringAdaptive(), L"A3横向是");
    EXPECT_EQ(sys.GetWireColourPos(), L"连线上方");
    EXPECT_EQ(sys.GetSamePartPinWiring(), 0);
    EXPECT_EQ(sys.GetJumperStep() + sys.GetWiresPerDeviceTerminal(), L"0.8可接一根线");
    EXPECT_EQ(sys.GetUseFreeTerminalSide(), 0);
    EXPECT_EQ(sys.GetWiringBlockExplode(), 1); // present but empty: as missing
    EXPECT_TRUE(m_host.m_strPrinted.empty());

    // Keys the file lacks take their missing values.
    EXPECT_DOUBLE_EQ(sys.GetMountPosTextHeight(), 0.0);
    EXPECT_EQ(sys.GetOpenDwgMode() + sys.GetTitleBlockExplode() + sys.GetTwoWiresPerSide(), 3);
    EXPECT_EQ(sys.GetRelayLabelSeparator() + sys.GetWiringTextFormat(), L"");
    EXPECT_EQ(sys.GetJumperToPart(), L"3.0");
    EXPECT_EQ(sys.GetSoftwareVersion(), 1);
    EXPECT_EQ(sys.GetRelayVariant() + sys.GetRelayAsOrdinary(), 0);
}

TEST_F(AworkTest, MissingFileIsReportedOnceAndOverwritesTheDefaults) {
    CReadAworkSys sys;
    EXPECT_EQ(sys.GetCrossDotSize(), 0);
    EXPECT_EQ(m_host.m_strPrinted, L"打开文件" + m_strFile + L"时出错，错误码为 2\n");
    EXPECT_DOUBLE_EQ(sys.GetFrameWidth(), 0.0);
    EXPECT_EQ(sys.GetWiringAdaptive(), L"");
    EXPECT_EQ(sys.GetWireColourPos() + sys.GetJumperStep(), L"连线下方0.5");
    EXPECT_EQ(sys.GetSamePartPinWiring() + sys.GetWiringBlockExplode(), 2);

    UseOddFile(); // not read again by the same object
    EXPECT_EQ(sys.GetCrossDotSize(), 0);
    EXPECT_EQ(CReadAworkSys().GetCrossDotSize(), 20);
}

TEST_F(AworkTest, SoftwareTagFollowsTheSuiteVersionAndTheErpMode) {
    WriteBytes(m_dir / L"Data\\ErpOrCad.txt", "bsf system");
    CReadAworkSys sys;
    EXPECT_EQ(sys.GetSoftwareTag(), 0); // missing key under BSF
    m_host.m_strVersion = L"2";
    EXPECT_EQ(sys.GetSoftwareTag(), 1);

    WriteBytes(m_strFile, EncodeText(L"软件当前版本: 7"));
    m_host.m_strVersion = L"3";
    EXPECT_EQ(CReadAworkSys().GetSoftwareTag(), 7);
}
