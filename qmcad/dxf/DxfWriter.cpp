// The sections of an AutoCAD 2000 DXF file from the database, handles and owners as they are.
#include "dxf/DxfWriter.h"

#include "dxf/DxfEntityIo.h"
#include "dxf/DxfKept.h"
#include "dxf/DxfTags.h"

#include <algorithm>
#include <cstdio>

namespace {

// The header's version name for a save version. The file's layout is that of
// 2000 throughout, which 2004 shares; 2007 and later would need texts in
// UTF-8, and R14 lacks the 2000 objects, so both are written as 2000.
const char* DxfVersionName(AcDb::AcDbDwgVersion version) {
    return version == AcDb::kDHL_1800 ? "AC1018" : "AC1015";
}

template <class T> T* InPlace(AcDbObjectId id) {
    return id.isValid() ? dynamic_cast<T*>(id.stub()->pObject) : nullptr;
}

// An object is written when neither it nor any of its owners is erased.
bool IsLive(const AcDbObject* p) {
    for (int depth = 0; p && depth < 32; ++depth) {
        if (p->isErased())
            return false;
        AcDbObjectId owner = p->ownerId();
        p = owner.isValid() ? owner.stub()->pObject : nullptr;
    }
    return true;
}

class CDxfWriter {
public:
    CDxfWriter(AcDbDatabase& db, CDxfText& text) : m_db(db), m_w(text) {}
    std::string& Run();

private:
    void Header();
    void Tables();
    void Table(AcDbObjectId tableId, const char* name, const char* subclass);
    void Blocks();
    void Entities();
    void Objects();
    void Thumbnail();
    void Entity(const AcDbEntity& ent);
    void Object(const AcDbObject& obj);
    void Raw(const std::vector<DXF_TAG>& tags, const AcDbObject& obj);
    void ExtDict(const AcDbObject& obj);
    void Reactors(const AcDbObject& obj);
    void XData(const AcDbObject& obj);
    void Layout(const AcDbLayout& layout);
    void Followers(const DXF_FOLLOWERS& followers);
    const std::wstring& Name(AcDbObjectId id);

    AcDbDatabase& m_db;
    CDxfTagWriter m_w;
};

const std::wstring& CDxfWriter::Name(AcDbObjectId id) {
    static const std::wstring empty;
    auto* p = InPlace<AcDbSymbolTableRecord>(id);
    return p ? p->name() : empty;
}

std::string& CDxfWriter::Run() {
    m_w.Buffer().reserve(1 << 20);
    Header();
    m_w.Str(0, "SECTION");
    m_w.Str(2, "CLASSES");
    for (const DXF_TAG& tag : m_db.m_keptClasses)
        m_w.Text(tag.nCode, tag.strValue);
    m_w.Str(0, "ENDSEC");
    Tables();
    Blocks();
    Entities();
    Objects();
    Thumbnail();
    m_w.Str(0, "EOF");
    return m_w.Buffer();
}

void CDxfWriter::Header() {
    m_w.Str(0, "SECTION");
    m_w.Str(2, "HEADER");
    auto var = [&](const char* name) { m_w.Str(9, name); };
    var("$ACADVER");
    m_w.Str(1, DxfVersionName(m_db.saveVersion()));
    var("$ACADMAINTVER");
    m_w.Int(70, 6);
    var("$DWGCODEPAGE");
    m_w.Text(3, m_db.codePage());
    var("$INSBASE");
    m_w.Point(10, m_db.insbase().x, m_db.insbase().y, m_db.insbase().z);
    var("$EXTMIN");
    m_w.Point(10, m_db.extmin().x, m_db.extmin().y, m_db.extmin().z);
    var("$EXTMAX");
    m_w.Point(10, m_db.extmax().x, m_db.extmax().y, m_db.extmax().z);
    var("$CLAYER");
    m_w.Text(8, m_db.clayer().isValid() ? Name(m_db.clayer()) : L"0");
    CKeptHeader kept(m_w, m_db);
    if (!kept.Write("$CELTYPE")) {
        var("$CELTYPE");
        m_w.Str(6, "ByLayer");
    }
    var("$TEXTSTYLE");
    m_w.Text(7, m_db.textstyle().isValid() ? Name(m_db.textstyle()) : L"Standard");
    var("$DIMSTYLE");
    m_w.Text(2, m_db.dimstyle().isValid() ? Name(m_db.dimstyle()) : L"Standard");
    var("$DIMLFAC");
    m_w.Real(40, m_db.dimlfac());
    if (!kept.Write("$MEASUREMENT")) {
        var("$MEASUREMENT");
        m_w.Int(70, 1);
    }
    var("$HANDSEED");
    m_w.Handle(5, m_db.handseed().value());
    kept.Rest();
    m_w.Str(0, "ENDSEC");
}

void CDxfWriter::Tables() {
    m_w.Str(0, "SECTION");
    m_w.Str(2, "TABLES");
    Table(m_db.viewportTableId(), "VPORT", "AcDbViewportTableRecord");
    Table(m_db.linetypeTableId(), "LTYPE", "AcDbLinetypeTableRecord");
    Table(m_db.layerTableId(), "LAYER", "AcDbLayerTableRecord");
    Table(m_db.textStyleTableId(), "STYLE", "AcDbTextStyleTableRecord");
    Table(m_db.viewTableId(), "VIEW", "AcDbViewTableRecord");
    Table(m_db.ucsTableId(), "UCS", "AcDbUCSTableRecord");
    Table(m_db.regAppTableId(), "APPID", "AcDbRegAppTableRecord");
    Table(m_db.dimStyleTableId(), "DIMSTYLE", "AcDbDimStyleTableRecord");
    Table(m_db.blockTableId(), "BLOCK_RECORD", "AcDbBlockTableRecord");
    m_w.Str(0, "ENDSEC");
}

void CDxfWriter::Table(AcDbObjectId tableId, const char* name, const char* subclass) {
    auto* pTable = InPlace<AcDbSymbolTable>(tableId);
    if (!pTable)
        return;
    std::vector<AcDbSymbolTableRecord*> recs;
    for (AcDbObjectId id : pTable->records())
        if (auto* p = InPlace<AcDbSymbolTableRecord>(id); p && !p->isErased())
            recs.push_back(p);
    bool bDim = std::string_view(name) == "DIMSTYLE";
    m_w.Str(0, "TABLE");
    m_w.Str(2, name);
    m_w.Handle(5, pTable->handle().value());
    m_w.Str(330, "0");
    m_w.Str(100, "AcDbSymbolTable");
    m_w.Int(70, static_cast<long long>(recs.size()));
    if (bDim) {
        m_w.Str(100, "AcDbDimStyleTable");
        m_w.Int(71, 0);
    }
    for (AcDbSymbolTableRecord* p : recs) {
        m_w.Str(0, name);
        m_w.Handle(bDim ? 105 : 5, p->handle().value());
        ExtDict(*p);
        m_w.Handle(330, pTable->handle().value());
        m_w.Str(100, "AcDbSymbolTableRecord");
        m_w.Str(100, subclass);
        m_w.Text(2, p->name());
        CKeptWriter kept(m_w, m_db, p->m_keptTags);
        if (auto* pBlock = dynamic_cast<AcDbBlockTableRecord*>(p)) {
            if (pBlock->m_layoutId.isValid() && !pBlock->m_layoutId.isErased())
                m_w.Handle(340, pBlock->m_layoutId.handle().value());
            kept.Rest();
            XData(*p);
            continue;
        }
        m_w.Int(70, p->m_nFlags);
        if (auto* pLayer = dynamic_cast<AcDbLayerTableRecord*>(p)) {
            m_w.Int(62, pLayer->isOff() ? -pLayer->colorIndex() : pLayer->colorIndex());
            m_w.Text(6, pLayer->m_strLinetype);
            if (!pLayer->m_bPlottable)
                m_w.Int(290, 0);
            m_w.Int(370, pLayer->m_nLineWeight);
        } else if (auto* pLt = dynamic_cast<AcDbLinetypeTableRecord*>(p)) {
            m_w.Text(3, pLt->m_strDescription);
            m_w.Int(72, 65);
            m_w.Int(73, static_cast<long long>(pLt->m_dashes.size()));
            double total = 0;
            for (double d : pLt->m_dashes)
                total += d < 0 ? -d : d;
            m_w.Real(40, total);
            for (double d : pLt->m_dashes) {
                m_w.Real(49, d);
                m_w.Int(74, 0);
            }
        } else if (auto* pStyle = dynamic_cast<AcDbTextStyleTableRecord*>(p)) {
            m_w.Real(40, pStyle->m_dTextSize);
            m_w.Real(41, pStyle->m_dWidthFactor);
            kept.Real(50, 0.0);
            kept.Int(71, 0);
            kept.Real(42, 2.5);
            m_w.Text(3, pStyle->m_strFont);
            m_w.Text(4, pStyle->m_strBigFont);
        } else if (auto* pDim = dynamic_cast<AcDbDimStyleTableRecord*>(p)) {
            m_w.Real(40, pDim->dimscale());
            m_w.Real(41, pDim->dimasz());
            m_w.Real(140, pDim->dimtxt());
            m_w.Real(144, pDim->dimlfac());
        } else if (dynamic_cast<AcDbViewportTableRecord*>(p)) {
            kept.Real(12, 0.0);
            kept.Real(22, 0.0);
            kept.Real(40, 1000.0);
            kept.Real(41, 1.5);
        }
        kept.Rest();
        XData(*p);
    }
    m_w.Str(0, "ENDTAB");
}

void CDxfWriter::Blocks() {
    m_w.Str(0, "SECTION");
    m_w.Str(2, "BLOCKS");
    auto* pTable = InPlace<AcDbBlockTable>(m_db.blockTableId());
    for (AcDbObjectId id : pTable ? pTable->records() : std::vector<AcDbObjectId>()) {
        auto* p = InPlace<AcDbBlockTableRecord>(id);
        if (!p || p->isErased())
            continue;
        bool bPaper = p->name().size() >= 12 && id == m_db.paperSpaceId();
        m_w.Str(0, "BLOCK");
        m_w.Handle(5, p->m_beginHandle.value());
        m_w.Handle(330, p->handle().value());
        m_w.Str(100, "AcDbEntity");
        if (bPaper)
            m_w.Int(67, 1);
        m_w.Str(8, "0");
        m_w.Str(100, "AcDbBlockBegin");
        m_w.Text(2, p->name());
        m_w.Int(70, p->isAnonymous() ? 1 : 0);
        m_w.Point(10, p->origin().x, p->origin().y, p->origin().z);
        m_w.Text(3, p->name());
        m_w.Str(1, "");
        if (!p->m_strDescription.empty())
            m_w.Text(4, p->m_strDescription);
        // The two spaces' entities go to the ENTITIES section; every other
        // block keeps its own here, a further layout's included.
        if (id != m_db.modelSpaceId() && id != m_db.paperSpaceId())
            for (AcDbObjectId e : p->entities())
                if (auto* pEnt = InPlace<AcDbEntity>(e); pEnt && !pEnt->isErased())
                    Entity(*pEnt);
        m_w.Str(0, "ENDBLK");
        m_w.Handle(5, p->m_endHandle.value());
        m_w.Handle(330, p->handle().value());
        m_w.Str(100, "AcDbEntity");
        if (bPaper)
            m_w.Int(67, 1);
        m_w.Str(8, "0");
        m_w.Str(100, "AcDbBlockEnd");
    }
    m_w.Str(0, "ENDSEC");
}

void CDxfWriter::Entities() {
    m_w.Str(0, "SECTION");
    m_w.Str(2, "ENTITIES");
    for (AcDbObjectId space : {m_db.modelSpaceId(), m_db.paperSpaceId()})
        if (auto* p = InPlace<AcDbBlockTableRecord>(space))
            for (AcDbObjectId e : p->entities())
                if (auto* pEnt = InPlace<AcDbEntity>(e); pEnt && !pEnt->isErased())
                    Entity(*pEnt);
    m_w.Str(0, "ENDSEC");
}

void CDxfWriter::ExtDict(const AcDbObject& obj) {
    AcDbObjectId ext = obj.extensionDictionary();
    if (!ext.isValid() || ext.isErased())
        return;
    m_w.Str(102, "{ACAD_XDICTIONARY");
    m_w.Handle(360, ext.handle().value());
    m_w.Str(102, "}");
}

void CDxfWriter::Reactors(const AcDbObject& obj) {
    if (!obj.ownerId().isValid())
        return;
    m_w.Str(102, "{ACAD_REACTORS");
    m_w.Handle(330, obj.ownerId().handle().value());
    m_w.Str(102, "}");
}

void CDxfWriter::XData(const AcDbObject& obj) {
    if (!obj.hasXData())
        return;
    resbuf* chain = obj.xData();
    WriteChain(m_w, chain);
    acutRelRb(chain);
}

// Groups kept verbatim, with the owner placed before the first subclass marker.
// The owner goes where the reader takes it from: after the leading 102
// groups, before any other group (a kept 330 of the object's data included).
void CDxfWriter::Raw(const std::vector<DXF_TAG>& tags, const AcDbObject& obj) {
    size_t i = 0;
    for (bool bInGroup = false; i < tags.size(); ++i) {
        const DXF_TAG& t = tags[i];
        if (t.nCode == 102)
            bInGroup = !t.strValue.empty() && t.strValue[0] == L'{';
        else if (!bInGroup)
            break;
        m_w.Text(t.nCode, t.strValue);
    }
    m_w.Handle(330, obj.ownerId().handle().value());
    for (; i < tags.size(); ++i)
        m_w.Text(tags[i].nCode, tags[i].strValue);
}

void CDxfWriter::Entity(const AcDbEntity& ent) {
    m_w.Text(0, ent.dxfName());
    m_w.Handle(5, ent.handle().value());
    if (auto* pUnknown = dynamic_cast<const AcDbUnknownEntity*>(&ent)) {
        Raw(pUnknown->m_tags, ent);
        XData(ent);
        Followers(pUnknown->m_followers);
        return;
    }
    ExtDict(ent);
    m_w.Handle(330, ent.ownerId().handle().value());
    m_w.Str(100, "AcDbEntity");
    if (ent.ownerId() == m_db.paperSpaceId())
        m_w.Int(67, 1);
    m_w.Text(8, ent.layer());
    if (ent.linetype() != L"ByLayer")
        m_w.Text(6, ent.linetype());
    if (ent.colorIndex() != 256)
        m_w.Int(62, ent.colorIndex());
    if (ent.lineWeight() != -1)
        m_w.Int(370, ent.lineWeight());
    if (ent.linetypeScale() != 1.0)
        m_w.Real(48, ent.linetypeScale());
    if (!ent.isVisible())
        m_w.Int(60, 1);
    WriteEntityBody(m_w, ent);
    XData(ent);
    WriteVertices(m_w, ent);
    if (auto* pRef = dynamic_cast<const AcDbBlockReference*>(&ent))
        Followers(pRef->m_followers);
}

void CDxfWriter::Followers(const DXF_FOLLOWERS& followers) {
    for (const auto& tags : followers)
        for (const DXF_TAG& t : tags)
            m_w.Text(t.nCode, t.strValue);
}

void CDxfWriter::Objects() {
    m_w.Str(0, "SECTION");
    m_w.Str(2, "OBJECTS");
    if (auto* pNod = InPlace<AcDbDictionary>(m_db.namedObjectsDictionaryId()))
        Object(*pNod);
    std::vector<const AcDbObject*> objects; // in handle order, as the editor writes them
    for (const AcDbStub& s : m_db.stubs()) {
        AcDbObject* p = s.pObject;
        if (!p || dynamic_cast<AcDbEntity*>(p) || dynamic_cast<AcDbSymbolTable*>(p) ||
            dynamic_cast<AcDbSymbolTableRecord*>(p) ||
            p->objectId() == m_db.namedObjectsDictionaryId())
            continue;
        if (IsLive(p))
            objects.push_back(p);
    }
    std::sort(objects.begin(), objects.end(),
              [](const AcDbObject* a, const AcDbObject* b) { return a->handle() < b->handle(); });
    for (const AcDbObject* p : objects)
        Object(*p);
    m_w.Str(0, "ENDSEC");
}

void CDxfWriter::Object(const AcDbObject& obj) {
    m_w.Text(0, obj.dxfName());
    m_w.Handle(5, obj.handle().value());
    if (auto* pUnknown = dynamic_cast<const AcDbUnknownObject*>(&obj)) {
        Raw(pUnknown->m_tags, obj);
        XData(obj);
        return;
    }
    Reactors(obj);
    ExtDict(obj);
    m_w.Handle(330, obj.ownerId().handle().value());
    if (auto* pDict = dynamic_cast<const AcDbDictionary*>(&obj)) {
        m_w.Str(100, "AcDbDictionary");
        if (pDict->hardOwner)
            m_w.Int(280, 1);
        m_w.Int(281, pDict->cloningFlag);
        for (const auto& [key, id] : pDict->entries()) {
            if (!id.isValid() || id.isErased())
                continue;
            m_w.Text(3, key);
            m_w.Handle(pDict->hardOwner ? 360 : 350, id.handle().value());
        }
    } else if (auto* pX = dynamic_cast<const AcDbXrecord*>(&obj)) {
        m_w.Str(100, "AcDbXrecord");
        m_w.Int(280, pX->mergeStyle);
        WriteChain(m_w, pX->chain());
    } else if (auto* pLayout = dynamic_cast<const AcDbLayout*>(&obj)) {
        Layout(*pLayout);
    }
    XData(obj);
}

// A layout with the plot settings of an A3 sheet in millimetres.
void CDxfWriter::Layout(const AcDbLayout& layout) {
    m_w.Str(100, "AcDbPlotSettings");
    m_w.Str(1, "");
    m_w.Str(2, "none_device");
    m_w.Str(4, "ISO_A3_(420.00_x_297.00_MM)");
    m_w.Str(6, "");
    for (int c : {40, 41, 42, 43})
        m_w.Real(c, 7.5);
    m_w.Real(44, 420.0);
    m_w.Real(45, 297.0);
    for (int c : {46, 47, 48, 49, 140, 141})
        m_w.Real(c, 0.0);
    m_w.Real(142, 1.0);
    m_w.Real(143, 1.0);
    m_w.Int(70, layout.m_nTabOrder == 0 ? 1024 : 0);
    m_w.Int(72, 1);
    m_w.Int(73, 0);
    m_w.Int(74, 5);
    m_w.Str(7, "");
    m_w.Int(75, 16);
    m_w.Int(76, 0);
    m_w.Int(77, 2);
    m_w.Int(78, 300);
    m_w.Real(147, 1.0);
    m_w.Real(148, 0.0);
    m_w.Real(149, 0.0);
    m_w.Str(100, "AcDbLayout");
    m_w.Text(1, layout.m_strName);
    m_w.Int(70, 1);
    m_w.Int(71, layout.m_nTabOrder);
    m_w.Point2(10, 0, 0);
    m_w.Point2(11, 420, 297);
    m_w.Point(12, 0, 0, 0);
    m_w.Point(14, 1e20, 1e20, 1e20);
    m_w.Point(15, -1e20, -1e20, -1e20);
    m_w.Real(146, 0.0);
    m_w.Point(13, 0, 0, 0);
    m_w.Point(16, 1, 0, 0);
    m_w.Point(17, 0, 1, 0);
    m_w.Int(76, 1);
    m_w.Handle(330, layout.m_blockTableRecordId.handle().value());
}

void CDxfWriter::Thumbnail() {
    const std::vector<uint8_t>& bmp = m_db.thumbnailBitmap();
    if (bmp.empty())
        return;
    m_w.Str(0, "SECTION");
    m_w.Str(2, "THUMBNAILIMAGE");
    m_w.Int(90, static_cast<long long>(bmp.size()));
    for (size_t i = 0; i < bmp.size(); i += 127) {
        std::string hex;
        for (size_t k = i; k < bmp.size() && k < i + 127; ++k) {
            char buf[3];
            std::snprintf(buf, sizeof buf, "%02X", bmp[k]);
            hex += buf;
        }
        m_w.Str(310, hex);
    }
    m_w.Str(0, "ENDSEC");
}

} // namespace

void WriteDxf(AcDbDatabase& db, std::string& out) {
    CDxfText text;
    text.SetCodePage(db.codePage());
    CDxfWriter writer(db, text);
    out.swap(writer.Run());
}
