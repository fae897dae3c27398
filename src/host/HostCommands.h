// The editor's command stack as the module registers its commands on it.
#pragma once

#include <string>

using AcRxFunctionPtr = void (*)();

enum : unsigned {
    ACRX_CMD_MODAL = 0,
    ACRX_CMD_TRANSPARENT = 1,
    ACRX_CMD_SESSION = 0x200000,
};

class ICommandStack {
public:
    virtual ~ICommandStack() = default;
    // False when the group already has a command of that global name.
    virtual bool AddCommand(const std::wstring& strGroup, const std::wstring& strGlobal,
                            const std::wstring& strLocal, unsigned nFlags,
                            AcRxFunctionPtr pFunction) = 0;
    // Removes every command of the group; false when there was none.
    virtual bool RemoveGroup(const std::wstring& strGroup) = 0;
};

// The host's command stack, or null without a host.
ICommandStack* acedRegCmds();
