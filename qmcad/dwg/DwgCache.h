// Converted drawings on disk, keyed by the DWG's content, so that each file converts once.
#pragma once

#include <string>
#include <string_view>

class CDwgCache {
public:
    // strDir is an OS path; it is made when first written.
    explicit CDwgCache(std::string strDir) : m_strDir(std::move(strDir)) {}
    const std::string& Dir() const { return m_strDir; }

    // The key of a DWG file's bytes (SHA-256, with the converter's generation).
    static std::string Key(std::string_view dwg);
    // The converted DXF of the key; false when it is not cached.
    bool Lookup(const std::string& strKey, std::string& dxf) const;
    // Where the converter writes before Commit; empty when the directory cannot be made.
    std::string TempPath(const std::string& strKey) const;
    // Moves a finished conversion into place (atomically: readers never see half a file).
    bool Commit(const std::string& strTemp, const std::string& strKey) const;
    void Forget(const std::string& strKey) const;
    // The file of a key's conversion (there or not).
    std::string PathOf(const std::string& strKey) const;

private:
    std::string m_strDir;
};

// $XDG_CACHE_HOME/qmcad/dwg, else ~/.cache/qmcad/dwg.
std::string DefaultDwgCacheDir();
