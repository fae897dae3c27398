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
    void Write(const std::wstring& strName, const std::wstring& strText) {
        WriteBytes(m_dir / (L"Data\\" + strName), EncodeText(strText));
    }
    static std::wstring Row(const CStringArray& a, const CStringArray& b, size_t i) {
        return a.at(i) + L"|" + b.at(i);
    }

    CTempDir m_dir;
    CTestHost m_host;
    CStringArray m_name, m_symbol, m_width, m_extra;
};

} // namespace

TEST_F(DataTablesTest, TerminalTypesFallBackToTheDefaultsWithoutAComma) {
    Write(L"DZBDZLXFH.txt", L"普通端子：6.2\r\n");
    ReadTerminalTypes(m_name, m_symbol, m_width, m_extra);
    ASSERT_EQ(m_name.size(), 11u);
    EXPECT_EQ(Row(m_name, m_symbol, 3) + m_width[3], L"电流端子|粗线8.20");
    EXPECT_EQ(Row(m_name, m_symbol, 10) + m_width[10], L"双进双出刀闸端子|＃＆6.20");

    Write(L"DZBDZLXFH.txt",
          L"  普通端子：，7\r\n\r\n试验端子: 粗线 ,8.256,红,宽\r\n刀闸端子:＆，6，注\r\n");
    ReadTerminalTypes(m_name, m_symbol, m_width, m_extra);
    ASSERT_EQ(m_name.size(), 3u);
    EXPECT_EQ(Row(m_name, m_symbol, 0) + m_width[0] + m_extra[0], L"普通端子|7.00");
    EXPECT_EQ(Row(m_name, m_symbol, 1) + m_width[1] + m_extra[1], L"试验端子|粗线 8.26红,宽");
    EXPECT_EQ(m_extra[2], L"注");
}

TEST_F(DataTablesTest, WireAndCircuitTypesHaveDefaultsOnlyForAnEmptyFile) {
    ReadWireTypes(m_name, m_symbol);
    ASSERT_EQ(m_name.size(), 6u);
    EXPECT_EQ(Row(m_name, m_symbol, 4), L"≥8芯单头(孔)DB9线|◇");
    ReadCircuitTypes(m_name, m_symbol);
    ASSERT_EQ(m_name.size(), 3u);
    EXPECT_EQ(Row(m_name, m_symbol, 2), L"普通回路|");

    Write(L"DZBDXLXFH.txt", L"双绞线：#，1.5，文字，多\r\n");
    Write(L"DZBHUILUFH.txt", L"控制回路：KM:1\r\n");
    ReadWireTypes(m_name, m_symbol);
    EXPECT_EQ(m_name.size() * 10 + m_symbol.size(), 11u);
    EXPECT_EQ(Row(m_name, m_symbol, 0), L"双绞线|#");
    ReadCircuitTypes(m_name, m_symbol);
    EXPECT_EQ(Row(m_name, m_symbol, 0), L"控制回路|KM:1");
}

TEST_F(DataTablesTest, DistLimitAndErpModeAreCachedForTheProcess) {
    Write(L"DistLimit.txt", L"-3\r\n");
    EXPECT_DOUBLE_EQ(GetDistLimit(), 0.5);
    ResetDataTableCaches();
    Write(L"DistLimit.txt", L"1.25\r\n9");
    EXPECT_DOUBLE_EQ(GetDistLimit(), 1.25);
    Write(L"DistLimit.txt", L"7");
    EXPECT_DOUBLE_EQ(GetDistLimit(), 1.25);

    EXPECT_EQ(GetErpMode(), 0);
    Write(L"ErpOrCad.txt", L"eRP-link");
    EXPECT_EQ(GetErpMode(), 1); // asked again after a missing file
    Write(L"ErpOrCad.txt", L"BSF");
    EXPECT_EQ(GetErpMode(), 1);
    ResetDataTableCaches();
    EXPECT_EQ(GetErpMode(), 2);
}
