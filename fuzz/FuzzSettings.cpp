// The install's small settings files: awork.sys, the history file and the Data tables.
#include "FuzzSupport.h"

#include "settings/DataTables.h"
#include "settings/HistoryDataOprt.h"
#include "settings/ReadAworkSys.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static bool s_bHost = (FuzzInstallHost(), true);
    (void)s_bHost;
    for (const wchar_t* pszName :
         {L"LocalData\\awork.sys", L"LocalData\\HistoryData.txt", L"Data\\DistLimit.txt",
          L"Data\\ErpOrCad.txt", L"Data\\DZBDZLXFH.txt", L"Data\\DZBDXLXFH.txt",
          L"Data\\DZBHUILUFH.txt"})
        FuzzFile(pszName, data, size);
    CReadAworkSys awork;
    awork.ReadSettings();
    awork.GetDefaultTextStyle();
    awork.GetLabelTextHeight();
    {
        CHistoryDataOprt history;
        std::wstring strValue;
        history.GetText(3, strValue);
    }
    ResetDataTableCaches();
    GetDistLimit();
    GetErpMode();
    CStringArray a, b, c, d;
    ReadTerminalTypes(a, b, c, d);
    ReadWireTypes(a, b);
    ReadCircuitTypes(a, b);
    return 0;
}
