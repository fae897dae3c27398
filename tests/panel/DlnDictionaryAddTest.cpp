// The record editor: what it shows on opening, which sizes it refuses and with which words,
// duplicates.
#include "panel/DlnDictionaryAdd.h"

#include "TestHost.h"

#include <gtest/gtest.h>

TEST(DictionaryAdd, OpeningForAChangeSplitsTheRecord) {
    CDlnDictionaryAdd dlg;
    dlg.m_strCaption = L"修改面板";
    dlg.m_strRecord = L"门板:800x2000x2";
    dlg.OnInitDialog();
    EXPECT_EQ(dlg.m_strDesc + L"|" + dlg.m_strW + L"|" + dlg.m_strH + L"|" + dlg.m_strT,
              L"门板|800|2000|2");
    EXPECT_EQ(dlg.m_nFocus, CDlnDictionaryAdd::fieldDesc);
}

TEST(DictionaryAdd, SizesAreTestedInOrderAndEmptyOnesPass) {
    CTestHost host;
    CDlnDictionaryAdd dlg;
    dlg.m_strW = L".5";
    dlg.m_strH = L"x";
    dlg.m_strT = L"-1";
    EXPECT_FALSE(dlg.OnOK());
    EXPECT_TRUE(dlg.m_nFocus == CDlnDictionaryAdd::fieldW && dlg.m_bSelectFocus);
    dlg.m_strW = L"5";
    EXPECT_FALSE(dlg.OnOK());
    EXPECT_EQ(dlg.m_nFocus, CDlnDictionaryAdd::fieldH);
    dlg.m_strH = L"";
    EXPECT_FALSE(dlg.OnOK());
    EXPECT_EQ(dlg.m_nFocus, CDlnDictionaryAdd::fieldT);
    ASSERT_EQ(host.m_boxes.size(), 3u);
    EXPECT_EQ(host.m_boxes[0].strText, L"面板长度输入不正确，请输入正实数!");
    EXPECT_EQ(host.m_boxes[1].strText, L"面板宽度输入不正确，请输入正实数!");
    EXPECT_EQ(host.m_boxes[2].strText, L"面板高度输入不正确，请输入正实数!");
    EXPECT_EQ(host.m_boxes[2].nFlags, static_cast<unsigned>(MB_ICONEXCLAMATION));

    dlg.m_strT = L"";
    dlg.m_strDesc = L"a:b"; // the description isn't tested
    EXPECT_TRUE(dlg.OnOK());
    EXPECT_EQ(dlg.m_strRecord, L"a:b:5xx");
}

TEST(DictionaryAdd, DuplicatesAreFoundWithoutCase) {
    CTestHost host;
    CDlnDictionaryAdd dlg;
    dlg.m_arrOthers = {L"Door:1X2X3"};
    dlg.m_strDesc = L"door";
    dlg.m_strW = L"1";
    dlg.m_strH = L"2";
    dlg.m_strT = L"3";
    EXPECT_FALSE(dlg.OnOK());
    ASSERT_EQ(host.m_boxes.size(), 1u);
    EXPECT_EQ(host.m_boxes[0].strText, L"添加的项已存在!");
    EXPECT_TRUE(dlg.m_nFocus == CDlnDictionaryAdd::fieldW && dlg.m_strRecord.empty());
}
