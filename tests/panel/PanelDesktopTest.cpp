// Panels in the desktop: a new panel lands where the mouse puts it, and a double-click on a
// panel starts its edit through the suite's broker, with no pick asked.
#include "panel/PanelCommands.h"
#include "panel/PanelRecord.h"

#include "drawingdata/ModelSpace.h"
#include "host/HostServices.h"
#include "suite/SuiteDoubleClick.h"

#include "GuiDriver.h"
#include "TestHost.h"
#include "TypingPanelView.h"

#include <QTest>

#include <gtest/gtest.h>

namespace {

AcDbExtents PanelExtents(AcDbDatabase* pDb, int& nPanels) {
    AcDbExtents ext;
    nPanels = 0;
    ForEachModelSpaceEntity(pDb, [&](AcDbObjectId, AcDbEntity& ent) {
        if (IsPanelSolid(&ent) && ent.getGeomExtents(ext) == Acad::eOk)
            ++nPanels;
    });
    return ext;
}

} // namespace

TEST(PanelDesktop, APanelLandsWhereTheMouseSaysAndADoubleClickEditsItInPlace) {
    CTestHost paths; // install paths for the dialog's files
    CTempDir dir;
    paths.m_strLocal = dir.Path();
    paths.m_strInstall = dir.Path();
    CGuiTestEditor t;
    CSuiteDoubleClick broker;
    HOST_SERVICES services = GetHostServices();
    services.pInstallPaths = &paths;
    services.pDoubleClick = &broker;
    SetHostServices(services);
    t.m_pWindow->m_onEntityDoubleClick = [&](AcDbObjectId id) { return broker.CommandFor(id); };
    CTypingPanelView view;
    SetDrawPanelDialogRunner([&](CDlgDrawPanel& dlg) {
        dlg.OnInitDialog(view);
        return dlg.OnOK() ? IDOK : IDCANCEL;
    });
    t.m_editor.m_commands.AddNative(L"DRAWPANEL", [] { DrawPanel(); });
    t.m_editor.m_commands.AddNative(L"EDITPANEL", [] { EditPanel(); });

    // 1000 x 600 x 20 mm at the default 1:10: 100 x 60 units, its corner under the cursor.
    t.Then([&] { t.Type(QStringLiteral("DRAWPANEL")); });
    t.Then([&] { t.Move(AcGePoint3d(30, 40, 0)); });
    t.Then([&] { t.Click(AcGePoint3d(30, 40, 0)); });
    t.Then([&] {
        int nPanels = 0;
        AcDbExtents ext = PanelExtents(t.Database(), nPanels);
        EXPECT_EQ(nPanels, 1);
        EXPECT_NEAR(ext.minPoint().x, 30, 0.25);
        EXPECT_NEAR(ext.minPoint().y, 40, 0.25);
        EXPECT_NEAR(ext.maxPoint().x, 130, 0.25);
        // On the plate's lower edge, away from its axes and dimensions.
        view.m_strW = L"500";
        QTest::mouseDClick(t.m_pView, Qt::LeftButton, {}, t.Pixel(AcGePoint3d(45, 40, 0)));
    });
    t.Then([&] { t.Type(QString()); });
    t.Run();
    SetDrawPanelDialogRunner(nullptr);

    EXPECT_EQ(view.m_strTitle, L"面板编辑");
    int nPanels = 0;
    AcDbExtents ext = PanelExtents(t.Database(), nPanels);
    EXPECT_EQ(nPanels, 1);                                            // the old one went
    EXPECT_NEAR((ext.minPoint().x + ext.maxPoint().x) / 2, 80, 0.25); // around the old centre
    EXPECT_NEAR(ext.maxPoint().x - ext.minPoint().x, 50, 1e-6);
    std::wstring strHandle;
    EXPECT_EQ(broker.Call(5, strHandle), 0); // used up by the command it started
}
