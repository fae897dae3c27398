// The reference host's drawing files: AutoCAD 2000 ASCII DXF whatever the file is named.
#pragma once

#include "host/db/DbDatabase.h"

class CDxfCodec : public IAcDbFileCodec {
public:
    Acad::ErrorStatus Read(AcDbDatabase& db, const std::wstring& strPath) override;
    Acad::ErrorStatus Write(AcDbDatabase& db, const std::wstring& strPath) override;
    bool ReadThumbnail(const std::wstring& strPath, std::vector<uint8_t>& bitmap) override;
};

// The codec the host registers at start.
CDxfCodec& GetDxfCodec();
