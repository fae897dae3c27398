// Dictionary entries and xrecord values.
#include "host/db/DbDictionary.h"

#include "base/StrUtil.h"
#include "host/db/DbDatabase.h"

AcDbObject* AcDbDictionary::clone() const {
    auto* p = new AcDbDictionary;
    p->cloningFlag = cloningFlag;
    p->hardOwner = hardOwner;
    return p;
}

int AcDbDictionary::find(const std::wstring& key) const {
    for (size_t i = 0; i < m_entries.size(); ++i)
        if (EqualsNoCase(m_entries[i].first, key) && !m_entries[i].second.isErased())
            return static_cast<int>(i);
    return -1;
}

Acad::ErrorStatus AcDbDictionary::setAt(const std::wstring& key, AcDbObject* pObj,
                                        AcDbObjectId& newId) {
    if (!pObj || key.empty())
        return Acad::eInvalidInput;
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    if (!database())
        return Acad::eNotInDatabase;
    if (pObj->objectId().isNull()) { // stays open for write: the caller closes it
        Acad::ErrorStatus es = database()->addAcDbObject(newId, pObj);
        if (es != Acad::eOk)
            return es;
    } else {
        newId = pObj->objectId();
    }
    pObj->setOwnerId(objectId());
    int i = find(key);
    if (i >= 0 && m_entries[i].second != newId) {
        AcDbObject* pOld = nullptr;
        if (acdbOpenObject(pOld, m_entries[i].second, AcDb::kForWrite) == Acad::eOk) {
            pOld->erase();
            pOld->close();
        }
        m_entries[i].second = newId;
        return Acad::eOk;
    }
    if (i < 0)
        m_entries.emplace_back(key, newId);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::getAt(const std::wstring& key, AcDbObjectId& id) const {
    int i = find(key);
    if (i < 0) {
        id = AcDbObjectId::kNull;
        return Acad::eKeyNotFound;
    }
    id = m_entries[i].second;
    return Acad::eOk;
}

bool AcDbDictionary::has(const std::wstring& key) const {
    return find(key) >= 0;
}

Acad::ErrorStatus AcDbDictionary::remove(const std::wstring& key) {
    AcDbObjectId id;
    return remove(key, id);
}

Acad::ErrorStatus AcDbDictionary::remove(const std::wstring& key, AcDbObjectId& id) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    int i = find(key);
    if (i < 0)
        return Acad::eKeyNotFound;
    id = m_entries[i].second;
    m_entries.erase(m_entries.begin() + i);
    return Acad::eOk;
}

int AcDbDictionary::numEntries() const {
    int n = 0;
    for (const auto& e : m_entries)
        n += e.second.isErased() ? 0 : 1;
    return n;
}

bool AcDbDictionary::nameAt(AcDbObjectId id, std::wstring& key) const {
    for (const auto& e : m_entries)
        if (e.second == id) {
            key = e.first;
            return true;
        }
    return false;
}

AcDbDictionaryIterator* AcDbDictionary::newIterator() const {
    return new AcDbDictionaryIterator(*this);
}

AcDbDictionaryIterator::AcDbDictionaryIterator(const AcDbDictionary& dict)
    : m_entries(dict.entries()) {
    skipErased();
}

bool AcDbDictionaryIterator::next() {
    ++m_i;
    skipErased();
    return !done();
}

void AcDbDictionaryIterator::skipErased() {
    while (m_i < m_entries.size() &&
           (!m_entries[m_i].second.isValid() || m_entries[m_i].second.isErased()))
        ++m_i;
}

AcDbXrecord::AcDbXrecord(const AcDbXrecord& o)
    : AcDbObject(o), mergeStyle(o.mergeStyle), m_pChain(acutDuplicateChain(o.m_pChain)) {}

AcDbXrecord::~AcDbXrecord() {
    acutRelRb(m_pChain);
}

AcDbObject* AcDbXrecord::clone() const {
    return new AcDbXrecord(*this);
}

Acad::ErrorStatus AcDbXrecord::rbChain(resbuf*& pChain) const {
    pChain = acutDuplicateChain(m_pChain);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbXrecord::setFromRbChain(const resbuf& chain) {
    return setFromRbChain(&chain);
}

Acad::ErrorStatus AcDbXrecord::setFromRbChain(const resbuf* pChain) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    for (const resbuf* p = pChain; p; p = p->rbnext)
        if (acdbGroupCodeToType(p->restype) == RTNONE)
            return Acad::eInvalidInput;
    resbuf* pCopy = acutDuplicateChain(pChain);
    acutRelRb(m_pChain);
    m_pChain = pCopy;
    return Acad::eOk;
}
