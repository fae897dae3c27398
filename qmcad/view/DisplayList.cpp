// Building the display list from model space: layers, colours, blocks, curves, texts, solids.
#include "view/DisplayList.h"
#include "view/HatchOutline.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <numbers>

namespace {

constexpr int kMaxBlockDepth = 32; // a block that holds itself is drawn this deep only

template <class T> T* Live(AcDbObjectId id) {
    if (!id.isValid() || id.isErased())
        return nullptr;
    return dynamic_cast<T*>(id.stub()->pObject);
}

struct LAYER_LOOK {
    short nColour = 7;
    bool bShown = true;
};

class CBuilder {
public:
    CBuilder(AcDbDatabase& db, const VIEW_STATE& view, ISolidViewGeometry* pSolids,
             CDisplayList& list)
        : m_db(db), m_view(view), m_pSolids(pSolids), m_list(list) {
        ReadLayers();
    }

    void Block(const AcDbBlockTableRecord& block, const AcGeMatrix3d& m, short nByBlock,
               int nDepth) {
        for (AcDbObjectId id : block.entities())
            if (auto* pEnt = Live<AcDbEntity>(id))
                Entity(*pEnt, m, nByBlock, nDepth);
    }
    void Add(const AcDbEntity& ent, const AcGeMatrix3d& m) { Entity(ent, m, 7, 0); }

private:
    void ReadLayers();
    void Entity(const AcDbEntity& ent, const AcGeMatrix3d& m, short nByBlock, int nDepth);
    void Polyline(const AcDbPolyline& pl, const AcGeMatrix3d& m, short nColour);
    void Text(const AcDbText& text, const AcGeMatrix3d& m, short nColour);
    void MText(const AcDbMText& text, const AcGeMatrix3d& m, short nColour);
    void Solid(const AcDb3dSolid& solid, const AcGeMatrix3d& m, short nColour);
    void Line(const AcGeMatrix3d& m, const AcGePoint3d& a, const AcGePoint3d& b, short nColour,
              double dWidth = 0.0) {
        m_list.m_lines.push_back({m.apply(a), m.apply(b), nColour, dWidth * m.scaleXY()});
    }
    void Arc(const AcGeMatrix3d& m, const AcGePoint3d& c, double r, double a0, double a1,
             short nColour, double dWidth = 0.0);
    void AddText(const AcGeMatrix3d& m, AcGePoint3d origin, double dRotation, double dHeight,
                 double dWidthFactor, const std::wstring& strText, const std::wstring& strStyle,
                 short nColour);
    std::wstring FontOf(const std::wstring& strStyle);

    AcDbDatabase& m_db;
    const VIEW_STATE& m_view;
    ISolidViewGeometry* m_pSolids;
    CDisplayList& m_list;
    std::vector<std::pair<std::wstring, LAYER_LOOK>> m_layers;
};

std::wstring Lower(std::wstring s) {
    for (wchar_t& c : s)
        c = static_cast<wchar_t>(std::towlower(c));
    return s;
}

void CBuilder::ReadLayers() {
    auto* pTable = Live<AcDbSymbolTable>(m_db.layerTableId());
    if (!pTable)
        return;
    for (AcDbObjectId id : pTable->records()) {
        auto* pLayer = Live<AcDbLayerTableRecord>(id);
        if (!pLayer)
            continue;
        LAYER_LOOK look;
        look.nColour = static_cast<short>(std::abs(pLayer->colorIndex()));
        if (look.nColour == 0)
            look.nColour = 7;
        look.bShown = !pLayer->isOff() && pLayer->colorIndex() >= 0 && !pLayer->isFrozen();
        m_layers.emplace_back(Lower(pLayer->name()), look);
    }
}

void CBuilder::Entity(const AcDbEntity& ent, const AcGeMatrix3d& m, short nByBlock, int nDepth) {
    if (!ent.isVisible() || ent.m_bPaperSpace)
        return;
    LAYER_LOOK look;
    std::wstring strLayer = Lower(ent.layer());
    for (const auto& [name, l] : m_layers)
        if (name == strLayer)
            look = l;
    // Entities on layer "0" inside a block take the reference's layer: its
    // visibility was decided when the reference was drawn.
    if (!look.bShown && !(nDepth > 0 && strLayer == L"0"))
        return;
    short nColour = ent.colorIndex();
    if (nColour == 256)
        nColour = (nDepth > 0 && strLayer == L"0") ? nByBlock : look.nColour;
    else if (nColour == 0)
        nColour = nByBlock;
    if (nColour <= 0 || nColour > 255)
        nColour = 7;

    if (auto* p = dynamic_cast<const AcDbLine*>(&ent))
        return Line(m, p->startPoint(), p->endPoint(), nColour);
    if (auto* p = dynamic_cast<const AcDbArc*>(&ent))
        return Arc(m, p->center(), p->radius(), p->startAngle(), p->endAngle(), nColour);
    if (auto* p = dynamic_cast<const AcDbCircle*>(&ent))
        return Arc(m, p->center(), p->radius(), 0, 2 * std::numbers::pi, nColour);
    if (auto* p = dynamic_cast<const AcDbPolyline*>(&ent))
        return Polyline(*p, m, nColour);
    if (auto* p = dynamic_cast<const AcDbHeavyPolyline*>(&ent)) {
        const auto& v = p->vertices();
        for (size_t i = 0; i + 1 < v.size(); ++i)
            Line(m, v[i].pt, v[i + 1].pt, nColour);
        if (p->isClosed() && v.size() > 2)
            Line(m, v.back().pt, v.front().pt, nColour);
        return;
    }
    if (auto* p = dynamic_cast<const AcDbText*>(&ent))
        return Text(*p, m, nColour);
    if (auto* p = dynamic_cast<const AcDbMText*>(&ent))
        return MText(*p, m, nColour);
    if (auto* p = dynamic_cast<const AcDb3dSolid*>(&ent))
        return Solid(*p, m, nColour);
    if (auto* p = dynamic_cast<const AcDbUnknownEntity*>(&ent); p && p->m_strDxfName == L"HATCH")
        return AppendHatchOutline(p->m_tags, m, nColour, m_list.m_lines);
    if (nDepth >= kMaxBlockDepth)
        return;
    short nInner = nColour;
    if (auto* p = dynamic_cast<const AcDbBlockReference*>(&ent)) {
        if (auto* pBlock = Live<AcDbBlockTableRecord>(p->blockTableRecord()))
            Block(*pBlock, m * p->blockTransform(), nInner, nDepth + 1);
        return;
    }
    if (auto* p = dynamic_cast<const AcDbDimension*>(&ent)) {
        if (auto* pBlock = Live<AcDbBlockTableRecord>(p->dimBlockId()))
            Block(*pBlock, m, nInner, nDepth + 1);
    }
}

void CBuilder::Arc(const AcGeMatrix3d& m, const AcGePoint3d& c, double r, double a0, double a1,
                   short nColour, double dWidth) {
    std::vector<DL_LINE> lines;
    AppendArcLines(c, r, a0, a1, nColour, dWidth, lines);
    for (const DL_LINE& l : lines)
        Line(m, l.a, l.b, nColour, dWidth);
}

void CBuilder::Polyline(const AcDbPolyline& pl, const AcGeMatrix3d& m, short nColour) {
    const auto& v = pl.vertices();
    size_t n = v.size(), nSegs = pl.isClosed() ? n : (n ? n - 1 : 0);
    double z = pl.elevation();
    for (size_t i = 0; i < nSegs; ++i) {
        const auto& s = v[i];
        const auto& e = v[(i + 1) % n];
        double w = pl.constantWidth() > 0 ? pl.constantWidth() : (s.dStartWidth + s.dEndWidth) / 2;
        AcGePoint3d a(s.pt.x, s.pt.y, z), b(e.pt.x, e.pt.y, z);
        if (std::fabs(s.dBulge) < 1e-12) {
            Line(m, a, b, nColour, w);
            continue;
        }
        // A bulge is the tangent of a quarter of the arc's angle, positive counter-clockwise.
        double theta = 4 * std::atan(s.dBulge);
        double chord = std::hypot(b.x - a.x, b.y - a.y);
        if (chord < 1e-12)
            continue;
        double r = chord / (2 * std::sin(std::fabs(theta) / 2));
        // The centre lies left of the chord for a counter-clockwise arc.
        double nx = -(b.y - a.y) / chord, ny = (b.x - a.x) / chord;
        double off = r * std::cos(theta / 2) * (theta > 0 ? 1 : -1);
        AcGePoint3d c((a.x + b.x) / 2 + nx * off, (a.y + b.y) / 2 + ny * off, z);
        double a0 = std::atan2(a.y - c.y, a.x - c.x), a1 = std::atan2(b.y - c.y, b.x - c.x);
        if (theta > 0) {
            while (a1 <= a0)
                a1 += 2 * std::numbers::pi;
            Arc(m, c, r, a0, a1, nColour, w);
        } else {
            while (a0 <= a1)
                a0 += 2 * std::numbers::pi;
            Arc(m, c, r, a1, a0, nColour, w);
        }
    }
}

std::wstring CBuilder::FontOf(const std::wstring& strStyle) {
    auto* pTable = Live<AcDbSymbolTable>(m_db.textStyleTableId());
    AcDbObjectId id;
    if (!pTable || pTable->getAt(strStyle, id) != Acad::eOk)
        return L"txt";
    auto* pStyle = Live<AcDbTextStyleTableRecord>(id);
    if (!pStyle)
        return L"txt";
    return pStyle->m_strBigFont.empty() ? pStyle->m_strFont : pStyle->m_strBigFont;
}

// Characters of the wide scripts take a full em, others a bit more than half of one.
double EstimatedAdvance(const std::wstring& s, double dHeight, double dWidthFactor) {
    double ems = 0;
    for (wchar_t c : s)
        ems += c >= 0x2E80 ? 1.0 : 0.7;
    return ems * dHeight * dWidthFactor;
}

void CBuilder::AddText(const AcGeMatrix3d& m, AcGePoint3d origin, double dRotation, double dHeight,
                       double dWidthFactor, const std::wstring& strText,
                       const std::wstring& strStyle, short nColour) {
    if (strText.empty())
        return;
    DL_TEXT t;
    AcGeVector3d x(std::cos(dRotation), std::sin(dRotation), 0);
    AcGeVector3d y(-std::sin(dRotation), std::cos(dRotation), 0);
    AcGeVector3d wx = m.apply(x), wy = m.apply(y);
    double sx = wx.length(), sy = wy.length();
    t.origin = m.apply(origin);
    t.xDir = sx > 0 ? wx * (1.0 / sx) : x;
    t.yDir = sy > 0 ? wy * (1.0 / sy) : y;
    t.dHeight = dHeight * (sy > 0 ? sy : 1.0);
    t.dWidthFactor = dWidthFactor * (sy > 0 ? sx / sy : 1.0);
    t.strText = strText;
    t.strStyle = strStyle;
    t.strFont = FontOf(strStyle);
    t.nColour = nColour;
    t.dAdvance = EstimatedAdvance(strText, t.dHeight, t.dWidthFactor);
    m_list.m_texts.push_back(std::move(t));
}

void CBuilder::Text(const AcDbText& text, const AcGeMatrix3d& m, short nColour) {
    double h = text.height(), r = text.rotation();
    double adv = EstimatedAdvance(text.textString(), h, text.widthFactor());
    AcGePoint3d p = text.position();
    if (!text.isDefaultAlignment()) {
        // Back from the alignment point to the baseline's left end.
        p = text.alignmentPoint();
        double dx = 0, dy = 0;
        switch (text.horizontalMode()) {
        case AcDb::kTextCenter:
        case AcDb::kTextMid:
            dx = -adv / 2;
            break;
        case AcDb::kTextRight:
            dx = -adv;
            break;
        case AcDb::kTextAlign:
        case AcDb::kTextFit:
            p = text.position();
            break;
        default:
            break;
        }
        switch (text.verticalMode()) {
        case AcDb::kTextVertMid:
            dy = -h / 2;
            break;
        case AcDb::kTextTop:
            dy = -h;
            break;
        case AcDb::kTextBottom:
            dy = h * 0.2;
            break;
        default:
            break;
        }
        if (text.horizontalMode() == AcDb::kTextMid)
            dy = -h / 2;
        p = p + AcGeVector3d(dx * std::cos(r) - dy * std::sin(r),
                             dx * std::sin(r) + dy * std::cos(r), 0);
    }
    AddText(m, p, r, h, text.widthFactor(), text.textString(), text.m_strStyle, nColour);
}

// Lines of a multi-line text's contents with the format codes removed.
std::vector<std::wstring> MTextLines(const std::wstring& s) {
    std::vector<std::wstring> lines(1);
    for (size_t i = 0; i < s.size(); ++i) {
        wchar_t c = s[i];
        if (c == L'{' || c == L'}')
            continue;
        if (c != L'\\' || i + 1 >= s.size()) {
            lines.back() += c;
            continue;
        }
        wchar_t k = s[++i];
        if (k == L'P') {
            lines.emplace_back();
        } else if (k == L'\\' || k == L'{' || k == L'}') {
            lines.back() += k;
        } else if (std::wcschr(L"LlOoKk", k) == nullptr) {
            size_t semi = s.find(L';', i);
            if (semi != std::wstring::npos && std::wcschr(L"fFHWQTACpS", k))
                i = semi;
        }
    }
    return lines;
}

void CBuilder::MText(const AcDbMText& text, const AcGeMatrix3d& m, short nColour) {
    std::vector<std::wstring> lines = MTextLines(text.contents());
    double h = text.textHeight(), r = text.rotation(), pitch = h * 5.0 / 3.0;
    double total = h + pitch * (lines.size() - 1);
    int nAttach = static_cast<int>(text.attachment());
    int col = (nAttach - 1) % 3, row = (nAttach - 1) / 3;
    double top = row == 0 ? 0 : (row == 1 ? total / 2 : total);
    for (size_t i = 0; i < lines.size(); ++i) {
        double adv = EstimatedAdvance(lines[i], h, 1.0);
        double dx = col == 0 ? 0 : (col == 1 ? -adv / 2 : -adv);
        double dy = top - h - pitch * i;
        AcGePoint3d p = text.location() + AcGeVector3d(dx * std::cos(r) - dy * std::sin(r),
                                                       dx * std::sin(r) + dy * std::cos(r), 0);
        AddText(m, p, r, h, 1.0, lines[i], text.m_strStyle, nColour);
    }
}

void CBuilder::Solid(const AcDb3dSolid& solid, const AcGeMatrix3d& m, short nColour) {
    std::vector<std::string> body = solid.body();
    AcGeMatrix3d identity;
    bool bMoved = std::memcmp(&m.entry, &identity.entry, sizeof identity.entry) != 0;
    if (bMoved && acdbSolidModeler() && !acdbSolidModeler()->Transform(body, m))
        return;
    if (m_pSolids && m_view.eShade == SHADE_MODE::Gouraud) {
        std::vector<DL_TRIANGLE> tris;
        if (m_pSolids->Mesh(body, tris)) {
            for (DL_TRIANGLE& t : tris)
                t.nColour = nColour;
            m_list.m_triangles.insert(m_list.m_triangles.end(), tris.begin(), tris.end());
            return;
        }
    }
    if (m_pSolids) {
        std::vector<DL_LINE> edges;
        if (m_pSolids->VisibleEdges(body, m_view.direction, edges)) {
            for (DL_LINE& e : edges)
                e.nColour = nColour;
            m_list.m_lines.insert(m_list.m_lines.end(), edges.begin(), edges.end());
            return;
        }
    }
    // No geometry kernel: the body's box stands for it.
    AcDbExtents ext;
    if (!acdbSolidModeler() || !acdbSolidModeler()->GetExtents(body, ext))
        return;
    const AcGePoint3d& lo = ext.minPoint();
    const AcGePoint3d& hi = ext.maxPoint();
    AcGePoint3d c[8];
    for (int i = 0; i < 8; ++i)
        c[i] = AcGePoint3d(i & 1 ? hi.x : lo.x, i & 2 ? hi.y : lo.y, i & 4 ? hi.z : lo.z);
    for (int i = 0; i < 8; ++i)
        for (int bit : {1, 2, 4})
            if (!(i & bit))
                m_list.m_lines.push_back({c[i], c[i | bit], nColour, 0.0});
}

} // namespace

void CDisplayList::Clear() {
    m_lines.clear();
    m_texts.clear();
    m_triangles.clear();
}

AcDbExtents CDisplayList::Extents() const {
    AcDbExtents ext;
    for (const DL_LINE& l : m_lines) {
        ext.addPoint(l.a);
        ext.addPoint(l.b);
    }
    for (const DL_TEXT& t : m_texts) {
        ext.addPoint(t.origin);
        ext.addPoint(t.origin + t.xDir * t.dAdvance + t.yDir * t.dHeight);
    }
    for (const DL_TRIANGLE& t : m_triangles)
        for (const AcGePoint3d& p : t.p)
            ext.addPoint(p);
    return ext;
}

void AppendArcLines(const AcGePoint3d& c, double r, double a0, double a1, short nColour,
                    double dWidth, std::vector<DL_LINE>& lines) {
    while (a1 <= a0)
        a1 += 2 * std::numbers::pi;
    double sweep = a1 - a0;
    int n = std::max(1, static_cast<int>(std::ceil(sweep / (std::numbers::pi / 36))));
    AcGePoint3d prev(c.x + r * std::cos(a0), c.y + r * std::sin(a0), c.z);
    for (int i = 1; i <= n; ++i) {
        double a = a0 + sweep * i / n;
        AcGePoint3d p(c.x + r * std::cos(a), c.y + r * std::sin(a), c.z);
        lines.push_back({prev, p, nColour, dWidth});
        prev = p;
    }
}

void BuildDisplayList(AcDbDatabase& db, const VIEW_STATE& view, ISolidViewGeometry* pSolids,
                      CDisplayList& list) {
    list.Clear();
    auto* pSpace = Live<AcDbBlockTableRecord>(db.modelSpaceId());
    if (!pSpace)
        return;
    CBuilder(db, view, pSolids, list).Block(*pSpace, AcGeMatrix3d(), 7, 0);
}

void BuildEntitiesDisplayList(AcDbDatabase& db, const VIEW_STATE& view, ISolidViewGeometry* pSolids,
                              const AcDbObjectIdArray& ids, const AcGeMatrix3d& m,
                              CDisplayList& list, std::vector<DL_STARTS>* pStarts) {
    list.Clear();
    if (pStarts)
        pStarts->clear();
    CBuilder builder(db, view, pSolids, list);
    for (AcDbObjectId id : ids) {
        if (pStarts)
            pStarts->push_back({list.m_lines.size(), list.m_texts.size()});
        if (auto* pEnt = Live<AcDbEntity>(id))
            builder.Add(*pEnt, m);
    }
}
