// Files in and out of the database through the DXF reader and writer.
#include "dxf/DxfCodec.h"

#include "base/FileSystem.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"

Acad::ErrorStatus CDxfCodec::Read(AcDbDatabase& db, const std::wstring& strPath) {
    std::string data;
    if (!FsReadBinary(strPath, data))
        return Acad::eFileAccessErr;
    return ReadDxf(db, data);
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
