// Panel export: the plate less its cutouts, scaled to real size, written as STEP and as the
// contours of its mid-plane section in a flat DXF.
#include "solid/PanelExport.h"
#include "solid/OcctModeler.h"

#include "base/Format.h"
#include "base/NumberText.h"
#include "base/SysPath.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepAdaptor_Surface.hxx>
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepBndLib.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepGProp.hxx>
#include <BRepTools.hxx>
#include <Bnd_Box.hxx>
#include <GCPnts_QuasiUniformDeflection.hxx>
#include <GProp_GProps.hxx>
#include <IFSelect_ReturnStatus.hxx>
#include <Interface_Static.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <STEPControl_Writer.hxx>
#include <TopExp_Explorer.hxx>
#include <TopTools_ListOfShape.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Edge.hxx>
#include <TopoDS_Face.hxx>
#include <TopoDS_Wire.hxx>
#include <gp_Circ.hxx>
#include <gp_Pln.hxx>

#include <cmath>
#include <cstdio>

namespace {

constexpr const wchar_t* kPanelApp = L"3dHolePanel";

bool ParseBody(const std::vector<std::string>& body, TopoDS_Shape& shape) {
    return GetOcctModeler().ToShape(body, shape);
}

// The real sizes "X||Y||Z" of the panel record; false on anything else.
bool PanelRealSize(const AcDbEntity& ent, double& dRealX, double& dRealY) {
    resbuf* pChain = ent.xData(kPanelApp);
    std::wstring strSizes;
    for (resbuf* p = pChain; p; p = p->rbnext)
        if (p->restype == 1000 && p->resval.rstring)
            strSizes = p->resval.rstring;
    acutRelRb(pChain);
    size_t n1 = strSizes.find(L"||");
    size_t n2 = n1 == std::wstring::npos ? n1 : strSizes.find(L"||", n1 + 2);
    if (n2 == std::wstring::npos || strSizes.find(L"||", n2 + 2) != std::wstring::npos)
        return false;
    dRealX = TextToReal(strSizes.substr(0, n1));
    dRealY = TextToReal(strSizes.substr(n1 + 2, n2 - n1 - 2));
    return dRealX > 0 && dRealY > 0;
}

struct PANEL {
    AcDbObjectId id;
    TopoDS_Shape plate;
    AcDbExtents ext;
    double dRatio = 1.0; // real size over drawn size
    std::vector<TopoDS_Shape> cutouts;
};

bool StrictlyInside(const AcDbExtents& e, const AcDbExtents& p) {
    return e.minPoint().x > p.minPoint().x && e.minPoint().y > p.minPoint().y &&
           p.maxPoint().x > e.maxPoint().x && p.maxPoint().y > e.maxPoint().y;
}

// Panels first, then each other solid given to the first panel holding it: the rule of the
// module's 3D view.
std::vector<PANEL> CollectPanels(AcDbDatabase& db, std::vector<std::wstring>& lines) {
    std::vector<PANEL> panels;
    std::vector<std::pair<AcDbExtents, TopoDS_Shape>> solids;
    AcDbBlockTableRecord* pMs = nullptr;
    if (acdbOpenObject(pMs, db.modelSpaceId(), AcDb::kForRead) != Acad::eOk)
        return panels;
    for (AcDbObjectId id : pMs->entities()) {
        AcDb3dSolid* pSolid = nullptr;
        if (acdbOpenObject(pSolid, id, AcDb::kForRead) != Acad::eOk)
            continue;
        PANEL panel;
        panel.id = id;
        double dRealX = 0, dRealY = 0;
        resbuf* pRecord = pSolid->xData(kPanelApp);
        bool bPanel = pRecord != nullptr;
        acutRelRb(pRecord);
        bool bShape = ParseBody(pSolid->body(), panel.plate) &&
                      pSolid->getGeomExtents(panel.ext) == Acad::eOk;
        if (bPanel && bShape && PanelRealSize(*pSolid, dRealX, dRealY)) {
            double dDrawn = panel.ext.maxPoint().x - panel.ext.minPoint().x;
            panel.dRatio = dDrawn > 0 ? dRealX / dDrawn : 1.0;
            panels.push_back(panel);
        } else if (bPanel) {
            lines.push_back(Format(L"面板 %s 无法读取,未输出。", id.handle().text().c_str()));
        } else if (bShape) {
            solids.emplace_back(panel.ext, panel.plate);
        }
        pSolid->close();
    }
    pMs->close();
    for (auto& [ext, shape] : solids)
        for (PANEL& panel : panels)
            if (StrictlyInside(ext, panel.ext)) {
                panel.cutouts.push_back(shape);
                break;
            }
    return panels;
}

// The plate less its cutouts, its lower-left corner at the origin, its top at z = 0, at real size.
bool CutPlate(const PANEL& panel, TopoDS_Shape& plate) {
    plate = panel.plate;
    if (!panel.cutouts.empty()) {
        TopTools_ListOfShape args, tools;
        args.Append(panel.plate);
        for (const TopoDS_Shape& s : panel.cutouts)
            tools.Append(s);
        BRepAlgoAPI_Cut cut;
        cut.SetArguments(args);
        cut.SetTools(tools);
        cut.Build();
        if (!cut.IsDone())
            return false;
        plate = cut.Shape();
    }
    gp_Trsf move, scale;
    const AcGePoint3d& lo = panel.ext.minPoint();
    move.SetTranslation(gp_Vec(-lo.x, -lo.y, -panel.ext.maxPoint().z));
    scale.SetScale(gp_Pnt(0, 0, 0), panel.dRatio);
    BRepBuilderAPI_Transform xform(plate, scale * move, true);
    if (!xform.IsDone())
        return false;
    plate = xform.Shape();
    return true;
}

// The translator reports its statistics on the console; the command line says what counts.
class CQuietMessenger {
public:
    CQuietMessenger() : m_saved(Message::DefaultMessenger()->Printers()) {
        Message::DefaultMessenger()->ChangePrinters().Clear();
    }
    ~CQuietMessenger() { Message::DefaultMessenger()->ChangePrinters() = m_saved; }

private:
    Message_SequenceOfPrinters m_saved;
};

bool WriteStep(const TopoDS_Shape& plate, const std::string& strPath) {
    CQuietMessenger quiet;
    STEPControl_Writer writer;
    Interface_Static::SetCVal("write.step.unit", "MM");
    if (writer.Transfer(plate, STEPControl_AsIs) != IFSelect_RetDone)
        return false;
    std::string strTemp = strPath + ".part";
    if (writer.Write(strTemp.c_str()) != IFSelect_RetDone)
        return false;
    return std::rename(strTemp.c_str(), strPath.c_str()) == 0;
}

AcDbEntity* ContourEntity(const TopoDS_Edge& edge) {
    BRepAdaptor_Curve curve(edge);
    double t0 = curve.FirstParameter(), t1 = curve.LastParameter();
    gp_Pnt a = curve.Value(t0), b = curve.Value(t1);
    if (curve.GetType() == GeomAbs_Line)
        return new AcDbLine(AcGePoint3d(a.X(), a.Y(), 0), AcGePoint3d(b.X(), b.Y(), 0));
    if (curve.GetType() == GeomAbs_Circle) {
        gp_Circ c = curve.Circle();
        AcGePoint3d centre(c.Location().X(), c.Location().Y(), 0);
        if (std::fabs(t1 - t0 - 2 * M_PI) < 1e-9)
            return new AcDbCircle(centre, c.Radius());
        // Arcs run counter-clockwise seen from above; a circle seen from below flips them.
        double dStart = std::atan2(a.Y() - centre.y, a.X() - centre.x);
        double dEnd = std::atan2(b.Y() - centre.y, b.X() - centre.x);
        if (c.Axis().Direction().Z() < 0)
            std::swap(dStart, dEnd);
        return new AcDbArc(centre, c.Radius(), dStart, dEnd);
    }
    GCPnts_QuasiUniformDeflection points(curve, 0.01);
    auto* pPolyline = new AcDbPolyline();
    for (int i = 1; points.IsDone() && i <= points.NbPoints(); ++i)
        pPolyline->addVertexAt(pPolyline->numVerts(),
                               AcGePoint2d(points.Value(i).X(), points.Value(i).Y()));
    return pPolyline;
}

void AddLayer(AcDbDatabase& db, const wchar_t* pszName, short nColor) {
    AcDbLayerTable* pTable = nullptr;
    if (db.getLayerTable(pTable, AcDb::kForWrite) != Acad::eOk)
        return;
    auto* pLayer = new AcDbLayerTableRecord();
    pLayer->setName(pszName);
    pLayer->setColorIndex(nColor);
    if (pTable->add(pLayer) == Acad::eOk)
        pLayer->close();
    else
        delete pLayer;
    pTable->close();
}

// The face the plate shows from above: planar, facing up, highest.
TopoDS_Face TopFace(const TopoDS_Shape& plate) {
    TopoDS_Face top;
    double dTopZ = -1e300;
    for (TopExp_Explorer it(plate, TopAbs_FACE); it.More(); it.Next()) {
        TopoDS_Face face = TopoDS::Face(it.Current());
        BRepAdaptor_Surface surface(face);
        if (surface.GetType() != GeomAbs_Plane)
            continue;
        gp_Dir normal = surface.Plane().Axis().Direction();
        if (face.Orientation() == TopAbs_REVERSED)
            normal.Reverse();
        double z = surface.Plane().Location().Z();
        if (normal.Z() > 1 - 1e-9 && z > dTopZ) {
            dTopZ = z;
            top = face;
        }
    }
    return top;
}

// The contours of the top face: its outer wire on "OUTLINE", the holes on "CUTOUTS",
// lines as lines and circles as circles.
bool WriteFlatDxf(const TopoDS_Shape& plate, const std::string& strPath) {
    TopoDS_Face top = TopFace(plate);
    if (top.IsNull())
        return false;
    TopoDS_Wire outer = BRepTools::OuterWire(top);
    AcDbDatabase db;
    AddLayer(db, L"OUTLINE", 7);
    AddLayer(db, L"CUTOUTS", 1);
    db.m_extraHeader[L"$INSUNITS"] = L"4"; // millimetres
    AcDbBlockTableRecord* pMs = nullptr;
    if (acdbOpenObject(pMs, db.modelSpaceId(), AcDb::kForWrite) != Acad::eOk)
        return false;
    for (TopExp_Explorer wires(top, TopAbs_WIRE); wires.More(); wires.Next()) {
        bool bOutline = wires.Current().IsSame(outer);
        for (TopExp_Explorer it(wires.Current(), TopAbs_EDGE); it.More(); it.Next()) {
            AcDbEntity* pEnt = ContourEntity(TopoDS::Edge(it.Current()));
            pEnt->setLayer(bOutline ? L"OUTLINE" : L"CUTOUTS");
            if (pMs->appendAcDbEntity(pEnt) == Acad::eOk)
                pEnt->close();
            else
                delete pEnt;
        }
    }
    pMs->close();
    db.updateExt();
    std::wstring strWide = FromOsPath(strPath);
    return db.saveAs(strWide.c_str()) == Acad::eOk;
}

} // namespace

int ExportPanels(AcDbDatabase& db, const std::string& strDir, std::vector<std::wstring>& lines) {
    int nWritten = 0;
    for (const PANEL& panel : CollectPanels(db, lines)) {
        char szName[96];
        std::snprintf(szName, sizeof szName, "panel_%.0f_%.0f", panel.ext.minPoint().x,
                      panel.ext.minPoint().y);
        std::string strName = strDir;
        while (strName.size() > 1 && strName.back() == '/')
            strName.pop_back();
        strName += "/" + std::string(szName);
        TopoDS_Shape plate;
        std::wstring strShown = FromOsPath(strName);
        if (!CutPlate(panel, plate)) {
            lines.push_back(Format(L"%s: 开孔运算失败,未输出。", strShown.c_str()));
            continue;
        }
        if (!WriteStep(plate, strName + ".step") || !WriteFlatDxf(plate, strName + ".dxf")) {
            lines.push_back(Format(L"%s: 文件写入失败。", strShown.c_str()));
            continue;
        }
        lines.push_back(Format(L"%s.step, %s.dxf", strShown.c_str(), strShown.c_str()));
        ++nWritten;
    }
    return nWritten;
}
