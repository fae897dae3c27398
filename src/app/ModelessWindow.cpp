// Raising, creating and destroying modeless windows on the host's main frame.
#include "app/ModelessWindow.h"

#include "host/HostDocuments.h"
#include "host/HostEditor.h"
#include "host/HostUi.h"

namespace {

void CreateModelessWindow(IModelessWindow*& pWindow, const ModelessFactory& factory,
                          const wchar_t* pszClassName) {
    if (!acedHasAcadFrame()) {
        acutPrintf(L"\nUnable to locate AutoCAD parent window.");
        return;
    }
    pWindow = factory ? factory() : nullptr;
    if (!pWindow) {
        acutPrintf(L"Unable to allocate a %s.", pszClassName);
        return;
    }
    AcApDocManager* pDocs = acDocManagerPtr();
    if (pDocs)
        pDocs->pushResourceHandle();
    bool bCreated = pWindow->Create();
    if (pDocs)
        pDocs->popResourceHandle();
    if (!bCreated) {
        acutPrintf(L"\nUnable to create the dialog.");
        delete pWindow;
        pWindow = nullptr;
        return;
    }
    pWindow->Show();
    pWindow->Activate();
}

} // namespace

void RaiseModelessWindow(IModelessWindow*& pWindow, const ModelessFactory& factory,
                         const wchar_t* pszClassName) {
    if (!pWindow) {
        CreateModelessWindow(pWindow, factory, pszClassName);
        if (!pWindow)
            acutPrintf(L"Failed to create modeless dialog box.\n");
        return;
    }
    pWindow->Show();
    pWindow->Activate();
    if (pWindow->IsIconic())
        pWindow->Restore();
}

void DestroyModelessWindow(IModelessWindow*& pWindow) {
    if (!pWindow)
        return;
    pWindow->DestroyWindow();
    delete pWindow;
    pWindow = nullptr;
}
