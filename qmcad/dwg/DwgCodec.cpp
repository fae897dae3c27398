// Binary DWG files through the converter process and its cache into the DXF reader.
#include "dwg/DwgCodec.h"

#include "base/FileSystem.h"
#include "base/Format.h"
#include "base/StrUtil.h"
#include "base/SysPath.h"
#include "host/HostUi.h"

namespace {

std::wstring FileName(const std::wstring& strPath) {
    size_t n = strPath.find_last_of(L"\\/");
    return n == std::wstring::npos ? strPath : strPath.substr(n + 1);
}

std::wstring TypeCounts(const DXF_READ_REPORT& report) {
    std::wstring s;
    for (const auto& [type, count] : report.unknownEntities)
        s += Format(L"%s%s %d", s.empty() ? L"" : L", ", Utf8ToWide(type), count);
    return s;
}

} // namespace

CDwgCodec::CDwgCodec(CDwgWorker::OPTIONS opt, std::string strCacheDir)
    : m_worker(std::move(opt)), m_cache(std::move(strCacheDir)) {}

// One line on why a file was not converted.
void CDwgCodec::Complain(const std::wstring& name, CDwgWorker::RESULT r,
                         const std::string& strError) const {
    switch (r) {
    case CDwgWorker::RESULT::Ok:
        break;
    case CDwgWorker::RESULT::NoRuntime:
        acutPrintf(L"无法读取 DWG 文件<%s>：找不到 Node.js（%s），请安装 Debian 软件包 nodejs。\n",
                   name, Utf8ToWide(m_worker.Options().strNode));
        break;
    case CDwgWorker::RESULT::NoPackage:
        acutPrintf(L"无法读取 DWG 文件<%s>：DWG 转换器 @mlightcad/libredwg-web 未安装，"
                   L"请在 qmcad/dwg/worker 中运行 npm ci（./qm 会安装它）。\n",
                   name);
        break;
    case CDwgWorker::RESULT::TimedOut:
        acutPrintf(L"DWG 文件<%s>转换超时（%s），转换进程已终止。\n", name, Utf8ToWide(strError));
        break;
    case CDwgWorker::RESULT::Failed:
        acutPrintf(L"DWG 文件<%s>无法转换：%s\n", name, Utf8ToWide(strError));
        break;
    }
}

bool CDwgCodec::Convert(const std::wstring& strPath, const std::string& dwg, std::string& dxf) {
    std::string key = CDwgCache::Key(dwg);
    if (m_cache.Lookup(key, dxf))
        return true;
    std::wstring name = FileName(strPath);
    std::string temp = m_cache.TempPath(key);
    if (temp.empty()) {
        acutPrintf(L"DWG 文件<%s>无法转换：缓存目录 %s 无法创建。\n", name,
                   Utf8ToWide(m_cache.Dir()));
        return false;
    }
    CWaitCursor wait;
    std::string strError;
    CDwgWorker::RESULT r = m_worker.IsRunning() ? CDwgWorker::RESULT::Ok : m_worker.Start(strError);
    if (r == CDwgWorker::RESULT::Ok) {
        acutPrintf(L"正在将 DWG 文件<%s>转换为 DXF，请稍候...\n", name);
        ++m_nConversions;
        r = m_worker.Convert(ToOsPath(strPath), temp, strError);
    }
    if (r != CDwgWorker::RESULT::Ok) {
        Complain(name, r, strError);
        std::remove(temp.c_str());
        return false;
    }
    if (!m_cache.Commit(temp, key)) {
        acutPrintf(L"DWG 文件<%s>的转换结果无法存入缓存 %s。\n", name, Utf8ToWide(m_cache.Dir()));
        return false;
    }
    return m_cache.Lookup(key, dxf);
}

Acad::ErrorStatus CDwgCodec::Read(AcDbDatabase& db, const std::wstring& strPath) {
    std::string data;
    if (!FsReadBinary(strPath, data))
        return Acad::eFileAccessErr;
    m_report = DXF_READ_REPORT();
    if (!IsBinaryDwg(data))
        return ReadDxf(db, data, &m_report);
    std::string dxf;
    if (!Convert(strPath, data, dxf))
        return Acad::eBinaryDwgNotSupported;
    Acad::ErrorStatus es = ReadDxf(db, dxf, &m_report);
    std::wstring name = FileName(strPath);
    if (es != Acad::eOk) {
        m_cache.Forget(CDwgCache::Key(data)); // converted afresh next time
        acutPrintf(L"DWG 文件<%s>转换后的 DXF 无法读取。\n", name);
        return es;
    }
    if (int n = m_report.UnknownEntityCount())
        acutPrintf(L"DWG 文件<%s>中有 %d 个本程序不绘制的图元，已原样保留（%s）。\n", name, n,
                   TypeCounts(m_report));
    return Acad::eOk;
}

// The first free of NAME.orig, NAME.orig.2, ...; an existing copy is never replaced.
bool CDwgCodec::KeepOriginal(const std::wstring& strPath, const std::string& original) {
    std::wstring keep;
    for (int i = 1; i < 1000 && keep.empty(); ++i) {
        std::wstring candidate = strPath + L".orig" + (i == 1 ? L"" : Format(L".%d", i));
        std::string existing;
        if (!FsExists(candidate))
            keep = candidate;
        else if (FsReadBinary(candidate, existing) && existing == original)
            return true; // kept already
    }
    std::wstring temp = keep + L".tmp";
    if (keep.empty() || !FsWriteBinary(temp, original) || !FsMoveFile(temp, keep)) {
        FsDeleteFile(temp);
        acutPrintf(L"原 DWG 文件<%s>无法另存，图形未保存。\n", FileName(strPath));
        return false;
    }
    acutPrintf(L"原 DWG 文件已保存为<%s>。\n", Utf8ToWide(ToOsPath(keep)));
    return true;
}

Acad::ErrorStatus CDwgCodec::Write(AcDbDatabase& db, const std::wstring& strPath) {
    std::string old;
    if (FsExists(strPath) && FsReadBinary(strPath, old) && IsBinaryDwg(old) &&
        !KeepOriginal(strPath, old))
        return Acad::eFileAccessErr;
    return m_dxf.Write(db, strPath);
}

bool CDwgCodec::ReadThumbnail(const std::wstring& strPath, std::vector<uint8_t>& bitmap) {
    return m_dxf.ReadThumbnail(strPath, bitmap);
}

CDwgCodec& GetDwgCodec() {
    static CDwgCodec codec(DwgWorkerOptionsFromEnv(), DefaultDwgCacheDir());
    return codec;
}
