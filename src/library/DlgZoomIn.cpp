// The enlarged preview's presenter: icon, slide property, and the keys and clicks that close it.
#include "library/DlgZoomIn.h"

#include "host/HostDocuments.h"
#include "host/HostUi.h"

namespace {

ZoomInViewFactory& Factory() {
    static ZoomInViewFactory factory;
    return factory;
}

// The module's resources are current while one of its dialogs runs.
class CModuleResourceScope {
public:
    CModuleResourceScope() : m_pDocs(acDocManagerPtr()) {
        if (m_pDocs)
            m_pDocs->pushResourceHandle();
    }
    ~CModuleResourceScope() {
        if (m_pDocs)
            m_pDocs->popResourceHandle();
    }
    CModuleResourceScope(const CModuleResourceScope&) = delete;
    CModuleResourceScope& operator=(const CModuleResourceScope&) = delete;

private:
    AcApDocManager* m_pDocs;
};

} // namespace

void SetZoomInViewFactory(ZoomInViewFactory factory) {
    Factory() = std::move(factory);
}

CDlgZoomIn::CDlgZoomIn(std::unique_ptr<IZoomInView> pView) : m_pView(std::move(pView)) {
    if (!m_pView && Factory())
        m_pView = Factory()();
}

int CDlgZoomIn::DoModal() {
    if (!m_pView)
        return IDCANCEL;
    CModuleResourceScope resources;
    return m_pView->DoModal(*this);
}

bool CDlgZoomIn::OnInitDialog() {
    m_pView->SetIcon(IDI_ICON);
    m_pView->SetSlideFile(m_strSldFile);
    return true;
}

bool CDlgZoomIn::PreTranslateMessage(ZOOMIN_MESSAGE message) {
    if (message == ZOOMIN_MESSAGE::Other)
        return false;
    OnOK();
    return true;
}

void CDlgZoomIn::OnOK() {
    m_pView->EndDialog(IDOK);
}

void CDlgZoomIn::OnCancel() {
    m_pView->EndDialog(IDCANCEL);
}

int ShowSlideZoomIn(const std::wstring& strSlide) {
    CDlgZoomIn dlg;
    dlg.m_strSldFile = strSlide;
    return dlg.DoModal();
}
