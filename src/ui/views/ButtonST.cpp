// The icon button: a push button that never takes Enter as the dialog's default.
#include "ui/views/ButtonST.h"

CButtonST::CButtonST(const QString& strText, QWidget* pParent) : QPushButton(strText, pParent) {
    setAutoDefault(false);
}

void CButtonST::SetIcon(const QIcon& icon, int nWidth, int nHeight) {
    setIcon(icon);
    setIconSize(QSize(nWidth, nHeight));
}
