// Reading, looking up and writing the part records of TZ_DICITIONARY_PART2DATABASE.
#include "drawingdata/PartTables.h"

#include "base/StrUtil.h"
#include "drawingdata/DrawingRecords.h"
#include "drawingdata/RecordKeys.h"
#include "drawingdata/Records.h"

namespace {

// Visits each xrecord of the part dictionary with its name; false when the
// named object dictionary doesn't open.
template <class F> bool ForEachPartRecord(AcDbDatabase* pDb, F&& visit) {
    AcDbDictionary* pNod = nullptr;
    if (!pDb || pDb->getNamedObjectsDictionary(pNod, AcDb::kForRead) != Acad::eOk)
        return false;
    AcDbDictionary* pDict = nullptr;
    Acad::ErrorStatus es = pNod->getAt(TZ_DICITIONARY_PART2DATABASE, pDict, AcDb::kForRead);
    pNod->close();
    if (es != Acad::eOk)
        return true;
    AcDbDictionaryIterator* pIter = pDict->newIterator();
    for (; !pIter->done(); pIter->next()) {
        AcDbXrecord* pRec = nullptr;
        if (pIter->getObject(pRec, AcDb::kForRead) != Acad::eOk)
            continue;
        visit(pIter->name(), pRec->chain());
        pRec->close();
    }
    delete pIter;
    pDict->close();
    return true;
}

CPartBomDataBase* FindGroup(const CPartBomArray& groups, const std::wstring& location,
                            const std::wstring& label) {
    for (CPartBomDataBase* p : groups)
        if (p && p->location == location && p->label == label)
            return p;
    return nullptr;
}

bool HasAnyData(const COnePartBom& p) {
    return !p.type.empty() || !p.code.empty() || !p.name.empty() || !p.note.empty() ||
           !p.describe.empty();
}

} // namespace

int CGetPartInfo::ReadPartTable(AcDbDatabase* pDb, const std::wstring& path, int saved,
                                const std::wstring& drawingLocation, CPartBomArray& outGroups) {
    CStringArray all;
    bool bOk = ForEachPartRecord(pDb, [&](const std::wstring&, const resbuf* pChain) {
        for (const resbuf* p = pChain; p; p = p->rbnext)
            if (acdbGroupCodeToType(p->restype) == RTSTR)
                all.push_back(p->resval.rstring);
    });
    if (!bOk)
        return 0;
    // Location, label, type and code carry over from one record to the next:
    // old records without them inherit the values before.
    std::wstring location = drawingLocation, label, type, code;
    COnePartBom current;
    for (size_t i = 0; i + 1 < all.size(); i += 2) {
        const std::wstring &key = all[i], &value = all[i + 1];
        if (EqualsNoCase(key, PART_LOCATION))
            location = value.empty() ? drawingLocation : value;
        else if (EqualsNoCase(key, PART_LABEL))
            label = value;
        else if (EqualsNoCase(key, PART_DESCRIBE))
            current.describe = value;
        else if (EqualsNoCase(key, PART_TYPE))
            type = value;
        else if (EqualsNoCase(key, PART_CODE))
            code = value;
        else if (EqualsNoCase(key, PART_NOTE))
            current.note = value;
        else if (EqualsNoCase(key, PART_LABELDIS))
            current.labelDis = value;
        if (!EqualsNoCase(key, PART_NAME))
            continue;
        if (!label.empty()) {
            CPartBomDataBase* pGroup = FindGroup(outGroups, location, label);
            if (!pGroup) {
                pGroup = outGroups.Add(new CPartBomDataBase);
                pGroup->location = location;
                pGroup->label = label;
            }
            auto* pPart = pGroup->parts.Add(new COnePartBom);
            pPart->describe = current.describe;
            pPart->name = value;
            pPart->type = type;
            pPart->code = code;
            pPart->note = current.note;
            pPart->labelDis = current.labelDis;
            pPart->path = path;
            pPart->saved = saved;
            pPart->drawingLocation = drawingLocation;
        }
        current.describe.clear();
        current.note.clear();
        current.labelDis.clear();
    }
    return 1;
}

void FindPartData(const std::wstring& location, const std::wstring& label, const std::wstring& path,
                  int saved, const CPartBomArray& groups, std::wstring& outType,
                  std::wstring& outCode, std::wstring& outName, std::wstring& outNote,
                  std::wstring& outDescribe) {
    if (label.empty())
        return;
    outType.clear();
    outCode.clear();
    outName.clear();
    outNote.clear();
    outDescribe.clear();
    CPartBomDataBase* pGroup = FindGroup(groups, location, label);
    if (!pGroup)
        return;
    auto take = [&](const COnePartBom& p) {
        outType = p.type;
        outCode = p.code;
        outName = p.name;
        outNote = p.note;
        outDescribe = p.describe;
    };
    for (COnePartBom* p : pGroup->parts) {
        if (!p || !EqualsNoCase(p->path, path) || p->saved != saved)
            continue;
        if (HasAnyData(*p)) {
            take(*p);
            return;
        }
        break; // an empty exact part sends the search to the fallback
    }
    for (COnePartBom* p : pGroup->parts)
        if (p && HasAnyData(*p)) {
            take(*p);
            return;
        }
}

int FindPartRecordNames(AcDbDatabase* pDb, const std::wstring& drawingLocation,
                        const std::wstring& location, const std::wstring& label,
                        CStringArray& outNames) {
    if (label.empty())
        return 0;
    std::wstring sought = location.empty() ? drawingLocation : location;
    size_t nBefore = outNames.size();
    ForEachPartRecord(pDb, [&](const std::wstring& name, const resbuf* pChain) {
        std::wstring storedLocation, storedLabel;
        for (const resbuf* p = pChain; p; p = p->rbnext) {
            if (p->restype != 1)
                continue;
            std::wstring* pTarget = EqualsNoCase(p->resval.rstring, PART_LOCATION) ? &storedLocation
                                    : EqualsNoCase(p->resval.rstring, PART_LABEL)  ? &storedLabel
                                                                                   : nullptr;
            if (pTarget && p->rbnext && p->rbnext->restype == 1) {
                *pTarget = p->rbnext->resval.rstring;
                p = p->rbnext; // a value is never taken as a key
            }
        }
        if (storedLocation.empty())
            storedLocation = drawingLocation;
        if (storedLocation == sought && storedLabel == label)
            outNames.push_back(name);
    });
    return outNames.size() > nBefore ? 1 : 0;
}

int WritePartRecord(AcDbDatabase* pDb, const std::wstring& drawingLocation,
                    const std::wstring& location, const std::wstring& label,
                    const COnePartBom& part) {
    if (label.empty())
        return 0;
    std::wstring stored = location == drawingLocation ? std::wstring() : location;
    resbuf* pChain =
        ChainFromStrings({PART_LOCATION, stored, PART_LABEL, label, PART_DESCRIBE, part.describe,
                          PART_TYPE, part.type, PART_CODE, part.code, PART_NOTE, part.note,
                          PART_LABELDIS, part.labelDis, PART_NAME, part.name});
    CStringArray names;
    std::wstring target;
    if (FindPartRecordNames(pDb, drawingLocation, location, label, names)) {
        for (const std::wstring& name : names)
            RemoveNamedXrecord(pDb, TZ_DICITIONARY_PART2DATABASE, name);
        target = names.front();
    } else {
        NewPartRecordName(pDb, target);
    }
    int nOk = WriteNamedXrecord(pDb, TZ_DICITIONARY_PART2DATABASE, target, pChain);
    acutRelRb(pChain);
    return nOk;
}

void NewPartRecordName(AcDbDatabase* pDb, std::wstring& outName) {
    outName = TZ_XRECORD_ONEPART2_ + std::to_wstring(NextPartRecordNumber(pDb));
}
