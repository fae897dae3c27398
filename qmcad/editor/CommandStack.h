// The reference host's command stack: groups of commands found by name without regard to case.
#pragma once

#include "host/HostCommands.h"

#include <functional>
#include <string>
#include <vector>

struct HOST_COMMAND {
    std::wstring strGroup;
    std::wstring strGlobal;
    std::wstring strLocal;
    unsigned nFlags = 0;
    std::function<void()> function;
};

class CCommandStack : public ICommandStack {
public:
    bool AddCommand(const std::wstring& strGroup, const std::wstring& strGlobal,
                    const std::wstring& strLocal, unsigned nFlags,
                    AcRxFunctionPtr pFunction) override;
    bool RemoveGroup(const std::wstring& strGroup) override;
    // The host's own commands take closures.
    bool AddNative(const std::wstring& strName, std::function<void()> function);
    // The newest registration wins, as on the editor's stack; a leading
    // "_" or "." (untranslated, native) is ignored.
    const HOST_COMMAND* Find(const std::wstring& strName) const;
    size_t Count() const { return m_commands.size(); }

private:
    std::vector<HOST_COMMAND> m_commands;
};
