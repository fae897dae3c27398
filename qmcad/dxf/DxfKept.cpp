// Kept groups of foreign drawings: which are modelled, and writing the others back in their place.
#include "dxf/DxfKept.h"

#include "base/StrUtil.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

bool IsReferenceCode(int nCode) {
    return (nCode >= 320 && nCode <= 369) || (nCode >= 390 && nCode <= 399) || nCode == 480 ||
           nCode == 481;
}

} // namespace

bool IsModelledHeaderVariable(std::string_view strName) {
    static constexpr std::array<std::string_view, 11> kModelled = {
        "$ACADVER", "$ACADMAINTVER", "$DWGCODEPAGE", "$INSBASE", "$EXTMIN",  "$EXTMAX",
        "$CLAYER",  "$TEXTSTYLE",    "$DIMSTYLE",    "$DIMLFAC", "$HANDSEED"};
    return std::find(kModelled.begin(), kModelled.end(), strName) != kModelled.end();
}

bool IsModelledRecordGroup(std::string_view type, int nCode) {
    switch (nCode) {
    case 5:
    case 105:
    case 330:
    case 100:
    case 2:
        return true;
    default:
        break;
    }
    if (type == "BLOCK_RECORD")
        return nCode == 340;
    if (nCode == 70)
        return true;
    if (type == "LAYER")
        return nCode == 62 || nCode == 6 || nCode == 290 || nCode == 370;
    if (type == "LTYPE") // the dash pattern is modelled whole, or not at all
        return true;
    if (type == "STYLE")
        return nCode == 40 || nCode == 41 || nCode == 3 || nCode == 4;
    if (type == "DIMSTYLE")
        return nCode == 40 || nCode == 41 || nCode == 140 || nCode == 144;
    return false;
}

bool CKeptWriter::TakeKept(int nCode) {
    for (size_t i = 0; i < m_kept.size(); ++i) {
        if (m_used[i] || m_kept[i].nCode != nCode)
            continue;
        m_used[i] = true;
        m_w.Text(nCode, m_kept[i].strValue);
        return true;
    }
    return false;
}

void CKeptWriter::Str(int nCode, std::string_view strDefault) {
    if (!TakeKept(nCode))
        m_w.Str(nCode, strDefault);
}

void CKeptWriter::Int(int nCode, long long nDefault) {
    if (!TakeKept(nCode))
        m_w.Int(nCode, nDefault);
}

void CKeptWriter::Real(int nCode, double dDefault) {
    if (!TakeKept(nCode))
        m_w.Real(nCode, dDefault);
}

bool CKeptWriter::IsDeadReference(const DXF_TAG& tag) const {
    if (!IsReferenceCode(tag.nCode))
        return false;
    uint64_t h = DxfHandle(WideToUtf8(tag.strValue));
    AcDbObjectId id;
    if (!h || m_db.getAcDbObjectId(id, false, AcDbHandle(h)) != Acad::eOk)
        return true;
    return !id.isValid() || id.isErased();
}

void CKeptWriter::Rest() {
    for (size_t i = 0; i < m_kept.size(); ++i)
        if (!m_used[i] && !IsDeadReference(m_kept[i]))
            m_w.Text(m_kept[i].nCode, m_kept[i].strValue);
}

bool CKeptHeader::Write(std::string_view strName) {
    std::wstring name = Utf8ToWide(strName);
    const std::vector<DXF_TAG>& kept = m_db.m_keptHeader;
    for (size_t i = 0; i < kept.size(); ++i) {
        if (kept[i].nCode != 9 || kept[i].strValue != name)
            continue;
        m_w.Str(9, strName);
        for (size_t j = i + 1; j < kept.size() && kept[j].nCode != 9; ++j)
            m_w.Text(kept[j].nCode, kept[j].strValue);
        m_written.push_back(name);
        return true;
    }
    return false;
}

void CKeptHeader::Rest() {
    const std::vector<DXF_TAG>& kept = m_db.m_keptHeader;
    bool bSkip = false;
    for (const DXF_TAG& tag : kept) {
        if (tag.nCode == 9) {
            bSkip = std::find(m_written.begin(), m_written.end(), tag.strValue) != m_written.end();
            if (bSkip)
                continue;
        }
        if (bSkip)
            continue;
        m_w.Text(tag.nCode, tag.strValue);
    }
}
