// awork.sys: exact keys, blank removal, the guarded keys and what a missing file leaves behind.
#include "settings/ReadAworkSys.h"

#include "TestData.h"
#include "TestHost.h"
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
    void UseOddFile() {
        WriteBytes(m_dir / L"LocalData\\awork.sys", ReadTestData("settings/awork_odd.sys"));
    }

    CTempDir m_dir;
    CTestHost m_host;
};

} // namespace

TEST_F(AworkTest, ConstructorHoldsTheDefaultsUntilFirstUse) {
    CReadAworkSys sys;
    EXPECT_EQ(sys.m_bRead, 0);
    EXPECT_EQ(sys.m_nCrossDotSize, 15);
    EXPECT_EQ(sys.m_strWiringAdaptive, L"否");
    EXPECT_EQ(sys.m_strJumperToPart, L"3");
    EXPECT_DOUBLE_EQ(sys.m_dPartWireNoToWire, 1.3);
}

TEST_F(AworkTest, KeysMatchExactlyAndValuesLoseTheirBlanks) {
    UseOddFile();
    CReadAworkSys sys;
    EXPECT_EQ(sys.GetSymbolNewOld(), 12); // "1 2" reads as 12
    EXPECT_EQ(sys.m_bRead, 1);
    EXPECT_EQ(sys.GetDefaultTextStyle(), L" 宋体 Bold ");
    EXPECT_EQ(sys.GetCrossDotSize(), 20);
    EXPECT_DOUBLE_EQ(sys.GetLabelTextHeight(), 4.5);
    EXPECT_EQ(sys.GetOneEndHorzLabelPos(), 3);
    EXPECT_EQ(sys.GetOneEndVertLabelPos(), 4);
    EXPECT_EQ(sys.GetVertWireNoDir(), 0);
    EXPECT_DOUBLE_EQ(sys.GetFrameWidth(), 30.0); // the first line wins
    EXPECT_EQ(sys.GetCircuitBlockExplode(), 0);
    EXPECT_EQ(sys.GetTitleBlockType(), L"A3横向");
    EXPECT_EQ(sys.GetWiringAdaptive(), L"是");
    EXPECT_EQ(sys.GetWireColourPos(), L"连线上方");
    EXPECT_EQ(sys.GetSamePartPinWiring(), 0);
    EXPECT_EQ(sys.GetJumperStep(), L"0.8");
    EXPECT_EQ(sys.GetWiresPerDeviceTerminal(), L"可接一根线");
    EXPECT_EQ(sys.GetUseFreeTerminalSide(), 0);
    EXPECT_EQ(sys.GetWiringBlockExplode(), 1); // present but empty: as missing
    EXPECT_TRUE(m_host.m_strPrinted.empty());
}

TEST_F(AworkTest, KeysTheFileLacksTakeTheirMissingValues) {
    UseOddFile();
    CReadAworkSys sys;
    EXPECT_DOUBLE_EQ(sys.GetMountPosTextHeight(), 0.0);
    EXPECT_EQ(sys.GetOpenDwgMode(), 1);
    EXPECT_EQ(sys.GetTitleBlockExplode(), 1);
    EXPECT_EQ(sys.GetRelayLabelSeparator(), L"");
    EXPECT_EQ(sys.GetWiringTextFormat(), L"");
    EXPECT_EQ(sys.GetJumperToPart(), L"3.0");
    EXPECT_EQ(sys.GetSoftwareVersion(), 1);
    EXPECT_EQ(sys.GetRelayVariant(), 0);
    EXPECT_EQ(sys.GetTwoWiresPerSide(), 1);
    EXPECT_EQ(sys.GetRelayAsOrdinary(), 0);
}

TEST_F(AworkTest, MissingFileIsReportedOnceAndOverwritesTheDefaults) {
    CReadAworkSys sys;
    EXPECT_EQ(sys.GetCrossDotSize(), 0);
    EXPECT_EQ(m_host.m_strPrinted,
              L"打开文件" + (m_dir / L"LocalData\\awork.sys") + L"时出错，错误码为 2\n");
    EXPECT_DOUBLE_EQ(sys.GetFrameWidth(), 0.0);
    EXPECT_EQ(sys.GetWiringAdaptive(), L"");
    EXPECT_EQ(sys.GetWireColourPos(), L"连线下方");
    EXPECT_EQ(sys.GetSamePartPinWiring(), 1);
    EXPECT_EQ(sys.GetJumperStep(), L"0.5");
    EXPECT_EQ(sys.GetWiringBlockExplode(), 1);

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

    WriteBytes(m_dir / L"LocalData\\awork.sys",
               "\xC8\xED\xBC\xFE\xB5\xB1\xC7\xB0\xB0\xE6\xB1\xBE: 7");
    m_host.m_strVersion = L"3";
    EXPECT_EQ(CReadAworkSys().GetSoftwareTag(), 7);
}
