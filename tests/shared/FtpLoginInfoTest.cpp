// The login file's scrambling and its eleven-line reader and writer, byte for byte.
#include "shared/FtpLoginInfo.h"

#include "TestHost.h"

#include <gtest/gtest.h>

TEST(FtpLoginInfoTest, ScramblesTheLowEightBitsOfEachCharacterIntoTwoLetters) {
    EXPECT_EQ(EncodeLoginText(L"a1/"), L"gbdbcp");
    EXPECT_EQ(EncodeLoginText(L""), L"");
    EXPECT_EQ(EncodeLoginText(std::wstring(1, L'\xff')), L"pp");
    EXPECT_EQ(EncodeLoginText(L"中"), L"cn"); // 0x4E2D keeps 0x2D only
    EXPECT_EQ(DecodeLoginText(L"gbdbcp"), L"a1/");
    EXPECT_EQ(DecodeLoginText(L"gbd"), L"a"); // an odd last letter is dropped
    std::wstring strAll;
    for (int i = 0; i < 256; ++i)
        strAll += static_cast<wchar_t>(i);
    EXPECT_EQ(DecodeLoginText(EncodeLoginText(strAll)), strAll);
    // Only the low four bits of the second letter count.
    EXPECT_EQ(DecodeLoginText(L"gr"), L"a");
}

TEST(FtpLoginInfoTest, WritesElevenLinesWithoutFinalLineEndAndReadsThemBack) {
    CTempDir dir;
    std::wstring strFile = dir / L"TzFTPLoginInfo.sys";
    CStringArray lines = {L"x",      L"site", L"127.0.0.1", L"21", L"0", L"qm",
                          L"secret", L"",     L"",          L"",   L"1"};
    EXPECT_FALSE(WriteLoginInfo(strFile, lines)); // refuses to create the file
    CStringArray read;
    EXPECT_FALSE(ReadLoginInfo(strFile, read));

    WriteBytes(strFile, "old content that is longer than the new one, to be truncated");
    ASSERT_TRUE(WriteLoginInfo(strFile, lines));
    EXPECT_EQ(ReadBytes(strFile), "hi\r\nhdgjhegf\r\ndbdcdhcodacodacodb\r\ndcdb\r\nda\r\nhbgn\r\n"
                                  "hdgfgdhcgfhe\r\n\r\n\r\n\r\ndb");
    ASSERT_TRUE(ReadLoginInfo(strFile, read));
    EXPECT_EQ(read, lines);

    WriteBytes(strFile, "hi\r\nhdgjhegf"); // a short file gives empty lines
    ASSERT_TRUE(ReadLoginInfo(strFile, read));
    ASSERT_EQ(read.size(), 11u);
    EXPECT_EQ(read[1], L"site");
    EXPECT_EQ(read[10], L"");
}
