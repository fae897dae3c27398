// The report list of the browser over a Qt item view.
#include "ui/views/MyListCtrl.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>

#include <algorithm>

CMyListCtrl::CMyListCtrl(QWidget* pParent) : QTreeWidget(pParent) {
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::ExtendedSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setContextMenuPolicy(Qt::CustomContextMenu);
    header()->setStretchLastSection(true);
    // The selection shows in the highlight colours also while the list lacks the focus.
    QPalette pal = palette();
    for (QPalette::ColorRole role : {QPalette::Highlight, QPalette::HighlightedText})
        pal.setColor(QPalette::Inactive, role, pal.color(QPalette::Active, role));
    setPalette(pal);
}

void CMyListCtrl::SetHeading(const QString& strHeading) {
    setHeaderLabels({strHeading});
}

void CMyListCtrl::SetRows(const std::vector<std::wstring>& rows) {
    QSignalBlocker block(this);
    QSignalBlocker blockSel(selectionModel());
    setUpdatesEnabled(false);
    clear();
    QList<QTreeWidgetItem*> items;
    items.reserve(static_cast<qsizetype>(rows.size()));
    for (const std::wstring& row : rows) {
        auto* pItem = new QTreeWidgetItem(QStringList{QString::fromStdWString(row)});
        pItem->setIcon(0, m_icon);
        items.push_back(pItem);
    }
    addTopLevelItems(items);
    setUpdatesEnabled(true);
}

void CMyListCtrl::SetSelectedRows(const std::vector<int>& rows, int nMakeVisible) {
    // Only the list's own signals are held back: the items learn their selection from the
    // selection model's.
    QSignalBlocker block(this);
    QItemSelection selection;
    for (int nRow : rows) {
        QModelIndex index = model()->index(nRow, 0);
        if (index.isValid())
            selection.select(index, index);
    }
    selectionModel()->select(selection,
                             QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    if (!rows.empty())
        selectionModel()->setCurrentIndex(model()->index(rows.front(), 0),
                                          QItemSelectionModel::NoUpdate);
    if (QTreeWidgetItem* pItem = topLevelItem(nMakeVisible))
        scrollToItem(pItem);
    viewport()->update();
}

std::vector<int> CMyListCtrl::SelectedRows() const {
    std::vector<int> rows;
    for (const QModelIndex& index : selectionModel()->selectedRows())
        rows.push_back(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

void CMyListCtrl::keyPressEvent(QKeyEvent* pEvent) {
    if (pEvent->key() == Qt::Key_Delete) {
        emit DeleteKey();
        return;
    }
    QTreeWidget::keyPressEvent(pEvent);
}
