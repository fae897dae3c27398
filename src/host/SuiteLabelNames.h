// The suite's closed library of device and terminal-strip names, as the module imports it.
#pragma once

#include <string>
#include <vector>

// One row of a name table. flag 1: the name may open a label; 0: it counts
// only with at least one character before it; any other value: never.
struct STRUCT_ZHUANGZHI_DZ_NAME {
    std::wstring name;
    int flag = 1;
};
using CZhuangZhiDzNameArray = std::vector<STRUCT_ZHUANGZHI_DZ_NAME>;

class ISuiteLabelNames {
public:
    virtual ~ISuiteLabelNames() = default;
    // Fills the device table (protection devices and units) and the
    // terminal table (terminal strips); false when they cannot be had.
    virtual bool CreatZhuangZhiAndDzNameArray(CZhuangZhiDzNameArray& devices,
                                              CZhuangZhiDzNameArray& terminals) = 0;
    // Changes whenever the next fill would answer differently, so that a
    // caller may keep the tables between calls. Cheap: no file is read.
    virtual std::wstring NameTablesStamp() = 0;
};

// The suite's function by its own name. Without a host both tables are
// empty and the answer is false.
bool TzDll_CreatZhuangZhiAndDzNameArray(CZhuangZhiDzNameArray& devices,
                                        CZhuangZhiDzNameArray& terminals);
// The host's stamp of the tables; empty without a host.
std::wstring TzDll_GetZhuangZhiAndDzNameStamp();
