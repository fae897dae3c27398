// Saving a database to a file: the preview kept, the version from the user's save format.
#include "library/DatabaseSave.h"

#include "app/DocumentServices.h"
#include "base/FileSystem.h"
#include "host/HostEditor.h"
#include "host/db/AcDb.h"
#include "shared/fileops/FileOps.h"

#include <vector>

namespace {

// The save formats a library file may take; anything else is saved as 48.
bool IsKnownFormat(const std::wstring& strFormat) {
    for (const wchar_t* p : {L"8", L"12", L"24", L"36", L"48"})
        if (strFormat == p)
            return true;
    return false;
}

AcDb::AcDbDwgVersion VersionOfFormat(const std::wstring& strFormat) {
    if (strFormat == L"8")
        return AcDb::kDHL_1014;
    if (strFormat == L"12")
        return AcDb::kDHL_1015;
    if (strFormat == L"24")
        return AcDb::kDHL_1800;
    if (strFormat == L"36")
        return AcDb::kDHL_2100;
    return AcDb::kDHL_CURRENT;
}

} // namespace

int SaveDatabaseToFile(AcDbDatabase* pDb, std::wstring strPath) {
    if (!pDb)
        return Acad::eInvalidInput;
    if (!HasFileExt(strPath))
        strPath += L".dwg";
    if (!IsDocumentOpen(strPath))
        pDb->setRetainOriginalThumbnailBitmap(true);
    std::vector<uint8_t> bitmap;
    if (acdbGetPreviewBitmapFromDwg(strPath.c_str(), bitmap))
        pDb->setThumbnailBitmap(bitmap);

    std::wstring strFormat;
    acedGetEnv(L"DefaultFormatForSave", strFormat);
    const bool bRestore = !IsKnownFormat(strFormat);
    if (bRestore)
        acedSetEnv(L"DefaultFormatForSave", L"48");
    const std::wstring strUsed = bRestore ? L"48" : strFormat;

    FsDeleteFile(strPath);
    const AcDb::AcDbDwgVersion version = VersionOfFormat(strUsed);
    const bool bBackup = version == AcDb::kDHL_2100 || version == AcDb::kDHL_CURRENT;
    const int nStatus = pDb->saveAs(strPath.c_str(), bBackup, version);
    if (bRestore)
        acedSetEnv(L"DefaultFormatForSave", strFormat);
    return nStatus;
}
