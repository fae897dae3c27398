// What a DXF file holds beyond what the database models: header variables, table record groups and
// classes, kept when read and written back, so that a foreign drawing saves without losing them.
#pragma once

#include "dxf/DxfTags.h"
#include "host/db/AcDb.h"

#include <string_view>
#include <vector>

// Header variables the writer derives from the database itself; every other is kept.
bool IsModelledHeaderVariable(std::string_view strName);

// The groups of a table record of the type (its DXF name) that the reader
// takes into the database; every other is kept (reactor and extension
// dictionary groups are the object's own and never kept).
bool IsModelledRecordGroup(std::string_view type, int nCode);

// Writes the groups that stand at fixed places with the writer's defaults,
// taking each from the kept groups where the file had it, then the rest of the
// kept groups in file order. A kept reference to an object the database no
// longer holds is left out: the file must not point into nothing.
class CKeptWriter {
public:
    CKeptWriter(CDxfTagWriter& w, AcDbDatabase& db, const std::vector<DXF_TAG>& kept)
        : m_w(w), m_db(db), m_kept(kept), m_used(kept.size(), false) {}
    void Str(int nCode, std::string_view strDefault);
    void Int(int nCode, long long nDefault);
    void Real(int nCode, double dDefault);
    void Rest();

private:
    bool TakeKept(int nCode);
    bool IsDeadReference(const DXF_TAG& tag) const;

    CDxfTagWriter& m_w;
    AcDbDatabase& m_db;
    const std::vector<DXF_TAG>& m_kept;
    std::vector<bool> m_used;
};

// The kept header variables: each fixed variable the writer names (with its
// default groups when the file had none), then the rest in file order.
class CKeptHeader {
public:
    CKeptHeader(CDxfTagWriter& w, AcDbDatabase& db) : m_w(w), m_db(db) {}
    // True when the file had the variable: its groups were written.
    bool Write(std::string_view strName);
    void Rest();

private:
    CDxfTagWriter& m_w;
    AcDbDatabase& m_db;
    std::vector<std::wstring> m_written;
};
