// The browser's item handlers: the enlarged preview of a cell and the batch run of slides.
#include "library/CircuitLibDlg.h"

void CCircuitLibDlg::OnEnlarge() {
    NotAvailable(L"放大预览");
}
void CCircuitLibDlg::OnBatchSlides() {
    NotAvailable(L"批生成SLD");
}
