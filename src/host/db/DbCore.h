// Status values, handles, object ids and the base of every database object.
#pragma once

#include "host/db/ResBuf.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Acad {
// The editor's status values that callers test by number.
enum ErrorStatus {
    eOk = 0,
    eNotImplementedYet = 1,
    eNotApplicable = 2,
    eInvalidInput = 3,
    eInvalidOpenState = 8,
    eNullObjectId = 12,
    eNotThatKindOfClass = 13,
    eWasErased = 15,
    eNotInDatabase = 16,
    eKeyNotFound = 22,
    eDuplicateKey = 23,
    eAlreadyInDb = 26,
    eDuplicateRecordName = 27,
    eWasOpenForWrite = 30,
    eWasOpenForRead = 31,
    eNotOpenForWrite = 32,
    eRegappIdNotFound = 40,
    eCannotScaleNonUniformly = 41,
    eInvalidExtents = 42,
    eFileNotFound = 60,
    eFileAccessErr = 61,
    eBadDxfFile = 62,
    eBinaryDwgNotSupported = 63, // a binary DWG: only its thumbnail is readable
    eNoFileCodec = 64,
};
} // namespace Acad

namespace AcDb {
enum OpenMode { kForRead = 0, kForWrite = 1 };
}

class AcDbDatabase;
class AcDbObject;

// A database handle: unique within its database and never reused.
class AcDbHandle {
public:
    AcDbHandle() = default;
    explicit AcDbHandle(uint64_t n) : m_n(n) {}
    // Parses hexadecimal text; an empty or invalid text gives the null handle.
    explicit AcDbHandle(const wchar_t* text);
    bool isNull() const { return m_n == 0; }
    uint64_t value() const { return m_n; }
    // Upper-case hexadecimal without leading zeros, as the editor writes it;
    // the buffer holds at least 17 characters.
    void getIntoAsciiBuffer(wchar_t* buf) const;
    std::wstring text() const;
    bool operator==(const AcDbHandle&) const = default;
    auto operator<=>(const AcDbHandle&) const = default;

private:
    uint64_t m_n = 0;
};

// The database's record of one handle; the object may not be loaded yet.
struct AcDbStub {
    AcDbHandle handle;
    AcDbObject* pObject = nullptr; // owned by the database
    AcDbDatabase* pDb = nullptr;
};

class AcDbObjectId {
public:
    AcDbObjectId() = default;
    explicit AcDbObjectId(AcDbStub* p) : m_p(p) {}
    static const AcDbObjectId kNull;
    bool isNull() const { return m_p == nullptr; }
    // True when the id names a loaded object.
    bool isValid() const { return m_p && m_p->pObject; }
    bool isErased() const;
    AcDbHandle handle() const { return m_p ? m_p->handle : AcDbHandle(); }
    AcDbDatabase* database() const { return m_p ? m_p->pDb : nullptr; }
    AcDbStub* stub() const { return m_p; }
    bool operator==(const AcDbObjectId&) const = default;
    bool operator<(const AcDbObjectId& o) const { return handle() < o.handle(); }

private:
    AcDbStub* m_p = nullptr;
};

using AcDbObjectIdArray = std::vector<AcDbObjectId>;

// A group-coded pair kept verbatim for a type the database does not model.
struct DXF_TAG {
    int nCode;
    std::wstring strValue;
};
// Entities that follow another in the file (attributes, mesh vertices, the
// end marker), each a list of groups from its own 0 group on. They keep
// their handles, so a copy of their owner goes without them.
using DXF_FOLLOWERS = std::vector<std::vector<DXF_TAG>>;

template <class T>
Acad::ErrorStatus acdbOpenObject(T*& pObj, AcDbObjectId id, AcDb::OpenMode mode,
                                 bool bOpenErased = false);

// Base of all objects. Objects in a database are owned by it: open them
// with acdbOpenObject and close them at once; an object not yet added is
// owned by whoever made it.
class AcDbObject {
public:
    AcDbObject() = default;
    virtual ~AcDbObject();
    AcDbObject& operator=(const AcDbObject&) = delete;

    // The DXF type name ("LINE", "DICTIONARY").
    virtual const wchar_t* dxfName() const = 0;
    // A copy without identity: no id, owner, extension dictionary or open state.
    virtual AcDbObject* clone() const = 0;
    // A whole copy for the undo journal: everything clone() leaves out that
    // belongs to the object itself (records, entries, followers) included.
    virtual AcDbObject* journalCopy() const { return clone(); }

    AcDbObjectId objectId() const { return AcDbObjectId(m_pStub); }
    AcDbObjectId ownerId() const { return m_ownerId; }
    Acad::ErrorStatus setOwnerId(AcDbObjectId id);
    AcDbHandle handle() const { return m_pStub ? m_pStub->handle : AcDbHandle(); }
    void getAcDbHandle(AcDbHandle& h) const { h = handle(); }
    AcDbDatabase* database() const { return m_pStub ? m_pStub->pDb : nullptr; }

    bool isErased() const { return m_bErased; }
    Acad::ErrorStatus erase(bool bErasing = true);

    bool isReadEnabled() const { return m_nReaders > 0 || m_bWriter; }
    bool isWriteEnabled() const { return m_bWriter || !m_pStub; }
    Acad::ErrorStatus close();
    Acad::ErrorStatus upgradeOpen();
    Acad::ErrorStatus downgradeOpen();

    // A copy of the extended data, of one application (from its 1001 node on)
    // or of all; null when there is none. The caller frees it with acutRelRb.
    resbuf* xData(const wchar_t* pAppName = nullptr) const;
    // Replaces the data of each application named by a 1001 node of the
    // chain; an application with no value after its 1001 node is removed.
    // Applications must be registered in the database.
    Acad::ErrorStatus setXData(const resbuf* pXData);
    bool hasXData() const { return !m_xdata.empty(); }

    AcDbObjectId extensionDictionary() const { return m_extDictId; }
    Acad::ErrorStatus createExtensionDictionary();

    // For the file codec and the database: raw access without the open rules.
    void setXDataRaw(const resbuf* pXData); // whole set, no registration test
    void setExtensionDictionaryRaw(AcDbObjectId id) { m_extDictId = id; }
    void setErasedRaw(bool b) { m_bErased = b; }

protected:
    AcDbObject(const AcDbObject& o);
    friend class AcDbDatabase;
    friend class AcDbUndoJournal;
    template <class T>
    friend Acad::ErrorStatus acdbOpenObject(T*&, AcDbObjectId, AcDb::OpenMode, bool);
    Acad::ErrorStatus openAs(AcDb::OpenMode mode, bool bOpenErased);
    // Called when the object joins a database, to give handles to parts it
    // owns; bLoading when it comes from a file and is complete already.
    virtual void onAddedToDatabase(AcDbDatabase&, bool /*bLoading*/) {}
    // Tells the database's undo journal, if any, before the object changes.
    void NoteWrite();

    AcDbStub* m_pStub = nullptr;

private:
    AcDbObjectId m_ownerId;
    AcDbObjectId m_extDictId;
    std::string m_xdata; // packed chain: see PackChain in DbCore.cpp
    short m_nReaders = 0;
    bool m_bWriter = false;
    bool m_bErased = false;
};

// Opens the object behind id as T. Fails with eWasErased unless bOpenErased,
// eNotThatKindOfClass when it is no T, and on a conflicting open state.
template <class T>
Acad::ErrorStatus acdbOpenObject(T*& pObj, AcDbObjectId id, AcDb::OpenMode mode, bool bOpenErased) {
    pObj = nullptr;
    if (!id.isValid())
        return id.isNull() ? Acad::eNullObjectId : Acad::eKeyNotFound;
    T* p = dynamic_cast<T*>(id.stub()->pObject);
    if (!p)
        return Acad::eNotThatKindOfClass;
    Acad::ErrorStatus es = p->openAs(mode, bOpenErased);
    if (es == Acad::eOk)
        pObj = p;
    return es;
}

// Opens, reads and closes in one: for callers that need one value at once.
template <class T, class F> bool acdbWithObject(AcDbObjectId id, F&& use) {
    T* p = nullptr;
    if (acdbOpenObject(p, id, AcDb::kForRead) != Acad::eOk)
        return false;
    use(*p);
    p->close();
    return true;
}
