// The batch run's progress presenter: counts, cancel between items, the closing summary.
#include "library/DlgBatchSld.h"

#include "app/LibState.h"
#include "base/Format.h"
#include "host/HostUi.h"

namespace {

BatchSldViewFactory& Factory() {
    static BatchSldViewFactory factory;
    return factory;
}

} // namespace

void SetBatchSldViewFactory(BatchSldViewFactory factory) {
    Factory() = std::move(factory);
}

CDlgBatchSld::CDlgBatchSld(CLibState& state, std::unique_ptr<IBatchSldView> pView)
    : m_state(state), m_pView(std::move(pView)) {
    if (!m_pView && Factory())
        m_pView = Factory()();
}

CDlgBatchSld::~CDlgBatchSld() {
    if (m_bCreated)
        m_pView->Destroy();
}

void CDlgBatchSld::Begin(int nTotal) {
    m_nTotal = nTotal;
    if (m_pView)
        m_bCreated = m_pView->Create(*this, L"批生成SLD");
    if (m_bCreated)
        m_pView->SetProgress(0, m_nTotal, L"");
}

void CDlgBatchSld::Step(int nIndex, const std::wstring& strItem) {
    if (m_bCreated)
        m_pView->SetProgress(nIndex, m_nTotal, Format(L"%d/%d  %s", nIndex + 1, m_nTotal, strItem));
}

void CDlgBatchSld::Done(const std::wstring&) {
    ++m_nDone;
}

void CDlgBatchSld::Fail(const std::wstring& strItem, const std::wstring& strReason) {
    m_failures.push_back({strItem, strReason});
}

void CDlgBatchSld::Pump() {
    if (m_bCreated)
        m_pView->Pump();
}

void CDlgBatchSld::OnCancel() {
    m_bCancelled = true;
    m_state.bBatchAbort = 1;
    if (m_bCreated) {
        m_pView->EnableCancel(false);
        m_pView->SetProgress(m_nDone, m_nTotal, L"正在完成当前图形后终止...");
    }
}

std::wstring CDlgBatchSld::Summary() const {
    std::wstring strText =
        Format(L"批生成SLD: 共%d个图形, 已生成%d个幻灯片文件", m_nTotal, m_nDone);
    if (m_bCancelled)
        strText += L", 已终止";
    if (m_failures.empty())
        return strText + L"。";
    strText += Format(L", %d个失败:", static_cast<int>(m_failures.size()));
    for (const BATCH_SLD_FAILURE& failure : m_failures)
        strText += Format(L"\n%s: %s", failure.strItem, failure.strReason);
    return strText;
}

void CDlgBatchSld::End() {
    if (m_bCreated)
        m_pView->Destroy();
    m_bCreated = false;
    if (m_failures.empty())
        acutPrintf(L"\n%s\n", Summary());
    else
        QmMessageBox(Summary(), MB_ICONEXCLAMATION);
}
