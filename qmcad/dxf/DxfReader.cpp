// Sections of a DXF file into the database: header, tables, blocks, entities, objects, thumbnail.
#include "dxf/DxfReader.h"

#include "base/StrUtil.h"
#include "dxf/DxfEntityIo.h"
#include "dxf/DxfGraphCheck.h"
#include "dxf/DxfKept.h"
#include "dxf/DxfTags.h"

#include <algorithm>
#include <cstring>
#include <unordered_map>

namespace {

// An object read from the file that joins the database once all is read.
struct PENDING {
    AcDbObject* pObj;
    uint64_t nHandle;
    uint64_t nOwner;
    AcDbBlockTableRecord* pBlock; // entities: the block they belong to
    AcDbSymbolTable* pTable;      // table records: their table
};

struct PENDING_REF {
    AcDbEntity* pEnt;
    DXF_ENTITY_REFS refs;
};

// Names that mark the file's structure: as an entity or object they could
// only be written back as structure that was never there.
bool IsStructureName(std::string_view type) {
    return type == "SECTION" || type == "ENDSEC" || type == "TABLE" || type == "ENDTAB" ||
           type == "BLOCK" || type == "ENDBLK" || type == "CLASS" || type == "EOF";
}

bool IsXData(int nCode) {
    return nCode >= 1000 && nCode <= 1071;
}

class CDxfReader {
public:
    CDxfReader(AcDbDatabase& db, std::string_view data, DXF_READ_REPORT& report)
        : m_db(db), m_in(data), m_report(report) {}
    ~CDxfReader() {
        for (PENDING& p : m_pending)
            delete p.pObj; // only when reading failed before Finish
    }
    Acad::ErrorStatus Read();

private:
    bool Collect();
    void ReadThumbnail();
    void ReadHeader();
    void KeepHeader(const std::vector<std::string>& order);
    void ReadClasses();
    void KeepRecordGroups(std::string_view type, AcDbSymbolTableRecord& rec);
    void ReadTables();
    void ReadBlocks();
    void ReadEntity(std::string_view type, AcDbBlockTableRecord* pDefault);
    void ReadObject(std::string_view type);
    void ReadFollowers(AcDbEntity* pOwner);
    void ReadTableRecord(std::string_view type, AcDbSymbolTable* pTable);
    void SkipRecords();
    std::vector<bool> UnclosedGroups() const;
    // An enumerated value; outside [nLow, nHigh] the default, counted.
    int Ranged(std::string_view value, int nLow, int nHigh, int nDefault) {
        int n = DxfInt(value, nDefault);
        if (n >= nLow && n <= nHigh)
            return n;
        ++m_report.nOutOfRange;
        return nDefault;
    }
    size_t Common(AcDbObject& obj, uint64_t& nHandle, uint64_t& nOwner, bool bKeepRaw,
                  std::vector<DXF_TAG>* pRaw);
    AcDbBlockTableRecord* BlockNamed(const std::wstring& name, bool bCreate);
    AcDbObjectId Stub(std::string_view handle);
    void Finish();
    void FinishTables();
    void FinishHeader();

    AcDbDatabase& m_db;
    CDxfTagReader m_in;
    DXF_READ_REPORT& m_report;
    CDxfText m_text;
    DXF_RAW_TAG m_tag;
    std::vector<DXF_RAW_TAG> m_tags;
    std::vector<PENDING> m_pending;
    std::vector<PENDING_REF> m_refs;
    std::unordered_map<uint64_t, AcDbBlockTableRecord*> m_blocksByHandle;
    std::unordered_map<std::wstring, AcDbBlockTableRecord*> m_blocksByName; // folded names
    std::unordered_map<std::wstring, AcDbSymbolTable*> m_tables;            // by DXF name
    std::unordered_map<std::string, std::vector<DXF_RAW_TAG>> m_header;
    uint64_t m_nNod = 0;
    bool m_bEof = false;
};

// Reads the tags of one record, up to (not including) the next 0 group.
bool CDxfReader::Collect() {
    m_tags.clear();
    DXF_RAW_TAG t;
    while (m_in.Next(t)) {
        if (t.nCode == 0) {
            m_in.PushBack();
            return true;
        }
        m_tags.push_back(t);
    }
    return false;
}

AcDbObjectId CDxfReader::Stub(std::string_view handle) {
    AcDbObjectId id;
    uint64_t h = DxfHandle(handle);
    if (h)
        m_db.getAcDbObjectId(id, true, AcDbHandle(h));
    return id;
}

Acad::ErrorStatus CDxfReader::Read() {
    while (m_in.Next(m_tag)) {
        if (m_tag.nCode == 999)
            continue;
        if (m_tag.nCode != 0)
            return Acad::eBadDxfFile;
        if (m_tag.value == "EOF") {
            m_bEof = true;
            break;
        }
        if (m_tag.value != "SECTION" || !m_in.Next(m_tag) || m_tag.nCode != 2)
            return Acad::eBadDxfFile;
        std::string_view name = m_tag.value;
        if (name == "HEADER")
            ReadHeader();
        else if (name == "TABLES")
            ReadTables();
        else if (name == "BLOCKS")
            ReadBlocks();
        else if (name == "ENTITIES") {
            while (m_in.Next(m_tag) && m_tag.nCode == 0 && m_tag.value != "ENDSEC")
                ReadEntity(m_tag.value, nullptr);
        } else if (name == "OBJECTS") {
            while (m_in.Next(m_tag) && m_tag.nCode == 0 && m_tag.value != "ENDSEC")
                ReadObject(m_tag.value);
        } else if (name == "THUMBNAILIMAGE") {
            ReadThumbnail();
        } else if (name == "CLASSES") {
            ReadClasses();
        } else {
            SkipRecords();
        }
        if (m_tag.nCode != 0 || m_tag.value != "ENDSEC")
            return Acad::eBadDxfFile;
    }
    if (!m_bEof || m_in.IsBad())
        return Acad::eBadDxfFile;
    Finish();
    return Acad::eOk;
}

void CDxfReader::SkipRecords() {
    while (m_in.Next(m_tag))
        if (m_tag.nCode == 0 && m_tag.value == "ENDSEC")
            return;
}

void AppendHex(std::string_view hex, std::vector<uint8_t>& out) {
    for (size_t i = 0; i + 1 < hex.size(); i += 2)
        out.push_back(static_cast<uint8_t>(DxfHandle(hex.substr(i, 2))));
}

void CDxfReader::ReadThumbnail() {
    std::vector<uint8_t> bitmap;
    while (m_in.Next(m_tag) && m_tag.nCode != 0)
        if (m_tag.nCode == 310)
            AppendHex(m_tag.value, bitmap);
    m_db.setThumbnailBitmap(bitmap);
}

void CDxfReader::ReadClasses() {
    while (m_in.Next(m_tag)) {
        if (m_tag.nCode == 0 && m_tag.value == "ENDSEC")
            return;
        m_db.m_keptClasses.push_back({m_tag.nCode, m_text.Decode(m_tag.value)});
    }
}

// Every variable the database does not model, in file order, decoded once
// the file's code page is known.
void CDxfReader::KeepHeader(const std::vector<std::string>& order) {
    for (const std::string& name : order) {
        if (IsModelledHeaderVariable(name))
            continue;
        m_db.m_keptHeader.push_back({9, Utf8ToWide(name)});
        for (const DXF_RAW_TAG& t : m_header[name])
            m_db.m_keptHeader.push_back({t.nCode, m_text.Decode(t.value)});
    }
}

void CDxfReader::KeepRecordGroups(std::string_view type, AcDbSymbolTableRecord& rec) {
    bool bInGroup = false, bOwnerSeen = false;
    for (const DXF_RAW_TAG& t : m_tags) {
        if (t.nCode == 102) {
            bInGroup = !t.value.empty() && t.value[0] == '{';
            continue;
        }
        if (bInGroup)
            continue;
        if (t.nCode == 330 && bOwnerSeen) // a second owner group is data
            rec.m_keptTags.push_back({t.nCode, m_text.Decode(t.value)});
        else if (!IsModelledRecordGroup(type, t.nCode))
            rec.m_keptTags.push_back({t.nCode, m_text.Decode(t.value)});
        bOwnerSeen = bOwnerSeen || t.nCode == 330;
    }
}

void CDxfReader::ReadHeader() {
    std::string name;
    std::vector<std::string> order;
    while (m_in.Next(m_tag)) {
        if (m_tag.nCode == 0)
            break;
        if (m_tag.nCode == 9) {
            name.assign(m_tag.value);
            if (!m_header.count(name))
                order.push_back(name);
            m_header[name];
        } else {
            m_header[name].push_back(m_tag);
        }
    }
    auto one = [&](const char* var) -> std::string_view {
        auto it = m_header.find(var);
        return it == m_header.end() || it->second.empty() ? std::string_view()
                                                          : it->second[0].value;
    };
    std::string_view ver = one("$ACADVER");
    m_report.strVersion.assign(ver);
    if (ver >= "AC1021") {
        m_text.SetUtf8();
    } else {
        std::wstring cp = Utf8ToWide(one("$DWGCODEPAGE"));
        m_text.SetCodePage(cp);
        if (!cp.empty())
            m_db.setCodePage(cp);
    }
    KeepHeader(order);
    m_db.raiseHandseed(AcDbHandle(DxfHandle(one("$HANDSEED"))));
    auto point = [&](const char* var) {
        AcGePoint3d p;
        for (const auto& t : m_header[var]) {
            if (t.nCode == 10)
                p.x = DxfReal(t.value);
            else if (t.nCode == 20)
                p.y = DxfReal(t.value);
            else if (t.nCode == 30)
                p.z = DxfReal(t.value);
        }
        return p;
    };
    m_db.setInsbase(point("$INSBASE"));
    m_db.setExtents(point("$EXTMIN"), point("$EXTMAX"));
}

void CDxfReader::ReadTables() {
    while (m_in.Next(m_tag) && m_tag.nCode == 0 && m_tag.value == "TABLE") {
        Collect();
        std::string_view name;
        uint64_t nHandle = 0;
        for (const auto& t : m_tags) {
            if (t.nCode == 2 && name.empty())
                name = t.value;
            else if (t.nCode == 5)
                nHandle = DxfHandle(t.value);
        }
        AcDbSymbolTable* pTable = nullptr;
        if (name == "BLOCK_RECORD")
            pTable = new AcDbBlockTable;
        else if (name == "LAYER")
            pTable = new AcDbLayerTable;
        else if (name == "APPID")
            pTable = new AcDbRegAppTable;
        else if (name == "DIMSTYLE")
            pTable = new AcDbDimStyleTable;
        else if (name == "LTYPE")
            pTable = new AcDbLinetypeTable;
        else if (name == "STYLE")
            pTable = new AcDbTextStyleTable;
        else if (name == "VPORT")
            pTable = new AcDbViewportTable;
        else if (name == "VIEW")
            pTable = new AcDbViewTable;
        else if (name == "UCS")
            pTable = new AcDbUCSTable;
        // A table named twice is one table: the records of the second join the
        // first, which alone is written back.
        if (auto it = m_tables.find(Utf8ToWide(name)); pTable && it != m_tables.end()) {
            delete pTable;
            pTable = it->second;
            ++m_report.nMisplaced;
        } else if (pTable) {
            m_tables[Utf8ToWide(name)] = pTable;
            m_pending.push_back({pTable, nHandle, 0, nullptr, nullptr});
        }
        while (m_in.Next(m_tag) && m_tag.nCode == 0 && m_tag.value != "ENDTAB")
            ReadTableRecord(m_tag.value, pTable);
    }
}

void CDxfReader::ReadTableRecord(std::string_view type, AcDbSymbolTable* pTable) {
    std::string strType(type);
    Collect();
    AcDbSymbolTableRecord* pRec = nullptr;
    if (type == "BLOCK_RECORD")
        pRec = new AcDbBlockTableRecord;
    else if (type == "LAYER")
        pRec = new AcDbLayerTableRecord;
    else if (type == "APPID")
        pRec = new AcDbRegAppTableRecord;
    else if (type == "DIMSTYLE")
        pRec = new AcDbDimStyleTableRecord;
    else if (type == "LTYPE")
        pRec = new AcDbLinetypeTableRecord;
    else if (type == "STYLE")
        pRec = new AcDbTextStyleTableRecord;
    else if (type == "VPORT")
        pRec = new AcDbViewportTableRecord;
    if (!pRec || !pTable || !pTable->accepts(pRec)) {
        delete pRec;
        return;
    }
    uint64_t nHandle = 0, nOwner = 0;
    for (const auto& t : m_tags) {
        switch (t.nCode) {
        case 5:
        case 105:
            nHandle = DxfHandle(t.value);
            break;
        case 330:
            if (!nOwner)
                nOwner = DxfHandle(t.value);
            break;
        case 2:
            pRec->setNameRaw(m_text.Decode(t.value));
            break;
        case 70:
            pRec->m_nFlags = DxfInt(t.value);
            break;
        default:
            break;
        }
    }
    if (auto* p = dynamic_cast<AcDbLayerTableRecord*>(pRec)) {
        for (const auto& t : m_tags) {
            if (t.nCode == 62) {
                int c = DxfInt(t.value, 7);
                if (c < -256 || c > 256) {
                    ++m_report.nOutOfRange;
                    c = 7;
                }
                p->setIsOff(c < 0);
                p->setColorIndex(static_cast<short>(c < 0 ? -c : c));
            } else if (t.nCode == 6) {
                p->m_strLinetype = m_text.Decode(t.value);
            } else if (t.nCode == 290) {
                p->m_bPlottable = DxfInt(t.value, 1) != 0;
            } else if (t.nCode == 370) {
                p->m_nLineWeight = static_cast<short>(Ranged(t.value, -3, 211, -3));
            }
        }
    } else if (auto* p = dynamic_cast<AcDbLinetypeTableRecord*>(pRec)) {
        for (const auto& t : m_tags)
            if (t.nCode == 3)
                p->m_strDescription = m_text.Decode(t.value);
            else if (t.nCode == 49)
                p->m_dashes.push_back(DxfReal(t.value));
    } else if (auto* p = dynamic_cast<AcDbTextStyleTableRecord*>(pRec)) {
        for (const auto& t : m_tags)
            if (t.nCode == 3)
                p->m_strFont = m_text.Decode(t.value);
            else if (t.nCode == 4)
                p->m_strBigFont = m_text.Decode(t.value);
            else if (t.nCode == 40)
                p->m_dTextSize = DxfReal(t.value);
            else if (t.nCode == 41)
                p->m_dWidthFactor = DxfReal(t.value, 1.0);
    } else if (auto* p = dynamic_cast<AcDbDimStyleTableRecord*>(pRec)) {
        for (const auto& t : m_tags)
            if (t.nCode == 40)
                p->setDimscale(DxfReal(t.value, 1.0));
            else if (t.nCode == 41)
                p->setDimasz(DxfReal(t.value));
            else if (t.nCode == 140)
                p->setDimtxt(DxfReal(t.value));
            else if (t.nCode == 144)
                p->setDimlfac(DxfReal(t.value, 1.0));
    } else if (auto* p = dynamic_cast<AcDbBlockTableRecord*>(pRec)) {
        for (const auto& t : m_tags)
            if (t.nCode == 340)
                p->m_layoutId = Stub(t.value);
        if (nHandle)
            m_blocksByHandle[nHandle] = p;
        m_blocksByName[StrMakeLower(p->name())] = p;
    }
    KeepRecordGroups(type, *pRec);
    m_pending.push_back({pRec, nHandle, nOwner, nullptr, pTable});
}

AcDbBlockTableRecord* CDxfReader::BlockNamed(const std::wstring& name, bool bCreate) {
    auto it = m_blocksByName.find(StrMakeLower(name));
    if (it != m_blocksByName.end())
        return it->second;
    if (!bCreate)
        return nullptr;
    auto* p = new AcDbBlockTableRecord;
    p->setNameRaw(name);
    m_blocksByName[StrMakeLower(name)] = p;
    AcDbSymbolTable* pTable = m_tables[L"BLOCK_RECORD"];
    if (!pTable) {
        pTable = new AcDbBlockTable;
        m_tables[L"BLOCK_RECORD"] = pTable;
        m_pending.push_back({pTable, 0, 0, nullptr, nullptr});
    }
    m_pending.push_back({p, 0, 0, nullptr, pTable});
    return p;
}

void CDxfReader::ReadBlocks() {
    while (m_in.Next(m_tag) && m_tag.nCode == 0 && m_tag.value == "BLOCK") {
        Collect();
        std::wstring name;
        uint64_t nHandle = 0, nOwner = 0;
        AcGePoint3d base;
        std::wstring desc;
        for (const auto& t : m_tags) {
            switch (t.nCode) {
            case 2:
                name = m_text.Decode(t.value);
                break;
            case 5:
                nHandle = DxfHandle(t.value);
                break;
            case 330:
                nOwner = DxfHandle(t.value);
                break;
            case 4:
                desc = m_text.Decode(t.value);
                break;
            case 10:
                base.x = DxfReal(t.value);
                break;
            case 20:
                base.y = DxfReal(t.value);
                break;
            case 30:
                base.z = DxfReal(t.value);
                break;
            default:
                break;
            }
        }
        auto it = m_blocksByHandle.find(nOwner);
        AcDbBlockTableRecord* pRec =
            it != m_blocksByHandle.end() ? it->second : BlockNamed(name, true);
        pRec->setOrigin(base);
        pRec->m_strDescription = desc;
        pRec->m_beginHandle = AcDbHandle(nHandle);
        while (m_in.Next(m_tag) && m_tag.nCode == 0 && m_tag.value != "ENDBLK" &&
               m_tag.value != "ENDSEC")
            ReadEntity(m_tag.value, pRec);
        if (m_tag.value != "ENDBLK")
            return;
        Collect();
        for (const auto& t : m_tags)
            if (t.nCode == 5)
                pRec->m_endHandle = AcDbHandle(DxfHandle(t.value));
    }
}

// The "102 {" tags of the record that no "102 }" closes before the next
// opening or the extended data: such a group would swallow the groups the
// writer puts after it, so it is read as if it had never been opened.
std::vector<bool> CDxfReader::UnclosedGroups() const {
    std::vector<bool> unclosed(m_tags.size(), false);
    size_t nOpen = m_tags.size();
    for (size_t i = 0; i < m_tags.size(); ++i) {
        const DXF_RAW_TAG& t = m_tags[i];
        if (t.nCode == 1001)
            break;
        if (t.nCode != 102)
            continue;
        bool bOpens = !t.value.empty() && t.value[0] == '{';
        if (bOpens && nOpen < m_tags.size())
            unclosed[nOpen] = true;
        nOpen = bOpens ? i : m_tags.size();
    }
    if (nOpen < m_tags.size())
        unclosed[nOpen] = true;
    return unclosed;
}

// The groups every object shares: handle, owner, extension dictionary,
// entity properties. Returns where the extended data begins.
size_t CDxfReader::Common(AcDbObject& obj, uint64_t& nHandle, uint64_t& nOwner, bool bKeepRaw,
                          std::vector<DXF_TAG>* pRaw) {
    auto* pEnt = dynamic_cast<AcDbEntity*>(&obj);
    size_t nXData = m_tags.size();
    std::vector<bool> unclosed = UnclosedGroups();
    bool bInGroup = false, bInXDict = false, bOwnerSeen = false;
    for (size_t i = 0; i < m_tags.size(); ++i) {
        const DXF_RAW_TAG& t = m_tags[i];
        if (IsXData(t.nCode) && t.nCode == 1001) {
            nXData = i;
            break;
        }
        if (unclosed[i])
            continue;
        bool bRaw = bKeepRaw;
        if (t.nCode == 102) {
            bInGroup = !t.value.empty() && t.value[0] == '{';
            bInXDict = t.value == "{ACAD_XDICTIONARY";
        } else if (bInGroup) {
            if (bInXDict && t.nCode == 360)
                obj.setExtensionDictionaryRaw(Stub(t.value));
        } else if (t.nCode == 5 && !nHandle) {
            nHandle = DxfHandle(t.value);
            bRaw = false;
        } else if (t.nCode == 330 && !bOwnerSeen) {
            nOwner = DxfHandle(t.value);
            bOwnerSeen = true;
            bRaw = false;
        } else if (pEnt) {
            switch (t.nCode) {
            case 8:
                pEnt->setLayer(m_text.Decode(t.value));
                break;
            case 6:
                pEnt->setLinetype(m_text.Decode(t.value));
                break;
            case 62:
                pEnt->setColorIndex(static_cast<short>(Ranged(t.value, 0, 257, 256)));
                break;
            case 370:
                pEnt->setLineWeight(static_cast<short>(Ranged(t.value, -3, 211, -1)));
                break;
            case 48:
                pEnt->setLinetypeScale(DxfReal(t.value, 1.0));
                break;
            case 60:
                pEnt->setVisibility(DxfInt(t.value) == 0);
                break;
            case 67:
                pEnt->m_bPaperSpace = DxfInt(t.value) != 0;
                break;
            default:
                break;
            }
        }
        if (bRaw && pRaw)
            pRaw->push_back({t.nCode, m_text.Decode(t.value)});
    }
    if (nXData < m_tags.size()) {
        resbuf* xdata = ChainFromTags(m_tags, nXData, m_tags.size(), m_text);
        obj.setXDataRaw(xdata);
        acutRelRb(xdata);
    }
    return nXData;
}

void CDxfReader::ReadEntity(std::string_view type, AcDbBlockTableRecord* pDefault) {
    std::string strType(type); // the tag's view is overwritten by Collect
    Collect();
    if (strType == "VERTEX" || strType == "SEQEND" || strType == "ATTRIB")
        return; // strays without their polyline or insert
    if (IsStructureName(strType)) {
        ++m_report.nMisplaced;
        return;
    }
    DXF_ENTITY_REFS refs;
    // The entity's own groups end where its extended data begins.
    auto xdata = std::find_if(m_tags.begin(), m_tags.end(),
                              [](const DXF_RAW_TAG& t) { return t.nCode == 1001; });
    AcDbEntity* pEnt =
        xdata == m_tags.end()
            ? ReadEntityBody(strType, m_tags, m_text, refs)
            : ReadEntityBody(strType, std::vector<DXF_RAW_TAG>(m_tags.begin(), xdata), m_text,
                             refs);
    m_report.nOutOfRange += refs.nOutOfRange;
    std::vector<DXF_TAG>* pRaw = nullptr;
    if (!pEnt) {
        ++m_report.unknownEntities[strType];
        auto* pUnknown = new AcDbUnknownEntity(Utf8ToWide(strType));
        pRaw = &pUnknown->m_tags;
        pEnt = pUnknown;
    }
    uint64_t nHandle = 0, nOwner = 0;
    Common(*pEnt, nHandle, nOwner, pRaw != nullptr, pRaw);
    bool bFollowers = false;
    for (const auto& t : m_tags)
        if (t.nCode == 66 && DxfInt(t.value) == 1)
            bFollowers = true;
    if (strType == "POLYLINE" || bFollowers)
        ReadFollowers(pEnt);
    AcDbBlockTableRecord* pBlock = nullptr;
    if (auto it = m_blocksByHandle.find(nOwner); it != m_blocksByHandle.end())
        pBlock = it->second;
    else if (pDefault)
        pBlock = pDefault;
    else
        pBlock = BlockNamed(pEnt->m_bPaperSpace ? ACDB_PAPER_SPACE : ACDB_MODEL_SPACE, true);
    if (!refs.strBlock.empty() || !refs.strDimStyle.empty())
        m_refs.push_back({pEnt, refs});
    m_pending.push_back({pEnt, nHandle, 0, pBlock, nullptr});
}

// Vertices of a modelled polyline go into it; attributes and the vertices
// of meshes are kept verbatim with their owner.
void CDxfReader::ReadFollowers(AcDbEntity* pOwner) {
    auto* pPoly = dynamic_cast<AcDbHeavyPolyline*>(pOwner);
    DXF_FOLLOWERS* pKept = nullptr;
    if (auto* pRef = dynamic_cast<AcDbBlockReference*>(pOwner))
        pKept = &pRef->m_followers;
    else if (auto* pUnknown = dynamic_cast<AcDbUnknownEntity*>(pOwner))
        pKept = &pUnknown->m_followers;
    while (m_in.Next(m_tag) && m_tag.nCode == 0) {
        std::string strSub(m_tag.value);
        bool bEnd = strSub == "SEQEND";
        if (strSub != "VERTEX" && strSub != "ATTRIB" && !bEnd) {
            m_in.PushBack();
            return;
        }
        Collect();
        if (pKept) {
            std::vector<DXF_TAG> tags{{0, Utf8ToWide(strSub)}};
            for (const auto& t : m_tags)
                tags.push_back({t.nCode, m_text.Decode(t.value)});
            pKept->push_back(std::move(tags));
        } else if (pPoly && bEnd) {
            for (const auto& t : m_tags)
                if (t.nCode == 5)
                    pPoly->m_seqendHandle = AcDbHandle(DxfHandle(t.value));
        } else if (pPoly) {
            ReadPolylineVertex(*pPoly, m_tags);
        }
        if (bEnd)
            return;
    }
}

void CDxfReader::ReadObject(std::string_view type) {
    std::string strType(type);
    Collect();
    if (IsStructureName(strType)) {
        ++m_report.nMisplaced;
        return;
    }
    uint64_t nHandle = 0, nOwner = 0;
    if (strType == "DICTIONARY") {
        auto* p = new AcDbDictionary;
        size_t nEnd = Common(*p, nHandle, nOwner, false, nullptr);
        std::wstring key;
        for (size_t i = 0; i < nEnd; ++i) {
            const auto& t = m_tags[i];
            if (t.nCode == 280)
                p->hardOwner = DxfInt(t.value) != 0;
            else if (t.nCode == 281)
                p->cloningFlag = DxfInt(t.value);
            else if (t.nCode == 3)
                key = m_text.Decode(t.value);
            else if ((t.nCode == 350 || t.nCode == 360) && !key.empty()) {
                p->appendRaw(key, Stub(t.value));
                key.clear();
            }
        }
        if (!nOwner && !m_nNod)
            m_nNod = nHandle;
        m_pending.push_back({p, nHandle, nOwner, nullptr, nullptr});
        return;
    }
    if (strType == "XRECORD") {
        auto* p = new AcDbXrecord;
        size_t nEnd = Common(*p, nHandle, nOwner, false, nullptr);
        size_t i = 0;
        while (i < nEnd && !(m_tags[i].nCode == 100 && m_tags[i].value == "AcDbXrecord"))
            ++i;
        if (i < nEnd)
            ++i;
        if (i < nEnd && m_tags[i].nCode == 280)
            p->mergeStyle = DxfInt(m_tags[i++].value);
        resbuf* chain = ChainFromTags(m_tags, i, nEnd, m_text);
        p->setFromRbChain(chain);
        acutRelRb(chain);
        m_pending.push_back({p, nHandle, nOwner, nullptr, nullptr});
        return;
    }
    auto* p = new AcDbUnknownObject(Utf8ToWide(strType));
    Common(*p, nHandle, nOwner, true, &p->m_tags);
    m_pending.push_back({p, nHandle, nOwner, nullptr, nullptr});
}

void CDxfReader::Finish() {
    std::vector<PENDING> pending;
    pending.swap(m_pending);
    std::vector<AcDbObject*> later;
    for (PENDING& p : pending) {
        if (!p.nHandle) {
            later.push_back(p.pObj);
        } else if (m_db.adoptObject(p.pObj, AcDbHandle(p.nHandle)) != Acad::eOk) {
            later.push_back(p.pObj); // a handle used twice: the second gets a new one
        }
    }
    for (AcDbObject* p : later) {
        AcDbObjectId id;
        m_db.addAcDbObject(id, p);
        p->close();
    }
    for (PENDING& p : pending) {
        if (p.pBlock) {
            p.pBlock->appendRaw(p.pObj->objectId());
            p.pObj->setOwnerId(p.pBlock->objectId());
        } else if (p.pTable) {
            p.pTable->appendRaw(p.pObj->objectId());
            p.pObj->setOwnerId(p.pTable->objectId());
        } else if (p.nOwner) {
            AcDbObjectId owner;
            m_db.getAcDbObjectId(owner, false, AcDbHandle(p.nOwner));
            p.pObj->setOwnerId(owner);
        }
    }
    FinishTables();
    for (PENDING_REF& r : m_refs) {
        AcDbBlockTableRecord* pBlock =
            r.refs.strBlock.empty() ? nullptr : BlockNamed(r.refs.strBlock, false);
        if (auto* pRef = dynamic_cast<AcDbBlockReference*>(r.pEnt); pRef && pBlock)
            pRef->setBlockTableRecord(pBlock->objectId());
        if (auto* pDim = dynamic_cast<AcDbDimension*>(r.pEnt)) {
            if (pBlock)
                pDim->setDimBlockId(pBlock->objectId());
            if (auto* pTable = m_tables[L"DIMSTYLE"]) {
                AcDbObjectId style;
                pTable->getAt(r.refs.strDimStyle, style);
                pDim->setDimensionStyle(style);
            }
        }
    }
    std::vector<AcDbObject*> objects;
    objects.reserve(pending.size());
    for (PENDING& p : pending)
        objects.push_back(p.pObj);
    m_report.nRefusedReferences += RefuseBadReferences(objects);
    FinishHeader();
}

// Tables, spaces and the named object dictionary a file may lack.
void CDxfReader::FinishTables() {
    auto table = [&](const wchar_t* name, auto* pNew) -> AcDbObjectId {
        AcDbSymbolTable*& p = m_tables[name];
        if (!p) {
            p = pNew;
            AcDbObjectId id;
            m_db.addAcDbObject(id, p);
            p->close();
        } else {
            delete pNew;
        }
        return p->objectId();
    };
    AcDbObjectId blocks = table(L"BLOCK_RECORD", new AcDbBlockTable);
    AcDbObjectId layers = table(L"LAYER", new AcDbLayerTable);
    AcDbObjectId apps = table(L"APPID", new AcDbRegAppTable);
    AcDbObjectId dims = table(L"DIMSTYLE", new AcDbDimStyleTable);
    AcDbObjectId ltypes = table(L"LTYPE", new AcDbLinetypeTable);
    AcDbObjectId styles = table(L"STYLE", new AcDbTextStyleTable);
    AcDbObjectId vports = table(L"VPORT", new AcDbViewportTable);
    AcDbObjectId views = table(L"VIEW", new AcDbViewTable);
    AcDbObjectId ucss = table(L"UCS", new AcDbUCSTable);
    AcDbObjectId nod;
    m_db.getAcDbObjectId(nod, false, AcDbHandle(m_nNod));
    if (!nod.isValid() || !dynamic_cast<AcDbDictionary*>(nod.stub()->pObject)) {
        auto* p = new AcDbDictionary;
        m_db.addAcDbObject(nod, p);
        p->close();
    }
    m_db.setTableIds(blocks, layers, apps, dims, ltypes, styles, vports, views, ucss, nod);
    auto ensure = [&](AcDbObjectId tableId, const wchar_t* name, AcDbSymbolTableRecord* pRec) {
        AcDbSymbolTable* pTable = nullptr;
        if (acdbOpenObject(pTable, tableId, AcDb::kForWrite) != Acad::eOk) {
            delete pRec;
            return;
        }
        pRec->setNameRaw(name);
        if (!pTable->has(name) && pTable->add(pRec) == Acad::eOk)
            pRec->close();
        else
            delete pRec;
        pTable->close();
    };
    ensure(blocks, ACDB_MODEL_SPACE, new AcDbBlockTableRecord);
    ensure(blocks, ACDB_PAPER_SPACE, new AcDbBlockTableRecord);
    ensure(layers, L"0", new AcDbLayerTableRecord);
    ensure(dims, L"Standard", new AcDbDimStyleTableRecord);
    ensure(styles, L"Standard", new AcDbTextStyleTableRecord);
    ensure(apps, L"ACAD", new AcDbRegAppTableRecord);
}

void CDxfReader::FinishHeader() {
    auto name = [&](const char* var) {
        auto it = m_header.find(var);
        return it == m_header.end() || it->second.empty() ? std::wstring()
                                                          : m_text.Decode(it->second[0].value);
    };
    auto pick = [&](const wchar_t* table, const std::wstring& wanted, const wchar_t* fallback) {
        AcDbObjectId id;
        AcDbSymbolTable* p = m_tables[table];
        if (p->getAt(wanted, id) != Acad::eOk)
            p->getAt(fallback, id);
        return id;
    };
    m_db.setClayer(pick(L"LAYER", name("$CLAYER"), L"0"));
    m_db.setDimstyle(pick(L"DIMSTYLE", name("$DIMSTYLE"), L"Standard"));
    m_db.setDimstyleData(m_db.dimstyle());
    m_db.setTextstyle(pick(L"STYLE", name("$TEXTSTYLE"), L"Standard"));
}

} // namespace

bool IsBinaryDwg(std::string_view data) {
    return data.size() >= 6 && data.substr(0, 4) == "AC10" && data[4] >= '0' && data[4] <= '9' &&
           data[5] >= '0' && data[5] <= '9';
}

int DXF_READ_REPORT::UnknownEntityCount() const {
    int n = 0;
    for (const auto& [type, count] : unknownEntities)
        n += count;
    return n;
}

Acad::ErrorStatus ReadDxf(AcDbDatabase& db, std::string_view data, DXF_READ_REPORT* pReport) {
    DXF_READ_REPORT report;
    if (!pReport)
        pReport = &report;
    *pReport = DXF_READ_REPORT();
    if (IsBinaryDwg(data))
        return Acad::eBinaryDwgNotSupported;
    if (data.substr(0, 3) == "\xEF\xBB\xBF")
        data.remove_prefix(3);
    if (data.substr(0, 18) == "AutoCAD Binary DXF")
        return Acad::eBadDxfFile;
    CDxfReader reader(db, data, *pReport);
    return reader.Read();
}

bool ReadDxfThumbnail(std::string_view data, std::vector<uint8_t>& bitmap) {
    bitmap.clear();
    if (IsBinaryDwg(data))
        return false;
    size_t at = data.find("\nTHUMBNAILIMAGE");
    if (at == std::string_view::npos)
        return false;
    at = data.find('\n', at + 1);
    CDxfTagReader in(data.substr(at == std::string_view::npos ? data.size() : at + 1));
    DXF_RAW_TAG t;
    while (in.Next(t) && t.nCode != 0)
        if (t.nCode == 310)
            AppendHex(t.value, bitmap);
    return !bitmap.empty();
}
