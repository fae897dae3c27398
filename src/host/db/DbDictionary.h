// Dictionaries, xrecords, layouts and the objects kept only for the file's sake.
#pragma once

#include "host/db/DbCore.h"

#include <string>
#include <utility>
#include <vector>

class AcDbDictionaryIterator;

// Keys are compared without regard to case and keep their spelling;
// entries iterate in the order they were set (the file's order).
class AcDbDictionary : public AcDbObject {
public:
    const wchar_t* dxfName() const override { return L"DICTIONARY"; }
    AcDbObject* clone() const override; // an empty dictionary
    AcDbObject* journalCopy() const override { return new AcDbDictionary(*this); }

    // Adds the object to the database when it is not yet there; an existing
    // entry of the key is replaced and its object erased.
    Acad::ErrorStatus setAt(const std::wstring& key, AcDbObject* pObj, AcDbObjectId& newId);
    Acad::ErrorStatus getAt(const std::wstring& key, AcDbObjectId& id) const;
    template <class T>
    Acad::ErrorStatus getAt(const std::wstring& key, T*& pObj, AcDb::OpenMode mode) const {
        pObj = nullptr;
        AcDbObjectId id;
        Acad::ErrorStatus es = getAt(key, id);
        return es != Acad::eOk ? es : acdbOpenObject(pObj, id, mode);
    }
    bool has(const std::wstring& key) const;
    // Takes the entry out; the object stays in the database, unowned.
    Acad::ErrorStatus remove(const std::wstring& key);
    Acad::ErrorStatus remove(const std::wstring& key, AcDbObjectId& id);
    int numEntries() const;
    bool nameAt(AcDbObjectId id, std::wstring& key) const;
    AcDbDictionaryIterator* newIterator() const; // the caller deletes it

    // Every entry with erased ones, for the codec and deep cloning.
    const std::vector<std::pair<std::wstring, AcDbObjectId>>& entries() const { return m_entries; }
    void appendRaw(const std::wstring& key, AcDbObjectId id) { m_entries.emplace_back(key, id); }
    // Drops the entry at an index of entries(), open or not (the file reader's repair).
    void removeRawAt(size_t i) { m_entries.erase(m_entries.begin() + static_cast<long>(i)); }
    int cloningFlag = 1;    // group 281: what a deep clone does with a duplicate key
    bool hardOwner = false; // group 280

private:
    int find(const std::wstring& key) const; // live entry index or -1
    std::vector<std::pair<std::wstring, AcDbObjectId>> m_entries;
};

class AcDbDictionaryIterator {
public:
    explicit AcDbDictionaryIterator(const AcDbDictionary& dict);
    bool done() const { return m_i >= m_entries.size(); }
    bool next();
    const std::wstring& name() const { return m_entries[m_i].first; }
    AcDbObjectId objectId() const { return m_entries[m_i].second; }
    template <class T> Acad::ErrorStatus getObject(T*& pObj, AcDb::OpenMode mode) const {
        return acdbOpenObject(pObj, objectId(), mode);
    }

private:
    void skipErased();
    std::vector<std::pair<std::wstring, AcDbObjectId>> m_entries; // a snapshot
    size_t m_i = 0;
};

// A record of group-coded values in a dictionary.
class AcDbXrecord : public AcDbObject {
public:
    AcDbXrecord() = default;
    ~AcDbXrecord() override;
    const wchar_t* dxfName() const override { return L"XRECORD"; }
    AcDbObject* clone() const override;
    // A copy of the values; the caller frees it with acutRelRb.
    Acad::ErrorStatus rbChain(resbuf*& pChain) const;
    // Copies the chain; the caller keeps it.
    Acad::ErrorStatus setFromRbChain(const resbuf& chain);
    Acad::ErrorStatus setFromRbChain(const resbuf* pChain);
    const resbuf* chain() const { return m_pChain; }
    int mergeStyle = 1; // group 280

private:
    AcDbXrecord(const AcDbXrecord& o);
    resbuf* m_pChain = nullptr;
};

// One layout (paper sheet) of the drawing and the block that holds its entities.
class AcDbLayout : public AcDbObject {
public:
    const wchar_t* dxfName() const override { return L"LAYOUT"; }
    AcDbObject* clone() const override { return new AcDbLayout(*this); }
    std::wstring m_strName;
    int m_nTabOrder = 0;
    AcDbObjectId m_blockTableRecordId;
};

// An object of a type the database does not model, kept for the file.
class AcDbUnknownObject : public AcDbObject {
public:
    explicit AcDbUnknownObject(std::wstring strDxfName) : m_strDxfName(std::move(strDxfName)) {}
    const wchar_t* dxfName() const override { return m_strDxfName.c_str(); }
    AcDbObject* clone() const override { return new AcDbUnknownObject(*this); }
    std::wstring m_strDxfName;
    std::vector<DXF_TAG> m_tags; // after the handle, reactors and owner
};
