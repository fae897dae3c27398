// The drawing database: objects by handle, tables, header values, files, block operations.
#pragma once

#include "host/db/AcGe.h"
#include "host/db/DbCore.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

class AcDbBlockTable;
class AcDbLayerTable;
class AcDbRegAppTable;
class AcDbDimStyleTable;
class AcDbLinetypeTable;
class AcDbTextStyleTable;
class AcDbViewportTable;
class AcDbViewTable;
class AcDbUCSTable;
class AcDbDictionary;
class AcDbSymbolTable;
class AcDbUndoJournal;

// Reads and writes a database as a file; the host registers one.
class IAcDbFileCodec {
public:
    virtual ~IAcDbFileCodec() = default;
    // Fills an empty database (built without a default drawing).
    virtual Acad::ErrorStatus Read(AcDbDatabase& db, const std::wstring& strPath) = 0;
    virtual Acad::ErrorStatus Write(AcDbDatabase& db, const std::wstring& strPath) = 0;
    // The preview bitmap stored in a file, without reading the drawing.
    virtual bool ReadThumbnail(const std::wstring& strPath, std::vector<uint8_t>& bitmap) = 0;
};
void acdbSetFileCodec(IAcDbFileCodec* pCodec);
IAcDbFileCodec* acdbFileCodec();

namespace AcDb {
// File format versions by the editor's codes.
enum AcDbDwgVersion {
    kDHL_1014 = 21, // R14
    kDHL_1015 = 23, // 2000
    kDHL_1800 = 25, // 2004
    kDHL_2100 = 27, // 2007
    kDHL_2400 = 29, // 2010
    kDHL_CURRENT = 29
};
} // namespace AcDb

class AcDbDatabase {
public:
    // With bBuildDefaultDrawing the tables, the two spaces, layer "0",
    // "Standard" styles and the named object dictionary are made; without,
    // the database is empty and meant for readDwgFile.
    explicit AcDbDatabase(bool bBuildDefaultDrawing = true, bool bNoDocument = false);
    ~AcDbDatabase();
    AcDbDatabase(const AcDbDatabase&) = delete;
    AcDbDatabase& operator=(const AcDbDatabase&) = delete;

    // Through the registered codec; the sharing mode is accepted for the editor's signature.
    Acad::ErrorStatus readDwgFile(const wchar_t* pPath, int nShareMode = 64);
    Acad::ErrorStatus saveAs(const wchar_t* pPath);
    // With bBakAndRename an existing file is first copied to the same stem
    // with ".bak". The codec writes the version it can that comes nearest.
    Acad::ErrorStatus saveAs(const wchar_t* pPath, bool bBakAndRename,
                             AcDb::AcDbDwgVersion version);
    // The version the running save asks for: for the codec.
    AcDb::AcDbDwgVersion saveVersion() const { return m_eSaveVersion; }
    const std::wstring& filename() const { return m_strFileName; }

    Acad::ErrorStatus getBlockTable(AcDbBlockTable*& p, AcDb::OpenMode mode);
    Acad::ErrorStatus getLayerTable(AcDbLayerTable*& p, AcDb::OpenMode mode);
    Acad::ErrorStatus getRegAppTable(AcDbRegAppTable*& p, AcDb::OpenMode mode);
    Acad::ErrorStatus getDimStyleTable(AcDbDimStyleTable*& p, AcDb::OpenMode mode);
    Acad::ErrorStatus getLinetypeTable(AcDbLinetypeTable*& p, AcDb::OpenMode mode);
    Acad::ErrorStatus getTextStyleTable(AcDbTextStyleTable*& p, AcDb::OpenMode mode);
    Acad::ErrorStatus getNamedObjectsDictionary(AcDbDictionary*& p, AcDb::OpenMode mode);
    AcDbObjectId blockTableId() const { return m_blockTableId; }
    AcDbObjectId layerTableId() const { return m_layerTableId; }
    AcDbObjectId regAppTableId() const { return m_regAppTableId; }
    AcDbObjectId dimStyleTableId() const { return m_dimStyleTableId; }
    AcDbObjectId linetypeTableId() const { return m_linetypeTableId; }
    AcDbObjectId textStyleTableId() const { return m_textStyleTableId; }
    AcDbObjectId viewportTableId() const { return m_viewportTableId; }
    AcDbObjectId viewTableId() const { return m_viewTableId; }
    AcDbObjectId ucsTableId() const { return m_ucsTableId; }
    AcDbObjectId namedObjectsDictionaryId() const { return m_nodId; }
    AcDbObjectId modelSpaceId() const;
    AcDbObjectId paperSpaceId() const;

    // Gives the object a new handle; the object stays open for write.
    Acad::ErrorStatus addAcDbObject(AcDbObjectId& id, AcDbObject* pObj);
    // The id of a handle; with bCreate a stub is made for a handle not seen yet.
    Acad::ErrorStatus getAcDbObjectId(AcDbObjectId& id, bool bCreate, const AcDbHandle& h);
    AcDbHandle handseed() const { return AcDbHandle(m_nHandseed); }
    AcDbHandle allocateHandle() { return AcDbHandle(m_nHandseed++); }
    // For the codec: the file's next free handle; the seed never goes down.
    void raiseHandseed(const AcDbHandle& h) {
        if (h.value() > m_nHandseed)
            m_nHandseed = h.value();
    }

    // Header values.
    AcGePoint3d insbase() const { return m_insbase; }
    Acad::ErrorStatus setInsbase(const AcGePoint3d& p);
    AcGePoint3d extmin() const { return m_extmin; }
    AcGePoint3d extmax() const { return m_extmax; }
    void setExtents(const AcGePoint3d& lo, const AcGePoint3d& hi);
    // Recomputes the extents from the live entities of model space.
    Acad::ErrorStatus updateExt();
    AcDbObjectId clayer() const { return m_clayerId; }
    Acad::ErrorStatus setClayer(AcDbObjectId id);
    AcDbObjectId dimstyle() const { return m_dimstyleId; }
    Acad::ErrorStatus setDimstyle(AcDbObjectId id);
    // Makes the style's values the current dimension variables.
    Acad::ErrorStatus setDimstyleData(AcDbObjectId id);
    double dimlfac() const { return m_dDimlfac; }
    void setDimlfac(double d) { m_dDimlfac = d; }
    AcDbObjectId textstyle() const { return m_textstyleId; }
    void setTextstyle(AcDbObjectId id) { m_textstyleId = id; }
    // The code page of the file's texts ("ANSI_936").
    const std::wstring& codePage() const { return m_strCodePage; }
    void setCodePage(const std::wstring& s) { m_strCodePage = s; }

    // What a file held that the database does not interpret, written back as
    // it came: header variables (each from its group 9 on, in file order) and
    // the class definitions (each from its group 0 on).
    std::vector<DXF_TAG> m_keptHeader;
    std::vector<DXF_TAG> m_keptClasses;

    // The preview picture (a device-independent bitmap), kept with the drawing.
    const std::vector<uint8_t>& thumbnailBitmap() const { return m_thumbnail; }
    Acad::ErrorStatus setThumbnailBitmap(const std::vector<uint8_t>& bitmap);
    void setRetainOriginalThumbnailBitmap(bool b) { m_bRetainThumbnail = b; }
    bool retainOriginalThumbnailBitmap() const { return m_bRetainThumbnail; }

    // A new database holding the entities and what they need (their blocks,
    // layers, linetypes, dimension styles, applications and extension
    // dictionaries), with the base point as its insertion base.
    Acad::ErrorStatus wblock(AcDbDatabase*& pOutput, const AcDbObjectIdArray& ids,
                             const AcGePoint3d& basePoint);
    // A new database copying this whole drawing.
    Acad::ErrorStatus wblock(AcDbDatabase*& pOutput);
    // Copies the model space of pSource into a new block of this database
    // ("*U" makes an anonymous one), with the blocks and symbols it needs;
    // existing names here win.
    Acad::ErrorStatus insert(AcDbObjectId& blockId, const wchar_t* pBlockName,
                             AcDbDatabase* pSource, bool bPreserveSourceDatabase = true);

    // Every handle's stub in the order they were made: for the codec.
    const std::deque<AcDbStub>& stubs() const { return m_stubs; }
    // For the codec: places a loaded object under its handle; the object is closed.
    Acad::ErrorStatus adoptObject(AcDbObject* pObj, const AcDbHandle& h);
    void setTableIds(AcDbObjectId blocks, AcDbObjectId layers, AcDbObjectId regapps,
                     AcDbObjectId dimstyles, AcDbObjectId linetypes, AcDbObjectId textstyles,
                     AcDbObjectId vports, AcDbObjectId views, AcDbObjectId ucss, AcDbObjectId nod);
    std::unordered_map<std::wstring, std::wstring> m_extraHeader; // other header values, as text
    int m_nAnonymousCounter = 0;                                  // last n given to a "*U<n>" block
    // The undo journal that notes this database's changes, or null (set by the journal).
    AcDbUndoJournal* undoJournal() const { return m_pJournal; }

private:
    friend class CDbCloner;
    friend class AcDbUndoJournal;
    AcDbUndoJournal* m_pJournal = nullptr;
    void buildDefaultDrawing();
    void clear();
    AcDbStub* newStub(const AcDbHandle& h);
    template <class T> Acad::ErrorStatus openTable(AcDbObjectId id, T*& p, AcDb::OpenMode mode);

    std::deque<AcDbStub> m_stubs; // stable addresses
    std::unordered_map<uint64_t, AcDbStub*> m_byHandle;
    uint64_t m_nHandseed = 1;
    AcDbObjectId m_blockTableId, m_layerTableId, m_regAppTableId, m_dimStyleTableId,
        m_linetypeTableId, m_textStyleTableId, m_viewportTableId, m_viewTableId, m_ucsTableId,
        m_nodId;
    AcGePoint3d m_insbase, m_extmin, m_extmax;
    AcDbObjectId m_clayerId, m_dimstyleId, m_textstyleId;
    double m_dDimlfac = 1.0;
    AcDb::AcDbDwgVersion m_eSaveVersion = AcDb::kDHL_1015;
    std::wstring m_strCodePage = L"ANSI_936";
    std::wstring m_strFileName;
    std::vector<uint8_t> m_thumbnail;
    bool m_bRetainThumbnail = false;
};

// The host's application services: which database commands work on.
class AcDbHostApplicationServices {
public:
    AcDbDatabase* workingDatabase() const { return m_pWorking; }
    void setWorkingDatabase(AcDbDatabase* pDb) { m_pWorking = pDb; }

private:
    AcDbDatabase* m_pWorking = nullptr;
};
AcDbHostApplicationServices* acdbHostApplicationServices();

// The editor's table search on the working drawing: a chain with the
// record's name (group 2) and flags (70), or null. The caller frees it.
// Tables: "APPID", "LAYER", "BLOCK", "DIMSTYLE", "LTYPE", "STYLE".
resbuf* acdbTblSearch(const wchar_t* pTable, const wchar_t* pName, int nNext = 0);
// Registers an application in the working drawing: RTNORM, or RTERROR
// without a working drawing or for an invalid name.
int acdbRegApp(const wchar_t* pApp);
// The most recently made live entity of a layout (model or paper space) of
// the working drawing: RTNORM, or RTERROR when there is none.
int acdbEntLast(AcDbObjectId& id);
// Erases a live entity, or brings an erased one back: RTNORM, or RTERROR.
int acdbEntDel(AcDbObjectId id);

// Reads the preview bitmap of a drawing file through the codec.
bool acdbGetPreviewBitmapFromDwg(const wchar_t* pPath, std::vector<uint8_t>& bitmap);
