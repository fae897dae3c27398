// Loads the module as the CAD editor loads an application: dlopen, then its entry point.
#pragma once

#include "host/HostServices.h"

#include <string>

class CPluginLoader {
public:
    CPluginLoader() = default;
    ~CPluginLoader() { Unload(); }
    CPluginLoader(const CPluginLoader&) = delete;
    CPluginLoader& operator=(const CPluginLoader&) = delete;

    // Opens the library, finds acrxEntryPoint and sends the init message with
    // the service table as its packet. False with the reason in LastError().
    bool Load(const std::string& osPath, const HOST_SERVICES& services);
    // Sends the unload message and closes the library.
    void Unload();
    const std::string& LastError() const { return m_strError; }
    bool IsLoaded() const { return m_pHandle != nullptr; }

private:
    using EntryPoint = int (*)(int, void*);
    void* m_pHandle = nullptr;
    EntryPoint m_pEntry = nullptr;
    HOST_SERVICES m_services;
    std::string m_strError;
};
