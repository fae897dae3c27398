// dlopen-based loading of the module.
#include "PluginLoader.h"

#include <dlfcn.h>

namespace {
constexpr int kInitAppMsg = 1;
constexpr int kUnloadAppMsg = 2;
} // namespace

bool CPluginLoader::Load(const std::string& osPath, const HOST_SERVICES& services) {
    Unload();
    // A module's windows may outlive its unload (the layout browser stays open
    // on purpose) and belong to the frame until it goes: its code stays mapped.
    // Global, so that sibling modules find each other's exports by name.
    m_pHandle = ::dlopen(osPath.c_str(), RTLD_NOW | RTLD_GLOBAL | RTLD_NODELETE);
    if (!m_pHandle) {
        const char* err = ::dlerror();
        m_strError = err ? err : "cannot open " + osPath;
        return false;
    }
    m_pEntry = reinterpret_cast<EntryPoint>(::dlsym(m_pHandle, "acrxEntryPoint"));
    if (!m_pEntry || !::dlsym(m_pHandle, "acrxGetApiVersion")) {
        m_strError = osPath + (m_pEntry ? " has no acrxGetApiVersion" : " has no acrxEntryPoint");
        ::dlclose(m_pHandle);
        m_pHandle = nullptr;
        return false;
    }
    m_services = services;
    if (m_pEntry(kInitAppMsg, &m_services) != 0) {
        m_strError = osPath + " refused to load";
        ::dlclose(m_pHandle);
        m_pHandle = nullptr;
        return false;
    }
    return true;
}

void CPluginLoader::Unload() {
    if (!m_pHandle)
        return;
    m_pEntry(kUnloadAppMsg, &m_services);
    ::dlclose(m_pHandle);
    m_pHandle = nullptr;
    m_pEntry = nullptr;
}
