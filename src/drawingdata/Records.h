// Access to the suite's records: extended data, registered applications, named and extension
// xrecords.
#pragma once

#include "host/db/AcDb.h"
#include "shared/fileops/FileOps.h"

#include <string>

// Extended data. The value's kind follows the group code: text below 1010,
// a point from 1010 to 1039, a real from 1040 to 1059, a 16-bit integer
// widened to 32 bits from 1060 to 1070, 32 bits at 1071. A getter whose
// out-type does not fit the group finds nothing.
bool GetXDataValue(const AcDbObject* pEnt, const std::wstring& strApp, int nGroupCode,
                   std::wstring& out);
bool GetXDataValue(const AcDbObject* pEnt, const std::wstring& strApp, int nGroupCode,
                   AcGePoint3d& out);
bool GetXDataValue(const AcDbObject* pEnt, const std::wstring& strApp, int nGroupCode, double& out);
bool GetXDataValue(const AcDbObject* pEnt, const std::wstring& strApp, int nGroupCode, int& out);
bool HasXData(const AcDbObject* pEnt, const std::wstring& strApp);

// One value of any kind, for the setters.
struct XDATA_VALUE {
    std::wstring strText;
    AcGePoint3d pt;
    double dReal = 0.0;
    int nInt = 0;
    XDATA_VALUE() = default;
    XDATA_VALUE(const std::wstring& s) : strText(s) {}
    XDATA_VALUE(const wchar_t* s) : strText(s) {}
    XDATA_VALUE(const AcGePoint3d& p) : pt(p) {}
    XDATA_VALUE(double d) : dReal(d) {}
    XDATA_VALUE(int n) : nInt(n) {}
};

// Registers the application, then replaces its data on the entity with the
// one value. The entity is open (for read or write) and stays open for write.
bool SetXDataValue(AcDbDatabase* pDb, AcDbObject* pEnt, const std::wstring& strApp, int nGroupCode,
                   const XDATA_VALUE& value);
// As SetXDataValue, but an application already on the entity keeps its
// values and gets the new one at the end.
bool AppendXDataValue(AcDbDatabase* pDb, AcDbObject* pEnt, const std::wstring& strApp,
                      int nGroupCode, const XDATA_VALUE& value);

// Adds the application to the table unless it is there (names compared
// exactly). 1 when it exists afterwards.
int EnsureRegApp(AcDbDatabase* pDb, const std::wstring& strApp);
// The same for the working drawing through the editor's functions; a
// failure prints "\n无法注册应用程序 %s".
int EnsureRegApp(const std::wstring& strApp);

// Named records: dictionary strDict in the named object dictionary, xrecord strKey.
// The caller frees pChain.
int ReadNamedXrecord(AcDbDatabase* pDb, const std::wstring& strDict, const std::wstring& strKey,
                     resbuf*& pChain);
// Creates the dictionary and the xrecord when missing; the caller keeps pChain.
int WriteNamedXrecord(AcDbDatabase* pDb, const std::wstring& strDict, const std::wstring& strKey,
                      const resbuf* pChain);
// Erases the record; 1 when it existed.
int RemoveNamedXrecord(AcDbDatabase* pDb, const std::wstring& strDict, const std::wstring& strKey);

// Extension records of an open entity. Entry names are trimmed of blanks and
// compared without regard to case. The caller frees pChain.
int ReadExtXrecord(const AcDbObject* pEnt, const std::wstring& strKey, resbuf*& pChain);
// Upgrades the entity to write, makes its extension dictionary when there is
// none, and sets or replaces the record.
int WriteExtXrecord(AcDbObject* pEnt, const std::wstring& strKey, const resbuf* pChain);

// The text of every group-1 node, appended in order.
void StringsFromChain(const resbuf* pChain, CStringArray& out);
// A chain of group-1 nodes; null for an empty list. The caller frees it.
resbuf* ChainFromStrings(const CStringArray& strings);
