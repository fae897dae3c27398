// Digit runs, splitting, unit prefixes and the order of labels.
#include "drawingdata/LabelText.h"

#include <gtest/gtest.h>

TEST(LabelText, DigitRunsAtEitherEnd) {
    EXPECT_FALSE(IsAllDigits(L""));
    EXPECT_TRUE(IsAllDigits(L"007"));
    EXPECT_FALSE(IsAllDigits(L"１2")); // full-width digits are letters here
    EXPECT_EQ(LeadingDigits(L"12KM3"), L"12");
    EXPECT_EQ(LeadingDigits(L"KM3"), L"");
    EXPECT_EQ(LeadingDigits(L"123"), L"123");
    EXPECT_EQ(TrailingDigits(L"KM12"), L"12");
    EXPECT_EQ(TrailingDigits(L"123"), L""); // all digits: nothing trails
    EXPECT_EQ(TrailingDigits(L"KM"), L"");
    std::wstring strPrefix, strNumber;
    SplitTrailingNumber(L"1-KM12", strPrefix, strNumber);
    EXPECT_EQ(strPrefix + L"|" + strNumber, L"1-KM|12");
    SplitTrailingNumber(L"123", strPrefix, strNumber);
    EXPECT_EQ(strPrefix + L"|" + strNumber, L"|123");
    SplitTrailingNumber(L"KM", strPrefix, strNumber);
    EXPECT_EQ(strPrefix + L"|" + strNumber, L"KM|");
    EXPECT_EQ(LabelToInt(L"99999999999"), 2147483647);
    CStringArray parts;
    SplitText(L"a,,b,", L",", parts);
    EXPECT_EQ(parts, (CStringArray{L"a", L"", L"b", L""}));
    SplitText(L"a~b", L"", parts);
    EXPECT_EQ(parts, (CStringArray{L"a~b"}));
    SplitText(L"a--b-c", L"--", parts);
    EXPECT_EQ(parts, (CStringArray{L"a", L"b-c"}));
}

TEST(LabelText, UnitPrefixIsDigitsAndDashesOrDigitsAndApostrophe) {
    struct {
        const wchar_t* label;
        const wchar_t* prefix;
        const wchar_t* rest;
    } cases[] = {
        {L"1-KM1", L"1-", L"KM1"},     {L"1-2-QF10a", L"1-2-", L"QF10a"},
        {L"12'-KM3", L"12'-", L"KM3"}, {L"-KM1", L"", L"-KM1"},
        {L"KM1-13", L"", L"KM1-13"},   {L"1-KM1-3", L"", L"1-KM1-3"}, // the last dash decides
        {L"1'2-K", L"", L"1'2-K"},     {L"1a'-K", L"", L"1a'-K"},
        {L"3-", L"3-", L""},
    };
    for (const auto& c : cases) {
        std::wstring strPrefix = L"stale";
        EXPECT_EQ(StripLabelPrefix(c.label, strPrefix), c.rest) << c.label;
        EXPECT_EQ(strPrefix, c.prefix) << c.label;
    }
}

TEST(LabelText, CompareLabelsInHumanOrder) {
    EXPECT_LT(CompareLabels(L"1KM2", L"1KM10"), 0);
    EXPECT_GT(CompareLabels(L"2KM1", L"1KM9"), 0);
    EXPECT_LT(CompareLabels(L"KM1a", L"KM1b"), 0);
    EXPECT_LT(CompareLabels(L"1-KM9", L"2-KM1"), 0);
    EXPECT_LT(CompareLabels(L"3'-1n", L"12'-1n"), 0);
    EXPECT_EQ(CompareLabels(L"KM01", L"KM1"), 0);
    EXPECT_GT(CompareLabels(L"km1", L"KM1"), 0); // letters compare case-sensitively
    EXPECT_EQ(CompareLabels(L"-KM1", L"KM1"), 0);
    EXPECT_GT(CompareLabels(L"KM1c", L"KM1"), 0); // "KM1"+c against "KM"+1
    EXPECT_EQ(CompareLabels(L"", L"KM1") * 10 + CompareLabels(L"KM1", L""), 9); // empty sorts last
}

TEST(LabelText, DashOnOneSideOnlyComparesWhatStandsBeforeIt) {
    EXPECT_EQ(CompareLabels(L"KM1-5", L"KM1"), 0);
    EXPECT_LT(CompareLabels(L"KM2-1", L"KM10"), 0);
    // With dashes on both sides the whole texts count.
    EXPECT_GT(CompareLabels(L"KM2-1", L"KM10-1"), 0);
}
