// Entity groups of each modelled type, extended data and xrecord chains, solid text.
#include "dxf/DxfEntityIo.h"

#include <cmath>
#include <numbers>

namespace {

constexpr double kDeg = std::numbers::pi / 180.0;

// Reads the three coordinates of a point whose x group has the code given.
struct POINT_READER {
    AcGePoint3d pt;
    bool Take(int nBase, const DXF_RAW_TAG& t) {
        if (t.nCode == nBase)
            pt.x = DxfReal(t.value);
        else if (t.nCode == nBase + 10)
            pt.y = DxfReal(t.value);
        else if (t.nCode == nBase + 20)
            pt.z = DxfReal(t.value);
        else
            return false;
        return true;
    }
};

const std::wstring& NameOf(AcDbObjectId id) {
    static const std::wstring empty;
    auto* p = id.isValid() ? dynamic_cast<AcDbSymbolTableRecord*>(id.stub()->pObject) : nullptr;
    return p ? p->name() : empty;
}

AcDbEntity* ReadLine(const std::vector<DXF_RAW_TAG>& tags) {
    auto* p = new AcDbLine;
    POINT_READER s, e;
    for (const auto& t : tags)
        s.Take(10, t) || e.Take(11, t);
    p->setStartPoint(s.pt);
    p->setEndPoint(e.pt);
    return p;
}

AcDbEntity* ReadCircle(const std::vector<DXF_RAW_TAG>& tags, bool bArc) {
    AcDbCircle* p = bArc ? new AcDbArc : new AcDbCircle;
    POINT_READER c;
    for (const auto& t : tags) {
        if (c.Take(10, t))
            continue;
        if (t.nCode == 40)
            p->setRadius(DxfReal(t.value));
        else if (bArc && t.nCode == 50)
            static_cast<AcDbArc*>(p)->setStartAngle(DxfReal(t.value) * kDeg);
        else if (bArc && t.nCode == 51)
            static_cast<AcDbArc*>(p)->setEndAngle(DxfReal(t.value) * kDeg);
    }
    p->setCenter(c.pt);
    return p;
}

AcDbEntity* ReadLwPolyline(const std::vector<DXF_RAW_TAG>& tags) {
    auto* p = new AcDbPolyline;
    int n = -1;
    double dConst = 0.0;
    for (const auto& t : tags) {
        switch (t.nCode) {
        case 70:
            p->setClosed(DxfInt(t.value) & 1);
            break;
        case 43:
            dConst = DxfReal(t.value);
            break;
        case 38:
            p->setElevation(DxfReal(t.value));
            break;
        case 10:
            p->addVertexAt(++n, AcGePoint2d(DxfReal(t.value), 0), 0, dConst, dConst);
            break;
        case 20:
        case 40:
        case 41:
        case 42: {
            if (n < 0)
                break;
            AcDbPolyline::VERTEX v = p->vertices()[n];
            double d = DxfReal(t.value);
            if (t.nCode == 20) {
                p->removeVertexAt(n);
                p->addVertexAt(n, AcGePoint2d(v.pt.x, d), v.dBulge, v.dStartWidth, v.dEndWidth);
            } else if (t.nCode == 42) {
                p->setBulgeAt(n, d);
            } else {
                p->setWidthsAt(n, t.nCode == 40 ? d : v.dStartWidth,
                               t.nCode == 41 ? d : v.dEndWidth);
            }
            break;
        }
        default:
            break;
        }
    }
    p->setConstantWidth(dConst);
    return p;
}

// An enumerated group: a value outside [nLow, nHigh] is read as the default and counted.
int EnumValue(std::string_view value, int nLow, int nHigh, int nDefault, DXF_ENTITY_REFS& refs) {
    int n = DxfInt(value, nDefault);
    if (n >= nLow && n <= nHigh)
        return n;
    ++refs.nOutOfRange;
    return nDefault;
}

AcDbEntity* ReadText(const std::vector<DXF_RAW_TAG>& tags, CDxfText& text, DXF_ENTITY_REFS& refs) {
    auto* p = new AcDbText;
    POINT_READER pos, align;
    bool bAlign = false;
    for (const auto& t : tags) {
        if (pos.Take(10, t))
            continue;
        if (align.Take(11, t)) {
            bAlign = true;
            continue;
        }
        switch (t.nCode) {
        case 1:
            p->setTextString(text.Decode(t.value));
            break;
        case 7:
            p->m_strStyle = text.Decode(t.value);
            break;
        case 40:
            p->setHeight(DxfReal(t.value));
            break;
        case 41:
            p->setWidthFactor(DxfReal(t.value, 1.0));
            break;
        case 50:
            p->setRotation(DxfReal(t.value) * kDeg);
            break;
        case 72:
            p->setHorizontalMode(
                static_cast<AcDb::TextHorzMode>(EnumValue(t.value, 0, 5, 0, refs)));
            break;
        case 73:
            p->setVerticalMode(static_cast<AcDb::TextVertMode>(EnumValue(t.value, 0, 3, 0, refs)));
            break;
        default:
            break;
        }
    }
    p->setPosition(pos.pt);
    p->setAlignmentPoint(bAlign ? align.pt : pos.pt);
    return p;
}

AcDbEntity* ReadMText(const std::vector<DXF_RAW_TAG>& tags, CDxfText& text, DXF_ENTITY_REFS& refs) {
    auto* p = new AcDbMText;
    POINT_READER loc, dir;
    bool bDir = false;
    std::string contents; // chunks join before decoding: a character may straddle them
    for (const auto& t : tags) {
        if (loc.Take(10, t))
            continue;
        if (dir.Take(11, t)) {
            bDir = true;
            continue;
        }
        switch (t.nCode) {
        case 1:
        case 3:
            contents.append(t.value);
            break;
        case 7:
            p->m_strStyle = text.Decode(t.value);
            break;
        case 40:
            p->setTextHeight(DxfReal(t.value));
            break;
        case 41:
            p->setWidth(DxfReal(t.value));
            break;
        case 50:
            p->setRotation(DxfReal(t.value) * kDeg);
            break;
        case 71:
            p->setAttachment(
                static_cast<AcDbMText::AttachmentPoint>(EnumValue(t.value, 1, 9, 1, refs)));
            break;
        default:
            break;
        }
    }
    p->setLocation(loc.pt);
    p->setContents(text.Decode(contents));
    if (bDir)
        p->setRotation(std::atan2(dir.pt.y, dir.pt.x));
    return p;
}

AcDbEntity* ReadInsert(const std::vector<DXF_RAW_TAG>& tags, CDxfText& text,
                       DXF_ENTITY_REFS& refs) {
    auto* p = new AcDbBlockReference;
    POINT_READER pos;
    AcGeScale3d s;
    for (const auto& t : tags) {
        if (pos.Take(10, t))
            continue;
        switch (t.nCode) {
        case 2:
            refs.strBlock = text.Decode(t.value);
            break;
        case 41:
            s.sx = DxfReal(t.value, 1.0);
            break;
        case 42:
            s.sy = DxfReal(t.value, 1.0);
            break;
        case 43:
            s.sz = DxfReal(t.value, 1.0);
            break;
        case 50:
            p->setRotation(DxfReal(t.value) * kDeg);
            break;
        default:
            break;
        }
    }
    p->setPosition(pos.pt);
    if (p->setScaleFactors(s) != Acad::eOk)
        p->setScaleFactors(AcGeScale3d());
    return p;
}

AcDbEntity* ReadDimension(const std::vector<DXF_RAW_TAG>& tags, CDxfText& text,
                          DXF_ENTITY_REFS& refs) {
    int nType = 0;
    for (const auto& t : tags)
        if (t.nCode == 70)
            nType = DxfInt(t.value) & 0x0F;
    if (nType > 1)
        return nullptr; // angular, radial and ordinate dimensions are kept as they are
    AcDbDimension* p = nType == 1 ? static_cast<AcDbDimension*>(new AcDbAlignedDimension)
                                  : new AcDbRotatedDimension;
    POINT_READER def, mid, x1, x2;
    for (const auto& t : tags) {
        if (def.Take(10, t) || mid.Take(11, t) || x1.Take(13, t) || x2.Take(14, t))
            continue;
        if (t.nCode == 1)
            p->setDimensionText(text.Decode(t.value));
        else if (t.nCode == 2)
            refs.strBlock = text.Decode(t.value);
        else if (t.nCode == 3)
            refs.strDimStyle = text.Decode(t.value);
        else if (t.nCode == 50 && nType == 0)
            static_cast<AcDbRotatedDimension*>(p)->setRotation(DxfReal(t.value) * kDeg);
    }
    p->setDimLinePoint(def.pt);
    p->setTextPosition(mid.pt);
    p->setXLine1Point(x1.pt);
    p->setXLine2Point(x2.pt);
    return p;
}

AcDbEntity* ReadSolid(const std::vector<DXF_RAW_TAG>& tags) {
    auto* p = new AcDb3dSolid;
    std::vector<std::string> body; // continuation chunks join before decoding
    for (const auto& t : tags) {
        if (t.nCode == 1)
            body.emplace_back(t.value);
        else if (t.nCode == 3 && !body.empty())
            body.back() += t.value;
    }
    for (std::string& line : body)
        line = DecodeSatLine(line);
    p->setBody(std::move(body));
    return p;
}

AcDbEntity* ReadPolyline(const std::vector<DXF_RAW_TAG>& tags) {
    int nFlags = 0;
    for (const auto& t : tags)
        if (t.nCode == 70)
            nFlags = DxfInt(t.value);
    if (nFlags & (16 | 64))
        return nullptr; // meshes and polyface meshes are not modelled
    AcDbHeavyPolyline* p =
        (nFlags & 8) ? static_cast<AcDbHeavyPolyline*>(new AcDb3dPolyline) : new AcDb2dPolyline;
    p->setClosed(nFlags & 1);
    return p;
}

void WriteHeavyPolyline(CDxfTagWriter& w, const AcDbHeavyPolyline& p, bool b3d) {
    w.Str(100, b3d ? "AcDb3dPolyline" : "AcDb2dPolyline");
    w.Int(66, 1);
    w.Point(10, 0, 0, b3d || !p.numVerts() ? 0 : p.vertices()[0].pt.z);
    w.Int(70, (p.isClosed() ? 1 : 0) | (b3d ? 8 : 0));
}

// Multi-line text in chunks of at most 250 bytes that never split a character.
void WriteMTextContents(CDxfTagWriter& w, const std::wstring& contents) {
    std::string chunk, one;
    for (size_t i = 0; i < contents.size(); ++i) {
        one.clear();
        w.Encode(std::wstring_view(contents).substr(i, 1), one);
        if (chunk.size() + one.size() > 250) {
            w.Str(3, chunk);
            chunk.clear();
        }
        chunk += one;
    }
    w.Str(1, chunk);
}

} // namespace

AcDbEntity* ReadEntityBody(const std::string_view& type, const std::vector<DXF_RAW_TAG>& tags,
                           CDxfText& text, DXF_ENTITY_REFS& refs) {
    if (type == "LINE")
        return ReadLine(tags);
    if (type == "CIRCLE" || type == "ARC")
        return ReadCircle(tags, type == "ARC");
    if (type == "LWPOLYLINE")
        return ReadLwPolyline(tags);
    if (type == "POLYLINE")
        return ReadPolyline(tags);
    if (type == "TEXT")
        return ReadText(tags, text, refs);
    if (type == "MTEXT")
        return ReadMText(tags, text, refs);
    if (type == "INSERT")
        return ReadInsert(tags, text, refs);
    if (type == "DIMENSION")
        return ReadDimension(tags, text, refs);
    if (type == "3DSOLID")
        return ReadSolid(tags);
    return nullptr;
}

void ReadPolylineVertex(AcDbHeavyPolyline& pl, const std::vector<DXF_RAW_TAG>& tags) {
    AcDbPolylineVertex v;
    POINT_READER pt;
    for (const auto& t : tags) {
        if (pt.Take(10, t))
            continue;
        switch (t.nCode) {
        case 5:
            v.handle = AcDbHandle(DxfHandle(t.value));
            break;
        case 40:
            v.dStartWidth = DxfReal(t.value);
            break;
        case 41:
            v.dEndWidth = DxfReal(t.value);
            break;
        case 42:
            v.dBulge = DxfReal(t.value);
            break;
        default:
            break;
        }
    }
    v.pt = pt.pt;
    pl.vertices().push_back(v);
}

void WriteEntityBody(CDxfTagWriter& w, const AcDbEntity& ent) {
    if (auto* p = dynamic_cast<const AcDbLine*>(&ent)) {
        w.Str(100, "AcDbLine");
        w.Point(10, p->startPoint().x, p->startPoint().y, p->startPoint().z);
        w.Point(11, p->endPoint().x, p->endPoint().y, p->endPoint().z);
    } else if (auto* p = dynamic_cast<const AcDbCircle*>(&ent)) {
        w.Str(100, "AcDbCircle");
        w.Point(10, p->center().x, p->center().y, p->center().z);
        w.Real(40, p->radius());
        if (auto* a = dynamic_cast<const AcDbArc*>(&ent)) {
            w.Str(100, "AcDbArc");
            w.Real(50, a->startAngle() / kDeg);
            w.Real(51, a->endAngle() / kDeg);
        }
    } else if (auto* p = dynamic_cast<const AcDbPolyline*>(&ent)) {
        w.Str(100, "AcDbPolyline");
        w.Int(90, p->numVerts());
        w.Int(70, p->isClosed() ? 1 : 0);
        if (p->constantWidth() != 0)
            w.Real(43, p->constantWidth());
        if (p->elevation() != 0)
            w.Real(38, p->elevation());
        for (const auto& v : p->vertices()) {
            w.Point2(10, v.pt.x, v.pt.y);
            if (v.dStartWidth != p->constantWidth() || v.dEndWidth != p->constantWidth()) {
                w.Real(40, v.dStartWidth);
                w.Real(41, v.dEndWidth);
            }
            if (v.dBulge != 0)
                w.Real(42, v.dBulge);
        }
    } else if (auto* p = dynamic_cast<const AcDbHeavyPolyline*>(&ent)) {
        WriteHeavyPolyline(w, *p, dynamic_cast<const AcDb3dPolyline*>(&ent) != nullptr);
    } else if (auto* p = dynamic_cast<const AcDbText*>(&ent)) {
        w.Str(100, "AcDbText");
        w.Point(10, p->position().x, p->position().y, p->position().z);
        w.Real(40, p->height());
        w.Text(1, p->textString());
        if (p->rotation() != 0)
            w.Real(50, p->rotation() / kDeg);
        if (p->widthFactor() != 1.0)
            w.Real(41, p->widthFactor());
        w.Text(7, p->m_strStyle);
        if (p->horizontalMode() != AcDb::kTextLeft)
            w.Int(72, p->horizontalMode());
        if (!p->isDefaultAlignment())
            w.Point(11, p->alignmentPoint().x, p->alignmentPoint().y, p->alignmentPoint().z);
        w.Str(100, "AcDbText");
        if (p->verticalMode() != AcDb::kTextBase)
            w.Int(73, p->verticalMode());
    } else if (auto* p = dynamic_cast<const AcDbMText*>(&ent)) {
        w.Str(100, "AcDbMText");
        w.Point(10, p->location().x, p->location().y, p->location().z);
        w.Real(40, p->textHeight());
        w.Real(41, p->width());
        w.Int(71, p->attachment());
        w.Int(72, 1);
        WriteMTextContents(w, p->contents());
        w.Text(7, p->m_strStyle);
        w.Point(11, std::cos(p->rotation()), std::sin(p->rotation()), 0);
    } else if (auto* p = dynamic_cast<const AcDbBlockReference*>(&ent)) {
        w.Str(100, "AcDbBlockReference");
        if (!p->m_followers.empty())
            w.Int(66, 1);
        w.Text(2, NameOf(p->blockTableRecord()));
        w.Point(10, p->position().x, p->position().y, p->position().z);
        AcGeScale3d s = p->scaleFactors();
        if (s.sx != 1 || s.sy != 1 || s.sz != 1) {
            w.Real(41, s.sx);
            w.Real(42, s.sy);
            w.Real(43, s.sz);
        }
        if (p->rotation() != 0)
            w.Real(50, p->rotation() / kDeg);
    } else if (auto* p = dynamic_cast<const AcDbDimension*>(&ent)) {
        bool bRotated = dynamic_cast<const AcDbRotatedDimension*>(&ent) != nullptr;
        w.Str(100, "AcDbDimension");
        if (p->dimBlockId().isValid())
            w.Text(2, NameOf(p->dimBlockId()));
        w.Point(10, p->dimLinePoint().x, p->dimLinePoint().y, p->dimLinePoint().z);
        w.Point(11, p->textPosition().x, p->textPosition().y, p->textPosition().z);
        w.Int(70, (bRotated ? 0 : 1) | 32);
        if (!p->dimensionText().empty())
            w.Text(1, p->dimensionText());
        w.Text(3, p->dimensionStyle().isValid() ? NameOf(p->dimensionStyle()) : L"Standard");
        w.Str(100, "AcDbAlignedDimension");
        w.Point(13, p->xLine1Point().x, p->xLine1Point().y, p->xLine1Point().z);
        w.Point(14, p->xLine2Point().x, p->xLine2Point().y, p->xLine2Point().z);
        if (bRotated) {
            w.Real(50, static_cast<const AcDbRotatedDimension*>(p)->rotation() / kDeg);
            w.Str(100, "AcDbRotatedDimension");
        }
    } else if (auto* p = dynamic_cast<const AcDb3dSolid*>(&ent)) {
        w.Str(100, "AcDbModelerGeometry");
        w.Int(70, 1);
        for (const std::string& line : p->body()) {
            std::string enc = EncodeSatLine(line);
            w.Str(1, std::string_view(enc).substr(0, 255));
            for (size_t i = 255; i < enc.size(); i += 255)
                w.Str(3, std::string_view(enc).substr(i, 255));
        }
        w.Str(100, "AcDb3dSolid");
    }
}

void WriteVertices(CDxfTagWriter& w, const AcDbEntity& ent) {
    auto* p = dynamic_cast<const AcDbHeavyPolyline*>(&ent);
    if (!p)
        return;
    bool b3d = dynamic_cast<const AcDb3dPolyline*>(&ent) != nullptr;
    for (const AcDbPolylineVertex& v : p->vertices()) {
        w.Str(0, "VERTEX");
        w.Handle(5, v.handle.value());
        w.Handle(330, ent.handle().value());
        w.Str(100, "AcDbEntity");
        w.Text(8, ent.layer());
        w.Str(100, "AcDbVertex");
        w.Str(100, b3d ? "AcDb3dPolylineVertex" : "AcDb2dVertex");
        w.Point(10, v.pt.x, v.pt.y, v.pt.z);
        if (!b3d && (v.dStartWidth != 0 || v.dEndWidth != 0)) {
            w.Real(40, v.dStartWidth);
            w.Real(41, v.dEndWidth);
        }
        if (!b3d && v.dBulge != 0)
            w.Real(42, v.dBulge);
        w.Int(70, b3d ? 32 : 0);
    }
    w.Str(0, "SEQEND");
    w.Handle(5, p->m_seqendHandle.value());
    w.Handle(330, ent.handle().value());
    w.Str(100, "AcDbEntity");
    w.Text(8, ent.layer());
}

resbuf* ChainFromTags(const std::vector<DXF_RAW_TAG>& tags, size_t i, size_t end, CDxfText& text) {
    resbuf* head = nullptr;
    resbuf** tail = &head;
    while (i < end) {
        const DXF_RAW_TAG& t = tags[i++];
        int type = acdbGroupCodeToType(t.nCode);
        resbuf* rb = nullptr;
        if (type == RTSTR) {
            rb = acutNewStringRb(t.nCode, text.Decode(t.value));
        } else if (type == RT3DPOINT) {
            rb = acutNewPointRb(t.nCode, DxfReal(t.value), 0, 0);
            for (int k = 1; k <= 2 && i < end && tags[i].nCode == t.nCode + 10 * k; ++k)
                rb->resval.rpoint[k] = DxfReal(tags[i++].value);
        } else if (type == RTREAL) {
            rb = acutNewRealRb(t.nCode, DxfReal(t.value));
        } else if (type == RTSHORT) {
            rb = acutNewShortRb(t.nCode, static_cast<short>(DxfInt(t.value)));
        } else if (type == RTLONG) {
            rb = acutNewLongRb(t.nCode, DxfInt(t.value));
        } else {
            continue; // a code without a value kind is dropped
        }
        *tail = rb;
        tail = &rb->rbnext;
    }
    return head;
}

void WriteChain(CDxfTagWriter& w, const resbuf* p) {
    for (; p; p = p->rbnext) {
        int c = p->restype;
        switch (acdbGroupCodeToType(c)) {
        case RTSTR:
            w.Text(c, p->resval.rstring);
            break;
        case RT3DPOINT:
            if ((c >= 10 && c <= 18) || (c >= 1010 && c <= 1013))
                w.Point(c, p->resval.rpoint[0], p->resval.rpoint[1], p->resval.rpoint[2]);
            else
                w.Real(c, p->resval.rpoint[0]);
            break;
        case RTREAL:
            w.Real(c, p->resval.rreal);
            break;
        case RTSHORT:
            w.Int(c, p->resval.rint);
            break;
        case RTLONG:
            w.Int(c, p->resval.rlong);
            break;
        default:
            break;
        }
    }
}

std::string EncodeSatLine(const std::string& line) {
    std::string out;
    out.reserve(line.size() + 8);
    for (char ch : line) {
        auto c = static_cast<unsigned char>(ch);
        if (c == ' ')
            out.push_back(' ');
        else if (c == '_')
            out.push_back('@');
        else if (c == '@')
            out.push_back('_');
        else if (c >= 0x41 && c <= 0x5E)
            out.push_back(static_cast<char>(0x5E - (c - 0x41)));
        else
            out.push_back(static_cast<char>(c ^ 0x5F));
        if (c == 'A')
            out.push_back(' '); // AutoCAD's scrambling doubles a space after 'A'
    }
    return out;
}

std::string DecodeSatLine(std::string_view line) {
    std::string out;
    out.reserve(line.size());
    for (size_t i = 0; i < line.size(); ++i) {
        auto c = static_cast<unsigned char>(line[i]);
        if (c == ' ')
            out.push_back(' ');
        else if (c == 0x40)
            out.push_back('_');
        else if (c == 0x5F)
            out.push_back('@');
        else if (c >= 0x41 && c <= 0x5E)
            out.push_back(static_cast<char>(0x41 + (0x5E - c)));
        else
            out.push_back(static_cast<char>(c ^ 0x5F));
        if (c == 0x5E && i + 1 < line.size() && line[i + 1] == ' ')
            ++i;
    }
    return out;
}
