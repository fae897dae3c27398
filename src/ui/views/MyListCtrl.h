// The owner-drawn report list: full-row selection that keeps its highlight without the focus.
#pragma once

#include <QTreeWidget>

#include <string>
#include <vector>

class CMyListCtrl : public QTreeWidget {
    Q_OBJECT
public:
    explicit CMyListCtrl(QWidget* pParent = nullptr);
    // One column, as wide as the list.
    void SetHeading(const QString& strHeading);
    // All rows at once, each with the list's small image, redrawing off meanwhile.
    void SetRows(const std::vector<std::wstring>& rows);
    // Selects exactly these rows without notifying, and scrolls one into view.
    void SetSelectedRows(const std::vector<int>& rows, int nMakeVisible);
    std::vector<int> SelectedRows() const;
    void SetSmallIcon(const QIcon& icon) { m_icon = icon; }

signals:
    void DeleteKey();

protected:
    void keyPressEvent(QKeyEvent* pEvent) override;

private:
    QIcon m_icon;
};
