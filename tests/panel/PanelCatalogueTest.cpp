// The panel catalogue: loading up to a blank line, saving byte for byte, and the dialog's row
// actions.
#include "panel/PanelCatalogue.h"

#include "RecordEditorScript.h"
#include "TestData.h"
#include "TestHost.h"
#include "base/FileSystem.h"

#include <gtest/gtest.h>

namespace {

class CatalogueTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_host.m_strLocal = m_dir.Path();
        FsCreateDirectory(m_dir / L"LocalData");
    }
    CTempDir m_dir;
    CTestHost m_host;
    CPanelCatalogue m_cat;
    RECORD_EDITOR_SCRIPT m_script;
};

} // namespace

TEST_F(CatalogueTest, LoadStopsAtTheFirstBlankLineAndSaveRewritesWhole) {
    m_cat.LoadPanelLib();
    EXPECT_TRUE(m_cat.m_arrPanels.empty()); // a missing file is an empty catalogue
    WriteBytes(m_dir / L"LocalData\\PanelLib.txt", ReadTestData("panel/panellib_odd.txt"));
    m_cat.LoadPanelLib();
    ASSERT_EQ(m_cat.m_arrPanels.size(), 4u); // the doubled record shows twice
    m_cat.m_arrPanels.erase(m_cat.m_arrPanels.begin());
    m_cat.m_arrPanels.push_back(MakePanelRecord(L"新面板", L"", L"", L""));
    ASSERT_TRUE(m_cat.SavePanelLib());
    EXPECT_EQ(Hex(ReadBytes(m_dir / L"LocalData\\PanelLib.txt")),
              Hex(ReadTestData("panel/panellib_saved.txt")));
    m_host.m_strLocal = m_dir / L"missing\\";
    EXPECT_FALSE(m_cat.SavePanelLib());
    EXPECT_TRUE(m_host.m_boxes.empty());
}

TEST_F(CatalogueTest, DoubleClickFillsSizesOnlyWhenTheySplitInThree) {
    m_cat.m_arrPanels = {L"门板:800x2000x2", L"箱:box:6x8x1", L"配电箱:4X5X1", L"空:xx"};
    std::wstring strW = L"w", strH = L"h", strT = L"t";
    EXPECT_FALSE(m_cat.FillSizes({}, strW, strH, strT));
    EXPECT_FALSE(m_cat.FillSizes({1}, strW, strH, strT)); // the description's rest splits too
    EXPECT_FALSE(m_cat.FillSizes({2}, strW, strH, strT)); // capital X
    EXPECT_EQ(strW + strH + strT, L"wht");
    EXPECT_TRUE(m_cat.FillSizes({0, 3}, strW, strH, strT)); // the first selected row
    EXPECT_EQ(strW + L"|" + strH + L"|" + strT, L"800|2000|2");
    EXPECT_TRUE(m_cat.FillSizes({3}, strW, strH, strT));
    EXPECT_EQ(strW + strH + strT, L"");
}

TEST_F(CatalogueTest, DeleteUsesTheUncorrectedIndices) {
    m_cat.m_arrPanels = {L"a", L"b", L"c", L"d"};
    EXPECT_FALSE(m_cat.DeleteSelected({}));
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText + m_host.m_boxes[0].strCaption, L"没有选择!Quillmarch");
    EXPECT_TRUE(m_cat.DeleteSelected({3, 1})); // 1 goes, then index 3 is past the end
    EXPECT_EQ(m_cat.m_arrPanels, (CStringArray{L"a", L"c", L"d"}));
    EXPECT_TRUE(m_cat.DeleteSelected({0, 1}));
    EXPECT_EQ(m_cat.m_arrPanels, (CStringArray{L"c"})); // "d" went, not "c"
}

TEST_F(CatalogueTest, ChangeEditsOneRowAgainstTheOthers) {
    m_cat.m_arrPanels = {L"a:1x2x3", L"b:4x5x6", L"c:7x8x9"};
    EXPECT_FALSE(m_cat.ChangeSelected({}, m_script.Editor()));
    EXPECT_FALSE(m_cat.ChangeSelected({0, 2}, m_script.Editor()));
    ASSERT_EQ(m_host.m_boxes.size(), 2u);
    EXPECT_EQ(m_host.m_boxes[1].strText, L"本功能不支持多选!");

    m_script.arrFields = {L"B", L"4", L"5", L"6"};
    EXPECT_TRUE(m_cat.ChangeSelected({1}, m_script.Editor())); // itself isn't a duplicate
    EXPECT_EQ(m_script.opened.m_strCaption + m_script.opened.m_strDesc, L"修改面板b");
    EXPECT_EQ(m_script.opened.m_arrOthers, (CStringArray{L"a:1x2x3", L"c:7x8x9"}));
    EXPECT_EQ(m_cat.m_arrPanels[1], L"B:4x5x6");
    m_script.arrFields = {L"A", L"1", L"2", L"3"};
    EXPECT_FALSE(m_cat.ChangeSelected({1}, m_script.Editor()));
    EXPECT_EQ(m_cat.m_arrPanels[1], L"B:4x5x6");
}

TEST_F(CatalogueTest, ExtendStartsFromTheDialogSizesAndAppends) {
    m_cat.m_arrPanels = {L"a:1x2x3"};
    EXPECT_FALSE(m_cat.AddRecord(L"800", L"abc", L"", m_script.Editor())); // "abc" refused
    EXPECT_EQ(m_script.opened.m_strCaption + m_script.opened.m_strW + m_script.opened.m_strH,
              L"添加面板800abc");
    EXPECT_EQ(m_script.opened.m_arrOthers, m_cat.m_arrPanels);
    EXPECT_TRUE(m_cat.AddRecord(L"", L"", L"", m_script.Editor()));
    EXPECT_EQ(m_cat.m_arrPanels, (CStringArray{L"a:1x2x3", L":xx"}));
}
