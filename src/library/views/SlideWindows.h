// The enlarged preview's Qt window and the progress window of a batch run of slides.
#pragma once

#include "library/DlgBatchSld.h"
#include "library/DlgZoomIn.h"

#include <QDialog>
#include <QPointer>

class CSlideCtrl;
class QLabel;
class QProgressBar;
class QPushButton;

// "放大预览": the slide control fills the dialog; Enter and the right button
// close it as OK does, the close box cancels.
class CDlgZoomInDialog : public QDialog {
    Q_OBJECT
public:
    CDlgZoomInDialog(CDlgZoomIn& dlg, QWidget* pParent);
    CSlideCtrl* m_pSlide = nullptr;

protected:
    bool eventFilter(QObject* pObject, QEvent* pEvent) override;
    void reject() override;

private:
    CDlgZoomIn& m_dlg;
};

class CDlgZoomInWindow : public IZoomInView {
public:
    explicit CDlgZoomInWindow(QWidget* pParent) : m_pParent(pParent) {}
    int DoModal(CDlgZoomIn& dlg) override;
    void SetIcon(int nIconId) override;
    void SetSlideFile(const std::wstring& strFile) override;
    void EndDialog(int nResult) override;

private:
    QWidget* m_pParent;
    QPointer<CDlgZoomInDialog> m_pDialog;
    int m_nResult = 2; // IDCANCEL
};

// The batch run's progress: the item at hand, a bar and the cancel button.
class CDlgBatchSldWindow : public IBatchSldView {
public:
    explicit CDlgBatchSldWindow(QWidget* pParent) : m_pParent(pParent) {}
    ~CDlgBatchSldWindow() override;
    bool Create(CDlgBatchSld& dlg, const std::wstring& strTitle) override;
    void SetProgress(int nDone, int nTotal, const std::wstring& strText) override;
    void EnableCancel(bool bEnable) override;
    void Pump() override;
    void Destroy() override;
    QDialog* Dialog() const { return m_pDialog; }
    QPushButton* CancelButton() const { return m_pCancel; }

private:
    QWidget* m_pParent;
    QPointer<QDialog> m_pDialog;
    QLabel* m_pText = nullptr;
    QProgressBar* m_pBar = nullptr;
    QPushButton* m_pCancel = nullptr;
};

// Gives the slide commands and the browsers their windows, on the host's frame.
void InstallSlideViews();
