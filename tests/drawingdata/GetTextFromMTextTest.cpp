// Plain text out of multi-line text contents.
#include "drawingdata/GetTextFromMText.h"

#include <gtest/gtest.h>

TEST(GetTextFromMText, CodesWithArgumentsGoWhole) {
    CGetTextFromMText mtext;
    EXPECT_EQ(mtext.GetPlainText(L"{\\fSimSun;KM1}"), L"KM1");
    EXPECT_EQ(mtext.GetPlainText(L"\\H2.5;\\C1;KM1"), L"KM1");
    EXPECT_EQ(mtext.GetPlainText(L"{\\H0.7x;\\W0.8;1-KM1:13}"), L"1-KM1:13");
    EXPECT_EQ(mtext.GetPlainText(L"\\A1;KM1"), L"KM1");
}

TEST(GetTextFromMText, CodesWithoutArgumentsLoseTwoCharacters) {
    CGetTextFromMText mtext;
    EXPECT_EQ(mtext.GetPlainText(L"\\LKM1\\l"), L"KM1");
    EXPECT_EQ(mtext.GetPlainText(L"KM\\P1"), L"KM1");
    EXPECT_EQ(mtext.GetPlainText(L" \\OKM1\\o "), L"KM1");
    // "\U" is not a format code: it stays, and alone it leaves the text as it stands.
    EXPECT_EQ(mtext.GetPlainText(L"{\\LKM \\U+4E00}"), L"KM \\U+4E00");
    EXPECT_EQ(mtext.GetPlainText(L"{\\U+4E00 KM}"), L"{\\U+4E00 KM}");
}

TEST(GetTextFromMText, SemicolonsAndBraces) {
    CGetTextFromMText mtext;
    EXPECT_EQ(mtext.GetPlainText(L"A;B"), L"A;B"); // no backslash: as it stands
    EXPECT_EQ(mtext.GetPlainText(L"{ KM1 }"), L"{ KM1 }");
    EXPECT_EQ(mtext.GetPlainText(L"A;B;\\LC"), L"A;BC"); // a second semicolon after one goes
    EXPECT_EQ(mtext.GetPlainText(L""), L"");
    // A leading semicolon keeps "\P" from step one; the code then loses two characters.
    EXPECT_EQ(mtext.GetPlainText(L";A\\PB"), L";AB");
    EXPECT_EQ(mtext.GetPlainText(L"\\"), L"\\");
}
