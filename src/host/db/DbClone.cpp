// Copying entities between databases: wblock of a selection or a drawing, insert as a block.
#include "host/db/DbAnnotation.h"
#include "host/db/DbDatabase.h"
#include "host/db/DbDictionary.h"
#include "host/db/DbSymbolTable.h"

#include <cwchar>
#include <unordered_map>

namespace {

template <class T> T* InPlace(AcDbObjectId id) {
    return id.isValid() && !id.isErased() ? dynamic_cast<T*>(id.stub()->pObject) : nullptr;
}

// Attributes and mesh vertices of a copy: the source's, with fresh handles owned by the copy
// (an owner that announces followers must never be written without them).
DXF_FOLLOWERS Rehandled(const DXF_FOLLOWERS& src, AcDbDatabase& db, AcDbHandle owner) {
    auto hex = [](uint64_t n) {
        wchar_t buf[24];
        std::swprintf(buf, 24, L"%llX", static_cast<unsigned long long>(n));
        return std::wstring(buf);
    };
    DXF_FOLLOWERS out = src;
    for (auto& tags : out) {
        bool bOwner = false;
        for (DXF_TAG& t : tags) {
            if (t.nCode == 5)
                t.strValue = hex(db.allocateHandle().value());
            else if (t.nCode == 330 && !bOwner)
                t.strValue = hex(owner.value());
            bOwner = bOwner || t.nCode == 330;
        }
    }
    return out;
}

} // namespace

// Deep copy from one database into another: symbols are matched by name
// (the target's win), blocks follow references, extension dictionaries
// follow their entities, and 1005 handles in extended data are translated
// to the copies.
class CDbCloner {
public:
    CDbCloner(AcDbDatabase& src, AcDbDatabase& dst) : m_src(src), m_dst(dst) {}

    Acad::ErrorStatus CloneEntity(AcDbObjectId srcId, AcDbBlockTableRecord& owner) {
        auto* pSrc = InPlace<AcDbEntity>(srcId);
        if (!pSrc)
            return Acad::eWasErased;
        auto* pNew = static_cast<AcDbEntity*>(pSrc->clone());
        EnsureSymbol<AcDbLayerTableRecord>(m_src.layerTableId(), m_dst.layerTableId(),
                                           pSrc->layer());
        EnsureSymbol<AcDbLinetypeTableRecord>(m_src.linetypeTableId(), m_dst.linetypeTableId(),
                                              pSrc->linetype());
        EnsureApps(*pSrc);
        if (auto* pRef = dynamic_cast<AcDbBlockReference*>(pNew))
            pRef->setBlockTableRecord(EnsureBlock(pRef->blockTableRecord()));
        if (auto* pDim = dynamic_cast<AcDbDimension*>(pNew)) {
            pDim->setDimensionStyle(EnsureSymbolId<AcDbDimStyleTableRecord>(
                m_src.dimStyleTableId(), m_dst.dimStyleTableId(), pDim->dimensionStyle()));
            pDim->setDimBlockId(pDim->dimBlockId().isValid() ? EnsureBlock(pDim->dimBlockId())
                                                             : AcDbObjectId());
        }
        if (auto* pText = dynamic_cast<AcDbText*>(pNew))
            EnsureSymbol<AcDbTextStyleTableRecord>(m_src.textStyleTableId(),
                                                   m_dst.textStyleTableId(), pText->m_strStyle);
        AcDbObjectId newId;
        Acad::ErrorStatus es = owner.appendAcDbEntity(newId, pNew);
        if (es != Acad::eOk) {
            delete pNew;
            return es;
        }
        if (InPlace<AcDbDictionary>(pSrc->extensionDictionary()))
            pNew->setExtensionDictionaryRaw(CloneDictionary(pSrc->extensionDictionary(), newId, 0));
        if (auto* pRef = dynamic_cast<AcDbBlockReference*>(pNew))
            pRef->m_followers = Rehandled(static_cast<AcDbBlockReference*>(pSrc)->m_followers,
                                          m_dst, pNew->handle());
        if (auto* pUnknown = dynamic_cast<AcDbUnknownEntity*>(pNew)) {
            pUnknown->m_followers = Rehandled(static_cast<AcDbUnknownEntity*>(pSrc)->m_followers,
                                              m_dst, pNew->handle());
            m_raw.push_back(newId);
        }
        pNew->close();
        Map(srcId, newId);
        return Acad::eOk;
    }

    // The target's block for a source block: a named one by name, an
    // anonymous one always as a new "*U" block.
    AcDbObjectId EnsureBlock(AcDbObjectId srcId) {
        auto it = m_map.find(srcId.stub());
        if (it != m_map.end())
            return it->second;
        auto* pSrc = InPlace<AcDbBlockTableRecord>(srcId);
        if (!pSrc || m_nBlockDepth >= kMaxDepth)
            return AcDbObjectId();
        AcDbObjectId existing;
        if (!pSrc->isAnonymous() && FindName(m_dst.blockTableId(), pSrc->name(), existing)) {
            m_map[srcId.stub()] = existing;
            return existing;
        }
        auto* pNew = static_cast<AcDbBlockTableRecord*>(pSrc->clone());
        if (pSrc->isAnonymous())
            pNew->setNameRaw(L"*U");
        AcDbObjectId newId = AddRecord(m_dst.blockTableId(), pNew);
        if (newId.isNull())
            return newId;
        m_map[srcId.stub()] = newId; // before the contents: a block inside itself finds it
        ++m_nBlockDepth;
        CloneContents(*pSrc, newId);
        --m_nBlockDepth;
        return newId;
    }

    void CloneContents(const AcDbBlockTableRecord& src, AcDbObjectId dstId) {
        std::vector<AcDbObjectId> ids = src.entities();
        for (AcDbObjectId id : ids) {
            AcDbBlockTableRecord* pOwner = nullptr;
            if (!InPlace<AcDbEntity>(id) ||
                acdbOpenObject(pOwner, dstId, AcDb::kForWrite) != Acad::eOk)
                continue;
            CloneEntity(id, *pOwner);
            pOwner->close();
        }
    }

    // Copies a dictionary with everything it holds, owned by ownerId. Each
    // object is copied once: one shared by several owners, or one that holds
    // itself, maps to its first copy.
    AcDbObjectId CloneDictionary(AcDbObjectId srcId, AcDbObjectId ownerId, int nDepth) {
        if (auto it = m_map.find(srcId.stub()); it != m_map.end())
            return it->second;
        auto* pSrc = InPlace<AcDbDictionary>(srcId);
        if (!pSrc || nDepth >= kMaxDepth)
            return AcDbObjectId();
        auto* pNew = static_cast<AcDbDictionary*>(pSrc->clone());
        AcDbObjectId newId;
        m_dst.addAcDbObject(newId, pNew);
        pNew->setOwnerId(ownerId);
        m_map[srcId.stub()] = newId;
        for (const auto& [key, id] : pSrc->entries()) {
            AcDbObject* pChild = InPlace<AcDbObject>(id);
            if (!pChild || dynamic_cast<AcDbSymbolTable*>(pChild))
                continue;
            AcDbObjectId childId;
            if (auto it = m_map.find(id.stub()); it != m_map.end()) {
                pNew->appendRaw(key, it->second); // copied already: named, not copied again
                continue;
            }
            if (dynamic_cast<AcDbDictionary*>(pChild)) {
                childId = CloneDictionary(id, newId, nDepth + 1);
            } else {
                AcDbObject* pCopy = pChild->clone();
                m_dst.addAcDbObject(childId, pCopy);
                pCopy->setOwnerId(newId);
                pCopy->close();
            }
            if (childId.isNull())
                continue;
            pNew->appendRaw(key, childId);
            Map(id, childId);
        }
        pNew->close();
        Map(srcId, newId);
        return newId;
    }

    // Rewrites 1005 handles of the copies that name copied objects.
    void TranslateHandles() {
        for (AcDbObjectId id : m_withHandles) {
            AcDbObject* p = InPlace<AcDbObject>(id);
            resbuf* chain = p ? p->xData() : nullptr;
            for (resbuf* rb = chain; rb; rb = rb->rbnext) {
                if (rb->restype != 1005)
                    continue;
                auto it = m_handles.find(AcDbHandle(rb->resval.rstring).value());
                if (it != m_handles.end())
                    acutSetRbString(rb, AcDbHandle(it->second).text());
            }
            if (chain)
                p->setXDataRaw(chain);
            acutRelRb(chain);
        }
        for (AcDbObjectId id : m_raw)
            if (auto* p = InPlace<AcDbUnknownEntity>(id))
                TranslatePointers(p->m_tags);
    }

    // Pointer groups kept verbatim name objects of the source: the copies where those were
    // copied too, else the null handle (a stale one would name some other object here).
    void TranslatePointers(std::vector<DXF_TAG>& tags) const {
        for (DXF_TAG& t : tags) {
            bool bPointer = (t.nCode >= 320 && t.nCode <= 369) ||
                            (t.nCode >= 390 && t.nCode <= 399) || t.nCode == 480 || t.nCode == 481;
            if (!bPointer)
                continue;
            auto it = m_handles.find(AcDbHandle(t.strValue.c_str()).value());
            t.strValue = it != m_handles.end() ? AcDbHandle(it->second).text() : L"0";
        }
    }

    template <class T>
    void EnsureSymbol(AcDbObjectId srcTable, AcDbObjectId dstTable, const std::wstring& name) {
        AcDbObjectId srcId;
        if (FindName(srcTable, name, srcId))
            EnsureSymbolId<T>(srcTable, dstTable, srcId);
    }

    template <class T>
    AcDbObjectId EnsureSymbolId(AcDbObjectId, AcDbObjectId dstTable, AcDbObjectId srcId) {
        auto* pSrc = InPlace<T>(srcId);
        if (!pSrc)
            return AcDbObjectId();
        auto it = m_map.find(srcId.stub());
        if (it != m_map.end())
            return it->second;
        AcDbObjectId id;
        if (!FindName(dstTable, pSrc->name(), id))
            id = AddRecord(dstTable, static_cast<T*>(pSrc->clone()));
        m_map[srcId.stub()] = id;
        return id;
    }

private:
    void Map(AcDbObjectId srcId, AcDbObjectId newId) {
        m_map[srcId.stub()] = newId;
        m_handles[srcId.handle().value()] = newId.handle().value();
        AcDbObject* p = InPlace<AcDbObject>(newId);
        if (p && p->hasXData())
            m_withHandles.push_back(newId);
    }

    void EnsureApps(const AcDbObject& src) {
        resbuf* chain = src.xData();
        for (resbuf* rb = chain; rb; rb = rb->rbnext)
            if (rb->restype == 1001)
                EnsureSymbol<AcDbRegAppTableRecord>(m_src.regAppTableId(), m_dst.regAppTableId(),
                                                    rb->resval.rstring);
        acutRelRb(chain);
    }

    static bool FindName(AcDbObjectId tableId, const std::wstring& name, AcDbObjectId& id) {
        auto* pTable = InPlace<AcDbSymbolTable>(tableId);
        return pTable && pTable->getAt(name, id) == Acad::eOk;
    }

    static AcDbObjectId AddRecord(AcDbObjectId tableId, AcDbSymbolTableRecord* pRec) {
        AcDbSymbolTable* pTable = nullptr;
        AcDbObjectId id;
        if (acdbOpenObject(pTable, tableId, AcDb::kForWrite) == Acad::eOk &&
            pTable->add(id, pRec) == Acad::eOk) {
            pRec->close();
        } else {
            delete pRec;
        }
        if (pTable)
            pTable->close();
        return id;
    }

    // Nesting deeper than any drawing needs is a damaged file, not a reason to overflow the stack.
    static constexpr int kMaxDepth = 64;
    int m_nBlockDepth = 0;
    friend class AcDbDatabase;
    AcDbDatabase& m_src;
    AcDbDatabase& m_dst;
    std::unordered_map<AcDbStub*, AcDbObjectId> m_map;
    std::unordered_map<uint64_t, uint64_t> m_handles;
    std::vector<AcDbObjectId> m_withHandles;
    std::vector<AcDbObjectId> m_raw; // copies of unmodelled entities
};

Acad::ErrorStatus AcDbDatabase::wblock(AcDbDatabase*& pOutput, const AcDbObjectIdArray& ids,
                                       const AcGePoint3d& basePoint) {
    pOutput = nullptr;
    auto* pDb = new AcDbDatabase(true, true);
    pDb->m_strCodePage = m_strCodePage;
    pDb->setInsbase(basePoint);
    CDbCloner cloner(*this, *pDb);
    AcDbBlockTableRecord* pMs = nullptr;
    Acad::ErrorStatus es = acdbOpenObject(pMs, pDb->modelSpaceId(), AcDb::kForWrite);
    for (AcDbObjectId id : ids) {
        if (es != Acad::eOk)
            break;
        if (id.database() != this || !InPlace<AcDbEntity>(id))
            es = Acad::eInvalidInput;
        else
            es = cloner.CloneEntity(id, *pMs);
    }
    if (pMs)
        pMs->close();
    if (es != Acad::eOk) {
        delete pDb;
        return es;
    }
    cloner.TranslateHandles();
    pDb->updateExt();
    pOutput = pDb;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::wblock(AcDbDatabase*& pOutput) {
    AcDbObjectIdArray ids;
    if (auto* pMs = InPlace<AcDbBlockTableRecord>(modelSpaceId()))
        for (AcDbObjectId id : pMs->entities())
            if (InPlace<AcDbEntity>(id))
                ids.push_back(id);
    Acad::ErrorStatus es = wblock(pOutput, ids, m_insbase);
    if (es != Acad::eOk)
        return es;
    CDbCloner cloner(*this, *pOutput);
    // Every symbol and named block, used or not, and the named records.
    AcDbObjectId tables[][2] = {{m_layerTableId, pOutput->m_layerTableId},
                                {m_linetypeTableId, pOutput->m_linetypeTableId},
                                {m_regAppTableId, pOutput->m_regAppTableId},
                                {m_textStyleTableId, pOutput->m_textStyleTableId},
                                {m_dimStyleTableId, pOutput->m_dimStyleTableId}};
    for (auto& t : tables)
        if (auto* pTable = InPlace<AcDbSymbolTable>(t[0]))
            for (AcDbObjectId id : pTable->records())
                cloner.EnsureSymbolId<AcDbSymbolTableRecord>(t[0], t[1], id);
    if (auto* pBlocks = InPlace<AcDbBlockTable>(m_blockTableId))
        for (AcDbObjectId id : pBlocks->records())
            if (auto* pRec = InPlace<AcDbBlockTableRecord>(id);
                pRec && !pRec->isLayout() && !pRec->isAnonymous())
                cloner.EnsureBlock(id);
    auto* pNod = InPlace<AcDbDictionary>(m_nodId);
    AcDbDictionary* pOutNod = nullptr;
    if (pNod && pOutput->getNamedObjectsDictionary(pOutNod, AcDb::kForWrite) == Acad::eOk) {
        for (const auto& [key, id] : pNod->entries())
            if (!pOutNod->has(key) && InPlace<AcDbDictionary>(id))
                pOutNod->appendRaw(key, cloner.CloneDictionary(id, pOutput->m_nodId, 0));
        pOutNod->close();
    }
    cloner.TranslateHandles();
    pOutput->m_extmin = m_extmin;
    pOutput->m_extmax = m_extmax;
    pOutput->m_thumbnail = m_thumbnail;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::insert(AcDbObjectId& blockId, const wchar_t* pBlockName,
                                       AcDbDatabase* pSource, bool /*bPreserveSourceDatabase*/) {
    blockId = AcDbObjectId();
    if (!pSource || pSource == this || !pBlockName)
        return Acad::eInvalidInput;
    auto* pSrcMs = InPlace<AcDbBlockTableRecord>(pSource->modelSpaceId());
    if (!pSrcMs)
        return Acad::eNullObjectId;
    auto* pRec = new AcDbBlockTableRecord;
    pRec->setNameRaw(pBlockName);
    pRec->setOrigin(pSource->insbase());
    AcDbBlockTable* pTable = nullptr;
    Acad::ErrorStatus es = getBlockTable(pTable, AcDb::kForWrite);
    if (es == Acad::eOk)
        es = pTable->add(blockId, pRec);
    if (pTable)
        pTable->close();
    if (es != Acad::eOk) {
        delete pRec;
        return es;
    }
    pRec->close();
    CDbCloner cloner(*pSource, *this);
    cloner.CloneContents(*pSrcMs, blockId);
    cloner.TranslateHandles();
    return Acad::eOk;
}
