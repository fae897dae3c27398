// Cut plates for the workshop: the STEP solid read back by the kernel and the flat DXF read by
// python3-ezdxf, both at real size with the cutouts out.
#include "DbBuilders.h"
#include "EditorTestHost.h"

#include "base/SysPath.h"
#include "solid/OcctModeler.h"
#include "solid/PanelExport.h"

#include <BRepGProp.hxx>
#include <GProp_GProps.hxx>
#include <STEPControl_Reader.hxx>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <numbers>

namespace {

AcDbObjectId AddBox(AcDbDatabase* pDb, double x0, double y0, double z0, double x1, double y1,
                    double z1) {
    auto* pSolid = new AcDb3dSolid();
    EXPECT_EQ(pSolid->createBox(x1 - x0, y1 - y0, z1 - z0), Acad::eOk);
    pSolid->transformBy(
        AcGeMatrix3d::translation(AcGeVector3d((x0 + x1) / 2, (y0 + y1) / 2, (z0 + z1) / 2)));
    return AppendToModelSpace(*pDb, pSolid);
}

AcDbObjectId AddCylinder(AcDbDatabase* pDb, double x, double y, double r) {
    PROFILE_SEGMENT circle;
    circle.a = circle.b = AcGePoint3d(x + r, y, -5);
    circle.bArc = true;
    circle.centre = AcGePoint3d(x, y, -5);
    std::vector<std::string> body;
    EXPECT_TRUE(GetOcctModeler().Extrude({circle}, 10.0, body));
    auto* pSolid = new AcDb3dSolid();
    pSolid->setBody(body);
    return AppendToModelSpace(*pDb, pSolid);
}

void MarkPanel(AcDbDatabase* pDb, AcDbObjectId id, const wchar_t* pszSizes) {
    AcDbRegAppTable* pApps = nullptr;
    pDb->getRegAppTable(pApps, AcDb::kForWrite);
    auto* pApp = new AcDbRegAppTableRecord();
    pApp->setName(L"3dHolePanel");
    if (pApps->add(pApp) == Acad::eOk)
        pApp->close();
    else
        delete pApp;
    pApps->close();
    resbuf* pChain = acutNewStringRb(1001, L"3dHolePanel");
    pChain->rbnext = acutNewStringRb(1000, pszSizes);
    AcDbEntity* pEnt = nullptr;
    acdbOpenObject(pEnt, id, AcDb::kForWrite);
    EXPECT_EQ(pEnt->setXData(pChain), Acad::eOk);
    pEnt->close();
    acutRelRb(pChain);
}

std::string RunPipe(const std::string& strCmd) {
    FILE* pipe = popen(strCmd.c_str(), "r");
    std::string out;
    char buf[512];
    for (size_t n; pipe && (n = std::fread(buf, 1, sizeof buf, pipe)) > 0;)
        out.append(buf, n);
    if (pipe)
        pclose(pipe);
    return out;
}

} // namespace

TEST(PanelExport, PlatesComeOutAtRealSizeWithTheirCutoutsAsStepAndFlatContours) {
    CEditorTestHost host;
    AcDbDatabase* pDb = host.m_editor.Doc()->database();
    // Drawn at 1:10: 100 x 60 x 2 units stand for 1000 x 600 x 20 mm.
    MarkPanel(pDb, AddBox(pDb, 10, 20, -2, 110, 80, 0), L"1000.00||600.00||20.00");
    AddBox(pDb, 30, 30, -5, 40, 40, 5);  // a 100 mm square cutout
    AddCylinder(pDb, 80, 50, 5);         // a 100 mm round one
    AddBox(pDb, 200, 0, -5, 210, 10, 5); // outside: not this panel's
    MarkPanel(pDb, AddBox(pDb, 0, 300, -1, 10, 301, 0), L"broken");
    CTempDir dir;
    std::vector<std::wstring> lines;
    int nWritten = ExportPanels(*pDb, dir.OsPath(), lines);
    ASSERT_EQ(nWritten, 1);
    ASSERT_EQ(lines.size(), 2u); // the broken record says so
    std::string strBase = dir.OsPath() + "/panel_10_20";

    STEPControl_Reader reader;
    ASSERT_EQ(reader.ReadFile((strBase + ".step").c_str()), IFSelect_RetDone);
    reader.TransferRoots();
    GProp_GProps props;
    BRepGProp::VolumeProperties(reader.OneShape(), props);
    double dExpected = (1000.0 * 600 - 100 * 100 - std::numbers::pi * 50 * 50) * 20;
    EXPECT_NEAR(props.Mass(), dExpected, dExpected * 1e-6);

    std::string strOut = RunPipe(
        "/usr/bin/python3 -c \"import ezdxf,sys,math\n"
        "d=ezdxf.readfile(sys.argv[1])\n"
        "for layer in ('OUTLINE','CUTOUTS'):\n"
        "  es=d.modelspace().query('*[layer==\\\"%s\\\"]' % layer)\n"
        "  lines=[e for e in es if e.dxftype()=='LINE']\n"
        "  circles=[e for e in es if e.dxftype()=='CIRCLE']\n"
        "  xs=[p[0] for e in lines for p in (e.dxf.start,e.dxf.end)]\n"
        "  ys=[p[1] for e in lines for p in (e.dxf.start,e.dxf.end)]\n"
        "  area=(max(xs)-min(xs))*(max(ys)-min(ys))+sum(math.pi*c.dxf.radius**2 for c in circles)\n"
        "  print(layer,len(lines),len(circles),'%.0f %.0f %.0f'%(min(xs),min(ys),area))\" '" +
        strBase + ".dxf'");
    EXPECT_EQ(strOut, "OUTLINE 4 0 0 0 600000\nCUTOUTS 4 1 200 100 17854\n");
}
