// The slide commands on real drawings of the reference editor: make, show, open, close, preview.
#include "LibraryBrowserFixture.h"
#include "SharedSite.h"
#include "SlideFixtures.h"

#include "FixedVersionClock.h"
#include "app/DocumentServices.h"
#include "app/EditorServices.h"
#include "base/FileSystem.h"
#include "library/SlideCommands.h"

#include <algorithm>
#include <cstdlib>

namespace {

class SlideCommandsTest : public CLibraryBrowserTest {
protected:
    SlideCommandsTest() {
        s_nManaged = 0;
        CreateDirPath(HoleRoot() + L"按钮");
        SetIntVar(L"ISAVEBAK", 0);
        SetIntVar(L"CMDECHO", 3);
    }
    ~SlideCommandsTest() override { g_HoleLib.pLibDlg = nullptr; }
    std::wstring Item(const std::wstring& strName) const {
        return HoleRoot() + L"按钮\\" + strName;
    }
    // Opens the drawing zoomed in on its middle, as a person may leave it.
    bool Open(const std::wstring& strPath) {
        return m_host.m_editor.m_docs.OpenDocument(strPath) != nullptr &&
               m_host.m_editor.Command({L"ZOOM", L"4"}) == RTNORM;
    }
    int Var(const wchar_t* pszName) {
        int nValue = -1;
        GetIntVar(pszName, nValue);
        return nValue;
    }
    static void Manage() { ++s_nManaged; }
    SLIDE_LIBRARY Lib(CMyFtpConnection* pFtp = nullptr) { return {g_HoleLib, pFtp, &Manage}; }

    static inline int s_nManaged = 0;
    CRecordingZoomInScope m_zoom;
    CFakeBrowser m_browser;
};

// The slide shows the drawing zoomed to its extents: a 2:1 box fills the
// width of the 4:3 screen less the editor's margin, centred.
void ExpectExtentsFillTheSlide(const std::wstring& strSlide, double dAspect) {
    SLIDE_BOUNDS b = ReadSlideBounds(strSlide);
    ASSERT_TRUE(b.bRead) << "no slide at " << WideToUtf8(strSlide);
    double w = b.nMaxX - b.nMinX, h = b.nMaxY - b.nMinY;
    EXPECT_NEAR(w / h, dAspect, 0.05);
    EXPECT_NEAR((b.nMinX + b.nMaxX) / 2.0, b.nHighX / 2.0, 2.0);
    EXPECT_NEAR((b.nMinY + b.nMaxY) / 2.0, b.nHighY / 2.0, 2.0);
    EXPECT_NEAR(w, b.nHighX / 1.02, 3.0);
}

} // namespace

TEST_F(SlideCommandsTest, NewItemGetsASlideOfItsExtentsIsSavedWithABackupAndClosed) {
    WriteRectDrawing(Item(L"10x5.dwg"), 100, 50, 200, 100);
    ASSERT_TRUE(Open(Item(L"10x5.dwg")));
    g_HoleLib.pLibDlg = &m_browser;
    g_HoleLib.strDwgFile = Item(L"10x5.dwg");
    g_HoleLib.strSelItem = L"10x5.dwg";
    g_HoleLib.bNewPending = 1;
    MakeSld(Lib());

    ExpectExtentsFillTheSlide(Item(L"10x5.sld"), 2.0);
    EXPECT_FALSE(IsDocumentOpen(Item(L"10x5.dwg")));
    EXPECT_TRUE(FsExists(Item(L"10x5.bak"))); // the save keeps the host's backup
    AcDbDatabase db(false, true);
    EXPECT_EQ(db.readDwgFile(Item(L"10x5.dwg").c_str()), Acad::eOk);
    EXPECT_EQ(Var(L"CMDECHO"), 3);
    EXPECT_EQ(Var(L"ISAVEBAK"), 0);
    EXPECT_EQ(g_HoleLib.bNewPending, 0);
    EXPECT_TRUE(g_HoleLib.strDwgFile.empty());
    EXPECT_NE(m_browser.m_strLog.find(L"reload;select 10x5.dwg;"), std::wstring::npos);
    EXPECT_TRUE(CRecordingZoomInView::s_shown.empty());
}

TEST_F(SlideCommandsTest, AnItemNotOpenGoesBackToTheBrowserOrStartsIt) {
    WriteRectDrawing(Item(L"a.dwg"), 0, 0, 10, 10);
    // A command runs in its document: it cannot open another drawing there.
    g_HoleLib.strDwgFile = Item(L"a.dwg");
    MakeSld(Lib());
    EXPECT_EQ(s_nManaged, 1);
    EXPECT_TRUE(g_HoleLib.strDwgFile.empty());
    EXPECT_FALSE(FsExists(Item(L"a.sld")));
    m_browser.m_bIconic = true;
    g_HoleLib.pLibDlg = &m_browser;
    ShowSld(Lib());
    EXPECT_EQ(m_browser.m_strLog, L"restore;");
    EXPECT_EQ(s_nManaged, 1);
}

TEST_F(SlideCommandsTest, ClosingTheLastDrawingLeavesANewOne) {
    CDocManager& docs = m_host.m_editor.m_docs;
    docs.CloseDocument(docs.curDocument());
    WriteRectDrawing(Item(L"b.dwg"), 0, 0, 30, 10);
    ASSERT_TRUE(Open(Item(L"b.dwg")));
    g_HoleLib.strDwgFile = Item(L"b.dwg");
    g_HoleLib.bNewPending = 1;
    MakeSld(Lib());
    ASSERT_EQ(docs.documentCount(), 1);
    EXPECT_EQ(docs.curDocument()->fileName().find(L'\\'), std::wstring::npos); // untitled
    ExpectExtentsFillTheSlide(Item(L"b.sld"), 3.0);
}

TEST_F(SlideCommandsTest, ShowSldMakesAMissingSlideFromTheCurrentDrawingOnly) {
    WriteRectDrawing(Item(L"c.dwg"), 0, 0, 40, 20);
    ASSERT_TRUE(Open(Item(L"c.dwg")));
    g_HoleLib.strDwgFile = Item(L"c.dwg");
    ShowSld(Lib());
    EXPECT_EQ(CRecordingZoomInView::s_shown, std::vector<std::wstring>{Item(L"c.sld")});
    ExpectExtentsFillTheSlide(Item(L"c.sld"), 2.0);
    EXPECT_FALSE(IsDocumentOpen(Item(L"c.dwg")));
    EXPECT_TRUE(g_HoleLib.strDwgFile.empty());

    // With the slide at hand nothing is made, saved or closed.
    std::string slide = ReadBytes(Item(L"c.sld")), drawing = ReadBytes(Item(L"c.dwg"));
    FsDeleteFile(Item(L"c.bak"));
    ASSERT_TRUE(Open(Item(L"c.dwg")));
    g_HoleLib.strDwgFile = Item(L"c.dwg");
    ShowSld(Lib());
    EXPECT_EQ(CRecordingZoomInView::s_shown.size(), 2u);
    EXPECT_TRUE(IsDocumentOpen(Item(L"c.dwg")));
    EXPECT_EQ(ReadBytes(Item(L"c.sld")), slide);
    EXPECT_EQ(ReadBytes(Item(L"c.dwg")), drawing);
    EXPECT_FALSE(FsExists(Item(L"c.bak")));
}

TEST_F(SlideCommandsTest, OpenDwgSlidesWithoutSavingAndCloseDwgNeverDropsAnUnsavedDrawing) {
    WriteRectDrawing(Item(L"d.dwg"), 0, 0, 20, 10);
    std::string drawing = ReadBytes(Item(L"d.dwg"));
    ASSERT_TRUE(Open(Item(L"d.dwg")));
    m_host.m_editor.m_docs.activateDocument(m_host.m_editor.m_docs.documents().front());
    g_HoleLib.strDwgFile = Item(L"d.dwg");
    OpenDwg(g_HoleLib);
    ExpectExtentsFillTheSlide(Item(L"d.sld"), 2.0);
    EXPECT_TRUE(IsDocumentOpen(Item(L"d.dwg")));
    EXPECT_EQ(ReadBytes(Item(L"d.dwg")), drawing);
    EXPECT_EQ(Var(L"CMDECHO"), 3);

    // Without a path the save fails and the drawing stays open.
    g_HoleLib.strDwgFile.clear();
    CloseDwg(g_HoleLib);
    EXPECT_TRUE(IsDocumentOpen(Item(L"d.dwg")));
    EXPECT_NE(m_host.m_strPrinted.find(L"保存失败"), std::wstring::npos);

    g_HoleLib.strDwgFile = Item(L"e.dwg");
    CloseDwg(g_HoleLib);
    EXPECT_FALSE(IsDocumentOpen(Item(L"d.dwg")));
    AcDbDatabase db(false, true);
    EXPECT_EQ(db.readDwgFile(Item(L"e.dwg").c_str()), Acad::eOk);
}

TEST_F(SlideCommandsTest, ShowSldDlgShowsOnlyAnExistingSlide) {
    g_HoleLib.strDwgFile = Item(L"f.dwg");
    ShowSldDlg(g_HoleLib);
    EXPECT_TRUE(CRecordingZoomInView::s_shown.empty());
    EXPECT_EQ(g_HoleLib.strDwgFile, Item(L"f.dwg"));
    WriteBytes(Item(L"f.sld"), "slide");
    ShowSldDlg(g_HoleLib);
    EXPECT_EQ(CRecordingZoomInView::s_shown, std::vector<std::wstring>{Item(L"f.sld")});
    EXPECT_TRUE(g_HoleLib.strDwgFile.empty());
    m_browser.m_bIconic = true;
    g_HoleLib.pLibDlg = &m_browser;
    ShowSldDlg(g_HoleLib);
    EXPECT_EQ(m_browser.m_strLog, L"restore;");
}

namespace {

class SharedSlideCommandsTest : public SlideCommandsTest {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_site.Started());
        ASSERT_TRUE(m_site.On(0).CommitNewDir(L"InstallHole\\按钮\\", L""));
        CreateDirPath(m_site.Install(0, L"InstallHole\\按钮"));
        g_HoleLib.g_nFtpMode = 1;
        g_HoleLib.strRelDir = L"InstallHole\\按钮\\";
    }
    CFixedVersionClock m_clock;
    CCountingSleep m_sleep;
    CSharedSite m_site{m_host, 1};
};

} // namespace

TEST_F(SharedSlideCommandsTest, NewItemSendsItsSlideAndDrawingToTheSite) {
    std::wstring strWorking = m_site.Install(0, L"InstallHole\\按钮\\新图.dwg");
    WriteRectDrawing(strWorking, 0, 0, 60, 30);
    ASSERT_TRUE(Open(strWorking));
    g_HoleLib.strDwgFile = g_HoleLib.strWorkingFile = strWorking;
    g_HoleLib.bNewPending = 1;
    MakeSld(Lib(&m_site.On(0)));
    ExpectExtentsFillTheSlide(m_site.SitePath(L"InstallHole\\按钮\\新图.sld"), 2.0);
    EXPECT_EQ(m_site.SiteBytes(L"InstallHole\\按钮\\新图.dwg"), ReadBytes(strWorking));
    EXPECT_FALSE(FsExists(m_site.Install(0, L"Temp\\新图.dwg")));
    CStringArray records = m_site.SiteLines(L"Server.xml");
    for (const wchar_t* pszName : {L"新图.sld", L"新图.dwg"})
        EXPECT_TRUE(std::any_of(records.begin(), records.end(), [pszName](const std::wstring& s) {
            return s.rfind(std::wstring(L"InstallHole\\按钮\\") + pszName + L"|", 0) == 0;
        })) << WideToUtf8(pszName);
}

TEST_F(SharedSlideCommandsTest, ShowSldMakesTheSlideLocallyAndCommitsItUnderTheItemsName) {
    std::wstring strWorking = m_site.Install(0, L"InstallHole\\按钮\\旧图.dwg");
    WriteRectDrawing(strWorking, 0, 0, 30, 15);
    ASSERT_TRUE(Open(strWorking));
    g_HoleLib.strDwgFile = Item(L"旧图.dwg"); // the library's copy has no slide
    g_HoleLib.strWorkingFile = strWorking;
    g_HoleLib.strSelItem = L"旧图.dwg";
    ShowSld(Lib(&m_site.On(0)));
    std::wstring strLocal = m_site.Install(0, L"InstallHole\\按钮\\旧图.sld");
    EXPECT_EQ(CRecordingZoomInView::s_shown, std::vector<std::wstring>{strLocal});
    ExpectExtentsFillTheSlide(strLocal, 2.0);
    EXPECT_EQ(m_site.SiteBytes(L"InstallHole\\按钮\\旧图.sld"), ReadBytes(strLocal));
    EXPECT_FALSE(IsDocumentOpen(strWorking));
    EXPECT_FALSE(FsExists(Item(L"旧图.sld")));
}
