// Converted drawings under the user's cache directory, one DXF file per DWG content.
#include "dwg/DwgCache.h"

#include "base/Environment.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace {

// Raised when the converter's output changes, so that old conversions are not reused.
const char* const kGeneration = "libredwg-web-0.7.14";

} // namespace

std::string CDwgCache::Key(std::string_view dwg) {
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(QByteArrayView(kGeneration));
    hash.addData(QByteArrayView(dwg.data(), static_cast<qsizetype>(dwg.size())));
    return hash.result().toHex().toStdString();
}

std::string CDwgCache::PathOf(const std::string& strKey) const {
    return m_strDir + "/" + strKey + ".dxf";
}

bool CDwgCache::Lookup(const std::string& strKey, std::string& dxf) const {
    QFile f(QString::fromStdString(PathOf(strKey)));
    if (!f.open(QIODevice::ReadOnly))
        return false;
    QByteArray bytes = f.readAll();
    dxf.assign(bytes.constData(), bytes.size());
    return !dxf.empty();
}

std::string CDwgCache::TempPath(const std::string& strKey) const {
    if (!QDir().mkpath(QString::fromStdString(m_strDir)))
        return {};
    static std::atomic<int> s_nNext{0};
    return PathOf(strKey) + ".tmp-" + std::to_string(::getpid()) + "-" + std::to_string(++s_nNext);
}

bool CDwgCache::Commit(const std::string& strTemp, const std::string& strKey) const {
    if (std::rename(strTemp.c_str(), PathOf(strKey).c_str()) == 0)
        return true;
    std::remove(strTemp.c_str());
    return false;
}

void CDwgCache::Forget(const std::string& strKey) const {
    std::remove(PathOf(strKey).c_str());
}

std::string DefaultDwgCacheDir() {
    std::string strCache = EnvText("XDG_CACHE_HOME");
    if (!strCache.empty() && strCache[0] == '/')
        return strCache + "/qmcad/dwg";
    std::string strHome = EnvText("HOME");
    return (strHome.empty() ? std::string("/tmp") : strHome) + "/.cache/qmcad/dwg";
}
