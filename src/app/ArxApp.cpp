// Dispatch of the host's messages and registration of the command table.
#include "app/ArxApp.h"

#include "base/Format.h"
#include "base/StrUtil.h"
#include "host/HostUi.h"

#include <algorithm>
#include <array>
#include <exception>
#include <new>
#include <utility>

namespace {

unsigned long g_nSerialCounter = 0;
unsigned long g_nCurrentSerial = 0;

// The command table whose rows the entry functions below stand for.
const STRUCT_ARXCOMMAND* g_pRegistered = nullptr;
int g_nRegistered = 0;

template <int N> void RowEntry() {
    if (g_pRegistered && N < g_nRegistered)
        RunCommandBody(g_pRegistered[N].pszGlobal, g_pRegistered[N].pFunction);
}

template <int... N>
constexpr std::array<AcRxFunctionPtr, sizeof...(N)>
MakeRowEntries(std::integer_sequence<int, N...>) {
    return {&RowEntry<N>...};
}

constexpr auto kRowEntries = MakeRowEntries(std::make_integer_sequence<int, kMaxArxCommands>{});

void ReportEscape(const wchar_t* pszName, const std::wstring& strWhat) {
    try {
        acutPrintf(L"\n; 错误: 命令 %s 异常中止（%s）\n", std::wstring(pszName ? pszName : L""),
                   strWhat);
    } catch (...) {
        // Nothing is left to tell it with.
    }
}

} // namespace

unsigned long CurrentCommandSerial() {
    return g_nCurrentSerial;
}

void RunCommandBody(const wchar_t* pszName, AcRxFunctionPtr pBody) {
    if (!pBody)
        return;
    unsigned long nOuter = g_nCurrentSerial;
    g_nCurrentSerial = ++g_nSerialCounter;
    try {
        pBody();
    } catch (const std::bad_alloc&) {
        ReportEscape(pszName, L"内存不足");
    } catch (const std::exception& e) {
        ReportEscape(pszName, Utf8ToWide(e.what()));
    } catch (...) {
        ReportEscape(pszName, L"未知异常");
    }
    g_nCurrentSerial = nOuter;
}

AcRx::AppRetCode AcRxDbxApp::EntryPoint(AcRx::AppMsgCode msg, void* pkt) {
    using Slot = AcRx::AppRetCode (AcRxDbxApp::*)(void*);
    static const Slot kSlots[] = {
        &AcRxDbxApp::On_kNullMsg,         &AcRxDbxApp::On_kInitAppMsg,
        &AcRxDbxApp::On_kUnloadAppMsg,    &AcRxDbxApp::On_kLoadDwgMsg,
        &AcRxDbxApp::On_kUnloadDwgMsg,    &AcRxDbxApp::On_kInvkSubrMsg,
        &AcRxDbxApp::On_kCfgMsg,          &AcRxDbxApp::On_kEndMsg,
        &AcRxDbxApp::On_kQuitMsg,         &AcRxDbxApp::On_kSaveMsg,
        &AcRxDbxApp::On_kDependencyMsg,   &AcRxDbxApp::On_kNoDependencyMsg,
        &AcRxDbxApp::On_kOleUnloadAppMsg, &AcRxDbxApp::On_kPreQuitMsg,
        &AcRxDbxApp::On_kInitDialogMsg,   &AcRxDbxApp::On_kEndDialogMsg,
    };
    int nMsg = static_cast<int>(msg);
    if (nMsg < 0 || nMsg > 15)
        return static_cast<AcRx::AppRetCode>(0);
    try {
        return (this->*kSlots[nMsg])(pkt);
    } catch (...) {
        return AcRx::kRetError; // never across the host's call
    }
}

// The host calls each row through its entry function, so that no exception
// of a body reaches the host.
AcRx::AppRetCode AcRxArxApp::On_kInitAppMsg(void* pkt) {
    ICommandStack* pStack = acedRegCmds();
    g_pRegistered = m_pCommands;
    g_nRegistered = std::min(m_nCommands, kMaxArxCommands);
    for (int i = 0; pStack && i < g_nRegistered; ++i) {
        const STRUCT_ARXCOMMAND& row = m_pCommands[i];
        if (!row.pszGlobal || !row.pFunction)
            continue;
        pStack->AddCommand(row.pszGroup, row.pszGlobal, row.pszLocal ? row.pszLocal : row.pszGlobal,
                           row.nFlags, kRowEntries[i]);
    }
    return AcRxDbxApp::On_kInitAppMsg(pkt);
}

AcRx::AppRetCode AcRxArxApp::On_kUnloadAppMsg(void* pkt) {
    ICommandStack* pStack = acedRegCmds();
    // Groups are removed in the reverse of their first appearance.
    for (int i = m_nCommands - 1; pStack && i >= 0; --i)
        if (m_pCommands[i].pszGroup)
            pStack->RemoveGroup(m_pCommands[i].pszGroup);
    return AcRxDbxApp::On_kUnloadAppMsg(pkt);
}
