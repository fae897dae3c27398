// Automation documents: activation, close without saving, and synchronous SendCommand.
#include "editor/Automation.h"

#include "base/StrUtil.h"
#include "editor/EditorHost.h"

class CAutomation::CDocumentObject : public IAcadDocument {
public:
    CDocumentObject(CEditorHost& editor, CHostDocument* pDoc) : m_editor(editor), m_pDoc(pDoc) {}
    std::wstring FullName() override { return IsOpen() ? m_pDoc->fileName() : L""; }
    bool Activate() override { return IsOpen() && m_editor.m_docs.activateDocument(m_pDoc); }
    bool Close(bool, const std::wstring&) override {
        return IsOpen() && m_editor.m_docs.CloseDocument(m_pDoc);
    }
    bool SendCommand(const std::wstring& strText) override {
        return IsOpen() && m_editor.RunTextNow(m_pDoc, strText);
    }

private:
    bool IsOpen() {
        for (AcApDocument* pDoc : m_editor.m_docs.documents())
            if (pDoc == m_pDoc)
                return true;
        return false;
    }
    CEditorHost& m_editor;
    CHostDocument* m_pDoc;
};

CAutomation::CAutomation(CEditorHost& editor) : m_editor(editor) {}
CAutomation::~CAutomation() = default;

IAcadDocument* CAutomation::Wrap(CHostDocument* pDoc) {
    if (!pDoc)
        return nullptr;
    auto& pObject = m_objects[pDoc];
    if (!pObject)
        pObject = std::make_unique<CDocumentObject>(m_editor, pDoc);
    return pObject.get();
}

IAcadDocument* CAutomation::ActiveDocument() {
    return Wrap(static_cast<CHostDocument*>(m_editor.m_docs.mdiActiveDocument()));
}

int CAutomation::Count() {
    return m_editor.m_docs.documentCount();
}

IAcadDocument* CAutomation::Add(const std::wstring&) {
    return Wrap(m_editor.m_docs.NewDocument());
}

IAcadDocument* CAutomation::Open(const std::wstring& strPath) {
    return Wrap(m_editor.m_docs.OpenDocument(strPath));
}

IAcadDocument* CAutomation::Item(const std::wstring& strPath) {
    for (AcApDocument* pDoc : m_editor.m_docs.documents())
        if (EqualsNoCase(pDoc->fileName(), strPath))
            return Wrap(static_cast<CHostDocument*>(pDoc));
    return nullptr;
}
