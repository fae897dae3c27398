// The icon button of the dialogs.
#pragma once

#include <QPushButton>

class CButtonST : public QPushButton {
    Q_OBJECT
public:
    explicit CButtonST(const QString& strText, QWidget* pParent = nullptr);
    // The icon at the given size; the dialogs then make the button non-flat.
    void SetIcon(const QIcon& icon, int nWidth = 32, int nHeight = 32);
    void SetFlat(bool bFlat) { setFlat(bFlat); }
};
