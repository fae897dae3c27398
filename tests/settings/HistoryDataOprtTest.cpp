// The history file: the fresh table byte for byte, longer and shorter files, writes only after a
// change.
#include "settings/HistoryDataOprt.h"

#include "TestData.h"
#include "TestHost.h"
#include "base/CodePage.h"
#include "base/FileSystem.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

class HistoryTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_host.m_strInstall = m_dir.Path();
        FsCreateDirectory(m_dir / L"LocalData");
    }
    CTempDir m_dir;
    CTestHost m_host;
    std::wstring m_strFile = m_dir / L"LocalData\\HistoryData.txt";
    std::string m_fresh = ReadTestData("settings/history_default.txt");
};

} // namespace

TEST_F(HistoryTest, MissingFileIsCreatedWithTheFreshTable) {
    {
        CHistoryDataOprt history;
        std::wstring strValue;
        history.GetText(237, strValue);
        EXPECT_EQ(strValue, L"C30-15L(1.5)");
        int nValue = 0;
        history.GetInt(296, nValue);
        EXPECT_EQ(nValue, 16);
    }
    EXPECT_EQ(Hex(ReadBytes(m_strFile)), Hex(m_fresh));
}

TEST_F(HistoryTest, ReadingWithoutAnEffectiveSetterNeverTouchesTheFile) {
    WriteBytes(m_strFile, "5\r\nxy\r\n");
    {
        CHistoryDataOprt history;
        EXPECT_EQ(history.m_arrValues[1], L"xy");
        history.SetText(500, L"ignored"); // past the end: no change, no flag
        EXPECT_EQ(history.m_bModified, 0);
        EXPECT_THROW(history.SetInt(-1, 3), std::invalid_argument);
    }
    EXPECT_EQ(ReadBytes(m_strFile), "5\r\nxy\r\n");
}

TEST_F(HistoryTest, ShortFileKeepsDefaultsBehindAndLongFileKeepsItsTail) {
    WriteBytes(m_strFile, EncodeText(L"9\n\n宽度\n"));
    {
        CHistoryDataOprt history; // an empty line is a value
        history.SetInt(4, 0);
        history.SetReal(11, 2.346);
    }
    std::string head =
        "9\r\n\r\n" + EncodeText(L"宽度") + "\r\n\r\n0\r\n1\r\n1\r\n\r\n0\r\n1\r\n1\r\n2.35\r\n";
    EXPECT_EQ(ReadBytes(m_strFile), head + m_fresh.substr(head.size() - 5));

    WriteBytes(m_strFile, m_fresh + "\r\nx\r\ny\r\nlast");
    {
        CHistoryDataOprt history;
        EXPECT_EQ(history.m_arrValues.size(), 300u);
        history.SetText(299, L"end");
    }
    EXPECT_EQ(ReadBytes(m_strFile), m_fresh + "\r\nx\r\ny\r\nend");
}

TEST_F(HistoryTest, WriteCreatesTheMissingDataDirectory) {
    FsRemoveDirectory(m_dir / L"LocalData");
    {
        CHistoryDataOprt history; // the file can't be made yet: defaults hold
        EXPECT_FALSE(FsExists(m_strFile));
        history.SetText(7, L"InstallHole\\门板\\");
    }
    std::string bytes = ReadBytes(m_strFile);
    EXPECT_EQ(bytes.size(), m_fresh.size() + 17);
    EXPECT_NE(bytes.find(EncodeText(L"1\r\nInstallHole\\门板\\\r\n0\r\n1\r\n")), std::string::npos);
}
