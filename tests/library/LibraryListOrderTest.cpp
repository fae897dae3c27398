// The browser list's order, pages and search match.
#include "library/LibraryListOrder.h"

#include "base/StrUtil.h"
#include "drawingdata/LabelText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

namespace {

// The pair rule read straight off the browser's description, for checking
// the parsed-once sort against it.
std::wstring StemOf(const std::wstring& name) {
    int nDot = StrReverseFind(name, L'.');
    return nDot < 0 ? name : name.substr(0, nDot);
}

bool MustSwap(std::wstring a, std::wstring b) {
    for (;;) {
        int nA = StrFind(a, L'\\'), nB = StrFind(b, L'\\');
        if (nA >= 0 && nB < 0)
            return true;
        if (nA < 0 && nB >= 0)
            return false;
        if (nA < 0)
            return CompareLabels(StemOf(a), StemOf(b)) > 0;
        std::wstring strDirA = a.substr(0, nA), strDirB = b.substr(0, nB);
        if (!EqualsNoCase(strDirA, strDirB))
            return CompareLabels(strDirA, strDirB) > 0;
        a.erase(0, nA + 1);
        b.erase(0, nB + 1);
    }
}

void ExchangeSort(CStringArray& names) {
    for (size_t i = 0; i < names.size(); ++i)
        for (size_t j = i + 1; j < names.size(); ++j)
            if (MustSwap(names[i], names[j]))
                std::swap(names[i], names[j]);
}

CStringArray Sorted(CStringArray names) {
    SortLibraryNames(names);
    return names;
}

} // namespace

TEST(LibraryListOrder, PlainSortIgnoresCaseAndKeepsTies) {
    CSortStringArray names{L"b", L"B", L"a", L"_x", L"A"};
    names.Sort();
    EXPECT_EQ(names, (CStringArray{L"_x", L"a", L"A", L"b", L"B"}));
}

TEST(LibraryListOrder, ListOrderOfTheBrowser) {
    EXPECT_EQ(Sorted({L"sub\\a.dwg", L"a.dwg"}), (CStringArray{L"a.dwg", L"sub\\a.dwg"}));
    EXPECT_EQ(Sorted({L"10.dwg", L"2.dwg"}), (CStringArray{L"2.dwg", L"10.dwg"}));
    EXPECT_EQ(Sorted({L"1-10.dwg", L"1-2.dwg"}), (CStringArray{L"1-2.dwg", L"1-10.dwg"}));
    EXPECT_EQ(Sorted({L"3b.dwg", L"3a.dwg"}), (CStringArray{L"3a.dwg", L"3b.dwg"}));
    // Only the last dot starts the extension.
    EXPECT_EQ(Sorted({L"KM.1.10.dwg", L"KM.1.9.dwg", L"KM.1.dwg"}),
              (CStringArray{L"KM.1.dwg", L"KM.1.9.dwg", L"KM.1.10.dwg"}));
    EXPECT_EQ(Sorted({L"KM10.dwg", L"sub2\\x.dwg", L"KM9.dwg", L"sub10\\a.dwg", L"Sub2\\b\\c.dwg",
                      L"sub2\\a.dwg"}),
              (CStringArray{L"KM9.dwg", L"KM10.dwg", L"sub2\\a.dwg", L"sub2\\x.dwg",
                            L"Sub2\\b\\c.dwg", L"sub10\\a.dwg"}));
}

TEST(LibraryListOrder, ParsedSortGivesTheExchangeSortsResult) {
    // Names with ties (KM01 and KM1), dashes on one side only and case-only
    // differences, where the order depends on every swap the exchange makes.
    const wchar_t* kParts[] = {L"KM1",   L"KM01", L"km1", L"1-KM2",  L"2-KM1", L"KM2-1",
                               L"3a",    L"3b",   L"10",  L"2",      L"1-2",   L"1-10",
                               L"QF10a", L"",     L"-3",  L"12'-1n", L"FU"};
    std::mt19937 rng(11);
    std::uniform_int_distribution<size_t> part(0, std::size(kParts) - 1), depth(0, 2);
    for (int nRound = 0; nRound < 200; ++nRound) {
        CStringArray names;
        for (int i = 0; i < 30; ++i) {
            std::wstring name;
            for (size_t d = depth(rng); d > 0; --d)
                name += std::wstring(kParts[part(rng)]) + L"\\";
            names.push_back(name + kParts[part(rng)] + L".dwg");
        }
        CStringArray expected = names;
        ExchangeSort(expected);
        SortByLabel(names);
        ASSERT_EQ(names, expected) << nRound;
    }
}

TEST(LibraryListOrder, LargeListsWithoutTiesKeepTheExchangeSortsOrder) {
    // Distinct labels, all with a dash or none, a few directory levels: the
    // order the quick path must reach, checked against the exchange itself.
    std::mt19937 rng(5);
    std::uniform_int_distribution<int> number(0, 400), letters(0, 5), depth(0, 2);
    const wchar_t* kLetters[] = {L"KM", L"QF", L"按钮", L"sb", L"HL", L"电表"};
    for (bool bDash : {false, true}) {
        std::set<std::wstring> unique;
        while (unique.size() < 400) {
            std::wstring name;
            for (int d = depth(rng); d > 0; --d)
                name += std::wstring(kLetters[letters(rng)]) + std::to_wstring(number(rng) % 3) +
                        (bDash ? L"-1\\" : L"\\");
            name += std::wstring(kLetters[letters(rng)]) + std::to_wstring(number(rng)) +
                    (bDash ? L"-" + std::to_wstring(number(rng) % 4) : L"") + L".dwg";
            unique.insert(name);
        }
        CStringArray names(unique.begin(), unique.end());
        std::shuffle(names.begin(), names.end(), rng);
        CStringArray expected = names;
        ExchangeSort(expected);
        SortByLabel(names);
        EXPECT_EQ(names, expected) << bDash;
    }
}

TEST(LibraryListOrder, PagesOfSixteen) {
    EXPECT_EQ(GetPageCount(0), 0);
    EXPECT_EQ(GetPageCount(16), 1);
    EXPECT_EQ(GetPageCount(17), 2);
    EXPECT_EQ(GetPageOfItem(15) * 100 + GetCellOfItem(15), 115); // page 1, cell 15
    EXPECT_EQ(GetPageOfItem(16) * 100 + GetCellOfItem(16), 200); // page 2, cell 0
    EXPECT_EQ(GetCellNameIndex(0, 2), 16);
    EXPECT_EQ(GetPageAfterWheel(1, 1, -120), 1); // one page never turns
    EXPECT_EQ(GetPageAfterWheel(1, 2, 120), 1);
    EXPECT_EQ(GetPageAfterWheel(1, 2, -120), 2);
    EXPECT_EQ(GetPageAfterWheel(2, 2, -120), 2);
}

TEST(LibraryListOrder, SearchMatchesTheFileNameStart) {
    CStringArray texts{L"KM1.dwg", L"sub\\qf2.dwg", L"\\QF3.dwg", L"QF4.dwg"};
    EXPECT_EQ(FindSearchMatch(texts, L""), 0);
    EXPECT_EQ(FindSearchMatch(texts, L"QF"), 1);
    EXPECT_EQ(FindSearchMatch(texts, L"sub"), -1);
    // A backslash at index 0 does not make a file name of the rest.
    EXPECT_EQ(FindSearchMatch(texts, L"\\q"), 2);
    EXPECT_EQ(FindSearchMatch(texts, L"KM1.dwg and more"), -1);
    EXPECT_EQ(FindSearchMatch({}, L""), -1);
}
