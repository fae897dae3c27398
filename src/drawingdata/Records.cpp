// Extended data, registered applications, named and extension xrecords, string chains.
#include "drawingdata/Records.h"

#include "base/StrUtil.h"
#include "host/HostUi.h"

#include <cwchar>

namespace {

// The first node of the group in the application's chain, or null.
const resbuf* FindNode(const resbuf* pChain, int nGroupCode) {
    for (const resbuf* p = pChain; p; p = p->rbnext)
        if (p->restype == nGroupCode)
            return p;
    return nullptr;
}

template <class T, class F>
bool ReadValue(const AcDbObject* pEnt, const std::wstring& strApp, int nGroupCode, int nKind,
               T& out, F&& take) {
    if (!pEnt || acdbGroupCodeToType(nGroupCode) != nKind)
        return false;
    resbuf* pChain = pEnt->xData(strApp.c_str());
    const resbuf* p = FindNode(pChain ? pChain->rbnext : nullptr, nGroupCode);
    if (p)
        take(*p, out);
    acutRelRb(pChain);
    return p != nullptr;
}

// The value node for a group code, of the width the group asks for.
resbuf* MakeNode(int nGroupCode, const XDATA_VALUE& v) {
    if (nGroupCode < 1000 || nGroupCode > 1071)
        return nullptr; // not an extended data group
    switch (acdbGroupCodeToType(nGroupCode)) {
    case RTSTR:
        return acutNewStringRb(nGroupCode, v.strText);
    case RT3DPOINT:
        return acutNewPointRb(nGroupCode, v.pt.x, v.pt.y, v.pt.z);
    case RTREAL:
        return acutNewRealRb(nGroupCode, v.dReal);
    case RTSHORT:
        return acutNewShortRb(nGroupCode, static_cast<short>(v.nInt));
    case RTLONG:
        return acutNewLongRb(nGroupCode, v.nInt);
    default:
        return nullptr;
    }
}

bool WriteXData(AcDbDatabase* pDb, AcDbObject* pEnt, const std::wstring& strApp, int nGroupCode,
                const XDATA_VALUE& value, bool bAppend) {
    resbuf* pNode = pDb && pEnt && !strApp.empty() ? MakeNode(nGroupCode, value) : nullptr;
    if (!pNode || !EnsureRegApp(pDb, strApp)) {
        acutRelRb(pNode);
        return false;
    }
    resbuf* pChain = bAppend ? pEnt->xData(strApp.c_str()) : nullptr;
    if (pChain) {
        acutLastRb(pChain)->rbnext = pNode;
    } else {
        pChain = acutNewStringRb(1001, strApp);
        pChain->rbnext = pNode;
    }
    bool bOk = pEnt->upgradeOpen() == Acad::eOk && pEnt->setXData(pChain) == Acad::eOk;
    acutRelRb(pChain);
    return bOk;
}

} // namespace

bool GetXDataValue(const AcDbObject* pEnt, const std::wstring& strApp, int nGroupCode,
                   std::wstring& out) {
    return ReadValue(pEnt, strApp, nGroupCode, RTSTR, out,
                     [](const resbuf& rb, std::wstring& o) { o = rb.resval.rstring; });
}

bool GetXDataValue(const AcDbObject* pEnt, const std::wstring& strApp, int nGroupCode,
                   AcGePoint3d& out) {
    return ReadValue(
        pEnt, strApp, nGroupCode, RT3DPOINT, out, [](const resbuf& rb, AcGePoint3d& o) {
            o = AcGePoint3d(rb.resval.rpoint[0], rb.resval.rpoint[1], rb.resval.rpoint[2]);
        });
}

bool GetXDataValue(const AcDbObject* pEnt, const std::wstring& strApp, int nGroupCode,
                   double& out) {
    return ReadValue(pEnt, strApp, nGroupCode, RTREAL, out,
                     [](const resbuf& rb, double& o) { o = rb.resval.rreal; });
}

bool GetXDataValue(const AcDbObject* pEnt, const std::wstring& strApp, int nGroupCode, int& out) {
    int nKind = acdbGroupCodeToType(nGroupCode) == RTLONG ? RTLONG : RTSHORT;
    return ReadValue(pEnt, strApp, nGroupCode, nKind, out, [nKind](const resbuf& rb, int& o) {
        o = nKind == RTLONG ? rb.resval.rlong : rb.resval.rint;
    });
}

bool HasXData(const AcDbObject* pEnt, const std::wstring& strApp) {
    if (!pEnt)
        return false;
    resbuf* pChain = pEnt->xData(strApp.c_str());
    acutRelRb(pChain);
    return pChain != nullptr;
}

bool SetXDataValue(AcDbDatabase* pDb, AcDbObject* pEnt, const std::wstring& strApp, int nGroupCode,
                   const XDATA_VALUE& value) {
    return WriteXData(pDb, pEnt, strApp, nGroupCode, value, false);
}

bool AppendXDataValue(AcDbDatabase* pDb, AcDbObject* pEnt, const std::wstring& strApp,
                      int nGroupCode, const XDATA_VALUE& value) {
    return WriteXData(pDb, pEnt, strApp, nGroupCode, value, true);
}

int EnsureRegApp(AcDbDatabase* pDb, const std::wstring& strApp) {
    AcDbRegAppTable* pTable = nullptr;
    if (!pDb || strApp.empty() || pDb->getRegAppTable(pTable, AcDb::kForRead) != Acad::eOk)
        return 0;
    AcDbSymbolTableIterator* pIter = nullptr;
    pTable->newIterator(pIter);
    bool bFound = false;
    for (; !pIter->done() && !bFound; pIter->step()) {
        AcDbRegAppTableRecord* pRec = nullptr;
        if (pIter->getRecord(pRec, AcDb::kForRead) != Acad::eOk)
            continue;
        bFound = pRec->name() == strApp;
        pRec->close();
    }
    delete pIter;
    if (bFound) {
        pTable->close();
        return 1;
    }
    auto* pRec = new AcDbRegAppTableRecord;
    bool bOk = pRec->setName(strApp) == Acad::eOk && pTable->upgradeOpen() == Acad::eOk &&
               pTable->add(pRec) == Acad::eOk;
    if (bOk)
        pRec->close();
    else
        delete pRec;
    pTable->close();
    return bOk ? 1 : 0;
}

int EnsureRegApp(const std::wstring& strApp) {
    if (resbuf* pFound = acdbTblSearch(L"APPID", strApp.c_str())) {
        acutRelRb(pFound);
        return 1;
    }
    if (acdbRegApp(strApp.c_str()) != RTNORM) {
        acutPrintf(L"\n无法注册应用程序 %s", strApp);
        return 0;
    }
    return 1;
}

int ReadNamedXrecord(AcDbDatabase* pDb, const std::wstring& strDict, const std::wstring& strKey,
                     resbuf*& pChain) {
    pChain = nullptr;
    AcDbDictionary* pNod = nullptr;
    if (!pDb || pDb->getNamedObjectsDictionary(pNod, AcDb::kForRead) != Acad::eOk)
        return 0;
    AcDbDictionary* pDict = nullptr;
    Acad::ErrorStatus es = pNod->getAt(strDict, pDict, AcDb::kForRead);
    pNod->close();
    if (es != Acad::eOk)
        return 0;
    AcDbXrecord* pRec = nullptr;
    es = pDict->getAt(strKey, pRec, AcDb::kForRead);
    pDict->close();
    if (es != Acad::eOk)
        return 0;
    pRec->rbChain(pChain);
    pRec->close();
    return 1;
}

namespace {

// The entry of the key opened for write, made as a new T when it is missing.
template <class T>
Acad::ErrorStatus OpenOrCreate(AcDbDictionary* pOwner, const std::wstring& strKey, T*& pObj) {
    Acad::ErrorStatus es = pOwner->getAt(strKey, pObj, AcDb::kForWrite);
    if (es != Acad::eKeyNotFound)
        return es;
    pObj = new T;
    AcDbObjectId id;
    es = pOwner->setAt(strKey, pObj, id);
    if (es != Acad::eOk) {
        delete pObj;
        pObj = nullptr;
    }
    return es;
}

// Sets the chain on the entry, made when missing; closes the dictionary.
int SetXrecordIn(AcDbDictionary* pDict, const std::wstring& strKey, const resbuf* pChain) {
    AcDbXrecord* pRec = nullptr;
    Acad::ErrorStatus es = OpenOrCreate(pDict, strKey, pRec);
    pDict->close();
    if (es != Acad::eOk)
        return 0;
    es = pRec->setFromRbChain(pChain);
    pRec->close();
    return es == Acad::eOk ? 1 : 0;
}

} // namespace

int WriteNamedXrecord(AcDbDatabase* pDb, const std::wstring& strDict, const std::wstring& strKey,
                      const resbuf* pChain) {
    AcDbDictionary* pNod = nullptr;
    if (!pDb || pDb->getNamedObjectsDictionary(pNod, AcDb::kForWrite) != Acad::eOk)
        return 0;
    AcDbDictionary* pDict = nullptr;
    Acad::ErrorStatus es = OpenOrCreate(pNod, strDict, pDict);
    pNod->close();
    if (es != Acad::eOk)
        return 0;
    return SetXrecordIn(pDict, strKey, pChain);
}

int RemoveNamedXrecord(AcDbDatabase* pDb, const std::wstring& strDict, const std::wstring& strKey) {
    AcDbDictionary* pNod = nullptr;
    if (!pDb || pDb->getNamedObjectsDictionary(pNod, AcDb::kForRead) != Acad::eOk)
        return 0;
    AcDbDictionary* pDict = nullptr;
    Acad::ErrorStatus es = pNod->getAt(strDict, pDict, AcDb::kForWrite);
    pNod->close();
    if (es != Acad::eOk)
        return 0;
    AcDbObjectId id;
    es = pDict->remove(strKey, id);
    pDict->close();
    if (es != Acad::eOk)
        return 0;
    AcDbObject* pRec = nullptr;
    if (acdbOpenObject(pRec, id, AcDb::kForWrite) == Acad::eOk) {
        pRec->erase();
        pRec->close();
    }
    return 1;
}

int ReadExtXrecord(const AcDbObject* pEnt, const std::wstring& strKey, resbuf*& pChain) {
    pChain = nullptr;
    AcDbDictionary* pDict = nullptr;
    if (!pEnt || acdbOpenObject(pDict, pEnt->extensionDictionary(), AcDb::kForRead) != Acad::eOk)
        return 0;
    AcDbDictionaryIterator* pIter = pDict->newIterator();
    int nFound = 0;
    for (; !pIter->done() && !nFound; pIter->next()) {
        if (CompareNoCase(StrTrim(pIter->name()), strKey) != 0)
            continue;
        AcDbXrecord* pRec = nullptr;
        if (pIter->getObject(pRec, AcDb::kForRead) != Acad::eOk)
            continue;
        pRec->rbChain(pChain);
        pRec->close();
        nFound = 1;
    }
    delete pIter;
    pDict->close();
    return nFound;
}

int WriteExtXrecord(AcDbObject* pEnt, const std::wstring& strKey, const resbuf* pChain) {
    if (!pEnt || pEnt->upgradeOpen() != Acad::eOk)
        return 0;
    Acad::ErrorStatus es = pEnt->createExtensionDictionary();
    if (es != Acad::eOk && es != Acad::eAlreadyInDb)
        return 0;
    AcDbDictionary* pDict = nullptr;
    if (acdbOpenObject(pDict, pEnt->extensionDictionary(), AcDb::kForWrite) != Acad::eOk)
        return 0;
    return SetXrecordIn(pDict, strKey, pChain);
}

void StringsFromChain(const resbuf* pChain, CStringArray& out) {
    for (const resbuf* p = pChain; p; p = p->rbnext)
        if (p->restype == 1)
            out.push_back(p->resval.rstring);
}

resbuf* ChainFromStrings(const CStringArray& strings) {
    resbuf* head = nullptr;
    resbuf** tail = &head;
    for (const std::wstring& s : strings) {
        *tail = acutNewStringRb(1, s);
        tail = &(*tail)->rbnext;
    }
    return head;
}
