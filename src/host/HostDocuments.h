// The editor's documents as the module sees them: names, databases, context, locks, posting.
#pragma once

#include <string>
#include <vector>

class AcDbDatabase;

class AcApDocument {
public:
    virtual ~AcApDocument() = default;
    // The full path of the drawing's file, or a bare name for a drawing never saved.
    virtual std::wstring fileName() const = 0;
    virtual AcDbDatabase* database() const = 0;
};

using AcApContextFunction = void (*)(void* pData);

class AcApDocManager {
public:
    virtual ~AcApDocManager() = default;
    virtual AcApDocument* curDocument() = 0;
    virtual AcApDocument* mdiActiveDocument() = 0;
    virtual bool isApplicationContext() = 0;
    virtual bool lockDocument(AcApDocument* pDoc) = 0; // write lock
    virtual bool unlockDocument(AcApDocument* pDoc) = 0;
    virtual std::vector<AcApDocument*> documents() = 0; // a snapshot, in the host's order
    virtual int documentCount() = 0;
    virtual bool activateDocument(AcApDocument* pDoc) = 0;
    virtual bool setCurDocument(AcApDocument* pDoc) = 0;
    // Valid only in the application context.
    virtual bool appContextNewDocument(const std::wstring& strTemplate) = 0;
    virtual bool appContextOpenDocument(const std::wstring& strPath) = 0;
    // Runs the function when the host is next in the application context.
    virtual void executeInApplicationContext(AcApContextFunction pFunction, void* pData) = 0;
    // Queues text on the document's command line; it runs when the host
    // returns to its command loop.
    virtual bool sendStringToExecute(AcApDocument* pDoc, const std::wstring& strText,
                                     bool bActivate, bool bWrapUpInactiveDoc, bool bEcho) = 0;
    // The module's resources current around its dialogs.
    virtual void pushResourceHandle() = 0;
    virtual void popResourceHandle() = 0;
    // The host's resources current around document calls that may raise its dialogs.
    virtual void pushAcadResourceHandle() = 0;
    virtual void popAcadResourceHandle() = 0;
};

// The document manager, or null without a host.
AcApDocManager* acDocManagerPtr();
