// The Data directory's tables: defaults, full-width separators, widths, extra text, the caches.
#include "settings/DataTables.h"

#include "TestHost.h"
#include "base/CodePage.h"
#include "base/FileSystem.h"

#include <gtest/gtest.h>

namespace {

class DataTablesTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetDataTableCaches();
        m_host.m_strInstall = m_dir.Path();
        FsCreateDirectory(m_dir / L"Data");
    }
    void TearDown() override { ResetDataTableCaches(); }
    void Write(const wchar_t* pszName, const std::wstring& strText) {
        WriteBytes(m_dir / (std::wstring(L"Data\\") + pszName), EncodeText(strText));
    }

    CTempDir m_dir;
    CTestHost m_host;
};

} // namespace

TEST_F(DataTablesTest, TerminalTypesFallBackToTheDefaultsWithoutAComma) {
    CStringArray name, symbol, width, extra;
    ReadTerminalTypes(name, symbol, width, extra);
    ASSERT_EQ(name.size(), 11u);
    EXPECT_EQ(name[3] + L"|" + symbol[3] + L"|" + width[3], L"电流端子|粗线|8.20");
    EXPECT_EQ(name[10] + L"|" + symbol[10] + L"|" + width[10], L"双进双出刀闸端子|＃＆|6.20");
    EXPECT_EQ(symbol[0], L"");

    Write(L"DZBDZLXFH.txt", L"普通端子：6.2\r\n");
    ReadTerminalTypes(name, symbol, width, extra);
    EXPECT_EQ(name.size(), 11u);
}

TEST_F(DataTablesTest, TerminalLinesSplitAfterFullWidthReplacement) {
    Write(L"DZBDZLXFH.txt", L"  普通端子：，7\r\n\r\n试验端子: 粗线 ,8.256,红,宽,高\r\n"
                            L"刀闸端子:＆，6，备注\r\n");
    CStringArray name, symbol, width, extra;
    ReadTerminalTypes(name, symbol, width, extra);
    ASSERT_EQ(name.size(), 3u);
    EXPECT_EQ(name[0] + L"|" + symbol[0] + L"|" + width[0] + L"|" + extra[0], L"普通端子||7.00|");
    EXPECT_EQ(name[1] + L"|" + symbol[1] + L"|" + width[1] + L"|" + extra[1],
              L"试验端子|粗线 |8.26|红,宽,高");
    EXPECT_EQ(extra[2], L"备注");
}

TEST_F(DataTablesTest, WireAndCircuitTypesHaveDefaultsOnlyForAnEmptyFile) {
    CStringArray name, value;
    ReadWireTypes(name, value);
    ASSERT_EQ(name.size(), 6u);
    EXPECT_EQ(name[4] + L"|" + value[4], L"≥8芯单头(孔)DB9线|◇");
    ReadCircuitTypes(name, value);
    ASSERT_EQ(name.size(), 3u);
    EXPECT_EQ(name[2] + L"|" + value[2], L"普通回路|");

    Write(L"DZBDXLXFH.txt", L"双绞线：#，1.5，文字，多\r\n");
    Write(L"DZBHUILUFH.txt", L"控制回路：KM:1\r\n");
    ReadWireTypes(name, value);
    ASSERT_EQ(name.size(), 1u);
    EXPECT_EQ(name[0] + L"|" + value[0], L"双绞线|#");
    ReadCircuitTypes(name, value);
    ASSERT_EQ(name.size(), 1u);
    EXPECT_EQ(name[0] + L"|" + value[0], L"控制回路|KM:1");
}

TEST_F(DataTablesTest, DistLimitIsReadOncePerProcess) {
    Write(L"DistLimit.txt", L"-3\r\n");
    EXPECT_DOUBLE_EQ(GetDistLimit(), 0.5);
    ResetDataTableCaches();
    Write(L"DistLimit.txt", L"1.25\r\n9");
    EXPECT_DOUBLE_EQ(GetDistLimit(), 1.25);
    Write(L"DistLimit.txt", L"7");
    EXPECT_DOUBLE_EQ(GetDistLimit(), 1.25);
}

TEST_F(DataTablesTest, ErpModeIsCachedOnlyOnceTheFileOpened) {
    EXPECT_EQ(GetErpMode(), 0);
    Write(L"ErpOrCad.txt", L"eRP-link");
    EXPECT_EQ(GetErpMode(), 1); // asked again after a missing file
    Write(L"ErpOrCad.txt", L"BSF");
    EXPECT_EQ(GetErpMode(), 1);
    ResetDataTableCaches();
    EXPECT_EQ(GetErpMode(), 2);
    ResetDataTableCaches();
    Write(L"ErpOrCad.txt", L" Erp");
    EXPECT_EQ(GetErpMode(), 0);
}
