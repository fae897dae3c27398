// The reference host's system variables: a typed store with read-only entries and environment
// values.
#pragma once

#include "host/HostEditor.h"

#include <functional>
#include <map>
#include <string>

class CSysVarStore {
public:
    CSysVarStore();
    // RTNORM, or RTERROR for an unknown name.
    int Get(const std::wstring& strName, SYSVAR_VALUE& value) const;
    // RTNORM, or RTERROR for an unknown or read-only name or a value of another type.
    int Set(const std::wstring& strName, const SYSVAR_VALUE& value);
    // Read-only variables whose value the host computes (DWGNAME, CMDNAMES...).
    void DefineComputed(const std::wstring& strName, std::function<SYSVAR_VALUE()> getter);
    // Variables kept elsewhere (in the drawing): read and written through the two functions;
    // the setter says whether it took the value.
    void DefineBound(const std::wstring& strName, std::function<SYSVAR_VALUE()> getter,
                     std::function<bool(const SYSVAR_VALUE&)> setter);
    // Called with the old value before a variable of the drawing changes (for undo).
    std::function<void(const std::wstring&, const SYSVAR_VALUE&)> m_onChange;
    int GetEnv(const std::wstring& strName, std::wstring& strValue) const;
    void SetEnv(const std::wstring& strName, const std::wstring& strValue);
    // The value of an integer variable, 0 when unknown.
    int Short(const std::wstring& strName) const;

private:
    struct ENTRY {
        SYSVAR_VALUE value;
        std::function<SYSVAR_VALUE()> getter;
        std::function<bool(const SYSVAR_VALUE&)> setter;
    };
    static std::wstring Key(const std::wstring& strName);
    std::map<std::wstring, ENTRY> m_vars;
    std::map<std::wstring, std::wstring> m_env;
};
