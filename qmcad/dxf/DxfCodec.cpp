// Files in and out of the database through the DXF reader and writer.
#include "dxf/DxfCodec.h"

#include "base/FileSystem.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"
#include "host/HostUi.h"

Acad::ErrorStatus CDxfCodec::Read(AcDbDatabase& db, const std::wstring& strPath) {
    std::string data;
    if (!FsReadBinary(strPath, data))
        return Acad::eFileAccessErr;
    DXF_READ_REPORT report;
    Acad::ErrorStatus es = ReadDxf(db, data, &report);
    // The drawing opens; what was let go of is said, not hidden.
    int nDropped = report.nRefusedReferences + report.nMisplaced;
    if (es == Acad::eOk && (nDropped > 0 || report.nOutOfRange > 0))
        acutPrintf(L"\n%s: 忽略了 %d 个循环或无效的引用和记录, %d 个超出范围的值按缺省值读入。\n",
                   strPath, nDropped, report.nOutOfRange);
    return es;
}

Acad::ErrorStatus CDxfCodec::Write(AcDbDatabase& db, const std::wstring& strPath) {
    std::string data;
    WriteDxf(db, data);
    return FsWriteBinary(strPath, data) ? Acad::eOk : Acad::eFileAccessErr;
}

bool CDxfCodec::ReadThumbnail(const std::wstring& strPath, std::vector<uint8_t>& bitmap) {
    std::string data;
    return FsReadBinary(strPath, data) && ReadDxfThumbnail(data, bitmap);
}

CDxfCodec& GetDxfCodec() {
    static CDxfCodec codec;
    return codec;
}
