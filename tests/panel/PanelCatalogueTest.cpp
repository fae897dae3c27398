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
    std::wstring LibPath() const { return m_dir / L"LocalData\\PanelLib.txt"; }
    void Load(const CStringArray& arrRecords) { m_catalogue.m_arrPanels = arrRecords; }

    CTempDir m_dir;
    CTestHost m_host;
    CPanelCatalogue m_catalogue;
};

} // namespace

TEST_F(CatalogueTest, LoadStopsAtTheFirstBlankLineAndSaveRewritesWhole) {
    m_catalogue.LoadPanelLib();
    EXPECT_TRUE(m_catalogue.m_arrPanels.empty()); // a missing file is an empty catalogue
    EXPECT_TRUE(m_host.m_boxes.empty());

    WriteBytes(LibPath(), ReadTestData("panel/panellib_odd.txt"));
    m_catalogue.LoadPanelLib();
    ASSERT_EQ(m_catalogue.m_arrPanels.size(), 4u); // the doubled record shows twice
    EXPECT_EQ(m_catalogue.m_arrPanels[2], L"端子箱:型号A:600x800x1.5");

    m_catalogue.m_arrPanels.erase(m_catalogue.m_arrPanels.begin());
    m_catalogue.m_arrPanels.push_back(MakePanelRecord(L"新面板", L"", L"", L""));
    ASSERT_TRUE(m_catalogue.SavePanelLib());
    EXPECT_EQ(Hex(ReadBytes(LibPath())), Hex(ReadTestData("panel/panellib_saved.txt")));

    m_host.m_strLocal = m_dir / L"missing\\";
    EXPECT_FALSE(m_catalogue.SavePanelLib());
    EXPECT_TRUE(m_host.m_boxes.empty());
}

TEST_F(CatalogueTest, DoubleClickFillsSizesOnlyWhenTheySplitInThree) {
    Load({L"门板:800x2000x2", L"端子箱:box:600x800x1", L"配电箱:400X500X1", L"空:xx",
          L"无冒号800x600x2"});
    std::wstring strW = L"w", strH = L"h", strT = L"t";
    EXPECT_FALSE(m_catalogue.FillSizes({}, strW, strH, strT));
    EXPECT_FALSE(m_catalogue.FillSizes({1}, strW, strH, strT)); // colon in the description
    EXPECT_FALSE(m_catalogue.FillSizes({2}, strW, strH, strT)); // capital X
    EXPECT_EQ(strW + strH + strT, L"wht");
    EXPECT_TRUE(m_catalogue.FillSizes({0, 3}, strW, strH, strT)); // the first selected row
    EXPECT_EQ(strW + L"|" + strH + L"|" + strT, L"800|2000|2");
    EXPECT_TRUE(m_catalogue.FillSizes({3}, strW, strH, strT));
    EXPECT_EQ(strW + strH + strT, L"");
    EXPECT_TRUE(m_catalogue.FillSizes({4}, strW, strH, strT));
    EXPECT_EQ(strW, L"无冒号800");
}

TEST_F(CatalogueTest, DeleteUsesTheUncorrectedIndices) {
    Load({L"a:1x1x1", L"b:1x1x1", L"c:1x1x1", L"d:1x1x1"});
    EXPECT_FALSE(m_catalogue.DeleteSelected({}));
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText, L"没有选择!");
    EXPECT_EQ(m_host.m_boxes[0].strCaption, L"Quillmarch");

    EXPECT_TRUE(m_catalogue.DeleteSelected({3, 1})); // 1 goes, then index 3 is past the end
    EXPECT_EQ(m_catalogue.m_arrPanels, (CStringArray{L"a:1x1x1", L"c:1x1x1", L"d:1x1x1"}));
    EXPECT_TRUE(m_catalogue.DeleteSelected({0, 1}));
    EXPECT_EQ(m_catalogue.m_arrPanels, (CStringArray{L"c:1x1x1"})); // "d" went, not "c"
}

TEST_F(CatalogueTest, ChangeEditsOneRowAgainstTheOthers) {
    Load({L"a:1x2x3", L"b:4x5x6", L"c:7x8x9"});
    RECORD_EDITOR_SCRIPT script;
    EXPECT_FALSE(m_catalogue.ChangeSelected({}, script.Editor()));
    EXPECT_FALSE(m_catalogue.ChangeSelected({0, 2}, script.Editor()));
    ASSERT_EQ(m_host.m_boxes.size(), 2u);
    EXPECT_EQ(m_host.m_boxes[1].strText, L"本功能不支持多选!");
    EXPECT_EQ(script.nOpened, 0);

    script.strDesc = L"B";
    script.strW = L"4";
    script.strH = L"5";
    script.strT = L"6";
    EXPECT_TRUE(m_catalogue.ChangeSelected({1}, script.Editor())); // itself isn't a duplicate
    EXPECT_EQ(script.opened.m_strCaption, L"修改面板");
    EXPECT_EQ(script.opened.m_arrOthers, (CStringArray{L"a:1x2x3", L"c:7x8x9"}));
    EXPECT_EQ(script.opened.m_strDesc + script.opened.m_strW, L"b4");
    EXPECT_EQ(m_catalogue.m_arrPanels[1], L"B:4x5x6");

    script.strDesc = L"A";
    script.strW = L"1";
    script.strH = L"2";
    script.strT = L"3";
    EXPECT_FALSE(m_catalogue.ChangeSelected({1}, script.Editor()));
    EXPECT_EQ(m_catalogue.m_arrPanels[1], L"B:4x5x6");
}

TEST_F(CatalogueTest, ExtendStartsFromTheDialogSizesAndAppends) {
    Load({L"a:1x2x3"});
    RECORD_EDITOR_SCRIPT script;
    script.bTypeFields = false;
    EXPECT_FALSE(m_catalogue.AddRecord(L"800", L"abc", L"", script.Editor()));
    EXPECT_EQ(script.opened.m_strCaption, L"添加面板");
    EXPECT_EQ(script.opened.m_arrOthers, (CStringArray{L"a:1x2x3"}));
    EXPECT_EQ(script.opened.m_strW + L"|" + script.opened.m_strH, L"800|abc");
    EXPECT_EQ(m_host.m_boxes.size(), 1u); // "abc" refused
    EXPECT_EQ(m_catalogue.m_arrPanels.size(), 1u);

    EXPECT_TRUE(m_catalogue.AddRecord(L"", L"", L"", script.Editor()));
    EXPECT_EQ(m_catalogue.m_arrPanels, (CStringArray{L"a:1x2x3", L":xx"}));
    script.bPressOk = false;
    EXPECT_FALSE(m_catalogue.AddRecord(L"1", L"1", L"1", script.Editor()));
    EXPECT_EQ(m_catalogue.m_arrPanels.size(), 2u);
}
