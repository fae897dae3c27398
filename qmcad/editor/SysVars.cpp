// System variables with the editor's defaults; names without regard to case.
#include "editor/SysVars.h"

#include "base/StrUtil.h"

namespace {

// Variables of the session and the profile: undo leaves them alone.
bool IsSessionVariable(const std::wstring& strKey) {
    for (const wchar_t* p : {L"CMDECHO", L"FILEDIA", L"CMDDIA", L"ISAVEBAK", L"SDI", L"EXPERT",
                             L"PICKFIRST", L"ATTDIA", L"HIGHLIGHT"})
        if (strKey == p)
            return true;
    return false;
}

} // namespace

CSysVarStore::CSysVarStore() {
    // The editor's defaults of the integer variables the module and its scripts touch.
    for (auto [name, value] :
         {std::pair{L"CMDECHO", 1}, {L"SDI", 0},       {L"FILEDIA", 1},   {L"CMDDIA", 1},
          {L"ISAVEBAK", 1},         {L"GRIDMODE", 0},  {L"ORTHOMODE", 0}, {L"SNAPMODE", 0},
          {L"OSMODE", 4133},        {L"DELOBJ", 1},    {L"EXPERT", 0},    {L"ATTREQ", 1},
          {L"ATTDIA", 0},           {L"PICKFIRST", 1}, {L"TILEMODE", 1},  {L"LWDISPLAY", 0},
          {L"CELWEIGHT", -1},       {L"HIGHLIGHT", 1}, {L"UCSICON", 3},   {L"BLIPMODE", 0}})
        m_vars[name].value = SYSVAR_VALUE::Short(value);
    SYSVAR_VALUE insbase;
    insbase.nType = RT3DPOINT;
    m_vars[L"INSBASE"].value = insbase;
    m_env[L"DEFAULTFORMATFORSAVE"] = L"48"; // the host's newest drawing format
}

void CSysVarStore::DefineBound(const std::wstring& strName, std::function<SYSVAR_VALUE()> getter,
                               std::function<bool(const SYSVAR_VALUE&)> setter) {
    ENTRY& entry = m_vars[Key(strName)];
    entry.getter = std::move(getter);
    entry.setter = std::move(setter);
}

std::wstring CSysVarStore::Key(const std::wstring& strName) {
    return StrMakeUpper(strName);
}

int CSysVarStore::Get(const std::wstring& strName, SYSVAR_VALUE& value) const {
    auto it = m_vars.find(Key(strName));
    if (it == m_vars.end())
        return RTERROR;
    value = it->second.getter ? it->second.getter() : it->second.value;
    return RTNORM;
}

int CSysVarStore::Set(const std::wstring& strName, const SYSVAR_VALUE& value) {
    auto it = m_vars.find(Key(strName));
    if (it == m_vars.end())
        return RTERROR;
    if (it->second.getter) {
        if (!it->second.setter)
            return RTERROR;
        SYSVAR_VALUE old = it->second.getter();
        if (old.nType != value.nType)
            return RTERROR;
        if (m_onChange)
            m_onChange(it->first, old);
        return it->second.setter(value) ? RTNORM : RTERROR;
    }
    SYSVAR_VALUE& current = it->second.value;
    bool bPoint = current.nType == RT3DPOINT || current.nType == RTPOINT;
    bool bPointIn = value.nType == RT3DPOINT || value.nType == RTPOINT;
    if (value.nType != current.nType && !(bPoint && bPointIn))
        return RTERROR;
    int nType = current.nType;
    if (m_onChange && !IsSessionVariable(it->first))
        m_onChange(it->first, current);
    current = value;
    current.nType = nType;
    return RTNORM;
}

void CSysVarStore::DefineComputed(const std::wstring& strName,
                                  std::function<SYSVAR_VALUE()> getter) {
    m_vars[Key(strName)].getter = std::move(getter);
}

int CSysVarStore::GetEnv(const std::wstring& strName, std::wstring& strValue) const {
    auto it = m_env.find(Key(strName));
    if (it == m_env.end())
        return RTERROR;
    strValue = it->second;
    return RTNORM;
}

void CSysVarStore::SetEnv(const std::wstring& strName, const std::wstring& strValue) {
    m_env[Key(strName)] = strValue;
}

int CSysVarStore::Short(const std::wstring& strName) const {
    SYSVAR_VALUE value;
    return Get(strName, value) == RTNORM && value.nType == RTSHORT ? value.nShort : 0;
}
