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
    std::wstring FilePath() const { return m_dir / L"LocalData\\HistoryData.txt"; }

    CTempDir m_dir;
    CTestHost m_host;
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
        double dValue = 0;
        history.GetReal(86, dValue);
        EXPECT_DOUBLE_EQ(dValue, -5.0);
    }
    EXPECT_EQ(Hex(ReadBytes(FilePath())), Hex(ReadTestData("settings/history_default.txt")));
}

TEST_F(HistoryTest, ReadingWithoutSetterNeverTouchesTheFile) {
    WriteBytes(FilePath(), "5\r\nxy\r\n");
    {
        CHistoryDataOprt history;
        std::wstring strValue;
        history.GetText(1, strValue);
        EXPECT_EQ(strValue, L"xy");
        history.SetText(500, L"ignored"); // past the end: no change, no flag
        EXPECT_EQ(history.m_bModified, 0);
        EXPECT_THROW(history.SetInt(-1, 3), std::invalid_argument);
    }
    EXPECT_EQ(ReadBytes(FilePath()), "5\r\nxy\r\n");
}

TEST_F(HistoryTest, ShortFileKeepsDefaultsBehindAndLongFileKeepsItsTail) {
    WriteBytes(FilePath(), EncodeText(L"9\n\n宽度\n"));
    {
        CHistoryDataOprt history;
        ASSERT_EQ(history.m_arrValues.size(), 297u);
        EXPECT_EQ(history.m_arrValues[0], L"9");
        EXPECT_EQ(history.m_arrValues[1], L""); // an empty line is a value
        EXPECT_EQ(history.m_arrValues[2], L"宽度");
        EXPECT_EQ(history.m_arrValues[4], L"1");
        history.SetInt(4, 0);
        history.SetReal(11, 2.346);
    }
    std::string expected = ReadTestData("settings/history_default.txt");
    std::string head =
        "9\r\n\r\n" + EncodeText(L"宽度") + "\r\n\r\n0\r\n1\r\n1\r\n\r\n0\r\n1\r\n1\r\n2.35";
    EXPECT_EQ(ReadBytes(FilePath()).substr(0, head.size()), head);
    EXPECT_EQ(ReadBytes(FilePath()).size(), expected.size() + 4 + 1); // "宽度" and "2.35"

    std::string longFile = ReadTestData("settings/history_default.txt") + "\r\nx\r\ny\r\nlast";
    WriteBytes(FilePath(), longFile);
    {
        CHistoryDataOprt history;
        EXPECT_EQ(history.m_arrValues.size(), 300u);
        history.SetText(299, L"end");
    }
    EXPECT_EQ(ReadBytes(FilePath()),
              ReadTestData("settings/history_default.txt") + "\r\nx\r\ny\r\nend");
}

TEST_F(HistoryTest, WriteCreatesTheMissingDataDirectory) {
    FsRemoveDirectory(m_dir / L"LocalData");
    {
        CHistoryDataOprt history; // the file can't be made yet: defaults hold
        EXPECT_FALSE(FsExists(FilePath()));
        history.SetText(7, L"InstallHole\\门板\\");
    }
    std::string bytes = ReadBytes(FilePath());
    EXPECT_NE(bytes.find(EncodeText(L"1\r\nInstallHole\\门板\\\r\n0\r\n1\r\n")), std::string::npos);
}
