// The directory tree control: items by the ids its owner hands out, folder icons, lazy children.
#pragma once

#include <QTreeWidget>

#include <map>
#include <vector>

class CDirTreeCtrl : public QTreeWidget {
    Q_OBJECT
public:
    explicit CDirTreeCtrl(QWidget* pParent = nullptr);
    void Reset();
    // An expandable item shows the expander before its children are read.
    void Insert(int nId, int nParent, const QString& strText, bool bExpandable);
    void Remove(int nId);
    void SetText(int nId, const QString& strText);
    void SetExpandable(int nId, bool bExpandable);
    void SetChildOrder(int nParent, const std::vector<int>& children);
    void Select(int nId);
    void Expand(int nId, bool bExpand);
    int IdOf(const QTreeWidgetItem* pItem) const;
    QTreeWidgetItem* ItemOf(int nId) const;

signals:
    void SelChanged(int nId);
    void ItemExpanded(int nId, bool bExpanded);
    void RClick(int nId);

private:
    std::map<int, QTreeWidgetItem*> m_items;
    bool m_bQuiet = false;
};
