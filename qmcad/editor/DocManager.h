// The reference host's documents: current and active drawing, contexts, locks and posted text.
#pragma once

#include "editor/UndoLog.h"
#include "host/HostDocuments.h"
#include "host/db/AcDb.h"
#include "view/ViewState.h"

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class CSysVarStore;

struct POSTED_LINE {
    std::wstring strText;
    bool bEcho = true;
};

// A drawing open in the editor. Its database is its own; a titled drawing
// holds an advisory lock on its file while it is open, as the editor keeps
// other programs from writing a drawing it has open.
class CHostDocument : public AcApDocument {
public:
    CHostDocument(std::wstring strFileName, std::unique_ptr<AcDbDatabase> pDb, int nLockFd = -1);
    ~CHostDocument() override;
    CHostDocument(const CHostDocument&) = delete;
    CHostDocument& operator=(const CHostDocument&) = delete;
    std::wstring fileName() const override { return m_strFileName; }
    AcDbDatabase* database() const override { return m_pDb.get(); }
    bool IsTitled() const { return m_strFileName.find(L'\\') != std::wstring::npos; }
    // After a save: the document is that file now, and holds its lock.
    void Rename(const std::wstring& strFileName);
    // The undo log of the open drawing; it dies with the document.
    CUndoLog& Undo() { return *m_pUndo; }

    std::deque<POSTED_LINE> m_posted; // lines waiting for the command loop
    int m_nWriteLocks = 0;
    VIEW_STATE m_view; // what the drawing's window, slides and PNG files show

private:
    std::wstring m_strFileName;
    std::unique_ptr<AcDbDatabase> m_pDb;
    int m_nLockFd;
    std::unique_ptr<CUndoLog> m_pUndo; // after the database: it goes first
};

class CDocManager : public AcApDocManager {
public:
    explicit CDocManager(const CSysVarStore& vars) : m_vars(vars) {}

    AcApDocument* curDocument() override { return m_pCur; }
    AcApDocument* mdiActiveDocument() override { return m_pActive; }
    bool isApplicationContext() override { return m_nAppContext > 0; }
    bool lockDocument(AcApDocument* pDoc) override;
    bool unlockDocument(AcApDocument* pDoc) override;
    std::vector<AcApDocument*> documents() override;
    int documentCount() override { return static_cast<int>(m_docs.size()); }
    bool activateDocument(AcApDocument* pDoc) override;
    bool setCurDocument(AcApDocument* pDoc) override;
    bool appContextNewDocument(const std::wstring& strTemplate) override;
    bool appContextOpenDocument(const std::wstring& strPath) override;
    void executeInApplicationContext(AcApContextFunction pFunction, void* pData) override;
    bool sendStringToExecute(AcApDocument* pDoc, const std::wstring& strText, bool bActivate,
                             bool bWrapUpInactiveDoc, bool bEcho) override;
    void pushResourceHandle() override { ++m_nModuleResources; }
    void popResourceHandle() override { --m_nModuleResources; }
    void pushAcadResourceHandle() override { ++m_nAcadResources; }
    void popAcadResourceHandle() override { --m_nAcadResources; }

    // Host side: new and open outside the context rule, close, and the context itself.
    CHostDocument* NewDocument();
    CHostDocument* OpenDocument(const std::wstring& strPath);
    bool CloseDocument(AcApDocument* pDoc);
    void EnterApplicationContext() { ++m_nAppContext; }
    void LeaveApplicationContext() { --m_nAppContext; }
    // Runs the calls posted into the application context; true if any ran.
    bool RunApplicationContextQueue();
    CHostDocument* Current() { return m_pCur; }
    int ResourceDepth() const { return m_nModuleResources + m_nAcadResources; }
    // Called when work is posted (a command string, an application-context call),
    // so that a host waiting for input in its event loop can stop and run it.
    std::function<void()> m_onPosted;
    // Called when a document has closed, before anything may paint: windows showing its view
    // turn to the current document.
    std::function<void()> m_onClosed;
    // Runs each posted application-context call; the host catches there what
    // a call lets escape, so that one failing call never takes the rest along.
    std::function<void(const std::function<void()>&)> m_runGuarded;

private:
    CHostDocument* Find(const AcApDocument* pDoc);
    // The current document's database is the working database.
    void SyncWorkingDatabase();
    CHostDocument* Adopt(std::unique_ptr<CHostDocument> pDoc);

    const CSysVarStore& m_vars;
    std::vector<std::unique_ptr<CHostDocument>> m_docs;
    CHostDocument* m_pCur = nullptr;
    CHostDocument* m_pActive = nullptr;
    int m_nAppContext = 0;
    int m_nUntitled = 0;
    int m_nModuleResources = 0;
    int m_nAcadResources = 0;
    std::vector<std::pair<AcApContextFunction, void*>> m_appQueue;
};
