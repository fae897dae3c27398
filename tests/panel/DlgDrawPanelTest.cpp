// The panel dialog: what it shows on opening, the order of its refusals, what OK leaves in the
// drawing, the files and the module-wide sizes, and the pick buttons.
#include "panel/DlgDrawPanel.h"

#include "app/EditorServices.h"
#include "drawingdata/DrawingRecords.h"
#include "host/db/AcDb.h"
#include "panel/DlnDictionaryAdd.h"
#include "settings/HistoryDataOprt.h"

#include "EditorTestHost.h"

#include <gtest/gtest.h>

namespace {

// The window's controls as plain values, and a log of what the presenter did to them.
class CRecordingPanelView : public IDlgDrawPanelView {
public:
    void UpdateData(CDlgDrawPanel& dlg, bool bSave) override {
        if (!bSave) {
            m_strWidth = dlg.m_strWidth;
            m_strHeight = dlg.m_strHeight;
            m_strThick = dlg.m_strThick;
            m_nAxes = {dlg.m_nAxisX, dlg.m_nAxisY, dlg.m_nAxisZ};
            return;
        }
        dlg.m_strWidth = m_strWidth;
        dlg.m_strHeight = m_strHeight;
        dlg.m_strThick = m_strThick;
        dlg.m_nAxisX = m_nAxes[0];
        dlg.m_nAxisY = m_nAxes[1];
        dlg.m_nAxisZ = m_nAxes[2];
    }
    void SetTitle(const std::wstring& s) override { m_strTitle = s; }
    void SetScaleList(const CStringArray& arr) override { m_arrScales = arr; }
    void SetScaleText(const std::wstring& s) override { m_strScale = s; }
    std::wstring GetScaleText() override { return m_strScale; }
    int GetListClientWidth() override { return 180; }
    void SetListHeading(const std::wstring& s) override { m_strHeading = s; }
    void SetListRows(const CStringArray& arr) override { m_arrRows = arr; }
    std::vector<int> GetSelectedRows() override { return m_arrSelected; }
    void FocusField(int nField) override { m_log += L"focus " + std::to_wstring(nField) + L";"; }
    void BeginEditorCommand() override { m_log += L"hide;"; }
    void MakeDialogsVisible() override { m_log += L"show;"; }
    bool RunRecordEditor(CDlnDictionaryAdd& dlg) override {
        dlg.OnInitDialog();
        dlg.m_strDesc = L"new";
        return dlg.OnOK();
    }
    void EndDialog(int nResult) override { m_nResult = nResult; }

    std::wstring m_strWidth, m_strHeight, m_strThick, m_strScale, m_strTitle, m_strHeading;
    std::vector<int> m_nAxes{0, 0, 0};
    CStringArray m_arrScales, m_arrRows;
    std::vector<int> m_arrSelected;
    std::wstring m_log;
    int m_nResult = 0;
};

// An editor with its current drawing and an install tree for the dialog's files.
struct PanelDialogFixture : ::testing::Test {
    void SetUp() override {
        host.m_strLocal = dir.Path();
        host.m_strInstall = dir.Path();
        CreateDirPath(dir / L"LocalData");
        g_dDrawRatio = 1.0;
    }
    AcDbDatabase* CurrentDb() { return host.m_editor.m_docs.Current()->database(); }
    std::string LocalFile(const wchar_t* pszName) {
        return ReadBytes(dir / L"LocalData\\" + pszName);
    }

    CTempDir dir;
    CEditorTestHost host;
    CRecordingPanelView view;
};

} // namespace

TEST_F(PanelDialogFixture, OpeningShowsRememberedValuesTheDrawingScaleAndTheCatalogue) {
    WriteBytes(dir / L"LocalData\\HistoryData.txt", "1\n800\n600\n\n0\n1\n0");
    WriteBytes(dir / L"LocalData\\DwgScale.txt", "1:20\r\n \r\n1:5\r\n1:5\r\n");
    WriteBytes(dir / L"LocalData\\PanelLib.txt", "A:1x2x3\nB:4x5x6\n\nlost:7x8x9\n");
    ASSERT_TRUE(SetDrawingScale(CurrentDb(), L"1:5"));

    CDlgDrawPanel dlg;
    dlg.OnInitDialog(view);
    EXPECT_EQ(view.m_strTitle, L"面板绘制");
    EXPECT_EQ(view.m_strWidth + L"|" + view.m_strHeight + L"|" + view.m_strThick, L"800|600|");
    EXPECT_EQ(view.m_nAxes, (std::vector<int>{0, 1, 0}));
    EXPECT_EQ(view.m_arrScales, (CStringArray{L"1:5", L"1:20"}));
    EXPECT_EQ(view.m_strScale, L"1:5");
    EXPECT_DOUBLE_EQ(g_dDrawRatio, 5.0);
    EXPECT_EQ(view.m_strHeading, L"面板列表,180");
    EXPECT_EQ(view.m_arrRows, (CStringArray{L"A:1x2x3", L"B:4x5x6"}));
}

TEST_F(PanelDialogFixture, WithoutHistoryOrScaleTheFieldsAreEmptyAndTheScaleIsOneToTen) {
    CDlgDrawPanel dlg;
    dlg.m_strTitle = L"面板编辑";
    dlg.OnInitDialog(view);
    EXPECT_EQ(view.m_strTitle, L"面板编辑");
    EXPECT_EQ(view.m_strWidth + view.m_strHeight + view.m_strThick, L"");
    EXPECT_EQ(view.m_nAxes, (std::vector<int>{1, 1, 1}));
    EXPECT_EQ(view.m_strScale, L"1:10");
    EXPECT_EQ(view.m_arrScales.size(), 9u);
}

TEST_F(PanelDialogFixture, RefusalsComeInOrderKeepTheDialogOpenAndFocusTheField) {
    CDlgDrawPanel dlg;
    dlg.OnInitDialog(view);
    struct CASE {
        const wchar_t *w, *h, *t, *scale, *text;
        int nField;
    } cases[] = {
        {L".5", L"x", L"x", L"1:1", L"面板宽度数据输入不正确，请输入正实数!", 0},
        {L"5", L"5.", L"x", L"1:1", L"面板高度数据输入不正确，请输入正实数!", 1},
        {L"5", L"5", L"-1", L"1:1", L"面板厚度数据输入不正确，请输入正实数!", 2},
        {L"", L"5", L"", L"1:1", L"面板宽度数据必须大于0,请重新输入!", 0},
        {L"5", L"0", L"", L"1:1", L"面板高度数据必须大于0,请重新输入!", 1},
        {L"5", L"5", L"", L":5", L"图纸比例格式不正确,格式为m:n(其中m,n为正数),请重新输入!", 3},
        {L"5", L"5", L"", L"5:", L"图纸比例格式不正确,格式为m:n(其中m,n为正数),请重新输入!", 3},
        {L"5", L"5", L"", L"-1:5", L"图纸比例格式不正确,格式为m:n(其中m,n为正数),请重新输入!", 3},
        {L"5", L"5", L"", L"1：5", L"图纸比例格式不正确,格式为m:n(其中m,n为正数),请重新输入!", 3},
        {L"5", L"5", L"", L"0:5", L"图纸比例格式不正确,格式为m:n(其中m,n为正数),请重新输入!", 3},
    };
    for (const CASE& c : cases) {
        host.m_boxes.clear();
        view.m_log.clear();
        view.m_strWidth = c.w;
        view.m_strHeight = c.h;
        view.m_strThick = c.t;
        view.m_strScale = c.scale;
        EXPECT_FALSE(dlg.OnOK()) << c.text;
        ASSERT_EQ(host.m_boxes.size(), 1u) << c.text;
        EXPECT_EQ(host.m_boxes[0].strText, c.text);
        EXPECT_EQ(host.m_boxes[0].nFlags, static_cast<unsigned>(MB_ICONEXCLAMATION));
        EXPECT_EQ(view.m_log, L"focus " + std::to_wstring(c.nField) + L";") << c.text;
    }
    EXPECT_EQ(view.m_nResult, 0);
    CHistoryDataOprt history; // nothing remembered from a refused OK
    EXPECT_EQ(history.m_arrValues[1] + history.m_arrValues[2] + history.m_arrValues[3], L"");
}

TEST_F(PanelDialogFixture, OkStoresRealSizesAsDrawnSizesAndTheScaleEverywhere) {
    WriteBytes(dir / L"LocalData\\DwgScale.txt", "1:2\r\n1:10\r\n");
    CDlgDrawPanel dlg;
    dlg.OnInitDialog(view);
    view.m_strWidth = L"1000";
    view.m_strHeight = L" 600.556";
    view.m_strThick = L"";
    view.m_nAxes = {1, 0, 1};
    view.m_strScale = L"1 : 20";
    ASSERT_TRUE(dlg.OnOK());
    EXPECT_EQ(view.m_nResult, IDOK);
    EXPECT_EQ(dlg.m_strScale, L"1:20");
    EXPECT_EQ(dlg.m_strWidth + L"|" + dlg.m_strHeight + L"|" + dlg.m_strThick,
              L"1000.00|600.56|0.01");
    EXPECT_DOUBLE_EQ(g_dPanelLength, 50.0);
    EXPECT_DOUBLE_EQ(g_dPanelWidth, 600.56 / 20);
    EXPECT_DOUBLE_EQ(g_dPanelThick, 0.01 / 20); // a thin sheet, never a flat solid
    EXPECT_DOUBLE_EQ(g_dDrawRatio, 20.0);

    std::wstring strScale;
    ASSERT_TRUE(GetDrawingScale(CurrentDb(), strScale));
    EXPECT_EQ(strScale, L"1:20");
    EXPECT_DOUBLE_EQ(CurrentDb()->dimlfac(), 20.0);
    AcDbDimStyleTableRecord* pStyle = nullptr;
    ASSERT_EQ(acdbOpenObject(pStyle, CurrentDb()->dimstyle(), AcDb::kForRead), Acad::eOk);
    EXPECT_DOUBLE_EQ(pStyle->dimlfac(), 20.0);
    pStyle->close();

    EXPECT_EQ(LocalFile(L"DwgScale.txt"), "1:2\r\n1:10\r\n1:20\r\n");
    CHistoryDataOprt history;
    EXPECT_EQ(history.m_arrValues[1] + L"|" + history.m_arrValues[2] + L"|" +
                  history.m_arrValues[3],
              L"1000| 600.556|"); // as typed
    EXPECT_EQ(history.m_arrValues[5], L"0");
}

TEST_F(PanelDialogFixture, EditingRemembersNothingAndAKnownScaleInOtherCaseIsNotAddedTwice) {
    WriteBytes(dir / L"LocalData\\DwgScale.txt", "1:1X\r\n1:2\r\n");
    CDlgDrawPanel dlg;
    dlg.m_strTitle = L"面板编辑";
    dlg.OnInitDialog(view);
    view.m_strWidth = L"10";
    view.m_strHeight = L"10";
    view.m_strScale = L"1:1x";
    // "1:1x" is no m:n of positive reals: refused although the list knows it.
    EXPECT_FALSE(dlg.OnOK());
    view.m_strScale = L"1:2";
    ASSERT_TRUE(dlg.OnOK());
    CHistoryDataOprt history;
    EXPECT_EQ(history.m_arrValues[1] + history.m_arrValues[2] + history.m_arrValues[3], L"");
    EXPECT_EQ(LocalFile(L"DwgScale.txt"), "1:1X\r\n1:2\r\n"); // rewritten, sorted, no duplicate
}

TEST_F(PanelDialogFixture, PickMeasuresTheLargerSpanAtTheRatioOfOpeningAndRestoresModes) {
    ASSERT_TRUE(SetDrawingScale(CurrentDb(), L"1:10"));
    ASSERT_TRUE(SetIntVar(L"ORTHOMODE", 0));
    CDlgDrawPanel dlg;
    dlg.OnInitDialog(view);
    view.m_strScale = L"1:2"; // changed in the box, never confirmed
    host.Feed({L"10,10", L"40,-30"});
    dlg.OnPickWidth();
    EXPECT_EQ(view.m_strWidth, L"400.00");
    EXPECT_EQ(view.m_log, L"hide;show;");
    int nOrtho = -1;
    ASSERT_TRUE(GetIntVar(L"ORTHOMODE", nOrtho));
    EXPECT_EQ(nOrtho, 0);
}

TEST_F(PanelDialogFixture, CatalogueDoubleClickFillsAndLibraryExtensionStartsFromTheFields) {
    WriteBytes(dir / L"LocalData\\PanelLib.txt", "door:800x2000x2\r\nbad:1X2X3\r\n");
    CDlgDrawPanel dlg;
    dlg.OnInitDialog(view);
    view.m_arrSelected = {1};
    dlg.OnDblclkList();
    EXPECT_EQ(view.m_strWidth, L""); // capital X does not split
    view.m_arrSelected = {0};
    dlg.OnDblclkList();
    EXPECT_EQ(view.m_strWidth + L"|" + view.m_strHeight + L"|" + view.m_strThick, L"800|2000|2");
    view.m_strThick = L"3";
    dlg.OnAddPanel();
    EXPECT_EQ(view.m_arrRows.back(), L"new:800x2000x3");
    dlg.OnClose();
    EXPECT_EQ(view.m_nResult, IDCANCEL);
    EXPECT_EQ(LocalFile(L"PanelLib.txt"), "door:800x2000x2\r\nbad:1X2X3\r\nnew:800x2000x3\r\n");
}
