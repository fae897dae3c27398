// The sortable list of the dialogs: its own copy of every row's texts, number-aware sorts, row
// drags.
#pragma once

#include "base/ImageSurface.h"
#include "ui/SortListModel.h"

#include <QTreeWidget>

#include <string>
#include <vector>

class CSortListCtrl : public QTreeWidget {
    Q_OBJECT
public:
    explicit CSortListCtrl(QWidget* pParent = nullptr);

    bool SetHeadings(const std::wstring& strHeadings);
    int AddItem(const std::vector<std::wstring>& texts);
    int InsertItemAt(int nRow, const std::vector<std::wstring>& texts);
    bool SetItemTextAndCopy(int nRow, int nColumn, const std::wstring& strText);
    std::wstring GetItemText(int nRow, int nColumn) const {
        return m_model.GetItemText(nRow, nColumn);
    }
    bool DeleteItem(int nRow);
    void DeleteAllItems();
    void Sort(int nColumn, bool bAscending);
    const CSortListModel& Model() const { return m_model; }

    CSortListModel m_model;
    int m_bDragRows = 0;
    COLORREF m_clrBack = RGB(255, 255, 255);

signals:
    // Message 101 to the parent: after a sort of column 0 with m_bAllColumns 0, and after a drag.
    void ParentNotify(unsigned nMessage);

protected:
    void dropEvent(QDropEvent* pEvent) override;

private:
    void Apply(CSortListModel::ESortOutcome outcome);
    void ShowRows();
    void ShowSortArrow();
};
