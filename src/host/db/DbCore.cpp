// Handles, ids, open states and extended data of database objects.
#include "host/db/DbCore.h"

#include "host/db/DbDatabase.h"
#include "host/db/DbDictionary.h"
#include "host/db/DbSymbolTable.h"
#include "host/db/DbUndo.h"

#include <cstring>
#include <cwchar>

const AcDbObjectId AcDbObjectId::kNull;

AcDbHandle::AcDbHandle(const wchar_t* text) {
    if (!text || !*text)
        return;
    uint64_t n = 0;
    for (const wchar_t* p = text; *p; ++p) {
        wchar_t c = *p;
        int d = c >= L'0' && c <= L'9'   ? c - L'0'
                : c >= L'a' && c <= L'f' ? c - L'a' + 10
                : c >= L'A' && c <= L'F' ? c - L'A' + 10
                                         : -1;
        if (d < 0 || (n >> 60) != 0)
            return;
        n = n * 16 + static_cast<uint64_t>(d);
    }
    m_n = n;
}

void AcDbHandle::getIntoAsciiBuffer(wchar_t* buf) const {
    wchar_t tmp[17];
    int i = 0;
    uint64_t n = m_n;
    do {
        tmp[i++] = L"0123456789ABCDEF"[n & 15];
        n >>= 4;
    } while (n);
    for (int k = 0; k < i; ++k)
        buf[k] = tmp[i - 1 - k];
    buf[i] = 0;
}

std::wstring AcDbHandle::text() const {
    wchar_t buf[17];
    getIntoAsciiBuffer(buf);
    return buf;
}

bool AcDbObjectId::isErased() const {
    return isValid() && m_p->pObject->isErased();
}

namespace {

// Extended data is kept packed, one buffer per object: a 16-bit group code,
// then the value (a 32-bit length and the characters for text; the union's
// bytes otherwise). It costs a fraction of a node chain per object.
void PackChain(const resbuf* p, std::string& out) {
    out.clear();
    for (; p; p = p->rbnext) {
        short code = p->restype;
        out.append(reinterpret_cast<const char*>(&code), sizeof code);
        int type = acdbGroupCodeToType(code);
        if (type == RTSTR) {
            uint32_t n = static_cast<uint32_t>(std::wcslen(p->resval.rstring));
            out.append(reinterpret_cast<const char*>(&n), sizeof n);
            out.append(reinterpret_cast<const char*>(p->resval.rstring), n * sizeof(wchar_t));
        } else if (type == RT3DPOINT) {
            out.append(reinterpret_cast<const char*>(p->resval.rpoint), 3 * sizeof(double));
        } else {
            out.append(reinterpret_cast<const char*>(&p->resval.rreal), sizeof(double));
        }
    }
}

resbuf* UnpackChain(const std::string& in) {
    resbuf* head = nullptr;
    resbuf** tail = &head;
    size_t i = 0;
    while (i + sizeof(short) <= in.size()) {
        short code;
        std::memcpy(&code, in.data() + i, sizeof code);
        i += sizeof code;
        resbuf* rb = acutNewRb(code);
        int type = acdbGroupCodeToType(code);
        if (type == RTSTR) {
            uint32_t n;
            std::memcpy(&n, in.data() + i, sizeof n);
            i += sizeof n;
            std::wstring text(n, L'\0');
            std::memcpy(text.data(), in.data() + i, n * sizeof(wchar_t));
            i += n * sizeof(wchar_t);
            acutSetRbString(rb, text);
        } else if (type == RT3DPOINT) {
            std::memcpy(rb->resval.rpoint, in.data() + i, 3 * sizeof(double));
            i += 3 * sizeof(double);
        } else {
            std::memcpy(&rb->resval.rreal, in.data() + i, sizeof(double));
            i += sizeof(double);
        }
        *tail = rb;
        tail = &rb->rbnext;
    }
    return head;
}

// Cuts a chain into application groups, each starting at its 1001 node;
// nodes before the first 1001 are dropped.
std::vector<resbuf*> SplitByApp(resbuf* head) {
    std::vector<resbuf*> groups;
    resbuf* prev = nullptr;
    for (resbuf* p = head; p; prev = p, p = p->rbnext) {
        if (p->restype != 1001)
            continue;
        if (prev)
            prev->rbnext = nullptr;
        if (groups.empty() && p != head)
            acutRelRb(head);
        groups.push_back(p);
    }
    if (groups.empty())
        acutRelRb(head);
    return groups;
}

bool IsRegistered(AcDbDatabase* pDb, const wchar_t* name) {
    AcDbRegAppTable* pTable = nullptr;
    if (pDb->getRegAppTable(pTable, AcDb::kForRead) != Acad::eOk)
        return false;
    bool b = pTable->has(name);
    pTable->close();
    return b;
}

} // namespace

AcDbObject::AcDbObject(const AcDbObject& o) : m_xdata(o.m_xdata) {}

AcDbObject::~AcDbObject() = default;

Acad::ErrorStatus AcDbObject::setOwnerId(AcDbObjectId id) {
    m_ownerId = id;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::erase(bool bErasing) {
    if (!m_pStub)
        return Acad::eNotInDatabase;
    if (!m_bWriter)
        return Acad::eNotOpenForWrite;
    m_bErased = bErasing;
    return Acad::eOk;
}

void AcDbObject::NoteWrite() {
    if (m_pStub && m_pStub->pDb && m_pStub->pDb->undoJournal())
        m_pStub->pDb->undoJournal()->noteWrite(this);
}

Acad::ErrorStatus AcDbObject::openAs(AcDb::OpenMode mode, bool bOpenErased) {
    if (m_bErased && !bOpenErased)
        return Acad::eWasErased;
    if (m_bWriter)
        return Acad::eWasOpenForWrite;
    if (mode == AcDb::kForWrite) {
        if (m_nReaders > 0)
            return Acad::eWasOpenForRead;
        NoteWrite();
        m_bWriter = true;
    } else {
        ++m_nReaders;
    }
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::close() {
    if (!m_pStub)
        return Acad::eNotInDatabase;
    if (m_bWriter)
        m_bWriter = false;
    else if (m_nReaders > 0)
        --m_nReaders;
    else
        return Acad::eInvalidOpenState;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::upgradeOpen() {
    if (m_bWriter || !m_pStub)
        return Acad::eOk;
    if (m_nReaders != 1)
        return Acad::eInvalidOpenState;
    NoteWrite();
    m_nReaders = 0;
    m_bWriter = true;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::downgradeOpen() {
    if (!m_bWriter)
        return Acad::eInvalidOpenState;
    m_bWriter = false;
    m_nReaders = 1;
    return Acad::eOk;
}

resbuf* AcDbObject::xData(const wchar_t* pAppName) const {
    if (m_xdata.empty())
        return nullptr;
    resbuf* all = UnpackChain(m_xdata);
    if (!pAppName)
        return all;
    resbuf* found = nullptr;
    for (resbuf* g : SplitByApp(all)) {
        if (!found && std::wcscmp(g->resval.rstring, pAppName) == 0)
            found = g;
        else
            acutRelRb(g);
    }
    return found;
}

Acad::ErrorStatus AcDbObject::setXData(const resbuf* pXData) {
    if (!isWriteEnabled())
        return Acad::eNotOpenForWrite;
    for (const resbuf* p = pXData; p; p = p->rbnext)
        if (p->restype == 1001 && database() && !IsRegistered(database(), p->resval.rstring))
            return Acad::eRegappIdNotFound;
    std::vector<resbuf*> olds = SplitByApp(UnpackChain(m_xdata));
    std::vector<resbuf*> news = SplitByApp(acutDuplicateChain(pXData));
    resbuf* head = nullptr;
    resbuf** tail = &head;
    auto take = [&](resbuf* g) {
        if (!g->rbnext) { // a lone 1001 node removes the application
            acutRelRb(g);
            return;
        }
        *tail = g;
        tail = &acutLastRb(g)->rbnext;
    };
    for (resbuf* o : olds) {
        resbuf* repl = nullptr;
        for (resbuf*& n : news)
            if (n && std::wcscmp(n->resval.rstring, o->resval.rstring) == 0) {
                repl = n;
                n = nullptr;
                break;
            }
        if (repl) {
            acutRelRb(o);
            take(repl);
        } else {
            take(o);
        }
    }
    for (resbuf* n : news)
        if (n)
            take(n);
    PackChain(head, m_xdata);
    acutRelRb(head);
    return Acad::eOk;
}

void AcDbObject::setXDataRaw(const resbuf* pXData) {
    PackChain(pXData, m_xdata);
}

Acad::ErrorStatus AcDbObject::createExtensionDictionary() {
    if (!m_pStub)
        return Acad::eNotInDatabase;
    if (!m_bWriter)
        return Acad::eNotOpenForWrite;
    if (m_extDictId.isValid() && !m_extDictId.isErased())
        return Acad::eAlreadyInDb;
    auto* pDict = new AcDbDictionary;
    pDict->setOwnerId(objectId());
    AcDbObjectId id;
    database()->addAcDbObject(id, pDict);
    pDict->close();
    m_extDictId = id;
    return Acad::eOk;
}
