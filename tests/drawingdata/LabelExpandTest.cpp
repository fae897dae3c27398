// Expansion of ranges and lists into single labels.
#include "drawingdata/LabelExpand.h"

#include <gtest/gtest.h>

namespace {
CStringArray Expand(const std::wstring& label) {
    CStringArray labels{L"stale"};
    ExpandLabel(label, labels);
    return labels;
}
using L = CStringArray;
} // namespace

TEST(LabelExpand, PlainLabelsStayWhole) {
    EXPECT_EQ(Expand(L"KM1"), (L{L"KM1"}));
    EXPECT_EQ(Expand(L",A"), (L{L",A"}));           // comma at index 0
    EXPECT_EQ(Expand(L"~A"), (L{L"~A"}));           // tilde at index 0
    EXPECT_EQ(Expand(L"FU(A,B)"), (L{L"FU(A,B)"})); // comma inside brackets
    EXPECT_EQ(Expand(L""), (L{L""}));
}

TEST(LabelExpand, SingleRanges) {
    EXPECT_EQ(Expand(L"5~1"), (L{L"1", L"2", L"3", L"4", L"5"}));
    EXPECT_EQ(Expand(L"01~03"), (L{L"1", L"2", L"3"}));
    EXPECT_EQ(Expand(L"3~3"), (L{L"3", L"3"}));
    EXPECT_EQ(Expand(L"A~C"), (L{L"A", L"B", L"C"}));
    EXPECT_TRUE(Expand(L"A~c").empty());
    EXPECT_EQ(Expand(L"KM3~KM1"), (L{L"KM1", L"KM2", L"KM3"}));
    EXPECT_EQ(Expand(L"1~3KM"), (L{L"1KM", L"2KM", L"3KM"}));
    EXPECT_EQ(Expand(L"1D~3D"), (L{L"1D", L"2D", L"3D"}));
    EXPECT_EQ(Expand(L"KM1~3"), (L{L"KM1", L"KM2", L"KM3"}));
    EXPECT_EQ(Expand(L"KM3~1"), (L{L"KM1", L"KM2", L"KM3"}));
    EXPECT_TRUE(Expand(L"1~2~3").empty());
    EXPECT_TRUE(Expand(L"KM1~").empty());
    EXPECT_TRUE(Expand(L"KM1~QF3").empty());
}

TEST(LabelExpand, SingleFormListsEqualEndsTwice) {
    EXPECT_EQ(Expand(L"KM1~KM1"), (L{L"KM1", L"KM1"}));
    EXPECT_EQ(Expand(L"KM01~KM1"), (L{L"KM1", L"KM1"}));
    EXPECT_EQ(Expand(L"KM3~3"), (L{L"KM3", L"KM3"}));
    EXPECT_EQ(Expand(L"A,KM1~KM1"), (L{L"A", L"KM1"}));
    EXPECT_EQ(Expand(L"A,KM01~KM1"), (L{L"A", L"KM1"}));
}

TEST(LabelExpand, LetterSuffixOnlyInSingleForm) {
    EXPECT_EQ(Expand(L"KM1a~KM1c"), (L{L"KM1a", L"KM1b", L"KM1c"}));
    EXPECT_EQ(Expand(L"X,KM1a~KM1c"), (L{L"X"}));
    EXPECT_EQ(Expand(L"1A~1C"), (L{L"A", L"B", L"C"})); // leading digits go
    // A later rule replaces the letter result.
    EXPECT_EQ(Expand(L"1KMa~3KMa"), (L{L"1KMa", L"2KMa", L"3KMa"}));
}

TEST(LabelExpand, ListFormGatesDiffer) {
    EXPECT_EQ(Expand(L"A,KM1~3"), (L{L"A", L"0KM1", L"1KM1", L"2KM1", L"3KM1"}));
    EXPECT_EQ(Expand(L"A,3KM~5"), (L{L"A", L"3KM", L"4KM", L"5KM"}));
    EXPECT_EQ(Expand(L"A,1~3KM"), (L{L"A", L"1KM", L"2KM", L"3KM"}));
    CStringArray labels;
    ExpandLabelRange(L"KM1~KM3", labels);
    EXPECT_EQ(labels, (L{L"KM1", L"KM2", L"KM3"}));
    ExpandLabelRange(L"KM1", labels);
    EXPECT_TRUE(labels.empty());
    ExpandRangeParts(L"KM1", L"3", ERangeForm::Single, labels);
    EXPECT_EQ(labels, (L{L"KM1", L"KM2", L"KM3"}));
}

TEST(LabelExpand, ListsInheritThePrefix) {
    EXPECT_EQ(Expand(L"KM1,2,3"), (L{L"KM1", L"KM2", L"KM3"}));
    EXPECT_EQ(Expand(L"KM1，2～3"), (L{L"KM1", L"KM2", L"KM3"})); // full-width marks
    EXPECT_EQ(Expand(L"1-KM1,2"), (L{L"1-KM1", L"1-KM2"}));
    // Inside a list "KM1~2" passes gate Y, and "5" inherits from its last entry.
    EXPECT_EQ(Expand(L"KM1~2,5"), (L{L"0KM1", L"1KM1", L"2KM1", L"2KM5"}));
    EXPECT_EQ(Expand(L"1,2"), (L{L"1", L"2"}));
    EXPECT_EQ(Expand(L"A,1"), (L{L"A", L"1"}));           // "A" has no number to replace
    EXPECT_EQ(Expand(L"KM1,,2"), (L{L"KM1", L"", L"2"})); // the empty part stops the walk
    EXPECT_EQ(Expand(L"KM1,2,A,3"), (L{L"KM1", L"KM2", L"A", L"3"}));
    EXPECT_EQ(Expand(L"KM1,1~2~3,4"), (L{L"KM1", L"KM4"}));
    // A part whose "~" stands first is no range: it stays as written, and
    // a number after it inherits its prefix "~".
    EXPECT_EQ(Expand(L"KM1,~3"), (L{L"KM1", L"~3"}));
    EXPECT_EQ(Expand(L"KM1,~3,4"), (L{L"KM1", L"~3", L"~4"}));
}

TEST(LabelExpand, HugeRangesAreMalformed) {
    EXPECT_TRUE(Expand(L"1~99999999").empty());
    EXPECT_TRUE(Expand(L"KM1~KM99999999999").empty());
    EXPECT_EQ(Expand(L"1~10000").size(), 10000u);
    std::wstring strList = L"X";
    for (int i = 0; i < 3; ++i)
        strList += L",1~5000";
    EXPECT_TRUE(Expand(strList).empty());
}
