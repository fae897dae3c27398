// The modeless dialogs beside the drawing: the entry of a new item and the save of an edited one.
#pragma once

#include "app/ModelessWindow.h"
#include "library/ItemDialogView.h"
#include "library/LibraryRules.h"

#include <functional>
#include <memory>
#include <string>

struct CLibState;
class CMyFtpConnection;

// The views the dialogs get; the module installs the Qt one, tests a recording one.
using ItemDialogViewFactory = std::function<std::unique_ptr<IItemDialogView>()>;
void SetItemDialogViewFactory(ItemDialogViewFactory factory);
std::unique_ptr<IItemDialogView> MakeItemDialogView();

// What both dialogs share: the window, the base point fields and the pick button.
class CItemDialog : public IModelessWindow {
public:
    CItemDialog(CLibState& state, CMyFtpConnection* pFtp, LibraryKind kind,
                const ITEM_DIALOG_TEMPLATE& tmpl, std::unique_ptr<IItemDialogView> pView);
    ~CItemDialog() override;

    bool Create() override;
    void Show() override;
    void Activate() override;
    bool IsIconic() override;
    void Restore() override;
    void DestroyWindow() override;

    // Handlers the window calls.
    virtual void OnOK() = 0;
    virtual void OnCancel() = 0;
    void OnBtnPick();
    // Every key passes here first; true swallows it.
    virtual bool PreTranslateMessage(bool bEscape) {
        (void)bEscape;
        return false;
    }
    // WM_ACAD_KEEPFOCUS: the dialog keeps the focus.
    bool OnKeepFocus() { return true; }

    const ITEM_DIALOG_TEMPLATE& Template() const { return m_tmpl; }
    IItemDialogView& View() { return *m_pView; }

    double m_dBaseX = 0.0;
    double m_dBaseY = 0.0;

protected:
    virtual void OnInitDialog() = 0;
    // Reads the base point fields; true when both hold text.
    bool ReadBasePoint();
    // The record fields, "" for a field the dialog does not have.
    std::wstring FieldText(int nId);
    // Connect in every mode; a shared mode without the server falls to mode 0.
    void ConnectOrFallBack();
    // Destroys this dialog through the frame (it is deleted) and brings the browser back.
    void EndDialog(IModelessWindow*& pSlot, bool bReloadBrowser);
    bool IsHole() const { return m_kind == LibraryKind::Hole; }

    CLibState& m_state;
    CMyFtpConnection* m_pFtp;
    LibraryKind m_kind;
    ITEM_DIALOG_TEMPLATE m_tmpl;
    std::unique_ptr<IItemDialogView> m_pView;
    bool m_bCreated = false;
};

// The entry dialog of a new item, while the user draws it.
class CCirWblockDlg : public CItemDialog {
public:
    CCirWblockDlg(CLibState& state, CMyFtpConnection* pFtp, std::unique_ptr<IItemDialogView> pView,
                  LibraryKind kind = LibraryKind::Hole);
    void OnOK() override;
    void OnCancel() override;
    bool PreTranslateMessage(bool bEscape) override { return bEscape; }

    std::wstring m_strName, m_strModel, m_strCode;

protected:
    void OnInitDialog() override;

private:
    // The window, the selection, the written file with its records; false
    // when the run ended early (the dialog stays).
    bool WriteNewItem();
};

// The layout library's entry dialog: base point only, no record, no parts database.
class CLSBlockDlg : public CCirWblockDlg {
public:
    CLSBlockDlg(CLibState& state, CMyFtpConnection* pFtp, std::unique_ptr<IItemDialogView> pView)
        : CCirWblockDlg(state, pFtp, std::move(pView), LibraryKind::Layout) {}
};

// The save dialog of an item opened for edit.
class CCirFileSaveDlg : public CItemDialog {
public:
    CCirFileSaveDlg(CLibState& state, CMyFtpConnection* pFtp,
                    std::unique_ptr<IItemDialogView> pView, LibraryKind kind = LibraryKind::Hole);
    void OnOK() override;
    void OnCancel() override;

    std::wstring m_strName, m_strModel, m_strCode;

protected:
    void OnInitDialog() override;

private:
    // The working copy must be the active document and no command may run.
    bool CheckDocument(bool bCommandTest);
    void SaveHoleItem();
    void SaveLayoutItem();
    // Layout, mode 1: the copy committed until it succeeds or the user gives up.
    void CommitLayoutCopy();
    void CloseUnsaved();
    std::wstring RelPath() const;
};

// The layout library's save dialog: base point only, saved without a record.
class CLSFileSaveDlg : public CCirFileSaveDlg {
public:
    CLSFileSaveDlg(CLibState& state, CMyFtpConnection* pFtp, std::unique_ptr<IItemDialogView> pView)
        : CCirFileSaveDlg(state, pFtp, std::move(pView), LibraryKind::Layout) {}
};

// The templates of the four dialogs.
ITEM_DIALOG_TEMPLATE EntryDialogTemplate(LibraryKind kind);
ITEM_DIALOG_TEMPLATE SaveDialogTemplate(LibraryKind kind);
