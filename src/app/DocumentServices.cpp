// Document services: lookup by name, open or activate, new from the template, write locks.
#include "app/DocumentServices.h"

#include "app/EditorServices.h"
#include "base/StrUtil.h"
#include "host/HostDocuments.h"
#include "host/HostEditor.h"
#include "host/HostUi.h"
#include "host/db/AcDb.h"
#include "shared/fileops/FileOps.h"

const wchar_t* const g_szDefaultTemplate = L"acad.dwt";

namespace {

// SDI is read anew by every call; 0 means several documents.
int GetSdi() {
    int nSdi = 0;
    GetIntVar(L"SDI", nSdi);
    return nSdi;
}

// With the full-path flag the whole path is compared; without it only the
// last element, which matches a drawing never saved.
bool NameMatches(AcApDocument* pDoc, const std::wstring& strPath, bool bFullPath) {
    std::wstring strName = bFullPath ? strPath : GetFileName(strPath);
    return EqualsNoCase(pDoc->fileName(), strName);
}

AcApDocument* FindDocument(const std::wstring& strPath, bool bFullPath) {
    AcApDocManager* pDocs = acDocManagerPtr();
    if (!pDocs)
        return nullptr;
    for (AcApDocument* pDoc : pDocs->documents())
        if (NameMatches(pDoc, strPath, bFullPath))
            return pDoc;
    return nullptr;
}

// The host's dialogs that document calls may raise need the host's resources.
class CAcadResourceScope {
public:
    CAcadResourceScope() : m_pDocs(acDocManagerPtr()) {
        if (m_pDocs)
            m_pDocs->pushAcadResourceHandle();
    }
    ~CAcadResourceScope() {
        if (m_pDocs)
            m_pDocs->popAcadResourceHandle();
    }
    CAcadResourceScope(const CAcadResourceScope&) = delete;
    CAcadResourceScope& operator=(const CAcadResourceScope&) = delete;

private:
    AcApDocManager* m_pDocs;
};

bool IsCurrentSdiDrawing(const std::wstring& strPath) {
    return IsCurDwgTitled() && EqualsNoCase(GetCurDwgPrefix() + GetCurDwgName(), strPath);
}

void OpenDocumentWith(const std::wstring& strPath, bool bPosted) {
    CAcadResourceScope scope;
    AcApDocManager* pDocs = acDocManagerPtr();
    if (!pDocs)
        return;
    if (GetSdi() == 1) {
        if (!IsCurrentSdiDrawing(strPath)) {
            acedSyncFileOpen(strPath);
            acedPostCommandPrompt();
        }
        return;
    }
    if (AcApDocument* pDoc = FindDocument(strPath, true)) {
        pDocs->activateDocument(pDoc);
    } else if (bPosted) {
        // The posted call keeps its own copy: it runs after this one returns.
        if (pDocs->curDocument())
            pDocs->executeInApplicationContext(OpenDocumentProc, new std::wstring(strPath));
    } else {
        pDocs->appContextOpenDocument(strPath);
    }
    acedPostCommandPrompt();
}

} // namespace

int GetDocumentCount() {
    if (GetSdi() == 1)
        return 1;
    AcApDocManager* pDocs = acDocManagerPtr();
    return pDocs ? pDocs->documentCount() : 0;
}

bool IsDocumentOpen(const std::wstring& strPath) {
    return FindDocument(strPath, true) != nullptr;
}

bool LockCurrentDocument() {
    if (GetSdi() != 0)
        return true;
    AcApDocManager* pDocs = acDocManagerPtr();
    if (!pDocs || !pDocs->mdiActiveDocument())
        return false;
    return pDocs->lockDocument(pDocs->mdiActiveDocument());
}

bool UnlockCurrentDocument() {
    if (GetSdi() != 0)
        return true;
    AcApDocManager* pDocs = acDocManagerPtr();
    if (!pDocs || !pDocs->mdiActiveDocument())
        return false;
    return pDocs->unlockDocument(pDocs->mdiActiveDocument());
}

void ActivateDocument(const std::wstring& strPath) {
    CAcadResourceScope scope;
    AcApDocManager* pDocs = acDocManagerPtr();
    if (GetSdi() == 1 || !pDocs)
        return;
    AcApDocument* pDoc = FindDocument(strPath, true);
    if (!pDoc)
        return;
    pDocs->activateDocument(pDoc);
    pDocs->setCurDocument(pDoc);
    acedPostCommandPrompt();
}

void OpenDocumentPosted(const std::wstring& strPath) {
    OpenDocumentWith(strPath, true);
}

void OpenDocumentDirect(const std::wstring& strPath) {
    OpenDocumentWith(strPath, false);
}

bool OpenOrActivate(const std::wstring& strPath, bool bFullPath) {
    CAcadResourceScope scope;
    if (bFullPath && !IsFileExist(strPath))
        return false;
    AcApDocManager* pDocs = acDocManagerPtr();
    if (!pDocs)
        return false;
    if (GetSdi() == 1) {
        bool bOther = !EqualsNoCase(GetCurDwgPrefix() + GetCurDwgName(), strPath) ||
                      IsCurDwgTitled() != bFullPath;
        if (bOther && bFullPath) {
            acedSyncFileOpen(strPath);
            acedPostCommandPrompt();
        }
        return true;
    }
    bool bResult = false;
    if (AcApDocument* pDoc = FindDocument(strPath, bFullPath)) {
        pDocs->activateDocument(pDoc);
        bResult = true;
    } else if (bFullPath) {
        bResult = pDocs->appContextOpenDocument(strPath);
    }
    acedPostCommandPrompt();
    return bResult;
}

void NewDefaultDocument() {
    CAcadResourceScope scope;
    AcApDocManager* pDocs = acDocManagerPtr();
    if (GetSdi() == 1 || !pDocs || !pDocs->curDocument())
        return;
    pDocs->executeInApplicationContext(NewDocumentProc, const_cast<wchar_t*>(g_szDefaultTemplate));
}

bool IsOpenInOtherDocument(const std::wstring& strPath, bool bFullPath, AcApDocument*& pDoc) {
    AcApDocManager* pDocs = acDocManagerPtr();
    if (GetSdi() != 0 || !pDocs)
        return false;
    AcApDocument* pFound = FindDocument(strPath, bFullPath);
    if (!pFound || pFound == pDocs->curDocument())
        return false;
    pDoc = pFound;
    return true;
}

bool GetDatabaseOfFile(const std::wstring& strPath, AcDbDatabase*& pDb) {
    return GetDatabaseOfFileEx(strPath, true, pDb);
}

bool GetDatabaseOfFileEx(const std::wstring& strPath, bool bFullPath, AcDbDatabase*& pDb) {
    if (AcApDocument* pDoc = FindDocument(strPath, bFullPath)) {
        pDb = pDoc->database();
        return false;
    }
    auto* pNew = new AcDbDatabase(false, true);
    if (pNew->readDwgFile(strPath.c_str(), 64) != Acad::eOk) {
        delete pNew;
        pDb = nullptr;
        return false;
    }
    pDb = pNew;
    return true;
}

void OpenDocumentProc(void* pData) {
    auto* pPath = static_cast<std::wstring*>(pData);
    AcApDocManager* pDocs = acDocManagerPtr();
    if (pDocs && pDocs->curDocument() && pDocs->isApplicationContext())
        pDocs->appContextOpenDocument(*pPath);
    delete pPath;
}

void NewDocumentProc(void* pData) {
    const auto* pszTemplate = static_cast<const wchar_t*>(pData);
    AcApDocManager* pDocs = acDocManagerPtr();
    if (!pDocs)
        return;
    AcApDocument* pCur = pDocs->curDocument();
    if (!pDocs->isApplicationContext()) {
        acutPrintf(L"\nERROR: in Document context : %s\n", pCur ? pCur->fileName() : L"");
        return;
    }
    pDocs->appContextNewDocument(pszTemplate);
}
