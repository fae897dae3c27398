// The sortable list over CSortListModel: the model holds the texts and the order, the widget shows
// them.
#include "ui/views/SortListCtrl.h"

#include <QDropEvent>
#include <QHeaderView>

CSortListCtrl::CSortListCtrl(QWidget* pParent) : QTreeWidget(pParent) {
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    header()->setSectionsClickable(true);
    QPalette pal = palette();
    for (QPalette::ColorRole role : {QPalette::Highlight, QPalette::HighlightedText})
        pal.setColor(QPalette::Inactive, role, pal.color(QPalette::Active, role));
    setPalette(pal);
    connect(header(), &QHeaderView::sectionClicked, this, [this](int nColumn) {
        if (!m_model.m_bAllColumns)
            Apply(m_model.ClickColumn(nColumn));
        else
            Sort(nColumn, nColumn == m_model.m_nSortColumn ? !m_model.m_bAscending : true);
    });
}

bool CSortListCtrl::SetHeadings(const std::wstring& strHeadings) {
    bool bDone = m_model.SetHeadings(strHeadings);
    QStringList labels;
    for (const STRUCT_LIST_COLUMN& column : m_model.GetColumns())
        labels.push_back(QString::fromStdWString(column.strName));
    setColumnCount(static_cast<int>(labels.size()));
    setHeaderLabels(labels);
    for (int i = 0; i < static_cast<int>(m_model.GetColumns().size()); ++i)
        setColumnWidth(i, m_model.GetColumns()[i].nWidth);
    return bDone;
}

void CSortListCtrl::ShowRows() {
    clear();
    QColor back(GetRValue(m_clrBack), GetGValue(m_clrBack), GetBValue(m_clrBack));
    int nColumns = columnCount();
    for (int nRow = 0; nRow < m_model.GetItemCount(); ++nRow) {
        auto* pItem = new QTreeWidgetItem;
        for (int nColumn = 0; nColumn < nColumns; ++nColumn) {
            pItem->setText(nColumn, QString::fromStdWString(m_model.GetItemText(nRow, nColumn)));
            pItem->setBackground(nColumn, back);
        }
        if (!m_bDragRows)
            pItem->setFlags(pItem->flags() & ~Qt::ItemIsDropEnabled);
        addTopLevelItem(pItem);
    }
    setDragDropMode(m_bDragRows ? QAbstractItemView::InternalMove : QAbstractItemView::NoDragDrop);
    ShowSortArrow();
}

void CSortListCtrl::ShowSortArrow() {
    if (m_model.m_nSortColumn < 0)
        return;
    header()->setSortIndicatorShown(true);
    header()->setSortIndicator(m_model.m_nSortColumn,
                               m_model.m_bAscending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

int CSortListCtrl::AddItem(const std::vector<std::wstring>& texts) {
    int nRow = m_model.AddItem(texts);
    ShowRows();
    return nRow;
}

int CSortListCtrl::InsertItemAt(int nRow, const std::vector<std::wstring>& texts) {
    int nAt = m_model.InsertItemAt(nRow, texts);
    ShowRows();
    return nAt;
}

bool CSortListCtrl::SetItemTextAndCopy(int nRow, int nColumn, const std::wstring& strText) {
    if (!m_model.SetItemTextAndCopy(nRow, nColumn, strText))
        return false;
    if (QTreeWidgetItem* pItem = topLevelItem(nRow))
        pItem->setText(nColumn, QString::fromStdWString(strText));
    return true;
}

bool CSortListCtrl::DeleteItem(int nRow) {
    if (!m_model.DeleteItem(nRow))
        return false;
    delete takeTopLevelItem(nRow);
    return true;
}

void CSortListCtrl::DeleteAllItems() {
    m_model.DeleteAllItems();
    clear();
}

void CSortListCtrl::Sort(int nColumn, bool bAscending) {
    Apply(m_model.Sort(nColumn, bAscending));
}

void CSortListCtrl::Apply(CSortListModel::ESortOutcome outcome) {
    if (outcome == CSortListModel::SortNothing)
        return;
    ShowRows();
    if (outcome == CSortListModel::SortRowsAndTell)
        emit ParentNotify(CSortListModel::kParentNotifyMessage);
}

// The selected rows move to the target row in their old order; the model follows the widget.
void CSortListCtrl::dropEvent(QDropEvent* pEvent) {
    QTreeWidget::dropEvent(pEvent);
    std::vector<std::vector<std::wstring>> rows;
    for (int nRow = 0; nRow < topLevelItemCount(); ++nRow) {
        std::vector<std::wstring> texts;
        for (int nColumn = 0; nColumn < columnCount(); ++nColumn)
            texts.push_back(topLevelItem(nRow)->text(nColumn).toStdWString());
        rows.push_back(std::move(texts));
    }
    m_model.DeleteAllItems();
    for (const auto& texts : rows)
        m_model.AddItem(texts);
    emit ParentNotify(CSortListModel::kParentNotifyMessage);
}
