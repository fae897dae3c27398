// Qt windows of the panel dialog and its record editor; the presenters decide, these only show.
#include "panel/views/DlgDrawPanelWindow.h"

#include "host/HostEditor.h"
#include "host/HostUi.h"
#include "panel/DlgDrawPanel.h"
#include "panel/DlnDictionaryAdd.h"
#include "panel/PanelCommands.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QEventLoop>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

QString Q(const std::wstring& s) {
    return QString::fromStdWString(s);
}

std::wstring W(const QString& s) {
    return s.toStdWString();
}

class CDlgDrawPanelWindow : public QDialog, public IDlgDrawPanelView {
public:
    explicit CDlgDrawPanelWindow(CDlgDrawPanel& dlg, QWidget* pParent)
        : QDialog(pParent), m_dlg(dlg) {
        setWindowModality(Qt::ApplicationModal);
        BuildControls();
        Connect();
    }

    // Runs until the presenter ends the dialog. A nested loop of its own, not exec():
    // the window hides while the user picks in the drawing, and hiding must not end it.
    int Run() {
        m_dlg.OnInitDialog(*this);
        show();
        raise();
        activateWindow();
        QEventLoop loop;
        m_pLoop = &loop;
        loop.exec();
        m_pLoop = nullptr;
        hide();
        return m_nResult;
    }

    // IDlgDrawPanelView
    void UpdateData(CDlgDrawPanel& dlg, bool bSave) override {
        QLineEdit* fields[] = {m_pWidth, m_pHeight, m_pThick};
        std::wstring* values[] = {&dlg.m_strWidth, &dlg.m_strHeight, &dlg.m_strThick};
        QCheckBox* boxes[] = {m_pAxisX, m_pAxisY, m_pAxisZ};
        int* flags[] = {&dlg.m_nAxisX, &dlg.m_nAxisY, &dlg.m_nAxisZ};
        for (int i = 0; i < 3; ++i) {
            if (bSave) {
                *values[i] = W(fields[i]->text());
                *flags[i] = boxes[i]->isChecked() ? 1 : 0;
            } else {
                fields[i]->setText(Q(*values[i]));
                boxes[i]->setChecked(*flags[i] != 0);
            }
        }
    }
    void SetTitle(const std::wstring& s) override { setWindowTitle(Q(s)); }
    void SetScaleList(const CStringArray& arr) override {
        m_pScale->clear();
        for (const std::wstring& s : arr)
            m_pScale->addItem(Q(s));
    }
    void SetScaleText(const std::wstring& s) override { m_pScale->setEditText(Q(s)); }
    std::wstring GetScaleText() override { return W(m_pScale->currentText()); }
    int GetListClientWidth() override { return m_pList->viewport()->width(); }
    void SetListHeading(const std::wstring& s) override {
        // The list's own notation: "name,width".
        QString strHeading = Q(s);
        m_pList->setHeaderLabels({strHeading.section(',', 0, 0)});
    }
    void SetListRows(const CStringArray& arr) override {
        m_pList->setUpdatesEnabled(false);
        m_pList->clear();
        for (const std::wstring& s : arr)
            new QTreeWidgetItem(m_pList, {Q(s)});
        m_pList->setUpdatesEnabled(true);
    }
    std::vector<int> GetSelectedRows() override {
        std::vector<int> rows;
        for (QTreeWidgetItem* pItem : m_pList->selectedItems())
            rows.push_back(m_pList->indexOfTopLevelItem(pItem));
        std::sort(rows.begin(), rows.end());
        return rows;
    }
    void FocusField(int nField) override {
        if (nField == CDlgDrawPanel::fieldScale) {
            m_pScale->setFocus();
            m_pScale->lineEdit()->selectAll();
            return;
        }
        QLineEdit* fields[] = {m_pWidth, m_pHeight, m_pThick};
        fields[nField]->setFocus();
        fields[nField]->selectAll();
    }
    void BeginEditorCommand() override { hide(); }
    void MakeDialogsVisible() override {
        show();
        raise();
        activateWindow();
    }
    bool RunRecordEditor(CDlnDictionaryAdd& editor) override {
        return RunDlnDictionaryAddWindow(editor, this);
    }
    void EndDialog(int nResult) override {
        m_nResult = nResult;
        if (m_pLoop)
            m_pLoop->quit();
    }

protected:
    void reject() override { m_dlg.OnClose(); } // the close box and Esc act as "关闭"

private:
    QLineEdit* AddSizeRow(QGridLayout* pGrid, int nRow, const QString& strLabel,
                          QPushButton*& pPick) {
        auto* pEdit = new QLineEdit(this);
        pPick = new QPushButton(QStringLiteral("点取"), this);
        pGrid->addWidget(new QLabel(strLabel, this), nRow, 0);
        pGrid->addWidget(pEdit, nRow, 1);
        pGrid->addWidget(pPick, nRow, 2);
        return pEdit;
    }

    void BuildControls() {
        auto* pGrid = new QGridLayout;
        m_pWidth = AddSizeRow(pGrid, 0, QStringLiteral("宽(mm):"), m_pPickWidth);
        m_pHeight = AddSizeRow(pGrid, 1, QStringLiteral("高(mm):"), m_pPickHeight);
        m_pThick = AddSizeRow(pGrid, 2, QStringLiteral("厚(mm):"), m_pPickThick);
        m_pAxisX = new QCheckBox(QStringLiteral("X方向中轴"), this);
        m_pAxisY = new QCheckBox(QStringLiteral("Y方向中轴"), this);
        m_pAxisZ = new QCheckBox(QStringLiteral("Z方向中轴"), this);
        auto* pAxes = new QHBoxLayout;
        for (QCheckBox* p : {m_pAxisX, m_pAxisY, m_pAxisZ})
            pAxes->addWidget(p);
        m_pScale = new QComboBox(this);
        m_pScale->setEditable(true);
        m_pScale->setInsertPolicy(QComboBox::NoInsert);
        auto* pScaleRow = new QHBoxLayout;
        pScaleRow->addWidget(new QLabel(QStringLiteral("按图纸比例绘制:"), this));
        pScaleRow->addWidget(m_pScale, 1);
        m_pList = new QTreeWidget(this);
        m_pList->setObjectName(QStringLiteral("m_listPanel"));
        m_pList->setRootIsDecorated(false);
        m_pList->setSelectionMode(QAbstractItemView::ExtendedSelection);
        m_pList->setContextMenuPolicy(Qt::CustomContextMenu);
        m_pList->header()->setStretchLastSection(true);
        m_pList->setMinimumHeight(160);
        m_pAdd = new QPushButton(QStringLiteral("库扩充"), this);
        m_pDraw = new QPushButton(QStringLiteral("绘制"), this);
        m_pClose = new QPushButton(QStringLiteral("关闭"), this);
        m_pDraw->setDefault(true);
        auto* pButtons = new QHBoxLayout;
        pButtons->addWidget(m_pAdd);
        pButtons->addStretch(1);
        pButtons->addWidget(m_pDraw);
        pButtons->addWidget(m_pClose);
        auto* pMain = new QVBoxLayout(this);
        pMain->addLayout(pGrid);
        pMain->addLayout(pAxes);
        pMain->addLayout(pScaleRow);
        pMain->addWidget(m_pList, 1);
        pMain->addLayout(pButtons);
        resize(380, 440);
    }

    void Connect() {
        connect(m_pDraw, &QPushButton::clicked, this, [this] { m_dlg.OnOK(); });
        connect(m_pClose, &QPushButton::clicked, this, [this] { m_dlg.OnClose(); });
        connect(m_pAdd, &QPushButton::clicked, this, [this] { m_dlg.OnAddPanel(); });
        connect(m_pPickWidth, &QPushButton::clicked, this, [this] { m_dlg.OnPickWidth(); });
        connect(m_pPickHeight, &QPushButton::clicked, this, [this] { m_dlg.OnPickHeight(); });
        connect(m_pPickThick, &QPushButton::clicked, this, [this] { m_dlg.OnPickThick(); });
        connect(m_pList, &QTreeWidget::itemDoubleClicked, this, [this] { m_dlg.OnDblclkList(); });
        connect(m_pList, &QWidget::customContextMenuRequested, this, [this](const QPoint& pt) {
            QMenu menu(this);
            QAction* pChange = menu.addAction(QStringLiteral("修改"));
            QAction* pDelete = menu.addAction(QStringLiteral("删除"));
            QAction* pChosen = menu.exec(m_pList->viewport()->mapToGlobal(pt));
            if (pChosen == pChange)
                m_dlg.OnChangePanel();
            else if (pChosen == pDelete)
                m_dlg.OnDeletePanel();
        });
    }

    CDlgDrawPanel& m_dlg;
    QEventLoop* m_pLoop = nullptr;
    int m_nResult = IDCANCEL;
    QLineEdit *m_pWidth = nullptr, *m_pHeight = nullptr, *m_pThick = nullptr;
    QPushButton *m_pPickWidth = nullptr, *m_pPickHeight = nullptr, *m_pPickThick = nullptr;
    QCheckBox *m_pAxisX = nullptr, *m_pAxisY = nullptr, *m_pAxisZ = nullptr;
    QComboBox* m_pScale = nullptr;
    QTreeWidget* m_pList = nullptr;
    QPushButton *m_pAdd = nullptr, *m_pDraw = nullptr, *m_pClose = nullptr;
};

class CDlnDictionaryAddWindow : public QDialog {
public:
    CDlnDictionaryAddWindow(CDlnDictionaryAdd& dlg, QWidget* pParent)
        : QDialog(pParent), m_dlg(dlg) {
        setWindowTitle(Q(dlg.m_strCaption));
        auto* pGrid = new QGridLayout(this);
        const wchar_t* labels[] = {L"说明文字", L"宽(mm):", L"高(mm):", L"厚(mm):"};
        for (int i = 0; i < 4; ++i) {
            m_pFields[i] = new QLineEdit(this);
            pGrid->addWidget(new QLabel(Q(labels[i]), this), i, 0);
            pGrid->addWidget(m_pFields[i], i, 1);
        }
        auto* pOk = new QPushButton(QStringLiteral("确定"), this);
        auto* pCancel = new QPushButton(QStringLiteral("取消"), this);
        pOk->setDefault(true);
        pGrid->addWidget(pOk, 4, 0);
        pGrid->addWidget(pCancel, 4, 1);
        connect(pOk, &QPushButton::clicked, this, [this] { OnOk(); });
        connect(pCancel, &QPushButton::clicked, this, &QDialog::reject);
        m_dlg.OnInitDialog();
        std::wstring* values[] = {&m_dlg.m_strDesc, &m_dlg.m_strW, &m_dlg.m_strH, &m_dlg.m_strT};
        for (int i = 0; i < 4; ++i)
            m_pFields[i]->setText(Q(*values[i]));
        m_pFields[m_dlg.m_nFocus]->setFocus();
    }

private:
    void OnOk() {
        std::wstring* values[] = {&m_dlg.m_strDesc, &m_dlg.m_strW, &m_dlg.m_strH, &m_dlg.m_strT};
        for (int i = 0; i < 4; ++i)
            *values[i] = W(m_pFields[i]->text());
        if (m_dlg.OnOK()) {
            accept();
            return;
        }
        m_pFields[m_dlg.m_nFocus]->setFocus();
        if (m_dlg.m_bSelectFocus)
            m_pFields[m_dlg.m_nFocus]->selectAll();
    }

    CDlnDictionaryAdd& m_dlg;
    QLineEdit* m_pFields[4] = {};
};

} // namespace

int RunDlgDrawPanelWindow(CDlgDrawPanel& dlg) {
    CDlgDrawPanelWindow window(dlg, acedGetAcadFrame());
    return window.Run();
}

bool RunDlnDictionaryAddWindow(CDlnDictionaryAdd& dlg, QWidget* pParent) {
    CDlnDictionaryAddWindow window(dlg, pParent);
    return window.exec() == QDialog::Accepted;
}

void InstallPanelViews() {
    static bool bInstalled = false;
    if (bInstalled)
        return;
    bInstalled = true;
    SetDrawPanelDialogRunner(RunDlgDrawPanelWindow);
}
