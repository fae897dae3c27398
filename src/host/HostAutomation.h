// The editor's automation objects: application, document collection and documents.
#pragma once

#include <string>

class IAcadDocument {
public:
    virtual ~IAcadDocument() = default;
    virtual std::wstring FullName() = 0;
    virtual bool Activate() = 0;
    // Closes the drawing; with bSave false nothing is written.
    virtual bool Close(bool bSave, const std::wstring& strName) = 0;
    // Runs the text as if typed, line by line, LISP forms included, before returning.
    virtual bool SendCommand(const std::wstring& strText) = 0;
};

class IAcadDocuments {
public:
    virtual ~IAcadDocuments() = default;
    virtual int Count() = 0;
    // A new drawing from the template (empty: the default); null on failure.
    virtual IAcadDocument* Add(const std::wstring& strTemplate) = 0;
    // Opens a drawing, or null when it cannot be read.
    virtual IAcadDocument* Open(const std::wstring& strPath) = 0;
    // The open drawing of that full path (compared without regard to case), or null.
    virtual IAcadDocument* Item(const std::wstring& strPath) = 0;
};

class IAcadApplication {
public:
    virtual ~IAcadApplication() = default;
    virtual IAcadDocument* ActiveDocument() = 0;
    virtual IAcadDocuments* Documents() = 0;
    virtual void Update() = 0;
    // Maximises the active document's frame before a script runs in it.
    virtual void MaximizeActiveFrame() = 0;
};

// The host's automation application, or null without a host.
IAcadApplication* GetAcadApplication();
