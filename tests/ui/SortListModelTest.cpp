// The sortable list's rows, headings and number-aware order.
#include "ui/SortListModel.h"

#include <gtest/gtest.h>

TEST(SortListModel, NormaliseDigitsRules) {
    EXPECT_EQ(NormaliseDigits(L"KM3"), L"KM03");
    EXPECT_EQ(NormaliseDigits(L"KM0"), L"KM");
    EXPECT_EQ(NormaliseDigits(L"KM007"), L"KM07");
    EXPECT_EQ(NormaliseDigits(L"KM0012"), L"KM12");
    EXPECT_EQ(NormaliseDigits(L"KM000x"), L"KMx");
    EXPECT_EQ(NormaliseDigits(L"1-2:30１"), L"01-02:30１"); // full-width digits are letters
    EXPECT_LT(CompareListTexts(L"3", L"10", true), 0);
    EXPECT_GT(CompareListTexts(L"3", L"10", false), 0);
    EXPECT_LT(CompareListTexts(L"100", L"20", true), 0); // three digits do not
    EXPECT_LT(CompareListTexts(L"B", L"a", true), 0);    // no digits: code order
}

TEST(SortListModel, HeadingsParsing) {
    std::vector<STRUCT_LIST_COLUMN> columns;
    ParseHeadings(L"名称,120;规格,80x", columns);
    ASSERT_EQ(columns.size(), 2u);
    EXPECT_EQ(columns[0].strName + L"|" + columns[1].strName, L"名称|规格");
    EXPECT_EQ(columns[0].nWidth + columns[1].nWidth, 200);
    columns.clear();
    ParseHeadings(L"A;B,10;no comma", columns); // the name runs from the last cut to the comma
    ASSERT_EQ(columns.size(), 1u);
    EXPECT_EQ(columns[0].strName, L"A;B");
}

TEST(SortListModel, RowsOwnCopiesOfTheirColumns) {
    CSortListModel list;
    EXPECT_TRUE(list.SetHeadings(L"no columns"));
    EXPECT_EQ(list.AddItem({L"KM1"}), 0);
    EXPECT_EQ(list.GetItemText(0, 0), L""); // a record with no columns
    list.DeleteAllItems();

    list.SetHeadings(L"名称,100;数量,40");
    EXPECT_EQ(list.AddItem({L"KM1", L"2", L"extra"}), 0);
    EXPECT_EQ(list.InsertItemAt(0, {L"FU1"}), 0);
    EXPECT_EQ(list.InsertItemAt(99, {L"SB1"}), 2);
    EXPECT_EQ(list.InsertItemAt(-1, {L"x"}), -1);
    EXPECT_TRUE(list.SetItemTextAndCopy(0, 1, L"5"));
    EXPECT_FALSE(list.SetItemTextAndCopy(0, 2, L"5"));
    EXPECT_TRUE(list.DeleteItem(1));
    EXPECT_FALSE(list.DeleteItem(2));
    EXPECT_EQ(list.GetItemText(0, 1) + list.GetItemText(1, 0), L"5SB1");
}

TEST(SortListModel, SortByColumnAndDirection) {
    CSortListModel list;
    EXPECT_EQ(list.Sort(0, true), CSortListModel::SortRows); // empty: nothing to do, no fault
    list.SetHeadings(L"名称,100;数量,40");
    list.AddItem({L"KM10", L"3"});
    list.AddItem({L"KM3", L"10"});
    list.AddItem({L"KM03", L"1"});
    list.Sort(0, true);
    EXPECT_EQ(list.GetItemText(0, 0) + list.GetItemText(1, 0) + list.GetItemText(2, 0),
              L"KM3KM03KM10"); // equal after normalising: kept in order
    list.Sort(1, false);
    EXPECT_EQ(list.GetItemText(0, 1) + list.GetItemText(1, 1) + list.GetItemText(2, 1), L"1031");
}

TEST(SortListModel, OnlyFirstColumnSortsAndTellsTheParent) {
    CSortListModel list;
    list.m_bAllColumns = 0;
    list.SetHeadings(L"A,10;B,10");
    list.AddItem({L"2", L"a"});
    list.AddItem({L"1", L"b"});
    EXPECT_EQ(list.Sort(1, true), CSortListModel::SortNothing);
    EXPECT_EQ(list.GetItemText(0, 0), L"2");
    EXPECT_EQ(list.ClickColumn(0), CSortListModel::SortRowsAndTell);
    EXPECT_EQ(list.GetItemText(0, 0), L"1");
    EXPECT_EQ(list.ClickColumn(0), CSortListModel::SortRowsAndTell); // same column turns round
    EXPECT_EQ(list.GetItemText(0, 0), L"2");
}
