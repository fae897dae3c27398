// The directory tree over a Qt tree widget; the owner keeps the directories, this shows them.
#include "ui/views/DirTreeCtrl.h"

#include <QApplication>
#include <QHeaderView>
#include <QStyle>

namespace {
constexpr int kIdRole = Qt::UserRole + 1;

// Changes made by the owner are not reported back to it.
struct QUIET {
    explicit QUIET(bool& bFlag) : m_bFlag(bFlag), m_bOld(bFlag) { m_bFlag = true; }
    ~QUIET() { m_bFlag = m_bOld; }
    bool& m_bFlag;
    bool m_bOld;
};
} // namespace

CDirTreeCtrl::CDirTreeCtrl(QWidget* pParent) : QTreeWidget(pParent) {
    header()->hide();
    setContextMenuPolicy(Qt::CustomContextMenu);
    // The selected item keeps white on the highlight colour without the focus.
    QPalette pal = palette();
    pal.setColor(QPalette::Inactive, QPalette::Highlight,
                 pal.color(QPalette::Active, QPalette::Highlight));
    pal.setColor(QPalette::Inactive, QPalette::HighlightedText, Qt::white);
    pal.setColor(QPalette::Active, QPalette::HighlightedText, Qt::white);
    setPalette(pal);
    connect(this, &QTreeWidget::currentItemChanged, this, [this](QTreeWidgetItem* pItem) {
        if (!m_bQuiet && pItem)
            emit SelChanged(IdOf(pItem));
    });
    connect(this, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem* pItem) {
        if (!m_bQuiet)
            emit ItemExpanded(IdOf(pItem), true);
    });
    connect(this, &QTreeWidget::itemCollapsed, this, [this](QTreeWidgetItem* pItem) {
        if (!m_bQuiet)
            emit ItemExpanded(IdOf(pItem), false);
    });
    connect(this, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& pos) { emit RClick(IdOf(itemAt(pos))); });
}

void CDirTreeCtrl::Reset() {
    QUIET quiet(m_bQuiet);
    clear();
    m_items.clear();
}

int CDirTreeCtrl::IdOf(const QTreeWidgetItem* pItem) const {
    return pItem ? pItem->data(0, kIdRole).toInt() : 0;
}

QTreeWidgetItem* CDirTreeCtrl::ItemOf(int nId) const {
    auto it = m_items.find(nId);
    return it == m_items.end() ? nullptr : it->second;
}

void CDirTreeCtrl::Insert(int nId, int nParent, const QString& strText, bool bExpandable) {
    QUIET quiet(m_bQuiet);
    auto* pItem = new QTreeWidgetItem(QStringList{strText});
    pItem->setData(0, kIdRole, nId);
    pItem->setIcon(0, style()->standardIcon(QStyle::SP_DirIcon));
    pItem->setChildIndicatorPolicy(bExpandable ? QTreeWidgetItem::ShowIndicator
                                               : QTreeWidgetItem::DontShowIndicatorWhenChildless);
    if (QTreeWidgetItem* pParent = ItemOf(nParent))
        pParent->addChild(pItem);
    else
        addTopLevelItem(pItem);
    m_items[nId] = pItem;
}

void CDirTreeCtrl::Remove(int nId) {
    QUIET quiet(m_bQuiet);
    QTreeWidgetItem* pItem = ItemOf(nId);
    if (!pItem)
        return;
    std::vector<QTreeWidgetItem*> stack{pItem};
    while (!stack.empty()) {
        QTreeWidgetItem* pNext = stack.back();
        stack.pop_back();
        m_items.erase(IdOf(pNext));
        for (int i = 0; i < pNext->childCount(); ++i)
            stack.push_back(pNext->child(i));
    }
    delete pItem;
}

void CDirTreeCtrl::SetText(int nId, const QString& strText) {
    if (QTreeWidgetItem* pItem = ItemOf(nId))
        pItem->setText(0, strText);
}

void CDirTreeCtrl::SetExpandable(int nId, bool bExpandable) {
    if (QTreeWidgetItem* pItem = ItemOf(nId))
        pItem->setChildIndicatorPolicy(bExpandable
                                           ? QTreeWidgetItem::ShowIndicator
                                           : QTreeWidgetItem::DontShowIndicatorWhenChildless);
}

void CDirTreeCtrl::SetChildOrder(int nParent, const std::vector<int>& children) {
    QUIET quiet(m_bQuiet);
    QTreeWidgetItem* pParent = ItemOf(nParent);
    if (!pParent)
        return;
    QTreeWidgetItem* pCurrent = currentItem();
    QList<QTreeWidgetItem*> taken = pParent->takeChildren();
    for (int nChild : children)
        if (QTreeWidgetItem* pChild = ItemOf(nChild))
            pParent->addChild(pChild);
    if (pCurrent)
        setCurrentItem(pCurrent);
}

void CDirTreeCtrl::Select(int nId) {
    QUIET quiet(m_bQuiet);
    setCurrentItem(ItemOf(nId));
}

void CDirTreeCtrl::Expand(int nId, bool bExpand) {
    QUIET quiet(m_bQuiet);
    if (QTreeWidgetItem* pItem = ItemOf(nId))
        pItem->setExpanded(bExpand);
}
