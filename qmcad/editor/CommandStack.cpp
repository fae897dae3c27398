// Command registration and lookup.
#include "editor/CommandStack.h"

#include "base/StrUtil.h"

bool CCommandStack::AddCommand(const std::wstring& strGroup, const std::wstring& strGlobal,
                               const std::wstring& strLocal, unsigned nFlags,
                               AcRxFunctionPtr pFunction) {
    if (strGlobal.empty() || !pFunction)
        return false;
    for (const HOST_COMMAND& cmd : m_commands)
        if (EqualsNoCase(cmd.strGroup, strGroup) && EqualsNoCase(cmd.strGlobal, strGlobal))
            return false;
    m_commands.push_back({strGroup, strGlobal, strLocal, nFlags, pFunction});
    return true;
}

bool CCommandStack::RemoveGroup(const std::wstring& strGroup) {
    size_t nBefore = m_commands.size();
    std::erase_if(m_commands,
                  [&](const HOST_COMMAND& cmd) { return EqualsNoCase(cmd.strGroup, strGroup); });
    return m_commands.size() != nBefore;
}

bool CCommandStack::AddNative(const std::wstring& strName, std::function<void()> function) {
    m_commands.push_back({L"ACAD_MAIN", strName, strName, ACRX_CMD_MODAL, std::move(function)});
    return true;
}

const HOST_COMMAND* CCommandStack::Find(const std::wstring& strName) const {
    std::wstring strKey = StrTrimLeft(strName, L"_.");
    for (auto it = m_commands.rbegin(); it != m_commands.rend(); ++it)
        if (EqualsNoCase(it->strGlobal, strKey) || EqualsNoCase(it->strLocal, strKey))
            return &*it;
    return nullptr;
}
