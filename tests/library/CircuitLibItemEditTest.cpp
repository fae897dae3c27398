// New items written from a selection, items opened for edit and saved back, in both libraries.
#include "library/ItemDialogs.h"
#include "library/ItemSave.h"

#include "FixedVersionClock.h"
#include "LibraryBrowserFixture.h"
#include "RecordingItemView.h"
#include "SchematicBuilder.h"
#include "SharedSite.h"
#include "suite/SuiteMainLib.h"

#include "app/DocumentServices.h"
#include "app/EditorServices.h"
#include "base/FileSystem.h"
#include "drawingdata/DrawingRecords.h"
#include "drawingdata/ModelSpace.h"
#include "drawingdata/RecordKeys.h"
#include "drawingdata/Records.h"
#include "editor/DocManager.h"
#include "host/HostCommands.h"
#include "host/HostEditor.h"
#include "host/HostUi.h"

#include <gtest/gtest.h>

namespace {

class ItemEditTest : public CLibraryBrowserTest {
protected:
    ItemEditTest() {
        HOST_SERVICES services = GetHostServices();
        services.pMainLib = &m_mainLib;
        SetHostServices(services);
        FsCreateDirectory(m_dir / L"local\\Data");
        // The editor runs a modeless window's handlers in its application context.
        m_host.m_editor.m_docs.EnterApplicationContext();
    }
    ~ItemEditTest() override {
        m_host.m_editor.m_docs.LeaveApplicationContext();
        DestroyModelessWindow(g_HoleLib.pBlockDlg);
        DestroyModelessWindow(g_HoleLib.pSaveDlg);
    }
    AcDbDatabase* CurrentDb() { return acDocManagerPtr()->curDocument()->database(); }
    // A symbol KM1 with its part record, and a line far outside the window.
    void DrawSchematic() {
        CSchematicBuilder b(*CurrentDb());
        b.Symbol(L"K", {{L"13", 0, 0}, {L"14", 10, 0}});
        b.Part(L"", L"KM1", L"接触器").Part(L"", L"KM9", L"未选");
        b.Label(b.Insert(L"K", 0, 0), L"KM1");
        b.Wire(500, 500, 600, 500);
    }
    CRecordingItemView& StartNew(const std::wstring& strName) {
        m_pView->m_nameAnswers = {{strName, 0}};
        m_pDlg->OnBtnNew();
        EXPECT_NE(g_HoleLib.pBlockDlg, nullptr);
        return *CRecordingItemView::s_pLast;
    }
    std::wstring AllPosted() {
        std::wstring strPosted;
        for (AcApDocument* pDoc : m_host.m_editor.m_docs.documents())
            for (const POSTED_LINE& line : static_cast<CHostDocument*>(pDoc)->m_posted)
                strPosted += line.strText + L"\n";
        return strPosted;
    }

    CRecordingItemViews m_views;
    CSuiteMainLib m_mainLib{m_host};
};

bool ReadDrawing(const std::wstring& strPath, AcDbDatabase& db) {
    return db.readDwgFile(strPath.c_str()) == Acad::eOk;
}

int CountModelSpace(AcDbDatabase& db) {
    AcDbBlockTableRecord* pMs = nullptr;
    acdbOpenObject(pMs, db.modelSpaceId(), AcDb::kForRead);
    int n = 0;
    AcDbBlockTableRecordIterator* it = nullptr;
    pMs->newIterator(it);
    for (; !it->done(); it->step())
        ++n;
    delete it;
    pMs->close();
    return n;
}

} // namespace

TEST_F(ItemEditTest, NewItemCarriesItsPartsRecordAndMarkerAndReachesThePartsDatabase) {
    DrawSchematic();
    Open();
    CRecordingItemView& entry = StartNew(L"新孔.dwg");
    EXPECT_EQ(m_pView->m_dialogTitles.back(), L"图形新建");
    EXPECT_EQ(entry.m_tmpl.nTemplate, 104);
    EXPECT_EQ(entry.m_placed.x, 100 + 1600 - 300 - 10); // beside the drawing
    EXPECT_EQ(entry.m_placed.y, 95);
    EXPECT_EQ(entry.m_texts[603], L""); // the model stays blank
    entry.m_texts[611] = L"断路器孔";
    entry.m_texts[604] = L"C-1";
    m_host.Feed({L"-5,-5", L"20,10"});
    entry.m_pDlg->OnOK();

    EXPECT_EQ(g_HoleLib.pBlockDlg, nullptr);
    EXPECT_EQ(g_HoleLib.bNewPending, 1);
    EXPECT_EQ(g_HoleLib.strNewSource, HoleRoot() + L"新孔.dwg");
    // The browser's paint took the new item up and selected it.
    EXPECT_EQ(g_HoleLib.nNewState, 0);
    ASSERT_EQ(m_pDlg->GetSelection().size(), 1u);
    EXPECT_EQ(m_pDlg->m_Names[m_pDlg->GetSelection()[0]], L"新孔.dwg");
    EXPECT_NE(AllPosted().find(L"(Command)\nMakeSld\n"), std::wstring::npos);
    EXPECT_NE(m_host.m_strPrinted.find(L"/n*****新建库文件成功*****/n"), std::wstring::npos);

    AcDbDatabase item(false, true);
    ASSERT_TRUE(ReadDrawing(HoleRoot() + L"新孔.dwg", item));
    CStringArray pairs;
    ASSERT_TRUE(ReadRecommendedPairs(&item, pairs));
    EXPECT_EQ(pairs,
              (CStringArray{L"推荐名称", L"断路器孔", L"推荐型号", L"新孔", L"推荐编码", L"C-1"}));
    EXPECT_EQ(item.insbase().x, 5.0); // the middle of the selection
    resbuf* pChain = nullptr;
    EXPECT_EQ(
        ReadNamedXrecord(&item, TZ_DICITIONARY_PART2DATABASE, L"TZ_XRECORD_ONEPART2_1", pChain), 1);
    CStringArray part;
    StringsFromChain(pChain, part);
    acutRelRb(pChain);
    EXPECT_EQ(part.at(3), L"KM1");
    EXPECT_EQ(
        ReadNamedXrecord(&item, TZ_DICITIONARY_PART2DATABASE, L"TZ_XRECORD_ONEPART2_2", pChain),
        0); // only the selected symbol's device
    int nMarkers = 0, nInvisible = 0;
    ForEachModelSpaceEntity(&item, [&](AcDbObjectId, AcDbEntity& ent) {
        if (HasXData(&ent, TZ_KKDOTPT_FLAG) && IsDotEntity(&ent)) {
            ++nMarkers;
            nInvisible += !ent.isVisible();
        }
        return true;
    });
    EXPECT_EQ(nMarkers, 1);
    EXPECT_EQ(nInvisible, 1);
    EXPECT_EQ(CountModelSpace(item), 3); // symbol, label, marker: the far line stayed out

    STRUCT_HOLE_PART_ROW row;
    ASSERT_TRUE(CSuiteMainLib::ReadRow(m_dir / L"local\\Data\\TzMainLib.mdb", L"新孔.dwg", row));
    EXPECT_EQ(row.strName + L"|" + row.strModel + L"|" + row.strCode, L"断路器孔|新孔|C-1");
    EXPECT_EQ(row.nFlag, 0);
}

TEST_F(ItemEditTest, ExistingNameIsReplacedOnlyWhenTheUserAgrees) {
    AddItems(L"", {L"a.dwg"});
    Open();
    m_host.m_answers = {IDNO};
    m_pView->m_nameAnswers = {{L"a", 0}};
    m_pDlg->OnBtnNew();
    EXPECT_EQ(g_HoleLib.pBlockDlg, nullptr);
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText, L"图形“a”已经存在,是否覆盖？");
    EXPECT_EQ(m_host.m_boxes[0].nFlags, 36u);
    EXPECT_EQ(ReadBytes(HoleRoot() + L"a.dwg"), "item");

    // A name that is no block name never reaches the question.
    m_host.m_answers = {IDYES};
    m_pView->m_nameAnswers = {{L"a*b", 0}, {L"a", 0}};
    m_pDlg->OnBtnNew();
    ASSERT_EQ(m_host.m_boxes.size(), 3u);
    EXPECT_NE(m_host.m_boxes[1].strText.find(L"块名“a*b”错误"), std::wstring::npos);
    EXPECT_FALSE(FsExists(HoleRoot() + L"a.dwg")); // mode 0: gone at once
    EXPECT_EQ(g_HoleLib.strDwgFile, HoleRoot() + L"a.dwg");
    EXPECT_NE(g_HoleLib.pBlockDlg, nullptr);

    // Gate: a second new item while one is being drawn.
    m_pDlg->OnBtnNew();
    EXPECT_EQ(m_host.m_boxes.back().strText, L"图形新建正在进行！");
}

TEST_F(ItemEditTest, CancelEscAndEmptySelectionWriteNothing) {
    Open();
    CRecordingItemView& entry = StartNew(L"空");
    EXPECT_TRUE(entry.m_pDlg->PreTranslateMessage(true)); // Esc swallowed
    EXPECT_FALSE(entry.m_pDlg->PreTranslateMessage(false));
    EXPECT_NE(g_HoleLib.pBlockDlg, nullptr);

    m_host.Feed({L"-5,-5", L"20,10"});
    entry.m_pDlg->OnOK(); // nothing drawn there
    EXPECT_NE(m_host.m_strPrinted.find(L"无待入库图形，建库失败！\n"), std::wstring::npos);
    EXPECT_NE(g_HoleLib.pBlockDlg, nullptr); // the user may try again

    m_pView->m_bVisible = false;
    entry.m_pDlg->OnCancel();
    EXPECT_TRUE(m_pView->m_bVisible); // the browser is back
    EXPECT_EQ(g_HoleLib.pBlockDlg, nullptr);
    EXPECT_EQ(g_HoleLib.nNewState, 2);
    EXPECT_FALSE(FsExists(HoleRoot() + L"空.dwg"));
    EXPECT_EQ(AllPosted().find(L"MakeSld"), std::wstring::npos);
}

TEST_F(ItemEditTest, GivenBasePointAndThePickButtonFillTheFields) {
    DrawSchematic();
    Open();
    CRecordingItemView& entry = StartNew(L"基点");
    m_host.Feed({L"3.256,4"});
    entry.m_pDlg->OnBtnPick();
    EXPECT_EQ(entry.m_texts[525], L"3.26");
    EXPECT_EQ(entry.m_texts[526], L"4.00");
    EXPECT_TRUE(entry.m_strLog.ends_with(L"hide;frame;show;activate;"));
    m_host.Feed({L"-5,-5", L"20,10"});
    entry.m_pDlg->OnOK();
    AcDbDatabase item(false, true);
    ASSERT_TRUE(ReadDrawing(HoleRoot() + L"基点.dwg", item));
    EXPECT_NEAR(item.insbase().x, 3.26, 1e-9);
    EXPECT_NEAR(item.insbase().y, 4.0, 1e-9);
}

TEST_F(ItemEditTest, SaveOfAnEditedItemRestoresTheUsersSaveSettings) {
    DrawSchematic();
    Open();
    CRecordingItemView& entry = StartNew(L"改");
    m_host.Feed({L"-5,-5", L"20,10"});
    entry.m_pDlg->OnOK();
    // What MakeSld does at the end of a new item: the new drawing saved and closed.
    for (AcApDocument* pDoc : m_host.m_editor.m_docs.documents())
        if (EqualsNoCase(pDoc->fileName(), HoleRoot() + L"改.dwg"))
            m_host.m_editor.m_docs.CloseDocument(static_cast<CHostDocument*>(pDoc));
    m_pDlg->Show();
    m_pDlg->ReloadList();
    m_pDlg->SelectListItem(L"改.dwg");

    SetIntVar(L"ISAVEBAK", 0);
    acedSetEnv(L"DefaultFormatForSave", L"48");
    g_HoleLib.g_nFtpMode = 2; // the hole browser's handlers recompute it from the style
    m_pDlg->OnBtnModify();
    EXPECT_EQ(g_HoleLib.g_nFtpMode, 0);
    EXPECT_FALSE(m_pView->m_bVisible);
    ASSERT_NE(g_HoleLib.pSaveDlg, nullptr);
    CRecordingItemView& save = *CRecordingItemView::s_pLast;
    EXPECT_EQ(save.m_tmpl.nTemplate, 408);
    EXPECT_EQ(save.m_texts[605], L"");
    EXPECT_EQ(save.m_texts[606], L"改"); // the model the new item got
    EXPECT_EQ(save.m_texts[608], L"5.00");
    EXPECT_NE(AllPosted().find(L"(Command)\nDrawingOpen\n"), std::wstring::npos);
    EXPECT_EQ(g_HoleLib.strDwgFile, HoleRoot() + L"改.dwg");

    save.m_texts[605] = L"新名称";
    save.m_texts[608] = L"1";
    save.m_texts[609] = L"2";
    save.m_pDlg->OnOK();
    EXPECT_EQ(g_HoleLib.pSaveDlg, nullptr);
    int nSaveBak = -1;
    GetIntVar(L"ISAVEBAK", nSaveBak);
    EXPECT_EQ(nSaveBak, 0);
    std::wstring strFormat;
    acedGetEnv(L"DefaultFormatForSave", strFormat);
    EXPECT_EQ(strFormat, L"48");
    EXPECT_FALSE(FsExists(HoleRoot() + L"改.bak"));
    EXPECT_EQ(m_host.m_strPrinted.find(L"未知命令"), std::wstring::npos);
    EXPECT_EQ(m_host.m_strPrinted.find(L"需要"), std::wstring::npos);
    EXPECT_TRUE(FsExists(HoleRoot() + L"改.sld"));
    AcDbDatabase item(false, true);
    ASSERT_TRUE(ReadDrawing(HoleRoot() + L"改.dwg", item));
    CStringArray pairs;
    ReadRecommendedPairs(&item, pairs);
    EXPECT_EQ(FindPairValue(pairs, L"推荐名称"), L"新名称");
    EXPECT_EQ(item.insbase().x, 1.0);
    EXPECT_EQ(item.insbase().y, 2.0);
    STRUCT_HOLE_PART_ROW row;
    ASSERT_TRUE(CSuiteMainLib::ReadRow(m_dir / L"local\\Data\\TzMainLib.mdb", L"改.dwg", row));
    EXPECT_EQ(row.nFlag, 1);
    EXPECT_TRUE(m_pView->m_bVisible);
}

namespace {

// The layout library's dialogs, driven directly over a state of their own.
class LayoutItemTest : public ItemEditTest {
protected:
    ~LayoutItemTest() override {
        DestroyModelessWindow(m_state.pBlockDlg);
        DestroyModelessWindow(m_state.pSaveDlg);
    }
    std::wstring LayoutRoot() const { return m_dir / L"local\\LaySketch\\"; }
    CLibState m_state;
};

} // namespace

TEST_F(LayoutItemTest, DialogsDifferAsTheTwoLibrariesDo) {
    struct ROW {
        ITEM_DIALOG_TEMPLATE tmpl;
        int nTemplate;
        const wchar_t* pszTitle;
        const wchar_t* pszHint;
        bool bRecord;
        bool bIcons;
    };
    const ROW rows[] = {
        {EntryDialogTemplate(LibraryKind::Hole), 104, L"开孔图新建", L"", true, false},
        {EntryDialogTemplate(LibraryKind::Layout), 405, L"图形入库",
         L"提示: 图形编辑结束后,单击“确定”并框选图形即可入库", false, true},
        {SaveDialogTemplate(LibraryKind::Hole), 408, L"开孔图修改", L"", true, false},
        {SaveDialogTemplate(LibraryKind::Layout), 407, L"保存修改",
         L"提示: 图形编辑结束后,单击“确定”保存修改", false, true},
    };
    for (const ROW& row : rows) {
        EXPECT_EQ(row.tmpl.nTemplate, row.nTemplate);
        EXPECT_STREQ(row.tmpl.pszTitle, row.pszTitle);
        EXPECT_STREQ(row.tmpl.pszHint, row.pszHint);
        EXPECT_EQ(row.tmpl.nName != 0 && row.tmpl.nModel != 0 && row.tmpl.nCode != 0, row.bRecord)
            << row.nTemplate;
        EXPECT_EQ(row.tmpl.bIconButtons, row.bIcons) << row.nTemplate;
    }
}

TEST_F(LayoutItemTest, NewLayoutItemHasNoRecordAndNoPartsDatabaseRow) {
    DrawSchematic();
    m_state.strDwgFile = LayoutRoot() + L"面板.dwg";
    auto* pDlg = new CLSBlockDlg(m_state, nullptr, MakeItemDialogView());
    m_state.pBlockDlg = pDlg;
    ASSERT_TRUE(pDlg->Create());
    EXPECT_TRUE(pDlg->PreTranslateMessage(true));
    m_host.Feed({L"-5,-5", L"20,10"});
    pDlg->OnOK();
    EXPECT_EQ(m_state.pBlockDlg, nullptr);
    EXPECT_NE(AllPosted().find(L"(Command)\nLaySketchMakeSld\n"), std::wstring::npos);
    AcDbDatabase item(false, true);
    ASSERT_TRUE(ReadDrawing(LayoutRoot() + L"面板.dwg", item));
    CStringArray pairs;
    EXPECT_FALSE(ReadRecommendedPairs(&item, pairs));
    EXPECT_FALSE(FsExists(m_dir / L"local\\Data\\TzMainLib.mdb"));
}

TEST_F(LayoutItemTest, LayoutModifyKeepsTheModeAndGivesTheFocusToTheDrawing) {
    std::wstring strItem = LayoutRoot() + L"柜.dwg";
    WriteEmptyDrawing(strItem);
    m_state.strRoot = m_host.m_strLocal;
    m_state.g_nFtpMode = 2; // read-only: only the layout browser's command changes it
    auto pView = std::make_unique<CRecordingLibView>();
    CRecordingLibView& view = *pView;
    CLaySketchLibDlg browser(m_state, nullptr, std::move(pView));
    m_state.pLibDlg = &browser;
    ASSERT_TRUE(browser.Create());
    browser.ReloadList();
    browser.SelectListItem(L"柜.dwg");
    browser.OnBtnModify();
    EXPECT_EQ(m_state.g_nFtpMode, 2);
    ASSERT_NE(m_state.pSaveDlg, nullptr);
    CRecordingItemView& save = *CRecordingItemView::s_pLast;
    EXPECT_EQ(save.m_tmpl.nTemplate, 407);
    EXPECT_TRUE(save.m_strLog.ends_with(L"frame;"));
    EXPECT_NE(AllPosted().find(L"(Command)\nLaySketchOpen\n"), std::wstring::npos);
    EXPECT_FALSE(view.m_bVisible);

    // Its Cancel needs no idle editor: it closes the drawing unsaved.
    save.m_pDlg->OnCancel();
    EXPECT_EQ(m_state.pSaveDlg, nullptr);
    EXPECT_FALSE(IsDocumentOpen(strItem));
    EXPECT_TRUE(view.m_bVisible);
    m_state.pLibDlg = nullptr;
}

namespace {

// Two workstations of one site; the hole browser runs on workstation 0 in mode 1.
class SharedItemEditTest : public ItemEditTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_site.Started());
        for (const wchar_t* pszDir : {L"InstallHole", L"LaySketch", L"Data"})
            FsCreateDirectory(m_site.SitePath(pszDir));
        m_site.On(0);
        m_host.m_strCommonRes = m_host.m_strLocal;
        for (int i = 0; i < 2; ++i)
            for (const wchar_t* pszDir : {L"InstallHole", L"LaySketch", L"Data", L"Temp"})
                CreateDirPath(m_site.Install(i, pszDir));
        std::wstring strItem = m_site.Install(0, L"InstallHole\\板.dwg");
        WriteEmptyDrawing(strItem);
        m_site.PutOnSite(L"InstallHole\\板.dwg", ReadBytes(strItem));
        m_host.m_nInstallStyle = 1;
        g_HoleLib.g_nFtpMode = 1;
    }
    std::wstring SiteName(const std::wstring& strRel) {
        AcDbDatabase db(false, true);
        CStringArray pairs;
        if (db.readDwgFile(m_site.SitePath(strRel).c_str()) != Acad::eOk)
            return L"?";
        ReadRecommendedPairs(&db, pairs);
        return FindPairValue(pairs, L"推荐名称");
    }
    CRecordingItemView& CheckOutOnA() {
        Open(&m_site.On(0));
        m_pDlg->ReloadList();
        m_pDlg->SelectListItem(L"板.dwg");
        m_pDlg->OnBtnModify();
        EXPECT_NE(g_HoleLib.pSaveDlg, nullptr);
        return *CRecordingItemView::s_pLast;
    }

    CFixedVersionClock m_clock;
    CCountingSleep m_sleep;
    CSharedSite m_site{m_host, 2};
};

} // namespace

TEST_F(SharedItemEditTest, CheckedOutItemIsRefusedElsewhereAndReachesTheOtherWorkstation) {
    CRecordingItemView& save = CheckOutOnA();
    EXPECT_TRUE(m_site.OnSite(L"InstallHole\\板.dwg.bak"));
    EXPECT_GT(m_site.m_recorder.Count(L"GetFile InstallHole\\板.dwg"), 0); // downloaded
    EXPECT_EQ(g_HoleLib.strSelItem, L"板.dwg");

    // B asks for the same item and is told who holds it; it declines.
    m_host.m_answers = {IDNO};
    EXPECT_FALSE(m_site.On(1).CheckOutFile(m_site.Install(1, L"InstallHole\\板.dwg"),
                                           L"InstallHole\\", L"板.dwg"));
    ASSERT_FALSE(m_host.m_boxes.empty());
    EXPECT_NE(m_host.m_boxes.back().strText.find(CSharedSite::HostId(0)), std::wstring::npos);
    m_site.Use(0);

    save.m_texts[605] = L"控制板";
    save.m_pDlg->OnOK();
    EXPECT_EQ(g_HoleLib.pSaveDlg, nullptr);
    EXPECT_FALSE(m_site.OnSite(L"InstallHole\\板.dwg.bak"));
    EXPECT_TRUE(m_site.OnSite(L"InstallHole\\板.sld"));
    EXPECT_EQ(SiteName(L"InstallHole\\板.dwg"), L"控制板");
    STRUCT_HOLE_PART_ROW row;
    ASSERT_TRUE(CSuiteMainLib::ReadRow(m_site.SitePath(L"Data\\TzMainLib.mdb"), L"板.dwg", row));
    EXPECT_EQ(row.strName, L"控制板");
    EXPECT_FALSE(m_site.OnSite(L"Data\\TzMainLib.mdb.bak"));

    // B's update brings A's drawing.
    std::wstring strB = m_site.Install(1, L"InstallHole\\板.dwg");
    ASSERT_TRUE(m_site.On(1).DownloadFile(L"InstallHole\\板.dwg", strB));
    EXPECT_EQ(ReadBytes(strB), m_site.SiteBytes(L"InstallHole\\板.dwg"));
}

TEST_F(SharedItemEditTest, BrokenLockStaysWithItsNewHolder) {
    CRecordingItemView& save = CheckOutOnA();
    m_host.m_answers = {IDYES}; // B takes the item over
    ASSERT_TRUE(m_site.On(1).CheckOutFile(m_site.Install(1, L"InstallHole\\板.dwg"),
                                          L"InstallHole\\", L"板.dwg"));
    m_site.Use(0);
    save.m_pDlg->OnCancel();
    EXPECT_EQ(g_HoleLib.pSaveDlg, nullptr);
    EXPECT_TRUE(m_site.OnSite(L"InstallHole\\板.dwg.bak")); // B's lock is not A's to remove
    EXPECT_NE(m_site.SiteBytes(L"InstallHole\\板.dwg.bak").find("WS2"), std::string::npos);
    EXPECT_EQ(m_host.m_editor.m_docs.documentCount(), 1); // A's copy closed unsaved
}

TEST_F(SharedItemEditTest, LayoutSaveFindsItsLockRevokedAndLeavesTheSiteAlone) {
    std::wstring strItem = m_site.Install(0, L"LaySketch\\屏.dwg");
    WriteEmptyDrawing(strItem);
    m_site.PutOnSite(L"LaySketch\\屏.dwg", ReadBytes(strItem));
    std::string before = m_site.SiteBytes(L"LaySketch\\屏.dwg");
    CLibState state;
    state.g_nFtpMode = 1;
    state.strRelDir = L"LaySketch\\";
    state.strSelItem = L"屏.dwg";
    state.strWorkingFile = strItem;
    ASSERT_TRUE(m_site.On(0).CheckOutFile(strItem, L"LaySketch\\", L"屏.dwg"));
    ASSERT_TRUE(OpenOrActivate(strItem, true));
    auto* pDlg = new CLSFileSaveDlg(state, &m_site.On(0), MakeItemDialogView());
    state.pSaveDlg = pDlg;
    ASSERT_TRUE(pDlg->Create());
    EXPECT_FALSE(pDlg->PreTranslateMessage(true)); // Esc is Cancel here

    FsDeleteFile(m_site.SitePath(L"LaySketch\\屏.dwg.bak")); // forced away by another user
    pDlg->OnOK();
    EXPECT_EQ(state.pSaveDlg, nullptr);
    ASSERT_FALSE(m_host.m_boxes.empty());
    EXPECT_EQ(m_host.m_boxes.back().strText,
              L"文件<LaySketch\\屏.dwg>的库修改作已被强制撤销，无法入库...");
    EXPECT_EQ(m_site.SiteBytes(L"LaySketch\\屏.dwg"), before);
    EXPECT_FALSE(IsDocumentOpen(strItem));
}

TEST_F(SharedItemEditTest, NewItemOverAnExistingOneKeepsItUntilTheCommitAndHandsOverTheRecord) {
    DrawSchematic();
    Open(&m_site.On(0));
    std::string before = ReadBytes(m_site.Install(0, L"InstallHole\\板.dwg"));
    m_host.m_answers = {IDYES};
    CRecordingItemView& entry = StartNew(L"板");
    EXPECT_EQ(ReadBytes(m_site.Install(0, L"InstallHole\\板.dwg")), before); // not deleted
    EXPECT_EQ(g_HoleLib.strWorkingFile, m_site.Install(0, L"InstallHole\\板.dwg"));

    entry.m_texts[611] = L"共享孔";
    m_host.Feed({L"-5,-5", L"20,10"});
    entry.m_pDlg->OnOK();
    EXPECT_EQ(g_HoleLib.g_nFtpMode, 1);
    EXPECT_EQ(g_HoleLib.strDwgFile, g_HoleLib.strWorkingFile);
    EXPECT_NE(AllPosted().find(L"(Command)\nMakeSld\n"), std::wstring::npos);
    STRUCT_HOLE_PART_ROW row;
    ASSERT_TRUE(CSuiteMainLib::ReadRow(m_site.SitePath(L"Data\\TzMainLib.mdb"), L"板.dwg", row));
    EXPECT_EQ(row.strName + L"|" + row.strModel, L"共享孔|板");
    EXPECT_EQ(row.nFlag, 0);
    EXPECT_FALSE(m_site.OnSite(L"Data\\TzMainLib.mdb.bak"));
    EXPECT_FALSE(m_site.OnSite(L"InstallHole\\板.dwg.bak"));
    EXPECT_EQ(m_host.m_boxes.size(), 1u); // only the question about the existing file
    // The drawing itself reaches the site with the slide, after this run.
    EXPECT_EQ(m_site.SiteBytes(L"InstallHole\\板.dwg"), before);
}

TEST_F(SharedItemEditTest, LostServerTurnsTheNewItemIntoALocalOne) {
    DrawSchematic();
    Open(&m_site.On(0));
    CRecordingItemView& entry = StartNew(L"离线");
    m_site.m_server.Stop();
    m_host.Feed({L"-5,-5", L"20,10"});
    entry.m_pDlg->OnOK();
    EXPECT_EQ(g_HoleLib.g_nFtpMode, 0);
    ASSERT_FALSE(m_host.m_boxes.empty());
    EXPECT_EQ(m_host.m_boxes[0].strText, L"\n网络无连接,请检查网络连接后再重试!");
    EXPECT_EQ(m_host.m_boxes[0].nFlags, 16u);
    EXPECT_EQ(g_HoleLib.strDwgFile, m_site.Install(0, L"InstallHole\\离线.dwg"));
    EXPECT_TRUE(FsExists(g_HoleLib.strDwgFile));
    STRUCT_HOLE_PART_ROW row;
    EXPECT_TRUE(
        CSuiteMainLib::ReadRow(m_site.Install(0, L"Data\\TzMainLib.mdb"), L"离线.dwg", row));
}

TEST_F(SharedItemEditTest, SaveRefusedWhileACommandRunsOrAnotherDrawingIsCurrent) {
    CRecordingItemView& save = CheckOutOnA();
    CItemDialog* pDlg = save.m_pDlg;
    static CItemDialog* s_pDlg = nullptr;
    s_pDlg = pDlg;
    acedRegCmds()->AddCommand(L"QmTest", L"SAVEWHILE", L"SAVEWHILE", ACRX_CMD_MODAL,
                              [] { s_pDlg->OnOK(); });
    m_host.Run({L"SAVEWHILE"});
    ASSERT_FALSE(m_host.m_boxes.empty());
    EXPECT_EQ(m_host.m_boxes.back().strText, L"请结束当前执行命令SAVEWHILE！");
    EXPECT_NE(g_HoleLib.pSaveDlg, nullptr); // the dialog stays
    EXPECT_TRUE(m_site.OnSite(L"InstallHole\\板.dwg.bak"));
    acedRegCmds()->RemoveGroup(L"QmTest");

    // Another drawing made current: the dialog goes and the lock stays for a later edit.
    m_host.m_editor.m_docs.NewDocument();
    pDlg->OnOK();
    EXPECT_EQ(g_HoleLib.pSaveDlg, nullptr);
    EXPECT_EQ(m_host.m_boxes.back().strText,
              L"文件 " + g_HoleLib.strWorkingFile + L" 不是当前文档，请选择或打开该文件后继续操作");
    EXPECT_TRUE(m_pView->m_bVisible);
    EXPECT_TRUE(m_site.OnSite(L"InstallHole\\板.dwg.bak"));
}

TEST_F(SharedItemEditTest, LayoutSaveCommitsItsCopyAndOffersRetryWhenTheSiteFails) {
    std::wstring strItem = m_site.Install(0, L"LaySketch\\屏.dwg");
    WriteEmptyDrawing(strItem);
    m_site.PutOnSite(L"LaySketch\\屏.dwg", ReadBytes(strItem));
    CLibState state;
    state.g_nFtpMode = 1;
    state.strRelDir = L"LaySketch\\";
    state.strSelItem = L"屏.dwg";
    state.strWorkingFile = strItem;
    auto edit = [&] {
        EXPECT_TRUE(m_site.On(0).CheckOutFile(strItem, L"LaySketch\\", L"屏.dwg"));
        EXPECT_TRUE(OpenOrActivate(strItem, true));
        auto* pDlg = new CLSFileSaveDlg(state, &m_site.On(0), MakeItemDialogView());
        state.pSaveDlg = pDlg;
        EXPECT_TRUE(pDlg->Create());
        CRecordingItemView& view = *CRecordingItemView::s_pLast;
        view.m_texts[608] = L"7";
        view.m_texts[609] = L"8";
        return pDlg;
    };
    edit()->OnOK();
    EXPECT_EQ(state.pSaveDlg, nullptr);
    AcDbDatabase site(false, true);
    ASSERT_EQ(site.readDwgFile(m_site.SitePath(L"LaySketch\\屏.dwg").c_str()), Acad::eOk);
    EXPECT_EQ(site.insbase().x, 7.0);
    CStringArray pairs;
    EXPECT_FALSE(ReadRecommendedPairs(&site, pairs)); // a layout item has no record
    EXPECT_FALSE(m_site.OnSite(L"LaySketch\\屏.dwg.bak"));
    EXPECT_FALSE(FsExists(m_site.Install(0, L"Temp\\屏.dwg")));
    EXPECT_TRUE(FsIsDirectory(m_site.Install(0, L"TempFTP")));
    EXPECT_TRUE(m_host.m_boxes.empty());

    // The site goes away during the next edit: two failed commits, then the user gives up.
    CLSFileSaveDlg* pDlg = edit();
    m_site.m_server.Stop();
    m_host.m_answers = {IDRETRY, IDCANCEL};
    pDlg->OnOK();
    int nRetryBoxes = 0;
    for (const TEST_BOX& box : m_host.m_boxes)
        if (box.strText == L"库文件LaySketch\\屏.dwg保存失败，是否重试？" && box.nFlags == 53u)
            ++nRetryBoxes;
    EXPECT_EQ(nRetryBoxes, 2);
    EXPECT_EQ(state.pSaveDlg, nullptr);
    AcDbDatabase local(false, true);
    ASSERT_EQ(local.readDwgFile(strItem.c_str()), Acad::eOk); // the work is kept locally
    EXPECT_EQ(local.insbase().y, 8.0);
}

TEST_F(SharedItemEditTest, ItemAlreadyOpenIsActivatedWithoutADownload) {
    std::wstring strItem = m_site.Install(0, L"InstallHole\\板.dwg");
    Open(&m_site.On(0));
    ASSERT_TRUE(OpenOrActivate(strItem, true));
    m_host.m_editor.m_docs.NewDocument(); // another drawing in front
    m_pDlg->ReloadList();
    m_pDlg->SelectListItem(L"板.dwg");
    int nGets = m_site.m_recorder.Count(L"GetFile InstallHole");
    m_pDlg->OnBtnModify();
    EXPECT_EQ(m_site.m_recorder.Count(L"GetFile InstallHole"), nGets);
    EXPECT_FALSE(m_site.OnSite(L"InstallHole\\板.dwg.bak"));
    EXPECT_TRUE(EqualsNoCase(acDocManagerPtr()->mdiActiveDocument()->fileName(), strItem));
    EXPECT_EQ(m_host.m_editor.m_docs.documentCount(), 3);
}
