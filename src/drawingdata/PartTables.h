// The part table of a drawing (which product stands behind each device label), the branch table
// (where each device appears), the bill-of-materials row format, and their read, look-up and
// write.
#pragma once

#include "drawingdata/OwningArray.h"
#include "drawingdata/SymbolTerminals.h"
#include "host/db/AcDb.h"
#include "shared/fileops/FileOps.h"

#include <cstdint>
#include <string>

// One row of a component list.
class COneComponent {
public:
    virtual ~COneComponent() = default;
    std::wstring name, type, code, count;
};

// One part.
class COnePartBom {
public:
    virtual ~COnePartBom() = default;
    std::wstring describe;
    std::wstring price; // empty from a part table
    std::wstring name;
    std::wstring type;
    std::wstring code;
    std::wstring labelDis;
    std::wstring note;
    std::wstring serialNo;
    std::wstring path; // the file the record was read from
    int saved = 0;     // 1 when that drawing has a file name
    std::wstring drawingLocation;
    int64_t flags = 0;
    std::wstring rowHandle;
    std::wstring reserved;
    std::wstring label;
    std::wstring count;
    std::wstring deviceType;
    COwningArray<COneComponent> components;
    std::wstring extra;
};

// One (location, label) group of the part table or one row of a bill of materials.
class CPartBomDataBase {
public:
    virtual ~CPartBomDataBase() = default;
    std::wstring location;
    std::wstring label;
    std::wstring mergedLabels;
    std::wstring describe;
    COwningArray<COnePartBom> parts;
    std::wstring serialNo, boardNo, boardName, boardSide, rowSplit, wiringPathNo, wiringStamp,
        wiringStampAngle, layoutScale, reserved;
    std::wstring orderNo; // takes serialNo when the row has none
    std::wstring className, labelDistance, cabinetDrawing, airSwitchDrawing;
};
using CPartBomArray = COwningArray<CPartBomDataBase>;

// One appearance of a device as one label on one symbol.
class COnePartBranch {
public:
    virtual ~COnePartBranch() = default;
    std::wstring symbolName;
    std::wstring symbolKind;
    double rotation = 0; // degrees
    std::wstring handle;
    std::wstring path;
    int saved = 0;
    std::wstring drawingLocation;
    CSymbTermInfoArray terminals;
    int isMain = 0;
    AcGePoint3d center;
    std::wstring reserved, reserved2;
    std::wstring fullLabel;
    std::wstring terminal;
    std::wstring separator;
    std::wstring special; // TZ_SYMB2_SPECIAL, or "内部元件" by analysis
    std::wstring orderNo;
};

// One (location, device) group of a drawing's symbols.
class CPartBranchDataBase {
public:
    virtual ~CPartBranchDataBase() = default;
    std::wstring location;
    std::wstring label;
    COwningArray<COnePartBranch> branches;
    std::wstring extra;
};
using CPartBranchArray = COwningArray<CPartBranchDataBase>;

class CLocationAndLabel {
public:
    virtual ~CLocationAndLabel() = default;
    std::wstring location, label;
};

// One row of a per-panel list: location, label, an unused text, then the
// TZBOM_LABEL values from "板号:" to "元件标注距离:".
class CPartBanDataBase {
public:
    virtual ~CPartBanDataBase() = default;
    std::wstring location, label, unused, boardNo, boardName, boardSide, rowSplit, wiringPathNo,
        wiringStamp, wiringStampAngle, describe, orderNo, labelDistance;
};

// The prefixes of a TZBOM_LABEL row, in the order they are tested; a row starts at the first.
inline constexpr const wchar_t* g_szBomLabelPrefixes[] = {L"标号:",         L"序号:",
                                                          L"板号:",         L"板名:",
                                                          L"板前板后:",     L"分行:",
                                                          L"接线路径号:",   L"合并过的标号数组:",
                                                          L"接线图章组件:", L"接线图章旋转角度:",
                                                          L"布置比例:",     L"元件描述:",
                                                          L"元件顺序号:",   L"元件标注距离:",
                                                          L"元件类名:",     L"屏柜图组件:",
                                                          L"空开图组件:"};
// The prefixes of a TZBOM_COMPONENT row.
inline constexpr const wchar_t* g_szBomComponentPrefixes[] = {L"标号:", L"名称:", L"编码:",
                                                              L"型号:", L"数量:"};

// The readers of a drawing's part table and symbols.
class CGetPartInfo {
public:
    virtual ~CGetPartInfo() = default;
    // Appends the groups of TZ_DICITIONARY_PART2DATABASE; 0 only when the
    // database or its named object dictionary is missing.
    int ReadPartTable(AcDbDatabase* pDb, const std::wstring& path, int saved,
                      const std::wstring& drawingLocation, CPartBomArray& outGroups);
    // Appends the drawing's symbols grouped by location and device, with the
    // database made the working one while it runs.
    int CollectPartBranches(AcDbDatabase* pDb, const std::wstring& path, int saved,
                            const std::wstring& drawingLocation, CPartBranchArray& outBranches);
};

// The group's part of this file first, else the first part with any data.
void FindPartData(const std::wstring& location, const std::wstring& label, const std::wstring& path,
                  int saved, const CPartBomArray& groups, std::wstring& outType,
                  std::wstring& outCode, std::wstring& outName, std::wstring& outNote,
                  std::wstring& outDescribe);
// Names of the records with this location (empty: the drawing's) and label.
int FindPartRecordNames(AcDbDatabase* pDb, const std::wstring& drawingLocation,
                        const std::wstring& location, const std::wstring& label,
                        CStringArray& outNames);
// Writes the sixteen-string record, merging records of the same key under the first name.
int WritePartRecord(AcDbDatabase* pDb, const std::wstring& drawingLocation,
                    const std::wstring& location, const std::wstring& label,
                    const COnePartBom& part);
void NewPartRecordName(AcDbDatabase* pDb, std::wstring& outName);
