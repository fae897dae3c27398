// The panel road: a designer draws a PLC door from the catalogue, puts it down with the mouse,
// makes three openings by hand, dimensions one to the edge, looks at it shaded and orbits, goes
// back to the plan, makes the door wider, saves, and hands the cut plate to the workshop.
#include "Road.h"

#include "host/db/AcDb.h"

#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

struct DRAWING_STATE {
    int nPanels = 0, nCutouts = 0, nDims = 0;
    double dPanelVolume = 0;
    AcDbExtents panel;
    std::wstring strDimLayer;
};

// What the drawing holds now: panels (solids with the panel record), other solids, dimensions.
DRAWING_STATE Look(AcDbDatabase* pDb) {
    DRAWING_STATE s;
    AcDbBlockTableRecord* pSpace = nullptr;
    if (acdbOpenObject(pSpace, pDb->modelSpaceId(), AcDb::kForRead) != Acad::eOk)
        return s;
    AcDbBlockTableRecordIterator* pIt = nullptr;
    pSpace->newIterator(pIt);
    for (; pIt && !pIt->done(); pIt->step()) {
        AcDbEntity* pEnt = nullptr;
        if (pIt->getEntity(pEnt, AcDb::kForRead) != Acad::eOk)
            continue;
        if (auto* pSolid = dynamic_cast<AcDb3dSolid*>(pEnt)) {
            resbuf* pPanel = pEnt->xData(L"3dHolePanel");
            if (pPanel) {
                ++s.nPanels;
                AcGePoint3d c;
                pSolid->getMassProp(s.dPanelVolume, c);
                pSolid->getGeomExtents(s.panel);
            } else {
                ++s.nCutouts;
            }
            acutRelRb(pPanel);
        } else if (dynamic_cast<AcDbDimension*>(pEnt)) {
            ++s.nDims;
            s.strDimLayer = pEnt->layer();
        }
        pEnt->close();
    }
    delete pIt;
    pSpace->close();
    return s;
}

QPushButton* Button(QWidget* pWindow, const QString& strText) {
    for (QPushButton* p : pWindow->findChildren<QPushButton*>())
        if (p->text() == strText)
            return p;
    return nullptr;
}

std::string FileText(const std::filesystem::path& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

} // namespace

TEST(PanelRoad, FromTheCatalogueToTheWorkshopsPlate) {
    CRoad road("panel");
    ASSERT_TRUE(road.m_bDemo);
    ASSERT_TRUE(road.LoadModule());
    AcDbDatabase* pDb = road.m_gui.Database();
    road.Frame(0, 0, 100, 100);
    std::vector<DRAWING_STATE> seen;
    std::string osDrawing = road.m_dir.OsPath() + "door.dwg";
    QString strDialogTitle;

    road.Milestone("start");
    // The dialog opens on the sizes of last time; a double-click on the catalogue fills them.
    road.WhenWindow(QStringLiteral("面板绘制"), [&](QWidget* pDlg) {
        auto* pList = pDlg->findChild<QTreeWidget*>();
        ASSERT_NE(pList, nullptr);
        QList<QTreeWidgetItem*> rows =
            pList->findItems(QStringLiteral("PLC控制箱门板"), Qt::MatchStartsWith);
        ASSERT_EQ(rows.size(), 1);
        auto edits = pDlg->findChildren<QLineEdit*>();
        edits[0]->setText(QString());
        QRect cell = pList->visualItemRect(rows[0]);
        QTest::mouseClick(pList->viewport(), Qt::LeftButton, {}, cell.center());
        QTest::mouseDClick(pList->viewport(), Qt::LeftButton, {}, cell.center());
        EXPECT_EQ(edits[0]->text(), QStringLiteral("600"));
        road.Milestone("catalogue", pDlg);
        QTest::mouseClick(Button(pDlg, QStringLiteral("绘制")), Qt::LeftButton);
    });
    road.Then([&] { road.Type(QStringLiteral("DrawPanel")); });
    // 600 x 800 at 1:10: the plate follows the cursor and lands with its corner there.
    road.Then([&] { road.m_gui.Move(AcGePoint3d(15, 12, 0)); });
    road.Then([&] { road.Click(20, 10); });
    road.Then([&] { road.Milestone("placed"); });
    // A meter, a button and a fan opening, each a box through the plate, cornered by a click.
    struct BOX_AT {
        double x, y;
        const char *w, *h;
    } boxes[] = {{30, 70, "9.2", "9.2"}, {62, 68, "2.23", "2.23"}, {40, 20, "12.5", "12.5"}};
    for (const BOX_AT& b : boxes) {
        road.Then([&road] { road.Type(QStringLiteral("BOX")); });
        road.Then([&road, b] { road.Click(b.x, b.y); });
        road.Then([&road] { road.Type(QStringLiteral("L")); });
        road.Then([&road, b] { road.Type(QString::fromLatin1(b.w)); });
        road.Then([&road, b] { road.Type(QString::fromLatin1(b.h)); });
        road.Then([&road] { road.Type(QStringLiteral("-2")); });
    }
    road.Then([&] { road.Milestone("cutouts"); });
    // The meter's opening to the plate's left edge; the dimension line goes where clicked.
    road.Then([&] { road.Type(QStringLiteral("DimHole")); });
    road.Then([&] { road.Click(30, 74.6); });
    road.Then([&] { road.Click(20, 88); });
    road.Then([&] { road.Click(25, 92); });
    road.Then([&] {
        seen.push_back(Look(pDb));
        road.Milestone("dimensioned");
        road.Type(QStringLiteral("Tz3dView"));
    });
    // The 3D view cuts, shades and hands the mouse to the orbit until Enter.
    road.Then([&] {
        seen.push_back(Look(pDb));
        road.Milestone("shaded");
        QWidget* pView = road.m_gui.m_pView;
        QPoint c = pView->rect().center();
        QTest::mousePress(pView, Qt::LeftButton, {}, c);
        for (int i = 1; i <= 8; ++i)
            QTest::mouseMove(pView, c + QPoint(i * 12, -i * 6));
        QTest::mouseRelease(pView, Qt::LeftButton, {}, c + QPoint(96, -48));
        road.Milestone("orbit");
        QTest::mouseClick(pView, Qt::RightButton, {}, c);
    });
    road.Then([&] { road.Type(QStringLiteral("Tz2dView")); });
    road.Then([&] {
        seen.push_back(Look(pDb));
        road.Frame(0, 0, 100, 100);
        road.Milestone("plan");
        road.Type(QStringLiteral("DimHole")); // the dimension again, see below
    });
    road.Then([&] { road.Click(30, 74.6); });
    road.Then([&] { road.Click(20, 88); });
    road.Then([&] { road.Click(25, 92); });
    road.Then([&] { road.Type(QStringLiteral("EditPanel")); });
    road.WhenWindow(QStringLiteral("面板编辑"), [&](QWidget* pDlg) {
        strDialogTitle = pDlg->windowTitle();
        pDlg->findChildren<QLineEdit*>()[0]->setText(QStringLiteral("700"));
        QTest::mouseClick(Button(pDlg, QStringLiteral("绘制")), Qt::LeftButton);
    });
    road.Then([&] { road.Click(60, 10); }); // the plate's lower edge, clear of everything
    road.Then([&] {
        seen.push_back(Look(pDb));
        road.Milestone("wider");
        road.Type(QStringLiteral("SAVEAS"));
    });
    road.Then([&] { road.Type(QString()); });
    road.Then([&] { road.Type(QString::fromStdString(osDrawing)); });
    road.Run();

    ASSERT_EQ(seen.size(), 4u);
    const double dWhole = 60 * 80 * 0.2; // 600 x 800 x 2 at 1:10
    const double dPixel = 0.2;           // a click lands on the pixel's point
    EXPECT_EQ(seen[0].nPanels, 1);
    EXPECT_NEAR(seen[0].panel.minPoint().x, 20, dPixel);
    EXPECT_NEAR(seen[0].panel.minPoint().y, 10, dPixel);
    EXPECT_NEAR(seen[0].panel.maxPoint().y - seen[0].panel.minPoint().y, 80, 1e-6);
    EXPECT_EQ(seen[0].nCutouts, 3);
    EXPECT_EQ(seen[0].nDims, 3); // the plate's two, then the opening's
    EXPECT_EQ(seen[0].strDimLayer, L"DIM");
    // Shaded: the openings went out of the plate and its body lost their volume. The 3D view
    // begins as the plan view does, stepping back over the last step: the dimension went.
    EXPECT_EQ(seen[1].nCutouts, 0);
    EXPECT_EQ(seen[1].nDims, 2);
    double dHoles = 0.2 * (9.2 * 9.2 + 2.23 * 2.23 + 12.5 * 12.5);
    EXPECT_NEAR(seen[1].dPanelVolume, dWhole - dHoles, 1e-3);
    // Plan again: the plate whole, the openings back.
    EXPECT_EQ(seen[2].nCutouts, 3);
    EXPECT_NEAR(seen[2].dPanelVolume, dWhole, 1e-3);
    EXPECT_EQ(seen[2].nDims, 2);
    // Wider by 100 mm about the same centre.
    EXPECT_EQ(strDialogTitle, QStringLiteral("面板编辑"));
    EXPECT_EQ(seen[3].nPanels, 1);
    EXPECT_NEAR(seen[3].panel.maxPoint().x - seen[3].panel.minPoint().x, 70, 1e-6);
    EXPECT_NEAR(seen[3].panel.minPoint().x, seen[0].panel.minPoint().x - 5, 1e-6);
    EXPECT_EQ(seen[3].nDims, 3);
    EXPECT_EQ(seen[3].nCutouts, 3);

    // The workshop's files of the saved drawing: the export cuts the plate itself.
    ASSERT_TRUE(std::filesystem::exists(osDrawing));
    std::filesystem::path out = road.m_dir.OsPath() + "workshop";
    std::filesystem::create_directory(out);
    QProcess qmcad;
    qmcad.start(QStringLiteral(QM_QMCAD_PATH),
                {QStringLiteral("--export-panels"), QString::fromStdString(osDrawing),
                 QString::fromStdString(out.string())});
    ASSERT_TRUE(qmcad.waitForFinished(60000));
    EXPECT_EQ(qmcad.exitCode(), 0) << qmcad.readAllStandardError().toStdString()
                                   << qmcad.readAllStandardOutput().toStdString();
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(out))
        files.push_back(entry.path().filename().string());
    std::sort(files.begin(), files.end());
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0].rfind("panel_15_", 0), 0u) << files[0]; // the wider plate's corner
    std::string dxf = FileText(out / files[0]);
    size_t nCutouts = 0;
    for (size_t n = dxf.find("\nCUTOUTS\n"); n != std::string::npos;
         n = dxf.find("\nCUTOUTS\n", n + 1))
        ++nCutouts;
    EXPECT_EQ(nCutouts, 1u + 3u * 4u); // the layer, then the four edges of each opening
    EXPECT_EQ(files[1], files[0].substr(0, files[0].size() - 4) + ".step");
    EXPECT_EQ(road.m_shots.size(), 9u);
}
