// The module's copy of the host's service table and the free functions over it.
#include "host/HostServices.h"

#include "host/FtpClient.h"
#include "host/HostUi.h"
#include "host/SuiteInstallPaths.h"
#include "host/SuiteLabelNames.h"
#include "host/SuiteMainLib.h"

namespace {
HOST_SERVICES g_services;
} // namespace

void SetHostServices(const HOST_SERVICES& services) {
    g_services = services;
}
const HOST_SERVICES& GetHostServices() {
    return g_services;
}

int HostMessageBox(const std::wstring& strText, const std::wstring& strCaption, unsigned nFlags) {
    if (!g_services.pUi)
        return IDCANCEL;
    return g_services.pUi->MessageBox(strText, strCaption, nFlags);
}

int QmMessageBox(const std::wstring& strText, unsigned nFlags) {
    return HostMessageBox(strText, kBoxCaption, nFlags);
}

void HostPrint(const std::wstring& strText) {
    if (g_services.pUi)
        g_services.pUi->Print(strText);
}

CWaitCursor::CWaitCursor() {
    if (g_services.pUi) {
        g_services.pUi->BeginWaitCursor();
        m_bOn = true;
    }
}

CWaitCursor::~CWaitCursor() {
    Restore();
}

void CWaitCursor::Restore() {
    if (m_bOn && g_services.pUi)
        g_services.pUi->EndWaitCursor();
    m_bOn = false;
}

std::wstring GetQuillmCommonResInstallPath() {
    return g_services.pInstallPaths ? g_services.pInstallPaths->CommonResInstallPath() : L"";
}
std::wstring GetQuillmLocalInstallPath() {
    return g_services.pInstallPaths ? g_services.pInstallPaths->LocalInstallPath() : L"";
}
std::wstring GetInstallPath_QM() {
    return g_services.pInstallPaths ? g_services.pInstallPaths->InstallPath() : L"";
}
int GetCurQuillmInstallStyle() {
    return g_services.pInstallPaths ? g_services.pInstallPaths->InstallStyle() : 0;
}
int GetCurFTPLoginStatus() {
    return g_services.pInstallPaths ? g_services.pInstallPaths->FtpLoginStatus() : 0;
}
std::wstring TzGetQuillmCurVer() {
    return g_services.pInstallPaths ? g_services.pInstallPaths->CurrentVersion() : L"";
}

std::unique_ptr<IFtpSession> OpenFtpSession() {
    return g_services.pFtp ? g_services.pFtp->OpenSession() : nullptr;
}

bool TzDll_CreatZhuangZhiAndDzNameArray(CZhuangZhiDzNameArray& devices,
                                        CZhuangZhiDzNameArray& terminals) {
    devices.clear();
    terminals.clear();
    return g_services.pLabelNames &&
           g_services.pLabelNames->CreatZhuangZhiAndDzNameArray(devices, terminals);
}
std::wstring TzDll_GetZhuangZhiAndDzNameStamp() {
    return g_services.pLabelNames ? g_services.pLabelNames->NameTablesStamp() : L"";
}

bool TzSaveHoleDataToEPartLib(std::wstring strCode, std::wstring strModel, std::wstring strName,
                              std::wstring strFileName, int32_t nFlag) {
    return g_services.pMainLib && g_services.pMainLib->SaveHoleDataToEPartLib(
                                      strCode, strModel, strName, strFileName, nFlag);
}
