// The progress window of a batch run of slides: the item at hand, a cancel button, the failures.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

struct CLibState;
class CDlgBatchSld;

class IBatchSldView {
public:
    virtual ~IBatchSldView() = default;
    virtual bool Create(CDlgBatchSld& dlg, const std::wstring& strTitle) = 0;
    virtual void SetProgress(int nDone, int nTotal, const std::wstring& strText) = 0;
    virtual void EnableCancel(bool bEnable) = 0;
    // Lets the window take its clicks between two items.
    virtual void Pump() = 0;
    virtual void Destroy() = 0;
};

using BatchSldViewFactory = std::function<std::unique_ptr<IBatchSldView>()>;
// Without a factory the run goes on without a window and cannot be cancelled from it.
void SetBatchSldViewFactory(BatchSldViewFactory factory);

// One item that got no slide, and why.
struct BATCH_SLD_FAILURE {
    std::wstring strItem;
    std::wstring strReason;
};

class CDlgBatchSld {
public:
    explicit CDlgBatchSld(CLibState& state, std::unique_ptr<IBatchSldView> pView = nullptr);
    ~CDlgBatchSld();

    void Begin(int nTotal);
    // Item nIndex (0-based) is being made.
    void Step(int nIndex, const std::wstring& strItem);
    void Done(const std::wstring& strItem);
    void Fail(const std::wstring& strItem, const std::wstring& strReason);
    // Between two items: the window's clicks run, a cancel among them.
    void Pump();
    // Cancel asks the run to stop once the drawing at hand is finished.
    void OnCancel();
    // Closes the window and reports: a box listing the failures, a line otherwise.
    void End();
    std::wstring Summary() const;

    int m_nTotal = 0;
    int m_nDone = 0;
    bool m_bCancelled = false;
    std::vector<BATCH_SLD_FAILURE> m_failures;

private:
    CLibState& m_state;
    std::unique_ptr<IBatchSldView> m_pView;
    bool m_bCreated = false;
};
