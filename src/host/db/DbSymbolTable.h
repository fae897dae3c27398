// Symbol tables and their records: blocks, layers, applications, styles, linetypes.
#pragma once

#include "host/db/AcGe.h"
#include "host/db/DbCore.h"

#include <string>
#include <vector>

class AcDbEntity;
class AcDbSymbolTableIterator;
class AcDbBlockTableRecordIterator;

class AcDbSymbolTableRecord : public AcDbObject {
public:
    Acad::ErrorStatus getName(std::wstring& name) const;
    const std::wstring& name() const { return m_strName; }
    // The editor's name rule; names the editor makes itself ("*Model_Space",
    // "*U") are accepted for blocks only.
    Acad::ErrorStatus setName(const std::wstring& name);
    void setNameRaw(const std::wstring& name) { m_strName = name; }
    int m_nFlags = 0; // group 70 bits the database does not interpret
    // The record's groups from a file that the database does not interpret,
    // in file order, written back as they came (a foreign drawing's settings).
    std::vector<DXF_TAG> m_keptTags;

protected:
    virtual bool acceptsStarNames() const { return false; }
    std::wstring m_strName;
};

// A table: its records in the order they were added, names compared without regard to case.
class AcDbSymbolTable : public AcDbObject {
public:
    Acad::ErrorStatus getAt(const std::wstring& name, AcDbObjectId& id,
                            bool bGetErased = false) const;
    template <class T>
    Acad::ErrorStatus getAt(const std::wstring& name, T*& pRec, AcDb::OpenMode mode) const {
        pRec = nullptr;
        AcDbObjectId id;
        Acad::ErrorStatus es = getAt(name, id);
        return es != Acad::eOk ? es : acdbOpenObject(pRec, id, mode);
    }
    bool has(const std::wstring& name) const;
    // Adds the record to the database; the record stays open for write. A
    // block named "*U" or "*D" gets the next free "*U<n>" or "*D<n>" name.
    Acad::ErrorStatus add(AcDbObjectId& id, AcDbSymbolTableRecord* pRec);
    Acad::ErrorStatus add(AcDbSymbolTableRecord* pRec);
    Acad::ErrorStatus newIterator(AcDbSymbolTableIterator*& pIter, bool bAtBeginning = true,
                                  bool bSkipDeleted = true) const;
    const std::vector<AcDbObjectId>& records() const { return m_records; }
    void appendRaw(AcDbObjectId id) { m_records.push_back(id); }
    // The table's own DXF name ("LAYER") and the record type it holds.
    virtual const wchar_t* tableName() const = 0;
    virtual bool accepts(const AcDbSymbolTableRecord* p) const = 0;

private:
    std::vector<AcDbObjectId> m_records;
};

// A walk over a snapshot of ids that passes over unloaded ones and, when
// asked, erased ones; the two iterators of the editor are this walk.
class AcDbIdWalk {
public:
    AcDbIdWalk(std::vector<AcDbObjectId> ids, bool bSkipDeleted);
    bool done() const { return m_i >= m_ids.size(); }
    void step();

protected:
    AcDbObjectId current() const { return m_ids[m_i]; }
    template <class T> Acad::ErrorStatus openCurrent(T*& p, AcDb::OpenMode mode) const {
        return acdbOpenObject(p, m_ids[m_i], mode, !m_bSkip);
    }

private:
    void skip();
    std::vector<AcDbObjectId> m_ids;
    size_t m_i = 0;
    bool m_bSkip;
};

class AcDbSymbolTableIterator : public AcDbIdWalk {
public:
    using AcDbIdWalk::AcDbIdWalk;
    AcDbObjectId getRecordId() const { return current(); }
    Acad::ErrorStatus getRecordId(AcDbObjectId& id) const {
        id = current();
        return Acad::eOk;
    }
    template <class T> Acad::ErrorStatus getRecord(T*& p, AcDb::OpenMode mode) const {
        return openCurrent(p, mode);
    }
};

#define QM_SYMBOL_TABLE(Table, Record, Dxf)                                                        \
    class Table : public AcDbSymbolTable {                                                         \
    public:                                                                                        \
        const wchar_t* dxfName() const override { return L"TABLE"; }                               \
        const wchar_t* tableName() const override { return Dxf; }                                  \
        AcDbObject* clone() const override { return nullptr; }                                     \
        AcDbObject* journalCopy() const override { return new Table(*this); }                      \
        bool accepts(const AcDbSymbolTableRecord* p) const override;                               \
    };

class AcDbBlockTableRecord : public AcDbSymbolTableRecord {
public:
    const wchar_t* dxfName() const override { return L"BLOCK_RECORD"; }
    AcDbObject* clone() const override;
    AcDbObject* journalCopy() const override { return new AcDbBlockTableRecord(*this); }
    Acad::ErrorStatus appendAcDbEntity(AcDbObjectId& id, AcDbEntity* pEnt);
    Acad::ErrorStatus appendAcDbEntity(AcDbEntity* pEnt);
    Acad::ErrorStatus newIterator(AcDbBlockTableRecordIterator*& pIter, bool bAtBeginning = true,
                                  bool bSkipDeleted = true) const;
    const AcGePoint3d& origin() const { return m_origin; }
    void setOrigin(const AcGePoint3d& p) { m_origin = p; }
    bool isAnonymous() const;
    bool isLayout() const;
    const std::vector<AcDbObjectId>& entities() const { return m_entities; }
    void appendRaw(AcDbObjectId id) { m_entities.push_back(id); }

    AcDbObjectId m_layoutId;
    std::wstring m_strDescription;
    AcDbHandle m_beginHandle, m_endHandle; // of the file's BLOCK and ENDBLK
    std::vector<uint8_t> m_preview;        // group 310 bytes

protected:
    bool acceptsStarNames() const override { return true; }
    void onAddedToDatabase(AcDbDatabase& db, bool bLoading) override;

private:
    AcGePoint3d m_origin;
    std::vector<AcDbObjectId> m_entities;
};

class AcDbBlockTableRecordIterator : public AcDbIdWalk {
public:
    using AcDbIdWalk::AcDbIdWalk;
    AcDbObjectId getEntityId() const { return current(); }
    Acad::ErrorStatus getEntityId(AcDbObjectId& id) const {
        id = current();
        return Acad::eOk;
    }
    template <class T> Acad::ErrorStatus getEntity(T*& p, AcDb::OpenMode mode) const {
        return openCurrent(p, mode);
    }
};

class AcDbLayerTableRecord : public AcDbSymbolTableRecord {
public:
    const wchar_t* dxfName() const override { return L"LAYER"; }
    AcDbObject* clone() const override { return new AcDbLayerTableRecord(*this); }
    short colorIndex() const { return m_nColor; }
    void setColorIndex(short n) { m_nColor = n; }
    bool isOff() const { return m_bOff; }
    void setIsOff(bool b) { m_bOff = b; }
    bool isFrozen() const { return m_nFlags & 1; }
    void setIsFrozen(bool b) { m_nFlags = b ? (m_nFlags | 1) : (m_nFlags & ~1); }
    bool isLocked() const { return m_nFlags & 4; }
    void setIsLocked(bool b) { m_nFlags = b ? (m_nFlags | 4) : (m_nFlags & ~4); }
    std::wstring m_strLinetype = L"Continuous";
    short m_nLineWeight = -3; // default
    bool m_bPlottable = true;

private:
    short m_nColor = 7;
    bool m_bOff = false;
};

class AcDbRegAppTableRecord : public AcDbSymbolTableRecord {
public:
    const wchar_t* dxfName() const override { return L"APPID"; }
    AcDbObject* clone() const override { return new AcDbRegAppTableRecord(*this); }
};

class AcDbDimStyleTableRecord : public AcDbSymbolTableRecord {
public:
    const wchar_t* dxfName() const override { return L"DIMSTYLE"; }
    AcDbObject* clone() const override { return new AcDbDimStyleTableRecord(*this); }
    // The linear scale factor: measured lengths are multiplied by it.
    double dimlfac() const { return m_dDimlfac; }
    Acad::ErrorStatus setDimlfac(double d);
    double dimscale() const { return m_dDimscale; }
    void setDimscale(double d) { m_dDimscale = d; }
    double dimtxt() const { return m_dDimtxt; }
    void setDimtxt(double d) { m_dDimtxt = d; }
    double dimasz() const { return m_dDimasz; }
    void setDimasz(double d) { m_dDimasz = d; }

private:
    double m_dDimlfac = 1.0, m_dDimscale = 1.0, m_dDimtxt = 2.5, m_dDimasz = 2.5;
};

class AcDbLinetypeTableRecord : public AcDbSymbolTableRecord {
public:
    const wchar_t* dxfName() const override { return L"LTYPE"; }
    AcDbObject* clone() const override { return new AcDbLinetypeTableRecord(*this); }
    std::wstring m_strDescription;
    std::vector<double> m_dashes; // dash lengths, negative for gaps
};

class AcDbTextStyleTableRecord : public AcDbSymbolTableRecord {
public:
    const wchar_t* dxfName() const override { return L"STYLE"; }
    AcDbObject* clone() const override { return new AcDbTextStyleTableRecord(*this); }
    std::wstring m_strFont = L"txt";
    std::wstring m_strBigFont;
    double m_dTextSize = 0.0;
    double m_dWidthFactor = 1.0;
};

// Viewport, view and user coordinate system records are kept for the file only.
class AcDbViewportTableRecord : public AcDbSymbolTableRecord {
public:
    const wchar_t* dxfName() const override { return L"VPORT"; }
    AcDbObject* clone() const override { return new AcDbViewportTableRecord(*this); }
};

QM_SYMBOL_TABLE(AcDbBlockTable, AcDbBlockTableRecord, L"BLOCK_RECORD")
QM_SYMBOL_TABLE(AcDbLayerTable, AcDbLayerTableRecord, L"LAYER")
QM_SYMBOL_TABLE(AcDbRegAppTable, AcDbRegAppTableRecord, L"APPID")
QM_SYMBOL_TABLE(AcDbDimStyleTable, AcDbDimStyleTableRecord, L"DIMSTYLE")
QM_SYMBOL_TABLE(AcDbLinetypeTable, AcDbLinetypeTableRecord, L"LTYPE")
QM_SYMBOL_TABLE(AcDbTextStyleTable, AcDbTextStyleTableRecord, L"STYLE")
QM_SYMBOL_TABLE(AcDbViewportTable, AcDbViewportTableRecord, L"VPORT")
// Tables the database keeps empty but the file format requires.
QM_SYMBOL_TABLE(AcDbViewTable, AcDbSymbolTableRecord, L"VIEW")
QM_SYMBOL_TABLE(AcDbUCSTable, AcDbSymbolTableRecord, L"UCS")

#define ACDB_MODEL_SPACE L"*Model_Space"
#define ACDB_PAPER_SPACE L"*Paper_Space"
