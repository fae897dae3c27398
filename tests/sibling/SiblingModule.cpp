// A sibling module for tests: lets the user pick a library drawing through DrawingManage's exports.
//
// It knows DrawingManage only by the exports' names and types, as the suite's
// other modules do. Its commands stand in for a person at the browser too:
// they find the browser's window among the top-level windows and click it.
#include "app/entry/SiblingExports.h"
#include "host/HostCommands.h"
#include "host/HostInput.h"
#include "host/HostServices.h"
#include "host/HostUi.h"
#include "host/ResultCodes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QPointer>
#include <QTreeWidget>
#include <QWidget>

#include <cstring>
#include <dlfcn.h>

namespace {

constexpr const wchar_t* kGroup = L"QmSiblingTest";

// The sibling's own window: it waits for the browser's answer.
class CPickWindow : public QWidget {
public:
    explicit CPickWindow(bool bLayout) : m_bLayout(bLayout) {}

protected:
    bool event(QEvent* pEvent) override;

private:
    bool m_bLayout;
};

QPointer<CPickWindow> g_pWindow;

template <class PFN> PFN Export(const char* pszName) {
    return reinterpret_cast<PFN>(::dlsym(RTLD_DEFAULT, pszName));
}

// The getter's answer; "<无>" when it left the string as it was.
std::wstring PickedName(bool bLayout) {
    auto pfnGet =
        Export<PFN_TzGetSelectName>(bLayout ? "TzGetSelectLSName" : "TzGetSelectHoleFileName");
    std::wstring strName = L"<无>";
    if (pfnGet)
        pfnGet(strName);
    return strName;
}

bool CPickWindow::event(QEvent* pEvent) {
    if (pEvent->type() == QEvent::Type(kTzPickedEvent)) {
        acutPrintf(L"\n收到 1129: %s\n", PickedName(m_bLayout));
        return true;
    }
    if (pEvent->type() == QEvent::Type(kTzCancelledEvent)) {
        acutPrintf(L"\n收到 1130\n");
        return true;
    }
    return QWidget::event(pEvent);
}

std::wstring Ask(const wchar_t* pszPrompt) {
    std::wstring strText;
    if (acedGetString(true, pszPrompt, strText) != RTNORM)
        strText.clear();
    return strText;
}

void Pick(bool bLayout) {
    std::wstring strName = Ask(L"\n当前文件名: ");
    const char* pszExport = bLayout ? "TzGetLSDwgFile" : "TzGetInstallHoleDwgFile";
    auto pfnPick = Export<PFN_TzGetDwgFile>(pszExport);
    if (!pfnPick) {
        acutPrintf(L"\n找不到 %s\n", std::wstring(pszExport, pszExport + std::strlen(pszExport)));
        return;
    }
    delete g_pWindow.data();
    g_pWindow = new CPickWindow(bLayout);
    pfnPick(g_pWindow.data(), strName);
}

void CmdPickHole() {
    Pick(false);
}
void CmdPickLayout() {
    Pick(true);
}

// The caller destroys its window, as a sibling that closes before the pick.
void CmdDestroyWindow() {
    delete g_pWindow.data();
}

void CmdShowPicked() {
    acutPrintf(L"\n读取: %s\n", PickedName(Ask(L"\n图库 (H/L): ") == L"L"));
}

// The browser that a person would see: the visible library window.
QDialog* Browser() {
    for (QWidget* pWidget : QApplication::topLevelWidgets()) {
        auto* pDialog = qobject_cast<QDialog*>(pWidget);
        if (pDialog && pDialog->isVisible() && pDialog->property("templateId").isValid())
            return pDialog;
    }
    return nullptr;
}

QTreeWidgetItem* ListItem(QDialog* pBrowser, const QString& text) {
    auto* pList = pBrowser->findChild<QTreeWidget*>(QStringLiteral("list"));
    auto found = pList ? pList->findItems(text, Qt::MatchExactly) : QList<QTreeWidgetItem*>();
    return found.isEmpty() ? nullptr : found.front();
}

void CmdSelect() {
    QString text = QString::fromStdWString(Ask(L"\n列表项: "));
    QDialog* pBrowser = Browser();
    QTreeWidgetItem* pItem = pBrowser ? ListItem(pBrowser, text) : nullptr;
    if (!pItem) {
        acutPrintf(L"\n没有列表项 %s\n", text.toStdWString());
        return;
    }
    pItem->treeWidget()->clearSelection();
    pItem->setSelected(true);
}

void CmdDoubleClick() {
    QString text = QString::fromStdWString(Ask(L"\n列表项: "));
    QDialog* pBrowser = Browser();
    QTreeWidgetItem* pItem = pBrowser ? ListItem(pBrowser, text) : nullptr;
    if (!pItem)
        return;
    pItem->treeWidget()->clearSelection(); // the first press selects
    pItem->setSelected(true);
    emit pItem->treeWidget()->itemDoubleClicked(pItem, 0);
}

void CmdClick() {
    QString text = QString::fromStdWString(Ask(L"\n按钮: "));
    QDialog* pBrowser = Browser();
    for (auto* pButton :
         pBrowser ? pBrowser->findChildren<QAbstractButton*>() : QList<QAbstractButton*>()) {
        if (pButton->text() == text && pButton->isVisible()) {
            pButton->click();
            return;
        }
    }
    acutPrintf(L"\n没有按钮 %s\n", text.toStdWString());
}

void CmdCloseBox() {
    if (QDialog* pBrowser = Browser())
        pBrowser->close();
}

// What a person sees of the browser: title, buttons, directory, selection.
void CmdShowBrowser() {
    QDialog* pBrowser = Browser();
    if (!pBrowser) {
        acutPrintf(L"\n浏览器: 无\n");
        return;
    }
    std::wstring strButtons;
    for (auto* pButton : pBrowser->findChildren<QAbstractButton*>())
        if (pButton->isVisible() && pButton->property("controlId").toInt() != 0 &&
            !pButton->isCheckable())
            strButtons += L" " + pButton->text().toStdWString();
    auto* pTree = pBrowser->findChild<QTreeWidget*>(QStringLiteral("tree"));
    auto* pList = pBrowser->findChild<QTreeWidget*>(QStringLiteral("list"));
    QTreeWidgetItem* pDir = pTree ? pTree->currentItem() : nullptr;
    std::wstring strSelected;
    for (QTreeWidgetItem* pItem : pList ? pList->selectedItems() : QList<QTreeWidgetItem*>())
        strSelected += L" " + pItem->text(0).toStdWString();
    acutPrintf(L"\n浏览器: %s\n按钮:%s\n目录: %s\n列表选中:%s\n",
               pBrowser->windowTitle().toStdWString(), strButtons,
               pDir ? pDir->text(0).toStdWString() : L"",
               strSelected.empty() ? L" (无)" : strSelected);
}

struct COMMAND {
    const wchar_t* pszName;
    AcRxFunctionPtr pfn;
};
const COMMAND kCommands[] = {
    {L"SibPickHole", CmdPickHole},
    {L"SibPickLayout", CmdPickLayout},
    {L"SibDestroyWindow", CmdDestroyWindow},
    {L"SibShowPicked", CmdShowPicked},
    {L"SibSelect", CmdSelect},
    {L"SibDoubleClick", CmdDoubleClick},
    {L"SibClick", CmdClick},
    {L"SibCloseBox", CmdCloseBox},
    {L"SibShowBrowser", CmdShowBrowser},
};

} // namespace

extern "C" __attribute__((visibility("default"))) int acrxEntryPoint(int nMsg, void* pPacket) {
    if (nMsg == 1 && pPacket) {
        SetHostServices(*static_cast<const HOST_SERVICES*>(pPacket));
        if (ICommandStack* pStack = acedRegCmds())
            for (const COMMAND& command : kCommands)
                pStack->AddCommand(kGroup, command.pszName, command.pszName, ACRX_CMD_MODAL,
                                   command.pfn);
    } else if (nMsg == 2) {
        if (ICommandStack* pStack = acedRegCmds())
            pStack->RemoveGroup(kGroup);
        delete g_pWindow.data();
        SetHostServices(HOST_SERVICES{});
    }
    return 0;
}

extern "C" __attribute__((visibility("default"))) int acrxGetApiVersion() {
    return kHostApiVersion;
}
