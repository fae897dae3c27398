// Symbol table lookup, record names, block contents and their iterators.
#include "host/db/DbSymbolTable.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "host/SymbolName.h"
#include "host/db/DbDatabase.h"
#include "host/db/DbEntity.h"

Acad::ErrorStatus AcDbSymbolTableRecord::getName(std::wstring& name) const {
    name = m_strName;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableRecord::setName(const std::wstring& name) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    bool bStar =
        acceptsStarNames() && !name.empty() && name[0] == L'*' && IsValidSymbolName(name.substr(1));
    if (!bStar && !IsValidSymbolName(name))
        return Acad::eInvalidInput;
    AcDbSymbolTable* pTable = nullptr;
    if (acdbOpenObject(pTable, ownerId(), AcDb::kForRead) == Acad::eOk) {
        AcDbObjectId other;
        bool bTaken = pTable->getAt(name, other) == Acad::eOk && other != objectId();
        pTable->close();
        if (bTaken)
            return Acad::eDuplicateRecordName;
    }
    m_strName = name;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTable::getAt(const std::wstring& name, AcDbObjectId& id,
                                         bool bGetErased) const {
    for (AcDbObjectId rec : m_records) {
        if (!rec.isValid() || (!bGetErased && rec.isErased()))
            continue;
        auto* p = static_cast<AcDbSymbolTableRecord*>(rec.stub()->pObject);
        if (EqualsNoCase(p->name(), name)) {
            id = rec;
            return Acad::eOk;
        }
    }
    id = AcDbObjectId::kNull;
    return Acad::eKeyNotFound;
}

bool AcDbSymbolTable::has(const std::wstring& name) const {
    AcDbObjectId id;
    return getAt(name, id) == Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTable::add(AcDbSymbolTableRecord* pRec) {
    AcDbObjectId id;
    return add(id, pRec);
}

Acad::ErrorStatus AcDbSymbolTable::add(AcDbObjectId& id, AcDbSymbolTableRecord* pRec) {
    if (!pRec || !accepts(pRec) || pRec->name().empty())
        return Acad::eInvalidInput;
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!pRec->objectId().isNull())
        return Acad::eAlreadyInDb;
    AcDbDatabase* pDb = database();
    if (EqualsNoCase(pRec->name(), L"*U") || EqualsNoCase(pRec->name(), L"*D")) {
        std::wstring name, prefix = StrMakeUpper(pRec->name());
        do
            name = Format(L"%s%d", prefix, ++pDb->m_nAnonymousCounter);
        while (has(name));
        pRec->setNameRaw(name);
    } else if (has(pRec->name())) {
        return Acad::eDuplicateRecordName;
    }
    Acad::ErrorStatus es = pDb->addAcDbObject(id, pRec);
    if (es != Acad::eOk)
        return es;
    pRec->setOwnerId(objectId());
    m_records.push_back(id);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTable::newIterator(AcDbSymbolTableIterator*& pIter, bool bAtBeginning,
                                               bool bSkipDeleted) const {
    std::vector<AcDbObjectId> ids = m_records;
    if (!bAtBeginning)
        ids.clear();
    pIter = new AcDbSymbolTableIterator(std::move(ids), bSkipDeleted);
    return Acad::eOk;
}

AcDbIdWalk::AcDbIdWalk(std::vector<AcDbObjectId> ids, bool bSkipDeleted)
    : m_ids(std::move(ids)), m_bSkip(bSkipDeleted) {
    skip();
}

void AcDbIdWalk::step() {
    ++m_i;
    skip();
}

void AcDbIdWalk::skip() {
    while (m_i < m_ids.size() && (!m_ids[m_i].isValid() || (m_bSkip && m_ids[m_i].isErased())))
        ++m_i;
}

#define QM_ACCEPTS(Table, Record)                                                                  \
    bool Table::accepts(const AcDbSymbolTableRecord* p) const {                                    \
        return dynamic_cast<const Record*>(p) != nullptr;                                          \
    }
QM_ACCEPTS(AcDbBlockTable, AcDbBlockTableRecord)
QM_ACCEPTS(AcDbLayerTable, AcDbLayerTableRecord)
QM_ACCEPTS(AcDbRegAppTable, AcDbRegAppTableRecord)
QM_ACCEPTS(AcDbDimStyleTable, AcDbDimStyleTableRecord)
QM_ACCEPTS(AcDbLinetypeTable, AcDbLinetypeTableRecord)
QM_ACCEPTS(AcDbTextStyleTable, AcDbTextStyleTableRecord)
QM_ACCEPTS(AcDbViewportTable, AcDbViewportTableRecord)
QM_ACCEPTS(AcDbViewTable, AcDbSymbolTableRecord)
QM_ACCEPTS(AcDbUCSTable, AcDbSymbolTableRecord)

AcDbObject* AcDbBlockTableRecord::clone() const {
    auto* p = new AcDbBlockTableRecord;
    p->m_strName = m_strName;
    p->m_nFlags = m_nFlags;
    p->m_origin = m_origin;
    p->m_strDescription = m_strDescription;
    p->m_preview = m_preview;
    return p;
}

void AcDbBlockTableRecord::onAddedToDatabase(AcDbDatabase& db, bool) {
    if (m_beginHandle.isNull())
        m_beginHandle = db.allocateHandle();
    if (m_endHandle.isNull())
        m_endHandle = db.allocateHandle();
}

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbEntity* pEnt) {
    AcDbObjectId id;
    return appendAcDbEntity(id, pEnt);
}

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbObjectId& id, AcDbEntity* pEnt) {
    if (!pEnt)
        return Acad::eInvalidInput;
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!database())
        return Acad::eNotInDatabase;
    if (!pEnt->objectId().isNull())
        return Acad::eAlreadyInDb;
    Acad::ErrorStatus es = database()->addAcDbObject(id, pEnt);
    if (es != Acad::eOk)
        return es;
    pEnt->setOwnerId(objectId());
    m_entities.push_back(id);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::newIterator(AcDbBlockTableRecordIterator*& pIter,
                                                    bool bAtBeginning, bool bSkipDeleted) const {
    pIter = new AcDbBlockTableRecordIterator(
        bAtBeginning ? m_entities : std::vector<AcDbObjectId>(), bSkipDeleted);
    return Acad::eOk;
}

bool AcDbBlockTableRecord::isAnonymous() const {
    return m_strName.size() >= 2 && m_strName[0] == L'*' &&
           (m_strName[1] == L'U' || m_strName[1] == L'u' || m_strName[1] == L'D' ||
            m_strName[1] == L'd');
}

bool AcDbBlockTableRecord::isLayout() const {
    return EqualsNoCase(StrLeft(m_strName, 12), L"*Model_Space") ||
           EqualsNoCase(StrLeft(m_strName, 12), L"*Paper_Space");
}

Acad::ErrorStatus AcDbDimStyleTableRecord::setDimlfac(double d) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    m_dDimlfac = d;
    return Acad::eOk;
}
