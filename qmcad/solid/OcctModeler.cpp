// OpenCASCADE behind the solid modeler: text B-rep in and out, with a cache of parsed bodies.
#include "solid/OcctModeler.h"

#include <BRepAdaptor_Curve.hxx>
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepBndLib.hxx>
#include <BRepBuilderAPI_GTransform.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakeWire.hxx>
#include <BRepBuilderAPI_Transform.hxx>
#include <BRepCheck_Analyzer.hxx>
#include <BRepGProp.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <GCPnts_TangentialDeflection.hxx>
#include <GC_MakeArcOfCircle.hxx>
#include <GProp_GProps.hxx>
#include <HLRAlgo_Projector.hxx>
#include <HLRBRep_Algo.hxx>
#include <HLRBRep_HLRToShape.hxx>
#include <Poly_Triangulation.hxx>
#include <Standard_Failure.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Shape.hxx>
#include <gp_Circ.hxx>
#include <gp_GTrsf.hxx>
#include <gp_Trsf.hxx>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string_view>
#include <unordered_map>

struct COcctModeler::CImpl {
    // Parsed bodies by their text: a drawing asks for the same body many times.
    std::unordered_map<std::string, TopoDS_Shape> cache;
    // Meshes and visible edges by body text (and direction): a window paints them again and again.
    std::unordered_map<std::string, std::vector<DL_TRIANGLE>> meshes;
    std::unordered_map<std::string, std::vector<DL_LINE>> edges;

    template <class V>
    static void Remember(std::unordered_map<std::string, V>& map, std::string key, const V& value) {
        if (map.size() > 256)
            map.clear();
        map.emplace(std::move(key), value);
    }

    static std::string Joined(const std::vector<std::string>& body) {
        std::string s;
        for (const std::string& line : body) {
            s += line;
            s += '\n';
        }
        return s;
    }

    // Every integer of a B-rep text is a count or an index of things that
    // take a line each: a damaged file with a huge one would have the
    // reader loop or allocate for ever, so such a text is refused first.
    static bool Plausible(const std::vector<std::string>& body) {
        const long long nLimit = 4 * static_cast<long long>(body.size()) + 64;
        for (const std::string& line : body) {
            const char* p = line.c_str();
            while (*p) {
                while (*p == ' ' || *p == '\t')
                    ++p;
                const char* start = p;
                bool bInteger = *p == '-' || std::isdigit(static_cast<unsigned char>(*p));
                while (*p && *p != ' ' && *p != '\t') {
                    if (!std::isdigit(static_cast<unsigned char>(*p)) && !(p == start && *p == '-'))
                        bInteger = false;
                    ++p;
                }
                // A shape's flags ("0101101") are seven bits, not a count.
                bool bFlags = p - start == 7 && std::string_view(start, 7).find_first_not_of(
                                                    "01") == std::string_view::npos;
                if (bInteger && !bFlags && p - start > 1 + (*start == '-') &&
                    (p - start > 12 || std::llabs(std::atoll(start)) > nLimit))
                    return false;
            }
        }
        return true;
    }

    // The shape table announces its size, and each shape ends with its seven flag bits: a text
    // cut short has fewer, and the reader would wait at its end for ever.
    static bool Complete(const std::vector<std::string>& body) {
        long long nAnnounced = -1, nFound = 0;
        for (const std::string& line : body) {
            if (line.rfind("TShapes ", 0) == 0) {
                nAnnounced = std::atoll(line.c_str() + 8);
                continue;
            }
            if (nAnnounced >= 0 && line.size() == 7 &&
                line.find_first_not_of("01") == std::string::npos)
                ++nFound;
        }
        return nAnnounced > 0 && nFound == nAnnounced;
    }

    bool Parse(const std::vector<std::string>& body, TopoDS_Shape& shape) {
        if (body.empty() || body[0].rfind("CASCADE Topology", 0) != 0)
            return false; // another kernel's data: kept, but not ours to read
        std::string text = Joined(body);
        if (cache.count(text) == 0 && (!Plausible(body) || !Complete(body)))
            return false;
        if (auto it = cache.find(text); it != cache.end()) {
            shape = it->second;
            return true;
        }
        TopoDS_Shape s;
        if (!Read(WithBlankLines(body), s) && !Read(text, s))
            return false;
        if (cache.size() > 256)
            cache.clear();
        cache.emplace(std::move(text), s);
        shape = s;
        return true;
    }

    static bool Read(const std::string& text, TopoDS_Shape& shape) {
        try {
            std::istringstream in(text);
            BRep_Builder builder;
            TopoDS_Shape s;
            BRepTools::Read(s, in, builder);
            if (s.IsNull())
                return false;
            shape = s;
            return true;
        } catch (const Standard_Failure&) {
            return false;
        }
    }

    // The stored text keeps no blank lines, but the reader wants the ones the writer put
    // before the shape table and before each shape's flags: they go back where the format
    // has them (extra blank lines elsewhere are skipped like any white space).
    static std::string WithBlankLines(const std::vector<std::string>& body) {
        std::string s = "\n";
        for (const std::string& line : body) {
            bool bFlags = line.size() == 7 && line.find_first_not_of("01") == std::string::npos;
            if (bFlags || line.rfind("TShapes", 0) == 0)
                s += '\n';
            s += line;
            s += '\n';
        }
        return s;
    }

    void Write(const TopoDS_Shape& shape, std::vector<std::string>& body) {
        std::ostringstream out;
        // Without meshes: the body stays exact and small; a mesh is made when one is needed.
        BRepTools::Write(shape, out, Standard_False, Standard_False,
                         TopTools_FormatVersion_CURRENT);
        body.clear();
        std::istringstream in(out.str());
        // Lines as a file keeps them: no blank lines, no trailing blanks.
        for (std::string line; std::getline(in, line);) {
            while (!line.empty() && (line.back() == ' ' || line.back() == '\r'))
                line.pop_back();
            if (!line.empty())
                body.push_back(line);
        }
        cache.emplace(Joined(body), shape);
    }
};

namespace {

gp_Pnt P(const AcGePoint3d& p) {
    return gp_Pnt(p.x, p.y, p.z);
}

// The smallest edge of the view's box, for mesh and curve tolerances.
double Deflection(const TopoDS_Shape& shape) {
    Bnd_Box box;
    BRepBndLib::Add(shape, box);
    if (box.IsVoid())
        return 0.01;
    double x0, y0, z0, x1, y1, z1;
    box.Get(x0, y0, z0, x1, y1, z1);
    double size = std::max({x1 - x0, y1 - y0, z1 - z0});
    return std::max(size * 1e-3, 1e-4);
}

void AddCurve(const TopoDS_Edge& edge, double dDeflection, const gp_Ax2& ax,
              std::vector<DL_LINE>& lines) {
    BRepAdaptor_Curve curve(edge);
    GCPnts_TangentialDeflection points(curve, 0.1, dDeflection);
    auto world = [&](const gp_Pnt& p) {
        // The projector's plane coordinates back into world space.
        gp_XYZ w = ax.XDirection().XYZ() * p.X() + ax.YDirection().XYZ() * p.Y();
        return AcGePoint3d(w.X(), w.Y(), w.Z());
    };
    for (int i = 1; i < points.NbPoints(); ++i)
        lines.push_back({world(points.Value(i)), world(points.Value(i + 1)), 7, 0.0});
}

} // namespace

COcctModeler::COcctModeler() : m_p(std::make_unique<CImpl>()) {}
COcctModeler::~COcctModeler() = default;

bool COcctModeler::GetExtents(const std::vector<std::string>& body, AcDbExtents& ext) {
    TopoDS_Shape shape;
    if (!m_p->Parse(body, shape))
        return false;
    Bnd_Box box;
    BRepBndLib::AddOptimal(shape, box, false, false);
    if (box.IsVoid())
        return false;
    double x0, y0, z0, x1, y1, z1;
    box.Get(x0, y0, z0, x1, y1, z1);
    ext = AcDbExtents(AcGePoint3d(x0, y0, z0), AcGePoint3d(x1, y1, z1));
    return true;
}

bool COcctModeler::Transform(std::vector<std::string>& body, const AcGeMatrix3d& m) {
    TopoDS_Shape shape;
    if (!m_p->Parse(body, shape))
        return false;
    try {
        const auto& e = m.entry;
        gp_GTrsf g;
        g.SetVectorialPart(gp_Mat(e[0][0], e[0][1], e[0][2], e[1][0], e[1][1], e[1][2], e[2][0],
                                  e[2][1], e[2][2]));
        g.SetTranslationPart(gp_XYZ(e[0][3], e[1][3], e[2][3]));
        TopoDS_Shape moved;
        // A rotation with a uniform scale keeps the exact geometry; anything else is a
        // general transformation that turns curves into their images.
        gp_Trsf t;
        try {
            t.SetValues(e[0][0], e[0][1], e[0][2], e[0][3], e[1][0], e[1][1], e[1][2], e[1][3],
                        e[2][0], e[2][1], e[2][2], e[2][3]);
            moved = BRepBuilderAPI_Transform(shape, t, true).Shape();
        } catch (const Standard_Failure&) {
            moved = BRepBuilderAPI_GTransform(shape, g, true).Shape();
        }
        if (moved.IsNull())
            return false;
        m_p->Write(moved, body);
        return true;
    } catch (const Standard_Failure&) {
        return false;
    }
}

bool COcctModeler::MakeBox(double dx, double dy, double dz, std::vector<std::string>& body) {
    if (!(dx > 0 && dy > 0 && dz > 0))
        return false;
    try {
        TopoDS_Shape box =
            BRepPrimAPI_MakeBox(gp_Pnt(-dx / 2, -dy / 2, -dz / 2), dx, dy, dz).Shape();
        m_p->Write(box, body);
        return true;
    } catch (const Standard_Failure&) {
        return false;
    }
}

bool COcctModeler::Extrude(const std::vector<PROFILE_SEGMENT>& profile, double dHeight,
                           std::vector<std::string>& body) {
    if (profile.empty() || std::fabs(dHeight) < 1e-12)
        return false;
    try {
        BRepBuilderAPI_MakeWire wire;
        for (const PROFILE_SEGMENT& s : profile) {
            if (!s.bArc) {
                if (s.a.distanceTo(s.b) < 1e-9)
                    continue;
                wire.Add(BRepBuilderAPI_MakeEdge(P(s.a), P(s.b)).Edge());
                continue;
            }
            double r = s.centre.distanceTo(s.a);
            gp_Ax2 ax(P(s.centre), gp_Dir(0, 0, s.bCounterClockwise ? 1 : -1));
            gp_Circ circ(ax, r);
            if (s.a.distanceTo(s.b) < 1e-9) {
                wire.Add(BRepBuilderAPI_MakeEdge(circ).Edge());
                continue;
            }
            wire.Add(BRepBuilderAPI_MakeEdge(circ, P(s.a), P(s.b)).Edge());
        }
        if (!wire.IsDone() || !wire.Wire().Closed())
            return false;
        BRepBuilderAPI_MakeFace face(wire.Wire(), true);
        if (!face.IsDone())
            return false;
        BRepPrimAPI_MakePrism prism(face.Face(), gp_Vec(0, 0, dHeight));
        if (!prism.IsDone())
            return false;
        m_p->Write(prism.Shape(), body);
        return true;
    } catch (const Standard_Failure&) {
        return false;
    }
}

bool COcctModeler::Subtract(std::vector<std::string>& body,
                            const std::vector<const std::vector<std::string>*>& tools,
                            std::string& strError) {
    TopoDS_Shape shape;
    if (!m_p->Parse(body, shape)) {
        strError = "the body can't be read";
        return false;
    }
    TopTools_ListOfShape args, cutters;
    args.Append(shape);
    for (const auto* pTool : tools) {
        TopoDS_Shape t;
        if (!m_p->Parse(*pTool, t)) {
            strError = "a cutting body can't be read";
            return false;
        }
        cutters.Append(t);
    }
    if (cutters.IsEmpty())
        return true;
    try {
        BRepAlgoAPI_Cut cut;
        cut.SetArguments(args);
        cut.SetTools(cutters);
        cut.SetRunParallel(false);
        cut.SetUseOBB(true); // cutouts far apart are told apart by their boxes alone
        cut.SetCheckInverted(false);
        cut.Build();
        if (!cut.IsDone() || cut.HasErrors()) {
            strError = "the boolean operation failed";
            return false;
        }
        TopoDS_Shape result = cut.Shape();
        TopExp_Explorer solids(result, TopAbs_SOLID);
        if (result.IsNull() || !solids.More() || !BRepCheck_Analyzer(result).IsValid()) {
            strError = "the result is no valid solid";
            return false;
        }
        m_p->Write(result, body);
        return true;
    } catch (const Standard_Failure& e) {
        strError = e.GetMessageString() ? e.GetMessageString() : "the kernel failed";
        return false;
    }
}

bool COcctModeler::ToShape(const std::vector<std::string>& body, TopoDS_Shape& shape) {
    return m_p->Parse(body, shape);
}

bool COcctModeler::MassProperties(const std::vector<std::string>& body, MASS_PROPS& props) {
    TopoDS_Shape shape;
    if (!m_p->Parse(body, shape))
        return false;
    GProp_GProps g;
    BRepGProp::VolumeProperties(shape, g);
    props.dVolume = g.Mass();
    gp_Pnt c = g.CentreOfMass();
    props.centroid = AcGePoint3d(c.X(), c.Y(), c.Z());
    return true;
}

bool COcctModeler::GetMassProps(const std::vector<std::string>& body, double& volume,
                                AcGePoint3d& centroid) {
    MASS_PROPS props;
    if (!MassProperties(body, props))
        return false;
    volume = props.dVolume;
    centroid = props.centroid;
    return true;
}

bool COcctModeler::Mesh(const std::vector<std::string>& body, std::vector<DL_TRIANGLE>& triangles) {
    std::string key = CImpl::Joined(body);
    if (auto it = m_p->meshes.find(key); it != m_p->meshes.end()) {
        triangles.insert(triangles.end(), it->second.begin(), it->second.end());
        return true;
    }
    TopoDS_Shape shape;
    if (!m_p->Parse(body, shape))
        return false;
    size_t nFirst = triangles.size();
    try {
        BRepMesh_IncrementalMesh(shape, Deflection(shape), false, 0.3, false);
        for (TopExp_Explorer x(shape, TopAbs_FACE); x.More(); x.Next()) {
            const TopoDS_Face& face = TopoDS::Face(x.Current());
            TopLoc_Location loc;
            Handle(Poly_Triangulation) tri = BRep_Tool::Triangulation(face, loc);
            if (tri.IsNull())
                continue;
            bool bReversed = face.Orientation() == TopAbs_REVERSED;
            const gp_Trsf& t = loc.Transformation();
            for (int i = 1; i <= tri->NbTriangles(); ++i) {
                int n[3];
                tri->Triangle(i).Get(n[0], n[1], n[2]);
                if (bReversed)
                    std::swap(n[1], n[2]);
                DL_TRIANGLE d;
                for (int k = 0; k < 3; ++k) {
                    gp_Pnt p = tri->Node(n[k]).Transformed(t);
                    d.p[k] = AcGePoint3d(p.X(), p.Y(), p.Z());
                }
                AcGeVector3d u = d.p[1] - d.p[0], v = d.p[2] - d.p[0];
                AcGeVector3d nrm(u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z,
                                 u.x * v.y - u.y * v.x);
                double len = nrm.length();
                if (len < 1e-18)
                    continue;
                d.normal = nrm * (1.0 / len);
                triangles.push_back(d);
            }
        }
        CImpl::Remember(m_p->meshes, std::move(key),
                        std::vector<DL_TRIANGLE>(triangles.begin() + nFirst, triangles.end()));
        return true;
    } catch (const Standard_Failure&) {
        return false;
    }
}

bool COcctModeler::VisibleEdges(const std::vector<std::string>& body, const AcGeVector3d& direction,
                                std::vector<DL_LINE>& edges) {
    char dir[96];
    std::snprintf(dir, sizeof dir, "|%.17g,%.17g,%.17g", direction.x, direction.y, direction.z);
    std::string key = CImpl::Joined(body) + dir;
    if (auto it = m_p->edges.find(key); it != m_p->edges.end()) {
        edges.insert(edges.end(), it->second.begin(), it->second.end());
        return true;
    }
    TopoDS_Shape shape;
    if (!m_p->Parse(body, shape))
        return false;
    size_t nFirst = edges.size();
    try {
        VIEW_AXES axes = ViewAxes(direction);
        gp_Ax2 ax(gp_Pnt(0, 0, 0), gp_Dir(axes.z.x, axes.z.y, axes.z.z),
                  gp_Dir(axes.x.x, axes.x.y, axes.x.z));
        Handle(HLRBRep_Algo) algo = new HLRBRep_Algo;
        algo->Add(shape);
        algo->Projector(HLRAlgo_Projector(ax));
        algo->Update();
        algo->Hide();
        HLRBRep_HLRToShape toShape(algo);
        double defl = Deflection(shape);
        for (TopoDS_Shape part :
             {toShape.VCompound(), toShape.OutLineVCompound(), toShape.Rg1LineVCompound()}) {
            if (part.IsNull())
                continue;
            for (TopExp_Explorer x(part, TopAbs_EDGE); x.More(); x.Next())
                AddCurve(TopoDS::Edge(x.Current()), defl, ax, edges);
        }
        CImpl::Remember(m_p->edges, std::move(key),
                        std::vector<DL_LINE>(edges.begin() + nFirst, edges.end()));
        return true;
    } catch (const Standard_Failure&) {
        return false;
    }
}

COcctModeler& GetOcctModeler() {
    static COcctModeler modeler;
    return modeler;
}
