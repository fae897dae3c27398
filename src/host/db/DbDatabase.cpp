// The database's objects by handle, its default contents, header values and files.
#include "host/db/DbDatabase.h"

#include "base/FileSystem.h"
#include "host/db/DbDictionary.h"
#include "host/db/DbEntity.h"
#include "host/db/DbSymbolTable.h"
#include "host/db/DbUndo.h"

namespace {

IAcDbFileCodec* g_pCodec = nullptr;

template <class T> AcDbObjectId AddOwned(AcDbDatabase& db, T* p, AcDbObjectId owner) {
    AcDbObjectId id;
    db.addAcDbObject(id, p);
    p->setOwnerId(owner);
    p->close();
    return id;
}

template <class T> void AddRecord(AcDbObjectId tableId, T* pRec, const wchar_t* name) {
    AcDbSymbolTable* pTable = nullptr;
    if (acdbOpenObject(pTable, tableId, AcDb::kForWrite) != Acad::eOk) {
        delete pRec;
        return;
    }
    pRec->setNameRaw(name);
    if (pTable->add(pRec) == Acad::eOk)
        pRec->close();
    else
        delete pRec;
    pTable->close();
}

} // namespace

void acdbSetFileCodec(IAcDbFileCodec* p) {
    g_pCodec = p;
}

IAcDbFileCodec* acdbFileCodec() {
    return g_pCodec;
}

AcDbHostApplicationServices* acdbHostApplicationServices() {
    static AcDbHostApplicationServices services;
    return &services;
}

resbuf* acdbTblSearch(const wchar_t* pTable, const wchar_t* pName, int /*nNext*/) {
    AcDbDatabase* pDb = acdbHostApplicationServices()->workingDatabase();
    if (!pDb || !pTable || !pName)
        return nullptr;
    std::wstring table = pTable;
    AcDbObjectId tableId = table == L"APPID"      ? pDb->regAppTableId()
                           : table == L"LAYER"    ? pDb->layerTableId()
                           : table == L"BLOCK"    ? pDb->blockTableId()
                           : table == L"DIMSTYLE" ? pDb->dimStyleTableId()
                           : table == L"LTYPE"    ? pDb->linetypeTableId()
                           : table == L"STYLE"    ? pDb->textStyleTableId()
                                                  : AcDbObjectId();
    AcDbSymbolTable* p =
        tableId.isValid() ? dynamic_cast<AcDbSymbolTable*>(tableId.stub()->pObject) : nullptr;
    AcDbObjectId id;
    if (!p || p->getAt(pName, id) != Acad::eOk)
        return nullptr;
    auto* pRec = static_cast<AcDbSymbolTableRecord*>(id.stub()->pObject);
    resbuf* rb = acutNewStringRb(2, pRec->name());
    rb->rbnext = acutNewShortRb(70, static_cast<short>(pRec->m_nFlags));
    return rb;
}

int acdbEntLast(AcDbObjectId& id) {
    id = AcDbObjectId();
    AcDbDatabase* pDb = acdbHostApplicationServices()->workingDatabase();
    if (!pDb)
        return RTERROR;
    const std::deque<AcDbStub>& stubs = pDb->stubs();
    for (auto it = stubs.rbegin(); it != stubs.rend(); ++it) {
        auto* pEnt = dynamic_cast<AcDbEntity*>(it->pObject);
        if (!pEnt || pEnt->isErased())
            continue;
        AcDbStub* pOwner = pEnt->ownerId().stub();
        auto* pSpace = pOwner ? dynamic_cast<AcDbBlockTableRecord*>(pOwner->pObject) : nullptr;
        if (pSpace && !pSpace->isErased() && pSpace->isLayout()) {
            id = pEnt->objectId();
            return RTNORM;
        }
    }
    return RTERROR;
}

int acdbEntDel(AcDbObjectId id) {
    AcDbEntity* pEnt = nullptr;
    if (acdbOpenObject(pEnt, id, AcDb::kForWrite, true) != Acad::eOk)
        return RTERROR;
    Acad::ErrorStatus es = pEnt->erase(!pEnt->isErased());
    pEnt->close();
    return es == Acad::eOk ? RTNORM : RTERROR;
}

int acdbRegApp(const wchar_t* pApp) {
    AcDbDatabase* pDb = acdbHostApplicationServices()->workingDatabase();
    AcDbRegAppTable* pTable = nullptr;
    if (!pDb || !pApp || pDb->getRegAppTable(pTable, AcDb::kForWrite) != Acad::eOk)
        return RTERROR;
    Acad::ErrorStatus es = Acad::eOk;
    if (!pTable->has(pApp)) {
        auto* pRec = new AcDbRegAppTableRecord;
        es = pRec->setName(pApp);
        if (es == Acad::eOk)
            es = pTable->add(pRec);
        if (es == Acad::eOk)
            pRec->close();
        else
            delete pRec;
    }
    pTable->close();
    return es == Acad::eOk ? RTNORM : RTERROR;
}

bool acdbGetPreviewBitmapFromDwg(const wchar_t* pPath, std::vector<uint8_t>& bitmap) {
    bitmap.clear();
    return g_pCodec && pPath && g_pCodec->ReadThumbnail(pPath, bitmap);
}

AcDbDatabase::AcDbDatabase(bool bBuildDefaultDrawing, bool /*bNoDocument*/) {
    if (bBuildDefaultDrawing)
        buildDefaultDrawing();
}

AcDbDatabase::~AcDbDatabase() {
    if (acdbHostApplicationServices()->workingDatabase() == this)
        acdbHostApplicationServices()->setWorkingDatabase(nullptr);
    clear();
}

void AcDbDatabase::clear() {
    for (AcDbStub& s : m_stubs)
        delete s.pObject;
    m_stubs.clear();
    m_byHandle.clear();
    m_nHandseed = 1;
    setTableIds({}, {}, {}, {}, {}, {}, {}, {}, {}, {});
    m_clayerId = m_dimstyleId = m_textstyleId = AcDbObjectId();
    m_extraHeader.clear();
    m_thumbnail.clear();
    m_nAnonymousCounter = 0;
}

void AcDbDatabase::setTableIds(AcDbObjectId blocks, AcDbObjectId layers, AcDbObjectId regapps,
                               AcDbObjectId dimstyles, AcDbObjectId linetypes,
                               AcDbObjectId textstyles, AcDbObjectId vports, AcDbObjectId views,
                               AcDbObjectId ucss, AcDbObjectId nod) {
    m_blockTableId = blocks;
    m_layerTableId = layers;
    m_regAppTableId = regapps;
    m_dimStyleTableId = dimstyles;
    m_linetypeTableId = linetypes;
    m_textStyleTableId = textstyles;
    m_viewportTableId = vports;
    m_viewTableId = views;
    m_ucsTableId = ucss;
    m_nodId = nod;
}

void AcDbDatabase::buildDefaultDrawing() {
    AcDbObjectId none;
    m_nodId = AddOwned(*this, new AcDbDictionary, none);
    m_blockTableId = AddOwned(*this, new AcDbBlockTable, none);
    m_layerTableId = AddOwned(*this, new AcDbLayerTable, none);
    m_regAppTableId = AddOwned(*this, new AcDbRegAppTable, none);
    m_dimStyleTableId = AddOwned(*this, new AcDbDimStyleTable, none);
    m_linetypeTableId = AddOwned(*this, new AcDbLinetypeTable, none);
    m_textStyleTableId = AddOwned(*this, new AcDbTextStyleTable, none);
    m_viewportTableId = AddOwned(*this, new AcDbViewportTable, none);
    m_viewTableId = AddOwned(*this, new AcDbViewTable, none);
    m_ucsTableId = AddOwned(*this, new AcDbUCSTable, none);

    AddRecord(m_linetypeTableId, new AcDbLinetypeTableRecord, L"ByBlock");
    AddRecord(m_linetypeTableId, new AcDbLinetypeTableRecord, L"ByLayer");
    auto* pCont = new AcDbLinetypeTableRecord;
    pCont->m_strDescription = L"Solid line";
    AddRecord(m_linetypeTableId, pCont, L"Continuous");
    AddRecord(m_layerTableId, new AcDbLayerTableRecord, L"0");
    AddRecord(m_textStyleTableId, new AcDbTextStyleTableRecord, L"Standard");
    AddRecord(m_regAppTableId, new AcDbRegAppTableRecord, L"ACAD");
    AddRecord(m_dimStyleTableId, new AcDbDimStyleTableRecord, L"Standard");
    AddRecord(m_viewportTableId, new AcDbViewportTableRecord, L"*Active");
    AddRecord(m_blockTableId, new AcDbBlockTableRecord, ACDB_MODEL_SPACE);
    AddRecord(m_blockTableId, new AcDbBlockTableRecord, ACDB_PAPER_SPACE);

    AcDbLayerTable* pLayers = nullptr;
    if (getLayerTable(pLayers, AcDb::kForRead) == Acad::eOk) {
        pLayers->getAt(L"0", m_clayerId);
        pLayers->close();
    }
    AcDbDimStyleTable* pDims = nullptr;
    if (getDimStyleTable(pDims, AcDb::kForRead) == Acad::eOk) {
        pDims->getAt(L"Standard", m_dimstyleId);
        pDims->close();
    }
    AcDbTextStyleTable* pStyles = nullptr;
    if (getTextStyleTable(pStyles, AcDb::kForRead) == Acad::eOk) {
        pStyles->getAt(L"Standard", m_textstyleId);
        pStyles->close();
    }

    // The group and layout dictionaries every drawing file carries.
    AcDbDictionary* pNod = nullptr;
    if (getNamedObjectsDictionary(pNod, AcDb::kForWrite) != Acad::eOk)
        return;
    AcDbObjectId id;
    auto* pGroups = new AcDbDictionary;
    pNod->setAt(L"ACAD_GROUP", pGroups, id);
    pGroups->close();
    auto* pLayouts = new AcDbDictionary;
    AcDbObjectId layoutsId;
    pNod->setAt(L"ACAD_LAYOUT", pLayouts, layoutsId);
    pNod->close();
    const wchar_t* names[2] = {L"Model", L"Layout1"};
    AcDbObjectId spaces[2] = {modelSpaceId(), paperSpaceId()};
    for (int i = 0; i < 2; ++i) {
        auto* pLayout = new AcDbLayout;
        pLayout->m_strName = names[i];
        pLayout->m_nTabOrder = i;
        pLayout->m_blockTableRecordId = spaces[i];
        pLayouts->setAt(names[i], pLayout, id);
        pLayout->close();
        AcDbBlockTableRecord* pSpace = nullptr;
        if (acdbOpenObject(pSpace, spaces[i], AcDb::kForWrite) == Acad::eOk) {
            pSpace->m_layoutId = id;
            pSpace->close();
        }
    }
    pLayouts->close();
}

AcDbStub* AcDbDatabase::newStub(const AcDbHandle& h) {
    m_stubs.push_back(AcDbStub{h, nullptr, this});
    AcDbStub* p = &m_stubs.back();
    m_byHandle.emplace(h.value(), p);
    if (h.value() >= m_nHandseed)
        m_nHandseed = h.value() + 1;
    return p;
}

Acad::ErrorStatus AcDbDatabase::addAcDbObject(AcDbObjectId& id, AcDbObject* pObj) {
    if (!pObj)
        return Acad::eInvalidInput;
    if (pObj->m_pStub)
        return Acad::eAlreadyInDb;
    AcDbStub* p = newStub(allocateHandle());
    p->pObject = pObj;
    pObj->m_pStub = p;
    pObj->m_bWriter = true;
    if (m_pJournal)
        m_pJournal->noteAdded(p);
    pObj->onAddedToDatabase(*this, false);
    id = AcDbObjectId(p);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::adoptObject(AcDbObject* pObj, const AcDbHandle& h) {
    if (!pObj || pObj->m_pStub || h.isNull())
        return Acad::eInvalidInput;
    auto it = m_byHandle.find(h.value());
    AcDbStub* p = it != m_byHandle.end() ? it->second : newStub(h);
    if (p->pObject)
        return Acad::eDuplicateKey;
    p->pObject = pObj;
    pObj->m_pStub = p;
    pObj->onAddedToDatabase(*this, true);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::getAcDbObjectId(AcDbObjectId& id, bool bCreate,
                                                const AcDbHandle& h) {
    id = AcDbObjectId();
    if (h.isNull())
        return Acad::eInvalidInput;
    auto it = m_byHandle.find(h.value());
    if (it != m_byHandle.end()) {
        id = AcDbObjectId(it->second);
        return Acad::eOk;
    }
    if (!bCreate)
        return Acad::eKeyNotFound;
    id = AcDbObjectId(newStub(h));
    return Acad::eOk;
}

template <class T>
Acad::ErrorStatus AcDbDatabase::openTable(AcDbObjectId id, T*& p, AcDb::OpenMode mode) {
    return acdbOpenObject(p, id, mode);
}

Acad::ErrorStatus AcDbDatabase::getBlockTable(AcDbBlockTable*& p, AcDb::OpenMode mode) {
    return openTable(m_blockTableId, p, mode);
}
Acad::ErrorStatus AcDbDatabase::getLayerTable(AcDbLayerTable*& p, AcDb::OpenMode mode) {
    return openTable(m_layerTableId, p, mode);
}
Acad::ErrorStatus AcDbDatabase::getRegAppTable(AcDbRegAppTable*& p, AcDb::OpenMode mode) {
    return openTable(m_regAppTableId, p, mode);
}
Acad::ErrorStatus AcDbDatabase::getDimStyleTable(AcDbDimStyleTable*& p, AcDb::OpenMode mode) {
    return openTable(m_dimStyleTableId, p, mode);
}
Acad::ErrorStatus AcDbDatabase::getLinetypeTable(AcDbLinetypeTable*& p, AcDb::OpenMode mode) {
    return openTable(m_linetypeTableId, p, mode);
}
Acad::ErrorStatus AcDbDatabase::getTextStyleTable(AcDbTextStyleTable*& p, AcDb::OpenMode mode) {
    return openTable(m_textStyleTableId, p, mode);
}
Acad::ErrorStatus AcDbDatabase::getNamedObjectsDictionary(AcDbDictionary*& p, AcDb::OpenMode mode) {
    return openTable(m_nodId, p, mode);
}

AcDbObjectId AcDbDatabase::modelSpaceId() const {
    auto* pTable = m_blockTableId.isValid()
                       ? static_cast<AcDbBlockTable*>(m_blockTableId.stub()->pObject)
                       : nullptr;
    AcDbObjectId id;
    if (pTable)
        pTable->getAt(ACDB_MODEL_SPACE, id);
    return id;
}

AcDbObjectId AcDbDatabase::paperSpaceId() const {
    auto* pTable = m_blockTableId.isValid()
                       ? static_cast<AcDbBlockTable*>(m_blockTableId.stub()->pObject)
                       : nullptr;
    AcDbObjectId id;
    if (pTable)
        pTable->getAt(ACDB_PAPER_SPACE, id);
    return id;
}

Acad::ErrorStatus AcDbDatabase::setInsbase(const AcGePoint3d& p) {
    m_insbase = p;
    return Acad::eOk;
}

void AcDbDatabase::setExtents(const AcGePoint3d& lo, const AcGePoint3d& hi) {
    m_extmin = lo;
    m_extmax = hi;
}

Acad::ErrorStatus AcDbDatabase::updateExt() {
    AcDbExtents all;
    AcDbObjectId ms = modelSpaceId();
    if (!ms.isValid())
        return Acad::eNullObjectId;
    for (AcDbObjectId id : static_cast<AcDbBlockTableRecord*>(ms.stub()->pObject)->entities()) {
        auto* pEnt = id.isValid() && !id.isErased() ? dynamic_cast<AcDbEntity*>(id.stub()->pObject)
                                                    : nullptr;
        AcDbExtents e;
        if (pEnt && pEnt->getGeomExtents(e) == Acad::eOk)
            all.addExt(e);
    }
    if (!all.isValid())
        return Acad::eInvalidExtents;
    setExtents(all.minPoint(), all.maxPoint());
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::setClayer(AcDbObjectId id) {
    if (!id.isValid() || !dynamic_cast<AcDbLayerTableRecord*>(id.stub()->pObject))
        return Acad::eInvalidInput;
    m_clayerId = id;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::setDimstyle(AcDbObjectId id) {
    if (!id.isValid() || !dynamic_cast<AcDbDimStyleTableRecord*>(id.stub()->pObject))
        return Acad::eInvalidInput;
    m_dimstyleId = id;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::setDimstyleData(AcDbObjectId id) {
    auto* p = id.isValid() ? dynamic_cast<AcDbDimStyleTableRecord*>(id.stub()->pObject) : nullptr;
    if (!p)
        return Acad::eInvalidInput;
    m_dDimlfac = p->dimlfac();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::setThumbnailBitmap(const std::vector<uint8_t>& bitmap) {
    m_thumbnail = bitmap;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::readDwgFile(const wchar_t* pPath, int /*nShareMode*/) {
    if (!pPath || !FsExists(pPath) || FsIsDirectory(pPath))
        return Acad::eFileNotFound;
    if (!g_pCodec)
        return Acad::eNoFileCodec;
    clear();
    Acad::ErrorStatus es = g_pCodec->Read(*this, pPath);
    if (es != Acad::eOk) {
        clear();
        return es;
    }
    m_strFileName = pPath;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::saveAs(const wchar_t* pPath, bool bBakAndRename,
                                       AcDb::AcDbDwgVersion version) {
    if (!pPath || !*pPath)
        return Acad::eInvalidInput;
    std::wstring strPath = pPath;
    if (bBakAndRename && FsExists(strPath) && !FsIsDirectory(strPath)) {
        size_t dot = strPath.find_last_of(L".\\");
        std::wstring strBak = (dot != std::wstring::npos && strPath[dot] == L'.')
                                  ? strPath.substr(0, dot) + L".bak"
                                  : strPath + L".bak";
        if (!FsCopyFile(strPath, strBak, false))
            return Acad::eFileAccessErr;
    }
    m_eSaveVersion = version;
    Acad::ErrorStatus es = saveAs(pPath);
    m_eSaveVersion = AcDb::kDHL_1015;
    return es;
}

Acad::ErrorStatus AcDbDatabase::saveAs(const wchar_t* pPath) {
    if (!pPath || !*pPath)
        return Acad::eInvalidInput;
    if (!g_pCodec)
        return Acad::eNoFileCodec;
    Acad::ErrorStatus es = g_pCodec->Write(*this, pPath);
    if (es == Acad::eOk)
        m_strFileName = pPath;
    return es;
}
