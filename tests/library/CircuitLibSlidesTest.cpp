// The browser's enlarged preview and batch run of slides on real drawings, locally and on a site.
#include "LibraryBrowserFixture.h"
#include "SharedSite.h"
#include "SlideFixtures.h"

#include "FixedVersionClock.h"
#include "app/DocumentServices.h"
#include "app/EditorServices.h"
#include "base/FileSystem.h"
#include "base/Format.h"
#include "host/HostUi.h"

#include <algorithm>

namespace {

class CircuitLibSlidesTest : public CLibraryBrowserTest {
protected:
    CircuitLibSlidesTest() { SetIntVar(L"ISAVEBAK", 0); }
    // Real drawings named 1.dwg .. n.dwg, each twice as wide as high.
    void AddDrawings(const std::wstring& strSubDir, int nCount) {
        CreateDirPath(HoleRoot() + strSubDir);
        for (int i = 1; i <= nCount; ++i)
            WriteRectDrawing(HoleRoot() + strSubDir + Format(L"%d.dwg", i), 0, 0, 20.0 * i,
                             10.0 * i);
    }
    std::wstring Path(const std::wstring& strRel) const { return HoleRoot() + strRel; }
    int Documents() const { return GetDocumentCount(); }
    void Select(int nIndex) { m_pDlg->OnItemchangedList({nIndex}); }
    int SlidesIn(const std::wstring& strDir) const {
        CStringArray files;
        CollectFiles(HoleRoot() + strDir, L"sld", files, true);
        return static_cast<int>(files.size());
    }
    // Everything in the directory that is neither a drawing nor a slide.
    CStringArray Strays(const std::wstring& strDir) const {
        CStringArray files, strays;
        CollectFiles(HoleRoot() + strDir, L"*.*", files, true);
        for (const std::wstring& f : files)
            if (!EqualsNoCase(GetFileExt(f), L"dwg") && !EqualsNoCase(GetFileExt(f), L"sld"))
                strays.push_back(f);
        return strays;
    }

    CRecordingZoomInScope m_zoom;
    CRecordingBatchScope m_batch;
};

} // namespace

TEST_F(CircuitLibSlidesTest, EnlargeAsksForACellWhenNoneIsSelected) {
    AddItems(L"按钮\\", {L"1.dwg", L"2.dwg"});
    AddNumberedItems(L"按钮\\", 17);
    SetLastDir(L"按钮");
    Open();
    m_pDlg->OnVScroll(SB_PAGEDOWN, 0); // a page turn leaves the item selected but no cell
    m_pDlg->OnCommand(IDC_BTN_ENLARGE);
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText, L"请重新选择需放大查看的文件或缩微图");
    EXPECT_EQ(m_host.m_boxes[0].nFlags, static_cast<unsigned>(MB_ICONINFORMATION));
    EXPECT_TRUE(CRecordingZoomInView::s_shown.empty());
}

// The item lies two directories deep with blanks in their names: its path
// goes through the LISP reader with every backslash doubled.
TEST_F(CircuitLibSlidesTest, EnlargeMakesAMissingSlideThroughTheEditorAndThenShowsIt) {
    AddDrawings(L"按钮 A\\sub dir\\", 1);
    WriteBytes(Path(L"按钮 A\\sub dir\\1.bak"), "old backup");
    SetLastDir(L"按钮 A");
    Open();
    ASSERT_EQ(m_pView->m_list, CStringArray{L"sub dir\\1.dwg"});
    Select(0);
    m_pDlg->OnSlideRButtonDown(0);
    std::wstring strSlide = Path(L"按钮 A\\sub dir\\1.sld");
    EXPECT_TRUE(ReadSlideBounds(strSlide).bRead);
    EXPECT_EQ(CRecordingZoomInView::s_shown, std::vector<std::wstring>{strSlide});
    EXPECT_EQ(Strays(L"按钮 A\\"), CStringArray{}); // the backup went, no odd names came
    EXPECT_EQ(Documents(), 1);
    EXPECT_FALSE(IsDocumentOpen(Path(L"按钮 A\\sub dir\\1.dwg")));
    int nIsaveBak = -1;
    GetIntVar(L"ISAVEBAK", nIsaveBak);
    EXPECT_EQ(nIsaveBak, 0);
    EXPECT_EQ(m_pView->m_cells[0].strSlide, strSlide);

    // Now that the slide exists, the button shows it without opening anything.
    std::string bytes = ReadBytes(strSlide);
    m_pDlg->OnCommand(IDC_BTN_ENLARGE);
    EXPECT_EQ(CRecordingZoomInView::s_shown.size(), 2u);
    EXPECT_EQ(ReadBytes(strSlide), bytes);
}

TEST_F(CircuitLibSlidesTest, EnlargeLeavesADrawingTheUserHasOpenAsItWas) {
    AddDrawings(L"按钮\\", 1);
    SetLastDir(L"按钮");
    Open();
    ASSERT_NE(m_host.m_editor.m_docs.OpenDocument(Path(L"按钮\\1.dwg")), nullptr);
    Select(0);
    m_pDlg->OnCommand(IDC_BTN_ENLARGE);
    EXPECT_TRUE(ReadSlideBounds(Path(L"按钮\\1.sld")).bRead);
    EXPECT_TRUE(IsDocumentOpen(Path(L"按钮\\1.dwg")));
    EXPECT_EQ(Documents(), 2);
}

TEST_F(CircuitLibSlidesTest, ReadOnlyStyleEnlargeOfAnItemWithoutSlidePrintsOneLine) {
    AddDrawings(L"按钮\\", 1);
    SetLastDir(L"按钮");
    Open();
    m_host.m_nInstallStyle = 2;
    Select(0);
    m_host.m_strPrinted.clear();
    m_pDlg->OnCommand(IDC_BTN_ENLARGE);
    EXPECT_EQ(m_host.m_strPrinted, L"\n幻灯片文件" + Path(L"按钮\\1.dwg") + L"不存在,无法放大预览");
    EXPECT_TRUE(CRecordingZoomInView::s_shown.empty());
    EXPECT_FALSE(FsExists(Path(L"按钮\\1.sld")));
    EXPECT_EQ(Documents(), 1);
}

TEST_F(CircuitLibSlidesTest, BatchSlidesEveryItemOfTheBranchAndRaisesTheWindowAgain) {
    AddDrawings(L"按钮\\", 8);
    AddDrawings(L"按钮\\深\\", 4);
    WriteBytes(Path(L"按钮\\3.sld"), "stale slide");
    WriteBytes(Path(L"按钮\\3.bak"), "backup");
    SetLastDir(L"按钮");
    Open();
    m_host.m_answers = {IDYES};
    bool bHiddenDuringRun = false;
    CRecordingBatchView::s_onPump = [&](CDlgBatchSld&) {
        bHiddenDuringRun = !m_pView->m_bVisible && g_HoleLib.bBatchRunning;
    };
    m_pDlg->OnCommand(IDC_BTN_BATCH);
    EXPECT_TRUE(bHiddenDuringRun);
    EXPECT_EQ(SlidesIn(L"按钮\\"), 12);
    for (const wchar_t* p : {L"按钮\\3.sld", L"按钮\\深\\4.sld"}) {
        SLIDE_BOUNDS b = ReadSlideBounds(Path(p));
        ASSERT_TRUE(b.bRead) << WideToUtf8(p);
        EXPECT_NEAR(double(b.nMaxX - b.nMinX) / (b.nMaxY - b.nMinY), 2.0, 0.05);
    }
    EXPECT_EQ(Strays(L"按钮\\"), CStringArray{});
    EXPECT_TRUE(m_pView->m_bVisible);
    EXPECT_EQ(g_HoleLib.bBatchRunning, 0);
    EXPECT_EQ(Documents(), 1);
    EXPECT_EQ(CRecordingBatchView::s_nDestroyed, 1);
    EXPECT_NE(m_host.m_strPrinted.find(L"共12个图形, 已生成12个幻灯片文件。"), std::wstring::npos);
}

TEST_F(CircuitLibSlidesTest, BatchCancelledHalfWayKeepsTheSlidesMadeAndFinishesTheDrawingAtHand) {
    AddDrawings(L"按钮\\", 10);
    SetLastDir(L"按钮");
    Open();
    bool bOpenAtCancel = false;
    CRecordingBatchView::s_onPump = [&](CDlgBatchSld& dlg) {
        if (dlg.m_nDone == 4 && !dlg.m_bCancelled) {
            dlg.OnCancel(); // while item 5 is being made
            bOpenAtCancel = Documents() == 2;
        }
    };
    m_pDlg->OnCommand(IDC_BTN_BATCH);
    EXPECT_FALSE(bOpenAtCancel); // pumps come between drawings
    EXPECT_EQ(SlidesIn(L"按钮\\"), 4);
    for (int i = 1; i <= 4; ++i)
        EXPECT_TRUE(ReadSlideBounds(Path(Format(L"按钮\\%d.sld", i))).bRead) << i;
    EXPECT_EQ(Strays(L"按钮\\"), CStringArray{});
    EXPECT_FALSE(CRecordingBatchView::s_bCancelEnabled);
    EXPECT_EQ(g_HoleLib.bBatchAbort, 0);
    EXPECT_TRUE(m_pView->m_bVisible);
    EXPECT_NE(m_host.m_strPrinted.find(L"已生成4个幻灯片文件, 已终止"), std::wstring::npos);
}

// A slide that cannot be written is reported and the run goes on; a drawing
// that cannot be read ends it at once.
TEST_F(CircuitLibSlidesTest, BatchNamesEveryItemLeftWithoutASlideAndEndsAtAnUnreadableDrawing) {
    AddDrawings(L"按钮\\", 4);
    CreateDirPath(Path(L"按钮\\1.sld")); // a directory where the slide should go
    WriteBytes(Path(L"按钮\\3.dwg"), "not a drawing");
    SetLastDir(L"按钮");
    Open();
    m_pDlg->OnCommand(IDC_BTN_BATCH);
    EXPECT_TRUE(FsIsDirectory(Path(L"按钮\\1.sld")));
    EXPECT_TRUE(ReadSlideBounds(Path(L"按钮\\2.sld")).bRead);
    EXPECT_FALSE(FsExists(Path(L"按钮\\3.sld")));
    EXPECT_FALSE(FsExists(Path(L"按钮\\4.sld")));
    EXPECT_FALSE(m_pView->m_bVisible); // until a command raises it
    EXPECT_EQ(g_HoleLib.bBatchRunning, 0);
    EXPECT_EQ(Documents(), 1);
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    const std::wstring& strSummary = m_host.m_boxes[0].strText;
    EXPECT_NE(strSummary.find(L"已生成1个幻灯片文件, 2个失败:"), std::wstring::npos);
    EXPECT_NE(strSummary.find(L"\n1.dwg: 幻灯片文件未能写入"), std::wstring::npos);
    EXPECT_NE(strSummary.find(L"\n3.dwg: 无法读取图形"), std::wstring::npos);
}

namespace {

// Workstation 0 runs the browser in the shared mode; workstation 1 updates afterwards.
class SharedSlidesTest : public CircuitLibSlidesTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_site.Started());
        m_site.On(0);
        m_host.m_strCommonRes = m_host.m_strLocal;
        m_host.m_nInstallStyle = 1;
        g_HoleLib.g_nFtpMode = 1;
        ASSERT_TRUE(m_site.On(0).CommitNewDir(L"InstallHole\\批量\\", L""));
        CreateDirPath(m_site.Install(0, L"InstallHole\\批量"));
        for (int i = 1; i <= 20; ++i) {
            std::wstring strRel = Format(L"InstallHole\\批量\\%d.dwg", i);
            WriteRectDrawing(m_site.Install(0, strRel), 0, 0, 10.0 * i, 5.0 * i);
            m_site.PutOnSite(strRel, ReadBytes(m_site.Install(0, strRel)));
        }
        CreateDirPath(m_site.Install(0, L"LocalData"));
        SetLastDir(L"批量");
    }
    CFixedVersionClock m_clock;
    CCountingSleep m_sleep;
    CSharedSite m_site{m_host, 2};
};

} // namespace

TEST_F(SharedSlidesTest, BatchCommitsEverySlideAndTheOtherWorkstationGetsThemOnItsUpdate) {
    g_HoleLib.strRoot = m_host.m_strCommonRes;
    auto pView = std::make_unique<CRecordingLibView>();
    CRecordingLibView& view = *pView;
    m_pDlg = new CCircuitLibDlg(g_HoleLib, &m_site.On(0), std::move(pView));
    g_HoleLib.pLibDlg = m_pDlg;
    ASSERT_TRUE(m_pDlg->Create());
    ASSERT_EQ(g_HoleLib.g_nFtpMode, 1);
    ASSERT_EQ(view.m_list.size(), 20u);
    m_host.m_answers = {IDYES};
    m_pDlg->OnCommand(IDC_BTN_BATCH);
    CStringArray records = m_site.SiteLines(L"Server.xml");
    for (int i = 1; i <= 20; ++i) {
        std::wstring strRel = Format(L"InstallHole\\批量\\%d.sld", i);
        EXPECT_TRUE(ReadSlideBounds(m_site.SitePath(strRel)).bRead) << i;
        EXPECT_TRUE(std::any_of(records.begin(), records.end(), [&](const std::wstring& s) {
            return s.rfind(strRel + L"|", 0) == 0;
        })) << i;
    }
    EXPECT_TRUE(m_host.m_boxes.size() == 1u); // the question only

    bool bMainLib = false;
    CMyFtpConnection& other = m_site.On(1);
    ASSERT_TRUE(other.Connect());
    EXPECT_TRUE(other.CheckServerUpdate(bMainLib));
    ASSERT_TRUE(other.DownloadDir(L"InstallHole\\", m_site.Install(1, L"InstallHole\\")));
    EXPECT_EQ(ReadBytes(m_site.Install(1, L"InstallHole\\批量\\20.sld")),
              m_site.SiteBytes(L"InstallHole\\批量\\20.sld"));
}

TEST_F(SharedSlidesTest, EnlargeFetchesTheDrawingAndCommitsTheSlideItMade) {
    std::wstring strLocal = m_site.Install(0, L"InstallHole\\批量\\1.dwg");
    WriteBytes(strLocal, "stale local copy"); // the site's drawing is fetched over it
    Open(&m_site.On(0));
    Select(0);
    m_pDlg->OnCommand(IDC_BTN_ENLARGE);
    std::wstring strSlide = m_site.Install(0, L"InstallHole\\批量\\1.sld");
    EXPECT_EQ(CRecordingZoomInView::s_shown, std::vector<std::wstring>{strSlide});
    EXPECT_EQ(ReadBytes(strLocal), m_site.SiteBytes(L"InstallHole\\批量\\1.dwg"));
    EXPECT_EQ(m_site.SiteBytes(L"InstallHole\\批量\\1.sld"), ReadBytes(strSlide));
    EXPECT_EQ(Documents(), 1);
}
