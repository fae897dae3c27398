// The Qt window of the modeless item dialogs: base point, pick button, record fields, OK and
// Cancel.
#pragma once

#include "library/ItemDialogView.h"

#include <QDialog>
#include <QPointer>

#include <map>

class QLineEdit;

// The dialog itself; its buttons and keys reach the presenter's handlers.
class CItemDialogWindow : public QDialog {
    Q_OBJECT
public:
    CItemDialogWindow(QWidget* pParent, const ITEM_DIALOG_TEMPLATE& tmpl);

    CItemDialog* m_pDlg = nullptr; // null once the presenter has gone
    std::map<int, QLineEdit*> m_fields;

protected:
    void keyPressEvent(QKeyEvent* pEvent) override;
    void closeEvent(QCloseEvent* pEvent) override;
    void accept() override;
    void reject() override;

private:
    QLineEdit* AddField(class QFormLayout* pForm, const QString& strLabel, int nId);
};

class CItemDialogView : public IItemDialogView {
public:
    explicit CItemDialogView(QWidget* pParent) : m_pParent(pParent) {}
    ~CItemDialogView() override;

    bool Create(const ITEM_DIALOG_TEMPLATE& tmpl, CItemDialog& dlg) override;
    void SetText(int nId, const std::wstring& strText) override;
    std::wstring GetText(int nId) override;
    void Show(bool bShow) override;
    void Activate() override;
    bool IsIconic() override;
    void Restore() override;
    void Destroy() override;
    ITEM_DIALOG_RECT WindowRect() override;
    void MoveWindow(const ITEM_DIALOG_RECT& rect) override;
    int FrameWidth() override;
    void ActivateFrame() override;

    CItemDialogWindow* Window() const { return m_pDialog; }

private:
    QPointer<QWidget> m_pParent;
    QPointer<CItemDialogWindow> m_pDialog;
};

// Makes the item dialogs' views Qt windows on the host's frame.
void InstallItemDialogViews();
