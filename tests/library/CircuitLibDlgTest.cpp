// The library browser without a window: opening, pages, cells, search, the insert hand-over,
// leaving.
#include "LibraryBrowserFixture.h"

#include "base/FileSystem.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"
#include "editor/DocManager.h"
#include "settings/HistoryDataOprt.h"

#include <unistd.h>

namespace {

class RecordingItemOps : public ILibItemOperations {
public:
    void OnBtnNew(CCircuitLibDlg&) override { m_strLog += L"new;"; }
    void OnBtnModify(CCircuitLibDlg&) override { m_strLog += L"modify;"; }
    void OnBtnRename(CCircuitLibDlg&) override { m_strLog += L"rename;"; }
    void OnBtnDelete(CCircuitLibDlg& dlg) override {
        m_strLog += L"delete " + std::to_wstring(dlg.GetSelection().size()) + L";";
    }
    void OnBtnSave(CCircuitLibDlg&) override { m_strLog += L"save;"; }
    void OnImport(CCircuitLibDlg&) override { m_strLog += L"import;"; }
    void OnEnlarge(CCircuitLibDlg& dlg) override {
        m_strLog += L"enlarge " + dlg.State().strSelItem + L";";
    }
    void OnBatchSlides(CCircuitLibDlg&) override { m_strLog += L"batch;"; }
    std::wstring m_strLog;
};

using CircuitLibDlgTest = CLibraryBrowserTest;

} // namespace

TEST_F(CircuitLibDlgTest, OpensOnTheFirstDirectoryWithLabelOrderAndPagesOfSixteen) {
    AddNumberedItems(L"按钮\\", 17);
    AddItems(L"按钮\\sub\\", {L"1.dwg"});
    CCircuitLibDlg& dlg = Open();
    CRecordingLibView& view = *m_pView;
    EXPECT_EQ(view.m_texts.strTitle, L"开孔图库管理");
    EXPECT_EQ(view.m_text[IDC_EDIT_ROOT], HoleRoot());
    EXPECT_EQ(view.m_tree[view.m_nTreeSel].strText, L"按钮");
    ASSERT_EQ(view.m_list.size(), 18u);
    EXPECT_EQ(view.m_list[1], L"2.dwg"); // 2 before 10
    EXPECT_EQ(view.m_list[9], L"10.dwg");
    EXPECT_EQ(view.m_list[17], L"sub\\1.dwg"); // the directory's own items first
    EXPECT_EQ(view.m_text[IDC_TEXT_PAGES], L"共2页");
    EXPECT_EQ(view.m_text[IDC_TEXT_PAGE], L"第1页");
    EXPECT_EQ(view.m_scrollRange, std::make_pair(1, 2));
    EXPECT_EQ(view.m_text[IDC_EDIT_COUNT], L"1");
    EXPECT_EQ(view.m_text[IDC_EDIT_SCALE], L"1");
    EXPECT_EQ(view.m_text[IDC_EDIT_DWGSCALE], L"1:1");
    EXPECT_TRUE(view.m_check[IDC_RADIO_0]);

    // The history's list index is item 0: cell 0 grey, the others black.
    EXPECT_EQ(dlg.m_nCell, 0);
    EXPECT_EQ(view.m_cells[0].background, kCellSelected);
    EXPECT_EQ(view.m_cells[0].strSlide, HoleRoot() + L"按钮\\1.sld");
    EXPECT_EQ(view.m_cells[0].strLabel, L"1");
    EXPECT_EQ(view.m_cells[1].background, kCellNormal);

    // Item 15 stays on page 1 in cell 15; item 16 turns to page 2, cell 0.
    dlg.OnItemchangedList({15});
    EXPECT_EQ(dlg.m_nPage, 1);
    EXPECT_EQ(dlg.m_nCell, 15);
    dlg.OnItemchangedList({16});
    EXPECT_EQ(dlg.m_nPage, 2);
    EXPECT_EQ(dlg.m_nCell, 0);
    EXPECT_EQ(view.m_nScrollPos, 2);
    EXPECT_EQ(view.m_text[IDC_TEXT_PAGE], L"第2页");
    EXPECT_EQ(view.m_cells[0].strLabel, L"17");
    EXPECT_EQ(view.m_cells[1].strLabel, L"1"); // sub\1.dwg, labelled by its bare name
    EXPECT_EQ(view.m_cells[2].background, kCellEmpty);
    EXPECT_EQ(view.m_cells[2].strLabel, L"");
    EXPECT_EQ(g_HoleLib.strSelItem, L"17.dwg");
}

TEST_F(CircuitLibDlgTest, EmptyAndSinglePageDirectoriesNeitherScrollNorTurn) {
    AddNumberedItems(L"a\\", 17);
    AddNumberedItems(L"b\\", 16);
    CreateDirPath(HoleRoot() + L"c");
    CCircuitLibDlg& dlg = Open();
    CRecordingLibView& view = *m_pView;

    view.m_nTreeSel = view.TreeItem(L"b");
    dlg.OnSelchangedTree(view.m_nTreeSel);
    EXPECT_EQ(view.m_text[IDC_TEXT_PAGES], L"共1页");
    dlg.OnMouseWheel(-120, true);
    dlg.OnVScroll(SB_LINEDOWN, 0);
    EXPECT_EQ(dlg.m_nPage, 1);
    EXPECT_EQ(view.m_cells[15].strLabel, L"16");

    view.m_nTreeSel = view.TreeItem(L"a");
    dlg.OnSelchangedTree(view.m_nTreeSel);
    dlg.OnMouseWheel(-120, false); // only while the bar has the focus
    EXPECT_EQ(dlg.m_nPage, 1);
    dlg.OnMouseWheel(-120, true);
    EXPECT_EQ(dlg.m_nPage, 2);
    EXPECT_EQ(dlg.m_nCell, -1);
    EXPECT_EQ(view.m_cells[1].background, kCellEmpty); // one item, fifteen blank cells
    dlg.OnVScroll(SB_LINEUP, 0);
    EXPECT_EQ(dlg.m_nPage, 1);
    EXPECT_EQ(view.m_text[IDC_TEXT_PAGE], L"第1页");

    // No items: both texts 0, a blank grid, and the bar keeps its range.
    view.m_nTreeSel = view.TreeItem(L"c");
    dlg.OnSelchangedTree(view.m_nTreeSel);
    EXPECT_EQ(view.m_text[IDC_TEXT_PAGES], L"共0页");
    EXPECT_EQ(view.m_text[IDC_TEXT_PAGE], L"第0页");
    EXPECT_EQ(view.m_scrollRange, std::make_pair(1, 2));
    for (const CELL_CONTENT& cell : view.m_cells)
        EXPECT_EQ(cell, CELL_CONTENT());
}

TEST_F(CircuitLibDlgTest, StaleLastDirectoryOrNoSubdirectoryOpensWithAnEmptyList) {
    AddItems(L"", {L"5x10腰形孔.dwg"});
    Open();
    EXPECT_TRUE(m_pView->m_list.empty()); // no child to open
    int nRoot = m_pView->TreeItem(StrTrimRight(HoleRoot(), L"\\"));
    m_pDlg->OnSelchangedTree(nRoot);
    EXPECT_EQ(m_pView->m_list, CStringArray{L"5x10腰形孔.dwg"});
    IModelessWindow* pWindow = g_HoleLib.pLibDlg;
    DestroyModelessWindow(pWindow);
    g_HoleLib.pLibDlg = nullptr;

    AddNumberedItems(L"仪表\\", 2);
    SetLastDir(L"已删除的目录");
    Open();
    EXPECT_EQ(m_pView->m_nTreeSel, 0);
    EXPECT_TRUE(m_pView->m_list.empty());
}

TEST_F(CircuitLibDlgTest, CellsSelectSearchTurnsThePageAndRightClickEnlargesOnlyItems) {
    AddNumberedItems(L"按钮\\", 20);
    RecordingItemOps ops;
    SetLibItemOperations(&ops);
    CCircuitLibDlg& dlg = Open();
    CRecordingLibView& view = *m_pView;

    dlg.OnSlideLButtonDown(3);
    EXPECT_EQ(view.m_selection, std::vector<int>{3});
    EXPECT_EQ(view.m_cells[3].background, kCellSelected);
    EXPECT_EQ(view.m_cells[0].background, kCellNormal);

    view.m_text[IDC_EDIT_SEARCH] = L"19";
    dlg.OnChangeSearch();
    EXPECT_EQ(view.m_selection, std::vector<int>{18});
    EXPECT_EQ(dlg.m_nPage, 2);
    EXPECT_EQ(dlg.m_nCell, 2);
    view.m_text[IDC_EDIT_SEARCH] = L"x";
    dlg.OnChangeSearch(); // no match leaves the selection alone
    EXPECT_EQ(view.m_selection, std::vector<int>{18});

    dlg.OnSlideRButtonDown(10); // an empty cell of page 2
    EXPECT_EQ(ops.m_strLog, L"");
    EXPECT_EQ(dlg.m_nCell, 2);
    dlg.OnSlideRButtonDown(0);
    EXPECT_EQ(ops.m_strLog, L"enlarge 17.dwg;");

    dlg.PreTranslateMessage(true, false, true, true); // Delete in the list: the list's own key
    EXPECT_EQ(ops.m_strLog, L"enlarge 17.dwg;");
    dlg.PreTranslateMessage(true, false, true, false);
    EXPECT_EQ(ops.m_strLog, L"enlarge 17.dwg;delete 1;");
    EXPECT_TRUE(dlg.PreTranslateMessage(true, true, false, false)); // Enter is swallowed
    SetLibItemOperations(nullptr);

    // A directory gone from the disk: the list keeps what it held, the labels go.
    std::wstring strSlide = view.m_cells[0].strSlide;
    DeleteDirTree(HoleRoot() + L"按钮");
    dlg.ReloadList();
    EXPECT_EQ(view.m_list.size(), 20u);
    EXPECT_EQ(view.m_cells[0].strLabel, L"");
    EXPECT_EQ(view.m_cells[0].strSlide, strSlide);
}

TEST_F(CircuitLibDlgTest, InsertChecksTheFieldsThenHidesFillsTheRecordAndPosts) {
    AddNumberedItems(L"按钮\\", 3);
    CCircuitLibDlg& dlg = Open();
    CRecordingLibView& view = *m_pView;
    dlg.OnItemchangedList({1});

    view.m_text[IDC_EDIT_COUNT] = L"101";
    dlg.OnCommand(IDC_BTN_INSERT);
    view.m_text[IDC_EDIT_COUNT] = L"3";
    view.m_text[IDC_EDIT_SCALE] = L".5";
    dlg.OnCommand(IDC_BTN_INSERT);
    view.m_text[IDC_EDIT_SCALE] = L"-0";
    dlg.OnCommand(IDC_BTN_INSERT);
    view.m_text[IDC_EDIT_SCALE] = L"5.";
    dlg.OnCommand(IDC_BTN_INSERT);
    view.m_text[IDC_EDIT_SCALE] = L" 2";
    dlg.OnCommand(IDC_BTN_INSERT);
    dlg.OnItemchangedList({0, 1});
    view.m_text[IDC_EDIT_SCALE] = L"2.5";
    dlg.OnCommand(IDC_BTN_INSERT);
    ASSERT_EQ(m_host.m_boxes.size(), 6u);
    EXPECT_EQ(m_host.m_boxes[0].strText, L"符号调用数必须大于等于1且小于等于100！");
    for (int i = 1; i <= 4; ++i)
        EXPECT_EQ(m_host.m_boxes[i].strText, L"调用比例非法！") << i;
    EXPECT_EQ(m_host.m_boxes[5].strText, L"此操作不支持多选！");
    EXPECT_TRUE(view.m_bVisible);
    EXPECT_EQ(view.m_nFrameActivated, 0);
    EXPECT_EQ(Posted(), L"");

    dlg.OnItemchangedList({1});
    view.m_check[IDC_CHK_EXPLODE] = false;
    dlg.OnCommand(IDC_RADIO_90);
    dlg.OnCommand(IDC_BTN_INSERT);
    EXPECT_FALSE(view.m_bVisible);
    EXPECT_EQ(g_HoleLib.strDwgFile, HoleRoot() + L"按钮\\2.dwg");
    EXPECT_EQ(g_HoleLib.nCount, 3);
    EXPECT_EQ(g_HoleLib.dScale, 2.5);
    EXPECT_EQ(g_HoleLib.dAngle, 90.0);
    EXPECT_EQ(g_HoleLib.bExplode, 0);
    EXPECT_EQ(view.m_nFrameActivated, 1);
    EXPECT_EQ(Posted(), L"(Command)\nDrawingInsert\n");
}

TEST_F(CircuitLibDlgTest, WithoutADocumentDoubleClicksAskForOne) {
    AddNumberedItems(L"按钮\\", 1);
    CCircuitLibDlg& dlg = Open();
    dlg.m_nDisplayMode = 1;
    auto& docs = m_host.m_editor.m_docs;
    docs.CloseDocument(docs.curDocument());
    dlg.OnBackgroundClick(-1, true);
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText, L"请先打开或创建一副DWG文件后再执行该操作!");
    EXPECT_EQ(m_host.m_boxes[0].nFlags, 64u);
    EXPECT_TRUE(g_HoleLib.strDwgFile.empty());
}

TEST_F(CircuitLibDlgTest, AForeignCommandIsCancelledButTheLibrarysOwnAreNot) {
    CCircuitLibDlg& dlg = Open();
    std::wstring strPostedMeanwhile;
    auto mouseOver = [&] {
        dlg.PreTranslateMessage(false, false, false, false);
        strPostedMeanwhile += Posted() + L";";
    };
    m_host.m_editor.m_commands.AddNative(L"LINE", mouseOver);
    m_host.m_editor.m_commands.AddNative(L"DRAWINGINSERT", mouseOver);
    m_host.Run({L"DrawingInsert", L"LINE"});
    EXPECT_EQ(strPostedMeanwhile, L";(command)\n;");
}

TEST_F(CircuitLibDlgTest, ExitRemembersTheDirectoryCloseForgetsAndANewItemArrivesOnPaint) {
    AddNumberedItems(L"风扇\\", 2);
    AddNumberedItems(L"仪表\\", 3);
    SetLastDir(L"仪表", 2);
    CCircuitLibDlg& dlg = Open();
    EXPECT_EQ(m_pView->m_selection, std::vector<int>{2});
    EXPECT_EQ(m_pView->m_nVisible, 0); // scrolled to the first item, not the selected one

    WriteBytes(HoleRoot() + L"仪表\\新建.dwg", "item");
    g_HoleLib.nNewState = 1;
    g_HoleLib.strNewName = L"新建.dwg";
    dlg.Show();
    EXPECT_EQ(m_pView->m_list.size(), 4u);
    EXPECT_EQ(m_pView->m_list[m_pView->m_selection.at(0)], L"新建.dwg");
    EXPECT_EQ(g_HoleLib.nNewState, 0);

    m_pView->m_check[IDC_CHK_SUBDIRS] = false;
    dlg.OnSelchangedTree(m_pView->TreeItem(L"风扇"));
    dlg.OnItemchangedList({1});
    dlg.OnCommand(IDC_BTN_EXIT);
    EXPECT_EQ(g_HoleLib.pLibDlg, nullptr);
    CHistoryDataOprt history;
    std::wstring strDir, strIndex;
    int bSubDirs = 1;
    history.GetText(7, strDir);
    history.GetText(8, strIndex);
    history.GetInt(9, bSubDirs);
    EXPECT_EQ(strDir, L"风扇");
    EXPECT_EQ(strIndex, L"1");
    EXPECT_EQ(bSubDirs, 0);

    CCircuitLibDlg& again = Open();
    again.OnSelchangedTree(m_pView->TreeItem(L"仪表"));
    again.OnClose();
    EXPECT_EQ(g_HoleLib.pLibDlg, nullptr);
    CHistoryDataOprt after;
    after.GetText(7, strDir);
    EXPECT_EQ(strDir, L"风扇");
}

TEST_F(CircuitLibDlgTest, TheProcesssCurrentDirectoryIsSelectedWhenItIsInTheTree) {
    AddNumberedItems(L"仪表\\", 2);
    SetLastDir(L"已删除的目录");
    std::wstring strOld = FsGetCurrentDirectory();
    ASSERT_EQ(::chdir(ToOsPath(HoleRoot() + L"仪表").c_str()), 0);
    Open();
    ASSERT_EQ(::chdir(ToOsPath(strOld).c_str()), 0);
    EXPECT_EQ(m_pView->m_tree[m_pView->m_nTreeSel].strText, L"仪表");
    EXPECT_EQ(m_pView->m_list.size(), 2u);
}
