// The browser's item handlers: rename, delete, saving the current drawing into the library, import.
#include "library/CircuitLibDlg.h"

void CCircuitLibDlg::OnBtnRename() {
    NotAvailable(L"更名");
}
void CCircuitLibDlg::OnBtnDelete() {
    NotAvailable(L"删除");
}
void CCircuitLibDlg::OnBtnSave() {
    NotAvailable(L"保存当前图至");
}
void CCircuitLibDlg::OnImport() {
    NotAvailable(L"文件导入");
}
