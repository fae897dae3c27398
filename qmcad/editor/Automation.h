// The reference host's automation objects over its documents and command loop.
#pragma once

#include "host/HostAutomation.h"

#include <map>
#include <memory>

class CEditorHost;
class CHostDocument;

class CAutomation : public IAcadApplication, public IAcadDocuments {
public:
    explicit CAutomation(CEditorHost& editor);
    ~CAutomation() override;

    IAcadDocument* ActiveDocument() override;
    IAcadDocuments* Documents() override { return this; }
    void Update() override {}
    void MaximizeActiveFrame() override {}

    int Count() override;
    IAcadDocument* Add(const std::wstring& strTemplate) override;
    IAcadDocument* Open(const std::wstring& strPath) override;
    IAcadDocument* Item(const std::wstring& strPath) override;

private:
    class CDocumentObject;
    IAcadDocument* Wrap(CHostDocument* pDoc);

    CEditorHost& m_editor;
    // One automation object per document, kept while the host lives.
    std::map<CHostDocument*, std::unique_ptr<CDocumentObject>> m_objects;
};
