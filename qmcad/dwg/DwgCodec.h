// The host's file codec: DXF files as they are, binary DWG files converted to DXF first.
#pragma once

#include "dwg/DwgCache.h"
#include "dwg/DwgWorker.h"
#include "dxf/DxfCodec.h"
#include "dxf/DxfReader.h"

class CDwgCodec : public IAcDbFileCodec {
public:
    CDwgCodec(CDwgWorker::OPTIONS opt, std::string strCacheDir);

    Acad::ErrorStatus Read(AcDbDatabase& db, const std::wstring& strPath) override;
    // Over a binary DWG the original bytes are kept beside it first (NAME.dwg.orig).
    Acad::ErrorStatus Write(AcDbDatabase& db, const std::wstring& strPath) override;
    bool ReadThumbnail(const std::wstring& strPath, std::vector<uint8_t>& bitmap) override;

    // Runs of the converter (cache misses that reached it).
    int Conversions() const { return m_nConversions; }
    const DXF_READ_REPORT& LastReport() const { return m_report; }
    CDwgWorker& Worker() { return m_worker; }
    CDwgCache& Cache() { return m_cache; }

private:
    bool Convert(const std::wstring& strPath, const std::string& dwg, std::string& dxf);
    void Complain(const std::wstring& name, CDwgWorker::RESULT r,
                  const std::string& strError) const;
    bool KeepOriginal(const std::wstring& strPath, const std::string& original);

    CDxfCodec m_dxf;
    CDwgWorker m_worker;
    CDwgCache m_cache;
    DXF_READ_REPORT m_report;
    int m_nConversions = 0;
};

// The codec qmcad registers: the worker and cache from the environment.
CDwgCodec& GetDwgCodec();
