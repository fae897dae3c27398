// The browser's list control offscreen: rows and a selection set from the presenter.
#include "ui/views/MyListCtrl.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

TEST(ListControl, SelectionSetQuietlyIsTheItemsOwn) {
    CMyListCtrl list;
    list.SetRows({L"a.dwg", L"b.dwg", L"c.dwg"});
    QSignalSpy changed(&list, &QTreeWidget::itemSelectionChanged);
    list.SetSelectedRows({2, 0}, 2);
    EXPECT_EQ(changed.count(), 0); // the presenter set it: no echo back to it
    EXPECT_EQ(list.SelectedRows(), (std::vector<int>{0, 2}));
    // The items answer as the selection model does (a person's code reads either).
    EXPECT_TRUE(list.topLevelItem(0)->isSelected());
    EXPECT_FALSE(list.topLevelItem(1)->isSelected());
    EXPECT_TRUE(list.topLevelItem(2)->isSelected());
    EXPECT_EQ(list.selectedItems().size(), 2);

    list.SetSelectedRows({1}, 1);
    EXPECT_FALSE(list.topLevelItem(0)->isSelected());
    EXPECT_TRUE(list.topLevelItem(1)->isSelected());
    EXPECT_EQ(list.SelectedRows(), std::vector<int>{1});
}
