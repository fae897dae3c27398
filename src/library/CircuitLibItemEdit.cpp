// The browser's item handlers: new item and open-for-edit.
#include "library/CircuitLibDlg.h"

void CCircuitLibDlg::OnBtnNew() {
    NotAvailable(L"新建");
}
void CCircuitLibDlg::OnBtnModify() {
    NotAvailable(L"修改");
}
