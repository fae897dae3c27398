// The browser in select mode without a window: preparing for a name, OK, Cancel, a vanished owner.
#include "LibraryBrowserFixture.h"

#include "base/FileSystem.h"
#include "settings/HistoryDataOprt.h"

#include <memory>
#include <vector>

namespace {

// The caller's window: what was posted to it, and whether it still exists.
struct OWNER_LOG {
    bool bAlive = true;
    std::vector<unsigned> posted;
};

class CRecordingOwner : public ILibSelectOwner {
public:
    explicit CRecordingOwner(OWNER_LOG& log) : m_log(log) {}
    bool IsWindow() const override { return m_log.bAlive; }
    void PostMessage(unsigned nMsg) override { m_log.posted.push_back(nMsg); }

private:
    OWNER_LOG& m_log;
};

class CircuitLibSelectTest : public CLibraryBrowserTest {
protected:
    void SetUp() override {
        AddItems(L"", {L"根部.dwg"});
        AddItems(L"按钮\\", {L"22mm按钮.dwg", L"急停按钮.dwg"});
        AddItems(L"按钮\\指示灯\\", {L"AD16.dwg"});
        AddItems(L"仪表\\", {L"96x96电流表.dwg"});
        SetLastDir(L"仪表");
    }
    CCircuitLibDlg& OpenSelecting(const std::wstring& strName) {
        CCircuitLibDlg& dlg = Open();
        dlg.SetSelectOwner(&m_log, std::make_unique<CRecordingOwner>(m_log));
        dlg.PrepareSelectMode(strName);
        return dlg;
    }
    std::wstring TreeSelText() { return m_pView->m_tree[m_pView->m_nTreeSel].strText; }
    std::wstring SelectedName() {
        return m_pView->m_selection.empty() ? L"" : m_pView->m_list[m_pView->m_selection[0]];
    }
    std::wstring HistoryDir() {
        std::wstring strDir;
        CHistoryDataOprt().GetText(7, strDir);
        return strDir;
    }

    OWNER_LOG m_log;
};

} // namespace

TEST_F(CircuitLibSelectTest, PreparesTheButtonsAndOpensTheDirectoryOfTheGivenName) {
    OpenSelecting(L"ad16.DWG"); // the name compares without regard to case
    for (int nId : {IDC_BTN_INSERT, IDC_BTN_NEW, IDC_BTN_MODIFY, IDC_BTN_DELETE, IDC_CHK_EXPLODE})
        EXPECT_FALSE(m_pView->m_shown.at(nId)) << nId;
    EXPECT_FALSE(m_pView->m_shown.count(IDC_BTN_RENAME));
    EXPECT_EQ(m_pView->m_text[IDC_BTN_RENAME], L"取消(&C)");
    EXPECT_EQ(m_pView->m_text[IDC_BTN_EXIT], L"确定(&O)");
    // A directory two levels down is found because the whole tree was expanded.
    EXPECT_EQ(TreeSelText(), L"指示灯");
    EXPECT_EQ(SelectedName(), L"AD16.dwg");
    EXPECT_EQ(m_pView->m_nVisible, m_pView->m_selection.at(0));
}

TEST_F(CircuitLibSelectTest, ANameAtTheRootSelectsTheRootAndAnUnknownNameSelectsNothing) {
    OpenSelecting(L"根部.dwg");
    EXPECT_EQ(m_pView->m_nTreeSel, m_pView->TreeItem(HoleRoot().substr(0, HoleRoot().size() - 1)));
    EXPECT_TRUE(m_pView->m_tree[m_pView->m_nTreeSel].bExpanded);
    EXPECT_EQ(SelectedName(), L"根部.dwg");
    m_pDlg->OnSelectCancel();
    m_log = OWNER_LOG();

    OpenSelecting(L"不存在.dwg");
    EXPECT_EQ(TreeSelText(), L"仪表"); // the browser's own default directory
    EXPECT_TRUE(m_pView->m_selection.empty());
    m_pDlg->OnCommand(IDC_BTN_EXIT); // OK with nothing selected: the window stays
    EXPECT_EQ(g_HoleLib.pLibDlg, m_pDlg);
    EXPECT_TRUE(m_log.posted.empty());
}

// The tree is searched depth first for a directory that merely begins with
// the name: one met earlier wins, and the name is then not in its list.
TEST_F(CircuitLibSelectTest, TheFirstDirectoryBeginningWithTheNameWinsEvenIfItIsAnother) {
    AddItems(L"仪表\\指示灯箱\\", {L"箱.dwg"});
    OpenSelecting(L"AD16.dwg");
    EXPECT_EQ(TreeSelText(), L"指示灯箱");
    EXPECT_TRUE(m_pView->m_selection.empty());
}

TEST_F(CircuitLibSelectTest, OkHandsTheNameWithoutDirectoryToTheOwnerAndWritesNoHistory) {
    CCircuitLibDlg& dlg = OpenSelecting(L"急停按钮.dwg");
    EXPECT_EQ(TreeSelText(), L"按钮");
    int nIndex = -1; // the list searches subdirectories: "指示灯\\AD16.dwg"
    for (size_t i = 0; i < m_pView->m_list.size(); ++i)
        if (m_pView->m_list[i] == L"指示灯\\AD16.dwg")
            nIndex = static_cast<int>(i);
    ASSERT_GE(nIndex, 0);
    dlg.OnItemchangedList({nIndex});
    dlg.OnCommand(IDC_BTN_EXIT);
    EXPECT_EQ(m_log.posted, std::vector<unsigned>{WM_LIB_PICKED});
    EXPECT_EQ(g_HoleLib.strPickedName, L"AD16.dwg");
    EXPECT_EQ(g_HoleLib.pLibDlg, nullptr);
    EXPECT_EQ(HistoryDir(), L"仪表");
    EXPECT_TRUE(g_HoleLib.strDwgFile.empty());
}

TEST_F(CircuitLibSelectTest, DoubleClicksAndTheInsertHandlerConfirmInsteadOfInserting) {
    for (int nWay = 0; nWay < 3; ++nWay) {
        m_log = OWNER_LOG();
        CCircuitLibDlg& dlg = OpenSelecting(L"22mm按钮.dwg");
        if (nWay == 0)
            dlg.OnDblclkList();
        else if (nWay == 1)
            dlg.OnSlideLButtonDblClk(m_pView->m_selection.at(0));
        else
            dlg.OnCommand(IDC_BTN_INSERT);
        EXPECT_EQ(m_log.posted, std::vector<unsigned>{WM_LIB_PICKED}) << nWay;
        EXPECT_EQ(g_HoleLib.strPickedName, L"22mm按钮.dwg");
        EXPECT_EQ(g_HoleLib.pLibDlg, nullptr);
        EXPECT_EQ(Posted(), L""); // no insertion was handed over
    }
}
