// Text-mode files: GBK bytes on disk, CR LF line ends, line reading and bad bytes.
#include "base/TextFile.h"
#include "base/CodePage.h"

#include "FileSizeLimit.h"
#include "TestHost.h"

#include <gtest/gtest.h>

TEST(TextFile, WritesGbkWithCrLfAndReadsItBack) {
    CTempDir dir;
    std::wstring strPath = dir / L"Server.xml";
    CTextFile out;
    ASSERT_TRUE(out.Open(strPath, CTextFile::modeCreateWrite));
    ASSERT_TRUE(out.WriteString(L"版本日期：\n"));
    ASSERT_TRUE(out.WriteString(L"a|b"));
    EXPECT_TRUE(out.Close());
    EXPECT_EQ(Hex(ReadBytes(strPath)), "B0 E6 B1 BE C8 D5 C6 DA A3 BA 0D 0A 61 7C 62");

    CTextFile in;
    ASSERT_TRUE(in.Open(strPath, CTextFile::modeRead));
    std::wstring strLine;
    ASSERT_TRUE(in.ReadString(strLine));
    EXPECT_EQ(strLine, L"版本日期：");
    ASSERT_TRUE(in.ReadString(strLine)); // last line without a line end
    EXPECT_EQ(strLine, L"a|b");
    EXPECT_FALSE(in.ReadString(strLine));
}

TEST(TextFile, AWriteThatFailsKeepsTheOldFile) {
    CTempDir dir;
    std::wstring strPath = dir / L"Server.xml";
    std::string old = "old records\r\n" + std::string(20000, 'r');
    WriteBytes(strPath, old);
    CTextFile out;
    ASSERT_TRUE(out.Open(strPath, CTextFile::modeCreateWrite));
    EXPECT_TRUE(out.WriteString(std::wstring(40000, L'n')));
    {
        CFileSizeLimit full(4096);
        EXPECT_FALSE(out.Close());
    }
    EXPECT_EQ(ReadBytes(strPath), old);
}

TEST(TextFile, LineEndsAsThePlatformsTextMode) {
    CTempDir dir;
    std::wstring strPath = dir / L"lines.txt";
    WriteBytes(strPath, std::string("a\r\nb\rc\n\nd\r\n\x1A"
                                    "hidden"));
    CTextFile in;
    ASSERT_TRUE(in.Open(strPath, CTextFile::modeRead));
    std::vector<std::wstring> lines;
    for (std::wstring s; in.ReadString(s);)
        lines.push_back(s);
    EXPECT_EQ(lines, (std::vector<std::wstring>{L"a", L"b\rc", L"", L"d"}));

    CTextFile none;
    EXPECT_FALSE(none.Open(dir / L"missing.txt", CTextFile::modeRead));
    EXPECT_FALSE(none.Open(dir.Path(), CTextFile::modeCreateWrite)); // a directory
}

TEST(TextFile, BadBytesDecodeAsReplacementAndUnmappableCharsAsQuestionMark) {
    // A lead byte without a valid trail, a byte never valid in GBK, a cut-off end.
    EXPECT_EQ(DecodeText("\xB0 A\xFF"
                         "B\xB0"),
              L"\xFFFD A\xFFFD"
              L"B\xFFFD");
    EXPECT_EQ(DecodeText("\xB0"
                         "A"),
              L"\x7646"); // 0x41 is a valid trail byte
    EXPECT_EQ(EncodeText(L"x😀y"), "x?y");
    std::string big(100000, '\xFF'); // long invalid run: must end, one mark per byte
    EXPECT_EQ(DecodeText(big).size(), big.size());
}

TEST(TextFile, CodePageIsConfigurable) {
    std::string strOld = GetTextCodePage();
    SetTextCodePage("UTF-8");
    EXPECT_EQ(EncodeText(L"版"), "\xE7\x89\x88");
    SetTextCodePage("NO-SUCH-CODEPAGE");
    EXPECT_EQ(EncodeText(L"a版"), "a?");
    SetTextCodePage(strOld);
    EXPECT_EQ(Hex(EncodeText(L"版")), "B0 E6");
}
