// JSON dump of a drawing database.
#include "DbDump.h"

#include "base/StrUtil.h"

#include <cstdio>
#include <unordered_set>

namespace {

class CJson {
public:
    std::string m_out;
    void Raw(const char* s) { m_out += s; }
    void Str(const std::wstring& s) {
        m_out += '"';
        for (char c : WideToUtf8(s)) {
            if (c == '"' || c == '\\')
                m_out += '\\';
            if (static_cast<unsigned char>(c) < 0x20) {
                char buf[8];
                std::snprintf(buf, sizeof buf, "\\u%04x", c);
                m_out += buf;
                continue;
            }
            m_out += c;
        }
        m_out += '"';
    }
    void Num(double d) {
        char buf[32];
        std::snprintf(buf, sizeof buf, "%.17g", d);
        m_out += buf;
    }
    void Pt(const AcGePoint3d& p) {
        Raw("[");
        Num(p.x);
        Raw(",");
        Num(p.y);
        Raw(",");
        Num(p.z);
        Raw("]");
    }
    void Key(const char* k) {
        if (!m_out.empty() && m_out.back() != '{' && m_out.back() != '[')
            m_out += ',';
        m_out += '"';
        m_out += k;
        m_out += "\":";
    }
    void Sep() {
        if (!m_out.empty() && m_out.back() != '{' && m_out.back() != '[')
            m_out += ',';
    }
};

template <class T> T* InPlace(AcDbObjectId id) {
    return id.isValid() && !id.isErased() ? dynamic_cast<T*>(id.stub()->pObject) : nullptr;
}

void Chain(CJson& j, const resbuf* p) {
    j.Raw("[");
    for (; p; p = p->rbnext) {
        j.Sep();
        j.Raw("[");
        j.Num(p->restype);
        j.Raw(",");
        switch (acdbGroupCodeToType(p->restype)) {
        case RTSTR:
            j.Str(p->resval.rstring);
            break;
        case RT3DPOINT:
            j.Pt(AcGePoint3d(p->resval.rpoint[0], p->resval.rpoint[1], p->resval.rpoint[2]));
            break;
        case RTREAL:
            j.Num(p->resval.rreal);
            break;
        case RTSHORT:
            j.Num(p->resval.rint);
            break;
        default:
            j.Num(p->resval.rlong);
            break;
        }
        j.Raw("]");
    }
    j.Raw("]");
}

void Object(CJson& j, AcDbObjectId id);

void Dictionary(CJson& j, const AcDbDictionary& d) {
    j.Key("entries");
    j.Raw("[");
    for (const auto& [key, id] : d.entries()) {
        if (!InPlace<AcDbObject>(id))
            continue;
        j.Sep();
        j.Raw("[");
        j.Str(key);
        j.Raw(",");
        Object(j, id);
        j.Raw("]");
    }
    j.Raw("]");
}

void Entity(CJson& j, const AcDbEntity& e) {
    j.Key("layer");
    j.Str(e.layer());
    j.Key("color");
    j.Num(e.colorIndex());
    j.Key("linetype");
    j.Str(e.linetype());
    j.Key("ltscale");
    j.Num(e.linetypeScale());
    j.Key("lineweight");
    j.Num(e.lineWeight());
    j.Key("visible");
    j.Num(e.isVisible());
    if (auto* p = dynamic_cast<const AcDbLine*>(&e)) {
        j.Key("start");
        j.Pt(p->startPoint());
        j.Key("end");
        j.Pt(p->endPoint());
    } else if (auto* p = dynamic_cast<const AcDbCircle*>(&e)) {
        j.Key("center");
        j.Pt(p->center());
        j.Key("radius");
        j.Num(p->radius());
        if (auto* a = dynamic_cast<const AcDbArc*>(&e)) {
            j.Key("start_angle");
            j.Num(a->startAngle());
            j.Key("end_angle");
            j.Num(a->endAngle());
        }
    } else if (auto* p = dynamic_cast<const AcDbPolyline*>(&e)) {
        j.Key("closed");
        j.Num(p->isClosed());
        j.Key("vertices");
        j.Raw("[");
        for (const auto& v : p->vertices()) {
            j.Sep();
            j.Raw("[");
            for (double d : {v.pt.x, v.pt.y, v.dStartWidth, v.dEndWidth, v.dBulge}) {
                j.Sep();
                j.Num(d);
            }
            j.Raw("]");
        }
        j.Raw("]");
    } else if (auto* p = dynamic_cast<const AcDbHeavyPolyline*>(&e)) {
        j.Key("closed");
        j.Num(p->isClosed());
        j.Key("is3d");
        j.Num(dynamic_cast<const AcDb3dPolyline*>(&e) != nullptr);
        j.Key("vertices");
        j.Raw("[");
        for (const auto& v : p->vertices()) {
            j.Sep();
            j.Raw("[");
            for (double d : {v.pt.x, v.pt.y, v.pt.z, v.dStartWidth, v.dEndWidth, v.dBulge}) {
                j.Sep();
                j.Num(d);
            }
            j.Raw(",");
            j.Str(v.handle.text());
            j.Raw("]");
        }
        j.Raw("]");
    } else if (auto* p = dynamic_cast<const AcDbText*>(&e)) {
        j.Key("text");
        j.Str(p->textString());
        j.Key("position");
        j.Pt(p->position());
        j.Key("align");
        j.Pt(p->isDefaultAlignment() ? p->position() : p->alignmentPoint());
        j.Key("halign");
        j.Num(p->horizontalMode());
        j.Key("valign");
        j.Num(p->verticalMode());
        j.Key("height");
        j.Num(p->height());
        j.Key("rotation");
        j.Num(p->rotation());
    } else if (auto* p = dynamic_cast<const AcDbMText*>(&e)) {
        j.Key("text");
        j.Str(p->contents());
        j.Key("location");
        j.Pt(p->location());
        j.Key("height");
        j.Num(p->textHeight());
        j.Key("attachment");
        j.Num(p->attachment());
    } else if (auto* p = dynamic_cast<const AcDbBlockReference*>(&e)) {
        auto* pBlock = InPlace<AcDbBlockTableRecord>(p->blockTableRecord());
        j.Key("block");
        j.Str(pBlock ? pBlock->name() : L"");
        j.Key("position");
        j.Pt(p->position());
        j.Key("scale");
        j.Pt(AcGePoint3d(p->scaleFactors().sx, p->scaleFactors().sy, p->scaleFactors().sz));
        j.Key("rotation");
        j.Num(p->rotation());
    } else if (auto* p = dynamic_cast<const AcDbDimension*>(&e)) {
        auto* pStyle = InPlace<AcDbSymbolTableRecord>(p->dimensionStyle());
        j.Key("rotated");
        j.Num(dynamic_cast<const AcDbRotatedDimension*>(&e) != nullptr);
        j.Key("xline1");
        j.Pt(p->xLine1Point());
        j.Key("xline2");
        j.Pt(p->xLine2Point());
        j.Key("dimline");
        j.Pt(p->dimLinePoint());
        j.Key("text");
        j.Str(p->dimensionText());
        j.Key("style");
        j.Str(pStyle ? pStyle->name() : L"");
    } else if (auto* p = dynamic_cast<const AcDb3dSolid*>(&e)) {
        AcDbExtents ext;
        bool bOk = p->getGeomExtents(ext) == Acad::eOk;
        j.Key("extmin");
        j.Pt(bOk ? ext.minPoint() : AcGePoint3d());
        j.Key("extmax");
        j.Pt(bOk ? ext.maxPoint() : AcGePoint3d());
    }
}

// The objects dumped so far: one met again (shared, or inside itself) is named, not dumped again.
std::unordered_set<const AcDbObject*> g_seen;

void Object(CJson& j, AcDbObjectId id) {
    AcDbObject* p = InPlace<AcDbObject>(id);
    j.Raw("{");
    if (!g_seen.insert(p).second) {
        j.Key("again");
        j.Str(id.handle().text());
        j.Raw("}");
        return;
    }
    j.Key("handle");
    j.Str(id.handle().text());
    j.Key("type");
    j.Str(p->dxfName());
    j.Key("owner");
    j.Str(p->ownerId().handle().text());
    if (p->hasXData()) {
        resbuf* x = p->xData();
        j.Key("xdata");
        Chain(j, x);
        acutRelRb(x);
    }
    if (auto* pExt = InPlace<AcDbDictionary>(p->extensionDictionary())) {
        j.Key("extdict");
        j.Raw("{");
        Dictionary(j, *pExt);
        j.Raw("}");
    }
    if (auto* pDict = dynamic_cast<AcDbDictionary*>(p))
        Dictionary(j, *pDict);
    else if (auto* pX = dynamic_cast<AcDbXrecord*>(p)) {
        j.Key("chain");
        Chain(j, pX->chain());
    } else if (auto* pEnt = dynamic_cast<AcDbEntity*>(p))
        Entity(j, *pEnt);
    j.Raw("}");
}

template <class T> void Names(CJson& j, const char* key, AcDbObjectId tableId, auto&& extra) {
    j.Key(key);
    j.Raw("[");
    if (auto* pTable = InPlace<AcDbSymbolTable>(tableId))
        for (AcDbObjectId id : pTable->records())
            if (auto* p = InPlace<T>(id)) {
                j.Sep();
                j.Raw("{");
                j.Key("name");
                j.Str(p->name());
                extra(*p);
                j.Raw("}");
            }
    j.Raw("]");
}

} // namespace

std::string DumpDatabase(AcDbDatabase& db) {
    g_seen.clear();
    CJson j;
    j.Raw("{");
    j.Key("insbase");
    j.Pt(db.insbase());
    j.Key("extmin");
    j.Pt(db.extmin());
    j.Key("extmax");
    j.Pt(db.extmax());
    auto* pLayer = InPlace<AcDbSymbolTableRecord>(db.clayer());
    j.Key("clayer");
    j.Str(pLayer ? pLayer->name() : L"");
    j.Key("thumbnail_bytes");
    j.Num(static_cast<double>(db.thumbnailBitmap().size()));
    Names<AcDbLayerTableRecord>(j, "layers", db.layerTableId(), [&](auto& r) {
        j.Key("color");
        j.Num(r.colorIndex());
        j.Key("off");
        j.Num(r.isOff());
    });
    Names<AcDbRegAppTableRecord>(j, "regapps", db.regAppTableId(), [](auto&) {});
    Names<AcDbDimStyleTableRecord>(j, "dimstyles", db.dimStyleTableId(), [&](auto& r) {
        j.Key("dimlfac");
        j.Num(r.dimlfac());
    });
    Names<AcDbBlockTableRecord>(j, "blocks", db.blockTableId(), [&](auto& r) {
        j.Key("handle");
        j.Str(r.handle().text());
        j.Key("origin");
        j.Pt(r.origin());
        j.Key("entities");
        j.Raw("[");
        for (AcDbObjectId id : r.entities())
            if (InPlace<AcDbEntity>(id)) {
                j.Sep();
                Object(j, id);
            }
        j.Raw("]");
    });
    j.Key("nod");
    Object(j, db.namedObjectsDictionaryId());
    j.Raw("}");
    return j.m_out;
}
