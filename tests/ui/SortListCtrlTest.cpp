// The sortable list widget offscreen: headings, number-aware sorts by header click, the parent's
// message.
#include "ui/views/SortListCtrl.h"

#include <QHeaderView>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

std::vector<std::wstring> Column(const CSortListCtrl& list, int nColumn) {
    std::vector<std::wstring> texts;
    for (int i = 0; i < list.topLevelItemCount(); ++i)
        texts.push_back(list.topLevelItem(i)->text(nColumn).toStdWString());
    return texts;
}

} // namespace

TEST(SortListCtrl, HeaderClicksSortNumbersWithinTextAndTurnTheDirection) {
    CSortListCtrl list;
    ASSERT_TRUE(list.SetHeadings(L"名称,120;型号,80"));
    EXPECT_EQ(list.columnCount(), 2);
    EXPECT_EQ(list.headerItem()->text(1), QStringLiteral("型号"));
    list.AddItem({L"KM10", L"b"});
    list.AddItem({L"KM3", L"a"});
    list.AddItem({L"KM2", L"c"});
    QSignalSpy notify(&list, &CSortListCtrl::ParentNotify);

    emit list.header()->sectionClicked(0);
    EXPECT_EQ(Column(list, 0), (std::vector<std::wstring>{L"KM2", L"KM3", L"KM10"}));
    emit list.header()->sectionClicked(0);
    EXPECT_EQ(Column(list, 0), (std::vector<std::wstring>{L"KM10", L"KM3", L"KM2"}));
    emit list.header()->sectionClicked(1);
    EXPECT_EQ(Column(list, 1), (std::vector<std::wstring>{L"a", L"b", L"c"}));
    EXPECT_EQ(Column(list, 0), (std::vector<std::wstring>{L"KM3", L"KM10", L"KM2"}));
    EXPECT_EQ(notify.count(), 0);

    // Only column 0 sorts, and the parent hears of it.
    list.m_model.m_bAllColumns = 0;
    emit list.header()->sectionClicked(1);
    EXPECT_EQ(Column(list, 1), (std::vector<std::wstring>{L"a", L"b", L"c"}));
    emit list.header()->sectionClicked(0);
    EXPECT_EQ(Column(list, 0), (std::vector<std::wstring>{L"KM2", L"KM3", L"KM10"}));
    ASSERT_EQ(notify.count(), 1);
    EXPECT_EQ(notify.at(0).at(0).toUInt(), 101u);

    EXPECT_TRUE(list.SetItemTextAndCopy(0, 1, L"z"));
    EXPECT_EQ(list.GetItemText(0, 1), L"z");
    EXPECT_TRUE(list.DeleteItem(0));
    EXPECT_EQ(list.topLevelItemCount(), 2);
    list.DeleteAllItems();
    list.Sort(0, true); // an empty list sorts without a fault
    EXPECT_EQ(list.topLevelItemCount(), 0);
}
