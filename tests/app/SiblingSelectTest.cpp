// Select runs started for a sibling's Qt window: the library test, the old browser, real events.
#include "LibraryBrowserFixture.h"

#include "app/entry/Commands.h"
#include "app/entry/SiblingSelect.h"
#include "base/FileSystem.h"
#include "library/views/LibBrowserFactory.h"
#include "library/views/LibBrowserWindow.h"

#include <QApplication>
#include <QPointer>
#include <QWidget>

namespace {

// A sibling's window that counts what reaches it.
class CCountingWindow : public QWidget {
public:
    bool event(QEvent* pEvent) override {
        if (pEvent->type() == QEvent::Type(1129) || pEvent->type() == QEvent::Type(1130))
            m_types.push_back(pEvent->type());
        return QWidget::event(pEvent);
    }
    std::vector<int> m_types;
};

class SiblingSelectTest : public CLibraryBrowserTest {
protected:
    void SetUp() override {
        m_host.m_editor.m_pFrame = &m_frame;
        SetBrowserFactory(g_HoleLib, [] { return MakeCircuitLibDlg(g_HoleLib, nullptr); });
        SetBrowserFactory(g_LayoutLib, [] { return MakeLaySketchLibDlg(g_LayoutLib, nullptr); });
    }
    void TearDown() override {
        for (CLibState* pState : {&g_HoleLib, &g_LayoutLib}) {
            IModelessWindow* pWindow = pState->pLibDlg;
            pState->pLibDlg = nullptr;
            DestroyModelessWindow(pWindow);
            *pState = CLibState();
        }
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    CCircuitLibDlg* Hole() { return dynamic_cast<CCircuitLibDlg*>(g_HoleLib.pLibDlg); }

    QWidget m_frame;
};

} // namespace

TEST_F(SiblingSelectTest, NoWindowNoRunAndAMissingLibraryIsNamedInABox) {
    AddItems(L"按钮\\", {L"a.dwg"});
    SelectHoleDwgFile(nullptr, L"a.dwg");
    EXPECT_EQ(g_HoleLib.pLibDlg, nullptr);
    EXPECT_TRUE(m_host.m_boxes.empty());

    QWidget owner;
    FsRemoveDirectory(m_dir / L"local\\LaySketch");
    SelectLayoutDwgFile(&owner, L"a.dwg");
    EXPECT_EQ(g_LayoutLib.pLibDlg, nullptr);
    ASSERT_EQ(m_host.m_boxes.size(), 1u);
    EXPECT_EQ(m_host.m_boxes[0].strText,
              L"屏面布置图库目录 " + m_dir / L"local\\LaySketch\\" + L" 不存在！");

    CreateDirPath(m_dir / L"common");
    m_host.m_strCommonRes = m_dir / L"common\\";
    SelectHoleDwgFile(&owner, L"a.dwg");
    EXPECT_EQ(g_HoleLib.pLibDlg, nullptr);
    ASSERT_EQ(m_host.m_boxes.size(), 2u);
    EXPECT_EQ(m_host.m_boxes[1].strText,
              L"开孔图库目录 " + m_dir / L"common\\InstallHole\\" + L" 不存在！");
}

TEST_F(SiblingSelectTest, AnOpenBrowserGoesAndTheNewOneAnswersTheWindowWithRealEvents) {
    AddItems(L"按钮\\", {L"a.dwg", L"b.dwg"});
    g_HoleLib.strRoot = m_host.m_strCommonRes;
    RaiseLibraryBrowser(g_HoleLib);
    ASSERT_NE(Hole(), nullptr);
    QPointer<CLibBrowserDialog> pOld = static_cast<CLibBrowserWindow&>(Hole()->View()).Dialog();
    g_HoleLib.strDwgFile = m_host.m_strCommonRes + L"InstallHole\\按钮\\a.dwg";

    CCountingWindow owner;
    SelectHoleDwgFile(&owner, L"B.DWG");
    QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(pOld.isNull()); // whatever the user had open there is gone
    EXPECT_TRUE(g_HoleLib.strDwgFile.empty());
    ASSERT_NE(Hole(), nullptr);
    EXPECT_EQ(Hole()->m_bSelectMode, 1);
    EXPECT_EQ(Hole()->m_pOwner, &owner);
    Hole()->OnCommand(IDC_BTN_EXIT);
    QApplication::sendPostedEvents(&owner);
    EXPECT_EQ(owner.m_types, std::vector<int>{1129});
    std::wstring strName = L"unchanged";
    GetPickedLayoutName(strName); // the other library picked nothing
    EXPECT_EQ(strName, L"unchanged");
    GetPickedHoleName(strName);
    EXPECT_EQ(strName, L"b.dwg");

    // A window destroyed before the pick: no event, and no name.
    auto* pGone = new CCountingWindow;
    SelectHoleDwgFile(pGone, L"a.dwg");
    delete pGone;
    Hole()->OnCommand(IDC_BTN_EXIT);
    EXPECT_EQ(g_HoleLib.pLibDlg, nullptr);
    strName = L"unchanged";
    GetPickedHoleName(strName);
    EXPECT_EQ(strName, L"unchanged");
}
